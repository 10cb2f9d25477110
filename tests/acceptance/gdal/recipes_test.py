"""Runs all commands of docs/recipes.md and compares their output with the document."""
import os
import shutil
import sys
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from manual_examples import differences, readPage  # noqa: E402

PROGRAMS = ("ogr2ogr", "ogrinfo", "gdal_translate", "gdal_rasterize", "gdal_grid", "gdalbuildvrt", "gdalinfo")


class Recipes(unittest.TestCase):
    maxDiff = None

    def test_printWhatTheDocumentSays(self):
        missing = [program for program in PROGRAMS if not shutil.which(program)]
        if missing:
            self.skipTest("not installed: " + ", ".join(missing))
        tools = os.path.dirname(os.environ["VADELCLIP_EXECUTABLE"])
        environment = {"PATH": f"{tools}:{os.environ['PATH']}", "GDAL_DRIVER_PATH": os.environ["VADELCLIP_GDAL_PLUGINS"],
                       "LC_ALL": "C.UTF-8", "HOME": "/nonexistent"}
        self.assertEqual([], differences(readPage(os.path.join(ROOT, "docs", "recipes.md")), os.path.join(ROOT, "examples"),
                                         environment=environment))


if __name__ == "__main__":
    unittest.main()
