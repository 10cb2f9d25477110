"""vadelclip-slurm on a real Slurm with virtual nodes: the same bytes as one run, whatever is lost on the way."""
import os
import re
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
from engines import SANITIZED, EngineTest, isRunning, kill, needs, waitFor
from slurm_machine import PROGRAMS, SlurmMachine, reasonAgainstStart

# Three tests lose a node for ever: Slurm may remove the script of the first task on a node whose daemon was started again.
NODES = ("n1", "n2", "n3", "n4", "n5", "n6")


@needs(*PROGRAMS)
@unittest.skipIf(reasonAgainstStart(), reasonAgainstStart())
class SlurmTest(EngineTest):
    @classmethod
    def setUpClass(cls):
        if SANITIZED:
            return
        place = tempfile.mkdtemp(prefix="vadelclip-slurm-")
        cls.addClassCleanup(shutil.rmtree, place, ignore_errors=True)  # the last steps may still remove their sockets
        cls.slurm = SlurmMachine(place, NODES)
        cls.addClassCleanup(cls.slurm.stop)
        cls.slurm.start()

    def setUp(self):
        super().setUp()
        self.addCleanup(self.slurm.cancelAll)

    def submit(self):
        """Runs vadelclip-slurm. Returns the numbers of the jobs that it has submitted, the array first."""
        run = self.runProgram("vadelclip-slurm", *self.JOB, environment=self.slurm.environment)
        self.assertEqual(0, run.returncode, run.stdout)
        return re.findall("[0-9]+", run.stdout.split(".")[0])

    def waitForEmptyQueue(self):
        waitFor(lambda: self.slurm.queue() == [], "an empty queue")

    def expectIncomplete(self):
        """Expects that all jobs are over, and that there is no output directory."""
        self.waitForEmptyQueue()
        self.assertFalse(os.path.exists(self.path("base/out")))

    def resume(self, indices):
        """Runs the command again. Expects that these shards are submitted, and the result of one run at the end."""
        array, _ = self.submit()
        self.waitForEmptyQueue()
        self.assertEqual({index: "COMPLETED" for index in indices}, self.slurm.tasks(array))
        self.expectResultOfOneRun()

    def test_array_and_merge(self):
        self.resume(range(6))

    def test_percent_signs_in_the_path(self):
        # sbatch handles a path without a backslash in another way.
        self.moveTo("50 %j %% %a")
        self.resume(range(6))
        self.assertIn("\nMerged: ", "\n" + self.log())

    def test_killed_task_is_run_by_the_same_command(self):
        self.closeGate("2")
        array, _ = self.submit()
        [task] = self.started(1)
        kill(*task.chain("slurmstepd")[1:])
        self.expectIncomplete()
        self.assertEqual(["FAILED"], [state for state in self.slurm.tasks(array).values() if state != "COMPLETED"])
        self.openGate("2")
        self.resume([2])

    def test_killed_tool_is_run_again_within_the_task(self):
        self.closeGate("2")
        array, _ = self.submit()
        [task] = self.started(1)
        self.openGate("2")
        kill(task.pid)
        self.waitForEmptyQueue()
        self.assertEqual("COMPLETED", self.slurm.tasks(array)[2])
        self.expectResultOfOneRun()

    def test_task_of_a_lost_node_is_requeued(self):
        self.closeGate("0")
        self.submit()
        [task] = self.started(1)
        self.slurm.loseNode(task.host, task.chain("slurmstepd"))
        self.openGate("0")
        self.waitForEmptyQueue()
        self.expectResultOfOneRun()

    def test_cancelled_job_is_resumed_by_the_same_command(self):
        self.closeGate()
        jobs = self.submit()
        self.started(6)
        self.slurm.ask("scancel", *jobs)
        self.expectIncomplete()
        # Without cgroups Slurm may miss a process whose parent has ended.
        kill(*(task.pid for task in self.waiting()))
        self.openGate()
        self.resume(range(6))

    def startTwoAttempts(self):
        """Starts a job whose task 1 lives on a node without a daemon, and once more on another node."""
        self.closeGate("1")
        self.submit()
        [lost] = self.started(1)
        self.slurm.loseNode(lost.host)
        [again] = [task for task in self.started(2) if task != lost]
        self.assertNotEqual(lost.host, again.host)
        return lost, again

    def test_two_attempts_end_at_once(self):
        self.startTwoAttempts()
        self.openGate("1")
        self.waitForEmptyQueue()
        self.expectResultOfOneRun()

    def test_attempt_that_outlives_the_merge_changes_nothing(self):
        lost, again = self.startTwoAttempts()
        script = lost.chain("slurmstepd")[1]
        self.openGateOf(again)
        self.waitForEmptyQueue()
        self.expectResultOfOneRun()
        self.openGateOf(lost)
        waitFor(lambda: not isRunning(script), "the end of the first attempt")
        self.expectResultOfOneRun()

    def log(self):
        with open(self.path("base/out.slurm.log"), encoding="utf-8") as file:
            return file.read()

    def test_task_tries_three_times_and_the_log_keeps_everything(self):
        self.plan()
        tile = self.path("base/data/tile 1.xyz")
        time = os.stat(tile).st_mtime_ns
        os.utime(tile, ns=(time, time + 1))
        self.submit()
        self.expectIncomplete()
        self.assertRegex(self.log(), "1 of 6 shards are missing: [0-5]\n")
        index, = re.findall("shards are missing: ([0-5])\n", self.log())
        self.assertEqual(["1", "2", "3"], re.findall(f"shard {index}, try ([0-9]): status 1, on n[1-6]\n", self.log()))
        self.assertEqual(3, self.log().count("tile 1.xyz has changed since "))
        os.utime(tile, ns=(time, time))
        self.resume([int(index)])
        self.assertRegex(self.log(), r"(?s)^.*, try 3: .*\nMerged: [^\n]*\n$")

    def test_more_shards_than_an_array_may_have_are_refused(self):
        for option in (["--shards=1002"], ["--shards", "1002"]):
            run = self.runProgram("vadelclip-slurm", "base/data", "out", "area.xml", *option, "--lang=en",
                                  environment=self.slurm.environment)
            self.assertEqual((2, "vadelclip-slurm: This cluster allows at most 1001 shards.\n"),
                             (run.returncode, run.stdout))
        self.assertEqual(["data"], os.listdir(self.path("base")))

    def test_options_of_the_user_reach_both_jobs(self):
        self.closeGate()
        run = self.runProgram("vadelclip-slurm", "base/data", "out", "area.xml", "--", "--time=30", "--nice=7",
                              environment=self.slurm.environment)
        self.assertRegex(run.stdout, "^Auftrag [0-9]+, danach [0-9]+\\. Stand: Vadelshard status --watch ")
        self.assertEqual({"30:00 7"}, set(self.slurm.ask("squeue", "-h", "--format=%l %y").split("\n")[:-1]))

    def test_failed_submission_is_reported_once(self):
        run = self.runProgram("vadelclip-slurm", *self.JOB, "--", "-p", "none", environment=self.slurm.environment)
        self.assertEqual((1, 1), (run.returncode, run.stdout.count("submission failed")), run.stdout)
        self.assertNotIn("Progress", run.stdout)
        self.assertEqual([], self.slurm.queue())

    def test_job_in_the_queue_is_not_submitted_again(self):
        self.closeGate()
        self.submit()
        run = self.runProgram("vadelclip-slurm", *self.JOB, environment=self.slurm.environment)
        self.assertEqual(2, run.returncode)
        self.assertIn("still in the queue", run.stdout)
        self.openGate()
        self.waitForEmptyQueue()
        self.expectResultOfOneRun()


if __name__ == "__main__":
    unittest.main()
