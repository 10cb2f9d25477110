"""The check of a finished run: full disks, files that change, and the oddities of the count."""
import ctypes
import json
import os
import resource
import signal
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, TIME_LIMIT, WatchTest

INSIDE = b"1;1;5\n"
LANGUAGE = "--lang=en"


class Check(WatchTest):
    def difference(self, watched):
        """Returns the lines of the check, which follow those of progress and of the tool."""
        lines = watched.errorLines()
        first = next((i for i, line in enumerate(lines) if line.startswith("Vadelwatch: ")), len(lines))
        return lines[first:]

    def test_link_to_a_full_device_is_reported(self):
        self.giveJob({})
        # The output directory exists when the header is read, so the link is there before the output is opened.
        self.serveNodeFile("a.xyz", HEADER + INSIDE * 4, first=lambda: os.symlink("/dev/full", self.path("base/out/a.xyz")))
        watched = self.job(LANGUAGE)
        self.assertEqual(3, watched.status)
        self.assertEqual(["Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 4, missing: 4.",
                          "  a.xyz: not a regular file, its lines cannot be counted"], self.difference(watched))

    def test_output_cut_by_a_size_limit_is_named(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 1000, "b.xyz": HEADER + INSIDE * 10})

        def limitFiles():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))

        # In a build that counts coverage the counts are files too, and the limit must not cut those of all runs.
        ownCounts = {"GCOV_PREFIX": self.path("counts"), "GCOV_ERROR_FILE": os.devnull}
        process = self.start("base/data", "out", "area.xml", LANGUAGE, environment=ownCounts, preexec_fn=limitFiles,
                             restore_signals=False)
        watched = self.finish(process)
        self.assertEqual(3, watched.status)
        self.assertEqual(["Vadelwatch: nodes in the output files: 25, in total_node_count.txt: 1 010, missing: 985.",
                          "  a.xyz: its last line is cut off, 15 whole nodes before it"], self.difference(watched))
        self.assertIn("the lines do not add up", watched.output)

    def test_full_file_system_is_reported(self):
        base = self.path("base")
        os.mkdir(base)
        libc = ctypes.CDLL(None, use_errno=True)
        if libc.mount(b"tmpfs", base.encode(), b"tmpfs", 0, b"size=64k") != 0:
            self.skipTest("may not mount a small file system")
        self.addCleanup(libc.umount2, base.encode(), 2)
        self.giveJob({"a.xyz": HEADER + INSIDE * 6000})
        watched = self.job(LANGUAGE)
        self.assertEqual(3, watched.status)
        lines = self.difference(watched)
        self.assertRegex(lines[0], "^Vadelwatch: nodes in the output files: [0-9 ]+\. total_node_count.txt holds no number")
        self.assertRegex(lines[1], "^  a.xyz: its last line is cut off")
        self.assertEqual("  No space is left on the file system of base/out.", lines[-1])

    def test_directory_in_place_of_an_output_is_reported(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 1000, "far.xyz": HEADER + b"99;99;9\n"})
        # The output directory exists when a header is read. The run waits at this file until the other directory exists.
        thread = self.serveNodeFile("b.xyz", HEADER + INSIDE * 4, first=lambda: os.makedirs(self.path("base/out/a.xyz")))
        watched = self.job(LANGUAGE)
        thread.join(TIME_LIMIT)
        self.assertEqual(3, watched.status)
        self.assertEqual(["Vadelwatch: nodes in the output files: 4, in total_node_count.txt: 1 004, missing: 1 000.",
                          "  a.xyz: a directory in place of the file",
                          "  far.xyz: no output file, which is right only if none of its nodes was kept"],
                         self.difference(watched))

    def test_file_system_without_inodes_is_reported(self):
        base = self.path("base")
        os.mkdir(base)
        libc = ctypes.CDLL(None, use_errno=True)
        # The root, the input directory with two files, the output directory and one output.
        if libc.mount(b"tmpfs", base.encode(), b"tmpfs", 0, b"size=1m,nr_inodes=6") != 0:
            self.skipTest("may not mount a small file system")
        self.addCleanup(libc.umount2, base.encode(), 2)
        self.giveJob({"a.xyz": HEADER + INSIDE * 3, "b.xyz": HEADER + INSIDE * 3})
        watched = self.job(LANGUAGE)
        self.assertEqual(3, watched.status)
        self.assertEqual(["Vadelwatch: nodes in the output files: 3. There is no total_node_count.txt to compare with.",
                          "  No inode is left on the file system of base/out, so no file can be made there."],
                         self.difference(watched))

    def test_rejected_header_counts_one_without_a_line(self):
        self.giveJob({})
        path = self.path("base/data/a.xyz")
        os.mkfifo(path)

        def serve():
            for content in (HEADER, HEADER + INSIDE, b"x:y:z\n"):
                with open(path, "wb", buffering=0) as pipe:
                    os.mkfifo(path + ".next")
                    os.rename(path + ".next", path)
                    pipe.write(content)

        threading.Thread(target=serve, daemon=True).start()
        watched = self.job(LANGUAGE, "--quiet")
        self.expect(watched, status=3, errors=[
            "ERROR: separator must be either semikolon, comma, space or tab",
            "Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 1, missing: 1.",
            "  a.xyz: empty, even its header is missing",
            "  node files that lost the header during the run: 1; Vadelclip adds 1 to the count for each and writes no line"])

    def test_node_file_named_like_the_count_file_is_overwritten(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE})
        self.expect(self.job(LANGUAGE, "--quiet"), status=3, errors=[
            "Vadelwatch: nodes in the output files: 1, in total_node_count.txt: 3, missing: 2.",
            "  total_node_count.txt: also the name of a node file; the count includes its nodes and has replaced its output"])

    def test_such_a_file_that_keeps_nothing_adds_up(self):
        self.giveJob({"total_node_count.txt": HEADER, "b.xyz": HEADER + INSIDE})
        self.expect(self.job(LANGUAGE, "--quiet"), status=0)

    def test_check_is_in_german_and_in_json(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE})
        watched = self.job("--quiet", "--json")
        summary = json.loads(watched.output)
        self.assertEqual((3, 3, True, False, 1, 3),
                         (watched.status, summary["exit_status"], summary["finished"], summary["adds_up"],
                          summary["nodes_kept"], summary["total_node_count"]))
        self.assertEqual("Vadelwatch: Knoten in den Ausgabedateien: 1, in total_node_count.txt: 3, es fehlen: 2.",
                         watched.errorLines()[0])

    def test_pipe_as_node_file_is_read_only_by_the_tool(self):
        self.giveJob({"b.xyz": HEADER + INSIDE})
        thread = self.serveNodeFile("a.xyz", HEADER + INSIDE * 4, during=lambda: time.sleep(0.2))
        watched = self.job(LANGUAGE)
        thread.join(TIME_LIMIT)
        self.assertFalse(thread.is_alive())
        self.assertEqual(0, watched.status)
        self.assertIn("  Nodes kept        5", watched.outputLines())


if __name__ == "__main__":
    unittest.main()
