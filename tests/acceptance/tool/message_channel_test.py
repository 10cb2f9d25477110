"""The message channel of the tool: JSON Lines on descriptor 3 with "-pipe", and runs with a bad descriptor 3."""
import os
import socket
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import CHANNEL, TOOL, AcceptanceTest, output
from expected_messages import USAGE, jsonFailedRun, jsonFinish, jsonFinishedRun, jsonProgress, jsonState

HEADER = b"x;y;z\n"
NODES = {"a.xyz": HEADER + b"1;1;5\n2;2;5\n30;3;5\n4;4;5\n"}
KEPT = {"a.xyz": HEADER + b"1;1;5\n2;2;5\n4;4;5\n"}
MESSAGES = jsonFinishedRun(0.0, 25.0, 50.0, 75.0, 100.0)


class ChannelTest(AcceptanceTest):
    def clipPiped(self, **settings):
        return self.clip("-pipe", "-lang=en", tool=TOOL, **settings)

    def expectJob(self, run, messages):
        self.expect(run, status=0, created=output(3, KEPT), messages=messages)


class Lines(ChannelTest):
    def test_finished_run_sends_state_progress_and_finish(self):
        self.giveJob(NODES)
        self.expectJob(self.clipPiped(), [
            '{"type":"state","level":1,"text":"Clipping elevation data...","active":true}',
            '{"type":"progress","percent":0.0}',
            '{"type":"progress","percent":25.0}',
            '{"type":"progress","percent":50.0}',
            '{"type":"progress","percent":75.0}',
            '{"type":"progress","percent":100.0}',
            '{"type":"finish","level":1,"text":"Finished clipping elevation data with model boundaries"}'])

    def test_failing_run_sends_its_errors_and_the_failure(self):
        run = self.start("base/data", "out", "no.xml", "-lang=en", "-pipe", tool=TOOL)
        texts = ["Boundary file no.xml not found", "Boundary file no.xml does not exist"]
        self.expect(run, status=1, console=texts, messages=[
            '{"type":"error","level":2,"text":"Boundary file no.xml not found"}',
            '{"type":"error","level":2,"text":"Boundary file no.xml does not exist"}',
            '{"type":"failed","level":1,"text":"Clipping of elevation data with model boundaries failed."}'])

    def test_usage_failure_is_sent(self):
        run = self.start("-lang=en", "-pipe", tool=TOOL)
        self.expect(run, status=1, console=[USAGE], messages=jsonFailedRun(USAGE))

    def test_nothing_is_sent_without_pipe(self):
        self.giveJob(NODES)
        self.expectJob(self.clip("-lang=en", tool=TOOL), [])
        self.expect(self.start("-lang=en", tool=TOOL), status=1, console=[USAGE], created=output(3, KEPT))

    def test_progress_over_several_files_never_decreases(self):
        counts = {"a.xyz": 5, "b.xyz": 15, "c.xyz": 0}
        files = {name: HEADER + b"1;1;5\n" * count for name, count in counts.items()}
        self.giveJob(files)
        messages, linesDone = [], 0
        for name in self.walkOrder():
            messages += [jsonState(), *jsonProgress(*(5.0 * (linesDone + step) for step in range(counts[name])))]
            linesDone += counts[name]
        kept = {name: content for name, content in files.items() if counts[name] > 0}
        self.expect(self.clipPiped(), status=0, created=output(20, kept),
                    messages=[*messages, *jsonProgress(100.0), jsonFinish()])

    def test_invalid_utf8_is_replaced_only_in_the_message(self):
        path = os.fsdecode(b"caf\xe9.xml")
        run = self.start("base/data", "out", path, "-lang=en", "-pipe", tool=TOOL)
        self.expect(run, status=1, console=[f"Boundary file {path} not found", f"Boundary file {path} does not exist"],
                    messages=jsonFailedRun("Boundary file caf\ufffd.xml not found",
                                           "Boundary file caf\ufffd.xml does not exist"))

    def test_each_line_is_one_write(self):
        self.giveJob(NODES)
        ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        with ours, theirs:
            run = self.clipPiped(channel=theirs.fileno())
            theirs.close()
            packets = iter(lambda: ours.recv(1 << 16), b"")
            run.messages = [packet.decode() for packet in packets]
        self.expectJob(run, [message + "\n" for message in MESSAGES])

    def test_message_is_sent_before_the_next_step_of_the_run(self):
        content = NODES["a.xyz"]
        firstLines = "\n".join([jsonState(), *jsonProgress(0.0)]).split("\n")
        self.giveJob({})
        self.serve("base/data/a.xyz", content, content,
                   [HEADER, lambda: self.waitFor(lambda: self.messagesSoFar() == firstLines, "first progress"),
                    content[len(HEADER):]])
        self.expectJob(self.clipPiped(), MESSAGES)


class UnusableChannel(ChannelTest):
    """The state of the channel does not change the result of a run."""

    def setUp(self):
        super().setUp()
        self.giveJob(NODES)

    def test_closed_channel_is_not_written_to(self):
        # The next file that the tool opens gets descriptor 3, so a message written there would be in an output file.
        self.expectJob(self.clipPiped(closed=(CHANNEL,)), [])

    def test_failing_run_with_a_closed_channel_ends_in_order(self):
        run = self.start("-pipe", "-lang=en", tool=TOOL, closed=(CHANNEL,))
        self.expect(run, status=1, console=[USAGE])

    def test_no_output_file_becomes_a_closed_channel(self):
        # The input cannot be opened, so the output file has descriptor 3 when the error of the header is sent.
        self.startOver()
        self.giveJob({})
        self.serve("base/data/a.xyz", HEADER, [lambda: os.remove(self.path("base/data/a.xyz")), HEADER])
        run = self.clipPiped(closed=(CHANNEL,))
        self.expect(run, status=0, console=[""], created=output(1, {"a.xyz": b""}), removed=["base/data/a.xyz"])

    def test_missing_reader_does_not_end_the_run(self):
        reading, writing = os.pipe()
        os.close(reading)
        self.expectJob(self.clipPiped(channel=writing), [])
        os.close(writing)

    def test_reader_that_closes_early_does_not_end_the_run(self):
        reading, writing = os.pipe()
        os.remove(self.path("base/data/a.xyz"))
        del self.given["base/data/a.xyz"]
        content = NODES["a.xyz"]
        self.serve("base/data/a.xyz", content, content,
                   [HEADER, lambda: os.read(reading, 1), lambda: os.close(reading), content[len(HEADER):]])
        self.expectJob(self.clipPiped(channel=writing), [])
        os.close(writing)

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_full_disk_does_not_end_the_run(self):
        with open("/dev/full", "wb") as full:
            self.expectJob(self.clipPiped(channel=full.fileno()), [])


if __name__ == "__main__":
    unittest.main()
