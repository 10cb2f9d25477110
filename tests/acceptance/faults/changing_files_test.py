"""Node files that change between the three openings of a run, and outputs that cannot be written.

tests/clip/clip_node_file_streams_test.cpp tests the states of an output before the pass.
"""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, TOOL, AcceptanceTest, dropPowersOfRoot, output
from expected_messages import (BAD_FIRST_CHARACTER, BAD_SEPARATOR, BAD_SHAPE, closingRange, errorMessage, failedMessage,
                               filePass, finishedRun, finishMessage, recorded)

HEADER = b"x;y;z\n"
INSIDE = b"1;1;5\n2;2;5\n"
OUTSIDE = b"20;1;5\n"
OUTPUT = "base/out/a.xyz"


class ChangingTest(AcceptanceTest):
    def setUp(self):
        super().setUp()
        self.giveJob({})

    def clipServed(self, *openings, **settings):
        self.serve("base/data/a.xyz", *openings)
        return self.clip(**settings)

    def waitForOutput(self):
        self.waitFor(lambda: os.path.exists(self.path(OUTPUT)), "output file")


class ChangedInput(ChangingTest):
    def test_shorter_file_keeps_its_remaining_lines(self):
        run = self.clipServed(HEADER, HEADER + INSIDE * 3, HEADER + INSIDE)
        self.expectFinished(run, 2, {"a.xyz": HEADER + INSIDE}, lineCounts=[6])

    def test_grown_file_is_read_up_to_the_counted_lines(self):
        run = self.clipServed(HEADER, HEADER + b"\n", HEADER + INSIDE * 100)
        self.expectFinished(run, 1, {"a.xyz": HEADER + b"1;1;5\n"}, lineCounts=[1])

    @unittest.skipIf(SANITIZED, "too slow")
    def test_count_beyond_32_bits_wraps_around(self):
        lineFeeds = [b"\n" * 2**20] * 2**11  # 2^31 line feeds
        self.serve("base/data/a.xyz", HEADER, [HEADER, *lineFeeds], HEADER + INSIDE)
        self.serve("base/data/b.xyz", HEADER, [HEADER, *lineFeeds], HEADER + INSIDE)
        self.give({"base/data/c.xyz": HEADER + INSIDE})
        order = self.walkOrder()
        run = self.clip()
        counts = {"a.xyz": -2**31, "b.xyz": -2**31, "c.xyz": 2}
        # The sum of all counts wraps around to 2; the sum of the lines done does not.
        passes, done = [], 0
        for name in order:
            passes += filePass(counts[name], done, 2)
            done += counts[name]
        self.expect(run, status=0, created=output(2, {"c.xyz": HEADER + INSIDE}),
                    messages=recorded(passes, closingRange(), finishMessage()))

    def test_separator_is_read_at_the_last_opening(self):
        header = b"X,Y,Z,G\n"
        run = self.clipServed(HEADER, HEADER + INSIDE, header + b"1;1;5\n1,1,5\n")
        self.expectFinished(run, 1, {"a.xyz": header + b"1,1,5\n"}, lineCounts=[2])


class RejectedInLastOpening(ChangingTest):
    """The header is accepted twice and rejected at the last opening: the file counts as one kept line."""

    CASES = {b"y;x;z\n": BAD_FIRST_CHARACTER, b"x:y:z\n": BAD_SEPARATOR, b"x;y;z;\n1;1;1\n": BAD_SHAPE,
             b"": "", b"\n1;1;1\n": ""}

    def test_reports_the_error_and_leaves_an_empty_output(self):
        for content, text in self.CASES.items():
            with self.subTest(content=content):
                self.startOver()
                self.giveJob({})
                run = self.clipServed(HEADER, HEADER + INSIDE, content)
                self.expect(run, status=0, console=[text], created=output(1, {"a.xyz": b""}),
                            messages=recorded(errorMessage(text), closingRange(), finishMessage()))

    def test_file_removed_after_the_count_has_an_empty_error(self):
        run = self.clipServed(HEADER, [lambda: os.remove(self.path("base/data/a.xyz")), HEADER + INSIDE])
        self.expect(run, status=0, console=[""], created=output(1, {"a.xyz": b""}), removed=["base/data/a.xyz"],
                    messages=recorded(errorMessage(""), closingRange(), finishMessage()))

    def test_file_turned_directory_has_an_empty_error(self):
        def replace():
            os.remove(self.path("base/data/a.xyz"))
            os.mkdir(self.path("base/data/a.xyz"))

        for openings in ([[replace, HEADER + INSIDE]], [HEADER, [replace, HEADER + INSIDE]]):
            with self.subTest(openings=len(openings)):
                self.startOver()
                self.giveJob({})
                run = self.clipServed(*openings)
                self.given["base/data/a.xyz"] = DIRECTORY
                self.expect(run, status=0, console=[""], created=output(1, {"a.xyz": b""}),
                            messages=recorded(errorMessage(""), closingRange(), finishMessage()))

    def test_next_file_starts_after_the_lines_of_a_rejected_one(self):
        self.give({"base/data/b.xyz": HEADER + INSIDE * 2})
        run = self.clipServed(HEADER, HEADER + INSIDE, b"x:y:z\n")
        first = self.walkOrder()[0]
        error = errorMessage(BAD_SEPARATOR)
        passes = {"a.xyz": [error, filePass(4, linesDone=2, totalLines=6)],
                  "b.xyz": [filePass(4, linesDone=0, totalLines=6), error]}
        self.expect(run, status=0, console=[BAD_SEPARATOR],
                    created=output(5, {"a.xyz": b"", "b.xyz": HEADER + INSIDE * 2}),
                    messages=recorded(*passes[first], closingRange(), finishMessage()))


class UnusableOutput(ChangingTest):
    """The tool does not check its output files: it counts the lines as written."""

    def clipOnto(self, prepare, lines):
        """Calls `prepare` at the first opening of the input, when the output directory exists and is empty."""
        return self.clipServed([prepare, HEADER + lines], HEADER + lines, HEADER + lines)

    def test_unwritable_output_directory_stays_empty(self):
        self.give({"base/data/b.xyz": HEADER + INSIDE, "base/data/c.xyz": HEADER + OUTSIDE})
        lineCounts = [{"b.xyz": 2, "c.xyz": 1}[name] for name in self.walkOrder()]
        mask = os.umask(0o222)
        try:
            run = self.clip(beforeStart=dropPowersOfRoot)
        finally:
            os.umask(mask)
        self.expect(run, status=0, created={"base/out": DIRECTORY}, messages=finishedRun(*lineCounts))

    def test_counts_lines_of_an_output_path_too_long_to_open(self):
        # The path of the directory is short enough, the path of the file in it is not: a path has up to 4,095 bytes.
        name = "../base/" * 509 + "out"
        self.give({"base/data/a-longer-name.xyz": HEADER + INSIDE})
        self.assertTrue(4060 < len("base/" + name) < 4096 < len("base/" + name + "/a-longer-name.xyz"))
        run = self.start("base/data", name, "area.xml")
        self.expect(run, status=0, created={"base/out": DIRECTORY}, messages=finishedRun(2))

    def test_removed_output_is_no_error(self):
        run = self.clipServed(HEADER, HEADER + OUTSIDE, [HEADER, self.removeOutput, OUTSIDE])
        self.expectFinished(run, 0, lineCounts=[1])

    def removeOutput(self):
        self.waitForOutput()
        os.remove(self.path(OUTPUT))

    def test_output_that_cannot_be_removed_ends_the_run(self):
        self.give({"base/data/b.xyz": HEADER + INSIDE})
        self.serve("base/data/a.xyz", [lambda: os.makedirs(self.path(OUTPUT + "/full")), HEADER + OUTSIDE],
                   HEADER + OUTSIDE, HEADER + OUTSIDE)
        order = self.walkOrder()
        run = self.clip()
        text, = run.consoleLines()
        self.assertTrue(text.startswith("boost::filesystem::remove: "), text)
        created, passes = {"base/out": DIRECTORY, OUTPUT + "/full": DIRECTORY}, [filePass(1, 0, 3)]
        if order[0] == "b.xyz":  # finished before the error, so it stays
            created["base/out/b.xyz"] = HEADER + INSIDE
            passes = [filePass(2, 0, 3), filePass(1, 2, 3)]
        self.expect(run, status=1, console=[text], created=created,
                    messages=recorded(*passes, errorMessage(text), failedMessage()))

    def test_real_tool_counts_lines_it_could_not_write(self):
        run = self.clipServed([lambda: os.mkdir(self.path(OUTPUT)), HEADER], HEADER + INSIDE, HEADER + INSIDE,
                              tool=TOOL)
        self.expect(run, status=0, created={**output(2), OUTPUT: DIRECTORY})


if __name__ == "__main__":
    unittest.main()
