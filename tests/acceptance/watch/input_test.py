"""The report about the input of a run, and the complete JSON."""
import json
import os
import signal
import subprocess
import sys
import unittest
from pathlib import Path

import jsonschema

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, SQUARE, WatchTest, summaryLines

SCHEMA = json.loads((Path(__file__).resolve().parents[3] / "docs/vadelwatch-summary.schema.json").read_text())
INSIDE = b"1;1;5\n"
OUTSIDE = b"30;3;5\n"
FOUR_FILES = {"a.xyz": b"x;y;z\n1;1;1\n2;2;2", "b.xyz": b"x;y;z\n1,5;1,5;1\n", "c.csv": b"y;x;z\n1;1;1\n",
              "D.TXT": HEADER + INSIDE}


class InputTest(WatchTest):
    def again(self, *options):
        subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
        return self.job(*options)

    def sentences(self, *options):
        return [line[2:] for line in self.again("--lang=en", *options).outputLines()[7:]]

    def summary(self, *options):
        watched = self.again("--json", "--quiet", "--lang=en", *options)
        summary = json.loads(watched.output)
        jsonschema.validate(summary, SCHEMA, cls=jsonschema.Draft202012Validator)
        self.assertEqual(watched.status, summary["exit_status"])
        return summary


class Sentences(InputTest):
    def test_reports_lost_input_of_four_files(self):
        self.giveJob(FOUR_FILES)
        watched = self.job("--lang=en")
        self.expect(watched, status=0, errors=watched.errorLines(), output=summaryLines(
            2, 2, "2 of 2 (100.0 %)", "base/out", sentences=[
                "Entries passed over: 1 of 4, the suffix has capital letters: D.TXT",
                "Entries passed over: 1 of 4, the header does not begin with x or X: c.csv",
                "Node files without a line feed at the end: 1 of 2, the last line is dropped: a.xyz",
                "Lines probably with decimal commas: 1 of 2, numbers end at the comma: b.xyz (1, first: line 2)"]))

    def test_reports_lost_input_in_german(self):
        self.giveJob(FOUR_FILES)
        self.assertEqual([
            "  Übergangene Einträge: 1 von 4, die Endung enthält Großbuchstaben: D.TXT",
            "  Übergangene Einträge: 1 von 4, die Kopfzeile beginnt nicht mit x oder X: c.csv",
            "  Knotendateien ohne Zeilenvorschub am Ende: 1 von 2, die letzte Zeile wird verworfen: a.xyz",
            "  Zeilen vermutlich mit Dezimalkomma: 1 von 2, Zahlen enden am Komma: b.xyz (1, zuerst Zeile 2)"],
            self.job().outputLines()[7:])

    def test_verbose_lists_lines_that_do_not_parse(self):
        self.giveJob({"a.xyz": HEADER + INSIDE + b"bad\n" + OUTSIDE + b"1;1\n"})
        self.assertEqual([
            "Lines dropped: 2 of 4, x or y is no number or nothing follows y: a.xyz (2, first: line 3)",
            "lines  kept  outside  unparsable  bytes  node file",
            "    4     1        1           2     27  a.xyz"],
            self.sentences("--verbose"))

    def test_names_files_with_x_and_y_exchanged(self):
        self.give({"area.xml": SQUARE.replace(b'y="0"', b'y="100"').replace(b'y="10"', b'y="110"')})
        self.give({"base/data/a.xyz": HEADER + b"105;5;1\n", "base/data/b.xyz": HEADER + b"5;105;1\n"})
        self.assertEqual(["Node files probably with x and y exchanged: 1 of 2: a.xyz"], self.sentences())

    def test_explains_missing_node_files(self):
        self.giveJob({"D.TXT": HEADER, "notes.md": b""})
        self.assertEqual(["There are no input files.", "Clipping of elevation data with model boundaries failed.",
                          "Entries passed over: 1 of 2, the suffix is not .txt, .xyz or .csv: notes.md",
                          "Entries passed over: 1 of 2, the suffix has capital letters: D.TXT"],
                         self.job("--lang=en").errorLines())

    def test_inexact_shares_have_a_sign(self):
        for inside, outside, text in ((1, 1999, "1 of 2 000 (<0.1 %)"), (1999, 1, "1 999 of 2 000 (>99.9 %)")):
            self.giveJob({"a.xyz": HEADER + INSIDE * inside + OUTSIDE * outside})
            self.assertIn("  Nodes kept        " + text, self.again("--lang=en").outputLines())
            self.assertEqual(100 * inside / 2000, self.summary()["percent_kept"])


class NothingKept(InputTest):
    def reason(self, area, nodes=b"20;1;1\n30;2.5;1\n"):
        self.giveJob({"a.xyz": HEADER + nodes})
        self.give({"area.xml": area})
        summary = self.summary()
        self.assertEqual(0, summary["exit_status"])
        return summary["input"]["nothing_kept"]["reason"], [
            text for text in summary["input"]["sentences"] if "exchanged: a.xyz" not in text]

    def test_explains_extents_that_do_not_overlap(self):
        self.assertEqual(("no overlap", ["Warning: no node was kept. Nodes and boundary do not overlap.",
                                         "Nodes: x from 20 to 30, y from 1 to 2.5",
                                         "Boundary: x from 0 to 10, y from 0 to 10"]), self.reason(SQUARE))
        self.assertEqual("Warning: no node was kept. Nodes and boundary do not overlap.", self.sentences()[0])

    def test_says_that_nodes_are_sampled(self):
        self.giveJob({"a.xyz": HEADER + b"20;1;1\n" * 3000})
        summary = self.summary()
        self.assertTrue(summary["input"]["nothing_kept"]["nodes_are_sampled"])
        self.assertIn("Nodes, in a sample of the lines: x from 20 to 20, y from 1 to 1", summary["input"]["sentences"])

    def test_explains_exchanged_x_and_y(self):
        area = SQUARE.replace(b'y="0"', b'y="20"').replace(b'y="10"', b'y="25"')
        reason, sentences = self.reason(area)
        self.assertEqual(("x and y exchanged", "Warning: no node was kept. Nodes and boundary do not overlap, but would "
                                               "overlap with x and y exchanged."), (reason, sentences[0]))

    def test_explains_boundary_without_polygons(self):
        self.assertEqual(("no polygon", ['Warning: no node was kept. The boundary file has no polygon in a group of type '
                                         '"boundaries".', "Nodes: x from 20 to 30, y from 1 to 2.5"]),
                         self.reason(SQUARE.replace(b'"boundaries"', b'"other"')))

    def test_explains_polygons_of_few_points(self):
        area = SQUARE.replace(b'<point x="10" y="0"/>', b"").replace(b'<point x="0" y="10"/>', b"")
        self.assertEqual("fewer than three points", self.reason(area, b"9;1;1\n")[0])
        self.assertEqual("no overlap", self.reason(area)[0])

    def test_explains_nodes_outside_of_the_polygon(self):
        area = SQUARE.replace(b'<point x="10" y="10"/>', b"")
        self.assertEqual("outside", self.reason(area, b"9;9;1\n")[0])


class Boundary(InputTest):
    def lastLine(self, name):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        watched = self.run_("base/data", "out", name, "--lang=en")
        self.assertEqual(1, watched.status)
        return watched.errorLines()[-1]

    def test_explains_empty_file(self):
        self.give({"empty.xml": b""})
        self.assertEqual("Vadelwatch: The boundary file empty.xml exists, but cannot be read: No document element found, "
                         "line 1, column 1.", self.lastLine("empty.xml"))

    def test_explains_malformed_xml(self):
        self.give({"bad.xml": b"<a>\n <b></c>\n</a>"})
        self.assertEqual("Vadelwatch: The boundary file bad.xml exists, but cannot be read: Start-end tags mismatch, line 2, "
                         "column 7.", self.lastLine("bad.xml"))

    def test_explains_directory_as_boundary_file(self):
        self.assertEqual("Vadelwatch: The boundary file base exists, but cannot be read: it is a directory.",
                         self.lastLine("base"))

    @unittest.skipIf(os.geteuid() == 0, "root may read every file")
    def test_explains_missing_permission(self):
        self.give({"closed.xml": SQUARE})
        os.chmod(self.path("closed.xml"), 0)
        self.assertEqual("Vadelwatch: The boundary file closed.xml exists, but cannot be read: Permission denied.",
                         self.lastLine("closed.xml"))

    def test_missing_boundary_file_is_not_explained(self):
        self.assertEqual("Clipping of elevation data with model boundaries failed.", self.lastLine("none.xml"))


class Json(InputTest):
    def test_json_of_a_finished_run_is_complete(self):
        self.giveJob(FOUR_FILES)
        summary = self.summary("--map=map.png")
        self.assertEqual((None, None, None, [], "map.png", None, "en"),
                         tuple(summary[key] for key in ("failure", "signal", "interrupted_by", "suspects", "map",
                                                        "why_no_map", "language")))
        self.assertEqual({"input_directory_path": "base/data", "output_directory_name": "out",
                          "boundary_file_path": "area.xml"}, summary["arguments"])
        self.assertEqual([{"name": "D.TXT", "reason": "capitals in the suffix"},
                          {"name": "c.csv", "reason": "header: first character"}], summary["input"]["passed_over"])
        self.assertEqual({"name": "b.xyz", "bytes": 16, "lines": 1, "kept": 1, "dropped_outside": 0,
                          "dropped_unparsable": {"count": 0, "first_line": None},
                          "decimal_commas": {"count": 1, "first_line": 2}, "ends_in_line_feed": True,
                          "looks_exchanged": False}, summary["input"]["files"][1])

    def test_json_of_a_failed_run_is_complete(self):
        self.giveJob({})
        summary = self.summary("--map=map.png")
        self.assertEqual((1, "There are no input files.", None, "the run did not finish"),
                         tuple(summary[key] for key in ("exit_status", "failure", "map", "why_no_map")))
        german = json.loads(self.job("--json", "--map=map.png").output)
        self.assertEqual("der Lauf wurde nicht abgeschlossen", german["why_no_map"])

    def test_json_shows_a_failed_check(self):
        self.giveJob({"total_node_count.txt": HEADER + INSIDE * 2, "b.xyz": HEADER + INSIDE})
        summary = self.summary()
        self.assertEqual((3, "total_node_count.txt", "not asked for"),
                         (summary["exit_status"], summary["suspects"][0]["file"], summary["why_no_map"]))
        self.assertIn("missing: 2.", summary["failure"])

    def test_json_shows_the_signal_that_ended_the_tool(self):
        self.standIn("os.kill(os.getpid(), signal.SIGKILL)")
        self.giveJob({})
        summary = self.summary()
        self.assertEqual((4, signal.SIGKILL), (summary["exit_status"], summary["signal"]))
        self.assertIn("SIGKILL", summary["failure"])

    def test_json_has_the_status_of_an_unwritable_map(self):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        os.mkdir(self.path("maps"))
        self.standIn("""
place = os.path.join(os.path.dirname(sys.argv[1]), sys.argv[2])
os.makedirs(place)
open(os.path.join(place, "a.xyz"), "wb").write(b"x;y;z\\n1;1;5\\n")
os.rmdir("maps")
finish(1)
""")
        summary = self.summary("--map=maps/map.png")
        self.assertEqual((2, None), (summary["exit_status"], summary["map"]))
        self.assertIn("maps/map.png", summary["why_no_map"])


if __name__ == "__main__":
    unittest.main()
