"""The command line of Vadelwatch, and the errors about a wrong one."""
import json
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, SANITIZED, WATCH, WatchTest

USAGE = "Usage: Vadelwatch [OPTIONS] input-directory-path output-directory-name boundary-file-path"
NODES = {"a.xyz": HEADER + b"1;1;5\n" * 3 + b"30;3;5\n"}


class Usage(WatchTest):
    def test_wrong_arguments_are_refused(self):
        self.giveJob(NODES)
        job = ["base/data", "out", "area.xml"]
        for arguments, sentence in (
                ([], "the argument input-directory-path is missing."),
                (job[:1], "the argument output-directory-name is missing."),
                ([*job, "more"], "unexpected argument: more"), ([*job, "--none"], "unexpected argument: --none"),
                ([*job, "--log"], "--log needs a value."),
                ([*job, "--map", "map.jpg"], "--map: the name must end in .png or .svg: map.jpg"),
                ([*job, "--log", ""], "--log: needs the name of a file")):
            with self.subTest(arguments=arguments):
                self.expect(self.run_("--lang=en", *arguments), status=2,
                            errors=["Vadelwatch: " + sentence, USAGE, "Run with --help for more information."])
                self.assertFalse(os.path.exists(self.path("base/out")))

    def test_option_with_one_hyphen_is_refused(self):
        self.expect(self.run_("base/data", "out", "area.xml", "-lang=en"), status=2, errors=[
            "Vadelwatch: Unerwartetes Argument: -lang=en", "Meinten Sie --lang=en?", USAGE.replace("Usage", "Aufruf"),
            "Weitere Hinweise mit --help."])

    def test_old_output_directory_is_refused_with_a_command(self):
        self.giveJob(NODES)
        os.makedirs(self.path("base/it's"))
        watched = self.run_("base/data", "it's", "area.xml", "--lang=en")
        self.assertEqual((1, r"Vadelwatch: if base/it's is no longer needed, remove it: rm -r -- 'base/it'\''s'"),
                         (watched.status, watched.errorLines()[-1]))
        watched = self.run_("base/none", "it's", "area.xml", "--lang=en")
        self.assertEqual((1, False), (watched.status, "rm -r" in watched.errors))

    def test_command_never_removes_input(self):
        self.giveJob(NODES)
        self.give({"base/keep/area.xml": self.content("area.xml"), "base/data/sub/old.txt": b"", "base/a\tb/old.txt": b"",
                   "base/old/a.txt": b""})
        os.symlink("base/keep/area.xml", self.path("link.xml"))
        os.symlink("data", self.path("base/alias"))
        for output, boundary, removable in (
                ("data", "area.xml", False), ("alias", "area.xml", False), ("", "area.xml", False),
                ("../base", "area.xml", False), (".", "area.xml", False), ("..", "area.xml", False),
                ("old/.", "area.xml", False), ("old/..", "area.xml", False), ("a\tb", "area.xml", False),
                ("keep", "base/keep/area.xml", False), ("keep", "link.xml", False), ("keep", "area.xml", True),
                ("data/sub", "area.xml", True), ("old/", "area.xml", True)):
            with self.subTest(output=output, boundary=boundary):
                watched = self.run_("base/data", output, boundary, "--lang=en")
                self.assertEqual((1, removable), (watched.status, "rm -r" in watched.errors), watched.errors)

    def test_hints_at_missing_parent_of_input(self):
        self.giveJob(NODES)
        os.symlink("base/data", self.path("nodes"))
        for name, language, sentence in (
                ("nodes", "en", "the input directory needs a parent in its name: try ./nodes"),
                ("..", "en", "the input directory needs a parent in its name: try ./.."),
                ("nodes", "de", "Der Name des Eingabeverzeichnisses braucht ein Oberverzeichnis, zum Beispiel ./nodes")):
            with self.subTest(name=name, language=language):
                watched = self.run_(name, "out", "area.xml", "--json", "--lang=" + language)
                lines = watched.errorLines()
                self.assertEqual((1, "Vadelwatch: " + sentence), (watched.status, lines[-1]))
                self.assertEqual(3, len(lines), lines)
                self.assertEqual(sentence, json.loads(watched.output)["failure"])
        self.assertEqual(0, self.run_("./nodes", "out", "area.xml").status)
        self.give({"empty.xml": b""})
        self.assertIn("empty.xml exists, but", self.run_("nodes", "new", "empty.xml", "--lang=en").errorLines()[-1])

    def test_impossible_files_are_refused(self):
        self.giveJob(NODES)
        for option, name, reason in (("--map", "none/map.png", "No such file or directory"),
                                     ("--log", "none/log.jsonl", "No such file or directory"),
                                     ("--log", "base", "Is a directory")):
            with self.subTest(name=name):
                self.expect(self.job(option, name, "--lang=en"), status=2,
                            errors=[f"Vadelwatch: cannot write {name}: {reason}"])
                self.assertFalse(os.path.exists(self.path("base/out")))

    def test_help_names_every_option_and_version_is_one_line(self):
        watched = self.run_("--help")
        self.assertEqual((0, ""), (watched.status, watched.errors))
        for option in ("--lang", "--quiet", "--json", "--log", "--map", "--verbose", "--help", "--version"):
            self.assertIn(option, watched.output)
        watched = self.run_("--version")
        self.assertEqual((0, ""), (watched.status, watched.errors))
        self.assertRegex(watched.output, r"^Vadelwatch \d+\.\d+\.\d+\n$")

    def test_only_sanitized_builds_have_sanitizer_settings(self):
        with open(WATCH, "rb") as file:
            self.assertEqual(SANITIZED, b"leak:libfontconfig" in file.read())

    def test_options_may_be_anywhere(self):
        self.giveJob(NODES)
        self.expect(self.run_("--quiet", "base/data", "--lang", "en", "out", "--", "area.xml"), status=0)


if __name__ == "__main__":
    unittest.main()
