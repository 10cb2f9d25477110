"""Runs the programs and the Python module of GDAL with the driver of this build."""
import os
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

PLUGINS = os.environ["VADELCLIP_GDAL_PLUGINS"]
EXAMPLES = os.path.join(os.path.dirname(__file__), "..", "..", "..", "examples")
EXAMPLE_FILES = [os.path.join(EXAMPLES, name) for name in (
    "merewether/buildings.xml", "merewether/road.xml", "merewether/study-area.xml", "coast/islands.xml",
    "coast/australia.xml")]

os.environ["GDAL_DRIVER_PATH"] = PLUGINS
from osgeo import gdal, ogr  # noqa: E402 It reads the variable when it is imported.

ogr.DontUseExceptions()


def boundary(*polygons, kind="boundaries"):
    """Returns a boundary file. A polygon is a pair of an id and a list of (x, y)."""
    content = "".join(f'<polygon id="{number}">' + "".join(f'<point x="{x}" y="{y}"/>' for x, y in ring) + "</polygon>"
                      for number, ring in polygons)
    return f'<VADELSIM><VadeDGM><group type="{kind}">{content}</group></VadeDGM></VADELSIM>'


SQUARE = [(0, 0), (0, 10), (10, 10), (10, 0)]


def polygonsOf(path, kind="boundaries"):
    """Reads a boundary file without the driver: a list of (id, [(x, y)...])."""
    return [(int(polygon.get("id")), [(float(point.get("x")), float(point.get("y"))) for point in polygon.iter("point")])
            for group in ElementTree.parse(path).getroot().find("VadeDGM").iter("group") if group.get("type") == kind
            for polygon in group.iter("polygon")]


def ringsOf(geometry):
    """Returns the points of each ring of a polygon."""
    return [geometry.GetGeometryRef(i).GetPoints(2) for i in range(geometry.GetGeometryCount())]


class GdalTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="vadelclip-gdal-")
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.errors = []
        self.datasets = []
        gdal.PushErrorHandler(lambda level, number, text: self.errors.append((level, text)))
        self.addCleanup(gdal.PopErrorHandler)

    def path(self, name):
        return os.path.join(self.directory, name)

    def give(self, name, content):
        with open(self.path(name), "wb" if isinstance(content, bytes) else "w", encoding=None if isinstance(
                content, bytes) else "utf-8") as file:
            file.write(content)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def run_(self, *command, status=0):
        """Runs a program in the directory of the test and returns what it prints."""
        run = subprocess.run(command, cwd=self.directory, capture_output=True, text=True, timeout=120)
        self.assertEqual(run.returncode, status, run)
        return run.stdout + run.stderr

    def open(self, path):
        dataset = gdal.OpenEx(path, gdal.OF_VECTOR, allowed_drivers=["VadeDGM"])
        self.assertIsNotNone(dataset, self.errors)
        self.datasets.append(dataset)  # a layer does not keep its data set alive
        return dataset

    def features(self, path, layer="boundaries"):
        """Returns (id, geometry) of all features."""
        dataset = self.open(path)
        return [(feature.GetField("id"), feature.GetGeometryRef().Clone()) for feature in dataset.GetLayer(layer)]

    def write(self, name, *features, options=(), fields=(("id", ogr.OFTInteger),)):
        """Writes features: pairs of a dict of fields and a text or geometry. Returns the result of each."""
        dataset = gdal.GetDriverByName("VadeDGM").Create(self.path(name), 0, 0, 0, gdal.GDT_Unknown)
        layer = dataset.CreateLayer("areas", None, ogr.wkbUnknown, list(options))
        for field, kind in fields:
            layer.CreateField(ogr.FieldDefn(field, kind))
        results = []
        for values, geometry in features:
            feature = ogr.Feature(layer.GetLayerDefn())
            for field, value in values.items():
                feature.SetField(field, value)
            if geometry is not None:
                feature.SetGeometry(ogr.CreateGeometryFromWkt(geometry) if isinstance(geometry, str) else geometry)
            results.append(layer.CreateFeature(feature))
        del layer, dataset
        return results

    def texts(self):
        return [text for _, text in self.errors]
