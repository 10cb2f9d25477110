"""Values of "-lang=" that are no language: none makes the tool read outside of the catalogue directory."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import KEPT, NODES, TOOL, output
from catalogue_files import GERMAN, CatalogueTest, catalogue
from expected_messages import FINISHED, USAGE, jsonFinishedRun
from target_platform import endedAbnormally

# The library does not accept these as names: the ids are the texts.
ENGLISH = (
    "", "C", "POSIX", "C.UTF-8", "root", "0", "1", "nan", ".", "..", "/", "//", "~", "*", "_", "@", "-", "=", "en ",
    "../../x", "../../../../../../etc", "/etc", "/etc/passwd", "de/../de", "de\\..\\de", "de/", "./de", "de%00",
    "de%2f", "%n%n%s%s", "{0}", "{", "$(id)", "`id`", "$HOME", "'", '"', "de;fr", "de,fr", "de:fr", "de|fr", "de&",
    "de\n", "\tde", " de", "de ", "\x01\x02", "\x7f", "ÄÖ", "日本", "🎉", "-lang=de", "-pipe", "abcdefghijkl",
    "a" * 100_000, "de" * 50_000, "../" * 30_000,
    *map(os.fsdecode, (b"\xff\xfe", b"de\xff", b"\xc0\xaf..\xc0\xaf", b"\xed\xa0\x80")))
GERMAN_SPELLINGS = "DE", "dE", "de_DE", "de-DE", "DE_de", "de_XX", "de.", "de.utf8@x"
# Names with more than a language: the library uses ASCII, which cannot represent the German texts.
NOT_CONVERTIBLE = ("de_", "de__DE", "de_AT1", "de@", "de@x", "de@euro", "de_DE@..", "de@../../evil", "de@/../../evil",
                   "de@x.y", "de@=b")
# The library does not accept an encoding, and the tool does not catch this error.
OTHER_ENCODING = "de.utf8", "de.UTF-8", "de.latin1", "de_DE.UTF-8", "de_DE.x", "de./../x"


class HostileLanguages(CatalogueTest):
    def setUp(self):
        super().setUp()
        self.tool = self.copyOfTool({"de": Path(GERMAN).read_bytes()}, TOOL)
        self.giveJob(NODES)
        self.plantEvilCatalogues()

    def plantEvilCatalogues(self):
        """Writes catalogues where the values point to. Their texts would appear in the messages."""
        content = catalogue({USAGE: "evil", FINISHED: "evil"})
        place = Path(self.tool).parent
        for folder in (place / "evil", place.parent / "evil", place.parent / "x", place / "locale/x", place / "de"):
            (folder / "LC_MESSAGES").mkdir(parents=True)
            (folder / "LC_MESSAGES" / "VD2D.mo").write_bytes(content)

    def clipIn(self, language):
        self.clearOutput()
        return self.clip("-lang=" + language, "-pipe", tool=self.tool)

    def expectInEach(self, languages, console=()):
        for language in languages:
            with self.subTest(language=language[:60]):
                self.expect(self.clipIn(language), status=0, console=console, created=output(1, KEPT),
                            messages=jsonFinishedRun(0.0, 50.0, 100.0))

    def test_invalid_language_selects_english_texts(self):
        self.expectInEach(ENGLISH)

    def test_every_spelling_of_german_is_found(self):
        for language in GERMAN_SPELLINGS:
            with self.subTest(language=language):
                run = self.clipIn(language)
                self.assertIn("Höhendaten", run.messages[0])
                self.expect(run, status=0, created=output(1, KEPT), messages=run.messages)

    def test_unconvertible_language_is_reported_and_english(self):
        self.expectInEach(NOT_CONVERTIBLE, console=["Conversion failed"])

    def test_language_with_an_encoding_ends_the_process(self):
        for language in OTHER_ENCODING:
            with self.subTest(language=language):
                run = self.clipIn(language)
                self.assertTrue(endedAbnormally(run.status), run.status)
                self.assertEqual((run.console, run.messages), (b"", []))
                self.assertIn(b"Invalid or unsupported charset", run.errors)
                self.assertNotIn("base/out", run.tree)


if __name__ == "__main__":
    unittest.main()
