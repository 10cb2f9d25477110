"""The output of Vadelwatch: vanished readers, closed descriptors, full disks."""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, TIME_LIMIT, WATCH, WatchTest

JOB = ("base/data", "out", "area.xml", "--lang=en")


class OwnOutput(WatchTest):
    def test_reader_that_closes_early_does_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 20000})
        process = self.start(*JOB)
        process.stdout.close()
        process.stderr.close()
        self.assertEqual(0, process.wait(TIME_LIMIT))
        self.assertEqual(b"20000\n", self.content("base/out/total_node_count.txt"))

    def test_reader_of_one_line_does_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 20000})
        shell = '"$0" "$@" 2>&1 | head -n 1; echo "${PIPESTATUS[0]}"'
        result = subprocess.run(["bash", "-c", shell, WATCH, *JOB, "--progress=none"], cwd=self.directory,
                                capture_output=True, timeout=TIME_LIMIT, check=True)
        lines = result.stdout.decode().splitlines()
        self.assertRegex(lines[0], "^Finished")
        self.assertEqual("0", lines[1])

    def test_closed_standard_descriptors_change_nothing(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        for closed in ((0,), (1,), (2,), (1, 2), (0, 1, 2)):
            with self.subTest(closed=closed):
                subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
                process = self.start(*JOB, preexec_fn=lambda: [os.close(number) for number in closed])
                self.assertEqual(0, self.finish(process).status)
                self.assertEqual(HEADER + b"1;1;5\n", self.content("base/out/a.xyz"))

    def onFullDisk(self, arguments, *, stderr=subprocess.PIPE):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([WATCH, *arguments], cwd=self.directory, stdout=full,
                                    stderr=full if stderr is None else stderr, timeout=TIME_LIMIT, check=False)
        return result.returncode, (result.stderr or b"").decode().splitlines()

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_summary_on_a_full_disk_is_reported(self):
        for options in (["--json", "--quiet"], ["--json"], []):
            with self.subTest(options=options):
                self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
                subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
                status, errors = self.onFullDisk([*JOB, *options])
                self.assertEqual((2, "Vadelwatch: cannot write the summary: No space left on device"),
                                 (status, errors[-1]))
                self.assertEqual(b"1\n", self.content("base/out/total_node_count.txt"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_summary_on_a_full_disk_keeps_a_worse_status(self):
        self.giveJob({"total_node_count.txt": HEADER + b"1;1;5\n"})
        status, errors = self.onFullDisk([*JOB, "--json", "--quiet"])
        self.assertEqual(3, status)
        self.assertIn("Vadelwatch: cannot write the summary: No space left on device", errors)
        status, errors = self.onFullDisk(["no/data", "out", "area.xml", "--json", "--quiet", "--lang=en"])
        self.assertEqual((1, "Vadelwatch: cannot write the summary: No space left on device"), (status, errors[-1]))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_progress_and_summary_on_a_full_disk_do_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        self.assertEqual((2, []), self.onFullDisk(JOB, stderr=None))
        self.assertEqual(b"1\n", self.content("base/out/total_node_count.txt"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_help_and_version_on_a_full_disk_are_reported(self):
        for option in ("--help", "--version"):
            self.assertEqual((2, ["Vadelwatch: cannot write to standard output: No space left on device"]),
                             self.onFullDisk([option]))

    def test_vanished_reader_of_the_summary_is_no_failure(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        process = self.start(*JOB, "--json", "--quiet")
        process.stdout.close()
        self.assertEqual((0, b""), (process.wait(TIME_LIMIT), process.stderr.read()))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_log_on_a_full_disk_is_reported(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        self.expect(self.run_(*JOB, "--quiet", "--log", "/dev/full"), status=2,
                    errors=["Vadelwatch: cannot write /dev/full: No space left on device"])
        self.assertEqual(b"1\n", self.content("base/out/total_node_count.txt"))
        subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
        summary = json.loads(self.run_(*JOB, "--quiet", "--json", "--log", "/dev/full").output)
        self.assertEqual(2, summary["exit_status"])
        self.assertIn("cannot write /dev/full: No space left on device", summary["failure"])


if __name__ == "__main__":
    unittest.main()
