"""Numbers in the boundary file, points that cannot be read, and damaged files."""
import random
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED, SQUARE, limitMemory
from boundary_files import HEADER, NOT_FOUND, NOT_THERE, BoundaryFileTest, boundaries
from expected_messages import failedRun

NO_ID = "Cannot find the id of a polygon in a group of type 0"
NO_TAG = "Could not find the VadeDGM tag in the boundary file area.xml"


class Ids(BoundaryFileTest):
    """The tool does not store an id. Only the message about a bad point shows it."""

    def test_id_is_the_leading_integer(self):
        for value, number in {"7": 7, " 7": 7, "\n\t7": 7, "+7": 7, "7.9": 7, "7abc": 7, "7 8": 7, "0x1F": 0, "-3": -3,
                              "00012": 12,
                              "1e5": 1, "-0": 0, "2147483647": 2147483647, "-2147483648": -2147483648,
                              "1,000": 1}.items():
            with self.subTest(value=value):
                self.expectRefused(boundaries(f'<polygon id="{value}"><point/></polygon>'),
                                   f"Cannot read point 0 in polygon {number}")

    def test_id_without_a_leading_integer_is_refused(self):
        for value in ("", " ", "abc", "-", "+-1", "- 1", ".5", "2147483648", "-2147483649", "99999999999999999999",
                      "&#49;", "\u00a01"):
            with self.subTest(value=value):
                self.expectRefused(boundaries(f'<polygon id="{value}"/>'), NO_ID)

    def test_id_is_read_before_the_points(self):
        self.expectRefused(boundaries('<polygon id="x"><point/></polygon>'), NO_ID)


class Coordinates(BoundaryFileTest):
    VALUES = {"1.5": 1.5, " 1.5": 1.5, "\n1.5": 1.5, "\r\n\t1.5": 1.5, "1.5abc": 1.5, "1.5 2.5": 1.5, "+1.5": 1.5,
              "1e3": 1000, "1E3": 1000, "-.5": -0.5, "5.": 5, "1,5": 1, "1&#46;5": 1, "0x10": 0, "1'000": 1,
              "1.5&quot;": 1.5, "-0": 0, "15e-1": 1.5, "1e-999": 0, "0.1": 0.1,
              "1.7976931348623157e308": 1.7976931348623157e308}
    BAD_VALUES = ("", " ", "abc", "1e999", "-1e999", "1e", "1e+", "-", ".", "+-5", "&#49;", "inf", "nan", "NaN",
                  "\u0661")

    def test_coordinate_is_the_leading_double(self):
        # A polygon of two equal vertices contains only that position.
        nodes = {value: f"{value!r};{value!r};5\n".encode() for value in self.VALUES.values()}
        for text, value in self.VALUES.items():
            with self.subTest(text=text):
                self.startOver()
                point = f'<point x="{text}" y="{text}"/>'
                self.giveJob({"a.xyz": HEADER + b"".join(nodes.values())},
                             boundaries(f'<polygon id="1">{point}{point}</polygon>'))
                self.expectFinished(self.clip(), 1, {"a.xyz": HEADER + nodes[value]}, lineCounts=[len(nodes)])

    def test_coordinate_without_a_leading_double_is_refused(self):
        for text in self.BAD_VALUES:
            for attributes in (f'x="{text}" y="1"', f'x="1" y="{text}"'):
                with self.subTest(attributes):
                    self.expectRefused(boundaries(f'<polygon id="5"><point {attributes}/></polygon>'),
                                       "Cannot read point 0 in polygon 5")

    def test_point_without_a_coordinate_is_refused(self):
        for attributes in ("", 'x="1"', 'y="1"', 'X="1" Y="1"', 'x="1" Y="1"', 'p:x="1" p:y="1"'):
            with self.subTest(attributes):
                self.expectRefused(boundaries(f'<polygon id="5"><point {attributes}/></polygon>'),
                                   "Cannot read point 0 in polygon 5")

    def test_message_counts_the_points_of_a_polygon_from_0(self):
        good = '<point x="1" y="2"/>'
        self.expectRefused(boundaries(f'<polygon id="4">{good * 5}</polygon>'
                                      f'<polygon id="-6">{good * 2}<point x="1"/>{good}</polygon>'),
                           "Cannot read point 2 in polygon -6")

    def test_first_bad_point_ends_the_reading(self):
        self.expectRefused(boundaries('<polygon id="1"><point/><point/></polygon><polygon/>'),
                           "Cannot read point 0 in polygon 1")

    def test_only_elements_named_point_are_counted(self):
        self.expectRefused(boundaries('<polygon id="1"><a/>text<Point/><point x="1" y="1"/><a/><point/></polygon>'),
                           "Cannot read point 1 in polygon 1")

    def test_instruction_named_point_counts_as_a_point(self):
        self.expectRefused(boundaries('<polygon id="9"><point x="1" y="1"/><?point x="1" y="1"?></polygon>'),
                           "Cannot read point 1 in polygon 9")


class DamagedFiles(BoundaryFileTest):
    def test_random_bytes_are_refused(self):
        source = random.Random(20)
        pairs = [failedRun(text, NOT_THERE) for text in (NOT_FOUND, NO_TAG)]
        for round in range(40):
            alphabet = bytes(range(256)) if round % 2 else b"<>/?!-[]&;#\"'= \n\0VADELSIM"
            self.startOver()
            content = bytes(source.choices(alphabet, k=source.randrange(1, 3000)))
            with self.subTest(content=content):
                self.giveJob({}, content)
                run = self.clip()
                self.assertIn(run.messages, pairs)
                self.expectFailed(run, NOT_FOUND if run.messages == pairs[0] else NO_TAG, NOT_THERE)

    def test_file_cut_anywhere_is_refused(self):
        for length in range(0, len(SQUARE) - 1, 7):
            self.startOver()
            self.give({"area.xml": SQUARE[:length]})
            with self.subTest(length=length):
                self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_polygon_of_a_hundred_thousand_points_is_read(self):
        jagged = "".join(f'<point x="{10 + index % 2}" y="{index / 10_000}"/>' for index in range(100_000))
        ring = f'<point x="0" y="0"/>{jagged}<point x="0" y="10"/>'
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n-1;1;5\n"}, boundaries(f'<polygon id="1">{ring}</polygon>'))
        self.expectFinished(self.clip(), 1, {"a.xyz": HEADER + b"1;1;5\n"}, lineCounts=[2])

    @unittest.skipIf(SANITIZED, "takes several times the memory under sanitizers")
    def test_million_polygons_without_points_keep_nothing(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 100}, boundaries('<polygon id="1"/>' * 1_000_000))
        self.expectFinished(self.clip(), 0, lineCounts=[100])

    @unittest.skipIf(SANITIZED, "sanitizers reserve more address space than the limit leaves")
    def test_file_larger_than_the_memory_is_not_found(self):
        with open(self.aside + "/area.xml", "wb") as file:
            file.truncate(400 << 20)
        run = self.start("base/data", "out", "../aside/area.xml", beforeStart=limitMemory(250 << 20))
        self.expectFailed(run, "Boundary file ../aside/area.xml not found",
                          "Boundary file ../aside/area.xml does not exist")


if __name__ == "__main__":
    unittest.main()
