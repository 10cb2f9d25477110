"""The other output of Vadelwatch does not depend on the map, also if the map fails."""
import errno
import json
import os
import resource
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from fault_checks import failingMemory, failsForever
from pictures import PngPicture
from watching import HEADER, SANITIZED, TIME_LIMIT, WatchTest, signalsIn

INSIDE = b"1;1;5\n"
WARNING = (176, 0, 32)
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
                self.assertEqual(["Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 1, missing: 1.",
                                  "  a.xyz: not a regular file, its lines cannot be counted"], watched.errorLines())
                os.remove(self.path("base/out/a.xyz"))
        picture = PngPicture(self.content("map.png"))
        self.assertEqual(WARNING, picture.pixel(800, 100))

    def test_picture_of_correct_output_has_no_warning(self):
        self.expect(self.job("--quiet", "--map", "map.png"), status=0)
        self.assertNotEqual(WARNING, PngPicture(self.content("map.png")).pixel(800, 100))
        self.assertEqual([], [name for name in os.listdir(self.directory) if "part" in name])

    def test_failed_run_names_the_old_picture(self):
        os.mkdir(self.path("base/out"))
        self.give({"map.png": b"old"})
        watched = self.run_(*JOB, "--map", "map.png")
        self.assertEqual((1, "Vadelwatch: no map was drawn; map.png is from an earlier run."),
                         (watched.status, watched.errorLines()[-1]))
        self.assertEqual(b"old", self.content("map.png"))
        self.assertNotIn("map", self.run_(*JOB, "--map", "new.png").errors)

    def test_no_old_picture_remains_if_drawing_fails(self):
        self.give({"map.png": b"old", "area.xml": b"<VADELSIM><VadeDGM><a/></VadeDGM></VADELSIM>"})
        self.give({"base/data/a.xyz": HEADER})
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.png"), status=2, errors=[
            "Vadelwatch: There is nothing to draw: no node has a position and the boundary has no vertex."])
        self.assertFalse(os.path.exists(self.path("map.png")))

    def test_no_part_of_a_picture_remains_on_a_full_disk(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096))

        self.give({"map.png": b"old"})
        before = set(os.listdir(self.directory)) - {"map.png"}
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.png", preexec_fn=limit), status=2,
                    errors=["Vadelwatch: The map map.png cannot be written: File too large."])
        self.assertEqual(before, set(os.listdir(self.directory)))

    def test_links_stay_and_their_targets_are_replaced(self):
        self.give({"notes.md": b"old"})
        os.symlink("notes.md", self.path("map.png"))
        os.symlink("new.txt", self.path("map.pgw"))
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.png"), status=0)
        self.assertEqual(("notes.md", "new.txt"), tuple(os.readlink(self.path(name)) for name in ("map.png", "map.pgw")))
        self.assertTrue(self.content("notes.md").startswith(b"\x89PNG"))
        self.assertEqual(6, len(self.content("new.txt").splitlines()))

    def test_target_of_a_link_stays_if_drawing_fails(self):
        self.give({"notes.md": b"old", "area.xml": b"<VADELSIM><VadeDGM><a/></VadeDGM></VADELSIM>"})
        self.give({"base/data/a.xyz": HEADER})
        os.symlink("notes.md", self.path("map.png"))
        self.assertEqual(2, self.run_(*JOB, "--quiet", "--map", "map.png").status)
        self.assertEqual(b"old", self.content("notes.md"))

    def test_output_is_a_fifo(self):
        self.expectDifference(FINISHES.format(count=1, call="mkfifo", arguments=()))

    def test_output_is_a_link_to_a_device(self):
        self.expectDifference(FINISHES.format(count=1, call="symlink", arguments=("/dev/full",)))

    def withoutPicture(self, *options, **settings):
        """Starts a run whose picture is a FIFO without a reader. Waits for its summary, and until it handles signals."""
        os.mkfifo(self.path("map.svg"))
        process = self.start(*JOB, "--map", "map.svg", *options, **settings)
        os.set_blocking(process.stdout.fileno(), False)
        output = b""
        limit = time.monotonic() + TIME_LIMIT
        while not output.endswith(b"\n"):
            self.assertLess(time.monotonic(), limit, "there was no summary")
            output += process.stdout.read() or b""
            time.sleep(0.01)
        # It reads signals, so it blocks them.
        self.waitUntil(lambda: signal.SIGTERM in signalsIn("SigBlk", process.pid), "the drawing")
        return process, output

    def test_summary_precedes_signal_during_map(self):
        process, output = self.withoutPicture("--progress=none")
        self.assertIn(b"1 of ", output)
        process.send_signal(signal.SIGTERM)
        self.expect(self.finish(process), status=-signal.SIGTERM,
                    errors=["Vadelwatch: interrupted, so the map map.svg was not drawn."])

    def test_ignored_signal_does_not_end_drawing(self):
        process, _ = self.withoutPicture("--progress=none",
                                         preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        process.send_signal(signal.SIGHUP)
        self.assertTrue(self.content("map.svg").startswith(b"<?xml"))
        self.assertEqual(0, process.wait(TIME_LIMIT))

    @unittest.skipIf(SANITIZED, "sanitizers replace the functions for memory")
    def test_reports_missing_memory_after_summary(self):
        # Only the picture and what it is counted in take blocks of this size.
        settings = {**failingMemory(failsForever(errno.ENOMEM)), "VADELCLIP_FAILING_SIZE": "1000000"}
        watched = self.job("--quiet", "--json", "--map", "map.png", "--lang=en", environment=settings)
        self.assertEqual(1, json.loads(watched.output)["nodes_kept"])
        self.assertEqual((2, ["Vadelwatch: The map map.png cannot be drawn: std::bad_alloc."]),
                         (watched.status, watched.errorLines()))
        self.assertFalse(os.path.exists(self.path("map.png")))


if __name__ == "__main__":
    unittest.main()
