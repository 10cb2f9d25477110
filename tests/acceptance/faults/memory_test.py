"""Memory that is refused: at each single allocation of a run, from each one on, and under limits of every size."""
import collections
import errno
import os
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, TOOL, boundary, linkTo
from expected_messages import USAGE, failedMessage, finishMessage, jsonError
from fault_checks import COUNT_FILE, PASS, FaultTest, fails, failsForever, failingMemory, preloaded

LONG = b"3;3;" + b"k" * 3000 + b"\n"
JOB = {"a.xyz": (b"x;y;z\n1;1;5\n20;1;5\n" + LONG + b"4;4;5\n", b"1;1;5\n" + LONG + b"4;4;5\n"),
       "b.csv": (b"X,Y,Z\n20,1,5\n", b""),
       "c.txt": (b"x y z g\r\n5 5 1 1\r\n6 6 2 2\r\n", b"5 5 1 1\n6 6 2 2\n")}
NOT_FOUND = b"Boundary file area.xml not found\nBoundary file area.xml does not exist\n"
ENDED = b"terminate called after throwing an instance of "
ARGUMENTS = "base/data", "out", "area.xml"
# Too long to be held without an allocation.
LONG_ARGUMENTS = "././././././base/data", "././././././././out", "./././././area.xml"


class RefusalTest(FaultTest):
    def runsOf(self, *options, refusal, arguments=ARGUMENTS, undisturbed="finished", stride=1, silent=False):
        """Runs in which the refusal begins at one allocation after the other, each with what `check` says of it.

        @param undisturbed  how a run ends in which nothing is refused
        """
        piped = "-pipe" in options
        calls = Path(self.aside, "calls")
        run = self.start(*arguments, *options, tool=TOOL, environment=failingMemory(countTo=str(calls)))
        self.assertEqual(self.check(run, piped=piped), undisturbed)
        count = int(calls.read_text(encoding="ascii"))
        runs = []
        for number in range(0, count, stride):
            self.clearOutput()
            with self.subTest(allocation=number):
                run = self.start(*arguments, *options, tool=TOOL, environment=failingMemory(PASS * number, refusal))
                runs.append((run, self.check(run, silent=silent, piped=piped)))
        self.assertEqual(len(runs), len(range(0, count, stride)))
        return runs


@unittest.skipIf(SANITIZED, "sanitizers bring an allocator of their own")
class RefusedAllocations(RefusalTest):
    def runsOf(self, *options, **settings):
        self.giveFaultJob(JOB)
        runs = super().runsOf(*options, **settings)
        self.assertGreater(len(runs), 100)
        return runs

    def test_refused_once_it_ends_the_run_in_order_or_is_a_file_that_does_not_open(self):
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                runs = self.runsOf(*options, refusal=fails(errno.ENOMEM), silent=True)
                for run, outcome in runs:
                    self.assertIn(outcome, ("failed", "finished"), run)
                failed = [run for run, outcome in runs if outcome == "failed"]
                self.expectInOrder(failed)
                self.assertGreater(len(failed), 90)
                seen = collections.Counter(self.nameOf(run) for run, outcome in runs if outcome == "finished")
                # Every file that is opened meets its refusal: 2 openings that look empty are told apart by no byte.
                self.assertEqual({name: count for name, count in seen.items() if name != "right"}, {
                    "a.xyz not looked into or not counted": 2, "c.txt not looked into or not counted": 2,
                    "a.xyz not read": 1, "b.csv not read": 1, "c.txt not read": 1,
                    "a.xyz not written": 1, "c.txt not written": 1, "no count": 1})

    def expectInOrder(self, failed):
        for run in failed:
            self.assertTrue(run.console in (b"std::bad_alloc\n", NOT_FOUND) or run.console.startswith(
                b"boost::filesystem::directory_iterator::construct: "), run)
            outputs = self.checkOutputs(run, wholeLines=True)
            if COUNT_FILE in outputs:
                # The one refusal came behind the passes.
                self.checkComplete(outputs)

    def results(self):
        """What a run may end with that goes on after its one refused allocation, each with its console.

        Opening a file takes memory: without it the file is one that cannot be opened.
        """
        right = {**self.finished(), COUNT_FILE: b"%d\n" % self.kept}
        results = {"right": (b"", right), "no count": (b"", self.finished()),
                   # To write a number takes memory too where a language has been set up.
                   "empty count": (b"", {**right, COUNT_FILE: b""})}
        for name, (_, kept) in JOB.items():
            others = {other: content for other, content in right.items() if other != name}
            lines = kept.count(b"\n")
            # The pass reports an empty header, leaves the output it has opened, and counts one.
            results[f"{name} not read"] = (b"\n", {**others, name: b"", COUNT_FILE: b"%d\n" % (self.kept - lines + 1)})
            if lines > 0:
                results[f"{name} not looked into or not counted"] = (
                    b"", {**others, COUNT_FILE: b"%d\n" % (self.kept - lines)})
                # Written to nowhere, and counted.
                results[f"{name} not written"] = (b"", others)
        return results

    def nameOf(self, run):
        """Which of the results a run has: exactly one."""
        outputs = self.checkOutputs(run, wholeLines=True)
        self.assertEqual(run.tree["base/out"], DIRECTORY)
        names = [name for name, result in self.results().items() if result == (run.console, outputs)]
        self.assertEqual(len(names), 1, (run.status, run.console, outputs))
        return names[0]

    def test_refused_once_during_the_set_up_of_catalogues_it_may_end_the_process_with_nothing_done(self):
        for run, outcome in self.runsOf("-lang=de", "-pipe", refusal=fails(errno.ENOMEM), stride=7, silent=True):
            if outcome == "finished":
                self.nameOf(run)
            if outcome == "ended":
                self.assertTrue(run.errors.startswith(ENDED), run)
                self.assertEqual((run.status, run.console, run.messages), (-6, b"", []))
                self.assertNotIn("base/out", run.tree)

    def test_refused_for_good_it_leaves_whole_lines_and_no_word_of_success(self):
        # Reporting takes memory as well: what is thrown while an error is reported ends the process.
        for run, outcome in self.runsOf("-lang=en", "-pipe", refusal=failsForever(errno.ENOMEM)):
            self.assertEqual(outcome, "ended", run)
            self.assertTrue(run.errors.startswith(ENDED), run)
            self.assertIn(run.console, (b"", b"std::bad_alloc\n", b"\nstd::bad_alloc\n"))


@unittest.skipIf(SANITIZED, "sanitizers bring an allocator of their own")
class RefusedOutsideOfTheGuardedRegion(RefusalTest):
    """Before the run proper, and while its exception is reported, a refusal ends the process abnormally."""

    def refusedOnce(self, *options, ended, **settings):
        """All runs with one refused allocation. So many of them end abnormally.

        @return the runs that do so, and the others
        """
        runs = self.runsOf(*options, refusal=fails(errno.ENOMEM), **settings)
        abnormal = [run for run, outcome in runs if outcome == "ended"]
        self.assertEqual(len(abnormal), ended, len(runs))
        for run in abnormal:
            self.assertEqual(run.status, -6, run)
            self.assertTrue(run.errors.startswith(ENDED), run)
        return abnormal, [run for run, outcome in runs if outcome != "ended"]

    def test_the_copies_of_long_arguments_end_the_process_with_nothing_done(self):
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveFaultJob(JOB)
                abnormal, inOrder = self.refusedOnce(*options, ended=3, arguments=LONG_ARGUMENTS, silent=True)
                for run in abnormal:
                    self.assertEqual((run.console, run.messages), (b"", []))
                    self.assertNotIn("base/out", run.tree)
                self.assertGreater(len(inOrder), 130)

    def test_the_usage_failure_ends_the_process_before_or_behind_its_line(self):
        line = os.fsencode(USAGE) + b"\n"
        for options, ended in ((["-lang=en"], 6), (["-lang=en", "-pipe"], 22)):
            with self.subTest(options=options):
                self.startOver()
                self.giveFaultJob({})
                abnormal, inOrder = self.refusedOnce(*options, ended=ended, arguments=(), undisturbed="failed")
                self.assertEqual({run.console for run in abnormal}, {b"", line})
                self.assertEqual({run.console for run in inOrder}, {line})
                for run in abnormal:
                    self.assertIn(run.messages, ([], [jsonError(USAGE)]))

    def test_a_run_ended_by_an_exception_may_end_without_its_closing_message(self):
        loop = {"base/data/loop.xyz": linkTo("loop.xyz")}
        for given, arguments, text, left in (
                ({}, ("base/data", "nodir/out", "area.xml"),
                 'boost::filesystem::create_directory: No such file or directory: "base/nodir/out"', None),
                (loop, ARGUMENTS,
                 'boost::filesystem::status: Too many levels of symbolic links: "base/data/loop.xyz"', DIRECTORY)):
            for options, ended in ((["-lang=en"], 4), (["-lang=en", "-pipe"], 20)):
                with self.subTest(text=text, options=options):
                    self.startOver()
                    self.giveFaultJob(JOB)
                    self.give(given)
                    abnormal, inOrder = self.refusedOnce(*options, ended=ended, arguments=arguments,
                                                         undisturbed="failed")
                    self.assertEqual({run.console for run in abnormal}, {b"", os.fsencode(text) + b"\n"})
                    for run in abnormal:
                        self.assertIn(run.messages, ([], [jsonError(text)]))
                        self.assertEqual(run.tree.get("base/out"), left)
                        self.assertEqual(self.checkOutputs(run, wholeLines=True), {})
                    self.expectExplained(inOrder, os.fsencode(text))

    def expectExplained(self, inOrder, text):
        """The refused allocation is told, or what it led to, or the library's own text, a part of which may be missing."""
        origin = text.split(b": ")[0] + b": "
        for run in inOrder:
            self.assertEqual(self.checkOutputs(run, wholeLines=True), {})
            self.assertTrue(run.console in (b"std::bad_alloc\n", NOT_FOUND) or run.console.startswith(
                (origin, b"boost::filesystem::directory_iterator::construct: ")), run)


def addressSpace(limit):
    return lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit))


@unittest.skipIf(SANITIZED, "sanitizers reserve more address space than any limit leaves")
class LimitedMemory(FaultTest):
    """A boundary and lines that take memory, under limits that begin where the process can just be started."""

    STEP = 32 << 10

    def setUp(self):
        super().setUp()
        jagged = [(10 + index % 2, index / 500) for index in range(5_000)]
        kept = b"1;1;" + b"k" * 1_000_000 + b"\n"
        self.giveFaultJob({"a.xyz": (b"x;y;z\n2;2;5\n" + kept + b"20;1;5\n3;3;5\n", b"2;2;5\n" + kept + b"3;3;5\n")},
                          area=boundary([(0, 0), *jagged, (0, 10)]))

    def lowestLimit(self):
        """The least at which the tool gets as far as its usage."""
        tooLow, enough = 1 << 20, 200 << 20
        while enough - tooLow > self.STEP:
            limit = (tooLow + enough) // 2
            run = self.start("-lang=en", beforeStart=addressSpace(limit))
            tooLow, enough = (tooLow, limit) if (run.status, run.errors) == (1, b"") else (limit, enough)
        return enough

    def test_it_ends_the_run_in_order_wherever_the_limit_falls(self):
        seen = []
        # Throwing an error takes memory too, in the language's own library: where that is refused, the process ends.
        limit = self.lowestLimit() + 4 * self.STEP
        while seen[-3:] != ["finished"] * 3:
            with self.subTest(limit=limit):
                run = self.clipPiped(beforeStart=addressSpace(limit))
                seen.append(self.check(run))
                self.assertIn(seen[-1], ("failed", "finished"), run)
                if seen[-1] == "failed":
                    self.assertIn(run.console, (b"std::bad_alloc\n", NOT_FOUND))
                    seen[-1] = f"{run.console} {sorted(run.tree)}"
                self.clearOutput()
            limit += self.STEP
            self.assertLess(limit, 300 << 20)
        self.assertGreater(len(seen), 30)
        self.assertGreater(len(set(seen)), 3, seen)


@unittest.skipIf(SANITIZED, "sanitizers bring an allocator of their own")
class ReleasedMemory(RefusalTest):
    def test_the_boundary_is_released_after_the_closing_message_on_every_way_out(self):
        # Its vertices are the only block of a mebibyte.
        self.giveJob({"a.xyz": b"x;y;z\n"}, boundary([(0, y) for y in range(20_000)]))
        environment = preloaded("VADELCLIP_FAILING_MEMORY", {"VADELCLIP_NOTED_SIZE": str(1 << 20)})
        for outputName, closingMessage in (("data", failedMessage()), ("missing/out", failedMessage()),
                                           ("out", finishMessage())):
            with self.subTest(output=outputName):
                run = self.start("base/data", outputName, "area.xml", environment=environment)
                self.assertEqual(run.messages[-4:], [*closingMessage, "free", "~MessageSender"])


if __name__ == "__main__":
    unittest.main()
