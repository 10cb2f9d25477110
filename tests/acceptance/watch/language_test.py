"""The language of Vadelwatch for each value of --lang is that of the tool, compared run by run."""
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, WATCH, WatchTest

GERMAN = ["de", "DE", "De", "dE", "de_AT", "de-AT", "de_at", "DE_AT", "de_A", "de_XYZ", "de-Latn", "de.", "de..", "de.-",
          "de_AT.", "de.utf8@x", "de.UtF8@", "de_AT.UTF-8@euro", "de-at.utf_8@x", "de.utf8 @x"]
ENGLISH = ["", "en", "fr", "C", "d", "den", "deu", "de1", "de AT", "de/AT", "de+x", "de,en", " de", "_de", "de#", "de\n",
           "de_", "de-", "de_1", "de_12", "de__AT", "de_AT_x", "de-AT-x", "de_äh", "de_ÄT.UTF-8@x", "de@", "de@euro",
           "de_AT@euro", "de_@euro", "de.@x", "de.us-ascii@x", "de_AT@x.UTF-8@y"]
# Such a value ends the tool abnormally, without a text of a catalogue.
ABORTING = ["de.UTF-8", "de_AT.UTF-8", "de_DE.ISO-8859-1", "de.u"]

LANGUAGE_OF = {"Die Grenzdatei no.xml existiert nicht": "German", "Boundary file no.xml does not exist": "English"}


class Language(WatchTest):
    def languageOfTool(self, value):
        tool = os.path.join(os.path.dirname(WATCH), "Vadelclip")
        result = subprocess.run([tool, "no/data", "out", "no.xml", f"-lang={value}"], cwd=self.directory,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        found = [LANGUAGE_OF[line] for line in result.stdout.decode().splitlines() if line in LANGUAGE_OF]
        return found[0] if found else "none"

    def languageOfWatch(self, value):
        """Returns the language of a refusal before the tool is started."""
        errors = self.run_("no/data", "out", "area.xml", "--lang", value, "--log", "no/log").errors
        return {"Vadelwatch: no/log kann nicht geschrieben werden: No such file or directory\n": "German",
                "Vadelwatch: cannot write no/log: No such file or directory\n": "English"}[errors]

    def test_language_is_that_of_the_tool(self):
        for values, language in ((GERMAN, "German"), (ENGLISH, "English")):
            for value in values:
                with self.subTest(value=value):
                    self.assertEqual((language, language), (self.languageOfTool(value), self.languageOfWatch(value)))

    def test_tool_receives_no_character_set(self):
        for value in ABORTING:
            with self.subTest(value=value):
                self.assertEqual(("none", "German"), (self.languageOfTool(value), self.languageOfWatch(value)))
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        for value, errors in (("de_DE.UTF-8", ["Vadelwatch: Vadelclip erhält -lang=de_DE, weil es de_DE.UTF-8 nicht annimmt."]),
                              ("en_US.UTF-8", ["Vadelwatch: Vadelclip gets -lang=en_US, because it does not accept en_US.UTF-8."]),
                              ("de_DE", [])):
            watched = self.run_("base/data", "out" + value, "area.xml", "--lang", value)
            self.assertEqual((0, errors), (watched.status, watched.errorLines()))

    def test_broken_catalogue_selects_english(self):
        self.standIn("")
        os.remove(self.path("bin/locale"))
        catalogue = "bin/locale/de/LC_MESSAGES/vadelwatch.mo"
        for content in (b"", b"this is no catalogue\n"):
            self.give({catalogue: content})
            self.assertEqual("English", self.languageOfWatch("de"))
        os.remove(self.path(catalogue))
        os.mkdir(self.path(catalogue))
        self.assertEqual("English", self.languageOfWatch("de"))


if __name__ == "__main__":
    unittest.main()
