"""The command line, and every end of the process except crashes and signals."""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import KEPT, NODES, RECORDING, SANITIZED, SQUARE, TOOL, AcceptanceTest, limitMemory, output
from expected_messages import USAGE, errorMessage, failedMessage, finishedRun, recorded
from target_platform import withoutTextMode


class UsableCommandLines(AcceptanceTest):
    def test_options_after_the_arguments_are_a_run(self):
        for options in ([], ["-pipe"], ["-lang=en"], ["-pipe", "-lang=fr"], ["-lang=fr", "-pipe"], ["-lang="], ["-lang=de"]):
            with self.subTest(options=options):
                self.startOver()
                self.giveJob(NODES)
                self.expectFinished(self.clip(*options), 1, KEPT, lineCounts=[2], pipeMode="-pipe" in options)


class CountedArguments(AcceptanceTest):
    """Options count in every place, and only the count decides whether there is a run."""

    def test_wrong_count_is_a_usage_failure(self):
        self.giveJob(NODES)
        job = ["base/data", "out", "area.xml"]
        for arguments in ([], job[:1], job[:2], [*job[:2], "-pipe"], ["-pipe"], ["-lang=en"], [*job[:2], "-lang=en", "-pipe"],
                          [*job, "x"], [*job, ""], [*job, "x", "-pipe"], ["-lang=en", "in", "out"], ["-pipe", "in", "out"],
                          [*job, "-pipe", "-pipe"], [*job, "-lang=en", "-lang=de"], [*job, "-lang=de", "-lang=en"],
                          [*job, "-lang"], [*job, "--lang=en"], [*job, "-PIPE"], [*job, "-pipe=1"], [*job, "--help"]):
            with self.subTest(arguments=arguments):
                self.expectFailed(self.start(*arguments), USAGE, pipeMode="-pipe" in arguments)


class FixedPlaces(AcceptanceTest):
    """The tool reads the three arguments from the places 1 to 3, even if an option is there."""

    def test_unknown_option_in_third_place_is_the_boundary_file(self):
        self.expectFailed(self.start("in", "out", "-x"), "Boundary file -x not found",
                          "Boundary file -x does not exist")

    def test_pipe_in_first_place_is_also_the_input_directory(self):
        self.giveJob(NODES)
        run = self.start("-pipe", "base/data", "area.xml", "out")
        # A bare name has no parent directory, and the empty path does not exist.
        self.expectFailed(run, "Directory  does not exist", pipeMode=True)

    def test_pipe_in_first_place_moves_no_argument(self):
        self.giveJob(NODES)
        run = self.start("-pipe", "base/data", "out", "area.xml")
        self.expectFailed(run, "Boundary file out not found", "Boundary file out does not exist", pipeMode=True)

    def test_pipe_in_second_place_is_also_the_output_directory(self):
        self.giveJob(NODES)
        run = self.start("base/data", "-pipe", "area.xml", "ignored")
        self.expect(run, status=0, created=output(1, KEPT, at="base/-pipe"), messages=finishedRun(2, pipeMode=True))

    def test_pipe_in_third_place_is_also_the_boundary_file(self):
        self.giveJob(NODES)
        self.give({"-pipe": SQUARE})
        self.expectFinished(self.start("base/data", "out", "-pipe", "ignored"), 1, KEPT, lineCounts=[2], pipeMode=True)

    def test_language_in_first_place_is_also_the_input_directory(self):
        self.giveJob(NODES)
        run = self.start("-lang=en", "out", "area.xml", "ignored")
        self.expectFailed(run, "Directory  does not exist")


class Ends(AcceptanceTest):
    def startTogether(self, *arguments, **settings):
        """Sends console and messages to one file, so that its lines show their order."""
        with open(self.aside + "/together", "a+b", buffering=0) as together:
            run = self.start(*arguments, console=together.fileno(), channel=together.fileno(), **settings)
            together.seek(0)
            run.messages = withoutTextMode(together.read()).decode().split("\n")[:-1]
            together.truncate(0)
        return run

    def test_usage_line_is_printed_before_it_is_sent(self):
        run = self.startTogether()
        self.expect(run, status=1,
                    messages=["MessageSender 0", USAGE, *errorMessage(USAGE), *failedMessage(), "~MessageSender"])

    def test_each_error_is_printed_before_it_is_sent(self):
        first, second = "Boundary file area.xml not found", "Boundary file area.xml does not exist"
        run = self.startTogether("base/data", "out", "area.xml")
        self.expect(run, status=1, messages=recorded(
            [first], errorMessage(first), [second], errorMessage(second), failedMessage()))

    def test_thrown_error_is_printed_before_it_is_sent(self):
        self.giveJob(NODES)
        text, = self.start("base/data", "missing/out", "area.xml").consoleLines()
        run = self.startTogether("base/data", "missing/out", "area.xml")
        self.expect(run, status=1, messages=recorded([text], errorMessage(text), failedMessage()))

    @unittest.skipIf(SANITIZED, "sanitizers reserve more address space than the limit leaves")
    def test_memory_exhausted_by_the_set_is_a_thrown_error(self):
        # A stored polygon needs more than ten times its text, so the document fits into memory but the set does not.
        self.giveJob(NODES, b'<VADELSIM><VadeDGM><group type="boundaries">'
                     + b'<polygon id="1"/>' * 400_000 + b"</group></VadeDGM></VADELSIM>")
        self.expectFailed(self.clip(beforeStart=limitMemory(250 << 20)), "std::bad_alloc")

    def test_real_tool_ends_with_the_same_status_and_console(self):
        self.giveJob(NODES)
        self.expect(self.start("base/data", "-lang=en", tool=TOOL), status=1, console=[USAGE])
        thrown = self.start("base/data", "missing/out", "area.xml", "-lang=en", tool=TOOL)
        expected = self.start("base/data", "missing/out", "area.xml", "-lang=en", tool=RECORDING)
        self.expect(thrown, status=1, console=expected.consoleLines())
        self.expect(self.clip("-lang=en", tool=TOOL), status=0, created=output(1, KEPT))


if __name__ == "__main__":
    unittest.main()
