"""Vadelwatch with the real tool, through pipes: texts, exit status and check."""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, SQUARE, WatchTest, summaryLines

INSIDE = b"1;1;5\n"
OUTSIDE = b"30;3;5\n"
NODES = {"a.xyz": HEADER + INSIDE * 3 + OUTSIDE, "b.txt": HEADER + OUTSIDE, "c.csv": HEADER + INSIDE * 2}
FAILED = "Clipping of elevation data with model boundaries failed."
FAILED_GERMAN = "Das Zuschneiden der Höhendaten auf die Modellgrenzen ist fehlgeschlagen."


class Finished(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob(NODES)

    def test_finished_run_has_a_summary_and_the_output(self):
        watched = self.job("--lang=en")
        self.expect(watched, status=0, errors=watched.errorLines(),
                    output=summaryLines(3, 2, "5 of 7 (71.4 %)", "base/out"))
        self.assertEqual({"a.xyz": HEADER + INSIDE * 3, "c.csv": HEADER + INSIDE * 2, "total_node_count.txt": b"5\n"},
                         {name: self.content(f"base/out/{name}") for name in os.listdir(self.path("base/out"))})

    def test_short_run_shows_no_progress(self):
        for progress in ("auto", "bar"):
            self.expectShortRun(lambda: self.job("--lang=en", "--progress", progress).errors.splitlines())

    def test_german_is_the_default(self):
        for options in ([], ["--lang", "de"], ["--lang=de_DE"]):
            with self.subTest(options=options):
                subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
                watched = self.job(*options)
                self.assertIn("  Knoten behalten        5 von 7 (71,4 %)", watched.outputLines())

    def test_quiet_prints_nothing(self):
        self.expect(self.job("--quiet"), status=0)

    def test_json_is_one_object(self):
        for options in (["--json"], ["--json", "--quiet"]):
            with self.subTest(options=options):
                subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
                watched = self.job(*options)
                summary = json.loads(watched.output)
                self.assertEqual(1, watched.output.count("\n"))
                self.assertGreater(summary.pop("seconds"), 0.0)
                # input_test.py has the others.
                summary = {key: summary[key] for key in list(summary)[:11]}
                self.assertEqual({"finished": True, "exit_status": 0, "files_read": 3, "files_written": 2,
                                  "nodes_read": 7, "nodes_kept": 5, "percent_kept": 5 / 7 * 100,
                                  "total_node_count": 5, "adds_up": True, "output_directory": "base/out",
                                  "errors": []}, summary)

    def test_directory_names_may_have_blanks_and_umlauts(self):
        self.giveJob(NODES, base="Höhe 1/ä ö")
        watched = self.run_("Höhe 1/ä ö/data", "Neues Ziel→", "area.xml", "--lang=en", "--quiet", "--json")
        self.assertEqual((0, "Höhe 1/ä ö/Neues Ziel→"),
                         (watched.status, json.loads(watched.output)["output_directory"]))

    def test_control_characters_of_a_name_are_escaped(self):
        watched = self.run_("base/data", "o\x1b[2J\nut\r", "area.xml", "--lang=en", "--quiet", "--json")
        self.assertEqual((0, "base/o\x1b[2J\nut\r"), (watched.status, json.loads(watched.output)["output_directory"]))
        subprocess.run(["rm", "-rf", self.path("base/o\x1b[2J\nut\r")], check=True)
        watched = self.run_("base/data", "o\x1b[2J\nut\r", "area.xml", "--lang=en")
        self.expect(watched, status=0, errors=watched.errorLines(),
                    output=summaryLines(3, 2, "5 of 7 (71.4 %)", r"base/o\x1B[2J\x0Aut\x0D"))

    def test_separator_at_the_end_puts_the_output_into_the_input(self):
        watched = self.run_("base/data/", "out", "area.xml", "--lang=en", "--quiet", "--json")
        summary = json.loads(watched.output)
        self.assertEqual((0, "base/data/out", 5, 7),
                         (watched.status, summary["output_directory"], summary["nodes_kept"], summary["nodes_read"]))

    def test_lines_are_counted_as_in_the_tool(self):
        self.give({"base/data/a.xyz": b"\xef\xbb\xbfX Y Z G\r\n1 1 5\r\n2 2 5\r\n3 3 5", "base/data/b.txt": b"x;y;z",
                   "base/data/no.txt": b"y;x;z\n1;1;1\n", "base/data/UP.XYZ": HEADER + INSIDE})
        summary = json.loads(self.job("--quiet", "--json").output)
        self.assertEqual((3, 4, 4), (summary["files_read"], summary["nodes_read"], summary["nodes_kept"]))

    def test_nothing_kept_is_a_success(self):
        self.giveJob({"a.xyz": HEADER, "b.txt": HEADER, "c.csv": HEADER})
        watched = self.job("--lang=en")
        self.expect(watched, status=0, errors=watched.errorLines(), output=summaryLines(
            3, 0, "0 of 0 (- %)", "base/out",
            sentences=["Warning: no node was kept. The node files have no line with a position.",
                       "Boundary: x from 0 to 10, y from 0 to 10"]))


class Failed(WatchTest):
    """Each kind of failure: every error once, the tool's status, and no summary."""

    def expectFailed(self, errors, *arguments):
        self.expect(self.run_(*arguments, "--lang=en"), status=1, errors=[*errors, FAILED])

    def test_missing_boundary_file_is_reported(self):
        self.giveJob(NODES)
        self.expectFailed(["Boundary file no.xml not found", "Boundary file no.xml does not exist"],
                          "base/data", "out", "no.xml")

    def test_faulty_boundary_file_is_reported(self):
        self.giveJob(NODES)
        self.give({"area.xml": SQUARE.replace(b'id="1"', b"")})
        self.expectFailed(["Cannot find the id of a polygon in a group of type 0", "Boundary file area.xml does not exist"],
                          "base/data", "out", "area.xml")

    def test_missing_directories_are_reported(self):
        self.giveJob(NODES)
        self.expectFailed(["Directory none does not exist"], "none/data", "out", "area.xml")
        self.expectFailed(["Input directory base/none does not exist"], "base/none", "out", "area.xml")
        self.expect(self.run_("base", "out", "area.xml", "--lang=en"), status=1, errors=[
            "Directory  does not exist", FAILED,
            "Vadelwatch: the input directory needs a parent in its name: try ./base"])

    def test_existing_output_directory_is_reported(self):
        self.giveJob(NODES)
        os.mkdir(self.path("base/out"))
        self.expect(self.run_("base/data", "out", "area.xml", "--lang=en"), status=1, errors=[
            "Output directory base/out already exists, aborting in order avoid overwriting of existing data", FAILED,
            "Vadelwatch: if base/out is no longer needed, remove it: rm -r -- 'base/out'"])

    def test_missing_node_files_are_reported(self):
        self.giveJob({})
        self.expectFailed(["There are no input files."], "base/data", "out", "area.xml")

    def test_failed_creation_of_the_output_is_reported(self):
        self.giveJob(NODES)
        watched = self.run_("base/data", "no/out", "area.xml", "--lang=en")
        self.assertEqual((1, "", 2), (watched.status, watched.output, len(watched.errorLines())))
        self.assertRegex(watched.errorLines()[0], "^boost::filesystem::create_directory: ")

    def test_errors_are_german_and_also_shown_with_quiet(self):
        for options in ([], ["--quiet"]):
            self.expect(self.run_("base/none", "out", "no.xml", *options), status=1, errors=[
                "Grenzdatei no.xml nicht gefunden", "Die Grenzdatei no.xml existiert nicht", FAILED_GERMAN])

    def test_strange_names_are_shown_once(self):
        for name in (os.fsdecode(b"caf\xe9.xml"), "two\nlines.xml"):
            errors = f"Boundary file {name} not found\nBoundary file {name} does not exist".split("\n")
            self.expectFailed(errors, "base/data", "out", name)

    def test_json_of_a_failed_run(self):
        watched = self.run_("base/none", "out", "no.xml", "--lang=en", "--json")
        summary = json.loads(watched.output)
        summary.pop("seconds")
        summary = {key: summary[key] for key in list(summary)[:11]}
        self.assertEqual({"finished": False, "exit_status": 1, "files_read": None, "files_written": None,
                          "nodes_read": None, "nodes_kept": None, "percent_kept": None, "total_node_count": None,
                          "adds_up": None, "output_directory": "base/out",
                          "errors": ["Boundary file no.xml not found", "Boundary file no.xml does not exist"]}, summary)


if __name__ == "__main__":
    unittest.main()
