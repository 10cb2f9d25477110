"""The table of what the mutants met."""

import os
from collections import Counter, defaultdict

COLUMNS = ("mutants", "not run", "invalid", "killed", "explained", "unexplained")


def printReport(mutants, outcomes, explained):
    """Prints killed and surviving mutants per directory; true if every survivor is explained.

    `explained` maps a mutant's key to the reason why no test can or need notice it.
    """
    table = defaultdict(Counter)
    unexplained = []
    for mutant in sorted(mutants, key=lambda mutant: (mutant.path, mutant.line)):
        outcome = outcomes.get(mutant.key, {}).get("outcome", "not run")
        if outcome == "survived":
            outcome = "explained" if mutant.key in explained else "unexplained"
        if outcome == "unexplained":
            unexplained.append(mutant)
        for row in (os.path.dirname(mutant.path), "all"):
            table[row].update((outcome, "mutants"))

    print("| Sources | " + " | ".join(COLUMNS) + " | killed of those that compile |")
    print("|---|" + "---:|" * (len(COLUMNS) + 1))
    for name in sorted(table, key=lambda name: (name == "all", name)):
        printRow(name, table[name])
    for mutant in unexplained:
        print(f"\n{mutant.path}:{mutant.line} ({mutant.kind})\n- {mutant.before}\n+ {mutant.after}")
    for key in sorted(key for key in explained if outcomes.get(key, {}).get("outcome") != "survived"):
        print(f"\nexplained, but no survivor: {key}")
    return not unexplained


def printRow(name, row):
    compared = row["killed"] + row["explained"] + row["unexplained"]
    share = f"{100 * row['killed'] / compared:.1f} %" if compared else "-"
    print(f"| {name} | " + " | ".join(str(row[column]) for column in COLUMNS) + f" | {share} |")
