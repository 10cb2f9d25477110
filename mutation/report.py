"""The table of what the mutants met."""

from collections import Counter, defaultdict


def printReport(mutants, outcomes, explained):
    """Prints killed and surviving mutants per source; true if every survivor is explained.

    `explained` maps a mutant's key to the reason why no test can or need notice it.
    """
    table = defaultdict(Counter)
    unexplained = []
    for mutant in {mutant.key: mutant for mutant in mutants}.values():
        outcome = outcomes.get(mutant.key, {}).get("outcome", "not run")
        if outcome == "survived":
            outcome = "explained" if mutant.key in explained else "unexplained"
        if outcome == "unexplained":
            unexplained.append(mutant)
        table[mutant.path][outcome] += 1

    columns = ("killed", "explained", "unexplained", "invalid", "not run")
    print("| Source | " + " | ".join(columns) + " | killed of all that compile |")
    print("|---|" + "---:|" * (len(columns) + 1))
    total = Counter()
    for path in sorted(table):
        total.update(table[path])
        printRow(path, table[path], columns)
    printRow("all", total, columns)
    for mutant in unexplained:
        print(f"\n{mutant.path}:{mutant.line} ({mutant.kind})\n- {mutant.before}\n+ {mutant.after}")
    return not unexplained


def printRow(name, row, columns):
    compiled = row["killed"] + row["explained"] + row["unexplained"]
    share = f"{100 * row['killed'] / compiled:.1f} %" if compiled else "-"
    print(f"| {name} | " + " | ".join(str(row[column]) for column in columns) + f" | {share} |")
