"""Message catalogues next to the executable: languages and valid translations.

hostile/catalogues_test.py and hostile/languages_test.py test bad catalogues and languages.
"""
import errno
import gettext
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import KEPT, NODES, TOOL, boundary, linkTo, output
from catalogue_files import GERMAN, CatalogueTest, catalogue
from expected_messages import (CLIPPING, FAILED, FINISHED, USAGE, closingRange, errorMessage, failedMessage,
                               filePass, finishedRun, finishMessage, jsonError, jsonFailed, jsonFailedRun, jsonFinish,
                               jsonFinishedRun, jsonProgress, jsonState, recorded)
from fault_checks import failing, failsForever

NOT_FOUND = "Boundary file {0} not found"
NOT_THERE = "Boundary file {0} does not exist"


class LanguageChoice(CatalogueTest):
    def setUp(self):
        super().setUp()
        folders = ("de", "en", "fr", "de_AT")
        self.tool = self.copyOfTool({folder: catalogue({USAGE: f"usage in {folder}"}) for folder in folders})

    def test_german_is_the_default(self):
        self.assertEqual(self.usageText(self.tool), "usage in de")

    def test_language_names_the_folder(self):
        for option, text in {"-lang=de": "usage in de", "-lang=fr": "usage in fr", "-lang=DE": "usage in de",
                             "-lang=de_DE": "usage in de", "-lang=de_AT": "usage in de_AT", "-lang=xx": USAGE,
                             "-lang=": USAGE, "-lang=EN": "usage in en", "-lang=en_US": "usage in en"}.items():
            with self.subTest(option=option):
                self.assertEqual(self.usageText(self.tool, option), text)

    def test_en_reads_no_catalogue(self):
        self.assertEqual(self.usageText(self.tool, "-lang=en"), USAGE)

    def test_first_language_wins(self):
        self.assertEqual(self.usageText(self.tool, "x", "-lang=en", "-lang=fr"), USAGE)
        self.assertEqual(self.usageText(self.tool, "x", "-lang=fr", "-lang=en"), "usage in fr")

    def test_environment_does_not_select_the_language(self):
        environment = {"LANG": "fr_FR.UTF-8", "LC_ALL": "fr_FR.UTF-8", "LANGUAGE": "fr"}
        self.assertEqual(self.usageText(self.tool, environment=environment), "usage in de")

    def test_working_directory_holds_no_catalogue(self):
        self.give({"locale/de/LC_MESSAGES/VD2D.mo": catalogue({USAGE: "usage in the wrong place"})})
        self.assertEqual(self.usageText(self.tool), "usage in de")

    def test_catalogues_are_found_through_a_link(self):
        os.symlink(self.tool, self.path("link"))
        self.give({})
        self.given["link"] = linkTo(self.tool)
        self.assertEqual(self.usageText(self.path("link")), "usage in de")


class DeliveredCatalogue(CatalogueTest):
    """The German catalogue of the build, next to the real tool."""

    def setUp(self):
        super().setUp()
        with open(GERMAN, "rb") as file:
            self.german = gettext.GNUTranslations(file).gettext
        for text in (USAGE, FAILED, FINISHED, CLIPPING, NOT_FOUND, NOT_THERE):
            self.assertNotEqual(self.german(text), text)

    def test_german_is_shown_and_sent_by_default(self):
        self.assertEqual(self.usageText(TOOL), self.german(USAGE))
        run = self.start("base/data", "out", "no.xml", "-pipe", tool=TOOL)
        texts = [self.german(text).format("no.xml") for text in (NOT_FOUND, NOT_THERE)]
        self.expect(run, status=1, console=texts,
                    messages=[*map(jsonError, texts), jsonFailed(self.german(FAILED))])

    def test_finished_run_sends_german_texts(self):
        self.giveJob(NODES)
        self.expect(self.clip("-pipe", tool=TOOL), status=0, created=output(1, KEPT), messages=[
            jsonState(self.german(CLIPPING)), *jsonProgress(0.0, 50.0, 100.0), jsonFinish(self.german(FINISHED))])

    def test_language_without_a_catalogue_is_english(self):
        self.assertEqual(self.usageText(TOOL, "-lang=fr"), USAGE)
        self.assertEqual(self.usageText(TOOL, "-lang=en"), USAGE)

    def test_default_without_catalogues_is_english(self):
        self.assertEqual(self.usageText(self.copyOfTool({}, TOOL)), USAGE)


class PathOfTheExecutable(CatalogueTest):
    """The tool reads it from /proc, which may be absent."""

    def test_english_does_not_read_it(self):
        calls = Path(self.aside, "calls")  # exists after at least one call
        for option, read in (("-lang=en", False), ("-lang=de", True)):
            self.start(option, environment=failing("readlink", "/proc/self/exe", countTo=str(calls)))
            self.assertEqual(calls.exists(), read, option)

    def test_process_without_it_is_english(self):
        self.giveJob(NODES)
        self.give({"locale/de/LC_MESSAGES/VD2D.mo": Path(GERMAN).read_bytes()})
        settings = {"tool": TOOL, "environment": failing("readlink", "/proc/self/exe", failsForever(errno.ENOENT))}
        self.expect(self.start("-pipe", **settings), status=1, console=[USAGE], messages=jsonFailedRun(USAGE))
        self.expect(self.clip("-pipe", **settings), status=0, created=output(1, KEPT),
                    messages=jsonFinishedRun(0.0, 50.0, 100.0))


class Translations(CatalogueTest):
    def test_every_class_of_message_is_translated(self):
        self.giveJob(NODES)
        tool = self.copyOfTool({"de": catalogue(
            {CLIPPING: "Höhendaten …", FINISHED: "fertig", FAILED: "gescheitert"})})
        self.expect(self.clip(tool=tool), status=0, created=output(1, KEPT), messages=recorded(
            filePass(2, state="Höhendaten …"), closingRange(), finishMessage("fertig")))
        self.expect(self.start(tool=tool), status=1, console=[USAGE], created=output(1, KEPT), messages=recorded(
            errorMessage(USAGE), failedMessage("gescheitert")))

    def test_placeholder_without_an_argument_ends_the_run(self):
        tool = self.copyOfTool({"de": catalogue({NOT_FOUND: "Datei {1} fehlt"})})
        self.expectFailed(self.start("in", "out", "b.xml", tool=tool), "argument not found")

    def test_text_of_a_thrown_error_is_not_translated(self):
        self.giveJob(NODES)
        text, = self.start("base/data", "missing/out", "area.xml").consoleLines()
        tool = self.copyOfTool({"de": catalogue({text: "übersetzt"})})
        self.expectFailed(self.start("base/data", "missing/out", "area.xml", tool=tool), text)


class OtherCharacterSet(CatalogueTest):
    def test_catalogue_of_another_charset_becomes_utf8(self):
        tool = self.copyOfTool({"de": catalogue({USAGE: "Höhendaten"}, charset="ISO-8859-1")})
        self.assertEqual(self.usageText(tool), "Höhendaten")


class NumbersInEveryLanguage(CatalogueTest):
    def test_numbers_stay_classic_under_a_german_system_locale(self):
        place = os.path.join(self.aside, "locales")
        os.mkdir(place)
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", place + "/de_DE.utf8"], check=True,
                       capture_output=True)
        content = b"x;y;z\n" + b"1.5;2.5;3.5\n" * 1234 + b"1.500,5;1;1\n"
        square = [(0.5, 0.5), (2.5, 0.5), (2.5, 9.5), (0.5, 9.5)]
        for index, (locale, options) in enumerate((("de_DE.utf8", []), ("de_DE.utf8", ["-lang=de_DE"]),
                                                   ("de_DE.utf8", ["-lang=en"]))):
            with self.subTest(options=options):
                self.giveJob({"a.xyz": content}, boundary(square))
                # A leak detector would report memory that the C library allocates for LOCPATH.
                run = self.start("base/data", f"out{index}", "area.xml", *options, environment={
                    "LOCPATH": place, "LC_ALL": locale, "LANG": locale, "LSAN_OPTIONS": "detect_leaks=0"})
                created = output(1235, {"a.xyz": content}, at=f"base/out{index}")
                self.expect(run, status=0, created=created, messages=finishedRun(1235))
                self.keep(created)


if __name__ == "__main__":
    unittest.main()
