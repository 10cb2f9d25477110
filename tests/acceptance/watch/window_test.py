"""A pseudo-terminal that changes its size, and one whose run is interrupted: the rows that remain."""
import json
import os
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, JOB, STEADY, TerminalTest, onlyChildOf

NOT_COMPLETE = " The output in base/out is not complete."


class Resizing(TerminalTest):
    def test_each_drawing_fits_the_window(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, columns=120)
        bounds = []
        for columns in (120, 50, 30, 12, 100):
            terminal.resize(columns)
            changed = time.monotonic()
            while time.monotonic() < changed + 0.35:
                terminal.readSome(0.02)
            bounds.append((changed, columns))
        self.assertEqual(0, terminal.finish())
        drawn = set()
        for seen, data in terminal.reads:
            # A drawing for the former window may still arrive.
            fitting = [columns for changed, columns in bounds if changed <= seen]
            recent = [columns for changed, columns in bounds if changed <= seen < changed + 0.3]
            columns = max(fitting[-1:] + fitting[-2:-1] if recent else fitting[-1:], default=120)
            for row in self.shown(data, columns).drawings:
                self.assertLess(len(row), columns)
                drawn.add(len(row))
        self.assertGreater(len(drawn), 3, drawn)

    def test_wrapped_rows_of_a_narrower_window_are_erased(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, columns=100)
        terminal.readUntil(lambda received: b"%" in received, "the bar")
        terminal.resize(30)
        self.assertEqual(0, terminal.finish())
        # 100 columns need four rows of 30.
        self.assertIn(b"\x1b[K\x1b7" + b"\x1b[B\x1b[2K" * 3 + b"\x1b8", terminal.received)


class Interrupted(TerminalTest):
    def test_control_c_ends_the_tool_and_restores_the_terminal(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 3000000})
        terminal = self.terminal(*JOB, columns=120)
        before = terminal.settings()
        terminal.readUntil(lambda received: b"left" in received, "the bar")
        terminal.type(b"\x03")
        terminal.readUntil(lambda received: b"complete" in received, "the sentence")
        self.assertEqual(before, terminal.settings())
        self.assertEqual(4, terminal.finish())
        screen = self.shown(terminal.received, 120)
        # The terminal echoes Ctrl-C into the row of the bar, which is erased.
        self.assertEqual("Vadelwatch: interrupted by SIGINT, Vadelclip has ended. The output in base/out is not complete.",
                         screen.text().strip())
        self.assertTrue(screen.wrapping)

    def test_slow_tool_is_awaited_after_control_c(self):
        self.standIn("""
def end(*unused):
    time.sleep(0.5)
    open('ended', 'w').close()
    os._exit(1)
signal.signal(signal.SIGINT, end)
message(type='progress', percent=1.0)
time.sleep(600)
""")
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(lambda received: b"1.0 %" in received, "the bar")
        terminal.type(b"\x03")
        self.assertEqual(1, terminal.finish())
        self.assertEqual("Vadelwatch: interrupted by SIGINT, Vadelclip has ended with exit status 1." + NOT_COMPLETE,
                         self.shown(terminal.received, 120).text().strip())
        self.assertTrue(os.path.exists(self.path("ended")))

    def test_control_backslash_ends_the_tool(self):
        self.standIn("import resource; resource.setrlimit(resource.RLIMIT_CORE, (0, 0))\n"
                     "message(type='progress', percent=1.0); time.sleep(600)")
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(lambda received: b"1.0 %" in received, "the bar")
        terminal.type(b"\x1c")
        self.assertEqual(4, terminal.finish())
        self.assertEqual("Vadelwatch: interrupted by SIGQUIT, Vadelclip has ended." + NOT_COMPLETE,
                         self.shown(terminal.received, 120).text().strip())

    def test_killed_real_tool_leaves_no_bar(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 3000000})
        terminal = self.terminal(*JOB, columns=120)
        terminal.readUntil(lambda received: b"left" in received, "the bar")
        os.kill(onlyChildOf(terminal.pid), signal.SIGKILL)
        self.assertEqual(4, terminal.finish())
        self.assertEqual("Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE,
                         self.shown(terminal.received, 120).text().strip())

    def test_killed_stand_in_leaves_no_bar(self):
        self.standIn("message(type='progress', percent=50.0); time.sleep(1); os.kill(os.getpid(), signal.SIGKILL)")
        status, terminal, screen = self.finished(columns=120)
        self.assertEqual((4, "Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL). The output in base/out is not complete."),
                         (status, screen.text().strip()))


class InterruptedAfterRun(TerminalTest):
    """The check counts an endless output, and the map waits for a FIFO that is not read."""

    def interrupted(self, phase, *options):
        terminal = self.terminal(*JOB, *options, columns=120)
        terminal.readUntil(lambda received: phase in received, "the phase")
        terminal.type(b"\x03")
        return terminal.finish(), self.shown(terminal.received, 120)

    def test_control_c_ends_the_check(self):
        self.giveJob({"a.xyz": HEADER})
        self.standIn("""
finish()
with open('base/out/a.xyz', 'wb') as file:
    file.truncate(1 << 40)
""")
        status, screen = self.interrupted(b"checking")
        self.assertEqual(-signal.SIGINT, status)
        self.assertEqual("Vadelwatch: interrupted, so the output in base/out was not checked.", screen.text().strip())
        self.assertRegex(screen.drawings[0], r"^checking  [━─]+ +\d+\.\d %   \d:\d\d elapsed$")

    def test_control_c_ends_the_map(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        os.mkfifo(self.path("map.png"))
        status, screen = self.interrupted(b"drawing", "--map=map.png")
        self.assertEqual(-signal.SIGINT, status)
        self.assertEqual("Vadelwatch: interrupted, so the map map.png was not drawn.",
                         screen.text().strip().splitlines()[-1])

    def interruptedJson(self, phase, script):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        self.standIn(script)
        os.mkfifo(self.path("map.png"))
        process = self.start(*JOB, "--json", "--map=map.png", "--progress=bar")
        shown = b""
        while phase not in shown:
            data = os.read(process.stderr.fileno(), 4096)
            self.assertTrue(data, f"no {phase} in {shown}")
            shown += data
        process.send_signal(signal.SIGTERM)
        watched = self.finish(process)
        summary = json.loads(watched.output)
        self.assertEqual((-signal.SIGTERM, 128 + signal.SIGTERM, signal.SIGTERM, True),
                         (watched.status, summary["exit_status"], summary["interrupted_by"], summary["finished"]))
        self.assertTrue(watched.errors.endswith(summary["failure"] + "\n"), watched.errors)
        return summary

    def test_json_follows_a_signal_during_the_check(self):
        summary = self.interruptedJson(b"checking", "finish()\nopen('base/out/a.xyz', 'wb').truncate(1 << 40)")
        self.assertEqual(("interrupted, so the output in base/out was not checked.", None, None),
                         (summary["why_no_map"], summary["files_written"], summary["adds_up"]))

    def test_json_follows_a_signal_during_the_map(self):
        summary = self.interruptedJson(b"drawing", "finish()")
        self.assertEqual(("interrupted, so the map map.png was not drawn.", 0, True),
                         (summary["why_no_map"], summary["files_written"], summary["adds_up"]))

    def test_second_signal_ends_a_held_terminal(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        os.mkfifo(self.path("map.png"))
        terminal = self.terminal(*JOB, "--map=map.png", columns=120)
        terminal.readUntil(lambda received: b"drawing" in received, "the phase")
        terminal.type(b"\x13")
        for _ in range(2):
            time.sleep(0.5)
            os.kill(terminal.pid, signal.SIGTERM)
        self.assertEqual(-signal.SIGTERM, terminal.finish())


if __name__ == "__main__":
    unittest.main()
