"""Boundary files made to exhaust memory, time or stack, or to slip something past the reader.

What each gets is fixed: the ordinary failures of the boundary file, or an ordinary run. Peak memory is held below a
limit where the point is that something is not expanded, not copied, or not kept.

VADELCLIP_ATTRIBUTE sets the MiB of a long attribute, VADELCLIP_POINTS how many points a large polygon has.
"""
import os
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED, SQUARE, AcceptanceTest

HEADER = b"x;y;z\n"
NODES, KEPT = HEADER + b"1;1;5\n20;1;5\n", HEADER + b"1;1;5\n"
NOT_FOUND = "Boundary file area.xml not found"
NOT_THERE = "Boundary file area.xml does not exist"
SECOND = "Boundary file ../aside/area.xml does not exist"
RING = '<point x="0" y="0"/><point x="10" y="0"/><point x="10" y="10"/><point x="0" y="10"/>'


def around(content):
    return SQUARE.replace(b"<VadeDGM>", b"<VadeDGM>" + content)


def boundaries(content):
    return f'<VADELSIM><VadeDGM><group type="boundaries">{content}</group></VadeDGM></VADELSIM>'.encode()


def memoryLimit(size):
    def limit():
        if not SANITIZED:  # sanitizers reserve more address space than any limit leaves
            resource.setrlimit(resource.RLIMIT_AS, (size, size))

    return limit


class HostileTest(AcceptanceTest):
    def expectKept(self, area, **settings):
        self.startOver()
        self.giveJob({"a.xyz": NODES}, area)
        self.expectFinished(self.clip(**settings), 1, {"a.xyz": KEPT}, lineCounts=[2])

    def expectRefused(self, area, text, **settings):
        self.startOver()
        self.giveJob({"a.xyz": NODES}, area)
        self.expectFailed(self.clip(**settings), text, NOT_THERE)


class Entities(HostileTest):
    """A billion laughs: ten entities, each ten times the one before. Not one of them is ever expanded."""

    LAUGHS = ('<!DOCTYPE VADELSIM [<!ENTITY l0 "lol">' + "".join(
        f'<!ENTITY l{level} "{f"&l{level - 1};" * 10}">' for level in range(1, 10)) + "]>").encode()
    LIMIT = 100 << 20

    def test_in_text_and_in_attributes_nobody_asks_for_they_are_passed_over(self):
        for place in (b"&l9;", b"<a>&l9;</a>", b'<a b="&l9;"/>', b"<group type='&l9;'><polygon/></group>"):
            with self.subTest(place=place):
                self.expectKept(self.LAUGHS + around(place), beforeStart=memoryLimit(self.LIMIT))

    def test_in_the_place_of_a_number_they_are_no_number(self):
        for attribute, text in (("x", "Cannot read point 0 in polygon 1"),
                                ("id", "Cannot find the id of a polygon in a group of type 0")):
            with self.subTest(attribute=attribute):
                area = SQUARE.replace(f'{attribute}="'.encode(), f'{attribute}="&l9;'.encode(), 1)
                self.expectRefused(self.LAUGHS + area, text, beforeStart=memoryLimit(self.LIMIT))

    def test_an_entity_of_an_entity_of_itself_is_passed_over(self):
        self.expectKept(b'<!DOCTYPE a [<!ENTITY a "&b;"><!ENTITY b "&a;">]>' + around(b"&a;"))

    def test_a_file_or_a_host_named_by_an_entity_is_not_read(self):
        for system in ("base/data/a.xyz", "file:///etc/passwd", "http://127.0.0.1:9/", "/dev/zero"):
            with self.subTest(system=system):
                declaration = f'<!DOCTYPE a SYSTEM "{system}" [<!ENTITY e SYSTEM "{system}">%e;]>'.encode()
                self.expectKept(declaration + around(b"&e;"))


class Nesting(HostileTest):
    DEPTH = 1_000_000
    STACK = 8 << 20 if SANITIZED else 256 << 10

    def test_a_million_elements_in_each_other_are_refused_where_they_do_not_close(self):
        for area in (b"<a>" * self.DEPTH, around(b"<a>" * self.DEPTH), b"<VADELSIM>" * self.DEPTH):
            with self.subTest(area=area[:40]):
                self.expectRefused(area, NOT_FOUND, beforeStart=self.limitStack)

    def test_a_million_groups_in_each_other_are_passed_over(self):
        nested = b'<a><group type="boundaries">' * (self.DEPTH // 2) + b"</group></a>" * (self.DEPTH // 2)
        self.expectKept(around(nested), beforeStart=self.limitStack)

    def limitStack(self):
        resource.setrlimit(resource.RLIMIT_STACK, (self.STACK, self.STACK))


class NulBytes(HostileTest):
    def test_in_names_values_and_text_they_end_the_file_too_early(self):
        for place in (b"<a\0/>", b'<a b="\0"/>', b'<a b="1\0"/>', b"text\0", b"<!-- \0 -->", b"<?pi \0?>",
                      b"<![CDATA[\0]]>"):
            with self.subTest(place=place):
                self.expectRefused(around(place), NOT_FOUND)

    def test_alone_they_are_no_element(self):
        for content in (b"\0", b"\0" * 100_000, b"\0" + SQUARE):
            with self.subTest(content=content[:20]):
                self.expectRefused(content, NOT_FOUND)


class Encodings(HostileTest):
    def test_utf16_of_either_order_is_read_with_and_without_its_mark(self):
        text = "<!-- Höhe 😀 -->" + SQUARE.decode()
        for encoding, mark in (("utf-16-le", b"\xff\xfe"), ("utf-16-be", b"\xfe\xff")):
            with self.subTest(encoding=encoding):
                self.expectKept(mark + text.encode(encoding))
                self.expectKept(text.encode(encoding))

    def test_lone_surrogates_and_half_characters_are_passed_over_where_nobody_asks_for_them(self):
        for order, mark in (("utf-16-le", b"\xff\xfe"), ("utf-16-be", b"\xfe\xff")):
            for lone in ("\ud800", "\udc00", "\udc00\ud800"):
                with self.subTest(order=order, lone=lone):
                    content = (f"<!-- {lone} -->" + SQUARE.decode()).encode(order, "surrogatepass")
                    self.expectKept(mark + content + b"\0")

    def test_utf16_cut_anywhere_is_refused(self):
        content = SQUARE.decode().strip().encode("utf-16")
        for length in range(0, len(content) - 3, 13):
            with self.subTest(length=length):
                self.expectRefused(content[:length], NOT_FOUND)

    def test_bytes_that_are_no_utf8_are_passed_over_where_nobody_asks_for_them(self):
        for place in (b"\xff\xfe\xfd", b"<!-- \xc0\x80 \xed\xa0\x80 -->", b'<a b="\xf8\x88"/>', b"<\xe4\xf6/>"):
            with self.subTest(place=place):
                self.expectKept(around(place))


class Sizes(HostileTest):
    """The file stands aside, where it is not compared byte by byte."""

    def writeArea(self, pieces):
        with open(os.path.join(self.aside, "area.xml"), "wb") as file:
            for piece in pieces:
                file.write(piece)
        self.giveJob({"a.xyz": NODES})

    def clipAside(self, memory):
        return self.start("base/data", "out", "../aside/area.xml", beforeStart=memoryLimit(memory))

    ATTRIBUTE = int(os.environ.get("VADELCLIP_ATTRIBUTE", 20 if SANITIZED else 200)) << 20
    POINTS = int(os.environ.get("VADELCLIP_POINTS", 500_000))

    def long(self, start, end):
        return [start, *[b"1" * (1 << 20)] * (self.ATTRIBUTE >> 20), end]

    def test_a_long_attribute_that_nobody_asks_for_is_passed_over(self):
        self.writeArea(self.long(b'<a b="', b'"/>' + SQUARE))
        # Held once, as it was read.
        self.expectFinished(self.clipAside(self.ATTRIBUTE + (60 << 20)), 1, {"a.xyz": KEPT}, lineCounts=[2])

    def test_a_long_attribute_in_the_place_of_a_number_is_out_of_range(self):
        self.writeArea(self.long(b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="',
                                 b'" y="0"/></polygon></group></VadeDGM></VADELSIM>'))
        run = self.clipAside(self.ATTRIBUTE * 8)
        self.expectFailed(run, "Cannot read point 0 in polygon 1", SECOND)

    def test_an_attribute_larger_than_the_memory_is_a_file_not_found(self):
        if SANITIZED:
            self.skipTest("sanitizers reserve more address space than any limit leaves")
        self.writeArea(self.long(b'<a b="', b'"/>' + SQUARE))
        self.expectFailed(self.clipAside(self.ATTRIBUTE), "Boundary file ../aside/area.xml not found", SECOND)

    @unittest.skipIf(SANITIZED, "takes several times the memory under sanitizers")
    def test_very_many_points_are_read_under_a_limit_of_memory_or_refused_in_order(self):
        ring = (f'<point x="{10 if number % 2 else 9}" y="{number / (self.POINTS / 10)}"/>'
                for number in range(self.POINTS))
        self.writeArea([boundaries('<polygon id="1"><point x="0" y="0"/>' + "".join(ring)
                                   + '<point x="0" y="10"/></polygon>')])
        # Half a million are 13 MB of text, which takes several times as much as a document, and more again together with
        # the set. The bytes for each point are about those of 60, 150 and 300 MiB.
        self.expectFailed(self.clipAside(self.POINTS * 126), "Boundary file ../aside/area.xml not found", SECOND)
        self.expectFailed(self.clipAside(self.POINTS * 315), "std::bad_alloc")
        self.expectFinished(self.clipAside(self.POINTS * 629), 1, {"a.xyz": KEPT}, lineCounts=[2])


if __name__ == "__main__":
    unittest.main()
