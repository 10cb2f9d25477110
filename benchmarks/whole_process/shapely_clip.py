"""The same job with pandas and shapely: shapely_clip.py <input directory> <output directory> <boundary file>"""
import os
import sys
import xml.etree.ElementTree as ElementTree

import pandas
import shapely.geometry
import shapely.ops
import shapely.vectorized

source, target, boundary = sys.argv[1:]
area = shapely.ops.unary_union([
    shapely.geometry.Polygon([(float(point.get("x")), float(point.get("y"))) for point in polygon.iter("point")])
    for polygon in ElementTree.parse(boundary).iter("polygon")])
os.mkdir(target)
for name in os.listdir(source):
    nodes = pandas.read_csv(os.path.join(source, name), sep=";")
    inside = shapely.vectorized.contains(area, nodes["x"].values, nodes["y"].values)
    nodes[inside].to_csv(os.path.join(target, name), sep=";", index=False)
