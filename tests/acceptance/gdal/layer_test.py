"""The rules that GDAL has for every layer: counts, extents, filters, reading twice, capabilities."""
import unittest

from gdal_files import EXAMPLE_FILES, SQUARE, GdalTest, boundary, gdal, ogr


def numbers(layer):
    return [feature.GetFID() for feature in layer]  # from the first feature


def numbersFromHere(layer):
    return [feature.GetFID() for feature in iter(layer.GetNextFeature, None)]


class LayerTest(GdalTest):
    def setUp(self):
        super().setUp()
        self.dataset = self.open(EXAMPLE_FILES[0])
        self.layer = self.dataset.GetLayer(0)
        self.all = [(feature.GetFID(), feature.GetField("id"), feature.GetGeometryRef().ExportToIsoWkb())
                    for feature in self.layer]

    def test_readsTheSameTwice(self):
        self.assertEqual(59, len(self.all))
        self.assertIsNone(self.layer.GetNextFeature())
        self.layer.ResetReading()
        self.assertEqual(list(range(59)), numbers(self.layer))

    def test_countsWhatItReads(self):
        self.assertEqual(59, self.layer.GetFeatureCount())
        for query in ("id < 10", "id >= 58", "id = 1000", "id IN (3, 5)"):
            self.layer.SetAttributeFilter(query)
            self.assertEqual(len(numbers(self.layer)), self.layer.GetFeatureCount(), query)
        self.layer.SetAttributeFilter(None)
        self.assertEqual(59, self.layer.GetFeatureCount())

    def test_hasTheExtentOfItsFeatures(self):
        boxes = [ogr.CreateGeometryFromWkb(wkb).GetEnvelope() for _, _, wkb in self.all]
        expected = tuple(pick(values) for pick, values in zip((min, max, min, max), zip(*boxes)))
        self.assertEqual(expected, self.layer.GetExtent(force=0))
        self.layer.SetAttributeFilter("id = 1")
        self.assertEqual(expected, self.layer.GetExtent())

    def test_readsAnyFeatureByItsNumber(self):
        for number, identifier, wkb in self.all:
            feature = self.layer.GetFeature(number)
            self.assertEqual((number, identifier, wkb), (feature.GetFID(), feature.GetField("id"),
                                                         feature.GetGeometryRef().ExportToIsoWkb()))
        for number in (-1, 59, 2**40):
            self.assertIsNone(self.layer.GetFeature(number))

    def test_readingByNumberDoesNotMoveTheReader(self):
        self.layer.ResetReading()
        self.layer.GetNextFeature()
        self.layer.GetFeature(30)
        self.assertEqual(1, self.layer.GetNextFeature().GetFID())

    def test_setsTheNextFeature(self):
        self.layer.SetNextByIndex(57)
        self.assertEqual([57, 58], numbersFromHere(self.layer))
        self.layer.SetNextByIndex(1000)
        self.assertEqual([], numbersFromHere(self.layer))
        self.assertNotEqual(0, self.layer.SetNextByIndex(-1))
        self.layer.ResetReading()
        self.layer.SetAttributeFilter("id > 20")
        self.layer.SetNextByIndex(3)
        self.assertEqual(24, self.layer.GetNextFeature().GetField("id"))

    def test_filtersByPlaceAsGeometriesDo(self):
        area = ogr.CreateGeometryFromWkt("POLYGON((382400 6354350,382500 6354350,382450 6354500,382400 6354350))")
        expected = [number for number, _, wkb in self.all if ogr.CreateGeometryFromWkb(wkb).Intersects(area)]
        self.assertTrue(0 < len(expected) < 59)
        self.layer.SetSpatialFilter(area)
        self.assertEqual(expected, numbers(self.layer))
        self.assertEqual(len(expected), self.layer.GetFeatureCount())
        self.layer.SetAttributeFilter("id < 20")
        self.assertEqual([number for number in expected if number < 20], numbers(self.layer))
        self.layer.SetAttributeFilter(None)
        self.layer.SetSpatialFilterRect(0, 0, 1, 1)
        self.assertEqual([], numbers(self.layer))
        self.layer.SetSpatialFilter(None)
        self.assertEqual(59, len(numbers(self.layer)))

    def test_filtersByTheBoxOfOneFeature(self):
        self.assertIsNone(self.layer.GetSpatialFilter())
        left, right, bottom, top = ogr.CreateGeometryFromWkb(self.all[9][2]).GetEnvelope()
        self.layer.SetSpatialFilterRect(left - 10, bottom - 10, right + 10, top + 10)
        around = numbers(self.layer)
        self.assertIn(9, around)
        self.layer.SetSpatialFilterRect(left - 20, bottom - 20, left - 10, bottom - 10)
        self.assertNotIn(9, numbers(self.layer))
        self.assertLess(self.layer.GetFeatureCount(), len(around))

    def test_aFilterWithoutLimitsKeepsAll(self):
        for limit in (1e300, float("inf")):
            self.layer.SetSpatialFilterRect(-limit, -limit, limit, limit)
            self.assertEqual(list(range(59)), numbers(self.layer))

    def test_filtersByEachValueOfTheField(self):
        for number, identifier, _ in self.all:
            self.layer.SetAttributeFilter(f"id = {identifier}")
            self.assertEqual([number], numbers(self.layer))
            self.layer.SetAttributeFilter(f"id <> {identifier}")
            self.assertEqual(58, self.layer.GetFeatureCount())

    def test_aWrongFilterIsAnError(self):
        self.assertNotEqual(0, self.layer.SetAttributeFilter("nothing = 1"))
        self.assertEqual(['"nothing" not recognised as an available field.'], self.texts())
        self.layer.SetAttributeFilter(None)
        self.assertEqual(list(range(59)), numbers(self.layer))

    def test_namesItsLayers(self):
        self.assertEqual("boundaries", self.layer.GetLayerDefn().GetName())
        self.assertEqual(59, self.dataset.GetLayerByName("boundaries").GetFeatureCount())
        self.assertIsNone(self.dataset.GetLayerByName("nothing"))
        self.assertIsNone(self.dataset.GetLayer(-1))

    def test_hasNoReferenceSystem(self):
        self.assertIsNone(self.layer.GetSpatialRef())
        feature = self.layer.GetFeature(0)
        self.assertIsNone(feature.GetGeometryRef().GetSpatialReference())

    def test_aFilterByPlaceLeavesOutEmptyPolygons(self):
        layer = self.open(self.give("area.xml", boundary((1, []), (2, SQUARE)))).GetLayer(0)
        layer.SetSpatialFilterRect(-1, -1, 1, 1)
        self.assertEqual([1], numbers(layer))

    def test_answersSql(self):
        for dialect in ("OGRSQL", "SQLITE"):
            result = self.dataset.ExecuteSQL("SELECT COUNT(*) AS n, MAX(id) AS last FROM boundaries", dialect=dialect)
            feature = result.GetNextFeature()
            self.assertEqual((59, 58), (feature.GetField("n"), feature.GetField("last")))
            self.dataset.ReleaseResultSet(result)

    def test_saysWhatItCanDo(self):
        can = {name: bool(self.layer.TestCapability(name)) for name in (
            ogr.OLCRandomRead, ogr.OLCFastFeatureCount, ogr.OLCFastGetExtent, ogr.OLCFastSetNextByIndex,
            ogr.OLCSequentialWrite, ogr.OLCRandomWrite, ogr.OLCCreateField, ogr.OLCDeleteFeature)}
        self.assertEqual([True] * 4 + [False] * 4, list(can.values()), can)
        self.layer.SetAttributeFilter("id = 1")
        self.assertFalse(self.layer.TestCapability(ogr.OLCFastFeatureCount))

    def test_refusesChanges(self):
        feature = self.layer.GetFeature(0)
        for change in (self.layer.CreateFeature, self.layer.SetFeature):
            self.assertNotEqual(0, change(feature))
        self.assertNotEqual(0, self.layer.DeleteFeature(0))
        self.assertIsNone(self.dataset.CreateLayer("more"))
        self.assertIsNone(self.dataset.GetLayer(1))


if __name__ == "__main__":
    unittest.main()
