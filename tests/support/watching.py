"""Runs Vadelwatch from outside, through pipes and through a pseudo-terminal.

VADELCLIP_WATCH names the executable; the tool and its catalogues stand beside it. With a stand-in, a copy of Vadelwatch
is put beside a small script in the tool's place.
"""
import fcntl
import os
import pty
import re
import select
import shutil
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest
from dataclasses import dataclass

WATCH = os.environ["VADELCLIP_WATCH"]
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"
TIME_LIMIT = 120.0 if SANITIZED else 60.0  # seconds
ESCAPE = re.compile(r"\x1b(?:\[[0-9;?]*[A-Za-z]|[78])")

SQUARE = (b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="0" y="0"/><point x="10" y="0"/>'
          b'<point x="10" y="10"/><point x="0" y="10"/></polygon></group></VadeDGM></VADELSIM>\n')
HEADER = b"x;y;z\n"

# A shell starts its background jobs with some of these ignored, and what is started from here would inherit that.
for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGHUP):
    if signal.getsignal(number) == signal.SIG_IGN:
        signal.signal(number, signal.SIG_DFL)


@dataclass
class Watched:
    status: int
    output: str
    errors: str

    def outputLines(self):
        return self.output.splitlines()

    def errorLines(self):
        return self.errors.splitlines()


def watchEnvironment(extra=None):
    """The environment without anything that changes how the bar looks, and with what a test wants."""
    dropped = ("LANG", "LANGUAGE", "NO_COLOR", "TERM", "COLUMNS")
    settings = {name: value for name, value in os.environ.items()
                if name not in dropped and not name.startswith("LC_")}
    settings.update({"TERM": "xterm", "LC_ALL": "C.UTF-8"})
    if SANITIZED:  # or every map would be followed by a table of what the fonts' library keeps
        settings["LSAN_OPTIONS"] = "print_suppressions=0"
    settings.update(extra or {})
    return settings


class Terminal:
    """A pseudo-terminal with a process in it, which has it as its controlling terminal."""

    def __init__(self, command, directory, columns, environment=None):
        self.pid, self.descriptor = pty.fork()
        if self.pid == 0:
            os.chdir(directory)
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
            os.execve(command[0], command, watchEnvironment(environment))
        self.before = None
        self.received = b""
        self.reads = []  # time and bytes of each read

    def resize(self, columns):
        fcntl.ioctl(self.descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def type(self, text):
        os.write(self.descriptor, text)

    def settings(self):
        return termios.tcgetattr(self.descriptor)

    def readSome(self, seconds):
        """False at the end of the output."""
        ready, _, _ = select.select([self.descriptor], [], [], seconds)
        if not ready:
            return True
        try:
            data = os.read(self.descriptor, 65536)
        except OSError:  # the process has closed the terminal
            return False
        self.received += data
        self.reads.append((time.monotonic(), data))
        return bool(data)

    def readUntil(self, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while not condition(self.received):
            if time.monotonic() > limit or not self.readSome(0.5):
                raise AssertionError(f"{what} was not to be seen in {self.received!r}")

    def finish(self):
        limit = time.monotonic() + TIME_LIMIT
        while self.readSome(0.5):
            if time.monotonic() > limit:
                os.kill(self.pid, signal.SIGKILL)
        _, status = os.waitpid(self.pid, 0)
        os.close(self.descriptor)
        return os.waitstatus_to_exitcode(status)


class Screen:
    """What a terminal shows, as far as Vadelwatch uses it: rows that are overwritten, erased and scrolled."""

    def __init__(self, columns):
        self.columns = columns
        self.rows = [""]
        self.row = self.column = 0
        self.saved = (0, 0)
        self.wrapping = True
        self.longest = 0  # the most columns that a row has ever filled
        self.drawings = []  # the row of the bar as each drawing left it

    def write(self, text):
        position = 0
        while position < len(text):
            escape = ESCAPE.match(text, position)
            if escape:
                self.escape(escape[0])
                position = escape.end()
                continue
            if text[position] == "\n":
                self.row += 1
                if self.row == len(self.rows):
                    self.rows.append("")
            elif text[position] == "\r":
                self.column = 0
            else:
                self.put(text[position])
            position += 1

    def put(self, character):
        row = self.rows[self.row].ljust(self.column)
        self.rows[self.row] = row[:self.column] + character + row[self.column + 1:]
        self.column += 1
        self.longest = max(self.longest, self.column)

    def escape(self, sequence):
        if sequence == "\x1b[K":
            self.rows[self.row] = self.rows[self.row][:self.column]
        elif sequence == "\x1b[2K":
            self.rows[self.row] = ""
        elif sequence == "\x1b[B":
            self.row = min(self.row + 1, len(self.rows) - 1)
        elif sequence == "\x1b7":
            self.saved = (self.row, self.column)
        elif sequence == "\x1b8":
            self.row, self.column = self.saved
        elif sequence in ("\x1b[?7l", "\x1b[?7h"):
            self.wrapping = sequence.endswith("h")
            if self.wrapping:  # on again: a drawing has ended
                self.drawings.append(self.rows[self.row])
        elif not sequence.endswith("m"):
            raise AssertionError(f"unknown sequence {sequence!r}")

    def text(self):
        return "\n".join(self.rows)


class WatchTest(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="vadelwatch-")
        self.addCleanup(shutil.rmtree, self.directory)
        self.watch = WATCH

    def path(self, name):
        return os.path.join(self.directory, name)

    def give(self, files):
        for name, content in files.items():
            os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
            with open(self.path(name), "wb") as file:
                file.write(content)

    def giveJob(self, nodeFiles, base="base"):
        self.give({"area.xml": SQUARE})
        os.makedirs(self.path(f"{base}/data"), exist_ok=True)
        self.give({f"{base}/data/{name}": content for name, content in nodeFiles.items()})

    def content(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def standIn(self, script):
        """Puts a script in the tool's place; it is Python code, `send` writes a line to the channel."""
        place = self.path("bin")
        os.makedirs(place, exist_ok=True)
        shutil.copy2(WATCH, place)
        self.watch = os.path.join(place, "Vadelwatch")
        tool = os.path.join(place, "Vadelclip")
        with open(tool, "w", encoding="utf-8") as file:
            file.write(f"#!{sys.executable}\nimport json, os, signal, sys, time\n"
                       "def say(data): sys.stdout.buffer.write(data); sys.stdout.buffer.flush()\n"
                       "def send(data):\n"
                       "    while data: data = data[os.write(3, data):]\n"
                       "def message(**values): send(json.dumps(values).encode() + b'\\n')\n"
                       "def finish(count=0):\n"
                       "    place = os.path.join(os.path.dirname(sys.argv[1]), sys.argv[2])\n"
                       "    os.makedirs(place, exist_ok=True)\n"
                       "    open(os.path.join(place, 'total_node_count.txt'), 'w').write(f'{count}\\n')\n"
                       "    message(type='finish', level=1, text='The end')\n")
            file.write(script)
        os.chmod(tool, 0o755)
        return tool

    def start(self, *arguments, environment=None, **settings):
        process = subprocess.Popen([self.watch, *arguments], cwd=self.directory, env=watchEnvironment(environment),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **settings)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        """After a failed test as well, nothing goes on."""
        process.kill()
        process.wait()
        process.stdout.close()
        process.stderr.close()

    def finish(self, process):
        try:
            output, errors = process.communicate(timeout=TIME_LIMIT)
        except subprocess.TimeoutExpired:
            process.kill()
            self.fail("still running")
        return Watched(process.returncode, os.fsdecode(output), os.fsdecode(errors))

    def run_(self, *arguments, **settings):
        return self.finish(self.start(*arguments, **settings))

    def job(self, *options, **settings):
        return self.run_("base/data", "out", "area.xml", *options, **settings)

    def terminal(self, *arguments, columns=80, environment=None):
        return Terminal([self.watch, *arguments], self.directory, columns, environment)

    def expect(self, watched, *, status, output=(), errors=()):
        """Compares all of it. The seconds of a summary become "N"."""
        steady = re.sub(r"\b[0-9]+[.,][0-9] s\n", "N s\n", watched.output)
        self.assertEqual((status, list(output), list(errors)),
                         (watched.status, steady.splitlines(), watched.errorLines()))


def isExecutable(path):
    return bool(os.stat(path).st_mode & stat.S_IXUSR)


def summaryLines(read, written, nodes, directory, title="Finished clipping elevation data with model boundaries",
                 check="the lines add up to total_node_count.txt"):
    return [title, f"  Node files read   {read}", f"  Files written     {written}", f"  Nodes kept        {nodes}",
            "  Time              N s", f"  Output directory  {directory}", f"  Check             {check}"]
