"""Abnormal ends of a run: killed tools, unknown statuses, signals."""
import json
import os
import signal
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from engines import isRunning
from watching import HEADER, JOB, WatchTest, onlyChildOf

NOT_COMPLETE = " The output in base/out is not complete."


class Ends(WatchTest):
    def test_tool_receives_its_arguments_in_order(self):
        self.standIn("open('arguments', 'w').write(json.dumps(sys.argv[1:]))")
        for options, expected in (([], []), (["--lang=en"], ["-lang=en"]), (["--lang", "x y"], ["-lang=x y"])):
            self.run_("--quiet", "in put/d", "o", "b.xml", *options)
            self.assertEqual(["in put/d", "o", "b.xml", "-pipe", *expected], json.loads(self.content("arguments")))

    def test_killed_tool_is_reported(self):
        self.standIn("open('pid', 'w').write(str(os.getpid())); os.rename('pid', 'started'); time.sleep(600)")
        process = self.start(*JOB)
        self.waitForFile("started")
        os.kill(int(self.content("started")), signal.SIGKILL)
        self.expect(self.finish(process), status=4,
                    errors=["Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE])

    def test_open_pipes_of_a_child_do_not_delay_the_end(self):
        self.standIn("""
child = os.fork()
if child == 0:
    time.sleep(600)
open('child', 'w').write(str(child))
message(type='error', level=2, text='last words')
os.kill(os.getpid(), signal.SIGKILL)
""")
        watched = self.run_(*JOB, pass_fds=())
        os.kill(int(self.content("child")), signal.SIGKILL)
        self.expect(watched, status=4, errors=[
            "last words", "Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE])

    def test_endless_output_of_a_child_does_not_delay_the_end(self):
        self.standIn("""
def write(name, target):
    end = 'awaited'
    limit = time.monotonic() + 40
    try:
        while time.monotonic() < limit: os.write(target, b'[[[[\\n' * 10000)
    except BrokenPipeError:
        end = 'not awaited'
    open(name + '.new', 'w').write(end); os.rename(name + '.new', name)
    os._exit(0)
for child in range(4):
    if os.fork() == 0: write(f'child{child}', (1, 3)[child % 2])
time.sleep(0.2)
os._exit(2)
""")
        watched = self.run_(*JOB, "--quiet")
        self.assertEqual((4, "Vadelwatch: Vadelclip ended abnormally, with exit status 2." + NOT_COMPLETE),
                         (watched.status, watched.errorLines()[-1]))
        for child in range(4):
            self.waitForFile(f"child{child}")
            self.assertEqual(b"not awaited", self.content(f"child{child}"))

    def test_other_statuses_of_the_tool_become_4(self):
        for status in (2, 3, 127, 255):
            self.standIn(f"sys.exit({status})")
            self.expect(self.run_(*JOB), status=4, errors=[
                f"Vadelwatch: Vadelclip ended abnormally, with exit status {status}." + NOT_COMPLETE])

    def test_abnormal_end_shows_the_error_output(self):
        self.standIn("sys.stderr.write('terminate called\\n'); sys.stderr.flush(); os.kill(os.getpid(), signal.SIGABRT)")
        self.expect(self.run_("base/data", "out", "area.xml"), status=4, errors=[
            "terminate called",
            "Vadelwatch: Vadelclip wurde von Signal 6 (SIGABRT) beendet. Die Ausgabe in base/out ist unvollständig."])

    def test_signals_are_forwarded_and_the_tool_is_awaited(self):
        for number, name in ((signal.SIGINT, "INT"), (signal.SIGTERM, "TERM"), (signal.SIGHUP, "HUP"),
                             (signal.SIGQUIT, "QUIT")):
            with self.subTest(name=name):
                self.standIn(f"""
def end(*unused):
    time.sleep(0.3)
    open('got', 'w').write('{name}')
    signal.signal(signal.{number.name}, signal.SIG_DFL)
    os.kill(os.getpid(), signal.{number.name})
import resource; resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
signal.signal(signal.{number.name}, end)
open('started', 'w').close()
while True: time.sleep(0.1)  # a handler runs between two calls
""")
                process = self.start(*JOB)
                self.waitForFile("started")
                process.send_signal(number)
                self.expect(self.finish(process), status=4,
                            errors=[f"Vadelwatch: interrupted by SIG{name}, Vadelclip has ended." + NOT_COMPLETE])
                self.assertEqual(name.encode(), self.content("got"))
                os.remove(self.path("started"))

    def interrupted(self, script, *options):
        """Runs a stand-in that handles SIGTERM by a script, and sends the signal."""
        self.standIn(f"""
def end(*unused):
    {script}
signal.signal(signal.SIGTERM, end)
open('started', 'w').close()
while True: time.sleep(0.1)  # a handler runs between two calls
""")
        self.giveJob({"a.xyz": HEADER})
        process = self.start(*JOB, *options)
        self.waitForFile("started")
        process.send_signal(signal.SIGTERM)
        return self.finish(process)

    def test_status_of_a_failure_after_a_signal_is_returned(self):
        self.expect(self.interrupted("message(type='failed', level=1, text='No more.'); os._exit(1)"), status=1, errors=[
            "No more.",
            "Vadelwatch: interrupted by SIGTERM, Vadelclip has ended with exit status 1." + NOT_COMPLETE])

    def test_run_finished_after_a_signal_is_checked(self):
        for options in ([], ["--quiet"]):
            with self.subTest(options=options):
                watched = self.interrupted("finish(); os._exit(0)", *options)
                self.assertEqual((0, ["Vadelwatch: interrupted by SIGTERM, but Vadelclip finished."]),
                                 (watched.status, watched.errorLines()))
                self.assertEqual([] if options else ["The end"], watched.outputLines()[:1])
                self.setUp()

    def test_other_status_after_a_signal_is_reported(self):
        watched = self.interrupted("os._exit(130)", "--json")
        self.assertEqual((4, ["Vadelwatch: interrupted by SIGTERM, Vadelclip has ended with exit status 130." + NOT_COMPLETE]),
                         (watched.status, watched.errorLines()))
        self.assertEqual(4, json.loads(watched.output)["exit_status"])

    def test_ignored_signal_stays_ignored(self):
        self.standIn("open('started', 'w').close()\nwhile not os.path.exists('sent'): time.sleep(0.01)\n"
                     "time.sleep(0.2); finish()")
        process = self.start(*JOB, "--quiet", preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN),
                             restore_signals=False)
        self.waitForFile("started")
        process.send_signal(signal.SIGINT)
        self.give({"sent": b""})
        self.expect(self.finish(process), status=0)

    def test_signal_ends_the_real_tool(self):
        self.giveJob({})
        self.holdNodeFile("a.xyz", HEADER + b"1;1;5\n" * 1000)
        process = self.start(*JOB, "--quiet")
        self.waitForFile("base/out/a.xyz")
        process.send_signal(signal.SIGTERM)
        self.expect(self.finish(process), status=4,
                    errors=["Vadelwatch: interrupted by SIGTERM, Vadelclip has ended." + NOT_COMPLETE])
        self.assertFalse(os.path.exists(self.path("base/out/total_node_count.txt")))

    def test_tool_ends_when_vadelwatch_is_killed(self):
        self.standIn("signal.signal(signal.SIGTERM, signal.SIG_IGN)\n"
                     "open('pid', 'w').write(str(os.getpid())); os.rename('pid', 'started'); time.sleep(600)")
        process = self.start(*JOB)
        self.waitForFile("started")
        tool = int(self.content("started"))
        process.kill()
        process.wait()
        self.addCleanup(self.kill, tool)
        self.waitUntil(lambda: not isRunning(tool), "the end of the tool")

    def kill(self, pid):
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def test_killed_real_tool_is_reported(self):
        self.giveJob({})
        self.holdNodeFile("a.xyz", HEADER + b"1;1;5\n" * 1000)
        process = self.start(*JOB, "--quiet")
        self.waitForFile("base/out/a.xyz")
        os.kill(onlyChildOf(process.pid), signal.SIGKILL)
        self.expect(self.finish(process), status=4,
                    errors=["Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE])


if __name__ == "__main__":
    unittest.main()
