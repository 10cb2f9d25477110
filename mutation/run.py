"""Changes the sources a little, one change at a time, and looks whether the tests notice.

All mutants are compiled into one copy of the tree, each behind a switch (switched_build.py), and each meets the tests
that reach it (suite.py). Those that fit behind no switch are compiled one by one at the end. A mutant is killed when a
test fails, crashes or takes far too much time; it is invalid when it does not compile; it survives when all pass.

Outcomes are kept in build/mutation/outcomes.json and not found out again as long as neither the mutant's text nor, for
a survivor, the sources and tests changed. Killed once stays killed, whatever becomes of the tests: figures to be
printed come from --again, all anew. A survivor that explained.json names does not make the run fail.

    mutation/run.py [--only boundary/ring_walk] [--sample 200] [--minutes 30] [--workers 1] [--again] [--report]
"""

import argparse
import hashlib
import json
import os
import random
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, os.path.dirname(__file__))
from mutants import mutantsOf  # noqa: E402
from report import printReport  # noqa: E402
from suite import Suite  # noqa: E402
from switched_build import SwitchedBuild  # noqa: E402

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
OUTCOMES = WORK / "outcomes.json"
DIRECTORIES = ("boundary", "clip", "text", "app")
SKIPPED_SOURCES = ("executable_path_win32.cpp", "standard_descriptors_win32.cpp")  # not part of this platform's build


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

    def __init__(self, mutants, build, suite, outcomes, deadline):
        self.waiting = [mutant for mutant in reversed(mutants) if mutant in build.numbers]
        self.alone = [mutant for mutant in mutants if mutant not in build.numbers]
        self.build = build
        self.suite = suite
        self.outcomes = outcomes
        self.deadline = deadline
        self.lock = threading.Lock()

    def runSwitched(self, workers):
        threads = [threading.Thread(target=self.work) for _ in range(workers)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def work(self):
        while mutant := self.next():
            killer = self.suite.killer(mutant.path, self.build.numbersIn(mutant.path), *self.build.numbers[mutant])
            self.note(mutant, "killed" if killer else "survived", killer)

    def next(self):
        with self.lock:
            return self.waiting.pop() if self.waiting and time.monotonic() < self.deadline else None

    def runAlone(self):
        while self.alone and time.monotonic() < self.deadline:
            mutant = self.alone.pop(0)
            try:
                if not self.build.putIn(mutant):
                    self.note(mutant, "invalid", "")
                elif not self.build.testsCompile(mutant):
                    self.note(mutant, "killed", "the compiler, in a test")
                else:
                    killer = self.suite.killerWithoutSwitch(mutant.path, self.build.numbersIn(mutant.path))
                    self.note(mutant, "killed" if killer else "survived", killer)
            finally:
                self.build.takeOut(mutant)

    def note(self, mutant, outcome, killer):
        with self.lock:
            self.outcomes[mutant.key] = {"path": mutant.path, "kind": mutant.kind, "outcome": outcome, "by": killer,
                                         "state": self.outcomes["state"]}
            OUTCOMES.write_text(json.dumps(self.outcomes, indent=1))
            left = len(self.waiting) + len(self.alone)
            print(f"{left:5} left  {outcome:9} {mutant.path}:{mutant.line} {mutant.kind}"
                  f"{'  by ' + killer if killer else ''}", flush=True)


def runMutants(mutants, outcomes, arguments):
    outcomes["state"] = stateOfTests()
    # What was killed once stays killed as long as its text is the same; the others may meet a new test.
    for mutant in mutants:
        entry = outcomes.get(mutant.key)
        if entry and entry["outcome"] == "survived" and entry["state"] != outcomes["state"]:
            del outcomes[mutant.key]
    waiting = [mutant for mutant in mutants if mutant.key not in outcomes]
    if not waiting:
        return
    # Always all of them, so that what is built stays the same from run to run.
    build = SwitchedBuild(ROOT, WORK, allMutants(""))
    suite = Suite(build.tree, build.build, WORK / "tests.json")
    for entry in outcomes.values():
        if isinstance(entry, dict) and "." in entry["by"]:
            suite.killers[entry["path"]][entry["by"]] += 1
    run = Run(waiting, build, suite, outcomes, time.monotonic() + 60 * arguments.minutes)
    run.runSwitched(arguments.workers)
    run.runAlone()


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
        runMutants(mutants, outcomes, arguments)
    explained = json.loads((ROOT / "mutation" / "explained.json").read_text())
    sys.exit(0 if printReport(mutants, outcomes, explained) else 1)


if __name__ == "__main__":
    main()
