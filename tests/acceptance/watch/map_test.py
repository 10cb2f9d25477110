"""The other output of Vadelwatch does not depend on the map, also if the map fails."""
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

# Finishes with an output that is not a regular file, and the count.
FINISHES = """
finish(count={count})
os.{call}(*{arguments}, os.path.join(os.path.dirname(sys.argv[1]), sys.argv[2], 'a.xyz'))
"""


class Map(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + INSIDE})

    def expectDifference(self, script):
        """Expects the same messages and status with a map and without one."""
        for options in ([], ["--map", "map.png"]):
            with self.subTest(options=options):
                self.standIn(script)
                watched = self.run_(*JOB, "--quiet", "--json", *options)
                self.assertEqual((3, 3), (watched.status, json.loads(watched.output)["exit_status"]))
                self.assertEqual(["Vadelwatch: the output files hold 0 nodes, total_node_count.txt says 1: 1 are missing.",
                                  "  a.xyz: not a regular file, its lines cannot be counted"], watched.errorLines())
                os.remove(self.path("base/out/a.xyz"))
        self.assertTrue(self.content("map.png").startswith(b"\x89PNG"))

    def test_outputIsAFifo(self):
        self.expectDifference(FINISHES.format(count=1, call="mkfifo", arguments=()))

    def test_outputIsALinkToADevice(self):
        self.expectDifference(FINISHES.format(count=1, call="symlink", arguments=("/dev/full",)))

    def withoutPicture(self, *options):
        """Starts a run whose picture is a FIFO without a reader, and waits for its summary."""
        os.mkfifo(self.path("map.svg"))
        process = self.start(*JOB, "--map", "map.svg", *options)
        os.set_blocking(process.stdout.fileno(), False)
        output = b""
        limit = time.monotonic() + TIME_LIMIT
        while not output.endswith(b"\n"):
            self.assertLess(time.monotonic(), limit, "there was no summary")
            output += process.stdout.read() or b""
            time.sleep(0.01)
        return process, output

    def test_summaryPrecedesSignalDuringMap(self):
        process, output = self.withoutPicture("--json", "--quiet")
        self.assertEqual(1, json.loads(output)["nodes_kept"])
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))

    @unittest.skipIf(SANITIZED, "sanitizers replace the functions for memory")
    def test_reportsMissingMemoryAfterSummary(self):
        # Only the picture and what it is counted in take blocks of this size.
        settings = {**failingMemory(failsForever(errno.ENOMEM)), "VADELCLIP_FAILING_SIZE": "1000000"}
        watched = self.job("--quiet", "--json", "--map", "map.png", "--lang=en", environment=settings)
        self.assertEqual(1, json.loads(watched.output)["nodes_kept"])
        self.assertEqual((2, ["Vadelwatch: The map map.png cannot be drawn: std::bad_alloc."]),
                         (watched.status, watched.errorLines()))
        self.assertFalse(os.path.exists(self.path("map.png")))


if __name__ == "__main__":
    unittest.main()
