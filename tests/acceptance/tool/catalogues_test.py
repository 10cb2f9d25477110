"""Message catalogues beside the executable: languages, what a translation may hold, what a bad one does."""
import errno
import gettext
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import TOOL, boundary, linkTo, output
from catalogue_files import GERMAN, CatalogueTest, catalogue
from expected_messages import (BAD_FIRST_CHARACTER, BAD_SEPARATOR, BAD_SHAPE, CLIPPING, FAILED, FINISHED, USAGE,
                               closingRange, errorMessage, failedMessage, failedRun, filePass, finishedRun,
                               finishMessage, jsonError, jsonFailed, jsonFinish, jsonProgress, jsonState, recorded)
from fault_checks import failing, failsForever
from target_platform import endedAbnormally

NODES = {"a.xyz": b"x;y;z\n1;1;5\n20;1;5\n"}
KEPT = {"a.xyz": b"x;y;z\n1;1;5\n"}
NOT_FOUND = "Boundary file {0} not found"
NOT_THERE = "Boundary file {0} does not exist"


class LanguageChoice(CatalogueTest):
    def setUp(self):
        super().setUp()
        folders = ("de", "en", "fr", "de_AT")
        self.tool = self.copyOfTool({folder: catalogue({USAGE: f"usage in {folder}"}) for folder in folders})

    def test_german_is_the_default(self):
        self.assertEqual(self.usageText(self.tool), "usage in de")

    def test_the_language_names_the_folder(self):
        for option, text in {"-lang=de": "usage in de", "-lang=fr": "usage in fr", "-lang=DE": "usage in de",
                             "-lang=de_DE": "usage in de", "-lang=de_AT": "usage in de_AT", "-lang=xx": USAGE}.items():
            with self.subTest(option=option):
                self.assertEqual(self.usageText(self.tool, option), text)

    def test_en_looks_for_no_catalogue(self):
        self.assertEqual(self.usageText(self.tool, "-lang=en"), USAGE)

    def test_only_the_exact_en_is_the_language_of_the_ids(self):
        self.assertEqual(self.usageText(self.tool, "-lang=EN"), "usage in en")
        self.assertEqual(self.usageText(self.tool, "-lang=en_US"), "usage in en")

    def test_an_empty_language_is_not_german(self):
        self.assertEqual(self.usageText(self.tool, "-lang="), USAGE)

    def test_the_first_language_wins(self):
        self.assertEqual(self.usageText(self.tool, "x", "-lang=en", "-lang=fr"), USAGE)
        self.assertEqual(self.usageText(self.tool, "x", "-lang=fr", "-lang=en"), "usage in fr")

    def test_the_environment_plays_no_part(self):
        environment = {"LANG": "fr_FR.UTF-8", "LC_ALL": "fr_FR.UTF-8", "LANGUAGE": "fr"}
        self.assertEqual(self.usageText(self.tool, environment=environment), "usage in de")

    def test_a_catalogue_in_the_working_directory_plays_no_part(self):
        self.give({"locale/de/LC_MESSAGES/VD2D.mo": catalogue({USAGE: "usage in the wrong place"})})
        self.assertEqual(self.usageText(self.tool), "usage in de")

    def test_catalogues_are_found_through_a_link_to_the_executable(self):
        os.symlink(self.tool, self.path("link"))
        self.give({})
        self.given["link"] = linkTo(self.tool)
        self.assertEqual(self.usageText(self.path("link")), "usage in de")

    def test_a_strange_language_gives_english_texts(self):
        self.giveJob(NODES)
        for language in ("abcdefghijkl", "de@=b", "../x", "/etc", "d e", "1", "%s", "\n", os.fsdecode(b"\xff"),
                         "x" * 10_000):
            with self.subTest(language=language):
                self.expect(self.start("base/data", "-lang=" + language), status=1, console=[USAGE],
                            messages=failedRun(USAGE))


class DeliveredCatalogue(CatalogueTest):
    """The German catalogue of the build, beside the real tool."""

    def setUp(self):
        super().setUp()
        with open(os.path.join(os.environ["VADELCLIP_LOCALE"], "de", "LC_MESSAGES", "VD2D.mo"), "rb") as file:
            self.german = gettext.GNUTranslations(file).gettext
        for text in (USAGE, FAILED, FINISHED, CLIPPING, NOT_FOUND, NOT_THERE):
            self.assertNotEqual(self.german(text), text)

    def test_german_texts_are_shown_and_sent_by_default(self):
        self.assertEqual(self.usageText(TOOL), self.german(USAGE))
        run = self.start("base/data", "out", "no.xml", "-pipe", tool=TOOL)
        texts = [self.german(text).format("no.xml") for text in (NOT_FOUND, NOT_THERE)]
        self.expect(run, status=1, console=texts,
                    messages=[*map(jsonError, texts), jsonFailed(self.german(FAILED))])

    def test_a_finished_run_speaks_german_as_well(self):
        self.giveJob(NODES)
        self.expect(self.clip("-pipe", tool=TOOL), status=0, created=output(1, KEPT), messages=[
            jsonState(self.german(CLIPPING)), *jsonProgress(0.0, 50.0, 100.0), jsonFinish(self.german(FINISHED))])

    def test_a_language_without_a_catalogue_is_english(self):
        self.assertEqual(self.usageText(TOOL, "-lang=fr"), USAGE)
        self.assertEqual(self.usageText(TOOL, "-lang=en"), USAGE)

    def test_without_catalogues_the_default_is_english(self):
        self.assertEqual(self.usageText(self.copyOfTool({}, TOOL)), USAGE)


class PathOfTheExecutable(CatalogueTest):
    """It is read from /proc, which may be absent."""

    def test_english_does_not_ask_for_it(self):
        calls = Path(self.aside, "calls")  # written if there is any
        for option, asked in (("-lang=en", False), ("-lang=de", True)):
            self.start(option, environment=failing("readlink", "/proc/self/exe", countTo=str(calls)))
            self.assertEqual(calls.exists(), asked, option)

    def test_without_it_the_whole_process_is_english(self):
        self.giveJob(NODES)
        self.give({"locale/de/LC_MESSAGES/VD2D.mo": Path(GERMAN).read_bytes()})
        settings = {"tool": TOOL, "environment": failing("readlink", "/proc/self/exe", failsForever(errno.ENOENT))}
        self.expect(self.start("-pipe", **settings), status=1, console=[USAGE], messages=[jsonError(USAGE), jsonFailed()])
        self.expect(self.clip("-pipe", **settings), status=0, created=output(1, KEPT),
                    messages=[jsonState(), *jsonProgress(0.0, 50.0, 100.0), jsonFinish()])


class Translations(CatalogueTest):
    def test_every_class_of_message_is_translated(self):
        self.giveJob(NODES)
        tool = self.copyOfTool({"de": catalogue({CLIPPING: "Höhendaten …", FINISHED: "fertig", FAILED: "gescheitert"})})
        self.expect(self.clip(tool=tool), status=0, created=output(1, KEPT), messages=recorded(
            filePass(2, state="Höhendaten …"), closingRange(), finishMessage("fertig")))
        self.expect(self.start(tool=tool), status=1, console=[USAGE], created=output(1, KEPT), messages=recorded(
            errorMessage(USAGE), failedMessage("gescheitert")))

    def test_a_placeholder_kept_in_a_translation_is_filled(self):
        tool = self.copyOfTool({"de": catalogue({NOT_FOUND: "Datei {0} für Ränder fehlt"})})
        self.expectFailed(self.start("in", "out", "b{1}.xml", tool=tool),
                          "Datei b{1}.xml für Ränder fehlt", "Boundary file b{1}.xml does not exist")

    def test_placeholders_may_change_their_order(self):
        self.giveJob(NODES,
                     b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1234567"><point/></polygon></group>'
                     b"</VadeDGM></VADELSIM>")
        tool = self.copyOfTool({"de": catalogue({"Cannot read point {0} in polygon {1}": "Ring {1}, Punkt {0} {{}}"})})
        self.expectFailed(self.clip(tool=tool), "Ring 1234567, Punkt 0 {}", "Boundary file area.xml does not exist")

    def test_a_placeholder_beyond_the_arguments_ends_the_run(self):
        tool = self.copyOfTool({"de": catalogue({NOT_FOUND: "Datei {1} fehlt"})})
        self.expectFailed(self.start("in", "out", "b.xml", tool=tool), "argument not found")

    def test_a_malformed_placeholder_ends_the_run(self):
        tool = self.copyOfTool({"de": catalogue({NOT_THERE: "Datei {0 fehlt"})})
        self.expectFailed(self.start("in", "out", "b.xml", tool=tool), "Boundary file b.xml not found",
                          "invalid format string")

    def test_braces_have_no_meaning_in_a_message_without_arguments(self):
        self.giveJob(NODES)
        tool = self.copyOfTool({"de": catalogue({USAGE: "{", CLIPPING: "{1} {", FINISHED: "}{0}", FAILED: "{x}"})})
        self.expect(self.clip(tool=tool), status=0, created=output(1, KEPT), messages=recorded(
            filePass(2, state="{1} {"), closingRange(), finishMessage("}{0}")))
        self.expect(self.start(tool=tool), status=1, console=["{"], created=output(1, KEPT), messages=recorded(
            errorMessage("{"), failedMessage("{x}")))

    def test_two_of_the_three_header_errors_are_never_translated(self):
        translations = {BAD_FIRST_CHARACTER: "Erstes Zeichen", BAD_SEPARATOR: "Trenner", BAD_SHAPE: "Form"}
        tool = self.copyOfTool({"de": catalogue(translations)})
        for header, text in ((b"y;x;z\n", "Erstes Zeichen"), (b"x:y:z\n", BAD_SEPARATOR), (b"x;y\n", BAD_SHAPE),
                             (b"\n", "")):
            with self.subTest(header=header):
                self.startOver()
                self.giveJob({})
                self.serve("base/data/a.xyz", b"x;y;z\n", b"x;y;z\n", header)
                # The empty text stays empty: a catalogue would answer it with its own header.
                self.expect(self.clip(tool=tool), status=0, console=[text], created=output(1, {"a.xyz": b""}),
                            messages=recorded(errorMessage(text), closingRange(), finishMessage()))

    def test_the_text_of_a_thrown_error_is_not_translated(self):
        self.giveJob(NODES)
        text, = self.start("base/data", "missing/out", "area.xml").consoleLines()
        tool = self.copyOfTool({"de": catalogue({text: "übersetzt"})})
        self.expectFailed(self.start("base/data", "missing/out", "area.xml", tool=tool), text)


class BadCatalogues(CatalogueTest):
    def unconvertible(self):
        """Bytes that do not fit the named charset: msgfmt refuses them, so the name is changed afterwards."""
        content = catalogue({USAGE: "Höhe"}, charset="ISO-8859-1")
        return content.replace(b"charset=ISO-8859-1", b"charset=UTF-8     ")

    def test_texts_that_cannot_be_converted_are_told_on_the_console_alone(self):
        self.giveJob(NODES)
        tool = self.copyOfTool({"de": self.unconvertible()})
        self.expect(self.clip(tool=tool), status=0, console=["Conversion failed"], created=output(1, KEPT),
                    messages=finishedRun(2))

    def test_after_that_the_ids_are_the_texts_and_the_line_comes_first(self):
        tool = self.copyOfTool({"de": self.unconvertible()})
        self.expect(self.start(tool=tool), status=1, console=["Conversion failed", USAGE], messages=failedRun(USAGE))

    def test_any_other_error_of_the_set_up_ends_the_process_abnormally(self):
        tool = self.copyOfTool({"de": b"this is no catalogue\n", "en": b"nor is this\n"})
        for options in ([], ["-lang=de"], ["-lang=EN"]):
            with self.subTest(options=options):
                run = self.start("base/data", "out", "area.xml", *options, tool=tool)
                self.assertTrue(endedAbnormally(run.status), run.status)
                self.assertEqual((run.console, run.messages, run.tree), (b"", [], {}))

    def test_en_does_not_even_open_one(self):
        tool = self.copyOfTool({"de": b"this is no catalogue\n", "en": b"nor is this\n"})
        self.expect(self.start("-lang=en", tool=tool), status=1, console=[USAGE], messages=failedRun(USAGE))

    def test_a_catalogue_of_another_charset_comes_out_as_utf8(self):
        tool = self.copyOfTool({"de": catalogue({USAGE: "Höhendaten"}, charset="ISO-8859-1")})
        self.assertEqual(self.usageText(tool), "Höhendaten")


class NumbersInEveryLanguage(CatalogueTest):
    def test_numbers_keep_the_classic_notation_under_a_german_system_locale(self):
        place = os.path.join(self.aside, "locales")
        os.mkdir(place)
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", place + "/de_DE.utf8"], check=True, capture_output=True)
        content = b"x;y;z\n" + b"1.5;2.5;3.5\n" * 1234 + b"1.500,5;1;1\n"
        square = [(0.5, 0.5), (2.5, 0.5), (2.5, 9.5), (0.5, 9.5)]
        for index, (locale, options) in enumerate((("de_DE.utf8", []), ("de_DE.utf8", ["-lang=de_DE"]),
                                                   ("de_DE.utf8", ["-lang=en"]))):
            with self.subTest(options=options):
                self.giveJob({"a.xyz": content}, boundary(square))
                # The C library keeps what it made of LOCPATH, which a leak detector would report.
                run = self.start("base/data", f"out{index}", "area.xml", *options, environment={
                    "LOCPATH": place, "LC_ALL": locale, "LANG": locale, "LSAN_OPTIONS": "detect_leaks=0"})
                created = output(1235, {"a.xyz": content}, at=f"base/out{index}")
                self.expect(run, status=0, created=created, messages=finishedRun(1235))
                self.keep(created)


if __name__ == "__main__":
    unittest.main()
