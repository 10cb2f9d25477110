"""The files that Vadelwatch itself writes, its log and its map, with the real tool."""
import json
import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import dropPowersOfRoot
from pictures import SvgPicture
from watching import HEADER, WATCH, WatchTest

INSIDE = b"1;1;5\n"
OUTSIDE = b"30;3;5\n"
NODES = {"a.xyz": HEADER + INSIDE * 3 + OUTSIDE, "b.txt": HEADER + OUTSIDE, "c.csv": HEADER + INSIDE * 2}


class OwnFiles(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob(NODES)

    def test_log_has_every_message_with_its_time(self):
        self.assertEqual(0, self.job("--log", "messages.jsonl", "--lang=en").status)
        subprocess.run([os.path.join(os.path.dirname(WATCH), "Vadelclip"), "base/data", "again", "area.xml", "-pipe",
                        "-lang=en"], cwd=self.directory, check=True, stdout=subprocess.DEVNULL,
                       preexec_fn=lambda: os.dup2(os.open("direct.jsonl", os.O_CREAT | os.O_WRONLY), 3), pass_fds=(3,))
        lines = self.content("messages.jsonl").decode().splitlines()
        times = [json.loads(line)["seconds"] for line in lines]
        self.assertEqual(sorted(times), times)
        messages = [re.fullmatch(r'\{"seconds":\d+\.\d{6},"message":(.*)\}', line)[1] for line in lines]
        self.assertEqual(self.content("direct.jsonl").decode().splitlines(), messages)

    def test_log_and_map_replace_no_input_and_not_each_other(self):
        os.symlink("area.xml", self.path("link.png"))
        os.link(self.path("base/data/a.xyz"), self.path("hard.log"))
        before = {name: self.content(name) for name in ("area.xml", "base/data/a.xyz")}
        with open(self.path("old.log"), "w", encoding="ascii") as file:
            file.write("kept\n")
        run, output = "the run reads it", "the run makes its output directory there"
        for options, name, reason in (
                (["--log", "area.xml"], "area.xml", run), (["--log", "base/data/a.xyz"], "base/data/a.xyz", run),
                (["--log", "hard.log"], "hard.log", run), (["--map", "link.png"], "link.png", run),
                (["--log", "x.png", "--map", "./x.png"], "x.png", "the map is written there"),
                (["--log", "x.pgw", "--map", "x.png"], "x.pgw", "the map is written there"),
                (["--log", "base/./out"], "base/./out", output),
                (["--log", "old.log", "--map", "absent/x.png"], "absent/x.png", "No such file or directory")):
            with self.subTest(options=options):
                self.expectRefused(self.job(*options, "--lang=en"), name, reason)
                self.assertEqual(before, {name: self.content(name) for name in before})
                self.assertEqual(b"kept\n", self.content("old.log"))

    def expectRefused(self, watched, name, reason):
        self.expect(watched, status=2, errors=[f"Vadelwatch: cannot write {name}: {reason}"])
        self.assertFalse(os.path.exists(self.path("base/out")))

    def test_log_and_map_are_not_created_in_place_of_inputs(self):
        for arguments, name, reason in (
                (["base/data", "out", "new.xml", "--log", "./new.xml"], "./new.xml", "the run reads it"),
                (["base/none", "out", "area.xml", "--log", "base/none"], "base/none", "the run reads it"),
                (["base/data", "out", "area.xml", "--log", "base/data/new.xyz"], "base/data/new.xyz", "the run reads it"),
                (["base/data", "o.png", "area.xml", "--map", "base/o.png"], "base/o.png",
                 "the run makes its output directory there")):
            with self.subTest(name=name):
                self.expectRefused(self.run_(*arguments, "--lang=en"), name, reason)
                self.assertFalse(os.path.exists(self.path(name)))

    def test_log_whose_status_cannot_be_read_is_refused(self):
        os.mkdir(self.path("locked"))
        os.chmod(self.path("locked"), 0o600)
        os.symlink("loop.log", self.path("loop.log"))
        for name, reason in (("locked/run.jsonl", "Permission denied"),
                             ("loop.log", "Too many levels of symbolic links"), ("n" * 300, "File name too long")):
            for options in ([], ["--map", "x.png"]):
                with self.subTest(name=name, options=options):
                    self.expectRefused(self.job("--log", name, *options, "--lang=en", preexec_fn=dropPowersOfRoot),
                                       name, reason)

    def test_removed_working_directory_is_refused(self):
        os.mkdir(self.path("gone"))

        def goAway():
            os.chdir(self.path("gone"))
            os.rmdir(self.path("gone"))

        for name in ("x.png", "./x.png"):
            for option in ("--map", "--log"):
                with self.subTest(option=option, name=name):
                    os.makedirs(self.path("gone"), exist_ok=True)
                    self.expectRefused(self.run_(self.path("base/data"), "out", self.path("area.xml"), option, name,
                                                 "--lang=en", preexec_fn=goAway), name, "No such file or directory")

    def test_map_with_too_long_a_name_is_refused(self):
        name = "n" * 300 + ".png"
        self.expectRefused(self.job("--map", name, "--lang=en"), name, "File name too long")

    def test_refusals_are_in_german(self):
        for options, sentence in (
                (["--log", "area.xml"], "area.xml kann nicht geschrieben werden: der Lauf liest diese Datei"),
                (["--log", "base/out"], "base/out kann nicht geschrieben werden: "
                                        "der Lauf legt dort sein Ausgabeverzeichnis an"),
                (["--log", "x.png", "--map", "x.png"], "x.png kann nicht geschrieben werden: "
                                                       "dort wird die Karte gespeichert")):
            self.expect(self.job(*options), status=2, errors=["Vadelwatch: " + sentence])

    def test_files_without_write_permission_are_refused(self):
        os.mkdir(self.path("locked"))
        for name in ("old.png", "old.log"):
            self.give({name: b"kept"})
            os.chmod(self.path(name), 0o444)
        os.chmod(self.path("locked"), 0o555)
        self.addCleanup(os.chmod, self.path("locked"), 0o755)
        for option, name in (("--map", "old.png"), ("--map", "locked/new.png"), ("--log", "old.log"),
                             ("--log", "locked/new.log")):
            with self.subTest(name=name):
                watched = self.job(option, name, "--lang=en", preexec_fn=dropPowersOfRoot)
                self.expectRefused(watched, name, "Permission denied")
        self.assertEqual((b"kept", b"kept"), (self.content("old.png"), self.content("old.log")))

    def test_map_is_drawn(self):
        for name, start in (("map.png", b"\x89PNG"), ("map.svg", b"<?xml")):
            subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
            self.expect(self.job("--quiet", "--map", name), status=0)
            self.assertTrue(self.content(name).startswith(start))

    def test_map_has_the_language_of_the_run(self):
        pictures = set()
        for options in ([], ["--lang=de"], ["--lang=en"]):
            subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
            self.expect(self.job("--quiet", "--map", "map.svg", *options), status=0)
            pictures.add(SvgPicture(self.content("map.svg")).title)
        self.assertEqual(2, len(pictures))
        self.giveJob({"a.xyz": HEADER, "b.txt": HEADER, "c.csv": HEADER})
        self.give({"area.xml": b"<VADELSIM><VadeDGM><a/></VadeDGM></VADELSIM>"})
        for options, sentence in (
                ([], "Es gibt nichts zu zeichnen: Kein Knoten hat Koordinaten, und die Grenze hat keine Ecke."),
                (["--lang=en"], "There is nothing to draw: no node has a position and the boundary has no vertex.")):
            subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
            self.expect(self.job("--quiet", "--map", "none.png", *options), status=2,
                        errors=["Vadelwatch: " + sentence])


if __name__ == "__main__":
    unittest.main()
