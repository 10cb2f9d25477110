"""A pseudo-terminal that changes its size, and one whose run is interrupted: the rows that remain."""
import json
import os
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from terminal import drawnRows, draws
from watching import HEADER, JOB, STEADY, TerminalTest, onlyChildOf, signalsIn

NOT_COMPLETE = " The output in base/out is not complete."


class Resizing(TerminalTest):
    def test_each_drawing_fits_the_window(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, columns=120)
        windows = (120, 50, 30, 12, 80)
        first = 0
        for former, columns in zip((0, *windows), windows):
            terminal.resize(columns)
            # A bar in one of these windows is wider than the next narrower window.
            narrower = max((other for other in windows if other < columns), default=0)
            terminal.readUntil(lambda received: any(narrower <= len(row) < columns for row in drawnRows(received)[first:]),
                               f"a bar of less than {columns} columns")
            rows = [len(row) for row in drawnRows(terminal.received)[first:]]
            # Drawings for the former window may still arrive.
            change = next(i for i, length in enumerate(rows) if narrower <= length < columns)
            self.assertLess(max(rows[:change], default=0), max(former, columns))
            self.assertLess(max(rows[change:]), columns)
            first += len(rows)
        self.giveSeen()
        self.assertEqual(0, terminal.finish())

    def test_wrapped_rows_of_a_narrower_window_are_erased(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, columns=100)
        terminal.readUntil(draws("%"), "the bar")
        terminal.resize(30)
        # 100 columns need four rows of 30.
        erased = b"\x1b[K\x1b7" + b"\x1b[B\x1b[2K" * 3 + b"\x1b8"
        terminal.readUntil(lambda received: erased in received, "the erasing")
        self.giveSeen()
        self.assertEqual(0, terminal.finish())


class InterruptionTest(TerminalTest):
    def expectRemaining(self, text, terminal, echo="^C"):
        """Expects that only this text remains, and perhaps the echo of a key, which may follow it on a busy machine."""
        screen = self.shown(terminal.received, 120)
        self.assertEqual(text, screen.text().strip().removesuffix(echo).strip())
        return screen


class Interrupted(InterruptionTest):
    def test_control_c_ends_the_tool_and_restores_the_terminal(self):
        self.giveJob({})
        self.holdNodeFile("a.xyz", HEADER + b"1;1;5\n" * 1000)
        terminal = self.terminal(*JOB, columns=120)
        before = terminal.settings()
        terminal.readUntil(draws("left"), "the bar")
        terminal.type(b"\x03")
        terminal.readUntil(lambda received: b"complete" in received, "the sentence")
        self.assertEqual(before, terminal.settings())
        self.assertEqual(4, terminal.finish())
        # An echo in the row of the bar is erased with it.
        screen = self.expectRemaining("Vadelwatch: interrupted by SIGINT, Vadelclip has ended." + NOT_COMPLETE, terminal)
        self.assertTrue(screen.wrapping)

    def test_slow_tool_is_awaited_after_control_c(self):
        self.standIn("""
def end(*unused):
    time.sleep(0.5)
    open('ended', 'w').close()
    os._exit(1)
signal.signal(signal.SIGINT, end)
message(type='progress', percent=1.0)
while True: time.sleep(0.1)  # a handler runs between two calls
""")
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(draws(" 1.0 %"), "the bar")
        terminal.type(b"\x03")
        self.assertEqual(1, terminal.finish())
        self.expectRemaining("Vadelwatch: interrupted by SIGINT, Vadelclip has ended with exit status 1." + NOT_COMPLETE,
                             terminal)
        self.assertTrue(os.path.exists(self.path("ended")))

    def test_control_backslash_ends_the_tool(self):
        self.standIn("import resource; resource.setrlimit(resource.RLIMIT_CORE, (0, 0))\n"
                     "message(type='progress', percent=1.0); time.sleep(600)")
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(draws(" 1.0 %"), "the bar")
        terminal.type(b"\x1c")
        self.assertEqual(4, terminal.finish())
        self.expectRemaining("Vadelwatch: interrupted by SIGQUIT, Vadelclip has ended." + NOT_COMPLETE, terminal, "^\\")

    def test_killed_real_tool_leaves_no_bar(self):
        self.giveJob({})
        self.holdNodeFile("a.xyz", HEADER + b"1;1;5\n" * 1000)
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(draws("left"), "the bar")
        os.kill(onlyChildOf(terminal.pid), signal.SIGKILL)
        self.assertEqual(4, terminal.finish())
        self.expectRemaining("Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE, terminal)

    def test_killed_stand_in_leaves_no_bar(self):
        self.standIn("message(type='progress', percent=50.0)\nwhile not os.path.exists('seen'): time.sleep(0.01)\n"
                     "os.kill(os.getpid(), signal.SIGKILL)")
        status, terminal, _ = self.finished(columns=120, until=draws("50.0 %"))
        self.assertEqual(4, status)
        self.expectRemaining("Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE, terminal)


class InterruptedAfterRun(InterruptionTest):
    """The check counts an endless output, and the map waits for a FIFO that is not read."""

    def interrupted(self, phase, *options):
        terminal = self.terminal(*JOB, *options, columns=120)
        terminal.readUntil(draws(phase), "the phase")
        terminal.type(b"\x03")
        self.assertEqual(-signal.SIGINT, terminal.finish())
        return terminal

    def test_control_c_ends_the_check(self):
        self.giveJob({"a.xyz": HEADER})
        self.standIn("""
finish()
with open('base/out/a.xyz', 'wb') as file:
    file.truncate(1 << 40)
""")
        terminal = self.interrupted(r"^checking  [━─]+ +\d+\.\d %   \d:\d\d elapsed$")
        self.expectRemaining("Vadelwatch: interrupted, so the output in base/out was not checked.", terminal)

    def test_control_c_ends_the_map(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        os.mkfifo(self.path("map.png"))
        terminal = self.interrupted("drawing", "--map=map.png")
        rows = self.shown(terminal.received, 120).text().removesuffix("^C").strip().splitlines()
        self.assertEqual("Vadelwatch: interrupted, so the map map.png was not drawn.", rows[-1])

    def interruptedJson(self, phase, script):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        self.standIn(script)
        os.mkfifo(self.path("map.png"))
        process = self.start(*JOB, "--json", "--map=map.png", "--progress=bar")
        self.readUntil(process.stderr, phase)
        process.send_signal(signal.SIGTERM)
        watched = self.finish(process)
        summary = json.loads(watched.output)
        self.assertEqual((-signal.SIGTERM, 128 + signal.SIGTERM, signal.SIGTERM, True),
                         (watched.status, summary["exit_status"], summary["interrupted_by"], summary["finished"]))
        self.assertTrue(watched.errors.endswith(summary["failure"] + "\n"), watched.errors)
        return summary

    def test_json_follows_a_signal_during_the_check(self):
        summary = self.interruptedJson("checking", "finish()\nopen('base/out/a.xyz', 'wb').truncate(1 << 40)")
        self.assertEqual(("interrupted, so the output in base/out was not checked.", None, None),
                         (summary["why_no_map"], summary["files_written"], summary["adds_up"]))

    def test_json_follows_a_signal_during_the_map(self):
        summary = self.interruptedJson("drawing", "finish()")
        self.assertEqual(("interrupted, so the map map.png was not drawn.", 0, True),
                         (summary["why_no_map"], summary["files_written"], summary["adds_up"]))

    def test_second_signal_ends_a_held_terminal(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        os.mkfifo(self.path("map.png"))
        terminal = self.terminal(*JOB, "--map=map.png", columns=120)
        terminal.readUntil(draws("drawing"), "the phase")
        terminal.type(b"\x13")
        os.kill(terminal.pid, signal.SIGTERM)
        # Two signals at once would be one.
        self.waitUntil(lambda: signal.SIGTERM not in signalsIn("ShdPnd", terminal.pid), "the first signal taken")
        os.kill(terminal.pid, signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, terminal.finish())


if __name__ == "__main__":
    unittest.main()
