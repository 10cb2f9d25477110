"""Messages and console lines of every kind and size, from a stand-in for the tool."""
import json
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from watching import WatchTest

JOB = ("base/data", "out", "area.xml", "--lang=en")


class Streams(WatchTest):
    def test_lines_that_are_no_messages_are_shown_unchanged(self):
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

    def test_each_error_is_shown_once(self):
        self.standIn("""
message(type='error', level=2, text='message alone')
# Otherwise the next console line might be shown first.
while b'alone' not in open('log', 'rb').read(): time.sleep(0.01)
say(b'both\\n'); message(type='error', level=2, text='both')
say(b'console alone\\n')
say(b'twice\\n'); message(type='error', level=2, text='twice')
say(b'twice\\n'); message(type='error', level=2, text='twice')
say(b'two\\nlines\\n'); message(type='error', level=2, text='two\\nlines')
say(b'\\n'); message(type='error', level=2, text='')
message(type='error', level=2, text='both')
finish()
""")
        self.expect(self.run_(*JOB, "--quiet", "--log=log"), status=0, errors=[
            "message alone", "both", "console alone", "twice", "twice", "two", "lines", "", "both"])

    def test_messages_may_arrive_in_pieces_or_together(self):
        self.standIn("""
for byte in json.dumps({'type': 'error', 'level': 2, 'text': 'piece by piece'}).encode() + b'\\n':
    send(bytes([byte])); time.sleep(0.001)
send(b''.join(json.dumps({'type': 'error', 'level': 2, 'text': str(i)}).encode() + b'\\n' for i in range(1000)))
finish()
""")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=["piece by piece", *map(str, range(1000))])

    def test_last_console_line_needs_no_line_feed(self):
        self.standIn("say(b'whole\\nlast words'); finish()")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=["whole", "last words"])

    def test_twenty_megabytes_keep_every_message_in_order(self):
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
        watched = self.run_(*JOB, "--quiet", "--log=log")
        self.assertEqual(0, watched.status)
        texts = [f"{i} " + "ä" * (i % 40) for i in range(count)]
        self.assertGreater(os.path.getsize(self.path("log")), 20e6)
        self.assertTrue(texts == watched.errorLines(), "errors as shown")
        logged = [json.loads(line)["message"] for line in self.content("log").splitlines()]
        self.assertTrue(texts == [message["text"] for message in logged[:-1]], "errors as logged")

    def test_line_of_twenty_megabytes_is_accepted(self):
        self.standIn("message(type='error', level=2, text='x' * 20000000); finish()")
        self.expect(self.run_(*JOB, "--quiet"), status=0, errors=["x" * 20000000])

    def test_console_and_channel_may_be_flooded_together(self):
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
