"""Changes the sources a little, one change at a time, and looks whether the tests notice.

Each of the workers has a copy of the tree and a build of its own. A mutant is killed when a test fails, crashes or takes
far too long; it is invalid when it does not compile; it survives when the quick suite passes. Outcomes are kept in
build/mutation/outcomes.json and not found out again as long as neither the mutant's text nor the tests changed
(--again: all anew). A survivor that explained.json names does not make the run fail.

    mutation/run.py [--only boundary/ring_walk] [--sample 200] [--minutes 30] [--again] [--report]
"""

import argparse
import hashlib
import json
import os
import random
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, os.path.dirname(__file__))
from mutants import mutantsOf  # noqa: E402
from quick_suite import QuickSuite  # noqa: E402
from report import printReport  # noqa: E402

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
OUTCOMES = WORK / "outcomes.json"
DIRECTORIES = ("boundary", "clip", "text", "app")
SKIPPED_SOURCES = ("executable_path_win32.cpp",)  # not part of this platform's build


def allMutants(only):
    found = []
    for directory in DIRECTORIES:
        for source in sorted((ROOT / "src" / directory).glob("*.?pp")):
            path = str(source.relative_to(ROOT))
            if source.name not in SKIPPED_SOURCES and only in path:
                found += mutantsOf(path, source.read_text())
    return found


def stateOfTests():
    """A fingerprint of everything the outcomes depend on besides the mutant itself."""
    digest = hashlib.sha256()
    for directory in ("src", "tests"):
        for path in sorted((ROOT / directory).rglob("*")):
            if path.is_file() and path.suffix in (".cpp", ".hpp", ".h", ".py", ".txt") and "watch" not in path.name:
                digest.update(path.read_bytes())
    return digest.hexdigest()[:16]


class Run:
    """What the workers share."""

    def __init__(self, mutants, outcomes, deadline):
        self.waiting = list(reversed(mutants))
        self.outcomes = outcomes
        self.deadline = deadline
        self.lock = threading.Lock()

    def next(self):
        with self.lock:
            return self.waiting.pop() if self.waiting and time.monotonic() < self.deadline else None

    def note(self, mutant, outcome, killer):
        with self.lock:
            self.outcomes[mutant.key] = {"path": mutant.path, "kind": mutant.kind, "outcome": outcome, "by": killer,
                                         "state": self.outcomes["state"]}
            OUTCOMES.write_text(json.dumps(self.outcomes, indent=1))
            print(f"{len(self.waiting):5} left  {outcome:9} {mutant.path}:{mutant.line} {mutant.kind}"
                  f"{'  by ' + killer if killer else ''}", flush=True)


def work(suite, run):
    while mutant := run.next():
        run.note(mutant, *suite.outcomeOf(mutant))


def main():
    parser = argparse.ArgumentParser(description="Mutation testing of the tool's own logic.")
    parser.add_argument("--only", default="", metavar="TEXT", help="only sources whose path holds this text")
    parser.add_argument("--sample", type=int, default=0, metavar="N", help="N mutants, drawn at random (seed 1)")
    parser.add_argument("--minutes", type=float, default=600, help="begin no further mutant after that time")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("--again", action="store_true", help="forget the outcomes of earlier runs")
    parser.add_argument("--report", action="store_true", help="print the table of what is known, run nothing")
    arguments = parser.parse_args()

    WORK.mkdir(parents=True, exist_ok=True)
    outcomes = {} if arguments.again or not OUTCOMES.exists() else json.loads(OUTCOMES.read_text())
    mutants = allMutants(arguments.only)
    # In an order drawn at random, so that a run that is cut short has seen a fair sample.
    random.Random(1).shuffle(mutants)
    if arguments.sample:
        del mutants[arguments.sample:]
    if not arguments.report:
        outcomes["state"] = stateOfTests()
        # What was killed once stays killed as long as its text is the same; the others may meet a new test.
        known = {key for key, entry in outcomes.items() if key != "state"
                 and (entry["outcome"] != "survived" or entry["state"] == outcomes["state"])}
        suites = [QuickSuite(ROOT, WORK / f"worker{number}") for number in range(arguments.workers)]
        run = Run([mutant for mutant in mutants if mutant.key not in known], outcomes,
                  time.monotonic() + 60 * arguments.minutes)
        threads = [threading.Thread(target=work, args=(suite, run)) for suite in suites]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    explained = json.loads((ROOT / "mutation" / "explained.json").read_text())
    sys.exit(0 if printReport(mutants, outcomes, explained) else 1)


if __name__ == "__main__":
    main()
