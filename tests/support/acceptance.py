"""Runs the real executables and compares everything they leave on disk and on their descriptors.

Each test gets a fresh directory, writes its inputs there, runs one process in it and passes the finished `Run` to one
of the `expect...` functions. These compare the whole run: exit status, console, empty standard error, every file and
directory with its bytes (inputs included), and every message in order.

The environment names two executables. VADELCLIP_EXECUTABLE is the real tool, with its catalogues in the same directory.
With "-pipe" it writes JSON Lines to descriptor 3. VADELCLIP_RECORDING is the same tool with a recording message layer.
It writes one line to descriptor 3 for every call of the message classes. It has no catalogues, so its texts are the
English ids. Both may be built for Windows: see target_platform.py.
"""
import ctypes
import difflib
import os
import resource
import shutil
import stat
import subprocess
import tempfile
import threading
import time
import unittest
from dataclasses import dataclass

from expected_messages import failedRun, finishedRun
from target_platform import (EMULATOR, WINDOWS, inTextMode, inTextModeTree, launch, launchSettings, leftOutReason,
                             walkOrder)

TOOL = os.environ["VADELCLIP_EXECUTABLE"]
RECORDING = os.environ["VADELCLIP_RECORDING"]
SANITIZED = os.environ.get("VADELCLIP_SANITIZED") == "1"
CHANNEL = 3  # the descriptor that a process writes messages to
TIME_LIMIT = 300.0  # seconds

# A tree is a dict from relative path to content: bytes for a file, one of these texts for anything else.
DIRECTORY = "directory"
FIFO = "fifo"


def linkTo(target):
    return f"link to {target}"


@dataclass
class Run:
    status: int  # exit status, or minus the signal that ended the process
    console: bytes
    errors: bytes
    messages: list  # lines of descriptor 3
    tree: dict

    def consoleLines(self):
        return os.fsdecode(self.console).splitlines()


def boundary(*rings):
    """A boundary file with one polygon for each ring, a ring being a list of (x, y)."""
    polygons = "".join(
        f'<polygon id="{number}">' + "".join(f'<point x="{x}" y="{y}"/>' for x, y in ring) + "</polygon>\n"
        for number, ring in enumerate(rings, 1))
    return f'<VADELSIM><VadeDGM><group type="boundaries">\n{polygons}</group></VadeDGM></VADELSIM>\n'.encode()


SQUARE = boundary([(0, 0), (10, 0), (10, 10), (0, 10)])


# An ordinary job: one of the two nodes is in SQUARE.
NODES = {"a.xyz": b"x;y;z\n1;1;5\n20;1;5\n"}
KEPT = {"a.xyz": b"x;y;z\n1;1;5\n"}


def output(count, files=None, at="base/out"):
    """Returns the tree of a finished output directory."""
    tree = {at: DIRECTORY, f"{at}/total_node_count.txt": b"%d\n" % count}
    tree.update({f"{at}/{name}": content for name, content in (files or {}).items()})
    return tree


def limitMemory(size):
    """Returns a function for `beforeStart` that limits the address space of the process to `size` bytes."""
    if EMULATOR:
        raise unittest.SkipTest("the limit would be that of the emulator")
    return lambda: resource.setrlimit(resource.RLIMIT_AS, (size, size))


def dropPowersOfRoot():
    """For `beforeStart`: makes file permissions apply to the process even if root runs the tests."""
    for capability in (1, 2):  # CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH
        if libc.prctl(24, capability, 0, 0, 0) != 0 and os.geteuid() == 0:  # PR_CAPBSET_DROP
            raise OSError("cannot drop a capability of root")


libc = ctypes.CDLL(None)


def occupyChannelNumber():
    """Keeps descriptor 3 in use in this process, so that `subprocess` does not take it before a child replaces it."""
    descriptor = os.open(os.devnull, os.O_RDONLY)
    while descriptor < CHANNEL:
        descriptor = os.open(os.devnull, os.O_RDONLY)
    if descriptor != CHANNEL:
        os.close(descriptor)


occupyChannelNumber()


def readTree(root):
    tree = {}
    for entry in os.scandir(root):
        mode = entry.stat(follow_symlinks=False).st_mode
        if entry.is_symlink():
            tree[entry.name] = linkTo(os.readlink(entry.path))
        elif stat.S_ISDIR(mode):
            os.chmod(entry.path, mode | 0o700)
            tree[entry.name] = DIRECTORY
            tree.update({f"{entry.name}/{name}": content for name, content in readTree(entry.path).items()})
        elif stat.S_ISREG(mode):
            os.chmod(entry.path, mode | 0o400)
            with open(entry.path, "rb") as file:
                tree[entry.name] = file.read()
        else:
            tree[entry.name] = FIFO
    return tree


def withParents(tree):
    complete = dict(tree)
    for path in tree:
        while "/" in path:
            path = path.rsplit("/", 1)[0]
            complete.setdefault(path, DIRECTORY)
    return complete


def report(status, console, errors, messages, tree):
    """Returns the whole run as lines of text, for comparison and for the diff that a failed test prints."""
    lines = [f"exit status {status}"]
    lines += [f"console {line!r}" for line in console.splitlines(keepends=True)]
    lines += [f"standard error {line!r}" for line in errors.splitlines(keepends=True)]
    for path in sorted(tree):
        content = tree[path]
        if isinstance(content, bytes):
            lines.append(f"{path}: {len(content)} bytes")
            lines += [f"{path}: {line!r}" for line in content.split(b"\n")]
        else:
            lines.append(f"{path}: {content}")
    return lines + [f"message {line!r}" for line in messages]


class AcceptanceTest(unittest.TestCase):
    def setUp(self):
        reason = leftOutReason(self.id())
        if reason is not None:
            self.skipTest(reason)
        place = tempfile.mkdtemp(prefix="vadelclip-")
        self.addCleanup(shutil.rmtree, place)
        self.directory = os.path.join(place, "work")  # the process runs here; all of it is compared
        self.aside = os.path.join(place, "aside")  # for files that are not compared
        os.mkdir(self.directory)
        os.mkdir(self.aside)
        self.given = {}
        self.servers = []
        self.serverErrors = []
        self.process = None

    def startOver(self):
        """Empties the directory for the next case of a table."""
        shutil.rmtree(self.directory)
        os.mkdir(self.directory)
        self.given = {}

    def needPosix(self, reason):
        """Skips the test on Windows."""
        if WINDOWS:
            self.skipTest(reason)

    # Inputs

    def path(self, name):
        return os.path.join(self.directory, name)

    def give(self, tree):
        """Writes inputs. The run must leave them unchanged."""
        if any(content == FIFO or str(content).startswith(linkTo("")) for content in tree.values()):
            self.needPosix("Windows has no FIFOs in its file system, and the emulator shows no links")
        for name, content in tree.items():
            path = self.path(name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            if isinstance(content, bytes):
                with open(path, "wb") as file:
                    file.write(content)
            elif content == DIRECTORY:
                os.makedirs(path, exist_ok=True)
            elif content == FIFO:
                os.mkfifo(path)
            else:
                os.symlink(content.removeprefix(linkTo("")), path)
        self.given.update(tree)

    def keep(self, created):
        """Makes the files that a run has created inputs of the next run."""
        self.given.update(inTextModeTree(created))

    def clearOutput(self):
        """Removes base/out for the next run on the same inputs."""
        shutil.rmtree(self.path("base/out"), ignore_errors=True)

    def giveJob(self, nodeFiles, area=SQUARE):
        """Writes the inputs of an ordinary job: base/data with these node files, and area.xml."""
        self.give({"area.xml": area, "base/data": DIRECTORY})
        self.give({f"base/data/{name}": content for name, content in nodeFiles.items()})

    def walkOrder(self, directory="base/data"):
        """Returns the names in the order of the platform's listing, which is the order of the passes."""
        return walkOrder(self.path(directory))

    def serve(self, name, *openings):
        """Creates a file `name` whose content differs from one opening to the next.

        Each opening is bytes, or a list of bytes and functions. They are written and called in this order after the
        tool has opened the file. `name` is a link to a FIFO, a new one for each opening, so that openings do not mix.
        """
        self.needPosix("Windows has no FIFOs in its file system")
        fifo = os.path.join(self.aside, f"fifo{len(self.servers)}")
        os.mkfifo(fifo)
        self.give({name: linkTo(fifo)})

        def serveOne(pieces):
            with open(fifo, "wb", buffering=0) as pipe:
                os.mkfifo(fifo + ".next")
                os.rename(fifo + ".next", fifo)
                for piece in [pieces] if isinstance(pieces, bytes) else pieces:
                    piece() if callable(piece) else pipe.write(piece)

        def serveAll():
            for pieces in openings:
                try:
                    serveOne(pieces)
                except BrokenPipeError:
                    pass  # the tool need not read to the end
                except Exception as error:
                    self.serverErrors.append(f"{name}: {error!r}")

        self.servers.append((name, fifo, threading.Thread(target=serveAll, daemon=True)))
        self.servers[-1][2].start()

    def waitFor(self, condition, what):
        """For a step of `serve`: delays the tool's input until the condition is true."""
        limit = time.monotonic() + TIME_LIMIT
        while not condition():
            if time.monotonic() > limit:
                raise AssertionError(f"timed out waiting for {what}")
            time.sleep(0.001)

    def runningProcess(self):
        """For a step of `serve`: returns the process of the tool, which may open a file before `start` knows it."""
        self.waitFor(lambda: self.process, "the start of the tool")
        return self.process

    # Running

    def start(self, *arguments, tool=RECORDING, environment=None, beforeStart=None, console=None, channel=None,
              closed=(), launcher=True):
        """Runs a tool to its end.

        @param beforeStart  called in the new process just before it executes the tool; not on Windows
        @param console      descriptor to use as standard output; a file by default
        @param channel      descriptor to use as descriptor 3; on Windows also a text for the launcher
        @param closed       descriptors that are closed when the tool starts
        @param launcher     on Windows: start the tool by the launcher, which can pass descriptors on
        """
        self.process = None
        self.channelFile = tempfile.NamedTemporaryFile(dir=self.aside)
        self.addCleanup(self.channelFile.close)
        channelNumber = self.channelFile.fileno() if channel is None else channel
        settings = {name: value for name, value in os.environ.items() if name not in ("LANG", "LANGUAGE", "LOCPATH")
                    and not name.startswith("LC_")}
        settings.update(launchSettings(channelNumber, closed))
        settings.update(environment or {})

        def inChild():
            os.dup2(channelNumber, CHANNEL)
            for descriptor in closed:
                os.close(descriptor)
            if beforeStart:
                beforeStart()

        if beforeStart:
            self.needPosix("on Windows a new process is the new program from its start")
        inherited = {} if WINDOWS else {"pass_fds": (CHANNEL,), "preexec_fn": inChild}

        with tempfile.TemporaryFile() as consoleFile, tempfile.TemporaryFile() as errorFile:
            process = self.process = subprocess.Popen(
                launch(tool, arguments, launcher), cwd=self.directory, env=settings, stdin=subprocess.DEVNULL,
                stdout=consoleFile if console is None else console, stderr=errorFile, **inherited)
            try:
                process.wait(TIME_LIMIT)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                self.fail(f"still running after {TIME_LIMIT} s: {arguments}")
            for name, fifo, thread in self.servers:
                thread.join(TIME_LIMIT)
                if thread.is_alive():
                    os.close(os.open(fifo, os.O_RDONLY | os.O_NONBLOCK))
                    self.fail(f"{name} was not opened as often as expected")
            self.assertEqual(self.serverErrors, [])
            consoleFile.seek(0)
            errorFile.seek(0)
            return Run(process.returncode, consoleFile.read(), errorFile.read(), self.messagesSoFar(),
                       readTree(self.directory))

    def messagesSoFar(self):
        content = os.pread(self.channelFile.fileno(), os.fstat(self.channelFile.fileno()).st_size, 0)
        return os.fsdecode(content.replace(b"-nan", b"nan")).split("\n")[:-1]

    def clip(self, *options, **settings):
        """Runs the job that `giveJob` has written."""
        return self.start("base/data", "out", "area.xml", *options, **settings)

    # Comparing

    def expect(self, run, *, status, console=(), created=None, removed=(), messages=()):
        """Compares the whole run.

        @param console   lines of text
        @param created   tree of the files that must exist in addition to the inputs or in place of one; in text mode
        @param removed   inputs that must no longer exist
        @param messages  all lines of descriptor 3
        """
        tree = {**self.given, **inTextModeTree(created or {})}
        tree = {path: content for path, content in withParents(tree).items() if path not in removed}
        text = inTextMode(os.fsencode("".join(line + "\n" for line in console)))
        expected = report(status, text, b"", messages, tree)
        got = report(run.status, run.console, run.errors, run.messages, run.tree)
        if expected != got:
            self.fail("\n" + "\n".join(difflib.unified_diff(expected, got, "expected", "got", lineterm="", n=2)))

    def expectFinished(self, run, count, files=None, lineCounts=(), pipeMode=False):
        """Expects a run with an empty console that kept `count` lines; `lineCounts` in the order of the passes."""
        self.expect(run, status=0, created=output(count, files), messages=finishedRun(*lineCounts, pipeMode=pipeMode))

    def expectFailed(self, run, *errorTexts, created=None, pipeMode=False):
        """Expects a run that reported these errors and failed before it opened a node file for clipping."""
        self.expect(run, status=1, console=errorTexts, created=created,
                    messages=failedRun(*errorTexts, pipeMode=pipeMode))

    def expectThrown(self, run, origin, created=None):
        """Expects a run that a library's exception ended. Only the first word of the reported text is portable."""
        self.assertRegex(run.console, b"^" + origin.encode() + b"(: |$)", run)
        self.expectFailed(run, *run.consoleLines(), created=created)
