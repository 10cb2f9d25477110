"""Catalogues next to the tool that are cut, changed, or no regular files.

A library reads the catalogues and checks little: a bad one can end or crash any process that loads it. The tool loads
it before it does anything else, so an ended process leaves no more than a killed run does. A catalogue with other texts
does not change the result.
"""
import collections
import random
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED, TOOL, dropPowersOfRoot
from catalogue_files import GERMAN, CatalogueTest
from fault_checks import FaultTest
from target_platform import WINDOWS, endedAbnormally, withoutTextMode

JOB = {"a.xyz": (b"x;y;z\n1;1;5\n20;1;5\n2;2;5\n", b"1;1;5\n2;2;5\n"), "b.csv": (b"X,Y,Z\n20,1,5\n", b"")}
# Fewer runs under the emulator, which makes each start slow.
CUTS, CHANGES = (20, 60) if WINDOWS else (60, 200)


class HostileCatalogues(FaultTest, CatalogueTest):
    def setUp(self):
        super().setUp()
        self.giveFaultJob(JOB)
        self.german = Path(GERMAN).read_bytes()
        self.tool = self.copyOfTool({"de": self.german}, TOOL)
        self.catalogue = Path(self.tool).parent / "locale/de/LC_MESSAGES/VD2D.mo"

    def clipWith(self, content=None, **settings):
        """@return the run and the result of `check`"""
        if content is not None:
            self.catalogue.write_bytes(content)
        self.clearOutput()
        run = self.clip("-pipe", tool=self.tool, **settings)
        # The set-up writes this line to the console alone: there is no sender yet.
        run.console = withoutTextMode(run.console).removeprefix(b"Conversion failed\n")
        return run, self.check(run)

    def expectNothingDone(self, run):
        self.assertTrue(endedAbnormally(run.status), run.status)
        self.assertEqual((run.console, run.messages), (b"", []))
        self.assertNotIn("base/out", run.tree)

    def test_unopenable_catalogue_counts_as_none(self):
        def unreadable():
            self.catalogue.write_bytes(self.german)
            self.catalogue.chmod(0)

        for prepare in (lambda: None, lambda: self.catalogue.symlink_to("VD2D.mo"), unreadable,
                        lambda: self.catalogue.symlink_to("nowhere")):
            self.catalogue.unlink(missing_ok=True)
            prepare()
            run, outcome = self.clipWith(beforeStart=dropPowersOfRoot)
            self.assertEqual(outcome, "finished")
            self.assertIn('"Clipping elevation data..."', run.messages[0])

    def test_file_without_a_catalogue_ends_the_process(self):
        for content in (b"", b"\xde", b"text\n" * 1000, b"\0" * 1000, self.german[::-1], self.german[4:],
                        b"\xde\x12\x04\x95", b"\xde\x12\x04\x95" + b"\xff" * 24, self.german[:28]):
            with self.subTest(content=content[:20]):
                self.expectNothingDone(self.clipWith(content)[0])

    def test_directory_or_device_ends_the_process(self):
        for prepare in (self.catalogue.mkdir, lambda: self.catalogue.symlink_to("/dev/null"),
                        lambda: self.catalogue.symlink_to("/dev/zero")):
            if self.catalogue.is_dir():
                self.catalogue.rmdir()
            else:
                self.catalogue.unlink()
            prepare()
            self.expectNothingDone(self.clipWith()[0])

    def test_catalogue_cut_anywhere_ends_the_process(self):
        for number in range(CUTS):
            length = number * (len(self.german) - 1) // CUTS
            with self.subTest(length=length):
                self.expectNothingDone(self.clipWith(self.german[:length])[0])

    @unittest.skipIf(SANITIZED, "sanitizers would report invalid reads of the library")
    def test_catalogue_with_changed_bytes_corrupts_no_output(self):
        source = random.Random(21)
        outcomes = collections.Counter()
        for number in range(CHANGES):
            content = bytearray(self.german)
            for _ in range(source.randint(1, 3)):
                content[source.randrange(len(content) if number % 2 else 400)] = source.randrange(256)
            with self.subTest(number=number):
                outcomes[self.clipWith(content)[1]] += 1
        self.assertGreater(min(outcomes["finished"], outcomes["ended"]), CHANGES // 20, outcomes)

    def test_en_runs_with_any_catalogue(self):
        for content in (b"", self.german[:1000], self.german[::-1]):
            self.catalogue.write_bytes(content)
            self.clearOutput()
            self.assertEqual(self.check(self.clip("-lang=en", "-pipe", tool=self.tool)), "finished")


if __name__ == "__main__":
    unittest.main()
