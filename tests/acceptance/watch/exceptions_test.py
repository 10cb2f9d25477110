"""Vadelwatch without threads, which a run does not need, and without memory, when no tool may continue to run."""
import errno
import json
import os
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from engines import isRunning
from fault_checks import PASS, failing, failingMemory, fails, failsForever
from watching import HEADER, SANITIZED, WatchTest

JOB = ("base/data", "out", "area.xml", "--lang=en")

# Runs for minutes if it continues to run without Vadelwatch.
TALKS = """
parent = os.getppid()
open('new', 'w').write(str(os.getpid())); os.rename('new', 'pid')
for i in range(20):
    say(b'console %d\\n' % i); message(type='error', level=2, text=f'error {i}')
message(type='progress', percent=10.0)
time.sleep(0.15)
for _ in range(200):
    if os.getppid() == parent: break
    time.sleep(1)
finish()
"""


class WithoutThreads(WatchTest):
    def test_run_continues_without_a_count_of_lines(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2})
        settings = failing("pthread_create", "", failsForever(errno.EAGAIN))
        watched = self.run_(*JOB, "--json", environment=settings)
        self.assertEqual(0, watched.status)
        summary = json.loads(watched.output)
        self.assertEqual((None, None, 2, True), (summary["nodes_read"], summary["percent_kept"], summary["nodes_kept"],
                                                 summary["adds_up"]))
        self.assertEqual([], watched.errorLines())


@unittest.skipIf(SANITIZED, "sanitizers replace the allocator")
class WithoutMemory(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2})

    def withMemoryUpTo(self, allocations, last):
        """Runs with failing allocations. Expects that no tool continues to run."""
        settings = failingMemory(PASS * allocations, last, countTo=self.path("calls"))
        watched = self.run_(*JOB, "--json", environment={**settings, "VADELCLIP_FAILING_PROGRAM": "Vadelwatch"})
        if os.path.exists(self.path("pid")):
            self.waitForEndOf(int(self.content("pid")), f"after {allocations} allocations")
            os.remove(self.path("pid"))
        return watched

    def waitForEndOf(self, pid, when):
        """The kernel ends the tool if Vadelwatch cannot."""
        self.waitUntil(lambda: not isRunning(pid), f"the end of the tool {when}")

    def allocationsOfARun(self):
        path = self.path("calls")
        settings = {**failingMemory(countTo=path), "VADELCLIP_FAILING_PROGRAM": "Vadelwatch"}
        self.assertEqual(0, self.run_(*JOB, "--json", "--quiet", environment=settings).status)
        return int(self.content("calls"))

    def test_one_refused_allocation_leaves_no_tool(self):
        self.standIn(TALKS)
        count = self.allocationsOfARun()
        sentences = set()
        for allocations in range(0, count, max(1, count // 40)):
            watched = self.withMemoryUpTo(allocations, fails(errno.ENOMEM))
            sentences.update(line for line in watched.errorLines() if line.startswith("Vadelwatch: watching"))
            # Some library functions cannot throw and end the process.
            self.assertIn(watched.status, (0, 1, 3, 4, -signal.SIGABRT), f"{allocations}: {watched}")
        self.assertEqual({"Vadelwatch: watching the run failed (std::bad_alloc), "
                          "so Vadelclip was ended. The output in base/out is not complete."}, sentences)

    def test_lasting_refusal_of_memory_leaves_no_tool(self):
        self.standIn(TALKS)
        count = self.allocationsOfARun()
        for allocations in range(0, count, max(1, count // 20)):
            if self.withMemoryUpTo(allocations, failsForever(errno.ENOMEM)).status == 0:
                # Their number depends on the blocks in which the output of the tool is read.
                self.assertLessEqual(int(self.content("calls")), allocations)


if __name__ == "__main__":
    unittest.main()
