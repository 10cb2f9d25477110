"""The boundary file: what the tool reads, each failure with its messages, damaged and large files.

tests/boundary/boundary_reader_*_test.cpp tests elements, attributes and numbers in detail.
"""
import os
import random
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, SQUARE, limitMemory, linkTo
from boundary_files import HEADER, NOT_FOUND, NOT_THERE, RING, BoundaryFileTest, boundaries, document
from expected_messages import failedRun

FAR_RING = '<point x="20" y="0"/><point x="30" y="0"/><point x="30" y="10"/><point x="20" y="10"/>'
GROUP = f'<group type="boundaries"><polygon id="1">{RING}</polygon></group>'
NO_ID = "Cannot find the id of a polygon in a group of type 0"  # always 0, on purpose
NO_TAG = "Could not find the VadeDGM tag in the boundary file area.xml"


class BoundaryTest(BoundaryFileTest):
    """The nodes at (1,1) and (21,1) are in RING and FAR_RING: a kept node shows that its ring was read."""

    def expectKept(self, area, nearRing, farRing=False):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n21;1;5\n"}, area)
        kept = b"1;1;5\n" * nearRing + b"21;1;5\n" * farRing
        run = self.clip()
        self.expectFinished(run, kept.count(b"\n"), {"a.xyz": HEADER + kept} if kept else {}, lineCounts=[2])


class UnreadableFiles(BoundaryTest):
    def test_missing_file_is_not_found(self):
        self.give({"base/data/a.xyz": HEADER})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_boundary_file_is_read_before_the_directory_checks(self):
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    @unittest.skipIf(SANITIZED, "sanitizers stop at the impossible size that a directory reports")
    def test_directory_is_not_found(self):
        self.give({"base/data/a.xyz": HEADER, "area.xml": DIRECTORY})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_circular_link_is_not_found(self):
        self.give({"base/data": DIRECTORY, "area.xml": linkTo("area.xml")})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_quotes_the_path_unchanged(self):
        for path in ("", "./../x//area.xml", "{0} {x} }{", "two\nlines\\n", "a b%s.xml", os.fsdecode(b"\xff\xfe"),
                     "ä.xml"):
            with self.subTest(path=path):
                texts = (f"Boundary file {path} not found", f"Boundary file {path} does not exist")
                self.expectFailed(self.start("base/data", "out", path), *texts)


class BadContent(BoundaryTest):
    def test_each_failure_has_its_text(self):
        good = '<point x="1" y="2"/>'
        for area, text in (
                (b"", NOT_FOUND), (SQUARE[:-2], NOT_FOUND), (SQUARE.replace(b"polygon id", b"polygon\0id"), NOT_FOUND),
                (b"<other/>", NO_TAG), (b"<?VADELSIM text?>" + SQUARE, NO_TAG), (b"<VADELSIM/>" + SQUARE, NO_TAG),
                (boundaries(f"<polygon>{RING}</polygon>"), NO_ID), (boundaries('<polygon id="x"><point/></polygon>'), NO_ID),
                (document(GROUP + '<group type="boundaries"><polygon/></group>'), NO_ID),
                (boundaries(f'<polygon id="4">{good * 5}</polygon><polygon id="-6">{good * 2}<point x="1"/></polygon>'),
                 "Cannot read point 2 in polygon -6"),
                (boundaries('<polygon id="5"><point x="1" y="1e999"/></polygon>'), "Cannot read point 0 in polygon 5"),
                (boundaries(f'<polygon id="9">{good}<?point x="1" y="1"?></polygon>'), "Cannot read point 1 in polygon 9")):
            with self.subTest(area[:80]):
                self.expectRefused(area, text)


class Groups(BoundaryTest):
    def test_several_groups_are_one_list_of_polygons(self):
        self.expectKept(document(GROUP + '<group type="other"><polygon/></group>'
                                 f'<group type="boundaries"><polygon id="2">{FAR_RING}</polygon></group>'), True, True)


class IgnoredContent(BoundaryTest):
    def test_unknown_content_is_ignored(self):
        self.expectKept((
            f'<VADELSIM a="1">text<b/><VadeDGM>text<!-- c --><c><group type="boundaries"><polygon/></group></c>'
            f'<group name="g" type="boundaries"> text <!-- c --><point/><?pi?>'
            f'<polygon colour="red" id="1">text<![CDATA[<point/>]]><line><point/></line><?target?>{RING}<Point/>'
            f'</polygon></group></VadeDGM><VadeDGM/></VADELSIM><VADELSIM/>').encode(), True)

    def test_nul_after_the_root_ends_the_file(self):
        self.expectKept(SQUARE + b"\0<VADELSIM>", True)


class DamagedOrLargeFiles(BoundaryFileTest):
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
