"""The figures of progress, lines per second and the time left, for a stand-in that reports at chosen times."""
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, TerminalTest

FIGURES = re.compile(r" (\d+)\.\d % +([\d.]+k?|-) lines/s +(?:[\d.]+|-) MB/s +\d:\d\d elapsed +(\d:\d\d|-:--) left")


class Figures(TerminalTest):
    def figures(self, script):
        """Returns percent, lines per second and time left of each drawing, for a node file of 10,000 lines."""
        self.standIn("time.sleep(0.3)  # for the lines to be counted\n"
                     "message(type='state', level=1, text='Clipping', active=True)\n" + script + "\nfinish()\n")
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 10000})
        _, _, screen = self.finished(columns=200)
        return [FIGURES.search(row).groups() for row in screen.drawings if "clipping" in row]

    def test_reports_at_one_moment_have_no_figures(self):
        figures = self.figures("""
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 10, 20, 30)))
time.sleep(0.5)
""")
        self.assertIn("30", [percent for percent, _, _ in figures])
        self.assertEqual({("-", "-:--")}, {(rate, left) for _, rate, left in figures})

    def test_figures_begin_at_the_first_reports(self):
        percent, rate, left = self.figures("""
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 10, 20)))
time.sleep(2)
message(type='progress', percent=40)
time.sleep(0.1)
""")[-1]
        # A fifth of the lines in two seconds, and three fifths are left. Measured from the start it would be 1,700 lines a
        # second and 3 seconds.
        self.assertEqual("40", percent)
        rate = float(rate[:-1]) * 1000 if rate.endswith("k") else float(rate)
        self.assertGreater(rate, 500)
        self.assertLess(rate, 1500)
        self.assertRegex(left, "^0:(0[4-9]|1[0-2])$")
        self.assertAlmostEqual(6000 / rate, int(left[-2:]), delta=1)

    def test_standstill_is_shown(self):
        self.standIn("message(type='progress', percent=40); time.sleep(11.5); finish()")
        _, _, screen = self.finished(columns=80)
        self.assertTrue(any("no progress for 10 s" in row for row in screen.drawings), screen.drawings[-3:])


if __name__ == "__main__":
    unittest.main()
