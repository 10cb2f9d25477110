"""What the report of the reached lines counts as a branch, and what it says about one that is not taken."""
import contextlib
import io
import json
import os
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "scripts"))
import coverage_report
from coverage_report import (REASONS, WITHOUT_FUNCTIONS, Source, Tally, decisions, exclusions, noLongerNeeded, notCounted,
                             outdated, read, withoutReason)
from cpp_statements import linesWithConditions
from gcov_without_cleanup import ROOT, withoutCleanup, withWholeName

DOCUMENT = os.path.join(ROOT, "docs", "reliability.md")


def branch(count, kind=""):
    return {"count": count, "fallthrough": kind == "returns", "throw": kind == "throws"}


def line(number, count, *branches):
    return {"line_number": number, "count": count, "branches": list(branches), "gcovr/noncode": False,
            "gcovr/excluded": False}


def tableRow(key, branches, reason):
    """How docs/reliability.md writes an entry of unreached.json: the beginning of a long line is enough to find it."""
    source, text = key.split(": ", 1)
    shortened = text if len(text) <= 70 else text[:67] + "..."
    return f"| `{source}` | `{shortened}` | {branches} | {reason} |".replace("||", "\\|\\|")


class Conditions(unittest.TestCase):
    def expectConditions(self, text):
        """In the text, lines with a condition end in "//!"."""
        marked = {number for number, line in enumerate(text.split("\n"), 1) if line.endswith("//!")}
        self.assertEqual(marked, linesWithConditions(text))

    def test_each_kind_of_condition(self):
        for code in ("if (a) {", "} else if (a) {", "while (a) {", "for (const char c : text) {", "switch (a) {",
                     "do {", "const int x = a ? b : c;", "return a && b;", "return a || b;", "return not a or b;",
                     "} catch (const Error&) {", "TEMP_FAILURE_RETRY(wait());", "delete a;",
                     "auto* x = dynamic_cast<X*>(a);"):
            with self.subTest(code=code):
                self.assertEqual({1}, linesWithConditions(code))

    def test_what_is_none(self):
        for code in ("call(a, b);", "const std::vector<int> x{1, f(2)};", "x = a < b;", "}", "} // if", "/* a && b */ f();",
                     'f("a ? b", \'?\', R"(if (a) || b)");', "#if A && B", "static const T t = f();", "ifStands(fork);",
                     "int a = 1'000'000;"):
            with self.subTest(code=code):
                self.assertEqual(set(), linesWithConditions(code))

    def test_all_lines_of_a_statement_and_no_other(self):
        self.expectConditions("""
const int before = f();
return first(a) ||  //!
       second(b,    //!
              c);   //!
const int after = g(a,
                    b);
if (a) { //!
    then();
}
last();
""")

    def test_lists_in_braces_are_part_of_their_statement(self):
        self.expectConditions("""
const Thing thing{f(a), //!
                  {a ? b : c}, //!
                  g()}; //!
const Other other{f(a),
                  {b}};
""")

    def test_the_body_of_a_lambda_has_statements_of_its_own(self):
        self.expectConditions("""
std::sort(a.begin(), a.end(), [](int left, int right) {
    prepare();
    return left < 0 || right < 0; //!
});
for (int i = 0; i < 3; //!
     ++i) { //!
    f({i});
}
""")

    def test_a_separator_of_digits_begins_no_letter(self):
        self.expectConditions("return a == 1'000 && b == '?'; //!\nf('\\'', 1'0);\n")


# What gcov reports of a line by blocks: the fourth block is one that only an exception leads to.
REPORT = """\
        -:    0:Source:src/a.cpp
        7:    6:    if (f() || g(h())) {
        7:    6-block  0
call    0 returned 7
branch  1 taken 7 (fallthrough)
branch  2 taken 0 (throw)
        7:    6-block  1
branch  3 taken 7 (fallthrough)
branch  4 taken 0
    %%%%%:    6-block  2
branch  5 never executed
branch  6 never executed
    $$$$$:    6-block  3
call    7 never executed
branch  8 never executed
branch  9 never executed
    #####:    7:        g();
branch  0 never executed
branch  1 never executed""".split("\n")


class Cleanup(unittest.TestCase):
    def test_only_the_branches_of_blocks_behind_an_exception_are_left_out(self):
        left = ("call    7", "branch  8", "branch  9")
        self.assertEqual([line for line in REPORT if "-block" not in line and not line.startswith(left)],
                         list(withoutCleanup(REPORT)))

    def test_a_block_that_ran_keeps_its_branches(self):
        lines = ["        1:    6-block  0", "branch  0 taken 1", "branch  1 taken 0"]
        self.assertEqual(lines[1:], list(withoutCleanup(lines)))

    def expectBlocks(self, expected, *blocks):
        """Blocks are written as the kinds of their branches: r(eturn), t(hrow), n(either)."""
        words = {"r": " (fallthrough)", "t": " (throw)", "n": ""}
        lines, number = [], 0
        for block in blocks:
            lines.append("        7:    6-block  0")
            for kind in block:
                lines.append(f"branch {number:2} taken {number}{words[kind]}")
                number += 1
        self.assertEqual([f"branch {number:2} taken {count}{words[kind]}" for number, count, kind in expected],
                         list(withoutCleanup(lines)))

    def test_the_return_of_a_call_comes_before_its_throw_in_either_order(self):
        self.expectBlocks([(0, 0, "r"), (1, 1, "t")], "rt")
        self.expectBlocks([(0, 1, "r"), (1, 0, "t")], "tr")
        self.expectBlocks([(0, 0, "n"), (1, 1, "r"), (2, 3, "r"), (3, 2, "t")], "nr", "tr")
        self.expectBlocks([(0, 1, "r"), (1, 0, "t"), (2, 2, "r"), (3, 3, "t")], "trrt")

    def test_a_throw_does_not_pair_with_the_return_of_another_block(self):
        self.expectBlocks([(0, 0, "n"), (1, 1, "r")], "nr", "t")
        self.expectBlocks([(1, 1, "r"), (2, 2, "n")], "t", "rn")

    def test_sources_keep_their_names(self):
        self.assertEqual(f"        -:    0:Source:{ROOT}/src/a.cpp", withWholeName(REPORT[0]))
        self.assertEqual("        -:    0:Source:../../src/a.cpp", withWholeName("        -:    0:Source:../../src/a.cpp"))
        self.assertEqual(REPORT[1], withWholeName(REPORT[1]))


class Branches(unittest.TestCase):
    def test_a_call_that_returns_or_throws_decides_nothing(self):
        condition = [branch(3, "returns"), branch(0)]
        call = [branch(5, "returns"), branch(0, "throws")]
        self.assertEqual(condition * 2, decisions(call + condition + call + condition))

    def test_a_condition_right_before_a_call_stays_in_either_order(self):
        call = [branch(5, "returns"), branch(0, "throws")]
        for condition in ([branch(3, "returns"), branch(0)], [branch(0), branch(3, "returns")]):
            self.assertEqual(condition, decisions(condition + call))
            self.assertEqual(condition, decisions(call + condition))

    def test_of_a_line_without_a_condition_only_the_second_figure_knows(self):
        report = {"file": "a.cpp", "functions": [], "lines": [
            line(1, 4, branch(4), branch(0)), line(2, 4, branch(1, "returns"), branch(0, "throws"), branch(4), branch(0))]}
        source = Source(report, "f();\nif (a) {\n")
        self.assertEqual([(2, "if (a) {", Tally(1, 2))], source.branches)
        self.assertEqual(Tally(3, 5), source.allBranches)
        self.assertEqual({"a.cpp: if (a) {": 1}, source.unreachedBranches())

    def test_equal_lines_of_a_source_are_taken_together(self):
        report = {"file": "a.cpp", "functions": [], "lines": [line(n, 1, branch(1), branch(0)) for n in (1, 2)]}
        self.assertEqual({"a.cpp: if (a) {": 2}, Source(report, "if (a) {\n  if (a) {\n").unreachedBranches())

    def test_lines_and_functions(self):
        report = {"file": "a.cpp", "lines": [line(1, 0), line(2, 1)],
                  "functions": [{"name": "f", "execution_count": 0}, {"name": "g", "execution_count": 1}]}
        source = Source(report, "f();\ng();\n")
        self.assertEqual((["a.cpp:1: never reached"], ["a.cpp: never called: f"]),
                         (source.unreachedLines(), source.unreachedFunctions()))


class Reasons(unittest.TestCase):
    reasons = {"a.cpp: if (a) {": {"branches": 1, "reason": "It never is."}}

    def test_what_has_one_is_not_named(self):
        self.assertEqual([], withoutReason({"a.cpp: if (a) {": 1}, self.reasons))

    def test_what_has_none_or_not_enough_is_named(self):
        self.assertEqual(["a.cpp: if (a) {\n  2 not taken, 1 with a reason", "a.cpp: if (b) {\n  1 not taken"],
                         withoutReason({"a.cpp: if (a) {": 2, "a.cpp: if (b) {": 1}, self.reasons))

    def test_one_for_more_branches_than_are_missed_is_no_longer_needed(self):
        self.assertEqual([], noLongerNeeded({"a.cpp: if (a) {": 1}, self.reasons))
        self.assertEqual([], noLongerNeeded({"a.cpp: if (a) {": 2}, self.reasons))
        self.assertEqual(["a.cpp: if (a) {\n  a reason for 1, 0 not taken"], noLongerNeeded({}, self.reasons))

    def test_one_without_its_line_is_named(self):
        self.assertEqual([], outdated(self.reasons, {"a.cpp": "{\n    if (a) {\n"}))
        self.assertEqual(1, len(outdated(self.reasons, {"a.cpp": "if (b) {\n", "b.cpp": "if (a) {\n"})))


class WhatIsCounted(unittest.TestCase):
    def test_a_source_that_is_not_in_the_report_is_named_unless_only_windows_builds_it(self):
        existing = ["src/a.cpp", "src/b.cpp", "src/b_win32.cpp", "src/b.hpp", *WITHOUT_FUNCTIONS]
        self.assertEqual(["src/b.cpp: not in the report"], notCounted({"src/a.cpp"}, existing))

    def test_a_source_that_is_counted_or_gone_is_no_exception(self):
        first, second, *_ = sorted(WITHOUT_FUNCTIONS)
        words = [f"{name}: is in the report or gone, no longer an exception" for name in (first, second)]
        self.assertEqual(words, notCounted({first}, WITHOUT_FUNCTIONS - {second}))

    def test_marks_that_exclude_lines_are_named(self):
        for mark in ("GCOVR_EXCL_LINE", "GCOV_EXCL_START", "LCOV_EXCL_BR_LINE"):
            self.assertEqual([f"a.cpp:2: nothing is excluded from the count: f(); // {mark}"],
                             exclusions({"a.cpp": f"g();\n  f(); // {mark}\n", "b.cpp": "f(); // excluded\n"}))

    def test_the_document_lists_every_branch_with_its_reason(self):
        self.assertEqual([tableRow(key, **entry) for key, entry in json.loads(read(REASONS)).items()],
                         [line for line in read(DOCUMENT).splitlines() if line.startswith("| `src/")])


SOURCE = "if (a) {\n" + "f();\n" * 999


class Whole(unittest.TestCase):
    """The report as a run of the script gives it: a tree of one counted source with a thousand lines."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(directory.name)
        for name in WITHOUT_FUNCTIONS:
            self.write(name, "")

    def write(self, name, text):
        Path(name).parent.mkdir(parents=True, exist_ok=True)
        Path(name).write_text(text, encoding="utf-8")

    def report(self, *options, branches=(1000, 1000), lines=1000, functions=1000, source=SOURCE, reasons=None):
        """Each figure is how many of a thousand are reached. The status and what is printed."""
        self.write("src/a.cpp", source)
        self.write("reasons.json", json.dumps(reasons or {}))
        taken, total = branches
        condition = line(1, 1, *[branch(int(number < taken)) for number in range(total)])
        counted = [condition] + [line(number, int(number <= lines)) for number in range(2, 1001)]
        called = [{"name": f"f{number}", "execution_count": int(number < functions)} for number in range(1000)]
        self.write("details.json", json.dumps({"files": [{"file": "src/a.cpp", "lines": counted, "functions": called}]}))
        printed = io.StringIO()
        with mock.patch.object(sys, "argv", ["coverage_report.py", "details.json", *options]), \
                mock.patch.object(coverage_report, "REASONS", "reasons.json"), contextlib.redirect_stdout(printed), \
                self.assertRaises(SystemExit) as end:
            coverage_report.main()
        return end.exception.code, printed.getvalue()

    def expect(self, status, words, *options, **figures):
        """@param words printed, or None where there is to be no failure."""
        got, printed = self.report(*options, **figures)
        self.assertEqual(status, got, printed)
        if words is None:
            self.assertNotIn("== Failures", printed)
        else:
            self.assertIn(words, printed)

    def test_all_reached(self):
        for options in ((), ("--strict",)):
            self.expect(0, None, *options)
        self.assertEqual(" 1000 of  1000 lines (100.0 %)\n"
                         " 1000 of  1000 functions (100.0 %)\n"
                         " 1000 of  1000 branches at conditions (100.0 %)\n"
                         " 1000 of  1000 branches with those of calls and of the compiler (100.0 %)\n", self.report()[1])

    def test_the_least_share_of_the_branches(self):
        self.expect(0, None, branches=(950, 1000))
        self.expect(1, "== Failures\nfewer than 95.0 % of the branches are taken\n", branches=(949, 1000))

    def test_the_least_share_of_the_lines(self):
        self.expect(0, None, lines=995)
        self.expect(1, "== Failures\nfewer than 99.5 % of the lines or functions are reached\n", lines=994)

    def test_the_least_share_of_the_functions(self):
        self.expect(0, None, functions=995)
        self.expect(1, "== Failures\nfewer than 99.5 % of the lines or functions are reached\n", functions=994)

    def test_what_is_not_reached_is_a_failure_when_strict(self):
        for figures, words in (({"branches": (999, 1000)}, "src/a.cpp: if (a) {\n  1 not taken\n"),
                               ({"lines": 999}, "src/a.cpp:1000: never reached\n"),
                               ({"functions": 999}, "src/a.cpp: never called: f999\n")):
            with self.subTest(figures=figures):
                heading = "== Not reached without a reason in scripts/unreached.json"
                self.expect(0, f"{heading} (a failure with --strict only)\n{words}", **figures)
                self.expect(1, f"{heading}\n{words}", "--strict", **figures)

    def test_a_branch_with_a_reason_is_no_failure_even_when_strict(self):
        reasons = {"src/a.cpp: if (a) {": {"branches": 1, "reason": "It never is."}}
        self.expect(0, None, "--strict", branches=(999, 1000), reasons=reasons)
        self.expect(0, "== Reasons no longer needed, if other runs say the same\n", "--strict", reasons=reasons)

    def test_a_mark_that_excludes_lines_is_a_failure(self):
        words = "== Failures\nsrc/a.cpp:2: nothing is excluded from the count: f(); // GCOVR_EXCL_LINE\n"
        self.expect(1, words, source=SOURCE.replace("f();\n", "f(); // GCOVR_EXCL_LINE\n", 1))

    def test_a_source_that_is_not_counted_is_a_failure(self):
        self.write("src/b/c.cpp", "")
        self.expect(1, "== Failures\nsrc/b/c.cpp: not in the report\n")

    def test_a_reason_without_its_line_is_a_failure(self):
        self.expect(1, "== Failures\nunreached.json: there is no such line any more: src/a.cpp: if (b) {\n",
                    reasons={"src/a.cpp: if (b) {": {"branches": 1, "reason": "It never is."}})


if __name__ == "__main__":
    unittest.main()
