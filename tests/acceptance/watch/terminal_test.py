"""The bar on a pseudo-terminal: its parts, its width and its rate of drawing."""
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, JOB, STEADY, TerminalTest, summaryLines

COLOUR = re.compile(rb"\x1b\[[0-9;]*m")


def clippingRows(screen):
    """A stand-in that starts slowly is counting first. After a bar, a check that takes a tenth of a second shows its own."""
    return [row for row in screen.drawings if not row.startswith(("counting", "checking"))]


class Bar(TerminalTest):
    def test_only_the_summary_remains(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2000000})
        status, terminal, screen = self.finished()
        text = re.sub(r"\d+\.\d s", "N s", screen.text()).rstrip("\n").split("\n")
        self.assertEqual((0, summaryLines(1, 1, "2 000 000 of 2 000 000 (100.0 %)", "base/out")), (status, text))
        self.assertTrue(any("lines/s" in row for row in screen.drawings), screen.drawings)
        self.assertIn(b"\x1b[32m", terminal.received)

    def test_bar_fits_any_width(self):
        self.standIn("for p in range(0, 101, 4): message(type='progress', percent=float(p)); time.sleep(0.04)\nfinish()")
        for columns in (1, 2, 7, 8, 9, 20, 28, 29, 40, 60, 79, 80, 81, 200, 1000):
            with self.subTest(columns=columns):
                status, terminal, screen = self.finished(columns=columns)
                self.assertEqual(0, status)
                self.assertLess(max(map(len, screen.drawings), default=0), columns)
                self.assertLess(screen.longest, columns)
                self.assertEqual(0, screen.cut)
                if columns >= 9:
                    self.assertTrue(any("%" in row for row in screen.drawings), screen.drawings)

    def test_bar_has_these_parts_at_usual_widths(self):
        self.standIn(STEADY)
        left = r"(\d:\d\d|-:--) left"
        speed = r"( +-|[ \d.]{4}[\dk]) lines/s"
        bytes_ = r"( +-| 0.0) MB/s"
        for columns, form in (
                (40, rf"clipping +\d+\.\d %   {left}  file 1"),
                (80, rf"clipping  [━─]{{8,}} +\d+\.\d %  {speed}  {bytes_}   {left}  file 1"),
                (200, rf"clipping  [━─]{{60,80}} +\d+\.\d %  {speed}  {bytes_}   \d:\d\d elapsed   {left}  file 1")):
            with self.subTest(columns=columns):
                _, _, screen = self.finished(columns=columns)
                self.assertGreater(len(screen.drawings), 5)
                for row in clippingRows(screen):
                    self.assertRegex(row, f"^{form}$")

    def test_bar_is_drawn_at_most_ten_times_a_second(self):
        self.standIn(STEADY)
        _, terminal, screen = self.finished()
        self.assertGreater(len(screen.drawings), 8)
        # The time at which each drawing was read. On a busy machine this is later than it was written.
        times = [seen for seen, data in terminal.reads for _ in range(data.count(b"\x1b[?7h"))]
        self.assertEqual(len(screen.drawings), len(times))
        # Between eleven drawings are ten pauses of a tenth of a second.
        delay = 0.5
        for first, last in zip(times, times[10:]):
            self.assertGreater(last - first, 1.0 - delay)

    def test_short_run_draws_nothing(self):
        self.standIn("message(type='progress', percent=10.0); time.sleep(0.1); finish()")
        def run():
            _, terminal, screen = self.finished("--json", columns=5000)
            return screen.drawings, terminal.received
        self.expectShortRun(run)

    def test_progress_option_selects_bar_lines_or_none(self):
        self.standIn(STEADY.replace("0.002", "0.003"))
        _, _, screen = self.finished("--progress=none")
        self.assertEqual(("The end", []), (screen.rows[0], screen.drawings))
        _, _, screen = self.finished("--progress=plain")
        self.assertEqual((True, "The end", []), (screen.rows[0].startswith("clipping  "), screen.rows[1], screen.drawings))
        watched = self.run_(*JOB, "--progress=bar")
        self.assertIn("━", watched.errors)

    def test_counting_shows_its_share(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2000000})
        self.standIn("""
with open('base/data/a.xyz', 'rb') as file: file.read(6000000)
time.sleep(1.2)
message(type='state', level=1, text='Clipping', active=True)
message(type='state', level=1, text='Clipping', active=True)
file = open('base/data/a.xyz', 'rb')
message(type='progress', percent=70.0); time.sleep(1)
finish()
""")
        _, _, screen = self.finished(columns=200)
        self.assertRegex(screen.drawings[0], r"^counting  [━─]{80}   [56]\d\.\d %   \d:\d\d elapsed$")
        form = r"^clipping  [━─]+   70\.0 % .* left  file 2/1  a\.xyz$"
        self.assertTrue(any(re.match(form, row) for row in screen.drawings), screen.drawings)

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
            terminal = self.finished(environment=settings)[1]
            self.assertIn(verdict, terminal.received)
            self.assertTrue(terminal.received.startswith(b"Clipping ended, but its output does not add up"))
            subprocess.run(["rm", "-r", self.path("base/out")], check=True)

    def test_time_continues_without_messages(self):
        self.standIn("message(type='progress', percent=10.0); time.sleep(2.3); finish()")
        _, _, screen = self.finished(columns=120)
        clocks = {re.search(r"(\d:\d\d) elapsed", row)[1] for row in screen.drawings}
        self.assertLessEqual({"0:01", "0:02"}, clocks)

    def test_NO_COLOR_removes_colours(self):
        self.standIn(STEADY)
        _, terminal, _ = self.finished(environment={"NO_COLOR": "1"})
        self.assertIsNone(COLOUR.search(terminal.received))
        _, terminal, _ = self.finished(environment={"NO_COLOR": ""})
        self.assertIsNotNone(COLOUR.search(terminal.received))

    def test_bar_is_ascii_without_utf8(self):
        self.standIn(STEADY)
        _, _, screen = self.finished(environment={"LC_ALL": "C"})
        for row in clippingRows(screen):
            self.assertRegex(row, "^clipping  =*-* +[0-9]")

    def test_dumb_terminal_has_plain_lines(self):
        self.standIn(STEADY.replace("0.002", "0.003"))
        for settings in ({"TERM": "dumb"}, {"TERM": ""}, {"TERM": None}):
            _, terminal, screen = self.finished(environment=settings)
            self.assertNotIn(b"\x1b", terminal.received)
            self.assertEqual(1, len([row for row in screen.rows if re.match(r"clipping  \d+\.\d %  .*left  file 1", row)]))

    def test_quiet_draws_nothing(self):
        self.standIn(STEADY)
        status, terminal, _ = self.finished("--quiet")
        self.assertEqual((0, b""), (status, terminal.received))

    def test_errors_are_above_the_bar(self):
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
        self.assertGreater(len(screen.drawings), 2)

    def test_typed_text_does_not_move_the_bar(self):
        self.standIn(STEADY)
        terminal = self.terminal(*JOB, environment={"NO_COLOR": "1"})
        terminal.readUntil(lambda received: b"%" in received, "the bar")
        for letter in b"typed":
            terminal.type(bytes([letter]))
            terminal.readSome(0.2)
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
        self.assertEqual(0, terminal.finish())
        self.assertIn(b'"finished":true', self.content("summary.json"))
        screen = self.shown(terminal.received, 80)
        self.assertGreater(len(screen.drawings), 5)
        self.assertEqual("", screen.text().strip())


if __name__ == "__main__":
    unittest.main()
