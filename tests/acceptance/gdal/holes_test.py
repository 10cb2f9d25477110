"""Holes: written as cuts, read back as holes, and left out by the tool."""
import os
import random
import subprocess
import unittest

from gdal_files import EXAMPLES, GdalTest, gdal, ogr, polygonsOf

LAKE = ("POLYGON ((0 0,0 100,100 100,110 0,0 0),(10 20,30 20,30 40,10 40,10 20),(50 30,70 35,60 60,50 30),"
        "(70 35,80 35,75 40,70 35))")


class HolesTest(GdalTest):
    def keptBy(self, name, points):
        """Clips points with the tool and returns those it keeps."""
        os.mkdir(self.path("nodes"))
        lines = "".join(f"{x!r};{y!r};0\n" for x, y in points)
        self.give("nodes/a.xyz", "x;y;z\n" + lines)
        subprocess.run([os.environ["VADELCLIP_EXECUTABLE"], "./nodes", "kept", name], cwd=self.directory, check=True,
                       timeout=60)
        with open(self.path("kept/a.xyz"), encoding="utf-8") as file:
            return {tuple(map(float, line.split(";")[:2])) for line in file.readlines()[1:]}

    def test_comeBackAsInteriorRings(self):
        self.write("area.xml", ({"id": 3}, LAKE))
        self.assertEqual(1, len(polygonsOf(self.path("area.xml"))))
        [(number, geometry)] = self.features(self.path("area.xml"))
        self.assertEqual((3, 4), (number, geometry.GetGeometryCount()))
        original = ogr.CreateGeometryFromWkt(LAKE)
        self.assertTrue(geometry.IsValid())
        self.assertAlmostEqual(original.GetArea(), geometry.GetArea(), 9)
        self.assertTrue(original.SymDifference(geometry).GetArea() < 1e-9)
        self.assertEqual([], self.errors)

    def test_writingThemAgainChangesNothing(self):
        self.write("area.xml", ({"id": 3}, LAKE))
        self.run_("ogr2ogr", "-f", "VadeDGM", "again.xml", "area.xml")
        self.run_("ogr2ogr", "-f", "VadeDGM", "third.xml", "again.xml")
        self.assertEqual(self.read("again.xml"), self.read("third.xml"))
        self.assertEqual(sorted(polygonsOf(self.path("area.xml"))[0][1]), sorted(polygonsOf(self.path("again.xml"))[0][1]))

    def test_theToolLeavesOutTheNodesInThem(self):
        self.write("area.xml", ({}, LAKE))
        dice = random.Random(5)
        points = [(x + 0.5, y + 0.25) for x in range(-5, 115, 3) for y in range(-5, 105, 3)]
        points += [(dice.uniform(0, 110), y) for y in (20.0, 35.0) for _ in range(50)]  # on the cuts
        geometry = ogr.CreateGeometryFromWkt(LAKE)
        expected = {(x, y) for x, y in points if geometry.Intersects(ogr.CreateGeometryFromWkt(f"POINT ({x!r} {y!r})"))}
        self.assertTrue(0 < len(expected) < len(points))
        self.assertEqual(expected, self.keptBy("area.xml", points))

    def test_keepIslandsAsPolygons(self):
        island = "MULTIPOLYGON (((0 0,0 9,9 9,9 0,0 0),(1 1,8 1,8 8,1 8,1 1)),((3 3,5 3,5 5,3 5,3 3)))"
        self.write("area.xml", ({}, island))
        self.assertEqual({(0.5, 5.0), (4.0, 4.0), (8.5, 1.0)},
                         self.keptBy("area.xml", [(0.5, 5.0), (2.0, 2.0), (4.0, 4.0), (6.0, 5.0), (8.5, 1.0)]))

    def test_theExampleHasTheBuildingsAsHoles(self):
        [(_, ground)] = self.features(os.path.join(EXAMPLES, "merewether/ground.xml"))
        [(_, area)] = self.features(os.path.join(EXAMPLES, "merewether/study-area.xml"))
        buildings = ogr.Geometry(ogr.wkbMultiPolygon)
        for _, building in self.features(os.path.join(EXAMPLES, "merewether/buildings.xml")):
            buildings.AddGeometry(building)
        self.assertEqual(1 + 57, ground.GetGeometryCount())
        self.assertTrue(ground.IsValid())
        expected = area.Difference(buildings.UnionCascaded())
        self.assertLess(expected.SymDifference(ground).GetArea(), 1e-3)

    def test_theExampleHasALakeWithIslands(self):
        polygons = [geometry for _, geometry in self.features(os.path.join(EXAMPLES, "coast/victoria.xml"))]
        self.assertEqual([2] + 77 * [1], [polygon.GetGeometryCount() for polygon in polygons])
        lake = ogr.Geometry(ogr.wkbPolygon)
        lake.AddGeometry(polygons[0].GetGeometryRef(1))
        self.assertTrue(all(polygon.IsValid() and lake.Contains(polygon) for polygon in polygons[1:]))

    def test_crossingRingsAreRefused(self):
        for geometry in ("POLYGON ((0 0,9 0,9 9,0 9,0 0),(5 5,12 5,5 6,5 5))",
                         "POLYGON ((0 0,9 0,9 9,0 9,0 0),(15 5,16 5,15 6,15 5))",
                         "POLYGON ((0 0,9 0,9 9,0 9,0 0),(1 1,8 1,1 8,1 1),(2 2,3 2,2 3,2 2))"):
            self.errors.clear()
            self.assertNotEqual([0], self.write("area.xml", ({}, geometry)))
            self.assertEqual(
                ["Cannot write feature 0: the rings of a polygon cross, overlap or are not nested. The option -makevalid of "
                 "ogr2ogr can mend that. No file is written", f"The boundary file {self.path('area.xml')} is not written"],
                [text for level, text in self.errors if level == gdal.CE_Failure])
            self.assertEqual([], os.listdir(self.directory))

    def test_ogr2ogrCanMendCrossingRings(self):
        self.give("area.csv", 'id,WKT\n1,"POLYGON ((0 0,9 0,9 9,0 9,0 0),(5 5,12 5,5 6,5 5))"\n')
        self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", "area.csv", "-makevalid", "-nlt", "PROMOTE_TO_MULTI")
        self.assertTrue(polygonsOf(self.path("area.xml")))

    def test_aRingThatCrossesItselfIsWrittenUnchangedWithAWarning(self):
        self.write("area.xml", ({}, "POLYGON ((0 0,9 9,9 0,0 9,0 0))"))
        self.assertEqual([(0, [(0, 0), (9, 9), (9, 0), (0, 9)])], polygonsOf(self.path("area.xml")))
        self.assertEqual((gdal.CE_Warning, "A ring that crosses or touches itself is written unchanged: the even-odd rule "
                                           "decides what is inside"), self.errors[-1])


if __name__ == "__main__":
    unittest.main()
