"""The figures of progress, lines per second and the time left, for a stand-in that reports at chosen times."""
import json
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from terminal import draws
from watching import HEADER, TerminalTest

FIGURES = re.compile(r" (\d+)\.\d % +([\d.]+k?|-) lines/s +(?:[\d.]+|-) MB/s +\d:(\d\d) elapsed +(\d:\d\d|-:--) left")

AWAIT_SEEN = "while not os.path.exists('seen'): time.sleep(0.01)\n"


class Figures(TerminalTest):
    def figures(self, script, until):
        """Returns percent, lines per second, seconds and time left of each drawing, for a node file of 10,000 lines."""
        self.standIn("message(type='state', level=1, text='Clipping', active=True)\n" + script + AWAIT_SEEN + "finish()\n")
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 10000})
        _, _, screen = self.finished("--log=log", columns=200, until=draws(until))
        return [figures.groups() for figures in map(FIGURES.search, screen.drawings) if figures]

    def test_reports_at_one_moment_have_no_figures(self):
        figures = self.figures("""
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 10, 20, 30)))
""", "30.0 %")
        self.assertEqual({("-", "-:--")}, {(rate, left) for _, rate, _, left in figures})

    def test_figures_begin_at_the_first_reports(self):
        figures = self.figures("""
time.sleep(1.9)
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 5, 10)))
while b'"percent":10' not in open('log', 'rb').read(): time.sleep(0.01)
time.sleep(0.5)
message(type='progress', percent=40)
""", r"40\.0 % +[\d.]+k? lines/s")
        _, rate, elapsed, left = next(row for row in figures if row[0] == "40" and row[1] != "-")
        rate = float(rate[:-1]) * 1000 if rate.endswith("k") else float(rate)
        entries = [json.loads(line) for line in self.content("log").splitlines()]
        begin = next(entry["seconds"] for entry in entries if entry["message"].get("percent") == 10)
        # Three tenths of the lines since the first reports. Measured from the start it would be 1,700 lines a second.
        self.assertGreater(rate, 0.99 * 3000 / (int(elapsed) + 1 - begin))
        minutes, seconds = left.split(":")
        left = 60 * int(minutes) + int(seconds)
        # Three fifths are left, and the time left is rounded up.
        self.assertAlmostEqual(6000 / rate, left - 0.5, delta=0.6 + 0.01 * left)

    def test_standstill_is_shown(self):
        self.standIn("message(type='progress', percent=40)\n" + AWAIT_SEEN + "finish()")
        self.assertEqual(0, self.finished(until=draws("no progress for 1[0-9] s"))[0])


if __name__ == "__main__":
    unittest.main()
