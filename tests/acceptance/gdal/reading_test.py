"""The driver as a reader: what ogrinfo, ogr2ogr and Python see of a boundary file."""
import http.server
import random
import threading
import unittest
import zipfile

from gdal_files import EXAMPLE_FILES, SQUARE, GdalTest, boundary, gdal, ogr, polygonsOf, ringsOf


class AreaHandler(http.server.BaseHTTPRequestHandler):
    """Serves one boundary file, or the range of bytes that is asked for."""
    def answer(self):
        content = boundary((1, SQUARE)).encode()
        first, _, last = self.headers.get("Range", "bytes=0-").removeprefix("bytes=").partition("-")
        part = content[int(first):int(last or len(content)) + 1]
        self.send_response(206 if "Range" in self.headers else 200)
        self.send_header("Content-Range", f"bytes {first}-{int(first) + len(part) - 1}/{len(content)}")
        self.send_header("Content-Length", str(len(part)))
        self.end_headers()
        return part

    def do_HEAD(self):
        self.answer()

    def do_GET(self):
        self.wfile.write(self.answer())

    def log_message(self, *arguments):
        pass


class ReadingTest(GdalTest):
    def expectSame(self, path, kind="boundaries"):
        """Compares with an independent reader, to the last bit."""
        expected = polygonsOf(path, kind)
        got = [(number, ringsOf(geometry)) for number, geometry in self.features(path, kind)]
        self.assertEqual(len(expected), len(got))
        for (number, ring), (gotNumber, rings) in zip(expected, got):
            closed = ring if len(ring) > 3 and ring[0] == ring[-1] else ring + ring[:1]
            self.assertEqual((number, [closed]), (gotNumber, rings))

    def test_readsTheExamples(self):
        for path in EXAMPLE_FILES:
            with self.subTest(path):
                self.expectSame(path)
        for kind in ("buildings", "roads"):
            self.expectSame(EXAMPLE_FILES[2], kind)

    def test_readsRandomFiles(self):
        dice = random.Random(7)
        for number in range(20):
            polygons = [(dice.randrange(-2**31, 2**31),
                         [(dice.uniform(-1, 1) * 10.0 ** dice.randrange(-300, 300), dice.uniform(-1e7, 1e7))
                          for _ in range(dice.randrange(3, 40))]) for _ in range(dice.randrange(30))]
            self.expectSame(self.give(f"{number}.xml", boundary(*polygons)))

    def test_isListedWithItsNames(self):
        self.assertIn("Long Name: VADELSIM boundary file", self.run_("ogrinfo", "--format", "VadeDGM"))
        self.assertIn("VadeDGM -vector- (rw+v): VADELSIM boundary file", self.run_("ogrinfo", "--formats"))

    def test_ogrinfoShowsLayersCountsAndExtents(self):
        text = self.run_("ogrinfo", "-al", "-so", EXAMPLE_FILES[2])
        for line in ("using driver `VadeDGM' successful", "Layer name: boundaries", "Layer name: buildings",
                     "Feature Count: 59", "Extent: (382297.382100, 6354293.663000) - (382563.733500, 6354647.237000)",
                     "id: Integer"):
            self.assertIn(line, text)

    def test_ogr2ogrConvertsThereAndBack(self):
        for path in EXAMPLE_FILES:
            self.run_("ogr2ogr", "area.gpkg", path, "boundaries")
            self.run_("ogr2ogr", "-f", "VadeDGM", "back.xml", "area.gpkg")
            # A ring of OGR is always closed, so a point that closes it in the file is not written again.
            expected = [(number, ring[:-1] if ring[0] == ring[-1] else ring) for number, ring in polygonsOf(path)]
            self.assertEqual(expected, polygonsOf(self.path("back.xml")))
            self.run_("ogr2ogr", "-f", "VadeDGM", "again.xml", "back.xml")
            self.assertEqual(self.read("back.xml"), self.read("again.xml"))
            self.run_("rm", "area.gpkg")

    def test_recognisesTheContentAndNotTheName(self):
        for name in ("area", "area.txt", "area.gml"):
            self.assertEqual("VadeDGM", gdal.OpenEx(self.give(name, boundary((1, SQUARE)))).GetDriver().ShortName)
        for content in (b"", b"x;y;z\n", b"<gml/>", b"<VadeDGM/>"):
            self.assertIsNone(gdal.IdentifyDriverEx(self.give("other.xml", content), gdal.OF_VECTOR, ["VadeDGM"]))
        for encoding in ("utf-8-sig", "utf-16", "utf-16-be", "utf-32"):
            self.expectFeature(self.give("area.xml", boundary((1, SQUARE)).encode(encoding)))

    def expectFeature(self, path):
        self.assertEqual(["POLYGON ((0 0,0 10,10 10,10 0,0 0))"],
                         [geometry.ExportToWkt() for _, geometry in self.features(path)])

    def test_readsVirtualFiles(self):
        with zipfile.ZipFile(self.path("area.zip"), "w") as archive:
            archive.writestr("deep/area.xml", boundary((1, SQUARE)))
        self.expectFeature(f"/vsizip/{self.path('area.zip')}/deep/area.xml")
        gdal.FileFromMemBuffer("/vsimem/area.xml", boundary((1, SQUARE)).encode())
        self.addCleanup(gdal.Unlink, "/vsimem/area.xml")
        self.expectFeature("/vsimem/area.xml")

    def test_readsFromTheWeb(self):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), AreaHandler)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever).start()
        self.expectFeature(f"/vsicurl/http://127.0.0.1:{server.server_port}/area.xml")

    def test_readsFewPointsAsOtherGeometriesWithAWarning(self):
        path = self.give("area.xml", boundary((1, []), (2, [(1, 2)]), (3, [(1, 2), (3, 4)]), (4, [(0, 0), (1, 1), (0, 0)])))
        self.assertEqual(["POLYGON EMPTY", "POINT (1 2)", "LINESTRING (1 2,3 4)", "POLYGON ((0 0,1 1,0 0,0 0))"],
                         [geometry.ExportToWkt() for _, geometry in self.features(path)])
        self.assertEqual([(gdal.CE_Warning, "Layer boundaries: 2 polygons have only one or two points: read as points and "
                                            "line strings")], self.errors)
        self.assertEqual(ogr.wkbUnknown, self.open(path).GetLayer(0).GetGeomType())

    def test_hasALayerWithoutAnyGroup(self):
        layer = self.open(self.give("area.xml", "<VADELSIM><VadeDGM/></VADELSIM>")).GetLayer(0)
        self.assertEqual(("boundaries", 0), (layer.GetName(), layer.GetFeatureCount()))
        self.assertIsNone(layer.GetExtent(can_return_null=True))

    def test_reportsTheErrorsOfTheToolWithItsTexts(self):
        missing = '<polygon><point x="0" y="0"/></polygon>'
        point = '<polygon id="5"><point x="0" y="0"/><point x="0"/></polygon>'
        for content, text in (
                (boundary((1, SQUARE)) + "<open>", "Boundary file {0} not found"),
                ("<VADELSIM/>", "Could not find the VadeDGM tag in the boundary file {0}"),
                (boundary().replace("boundaries\">", "boundaries\">" + missing),
                 "Cannot find the id of a polygon in a group of type 0"),
                (boundary().replace("boundaries\">", "boundaries\">" + point), "Cannot read point 1 in polygon 5")):
            self.errors.clear()
            path = self.give("area.xml", content)
            self.assertIsNone(gdal.OpenEx(path, gdal.OF_VECTOR, allowed_drivers=["VadeDGM"]))
            self.assertEqual([(gdal.CE_Failure, text.format(path))], self.errors)

    def test_otherGroupsNeverSpoilTheBoundaries(self):
        bad = '<group type="roads"><polygon id="1"/><polygon/></group><group><polygon id="2"/></group>'
        path = self.give("area.xml", boundary((1, SQUARE)).replace("<group", bad + "<group", 1))
        dataset = self.open(path)
        self.assertEqual([(gdal.CE_Warning, "Layer roads is not complete: Cannot find the id of a polygon in a group of "
                                            "type 0")], self.errors)
        self.assertEqual([("boundaries", 1), ("roads", 1), ("untyped", 1)],
                         [(dataset.GetLayer(i).GetName(), dataset.GetLayer(i).GetFeatureCount()) for i in range(3)])

    def test_refusesUpdatesAndAppending(self):
        path = self.give("area.xml", boundary((1, SQUARE)))
        text = f"The boundary file {path} cannot be changed or appended to, only written anew"
        self.assertIsNone(gdal.OpenEx(path, gdal.OF_VECTOR | gdal.OF_UPDATE, allowed_drivers=["VadeDGM"]))
        self.assertEqual([text], self.texts())
        before = self.read("area.xml")
        for option in ("-append", "-update", "-overwrite"):
            self.assertIn(text, self.run_("ogr2ogr", option, "-f", "VadeDGM", path, EXAMPLE_FILES[0], status=1))
        self.assertEqual(before, self.read("area.xml"))


if __name__ == "__main__":
    unittest.main()
