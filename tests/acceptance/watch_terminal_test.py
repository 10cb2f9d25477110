"""Vadelwatch on a pseudo-terminal: the bar, its width, its rate of drawing, and how it leaves the terminal."""
import os
import re
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from watching import HEADER, Screen, WatchTest, summaryLines

JOB = ("base/data", "out", "area.xml", "--lang=en")
COLOUR = re.compile(rb"\x1b\[[0-9;]*m")

# A stand-in that reports a thousand steps in about two seconds.
STEADY = """
message(type='state', level=1, text='Clipping', active=True)
for tenths in range(1000):
    message(type='progress', percent=tenths / 10)
    time.sleep(0.002)
message(type='progress', percent=100.0)
finish()
"""


class TerminalTest(WatchTest):
    def shown(self, received, columns):
        screen = Screen(columns)
        screen.write(received.decode())
        return screen

    def finished(self, *options, columns=80, environment=None):
        terminal = self.terminal(*JOB, *options, columns=columns, environment=environment)
        status = terminal.finish()
        return status, terminal, self.shown(terminal.received, columns)


class Bar(TerminalTest):
    def test_the_real_tool_leaves_the_summary_and_nothing_else(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 300000})
        status, terminal, screen = self.finished()
        text = re.sub(r"\d+\.\d s", "N s", screen.text()).rstrip("\n").split("\n")
        self.assertEqual((0, summaryLines(1, 1, "300 000 of 300 000 (100.0 %)", "base/out")), (status, text))
        self.assertTrue(any("lines/s" in row for row in screen.drawings), screen.drawings)
        self.assertIn(b"\x1b[32m", terminal.received)

    def test_never_wider_than_the_window_at_any_width(self):
        self.standIn("for p in range(0, 101, 4): message(type='progress', percent=float(p)); time.sleep(0.02)\nfinish()")
        for columns in (1, 2, 7, 8, 9, 20, 28, 29, 40, 60, 79, 80, 81, 200, 1000):
            with self.subTest(columns=columns):
                status, terminal, screen = self.finished(columns=columns)
                self.assertEqual(0, status)
                self.assertLess(max(map(len, screen.drawings), default=0), columns)
                if columns >= 9:
                    self.assertTrue(any("%" in row for row in screen.drawings), screen.drawings)

    def test_what_the_bar_shows_at_usual_widths(self):
        self.standIn(STEADY)
        number = r"[ \d]+|-"
        for columns, form in (
                (40, r" [━─]{10,} +\d+\.\d %  \d:\d\d  (\d:\d\d|-:--) left"),
                (80, rf" [━─]{{20,}} +\d+\.\d %  +({number}) lines/s   \d:\d\d elapsed   (\d:\d\d|-:--) left"),
                (200, rf" [━─]{{80}} +\d+\.\d %  +({number}) lines/s   \d:\d\d elapsed   (\d:\d\d|-:--) left")):
            with self.subTest(columns=columns):
                _, _, screen = self.finished(columns=columns)
                self.assertGreater(len(screen.drawings), 5)
                for row in screen.drawings:
                    self.assertRegex(row, f"^{form}$")

    def test_at_most_ten_drawings_a_second(self):
        self.standIn(STEADY)
        began = time.monotonic()
        _, terminal, screen = self.finished()
        seconds = time.monotonic() - began
        self.assertGreater(len(screen.drawings), 8)
        self.assertLessEqual(len(screen.drawings), 10 * seconds + 1)

    def test_the_clock_goes_on_without_messages(self):
        self.standIn("message(type='progress', percent=10.0); time.sleep(2.3); finish()")
        _, _, screen = self.finished()
        clocks = [re.search(r"(\d:\d\d) elapsed", row)[1] for row in screen.drawings]
        self.assertEqual(["0:00", "0:01", "0:02"], sorted(set(clocks)))

    def test_no_colour_with_NO_COLOR(self):
        self.standIn(STEADY)
        _, terminal, _ = self.finished(environment={"NO_COLOR": "1"})
        self.assertIsNone(COLOUR.search(terminal.received))
        _, terminal, _ = self.finished(environment={"NO_COLOR": ""})
        self.assertIsNotNone(COLOUR.search(terminal.received))

    def test_plain_letters_where_the_terminal_is_not_utf8(self):
        self.standIn(STEADY)
        _, _, screen = self.finished(environment={"LC_ALL": "C"})
        for row in screen.drawings:
            self.assertRegex(row, "^ =*-* ")

    def test_plain_lines_on_a_terminal_that_cannot_move_its_cursor(self):
        self.standIn(STEADY)
        for settings in ({"TERM": "dumb"}, {"TERM": ""}):
            _, terminal, screen = self.finished(environment=settings)
            self.assertNotIn(b"\x1b", terminal.received)
            self.assertEqual([f"{tens:>3} %" for tens in range(10, 101, 10)],
                             [row[:5] for row in screen.rows if "lines/s" in row])

    def test_quiet_draws_nothing(self):
        self.standIn(STEADY)
        status, terminal, _ = self.finished("--quiet")
        self.assertEqual((0, b""), (status, terminal.received))

    def test_errors_stand_above_the_bar(self):
        self.standIn("""
for i in range(20):
    message(type='progress', percent=5.0 * i)
    say(b'error %d\\n' % i); message(type='error', level=2, text=f'error {i}')
    time.sleep(0.06)
finish()
""")
        _, _, screen = self.finished()
        self.assertEqual([f"error {i}" for i in range(20)], screen.rows[:20])
        self.assertEqual("The end", screen.rows[20])
        self.assertGreater(len(screen.drawings), 5)

    def test_what_is_typed_does_not_push_the_bar_aside(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, environment={"NO_COLOR": "1"})
        terminal.readUntil(lambda received: b"%" in received, "the bar")
        for letter in b"typed":
            terminal.type(bytes([letter]))
            terminal.readSome(0.2)
        self.assertEqual(0, terminal.finish())
        screen = self.shown(terminal.received, 80)
        self.assertEqual([], [row for row in screen.drawings if not re.match(" [━─]{20,} +[0-9]", row)])
        self.assertEqual("The end", screen.rows[0])

    def test_a_file_for_the_summary_leaves_the_bar_on_the_terminal(self):
        self.standIn(STEADY)
        self.giveJob({"a.xyz": HEADER})
        watch = self.watch
        self.watch = "/bin/sh"
        terminal = self.terminal("-c", f"'{watch}' base/data out area.xml --json >summary.json")
        self.assertEqual(0, terminal.finish())
        self.assertIn(b'"finished":true', self.content("summary.json"))
        screen = self.shown(terminal.received, 80)
        self.assertGreater(len(screen.drawings), 5)
        self.assertEqual("", screen.text().strip())


class Resizing(TerminalTest):
    def test_each_drawing_fits_the_window_of_its_time(self):
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
            # What was drawn as the window changed may still be on its way.
            fitting = [columns for changed, columns in bounds if changed <= seen]
            recent = [columns for changed, columns in bounds if changed <= seen < changed + 0.3]
            columns = max(fitting[-1:] + fitting[-2:-1] if recent else fitting[-1:], default=120)
            for row in self.shown(data, columns).drawings:
                self.assertLess(len(row), columns)
                drawn.add(len(row))
        self.assertGreater(len(drawn), 3, drawn)

    def test_rows_that_a_narrower_window_broke_off_are_erased(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, columns=100)
        terminal.readUntil(lambda received: b"%" in received, "the bar")
        terminal.resize(30)
        self.assertEqual(0, terminal.finish())
        # 100 columns stand in four rows of 30.
        self.assertIn(b"\x1b[K\x1b7" + b"\x1b[B\x1b[2K" * 3 + b"\x1b8", terminal.received)


class Interrupted(TerminalTest):
    def test_control_c_ends_the_tool_and_leaves_the_terminal_as_it_was(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 3000000})
        terminal = self.terminal(*JOB)
        before = terminal.settings()
        terminal.readUntil(lambda received: b"left" in received, "the bar")
        terminal.type(b"\x03")
        terminal.readUntil(lambda received: b"complete" in received, "the sentence")
        self.assertEqual(before, terminal.settings())
        self.assertEqual(4, terminal.finish())
        screen = self.shown(terminal.received, 80)
        # The terminal's own echo of Ctrl-C goes with the bar that it stands in.
        self.assertEqual("Vadelwatch: interrupted by SIGINT, Vadelclip has ended. The output in base/out is not complete.",
                         screen.text().strip())
        self.assertTrue(screen.wrapping)

    def test_a_tool_that_takes_its_time_is_waited_for(self):
        self.standIn("""
def end(*unused):
    time.sleep(0.5)
    open('ended', 'w').close()
    os._exit(0)
signal.signal(signal.SIGINT, end)
message(type='progress', percent=1.0)
time.sleep(600)
""")
        terminal = self.terminal(*JOB, "--json")
        terminal.readUntil(lambda received: b"1.0 %" in received, "the bar")
        terminal.type(b"\x03")
        terminal.finish()
        self.assertTrue(os.path.exists(self.path("ended")))

    def test_a_killed_tool_leaves_no_bar(self):
        self.standIn("message(type='progress', percent=50.0); time.sleep(0.5); os.kill(os.getpid(), signal.SIGKILL)")
        status, terminal, screen = self.finished()
        self.assertEqual((4, "Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL). The output in base/out is not complete."),
                         (status, screen.text().strip()))


if __name__ == "__main__":
    unittest.main()
