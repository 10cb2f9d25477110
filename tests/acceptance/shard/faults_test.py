"""Shards that cannot be right fail with a sentence, and the same command again succeeds when the cause is gone."""
import errno
import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import dropPowersOfRoot
from fault_checks import PASS, failing, failsForever
from sharding import HEADER, INSIDE, SHARD, WORK, ShardTest, manyLines

NODES = {"a.xyz": HEADER + INSIDE * 30, "b.xyz": HEADER + INSIDE * 20}


def limitFiles(size):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
    return limit


class FaultyShards(ShardTest):
    def setUp(self):
        super().setUp()
        self.giveJob(NODES)
        self.planned()

    def expectFailedClip(self, sentence, *options, index=0, **settings):
        self.expectFailure(sentence, "clip", WORK, str(index), *options, **settings)
        self.assertEqual([], os.listdir(self.scratch))
        self.assertEqual([], os.listdir(self.path(WORK + "/attempts")))
        self.assertEqual([], os.listdir(self.path(WORK + "/done")))

    def expectGoodOutput(self, count=2):
        self.clipAll(count)
        self.mustDo("merge", WORK)
        self.assertEqual(self.outputTree(), {**NODES, "total_node_count.txt": b"50\n"})
        self.expectNothingLeft()

    def test_input_changed_after_the_plan(self):
        changed = "base/data/a.xyz has changed since the plan was made. Restore it, or remove the work directory to start anew."
        path = self.path("base/data/a.xyz")
        time_ = os.stat(path).st_mtime_ns
        for options in ((), ("--direct",)):
            os.utime(path, ns=(time_, time_ + 1))
            self.expectFailedClip(changed, *options)
            with open(path, "ab") as file:
                file.write(INSIDE)
            os.utime(path, ns=(time_, time_))
            self.expectFailedClip(changed, *options)
            with open(path, "r+b") as file:
                file.truncate(len(NODES["a.xyz"]))
            os.utime(path, ns=(time_, time_))
        self.expectGoodOutput()

    def test_input_is_not_there(self):
        os.rename(self.path("base/data"), self.path("base/away"))
        for options in ((), ("--direct",)):
            self.expectFailedClip("base/data/a.xyz: No such file or directory", *options)
        os.rename(self.path("base/away"), self.path("base/data"))
        self.expectGoodOutput()

    def test_permission_lost(self):
        path = self.path("base/data/a.xyz")
        os.chmod(path, 0)
        for options in ((), ("--direct",)):
            self.expectFailedClip("base/data/a.xyz: Permission denied", *options, preexec_fn=dropPowersOfRoot)
        os.chmod(path, 0o644)
        self.expectGoodOutput()

    def test_scratch_is_full(self):
        done = self.shard("clip", WORK, "0", preexec_fn=limitFiles(100))
        self.assertRegex(done.errors, "^Vadelshard: .*/in/0.xyz: File too large\n$")
        # In place of the input only the output has no space. The tool itself does not report it.
        self.expectFailedClip("The outputs hold 15 lines, but the count of the tool is 30. Is the disk full?", "--direct",
                              preexec_fn=limitFiles(len(HEADER + INSIDE * 15)))
        done = self.shard("clip", WORK, "0", "--direct", preexec_fn=limitFiles(len(HEADER + INSIDE * 15) + 2))
        self.assertRegex(done.errors, "^Vadelshard: The last line of .*/out/0.xyz is cut off. Is the disk full")
        self.expectGoodOutput()

    def test_no_scratch_directory(self):
        self.expectFailedClip("none/vadelshard-: No such file or directory".replace("-:", f"-{self.jobId()}-:"),
                              environment={"TMPDIR": "none"})

    def jobId(self):
        return json.loads(Path(self.path(WORK), "plan/job.json").read_text())["id"]

    def test_work_directory_is_full(self):
        done = self.shard("clip", WORK, "0", environment=failing("write", "report.json", failsForever(errno.ENOSPC)))
        self.assertEqual(1, done.status)
        self.assertRegex(done.errors, "^Vadelshard: .*/report.json: No space left on device\n$")
        self.expectGoodOutput()

    def test_no_space_for_the_plan(self):
        shutil.rmtree(self.path(WORK))
        for name in ("boundary.xml", "1.json", "job.json"):
            done = self.plan(environment=failing("write", name, failsForever(errno.ENOSPC)))
            self.assertEqual((1, f"Vadelshard: {WORK}/plan.new/{name}: No space left on device\n"),
                             (done.status, done.errors))
            self.assertFalse(os.path.lexists(self.path(WORK)))
        self.planned()
        self.expectGoodOutput()

    def test_node_file_that_the_tool_cannot_open(self):
        shutil.rmtree(self.path(WORK))
        self.planned("--shards=1")
        # The tool skips the file and ends with status 0.
        unopened = failing("open", "/in/0.xyz", failsForever(errno.EIO))
        for options in ((), ("--direct",)):
            self.expectFailedClip("Vadelclip has read 1 of 2 node files.", *options, environment=unopened)
        self.expectGoodOutput(1)

    def test_output_directory_is_full(self):
        self.clipAll(2)
        for name in ("merged/total_node_count.txt", "figures"):
            done = self.shard("merge", WORK, environment=failing("write", name, failsForever(errno.ENOSPC)))
            self.assertEqual(1, done.status)
            self.assertRegex(done.errors, f"^Vadelshard: {WORK}/attempts/merge.*/{name}: No space left on device\n$")
            self.assertFalse(os.path.lexists(self.path("base/out")))
        self.expectGoodOutput()

    def test_tool_that_fails(self):
        # A read error of the boundary file at the tool.
        done = self.shard("clip", WORK, "0", environment=failing("open", "plan/boundary.xml", failsForever(errno.EIO)))
        self.assertRegex(done.errors, "^Vadelshard: Vadelclip ended with exit status 1: Boundary file .*/plan/boundary.xml")
        self.expectGoodOutput()


class FaultyMerges(ShardTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + manyLines(60), "b.xyz": NODES["b.xyz"]})
        _, _, self.expected = self.oneRun()
        self.count = self.planned("--part=100")

    def expectMissing(self, expression, number):
        self.expectFailure(f"{number} of {self.count} shards are missing: {expression}", "merge", WORK)
        self.assertFalse(os.path.lexists(self.path("base/out")))

    def expectGoodMerge(self):
        self.mustDo("merge", WORK)
        self.assertEqual(self.expected, self.outputTree())
        self.expectNothingLeft()

    def test_incomplete(self):
        self.expectMissing(f"0-{self.count - 1}", self.count)
        self.clipAll(self.count, order=range(1, self.count - 1))
        self.expectMissing(f"0,{self.count - 1}", 2)
        self.clipAll(self.count)
        self.expectGoodMerge()

    def test_damaged_results_are_missing(self):
        self.clipAll(self.count)
        with open(self.path(WORK + "/done/1/0"), "ab") as file:
            file.write(INSIDE)
        os.remove(self.path(WORK + "/done/0/report.json"))
        self.expectMissing("0-1", 2)
        self.clipAll(self.count)
        os.remove(self.path(WORK + "/done/2/0"))
        self.expectMissing("2", 1)
        self.clipAll(self.count)
        Path(self.path(WORK), "done/0/report.json").write_text("{")
        done = self.shard("merge", WORK)
        self.assertEqual((1, f"Vadelshard: {WORK}/done/0/report.json is damaged.\n"), (done.status, done.errors))

    def test_no_space_for_a_joined_file(self):
        self.clipAll(self.count)
        done = self.shard("merge", WORK, environment=failing("write", "merged/a.xyz", PASS, failsForever(errno.ENOSPC)))
        self.assertEqual(1, done.status)
        self.assertRegex(done.errors, "^Vadelshard: .*/merged/a.xyz: No space left on device\n$")
        self.assertFalse(os.path.lexists(self.path("base/out")))
        self.expectGoodMerge()

    def test_output_directory_of_another_run(self):
        self.clipAll(self.count)
        os.mkdir(self.path("base/out"))
        done = self.shard("merge", WORK)
        self.assertEqual((1, "Output directory base/out already exists, aborting in order avoid overwriting of existing "
                             "data\n"), (done.status, done.output))
        self.assertEqual([], os.listdir(self.path("base/out")))
        run = subprocess.run([SHARD, "merge", "out.shards"], cwd=self.path("base"), stdout=subprocess.PIPE, check=False)
        self.assertEqual((1, done.output.replace("base/out", "./out").encode()), (run.returncode, run.stdout))
        os.rmdir(self.path("base/out"))
        self.expectGoodMerge()


if __name__ == "__main__":
    unittest.main()
