"""`cmake --install` to a prefix of one's own: every file in its place, working by its links, and gone after removal."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from manual_examples import differences, readPage  # noqa: E402

BUILD = os.path.dirname(os.environ["VADELCLIP_EXECUTABLE"])

# The only component there is. Named, because its list of files is one of its own then: the list of an installation that
# somebody made from this build directory is left alone.
COMPONENT = "Unspecified"
MANIFEST = os.path.join(BUILD, f"install_manifest_{COMPONENT}.txt")
REMOVAL = ["cmake", "-D", f"manifest={MANIFEST}", "-P", os.path.join(ROOT, "cmake", "Uninstall.cmake")]


def treeFiles(*places):
    """The files of a directory in the sources, as paths below the sources."""
    place = os.path.join(*places)
    return [os.path.join(place, name) for name in sorted(os.listdir(os.path.join(ROOT, place)))
            if os.path.isfile(os.path.join(ROOT, place, name))]


def expectedFiles():
    documents = [name for name in treeFiles("docs") if name.endswith(".md")] + treeFiles("docs", "images")
    for exampleSet in ("merewether", "coast"):
        documents += treeFiles("examples", exampleSet) + treeFiles("examples", exampleSet, "nodes")
    documents += ["README.md", "copyright", "changelog.gz", "examples/README.md"]
    return sorted(["bin/Vadelclip", "bin/Vadelwatch", "lib/vadelclip/Vadelclip", "lib/vadelclip/Vadelwatch",
                   "lib/vadelclip/locale/de/LC_MESSAGES/VD2D.mo", "share/man/man1/Vadelclip.1.gz",
                   "share/man/man1/Vadelwatch.1.gz", "share/bash-completion/completions/Vadelclip",
                   "share/bash-completion/completions/Vadelwatch",
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
        self.install(self.prefix)
        self.addCleanup(lambda: os.path.exists(MANIFEST) and os.remove(MANIFEST))

    def install(self, prefix):
        self.command("cmake", "--install", BUILD, "--component", COMPONENT, "--prefix", prefix)

    def command(self, *words, **settings):
        run = subprocess.run(words, capture_output=True, text=True, check=False, **settings)
        self.assertEqual(0, run.returncode, run.stdout + run.stderr)
        return run.stdout

    def say(self, prefix, *arguments):
        """What the installed tool says, run by its link from a directory of no meaning."""
        return subprocess.run([os.path.join(prefix, "bin", "Vadelclip"), *arguments], cwd="/", capture_output=True,
                              text=True, check=False).stdout

    def expectBothLanguages(self, prefix):
        self.assertEqual("Aufruf: Vadelclip <Pfad des Eingabeverzeichnisses> <Name des Ausgabeverzeichnisses> "
                         "<Pfad der Grenzdatei>\n", self.say(prefix))
        self.assertEqual("Usage: Vadelclip <input directory path> <output directory name> <boundary file path>\n",
                         self.say(prefix, "-lang=en"))

    def test_every_file_is_in_its_place_and_no_other(self):
        self.assertEqual(expectedFiles(), filesBelow(self.prefix))
        self.assertEqual("../lib/vadelclip/Vadelclip", os.readlink(os.path.join(self.prefix, "bin", "Vadelclip")))

    def test_the_links_find_the_catalogues_also_after_a_move(self):
        self.expectBothLanguages(self.prefix)
        moved = os.path.join(self.directory, "moved")
        os.rename(self.prefix, moved)
        self.expectBothLanguages(moved)

    def test_the_examples_of_the_installed_pages_run_with_the_installed_examples(self):
        plain = os.path.join(self.directory, "plain")
        os.rename(self.prefix, plain)  # the pages name a place without a blank
        settings = {**os.environ, "PATH": os.path.join(plain, "bin") + os.pathsep + os.environ["PATH"],
                    "LC_ALL": "C.UTF-8", "LSAN_OPTIONS": "print_suppressions=0"}
        for name in ("Vadelclip", "Vadelwatch"):
            page = readPage(os.path.join(plain, "share", "man", "man1", name + ".1.gz"))
            self.assertNotRegex(page.split(".SH EXAMPLES")[0], "@[A-Z_]+@")
            self.assertRegex(page.splitlines()[1], rf'^\.TH {name} 1 20[0-9]{{2}}-[01][0-9]-[0-3][0-9] "Vadelclip [0-9]')
            wrong = differences(page, os.path.join(plain, "share", "doc", "vadelclip", "examples"),
                                environment=settings)
            self.assertEqual([], wrong, "\n" + "\n".join(wrong))

    def expectRemovalOfOursAlone(self, prefix):
        other = os.path.join(prefix, "lib", "vadelclip", "locale", "fr.mo")
        with open(other, "w", encoding="utf-8"):
            pass
        self.command(*REMOVAL)
        self.assertEqual(["lib/vadelclip/locale/fr.mo"], filesBelow(prefix))
        self.assertEqual(["locale"], os.listdir(os.path.join(prefix, "lib", "vadelclip")))
        self.assertEqual([], os.listdir(os.path.join(prefix, "share", "doc")))
        self.assertFalse(os.path.exists(MANIFEST))

    def test_removal_leaves_nothing_of_ours_and_everything_of_others(self):
        self.expectRemovalOfOursAlone(self.prefix)

    def test_removal_takes_a_prefix_as_it_is_written(self):
        # What CMake reads as a pattern, and as the end of a list's entry.
        for name in ("a [b];c", "a*?[b;c;", "[d", "e]"):
            with self.subTest(name=name):
                prefix = os.path.join(self.directory, name)
                self.install(prefix)
                self.assertEqual(expectedFiles(), filesBelow(prefix))
                self.expectRemovalOfOursAlone(prefix)

    def test_removal_takes_what_is_ours_alone_as_a_whole(self):
        self.command(*REMOVAL)
        self.assertEqual([], filesBelow(self.prefix))
        self.assertEqual([], os.listdir(os.path.join(self.prefix, "lib")))

    def test_removal_without_an_installation_says_so(self):
        os.remove(MANIFEST)
        run = subprocess.run(REMOVAL, capture_output=True, text=True, check=False)
        self.assertEqual((1, True), (run.returncode, "Nothing was installed" in run.stderr))


if __name__ == "__main__":
    unittest.main()
