"""The driver and what has the name of its file already: links, devices, damaged files, other data sets."""
import os
import stat
import unittest

from gdal_files import SQUARE, GdalTest, boundary, gdal, polygonsOf

TRIANGLE = "POLYGON ((0 0,1 0,0 1,0 0))"
TRIANGLE_POINTS = [(0.0, 0.0), (1.0, 0.0), (0.0, 1.0)]


class TargetTest(GdalTest):
    def setUp(self):
        super().setUp()
        self.source = self.give("source.csv", f'id,WKT\n1,"{TRIANGLE}"\n')

    def ogr2ogr(self, name, status=0):
        return self.run_("timeout", "60", "ogr2ogr", "-q", "-f", "VadeDGM", name, "source.csv", "-select", "id", status=status)

    def expectLinkIsKept(self, target):
        self.ogr2ogr("link.xml")
        self.assertEqual(target, os.readlink(self.path("link.xml")))
        self.assertEqual([(1, TRIANGLE_POINTS)], polygonsOf(self.path("link.xml")))
        self.assertTrue(stat.S_ISREG(os.lstat(self.path("area.xml")).st_mode))
        self.assertEqual(["area.xml", "link.xml", "source.csv"], sorted(os.listdir(self.directory)))

    def test_replacesTheFileThatALinkNames(self):
        os.symlink("area.xml", self.path("link.xml"))
        for content in (boundary((5, SQUARE)), "something else"):
            self.give("area.xml", content)
            self.expectLinkIsKept("area.xml")

    def test_createsTheFileThatALinkNames(self):
        os.symlink(self.path("area.xml"), self.path("link.xml"))
        self.expectLinkIsKept(self.path("area.xml"))

    def test_refusesWhatIsNoRegularFile(self):
        os.mkfifo(self.path("fifo.xml"))
        os.mkdir(self.path("directory.xml"))
        os.symlink("fifo.xml", self.path("link.xml"))
        before = sorted(os.listdir(self.directory))
        for name in ("fifo.xml", "directory.xml", "link.xml"):
            self.assertIn(f"Cannot write the boundary file {name}: it is not a regular file", self.ogr2ogr(name, status=1))
            self.assertIsNone(gdal.GetDriverByName("VadeDGM").Create(self.path(name), 0, 0, 0, gdal.GDT_Unknown))
        self.assertTrue(stat.S_ISFIFO(os.stat(self.path("link.xml")).st_mode))
        self.assertEqual(before, sorted(os.listdir(self.directory)))

    def test_refusesALinkToItself(self):
        os.symlink("link.xml", self.path("link.xml"))
        self.assertIn("Cannot write the boundary file link.xml: Too many levels", self.ogr2ogr("link.xml", status=1))
        self.assertEqual("link.xml", os.readlink(self.path("link.xml")))

    def test_replacesADamagedFileSilently(self):
        self.give("area.xml", "<VADELSIM><open>")
        self.assertEqual("", self.ogr2ogr("area.xml"))
        self.assertEqual([(1, TRIANGLE_POINTS)], polygonsOf(self.path("area.xml")))

    def test_deletesADamagedFile(self):
        self.give("area.xml", "<VADELSIM><open>")
        self.assertEqual(gdal.CE_None, gdal.GetDriverByName("VadeDGM").Delete(self.path("area.xml")))
        self.assertEqual(["source.csv"], os.listdir(self.directory))
        self.assertEqual([], self.errors)


if __name__ == "__main__":
    unittest.main()
