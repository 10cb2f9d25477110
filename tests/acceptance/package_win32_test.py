"""The package for Windows, unpacked: it holds all that the executable needs, and the terms of all that is in it."""
import glob
import os
import sys
import unittest
import zipfile

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path[:0] = [os.path.join(ROOT, "tests", "support"), os.path.join(ROOT, "scripts")]
from acceptance import TOOL, AcceptanceTest  # noqa: E402
from examples_test import readCounts  # noqa: E402
from windows_notices import findMissing  # noqa: E402


class Package(AcceptanceTest):
    def setUp(self):
        super().setUp()
        packages = glob.glob(os.path.join(os.path.dirname(TOOL), "Vadelclip-*-windows-x64.zip"))
        self.assertEqual(len(packages), 1, "scripts/build-windows.sh makes one")
        self.name = os.path.basename(packages[0]).removesuffix(".zip")
        with zipfile.ZipFile(packages[0]) as package:
            package.extractall(self.directory)
            self.files = {entry.removeprefix(self.name + "/"): package.read(entry) for entry in package.namelist()}
        self.tool = self.path(self.name + "/Vadelclip.exe")

    def test_the_executable_is_the_one_that_is_tested(self):
        with open(TOOL, "rb") as file:
            self.assertEqual(self.files["Vadelclip.exe"], file.read())

    def test_it_speaks_german_as_it_is_unpacked(self):
        run = self.start(tool=self.tool)
        self.assertEqual((run.status, run.errors), (1, b""))
        self.assertTrue(run.console.startswith(b"Aufruf: Vadelclip <"), run.console)

    def test_it_clips_its_own_examples(self):
        for boundaryFile in ("merewether/road.xml", "merewether/buildings.xml", "coast/islands.xml"):
            with self.subTest(boundaryFile=boundaryFile):
                exampleSet, name = boundaryFile.split("/")
                place = f"{self.name}/examples/{exampleSet}"
                run = self.start(f"{place}/nodes", "kept-" + name, f"{place}/{name}", tool=self.tool)
                self.assertEqual((run.status, run.console, run.errors), (0, b"", b""))
                self.assertEqual(run.tree[f"{place}/kept-{name}/total_node_count.txt"],
                                 b"%d\r\n" % readCounts(name)["all"])

    def test_the_terms_of_all_that_is_in_it_are_there(self):
        self.assertEqual(findMissing(self.files), [])
        self.assertTrue(all(content.strip() for name, content in self.files.items() if name.startswith("licences/")))


if __name__ == "__main__":
    unittest.main()
