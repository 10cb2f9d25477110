"""Which entries of the input directory are node files.

tests/clip/input_selection_test.cpp and node_file_header_test.cpp test headers and line counts in detail.
"""
import os
import socket
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, AcceptanceTest, linkTo
from target_platform import possible

NODES = b"x;y;z\n1;1;5\n20;1;5\n"
KEPT = b"x;y;z\n1;1;5\n"
NO_FILES = "There are no input files."


class SelectionTest(AcceptanceTest):
    def expectSelected(self, *names):
        """Expects that exactly these files are clipped. Each has the content NODES."""
        self.expectFinished(self.clip(), len(names), {name: KEPT for name in names}, lineCounts=[2] * len(names))

    def expectNoFiles(self):
        self.expectFailed(self.clip(), NO_FILES, created={"base/out": DIRECTORY})


class Names(SelectionTest):
    def test_files_of_the_three_suffixes_are_selected(self):
        names = possible("a.txt", "b.xyz", "c.csv", ".txt", ".xyz", ".csv", ".hidden.txt", "two.dots.csv", "a.TXT.txt",
                         "a b.xyz", "-pipe.txt", os.fsdecode(b"\xff.csv"), "Höhe.xyz", "new\nline.txt",
                         "x" * 251 + ".txt")
        self.giveJob({name: NODES for name in names})
        self.expectSelected(*names)

    def test_files_of_other_names_are_skipped_silently(self):
        names = ("a.TXT", "b.XYZ", "c.Csv", "d.txt.bak", "txt", "xyz", "etxt", "f.txt ", "g.tx", "h.text", "i",
                 "j.txt~", "k.xml", "l.csv.")
        self.giveJob({**{name: NODES for name in names}, "taken.csv": NODES})
        self.expectSelected("taken.csv")

    def test_no_node_file_leaves_an_empty_output_directory(self):
        self.giveJob({"a.TXT": NODES, "b.doc": NODES, "sub/a.txt": NODES, "empty.txt": b""})
        self.expectNoFiles()


class Kinds(SelectionTest):
    def test_directory_of_any_name_is_skipped(self):
        self.giveJob({"a.txt": NODES, "sub.txt/b.txt": NODES, "link.csv": linkTo("sub.txt")})
        self.expectSelected("a.txt")

    def test_link_to_an_empty_device_is_skipped(self):
        self.giveJob({"a.txt": NODES, "b.txt": linkTo("/dev/null")})
        self.expectSelected("a.txt")

    def test_fifo_is_selected(self):
        self.giveJob({})
        self.serve("base/data/a.txt", NODES, NODES, NODES)
        self.expectSelected("a.txt")

    def test_socket_is_skipped(self):
        self.giveJob({"a.txt": NODES})
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(self.path("base/data/s.txt"))
            run = self.clip()
        del run.tree["base/data/s.txt"]
        self.expectFinished(run, 1, {"a.txt": KEPT}, lineCounts=[2])

    def test_entry_of_any_name_with_unreadable_status_throws(self):
        for name in ("loop.txt", "loop"):
            with self.subTest(name=name):
                self.startOver()
                self.giveJob({"a.txt": NODES, name: linkTo(name)})
                self.expectThrown(self.clip(), "boost::filesystem::status", created={"base/out": DIRECTORY})


class Headers(SelectionTest):
    def test_carriage_return_is_not_part_of_the_header(self):
        self.giveJob({"a.txt": b"x;y;z\r\n1;1;5\r\n20;1;5\r\n", "b.txt": b"\xef\xbb\xbfx;y;z\r\n1;1;5\n"})
        counts = [{"a.txt": 2, "b.txt": 1}[name] for name in self.walkOrder()]
        self.expectFinished(self.clip(), 2, {"a.txt": KEPT, "b.txt": b"\xef\xbb\xbf" + KEPT}, lineCounts=counts)

    def test_binary_files_are_skipped(self):
        self.giveJob({"a.txt": bytes(range(256)) * 1000, "b.xyz": b"x" * 3_000_000, "c.csv": b"\0" * 100_000,
                      "good.txt": NODES})
        self.expectSelected("good.txt")


if __name__ == "__main__":
    unittest.main()
