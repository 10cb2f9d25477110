"""Boundary files that try to exhaust memory, time or stack, or to make the reader open another file.

Each leads to an ordinary failure of the boundary file or to an ordinary run. A memory limit shows that the reader does
not expand, copy or keep what it does not need.

VADELCLIP_ATTRIBUTE sets the MiB of a long attribute, VADELCLIP_POINTS the number of points of a large polygon.
"""
import os
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import KEPT, NODES, SANITIZED, SQUARE, limitMemory
from boundary_files import NOT_FOUND, BoundaryFileTest, boundaries

SECOND = "Boundary file ../aside/area.xml does not exist"


def withElement(content):
    return SQUARE.replace(b"<VadeDGM>", b"<VadeDGM>" + content)


def memoryLimit(size):
    # Sanitizers reserve more address space than any limit leaves.
    return None if SANITIZED else limitMemory(size)


class HostileTest(BoundaryFileTest):
    def expectKept(self, area, **settings):
        self.startOver()
        self.giveJob(NODES, area)
        self.expectFinished(self.clip(**settings), 1, KEPT, lineCounts=[2])


class Entities(HostileTest):
    """A billion laughs: ten entities, each ten times the one before. The reader never expands an entity."""

    LAUGHS = ('<!DOCTYPE VADELSIM [<!ENTITY l0 "lol">' + "".join(
        f'<!ENTITY l{level} "{f"&l{level - 1};" * 10}">' for level in range(1, 10)) + "]>").encode()
    LIMIT = 100 << 20

    def test_entities_in_unused_places_are_ignored(self):
        for place in (b"&l9;", b"<a>&l9;</a>", b'<a b="&l9;"/>', b"<group type='&l9;'><polygon/></group>"):
            with self.subTest(place=place):
                self.expectKept(self.LAUGHS + withElement(place), beforeStart=memoryLimit(self.LIMIT))

    def test_entity_is_no_number(self):
        for attribute, text in (("x", "Cannot read point 0 in polygon 1"),
                                ("id", "Cannot find the id of a polygon in a group of type 0")):
            with self.subTest(attribute=attribute):
                area = SQUARE.replace(f'{attribute}="'.encode(), f'{attribute}="&l9;'.encode(), 1)
                self.expectRefused(self.LAUGHS + area, text, beforeStart=memoryLimit(self.LIMIT))

    def test_recursive_entity_is_ignored(self):
        self.expectKept(b'<!DOCTYPE a [<!ENTITY a "&b;"><!ENTITY b "&a;">]>' + withElement(b"&a;"))

    def test_external_entity_is_not_opened(self):
        for system in ("base/data/a.xyz", "file:///etc/passwd", "http://127.0.0.1:9/", "/dev/zero"):
            with self.subTest(system=system):
                declaration = f'<!DOCTYPE a SYSTEM "{system}" [<!ENTITY e SYSTEM "{system}">%e;]>'.encode()
                self.expectKept(declaration + withElement(b"&e;"))


class Nesting(HostileTest):
    DEPTH = 1_000_000
    STACK = 8 << 20 if SANITIZED else 256 << 10

    def test_million_unclosed_elements_are_refused(self):
        for area in (b"<a>" * self.DEPTH, withElement(b"<a>" * self.DEPTH), b"<VADELSIM>" * self.DEPTH):
            with self.subTest(area=area[:40]):
                self.expectRefused(area, NOT_FOUND, beforeStart=self.limitStack)

    def test_million_nested_elements_are_ignored(self):
        nested = b'<a><group type="boundaries">' * (self.DEPTH // 2) + b"</group></a>" * (self.DEPTH // 2)
        self.expectKept(withElement(nested), beforeStart=self.limitStack)
        nested = b"<VADELSIM>" + b"<a>" * self.DEPTH + b"</a>" * self.DEPTH
        self.expectKept(SQUARE.replace(b"<VADELSIM>", nested), beforeStart=self.limitStack)
        nested = b"<a>" * self.DEPTH + b"</a>" * self.DEPTH
        for end, replacement in ((b"<polygon", nested + b"<polygon"), (b"<point", nested + b"<point"),
                                 (b"/>", b">" + nested + b"</point>")):
            with self.subTest(end=end):
                self.expectKept(SQUARE.replace(end, replacement, 1), beforeStart=self.limitStack)

    def limitStack(self):
        resource.setrlimit(resource.RLIMIT_STACK, (self.STACK, self.STACK))


class NulBytes(HostileTest):
    def test_nul_in_names_values_and_text_is_refused(self):
        for place in (b"<a\0/>", b'<a b="\0"/>', b'<a b="1\0"/>', b"text\0", b"<!-- \0 -->", b"<?pi \0?>",
                      b"<![CDATA[\0]]>"):
            with self.subTest(place=place):
                self.expectRefused(withElement(place), NOT_FOUND)

    def test_file_of_nul_bytes_is_refused(self):
        for content in (b"\0", b"\0" * 100_000, b"\0" + SQUARE):
            with self.subTest(content=content[:20]):
                self.expectRefused(content, NOT_FOUND)


class Encodings(HostileTest):
    def test_utf16_of_either_byte_order_is_read(self):
        text = "<!-- Höhe 😀 -->" + SQUARE.decode()
        for encoding, mark in (("utf-16-le", b"\xff\xfe"), ("utf-16-be", b"\xfe\xff")):
            with self.subTest(encoding=encoding):
                self.expectKept(mark + text.encode(encoding))
                self.expectKept(text.encode(encoding))

    def test_lone_surrogates_in_unused_places_are_ignored(self):
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

    def test_invalid_utf8_in_unused_places_is_ignored(self):
        for place in (b"\xff\xfe\xfd", b"<!-- \xc0\x80 \xed\xa0\x80 -->", b'<a b="\xf8\x88"/>', b"<\xe4\xf6/>"):
            with self.subTest(place=place):
                self.expectKept(withElement(place))


class Sizes(HostileTest):
    """These files are in `aside`, where they are not compared byte by byte."""

    def writeArea(self, pieces):
        with open(os.path.join(self.aside, "area.xml"), "wb") as file:
            for piece in pieces:
                file.write(piece)
        self.giveJob(NODES)

    def clipAside(self, memory):
        return self.start("base/data", "out", "../aside/area.xml", beforeStart=memoryLimit(memory))

    ATTRIBUTE = int(os.environ.get("VADELCLIP_ATTRIBUTE", 20 if SANITIZED else 200)) << 20
    POLYGONS = int(os.environ.get("VADELCLIP_POLYGONS", 200_000))

    def long(self, start, end):
        return [start, *[b"1" * (1 << 20)] * (self.ATTRIBUTE >> 20), end]

    def test_long_unused_attribute_is_ignored(self):
        self.writeArea(self.long(b'<a b="', b'"/>' + SQUARE))
        # The reader keeps one copy of the file.
        self.expectFinished(self.clipAside(self.ATTRIBUTE + (60 << 20)), 1, KEPT, lineCounts=[2])

    def test_long_number_is_out_of_range(self):
        self.writeArea(self.long(*boundaries('<polygon id="1"><point x="|" y="0"/></polygon>').split(b"|")))
        run = self.clipAside(self.ATTRIBUTE * 8)
        self.expectFailed(run, "Cannot read point 0 in polygon 1", SECOND)

    def test_attribute_larger_than_the_memory_means_not_found(self):
        if SANITIZED:
            self.skipTest("sanitizers reserve more address space than any limit leaves")
        self.writeArea(self.long(b'<a b="', b'"/>' + SQUARE))
        self.expectFailed(self.clipAside(self.ATTRIBUTE), "Boundary file ../aside/area.xml not found", SECOND)

    @unittest.skipIf(SANITIZED, "takes several times the memory under sanitizers")
    def test_polygons_beyond_a_memory_limit_fail_the_run(self):
        # A polygon without points takes several times its memory in the document. Points take less.
        square = "".join(f'<point x="{x}" y="{y}"/>' for x, y in [(0, 0), (10, 0), (10, 10), (0, 10)])
        self.writeArea([boundaries(f'<polygon id="1">{square}</polygon>' + '<polygon id="2"/>' * self.POLYGONS)])
        seen = []
        for memory in range(54 << 20, 1 << 30, 8 << 20):
            run = self.clipAside(memory)
            if run.status == 0:
                self.expectFinished(run, 1, KEPT, lineCounts=[2])
                break
            seen.append(run.console.splitlines()[0].decode())
            self.expectFailed(run, seen[-1], *([SECOND] if "not found" in seen[-1] else []))
        self.assertEqual(run.status, 0)
        self.assertEqual(list(dict.fromkeys(seen)), ["Boundary file ../aside/area.xml not found", "std::bad_alloc"])
        self.assertEqual(seen, sorted(seen))

    @unittest.skipIf(SANITIZED, "takes several times the memory under sanitizers")
    def test_table_of_polygons_exists_once(self):
        # A table that grows would exist twice just beyond a power of two.
        self.writeArea([SQUARE.replace(b"</group>", b'<polygon id="2"/>' * 262_200 + b"</group>")])
        self.expectFinished(self.clipAside(280 << 20), 1, KEPT, lineCounts=[2])


if __name__ == "__main__":
    unittest.main()
