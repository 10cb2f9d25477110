"""The map of Vadelwatch beside everything else that it says: a map that fails swallows nothing."""
import errno
import json
import os
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from fault_checks import failingMemory, failsForever
from watching import HEADER, SANITIZED, TIME_LIMIT, WatchTest

INSIDE = b"1;1;5\n"
JOB = ("base/data", "out", "area.xml", "--lang=en")

# Finishes with an output of its own kind beside the count.
FINISHES = """
finish(count={count})
os.{call}(*{arguments}, os.path.join(os.path.dirname(sys.argv[1]), sys.argv[2], 'a.xyz'))
"""


class Map(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + INSIDE})

    def expectDifference(self, script):
        """The same words and status with a map as without one."""
        for options in ([], ["--map", "map.png"]):
            with self.subTest(options=options):
                self.standIn(script)
                watched = self.run_(*JOB, "--quiet", "--json", *options)
                self.assertEqual((3, 3), (watched.status, json.loads(watched.output)["exit_status"]))
                self.assertEqual(["Vadelwatch: the output files hold 0 nodes, total_node_count.txt says 1: 1 are missing.",
                                  "  a.xyz: not a regular file, its lines cannot be counted"], watched.errorLines())
                os.remove(self.path("base/out/a.xyz"))
        self.assertTrue(self.content("map.png").startswith(b"\x89PNG"))

    def test_an_output_that_is_a_fifo(self):
        self.expectDifference(FINISHES.format(count=1, call="mkfifo", arguments=()))

    def test_an_output_that_leads_to_a_device(self):
        self.expectDifference(FINISHES.format(count=1, call="symlink", arguments=("/dev/full",)))

    def withoutPicture(self, *options):
        """A run whose picture goes to a FIFO that nobody reads, up to where it waits for a reader."""
        os.mkfifo(self.path("map.svg"))
        process = self.start(*JOB, "--map", "map.svg", *options)
        os.set_blocking(process.stdout.fileno(), False)
        output = b""
        limit = time.monotonic() + TIME_LIMIT
        while not output.endswith(b"\n"):
            self.assertLess(time.monotonic(), limit, "the summary was not to be seen")
            output += process.stdout.read() or b""
            time.sleep(0.01)
        return process, output

    def test_a_signal_while_the_map_is_drawn_does_not_swallow_the_summary(self):
        process, output = self.withoutPicture("--json", "--quiet")
        self.assertEqual(1, json.loads(output)["nodes_kept"])
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))

    @unittest.skipIf(SANITIZED, "sanitizers have functions of their own for memory")
    def test_a_map_without_memory_is_told_behind_the_summary(self):
        # Only the picture and what it is counted in take blocks of this size.
        settings = {**failingMemory(failsForever(errno.ENOMEM)), "VADELCLIP_FAILING_SIZE": "1000000"}
        watched = self.job("--quiet", "--json", "--map", "map.png", "--lang=en", environment=settings)
        self.assertEqual(1, json.loads(watched.output)["nodes_kept"])
        self.assertEqual((2, ["Vadelwatch: The map map.png cannot be drawn: std::bad_alloc."]),
                         (watched.status, watched.errorLines()))
        self.assertFalse(os.path.exists(self.path("map.png")))


if __name__ == "__main__":
    unittest.main()
