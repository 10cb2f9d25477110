"""Read errors at every byte, in each of the three openings of a node file and in the boundary file.

The tool treats a read error as the end of the file. It clips a line that an error has cut short.
"""
import errno
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SQUARE, output
from expected_messages import BAD_SEPARATOR, BAD_SHAPE, closingRange, errorMessage, finishMessage, recorded
from fault_checks import PASS, FaultTest, failing, fails, failsForever, takes, takesForever

HEADER = b"x;y;z\n"
NODES = HEADER + b"1;1;5\n20;2;6\n2.5;2.5;7\n3;3;\n"
KEPT = HEADER + b"1;1;5\n2.5;2.5;7\n3;3;\n"
NO_FILES = "There are no input files."


def keptOf(lines):
    """Returns the lines inside the square, if they have both numbers and a separator after each."""
    matches = [(line, re.match(rb"([\d.]+);([\d.]+);", line)) for line in lines]
    return [line for line, match in matches if match and all(float(value) <= 10 for value in match.groups())]


def cutAt(length):
    """Returns the outcomes of the reads of a file with an error after its first `length` bytes."""
    return ([takes(length)] if length else []) + [failsForever(errno.EIO)]


def outputOf(kept):
    return {"a.xyz": HEADER + b"".join(line + b"\n" for line in kept)} if kept else {}


class ReadingTest(FaultTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": NODES})

    def clipFailing(self, opening, *outcomes, path="data/a.xyz", call="read"):
        self.clearOutput()
        return self.clip(environment=failing(call, path, *outcomes, opening=opening))


class NodeFiles(ReadingTest):
    def test_error_in_the_header_at_the_first_opening_skips_the_file(self):
        for length in range(len(b"x;y;z")):
            with self.subTest(length=length):
                run = self.clipFailing(1, *cutAt(length))
                self.expectFailed(run, NO_FILES, created={"base/out": DIRECTORY})

    def test_error_after_the_header_of_the_walk_changes_nothing(self):
        for length in range(len(b"x;y;z"), len(NODES)):
            with self.subTest(length=length):
                self.expectFinished(self.clipFailing(1, *cutAt(length)), 3, {"a.xyz": KEPT}, lineCounts=[4])

    def test_error_in_the_count_limits_the_lines_read(self):
        for length in range(len(NODES) + 1):
            with self.subTest(length=length):
                lineCount = NODES[:length].count(b"\n") - 1
                kept = keptOf(NODES.split(b"\n")[1:][:max(lineCount, 0)])
                self.expectFinished(self.clipFailing(2, *cutAt(length)), len(kept), outputOf(kept), [lineCount])

    def test_error_in_the_pass_clips_the_bytes_before_it(self):
        for length in range(len(b"x;y;z"), len(NODES) + 1):
            with self.subTest(length=length):
                kept = keptOf(NODES[:length].split(b"\n")[1:])
                self.expectFinished(self.clipFailing(3, *cutAt(length)), len(kept), outputOf(kept), lineCounts=[4])

    def test_error_in_the_header_of_the_pass_is_a_bad_header(self):
        for length, text in enumerate(("", BAD_SEPARATOR, BAD_SHAPE, BAD_SHAPE, BAD_SHAPE)):
            with self.subTest(length=length):
                self.expect(self.clipFailing(3, *cutAt(length)), status=0, console=[text],
                            created=output(1, {"a.xyz": b""}),
                            messages=recorded(errorMessage(text), closingRange(), finishMessage()))

    def test_late_error_in_a_large_file_keeps_earlier_lines(self):
        lines = [b"%d;1;%d\n" % (number % 20, number) for number in range(40_000)]
        self.startOver()
        self.giveJob({"a.xyz": HEADER + b"".join(lines)})
        for opening, read in ((2, 3), (3, 2)):
            with self.subTest(opening=opening):
                run = self.clipFailing(opening, PASS * read, failsForever(errno.EIO))
                self.checkInputs(run)
                got = run.tree["base/out/a.xyz"]
                whole = HEADER + b"".join(line for line in lines if int(line.split(b";")[0]) <= 10)
                self.assertTrue(8000 < len(got) < len(whole) // 2)
                self.assertTrue(whole.startswith(got[:got.rindex(b"\n", 0, -1)]))
                self.assertEqual(run.tree["base/out/total_node_count.txt"], b"%d\n" % (got.count(b"\n") - 1))

    def test_interrupted_and_short_reads_change_nothing(self):
        for opening in (1, 2, 3):
            for outcomes in ((fails(errno.EINTR),) * 3, (takes(1), fails(errno.EINTR)) * 12, (takesForever(1),),
                             (takesForever(5),)):
                with self.subTest(opening=opening, outcomes=outcomes):
                    self.expectFinished(self.clipFailing(opening, *outcomes), 3, {"a.xyz": KEPT}, lineCounts=[4])

    def test_error_in_one_file_does_not_affect_another(self):
        self.give({"base/data/b.xyz": NODES})
        run = self.clipFailing(1, failsForever(errno.EIO))
        self.expectFinished(run, 3, {"b.xyz": KEPT}, lineCounts=[4])


class BoundaryFile(ReadingTest):
    def test_error_anywhere_means_not_found(self):
        for length in range(0, len(SQUARE), 5):
            with self.subTest(length=length):
                run = self.clipFailing(0, *cutAt(length), path="area.xml", call="fread")
                self.expectFailed(run, "Boundary file area.xml not found", "Boundary file area.xml does not exist")


if __name__ == "__main__":
    unittest.main()
