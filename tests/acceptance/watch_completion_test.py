"""completions/vadelwatch.bash in a real bash: every option that --help names is completed, and nothing else."""
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from watching import WatchTest

SCRIPT = Path(__file__).resolve().parents[2] / "completions" / "vadelwatch.bash"

ASK = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_vadelwatch
printf '%s\\n' "${COMPREPLY[@]}"
"""


class Completion(WatchTest):
    def complete(self, *words):
        result = subprocess.run(["bash", "-c", ASK, "bash", str(SCRIPT), "Vadelwatch", *words], cwd=self.directory,
                                capture_output=True, text=True, check=True)
        self.assertEqual("", result.stderr)
        return sorted(filter(None, result.stdout.split("\n")))

    def test_every_option_of_the_help(self):
        helpText = self.run_("--help").output
        options = set(re.findall(r"(?<![\w-])(--[a-z]+|-h)\b", helpText.split("Options:")[1]))
        self.assertEqual(sorted(options), self.complete("-"))
        for option in options - {"-h"}:
            self.assertEqual([option], self.complete(option))
            self.assertIn(option, self.complete("a", "b", option[:3]))

    def test_languages(self):
        for words in (["--lang", ""], ["--lang", "="], ["--lang", "=", ""]):
            self.assertEqual(["de", "en"], self.complete(*words))
        self.assertEqual(["de"], self.complete("--lang", "=", "d"))

    def test_files_and_directories_in_their_places(self):
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

    def test_the_command_is_registered(self):
        result = subprocess.run(["bash", "-c", f"source '{SCRIPT}'; complete -p Vadelwatch"], capture_output=True,
                                text=True, check=True)
        self.assertEqual("complete -F _vadelwatch Vadelwatch\n", result.stdout)


if __name__ == "__main__":
    unittest.main()
