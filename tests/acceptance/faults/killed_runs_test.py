"""Runs killed at random moments: each output is a prefix of the right one and ends with a line end if lines are short.

VADELCLIP_KILLS sets the number of killed runs.
"""
import collections
import os
import random
import statistics
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED
from engines import processStatus
from fault_checks import COUNT_FILE, PASS, STOP, FaultTest, failing

FILES, LINES = 10, 4000
KILLS = int(os.environ.get("VADELCLIP_KILLS", 40 if SANITIZED else 200))

# Every line has eight bytes, so no line crosses a page boundary of memory. A killed process can leave part of a line
# only if the system stops it between two pages of one write.
HEADER, INSIDE, OUTSIDE = b"x;y;z;g\n", b"1;1;1;1\n", b"1;1e9;1\n"
# Each of these lines takes many pages.
LONG_LINES, LONG = 30, b"1;1;1;1 " + b"k" * 400_000 + b"\n"


class KillingTest(FaultTest):
    def secondsOfARun(self):
        """Returns the time from the start of a run until it writes its count file."""
        seconds = []
        for _ in range(5):
            self.clearOutput()
            begin = time.time()
            run = self.clipPiped()
            self.assertEqual(self.check(run), "finished")
            seconds.append(os.stat(self.path(f"base/out/{COUNT_FILE}")).st_mtime - begin)
        return max(statistics.median(seconds), 0.001)

    def clipAndKill(self, wait, **settings):
        """Starts a run, and kills it as soon as `wait` returns."""
        self.process = None

        def kill():
            while self.process is None:
                time.sleep(0.0001)
            wait()
            self.process.kill()

        killer = threading.Thread(target=kill, daemon=True)
        killer.start()
        run = self.clipPiped(**settings)
        killer.join()
        return run

    def killRuns(self, kills, wholeLines):
        """Kills `kills` runs, and more if too few were killed during the passes: a busy machine starts a run late."""
        source = random.Random(12)
        seconds = self.secondsOfARun()
        moments = collections.Counter()
        for number in range(20 * kills):
            if number >= kills and moments["in the passes"] > kills // 20:
                break
            self.clearOutput()
            delay = source.uniform(0, seconds)
            with self.subTest(number=number, delay=delay):
                run = self.clipAndKill(lambda: time.sleep(delay))
                self.assertIn(run.status, (0, -9))
                # A leak checker that is killed with the run may already have written part of a report.
                self.assertEqual((run.console, b"" if SANITIZED else run.errors), (b"", b""))
                self.check(run, wholeLines=wholeLines)
                moment = self.momentOf(run)
                moments[moment] += 1
                # The machine may be less or more busy than during the measurement.
                seconds *= {"before the passes": 1.05, "too late": 0.95}.get(moment, 1.0)
                moments["part of a line"] += self.hasPartOfALine(run)
        print(f"{number} kills: {dict(moments)}")
        self.assertGreater(moments["in the passes"], kills // 20, moments)

    def waitUntilStopped(self):
        self.waitFor(lambda: processStatus(self.process.pid)[0] == "T", "a process that has stopped itself")

    def momentOf(self, run):
        outputs = [path for path in run.tree if path.startswith("base/out/")]
        if run.status == 0:
            return "too late"
        if not outputs:
            return "before the passes"
        return "after the passes" if f"base/out/{COUNT_FILE}" in outputs else "in the passes"

    def hasPartOfALine(self, run):
        return any(content and not content.endswith(b"\n") for path, content in run.tree.items()
                   if path.startswith("base/out/"))


class ShortLines(KillingTest):
    def setUp(self):
        super().setUp()
        source = random.Random(11)
        self.giveFaultJob({f"{number}.xyz": self.nodeFile(source, kept=number != 0) for number in range(FILES)})

    def nodeFile(self, source, kept):
        lines = [INSIDE if kept and source.random() < 0.8 else OUTSIDE for _ in range(LINES)]
        return HEADER + b"".join(lines), INSIDE * lines.count(INSIDE)

    def test_killed_run_leaves_whole_lines(self):
        self.killRuns(KILLS, wholeLines=True)

    def test_killed_run_can_be_repeated_after_cleaning_up(self):
        run = self.clipAndKill(self.waitUntilStopped, environment=failing("write", "/out/5.xyz", PASS * 100 + STOP))
        self.assertEqual(self.momentOf(run), "in the passes")
        left = {path: content for path, content in run.tree.items() if path.startswith("base/out")}
        text = "Output directory base/out already exists, aborting in order avoid overwriting of existing data"
        again = self.clip("-lang=en")
        self.assertEqual((again.status, again.console), (1, text.encode() + b"\n"))
        self.assertEqual({path: again.tree[path] for path in left}, left)
        self.clearOutput()
        self.assertEqual(self.check(self.clipPiped()), "finished")


class LinesOfManyPages(KillingTest):
    def test_killed_run_leaves_a_prefix_of_the_result(self):
        self.giveFaultJob({f"{number}.xyz": (HEADER + LONG * LONG_LINES, LONG * LONG_LINES) for number in range(2)})
        self.killRuns(KILLS // 4, wholeLines=False)


if __name__ == "__main__":
    unittest.main()
