"""Files and directories that the user of the tool may not read or write.

If root runs the tests, the tool runs as the user nobody, from a copy that all users can execute. Otherwise it runs as
the user of the tests.
"""
import os
import shutil
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SQUARE, TOOL, AcceptanceTest, linkTo, output
from expected_messages import jsonFailedRun, jsonFinishedRun

HEADER = b"x;y;z\n"
NODES, KEPT = HEADER + b"1;1;5\n20;1;5\n", HEADER + b"1;1;5\n"
NOBODY = 65534


def becomeNobody():
    if os.geteuid() == 0:
        os.setgroups([])
        os.setgid(NOBODY)
        os.setuid(NOBODY)


class UnprivilegedUser(AcceptanceTest):
    def setUp(self):
        super().setUp()
        os.umask(0o022)
        os.chmod(os.path.dirname(self.directory), 0o711)
        self.tool = os.path.join(self.aside, "Vadelclip")
        shutil.copy(TOOL, self.tool)
        os.chmod(self.tool, 0o755)

    def giveJob(self, nodeFiles, area=SQUARE):
        super().giveJob(nodeFiles, area)
        os.chmod(self.path("base"), 0o777)

    def clip(self, *options, **settings):
        return self.start("base/data", "out", "area.xml", "-lang=en", "-pipe", tool=self.tool,
                          beforeStart=becomeNobody, **settings)

    def forbid(self, name, mode=0):
        os.chmod(self.path(name), mode)

    def expectThrownBy(self, run, origin, created=None):
        text, = run.consoleLines()
        self.assertRegex(text, f"^{origin}: Permission denied")
        self.expect(run, status=1, console=[text], created=created, messages=jsonFailedRun(text))

    def expectKeptOf(self, name, run):
        self.expect(run, status=0, created=output(1, {name: KEPT}), messages=jsonFinishedRun(0.0, 50.0, 100.0))

    def test_ordinary_job_needs_no_privilege(self):
        self.giveJob({"a.xyz": NODES})
        self.expectKeptOf("a.xyz", self.clip())
        owner = NOBODY if os.geteuid() == 0 else os.geteuid()
        for name in ("base/out", "base/out/a.xyz", "base/out/total_node_count.txt"):
            self.assertEqual(os.stat(self.path(name)).st_uid, owner)

    def test_unreadable_files_are_skipped(self):
        self.giveJob({"a.xyz": NODES, "b.xyz": NODES, "c.txt": NODES})
        self.forbid("base/data/b.xyz")
        self.forbid("base/data/c.txt", 0o300)
        self.expectKeptOf("a.xyz", self.clip())

    def test_only_unreadable_files_are_no_input_files(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("base/data/a.xyz")
        text = "There are no input files."
        self.expect(self.clip(), status=1, console=[text], created={"base/out": DIRECTORY},
                    messages=jsonFailedRun(text))

    def test_unreadable_boundary_file_is_not_found(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("area.xml")
        texts = "Boundary file area.xml not found", "Boundary file area.xml does not exist"
        self.expect(self.clip(), status=1, console=texts, messages=jsonFailedRun(*texts))

    def test_unlistable_input_directory_throws(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("base/data", 0o100)
        self.expectThrownBy(self.clip(), "boost::filesystem::directory_iterator::construct", {"base/out": DIRECTORY})

    def test_directory_without_search_permission_throws(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("base/data", 0o444)
        self.expectThrownBy(self.clip(), "boost::filesystem::status", {"base/out": DIRECTORY})

    def test_link_into_a_closed_directory_throws(self):
        self.giveJob({"a.xyz": NODES, "b.xyz": linkTo("../../closed/b.xyz")})
        self.give({"closed/b.xyz": NODES})
        self.forbid("closed")
        self.expectThrownBy(self.clip(), "boost::filesystem::status", {"base/out": DIRECTORY})

    def test_closed_parent_directory_throws(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("base")
        self.expectThrownBy(self.clip(), "boost::filesystem::status")

    def test_unwritable_parent_directory_throws(self):
        self.giveJob({"a.xyz": NODES})
        self.forbid("base", 0o555)
        self.expectThrownBy(self.clip(), "boost::filesystem::create_directory")

    def test_inputs_need_not_be_writable(self):
        self.giveJob({"a.xyz": NODES})
        for name in ("base/data/a.xyz", "area.xml"):
            self.forbid(name, 0o444)
        self.forbid("base/data", 0o555)
        self.expectKeptOf("a.xyz", self.clip())


if __name__ == "__main__":
    unittest.main()
