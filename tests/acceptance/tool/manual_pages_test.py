"""The man pages list every option and every error text. installation_test.py runs their examples."""
import os
import re
import subprocess
import sys
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from manual_examples import plainText, readPage  # noqa: E402

WATCH = os.environ["VADELCLIP_WATCH"]


def manualPage(name):
    return readPage(os.path.join(ROOT, "docs", "man", name + ".1.in"))


class ManualPages(unittest.TestCase):
    maxDiff = None

    def test_diagnostics_list_every_error_text(self):
        with open(os.path.join(ROOT, "locale", "VD2D.pot"), encoding="utf-8") as file:
            texts = set(re.findall(r'^msgid "(.+)"$', file.read(), re.MULTILINE))
        texts -= {"Clipping elevation data...", "Clipping of elevation data with model boundaries failed.",
                  "Finished clipping elevation data with model boundaries"}  # not printed on the console
        self.assertGreater(len(texts), 5)
        named = manualPage("Vadelclip").split(".SH DIAGNOSTICS")[1].split(".SH LIMITS")[0].splitlines()
        self.assertEqual([], [text for text in sorted(texts) if re.sub(r"\{[01]\}", "...", text) not in named])

    def expectOptionsOfHelp(self, page, *commands):
        """Compares the options of a page with those of the help of an executable and its subcommands."""
        executable = os.path.join(os.path.dirname(WATCH), page)
        helpTexts = [subprocess.run([executable, *command, "--help"], capture_output=True, text=True, check=True).stdout
                     for command in ((), *((command,) for command in commands))]
        self.expectOptions(page, {option for text in helpTexts
                                  for option in re.findall(r"(?<![\w-])(--[a-z]+|-h)\b", text.split("Options:")[1])})

    def expectOptions(self, page, options):
        section = manualPage(page).split(".SH OPTIONS")[1].split(".SH")[0]
        tags = " ".join(plainText(tag) for tag in re.findall(r"^\.TP\n(.*)$", section, re.MULTILINE))
        self.assertEqual(options, set(re.findall(r"(?<![\w-])(--[a-z]+|-h)\b", tags)))

    def test_pages_list_exactly_the_options_of_the_help(self):
        self.expectOptionsOfHelp("Vadelwatch")
        self.expectOptionsOfHelp("Vadelshard", "plan", "clip", "merge", "status")
        for script in ("vadelclip-parallel", "vadelclip-slurm"):
            usage = subprocess.run([os.path.join(os.path.dirname(WATCH), script), "--help"], capture_output=True,
                                   text=True, check=True).stdout
            self.expectOptions(script, {*re.findall(r"\[(--[a-z]+)", usage), "-h", "--help"})


if __name__ == "__main__":
    unittest.main()
