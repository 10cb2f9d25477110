"""The tests that a mutant has to get past: only those that reach it, the quickest first.

Which test reaches which mutants is found out once for each build, by running every test alone. A test is ended by the
processor time it takes, not by the clock, so that a busy machine kills no mutant.
"""

import json
import os
import re
import shutil
import subprocess
import tempfile
from collections import Counter, defaultdict
from dataclasses import dataclass
from pathlib import Path

UNIT_PROGRAMS = ("unit_tests", "memory_tests")
# Left out: what takes long, needs a special build or belongs to other parts of the project.
LEFT_OUT = ("watch", "large_input", "external_processmessage", "killed_runs", "hostile", "standard_descriptors",
            "faults_memory", "installation", "manual_pages")
MEMORY_LIMIT = 6 << 30  # bytes of address space: a mutant may well ask for all there is
SECONDS = 3  # of processor time, beside five times what the tests take on the unchanged sources
QUICK = 0.05  # seconds; units up to here share a process
SLOW = 2  # tests from here on are left out, too
LIKELY = 6  # tests that are tried first
SAME_REACH = 10  # so many acceptance tests of those that reach the same places
MOST_MUTANTS = 1 << 16


@dataclass
class Test:
    program: str  # a unit test program, or "acceptance"
    name: str
    file: str  # its source
    time: float
    reached: frozenset


class Suite:
    def __init__(self, tree, build, cache):
        self.tree = tree
        self.build = build
        self.environment = {
            **os.environ, "PYTHONDONTWRITEBYTECODE": "1", "VADELCLIP_SANITIZED": "0",
            "VADELCLIP_EXECUTABLE": f"{build}/Vadelclip", "VADELCLIP_RECORDING": f"{build}/tests/Vadelclip_recording",
            "VADELCLIP_LOCALE": f"{build}/locale", "VADELCLIP_WATCH": f"{build}/Vadelwatch",
            "VADELCLIP_FAILING_CALLS": f"{build}/tests/libfailing_calls.so",
            "VADELCLIP_FAILING_MEMORY": f"{build}/tests/libfailing_memory.so"}
        self.killers = defaultdict(Counter)  # of each source's mutants
        self.tests = sorted(self.noted(cache), key=lambda test: test.time)

    def killer(self, path, numbers, number, place):
        """The first test that fails with the mutant of this number on, "" where all pass.

        @param path    of its source
        @param numbers of all mutants of its source
        """
        groups = [self.likely(path, place), *units(path, place, self.tests),
                  acceptanceTests(numbers, place, self.tests)]
        killer = self.firstFailure(groups, {"VADELCLIP_MUTANT": str(number)})
        self.killers[path].update([killer] if killer else [])
        return killer

    def likely(self, path, place):
        """What has killed most mutants of a source is the best guess for the next one."""
        names = {name for name, _ in self.killers[path].most_common(LIKELY)}
        return [test for test in self.tests
                if test.program == UNIT_PROGRAMS[0] and test.name in names and place in test.reached]

    def killerWithoutSwitch(self, path, numbers):
        """The same for a mutant that is on anyway: any test may reach it."""
        return self.firstFailure([*units(path, None, self.tests), acceptanceTests(numbers, None, self.tests)], {})

    def firstFailure(self, groups, settings):
        for group in filter(None, groups):
            if group[0].program == "acceptance":
                failed = self.acceptance({"names": [test.name for test in group], "note": False,
                                          "seconds": secondsFor(max(test.time for test in group))}, settings).strip()
                if failed:
                    return failed
            else:
                order = (group[0].program, [test.name for test in group], settings,
                         secondsFor(sum(test.time for test in group)))
                # Twice, as with the acceptance tests: some wait a few seconds for a file.
                if self.failingUnit(*order) and (failed := self.failingUnit(*order)):
                    return failed
        return ""

    # Running

    def failingUnit(self, program, names, settings, seconds):
        command = [f"{self.build}/tests/{program}", "--gtest_fail_fast", "--gtest_filter=" + ":".join(names)]
        status, output = self.run(command, settings, seconds)
        failed = re.findall(r"^\[  FAILED  \] (\S+\.[^\s,]+)", output, re.MULTILINE)
        begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
        # One that crashed has begun and not failed.
        return "" if status == 0 else [program, *begun[-1:], *failed[:1]][-1]

    def acceptance(self, order, settings):
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            json.dump(order, file)
            file.flush()
            command = ["python3", Path(__file__).parent / "acceptance_tests.py", file.name, self.tree]
            status, output = self.run(command, settings, 3600)
            return output if status == 0 else output or "acceptance"

    def run(self, command, settings, seconds):
        # In a directory of its own: units write files where they are.
        scratch = tempfile.mkdtemp(prefix="mutation-")

        limits = ["nice", "prlimit", f"--cpu={seconds}", f"--as={MEMORY_LIMIT}", f"--fsize={1 << 30}", "--core=0"]
        try:
            finished = subprocess.run([*limits, *command], cwd=scratch, env={**self.environment, **settings},
                                      stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                      timeout=1800, check=False)
            return finished.returncode, finished.stdout.decode(errors="replace")
        except subprocess.TimeoutExpired:
            return -1, "stands still"
        finally:
            shutil.rmtree(scratch, ignore_errors=True)

    # Finding out what reaches what

    def noted(self, cache):
        stamp = [os.path.getmtime(f"{self.build}/{name}") for name in
                 ("tests/unit_tests", "tests/memory_tests", "Vadelclip", "tests/Vadelclip_recording")]
        stamp += [max(path.stat().st_mtime for path in (self.tree / "tests").rglob("*.py"))]
        if cache.exists() and (known := json.loads(cache.read_text()))["stamp"] == stamp:
            rows = known["tests"]
        else:
            rows = [row for program in UNIT_PROGRAMS for row in self.noteUnits(program)] + self.noteAcceptance()
            cache.write_text(json.dumps({"stamp": stamp, "tests": rows}))
        return [Test(*row[:-1], frozenset(row[-1])) for row in rows]

    def noteUnits(self, program):
        with reachedFile() as notes:
            for name, file in self.unitNames(program):
                notes.write_bytes(bytes(MOST_MUTANTS))
                before = childrenTime()
                if self.failingUnit(program, [name], {"VADELCLIP_REACHED_MUTANTS": str(notes)}, 600):
                    raise SystemExit(f"{name} does not pass on the unchanged sources")
                reached = [number for number, byte in enumerate(notes.read_bytes()) if byte]
                yield program, name, file, childrenTime() - before, reached

    def unitNames(self, program):
        """(name, source below tests/) of each test."""
        with tempfile.NamedTemporaryFile(suffix=".json") as file:
            command = [f"{self.build}/tests/{program}", "--gtest_list_tests", f"--gtest_output=json:{file.name}"]
            self.run(command, {}, 60)
            suites = json.load(file)["testsuites"]
        for suite in suites:
            for test in suite["testsuite"]:
                yield f"{suite['name']}.{test['name']}", test["file"].rpartition("/tests/")[2]

    def noteAcceptance(self):
        modules = sorted(path.stem for path in (self.tree / "tests" / "acceptance").glob("*_test.py")
                         if not path.stem.startswith(LEFT_OUT) and not path.stem.endswith("_win32_test"))
        with reachedFile() as notes:
            notes.write_bytes(bytes(MOST_MUTANTS))
            output = self.acceptance({"modules": modules, "note": True, "seconds": SLOW},
                                     {"VADELCLIP_REACHED_MUTANTS": str(notes)})
        if not output.startswith("{"):
            raise SystemExit(f"an acceptance test does not pass on the unchanged sources: {output}")
        return [("acceptance", name, "", noted["time"], noted["reached"]) for name, noted in json.loads(output).items()]


class reachedFile:
    def __enter__(self):
        self.file = tempfile.NamedTemporaryFile(prefix="reached-")
        return Path(self.file.name)

    def __exit__(self, *_):
        self.file.close()


def units(path, place, tests):
    """Groups of units that reach a place, or of all: those of the mutant's own source first, then the other quick ones,
    some at a time, then the others one by one."""
    subject = Path(path).with_suffix("").relative_to("src")
    found = [test for test in tests if test.program != "acceptance" and test.time < SLOW
             and (place is None or place in test.reached)]
    quick = [test for test in found if test.time <= QUICK and test.program == UNIT_PROGRAMS[0]]
    own = [test for test in quick if test.file.startswith(str(subject))]
    others = [test for test in quick if test not in own]
    yield from (own, *(others[i:i + 40] for i in range(0, len(others), 40)))
    yield from ([test] for test in found if test not in quick)


def acceptanceTests(numbers, place, tests):
    """One group of acceptance tests. Of those that reach the same places of the mutant's source, whose numbers these
    are, the quickest few: the others differ in what that source has no part in."""
    seen = Counter()
    chosen = []
    for test in tests:
        if test.program == "acceptance" and test.time < SLOW and (place is None or place in test.reached):
            reached = test.reached.intersection(numbers)
            seen[reached] += 1
            if seen[reached] <= SAME_REACH:
                chosen.append(test)
    return chosen


def secondsFor(time):
    return int(SECONDS + 5 * time)


def childrenTime():
    times = os.times()
    return times.children_user + times.children_system
