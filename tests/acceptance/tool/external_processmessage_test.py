"""Builds the tool with another messaging library in place of the one in the sources, and runs it.

The library in tests/support/external_processmessage has the same classes with other private members and writes every
call to a file. It delivers a message in its destructor and keeps only a reference to its text, so library and tool are
built with the address sanitizer: if the text is freed too early, the sanitizer ends the run.
"""
import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
LIBRARY = os.path.join(ROOT, "tests", "support", "external_processmessage")
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"
GENERATOR = ["-G", "Ninja"] if shutil.which("ninja") else []

AREA = """<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1">
<point x="0" y="0"/><point x="10" y="0"/><point x="10" y="10"/><point x="0" y="10"/>
</polygon></group></VadeDGM></VADELSIM>
"""


def command(*arguments):
    result = subprocess.run(arguments, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True)
    if result.returncode != 0:
        raise AssertionError(f"status {result.returncode}: {' '.join(arguments)}\n{result.stdout}")
    return result.stdout


def build(source, directory, target, *options):
    """Configures and builds a target."""
    command("cmake", "-S", source, "-B", directory, *GENERATOR, "-DCMAKE_BUILD_TYPE=Debug", *options)
    command("cmake", "--build", directory, "--target", target, "--parallel", "2")


FAILED = "Clipping of elevation data with model boundaries failed."
FAILED_GERMAN = "Das Zuschneiden der Höhendaten auf die Modellgrenzen ist fehlgeschlagen."


@unittest.skipIf(SANITIZED, "the test makes its own sanitized build")
class ExternalProcessMessage(unittest.TestCase):
    maxDiff = None  # shows the whole report of the sanitizer

    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.mkdtemp(prefix="vadelclip-")
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        library = os.path.join(cls.directory, "library")
        cls.prefix = os.path.join(cls.directory, "prefix")
        build(LIBRARY, library, "all", "-DCMAKE_CXX_FLAGS=-fsanitize=address -g1")
        command("cmake", "--install", library, "--prefix", cls.prefix)
        cls.tool = os.path.join(cls.directory, "tool", "Vadelclip")
        build(ROOT, os.path.dirname(cls.tool), "Vadelclip", "-DVADELCLIP_EXTERNAL_PROCESSMESSAGE=ON", "-DVADELCLIP_TESTS=OFF",
              "-DVADELCLIP_SANITIZERS=address", f"-DCMAKE_PREFIX_PATH={cls.prefix}")

    def setUp(self):
        self.job = tempfile.mkdtemp(dir=self.directory)
        os.makedirs(os.path.join(self.job, "base", "data"))
        self.write("area.xml", AREA)
        self.write("base/data/a.xyz", "x;y;z\n5;5;1\n11;5;2\n6;6;3\n")

    def write(self, name, content):
        with open(os.path.join(self.job, name), "w", encoding="utf-8", newline="") as file:
            file.write(content)

    def read(self, name):
        with open(os.path.join(self.job, name), encoding="utf-8", newline="") as file:
            return file.read()

    def runTool(self, *arguments):
        """Runs the tool. Returns status, console, standard error, and the calls that reached the library."""
        calls = os.path.join(self.job, "calls")
        if os.path.exists(calls):
            os.remove(calls)
        result = subprocess.run([self.tool, *arguments], cwd=self.job, stdin=subprocess.DEVNULL, capture_output=True,
                                text=True, timeout=120, env={**os.environ, "EXTERNAL_PROCESSMESSAGE_FILE": calls})
        return result.returncode, result.stdout, result.stderr, self.read("calls").splitlines()

    def failure(self, text, closingText):
        return ["Instance false", "MessageSender false", f"ErrorMessage 2 {text}", "end ErrorMessage",
                f"FailedMessage 1 {closingText}", "end FailedMessage", "~MessageSender"]

    def test_good_run_sends_every_message(self):
        for language, state, finished in [
                ("en", "Clipping elevation data...", "Finished clipping elevation data with model boundaries"),
                ("de", "Höhendaten werden zugeschnitten...",
                 "Zuschneiden der Höhendaten auf die Modellgrenzen abgeschlossen")]:
            with self.subTest(language):
                self.assertEqual(
                    (0, "", "", ["Instance true", "MessageSender true", f"StateMessage 1 {state} true",
                                 "end StateMessage", "ProgressMessage 0 100 3", "OnProgress 0 false",
                                 "OnProgress 1 false", "OnProgress 2 false", "end ProgressMessage",
                                 "ProgressMessage 1 100 100", "OnProgress 100 false", "end ProgressMessage",
                                 f"FinishMessage 1 {finished}", "end FinishMessage", "~MessageSender"]),
                    self.runTool("base/data", language, "area.xml", f"-lang={language}", "-pipe"))
                self.assertEqual("x;y;z\n5;5;1\n6;6;3\n", self.read(f"base/{language}/a.xyz"))
                self.assertEqual("2\n", self.read(f"base/{language}/total_node_count.txt"))

    def test_stopped_run_sends_its_error(self):
        os.mkdir(os.path.join(self.job, "base", "out"))
        for language, text, closingText in [
                ("en", "Output directory base/out already exists, aborting in order avoid overwriting of existing data",
                 FAILED),
                ("de", "Das Ausgabeverzeichnis base/out existiert bereits; Abbruch, damit keine vorhandenen Daten "
                 "überschrieben werden", FAILED_GERMAN)]:
            with self.subTest(language):
                self.assertEqual((1, text + "\n", "", self.failure(text, closingText)),
                                 self.runTool("base/data", "out", "area.xml", f"-lang={language}"))

    def test_thrown_error_is_sent(self):
        for language, closingText in [("en", FAILED), ("de", FAILED_GERMAN)]:
            with self.subTest(language):
                status, console, errors, calls = self.runTool("base/data", "no/out", "area.xml", f"-lang={language}")
                text = console.rstrip("\n")
                self.assertTrue(text.startswith("boost::filesystem::create_directory: "), text)
                self.assertEqual((1, "", self.failure(text, closingText)), (status, errors, calls))

    def test_usage_failure_is_sent(self):
        for language, text, closingText in [
                ("en", "Usage: Vadelclip <input directory path> <output directory name> <boundary file path>", FAILED),
                ("de", "Aufruf: Vadelclip <Pfad des Eingabeverzeichnisses> <Name des Ausgabeverzeichnisses> "
                 "<Pfad der Grenzdatei>", FAILED_GERMAN)]:
            with self.subTest(language):
                self.assertEqual((1, text + "\n", "", self.failure(text, closingText)),
                                 self.runTool("base/data", f"-lang={language}"))

    def test_configures_with_the_option_alone(self):
        command("cmake", "-S", ROOT, "-B", os.path.join(self.job, "build"), *GENERATOR, "-DVADELCLIP_EXTERNAL_PROCESSMESSAGE=ON",
                f"-DCMAKE_PREFIX_PATH={self.prefix}")


if __name__ == "__main__":
    unittest.main()
