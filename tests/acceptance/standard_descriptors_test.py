"""Standard input, output and error closed, broken or full: output files hold nodes only and the run goes its way."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from acceptance import TOOL, AcceptanceTest, output
from expected_messages import BAD_SEPARATOR, USAGE, jsonError, jsonFailed, jsonFinish, jsonProgress, jsonState

NODES = b"x;y;z\n1;1;5\n30;3;5\n"
KEPT = b"x;y;z\n1;1;5\n"


class StandardDescriptors(AcceptanceTest):
    def startWithout(self, descriptors, *arguments):
        return self.start(*arguments, tool=TOOL,
                          closed=descriptors)

    def test_closed_at_the_start_they_change_no_result(self):
        messages = [jsonState(), *jsonProgress(0.0, 50.0, 100.0), jsonFinish()]
        for closed in ((0,), (1,), (2,), (0, 1), (1, 2), (0, 1, 2)):
            for options in (["-lang=en"], ["-lang=en", "-pipe"]):
                with self.subTest(closed=closed, options=options):
                    self.startOver()
                    self.giveJob({"a.xyz": NODES})
                    run = self.startWithout(closed, "base/data", "out", "area.xml", *options)
                    self.expect(run, status=0, created=output(1, {"a.xyz": KEPT}),
                                messages=messages if "-pipe" in options else [])

    def test_closed_at_the_start_no_output_file_becomes_the_console(self):
        # The header is refused in the last opening, while the output file is open: the error must not land in it.
        messages = [jsonError(BAD_SEPARATOR), *jsonProgress(100.0), jsonFinish()]
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveJob({})
                self.serve("base/data/a.xyz", NODES, NODES, b"x:y:z\n")
                run = self.startWithout((0, 1, 2), "base/data", "out", "area.xml", *options)
                self.expect(run, status=0, created=output(1, {"a.xyz": b""}),
                            messages=messages if "-pipe" in options else [])

    def test_closed_at_the_start_a_failing_run_still_ends_in_order(self):
        for closed in ((1,), (0, 1, 2)):
            with self.subTest(closed=closed):
                run = self.startWithout(closed, "-lang=en", "-pipe")
                self.expect(run, status=1, messages=[jsonError(USAGE), jsonFailed()])

    def test_a_console_nobody_reads_does_not_end_the_run(self):
        for options in ([], ["-pipe"]):
            with self.subTest(options=options):
                reading, writing = os.pipe()
                os.close(reading)
                run = self.start("-lang=en", *options, tool=TOOL, console=writing)
                os.close(writing)
                self.expect(run, status=1, messages=[jsonError(USAGE), jsonFailed()] if options else [])

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_a_console_on_a_full_disk_does_not_end_the_run(self):
        with open("/dev/full", "wb") as full:
            run = self.start("-lang=en", "-pipe", tool=TOOL, console=full.fileno())
        self.expect(run, status=1, messages=[jsonError(USAGE), jsonFailed()])


if __name__ == "__main__":
    unittest.main()
