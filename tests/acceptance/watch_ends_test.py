"""Vadelwatch and the ends of a run that are not the tool's own: missing tools, signals, vanished readers; and streams of
messages of every kind and size, from a stand-in for the tool."""
import json
import os
import re
import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from watching import HEADER, TIME_LIMIT, WATCH, WatchTest

JOB = ("base/data", "out", "area.xml", "--lang=en")
NOT_COMPLETE = " The output in base/out is not complete."


class Ends(WatchTest):
    def waitForFile(self, name):
        limit = time.monotonic() + TIME_LIMIT
        while not os.path.exists(self.path(name)):
            self.assertLess(time.monotonic(), limit, f"{name} was not to be seen")
            time.sleep(0.01)

    def test_a_tool_that_is_missing(self):
        tool = self.standIn("")
        os.remove(tool)
        self.expect(self.run_(*JOB), status=4,
                    errors=[f"Vadelwatch: cannot start {os.path.realpath(tool)}: No such file or directory"])

    def test_a_tool_that_may_not_be_executed(self):
        tool = self.standIn("")
        os.chmod(tool, 0o644)
        self.expect(self.run_(*JOB), status=4,
                    errors=[f"Vadelwatch: cannot start {os.path.realpath(tool)}: Permission denied"])

    def test_the_tool_gets_its_arguments_in_their_places(self):
        self.standIn("open('arguments', 'w').write(json.dumps(sys.argv[1:]))")
        for options, expected in (([], []), (["--lang=en"], ["-lang=en"]), (["--lang", "x y"], ["-lang=x y"])):
            self.run_("--quiet", "in put/d", "o", "b.xml", *options)
            self.assertEqual(["in put/d", "o", "b.xml", "-pipe", *expected], json.loads(self.content("arguments")))

    def test_a_tool_killed_from_outside(self):
        self.standIn("open('pid', 'w').write(str(os.getpid())); os.rename('pid', 'started'); time.sleep(600)")
        process = self.start(*JOB)
        self.waitForFile("started")
        os.kill(int(self.content("started")), signal.SIGKILL)
        self.expect(self.finish(process), status=4,
                    errors=["Vadelwatch: Vadelclip was ended by signal 9 (SIGKILL)." + NOT_COMPLETE])

    def test_a_killed_tool_whose_child_holds_the_pipes_open_is_not_waited_for(self):
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

    def test_statuses_that_are_not_the_tools_own(self):
        for status in (2, 3, 127, 255):
            self.standIn(f"sys.exit({status})")
            self.expect(self.run_(*JOB), status=4, errors=[
                f"Vadelwatch: Vadelclip ended abnormally, with exit status {status}." + NOT_COMPLETE])

    def test_an_abort_with_its_words(self):
        self.standIn("sys.stderr.write('terminate called\\n'); sys.stderr.flush(); os.kill(os.getpid(), signal.SIGABRT)")
        self.expect(self.run_("base/data", "out", "area.xml"), status=4, errors=[
            "terminate called",
            "Vadelwatch: Vadelclip wurde durch Signal 6 (SIGABRT) beendet. Die Ausgabe in base/out ist nicht vollständig."])

    def test_signals_are_forwarded_and_the_end_is_waited_for(self):
        for number, name in ((signal.SIGINT, "INT"), (signal.SIGTERM, "TERM"), (signal.SIGHUP, "HUP")):
            with self.subTest(name=name):
                self.standIn(f"""
def end(*unused):
    time.sleep(0.3)
    open('got', 'w').write('{name}')
    signal.signal(signal.{number.name}, signal.SIG_DFL)
    os.kill(os.getpid(), signal.{number.name})
signal.signal(signal.{number.name}, end)
open('started', 'w').close()
time.sleep(600)
""")
                process = self.start(*JOB)
                self.waitForFile("started")
                process.send_signal(number)
                self.expect(self.finish(process), status=4,
                            errors=[f"Vadelwatch: interrupted by SIG{name}, Vadelclip has ended." + NOT_COMPLETE])
                self.assertEqual(name.encode(), self.content("got"))
                os.remove(self.path("started"))

    def interrupted(self, script, *options):
        """A run whose tool takes SIGTERM in its own way."""
        self.standIn(f"""
def end(*unused):
    {script}
signal.signal(signal.SIGTERM, end)
open('started', 'w').close()
time.sleep(600)
""")
        self.giveJob({"a.xyz": HEADER})
        process = self.start(*JOB, *options)
        self.waitForFile("started")
        process.send_signal(signal.SIGTERM)
        return self.finish(process)

    def test_a_tool_that_fails_after_a_signal_has_its_status_passed_on(self):
        self.expect(self.interrupted("message(type='failed', level=1, text='No more.'); os._exit(1)"), status=1, errors=[
            "No more.",
            "Vadelwatch: interrupted by SIGTERM, Vadelclip has ended with exit status 1." + NOT_COMPLETE])

    def test_a_tool_that_finishes_after_a_signal_is_summed_up_and_checked(self):
        for options in ([], ["--quiet"]):
            with self.subTest(options=options):
                watched = self.interrupted("finish(); os._exit(0)", *options)
                self.assertEqual((0, ["Vadelwatch: interrupted by SIGTERM, Vadelclip finished all the same."]),
                                 (watched.status, watched.errorLines()))
                self.assertEqual([] if options else ["The end"], watched.outputLines()[:1])
                self.setUp()

    def test_a_tool_that_ends_with_another_status_after_a_signal(self):
        watched = self.interrupted("os._exit(130)", "--json")
        self.assertEqual((4, ["Vadelwatch: interrupted by SIGTERM, Vadelclip has ended with exit status 130." + NOT_COMPLETE]),
                         (watched.status, watched.errorLines()))
        self.assertEqual(4, json.loads(watched.output)["exit_status"])

    def test_a_signal_that_was_ignored_stays_ignored(self):
        self.standIn("open('started', 'w').close(); time.sleep(0.5); finish()")
        process = self.start(*JOB, "--quiet", preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN),
                             restore_signals=False)
        self.waitForFile("started")
        process.send_signal(signal.SIGINT)
        self.expect(self.finish(process), status=0)

    def test_an_interrupted_real_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 2000000})
        process = self.start(*JOB, "--quiet")
        self.waitForFile("base/out/a.xyz")
        process.send_signal(signal.SIGTERM)
        self.expect(self.finish(process), status=4,
                    errors=["Vadelwatch: interrupted by SIGTERM, Vadelclip has ended." + NOT_COMPLETE])
        self.assertFalse(os.path.exists(self.path("base/out/total_node_count.txt")))

    def test_a_reader_that_closes_early_does_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 20000})
        process = self.start(*JOB)
        process.stdout.close()
        process.stderr.close()
        self.assertEqual(0, process.wait(TIME_LIMIT))
        self.assertEqual(b"20000\n", self.content("base/out/total_node_count.txt"))

    def test_a_pipe_to_a_program_that_reads_one_line(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n" * 20000})
        shell = '"$0" "$@" 2>&1 | head -n 1; echo "${PIPESTATUS[0]}"'
        result = subprocess.run(["bash", "-c", shell, WATCH, *JOB], cwd=self.directory, capture_output=True,
                                timeout=TIME_LIMIT, check=True)
        lines = result.stdout.decode().splitlines()
        self.assertRegex(lines[0], r"^ 10 %")
        self.assertEqual("0", lines[1])

    def test_standard_descriptors_closed_at_the_start(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        for closed in ((0,), (1,), (2,), (1, 2), (0, 1, 2)):
            with self.subTest(closed=closed):
                subprocess.run(["rm", "-rf", self.path("base/out")], check=True)
                process = self.start(*JOB, preexec_fn=lambda: [os.close(number) for number in closed])
                self.assertEqual(0, self.finish(process).status)
                self.assertEqual(HEADER + b"1;1;5\n", self.content("base/out/a.xyz"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_own_output_on_a_full_disk_does_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        with open("/dev/full", "wb") as full:
            result = subprocess.run([WATCH, *JOB], cwd=self.directory, stdout=full, stderr=full, timeout=TIME_LIMIT,
                                    check=False)
        self.assertEqual(0, result.returncode)

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_a_log_on_a_full_disk_is_told_and_does_not_end_the_run(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"})
        self.expect(self.run_(*JOB, "--quiet", "--log", "/dev/full"), status=2,
                    errors=["Vadelwatch: cannot write /dev/full"])
        self.assertEqual(b"1\n", self.content("base/out/total_node_count.txt"))


class Streams(WatchTest):
    def test_lines_that_are_no_messages_are_shown_as_they_are(self):
        self.standIn(r"""
for line in (b"not json", b"", b"{\"type\":\"error\"}", b"[1]", b"5", b"{\"percent\":1}", b"{\"type\":\"progress\"}",
             b"caf\xe9 \xff", b"{\"type\":\"error\",\"level\":2,\"text\":\"caf\xe9\"}", b"{\"type\":\"news\",\"a\":1}"):
    send(line + b"\n")
send(b"no line feed")
finish()
""".replace('send(b"no line feed")\nfinish()', 'finish()\nsend(b"no line feed")'))
        self.expect(self.run_(*JOB, "--quiet", "--log=log"), status=0, errors=[
            "not json", "", '{"type":"error"}', "[1]", "5", '{"percent":1}', '{"type":"progress"}',
            os.fsdecode(b"caf\xe9 \xff"), os.fsdecode(b'{"type":"error","level":2,"text":"caf\xe9"}'), "no line feed"])
        log = [json.loads(line) for line in self.content("log").splitlines()]
        self.assertEqual(12, len(log))
        self.assertEqual(["not json", "", "caf\ufffd \ufffd", '{"type":"error","level":2,"text":"caf\ufffd"}',
                          "no line feed"], [entry["line"] for entry in log if "line" in entry])
        self.assertEqual({"type": "news", "a": 1}, log[9]["message"])

    def test_an_error_without_a_console_line_is_shown_and_one_with_it_once(self):
        self.standIn("""
message(type='error', level=2, text='message alone')
time.sleep(0.5)  # or the next console line would be shown before it
say(b'both\\n'); message(type='error', level=2, text='both')
say(b'console alone\\n')
say(b'twice\\n'); message(type='error', level=2, text='twice')
say(b'twice\\n'); message(type='error', level=2, text='twice')
say(b'two\\nlines\\n'); message(type='error', level=2, text='two\\nlines')
say(b'\\n'); message(type='error', level=2, text='')
message(type='error', level=2, text='both')
finish()
""")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=[
            "message alone", "both", "console alone", "twice", "twice", "two", "lines", "", "both"])

    def test_messages_in_pieces_and_in_heaps(self):
        self.standIn("""
for byte in json.dumps({'type': 'error', 'level': 2, 'text': 'piece by piece'}).encode() + b'\\n':
    send(bytes([byte])); time.sleep(0.001)
send(b''.join(json.dumps({'type': 'error', 'level': 2, 'text': str(i)}).encode() + b'\\n' for i in range(1000)))
finish()
""")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=["piece by piece", *map(str, range(1000))])

    def test_twenty_megabytes_without_losing_or_reordering_a_message(self):
        count = 200000
        self.standIn(f"""
lines = []
for i in range({count}):
    lines.append(json.dumps(dict(type='error', level=2, text=f'{{i}} ' + 'ä' * (i % 40))) + '\\n')
    if len(lines) == 100:
        for line in lines: sys.stdout.write(json.loads(line)['text'] + '\\n')
        sys.stdout.flush()
        send(''.join(lines).encode()); lines = []
finish()
""")
        began = time.monotonic()
        watched = self.run_(*JOB, "--quiet", "--log=log")
        self.assertLess(time.monotonic() - began, TIME_LIMIT / 2)
        self.assertEqual(0, watched.status)
        texts = [f"{i} " + "ä" * (i % 40) for i in range(count)]
        self.assertGreater(os.path.getsize(self.path("log")), 20e6)
        self.assertTrue(texts == watched.errorLines(), "errors as shown")
        logged = [json.loads(line)["message"] for line in self.content("log").splitlines()]
        self.assertTrue(texts == [message["text"] for message in logged[:-1]], "errors as logged")

    def test_a_single_line_of_twenty_megabytes(self):
        self.standIn("message(type='error', level=2, text='x' * 20000000); finish()")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=["x" * 20000000])

    def test_a_flooded_console_beside_a_flooded_channel(self):
        self.standIn("""
for i in range(2000):
    say(b'console %d ' % i + b'c' * 3000 + b'\\n')
    message(type='state', level=1, text='s' * 3000, active=True)
finish()
""")
        watched = self.run_(*JOB, "--quiet", "--json")
        self.assertEqual([f"console {i} " + "c" * 3000 for i in range(2000)], watched.errorLines())
        self.assertEqual(2000, json.loads(watched.output)["files_read"])


if __name__ == "__main__":
    unittest.main()
