"""`cmake --install` to a new prefix: every file is installed, the links work, and removal removes every file."""
import os
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from links import deadLinks  # noqa: E402
from manual_examples import differences, readPage  # noqa: E402

BUILD = os.path.dirname(os.environ["VADELCLIP_EXECUTABLE"])

# The only component. With its name, CMake writes a separate list of files and does not overwrite the list of an
# installation from this build directory.
COMPONENT = "Unspecified"
MANIFEST = os.path.join(BUILD, f"install_manifest_{COMPONENT}.txt")
REMOVAL_SCRIPT = os.path.join(ROOT, "cmake", "Uninstall.cmake")
REMOVAL = ["cmake", "-D", f"manifest={MANIFEST}", "-P", REMOVAL_SCRIPT]
NOBODY = 65534


def treeFiles(*places):
    """Returns the files of a source directory, as paths relative to the sources."""
    place = os.path.join(*places)
    return [os.path.join(place, name) for name in sorted(os.listdir(os.path.join(ROOT, place)))
            if os.path.isfile(os.path.join(ROOT, place, name))]


def expectedFiles():
    documents = [name for name in treeFiles("docs") if name.endswith(".md")] + treeFiles("docs", "images")
    for exampleSet in ("merewether", "coast"):
        documents += treeFiles("examples", exampleSet) + treeFiles("examples", exampleSet, "nodes")
    documents += ["README.md", "copyright", "changelog.gz", "examples/README.md"]
    ofThePackage = []
    if os.environ["VADELCLIP_PACKAGE"] == "1":
        documents.append("changelog.Debian.gz")
        ofThePackage.append("share/lintian/overrides/vadelclip")
    return sorted([*ofThePackage,
                   "bin/Vadelclip", "bin/Vadelwatch", "lib/vadelclip/Vadelclip", "lib/vadelclip/Vadelwatch",
                   "lib/vadelclip/locale/de/LC_MESSAGES/VD2D.mo",
                   "lib/vadelclip/locale/de/LC_MESSAGES/vadelwatch.mo", "share/man/man1/Vadelclip.1.gz",
                   "share/man/man1/Vadelwatch.1.gz", "share/bash-completion/completions/Vadelclip",
                   "share/bash-completion/completions/Vadelwatch",
                   *("share/doc/vadelclip/" + name for name in documents)])


def filesBelow(directory):
    return sorted(os.path.relpath(os.path.join(place, name), directory)
                  for place, _, names in os.walk(directory) for name in names)


def becomeNobody():
    if os.geteuid() == 0:
        os.setgroups([])
        os.setgid(NOBODY)
        os.setuid(NOBODY)


class Installation(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="vadelclip-installation-")
        self.addCleanup(shutil.rmtree, self.directory)
        self.prefix = os.path.join(self.directory, "a prefix")
        self.install(self.prefix)
        self.addCleanup(self.forgetInstallation)

    def forgetInstallation(self):
        for name in (MANIFEST, MANIFEST + ".destdir"):
            if os.path.exists(name):
                os.remove(name)

    def installation(self, prefix):
        return ["cmake", "--install", BUILD, "--component", COMPONENT, "--prefix", prefix]

    def install(self, prefix, **settings):
        self.command(*self.installation(prefix), **settings)

    def command(self, *arguments, **settings):
        run = subprocess.run(arguments, capture_output=True, text=True, check=False, **settings)
        self.assertEqual(0, run.returncode, run.stdout + run.stderr)
        return run.stdout

    def refused(self, *arguments, **settings):
        """Runs a command that must fail. Returns its error text without line breaks."""
        run = subprocess.run(arguments, capture_output=True, text=True, check=False, **settings)
        self.assertEqual(1, run.returncode, run.stdout + run.stderr)
        return " ".join(run.stderr.split())

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
        for name in ("Vadelclip", "Vadelwatch"):
            page = readPage(os.path.join(plain, "share", "man", "man1", name + ".1.gz"))
            self.assertNotRegex(page.split(".SH EXAMPLES")[0], "@[A-Z_]+@")
            self.assertRegex(page.splitlines()[1],
                             rf'^\.TH {name} 1 20[0-9]{{2}}-[01][0-9]-[0-3][0-9] "Vadelclip [0-9]')
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

    def test_removal_keeps_the_files_of_others(self):
        self.expectRemovalOfOursAlone(self.prefix)

    def test_removal_takes_the_prefix_literally(self):
        # Characters of patterns, and brackets that group the entries of a list in CMake.
        for name in ("a [b]", "a*?[b", "[d", "e]"):
            with self.subTest(name=name):
                prefix = os.path.join(self.directory, name)
                self.install(prefix)
                self.assertEqual(expectedFiles(), filesBelow(prefix))
                self.expectRemovalOfOursAlone(prefix)

    def test_prefix_that_a_list_cannot_contain_is_refused(self):
        self.forgetInstallation()
        for name in ("a;b", "a\nb"):
            with self.subTest(name=name):
                prefix = os.path.join(self.directory, name)
                self.assertIn("A prefix with a semicolon or a line feed is not supported",
                              self.refused(*self.installation(prefix)))
                self.assertFalse(os.path.exists(prefix))
                self.assertFalse(os.path.exists(MANIFEST))

    def test_removal_without_permission_can_be_repeated(self):
        os.chmod(self.directory, 0o755)
        for place, _, _ in os.walk(self.prefix):  # for any user of the tests
            os.chmod(place, 0o555)
            self.addCleanup(os.chmod, place, 0o755)
        # The other user may read these copies and may remove the list.
        aside = os.path.join(self.directory, "aside")
        os.mkdir(aside)
        os.chmod(aside, 0o777)
        for name in (MANIFEST, MANIFEST + ".destdir", REMOVAL_SCRIPT):
            shutil.copy(name, aside)
        manifest = os.path.join(aside, os.path.basename(MANIFEST))
        script = os.path.join(aside, os.path.basename(REMOVAL_SCRIPT))
        text = self.refused("cmake", "-D", "manifest=" + manifest, "-P", script, preexec_fn=becomeNobody, cwd=aside)
        self.assertIn(os.path.join(self.prefix, "lib", "vadelclip", "Vadelclip") + " is left", text)
        self.assertIn("Permission denied", text)
        self.assertEqual(expectedFiles(), filesBelow(self.prefix))
        with open(manifest, encoding="utf-8") as kept, open(MANIFEST, encoding="utf-8") as written:
            self.assertEqual(written.read(), kept.read())

    def test_removal_uses_the_staging_directory(self):
        stage = os.path.join(self.directory, "stage [")
        staged = {**os.environ, "DESTDIR": stage}
        other = {**os.environ, "DESTDIR": stage + "2"}
        self.assertIn("The installation was made with", self.refused(*REMOVAL, env=staged))
        self.install(self.prefix, env=staged)
        for environment in (None, other):
            self.assertIn("The installation was made with", self.refused(*REMOVAL, env=environment))
        self.assertEqual(expectedFiles(), filesBelow(self.prefix))
        self.assertEqual(expectedFiles(), filesBelow(stage + self.prefix))
        self.command(*REMOVAL, env=staged)
        self.assertEqual(expectedFiles(), filesBelow(self.prefix))
        self.assertEqual([], filesBelow(stage))
        self.assertEqual([], os.listdir(os.path.join(stage + self.prefix, "lib")))

    def test_installed_files_are_readable_despite_a_strict_mask(self):
        prefix = os.path.join(self.directory, "new", "prefix")
        self.install(prefix, umask=0o077)
        for place, _, files in os.walk(os.path.dirname(prefix)):
            self.assertEqual(0o755, stat.S_IMODE(os.stat(place).st_mode), place)
            for name in files:
                file = os.path.join(place, name)
                self.assertEqual(stat.S_IROTH, os.stat(file).st_mode & stat.S_IROTH, file)

    def test_removal_removes_our_directories(self):
        self.command(*REMOVAL)
        self.assertEqual([], filesBelow(self.prefix))
        self.assertEqual([], os.listdir(os.path.join(self.prefix, "lib")))

    def test_removal_without_an_installation_fails(self):
        os.remove(MANIFEST)
        run = subprocess.run(REMOVAL, capture_output=True, text=True, check=False)
        self.assertEqual((1, True), (run.returncode, "Nothing was installed" in run.stderr))


if __name__ == "__main__":
    unittest.main()
