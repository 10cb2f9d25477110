"""Builds the tool with a messaging library from elsewhere in place of the one in the sources, and runs it.

The library in tests/support/external_processmessage has the same classes with other private parts, is compiled and
installed on its own, and notes every call in a file.
"""
import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
LIBRARY = os.path.join(ROOT, "tests", "support", "external_processmessage")
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"

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
    """Configures, and builds a target; gives all that was said on the way."""
    generator = ["-G", "Ninja"] if shutil.which("ninja") else []
    return command("cmake", "-S", source, "-B", directory, *generator, "-DCMAKE_BUILD_TYPE=Debug", *options) + command(
        "cmake", "--build", directory, "--target", target, "--verbose", "--parallel", "2")


@unittest.skipIf(SANITIZED, "a build of its own, which the sanitizers do not reach")
class ExternalProcessMessage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.mkdtemp(prefix="vadelclip-")
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        library = os.path.join(cls.directory, "library")
        cls.prefix = os.path.join(cls.directory, "prefix")
        build(LIBRARY, library, "all")
        command("cmake", "--install", library, "--prefix", cls.prefix)
        cls.tool = os.path.join(cls.directory, "tool", "Vadelclip")
        cls.buildText = build(ROOT, os.path.dirname(cls.tool), "Vadelclip",
                              "-DVADELCLIP_EXTERNAL_PROCESSMESSAGE=ON", "-DVADELCLIP_TESTS=OFF", "-DCMAKE_UNITY_BUILD=ON",
                              f"-DCMAKE_PREFIX_PATH={cls.prefix}")

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
        """Runs the tool: status, console, standard error, and the calls that reached the library."""
        result = subprocess.run([self.tool, *arguments], cwd=self.job, stdin=subprocess.DEVNULL, capture_output=True,
                                text=True, timeout=20,
                                env={**os.environ, "EXTERNAL_PROCESSMESSAGE_FILE": os.path.join(self.job, "calls")})
        return result.returncode, result.stdout, result.stderr, self.read("calls").splitlines()

    def testARunSendsItsMessagesThroughTheLibrary(self):
        self.assertEqual(
            (0, "", "", ["Instance true", "MessageSender true", "StateMessage 1 Clipping elevation data... true", "end StateMessage",
                         "ProgressMessage 0 100 3", "OnProgress 0 false", "OnProgress 1 false", "OnProgress 2 false",
                         "end ProgressMessage", "ProgressMessage 1 100 100", "OnProgress 100 false",
                         "end ProgressMessage",
                         "FinishMessage 1 Finished clipping elevation data with model boundaries",
                         "end FinishMessage", "~MessageSender"]),
            self.runTool("base/data", "out", "area.xml", "-lang=en", "-pipe"))
        self.assertEqual("x;y;z\n5;5;1\n6;6;3\n", self.read("base/out/a.xyz"))
        self.assertEqual("2\n", self.read("base/out/total_node_count.txt"))

    def testAFailedRunSendsItsMessagesThroughTheLibrary(self):
        os.mkdir(os.path.join(self.job, "base", "out"))
        text = "Output directory base/out already exists, aborting in order avoid overwriting of existing data"
        self.assertEqual(
            (1, text + "\n", "", ["Instance false", "MessageSender false", f"ErrorMessage 2 {text}", "end ErrorMessage",
                                  "FailedMessage 1 Clipping of elevation data with model boundaries failed.",
                                  "end FailedMessage", "~MessageSender"]),
            self.runTool("base/data", "out", "area.xml", "-lang=en"))

    def testTheOptionIsEnough(self):
        """Also where the tests, which do not fit another library, are not switched off by hand."""
        command("cmake", "-S", ROOT, "-B", os.path.join(self.job, "build"), "-DVADELCLIP_EXTERNAL_PROCESSMESSAGE=ON",
                f"-DCMAKE_PREFIX_PATH={self.prefix}")

    def testTheLayerInTheSourcesTakesNoPart(self):
        self.assertIn(os.path.join("src", "CMakeFiles", "vadelclip_main.dir"), self.buildText)
        self.assertNotIn(os.path.join("src", "processmessage"), self.buildText)


if __name__ == "__main__":
    unittest.main()
