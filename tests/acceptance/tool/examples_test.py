"""Real data, compared with counts by two independent geometry libraries. examples/README.md has the tables."""
import os
import shutil
import sys
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from acceptance import TOOL, AcceptanceTest, readTree  # noqa: E402
from target_platform import inTextMode  # noqa: E402

EXAMPLES = os.path.join(ROOT, "examples")


def readCounts(boundaryFile):
    """Reads from the README the number of points inside the polygons, for each node file and for "all"."""
    counts = {}
    column = None
    with open(os.path.join(EXAMPLES, "README.md"), encoding="utf-8") as file:
        for line in file:
            cells = [cell.strip().strip("`") for cell in line.split("|")]
            if f"kept: {boundaryFile}" in cells:
                column = cells.index(f"kept: {boundaryFile}")
            elif len(cells) == 1:
                column = None
            elif column is not None and not cells[1].startswith("-"):
                counts[cells[1]] = int(cells[column])
    return counts


def linesOf(content):
    return content.replace(b"\r\n", b"\n").splitlines()


class ExamplesTest(AcceptanceTest):
    def clipExample(self, exampleSet, boundaryFile):
        nodes = os.path.join(EXAMPLES, exampleSet, "nodes")
        shutil.copytree(nodes, self.path("base/data"))
        run = self.start("base/data", "out", os.path.join(EXAMPLES, exampleSet, boundaryFile), tool=TOOL)
        counts = readCounts(boundaryFile)
        total = counts.pop("all")
        self.assertEqual(run.status, 0)
        self.assertEqual(run.console, b"")
        self.assertEqual(run.errors, b"")
        written = readTree(self.path("base/out"))
        self.assertEqual(written.pop("total_node_count.txt"), inTextMode(b"%d\n" % total))
        self.assertEqual({name: len(linesOf(content)) - 1 for name, content in written.items()},
                         {name: count for name, count in counts.items() if count > 0})
        for name, content in written.items():
            with open(os.path.join(nodes, name), "rb") as file:
                self.checkIsSubsequence(linesOf(content), linesOf(file.read()), name)

    def checkIsSubsequence(self, kept, given, name):
        """Expects the header of the input, and only lines of the input in the order of the input."""
        self.assertEqual(kept[0], given[0], name)
        rest = iter(given)
        for line in kept:
            self.assertTrue(any(line == candidate for candidate in rest), (name, line))


def addTest(exampleSet, boundaryFile):
    name = f"test_{exampleSet}_{boundaryFile[:-4].replace('-', '_')}_has_the_independent_counts"
    setattr(ExamplesTest, name, lambda self: self.clipExample(exampleSet, boundaryFile))


for pair in (("merewether", "buildings.xml"), ("merewether", "road.xml"), ("merewether", "study-area.xml"),
             ("merewether", "ground.xml"),
             ("coast", "islands.xml"), ("coast", "australia.xml"), ("coast", "victoria.xml")):
    addTest(*pair)

if __name__ == "__main__":
    unittest.main()
