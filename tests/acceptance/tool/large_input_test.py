"""Large and hostile node files: memory stays bounded, and only valid lines are kept."""
import random
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED, TOOL, AcceptanceTest
from target_platform import inTextMode

HEADER = b"x;y;z\n"


class LargeInput(AcceptanceTest):
    def clipAndMeasure(self):
        """Returns exit status and peak memory in MiB.

        A process inherits the peak of its parent, so a small process starts the tool.
        """
        script = ("import os, sys; process = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ); "
                  "_, status, usage = os.wait4(process, 0); "
                  "print(os.waitstatus_to_exitcode(status), usage.ru_maxrss // 1024)")
        run = subprocess.run([sys.executable, "-c", script, TOOL, self.path("base/data"), "out", self.path("area.xml"),
                              "-lang=en"], stdout=subprocess.PIPE, check=True)
        return map(int, run.stdout.split())

    @unittest.skipIf(SANITIZED, "sanitizers need additional memory")
    def test_ten_million_lines_need_little_memory(self):
        self.giveJob({})
        with open(self.path("base/data/a.xyz"), "wb") as file:
            file.write(HEADER)
            for _ in range(100):
                file.write(b"50;5;1\n" * 99999 + b"5;5;1\n")
        status, peak = self.clipAndMeasure()
        self.assertEqual(status, 0)
        self.assertEqual(Path(self.path("base/out/total_node_count.txt")).read_bytes(), b"100\n")
        self.assertEqual(Path(self.path("base/out/a.xyz")).read_bytes(), HEADER + b"5;5;1\n" * 100)
        self.assertLess(peak, 40)

    @unittest.skipIf(SANITIZED, "too slow")
    def test_lines_of_a_hundred_megabytes_are_clipped(self):
        kept = b"1;1;" + b"k" * 100000000 + b"\n"
        self.giveJob({"a.xyz": HEADER + b"x" * 100000000 + b"\n" + kept + b"2;2;5\n"})
        run = self.clip(tool=TOOL)
        self.assertEqual((run.status, run.console, run.errors), (0, b"", b""))
        self.assertTrue(run.tree["base/out/a.xyz"] == inTextMode(HEADER + kept + b"2;2;5\n"))

    def test_random_bytes_are_dropped_line_by_line(self):
        source = random.Random(7)
        noise = b"".join(source.randbytes(40).translate(None, b"\n;\x1a") + b"\n" for _ in range(5000))
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" + noise + b"2;2;5\n"})
        self.expectFinished(self.clip(), 2, {"a.xyz": HEADER + b"1;1;5\n2;2;5\n"}, lineCounts=[5002])


if __name__ == "__main__":
    unittest.main()
