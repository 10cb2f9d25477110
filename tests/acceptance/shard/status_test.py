"""What Vadelshard prints: the status in its forms, help, version, and German texts."""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import dropPowersOfRoot
from sharding import HEADER, INSIDE, SHARD, WORK, ShardTest
from terminal import Terminal


class Status(ShardTest):
    def setUp(self):
        super().setUp()
        self.giveJob({f"{number}.xyz": HEADER + INSIDE for number in range(6)})
        self.planned()

    def asJson(self):
        return json.loads(self.mustDo("status", WORK, "--json"))

    def test_json(self):
        begin = {"shards": 6, "done": 0, "running": "", "missing": "0-5", "kept_lines": 0, "merged": False}
        self.assertEqual(begin, self.asJson())
        self.clipAll(6, order=(1, 4))
        self.assertEqual({**begin, "done": 2, "missing": "0,2-3,5", "kept_lines": 2}, self.asJson())
        self.clipAll(6)
        self.assertEqual({**begin, "done": 6, "missing": "", "kept_lines": 6}, self.asJson())
        self.mustDo("merge", WORK)
        self.assertEqual({**begin, "shards": 0, "missing": "", "merged": True}, self.asJson())

    def test_text_and_missing(self):
        self.clipAll(6, order=(0, 1, 2))
        self.assertEqual("Done: 3 of 6 shards, 3 nodes kept\nMissing: 3 (3-5)\n", self.mustDo("status", WORK))
        self.assertEqual("3-5\n", self.mustDo("status", WORK, "--missing"))
        self.clipAll(6)
        self.assertEqual("\n", self.mustDo("status", WORK, "--missing"))

    def test_watch_ends_when_all_are_done(self):
        watching = self.begin("status", WORK, "--watch")
        self.assertEqual(b"0 of 6 shards done, 0 running, 0 nodes kept\n", watching.stdout.readline())
        self.clipAll(6)
        done = self.finish(watching)
        self.assertEqual((0, "Done: 6 of 6 shards, 6 nodes kept"), (done.status, done.output.splitlines()[-1]))

    def test_watch_ends_when_the_work_directory_is_removed(self):
        watching = self.begin("status", WORK, "--watch")
        watching.stdout.readline()
        shutil.rmtree(self.path(WORK))
        done = self.finish(watching)
        self.assertEqual((1, f"Vadelshard: {WORK}/plan: No such file or directory\n"), (done.status, done.errors))

    def test_watch_ends_when_the_job_is_merged(self):
        watching = self.begin("status", WORK, "--watch")
        watching.stdout.readline()
        watching.send_signal(signal.SIGSTOP)
        self.clipAll(6)
        self.mustDo("merge", WORK)
        watching.send_signal(signal.SIGCONT)
        done = self.finish(watching)
        self.assertEqual((0, "Merged: base/out", ""), (done.status, done.output.splitlines()[-1], done.errors))

    def test_work_directory_without_permission(self):
        os.chmod(self.path(WORK), 0)
        for command in (("status", WORK), ("clip", WORK, "0")):
            self.expectFailure(f"{WORK}/plan/job.json: Permission denied", *command, "--lang=en",
                               preexec_fn=dropPowersOfRoot)
        os.chmod(self.path(WORK), 0o755)

    def test_watch_on_a_terminal_keeps_to_one_line(self):
        terminal = Terminal([SHARD, "status", WORK, "--watch"], self.directory, 80, dict(os.environ))
        terminal.readUntil(lambda shown: b"0 nodes kept" in shown, "the progress")
        self.clipAll(6)
        terminal.finish()
        self.assertEqual(b"\r\x1b[K0 of 6 shards done, 0 running, 0 nodes kept", terminal.received.split(b"kept")[0] + b"kept")
        self.assertTrue(terminal.received.endswith(b"\r\x1b[KDone: 6 of 6 shards, 6 nodes kept\r\n"), terminal.received)

    def test_german(self):
        self.assertEqual("Fertig: 0 von 6 Teilaufträgen, 0 Punkte behalten\nEs fehlen: 6 (0-5)\n",
                         self.mustDo("status", WORK, "--lang=de"))
        done = self.shard("clip", WORK, 6, "--lang", "de_DE.UTF-8")
        self.assertEqual("Vadelshard: Den Teilauftrag 6 gibt es nicht: Der letzte ist 5.\n", done.errors)

    def test_language_of_the_plan_is_that_of_all_commands(self):
        self.expectFailure("There is no shard 6: the last one is 5.", "clip", WORK, "6")

    def test_closed_output(self):
        with open("/dev/full", "wb") as full:
            run = subprocess.run([SHARD, "status", WORK], cwd=self.directory, stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual((1, b"Vadelshard: cannot write to standard output\n"), (run.returncode, run.stderr))


class Help(ShardTest):
    def test_help_of_each_command(self):
        text = self.mustDo("--help")
        for command, options in (("plan", ("--shards", "--part")), ("clip", ("--direct",)), ("merge", ()),
                                 ("status", ("--json", "--missing", "--watch"))):
            self.assertRegex(text, rf"\n  {command} ")
            helpOfCommand = self.mustDo(command, "--help")
            self.assertEqual({"--help", "--lang", *options}, set(re.findall(r"--[a-z]+", helpOfCommand.split("Options:")[1])))

    def test_version(self):
        self.assertRegex(self.mustDo("--version"), r"^Vadelshard \d+\.\d+\.\d+\n$")

    def test_control_characters_are_not_printed(self):
        done = self.shard("\x1b[2J")
        self.assertEqual(2, done.status)
        self.assertNotIn("\x1b", done.errors)


if __name__ == "__main__":
    unittest.main()
