"""The driver and what has the name of its file already: links, devices, damaged files, other data sets."""
import os
import stat
import unittest

from gdal_files import SQUARE, GdalTest, boundary, gdal, ogr, polygonsOf

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

    def begin(self, path, count):
        """Returns a data set that is not closed yet, with this number of triangles."""
        dataset = gdal.GetDriverByName("VadeDGM").Create(path, 0, 0, 0, gdal.GDT_Unknown)
        layer = dataset.CreateLayer("areas")
        for _ in range(count):
            feature = ogr.Feature(layer.GetLayerDefn())
            feature.SetGeometry(ogr.CreateGeometryFromWkt(TRIANGLE))
            layer.CreateFeature(feature)
        return dataset

    def test_keepsTheLastOfTwoDataSetsWhole(self):
        for path, read in ((self.path("area.xml"), polygonsOf), ("/vsimem/area.xml", self.features)):
            # More than one buffer each, so that both are partly on disk at the same time.
            first = self.begin(path, 2000)
            second = self.begin(path, 1500)
            del first
            self.assertEqual(2000, len(read(path)))
            del second
            self.assertEqual(1500, len(read(path)))
            self.assertEqual([], self.errors)
        self.assertEqual(["area.xml", "source.csv"], sorted(os.listdir(self.directory)))

    def test_neverFollowsALinkWithItsTemporaryName(self):
        victim = self.give("victim", "precious")
        dataset = self.begin(self.path("area.xml"), 1)
        [temporary] = set(os.listdir(self.directory)) - {"victim", "source.csv"}
        del dataset
        os.remove(self.path("area.xml"))
        # The next name of this process can be guessed.
        start, number, end = temporary.rsplit(".", 2)
        planted = f"{start}.{int(number) + 1}.{end}"
        os.symlink(victim, self.path(planted))
        dataset = self.begin(self.path("area.xml"), 1)
        del dataset
        self.assertEqual("precious", self.read("victim"))
        self.assertEqual(1, len(polygonsOf(self.path("area.xml"))))
        self.assertEqual(["area.xml", planted, "source.csv", "victim"], sorted(os.listdir(self.directory)))

    def test_writesWhereTheNameWasWhenItBegan(self):
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.directory)
        dataset = self.begin("area.xml", 1)
        os.mkdir("elsewhere")
        os.chdir("elsewhere")
        del dataset
        self.assertEqual(1, len(polygonsOf(self.path("area.xml"))))
        self.assertEqual([], os.listdir("."))

    def test_writesNoFileIfAnErrorLeavesNoFeature(self):
        self.run_("ogr2ogr", "-q", "source.gpkg", "source.csv", "-a_srs", "EPSG:25832")
        text = self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", "source.gpkg", "-where", "misspelt = 1", status=1)
        self.assertIn("No feature arrived, and there was an error: the boundary file area.xml is not written", text)
        self.assertEqual(["source.csv", "source.gpkg"], sorted(os.listdir(self.directory)))

    def test_writesAnEmptyFileWithoutAnError(self):
        gdal.Error(gdal.CE_Failure, 1, "an error of before")
        dataset = self.begin(self.path("area.xml"), 0)
        del dataset
        self.run_("ogr2ogr", "-q", "-f", "VadeDGM", "other.xml", "source.csv", "-select", "id", "-where", "id = '7'")
        self.assertEqual([[], []], [polygonsOf(self.path(name)) for name in ("area.xml", "other.xml")])


if __name__ == "__main__":
    unittest.main()
