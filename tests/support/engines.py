"""Runs sharded jobs on real engines, GNU parallel and Slurm, and compares the result with one run of the tool.

Tests wait for events, never for a fixed time. A test can close a gate in front of the tool: every task then reports
that it has started, and waits until the gate is opened. So a test knows which task runs where when it ends something.
"""
import contextlib
import os
import random
import shutil
import signal
import socket
import subprocess
import tempfile
import time
import unittest
from dataclasses import dataclass

TOOL = os.environ["VADELCLIP_EXECUTABLE"]
BUILD = os.path.dirname(TOOL)
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"
TIME_LIMIT = 300.0  # seconds
SQUARE = (b'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="0" y="0"/><point x="50" y="0"/>'
          b'<point x="50" y="50"/><point x="0" y="50"/></polygon></group></VadeDGM></VADELSIM>\n')

# A directory with characters that a shell, GNU parallel or sbatch would replace.
ODD_NAME = "a {} {1} $HOME %j 'b' \\\n\""

# Replaces the tool. Outside of an engine's task it is the tool. In a task it waits while the gate of the task is
# closed. GNU parallel counts tasks from 1, Slurm names them by the index of the shard.
GATED_TOOL = """#!/bin/sh
key=${{SLURM_ARRAY_TASK_ID-$PARALLEL_SEQ}}
closed() {{ [ -e '{gates}/closed.all' ] || [ -e '{gates}/closed.'"$key" ]; }}
if [ -n "$key" ] && closed; then
  echo "$key ${{SLURMD_NODENAME-${{SSH_CONNECTION##* }}}}" >'{gates}'/new.$$
  mv '{gates}'/new.$$ '{gates}'/started.$$
  while closed && [ ! -e '{gates}'/open.$$ ]; do sleep 0.05; done
fi
exec '{tool}' "$@"
"""

# The suite may be started by a shell that ignores some of these in its background jobs.
for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGTERM, signal.SIGHUP):
    signal.signal(number, signal.SIG_DFL if number != signal.SIGINT else signal.default_int_handler)
# The suite may itself run in a task.
for name in [name for name in os.environ if name.startswith(("SLURM", "SBATCH_", "PARALLEL"))]:
    del os.environ[name]
# An ordinary user's PATH may lack the directories of daemons.
os.environ["PATH"] += ":/usr/sbin:/sbin"


def needs(*programs):
    """Skips the tests of a class if one of the programs is not installed."""
    missing = [program for program in programs if shutil.which(program) is None]
    return unittest.skipIf(missing, "not installed: " + ", ".join(missing))


def waitFor(condition, what):
    """Returns the first true result of `condition`."""
    limit = time.monotonic() + TIME_LIMIT
    while not (result := condition()):
        if time.monotonic() > limit:
            raise AssertionError(f"timed out waiting for {what}")
        time.sleep(0.05)
    return result


def isRunning(pid):
    return processStatus(pid)[0] not in ("", "Z")


def processStatus(pid):
    """Returns the state letter, the parent's id and the name of a process; empty texts if there is none."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            front, back = file.read().rsplit(")", 1)
    except (FileNotFoundError, ProcessLookupError):
        return "", "", ""
    state, parent = back.split()[:2]
    return state, int(parent), front.split("(", 1)[1]


def descendants(pid):
    """Returns the ids of all processes below one process, parents first."""
    children = {}
    for name in filter(str.isdigit, os.listdir("/proc")):
        children.setdefault(processStatus(name)[1], []).append(int(name))
    found = [pid]
    for process in found:
        found += children.get(process, [])
    return found[1:]


def kill(*pids):
    for pid in pids:
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
    waitFor(lambda: not any(map(isRunning, pids)), f"the end of {pids}")


def freePorts(count, address="127.0.0.1"):
    """Returns ports that are free now. They are lower than those that the system takes for outgoing connections."""
    ports = []
    while len(ports) < count:
        port = random.randrange(10000, 32768)
        with socket.socket() as one, contextlib.suppress(OSError):
            one.bind((address, port))
            ports += [port] if port not in ports else []
    return ports


@dataclass(frozen=True)
class Started:
    """A task that waits in front of its gate."""
    key: str
    host: str  # a node of Slurm, or the port of an ssh server
    pid: int

    def chain(self, first):
        """Returns the ids of the processes from the one named `first` down to this task."""
        pids = [self.pid]
        while processStatus(pids[0])[2] != first:
            parent = processStatus(pids[0])[1]
            if not parent:
                raise AssertionError(f"no process above {self.pid} is named {first}")
            pids.insert(0, parent)
        return pids


class EngineTest(unittest.TestCase):
    maxDiff = None
    JOB = ("base/data", "out", "area.xml", "--shards=6", "--part=4000", "--lang=en")

    def setUp(self):
        if SANITIZED:
            self.skipTest("The engines start the same scripts and tools: the release suite tests them")
        place = tempfile.mkdtemp(prefix="vadelclip-engine-")
        self.addCleanup(shutil.rmtree, place)
        self.directory = os.path.join(place, ODD_NAME)
        os.mkdir(self.directory)
        self.gates = os.path.join(place, "gates")
        self.programs = self.path("bin")
        os.mkdir(self.gates)
        self.addCleanup(lambda: kill(*(task.pid for task in self.waiting())))
        os.mkdir(self.programs)
        for name in ("Vadelshard", "vadelclip-parallel", "vadelclip-slurm", "engine_job.bash"):
            shutil.copy2(os.path.join(BUILD, name), self.programs)
        os.symlink(os.path.join(BUILD, "locale"), os.path.join(self.programs, "locale"))
        with open(os.path.join(self.programs, "Vadelclip"), "w", encoding="utf-8") as file:
            file.write(GATED_TOOL.format(gates=self.gates, tool=TOOL))
        os.chmod(os.path.join(self.programs, "Vadelclip"), 0o755)
        self.giveJob()

    def path(self, name):
        return os.path.join(self.directory, name)

    def moveTo(self, name):
        """Renames the directory of the job and the programs."""
        renamed = os.path.join(os.path.dirname(self.directory), name)
        os.rename(self.directory, renamed)
        self.directory = renamed
        self.programs = self.path("bin")

    def giveJob(self):
        """Writes eight node files, the largest longer than a part, and what one run of the tool makes of them."""
        os.makedirs(self.path("base/data"))
        for number in range(8):
            end = "\r\n" if number % 2 else "\n"
            points = [f"{n * 7 % 101};{n * 13 % 97};{number}" for n in range(1200 if number == 3 else 200 + number)]
            with open(self.path(f"base/data/tile {number}.xyz"), "w", encoding="utf-8", newline="") as file:
                file.write(end.join(["x;y;z", *points]) + end)
        with open(self.path("area.xml"), "wb") as file:
            file.write(SQUARE)
        shutil.copytree(self.path("base"), self.path("reference"), copy_function=shutil.copy2)
        subprocess.run([TOOL, "reference/data", "out", "area.xml"], cwd=self.directory, check=True)

    def runProgram(self, name, *arguments, environment=None):
        """Runs one of the programs to its end. Standard error is part of its output."""
        return subprocess.run([os.path.join(self.programs, name), *arguments], cwd=self.directory, text=True,
                              env={**os.environ, **(environment or {})}, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=TIME_LIMIT, check=False)

    def plan(self):
        run = self.runProgram("Vadelshard", "plan", *self.JOB)
        self.assertEqual((0, "6\n"), (run.returncode, run.stdout))

    # The gate

    def closeGate(self, key="all"):
        with open(os.path.join(self.gates, f"closed.{key}"), "wb"):
            pass

    def openGate(self, key="all"):
        os.remove(os.path.join(self.gates, f"closed.{key}"))

    def openGateOf(self, task):
        with open(os.path.join(self.gates, f"open.{task.pid}"), "wb"):
            pass

    def waiting(self):
        """Returns the tasks that are in front of the gate."""
        found = []
        for kind, pid in (name.split(".") for name in os.listdir(self.gates)):
            if kind == "started" and isRunning(pid):
                with open(os.path.join(self.gates, f"started.{pid}"), encoding="utf-8") as file:
                    found.append(Started(*file.read().rstrip("\n").split(" "), int(pid)))
        return found

    def started(self, count):
        """Waits until this number of tasks is in front of the gate."""
        waitFor(lambda: len(self.waiting()) >= count, f"{count} started tasks")
        return self.waiting()

    # Comparing

    def expectResultOfOneRun(self):
        """Expects the output directory of one run, unchanged node files, and nothing else but the log of the engine."""
        difference = subprocess.run(["diff", "-r", "--exclude=out.*.log", "reference", "base"], cwd=self.directory,
                                    text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertEqual((0, ""), (difference.returncode, difference.stdout))
