"""Catalogues that are cut, changed or no files at all, beside the tool.

Reading them is the library's work, and it checks little: a bad one can end or crash any process that loads it. What is
ours: until then nothing is done, and whatever it ends leaves what a killed run leaves. A catalogue that says other
words changes no result.
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
# Fewer where each start goes through an emulator.
CUTS, CHANGES = (20, 60) if WINDOWS else (60, 200)


class HostileCatalogues(FaultTest, CatalogueTest):
    def setUp(self):
        super().setUp()
        self.giveFaultJob(JOB)
        self.german = Path(GERMAN).read_bytes()
        self.tool = self.copyOfTool({"de": self.german}, TOOL)
        self.catalogue = Path(self.tool).parent / "locale/de/LC_MESSAGES/VD2D.mo"

    def clipWith(self, content=None, **settings):
        """@return the run and what `check` says of it"""
        if content is not None:
            self.catalogue.write_bytes(content)
        self.clearOutput()
        run = self.clip("-pipe", tool=self.tool, **settings)
        # The one line that the set-up writes is no message: there is no sender yet.
        run.console = withoutTextMode(run.console).removeprefix(b"Conversion failed\n")
        return run, self.check(run)

    def expectNothingDone(self, run):
        self.assertTrue(endedAbnormally(run.status), run.status)
        self.assertEqual((run.console, run.messages), (b"", []))
        self.assertNotIn("base/out", run.tree)

    def test_what_cannot_be_opened_is_no_catalogue(self):
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

    def test_what_is_no_catalogue_ends_the_process_with_nothing_done(self):
        for content in (b"", b"\xde", b"text\n" * 1000, b"\0" * 1000, self.german[::-1], self.german[4:],
                        b"\xde\x12\x04\x95", b"\xde\x12\x04\x95" + b"\xff" * 24, self.german[:28]):
            with self.subTest(content=content[:20]):
                self.expectNothingDone(self.clipWith(content)[0])

    def test_a_directory_or_a_device_ends_the_process_with_nothing_done(self):
        for prepare in (self.catalogue.mkdir, lambda: self.catalogue.symlink_to("/dev/null"),
                        lambda: self.catalogue.symlink_to("/dev/zero")):
            if self.catalogue.is_dir():
                self.catalogue.rmdir()
            else:
                self.catalogue.unlink()
            prepare()
            self.expectNothingDone(self.clipWith()[0])

    def test_cut_anywhere_it_ends_the_process_with_nothing_done(self):
        for number in range(CUTS):
            length = number * (len(self.german) - 1) // CUTS
            with self.subTest(length=length):
                self.expectNothingDone(self.clipWith(self.german[:length])[0])

    @unittest.skipIf(SANITIZED, "sanitizers would report what the library reads")
    def test_with_bytes_changed_the_run_is_right_or_leaves_a_beginning_in_whole_lines(self):
        source = random.Random(21)
        outcomes = collections.Counter()
        for number in range(CHANGES):
            content = bytearray(self.german)
            for _ in range(source.randint(1, 3)):
                content[source.randrange(len(content) if number % 2 else 400)] = source.randrange(256)
            with self.subTest(number=number):
                outcomes[self.clipWith(content)[1]] += 1
        self.assertGreater(min(outcomes["finished"], outcomes["ended"]), CHANGES // 20, outcomes)

    def test_en_runs_beside_any_of_them(self):
        for content in (b"", self.german[:1000], self.german[::-1]):
            self.catalogue.write_bytes(content)
            self.clearOutput()
            self.assertEqual(self.check(self.clip("-lang=en", "-pipe", tool=self.tool)), "finished")


if __name__ == "__main__":
    unittest.main()
