"""Every command can be repeated at any time: after it was killed, while another one runs, and after the merge.

VADELSHARD_KILLS is the number of killed commands.
"""
import fcntl
import os
import random
import shutil
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED, TIME_LIMIT
from engines import descendants, processStatus
from fault_checks import PASS, STOP, failing
from sharding import HEADER, INSIDE, SHARD, WORK, ShardTest, manyLines

KILLS = int(os.environ.get("VADELSHARD_KILLS", "6" if SANITIZED else "20"))
PLAN = ("plan", "base/data", "out", "area.xml", "--lang=en", "--part=30000", "--shards=4")


class KilledCommands(ShardTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"big.xyz": HEADER + manyLines(20_000), **{f"{n}.csv": HEADER + manyLines(50) for n in range(30)}})
        _, _, self.expected = self.oneRun()
        self.commands = [PLAN, *(("clip", WORK, str(index)) for index in range(4)), ("merge", WORK)]
        self.killed = dict.fromkeys(("plan", "clip", "merge"), 0)

    def timed(self, command):
        begin = time.monotonic()
        self.mustDo(*command)
        return time.monotonic() - begin

    def killAndRepeat(self, command, delay):
        process = self.begin(*command)
        time.sleep(delay)
        process.kill()
        if self.finish(process).status == -signal.SIGKILL:
            self.killed[command[0]] += 1
        self.mustDo(*command)

    def expectExpected(self):
        self.assertEqual(self.expected, self.outputTree())
        self.expectNothingLeft()
        shutil.rmtree(self.path("base/out"))

    def test_killed_at_random_moments(self):
        seconds = {command: self.timed(command) for command in self.commands}
        self.expectExpected()
        dice = random.Random(5)
        limit = time.monotonic() + 600
        while min(self.killed.values()) < KILLS / 3 and time.monotonic() < limit:
            for command in self.commands:
                self.killAndRepeat(command, dice.uniform(0, seconds[command]))
            self.expectExpected()
        self.assertGreaterEqual(min(self.killed.values()), KILLS / 3)
        if "VADELSHARD_KILLS" in os.environ:
            print(self.killed)


class Repeated(ShardTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + manyLines(200_000), "b.xyz": HEADER + INSIDE})
        _, _, self.expected = self.oneRun()

    def expectExpected(self):
        self.assertEqual(self.expected, self.outputTree())
        self.expectNothingLeft()

    def waitFor(self, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while not condition():
            self.assertLess(time.monotonic(), limit, what)
            time.sleep(0.001)

    def beginStopped(self, call, path, outcomes, *arguments, **settings):
        """Starts a command that stops itself, or its tool, at the call with the outcome STOP."""
        process = self.begin(*arguments, environment=failing(call, path, outcomes), **settings)

        def isStopped():
            self.assertIsNone(process.poll(), "has ended")
            return any(processStatus(pid)[0] == "T" for pid in (process.pid, *descendants(process.pid)))
        self.waitFor(isStopped, "a process that has stopped itself")
        return process

    def beginClip(self, path="/in/0.xyz"):
        """Starts a clip that stops after it has staged something, or whose tool stops after the first line of /out/0.xyz."""
        return self.beginStopped("write", path, PASS + STOP, "clip", WORK, "0")

    def test_every_command_twice(self):
        for command in (("plan", "base/data", "out", "area.xml", "--lang=en"), ("clip", WORK, "1"), ("clip", WORK, "0"),
                        ("merge", WORK)):
            first = self.mustDo(*command)
            self.assertEqual("" if command[0] == "merge" else first, self.mustDo(*command))
        self.expectExpected()
        self.mustDo("clip", WORK, "0")
        self.assertEqual("Merged: base/out\n", self.mustDo("status", WORK, "--lang=en"))
        done = self.plan()
        self.assertEqual(1, done.status)
        self.assertIn("already exists", done.output)
        self.expectExpected()

    def test_all_at_once(self):
        for _ in range(3):
            plans = [self.begin("plan", "base/data", "out", "area.xml", "--part=300000") for _ in range(3)]
            outcomes = [self.finish(process) for process in plans]
            self.assertEqual({(0, outcomes[0].output, "")}, {(each.status, each.output, each.errors) for each in outcomes})
            for index in range(int(outcomes[0].output)):
                clips = [self.begin("clip", WORK, str(index)) for _ in range(3)]
                self.assertEqual([(0, "", "")] * 3, [(each.status, each.output, each.errors) for each in map(self.finish, clips)])
            merges = [self.finish(process) for process in [self.begin("merge", WORK) for _ in range(3)]]
            self.assertEqual({0}, {each.status for each in merges}, merges)
            self.expectExpected()
            shutil.rmtree(self.path("base/out"))

    def test_killed_attempt_leaves_nothing(self):
        self.planned()
        for path in ("/in/0.xyz", "/out/0.xyz"):
            shutil.rmtree(self.path(WORK + "/done/0"), ignore_errors=True)
            process = self.beginClip(path)
            process.kill()
            process.wait()
            self.assertEqual((1, 1), (len(os.listdir(self.scratch)), len(os.listdir(self.path(WORK + "/attempts")))))
            self.mustDo("clip", WORK, "0")
            self.assertEqual(([], []), (os.listdir(self.scratch), os.listdir(self.path(WORK + "/attempts"))))

    def test_killed_attempt_of_a_shard_that_was_clipped_elsewhere(self):
        self.planned()
        process = self.beginClip()
        process.kill()
        process.wait()
        self.clipAll(2, environment={"TMPDIR": self.aside})
        self.mustDo("merge", WORK)
        self.expectExpected()

    def test_slow_attempt_ends_after_the_merge(self):
        self.planned()
        slow = self.beginClip()
        self.clipAll(2)
        self.mustDo("merge", WORK)
        slow.send_signal(signal.SIGCONT)
        done = self.finish(slow)
        self.assertEqual((0, "", ""), (done.status, done.output, done.errors))
        self.expectExpected()

    def test_interrupted(self):
        self.planned()
        for number, path in ((signal.SIGTERM, "/in/0.xyz"), (signal.SIGINT, "/out/0.xyz"), (signal.SIGHUP, "/in/0.xyz")):
            process = self.beginClip(path)
            process.send_signal(number)
            process.send_signal(signal.SIGCONT)
            done = self.finish(process)
            interrupted = f"Vadelshard: Interrupted by signal {int(number)}. Run the same command again to continue.\n"
            self.assertEqual((1, interrupted), (done.status, done.errors))
            self.assertEqual(([], [], []), (os.listdir(self.scratch), os.listdir(self.path(WORK + "/attempts")),
                                            os.listdir(self.path(WORK + "/done"))))

    def test_interrupted_directly_before_it_starts_the_tool(self):
        self.planned()
        program, started = os.path.join(self.aside, "Vadelshard"), os.path.join(self.aside, "started")
        shutil.copy(SHARD, program)
        tool = Path(self.aside, "Vadelclip")
        tool.write_text(f"#!/bin/sh\necho >{started}\n", encoding="utf-8")
        tool.chmod(0o755)
        # It stops when it looks for the tool next to itself.
        process = self.beginStopped("readlink", "/proc/self/exe", STOP, "clip", WORK, "0", program=program)
        process.send_signal(signal.SIGTERM)
        process.send_signal(signal.SIGCONT)
        self.assertIn("Interrupted by signal 15.", self.finish(process).errors)
        self.assertFalse(os.path.exists(started))

    def test_interrupted_while_it_waits_for_another_merge(self):
        self.clipAll(self.planned())
        with open(self.path(WORK + "/lock"), "rb") as file:
            fcntl.flock(file, fcntl.LOCK_EX)
            waiting = self.begin("merge", WORK)
            self.waitForLock(waiting)

            def endsAfterSignal():
                waiting.send_signal(signal.SIGTERM)  # again and again: the first one may arrive before it waits
                return waiting.poll() is not None
            self.waitFor(endsAfterSignal, "the end of the merge")
        done = self.finish(waiting)
        self.assertEqual((1, "Vadelshard: Interrupted by signal 15. Run the same command again to continue.\n"),
                         (done.status, done.errors))
        self.mustDo("merge", WORK)
        self.expectExpected()

    def waitForLock(self, process):
        """Waits until a process has opened the lock of the work directory, which another process holds."""
        descriptors, lock = f"/proc/{process.pid}/fd", os.path.realpath(self.path(WORK + "/lock"))
        self.waitFor(lambda: any(os.path.realpath(f"{descriptors}/{name}") == lock for name in os.listdir(descriptors)),
                     "a process that waits for the lock")

    def beginMerge(self):
        """Starts a merge that stops in the middle of a file."""
        return self.beginStopped("write", "/a.xyz", PASS + STOP, "merge", WORK)

    def test_plan_that_waits_for_a_merge_is_refused(self):
        self.clipAll(self.planned("--part=300000"))
        merge = self.beginMerge()
        plan = self.begin("plan", "base/data", "out", "area.xml", "--part=300000", "--lang=en")
        self.waitForLock(plan)
        merge.send_signal(signal.SIGCONT)
        self.assertEqual(0, self.finish(merge).status)
        done = self.finish(plan)
        self.assertEqual((1, ""), (done.status, done.errors))
        self.assertIn("Output directory base/out already exists", done.output)
        self.expectExpected()

    def test_clip_and_status_while_the_job_is_merged(self):
        # Each stops when it has found the job not merged. The first check of the plan is for the language.
        plan, done = ("/plan", PASS + STOP), ("/done/0/report.json", STOP)
        for command, output, moments in ((("clip", WORK, "0"), "", (plan, ("/done/0", STOP))),
                                         (("status", WORK), "Merged: base/out\n", (plan, done)),
                                         (("status", WORK, "--missing"), "\n", (plan, done))):
            for path, outcomes in moments:
                with self.subTest(command=command, path=path):
                    shutil.rmtree(self.path("base/out"), ignore_errors=True)
                    self.clipAll(self.planned())
                    stopped = self.beginStopped("lstat", path, outcomes, *command)
                    self.mustDo("merge", WORK)
                    stopped.send_signal(signal.SIGCONT)
                    finished = self.finish(stopped)
                    self.assertEqual((0, output, ""), (finished.status, finished.output, finished.errors))

    def test_merges_without_locks_between_them(self):
        # Removed lock files are like locks of another host.
        for removed in (("lock",), ("lock", "attempts/merge.*/lock")):
            with self.subTest(removed=removed):
                self.clipAll(self.planned("--part=300000"))
                first = self.beginMerge()
                for pattern in removed:
                    for lock in Path(self.path(WORK)).glob(pattern):
                        lock.unlink()
                second = self.beginMerge()
                for process in (first, second):
                    process.send_signal(signal.SIGCONT)
                    if self.finish(process).status == 0:
                        self.assertEqual(self.expected, self.outputTree())
                self.expectExpected()
                shutil.rmtree(self.path("base/out"))

    def test_running_and_killed_attempts_in_the_status(self):
        self.planned()
        process = self.beginClip()
        self.assertEqual("Done: 0 of 2 shards, 0 nodes kept\nRunning: 1 (0)\nMissing: 1 (1)\n", self.mustDo("status", WORK))
        process.kill()
        process.wait()
        self.assertEqual("0-1\n", self.mustDo("status", WORK, "--missing"))


class CrashedMerges(ShardTest):
    """The states that a merge passes through, made by hand."""

    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + INSIDE, "b.xyz": HEADER + INSIDE * 2})
        _, _, self.expected = self.oneRun()
        self.count = self.planned()
        self.clipAll(self.count)
        os.mkdir(self.path(WORK + "/merged"))

    def give_(self, name, content):
        Path(self.path(WORK), name).write_bytes(content)

    def fill(self):
        for name, content in self.expected.items():
            self.give_("merged/" + name, content)
        self.give_("published.json", b'{"kept_lines":3,"files":2,"total_node_count":3}')

    def expectMergedAgain(self):
        self.mustDo("merge", WORK)
        self.assertEqual(self.expected, self.outputTree())
        self.expectNothingLeft()

    def test_unfinished_directory(self):
        os.makedirs(self.path(WORK + "/attempts/merge.killed/merged"))
        self.give_("attempts/merge.killed/merged/b.xyz", b"x;y")
        self.expectMergedAgain()

    def test_finished_directory_without_figures(self):
        self.fill()
        os.remove(self.path(WORK + "/published.json"))
        self.expectMergedAgain()

    def test_finished_directory(self):
        self.fill()
        self.expectMergedAgain()

    def test_claimed_output(self):
        self.fill()
        os.mkdir(self.path("base/out"))
        # Every command goes on, also the plan: the empty directory is the job's own.
        self.assertEqual(self.count, self.planned())
        self.clipAll(self.count)
        self.assertEqual("\n", self.mustDo("status", WORK, "--missing"))
        self.expectMergedAgain()

    def test_claimed_output_that_another_run_uses(self):
        self.fill()
        self.give({"base/out/a.xyz": b"of another run"})
        done = self.shard("merge", WORK)
        self.assertEqual(1, done.status)
        self.assertIn("Output directory base/out already exists", done.output)
        shutil.rmtree(self.path("base/out"))
        self.expectMergedAgain()

    def test_published_output(self):
        for removed in ((), ("attempts",), ("attempts", "done", "plan"), ("attempts", "done", "plan", "published.json"),
                        ("attempts", "done", "plan", "published.json", "lock")):
            with self.subTest(removed=removed):
                shutil.rmtree(self.path("base"))
                self.setUpAgain()
                self.fill()
                os.rename(self.path(WORK + "/merged"), self.path("base/out"))
                for name in removed:
                    path = self.path(f"{WORK}/{name}")
                    shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
                self.expectMergedAgain()

    def setUpAgain(self):
        self.giveJob({"a.xyz": HEADER + INSIDE, "b.xyz": HEADER + INSIDE * 2})
        self.clipAll(self.planned())
        os.mkdir(self.path(WORK + "/merged"))


if __name__ == "__main__":
    unittest.main()
