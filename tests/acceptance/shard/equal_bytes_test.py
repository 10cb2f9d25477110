"""The output directory of shards has the bytes of one run, whatever the node files are."""
import json
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, linkTo
from sharding import HEADER, INSIDE, OUTSIDE, WORK, ShardTest, manyLines

MARK = b"\xef\xbb\xbf"


class WholeFiles(ShardTest):
    def test_many_files(self):
        self.giveJob({f"{number}.xyz": HEADER + manyLines(number) for number in range(20)})
        for shards in (1, 1000):
            # 0.xyz keeps nothing; the count is the twentieth.
            self.assertEqual(20, len(self.expectEqual(f"--shards={shards}")))

    def test_files_that_the_tool_skips(self):
        self.giveJob({"a.xyz": HEADER + INSIDE, "b.xyz": b"y;x;z\n" + INSIDE, "c.dat": HEADER + INSIDE, "d.txt": b"",
                      "e.csv": b"\n", "f.XYZ": HEADER + INSIDE, ".txt": HEADER + INSIDE, "g.xyz": b"x;y;z",
                      "h.xyz": b"x;y;z\r", "i.xyz": b"x" * 100_000})
        self.give({"base/data/j.xyz": DIRECTORY, "base/data/k.xyz": linkTo("nowhere"), "base/data/l": linkTo("/dev/null")})
        self.assertEqual({"a.xyz", ".txt", "total_node_count.txt"}, set(self.expectEqual()))

    def test_links_to_node_files(self):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        self.give({"other/b": HEADER + INSIDE + OUTSIDE, "base/data/link.csv": linkTo("../../other/b")})
        for options in ((), ("--direct",)):
            self.assertIn("link.csv", self.expectEqual(clipOptions=options))

    def test_awkward_names(self):
        names = (b"two\nlines.xyz", b"\xff\xfe.txt", b"x" * 251 + b".csv", b"-lang=en.xyz", b"--.txt", b"%41%.csv",
                 b"report.json.txt", " ä{0}\x1b[2J.xyz".encode())
        self.giveJob({})
        for number, name in enumerate(names):
            with open(os.path.join(os.fsencode(self.path("base/data")), name), "wb") as file:
                file.write(HEADER + INSIDE * (number + 1))
        for options in ((), ("--part=7",)):
            self.assertEqual(len(names) + 1, len(self.expectEqual(*options)))

    def test_node_file_with_the_name_of_the_count(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 4, "a.xyz": HEADER + INSIDE})
        for options in ((), ("--part=1",)):
            self.assertEqual(b"5\n", self.expectEqual(*options)["total_node_count.txt"])

    def test_nothing_is_kept(self):
        self.giveJob({"a.xyz": HEADER + OUTSIDE * 9})
        self.assertEqual({"total_node_count.txt": b"0\n"}, self.expectEqual("--part=20"))

    def test_output_inside_of_the_input_and_below(self):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        for arguments, place in ((("base/data/", "out"), "base/data/out"), (("base/data", "deep/out/"), "base/deep/out")):
            with self.subTest(place=place):
                os.makedirs(os.path.dirname(self.path(place)), exist_ok=True)
                self.assertEqual("1\n", self.mustDo("plan", *arguments, "area.xml"))
                self.mustDo("clip", place + ".shards/", 0)
                self.mustDo("merge", place + ".shards/")
                self.assertEqual(b"1\n", Path(self.path(place), "total_node_count.txt").read_bytes())


class CutFiles(ShardTest):
    def expectEqualParts(self, content, *parts, name="a.xyz"):
        self.giveJob({name: content, "b.txt": HEADER + INSIDE})
        for part in parts or (1, 7, 16):
            with self.subTest(part=part):
                tree = self.expectEqual(f"--part={part}", "--shards=3")
        return tree

    def test_lines_of_different_lengths(self):
        self.expectEqualParts(HEADER + manyLines(60), 1, 10, 33, 200)

    def test_mark_and_carriage_returns(self):
        content = MARK + b"X,Y,Z\r\n" + b"1,1,5\r\n30,1,5\r\n2,2,5\r\r\n" * 4
        tree = self.expectEqualParts(content)
        self.assertEqual(MARK + b"X,Y,Z\n" + b"1,1,5\n2,2,5\r\n" * 4, tree["a.xyz"])

    def test_bad_header(self):
        for header in (b"x;y\n", b"\n", b"ERROR\n", b"x|y|z\r\n"):
            self.startOver()
            self.expectEqualParts(header + INSIDE * 9, 1, 20)

    def test_last_line_without_line_feed_stays_unread(self):
        for tail in (b"1;1;5", b"1;1;5\r", b"1", b"\r"):
            self.startOver()
            tree = self.expectEqualParts(HEADER + INSIDE * 5 + tail)
            self.assertEqual(HEADER + INSIDE * 5, tree["a.xyz"])

    def test_last_part_is_a_tail_alone(self):
        self.expectEqualParts(HEADER + INSIDE * 2 + b"1;1;5", len(HEADER + INSIDE * 2))

    def test_parts_that_keep_nothing(self):
        content = HEADER + OUTSIDE * 3 + INSIDE + OUTSIDE * 3 + INSIDE * 2 + OUTSIDE * 3
        self.assertEqual(HEADER + INSIDE * 3, self.expectEqualParts(content)["a.xyz"])

    def test_part_shorter_than_one_line(self):
        self.expectEqualParts(HEADER + b"1;1;" + b"5" * 9000 + b"\n" + INSIDE, 1, 100, 5000)

    def test_first_line_without_end(self):
        content = b"x;y;z" + b";" * 100_000
        self.expectEqualParts(content, 10, 70_000)
        self.planned("--part=1")
        plan = [json.loads(Path(self.path(WORK), "plan", name).read_text()) for name in ("0.json", "1.json")]
        self.assertEqual([0, len(content)], [plan[0]["units"][0][key] for key in ("begin", "end")])

    def test_large_files_are_planned_without_reading_them(self):
        # Sparse files. To read them would take minutes.
        part, count = 2**31 - 1, 200
        self.giveJob({"a.xyz": HEADER, "endless.xyz": b"x;y;z"})
        os.truncate(self.path("base/data/endless.xyz"), 2**42)
        with open(self.path("base/data/a.xyz"), "r+b") as file:
            for number in range(1, count + 1):
                file.seek(number * part - 1)
                file.write(b"\n")
        self.assertEqual(count + 1, self.planned())
        plan = [json.loads(path.read_text())["units"][0] for path in Path(self.path(WORK), "plan").glob("[0-9]*.json")]
        self.assertEqual({("a.xyz", number * part, (number + 1) * part) for number in range(count)} |
                         {("endless.xyz", 0, 2**42)}, {(unit["name"], unit["begin"], unit["end"]) for unit in plan})

    def test_header_alone(self):
        self.expectEqualParts(HEADER, 1, 5)
        self.startOver()
        self.expectEqualParts(HEADER[:-1], 1, 3)

    def test_empty_lines(self):
        self.expectEqualParts(HEADER + b"\n\r\n" * 6 + INSIDE + b"\n", 1, 2, 3)

    def test_direct_reading_leaves_parts_as_copies(self):
        self.giveJob({"a.xyz": HEADER + manyLines(50), "b.txt": HEADER + manyLines(5)})
        self.expectEqual("--part=150", clipOptions=["--direct"])


class Together(ShardTest):
    def test_staging_several_times_in_one_shard(self):
        self.giveJob({f"{number}.xyz": HEADER + manyLines(number % 7) for number in range(30)})
        self.expectEqual("--shards=1", "--part=90")

    def test_scratch_in_another_file_system(self):
        if os.stat("/dev/shm").st_dev == os.stat(self.directory).st_dev:
            self.skipTest("/dev/shm is the same file system")
        import shutil
        import tempfile
        self.scratch = tempfile.mkdtemp(dir="/dev/shm", prefix="vadelshard-test-")
        self.addCleanup(shutil.rmtree, self.scratch)
        self.giveJob({"a.xyz": HEADER + manyLines(60), "b.txt": HEADER + manyLines(5)})
        self.expectEqual("--part=100")

    def test_the_report_has_the_true_total(self):
        self.giveJob({"a.xyz": HEADER + INSIDE * 4, "b.xyz": HEADER + INSIDE * 3})
        self.assertEqual("Merged: 2 files with 7 nodes in base/out\n", self.shards())

    def test_count_wraps_as_in_one_run(self):
        self.giveJob({"a.xyz": HEADER + INSIDE, "b.xyz": HEADER + INSIDE})
        self.clipAll(self.planned())
        report = Path(self.path(WORK), "done/0/report.json")
        report.write_text(report.read_text().replace('"kept_lines":[1]', f'"kept_lines":[{2**31}]'))
        self.assertEqual("Merged: 2 files with 2147483649 nodes in base/out\n"
                         "total_node_count.txt has 32 bits, as in one run, and holds -2147483647.\n",
                         self.mustDo("merge", WORK))
        self.assertEqual(b"-2147483647\n", self.outputTree()["total_node_count.txt"])


if __name__ == "__main__":
    unittest.main()
