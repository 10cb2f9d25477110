"""Vadelwatch with blocked output: readers that do not read, and a terminal held with Ctrl-S. Signals reach the tool, only
drawings of the bar are lost, and a second signal ends Vadelwatch."""
import os
import re
import signal
import sys
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from engines import isRunning
from terminal import draws
from watching import HEADER, TIME_LIMIT, WatchTest, isFull

JOB = ("base/data", "out", "area.xml", "--lang=en")
INTERRUPTED = "Vadelwatch: interrupted by SIGTERM, Vadelclip has ended. The output in base/out is not complete."

# More errors than fit into any pipe, on the console and as messages.
FLOOD = """
open('new', 'w').write(str(os.getpid())); os.rename('new', 'pid')
for i in range(200000):
    say(b'error %d\\n' % i); message(type='error', level=2, text=f'error {i}')
    if i % 100 == 0: open('reached', 'w').write(str(i)); os.rename('reached', 'at')
"""

# Records the signal, then ends by it.
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

    def waitForStall(self, output):
        """Waits until this output of Vadelwatch, a pipe that is not read, and the channel of the tool are full."""
        self.waitForFile("pid")
        channel = f"/proc/{int(self.content('pid'))}/fd/3"
        self.waitUntil(lambda: isFull(f"/proc/self/fd/{output}") and isFull(channel), "the stall")

    def startStalled(self, script, *options):
        self.standIn(script)
        process = self.start(*JOB, "--progress=none", *options)
        self.waitForStall(process.stderr.fileno())
        return process

    def expectPrefixOfErrors(self, lines):
        self.assertGreater(len(lines), 1000)
        self.assertEqual([f"error {i}" for i in range(len(lines))], lines)

    def waitForEndOfTool(self):
        tool = f"/proc/{int(self.content('pid'))}"
        self.waitUntil(lambda: not os.path.exists(tool), "the tool's end")

    def test_signal_reaches_the_tool_and_no_error_is_lost(self):
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

    def test_second_signal_ends_vadelwatch_after_the_tool(self):
        process = self.startStalled(DIES + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForEndOfTool()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))
        self.expectPrefixOfErrors(self.finish(process).errorLines()[:-1])

    def test_second_signal_ends_vadelwatch_before_it_has_seen_the_end_of_the_tool(self):
        process = self.startStalled("""
def end(number, frame):
    open('got', 'w').close()
    while not os.path.exists('held'): time.sleep(0.01)
    os._exit(1)
signal.signal(signal.SIGTERM, end)
""" + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        process.send_signal(signal.SIGSTOP)
        self.give({"held": b""})
        tool = int(self.content("pid"))
        self.waitUntil(lambda: not isRunning(tool), "the tool's end")
        process.send_signal(signal.SIGTERM)
        process.send_signal(signal.SIGCONT)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))

    def test_all_output_before_the_end_of_the_tool_is_shown(self):
        process = self.startStalled("""
def end(number, frame):
    for i in range(30000): os.write(1, b'last words %d\\n' % i)
    open('got', 'w').close()
    os._exit(1)
signal.signal(signal.SIGTERM, end)
""" + FLOOD)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        lines = self.finish(process).errorLines()
        self.assertIn("last words 0", lines)
        self.assertIn("last words 29999", lines)

    def test_unread_log_does_not_delay_a_signal(self):
        os.mkfifo(self.path("log"))
        reader = os.open(self.path("log"), os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        self.standIn(DIES + FLOOD.replace("say(b'error %d\\n' % i); ", ""))
        process = self.start(*JOB, "--quiet", "--log", "log", "--json")
        # All output except the log is read.
        thread = threading.Thread(target=process.stderr.read, daemon=True)
        thread.start()
        self.waitForStall(reader)
        process.send_signal(signal.SIGTERM)
        self.waitForFile("got")
        self.waitForEndOfTool()
        process.send_signal(signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, process.wait(TIME_LIMIT))
        thread.join(TIME_LIMIT)

    def test_slow_reader_is_awaited_without_a_signal(self):
        process = self.startStalled(FLOOD.replace("200000", "20000") + "finish()\n", "--quiet")
        watched = self.finish(process)
        self.assertEqual((0, [f"error {i}" for i in range(20000)]), (watched.status, watched.errorLines()))


class HeldTerminal(WatchTest):
    def holdBar(self, script, *options):
        """Returns a terminal that is held with Ctrl-S since the bar has appeared. Then there is a file "seen"."""
        self.standIn(script)
        self.giveJob({"a.xyz": HEADER})
        terminal = self.terminal(*JOB, *options)
        # A stand-in that starts slowly is counting first.
        terminal.readUntil(draws("clipping"), "the bar")
        terminal.type(b"\x13")
        self.giveSeen()
        return terminal

    def readWhile(self, terminal, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while condition():
            self.assertLess(time.monotonic(), limit, f"{what} was not to be seen")
            terminal.readSome(0.05)

    def readFor(self, terminal, seconds):
        limit = time.monotonic() + seconds
        while time.monotonic() < limit:
            terminal.readSome(0.05)

    def readUntilFile(self, terminal, name):
        self.readWhile(terminal, lambda: not os.path.exists(self.path(name)), name)

    def test_bar_does_not_delay_the_run(self):
        terminal = self.holdBar("""
steps = 0
while not os.path.exists('seen'):
    message(type='progress', percent=100 * steps / (steps + 500)); steps += 1; time.sleep(0.001)
for i in range(100000):
    message(type='progress', percent=99.9)
finish()
open('finished', 'w').close()
""")
        self.readUntilFile(terminal, "finished")
        self.readFor(terminal, 0.5)
        self.assertNotIn(b"The end", terminal.received)
        terminal.type(b"\x11")
        self.assertEqual(0, terminal.finish())
        self.assertIn(b"The end", terminal.received)

    def test_control_q_shows_the_rest_after_a_signal(self):
        terminal = self.holdBar(DIES + """
message(type='progress', percent=1.0)
while not os.path.exists('seen'): time.sleep(0.01)
""" + FLOOD)
        self.readUntilFile(terminal, "at")
        channel = f"/proc/{int(self.content('pid'))}/fd/3"
        self.readWhile(terminal, lambda: not isFull(channel), "the stall")
        os.kill(terminal.pid, signal.SIGTERM)
        self.readUntilFile(terminal, "got")
        terminal.type(b"\x11")
        self.assertEqual(4, terminal.finish())
        text = re.sub(rb"\x1b(\[[0-9;?]*[A-Za-z]|[78])", b"", terminal.received).decode()
        errors = [int(number) for number in re.findall(r"error (\d+)\r\n", text)]
        self.assertEqual(list(range(len(errors))), errors)
        self.assertGreaterEqual(len(errors), int(self.content("at")))
        self.assertTrue(text.endswith(INTERRUPTED + "\r\n"), text[-300:])

    def test_control_c_ends_a_held_terminal(self):
        terminal = self.holdBar(DIES.replace("SIGTERM", "SIGINT") +
                                "message(type='progress', percent=1.0)\nwhile True: time.sleep(0.1)\n")
        self.readFor(terminal, 0.5)
        terminal.type(b"\x03")
        self.readUntilFile(terminal, "got")
        terminal.type(b"\x11")
        self.assertEqual(4, terminal.finish())
        self.assertIn(b"interrupted by SIGINT", terminal.received)


if __name__ == "__main__":
    unittest.main()
