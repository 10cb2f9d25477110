"""The pass over one node file: which lines are kept, and that they are copied byte for byte.

tests/clip/node_line_test.cpp tests every separator and form of number.
"""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import AcceptanceTest

HEADERS = {";": b"x;y;z\n", ",": b"x,y,z\n", " ": b"x y z\n", "\t": b"x\ty\tz\n"}


class LineTest(AcceptanceTest):
    def expectLines(self, header, kept, dropped=()):
        """Clips one file in which kept and dropped lines alternate, and expects only the kept ones."""
        lines = []
        for index in range(max(len(kept), len(dropped))):
            lines += [*kept[index:index + 1], *dropped[index:index + 1]]
        self.giveJob({"a.xyz": header + b"".join(line + b"\n" for line in lines)})
        files = {"a.xyz": header + b"".join(line + b"\n" for line in kept)} if kept else {}
        self.expectFinished(self.clip(), len(kept), files, lineCounts=[len(lines)])


class LineSyntax(LineTest):
    def test_lines_with_a_semicolon_as_separator(self):
        self.expectLines(HEADERS[";"], kept=[
            b"1;2;3", b"1;2;", b"1;2 ", b"1;2;3;4;5;words", b"1;2words", b"1;2;\xff\xfe\0;", b"  1 ; 2 ; 3",
            b"\t1;\t2;3", b"1 words;2;3", b"1,5;2;3", b"1abc;2;3", b"1\0;2;3", b"1\r;2;3", b"1;2\r3", b"1;2;3\rx",
            b"+1;+2;3", b".5;.5;3", b"5.;5.;3", b"1e0;2E0;3", b"10e-1;2;3", b"0001;2;3", b"0x9;2;3", b"-0;2;3",
            b"1.5.5;2;3", b"1 2;3;4", b"1\0002;2;3", b"\v\f1;2;3",
        ], dropped=[
            b"", b" ", b"words", b"1", b"1 ", b"1;", b"1; ", b";", b";;", b";1;2;3", b"1;;2;3", b"1;2", b"1;2.5",
            b"1;+2", b"1 2 3", b"1\t2\t3", b"1,2,3", b"1;words;3", b"words;2;3", b"1e;2;3", b"1e+;2;3", b"1;2e;3",
            b"-;2;3", b".;2;3", b"+-1;2;3", b"inf;2;3", b"nan;nan;3", b"1e999;2;3", b"1;1e999;3", b"\xef\xbb\xbf1;2;3",
            b"\xc2\xa01;2;3", b"\0001;2;3", b"#1;2;3", b'"1";"2";"3"', b"x;y;z", b"1;\0002;3",
        ])

    def test_lines_with_a_space_as_separator(self):
        self.expectLines(HEADERS[" "], kept=[
            b"1.0 2.0 ", b"1.0 2.0 3.0", b"  1   2   3", b"1\t2\t3", b"1 2;", b"1 2\r\t", b"1.5 2.5words", b"1+2 3",
            b"1.5.5 3",
        ], dropped=[b"1.0 2.0", b"1.0", b"1.0 ", b"", b"1;2;3", b"1 ; 2 ; 3", b"1,2,3", b"words 1 2"])

    def test_line_of_any_length_is_read(self):
        self.expectLines(HEADERS[";"],
                         kept=[b"1;2;" + b"9" * 5_000_000, b" " * 300_000 + b"1;2;3", b"1." + b"0" * 300_000 + b";2;3"],
                         dropped=[b"9" * 300_000 + b";2;3", b"_" * 5_000_000, b"30;2;" + b"9" * 5_000_000])

    def test_keeps_order_and_repetitions(self):
        self.expectLines(HEADERS[";"], kept=[b"9;9;1", b"1;1;2", b"5;5;3", b"1;1;2", b"9;9;1"], dropped=[b"11;1;1"])


class LineEnds(LineTest):
    def test_only_line_ends_change(self):
        for content, kept, lineCount in (
                (b"x;y;z\r\n1;1;5\r\n2;2;5\n3;3;5\r\n", b"x;y;z\n1;1;5\n2;2;5\n3;3;5\n", 3),
                (b"x;y;z\n1;2\r\n1;2;3\r\r\n1;2;3\r9;9;9\n", b"x;y;z\n1;2;3\r\n1;2;3\r9;9;9\n", 3),
                (b"x;y;z\n1;1;5\r\n2;2;5\r", b"x;y;z\n1;1;5\n", 1),
                (b"\xef\xbb\xbfX Y Z G\r\n1 1 5 7\r\n", b"\xef\xbb\xbfX Y Z G\n1 1 5 7\n", 1)):
            with self.subTest(content):
                self.startOver()
                self.expectResult(content, kept, lineCount)

    def test_end_of_file_character_does_not_end_the_file(self):
        self.expectResult(b"x;y;z\n1;1;5\n\x1a\n2;2;5\x1a\n3;3;5\n", b"x;y;z\n1;1;5\n2;2;5\x1a\n3;3;5\n", 4)

    def expectResult(self, content, kept, lineCount):
        self.giveJob({"a.xyz": content})
        self.expectFinished(self.clip(), kept.count(b"\n") - 1, {"a.xyz": kept}, lineCounts=[lineCount])


class Files(AcceptanceTest):
    def test_each_file_has_its_own_separator(self):
        lines = b"1;2;3\n1,2,3\n1 2 3\n1\t2\t3\n"
        kept = {";": b"1;2;3\n", ",": b"1,2,3\n", " ": b"1 2 3\n1\t2\t3\n", "\t": b"1\t2\t3\n"}
        names = {";": "a.xyz", ",": "b.xyz", " ": "c.xyz", "\t": "d.xyz"}
        self.giveJob({names[separator]: header + lines for separator, header in HEADERS.items()})
        self.expectFinished(self.clip(), 5,
                            {names[separator]: header + kept[separator] for separator, header in HEADERS.items()},
                            lineCounts=[4] * 4)

    def test_bad_file_does_not_stop_the_run(self):
        self.giveJob({"bad.txt": b"words\n", "empty.csv": b"", "binary.xyz": b"x;y;z\n" + bytes(range(256)) * 100,
                      "good.xyz": b"x;y;z\n1;1;5\n"})
        lineCounts = {"binary.xyz": 100, "good.xyz": 1}
        counts = [lineCounts[name] for name in self.walkOrder() if name in lineCounts]
        self.expectFinished(self.clip(), 1, {"good.xyz": b"x;y;z\n1;1;5\n"}, lineCounts=counts)


if __name__ == "__main__":
    unittest.main()
