"""The boundary file: which elements the tool reads, which failures there are and which messages they send."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, SQUARE, dropPowersOfRoot, linkTo
from boundary_files import HEADER, NOT_FOUND, NOT_THERE, RING, BoundaryFileTest, boundaries, document

FAR_RING = '<point x="20" y="0"/><point x="30" y="0"/><point x="30" y="10"/><point x="20" y="10"/>'
GROUP = f'<group type="boundaries"><polygon id="1">{RING}</polygon></group>'
BAD_GROUP = '<group type="boundaries"><polygon/></group>'


class BoundaryTest(BoundaryFileTest):
    """The nodes at (1,1) and (21,1) are in RING and FAR_RING: a kept node shows that its ring was read."""

    def expectKept(self, area, nearRing, farRing=False):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n21;1;5\n"}, area)
        kept = b"1;1;5\n" * nearRing + b"21;1;5\n" * farRing
        run = self.clip()
        self.expectFinished(run, kept.count(b"\n"), {"a.xyz": HEADER + kept} if kept else {}, lineCounts=[2])

    def expectNoPolygon(self, area):
        """Expects that the reader succeeds silently, so that the run fails at the next step, the directory checks."""
        self.give({"area.xml": area})
        self.expectFailed(self.clip(), "Directory base does not exist")

    def expectEach(self, cases, expectation, *arguments):
        for case in cases:
            with self.subTest(case[:80]):
                self.startOver()
                expectation(case, *arguments)


class UnreadableFiles(BoundaryTest):
    def test_missing_file_is_not_found(self):
        self.give({"base/data/a.xyz": HEADER})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_boundary_file_is_read_before_the_directory_checks(self):
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_file_without_an_element_is_not_found(self):
        self.expectEach((b"", b" \n\t", b"<!-- only a comment -->", b'<?xml version="1.0"?>', b"<!DOCTYPE VADELSIM>",
                         b"<?VADELSIM text?>", b"only text", b"<![CDATA[<VADELSIM/>]]>", b"\xef\xbb\xbf"),
                        self.expectRefused, NOT_FOUND)

    def test_malformed_file_is_not_found(self):
        self.expectEach((b"<VADELSIM>", SQUARE[:-2], SQUARE.replace(b"</group>", b""),
                         b"<VADELSIM></VadeDGM></VADELSIM>",
                         document('<group type=boundaries/>'), document('<group type="boundaries/>'), b"<VADELSIM><",
                         document("<!-- open "), document("<!DOCTYPE VADELSIM>"),
                         SQUARE.replace(b"polygon id", b"polygon\0id")),
                        self.expectRefused, NOT_FOUND)

    @unittest.skipIf(SANITIZED, "sanitizers stop at the impossible size that a directory reports")
    def test_directory_is_not_found(self):
        self.give({"base/data/a.xyz": HEADER, "area.xml": DIRECTORY})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_unreadable_file_is_not_found(self):
        self.giveJob({})
        os.chmod(self.path("area.xml"), 0)
        self.expectFailed(self.clip(beforeStart=dropPowersOfRoot), NOT_FOUND, NOT_THERE)

    def test_circular_link_is_not_found(self):
        self.give({"base/data": DIRECTORY, "area.xml": linkTo("area.xml")})
        self.expectFailed(self.clip(), NOT_FOUND, NOT_THERE)

    def test_quotes_the_path_unchanged(self):
        for path in ("", "./../x//area.xml", "{0} {x} }{", "two\nlines\\n", "a b%s.xml", os.fsdecode(b"\xff\xfe"),
                     "ä.xml"):
            with self.subTest(path=path):
                texts = (f"Boundary file {path} not found", f"Boundary file {path} does not exist")
                self.expectFailed(self.start("base/data", "out", path), *texts)


class MissingElements(BoundaryTest):
    NO_TAG = "Could not find the VadeDGM tag in the boundary file area.xml"

    def test_document_with_another_root_has_no_tag(self):
        self.expectEach((b"<other/>", b"<VadeDGM/>", f"<VadeDGM>{GROUP}</VadeDGM>".encode(),
                         b"<vadelsim><VadeDGM/></vadelsim>",
                         b'<v:VADELSIM xmlns:v="u"><VadeDGM/></v:VADELSIM>'), self.expectRefused, self.NO_TAG)

    def test_root_without_the_child_has_no_tag(self):
        self.expectEach((b"<VADELSIM/>", b"<VADELSIM></VADELSIM>", b"<VADELSIM> text </VADELSIM>",
                         b"<VADELSIM><vadedgm/></VADELSIM>",
                         f"<VADELSIM>{GROUP}</VADELSIM>".encode(),
                         f"<VADELSIM><a><VadeDGM>{GROUP}</VadeDGM></a></VADELSIM>".encode()),
                        self.expectRefused, self.NO_TAG)

    def test_reads_only_the_first_root(self):
        self.expectRefused(b"<VADELSIM/>" + SQUARE, self.NO_TAG)

    def test_reads_only_the_first_child_of_the_root(self):
        self.expectNoPolygon(f"<VADELSIM><VadeDGM/><VadeDGM>{BAD_GROUP}</VadeDGM></VADELSIM>".encode())

    def test_instruction_named_like_the_root_counts_as_the_root(self):
        self.expectRefused(b"<?VADELSIM text?>" + SQUARE, self.NO_TAG)


class Polygons(BoundaryTest):
    NO_ID = "Cannot find the id of a polygon in a group of type 0"  # always 0, on purpose

    def test_polygon_without_an_id_is_refused(self):
        self.expectEach((boundaries(f"<polygon>{RING}</polygon>"), boundaries("<polygon/>"),
                         boundaries('<polygon ID="1"/>'), boundaries('<polygon name="1"><point/></polygon>'),
                         boundaries(f'<polygon id="1">{RING}</polygon><polygon/>')), self.expectRefused, self.NO_ID)

    def test_instruction_named_polygon_counts_as_a_polygon(self):
        self.expectRefused(boundaries('<?polygon id="1"?>'), self.NO_ID)

    def test_two_polygons_may_have_the_same_id(self):
        self.expectKept(boundaries(f'<polygon id="1">{RING}</polygon><polygon id="1">{FAR_RING}</polygon>'), True, True)

    def test_polygon_inside_a_polygon_is_ignored(self):
        self.expectKept(boundaries(f'<polygon id="1">{RING}<polygon>{FAR_RING}</polygon></polygon>'), True)

    def test_polygon_without_points_contains_nothing(self):
        self.expectKept(boundaries('<polygon id="1"/>'), False)

    def test_polygons_of_one_and_two_points_are_accepted(self):
        self.expectKept(boundaries('<polygon id="1"><point x="1" y="1"/></polygon>'
                                   '<polygon id="2"><point x="20" y="1"/><point x="22" y="1"/></polygon>'), False, True)


class Groups(BoundaryTest):
    def test_file_without_a_polygon_is_read_silently(self):
        self.expectEach((document(""), document(" \n "), document('<group type="other"/>'),
                         document('<group type="boundaries"/>'),
                         document('<group type="boundaries"></group><group/>'),
                         document('<Group type="boundaries"><polygon/></Group>'),
                         document('<?group type="boundaries"?>'), document(f"<a>{BAD_GROUP}</a>")),
                        self.expectNoPolygon)

    def test_run_without_a_polygon_keeps_nothing(self):
        self.expectKept(document(""), False)

    def test_groups_of_other_types_are_skipped(self):
        for attribute in ("", 'type=""', 'type="other"', 'type="Boundaries"', 'type="boundaries "',
                          'type=" boundaries"',
                          'type="bound&#97;ries"', 'type="boundarie"', "type=\"boundaries\n\"", 'TYPE="boundaries"',
                          'type="other" type="boundaries"'):
            with self.subTest(attribute):
                self.startOver()
                polygons = '<polygon/><polygon id="x"><point/></polygon>'
                self.expectNoPolygon(document(f"<group {attribute}>{polygons}</group>"))

    def test_first_of_two_equal_attributes_counts(self):
        self.expectKept(GROUP.join(("<VADELSIM><VadeDGM>", "</VadeDGM></VADELSIM>")).replace(
            'type="boundaries"', 'type="boundaries" type="other"').encode(), True)

    def test_several_groups_are_one_list_of_polygons(self):
        self.expectKept(document(GROUP + '<group type="other"><polygon/></group>'
                                 f'<group type="boundaries"><polygon id="2">{FAR_RING}</polygon></group>'), True, True)

    def test_bad_later_group_is_refused(self):
        self.expectRefused(document(GROUP + BAD_GROUP), Polygons.NO_ID)


class IgnoredContent(BoundaryTest):
    def test_elements_before_the_root_are_ignored(self):
        self.expectKept(b'<?xml version="1.0"?><!-- c --><!DOCTYPE a [<!ENTITY e "1">]> text <other><VadeDGM/></other>'
                        + SQUARE, True)

    def test_unknown_content_is_ignored(self):
        self.expectKept((
            f'<VADELSIM a="1">text<b/><VadeDGM>text<!-- c --><c><group type="boundaries"><polygon/></group></c>'
            f'<group name="g" type="boundaries"> text <!-- c --><point/><?pi?>'
            f'<polygon colour="red" id="1">text<![CDATA[<point/>]]><line><point/></line><?target?>{RING}<Point/>'
            f'</polygon></group></VadeDGM><VadeDGM/></VADELSIM><VADELSIM/>').encode(), True)

    def test_content_of_a_point_is_ignored(self):
        self.expectKept(SQUARE.replace(b"/>", b' z="abc"><point/>text</point>'), True)

    def test_encoding_is_detected_from_the_content(self):
        text = SQUARE.decode()
        self.expectEach((b"\xef\xbb\xbf" + SQUARE, text.encode("utf-16"), b"\xfe\xff" + text.encode("utf-16-be"),
                         text.encode("utf-16-le"),
                         text.encode("utf-32"), b'<?xml version="1.0" encoding="ISO-8859-1"?><!-- \xe4 -->' + SQUARE),
                        self.expectKept, True)

    def test_nul_after_the_root_ends_the_file(self):
        self.expectKept(SQUARE + b"\0<VADELSIM>", True)


if __name__ == "__main__":
    unittest.main()
