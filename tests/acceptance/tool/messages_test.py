"""The messages of a run, their values and their order, as recorded calls of the message classes."""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import AcceptanceTest, linkTo, output
from expected_messages import (USAGE, closingRange, errorMessage, failedMessage, finishedRun, finishMessage, recorded,
                               stateMessage)

HEADER = b"x;y;z\n"


def nodeLines(count):
    return b"".join(b"%d;1;5\n" % (index % 10 + 1) for index in range(count))


class Sequences(AcceptanceTest):
    def test_usage_failure_sends_an_error_and_the_failure(self):
        self.expect(self.start(), status=1, console=[USAGE], messages=recorded(errorMessage(USAGE), failedMessage()))

    def test_failing_run_sends_its_errors_and_the_failure(self):
        run = self.start("base/data", "out", "no.xml")
        self.expectFailed(run, "Boundary file no.xml not found", "Boundary file no.xml does not exist")

    def test_finished_run_sends_state_ranges_and_finish(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n2;2;5\n30;3;5\n"})
        self.expect(self.clip(), status=0, created=output(2, {"a.xyz": HEADER + b"1;1;5\n2;2;5\n"}), messages=[
            "MessageSender 0",
            "StateMessage 1 true Clipping elevation data...",
            "end StateMessage",
            "ProgressMessage 0 100 3",
            "OnProgress 0 false",
            "OnProgress 1 false",
            "OnProgress 2 false",
            "end ProgressMessage",
            "ProgressMessage 1 100 100",  # from 1 and not from 0, on purpose
            "OnProgress 100 false",
            "end ProgressMessage",
            "FinishMessage 1 Finished clipping elevation data with model boundaries",
            "end FinishMessage",
            "~MessageSender"])

    def test_thousand_lines_are_a_thousand_steps(self):
        self.giveJob({"a.xyz": HEADER + nodeLines(1000)})
        self.expectFinished(self.clip("-pipe"), 1000, {"a.xyz": HEADER + nodeLines(1000)}, lineCounts=[1000],
                            pipeMode=True)

    def test_each_file_has_its_state_and_its_part_of_the_range(self):
        counts = {"a.xyz": 3, "b.txt": 7, "c.csv": 1, "d.csv": 0}
        files = {name: HEADER + nodeLines(count) for name, count in counts.items()}
        self.giveJob(files)
        kept = {name: content for name, content in files.items() if counts[name] > 0}
        self.expectFinished(self.clip(), 11, kept, lineCounts=[counts[name] for name in self.walkOrder()])

    def test_dropped_line_is_a_step(self):
        self.giveJob({"a.xyz": HEADER + b"\n\nwords\n1;1;5\n99;99;9\n1\n"})
        self.expectFinished(self.clip(), 1, {"a.xyz": HEADER + b"1;1;5\n"}, lineCounts=[6])

    def test_pipe_mode_does_not_change_the_calls(self):
        self.giveJob({"a.xyz": HEADER + nodeLines(3), "b.xyz": HEADER + b"99;99;9\n"})
        self.give({"base/one": linkTo("data"), "base/two": linkTo("data")})
        kept = {"a.xyz": HEADER + nodeLines(3)}
        counts = [{"a.xyz": 3, "b.xyz": 1}[name] for name in self.walkOrder()]
        quiet = self.start("base/one", "out1", "area.xml")
        self.expect(quiet, status=0, created=output(3, kept, at="base/out1"),
                    messages=finishedRun(*counts, pipeMode=False))
        self.given.update(output(3, kept, at="base/out1"))
        piped = self.start("base/two", "out2", "area.xml", "-pipe")
        self.expect(piped, status=0, created=output(3, kept, at="base/out2"),
                    messages=finishedRun(*counts, pipeMode=True))

    def test_step_is_sent_before_its_line_is_read(self):
        def stepSeen(step):
            return lambda: self.waitFor(lambda: f"OnProgress {step} false" in self.messagesSoFar(), f"step {step}")

        def notYet(step):
            return lambda: self.assertNotIn(f"OnProgress {step} false", self.messagesSoFar())

        self.giveJob({})
        content = HEADER + b"1;1;5\n2;2;5\n"
        self.serve("base/data/a.xyz", content, content,
                   [HEADER, stepSeen(0), notYet(1), b"1;1;5\n", stepSeen(1), b"2;2;5\n"])
        self.expectFinished(self.clip(), 2, {"a.xyz": content}, lineCounts=[2])


class NumbersOfARange(AcceptanceTest):
    def test_file_without_lines_has_not_a_number_as_range(self):
        self.giveJob({"a.xyz": HEADER})
        self.expect(self.clip(), status=0, created=output(0), messages=recorded(
            stateMessage(), ["ProgressMessage nan nan 0", "end ProgressMessage"], closingRange(), finishMessage()))

    def test_files_without_lines_have_not_a_number_as_range(self):
        self.giveJob({"a.xyz": HEADER, "b.xyz": HEADER})
        self.expect(self.clip("-pipe"), status=0, created=output(0), messages=recorded(
            *[stateMessage(), ["ProgressMessage nan nan 0", "end ProgressMessage"]] * 2,
            closingRange(), finishMessage(), pipeMode=True))

    def test_header_without_a_line_feed_counts_minus_one(self):
        self.giveJob({"a.xyz": b"x;y;z"})
        self.expect(self.clip(), status=0, created=output(0), messages=recorded(
            stateMessage(), ["ProgressMessage -0 100 -1", "end ProgressMessage"], closingRange(), finishMessage()))

    def test_file_of_minus_one_lines_moves_the_next_range_back(self):
        self.giveJob({"a.xyz": b"x;y;z", "b.xyz": HEADER + nodeLines(5)})
        lineCounts = [{"a.xyz": -1, "b.xyz": 5}[name] for name in self.walkOrder()]
        self.expectFinished(self.clip(), 5, {"b.xyz": HEADER + nodeLines(5)}, lineCounts=lineCounts)

    def test_line_counts_of_sum_zero_still_keep_lines(self):
        self.giveJob({"a.xyz": b"x;y;z", "b.xyz": HEADER + b"1;1;5\n"})
        ranges = {"a.xyz": (stateMessage(), ["ProgressMessage nan -inf -1", "end ProgressMessage"]),
                  "b.xyz": (stateMessage(), ["ProgressMessage nan inf 1", "OnProgress 0 false", "end ProgressMessage"])}
        first, second = self.walkOrder()
        after = {"a.xyz": ["ProgressMessage inf nan -1", "end ProgressMessage"],
                 "b.xyz": ["ProgressMessage -inf nan 1", "OnProgress 0 false", "end ProgressMessage"]}
        self.expect(self.clip(), status=0, created=output(1, {"b.xyz": HEADER + b"1;1;5\n"}), messages=recorded(
            *ranges[first], stateMessage(), after[second], closingRange(), finishMessage()))

    def test_thirds_are_rounded_as_doubles_are(self):
        files = {name: HEADER + b"1;1;5\n" for name in ("a.xyz", "b.xyz", "c.xyz")}
        self.giveJob(files)
        messages = []
        for values in ("0 33.333333333333336", "33.333333333333336 66.666666666666671", "66.666666666666671 100"):
            messages += [*stateMessage(), f"ProgressMessage {values} 1", "OnProgress 0 false", "end ProgressMessage"]
        self.expect(self.clip(), status=0, created=output(3, files),
                    messages=recorded(messages, closingRange(), finishMessage()))

    def test_percent_per_line_is_computed_before_it_is_multiplied(self):
        # 100 / 97 * 97 is not 100 in doubles, so the end of the range shows the order of the operations.
        self.giveJob({"a.xyz": HEADER + nodeLines(97)})
        run = self.clip()
        self.assertIn("ProgressMessage 0 99.999999999999986 97", run.messages)
        self.expectFinished(run, 97, {"a.xyz": HEADER + nodeLines(97)}, lineCounts=[97])


if __name__ == "__main__":
    unittest.main()
