"""Runs Vadelwatch from outside, through pipes; terminal.py has the pseudo-terminal.

VADELCLIP_WATCH names the executable; the tool and its catalogues are in the same directory. With a stand-in, a copy of
Vadelwatch is in one directory with a small script in place of the tool.
"""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from dataclasses import dataclass

from terminal import TIME_LIMIT, Screen, Terminal

WATCH = os.environ["VADELCLIP_WATCH"]
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"

SQUARE = (b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="0" y="0"/><point x="10" y="0"/>'
          b'<point x="10" y="10"/><point x="0" y="10"/></polygon></group></VadeDGM></VADELSIM>\n')
HEADER = b"x;y;z\n"
JOB = ("base/data", "out", "area.xml", "--lang=en")

# A stand-in that reports a thousand steps in about two seconds.
STEADY = """
message(type='state', level=1, text='Clipping', active=True)
for tenths in range(1000):
    message(type='progress', percent=tenths / 10)
    time.sleep(0.002)
message(type='progress', percent=100.0)
finish()
"""

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
        return self.errors.splitlines()


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

    def run_(self, *arguments, **settings):
        return self.finish(self.start(*arguments, **settings))

    def job(self, *options, **settings):
        return self.run_("base/data", "out", "area.xml", *options, **settings)

    def terminal(self, *arguments, columns=80, environment=None):
        return Terminal([self.watch, *arguments], self.directory, columns, watchEnvironment(environment))

    def expectShortRun(self, run):
        """Expects that a run of less than half a second shows nothing. A busy machine may need several runs for that.

        `run` starts one with --json, and returns what it showed and its summary."""
        for _ in range(20):
            shutil.rmtree(self.path("base/out"), ignore_errors=True)
            shown, summary = run()
            if json.loads(summary)["seconds"] < 0.5:
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

    def finished(self, *options, columns=80, environment=None):
        terminal = self.terminal(*JOB, *options, columns=columns, environment=environment)
        status = terminal.finish()
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
