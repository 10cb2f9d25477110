"""The count file at the end of a run."""
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


class CountFile(AcceptanceTest):
    def test_a_run_that_keeps_nothing_leaves_the_count_file_alone_with_0(self):
        self.giveJob({"a.xyz": HEADER + OUTSIDE * 3, "b.xyz": HEADER})
        counts = [{"a.xyz": 3, "b.xyz": 0}[name] for name in self.walkOrder()]
        run = self.clip()
        self.assertEqual(run.tree["base/out/total_node_count.txt"], inTextMode(b"0\n"))
        self.expectFinished(run, 0, {}, lineCounts=counts)

    def test_three_points_inside_are_3(self):
        self.giveJob({"a.xyz": HEADER + (INSIDE + OUTSIDE) * 3})
        run = self.clip()
        self.assertEqual(run.tree["base/out/total_node_count.txt"], inTextMode(b"3\n"))
        self.expectFinished(run, 3, {"a.xyz": HEADER + INSIDE * 3}, lineCounts=[6])

    def test_the_count_is_one_sum_over_all_files(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5, "c.xyz": HEADER + OUTSIDE})
        counts = [{"a.xyz": 2, "b.xyz": 5, "c.xyz": 1}[name] for name in self.walkOrder()]
        run = self.clip()
        self.assertEqual(run.tree["base/out/total_node_count.txt"], inTextMode(b"7\n"))
        self.expectFinished(run, 7, {"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5}, lineCounts=counts)

    def test_a_large_count_is_plain_digits(self):
        content = HEADER + INSIDE * 12_345
        self.giveJob({"a.xyz": content})
        run = self.clip("-lang=de_DE", tool=TOOL)
        self.assertEqual(run.tree["base/out/total_node_count.txt"], inTextMode(b"12345\n"))
        self.expect(run, status=0, created=output(12_345, {"a.xyz": content}))

    def test_an_input_file_of_its_name_is_counted_and_its_output_overwritten(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 4})
        self.expectFinished(self.clip(), 4, lineCounts=[4])

    def test_a_run_without_input_files_has_no_count_file(self):
        self.giveJob({})
        self.expectFailed(self.clip(), "There are no input files.", created={"base/out": DIRECTORY})

    def test_a_run_ended_by_a_thrown_error_has_no_count_file(self):
        # A directory that is not empty stands where the output of a file without kept nodes would be removed.
        self.giveJob({})
        self.serve("base/data/a.xyz", [lambda: os.makedirs(self.path("base/out/a.xyz/full")), HEADER + OUTSIDE],
                   HEADER + OUTSIDE,
                   HEADER + OUTSIDE)
        run = self.clip()
        text, = run.consoleLines()
        self.assertTrue(text.startswith("boost::filesystem::remove: "), text)
        self.expect(run, status=1, console=[text], created={"base/out/a.xyz/full": DIRECTORY},
                    messages=recorded(filePass(1), errorMessage(text), failedMessage()))

    def test_the_closing_progress_comes_before_the_file_is_opened_and_the_finish_after_it_is_written(self):
        name = self.path("base/out/total_node_count.txt")
        seen = []

        def readAfterClosingProgress():
            closed = ["OnProgress 100 false", "end ProgressMessage"]
            self.waitFor(lambda: self.messagesSoFar()[-2:] == closed, "closing progress")
            time.sleep(0.05)
            seen.append(self.messagesSoFar()[-1])  # still: the tool waits for a reader of the count file
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
            "base/out/a.xyz": content, "base/out/total_node_count.txt": FIFO})


class UnwritableCountFile(AcceptanceTest):
    """Nothing about the count file is tested by the tool, so the run ends as if it had been written."""

    def clipWith(self, prepare):
        content = HEADER + INSIDE
        self.giveJob({})
        self.serve("base/data/a.xyz", [prepare, content], content, content)
        return self.clip()

    def expectSilence(self, run, created):
        self.expect(run, status=0, created={"base/out/a.xyz": HEADER + INSIDE, **created}, messages=finishedRun(1))

    def test_a_directory_in_its_place_goes_unnoticed(self):
        name = "base/out/total_node_count.txt"
        self.expectSilence(self.clipWith(lambda: os.mkdir(self.path(name))), {name: DIRECTORY})

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_a_full_disk_goes_unnoticed(self):
        name = "base/out/total_node_count.txt"
        self.expectSilence(self.clipWith(lambda: os.symlink("/dev/full", self.path(name))), {name: linkTo("/dev/full")})

    def test_a_longer_file_in_its_place_is_cut_off(self):
        name = "base/out/total_node_count.txt"
        self.expectSilence(self.clipWith(lambda: Path(self.path(name)).write_bytes(b"12345678\n9\n")), {name: b"1\n"})


if __name__ == "__main__":
    unittest.main()
