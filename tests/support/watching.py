"""Runs Vadelwatch from outside, through pipes; terminal.py has the pseudo-terminal.

VADELCLIP_WATCH names the executable; the tool and its catalogues are in the same directory. With a stand-in, a copy of
Vadelwatch is in one directory with a small script in place of the tool.
"""
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from dataclasses import dataclass

from terminal import TIME_LIMIT, Screen, Terminal

WATCH = os.environ["VADELCLIP_WATCH"]
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"

SQUARE = (b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="0" y="0"/><point x="10" y="0"/>'
          b'<point x="10" y="10"/><point x="0" y="10"/></polygon></group></VadeDGM></VADELSIM>\n')
HEADER = b"x;y;z\n"
JOB = ("base/data", "out", "area.xml", "--lang=en")

# A stand-in that reports progress until the test has seen enough of it: `giveSeen`.
STEADY = """
message(type='state', level=1, text='Clipping', active=True)
steps = 0
while not os.path.exists('seen'):
    message(type='progress', percent=100 * steps / (steps + 500))
    steps += 1
    time.sleep(0.002)
message(type='progress', percent=100.0)
finish()
"""

# What the plain progress shows after two seconds, which a run on a busy machine may take.
PLAIN_PROGRESS = re.compile(r"\w+  .*\d:\d\d (elapsed|vergangen)\b")

# A shell ignores some of these in its background jobs, and processes started from here would inherit that.
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
        """Returns the lines without those of the plain progress."""
        return [line for line in self.errors.splitlines() if not PLAIN_PROGRESS.match(line)]


def watchEnvironment(extra=None):
    """Returns the environment without variables that change the bar, with those of a test. None removes a variable."""
    dropped = ("LANG", "LANGUAGE", "NO_COLOR", "TERM", "COLUMNS")
    settings = {name: value for name, value in os.environ.items()
                if name not in dropped and not name.startswith("LC_")}
    settings.update({"TERM": "xterm", "LC_ALL": "C.UTF-8"})
    if SANITIZED:  # suppresses a report of memory that the font library keeps
        settings["LSAN_OPTIONS"] = "print_suppressions=0"
    settings.update(extra or {})
    return {name: value for name, value in settings.items() if value is not None}


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

    def serveNodeFile(self, name, content, *, first=lambda: None, during=lambda: None):
        """Makes a node file a FIFO, which the tool opens for the header, for the count and for the clip pass. `first` runs
        before it reads the header, and `during` in the middle of the clip pass. Returns the thread for that."""
        path = self.path(f"base/data/{name}")
        os.mkfifo(path)

        def serve():
            for step in ("header", "count", "pass"):
                with open(path, "wb", buffering=0) as pipe:
                    os.mkfifo(path + ".next")
                    os.rename(path + ".next", path)
                    if step == "header":
                        first()
                    middle = len(content) // 2
                    try:
                        pipe.write(content[:middle])
                        if step == "pass":
                            during()
                        pipe.write(content[middle:])
                    except BrokenPipeError:
                        pass

        thread = threading.Thread(target=serve, daemon=True)
        thread.start()
        return thread

    def holdNodeFile(self, name, content):
        """Makes a node file in which the tool waits during the clip pass. Returns the event that lets it continue."""
        event = threading.Event()
        self.addCleanup(event.set)
        self.serveNodeFile(name, content, during=event.wait)
        return event

    def giveSeen(self):
        """Lets a stand-in continue that waits until the test has seen something."""
        self.give({"seen": b""})

    def waitUntil(self, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while not condition():
            self.assertLess(time.monotonic(), limit, f"{what} was not to be seen")
            time.sleep(0.01)

    def waitForFile(self, name):
        self.waitUntil(lambda: os.path.exists(self.path(name)), name)

    def standIn(self, script):
        """Replaces the tool by a script in Python, in which `send` writes a line to the channel."""
        place = self.path("bin")
        os.makedirs(place, exist_ok=True)
        shutil.copy2(WATCH, place)
        if not os.path.lexists(os.path.join(place, "locale")):
            os.symlink(os.path.join(os.path.dirname(os.path.realpath(WATCH)), "locale"), os.path.join(place, "locale"))
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
        """Ends the process, also after a failed test."""
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

    def readUntil(self, stream, text):
        """Reads a pipe up to this text, and perhaps more."""
        received = b""
        while text.encode() not in received:
            data = os.read(stream.fileno(), 4096)
            self.assertTrue(data, f"no {text} in {received}")
            received += data

    def run_(self, *arguments, **settings):
        return self.finish(self.start(*arguments, **settings))

    def job(self, *options, **settings):
        return self.run_("base/data", "out", "area.xml", *options, **settings)

    def terminal(self, *arguments, columns=80, environment=None):
        terminal = Terminal([self.watch, *arguments], self.directory, columns, watchEnvironment(environment))
        self.addCleanup(terminal.end)
        return terminal

    def expectShortRun(self, run):
        """Expects that a run of less than half a second shows nothing. A busy machine may need several runs for that.

        `run` starts one and returns what it showed."""
        for _ in range(20):
            shutil.rmtree(self.path("base/out"), ignore_errors=True)
            start = time.monotonic()
            shown = run()
            if time.monotonic() - start < 0.5:
                self.assertEqual([], shown)
                return
        self.skipTest("the machine is too busy for a run of less than half a second")

    def expect(self, watched, *, status, output=(), errors=()):
        """Compares status, output and errors. The seconds of a summary become "N"."""
        steady = re.sub(r"\b[0-9]+[.,][0-9] s\n", "N s\n", watched.output)
        self.assertEqual((status, list(output), list(errors)),
                         (watched.status, steady.splitlines(), watched.errorLines()))


class TerminalTest(WatchTest):
    def shown(self, received, columns):
        screen = Screen(columns)
        screen.write(received.decode())
        return screen

    def finished(self, *options, columns=80, environment=None, until=None):
        """Runs to the end. With `until`, a stand-in that waits for that continues when this condition is true."""
        terminal = self.terminal(*JOB, *options, columns=columns, environment=environment)
        if until:
            terminal.readUntil(until, "the output")
            self.giveSeen()
        status = terminal.finish()
        if until:
            os.remove(self.path("seen"))
        return status, terminal, self.shown(terminal.received, columns)


def summaryLines(read, written, nodes, directory, title="Finished clipping elevation data with model boundaries",
                 check="the lines add up to total_node_count.txt", sentences=()):
    return [title, f"  Node files read   {read}", f"  Files written     {written}", f"  Nodes kept        {nodes}",
            "  Time              N s", f"  Output directory  {directory}", f"  Check             {check}", *(f"  {sentence}" for sentence in sentences)]


def onlyChildOf(pid):
    """Returns the process number of the tool that Vadelwatch has started."""
    with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
        [child] = file.read().split()
    return int(child)


def signalsIn(mask, pid):
    """Returns the signals of a mask of a process: SigBlk are those that its main thread blocks, ShdPnd those that wait."""
    with open(f"/proc/{pid}/status", encoding="utf-8") as file:
        bits = next(int(line.split()[1], 16) for line in file if line.startswith(mask + ":"))
    return {number for number in signal.valid_signals() if bits >> (number - 1) & 1}


def isFull(pipe):
    """Returns true if a pipe, given by the path of an open descriptor under /proc, has no space."""
    writing = os.open(pipe, os.O_WRONLY | os.O_NONBLOCK)
    try:
        return not select.select([], [writing], [], 0)[1]
    finally:
        os.close(writing)
