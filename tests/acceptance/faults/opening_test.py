"""Files and directories that cannot be opened, at each of the three openings of a node file and everywhere else.

The tool does not check an opening: an input that cannot be opened looks empty, and writes to such an output are lost.
"""
import errno
import os
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, SANITIZED, output
from expected_messages import closingRange, errorMessage, filePass, finishedRun, finishMessage, recorded
from fault_checks import PASS, FaultTest, failing, fails, failsForever, noting

HEADER = b"x;y;z\n"
A, B = HEADER + b"1;1;5\n2;2;5\n", HEADER + b"3;3;5\n4;4;5\n5;5;5\n"
COUNTS = {"a.xyz": 2, "b.xyz": 3}
ERRORS = (errno.EMFILE, errno.ENFILE, errno.EACCES, errno.EIO, errno.ENOMEM)


class OpeningTest(FaultTest):
    def setUp(self):
        super().setUp()
        self.giveFaultJob({"a.xyz": (A, A[6:]), "b.xyz": (B, B[6:])})

    def clipFailing(self, path, *outcomes, call="open", **settings):
        self.clearOutput()
        return self.clip(environment=failing(call, path, *outcomes), **settings)

    def lineCounts(self):
        return [COUNTS[name] for name in self.walkOrder()]

    def passes(self, partOfA, partOfB):
        """Returns the messages of both files in the order of the passes.

        Each part is the line count and a function from the lines done before the file to its messages.
        """
        parts = [partOfA, partOfB] if self.walkOrder()[0] == "a.xyz" else [partOfB, partOfA]
        (lineCount, first), (_, second) = parts
        return [*first(0), *second(lineCount)]


class NodeFiles(OpeningTest):
    def test_each_file_is_opened_three_times_and_a_directory_never(self):
        self.give({"base/data/folder.xyz": DIRECTORY})
        selection, passes, linesDone = [], [], 0
        for name in (name for name in self.walkOrder() if name in COUNTS):
            selection += [f"open data/{name}", f"close data/{name}"] * 2
            *before, end = filePass(COUNTS[name], linesDone, 5)
            passes += [f"open data/{name}", f"open out/{name}", *before, f"close data/{name}", f"close out/{name}", end]
            linesDone += COUNTS[name]
        sender, *messages = recorded(passes, closingRange(), finishMessage())
        self.expect(self.clip(environment=noting(".xyz")), status=0, created=output(5, {"a.xyz": A, "b.xyz": B}),
                    messages=[sender, *selection, *messages])

    def test_output_closes_before_input_after_a_bad_header(self):
        run = self.clip(environment={**noting(".xyz"), **failing("read", "data/a.xyz", failsForever(), opening=3)})
        at = run.messages.index("open out/a.xyz")
        self.assertEqual(run.messages[at - 1:at + 5], ["open data/a.xyz", "open out/a.xyz", *errorMessage(""),
                                                       "close out/a.xyz", "close data/a.xyz"])

    def test_failed_first_opening_skips_the_file(self):
        for error in ERRORS:
            with self.subTest(error=error):
                for outcomes in ((fails(error),), (failsForever(error),)):
                    run = self.clipFailing("data/a.xyz", *outcomes)
                    self.expectFinished(run, 3, {"b.xyz": B}, lineCounts=[3])

    def test_failed_second_opening_counts_minus_one_line(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("data/a.xyz", PASS, fails(error))
                passes = self.passes((-1, lambda done: filePass(-1, done, 2)), (3, lambda done: filePass(3, done, 2)))
                self.expect(run, status=0, created=output(3, {"b.xyz": B}),
                            messages=recorded(passes, closingRange(), finishMessage()))

    def test_failed_third_opening_reports_an_empty_error(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("data/a.xyz", PASS * 2, failsForever(error))
                passes = self.passes((2, lambda done: errorMessage("")), (3, lambda done: filePass(3, done, 5)))
                self.expect(run, status=0, console=[""], created=output(4, {"a.xyz": b"", "b.xyz": B}),
                            messages=recorded(passes, closingRange(), finishMessage()))

    def test_failed_second_and_third_opening_count_one(self):
        run = self.clipFailing("data/a.xyz", PASS, failsForever(errno.EMFILE))
        passes = self.passes((-1, lambda done: errorMessage("")), (3, lambda done: filePass(3, done, 2)))
        self.expect(run, status=0, console=[""], created=output(4, {"a.xyz": b"", "b.xyz": B}),
                    messages=recorded(passes, closingRange(), finishMessage()))

    def test_no_readable_file_means_no_input_files(self):
        run = self.clipFailing(".xyz", failsForever(errno.EMFILE))
        self.expectFailed(run, "There are no input files.", created={"base/out": DIRECTORY})


class Outputs(OpeningTest):
    def test_counts_lines_of_an_output_that_cannot_be_opened(self):
        for error in (*ERRORS, errno.ENOSPC, errno.EROFS):
            with self.subTest(error=error):
                run = self.clipFailing("out/a.xyz", fails(error))
                self.expectFinished(run, 5, {"b.xyz": B}, self.lineCounts())

    def test_unopenable_count_file_is_missing_silently(self):
        for error in (*ERRORS, errno.ENOSPC, errno.EROFS):
            with self.subTest(error=error):
                run = self.clipFailing("out/total_node_count.txt", fails(error))
                self.expect(run, status=0, created={"base/out": DIRECTORY, "base/out/a.xyz": A, "base/out/b.xyz": B},
                            messages=finishedRun(*self.lineCounts()))


class EverythingElse(OpeningTest):
    def test_unopenable_boundary_file_is_not_found(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("area.xml", fails(error))
                self.expectFailed(run, "Boundary file area.xml not found", "Boundary file area.xml does not exist")

    def test_unopenable_input_directory_throws(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("base/data", fails(error), call="opendir")
                self.expectThrown(run, "boost::filesystem::directory_iterator::construct",
                                  created={"base/out": DIRECTORY})
                self.assertIn(os.strerror(error).encode(), run.console)

    def test_failed_status_of_an_entry_or_directory_throws(self):
        for path, created in (("/base", {}), ("base/data", {}), ("base/out", {}), ("a.xyz", {"base/out": DIRECTORY})):
            with self.subTest(path=path):
                run = self.clipFailing(path.lstrip("/"), fails(errno.EIO), call="stat")
                self.expectThrown(run, "boost::filesystem::status", created=created)

    def test_walk_that_fails_at_any_entry_throws_before_a_pass(self):
        for number in range(1, 5):  # the two nodes, "." and ".."
            with self.subTest(entry=number):
                run = self.clipFailing("base/data", PASS * number, fails(errno.EIO), call="readdir")
                self.expectThrown(run, r"boost::filesystem::directory_iterator::operator\+\+",
                                  created={"base/out": DIRECTORY})

    @unittest.skipIf(SANITIZED, "sanitizers need descriptors for pipes")
    def test_low_limit_of_open_files_ends_the_run_in_order(self):
        # Four are open at the start. The walk needs one more, and its files and the passes need another one.
        for limit, expected in ((5, "failed"), (6, "finished"), (7, "finished"), (8, "finished"), (9, "finished")):
            for language in ("-lang=de", "-lang=en"):
                with self.subTest(limit=limit, language=language):
                    self.clearOutput()
                    run = self.clipPiped(language, beforeStart=lambda: resource.setrlimit(resource.RLIMIT_NOFILE,
                                                                                          (limit, limit)))
                    self.assertEqual(self.check(run), expected, run)
                    self.assertEqual(run.console.count(b"\n"), 1 if expected == "failed" else 0)


if __name__ == "__main__":
    unittest.main()
