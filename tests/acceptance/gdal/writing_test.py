"""The driver as a writer: the bytes of the file, what is refused, and that no half file is left."""
import math
import os
import resource
import unittest

from gdal_files import EXAMPLE_FILES, GdalTest, gdal, ogr, polygonsOf

TRIANGLE = "POLYGON ((0 0,1 0,0 1,0 0))"
TRIANGLE_POINTS = [(0.0, 0.0), (1.0, 0.0), (0.0, 1.0)]


class WritingTest(GdalTest):
    def expectRefused(self, text, *features, **settings):
        """Expects that the last feature is refused, and that no file is left."""
        self.errors.clear()
        results = self.write("area.xml", *features, **settings)
        self.assertNotEqual(0, results[-1])
        self.assertEqual([0] * (len(results) - 1), results[:-1])
        self.assertEqual([f"Cannot write feature {len(results) - 1}: {text}. No file is written",
                          f"The boundary file {self.path('area.xml')} is not written"],
                         [message for level, message in self.errors if level == gdal.CE_Failure])
        self.assertEqual([], os.listdir(self.directory))

    def expectPolygons(self, expected, *features, **settings):
        self.assertEqual([0] * len(features), self.write("area.xml", *features, **settings), self.errors)
        self.assertEqual(expected, polygonsOf(self.path("area.xml")))
        self.assertEqual(["area.xml"], os.listdir(self.directory))

    def test_writesTheseBytes(self):
        self.write("area.xml", ({"id": 7}, "POLYGON ((382213.817011042 6354235.24761079 3,1 0 3,-0 1e-7 3,382213.817011042 "
                                           "6354235.24761079 3))"))
        self.assertEqual("""<?xml version="1.0" encoding="UTF-8"?>
<VADELSIM>
 <VadeDGM>
  <group type="boundaries">
   <polygon id="7">
<point x="382213.817011042" y="6354235.24761079"/>
<point x="1" y="0"/>
<point x="-0" y="1e-07"/>
   </polygon>
  </group>
 </VadeDGM>
</VADELSIM>
""", self.read("area.xml"))
        self.assertEqual([], self.errors)

    def test_writesEachPartOfAMultiPolygonWithTheSameId(self):
        self.expectPolygons([(4, TRIANGLE_POINTS), (4, [(5, 5), (6, 5), (5, 6)]), (5, TRIANGLE_POINTS)],
                            ({"id": 4}, "MULTIPOLYGON (((0 0,1 0,0 1,0 0)),((5 5,6 5,5 6,5 5)))"), ({"id": 5}, TRIANGLE))

    def test_keepsTheDirectionAndTheFirstCorner(self):
        self.expectPolygons([(0, [(0, 1), (1, 0), (0, 0)])], ({}, "POLYGON ((0 1,1 0,0 0,0 1))"))

    def test_takesTheIdFromAField(self):
        for kind, value, expected in ((ogr.OFTInteger, -5, -5), (ogr.OFTInteger64, 2**31 - 1, 2**31 - 1),
                                      (ogr.OFTString, "12", 12), (ogr.OFTReal, 3.0, 3)):
            self.expectPolygons([(expected, TRIANGLE_POINTS)], ({"ID": value}, TRIANGLE), fields=[("ID", kind)])
            self.expectPolygons([(expected, TRIANGLE_POINTS)], ({"nr": value}, TRIANGLE), fields=[("nr", kind)],
                                options=["ID_FIELD=nr"])

    def test_takesTheFeatureNumberWithoutAnId(self):
        self.expectPolygons([(0, TRIANGLE_POINTS), (9, TRIANGLE_POINTS), (2, TRIANGLE_POINTS)],
                            ({}, TRIANGLE), ({"id": 9}, TRIANGLE), ({}, TRIANGLE))
        self.expectPolygons([(0, TRIANGLE_POINTS)], ({}, TRIANGLE), fields=[])

    def test_refusesAnIdThatIsNoWholeNumberOf32Bits(self):
        text = "its id is no whole number of 32 bits"
        for kind, value in ((ogr.OFTInteger64, 2**31), (ogr.OFTString, "a1"), (ogr.OFTString, "1.5"), (ogr.OFTReal, 1.5),
                            (ogr.OFTReal, 1e10), (ogr.OFTReal, math.nan), (ogr.OFTString, "")):
            self.expectRefused(text, ({"id": 1}, TRIANGLE), ({"id": value}, TRIANGLE), fields=[("id", kind)])
        self.expectRefused("there is no field nr", ({}, TRIANGLE), options=["ID_FIELD=nr"])

    def test_warnsOnceOfFieldsItDoesNotStore(self):
        self.expectPolygons([(1, TRIANGLE_POINTS)], ({"id": 1, "name": "a", "area": 5.0}, TRIANGLE),
                            fields=[("id", ogr.OFTInteger), ("name", ogr.OFTString), ("area", ogr.OFTReal)])
        self.assertEqual(["A boundary file stores no field but id: name and any other are left out"], self.texts())

    def test_refusesOtherGeometries(self):
        for geometry, name in (("POINT (1 2)", "Point"), ("LINESTRING (0 0,1 1)", "Line String"),
                               ("GEOMETRYCOLLECTION (" + TRIANGLE + ")", "Geometry Collection"),
                               ("MULTIPOINT (1 2)", "Multi Point")):
            self.expectRefused(f"the type {name} is neither Polygon nor Multi Polygon", ({"id": 1}, TRIANGLE), ({}, geometry))
        self.expectRefused("a polygon has fewer than three corners", ({}, "POLYGON ((0 0,1 1,0 0))"))

    def test_writesTwoPointLinesIfTold(self):
        options = ["TWO_POINT_LINES=YES"]
        self.expectPolygons([(0, [(1, 2)]), (1, [(0, 0), (3, 3)]), (2, [(1, 1), (2, 2)]), (2, TRIANGLE_POINTS)],
                            ({}, "POINT (1 2)"), ({}, "LINESTRING (0 0,3 3)"),
                            ({}, "GEOMETRYCOLLECTION (LINESTRING (1 1,2 2)," + TRIANGLE + ")"), options=options)
        os.remove(self.path("area.xml"))
        self.expectRefused("a line string has more than two points", ({}, "LINESTRING (0 0,1 1,2 0)"), options=options)

    def test_leavesOutFeaturesWithoutAGeometryWithAWarning(self):
        self.expectPolygons([(2, TRIANGLE_POINTS)], ({}, None), ({}, "POLYGON EMPTY"), ({}, TRIANGLE))
        self.assertEqual([f"Feature {number} has no geometry and is left out" for number in (0, 1)], self.texts())

    def test_makesCurvesStraight(self):
        self.write("area.xml", ({}, "CURVEPOLYGON (CIRCULARSTRING (0 0,1 1,2 0,1 -1,0 0))"))
        [(_, ring)] = polygonsOf(self.path("area.xml"))
        self.assertGreater(len(ring), 50)
        self.assertTrue(all(abs(math.hypot(x - 1, y) - 1) < 1e-9 for x, y in ring))

    def test_makesEachPartOfAMultiSurfaceStraight(self):
        self.write("area.xml", ({}, "MULTISURFACE (((5 5,6 5,5 6,5 5)),CURVEPOLYGON (CIRCULARSTRING (0 0,1 1,2 0,1 -1,0 0)))"))
        [(_, triangle), (_, circle)] = polygonsOf(self.path("area.xml"))
        self.assertEqual([(5, 5), (6, 5), (5, 6)], triangle)
        self.assertGreater(len(circle), 50)

    def test_refusesCoordinatesThatAreNotFinite(self):
        for value in (math.nan, math.inf, -math.inf):
            ring = ogr.Geometry(ogr.wkbLinearRing)
            for x, y in [(0, 0), (1, 0), (1, value), (0, 0)]:
                ring.AddPoint_2D(x, y)
            polygon = ogr.Geometry(ogr.wkbPolygon)
            polygon.AddGeometry(ring)
            self.expectRefused("a coordinate is not finite", ({}, polygon))

    def test_ogr2ogrLeavesNoFileIfItFails(self):
        self.give("lines.csv", 'id,WKT\n1,"%s"\n2,"LINESTRING (0 0,1 1)"\n' % TRIANGLE)
        for options in ([], ["-skipfailures"]):
            text = self.run_("ogr2ogr", *options, "-f", "VadeDGM", "area.xml", "lines.csv", status=1)
            self.assertIn("Cannot write feature 1", text)
            self.assertTrue(text.endswith("The boundary file area.xml is not written\n"), text)
            self.assertEqual(["lines.csv"], os.listdir(self.directory))
        self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", "lines.csv", "-where", "OGR_GEOMETRY IN ('POLYGON', 'MULTIPOLYGON')")
        self.assertEqual([(1, TRIANGLE_POINTS)], polygonsOf(self.path("area.xml")))

    def test_reportsAFileItCannotWrite(self):
        path = self.path("missing/area.xml")
        self.assertIsNone(gdal.GetDriverByName("VadeDGM").Create(path, 0, 0, 0, gdal.GDT_Unknown))
        self.assertEqual([f"Cannot write the boundary file {path}"], self.texts())

    def test_reportsAFullDisk(self):
        # The limit of the size of files fails like a full disk.
        limits = resource.getrlimit(resource.RLIMIT_FSIZE)
        resource.setrlimit(resource.RLIMIT_FSIZE, (100, limits[1]))
        try:
            self.write("area.xml", ({}, TRIANGLE))
        finally:
            resource.setrlimit(resource.RLIMIT_FSIZE, limits)
        self.assertEqual([f"Cannot write the boundary file {self.path('area.xml')}"], self.texts())
        self.assertEqual([], os.listdir(self.directory))

    def test_writesToStandardOutput(self):
        text = self.run_("ogr2ogr", "-f", "VadeDGM", "/vsistdout/", EXAMPLE_FILES[1])
        self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", EXAMPLE_FILES[1])
        self.assertEqual(self.read("area.xml"), text)

    def test_hasOneLayer(self):
        dataset = gdal.GetDriverByName("VadeDGM").Create(self.path("area.xml"), 0, 0, 0, gdal.GDT_Unknown)
        self.assertIsNotNone(dataset.CreateLayer("first"))
        self.assertIsNone(dataset.CreateLayer("second"))
        del dataset
        self.assertEqual(["A boundary file has one layer: second cannot be a second one. No file is written",
                          f"The boundary file {self.path('area.xml')} is not written"], self.texts())
        self.assertEqual([], os.listdir(self.directory))

    def test_ogr2ogrLeavesNoFileIfTheSourceHasSeveralLayers(self):
        for options in ([], ["-skipfailures"]):
            text = self.run_("ogr2ogr", *options, "-f", "VadeDGM", "area.xml", EXAMPLE_FILES[2], status=1)
            self.assertIn("A boundary file has one layer: buildings cannot be a second one. No file is written", text)
            self.assertEqual([], os.listdir(self.directory))
        self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", EXAMPLE_FILES[2], "boundaries")
        self.assertEqual(["area.xml"], os.listdir(self.directory))

    def test_refusesToWriteIntoAnArchive(self):
        for path in (f"/vsigzip/{self.path('area.xml.gz')}", f"/vsizip/{self.path('area.zip')}/area.xml"):
            self.errors.clear()
            self.assertIsNone(gdal.GetDriverByName("VadeDGM").Create(path, 0, 0, 0, gdal.GDT_Unknown))
            self.assertEqual([f"Cannot write the boundary file {path}"], self.texts())
            self.assertEqual([], os.listdir(self.directory))

    def test_leavesNoFileWithoutALayer(self):
        gdal.GetDriverByName("VadeDGM").Create(self.path("area.xml"), 0, 0, 0, gdal.GDT_Unknown)
        self.assertEqual([], os.listdir(self.directory))

    def test_warnsOfDegreesOnce(self):
        self.give("area.csv", f'id,WKT\n1,"{TRIANGLE}"\n')
        text = "A boundary file stores no reference system. These coordinates are in degrees"
        command = ["ogr2ogr", "-f", "VadeDGM", "area.xml", "area.csv", "-a_srs"]
        self.assertEqual(1, self.run_(*command, "EPSG:4326").count(text))
        self.assertNotIn(text, self.run_(*command, "EPSG:25832"))

    def test_writesWhatANameOfAFieldSelectsAndReprojects(self):
        self.give("districts.csv", 'name,WKT\nAltstadt,"POLYGON ((8 50,8.1 50,8 50.1,8 50))"\nHafen,"POLYGON ((9 50,9.1 50,'
                                   '9 50.1,9 50))"\n')
        self.run_("ogr2ogr", "-f", "VadeDGM", "area.xml", "districts.csv", "-where", "name='Altstadt'", "-s_srs",
                  "EPSG:4326", "-t_srs", "EPSG:25832")
        [(number, ring)] = polygonsOf(self.path("area.xml"))
        self.assertEqual((0, 3), (number, len(ring)))
        self.assertTrue(all(4e5 < x < 5e5 and 5e6 < y < 6e6 for x, y in ring), ring)


if __name__ == "__main__":
    unittest.main()
