"""Checks of outputs that a stand-in writes, because the real tool writes them only after an accident."""
import json
import os
import shutil
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import dropPowersOfRoot
from watching import HEADER, WatchTest

INSIDE = b"1;1;5\n"
LANGUAGE = "--lang=en"


class StandIn(WatchTest):
    def checked(self, files, count):
        self.standIn(f"""
place = os.path.join(os.path.dirname(sys.argv[1]), sys.argv[2])
os.makedirs(place)
for name, content in {files!r}.items():
    open(os.path.join(place, name), "wb").write(content)
finish()
open(os.path.join(place, "total_node_count.txt"), "wb").write({count!r})
""")
        self.giveJob({"a.xyz": HEADER + INSIDE})
        return self.job(LANGUAGE, "--quiet")

    def test_too_many_lines_are_reported(self):
        self.expect(self.checked({"a.xyz": HEADER + INSIDE * 3}, b"1\n"), status=3, errors=[
            "Vadelwatch: nodes in the output files: 3, in total_node_count.txt: 1, too many: 2.",
            "  Every file looks whole, so the file with the difference is unknown."])

    def test_count_that_is_no_number_is_reported(self):
        for count in (b"", b"one\n", b"1", b"1\n2\n", b"1 \n"):
            with self.subTest(count=count):
                watched = self.checked({"a.xyz": HEADER + INSIDE}, count)
                self.assertEqual((3, "Vadelwatch: nodes in the output files: 1. total_node_count.txt holds no number "
                                     "to compare with."), (watched.status, watched.errorLines()[0]))
                self.setUp()

    def test_output_of_only_a_header_is_reported(self):
        self.expect(self.checked({"a.xyz": HEADER}, b"1\n"), status=3, errors=[
            "Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 1, missing: 1.",
            "  a.xyz: a header and no node; Vadelclip leaves no such file"])

    def test_missing_output_directory_is_reported(self):
        self.standIn("message(type='finish', level=1, text='The end')")
        self.giveJob({"a.xyz": HEADER + INSIDE})
        self.expect(self.job(LANGUAGE, "--quiet"), status=3, errors=[
            "Vadelwatch: the output directory base/out cannot be read: No such file or directory"])
        self.expect(self.job("--quiet"), status=3, errors=[
            "Vadelwatch: Das Ausgabeverzeichnis base/out kann nicht gelesen werden: No such file or directory"])

    def test_directory_that_cannot_be_searched_is_reported(self):
        for mode in (0o000, 0o444):
            self.standIn(f"finish(1); os.chmod('base/out', {mode})")
            self.giveJob({"a.xyz": HEADER + INSIDE})
            process = self.start("base/data", "out", "area.xml", LANGUAGE, "--json", preexec_fn=dropPowersOfRoot)
            watched = self.finish(process)
            os.chmod(self.path("base/out"), 0o755)
            shutil.rmtree(self.path("base/out"))
            summary = json.loads(watched.output)
            self.assertEqual((3, None, None, None), (watched.status, summary["nodes_kept"], summary["files_written"],
                                                     summary["input"]["files"][0]["dropped_outside"]))
            self.assertEqual("Vadelwatch: the output directory base/out cannot be read: Permission denied",
                             watched.errorLines()[0])

    def test_changed_node_file_is_reported(self):
        self.standIn("""
while not os.path.exists('seen'): time.sleep(0.01)
open("base/data/a.xyz", "ab").write(b"2;2;2\\n")
finish(7)
""")
        self.giveJob({"a.xyz": HEADER + INSIDE})
        process = self.start("base/data", "out", "area.xml", LANGUAGE, "--progress=bar", "--json")
        # The bar shows a share of the node files, so Vadelwatch has found them.
        self.readUntil(process.stderr, "%")
        self.giveSeen()
        watched = self.finish(process)
        self.assertEqual(3, watched.status)
        self.assertTrue(watched.errors.endswith(
            "Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 7, missing: 7.\n"
            "  a.xyz: no output file, which is right only if none of its nodes was kept\n"
            "  a.xyz: the node file was changed during the run\n"), watched.errors)


if __name__ == "__main__":
    unittest.main()
