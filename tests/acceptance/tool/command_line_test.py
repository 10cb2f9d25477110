"""The command line and every way out of the process that can be handled."""
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, RECORDING, SANITIZED, SQUARE, TOOL, AcceptanceTest, output
from expected_messages import USAGE, errorMessage, failedMessage, failedRun, finishedRun, recorded
from target_platform import withoutTextMode

NODES = {"a.xyz": b"x;y;z\n1;1;5\n20;1;5\n"}
KEPT = {"a.xyz": b"x;y;z\n1;1;5\n"}


class UsableCommandLines(AcceptanceTest):
    def expectRun(self, *options, pipeMode):
        self.giveJob(NODES)
        self.expectFinished(self.clip(*options), 1, KEPT, lineCounts=[2], pipeMode=pipeMode)

    def test_three_arguments_are_a_run_without_pipe_mode(self):
        self.expectRun(pipeMode=False)

    def test_pipe_behind_the_arguments_is_a_run_in_pipe_mode(self):
        self.expectRun("-pipe", pipeMode=True)

    def test_language_behind_the_arguments_is_a_run_without_pipe_mode(self):
        self.expectRun("-lang=en", pipeMode=False)

    def test_pipe_may_stand_before_the_language(self):
        self.expectRun("-pipe", "-lang=fr", pipeMode=True)

    def test_the_language_may_stand_before_pipe(self):
        self.expectRun("-lang=fr", "-pipe", pipeMode=True)

    def test_an_empty_language_is_a_valid_one(self):
        self.expectRun("-lang=", pipeMode=False)

    def test_german_is_a_language_like_any_other(self):
        self.expectRun("-lang=de", pipeMode=False)


class CountedArguments(AcceptanceTest):
    """Options are counted wherever they stand, and the count alone decides whether there is a run."""

    def expectUsage(self, *arguments, pipeMode=False):
        with self.subTest(arguments=arguments):
            self.expectFailed(self.start(*arguments), USAGE, pipeMode=pipeMode)

    def test_no_argument_is_a_usage_failure(self):
        self.expectUsage()

    def test_too_few_arguments_are_a_usage_failure(self):
        self.giveJob(NODES)
        self.expectUsage("base/data")
        self.expectUsage("base/data", "out")
        self.expectUsage("base/data", "out", "-pipe", pipeMode=True)
        self.expectUsage("-pipe", pipeMode=True)
        self.expectUsage("-lang=en")
        self.expectUsage("base/data", "out", "-lang=en", "-pipe", pipeMode=True)

    def test_too_many_arguments_are_a_usage_failure(self):
        self.giveJob(NODES)
        self.expectUsage("base/data", "out", "area.xml", "x")
        self.expectUsage("base/data", "out", "area.xml", "")
        self.expectUsage("base/data", "out", "area.xml", "x", "-pipe", pipeMode=True)

    def test_an_option_takes_the_place_of_an_argument_in_the_count(self):
        self.expectUsage("-lang=en", "in", "out")
        self.expectUsage("-pipe", "in", "out", pipeMode=True)

    def test_a_repeated_pipe_is_counted_once(self):
        self.giveJob(NODES)
        self.expectUsage("base/data", "out", "area.xml", "-pipe", "-pipe", pipeMode=True)

    def test_a_repeated_language_is_counted_once(self):
        self.giveJob(NODES)
        self.expectUsage("base/data", "out", "area.xml", "-lang=en", "-lang=de")
        self.expectUsage("base/data", "out", "area.xml", "-lang=de", "-lang=en")

    def test_what_only_resembles_an_option_is_counted_as_an_argument(self):
        self.giveJob(NODES)
        for argument in ("-lang", "-LANG=en", "-Lang=en", "--lang=en", " -lang=en", "lang=en", "-x", "-PIPE", "-pipe=1",
                         "-pip", "--pipe"):
            self.expectUsage("base/data", "out", "area.xml", argument)


class FixedPlaces(AcceptanceTest):
    """The three arguments are read from the places 1 to 3, also where an option stands there."""

    def test_an_unknown_option_in_third_place_is_the_boundary_file(self):
        self.expectFailed(self.start("in", "out", "-x"), "Boundary file -x not found",
                          "Boundary file -x does not exist")

    def test_pipe_in_first_place_is_the_input_directory_as_well(self):
        self.giveJob(NODES)
        run = self.start("-pipe", "base/data", "area.xml", "out")
        # A bare name has no parent directory, and the empty path does not exist.
        self.expectFailed(run, "Directory  does not exist", pipeMode=True)

    def test_pipe_in_first_place_moves_no_argument(self):
        self.giveJob(NODES)
        run = self.start("-pipe", "base/data", "out", "area.xml")
        self.expectFailed(run, "Boundary file out not found", "Boundary file out does not exist", pipeMode=True)

    def test_pipe_in_second_place_is_the_output_directory_as_well(self):
        self.giveJob(NODES)
        run = self.start("base/data", "-pipe", "area.xml", "ignored")
        self.expect(run, status=0, created=output(1, KEPT, at="base/-pipe"), messages=finishedRun(2, pipeMode=True))

    def test_pipe_in_third_place_is_the_boundary_file_as_well(self):
        self.giveJob(NODES)
        self.give({"-pipe": SQUARE})
        self.expectFinished(self.start("base/data", "out", "-pipe", "ignored"), 1, KEPT, lineCounts=[2], pipeMode=True)

    def test_a_language_in_first_place_is_the_input_directory_as_well(self):
        self.giveJob(NODES)
        run = self.start("-lang=en", "out", "area.xml", "ignored")
        self.expectFailed(run, "Directory  does not exist")


class WaysOut(AcceptanceTest):
    def startTogether(self, *arguments, **settings):
        """Lets console and messages go to one file: its lines tell which came first."""
        with open(self.aside + "/together", "a+b", buffering=0) as together:
            run = self.start(*arguments, console=together.fileno(), channel=together.fileno(), **settings)
            together.seek(0)
            run.messages = withoutTextMode(together.read()).decode().split("\n")[:-1]
            together.truncate(0)
        return run

    def test_a_usage_line_is_on_the_console_before_it_is_sent(self):
        run = self.startTogether()
        self.expect(run, status=1,
                    messages=["MessageSender 0", USAGE, *errorMessage(USAGE), *failedMessage(), "~MessageSender"])

    def test_each_line_of_a_failing_run_is_on_the_console_before_it_is_sent(self):
        first, second = "Boundary file area.xml not found", "Boundary file area.xml does not exist"
        run = self.startTogether("base/data", "out", "area.xml")
        self.expect(run, status=1, messages=recorded(
            [first], errorMessage(first), [second], errorMessage(second), failedMessage()))

    def test_a_failing_run_shows_only_what_the_run_itself_reported(self):
        self.giveJob({})
        self.expect(self.clip(), status=1, console=["There are no input files."], created={"base/out": DIRECTORY},
                    messages=failedRun("There are no input files."))

    def test_a_finished_run_leaves_the_console_empty(self):
        self.giveJob(NODES)
        self.expectFinished(self.clip(), 1, KEPT, lineCounts=[2])

    def test_an_error_thrown_by_a_library_is_reported_with_its_own_text(self):
        self.giveJob(NODES)
        self.expectThrown(self.start("base/data", "missing/out", "area.xml"), "boost::filesystem::create_directory")

    def test_the_text_of_a_thrown_error_is_on_the_console_before_it_is_sent(self):
        self.giveJob(NODES)
        text, = self.start("base/data", "missing/out", "area.xml").consoleLines()
        run = self.startTogether("base/data", "missing/out", "area.xml")
        self.expect(run, status=1, messages=recorded([text], errorMessage(text), failedMessage()))

    @unittest.skipIf(SANITIZED, "sanitizers reserve more address space than the limit leaves")
    def test_memory_exhausted_while_filling_the_set_is_a_thrown_error(self):
        # A stored polygon takes more than ten times its text, so the document still fits and the set does not.
        self.giveJob(NODES, b'<VADELSIM><VadeDGM><group type="boundaries">'
                     + b'<polygon id="1"/>' * 400_000 + b"</group></VadeDGM></VADELSIM>")
        limit = 250 << 20
        run = self.clip(beforeStart=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
        self.expectFailed(run, "std::bad_alloc")

    def test_the_real_tool_ends_with_the_same_status_and_console(self):
        self.giveJob(NODES)
        self.expect(self.start("base/data", "-lang=en", tool=TOOL), status=1, console=[USAGE])
        thrown = self.start("base/data", "missing/out", "area.xml", "-lang=en", tool=TOOL)
        expected = self.start("base/data", "missing/out", "area.xml", "-lang=en", tool=RECORDING)
        self.expect(thrown, status=1, console=expected.consoleLines())
        self.expect(self.clip("-lang=en", tool=TOOL), status=0, created=output(1, KEPT))


if __name__ == "__main__":
    unittest.main()
