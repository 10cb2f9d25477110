"""Which points a whole run keeps. The unit tests of the geometry test the rules in much more detail."""
import sys
import unittest
from itertools import zip_longest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import AcceptanceTest, boundary

COUNTERCLOCKWISE = [(0, 0), (10, 0), (10, 10), (0, 10)]
CLOCKWISE = [(0, 0), (0, 10), (10, 10), (10, 0)]


def closed(ring):
    """Returns the ring with its first point repeated at the end."""
    return ring + ring[:1]


class GeometryTest(AcceptanceTest):
    def expectInside(self, rings, inside, outside):
        self.startOver()
        points = [point for pair in zip_longest(inside, outside) for point in pair if point is not None]
        lines = {point: f"{point[0]!r};{point[1]!r};5\n".encode() for point in points}
        self.giveJob({"a.xyz": b"x;y;z\n" + b"".join(lines[point] for point in points)}, boundary(*rings))
        files = {"a.xyz": b"x;y;z\n" + b"".join(lines[point] for point in points if point in inside)} if inside else {}
        self.expectFinished(self.clip(), len(inside), files, lineCounts=[len(points)])


class Rings(GeometryTest):
    # All corners and both vertical edges are inside in each ring direction.
    COMMON_INSIDE = [(5, 5), (0.1, 9.9), (0, 0), (10, 0), (10, 10), (0, 10), (0, 5), (10, 5)]
    COMMON_OUTSIDE = [(-1, 5), (11, 5), (5, -1), (5, 11), (10.0000001, 5), (-0.0000001, 5), (5, 10.0000001),
                      (5, -0.0000001), (20, 0), (-20, 10)]

    def test_horizontal_edge_is_inside_by_its_direction(self):
        for ring, inside, outside in ((COUNTERCLOCKWISE, [(5, 10)], [(5, 0)]), (CLOCKWISE, [(5, 10), (5, 0)], [])):
            for form in (ring, closed(ring)):
                for start in range(4):
                    with self.subTest(ring=form, start=start):
                        turned = ring[start:] + ring[:start]
                        self.expectInside([turned if form is ring else closed(turned)], self.COMMON_INSIDE + inside,
                                          self.COMMON_OUTSIDE + outside)


class SmallPolygons(GeometryTest):
    def test_second_vertex_of_a_sloped_segment_can_be_outside(self):
        self.expectInside([[(0, 0), (49, 5)]], [(0, 0)], [(49, 5)])

    def test_polygons_of_no_or_one_point_contain_nothing(self):
        self.expectInside([[], [(4, 4)]], [], [(4, 4), (0, 0)])


class SeveralPolygons(GeometryTest):
    FAR = [(20, 0), (30, 0), (30, 10), (20, 10)]

    def test_point_inside_any_polygon_is_inside(self):
        inside, outside = [(5, 5), (25, 5), (3, 40)], [(15, 5), (35, 5), (3, 41)]
        for rings in ([COUNTERCLOCKWISE, self.FAR, [(3, 40), (4, 40)]],
                      [[(3, 40), (4, 40)], self.FAR, COUNTERCLOCKWISE]):
            self.expectInside(rings, inside, outside)

    def test_ring_within_a_ring_is_no_hole(self):
        self.expectInside([COUNTERCLOCKWISE, [(2, 2), (2, 8), (8, 8), (8, 2)]], [(5, 5), (1, 1), (2, 5)], [(11, 5)])

    def test_point_on_a_common_edge_is_inside(self):
        # The common edge is horizontal: it leads to the left in one ring and to the right in the other.
        self.expectInside([COUNTERCLOCKWISE, [(0, 10), (10, 10), (10, 20), (0, 20)]],
                          [(5, 10), (5, 5), (5, 15), (5, 20)], [(5, 0), (5, 21)])


if __name__ == "__main__":
    unittest.main()
