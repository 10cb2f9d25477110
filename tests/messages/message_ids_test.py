"""Compares the message ids in the sources with the catalogue templates, and the templates with each translation."""
import gettext
import io
import re
import string
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LOCALE = ROOT / "locale"
DOMAINS = ("VD2D", "vadelwatch", "vadelshard")

# The definitions of translateMessage and formatMessage, the only places where an id is a variable.
DEFINITIONS = [ROOT / "src" / name for name in ("messages/translation.hpp", "messages/translation.cpp",
                                                "messages/companion_messages.hpp")]


def output(*command, **settings):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, **settings).stdout


def sources():
    return [path for path in sorted(ROOT.glob("src/**/*.[ch]pp")) if path not in DEFINITIONS]


def idsOf(function):
    """Returns the literal ids with which the sources call a function."""
    template = output("xgettext", "--language=C++", "--from-code=UTF-8", "--keyword", f"--keyword={function}",
                      "--omit-header", "--no-wrap", "--output=-", *map(str, sources()), text=True)
    return [text.replace('\\"', '"') for text in re.findall(r'^msgid "(.*)"$', template, re.MULTILINE)]


def placeholders(text):
    """Returns the placeholders, each with its format. Raises ValueError if the text is no valid format."""
    return {tuple(field) for _, *field in string.Formatter().parse(text) if field[0] is not None}


class MessageIds(unittest.TestCase):
    def test_templates_are_up_to_date(self):
        with tempfile.TemporaryDirectory() as directory:
            subprocess.run([ROOT / "scripts/update-catalogue-template.sh", directory], check=True)
            for domain in DOMAINS:
                self.assertEqual(Path(directory, f"{domain}.pot").read_text("utf-8"),
                                 (LOCALE / f"{domain}.pot").read_text("utf-8"),
                                 "run scripts/update-catalogue-template.sh")

    def test_every_id_is_a_literal(self):
        calls = [f"{path.name}: {call}" for path in sources() for call in re.findall(
            r'\b(?:translate|format)Message\(\s*[^"\s][^;]*;', path.read_text("utf-8"))]
        self.assertEqual([], calls)

    def test_only_ids_with_placeholders_are_formatted(self):
        formatted = idsOf("formatMessage")
        self.assertIn("Directory {0} does not exist", formatted)
        self.assertEqual([], [text for text in formatted if not placeholders(text)])
        self.assertEqual([], [text for text in idsOf("translateMessage") if "{" in text])

    def test_every_translation_is_complete(self):
        languages = [path for path in LOCALE.iterdir() if path.is_dir()]
        self.assertIn(LOCALE / "de", languages)
        for language in languages:
            for domain in DOMAINS:
                with self.subTest(language=language.name, domain=domain):
                    # Reports missing, untranslated, fuzzy and unused messages.
                    difference = subprocess.run(["msgcmp", language / f"{domain}.po", LOCALE / f"{domain}.pot"],
                                                stderr=subprocess.PIPE, text=True, check=False)
                    self.assertEqual((0, ""), (difference.returncode, difference.stderr))

    def test_translations_have_the_placeholders_of_their_ids(self):
        formatted = idsOf("formatMessage")
        for path in LOCALE.glob("*/*.po"):
            catalogue = gettext.GNUTranslations(io.BytesIO(output("msgfmt", "--output-file=-", str(path))))
            for text in formatted:
                with self.subTest(path=path, text=text):
                    self.assertEqual(placeholders(text), placeholders(catalogue.gettext(text)))


if __name__ == "__main__":
    unittest.main()
