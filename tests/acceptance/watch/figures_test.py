"""The figures of progress: lines per second and the time left, from a stand-in that reports at its own times."""
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, WatchTest

LINE = re.compile(r"^ *(\d+) %  ([\d -]+) lines/s  \d+:\d\d elapsed  (\d+:\d\d|-:--) left$")


class Figures(WatchTest):
    def figures(self, script):
        """Percent, lines per second and time left of each plain line, for node files of 10,000 lines."""
        self.standIn("time.sleep(0.3)  # for the lines to be counted\n" + script + "\nfinish()\n")
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 10000})
        lines = self.run_("base/data", "out", "area.xml", "--lang=en").errorLines()
        return [LINE.match(line).groups() for line in lines if " lines/s " in line]

    def test_there_are_none_of_reports_that_come_at_once(self):
        self.assertEqual([("10", "-", "-:--"), ("20", "-", "-:--"), ("30", "-", "-:--"), ("100", "-", "0:00")],
                         self.figures("""
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 10, 20, 30)))
message(type='progress', percent=100)
"""))

    def test_they_are_those_of_the_time_since_the_first_reports(self):
        figures = self.figures("""
send(b''.join(b'{"type":"progress","percent":%d}\\n' % percent for percent in (1, 10, 20)))
time.sleep(2)
message(type='progress', percent=40)
""")
        self.assertEqual(("20", "-", "-:--"), figures[1])
        percent, rate, left = figures[2]
        # A fifth of the lines in two seconds, and three fifths are left. From the start on it would be 1,700 and 3 seconds.
        self.assertEqual("40", percent)
        self.assertGreater(int(rate.replace(" ", "")), 500)
        self.assertLess(int(rate.replace(" ", "")), 1500)
        self.assertRegex(left, "^0:(0[4-9]|1[0-2])$")
        self.assertAlmostEqual(6000 / int(rate.replace(" ", "")), int(left[-2:]), delta=1)


if __name__ == "__main__":
    unittest.main()
