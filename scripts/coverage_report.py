"""What the suite does not reach in src/: coverage_report.py <gcovr's JSON report>, from the root of the sources.

Branches are counted on lines on which somebody wrote a condition (cpp_statements.py); on all other lines only the compiler
branches. Whether a call returns or throws is no branch either. A branch that the suite does not take has its reason in
unreached.json, or else the script ends with status 1, as it does for lines and functions that are not reached and for too
few branches.
"""
import json
import os
import sys
from collections import namedtuple

from cpp_statements import linesWithConditions

LEAST_BRANCHES = 95.0  # percent; lines and functions are wanted in full
REASONS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "unreached.json")

Tally = namedtuple("Tally", "taken total")


def share(tally, what):
    return f"{tally.taken:5} of {tally.total:5} {what} ({percent(tally):5.1f} %)"


def percent(tally):
    return 100 * tally.taken / max(tally.total, 1)


def isCode(line):
    return not line["gcovr/noncode"] and not line["gcovr/excluded"]


def decisions(branches):
    """The branches without the pairs that a call makes: it returns, or it throws."""
    kept = []
    for branch in branches:
        if not branch["throw"]:
            kept.append(branch)
        elif kept and kept[-1]["fallthrough"]:
            kept.pop()
    return kept


def tally(branches):
    return Tally(sum(branch["count"] > 0 for branch in branches), len(branches))


def added(tallies):
    return Tally(*map(sum, zip(*tallies, Tally(0, 0))))


class Source:
    """A source with what gcovr has counted in it."""

    def __init__(self, report, text):
        self.name = report["file"]
        lines = [line for line in report["lines"] if isCode(line)]
        texts = text.splitlines()
        conditions = linesWithConditions(text)
        self.functions = [(function["name"], function["execution_count"]) for function in report["functions"]]
        self.lines = [(line["line_number"], line["count"]) for line in lines]
        self.allBranches = added(tally([branch for branch in line["branches"] if not branch["throw"]]) for line in lines)
        self.branches = [(line["line_number"], texts[line["line_number"] - 1].strip(), tally(decisions(line["branches"])))
                         for line in lines if line["line_number"] in conditions]

    def unreachedFunctions(self):
        return [f"{self.name}: never called: {name}" for name, count in self.functions if count == 0]

    def unreachedLines(self):
        return [f"{self.name}:{number}: never reached" for number, count in self.lines if count == 0]

    def unreachedBranches(self):
        """Pairs of a key as in unreached.json and how many branches of such lines are not taken."""
        missing = {}
        for _, text, branches in self.branches:
            if branches.taken < branches.total:
                key = f"{self.name}: {text}"
                missing[key] = missing.get(key, 0) + branches.total - branches.taken
        return missing


def withoutReason(missing, reasons):
    """What is to be said about branches that are not taken."""
    words = []
    for key, count in missing.items():
        known = reasons.get(key, {"branches": 0})["branches"]
        if count > known:
            words.append(f"{key}\n  {count} not taken" + (f", {known} with a reason" if known else ""))
    return words


def outdated(reasons, texts):
    """Reasons whose line is no longer there."""
    keys = {f"{name}: {line.strip()}" for name, text in texts.items() for line in text.splitlines()}
    return [f"unreached.json: there is no such line any more: {key}" for key in reasons if key not in keys]


def read(name):
    with open(name, encoding="utf-8") as file:
        return file.read()


def main():
    report = json.loads(read(sys.argv[1]))
    reasons = json.loads(read(REASONS))
    texts = {entry["file"]: read(entry["file"]) for entry in report["files"]}
    sources = [Source(entry, texts[entry["file"]]) for entry in report["files"]]
    complaints = [words for source in sources
                  for words in source.unreachedFunctions() + source.unreachedLines() +
                  withoutReason(source.unreachedBranches(), reasons)] + outdated(reasons, texts)
    print("\n".join(complaints + [""]) if complaints else "", end="")

    branches = added(branches for source in sources for _, _, branches in source.branches)
    print(share(tally([{"count": count} for source in sources for _, count in source.lines]), "lines"))
    print(share(tally([{"count": count} for source in sources for _, count in source.functions]), "functions"))
    print(share(branches, "branches at conditions"))
    print(share(added(source.allBranches for source in sources), "branches with those of calls and of the compiler"))
    sys.exit(0 if not complaints and percent(branches) >= LEAST_BRANCHES else 1)


if __name__ == "__main__":
    main()
