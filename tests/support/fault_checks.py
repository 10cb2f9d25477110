"""Runs in which calls fail, and the checks that hold after every such run.

`failing` and `failingMemory` return an environment in which chosen calls of the tool fail. The libraries that make them
fail are failing_calls.cpp and failing_memory.cpp. `FaultTest.check` checks what holds after every run, with or without
failures: inputs are unchanged, each output is a prefix of the right one and ends with a line end, a count file exists
only after all passes, and one closing message matches the status.
"""
import errno
import json
import os

from acceptance import TOOL, AcceptanceTest, withParents
from expected_messages import jsonProgress
from target_platform import crashed, endedAbnormally, withoutTextMode

COUNT_FILE = "total_node_count.txt"

# Outcomes of single calls. A test concatenates them.
PASS = "."
STOP = "S"  # stops the process, so that a test can do something at exactly this moment


def fails(error=errno.EIO):
    return f"{-error} "


def failsForever(error=errno.EIO):
    return f"{-error}*"


def takes(count):
    """Reads or writes at most `count` bytes."""
    return f"{count} "


def takesForever(count):
    return f"{count}*"


def preloaded(variable, settings):
    # The address sanitizer requires its library to be the first one, but also works after these.
    return {"LD_PRELOAD": os.environ[variable], "ASAN_OPTIONS": "verify_asan_link_order=0", **settings}


def noting(path):
    """For `environment`: records each opening and closing of a path with this ending among the messages."""
    return preloaded("VADELCLIP_FAILING_CALLS", {"VADELCLIP_NOTED_PATH": path})


def failing(call, path, *outcomes, opening=0, countTo=None, program=None):
    """For `environment`.

    @param call     function of the C library: see failing_calls.cpp
    @param path     only calls on paths with this ending
    @param outcomes of the calls in order; calls after the last outcome pass
    @param opening  for reads: only those of this opening of the file, counted from 1
    @param countTo  file to write the number of calls to
    @param program  only calls of the program of this name
    """
    settings = {"VADELCLIP_FAILING_CALL": call, "VADELCLIP_FAILING_PATH": path,
                "VADELCLIP_OUTCOMES": "".join(outcomes)}
    if opening:
        settings["VADELCLIP_FAILING_OPENING"] = str(opening)
    if countTo:
        settings["VADELCLIP_CALL_COUNT"] = countTo
    if program:
        settings["VADELCLIP_FAILING_PROGRAM"] = program
    return preloaded("VADELCLIP_FAILING_CALLS", settings)


def failingMemory(*outcomes, countTo=None):
    """The same for memory allocations."""
    settings = {"VADELCLIP_OUTCOMES": "".join(outcomes), **({"VADELCLIP_CALL_COUNT": countTo} if countTo else {})}
    return preloaded("VADELCLIP_FAILING_MEMORY", settings)


def endedEarly(run):
    """Returns true if the process ended before its closing message."""
    return run.status < 0 or endedAbnormally(run.status) or crashed(run.status)


class FaultTest(AcceptanceTest):
    """A job is a dict from file name to (content, kept lines)."""

    def giveFaultJob(self, job, **settings):
        self.giveJob({name: content for name, (content, _) in job.items()}, **settings)
        # The complete content of each output. During the pass it has a header even if no line is kept.
        self.complete = {name: content.splitlines()[0] + b"\n" + kept for name, (content, kept) in job.items()}
        self.kept = sum(kept.count(b"\n") for _, kept in job.values())

    def clipPiped(self, *options, **settings):
        return self.clip("-pipe", *(options or ["-lang=en"]), tool=TOOL, **settings)

    def countOfCalls(self, makeEnvironment, *options):
        """Returns the number of calls of a run in which nothing fails."""
        path = os.path.join(self.aside, "calls")
        run = self.clipPiped(*options, environment=makeEnvironment(path))
        self.assertEqual(self.check(run), "finished", run)
        with open(path, encoding="ascii") as file:
            return int(file.read())


    # Checks

    def check(self, run, *, wholeLines=True, silent=False, piped=True):
        """Checks what holds after every run.

        @param wholeLines  outputs must end with a line end
        @param silent      outputs and the count may lack what could not be opened, read or written
        @param piped       the run was started with "-pipe"
        @return "finished", "failed", or "ended" for a process that ended before its closing message
        """
        self.checkInputs(run)
        outputs = self.checkOutputs(run, wholeLines)
        if COUNT_FILE in outputs and silent:
            self.checkPassesOver(run, outputs[COUNT_FILE], piped)
        elif COUNT_FILE in outputs:
            self.checkComplete(outputs)
        return self.checkEnd(run, outputs, silent, piped)

    def checkPassesOver(self, run, count, piped):
        """Checks a count file whose outputs may be incomplete, so that they do not show that all passes are done."""
        self.assertRegex(count, rb"\A(-?[0-9]+\n)?\Z")
        if piped:
            # This message is sent between the last pass and the opening of the count file, and only there.
            self.assertIn(jsonProgress(100.0)[0], run.messages)

    def checkComplete(self, outputs):
        """Checks the outputs next to a count file if nothing may be missing."""
        self.assertIn(outputs[COUNT_FILE], (b"", b"%d\n" % self.kept))
        self.assertEqual({name: outputs.get(name, b"") for name in self.finished()}, self.finished())

    def finished(self):
        return {name: content for name, content in self.complete.items() if content.count(b"\n") > 1}

    def checkInputs(self, run):
        for path, content in withParents(self.given).items():
            self.assertTrue(run.tree.get(path) == content, f"{path} is not what it was")

    def checkOutputs(self, run, wholeLines):
        outputs = {}
        for path, content in run.tree.items():
            if path in withParents(self.given) or path == "base/out":
                continue
            directory, name = os.path.split(path)
            self.assertEqual(directory, "base/out", path)
            outputs[name] = content = withoutTextMode(content)
            if name != COUNT_FILE:
                self.assertIn(name, self.complete)
                self.assertTrue(self.complete[name].startswith(content), f"{path} is {content[-200:]!r}")
                self.assertTrue(not wholeLines or content == b"" or content.endswith(b"\n"), f"{path} ends in a line")
        return outputs

    def checkEnd(self, run, outputs, silent, piped):
        types = self.checkMessages(run) if piped else self.assertEqual(run.messages, [])
        if endedEarly(run):
            return "ended"
        self.assertEqual(run.errors, b"")
        if piped:
            self.assertEqual([kind for kind in types if kind in ("failed", "finish")], types[-1:], run.messages)
            self.assertEqual(run.status, {"finish": 0, "failed": 1}[types[-1]])
        if run.status == 0 and not silent:
            self.assertEqual((run.console, outputs), (b"", {**self.finished(), COUNT_FILE: b"%d\n" % self.kept}))
        return {0: "finished", 1: "failed"}[run.status]

    def checkMessages(self, run):
        """Checks that exactly the errors on the console were sent. A process may end abnormally between the two.

        @return the types of all messages
        """
        messages = [json.loads(line) for line in run.messages]
        sent = [message["text"] for message in messages if message["type"] == "error"]
        shown = run.consoleLines()
        self.assertEqual(sent, shown[:len(sent)] if endedEarly(run) else shown)
        percents = [message["percent"] for message in messages if message["type"] == "progress"]
        self.assertEqual(percents, sorted(percents))
        return [message["type"] for message in messages]
