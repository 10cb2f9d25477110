"""A missing tool, and the German texts about abnormal ends."""
import json
import os
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import HEADER, JOB, WatchTest

GERMAN_JOB = JOB[:3]


class MissingTool(WatchTest):
    def test_missing_tool_is_reported(self):
        tool = self.standIn("")
        os.remove(tool)
        self.expect(self.run_(*JOB), status=4,
                    errors=[f"Vadelwatch: cannot start {os.path.realpath(tool)}: No such file or directory"])

    def test_missing_tool_is_in_json_and_log(self):
        tool = self.standIn("")
        os.remove(tool)
        watched = self.run_(*JOB, "--json", "--log", "/dev/full")
        self.assertEqual((4, [f"Vadelwatch: cannot start {os.path.realpath(tool)}: No such file or directory"]),
                         (watched.status, watched.errorLines()))
        self.assertEqual({"finished": False, "exit_status": 4, "files_read": None, "files_written": None,
                          "nodes_read": None, "nodes_kept": None, "percent_kept": None, "total_node_count": None,
                          "adds_up": None, "seconds": 0.0, "output_directory": "base/out", "errors": []},
                         {key: value for key, value in list(json.loads(watched.output).items())[:12]})
        self.assertIn("cannot start ", json.loads(watched.output)["failure"])

    def test_tool_without_execute_permission_is_reported(self):
        tool = self.standIn("")
        os.chmod(tool, 0o644)
        self.expect(self.run_(*JOB), status=4,
                    errors=[f"Vadelwatch: cannot start {os.path.realpath(tool)}: Permission denied"])


class InGerman(WatchTest):
    INCOMPLETE = " Die Ausgabe in base/out ist unvollständig."

    def test_tool_that_cannot_be_started_is_reported(self):
        tool = self.standIn("")
        os.remove(tool)
        self.expect(self.run_(*GERMAN_JOB), status=4, errors=[
            f"Vadelwatch: {os.path.realpath(tool)} kann nicht gestartet werden: No such file or directory"])

    def test_other_status_of_the_tool_is_reported(self):
        self.standIn("sys.exit(7)")
        self.expect(self.run_(*GERMAN_JOB), status=4, errors=[
            "Vadelwatch: Vadelclip wurde unerwartet mit Status 7 beendet." + self.INCOMPLETE])

    def interrupted(self, script):
        """Runs a stand-in that sends SIGTERM to Vadelwatch, so the test need not wait for its start."""
        self.standIn(f"""
def end(*unused):
    {script}
signal.signal(signal.SIGTERM, end)
os.kill(os.getppid(), signal.SIGTERM)
while True: time.sleep(0.1)  # a handler runs between two calls
""")
        self.giveJob({"a.xyz": HEADER})
        return self.run_(*GERMAN_JOB, "--quiet")

    def test_ends_after_a_signal_are_reported(self):
        self.expect(self.interrupted("signal.signal(signal.SIGTERM, signal.SIG_DFL); os.kill(os.getpid(), signal.SIGTERM)"),
                    status=4, errors=["Vadelwatch: Abbruch durch SIGTERM, Vadelclip wurde beendet." + self.INCOMPLETE])
        self.expect(self.interrupted("os._exit(1)"), status=1, errors=[
            "Vadelwatch: Abbruch durch SIGTERM, Vadelclip wurde mit Status 1 beendet." + self.INCOMPLETE])
        self.expect(self.interrupted("finish(); os._exit(0)"), status=0, errors=[
            "Vadelwatch: SIGTERM empfangen, Vadelclip hat den Lauf trotzdem abgeschlossen."])

    def test_signal_without_a_name_is_reported(self):
        number = signal.SIGRTMIN + 2
        self.standIn(f"os.kill(os.getpid(), {number})")
        self.expect(self.run_(*GERMAN_JOB), status=4, errors=[
            f"Vadelwatch: Vadelclip wurde von Signal {number} (SIG{number}) beendet." + self.INCOMPLETE])

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_files_that_cannot_be_written_are_reported(self):
        self.giveJob({"a.xyz": HEADER})
        self.expect(self.run_(*GERMAN_JOB, "--quiet", "--log", "/dev/full"), status=2,
                    errors=["Vadelwatch: /dev/full kann nicht geschrieben werden: No space left on device"])
        self.expect(self.run_(*GERMAN_JOB, "--log", "no/log"), status=2,
                    errors=["Vadelwatch: no/log kann nicht geschrieben werden: No such file or directory"])


if __name__ == "__main__":
    unittest.main()
