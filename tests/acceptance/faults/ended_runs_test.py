"""Runs that end early: a messaging library that throws, and a process that is killed."""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, AcceptanceTest
from expected_messages import (FAILED, FINISHED, USAGE, closingRange, errorMessage, failedMessage, filePass, recorded,
                               stateMessage)
from target_platform import inTextMode

HEADER = b"x;y;z\n"
INSIDE = b"1;1;5\n2;2;5\n3;3;5\n"


def throwing(call):
    """For `environment`: the recording message layer throws from the first such call, after it has recorded it."""
    return {"VADELCLIP_RECORDING_THROWS": call}


class ThrownErrors(AcceptanceTest):
    def test_error_in_the_finish_message_fails_the_run(self):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        call = f"FinishMessage 1 {FINISHED}"
        run = self.clip(environment=throwing(call))
        self.expect(run, status=1, console=[f"thrown by {call}"],
                    created={"base/out": DIRECTORY, "base/out/a.xyz": HEADER + INSIDE,
                             "base/out/total_node_count.txt": b"3\n"},
                    messages=recorded(filePass(3), closingRange(), [call, "end FinishMessage"],
                                      errorMessage(f"thrown by {call}"), failedMessage()))

    def test_failed_message_is_sent_again_after_its_error(self):
        call = f"FailedMessage 1 {FAILED}"
        text, again = "Boundary file area.xml not found", "Boundary file area.xml does not exist"
        self.expect(self.clip(environment=throwing(call)), status=1, console=[text, again, f"thrown by {call}"],
                    messages=recorded(errorMessage(text), errorMessage(again), failedMessage(),
                                      errorMessage(f"thrown by {call}"), failedMessage()))

    def test_error_between_lines_leaves_the_written_lines(self):
        self.giveJob({"a.xyz": HEADER + INSIDE})
        call = "OnProgress 2 false"
        run = self.clip(environment=throwing(call))
        self.expect(run, status=1, console=[f"thrown by {call}"],
                    created={"base/out": DIRECTORY, "base/out/a.xyz": HEADER + b"1;1;5\n2;2;5\n"},
                    messages=recorded(stateMessage(), ["ProgressMessage 0 100 3", "OnProgress 0 false",
                                                       "OnProgress 1 false", call, "end ProgressMessage"],
                                      errorMessage(f"thrown by {call}"), failedMessage()))

    def test_error_keeps_finished_files_and_writes_no_count(self):
        content = HEADER + b"1;1;5\n2;2;5\n"
        self.giveJob({"a.xyz": content, "b.xyz": content})
        first, second = self.walkOrder()
        call = "ProgressMessage 50 100 2"  # the second pass
        run = self.clip(environment=throwing(call))
        self.expect(run, status=1, console=[f"thrown by {call}"],
                    created={"base/out": DIRECTORY, f"base/out/{first}": content, f"base/out/{second}": HEADER},
                    messages=recorded(filePass(2, 0, 4), stateMessage(), [call, "end ProgressMessage"],
                                      errorMessage(f"thrown by {call}"), failedMessage()))

    def expectAbnormalEnd(self, call, *messages, console=b""):
        run = self.start(environment=throwing(call))
        self.assertNotIn(run.status, (0, 1))
        self.assertEqual((run.console, run.messages), (inTextMode(console), [*messages, call]))

    def test_error_during_a_usage_failure_ends_the_process(self):
        self.expectAbnormalEnd(f"ErrorMessage 2 {USAGE}", "MessageSender 0", console=USAGE.encode() + b"\n")

    def test_error_of_the_sender_ends_the_process(self):
        self.expectAbnormalEnd("MessageSender 0")


class KilledRun(AcceptanceTest):
    def test_killed_run_leaves_whole_lines_and_no_count(self):
        self.giveJob({})
        output = Path(self.path("base/out/a.xyz"))
        written = HEADER + b"1;1;5\n2;2;5\n"

        def kill():
            self.waitFor(lambda: self.messagesSoFar()[-1:] == ["OnProgress 2 false"], "two kept lines")
            self.assertEqual(written, output.read_bytes())
            self.runningProcess().kill()

        self.serve("base/data/a.xyz", HEADER, HEADER + INSIDE, [HEADER + b"1;1;5\n2;2;5\n3;3", kill])
        run = self.clip()
        self.expect(run, status=-9, created={"base/out": DIRECTORY, "base/out/a.xyz": written},
                    messages=["MessageSender 0", *stateMessage(), "ProgressMessage 0 100 3", "OnProgress 0 false",
                              "OnProgress 1 false", "OnProgress 2 false"])


if __name__ == "__main__":
    unittest.main()
