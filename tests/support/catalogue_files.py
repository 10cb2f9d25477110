"""Message catalogues for tests, and copies of the tool with such catalogues next to them."""
import os
import shutil
import subprocess
from pathlib import Path

from acceptance import RECORDING, AcceptanceTest

GERMAN = os.path.join(os.environ["VADELCLIP_LOCALE"], "de", "LC_MESSAGES", "VD2D.mo")


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def catalogue(translations, charset="UTF-8"):
    """Returns a binary catalogue of these translations, compiled by msgfmt."""
    entries = {"": f"Content-Type: text/plain; charset={charset}\n", **translations}
    source = "\n".join(f"msgid {quoted(text)}\nmsgstr {quoted(translation)}\n" for text, translation in entries.items())
    return subprocess.run(["msgfmt", "-o", "-", "-"], input=source.encode(charset), stdout=subprocess.PIPE,
                          check=True).stdout


class CatalogueTest(AcceptanceTest):
    def copyOfTool(self, catalogues, tool=RECORDING):
        """Copies the tool and writes these catalogues next to the copy: a dict from language folder to file content."""
        place = Path(self.aside, "tool")
        place.mkdir()
        shutil.copy(tool, place / "Vadelclip")
        for language, content in catalogues.items():
            folder = place / "locale" / language / "LC_MESSAGES"
            folder.mkdir(parents=True)
            (folder / "VD2D.mo").write_bytes(content)
        return str(place / "Vadelclip")

    def usageText(self, tool, *arguments, **settings):
        """Returns the usage line that the tool prints with these arguments. Checks that nothing else happens."""
        run = self.start(*arguments, tool=tool, **settings)
        text, = run.consoleLines()
        self.expect(run, status=1, console=[text], messages=run.messages)
        return text
