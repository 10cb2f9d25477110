"""What plan refuses: in the words of the tool and with its status and files, or with a new reason."""
import os
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, FIFO, SANITIZED, SQUARE, TOOL, dropPowersOfRoot, linkTo, readTree
from sharding import HEADER, INSIDE, OUTSIDE, WORK, ShardTest

NODES = {"a.xyz": HEADER + INSIDE, "b.xyz": HEADER + OUTSIDE}


class RefusedByTheTool(ShardTest):
    def expectRefusedAsByTheTool(self, *arguments):
        """Compares console, status and files after a refused run and after a refused plan."""
        before = readTree(self.directory)
        run = self.start(*arguments, "-lang=en", tool=TOOL)
        self.assertEqual(1, run.status, run)
        self.removeNew(before)
        done = self.shard("plan", "--lang=en", "--", *arguments)
        self.assertEqual((run.status, os.fsdecode(run.console), "", run.tree),
                         (done.status, done.output, done.errors, readTree(self.directory)))
        self.removeNew(before)

    def removeNew(self, before):
        for path in sorted(set(readTree(self.directory)) - set(before), reverse=True):
            os.rmdir(self.path(path))

    def test_wrong_arguments(self):
        self.giveJob(NODES)
        for arguments in ((), ("base/data", "out"), ("base/data", "out", "area.xml", "more"), ("", "", "")):
            self.expectRefusedAsByTheTool(*arguments)

    def test_what_is_missing(self):
        self.giveJob(NODES)
        for arguments in (("base/none", "out", "area.xml"), ("none/data", "out", "area.xml"), ("base", "out", "area.xml"),
                          ("base/data", "out", "none.xml"), ("base/data", "no/out", "area.xml"),
                          ("area.xml", "out", "area.xml")):
            self.expectRefusedAsByTheTool(*arguments)

    @unittest.skipIf(SANITIZED, "the sanitizer ends the tool, which asks for as much memory as the system allows a file")
    def test_directory_as_boundary(self):
        self.giveJob(NODES)
        self.expectRefusedAsByTheTool("base/data", "out", "base")

    def test_bad_boundary(self):
        self.giveJob(NODES)
        self.give({"bad.xml": b"<no", "none.xml": b"", "-b.xml": SQUARE.replace(b"y=", b"u=")})
        for name in ("bad.xml", "none.xml", "-b.xml"):
            self.expectRefusedAsByTheTool("base/data", "out", name)

    def test_existing_output(self):
        self.giveJob(NODES)
        self.give({"base/old": DIRECTORY, "base/file": b"", "base/link": linkTo("nowhere")})
        for name in ("old", "file", "link", ".", "..", ""):
            self.expectRefusedAsByTheTool("base/data", name, "area.xml")

    def test_no_input_files(self):
        for files in ({}, {"a.dat": HEADER}, {"a.xyz": b"bad\n", "b.xyz": b"", "c.txt": b"x" * 1000}):
            self.startOver()
            self.giveJob(files)
            self.expectRefusedAsByTheTool("base/data", "out", "area.xml")

    def test_links_in_a_circle(self):
        self.giveJob(NODES)
        self.give({"base/data/circle": linkTo("circle")})
        self.expectRefusedAsByTheTool("base/data", "out", "area.xml")

    def test_german(self):
        self.giveJob(NODES)
        done = self.shard("plan", "base/none", "out", "area.xml")
        self.assertEqual((1, "Das Eingabeverzeichnis base/none existiert nicht\n"), (done.status, done.output))


class OwnRefusals(ShardTest):
    def expectRefused(self, sentence, *arguments):
        self.expectFailure(sentence, "plan", *(arguments or ("base/data", "out", "area.xml")), "--lang=en")
        self.assertFalse(os.path.lexists(self.path("base/out")))
        self.assertFalse(os.path.lexists(self.path(WORK)))

    def test_fifo(self):
        self.giveJob(NODES)
        self.give({"base/data/pipe.xyz": FIFO})
        self.expectRefused("base/data/pipe.xyz is not a regular file. Only regular files can be split into shards.")

    def test_fifo_that_the_tool_would_skip(self):
        self.giveJob(NODES)
        self.give({"base/data/pipe": FIFO})
        self.assertEqual(2, self.planned())

    def test_fifo_as_boundary(self):
        self.giveJob(NODES)
        self.give({"pipe.xml": FIFO})
        self.expectRefused("pipe.xml is not a regular file, so it cannot be copied for every shard.",
                           "base/data", "out", "pipe.xml")

    def test_other_arguments_for_an_existing_plan(self):
        self.giveJob(NODES)
        self.planned()
        sentence = f"{WORK} is the work directory of a job with other arguments. Remove it to start anew."
        for option in ("--shards=1", "--part=9"):
            self.expectFailure(sentence, "plan", "base/data", "out", "area.xml", "--lang=en", option)
        self.give({"area.xml": SQUARE + b" "})
        self.expectFailure(sentence, "plan", "base/data", "out", "area.xml", "--lang=en")

    def test_node_files_that_are_new_or_missing_since_the_plan(self):
        self.giveJob(NODES)
        self.planned()
        command = ("plan", "base/data", "out", "area.xml", "--lang=en")
        self.give({"base/data/c.xyz": HEADER, "base/data/note": b""})
        changed = "The input directory has changed since the plan was made: "
        self.expectFailure(f"{changed}c.xyz is new. Remove {WORK} to start anew.", *command)
        os.rename(self.path("base/data/c.xyz"), self.path("base/data/c"))
        os.rename(self.path("base/data/a.xyz"), self.path("base/data/a"))
        self.expectFailure(f"{changed}a.xyz is missing. Restore it, or remove {WORK} to start anew.", *command)
        os.rename(self.path("base/data/a"), self.path("base/data/a.xyz"))
        self.planned()

    def test_name_too_long_for_the_work_directory(self):
        self.giveJob(NODES)
        name = "x" * 250
        self.expectRefused(f"base/{name}.shards: File name too long", "base/data", name, "area.xml")

    def test_file_in_place_of_the_work_directory(self):
        self.giveJob(NODES)
        self.give({WORK: b"", "base/link.shards": linkTo("nowhere")})
        for name in ("out", "link"):
            sentence = f"base/{name}.shards: Not a directory"
            self.expectFailure(sentence, "plan", "base/data", name, "area.xml", "--lang=en")
            self.expectFailure(sentence, "merge", f"base/{name}.shards", "--lang=en")

    def test_unreadable_tile_is_left_out_as_in_one_run(self):
        self.giveJob({**NODES, "c.xyz": HEADER + INSIDE})
        os.chmod(self.path("base/data/c.xyz"), 0)
        done = self.plan(preexec_fn=dropPowersOfRoot)
        self.assertEqual((0, "2\n", "Node files that cannot be opened and are left out, as the tool does: 1. "
                                    "The first is c.xyz.\n"), (done.status, done.output, done.errors))
        self.clipAll(2, preexec_fn=dropPowersOfRoot)
        self.mustDo("merge", WORK)
        merged = self.outputTree()
        shutil.rmtree(self.path("base/out"))
        subprocess.run([TOOL, "base/data", "out", "area.xml"], cwd=self.directory, preexec_fn=dropPowersOfRoot, check=True)
        self.assertEqual(self.outputTree(), merged)

    def test_wrong_options(self):
        for arguments, sentence in (
                ((), "A subcommand is required"), (("clip",), "work-directory is required"),
                (("clip", "x.shards"), "index is required"), (("clip", "x.shards", "-1"), "index: Value -1 not in range"),
                (("plan", "--shards=0"), "--shards: Value 0 not in range 1 to 1000000"),
                (("plan", "--part=2147483648"), "--part: Value 2147483648 not in range 1 to 2147483647"),
                (("status", "x.shards", "--json", "--missing"), " excludes --"),
                (("status", "x.shards", "--watch", "--json"), " excludes --"),
                (("status", "x.shards", "--watch", "--missing"), " excludes --")):
            done = self.shard(*arguments)
            self.assertEqual(2, done.status, done)
            self.assertIn(sentence, done.errors)

    def test_wrong_work_directory(self):
        for command in (["clip", "none", "0"], ["merge", "none"], ["status", "none"]):
            self.expectFailure("none is not the name of a work directory: it must end in .shards.", *command, "--lang=en")
        for command in (["clip", WORK, "0"], ["status", WORK]):
            self.expectFailure(f"There is no plan in {WORK}. Run Vadelshard plan first.", *command, "--lang=en")
        self.expectFailure(f"{WORK}: No such file or directory", "merge", WORK, "--lang=en")


if __name__ == "__main__":
    unittest.main()
