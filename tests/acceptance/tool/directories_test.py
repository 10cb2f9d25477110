"""The directories of a run: how the input path is split, what is refused, where the output directory is created."""
import errno
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, FIFO, KEPT, NODES, SQUARE, AcceptanceTest, linkTo, output
from expected_messages import finishedRun
from fault_checks import failing, fails
from target_platform import joined, possible

EXISTS = "Output directory {} already exists, aborting in order avoid overwriting of existing data"
CREATE = "boost::filesystem::create_directory"
STATUS = "boost::filesystem::status"


class DirectoryTest(AcceptanceTest):
    def setUp(self):
        super().setUp()
        self.give({"area.xml": SQUARE})

    def giveNodes(self, directory="base/data"):
        self.give({f"{directory}/{name}": content for name, content in NODES.items()})

    def clip(self, inputDirectory="base/data", outputName="out", **settings):
        return self.start(inputDirectory, outputName, "area.xml", **settings)

    def expectOutputAt(self, directory, run):
        self.expect(run, status=0, created=output(1, KEPT, at=directory), messages=finishedRun(2))


class ParentDirectory(DirectoryTest):
    def test_missing_parent_is_refused(self):
        self.expectFailed(self.clip("no/data"), "Directory no does not exist")
        self.expectFailed(self.clip("no/such/place/data"), "Directory no/such/place does not exist")

    def test_parent_that_is_a_file_is_refused(self):
        self.give({"base": b"", "pipe": FIFO})
        self.expectFailed(self.clip("base/data"), "Directory base does not exist")
        self.expectFailed(self.clip("pipe/data"), "Directory pipe does not exist")

    def test_bare_name_of_an_existing_directory_is_refused(self):
        self.giveNodes("data")
        self.expectFailed(self.clip("data"), "Directory  does not exist")

    def test_paths_without_a_parent_are_refused(self):
        for path in ("", ".", "..", "/"):
            with self.subTest(path=path):
                self.expectFailed(self.clip(path), "Directory  does not exist")

    def test_quotes_the_parent_unchanged(self):
        for path in possible("./no//such", "{0}", "no\nsuch", os.fsdecode(b"n\xf6")):
            with self.subTest(path=path):
                self.expectFailed(self.clip(path + "/data"), f"Directory {path} does not exist")


class InputDirectory(DirectoryTest):
    def test_missing_input_directory_is_refused(self):
        self.give({"base": DIRECTORY})
        self.expectFailed(self.clip(), f"Input directory {joined('base', 'data')} does not exist")
        self.expectFailed(self.clip("./base//data"), f"Input directory {joined('./base', 'data')} does not exist")

    def test_missing_input_in_the_root_directory_is_quoted(self):
        name = os.path.basename(os.path.dirname(self.directory)) + "-missing"
        self.expectFailed(self.clip("/" + name), f"Input directory /{name} does not exist")

    def test_input_that_is_no_directory_is_refused(self):
        for kind in (b"x;y;z\n1;1;1\n", FIFO, linkTo("nowhere")):
            with self.subTest(kind=kind):
                self.startOver()
                self.give({"area.xml": SQUARE, "base/data": kind})
                self.expectFailed(self.clip(), f"Input directory {joined('base', 'data')} does not exist")

    def test_link_to_a_directory_is_an_input_directory(self):
        self.giveNodes("elsewhere/nodes")
        self.give({"base/data": linkTo("../elsewhere/nodes")})
        self.expectOutputAt("base/out", self.clip())

    def test_absolute_path_is_accepted(self):
        self.giveNodes()
        self.expectOutputAt("base/out", self.clip(self.path("base/data")))

    def test_dot_as_parent_is_accepted(self):
        self.giveNodes("data")
        self.expectOutputAt("out", self.clip("./data"))

    def test_trailing_separator_puts_the_output_into_the_input(self):
        for path in ("base/data/", "base/data//", "base/data///", "base/data/."):
            with self.subTest(path=path):
                self.startOver()
                self.give({"area.xml": SQUARE})
                self.giveNodes()
                self.expectOutputAt("base/data/out", self.clip(path))

    def test_trailing_separator_puts_the_whole_path_into_messages(self):
        self.give({"base": DIRECTORY})
        self.expectFailed(self.clip("base/data/"), "Directory base/data does not exist")
        self.give({"base/data/out": DIRECTORY})
        self.expectFailed(self.clip("base/data/"), EXISTS.format(joined("base/data", "out")))

    def test_trailing_separator_makes_the_name_a_dot(self):
        self.giveNodes()
        self.give({"base/data/l.xyz": linkTo("l.xyz")})
        run = self.clip("base/data/")
        self.expectThrown(run, STATUS, created={"base/data/out": DIRECTORY})
        self.assertIn(b'"base/data/./l.xyz"', run.console)


class OutputDirectory(DirectoryTest):
    def setUp(self):
        super().setUp()
        self.giveNodes()

    def test_second_run_is_refused(self):
        self.expectOutputAt("base/out", self.clip())
        self.expectFailed(self.clip(), EXISTS.format(joined("base", "out")), created=output(1, KEPT))

    def test_file_in_place_of_the_output_directory_throws(self):
        for kind in (b"content\n", FIFO, linkTo("nowhere"), linkTo("data/a.xyz")):
            with self.subTest(kind=kind):
                self.startOver()
                self.give({"area.xml": SQUARE, "base/out": kind})
                self.giveNodes()
                self.expectThrown(self.clip(), CREATE)

    def test_output_directory_within_the_input_is_no_input(self):
        self.expectOutputAt("base/data/new.txt", self.clip(outputName="data/new.txt"))

    def test_any_name_is_accepted(self):
        for name in possible("-x", "{0}", "a b", "two\nlines", " ", os.fsdecode(b"\xff"), "ä"):
            with self.subTest(name=name):
                self.startOver()
                self.give({"area.xml": SQUARE})
                self.giveNodes()
                self.expectOutputAt(f"base/{name}", self.clip(outputName=name))
                self.expectFailed(self.clip(outputName=name), EXISTS.format(joined("base", name)),
                                  created=output(1, KEPT, at=f"base/{name}"))


class AppearingDirectory(DirectoryTest):
    def test_output_directory_that_appears_late_is_used(self):
        self.giveNodes()
        self.give({"base/out": DIRECTORY})
        # The check does not find it yet.
        self.expectOutputAt("base/out", self.clip(environment=failing("stat", "base/out", fails(errno.ENOENT))))


if __name__ == "__main__":
    unittest.main()
