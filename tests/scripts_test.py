"""Scripts that are given an argument they do not know: they tell their usage, and have not begun with anything."""
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
SCRIPTS = sorted(path for path in (ROOT / "scripts").glob("*.sh") if path.read_text(encoding="utf-8").startswith("#!"))
NEEDED = ("bash", "dirname", "sh")


class UnknownArguments(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.commands = Path(directory.name)
        for name in NEEDED:
            (self.commands / name).symlink_to(shutil.which(name))

    def runScript(self, script, *arguments):
        """With no command to be found that could have an effect: to call one is an error too, and another text."""
        return subprocess.run([script, *arguments], env={"PATH": str(self.commands)}, cwd=self.commands,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)

    def expectUsage(self, script, *arguments):
        with self.subTest(script=script.name, arguments=arguments):
            run = self.runScript(script, *arguments)
            self.assertEqual((2, ""), (run.returncode, run.stdout), run.stderr)
            self.assertRegex(run.stderr, rf"\AUsage: scripts/{script.name}( .*)?\n\Z")

    def test_are_refused_by_every_script_before_it_does_anything(self):
        self.assertGreater(len(SCRIPTS), 15)
        for script in SCRIPTS:
            self.expectUsage(script, "--nonsense")

    def test_are_refused_behind_a_known_one_too(self):
        for name, known in (("release", "--check"), ("test-package", "--chroot"), ("setup", "test"), ("bench", "1"),
                            ("windows-deps", "test")):
            self.expectUsage(ROOT / "scripts" / f"{name}.sh", known, "--nonsense", "--nonsense")

    def test_a_script_that_goes_on_is_noticed(self):
        run = self.runScript(ROOT / "scripts/release.sh")
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("command not found", run.stderr)


class TwoPackages(unittest.TestCase):
    def test_are_not_taken_for_one(self):
        with tempfile.TemporaryDirectory() as directory:
            place = Path(directory)
            (place / "scripts").mkdir()
            shutil.copy(ROOT / "scripts/test-package.sh", place / "scripts")
            (place / "build/package").mkdir(parents=True)
            # Before this comes the question for root, which the test need not be.
            (place / "id").write_text("#!/bin/sh\necho 0\n", encoding="ascii")
            (place / "id").chmod(0o755)
            for name in ("vadelclip_1_amd64.deb", "vadelclip_2_amd64.deb"):
                (place / "build/package" / name).touch()
            for name in NEEDED:
                (place / name).symlink_to(shutil.which(name))
            run = subprocess.run([place / "scripts/test-package.sh"], env={"PATH": directory}, capture_output=True,
                                 text=True, check=False)
        self.assertEqual(1, run.returncode)
        self.assertIn("more than one package", run.stderr)
        self.assertIn("/vadelclip_1_amd64.deb\n", run.stderr)
        self.assertIn("/vadelclip_2_amd64.deb\n", run.stderr)


if __name__ == "__main__":
    unittest.main()
