"""Runs Vadelshard from outside and compares its output directory with that of one run of the tool.

VADELCLIP_SHARD names the executable; the tool and its catalogues are next to it.
"""
import os
import random
import shutil
import signal
import subprocess

from acceptance import SQUARE, TIME_LIMIT, TOOL, AcceptanceTest, readTree

SHARD = os.environ["VADELCLIP_SHARD"]
HEADER = b"x;y;z\n"
INSIDE = b"1;1;5\n"
OUTSIDE = b"30;1;5\n"
WORK = "base/out.shards"

# A shell ignores some of these in its background jobs, and processes started from here would inherit that.
for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
    if signal.getsignal(number) == signal.SIG_IGN:
        signal.signal(number, signal.SIG_DFL)


class Finished:
    def __init__(self, process, output, errors):
        self.status = process.returncode
        self.output = os.fsdecode(output)
        self.errors = os.fsdecode(errors)

    def __repr__(self):
        return f"status {self.status}, output {self.output!r}, errors {self.errors!r}"


class ShardTest(AcceptanceTest):
    def setUp(self):
        super().setUp()
        self.scratch = os.path.join(self.aside, "scratch")
        os.mkdir(self.scratch)

    # Running

    def begin(self, *arguments, environment=None, program=SHARD, **settings):
        variables = {name: value for name, value in os.environ.items() if name not in ("LANG", "LANGUAGE", "SLURM_TMPDIR")
                     and not name.startswith("LC_")}
        variables.update({"TMPDIR": self.scratch, **(environment or {})})
        process = subprocess.Popen([program, *arguments], cwd=self.directory, env=variables, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, **settings)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        process.kill()
        process.wait()
        process.stdout.close()
        process.stderr.close()

    def finish(self, process):
        output, errors = process.communicate(timeout=TIME_LIMIT)
        return Finished(process, output, errors)

    def shard(self, *arguments, **settings):
        return self.finish(self.begin(*map(str, arguments), **settings))

    def plan(self, *options, **settings):
        return self.shard("plan", "base/data", "out", "area.xml", "--lang=en", *options, **settings)

    def mustDo(self, *arguments, **settings):
        """Runs a command that must finish, and returns what it prints."""
        done = self.shard(*arguments, **settings)
        self.assertEqual((0, ""), (done.status, done.errors), done)
        return done.output

    def planned(self, *options, **settings):
        """Plans, and returns the number of shards."""
        done = self.plan(*options, **settings)
        self.assertEqual(0, done.status, done)
        return int(done.output)

    def clipAll(self, count, *options, order=None, **settings):
        for index in order or range(count):
            self.mustDo("clip", WORK, index, *options, **settings)

    def shards(self, *planOptions, clipOptions=(), order=None):
        """Makes base/out by shards. Returns what the merge prints."""
        count = self.planned(*planOptions)
        indexes = list(range(count))
        random.Random(count).shuffle(indexes)
        self.clipAll(count, *clipOptions, order=order or indexes)
        return self.mustDo("merge", WORK)

    # Comparing

    def oneRun(self):
        """Returns status, console and files of one run, and removes its output directory."""
        run = subprocess.run([TOOL, "base/data", "out", "area.xml", "-lang=en"], cwd=self.directory,
                             stdout=subprocess.PIPE, timeout=TIME_LIMIT, check=False)
        result = (run.returncode, os.fsdecode(run.stdout), self.outputTree())
        shutil.rmtree(self.path("base/out"), ignore_errors=True)
        return result

    def outputTree(self):
        return readTree(self.path("base/out")) if os.path.isdir(self.path("base/out")) else None

    def expectNothingLeft(self):
        self.assertFalse(os.path.lexists(self.path(WORK)), "the work directory is left")
        self.assertEqual([], os.listdir(self.scratch), "scratch files are left")

    def expectEqual(self, *planOptions, **settings):
        """Compares the output of shards with that of one run, and returns it."""
        status, console, expected = self.oneRun()
        self.assertEqual((0, ""), (status, console))
        self.shards(*planOptions, **settings)
        self.assertEqual(expected, self.outputTree())
        self.expectNothingLeft()
        shutil.rmtree(self.path("base/out"))
        return expected

    def expectFailure(self, sentence, *arguments, **settings):
        done = self.shard(*arguments, **settings)
        self.assertEqual((1, f"Vadelshard: {sentence}\n"), (done.status, done.errors.replace(self.directory + "/", "")), done)


def manyLines(count, kept=lambda number: number % 3 == 0):
    """Returns node lines of different lengths; those that `kept` accepts are in SQUARE."""
    return b"".join(b"%d;%d.5;%d\n" % (5 if kept(number) else 50, number % 10, number) for number in range(count))


__all__ = ["HEADER", "INSIDE", "OUTSIDE", "SHARD", "SQUARE", "WORK", "Finished", "ShardTest", "manyLines"]
