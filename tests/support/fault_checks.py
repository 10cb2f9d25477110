"""Runs in which something fails, and what has to hold after each of them.

`failing` and `failingMemory` make an environment in which chosen calls of the tool fail; the libraries behind them are
failing_calls.cpp and failing_memory.cpp. `FaultTest.check` then compares what every run must leave behind, whatever
happened to it: unchanged inputs, outputs that are beginnings of the right ones and end with a line, a count file only
after all passes, one closing message that fits the status.
"""
import errno
import json
import os

from acceptance import TOOL, AcceptanceTest, withParents
from expected_messages import jsonProgress
from target_platform import crashed, endedAbnormally, withoutTextMode

COUNT_FILE = "total_node_count.txt"

# Outcomes of single calls, to be strung together.
PASS = "."


def fails(error=errno.EIO):
    return f"{-error} "


def failsForever(error=errno.EIO):
    return f"{-error}*"


def takes(count):
    """At most so many bytes."""
    return f"{count} "


def takesForever(count):
    return f"{count}*"


def preloaded(variable, settings):
    # The sanitizer's own library wants to be the first one; it works behind these as well.
    return {"LD_PRELOAD": os.environ[variable], "ASAN_OPTIONS": "verify_asan_link_order=0", **settings}


def noting(path):
    """For `environment`: openings and closings of paths that end like this are noted among the recorded messages."""
    return preloaded("VADELCLIP_FAILING_CALLS", {"VADELCLIP_NOTED_PATH": path})


def failing(call, path, *outcomes, opening=0, countTo=None, program=None):
    """For `environment`.

    @param call     of the C library: see failing_calls.cpp
    @param path     how the paths end on which calls are meant
    @param outcomes of the calls in their order; those behind the last one pass
    @param opening  for reads: only those of this opening of the file, from 1
    @param countTo  file to which the number of calls is written
    @param program  only calls of this one, by its name
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
    """The same for allocations of memory."""
    settings = {"VADELCLIP_OUTCOMES": "".join(outcomes), **({"VADELCLIP_CALL_COUNT": countTo} if countTo else {})}
    return preloaded("VADELCLIP_FAILING_MEMORY", settings)


def endedEarly(run):
    """Whether the process did not get to its closing message."""
    return run.status < 0 or endedAbnormally(run.status) or crashed(run.status)


class FaultTest(AcceptanceTest):
    """A job is a dict from file name to (content, kept lines): see `giveFaultJob`."""

    def giveFaultJob(self, job, **settings):
        self.giveJob({name: content for name, (content, _) in job.items()}, **settings)
        # What a file's output holds at the most: its header stands there during the pass even if nothing is kept.
        self.complete = {name: content.splitlines()[0] + b"\n" + kept for name, (content, kept) in job.items()}
        self.kept = sum(kept.count(b"\n") for _, kept in job.values())

    def clipPiped(self, *options, **settings):
        return self.clip("-pipe", *(options or ["-lang=en"]), tool=TOOL, **settings)

    def countOfCalls(self, makeEnvironment, *options):
        """How many calls an undisturbed run makes."""
        path = os.path.join(self.aside, "calls")
        run = self.clipPiped(*options, environment=makeEnvironment(path))
        self.assertEqual(self.check(run), "finished", run)
        with open(path, encoding="ascii") as file:
            return int(file.read())

    def clearOutput(self):
        """For the next run on the same inputs."""
        for path in sorted(self.outputs(), reverse=True):
            (os.rmdir if os.path.isdir(self.path(path)) else os.remove)(self.path(path))

    def outputs(self):
        found = ["base/out"] if os.path.lexists(self.path("base/out")) else []
        return found + [f"base/out/{name}" for name in (os.listdir(self.path("base/out")) if found else [])]

    # Checks

    def check(self, run, *, wholeLines=True, silent=False, piped=True):
        """Checks what holds after every run.

        @param wholeLines  whether outputs have to end with a line
        @param silent      whether outputs and the count may lack what could not be opened, read or written
        @param piped       whether the run was started with "-pipe"
        @return "finished", "failed", or "ended" for a process that did not get to its closing message
        """
        self.checkInputs(run)
        outputs = self.checkOutputs(run, wholeLines)
        if COUNT_FILE in outputs and silent:
            self.checkPassesOver(run, outputs[COUNT_FILE], piped)
        elif COUNT_FILE in outputs:
            self.checkComplete(outputs)
        return self.checkEnd(run, outputs, silent, piped)

    def checkPassesOver(self, run, count, piped):
        """A count file of a run whose outputs may lack something, so that they do not tell whether its passes are over."""
        self.assertRegex(count, rb"\A(-?[0-9]+\n)?\Z")
        if piped:
            # What is told between the last pass and the opening of the count file, and at no other place.
            self.assertIn(jsonProgress(100.0)[0], run.messages)

    def checkComplete(self, outputs):
        """What stands beside a count file where nothing may be missing."""
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
        """Every error on the console was sent, and no other one. A process may end abnormally between the two.

        @return the types of all messages
        """
        messages = [json.loads(line) for line in run.messages]
        sent = [message["text"] for message in messages if message["type"] == "error"]
        shown = run.consoleLines()
        self.assertEqual(sent, shown[:len(sent)] if endedEarly(run) else shown)
        percents = [message["percent"] for message in messages if message["type"] == "progress"]
        self.assertEqual(percents, sorted(percents))
        return [message["type"] for message in messages]
