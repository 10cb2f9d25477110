"""vadelclip-parallel on this machine and on hosts over ssh: the same bytes as one run, whatever is lost on the way."""
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
from engines import TIME_LIMIT, EngineTest, descendants, isRunning, kill, needs, processStatus
from ssh_hosts import PROGRAMS, SshHosts, reasonAgainstLogin


class ParallelTest(EngineTest):
    def setUp(self):
        super().setUp()
        # parallel keeps files in this directory.
        self.environment = {"PARALLEL_HOME": self.path(".parallel")}

    def start(self, *options):
        process = subprocess.Popen([os.path.join(self.programs, "vadelclip-parallel"), *self.JOB, "--", *options],
                                   cwd=self.directory, env={**os.environ, **self.environment}, text=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        kill(process.pid, *descendants(process.pid))
        process.wait()
        process.stdout.close()

    def finish(self, process):
        output, _ = process.communicate()
        self.assertEqual(0, process.returncode, output)


@needs("parallel")
class LocalTest(ParallelTest):
    def test_shards_on_two_cores(self):
        self.finish(self.start("-j2"))
        self.expectResultOfOneRun()

    def test_killed_run_is_resumed_by_the_same_command(self):
        self.closeGate("3")
        self.closeGate("4")
        process = self.start("-j2")
        self.started(2)
        self.end(process)
        self.openGate("3")
        self.openGate("4")
        self.finish(self.start("-j2"))
        self.expectResultOfOneRun()
        with open(self.path("base/out.parallel.log"), encoding="utf-8") as file:
            log = file.read()
        self.assertEqual(6, log.count(" clip "), log)  # no shard twice

    def test_killed_tool_is_run_again(self):
        self.closeGate("3")
        process = self.start("-j2")
        [task] = self.started(1)
        self.openGate("3")
        kill(task.pid)
        self.finish(process)
        self.expectResultOfOneRun()

    def test_nothing_is_run_if_no_shard_is_missing(self):
        self.plan()
        for index in range(6):
            self.runProgram("Vadelshard", "clip", "base/out.shards", str(index))
        run = self.runProgram("vadelclip-parallel", *self.JOB, environment=self.environment)
        self.assertEqual(0, run.returncode, run.stdout)
        self.assertRegex(run.stdout, "^Merged: 8 files with 683 nodes in ")
        self.assertFalse(os.path.exists(self.path("base/out.parallel.log")))
        self.expectResultOfOneRun()

    def test_signal_ends_all_without_a_merge(self):
        self.closeGate()
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
            process = self.start("-j2")
            self.started(2)
            # A gate waits in a `sleep`, which may end a moment later than the gate.
            below = [pid for pid in descendants(process.pid) if processStatus(pid)[2] != "sleep"]
            process.send_signal(number)
            output, _ = process.communicate(timeout=TIME_LIMIT)
            self.assertEqual((1, "vadelclip-parallel: Interrupted. Run the same command again to continue.\n"),
                             (process.returncode, output))
            self.assertEqual([], [pid for pid in below if isRunning(pid)], output)
            self.assertEqual([], os.listdir(self.path("base/out.shards/attempts")))
        self.openGate()
        self.finish(self.start("-j2"))
        self.expectResultOfOneRun()

    def test_signal_before_it_can_be_handled_leaves_nothing_running(self):
        fakes = self.path("fakes")
        os.mkdir(fakes)
        with open(os.path.join(fakes, "parallel"), "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\necho parallel runs\n")
        os.chmod(os.path.join(fakes, "parallel"), 0o755)
        script = os.path.join(os.path.dirname(self.directory), "signal.bash")  # bash expands the value of BASH_ENV
        with open(script, "w", encoding="utf-8") as file:
            file.write("trap 'case $BASH_COMMAND in \"trap interrupted \"*) kill -TERM $$ ;; esac' DEBUG\n")
        run = self.runProgram("vadelclip-parallel", *self.JOB, environment={
            "BASH_ENV": script, "PATH": fakes + os.pathsep + os.environ["PATH"]})
        self.assertEqual((-signal.SIGTERM, ""), (run.returncode, run.stdout))

    def test_full_scratch_directory_makes_only_shards_fail(self):
        scratch = self.path("scratch")
        os.mkdir(scratch)
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k,mode=700", "tmpfs", scratch], check=False,
                          stderr=subprocess.DEVNULL).returncode != 0:
            self.skipTest("mount is not allowed here")
        self.addCleanup(subprocess.run, ["umount", scratch], check=True)
        with open(os.path.join(scratch, "full"), "wb", buffering=0) as file:
            file.write(b"x" * 8192)
        run = self.runProgram("vadelclip-parallel", *self.JOB, "--", "-j2",
                              environment={**self.environment, "TMPDIR": scratch})
        self.assertEqual(1, run.returncode, run.stdout)
        self.assertRegex(run.stdout, r"(?s)No space left on device.*6 of 6 shards are missing: 0-5\n$")
        self.assertNotIn("parallel: Error", run.stdout)
        self.assertEqual([], os.listdir(self.path("base/out.shards/attempts")))
        os.truncate(os.path.join(scratch, "full"), 0)
        self.finish(self.start("-j2"))
        self.expectResultOfOneRun()

    def test_shard_that_always_fails_is_missing_until_it_can_be_clipped(self):
        self.plan()
        tile = self.path("base/data/tile 1.xyz")
        time = os.stat(tile).st_mtime_ns
        os.utime(tile, ns=(time, time + 1))
        run = self.runProgram("vadelclip-parallel", *self.JOB, environment=self.environment)
        self.assertEqual(1, run.returncode)
        self.assertRegex(run.stdout,
                         r"(?s)tile 1\.xyz has changed since [^\n]*\n.*1 of 6 shards are missing: [0-5]\n$")
        self.assertFalse(os.path.exists(self.path("base/out")))
        os.utime(tile, ns=(time, time))
        self.finish(self.start("-j2"))
        self.expectResultOfOneRun()

    def test_refusals_are_those_of_the_tool(self):
        job = ("base/data", "out", "area.xml")
        os.mkdir(self.path("base/out"))
        run = self.runProgram("vadelclip-parallel", *job, "--lang", "en")
        refusal = "Output directory base/out already exists, aborting in order avoid overwriting of existing data\n"
        self.assertEqual((1, refusal), (run.returncode, run.stdout))
        self.assertEqual(["data", "out"], sorted(os.listdir(self.path("base"))))


class UsageTest(EngineTest):
    """What both scripts do without an engine."""

    SCRIPTS = (("vadelclip-parallel", "GNU parallel", "parallel"), ("vadelclip-slurm", "sbatch", "sbatch"))

    def test_too_few_arguments_print_the_usage(self):
        for script, engine, _ in self.SCRIPTS:
            for status, *arguments in ((2, "base/data", "--lang=en"), (2, "--lang", "en"),
                                       (0, "a", "b", "c", "--lang=en", "-h")):
                run = self.runProgram(script, *arguments)
                self.assertEqual((status, "Usage: " + script), (run.returncode, run.stdout[:len("Usage: " + script)]))
                self.assertTrue(run.stdout.endswith(f"[-- <options of {engine}>]\n"), run.stdout)
            self.assertRegex(self.runProgram(script).stdout, "^Aufruf: " + script)

    def test_missing_engine_is_named(self):
        tools = self.path("tools")
        os.mkdir(tools)
        for name in ("bash", "dirname", "readlink"):
            os.symlink(shutil.which(name), os.path.join(tools, name))
        for script, _, command in self.SCRIPTS:
            for language, text in (("de", "ist nicht installiert."), ("en", "is not installed.")):
                run = self.runProgram(script, "base/data", "out", "area.xml", "--lang=" + language,
                                      environment={"PATH": tools})
                self.assertEqual((2, f"{script}: {command} {text}\n"), (run.returncode, run.stdout))
        self.assertEqual(["data"], os.listdir(self.path("base")))


@needs("parallel", *PROGRAMS)
class HostsTest(ParallelTest):
    def setUp(self):
        reason = reasonAgainstLogin()
        if reason:
            self.skipTest(reason)
        super().setUp()
        place = tempfile.mkdtemp(prefix="vadelclip-ssh-")
        self.addCleanup(shutil.rmtree, place)
        self.hosts = SshHosts(place, ["h1", "h2"])
        self.addCleanup(self.hosts.stop)
        self.hosts.start()
        self.environment["PARALLEL_SSH"] = self.hosts.command()

    def test_tasks_of_a_lost_host_run_on_the_other(self):
        self.closeGate("1")
        self.closeGate("2")
        process = self.start("-S", "1/h1,1/h2")
        ports = [task.host for task in self.started(2)]
        self.assertCountEqual(map(str, self.hosts.ports.values()), ports)
        self.hosts.lose("h2")
        self.openGate("1")
        self.openGate("2")
        self.finish(process)
        self.expectResultOfOneRun()


if __name__ == "__main__":
    unittest.main()
