"""Values of "-lang=" that are no language: none leads anywhere but into the catalogue directory."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import TOOL, output
from catalogue_files import GERMAN, CatalogueTest, catalogue
from expected_messages import FINISHED, USAGE, jsonFinish, jsonProgress, jsonState
from target_platform import endedAbnormally

NODES = {"a.xyz": b"x;y;z\n1;1;5\n20;1;5\n"}
KEPT = {"a.xyz": b"x;y;z\n1;1;5\n"}

# Names that the library takes for none: the ids are the texts.
ENGLISH = (
    "", "C", "POSIX", "C.UTF-8", "root", "0", "1", "nan", ".", "..", "/", "//", "~", "*", "_", "@", "-", "=", "en ",
    "../../x", "../../../../../../etc", "/etc", "/etc/passwd", "de/../de", "de\\..\\de", "de/", "./de", "de%00",
    "de%2f", "%n%n%s%s", "{0}", "{", "$(id)", "`id`", "$HOME", "'", '"', "de;fr", "de,fr", "de:fr", "de|fr", "de&", "de\n",
    "\tde", " de", "de ", "\x01\x02", "\x7f", "ÄÖ", "日本", "🎉", "-lang=de", "-pipe", "abcdefghijkl", "a" * 100_000,
    "de" * 50_000, "../" * 30_000, *map(os.fsdecode, (b"\xff\xfe", b"de\xff", b"\xc0\xaf..\xc0\xaf", b"\xed\xa0\x80")))
GERMAN_SPELLINGS = "DE", "dE", "de_DE", "de-DE", "DE_de", "de_XX", "de.", "de.utf8@x"
# A name that says more than a language: the library falls back to ASCII, in which the German texts cannot be told.
NOT_CONVERTIBLE = ("de_", "de__DE", "de_AT1", "de@", "de@x", "de@euro", "de_DE@..", "de@../../evil", "de@/../../evil",
                   "de@x.y", "de@=b")
# An encoding of its own is none that the library knows, and its error is not the one that is handled.
OTHER_ENCODING = "de.utf8", "de.UTF-8", "de.latin1", "de_DE.UTF-8", "de_DE.x", "de./../x"


class HostileLanguages(CatalogueTest):
    def setUp(self):
        super().setUp()
        self.tool = self.copyOfTool({"de": Path(GERMAN).read_bytes()}, TOOL)
        self.giveJob(NODES)
        self.plantEvilCatalogues()

    def plantEvilCatalogues(self):
        """Where the values point to. Texts from there would show in the messages."""
        content = catalogue({USAGE: "evil", FINISHED: "evil"})
        place = Path(self.tool).parent
        for folder in (place / "evil", place.parent / "evil", place.parent / "x", place / "locale/x", place / "de"):
            (folder / "LC_MESSAGES").mkdir(parents=True)
            (folder / "LC_MESSAGES" / "VD2D.mo").write_bytes(content)

    def clipIn(self, language):
        for path in sorted(output(1, KEPT), reverse=True):
            full = self.path(path)
            if os.path.lexists(full):
                (os.rmdir if os.path.isdir(full) else os.remove)(full)
        return self.clip("-lang=" + language, "-pipe", tool=self.tool)

    def expectInEach(self, languages, console=()):
        for language in languages:
            with self.subTest(language=language[:60]):
                self.expect(self.clipIn(language), status=0, console=console, created=output(1, KEPT),
                            messages=[jsonState(), *jsonProgress(0.0, 50.0, 100.0), jsonFinish()])

    def test_what_is_no_language_gives_english_texts(self):
        self.expectInEach(ENGLISH)

    def test_german_is_found_under_its_spellings(self):
        for language in GERMAN_SPELLINGS:
            with self.subTest(language=language):
                run = self.clipIn(language)
                self.assertIn("Höhendaten", run.messages[0])
                self.expect(run, status=0, created=output(1, KEPT), messages=run.messages)

    def test_what_falls_back_to_ascii_is_told_and_gives_english_texts(self):
        self.expectInEach(NOT_CONVERTIBLE, console=["Conversion failed"])

    def test_another_encoding_ends_the_process_with_nothing_done(self):
        for language in OTHER_ENCODING:
            with self.subTest(language=language):
                run = self.clipIn(language)
                self.assertTrue(endedAbnormally(run.status), run.status)
                self.assertEqual((run.console, run.messages), (b"", []))
                self.assertIn(b"Invalid or unsupported charset", run.errors)
                self.assertNotIn("base/out", run.tree)


if __name__ == "__main__":
    unittest.main()
