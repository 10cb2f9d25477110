"""Which files of the input directory are node files, and the line count of each."""
import os
import socket
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, AcceptanceTest, dropPowersOfRoot, linkTo, output
from expected_messages import closingRange, errorMessage, filePass, finishMessage, recorded
from target_platform import joined, possible

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

    def test_empty_input_directory_has_no_input_files(self):
        self.giveJob({})
        self.expectNoFiles()

    def test_repeated_run_stops_at_the_empty_output_directory(self):
        self.giveJob({})
        self.expectNoFiles()
        text = (f"Output directory {joined('base', 'out')} already exists, "
                "aborting in order avoid overwriting of existing data")
        self.expectFailed(self.clip(), text, created={"base/out": DIRECTORY})

    def test_walk_is_one_level_deep(self):
        self.giveJob({"a.txt": NODES, "sub/b.txt": NODES, "sub/sub/c.txt": NODES})
        self.expectSelected("a.txt")

    def test_passes_are_in_the_order_of_the_directory(self):
        counts = {f"{number * 7919 % 1009}.txt": number for number in range(1, 41)}
        files = {name: b"x;y;z\n" + b"1;1;5\n" * count for name, count in counts.items()}
        self.giveJob(files)
        self.expectFinished(self.clip(), sum(counts.values()), files,
                            lineCounts=[counts[name] for name in self.walkOrder()])


class Kinds(SelectionTest):
    def test_directory_of_any_name_is_skipped(self):
        self.giveJob({"a.txt": NODES, "sub.txt/b.txt": NODES, "link.csv": linkTo("sub.txt")})
        self.expectSelected("a.txt")

    def test_links_are_followed(self):
        self.giveJob({"a.txt": linkTo("../elsewhere")})
        self.give({"base/elsewhere": NODES})
        self.expectSelected("a.txt")

    def test_broken_link_is_skipped(self):
        self.giveJob({"a.txt": NODES, "b.txt": linkTo("nowhere")})
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

    def test_unreadable_file_is_skipped(self):
        self.giveJob({"a.txt": NODES, "b.txt": NODES})
        os.chmod(self.path("base/data/b.txt"), 0)
        self.expectFinished(self.clip(beforeStart=dropPowersOfRoot), 1, {"a.txt": KEPT}, lineCounts=[2])

    def test_unreadable_input_directory_throws(self):
        self.giveJob({"a.txt": NODES})
        os.chmod(self.path("base/data"), 0o300)
        self.expectThrown(self.clip(beforeStart=dropPowersOfRoot), "boost::filesystem::directory_iterator::construct",
                          created={"base/out": DIRECTORY})

    def test_entry_of_any_name_with_unreadable_status_throws(self):
        for name in ("loop.txt", "loop"):
            with self.subTest(name=name):
                self.startOver()
                self.giveJob({"a.txt": NODES, name: linkTo(name)})
                self.expectThrown(self.clip(), "boost::filesystem::status", created={"base/out": DIRECTORY})


class Headers(SelectionTest):
    def accepted(self):
        for separator in (b";", b",", b" ", b"\t"):
            for columns in (b"xyz", b"XYZ", b"xyzg", b"XYZG"):
                header = separator.join(bytes([column]) for column in columns)
                yield from (header, b"\xef\xbb\xbf" + header)

    def test_each_shape_with_each_separator_is_copied(self):
        headers = list(self.accepted())
        self.assertEqual(len(set(headers)), 32)
        files = {f"{index}.xyz": header + b"\n" + header[-2:-1].join((b"1", b"2", b"3")) + b"\n"
                 for index, header in enumerate(headers)}
        self.giveJob(files)
        self.expectFinished(self.clip(), 32, files, lineCounts=[1] * 32)

    REJECTED = (
        b"", b" ", b"x", b"xy", b"xyz", b"x;", b"x;y", b"x;y;", b"x;y;z;", b"x;y;z ", b" x;y;z", b"x;y;z;g;",
        b"x;y;z;g;h", b"x;y,z", b"x;y;z,g", b"y;x;z", b"Y;Y;Z;G", b"Y;Y;Z", b"X;y;z", b"x;Y;Z", b"x;y;z;G", b"X;Y;Z;g",
        b"x:y:z", b"x|y|z", b"xxyxz", b"x;;y;z", b"x; y; z", b"x;y;z\r\r", b"\xef\xbb\xbf", b"\xef\xbb\xbfx",
        b"\xef\xbb", b"\xef\xbb\xbf\xef\xbb\xbfx;y;z", b"\xef\xbb\xbf x;y;z", b"x;y;z\0", b"\0x;y;z", b"x\0y\0z",
        b"x\x0by\x0bz", b"x\x8by\x8bz", b"8;y;z", b"1;2;3", b"# x;y;z", b'"x";"y";"z"', b"x;y;z;g;x;y;z")

    def test_files_with_another_first_line_are_skipped_silently(self):
        files = {f"{index}.txt": header + b"\n1;1;1\n" for index, header in enumerate(self.REJECTED)}
        self.giveJob({**files, "good.txt": NODES})
        self.expectSelected("good.txt")

    def test_only_files_with_a_bad_header_are_no_input_files(self):
        self.giveJob({f"{index}.txt": header + b"\nx;y;z\n1;1;1\n" for index, header in enumerate(self.REJECTED)})
        self.expectNoFiles()

    def test_count_file_of_an_earlier_run_is_skipped(self):
        self.giveJob({"a.txt": NODES, "total_node_count.txt": b"3\n"})
        self.expectSelected("a.txt")

    def test_carriage_return_is_not_part_of_the_header(self):
        self.giveJob({"a.txt": b"x;y;z\r\n1;1;5\r\n20;1;5\r\n", "b.txt": b"\xef\xbb\xbfx;y;z\r\n1;1;5\n"})
        counts = [{"a.txt": 2, "b.txt": 1}[name] for name in self.walkOrder()]
        self.expectFinished(self.clip(), 2, {"a.txt": KEPT, "b.txt": b"\xef\xbb\xbf" + KEPT}, lineCounts=counts)

    def test_only_one_carriage_return_is_dropped(self):
        self.giveJob({"a.txt": b"x;y;z\r\r\n1;1;5\n", "b.txt": b"x;y;z\r1;1;5\n", "c.txt": b"x;y;z\r"})
        self.expectNoFiles()

    def test_binary_files_are_skipped(self):
        self.giveJob({"a.txt": bytes(range(256)) * 1000, "b.xyz": b"x" * 3_000_000, "c.csv": b"\0" * 100_000,
                      "good.txt": NODES})
        self.expectSelected("good.txt")


class Counts(SelectionTest):
    def test_header_counts_0_lines_and_minus_1_without_line_feed(self):
        self.giveJob({"a.txt": b"x;y;z\n", "b.txt": b"x;y;z", "c.txt": NODES})
        counts = [{"a.txt": 0, "b.txt": -1, "c.txt": 2}[name] for name in self.walkOrder()]
        self.expectFinished(self.clip(), 1, {"c.txt": KEPT}, lineCounts=counts)

    def test_every_line_feed_counts(self):
        self.giveJob({"a.txt": b"x;y;z\n\n\n\r\n\r\r\n \n\0\n1;1;5\n\nlast without a line feed"})
        self.expectFinished(self.clip(), 1, {"a.txt": KEPT}, lineCounts=[8])

    def test_file_removed_before_the_count_counts_minus_one(self):
        self.giveJob({"b.txt": NODES})
        self.serve("base/data/a.txt", [lambda: os.remove(self.path("base/data/a.txt")), NODES])
        counts = [{"a.txt": -1, "b.txt": 2}[name] for name in self.walkOrder()]
        passes = {-1: [errorMessage(""), filePass(2, linesDone=-1, totalLines=1)],
                  2: [filePass(2, linesDone=0, totalLines=1), errorMessage("")]}[counts[0]]
        self.expect(self.clip(), status=0, console=[""], created=output(2, {"a.txt": b"", "b.txt": KEPT}),
                    removed=["base/data/a.txt"],
                    messages=recorded(*passes, closingRange(), finishMessage()))


if __name__ == "__main__":
    unittest.main()
