"""Files and directories that cannot be opened: at each of a node file's three openings, and everywhere else.

Nothing is tested after opening: what cannot be opened looks empty, or is written to nowhere.
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
        """The two parts in the order of the passes. Each is a function of the lines that are done before it."""
        order = self.walkOrder()
        counts, parts = {"a.xyz": partOfA[0], "b.xyz": partOfB[0]}, {"a.xyz": partOfA[1], "b.xyz": partOfB[1]}
        return [*parts[order[0]](0), *parts[order[1]](counts[order[0]])]


class NodeFiles(OpeningTest):
    def test_each_file_is_opened_for_its_header_its_count_and_its_pass_and_a_directory_never(self):
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

    def test_files_of_a_pass_with_a_bad_header_are_closed_after_its_message_the_output_first(self):
        run = self.clip(environment={**noting(".xyz"), **failing("read", "data/a.xyz", failsForever(), opening=3)})
        at = run.messages.index("open out/a.xyz")
        self.assertEqual(run.messages[at - 1:at + 5], ["open data/a.xyz", "open out/a.xyz", *errorMessage(""),
                                                       "close out/a.xyz", "close data/a.xyz"])

    def test_at_the_first_the_file_is_passed_over(self):
        for error in ERRORS:
            with self.subTest(error=error):
                for outcomes in ((fails(error),), (failsForever(error),)):
                    run = self.clipFailing("data/a.xyz", *outcomes)
                    self.expectFinished(run, 3, {"b.xyz": B}, lineCounts=[3])

    def test_at_the_second_it_counts_minus_one_and_keeps_nothing(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("data/a.xyz", PASS, fails(error))
                passes = self.passes((-1, lambda done: filePass(-1, done, 2)), (3, lambda done: filePass(3, done, 2)))
                self.expect(run, status=0, created=output(3, {"b.xyz": B}),
                            messages=recorded(passes, closingRange(), finishMessage()))

    def test_at_the_third_an_empty_error_is_told_and_an_empty_output_stays_and_counts_one(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("data/a.xyz", PASS * 2, failsForever(error))
                passes = self.passes((2, lambda done: errorMessage("")), (3, lambda done: filePass(3, done, 5)))
                self.expect(run, status=0, console=[""], created=output(4, {"a.xyz": b"", "b.xyz": B}),
                            messages=recorded(passes, closingRange(), finishMessage()))

    def test_at_the_second_and_third_the_count_is_still_one(self):
        run = self.clipFailing("data/a.xyz", PASS, failsForever(errno.EMFILE))
        passes = self.passes((-1, lambda done: errorMessage("")), (3, lambda done: filePass(3, done, 2)))
        self.expect(run, status=0, console=[""], created=output(4, {"a.xyz": b"", "b.xyz": B}),
                    messages=recorded(passes, closingRange(), finishMessage()))

    def test_without_any_file_to_open_there_are_no_input_files(self):
        run = self.clipFailing(".xyz", failsForever(errno.EMFILE))
        self.expectFailed(run, "There are no input files.", created={"base/out": DIRECTORY})


class Outputs(OpeningTest):
    def test_lines_for_an_output_that_cannot_be_opened_are_counted(self):
        for error in (*ERRORS, errno.ENOSPC, errno.EROFS):
            with self.subTest(error=error):
                run = self.clipFailing("out/a.xyz", fails(error))
                self.expectFinished(run, 5, {"b.xyz": B}, self.lineCounts())

    def test_a_count_that_cannot_be_opened_is_missing_in_silence(self):
        for error in (*ERRORS, errno.ENOSPC, errno.EROFS):
            with self.subTest(error=error):
                run = self.clipFailing("out/total_node_count.txt", fails(error))
                self.expect(run, status=0, created={"base/out": DIRECTORY, "base/out/a.xyz": A, "base/out/b.xyz": B},
                            messages=finishedRun(*self.lineCounts()))


class EverythingElse(OpeningTest):
    def test_a_boundary_file_that_cannot_be_opened_is_not_found(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("area.xml", fails(error))
                self.expectFailed(run, "Boundary file area.xml not found", "Boundary file area.xml does not exist")

    def test_an_input_directory_that_cannot_be_opened_is_a_thrown_error(self):
        for error in ERRORS:
            with self.subTest(error=error):
                run = self.clipFailing("base/data", fails(error), call="opendir")
                self.expectThrown(run, "boost::filesystem::directory_iterator::construct",
                                  created={"base/out": DIRECTORY})
                self.assertIn(os.strerror(error).encode(), run.console)

    def test_an_entry_or_a_directory_whose_state_cannot_be_read_is_a_thrown_error(self):
        for path, created in (("/base", {}), ("base/data", {}), ("base/out", {}), ("a.xyz", {"base/out": DIRECTORY})):
            with self.subTest(path=path):
                run = self.clipFailing(path.lstrip("/"), fails(errno.EIO), call="stat")
                self.expectThrown(run, "boost::filesystem::status", created=created)

    def test_a_walk_that_fails_at_any_entry_ends_the_run_before_any_pass(self):
        for number in range(1, 5):  # the two nodes, "." and ".."
            with self.subTest(entry=number):
                run = self.clipFailing("base/data", PASS * number, fails(errno.EIO), call="readdir")
                self.expectThrown(run, r"boost::filesystem::directory_iterator::operator\+\+",
                                  created={"base/out": DIRECTORY})

    @unittest.skipIf(SANITIZED, "sanitizers look into memory through pipes, which take descriptors too")
    def test_under_every_limit_of_open_files_the_run_ends_in_order(self):
        # Four are open at the start. One more is enough for the walk, and another one for its files and for the passes.
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
