"""Runs single acceptance tests, each in a process of its own that starts with everything imported.

The first argument is a JSON file: the tests by their names in the order to run them (or the modules whose tests to run),
the seconds of processor time that a test may take, and whether to note for each the mutants it reaches and the time it
took; the second is the root of the tree. Prints a JSON object of what was noted, or the name of the first test that fails
twice. Twice, because some wait a few seconds for a file, which may be too short on a busy machine.
"""

import json
import os
import resource
import sys
import unittest
from pathlib import Path

ROOT = Path(sys.argv[2])
sys.path[:0] = [str(ROOT / "tests" / "acceptance"), str(ROOT / "tests" / "support")]

import acceptance  # noqa: E402

acceptance.TIME_LIMIT = 120.0  # for a machine with other work; loops end by their processor time


def testsIn(suite):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from testsIn(test)
        else:
            yield test


def passes(test, seconds):
    child = os.fork()
    if child == 0:
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        result = unittest.TestResult()
        test.run(result)
        os._exit(0 if result.wasSuccessful() else 1)
    return os.waitpid(child, 0)[1] == 0


def processorTime():
    times = os.times()
    return times.children_user + times.children_system


def reachedBy(test, seconds):
    path = Path(os.environ["VADELCLIP_REACHED_MUTANTS"])
    for _ in range(2):
        with path.open("r+b") as notes:  # not cut: a process may still have it in its memory
            notes.write(bytes(path.stat().st_size))
        before = processorTime()
        passed = passes(test, seconds)
        spent = processorTime() - before
        if passed or spent >= seconds:
            return {"time": spent, "reached": [number for number, byte in enumerate(path.read_bytes()) if byte]}
    print(test.id())
    sys.exit(1)


def main():
    order = json.loads(Path(sys.argv[1]).read_text())
    loader = unittest.TestLoader()
    seconds = order["seconds"]
    tests = list(testsIn(loader.loadTestsFromNames(order.get("names") or order["modules"])))
    if order["note"]:
        print(json.dumps({test.id(): reachedBy(test, seconds) for test in tests}))
        return
    for test in tests:
        if not passes(test, seconds) and not passes(test, seconds):
            print(test.id())
            return


if __name__ == "__main__":
    main()
