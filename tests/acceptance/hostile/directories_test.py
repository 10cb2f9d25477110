"""Difficult input directories: very many files, strange names, endless files, links and devices.

VADELCLIP_CROWD sets the number of files in a crowd.
"""
import os
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, TOOL, AcceptanceTest, limitMemory, linkTo, output
from target_platform import WINDOWS, possible

HEADER = b"x;y;z\n"
NODES, KEPT = HEADER + b"1;1;5\n20;1;5\n", HEADER + b"1;1;5\n"
CROWD = int(os.environ.get("VADELCLIP_CROWD", 2_000 if SANITIZED or WINDOWS else 20_000))


class Crowds(AcceptanceTest):
    """The directories are in memory if possible: a disk needs longer to create the files than the tool to clip them."""

    def setUp(self):
        if os.access("/dev/shm", os.W_OK):
            self.addCleanup(setattr, tempfile, "tempdir", tempfile.tempdir)
            tempfile.tempdir = "/dev/shm"
        super().setUp()

    def test_very_many_files_are_clipped_in_the_listed_order(self):
        kinds = NODES, HEADER + b"20;1;5\n", b"no header\n", NODES
        files = {f"{number}.{'txt' if number % 4 != 3 else 'dat'}": kinds[number % 4] for number in range(CROWD)}
        self.giveJob(files)
        kept = {name: KEPT for name, content in files.items() if content == NODES and name.endswith(".txt")}
        self.assertEqual(len(kept), CROWD // 4)
        lineCounts = [files[name].count(b"\n") - 1 for name in self.walkOrder() if files[name] != kinds[2]
                      and name.endswith(".txt")]
        self.expectFinished(self.clip(), len(kept), kept, lineCounts=lineCounts)

    def test_very_many_other_entries_are_no_input_files(self):
        self.giveJob({})
        for number in range(CROWD):
            path = self.path(f"base/data/{number}.txt")
            directory = number % 2 or WINDOWS  # the emulator does not report links
            os.mkdir(path) if directory else os.symlink("nowhere", path)
            self.given[f"base/data/{number}.txt"] = DIRECTORY if directory else linkTo("nowhere")
        self.expectFailed(self.clip(), "There are no input files.", created={"base/out": DIRECTORY})


class Names(AcceptanceTest):
    def expectEachKept(self, names):
        names = possible(*names)
        self.giveJob({name: NODES for name in names})
        self.expectFinished(self.clip(), len(names), {name: KEPT for name in names}, lineCounts=[2] * len(names))

    def test_names_of_255_bytes_are_accepted(self):
        letters = ("x", "ä", "😀", ".", " ", "\n", "%", "{", os.fsdecode(b"\xff"))
        names = [letter * (251 // len(os.fsencode(letter))) for letter in letters]
        names = [name + "-" * (251 - len(os.fsencode(name))) + ".txt" for name in names]
        self.assertEqual({len(os.fsencode(name)) for name in names}, {255})
        self.expectEachKept(names)

    def test_names_with_a_meaning_elsewhere_are_accepted(self):
        self.expectEachKept(["-lang=en.txt", "{0}.csv", "%s%n.txt", "$(id).txt", "`id`.xyz", "a;b.txt", "a|b.txt",
                             "~.txt", "*.txt", "?.txt", "[a].txt", "con.txt", "nul.txt", "a\\b.txt", "c:d.txt", "'.txt",
                             '".txt', "\r.txt", "\x1b[2J.txt", "\x7f.csv", "..txt", "...txt", " .txt", "\u202etxt.csv"])

    def test_every_valid_byte_of_a_name_is_accepted(self):
        self.expectEachKept([os.fsdecode(bytes([byte]) + b".txt") for byte in range(1, 256) if byte != ord("/")])

    def test_names_that_are_not_utf8_are_accepted(self):
        self.expectEachKept([os.fsdecode(start + b"." + suffix) for suffix in (b"txt", b"xyz", b"csv") for start in (
            b"\xff\xfe", b"caf\xe9", b"\xc0\xaf", b"\xed\xa0\x80", b"\xf8\x88\x80\x80\x80", b"\xc3", b"\xe4\xf6\xfc")])


class LinksAndDevices(AcceptanceTest):
    def test_circular_links_of_any_name_throw(self):
        for first, second in (("a.txt", "b.txt"), ("a", "b"), ("a.txt", "b")):
            with self.subTest(first=first, second=second):
                self.startOver()
                self.giveJob({"n.txt": NODES})
                self.give({f"base/data/{first}": linkTo(second), f"base/data/{second}": linkTo(first)})
                self.expectThrown(self.clip(), "boost::filesystem::status", created={"base/out": DIRECTORY})

    def test_links_back_to_the_directories_are_skipped(self):
        self.giveJob({"n.txt": NODES, "a.txt": linkTo("."), "b.txt": linkTo(".."), "c.txt": linkTo("../.."),
                      "d.txt": linkTo("../data"), "e.txt": linkTo("/")})
        self.expectFinished(self.clip(), 1, {"n.txt": KEPT}, lineCounts=[2])

    def test_file_with_many_names_is_clipped_once_for_each(self):
        self.giveJob({"n.txt": NODES, "l.txt": linkTo("n.txt"), "m.txt": linkTo("l.txt")})
        os.link(self.path("base/data/n.txt"), self.path("base/data/h.txt"))
        self.given["base/data/h.txt"] = NODES
        names = ("n.txt", "l.txt", "m.txt", "h.txt")
        self.expectFinished(self.clip(), 4, {name: KEPT for name in names}, lineCounts=[2] * 4)

    def test_link_to_its_own_future_output_is_skipped(self):
        self.giveJob({"n.txt": NODES, "o.txt": linkTo("../out/o.txt")})
        self.expectFinished(self.clip(), 1, {"n.txt": KEPT}, lineCounts=[2])

    @unittest.skipIf(SANITIZED, "sanitizers reserve more address space than any limit leaves")
    def test_endless_first_line_is_skipped(self):
        self.giveJob({"n.txt": NODES, "zero.txt": linkTo("/dev/zero"), "full.csv": linkTo("/dev/full")})
        run = self.clip(tool=TOOL, beforeStart=limitMemory(200 << 20))
        self.expect(run, status=0, created=output(1, {"n.txt": KEPT}))


if __name__ == "__main__":
    unittest.main()
