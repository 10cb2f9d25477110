"""The count file that a run writes at its end."""
import os
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, FIFO, TOOL, AcceptanceTest, linkTo, output
from expected_messages import errorMessage, failedMessage, filePass, finishedRun, recorded
from target_platform import inTextMode

HEADER = b"x;y;z\n"
INSIDE = b"1;1;5\n"
OUTSIDE = b"20;1;5\n"


COUNT = "base/out/total_node_count.txt"


class CountFile(AcceptanceTest):
    def test_run_that_keeps_nothing_writes_0(self):
        self.giveJob({"a.xyz": HEADER + OUTSIDE * 3, "b.xyz": HEADER})
        counts = [{"a.xyz": 3, "b.xyz": 0}[name] for name in self.walkOrder()]
        run = self.clip()
        self.assertEqual(run.tree[COUNT], inTextMode(b"0\n"))
        self.expectFinished(run, 0, {}, lineCounts=counts)

    def test_three_points_inside_count_3(self):
        self.giveJob({"a.xyz": HEADER + (INSIDE + OUTSIDE) * 3})
        run = self.clip()
        self.assertEqual(run.tree[COUNT], inTextMode(b"3\n"))
        self.expectFinished(run, 3, {"a.xyz": HEADER + INSIDE * 3}, lineCounts=[6])

    def test_count_is_the_sum_over_all_files(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5, "c.xyz": HEADER + OUTSIDE})
        counts = [{"a.xyz": 2, "b.xyz": 5, "c.xyz": 1}[name] for name in self.walkOrder()]
        run = self.clip()
        self.assertEqual(run.tree[COUNT], inTextMode(b"7\n"))
        self.expectFinished(run, 7, {"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5}, lineCounts=counts)

    def test_large_count_is_plain_digits(self):
        content = HEADER + INSIDE * 12_345
        self.giveJob({"a.xyz": content})
        run = self.clip("-lang=de_DE", tool=TOOL)
        self.assertEqual(run.tree[COUNT], inTextMode(b"12345\n"))
        self.expect(run, status=0, created=output(12_345, {"a.xyz": content}))

    def test_output_of_the_same_name_is_overwritten(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 4})
        self.expectFinished(self.clip(), 4, lineCounts=[4])

    def test_run_without_input_files_writes_no_count(self):
        self.giveJob({})
        self.expectFailed(self.clip(), "There are no input files.", created={"base/out": DIRECTORY})

    def test_run_ended_by_a_thrown_error_writes_no_count(self):
        # The output of a file without kept nodes is removed. Here it is a directory that is not empty.
        self.giveJob({})
        self.serve("base/data/a.xyz", [lambda: os.makedirs(self.path("base/out/a.xyz/full")), HEADER + OUTSIDE],
                   HEADER + OUTSIDE, HEADER + OUTSIDE)
        run = self.clip()
        text, = run.consoleLines()
        self.assertTrue(text.startswith("boost::filesystem::remove: "), text)
        self.expect(run, status=1, console=[text], created={"base/out/a.xyz/full": DIRECTORY},
                    messages=recorded(filePass(1), errorMessage(text), failedMessage()))

    def test_count_is_written_between_closing_progress_and_finish(self):
        name = self.path(COUNT)
        seen = []

        def readAfterClosingProgress():
            closed = ["OnProgress 100 false", "end ProgressMessage"]
            self.waitFor(lambda: self.messagesSoFar()[-2:] == closed, "closing progress")
            time.sleep(0.05)
            seen.append(self.messagesSoFar()[-1])  # unchanged, because the tool waits for a reader of the count file
            with open(name, "rb") as fifo:
                seen.append(fifo.read())

        def prepare():
            os.mkfifo(name)
            reader.start()

        reader = threading.Thread(target=readAfterClosingProgress, daemon=True)
        content = HEADER + INSIDE
        self.giveJob({})
        self.serve("base/data/a.xyz", [prepare, content], content, content)
        run = self.clip()
        reader.join(5)
        self.assertEqual(seen, ["end ProgressMessage", b"1\n"])
        self.expect(run, status=0, messages=finishedRun(1), created={
            "base/out/a.xyz": content, COUNT: FIFO})


class UnwritableCountFile(AcceptanceTest):
    """The tool does not check the count file, so the run ends as if it had been written."""

    def clipWith(self, prepare):
        content = HEADER + INSIDE
        self.giveJob({})
        self.serve("base/data/a.xyz", [prepare, content], content, content)
        return self.clip()

    def expectSilence(self, run, created):
        self.expect(run, status=0, created={"base/out/a.xyz": HEADER + INSIDE, **created}, messages=finishedRun(1))

    def test_directory_in_its_place_is_ignored(self):
        self.expectSilence(self.clipWith(lambda: os.mkdir(self.path(COUNT))), {COUNT: DIRECTORY})

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_full_disk_is_ignored(self):
        run = self.clipWith(lambda: os.symlink("/dev/full", self.path(COUNT)))
        self.expectSilence(run, {COUNT: linkTo("/dev/full")})

    def test_longer_file_in_its_place_is_truncated(self):
        self.expectSilence(self.clipWith(lambda: Path(self.path(COUNT)).write_bytes(b"12345678\n9\n")), {COUNT: b"1\n"})


if __name__ == "__main__":
    unittest.main()
