"""The completions in a real bash: each place completes exactly what the command accepts there."""
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import WATCH, WatchTest

SCRIPTS = Path(__file__).resolve().parents[3] / "completions"

ASK = """
source "$1"; complete=$2; shift 2
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
"$complete"
printf '%s\\n' "${COMPREPLY[@]}"
"""


class CompletionTest(WatchTest):
    command = ""

    def script(self):
        return self.command.lower()

    def function(self):
        return "_" + self.script()

    def runBash(self, commands, *arguments):
        result = subprocess.run(["bash", "-c", commands, "bash", str(SCRIPTS / (self.script() + ".bash")),
                                 *arguments], cwd=self.directory, capture_output=True, text=True, check=True)
        self.assertEqual("", result.stderr)
        return result.stdout

    def complete(self, *words):
        answer = self.runBash(ASK, self.function(), self.command, *words)
        return sorted(filter(None, answer.split("\n")))

    def expectRegistered(self):
        self.assertEqual(f"complete -F {self.function()} {self.command}\n",
                         self.runBash(f'source "$1"; complete -p {self.command}'))


class WatchCompletion(CompletionTest):
    command = "Vadelwatch"

    def test_every_option_of_the_help_is_completed(self):
        helpText = self.run_("--help").output
        options = set(re.findall(r"(?<![\w-])(--[a-z-]+|-h)\b", helpText.split("Options:")[1]))
        self.assertEqual(sorted(options), self.complete("-"))
        for option in options - {"-h"}:
            self.assertIn(option, self.complete(option))
            self.assertIn(option, self.complete("a", "b", option[:3]))

    def test_languages_are_completed(self):
        for words in (["--lang", ""], ["--lang", "="], ["--lang", "=", ""]):
            self.assertEqual(["de", "en"], self.complete(*words))
        self.assertEqual(["de"], self.complete("--lang", "=", "d"))

    def test_files_and_directories_are_completed_in_their_places(self):
        self.give({"in put/a.xyz": b"", "area.xml": b""})
        self.assertEqual(["in put"], self.complete(""))
        self.assertEqual([], self.complete("in put", ""))
        self.assertEqual(["area.xml", "in put"], self.complete("in put", "out", ""))
        self.assertEqual([], self.complete("in put", "out", "area.xml", ""))
        self.assertEqual(["area.xml"], self.complete("--log", "a"))
        self.assertEqual(["area.xml"], self.complete("--map", "=", "a"))
        self.assertEqual(["area.xml"], self.complete("--lang", "de", "in put", "--quiet", "out", "a"))
        self.assertEqual(["in put"], self.complete("--lang", "=", "de", ""))
        self.assertEqual(["area.xml"], self.complete("--map", "=", "x.png", "in put", "--log", "=", "l", "out", "a"))

    def test_two_dashes_end_the_options(self):
        self.give({"-in/a.xyz": b"", "-area.xml": b""})
        self.assertEqual(["-in"], self.complete("--", "-"))
        self.assertEqual([], self.complete("--", "--log", ""))
        self.assertEqual(["-area.xml", "-in"], self.complete("--", "-in", "--lang", ""))
        self.assertEqual(["-area.xml"], self.complete("--lang", "=", "de", "--", "-in", "out", "-a"))

    def test_two_dashes_as_a_value_do_not_end_the_options(self):
        self.assertEqual(["--quiet"], self.complete("--log", "--", "--q"))

    def test_command_is_registered(self):
        self.expectRegistered()


class ShardCompletion(CompletionTest):
    command = "Vadelshard"

    def test_commands_and_their_options(self):
        self.assertEqual(["--help", "--version", "-h"], self.complete("-"))
        self.assertEqual(["clip", "merge", "plan", "status"], [word for word in self.complete("") if word[0] != "-"])
        for command in ("plan", "clip", "merge", "status"):
            helpText = subprocess.run([Path(WATCH).with_name("Vadelshard"), command, "--help"], capture_output=True,
                                      text=True, check=True).stdout
            options = set(re.findall(r"(?<![\w-])(--[a-z]+|-h)\b", helpText.split("Options:")[1]))
            self.assertEqual(sorted(options), self.complete(command, "-"))

    def test_arguments_in_their_places(self):
        self.give({"in put/a.xyz": b"", "area.xml": b""})
        self.assertEqual(["in put"], self.complete("plan", ""))
        self.assertEqual([], self.complete("plan", "in put", ""))
        self.assertEqual(["area.xml"], self.complete("plan", "--shards", "=", "9", "in put", "--part", "9", "out", "a"))
        self.assertEqual([], self.complete("plan", "in put", "out", "area.xml", ""))
        for command in ("clip", "merge", "status"):
            self.assertEqual(["in put"], self.complete(command, "--lang", "de", ""))
            self.assertEqual([], self.complete(command, "in put", ""))

    def test_languages(self):
        self.assertEqual(["de"], self.complete("merge", "--lang", "=", "d"))
        self.assertEqual([], self.complete("plan", "--shards", "="))

    def test_two_dashes_end_the_options(self):
        self.give({"-in/a.xyz": b""})
        self.assertEqual(["-in"], self.complete("plan", "--", "-"))

    def test_the_command_is_registered(self):
        self.expectRegistered()


class ToolCompletion(CompletionTest):
    command = "Vadelclip"

    def test_arguments_precede_the_options(self):
        self.give({"in put/a.xyz": b"", "area.xml": b""})
        self.assertEqual(["in put"], self.complete(""))
        self.assertEqual([], self.complete("-"))
        self.assertEqual([], self.complete("in put", ""))
        self.assertEqual(["area.xml", "in put"], self.complete("in put", "out", ""))
        self.assertEqual(["area.xml"], self.complete("a", "=", "b", "out", "a"))

    def test_each_option_is_completed_once(self):
        job = ["in put", "out", "area.xml"]
        self.assertEqual(["-lang=", "-pipe"], self.complete(*job, ""))
        self.assertEqual(["-pipe"], self.complete(*job, "-p"))
        self.assertEqual(["-lang="], self.complete(*job, "-pipe", ""))
        self.assertEqual(["-pipe"], self.complete(*job, "-lang", "=", "de", ""))
        self.assertEqual([], self.complete(*job, "-lang", "=", "de", "-pipe", ""))

    def test_languages_are_completed(self):
        job = ["in put", "out", "area.xml"]
        self.assertEqual(["de", "en"], self.complete(*job, "-lang", "="))
        self.assertEqual(["de"], self.complete(*job, "-pipe", "-lang", "=", "d"))

    def test_command_is_registered(self):
        self.expectRegistered()


class EngineCompletion(CompletionTest):
    command = "vadelclip-parallel"

    def script(self):
        return "vadelclip-parallel"

    def function(self):
        return "_vadelclip_engine"

    def test_the_arguments_come_first_then_the_options(self):
        self.give({"in put/a.xyz": b"", "area.xml": b""})
        self.assertEqual(["in put"], self.complete(""))
        self.assertEqual([], self.complete("in put", ""))
        self.assertEqual(["area.xml", "in put"], self.complete("in put", "out", ""))
        self.assertEqual(["--", "--lang", "--part", "--shards"], self.complete("in put", "out", "area.xml", ""))
        self.assertEqual(["--shards"], self.complete("in put", "out", "area.xml", "--lang", "de", "--s"))

    def test_values(self):
        job = ("in put", "out", "area.xml")
        for words in (["--lang", ""], ["--lang", "="], ["--lang", "=", ""]):
            self.assertEqual(["de", "en"], self.complete(*job, *words))
        self.assertEqual([], self.complete(*job, "--shards", ""))

    def test_nothing_is_offered_for_the_engine(self):
        self.assertEqual([], self.complete("in put", "out", "area.xml", "--", "-"))

    def test_the_command_is_registered(self):
        self.expectRegistered()


class SlurmCompletion(EngineCompletion):
    command = "vadelclip-slurm"


if __name__ == "__main__":
    unittest.main()
