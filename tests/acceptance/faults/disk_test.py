"""A disk that fails while output is written: full, broken, interrupted or full only for a while.

The tool does not check its output streams. Lines that could not be written are missing, and the rest of the run is
unchanged: the count includes the missing lines.
"""
import errno
import os
import resource
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, TOOL, output
from fault_checks import PASS, FaultTest, failing, fails, failsForever, takes, takesForever
from expected_messages import jsonFailedRun

HEADER = b"x;y;z\n"
# Longer than the buffer of a stream, which therefore writes it by another system call than short lines.
LONG = b"3;3;" + b"k" * 3000 + b"\n"
KEPT = [HEADER, b"1;1;5\n", b"2;2;5\n", LONG, b"4;4;5\n"]
JOB = {"a.xyz": (b"x;y;z\n1;1;5\n20;1;5\n2;2;5\n" + LONG + b"4;4;5\n20;20;5\n", b"".join(KEPT[1:])),
       "b.csv": (b"X,Y,Z\n20,1,5\n30,1,5\n", b""),
       "c.txt": (b"x y z g\n5 5 1 1\n", b"5 5 1 1\n")}
OUTPUTS = {"a.xyz": b"".join(KEPT), "c.txt": b"x y z g\n5 5 1 1\n"}
LINES = {"a.xyz": KEPT, "b.csv": [b"X,Y,Z\n"], "c.txt": [b"x y z g\n", b"5 5 1 1\n"]}
COUNT = "total_node_count.txt"


class DiskTest(FaultTest):
    def setUp(self):
        super().setUp()
        self.giveFaultJob(JOB)
        run = self.clipPiped()
        self.assertEqual(self.check(run), "finished")
        self.messages = run.messages

    def clipFailing(self, name, *outcomes, call="write"):
        self.clearOutput()
        return self.clipPiped(environment=failing(call, f"/out/{name}", *outcomes))

    def expectUnnoticed(self, run, files, count=b"5\n"):
        """Expects a run in which only these output files differ from a run without failure."""
        self.expect(run, status=0, created={"base/out": DIRECTORY, f"base/out/{COUNT}": count,
                                            **{f"base/out/{name}": content for name, content in files.items()}},
                    messages=self.messages)


class FailingWrites(DiskTest):
    def test_each_line_is_one_write(self):
        for name, lines in {**LINES, COUNT: [b"5\n"]}.items():
            with self.subTest(name=name):
                self.clearOutput()
                self.assertEqual(self.countOfCalls(
                    lambda path, end=f"/out/{name}": failing("write", end, countTo=path)), len(lines))

    def test_failed_write_keeps_the_lines_before_it(self):
        for error in (errno.ENOSPC, errno.EIO, errno.EDQUOT):
            for name, lines in LINES.items():
                for number in range(len(lines)):
                    with self.subTest(error=error, name=name, write=number):
                        run = self.clipFailing(name, PASS * number, failsForever(error))
                        self.check(run, silent=True)
                        written = {name: b"".join(lines[:number])} if name != "b.csv" else {}
                        self.expectUnnoticed(run, {**OUTPUTS, **written})

    def test_unwritable_count_leaves_an_empty_file(self):
        self.expectUnnoticed(self.clipFailing(COUNT, failsForever(errno.ENOSPC)), OUTPUTS, count=b"")

    def test_full_disk_leaves_empty_files(self):
        self.clearOutput()
        run = self.clipPiped(environment=failing("write", "", failsForever(errno.ENOSPC)))
        self.expect(run, status=0, created={f"base/out/{name}": b"" for name in (*OUTPUTS, COUNT)})

    def test_writes_of_one_byte_complete_the_files(self):
        for name in (*LINES, COUNT):
            with self.subTest(name=name):
                self.expectUnnoticed(self.clipFailing(name, takesForever(1)), OUTPUTS)

    def test_interrupted_writes_complete_the_files(self):
        for name, lines in {**LINES, COUNT: [b""]}.items():
            for number in range(len(lines)):
                with self.subTest(name=name, write=number):
                    run = self.clipFailing(name, PASS * number, fails(errno.EINTR), takes(1), fails(errno.EINTR))
                    self.expectUnnoticed(run, OUTPUTS)

    def test_write_cut_by_a_full_disk_leaves_part_of_a_line(self):
        for number in range(len(KEPT)):
            with self.subTest(write=number):
                run = self.clipFailing("a.xyz", PASS * number, takes(3), failsForever(errno.ENOSPC))
                self.check(run, wholeLines=False, silent=True)
                self.expectUnnoticed(run, {**OUTPUTS, "a.xyz": b"".join(KEPT[:number]) + KEPT[number][:3]})

    def test_failed_closing_leaves_complete_files(self):
        for name in (*LINES, COUNT):
            with self.subTest(name=name):
                self.expectUnnoticed(self.clipFailing(name, failsForever(errno.EIO), call="fclose"), OUTPUTS)


class SpaceAgain(DiskTest):
    """After a failed write the stream accepts no further line. When it is closed, it writes its buffer again."""

    def test_failed_line_is_written_at_the_end_of_the_pass(self):
        for number, line in enumerate(KEPT):
            with self.subTest(write=number):
                run = self.clipFailing("a.xyz", PASS * number, fails(errno.ENOSPC))
                held = line if line != LONG else b""  # too long for the buffer
                self.check(run, silent=True)
                self.expectUnnoticed(run, {**OUTPUTS, "a.xyz": b"".join(KEPT[:number]) + held})

    def test_line_cut_short_is_written_again(self):
        run = self.clipFailing("a.xyz", PASS, takes(3), fails(errno.ENOSPC))
        self.expectUnnoticed(run, {**OUTPUTS, "a.xyz": HEADER + b"1;1" + b"1;1;5\n"})


def limitFileSize(limit, ignored):
    """For `beforeStart`.

    @param ignored  the signal is ignored, so that a write beyond the limit is an error
    """
    resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN if ignored else signal.SIG_DFL)


class LimitedFileSize(DiskTest):
    """These runs have no message channel, because the limit would apply to its file too."""

    LIMITS = 3, 6, 12, 14, 18, 20, 2000

    def clipLimited(self, limit, ignored):
        self.clearOutput()
        return self.clip("-lang=en", tool=TOOL, beforeStart=lambda: limitFileSize(limit, ignored))

    def test_signal_ends_the_run_within_a_line(self):
        for limit in self.LIMITS:
            with self.subTest(limit=limit):
                run = self.clipLimited(limit, ignored=False)
                self.assertEqual((run.status, run.console, run.errors), (-signal.SIGXFSZ, b"", b""))
                self.assertEqual(self.check(run, wholeLines=False, piped=False), "ended")
                outputs = self.checkOutputs(run, wholeLines=False)
                self.assertNotIn(COUNT, outputs)
                self.assertEqual(max(map(len, outputs.values())), limit)

    def test_limit_acts_like_a_full_disk_if_the_signal_is_ignored(self):
        for limit in self.LIMITS:
            with self.subTest(limit=limit):
                run = self.clipLimited(limit, ignored=True)
                self.messages = []
                self.check(run, wholeLines=False, silent=True, piped=False)
                self.expectUnnoticed(run, {name: content[:limit] for name, content in OUTPUTS.items()})


class FailingDirectories(DiskTest):
    def test_failed_creation_of_output_directory_throws(self):
        for error in (errno.ENOSPC, errno.EIO, errno.EROFS, errno.EMLINK):
            with self.subTest(error=error):
                self.clearOutput()
                run = self.clipPiped(environment=failing("mkdir", "base/out", fails(error)))
                text, = run.consoleLines()
                self.assertRegex(text, "^boost::filesystem::create_directory: " + os.strerror(error))
                self.expect(run, status=1, console=[text], messages=jsonFailedRun(text))

    def test_failed_removal_ends_the_run_before_the_count(self):
        for error in (errno.EIO, errno.EROFS, errno.EBUSY):
            with self.subTest(error=error):
                run = self.clipFailing("b.csv", fails(error), call="unlink")
                text, = run.consoleLines()
                self.assertRegex(text, "^boost::filesystem::remove: " + os.strerror(error))
                self.assertEqual(self.check(run), "failed")
                self.assertEqual(run.tree["base/out/b.csv"], b"X,Y,Z\n")
                self.assertEqual(run.messages[-2:], jsonFailedRun(text))


class FailingChannel(DiskTest):
    """The message channel is a file here. Its failures do not change the result."""

    def clipOntoFile(self, *outcomes):
        self.clearOutput()
        path = os.path.join(self.aside, "channel")
        with open(path, "wb") as channel:
            run = self.clipPiped(channel=channel.fileno(), environment=failing("write", "/aside/channel", *outcomes))
        run.messages = []
        self.expect(run, status=0, created=output(5, OUTPUTS))
        return Path(path).read_text(encoding="utf-8")

    def test_interrupted_and_short_writes_lose_no_message(self):
        for outcomes in ((fails(errno.EINTR), takes(1), fails(errno.EINTR)) * 20, (takesForever(7),)):
            with self.subTest(outcomes=outcomes):
                self.assertEqual(self.clipOntoFile(*outcomes), "".join(line + "\n" for line in self.messages))

    def test_first_failed_write_silences_the_channel(self):
        for number in range(len(self.messages)):
            for error in (errno.ENOSPC, errno.EIO):
                with self.subTest(message=number, error=error):
                    self.assertEqual(self.clipOntoFile(PASS * number, fails(error)),
                                     "".join(line + "\n" for line in self.messages[:number]))


if __name__ == "__main__":
    unittest.main()
