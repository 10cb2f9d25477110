"""`cmake --install` to another prefix: every file is in its place, and the links to the executables work."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from links import deadLinks  # noqa: E402
from manual_examples import differences, readPage  # noqa: E402

BUILD = os.path.dirname(os.environ["VADELCLIP_EXECUTABLE"])
COMMANDS = ("Vadelclip", "Vadelwatch", "Vadelshard", "vadelclip-parallel", "vadelclip-slurm")


def treeFiles(*places):
    """Returns the files of a source directory, as paths relative to the sources."""
    place = os.path.join(*places)
    return [os.path.join(place, name) for name in sorted(os.listdir(os.path.join(ROOT, place)))
            if os.path.isfile(os.path.join(ROOT, place, name))]


def expectedFiles():
    documents = [name for name in treeFiles("docs") if name.endswith((".md", ".json"))] + treeFiles("docs", "images")
    for exampleSet in ("merewether", "coast"):
        documents += treeFiles("examples", exampleSet) + treeFiles("examples", exampleSet, "nodes")
    documents += ["README.md", "copyright", "changelog.gz", "examples/README.md"]
    ofThePackage = []
    if os.environ["VADELCLIP_PACKAGE"] == "1":
        documents.append("changelog.Debian.gz")
        ofThePackage.append("share/lintian/overrides/vadelclip")
    return sorted([*ofThePackage,
                   *(place + name for name in COMMANDS
                     for place in ("bin/", "lib/vadelclip/", "share/bash-completion/completions/")),
                   *(f"share/man/man1/{name}.1.gz" for name in COMMANDS), "lib/vadelclip/engine_job.bash",
                   *(f"lib/vadelclip/locale/de/LC_MESSAGES/{domain}.mo" for domain in ("VD2D", "vadelwatch", "vadelshard")),
                   *("share/doc/vadelclip/" + name for name in documents)])


def filesBelow(directory):
    return sorted(os.path.relpath(os.path.join(place, name), directory)
                  for place, _, names in os.walk(directory) for name in names)


class Installation(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="vadelclip-installation-")
        self.addCleanup(shutil.rmtree, self.directory)
        self.prefix = os.path.join(self.directory, "a prefix")
        # The list of this component's files does not replace the list of an installation by hand.
        run = subprocess.run(["cmake", "--install", BUILD, "--component", "Unspecified", "--prefix", self.prefix],
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        self.assertEqual(0, run.returncode, run.stdout)

    def say(self, prefix, *arguments):
        """Returns what the installed tool prints if it is run by its link from the root directory."""
        return subprocess.run([os.path.join(prefix, "bin", "Vadelclip"), *arguments], cwd="/", capture_output=True,
                              text=True, check=False).stdout

    def expectBothLanguages(self, prefix):
        self.assertEqual("Aufruf: Vadelclip <Pfad des Eingabeverzeichnisses> <Name des Ausgabeverzeichnisses> "
                         "<Pfad der Grenzdatei>\n", self.say(prefix))
        self.assertEqual("Usage: Vadelclip <input directory path> <output directory name> <boundary file path>\n",
                         self.say(prefix, "-lang=en"))

    def test_installs_exactly_the_expected_files(self):
        self.assertEqual(expectedFiles(), filesBelow(self.prefix))
        self.assertEqual("../lib/vadelclip/Vadelclip", os.readlink(os.path.join(self.prefix, "bin", "Vadelclip")))

    def test_links_find_the_catalogues_even_after_a_move(self):
        self.expectBothLanguages(self.prefix)
        moved = os.path.join(self.directory, "moved")
        os.rename(self.prefix, moved)
        self.expectBothLanguages(moved)

    def test_documents_have_no_dead_links(self):
        documents = os.path.join(self.prefix, "share", "doc", "vadelclip")
        files = {}
        for name in filesBelow(documents):
            with open(os.path.join(documents, name), "rb") as file:
                files[name] = file.read()
        self.assertEqual([], deadLinks(files))

    def test_examples_of_the_installed_pages_run(self):
        plain = os.path.join(self.directory, "plain")
        os.rename(self.prefix, plain)  # the pages name a path without a space
        settings = {**os.environ, "PATH": os.path.join(plain, "bin") + os.pathsep + os.environ["PATH"],
                    "LC_ALL": "C.UTF-8", "LSAN_OPTIONS": "print_suppressions=0"}
        for name in COMMANDS:
            page = readPage(os.path.join(plain, "share", "man", "man1", name + ".1.gz"))
            self.assertNotRegex(page.split(".SH EXAMPLES")[0], "@[A-Z_]+@")
            self.assertRegex(page.splitlines()[1],
                             rf'^\.TH {name} 1 20[0-9]{{2}}-[01][0-9]-[0-3][0-9] "Vadelclip [0-9]')
            if name == "vadelclip-slurm" or (name == "vadelclip-parallel" and shutil.which("parallel") is None):
                continue  # examples of Slurm need a cluster
            wrong = differences(page, os.path.join(plain, "share", "doc", "vadelclip", "examples"),
                                environment=settings)
            self.assertEqual([], wrong, "\n" + "\n".join(wrong))


if __name__ == "__main__":
    unittest.main()
