"""The count file that a run writes at its end. tests/clip/node_count_test.cpp tests files that cannot be written."""
import os
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import FIFO, TIME_LIMIT, AcceptanceTest
from expected_messages import finishedRun
from target_platform import inTextMode

HEADER = b"x;y;z\n"
INSIDE = b"1;1;5\n"
OUTSIDE = b"20;1;5\n"
COUNT = "base/out/total_node_count.txt"


class CountFile(AcceptanceTest):
    def test_count_is_the_sum_over_all_files(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5, "c.xyz": HEADER + OUTSIDE})
        counts = [{"a.xyz": 2, "b.xyz": 5, "c.xyz": 1}[name] for name in self.walkOrder()]
        run = self.clip()
        self.assertEqual(run.tree[COUNT], inTextMode(b"7\n"))
        self.expectFinished(run, 7, {"a.xyz": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE * 5}, lineCounts=counts)

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
        reader.join(TIME_LIMIT)
        self.assertEqual(seen, ["end ProgressMessage", b"1\n"])
        self.expect(run, status=0, messages=finishedRun(1), created={
            "base/out/a.xyz": content, COUNT: FIFO})


if __name__ == "__main__":
    unittest.main()
