"""The bar on a pseudo-terminal: its parts, its width and its rate of drawing."""
import collections
import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from terminal import drawnRows, draws
from watching import HEADER, JOB, STEADY, TerminalTest, summaryLines

COLOUR = re.compile(rb"\x1b\[[0-9;]*m")


# Shows nothing for longer than a run without a bar or a plain line.
LONG = "message(type='progress', percent=10.0); time.sleep(2.3); finish()"


def clippingRows(screen):
    """A stand-in that starts slowly is counting first. After a bar, a check that takes a tenth of a second shows its own."""
    return [row for row in screen.drawings if not row.startswith(("counting", "checking"))]


def drawsOften(received):
    return len(drawnRows(received)) > 5


class Bar(TerminalTest):
    def test_only_the_summary_remains(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 1000})
        held = self.holdNodeFile("b.xyz", HEADER + b"1;1;5\n" * 1000)
        terminal = self.terminal(*JOB)
        terminal.readUntil(draws("lines/s"), "the bar")
        held.set()
        status = terminal.finish()
        text = re.sub(r"\d+\.\d s", "N s", self.shown(terminal.received, 80).text()).rstrip("\n").split("\n")
        self.assertEqual((0, summaryLines(2, 2, "2 000", "base/out")), (status, text))
        self.assertIn(b"\x1b[32m", terminal.received)

    def test_bar_fits_any_width(self):
        self.standIn(STEADY)
        for columns in (9, 20, 28, 29, 40, 60, 79, 80, 81, 200, 1000):
            with self.subTest(columns=columns):
                status, _, screen = self.finished(columns=columns, until=draws("%"))
                self.expectFits(status, screen)

    def test_window_may_be_too_narrow_for_the_bar(self):
        self.standIn("message(type='progress', percent=50.0); time.sleep(0.8); finish()")
        for columns in (1, 2, 7, 8):
            with self.subTest(columns=columns):
                status, _, screen = self.finished(columns=columns)
                self.expectFits(status, screen)

    def expectFits(self, status, screen):
        self.assertEqual(0, status)
        self.assertLess(max(map(len, screen.drawings), default=0), screen.columns)
        self.assertLess(screen.longest, screen.columns)
        self.assertEqual(0, screen.cut)

    def test_bar_has_these_parts_at_usual_widths(self):
        self.standIn(STEADY)
        left = r" +(\d+:\d\d|-:--) left"
        speed = r"( +-|[ \d.]{4}[\dk]) lines/s"
        bytes_ = r"( +-| 0.0) MB/s"
        for columns, form in (
                (40, rf"clipping +\d+\.\d %{left}  file 1"),
                (80, rf"clipping  [━─]{{8,}} +\d+\.\d %  {speed}  {bytes_}{left}  file 1"),
                (200, rf"clipping  [━─]{{60,80}} +\d+\.\d %  {speed}  {bytes_}   \d:\d\d elapsed{left}  file 1")):
            with self.subTest(columns=columns):
                _, _, screen = self.finished(columns=columns, until=drawsOften)
                for row in clippingRows(screen):
                    self.assertRegex(row, f"^{form}$")

    def test_bar_is_drawn_at_most_ten_times_a_second(self):
        self.standIn(STEADY)
        _, _, screen = self.finished(columns=200, until=draws("0:0[2-9] elapsed"))
        # Its own clock, because on a busy machine a drawing is read later than it was made.
        drawings = collections.Counter(re.search(r"\d:\d\d elapsed", row)[0] for row in screen.drawings
                                       if "checking" not in row)
        self.assertGreater(len(drawings), 1)
        # Eleven drawings are ten pauses of a tenth of a second.
        self.assertLessEqual(max(drawings.values()), 11, drawings)

    def test_short_run_draws_nothing(self):
        self.standIn("message(type='progress', percent=10.0); finish()")
        self.expectShortRun(lambda: self.finished()[2].drawings)

    def test_progress_option_selects_bar_lines_or_none(self):
        self.standIn(LONG)
        _, _, screen = self.finished("--progress=none")
        self.assertEqual(("The end", []), (screen.rows[0], screen.drawings))
        self.standIn(STEADY)
        _, _, screen = self.finished("--progress=plain", until=lambda received: b"clipping" in received)
        rows = [row for row in screen.rows if not row.startswith("counting")]
        self.assertEqual((True, "The end", []), (rows[0].startswith("clipping  "), rows[1], screen.drawings))
        process = self.start(*JOB, "--progress=bar")
        self.readUntil(process.stderr, "━")
        self.giveSeen()
        self.assertEqual(0, self.finish(process).status)

    def test_counting_shows_its_share(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2000000})
        self.standIn("""
with open('base/data/a.xyz', 'rb') as file: file.read(6000000)
while not os.path.exists('seen'): time.sleep(0.01)
message(type='state', level=1, text='Clipping', active=True)
message(type='state', level=1, text='Clipping', active=True)
file = open('base/data/a.xyz', 'rb')
message(type='progress', percent=70.0)
while os.path.exists('seen'): time.sleep(0.01)
finish()
""")
        terminal = self.terminal(*JOB, columns=200)
        terminal.readUntil(draws(r"^counting  [━─]{80}   [56]\d\.\d %   \d:\d\d elapsed$"), "the share")
        self.giveSeen()
        terminal.readUntil(draws(r"^clipping  [━─]+   70\.0 % .* left  file 2/1  a\.xyz$"), "the file")
        os.remove(self.path("seen"))
        self.assertEqual(0, terminal.finish())

    def test_control_characters_of_the_tool_are_escaped(self):
        self.standIn("""
say(b'a\\x1b[2Jb\\n'); message(type='error', level=2, text='a\\x1b[2Jb')
message(type='error', level=2, text='c\\rd')
message(type='failed', level=1, text='e\\x07f'); sys.exit(1)
""")
        status, terminal, screen = self.finished()
        self.assertEqual((1, r"a\x1B[2Jb|c\x0Dd|e\x07f"), (status, "|".join(screen.text().split())))

    def test_result_has_a_colour_without_NO_COLOR(self):
        self.giveJob({"total_node_count.txt": HEADER + b"1;1;5\n"})
        for settings, verdict in (({}, b"\x1b[31mthe lines do not"), ({"NO_COLOR": "1"}, b"  the lines do not")):
            _, terminal, screen = self.finished(environment=settings)
            self.assertIn(verdict, terminal.received)
            self.assertTrue(screen.rows[0].startswith("Clipping ended, but its output does not add up"), screen.rows)
            subprocess.run(["rm", "-r", self.path("base/out")], check=True)

    def test_time_continues_without_messages(self):
        self.standIn("message(type='progress', percent=10.0)\nwhile not os.path.exists('seen'): time.sleep(0.01)\nfinish()")
        def clocks(received):
            return {row.split("elapsed")[0] for row in drawnRows(received) if "10.0 %" in row}
        self.assertEqual(0, self.finished(columns=120, until=lambda received: len(clocks(received)) > 2)[0])

    def test_NO_COLOR_removes_colours(self):
        self.standIn(STEADY)
        for value, colour in (("1", False), ("", True)):
            _, terminal, _ = self.finished(environment={"NO_COLOR": value}, until=draws("%"))
            self.assertEqual(colour, COLOUR.search(terminal.received) is not None)

    def test_bar_is_ascii_without_utf8(self):
        self.standIn(STEADY)
        _, _, screen = self.finished(environment={"LC_ALL": "C"}, until=drawsOften)
        for row in clippingRows(screen):
            self.assertRegex(row, "^clipping  =*-* +[0-9]")

    def test_dumb_terminal_has_plain_lines(self):
        self.standIn(STEADY)
        for settings in ({"TERM": "dumb"}, {"TERM": ""}, {"TERM": None}):
            _, terminal, screen = self.finished(environment=settings, until=lambda received: b"clipping" in received)
            self.assertNotIn(b"\x1b", terminal.received)
            self.assertEqual(1, len([row for row in screen.rows if re.match(r"clipping  \d+\.\d %  .*left  file 1", row)]))

    def test_quiet_draws_nothing(self):
        self.standIn(LONG)
        status, terminal, _ = self.finished("--quiet")
        self.assertEqual((0, b""), (status, terminal.received))

    def test_errors_are_above_the_bar(self):
        self.standIn("""
i = 0
while not os.path.exists('seen'):
    message(type='progress', percent=5.0 * (i % 20))
    say(b'error %d\\n' % i); message(type='error', level=2, text=f'error {i}')
    time.sleep(0.06)
    i += 1
open('errors', 'w').write(str(i))
finish()
""")
        _, _, screen = self.finished(until=drawsOften)
        count = int(self.content("errors"))
        self.assertEqual([f"error {i}" for i in range(count)], screen.rows[:count])
        self.assertEqual("The end", screen.rows[count])

    def test_typed_text_does_not_move_the_bar(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, environment={"NO_COLOR": "1"})
        terminal.readUntil(draws("%"), "the bar")
        for letter in b"XYZQK":  # are not in the bar
            terminal.type(bytes([letter]))
            before = len(drawnRows(terminal.received))
            terminal.readUntil(lambda received: letter in received and len(drawnRows(received)) > before + 1, "the letter")
        self.giveSeen()
        self.assertEqual(0, terminal.finish())
        screen = self.shown(terminal.received, 80)
        self.assertEqual([], [row for row in clippingRows(screen) if not re.match("clipping  [━─]{8,} +[0-9]", row)])
        self.assertEqual("The end", screen.rows[0])

    def test_bar_is_shown_if_the_summary_is_in_a_file(self):
        self.standIn(STEADY)
        self.giveJob({"a.xyz": HEADER})
        watch = self.watch
        self.watch = "/bin/sh"
        terminal = self.terminal("-c", f"'{watch}' base/data out area.xml --json >summary.json")
        terminal.readUntil(drawsOften, "the bar")
        self.giveSeen()
        self.assertEqual(0, terminal.finish())
        self.assertIn(b'"finished":true', self.content("summary.json"))
        self.assertEqual("", self.shown(terminal.received, 80).text().strip())


if __name__ == "__main__":
    unittest.main()
