"""What the suite does not reach in src/: coverage_report.py <gcovr's JSON report> [--strict], from the root of the sources.

Branches are counted on lines on which somebody wrote a condition (cpp_statements.py); on all other lines only the compiler
branches. Whether a call returns or throws is no branch either. A branch that the suite does not take has its reason in
unreached.json. One without a reason is named, as is every line and function that is not reached; with --strict the script
ends with status 1 for them: what signals and threads reach differs from run to run. For sources that are not counted and
less than the least shares it always does.
"""
import json
import os
import re
import sys
from collections import namedtuple
from pathlib import Path

from cpp_statements import linesWithConditions

LEAST_BRANCHES = 95.0  # percent
LEAST_LINES = 99.5  # percent, of functions as well. They are wanted in full: --strict says so.
REASONS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "unreached.json")

ELSEWHERE = "_win32.cpp"  # how the sources end that only Windows builds
WITHOUT_FUNCTIONS = {"src/watch/english_texts.cpp", "src/watch/german_texts.cpp",  # tables
                     "src/watch/sanitizer_settings.cpp"}  # compiled under sanitizers only
EXCLUSION = re.compile(r"[GL]COVR?_EXCL_")  # gcovr would leave out what stands behind such a mark

Tally = namedtuple("Tally", "taken total")


def share(tally, what):
    return f"{tally.taken:5} of {tally.total:5} {what} ({percent(tally):5.1f} %)"


def percent(tally):
    return 100 * tally.taken / max(tally.total, 1)


def isCode(line):
    return not line["gcovr/noncode"] and not line["gcovr/excluded"]


def decisions(branches):
    """The branches without the pairs that a call makes: it returns, or it throws, in this order (gcov_without_cleanup.py)."""
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


def noLongerNeeded(missing, reasons):
    """Reasons for more branches than are not taken. Signals take some of these in one run and not in the next."""
    return [f"{key}\n  a reason for {reason['branches']}, {missing.get(key, 0)} not taken"
            for key, reason in reasons.items() if missing.get(key, 0) < reason["branches"]]


def outdated(reasons, texts):
    """Reasons whose line is no longer there."""
    keys = {f"{name}: {line.strip()}" for name, text in texts.items() for line in text.splitlines()}
    return [f"unreached.json: there is no such line any more: {key}" for key in reasons if key not in keys]


def notCounted(counted, existing):
    """Sources that are built but of which the report says nothing, and exceptions to this that are none."""
    built = {name for name in existing if name.endswith(".cpp") and not name.endswith(ELSEWHERE)}
    return [f"{name}: not in the report" for name in sorted(built - WITHOUT_FUNCTIONS - counted)] + \
           [f"{name}: is in the report or gone, no longer an exception" for name in
            sorted(WITHOUT_FUNCTIONS - (built - counted))]


def exclusions(texts):
    """Marks by which a source takes lines out of the count."""
    return [f"{name}:{number}: nothing is excluded from the count: {line.strip()}" for name, text in texts.items()
            for number, line in enumerate(text.splitlines(), 1) if EXCLUSION.search(line)]


def printUnder(heading, lines):
    if lines:
        print("\n".join([f"== {heading}", *lines, ""]))


def linesAndFunctions(sources):
    return (tally([{"count": count} for source in sources for _, count in source.lines]),
            tally([{"count": count} for source in sources for _, count in source.functions]))


def printFigures(sources, branches):
    for figure, what in zip(linesAndFunctions(sources), ("lines", "functions")):
        print(share(figure, what))
    print(share(branches, "branches at conditions"))
    print(share(added(source.allBranches for source in sources), "branches with those of calls and of the compiler"))


def read(name):
    return Path(name).read_text(encoding="utf-8")


def main():
    report = json.loads(read(sys.argv[1]))
    strict = "--strict" in sys.argv[2:]
    reasons = json.loads(read(REASONS))
    texts = {path.as_posix(): read(path) for path in sorted(Path("src").rglob("*.[ch]*")) if path.is_file()}
    sources = [Source(entry, texts[entry["file"]]) for entry in report["files"]]
    missing = {key: count for source in sources for key, count in source.unreachedBranches().items()}
    branches = added(branches for source in sources for _, _, branches in source.branches)

    surprises = [words for source in sources for words in source.unreachedFunctions() + source.unreachedLines()]
    failures = notCounted({source.name for source in sources}, texts) + exclusions(texts) + outdated(reasons, texts)
    if percent(branches) < LEAST_BRANCHES:
        failures.append(f"fewer than {LEAST_BRANCHES} % of the branches are taken")
    lines, functions = linesAndFunctions(sources)
    if min(percent(lines), percent(functions)) < LEAST_LINES:
        failures.append(f"fewer than {LEAST_LINES} % of the lines or functions are reached")
    surprises += withoutReason(missing, reasons)
    printUnder("Failures", failures)
    printUnder("Not reached without a reason in scripts/unreached.json"
               + ("" if strict else " (a failure with --strict only)"), surprises)
    printUnder("Reasons no longer needed, if other runs say the same", noLongerNeeded(missing, reasons))
    printFigures(sources, branches)
    sys.exit(1 if failures or (strict and surprises) else 0)


if __name__ == "__main__":
    main()
