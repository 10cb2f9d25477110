"""The messages of a run, their values and their order, as recorded calls of the message classes."""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import AcceptanceTest, linkTo, output
from expected_messages import finishedRun

HEADER = b"x;y;z\n"


def nodeLines(count):
    return b"".join(b"%d;1;5\n" % (index % 10 + 1) for index in range(count))


class Sequences(AcceptanceTest):
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

    def test_each_file_has_its_state_and_its_part_of_the_range(self):
        counts = {"a.xyz": 3, "b.txt": 7, "c.csv": 1, "d.csv": 0}
        files = {name: HEADER + nodeLines(count) for name, count in counts.items()}
        self.giveJob(files)
        kept = {name: content for name, content in files.items() if counts[name] > 0}
        self.expectFinished(self.clip(), 11, kept, lineCounts=[counts[name] for name in self.walkOrder()])

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


if __name__ == "__main__":
    unittest.main()
