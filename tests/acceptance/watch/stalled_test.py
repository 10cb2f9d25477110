"""Vadelwatch whose own output has no room: readers that do not read, and a terminal held with Ctrl-S. Signals reach the
tool all the same, nothing but drawings of the bar is lost, and there is a way out."""
import os
import re
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, TIME_LIMIT, WatchTest

JOB = ("base/data", "out", "area.xml", "--lang=en")
INTERRUPTED = "Vadelwatch: interrupted by SIGTERM, Vadelclip has ended. The output in base/out is not complete."

# More errors than any pipe holds, on the console and as messages.
FLOOD = """
open('pid', 'w').write(str(os.getpid()))
for i in range(200000):
    say(b'error %d\\n' % i); message(type='error', level=2, text=f'error {i}')
    if i % 100 == 0: open('reached', 'w').write(str(i)); os.rename('reached', 'at')
"""

# Notes the signal, then ends by it.
DIES = """
def end(number, frame):
    open('got', 'w').close()
    signal.signal(number, signal.SIG_DFL)
    os.kill(os.getpid(), number)
signal.signal(signal.SIGTERM, end)
"""


class Stalled(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER})

    def waitUntil(self, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while not condition():
            self.assertLess(time.monotonic(), limit, f"{what} was not to be seen")
            time.sleep(0.01)

    def waitForFile(self, name):
        self.waitUntil(lambda: os.path.exists(self.path(name)), name)

    def waitForStall(self):
        """Until the tool gets no further, since nobody reads what Vadelwatch shows."""
        self.waitForFile("at")
        before = None
        while before != self.content("at"):
            before = self.content("at")
            time.sleep(0.7)

    def startStalled(self, script, *options):
        self.standIn(script)
        process = self.start(*JOB, "--progress=none", *options)
        self.waitForStall()
        return process

    def expectPrefixOfErrors(self, lines):
        self.assertGreater(len(lines), 1000)
        self.assertEqual([f"error {i}" for i in range(len(lines))], lines)

    def waitForEndOfTool(self):
        tool = f"/proc/{int(self.content('pid'))}"
        self.waitUntil(lambda: not os.path.exists(tool), "the tool's end")

    def test_a_signal_reaches_the_tool_and_no_error_is_lost(self):
        process = self.startStalled(DIES + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        self.waitForEndOfTool()
        self.assertIsNone(process.poll())
        watched = self.finish(process)
        self.assertEqual((4, INTERRUPTED), (watched.status, watched.errorLines()[-1]))
        shown = watched.errorLines()[:-1]
        self.expectPrefixOfErrors(shown)
        self.assertGreaterEqual(len(shown), int(self.content("at")))

    def test_a_second_signal_ends_it_when_the_tool_has_ended(self):
        process = self.startStalled(DIES + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForEndOfTool()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))
        self.expectPrefixOfErrors(self.finish(process).errorLines()[:-1])

    def test_a_tool_that_has_much_to_say_before_it_ends_is_listened_to(self):
        process = self.startStalled("""
def end(number, frame):
    for i in range(30000): say(b'last words %d\\n' % i)
    open('got', 'w').close()
    os._exit(1)
signal.signal(signal.SIGTERM, end)
""" + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        lines = self.finish(process).errorLines()
        self.assertIn("last words 0", lines)
        self.assertIn("last words 29999", lines)

    def test_a_log_that_nobody_reads_holds_no_signal_back(self):
        os.mkfifo(self.path("log"))
        reader = os.open(self.path("log"), os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        self.standIn(DIES + FLOOD.replace("say(b'error %d\\n' % i); ", ""))
        process = self.start(*JOB, "--quiet", "--log", "log", "--json")
        # Only the log is not read.
        os.set_blocking(process.stderr.fileno(), False)
        self.waitForFile("at")
        before = None
        while before != self.content("at"):
            before = self.content("at")
            process.stderr.read()
            time.sleep(0.7)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        self.waitForEndOfTool()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))

    def test_without_a_signal_a_slow_reader_is_waited_for(self):
        process = self.startStalled(FLOOD.replace("200000", "20000") + "finish()\n", "--quiet")
        watched = self.finish(process)
        self.assertEqual((0, [f"error {i}" for i in range(20000)]), (watched.status, watched.errorLines()))


class HeldTerminal(WatchTest):
    def holdBar(self, script, *options):
        """A terminal that has been held with Ctrl-S since the bar was to be seen."""
        self.standIn(script)
        self.giveJob({"a.xyz": HEADER})
        terminal = self.terminal(*JOB, *options)
        terminal.readUntil(lambda received: b"%" in received, "the bar")
        terminal.type(b"\x13")
        return terminal

    def readFor(self, terminal, seconds):
        limit = time.monotonic() + seconds
        while time.monotonic() < limit:
            terminal.readSome(0.05)

    def waitForFile(self, terminal, name):
        limit = time.monotonic() + TIME_LIMIT
        while not os.path.exists(self.path(name)):
            self.assertLess(time.monotonic(), limit, f"{name} was not to be seen")
            terminal.readSome(0.05)

    def test_the_bar_holds_no_run_back(self):
        terminal = self.holdBar("""
for tenths in range(1000):
    message(type='progress', percent=tenths / 10); time.sleep(0.001)
for i in range(100000):
    message(type='progress', percent=99.9)
finish()
open('finished', 'w').close()
""")
        self.waitForFile(terminal, "finished")
        before = len(terminal.received)
        self.readFor(terminal, 0.5)
        self.assertEqual(before, len(terminal.received))
        terminal.type(b"\x11")
        self.assertEqual(0, terminal.finish())
        self.assertIn(b"The end", terminal.received)

    def test_a_signal_reaches_the_tool_and_control_q_brings_the_rest(self):
        terminal = self.holdBar(DIES + "message(type='progress', percent=1.0); time.sleep(0.5)\n" + FLOOD)
        self.waitForFile(terminal, "at")
        self.readFor(terminal, 1.5)
        os.kill(terminal.pid, signal.SIGTERM)
        self.waitForFile(terminal, "got")
        terminal.type(b"\x11")
        self.assertEqual(4, terminal.finish())
        text = re.sub(rb"\x1b(\[[0-9;?]*[A-Za-z]|[78])", b"", terminal.received).decode()
        errors = [int(number) for number in re.findall(r"error (\d+)\r\n", text)]
        self.assertEqual(list(range(len(errors))), errors)
        self.assertGreaterEqual(len(errors), int(self.content("at")))
        self.assertTrue(text.endswith(INTERRUPTED + "\r\n"), text[-300:])

    def test_control_c_on_a_held_terminal(self):
        terminal = self.holdBar(DIES.replace("SIGTERM", "SIGINT") +
                                "message(type='progress', percent=1.0); time.sleep(600)\n")
        self.readFor(terminal, 0.5)
        terminal.type(b"\x03")
        self.waitForFile(terminal, "got")
        terminal.type(b"\x11")
        self.assertEqual(4, terminal.finish())
        self.assertIn(b"interrupted by SIGINT", terminal.received)


if __name__ == "__main__":
    unittest.main()
