"""Allocations that fail: each single allocation of a run, all from each one on, and under limits of every size."""
import errno
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, TOOL, boundary, limitMemory, linkTo
from expected_messages import USAGE, failedMessage, finishMessage, jsonError
from fault_checks import COUNT_FILE, PASS, FaultTest, fails, failsForever, failingMemory, preloaded

LONG = b"3;3;" + b"k" * 3000 + b"\n"
JOB = {"a.xyz": (b"x;y;z\n1;1;5\n20;1;5\n" + LONG + b"4;4;5\n", b"1;1;5\n" + LONG + b"4;4;5\n"),
       "b.csv": (b"X,Y,Z\n20,1,5\n", b""),
       "c.txt": (b"x y z g\r\n5 5 1 1\r\n6 6 2 2\r\n", b"5 5 1 1\n6 6 2 2\n")}
NOT_FOUND = b"Boundary file area.xml not found\nBoundary file area.xml does not exist\n"
ENDED = b"terminate called after throwing an instance of "
ARGUMENTS = "base/data", "out", "area.xml"
# Too long for a string without an allocation.
LONG_ARGUMENTS = "././././././base/data", "././././././././out", "./././././area.xml"


class RefusalTest(FaultTest):
    def runsOf(self, *options, refusal, arguments=ARGUMENTS, undisturbed="finished", stride=1, silent=False):
        """Runs the tool once for each allocation and refuses that one. Returns each run with the result of `check`.

        @param undisturbed  how a run ends in which nothing is refused
        @param stride       tries only every `stride`-th allocation
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


@unittest.skipIf(SANITIZED, "sanitizers replace the allocator")
class RefusedAllocations(RefusalTest):
    def runsOf(self, *options, **settings):
        self.giveFaultJob(JOB)
        return super().runsOf(*options, **settings)

    def test_one_refusal_fails_the_run_or_the_opening_of_a_file(self):
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                runs = self.runsOf(*options, refusal=fails(errno.ENOMEM), silent=True)
                self.assertEqual({outcome for _, outcome in runs}, {"failed", "finished"})
                self.expectInOrder([run for run, outcome in runs if outcome == "failed"])
                # Opening a file allocates, so the refusals reach every opening. The first two openings of a file have
                # the same result.
                self.assertEqual({self.nameOf(run) for run, outcome in runs if outcome == "finished"} - {"right"}, {
                    "a.xyz not selected or not counted", "c.txt not selected or not counted",
                    "a.xyz not read", "b.csv not read", "c.txt not read",
                    "a.xyz not written", "c.txt not written", "no count"})

    def expectInOrder(self, failed):
        for run in failed:
            self.assertTrue(run.console in (b"std::bad_alloc\n", NOT_FOUND) or run.console.startswith(
                b"boost::filesystem::directory_iterator::construct: "), run)
            outputs = self.checkOutputs(run, wholeLines=True)
            if COUNT_FILE in outputs:
                # The refusal happened after the passes.
                self.checkComplete(outputs)

    def results(self):
        """Returns the possible results of a run that finishes although one allocation is refused: console and outputs.

        Opening a file allocates: a refusal there makes the opening fail.
        """
        right = {**self.finished(), COUNT_FILE: b"%d\n" % self.kept}
        results = {"right": (b"", right), "no count": (b"", self.finished()),
                   # Writing a number allocates if a language has been set up.
                   "empty count": (b"", {**right, COUNT_FILE: b""})}
        for name, (_, kept) in JOB.items():
            others = {other: content for other, content in right.items() if other != name}
            lines = kept.count(b"\n")
            # The pass reports an empty header, leaves the empty output, and counts one line.
            results[f"{name} not read"] = (b"\n", {**others, name: b"", COUNT_FILE: b"%d\n" % (self.kept - lines + 1)})
            if lines > 0:
                results[f"{name} not selected or not counted"] = (
                    b"", {**others, COUNT_FILE: b"%d\n" % (self.kept - lines)})
                # The output is not open: its lines are lost but counted.
                results[f"{name} not written"] = (b"", others)
        return results

    def nameOf(self, run):
        """Returns the name of the one result that the run has."""
        outputs = self.checkOutputs(run, wholeLines=True)
        self.assertEqual(run.tree["base/out"], DIRECTORY)
        names = [name for name, result in self.results().items() if result == (run.console, outputs)]
        self.assertEqual(len(names), 1, (run.status, run.console, outputs))
        return names[0]

    def test_refusal_at_a_line_keeps_the_lines_before_it(self):
        # A long line with a number out of range takes memory, and so does the first point at a polygon of two vertices.
        square, segment = [(0, 0), (10, 0), (10, 10), (0, 10)], [(20, 20), (30, 20)]
        for name, needy in (("range", b"1;1e999;" + b"5" * 40 + b"\n"), ("segment", b"25;20;5\n")):
            with self.subTest(line=needy):
                self.startOver()
                kept = b"1;1;5\n2;2;5\n" + (needy if name == "segment" else b"") + b"3;3;5\n"
                self.giveFaultJob({"a.xyz": (b"x;y;z\n1;1;5\n2;2;5\n" + needy + b"3;3;5\n", kept)},
                                  area=boundary(square, segment))
                runs = RefusalTest.runsOf(self, "-lang=en", refusal=fails(errno.ENOMEM), silent=True)
                failed = [run.tree["base/out/a.xyz"] for run, outcome in runs
                          if outcome == "failed" and "base/out/a.xyz" in run.tree]
                self.assertIn(b"x;y;z\n1;1;5\n2;2;5\n", failed)

    def test_one_refusal_during_catalogue_set_up_may_end_the_process(self):
        for run, outcome in self.runsOf("-lang=de", "-pipe", refusal=fails(errno.ENOMEM), stride=7, silent=True):
            if outcome == "finished":
                self.nameOf(run)
            if outcome == "ended":
                self.assertTrue(run.errors.startswith(ENDED), run)
                self.assertEqual((run.status, run.console, run.messages), (-6, b"", []))
                self.assertNotIn("base/out", run.tree)

    def test_lasting_refusal_ends_the_process_without_finish_message(self):
        # Reporting allocates as well: an exception during the report of an error ends the process.
        for run, outcome in self.runsOf("-lang=en", "-pipe", refusal=failsForever(errno.ENOMEM)):
            self.assertEqual(outcome, "ended", run)
            self.assertTrue(run.errors.startswith(ENDED), run)
            self.assertIn(run.console, (b"", b"std::bad_alloc\n", b"\nstd::bad_alloc\n"))


@unittest.skipIf(SANITIZED, "sanitizers replace the allocator")
class RefusedOutsideOfTheGuardedRegion(RefusalTest):
    """A refusal before the run, or while its exception is reported, ends the process abnormally."""

    def refusedOnce(self, *options, **settings):
        """Runs the tool with one refusal at each allocation. Returns the runs that end abnormally, and the others."""
        runs = self.runsOf(*options, refusal=fails(errno.ENOMEM), **settings)
        abnormal = [run for run, outcome in runs if outcome == "ended"]
        for run in abnormal:
            self.assertEqual(run.status, -6, run)
            self.assertTrue(run.errors.startswith(ENDED), run)
        inOrder = [run for run, outcome in runs if outcome != "ended"]
        self.assertTrue(abnormal and inOrder)
        return abnormal, inOrder

    def test_refused_copy_of_an_argument_ends_the_process(self):
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveFaultJob(JOB)
                abnormal, _ = self.refusedOnce(*options, arguments=LONG_ARGUMENTS, silent=True)
                for run in abnormal:
                    self.assertEqual((run.console, run.messages), (b"", []))
                    self.assertNotIn("base/out", run.tree)

    def test_refusal_in_a_usage_failure_ends_the_process(self):
        line = os.fsencode(USAGE) + b"\n"
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveFaultJob({})
                abnormal, inOrder = self.refusedOnce(*options, arguments=(), undisturbed="failed")
                self.assertEqual({run.console for run in abnormal}, {b"", line})
                self.assertEqual({run.console for run in inOrder}, {line})
                for run in abnormal:
                    self.assertIn(run.messages, ([], [jsonError(USAGE)]))

    def test_refusal_during_an_exception_may_end_the_process(self):
        loop = {"base/data/loop.xyz": linkTo("loop.xyz")}
        for given, arguments, text, left in (
                ({}, ("base/data", "nodir/out", "area.xml"),
                 'boost::filesystem::create_directory: No such file or directory: "base/nodir/out"', None),
                (loop, ARGUMENTS,
                 'boost::filesystem::status: Too many levels of symbolic links: "base/data/loop.xyz"', DIRECTORY)):
            for options in (["-lang=en"], ["-lang=en", "-pipe"]):
                with self.subTest(text=text, options=options):
                    self.startOver()
                    self.giveFaultJob(JOB)
                    self.give(given)
                    abnormal, inOrder = self.refusedOnce(*options, arguments=arguments, undisturbed="failed")
                    self.assertEqual({run.console for run in abnormal}, {b"", os.fsencode(text) + b"\n"})
                    for run in abnormal:
                        self.assertIn(run.messages, ([], [jsonError(text)]))
                        self.assertEqual(run.tree.get("base/out"), left)
                        self.assertEqual(self.checkOutputs(run, wholeLines=True), {})
                    self.expectExplained(inOrder, os.fsencode(text))

    def expectExplained(self, inOrder, text):
        """Expects the report of the refused allocation, of its effect, or of the library, whose text may be cut."""
        origin = text.split(b": ")[0] + b": "
        for run in inOrder:
            self.assertEqual(self.checkOutputs(run, wholeLines=True), {})
            self.assertTrue(run.console in (b"std::bad_alloc\n", NOT_FOUND) or run.console.startswith(
                (origin, b"boost::filesystem::directory_iterator::construct: ")), run)


@unittest.skipIf(SANITIZED, "sanitizers reserve more address space than any limit leaves")
class LimitedMemory(FaultTest):
    """A boundary and lines that need memory, under limits from the lowest at which the process starts."""

    STEP = 32 << 10

    def setUp(self):
        super().setUp()
        jagged = [(10 + index % 2, index / 500) for index in range(5_000)]
        kept = b"1;1;" + b"k" * 1_000_000 + b"\n"
        self.giveFaultJob({"a.xyz": (b"x;y;z\n2;2;5\n" + kept + b"20;1;5\n3;3;5\n", b"2;2;5\n" + kept + b"3;3;5\n")},
                          area=boundary([(0, 0), *jagged, (0, 10)], *[[]] * 2_000))

    def lowestLimit(self):
        """Returns the lowest limit at which the tool reports its usage."""
        tooLow, enough = 1 << 20, 200 << 20
        while enough - tooLow > self.STEP:
            limit = (tooLow + enough) // 2
            run = self.start("-lang=en", beforeStart=limitMemory(limit))
            tooLow, enough = (tooLow, limit) if (run.status, run.errors) == (1, b"") else (limit, enough)
        return enough

    def test_every_limit_fails_or_finishes_the_run(self):
        seen = []
        # Throwing an exception allocates in the C++ library: a refusal there ends the process.
        limit = self.lowestLimit() + 4 * self.STEP
        while seen[-3:] != ["finished"] * 3:
            with self.subTest(limit=limit):
                run = self.clipPiped(beforeStart=limitMemory(limit))
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


@unittest.skipIf(SANITIZED, "sanitizers replace the allocator")
class ReleasedMemory(RefusalTest):
    def test_boundary_is_released_after_the_closing_message(self):
        # Its vertices are the only block of at least one mebibyte.
        self.giveJob({"a.xyz": b"x;y;z\n"}, boundary([(0, y) for y in range(20_000)]))
        environment = preloaded("VADELCLIP_FAILING_MEMORY", {"VADELCLIP_NOTED_SIZE": str(1 << 20)})
        for outputName, closingMessage in (("data", failedMessage()), ("missing/out", failedMessage()),
                                           ("out", finishMessage())):
            with self.subTest(output=outputName):
                run = self.start("base/data", outputName, "area.xml", environment=environment)
                self.assertEqual(run.messages[-4:], [*closingMessage, "free", "~MessageSender"])


if __name__ == "__main__":
    unittest.main()
