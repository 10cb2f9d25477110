"""Standard input, output and error that are closed, broken or full: output files are correct and the run continues."""
import contextlib
import os
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import TOOL, AcceptanceTest, output
from expected_messages import (BAD_SEPARATOR, USAGE, jsonError, jsonFailedRun, jsonFinish, jsonFinishedRun,
                               jsonProgress)

NODES = b"x;y;z\n1;1;5\n30;3;5\n"
KEPT = b"x;y;z\n1;1;5\n"
CLOSED = (0,), (1,), (2,), (0, 1), (0, 2), (1, 2), (0, 1, 2)
# With these languages the set-up of the catalogues writes to the console before the first message.
NOT_CONVERTIBLE = "-lang=de@x", "-lang=de_"


class StandardDescriptors(AcceptanceTest):
    def setUp(self):
        super().setUp()
        self.seenWhileFull = []

    def startWithout(self, descriptors, *arguments):
        return self.start(*arguments, tool=TOOL, closed=descriptors)

    def test_closed_descriptors_change_no_result(self):
        messages = jsonFinishedRun(0.0, 50.0, 100.0)
        for closed in CLOSED:
            for options in (["-lang=en"], ["-lang=en", "-pipe"]):
                with self.subTest(closed=closed, options=options):
                    self.startOver()
                    self.giveJob({"a.xyz": NODES})
                    run = self.startWithout(closed, "base/data", "out", "area.xml", *options)
                    self.expect(run, status=0, created=output(1, {"a.xyz": KEPT}),
                                messages=messages if "-pipe" in options else [])

    def test_closed_descriptors_become_the_null_device(self):
        for closed in CLOSED:
            with self.subTest(closed=closed):
                self.startOver()
                self.giveJob({})
                found = []

                def look(closed=closed, found=found):
                    self.waitFor(lambda: os.path.exists(self.path("base/out/a.xyz")), "the pass")
                    found.extend(os.readlink(f"/proc/{self.runningProcess().pid}/fd/{descriptor}") for descriptor in closed)

                self.serve("base/data/a.xyz", NODES, NODES, [b"x;y;z\n1;1;5\n", look, b"30;3;5\n"])
                run = self.startWithout(closed, "base/data", "out", "area.xml", "-lang=en")
                self.expect(run, status=0, created=output(1, {"a.xyz": KEPT}))
                self.assertEqual(found, [os.devnull] * len(closed))

    def test_closed_descriptors_allow_an_unconvertible_language(self):
        for closed in CLOSED:
            for option in NOT_CONVERTIBLE:
                with self.subTest(closed=closed, option=option):
                    self.expectUnchangedRun(option, [] if 1 in closed else ["Conversion failed"], closed=closed)

    def expectUnchangedRun(self, option, lines=(), **settings):
        self.startOver()
        self.giveJob({"a.xyz": NODES})
        run = self.clip(option, "-pipe", tool=TOOL, **settings)
        self.expect(run, status=0, console=lines, created=output(1, {"a.xyz": KEPT}),
                    messages=jsonFinishedRun(0.0, 50.0, 100.0))

    def test_no_output_file_becomes_a_closed_console(self):
        self.expectRefusedHeader(lambda: {"closed": (0, 1, 2)})

    def expectRefusedHeader(self, prepare):
        """The last opening refuses the header while the output file is open: the error must not be written to it.

        @param prepare  returns settings for the start of each run
        """
        messages = [jsonError(BAD_SEPARATOR), *jsonProgress(100.0), jsonFinish()]
        for options in (["-lang=en"], ["-lang=en", "-pipe"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveJob({})
                self.serve("base/data/a.xyz", NODES, NODES, b"x:y:z\n")
                run = self.clip(*options, tool=TOOL, **prepare())
                self.expect(run, status=0, created=output(1, {"a.xyz": b""}),
                            messages=messages if "-pipe" in options else [])

    def test_failing_run_with_closed_descriptors_ends_in_order(self):
        for closed in ((1,), (0, 1, 2)):
            with self.subTest(closed=closed):
                run = self.startWithout(closed, "-lang=en", "-pipe")
                self.expect(run, status=1, messages=jsonFailedRun(USAGE))

    def test_console_without_a_reader_does_not_end_the_run(self):
        for options in ([], ["-pipe"]):
            with self.subTest(options=options):
                run = self.start("-lang=en", *options, tool=TOOL, console=self.brokenPipe())
                self.expect(run, status=1, messages=jsonFailedRun(USAGE) if options else [])

    def test_console_without_a_reader_changes_no_result(self):
        self.expectRefusedHeader(lambda: {"console": self.brokenPipe()})

    def test_console_without_a_reader_does_not_end_the_set_up(self):
        for option in NOT_CONVERTIBLE:
            for closed in ((), (0,), (2,), (0, 2)):
                with self.subTest(option=option, closed=closed):
                    self.expectUnchangedRun(option, console=self.brokenPipe(), closed=closed)

    def pipe(self):
        ends = os.pipe()
        for end in ends:
            self.addCleanup(os.close, end)
        return ends

    def brokenPipe(self):
        reading, writing = os.pipe()
        os.close(reading)
        self.addCleanup(os.close, writing)
        return writing

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_console_on_a_full_disk_does_not_end_the_run(self):
        with open("/dev/full", "wb") as full:
            run = self.start("-lang=en", "-pipe", tool=TOOL, console=full.fileno())
        self.expect(run, status=1, messages=jsonFailedRun(USAGE))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_console_on_a_full_disk_changes_no_result(self):
        with open("/dev/full", "wb") as full:
            self.expectRefusedHeader(lambda: {"console": full.fileno()})

    def test_full_pipe_blocks_the_run_until_it_is_read(self):
        self.needPosix("fills a pipe without blocking")
        self.expectRefusedHeader(self.fullPipe)
        self.assertEqual(self.seenWhileFull, [True, True])

    def fullPipe(self):
        """Returns a console whose pipe is full. It is read after the run has blocked on it."""
        reading, writing = self.pipe()
        os.set_blocking(writing, False)
        with contextlib.suppress(BlockingIOError):
            while True:
                os.write(writing, b" " * 4096)
        os.set_blocking(writing, True)
        threading.Thread(target=self.readOnceItWaits, args=(reading,), daemon=True).start()
        return {"console": writing}

    def readOnceItWaits(self, reading):
        self.waitFor(lambda: os.path.exists(self.path("base/out/a.xyz")), "the pass")
        time.sleep(0.5)
        self.seenWhileFull.append(self.runningProcess().poll() is None
                                  and not os.path.exists(self.path("base/out/total_node_count.txt")))
        while os.read(reading, 1 << 20):
            pass


if __name__ == "__main__":
    unittest.main()
