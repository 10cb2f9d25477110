"""The unpacked package for Windows: it contains everything that the executable needs, and the licences of all parts."""
import glob
import os
import re
import subprocess
import sys
import unittest
import zipfile

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
sys.path[:0] = [os.path.join(ROOT, "tests", "support"), os.path.join(ROOT, "tests", "acceptance", "tool")]
from acceptance import TOOL, AcceptanceTest  # noqa: E402
from examples_test import readCounts  # noqa: E402
from target_platform import launch  # noqa: E402


class Package(AcceptanceTest):
    def setUp(self):
        super().setUp()
        packages = glob.glob(os.path.join(os.path.dirname(TOOL), "Vadelclip-*-windows-x64.zip"))
        self.assertEqual(len(packages), 1, "scripts/build-windows.sh creates it")
        self.name = os.path.basename(packages[0]).removesuffix(".zip")
        with zipfile.ZipFile(packages[0]) as package:
            package.extractall(self.directory)
            self.files = {entry.removeprefix(self.name + "/"): package.read(entry) for entry in package.namelist()}
        self.tool = self.path(self.name + "/Vadelclip.exe")

    def test_package_contains_the_tested_executable(self):
        with open(TOOL, "rb") as file:
            self.assertEqual(self.files["Vadelclip.exe"], file.read())

    def test_unpacked_tool_prints_german(self):
        run = self.start(tool=self.tool)
        self.assertEqual((run.status, run.errors), (1, b""))
        self.assertTrue(run.console.startswith(b"Aufruf: Vadelclip <"), run.console)

    def test_unpacked_tool_clips_the_examples(self):
        for boundaryFile in ("merewether/road.xml", "merewether/buildings.xml", "coast/islands.xml"):
            with self.subTest(boundaryFile=boundaryFile):
                exampleSet, name = boundaryFile.split("/")
                place = f"{self.name}/examples/{exampleSet}"
                run = self.start(f"{place}/nodes", "kept-" + name, f"{place}/{name}", tool=self.tool)
                self.assertEqual((run.status, run.console, run.errors), (0, b"", b""))
                self.assertEqual(run.tree[f"{place}/kept-{name}/total_node_count.txt"],
                                 b"%d\r\n" % readCounts(name)["all"])

    def document(self, pattern):
        """Returns the text that the group of a pattern matches in the page for Windows."""
        return re.search(pattern, self.files["docs/windows.md"].decode(), re.DOTALL).group(1)

    def runThere(self, program, *arguments):
        """Runs a program in the directory of the unpacked package."""
        return subprocess.run(launch(program, arguments, launcher=False), cwd=self.path(self.name), check=False,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)

    def runInPrompt(self, commands):
        with open(self.path(self.name + "/commands.bat"), "w", encoding="ascii", newline="\r\n") as file:
            file.write("@echo off\n" + commands)
        return self.runThere("cmd", "/c", "commands.bat").stdout

    def test_first_run_works_as_documented(self):
        commands = self.document("## A first run\n.*?\n\n((?:    .*?\n)+)\n")
        self.assertEqual(self.runInPrompt(commands).split()[-2:], ["0", "10315"])
        self.assertEqual(self.runInPrompt(commands).split()[-2:], ["1", "10315"])

    def test_backslash_before_a_quote_swallows_later_arguments(self):
        # The text is German, because "-lang=en" is one of these arguments.
        for name, expected in (("nodes", r"^0\n$"), ("nodes\\", r"^Aufruf: .*\n1\n$")):
            with self.subTest(name=name):
                text = self.runInPrompt(f'Vadelclip.exe "examples\\merewether\\{name}" kept'
                                        " examples\\merewether\\road.xml -lang=en\necho %errorlevel%\n")
                self.assertRegex(text, expected)

    def test_documented_caller_gets_the_messages(self):
        with open(self.path("caller.c"), "w", encoding="ascii") as file:
            file.write(self.document("```c\n(.*?)```"))
        subprocess.run(["x86_64-w64-mingw32-gcc", "-Wall", "-Wextra", "-Werror", self.path("caller.c"), "-o",
                        self.path(self.name + "/caller.exe")], check=True)
        self.assertEqual(self.runThere("caller.exe").stdout.split(), ["Exit", "status", "0"])
        with open(self.path(self.name + "/messages.jsonl"), encoding="utf-8") as file:
            lines = file.readlines()
        self.assertTrue(lines[0].startswith('{"type":"state"'), lines[0])
        self.assertTrue(lines[-1].startswith('{"type":"finish"'), lines[-1])
        self.runInPrompt("Vadelclip.exe examples\\merewether\\nodes other"
                         " examples\\merewether\\road.xml -pipe 3>none\n")
        self.assertTrue(os.path.exists(self.path(self.name + "/examples/merewether/other/total_node_count.txt")))
        self.assertEqual(os.path.getsize(self.path(self.name + "/none")), 0)

    def test_notices_name_every_licence(self):
        licences = {name: content for name, content in self.files.items() if name.startswith("licences/")}
        self.assertEqual(set(re.findall(r"licences/[\w.+-]+\.txt", self.files["NOTICES.txt"].decode())), set(licences))
        self.assertTrue(all(content.strip() for content in licences.values()))


if __name__ == "__main__":
    unittest.main()
