"""Reads outlines, nodes, axes, scale bar and legend back from finished pictures."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from pictures import PngPicture, SvgPicture
from watching import HEADER, SANITIZED, JOB, WatchTest

KEPT, DROPPED, OUTLINE, INK = (65, 128, 186), (186, 186, 186), (208, 72, 0), (34, 34, 34)
WHITE, GRID = (255, 255, 255), (232, 232, 232)

# Two kept nodes in the square from 0 to 10, three dropped nodes, and a line without a position.
NODES = HEADER + b"5;5;1\n15;5;1\n2;8;1\n14;2;1\nnonsense\n14;9;1\n"


class Picture(WatchTest):
    def draw(self, name, *options):
        self.giveJob({"a.xyz": NODES})
        self.expect(self.run_(*JOB[:3], "--quiet", "--map", name, *options), status=0)
        return self.content(name)

    def svg(self, *options):
        return SvgPicture(self.draw("map.svg", *options))

    def ground(self, picture):
        """Returns a function from pixels to coordinates, found from the first and last grid line of each axis."""
        lines = [line for [line] in picture.strokesOf(GRID)]
        xs = [line[0][0] for line in lines if line[0][0] == line[1][0]]
        ys = [line[0][1] for line in lines if line[0][1] == line[1][1]]
        self.assertEqual((8, 6), (len(xs), len(ys)))
        scale = 14 / (xs[-1] - xs[0])
        # Both axes have one scale, and y goes upwards.
        self.assertAlmostEqual(scale, 10 / (ys[0] - ys[-1]), 4)
        return lambda x, y: (round((x - xs[0]) * scale, 1) + 0.0, round((ys[0] - y) * scale, 1) + 0.0)

    def test_outline_and_nodes_have_their_coordinates(self):
        picture = self.svg("--lang=en")
        ground = self.ground(picture)
        outline, legend = picture.strokesOf(OUTLINE)
        self.assertEqual([[(0, 0), (10, 0), (10, 10), (0, 10), (0, 0)]],
                         [[ground(x, y) for x, y in line] for line in outline])
        self.assertEqual(1, len(legend))
        for colour, expected in ((KEPT, [(2, 8), (5, 5)]), (DROPPED, [(14, 2), (14, 9), (15, 5)])):
            [discs] = picture.strokesOf(colour)
            self.assertEqual(expected, sorted(ground(*disc[0]) for disc in discs))

    def test_draws_dropped_then_kept_nodes_then_outlines(self):
        colours = [colour for colour, _ in self.svg().strokes]
        self.assertLess(colours.index(GRID), colours.index(DROPPED))
        self.assertLess(colours.index(DROPPED), colours.index(KEPT))
        self.assertLess(colours.index(KEPT), colours.index(OUTLINE))
        self.assertLess(colours.index(OUTLINE), colours.index(INK))

    def test_draws_title_labels_and_legend(self):
        axes = [*map(str, range(0, 15, 2)), *map(str, range(0, 11, 2)), "x", "y"]
        english = ["data clipped to area.xml", *axes, "Kept (33.3 %)", "2 nodes", "Dropped", "3 nodes", "Boundary",
                   "1 polygon", "1 line without a position", "0", "2", "in units of the coordinates"]
        german = ["data, zugeschnitten auf area.xml", *axes, "Behalten (33,3 %)", "2 Knoten", "Verworfen", "3 Knoten",
                  "Grenze", "1 Polygon", "1 Zeile ohne Koordinaten", "0", "2", "in der Einheit der Koordinaten"]
        details = r"{} base/data, {} base/out, {} area\.xml, 20\d\d-\d\d-\d\d \d\d:\d\d"
        for options, expected, words in ((["--lang=en"], english, ("Input", "output", "boundary")),
                                         ([], german, ("Eingabe", "Ausgabe", "Grenze"))):
            picture = self.svg(*options)
            self.assertEqual(expected, picture.words()[:1] + picture.words()[2:])
            self.assertRegex(picture.words()[1], details.format(*words))
            self.assertEqual(expected[0], picture.title)
            os.rename(self.path("base/out"), self.path("out" + "".join(options)))

    def test_labels_are_at_their_ticks(self):
        picture = self.svg()
        ground = self.ground(picture)
        ticks = [line for [line] in picture.strokesOf(INK) if abs(line[0][0] - line[1][0] + line[0][1] - line[1][1]) == 8]
        self.assertEqual(14, len(ticks))
        for (x, y, _), line in zip(picture.texts[2:10], ticks):
            # The anchor is the middle.
            self.assertAlmostEqual(line[0][0], x, delta=0.1)
            self.assertGreater(y, line[1][1])
        for (x, y, _), line in zip(picture.texts[10:16], ticks[8:]):
            self.assertLess(x, line[0][0])
            self.assertAlmostEqual(line[0][1], y, delta=8)
        self.assertEqual([(x, 0) for x in range(0, 15, 2)], [(ground(*line[0])[0], 0) for line in ticks[:8]])

    def test_scale_bar_has_the_length_of_its_label(self):
        picture = self.svg()
        ground = self.ground(picture)
        bar = picture.strokesOf(INK)[-1][0]
        self.assertAlmostEqual(2.0, ground(*bar[1])[0] - ground(*bar[0])[0], 1)
        half = [lines[0] for colour, lines in picture.fills if colour == INK][-1]
        self.assertAlmostEqual(1.0, ground(*half[1])[0] - ground(*half[0])[0], 1)

    def test_pixels_have_the_colours_of_the_legend(self):
        ground = SvgPicture(self.draw("map.svg"))
        [kept], [dropped] = ground.strokesOf(KEPT), ground.strokesOf(DROPPED)
        outline = ground.strokesOf(OUTLINE)[0][0]
        os.rename(self.path("base/out"), self.path("first"))
        picture = PngPicture(self.draw("map.png"))
        self.assertEqual(1600, picture.width)
        for discs, colour in ((kept, KEPT), (dropped, DROPPED)):
            for [(x, y), _] in discs:
                self.assertEqual(colour, picture.pixel(x, y))
                self.assertEqual((WHITE, WHITE), (picture.pixel(x + 9, y + 9), picture.pixel(x - 9, y + 9)))
        for (x, y), (nextX, nextY) in zip(outline, outline[1:]):
            # The line is thin and translucent, so some white is mixed in.
            red, _, blue = picture.pixel(0.7 * x + 0.3 * nextX, 0.7 * y + 0.3 * nextY)
            self.assertGreater(red - blue, 80)

    def test_kept_node_colours_pixel_shared_with_dropped_node(self):
        self.standIn("""
finish(count=2)
open('base/out/a.xyz', 'w').write('x;y;z\\n5;5;1\\n3;3;1\\n')
""")
        self.giveJob({"a.xyz": HEADER + b"5;5;0\n5;5;1\n3;3;1\n12;5;1\n"})
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.svg"), status=0)
        picture = SvgPicture(self.content("map.svg"))
        [kept], [dropped] = picture.strokesOf(KEPT), picture.strokesOf(DROPPED)
        [(x, y)] = {disc[0] for disc in kept} & {disc[0] for disc in dropped}
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.png"), status=0)
        self.assertEqual(KEPT, PngPicture(self.content("map.png")).pixel(x, y))
        # The legend counts both.
        self.assertEqual(picture.words()[-9:], ["Kept (50.0 %)", "2 nodes", "Dropped", "2 nodes", "Boundary", "1 polygon",
                                            "0", "2", "in units of the coordinates"])

    def drawJob(self, boundary, nodes, name="map.png"):
        points = ("".join(f'<polygon id="1">{"".join(f"""<point x="{x}" y="{y}"/>""" for x, y in polygon)}</polygon>'
                          for polygon in boundary))
        self.giveJob({"a.xyz": HEADER + "".join(f"{x};{y};1\n" for x, y in nodes).encode()})
        self.give({"area.xml": f'<VADELSIM><VadeDGM><group type="boundaries">{points}</group></VadeDGM></VADELSIM>'.encode()})
        self.expect(self.run_(*JOB, "--quiet", "--map", name), status=0)
        return (PngPicture if name.endswith("png") else SvgPicture)(self.content(name))

    def test_legendNamesWhatIsBeyondTheMapOrHasFewVertices(self):
        square = [(0, 0), (100, 0), (100, 100), (0, 100)]
        nodes = [(x, y) for x in range(5, 150, 10) for y in range(5, 150, 10)]
        picture = self.drawJob([square, [(1e6, 1e6)], [(20, 50), (80, 50)]], nodes, "map.svg")
        for note in ("1 polygon reaching beyond the map", "2 polygons with fewer than 3 vertices"):
            self.assertIn(note, picture.words())
        # The square, the line of two vertices, and the legend.
        self.assertEqual(3, len(picture.strokesOf(OUTLINE)))
        os.rename(self.path("base/out"), self.path("first"))
        self.assertIn("1 node outside the map", self.drawJob([square], nodes + [(-9e6, 3)], "map.svg").words())

    def test_polygonOfOneVertexHasADotAndACircle(self):
        picture = self.drawJob([[(0, 0), (100, 0), (100, 100), (0, 100)], [(50, 130)]], [(5, 5), (95, 160)], "map.svg")
        dots = [line for lines in picture.strokesOf(OUTLINE) for line in lines if len(line) == 2 and line[0] == line[1]]
        self.assertEqual(1, len(dots))
        self.assertIn("Circle: smaller than 10 pixels", picture.words())

    def test_nothingKeptShowsBothPlacesWithLabels(self):
        picture = self.drawJob([[(0, 0), (10, 0), (10, 10)]], [(5e6, 4e6), (5e6 + 9, 4e6)], "map.svg")
        for word in ("Kept (0.0 %)", "Boundary", "Dropped", "Circle: smaller than 10 pixels"):
            self.assertIn(word, picture.words())
        self.assertEqual((2, 2), tuple(picture.words().count(word) for word in ("Boundary", "Dropped")))

    def test_manySmallPolygonsShowTheirKeptNodes(self):
        # 2,500 squares of 8 pixels.
        corners = [(x * 20, y * 20) for x in range(50) for y in range(50)]
        picture = self.drawJob([[(x, y), (x + 8, y), (x + 8, y + 8), (x, y + 8)] for x, y in corners],
                               [(x / 2, y / 2) for x in range(-20, 2000, 5) for y in range(-20, 2000, 5)])
        pixels = [picture.pixel(x, y) for x in range(200, 1200, 4) for y in range(200, 1200, 4)]
        kept = sum(blue > red + 60 for red, _, blue in pixels)
        outlines = sum(red > blue + 60 for red, _, blue in pixels)
        self.assertGreater(kept, 3 * outlines)

    def test_narrow_corridor_shows_its_kept_nodes(self):
        # 30 by 20,000, so 1.6 pixels wide.
        picture = self.drawJob([[(0, 985), (20000, 985), (20000, 1015), (0, 1015)]],
                               [(x * 20, y * 20) for x in range(1000) for y in range(0, 100)] +
                               [(x * 5, 990 + 5 * (x % 5)) for x in range(4000)])
        # Each column of the corridor has a pixel in the colour of kept nodes, among grey and orange ones.
        blueColumns = sum(any(picture.pixel(x, y)[2] > picture.pixel(x, y)[0] + 100 for y in range(71, 550))
                          for x in range(300, 1100))
        self.assertGreater(blueColumns, 700)

    def test_world_file_places_the_pixels(self):
        picture = PngPicture(self.draw("map.png", "--map-size=1000x800"))
        self.assertEqual((1000, 800), (picture.width, len(picture.rows)))
        width, _, _, height, left, top = map(float, self.content("map.pgw").split())
        self.assertEqual(width, -height)
        for (x, y), colour in (((5, 5), KEPT), ((2, 8), KEPT), ((15, 5), DROPPED), ((14, 9), DROPPED)):
            self.assertEqual(colour, picture.pixel(round((x - left) / width), round((y - top) / height)))

    def test_svg_has_no_world_file(self):
        self.draw("map.svg")
        self.assertFalse(os.path.exists(self.path("map.pgw")))

    def test_long_names_keep_the_words_between_them(self):
        name = "start-" + "w" * 200 + "-end.xml"
        self.giveJob({"a.xyz": NODES})
        os.rename(self.path("area.xml"), self.path(name))
        self.expect(self.run_(*JOB[:2], name, "--lang=en", "--quiet", "--map", "map.svg"), status=0)
        picture = SvgPicture(self.content("map.svg"))
        self.assertRegex(picture.words()[0], "^data clipped to start-w+…w+-end.xml$")
        self.assertEqual("data clipped to " + name, picture.title)

    def test_elevation_colours_kept_nodes(self):
        self.giveJob({"a.xyz": HEADER + b"2;2;10\n5;5;20\n8;8;?\n20;5;30\n"})
        self.expect(self.run_(*JOB, "--quiet", "--map", "map.svg", "--map-colour=elevation"), status=0)
        picture = SvgPicture(self.content("map.svg"))
        # The lowest, those of the mean and above, and one without elevation.
        for colour in ((33, 144, 141), (60, 60, 60), DROPPED):
            self.assertEqual(1, len(picture.strokesOf(colour)), colour)
        self.assertEqual([], picture.strokesOf(KEPT))
        self.assertIn("1 node kept without elevation", picture.words())

    def test_tiny_boundary_has_a_circle(self):
        picture = self.drawJob([[(500000, 0), (500010, 0), (500010, 10)]], [(x, x % 7) for x in range(50)])
        colours = [picture.pixel(x, y) for y in range(71, 540) for x in range(160, 1245)]
        self.assertGreater(colours.count(OUTLINE), 100)


@unittest.skipIf(SANITIZED, "sanitizers need memory")
class Memory(WatchTest):
    def peakOf(self, copies):
        """Returns the peak memory in KiB of a run with a map over two node files with `copies` times 50,000 lines each."""
        self.setUp()
        lines = b"".join(b"%d;%d;1\n" % (i % 60 * 500, i % 49 * 400) for i in range(50000))
        self.giveJob({"a.xyz": HEADER, "b.xyz": HEADER})
        for name in "ab":
            with open(self.path(f"base/data/{name}.xyz"), "ab") as file:
                for _ in range(copies):
                    file.write(lines)  # All at once they would count as memory of the child.
        self.standIn("""
source = sys.argv[1]
place = os.path.join(os.path.dirname(source), sys.argv[2])
os.makedirs(place)
for name in os.listdir(source): os.link(os.path.join(source, name), os.path.join(place, name))
finish(count=%d)
""" % (100000 * copies))
        process = self.start(*JOB, "--quiet", "--map", "map.svg")
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(0, process.returncode)
        return usage.ru_maxrss

    def test_does_not_grow_with_number_of_nodes(self):
        # Up to a million nodes are kept in memory, in 24 MB.
        few = self.peakOf(11)
        many = self.peakOf(50)
        # The other four million would take 61 MiB as pairs of doubles, and their lines 34 MiB.
        self.assertLess(many - few, 8 * 1024)


if __name__ == "__main__":
    unittest.main()
