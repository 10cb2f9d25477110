"""Memory that is refused: at each single allocation of a run, from each one on, and under limits of every size."""
import errno
import resource
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from acceptance import SANITIZED, boundary
from fault_checks import PASS, FaultTest, fails, failsForever, failingMemory

LONG = b"3;3;" + b"k" * 3000 + b"\n"
JOB = {"a.xyz": (b"x;y;z\n1;1;5\n20;1;5\n" + LONG + b"4;4;5\n", b"1;1;5\n" + LONG + b"4;4;5\n"),
       "b.csv": (b"X,Y,Z\n20,1,5\n", b""),
       "c.txt": (b"x y z g\r\n5 5 1 1\r\n6 6 2 2\r\n", b"5 5 1 1\n6 6 2 2\n")}
NOT_FOUND = b"Boundary file area.xml not found\nBoundary file area.xml does not exist\n"
ENDED = b"terminate called after throwing an instance of "


@unittest.skipIf(SANITIZED, "sanitizers bring an allocator of their own")
class RefusedAllocations(FaultTest):
    def runsOf(self, *options, refusal, stride=1):
        """Runs in which the refusal begins at one allocation after the other, each with what `check` says of it."""
        self.giveFaultJob(JOB)
        count = self.countOfCalls(lambda path: failingMemory(countTo=path), *options)
        runs = []
        for number in range(0, count, stride):
            self.clearOutput()
            with self.subTest(allocation=number):
                run = self.clipPiped(*options, environment=failingMemory(PASS * number, refusal))
                runs.append((run, self.check(run, silent=True)))
        self.assertEqual(len(runs), len(range(0, count, stride)))
        self.assertGreater(len(runs), 100)
        return runs

    def test_refused_once_it_ends_the_run_in_order_or_is_a_file_that_does_not_open(self):
        runs = self.runsOf("-lang=en", refusal=fails(errno.ENOMEM))
        for run, outcome in runs:
            self.assertIn(outcome, ("failed", "finished"), run)
            self.expectDefined(run, outcome)
        self.assertGreater(len([run for run, outcome in runs if outcome == "failed"]), 100)

    def expectDefined(self, run, outcome):
        if outcome == "failed":
            self.assertTrue(run.console in (b"std::bad_alloc\n", NOT_FOUND) or run.console.startswith(
                b"boost::filesystem::directory_iterator::construct: "), run)
            return
        # Opening a file takes memory too: without it the file is one that cannot be opened.
        self.assertIn(run.console, (b"", b"\n"))
        for name, content in self.finished().items():
            self.assertIn(run.tree.get(f"base/out/{name}", b""), (b"", content))

    def test_refused_once_during_the_set_up_of_catalogues_it_may_end_the_process_with_nothing_done(self):
        for run, outcome in self.runsOf("-lang=de", refusal=fails(errno.ENOMEM), stride=7):
            if outcome == "ended":
                self.assertTrue(run.errors.startswith(ENDED), run)
                self.assertEqual((run.status, run.console, run.messages), (-6, b"", []))
                self.assertNotIn("base/out", run.tree)

    def test_refused_for_good_it_leaves_whole_lines_and_no_word_of_success(self):
        # Reporting takes memory as well: what is thrown while an error is reported ends the process.
        for run, outcome in self.runsOf("-lang=en", refusal=failsForever(errno.ENOMEM)):
            self.assertEqual(outcome, "ended", run)
            self.assertTrue(run.errors.startswith(ENDED), run)
            self.assertIn(run.console, (b"", b"std::bad_alloc\n", b"\nstd::bad_alloc\n"))


def addressSpace(limit):
    return lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit))


@unittest.skipIf(SANITIZED, "sanitizers reserve more address space than any limit leaves")
class LimitedMemory(FaultTest):
    """A boundary and lines that take memory, under limits that begin where the process can just be started."""

    STEP = 32 << 10

    def setUp(self):
        super().setUp()
        jagged = [(10 + index % 2, index / 500) for index in range(5_000)]
        kept = b"1;1;" + b"k" * 1_000_000 + b"\n"
        self.giveFaultJob({"a.xyz": (b"x;y;z\n2;2;5\n" + kept + b"20;1;5\n3;3;5\n", b"2;2;5\n" + kept + b"3;3;5\n")},
                          area=boundary([(0, 0), *jagged, (0, 10)]))

    def lowestLimit(self):
        """The least at which the tool gets as far as its usage."""
        tooLow, enough = 1 << 20, 200 << 20
        while enough - tooLow > self.STEP:
            limit = (tooLow + enough) // 2
            run = self.start("-lang=en", beforeStart=addressSpace(limit))
            tooLow, enough = (tooLow, limit) if (run.status, run.errors) == (1, b"") else (limit, enough)
        return enough

    def test_it_ends_the_run_in_order_wherever_the_limit_falls(self):
        seen = []
        # Throwing an error takes memory too, in the language's own library: where that is refused, the process ends.
        limit = self.lowestLimit() + 4 * self.STEP
        while seen[-3:] != ["finished"] * 3:
            with self.subTest(limit=limit):
                run = self.clipPiped(beforeStart=addressSpace(limit))
                seen.append(self.check(run))
                self.assertIn(seen[-1], ("failed", "finished"), run)
                if seen[-1] == "failed":
                    self.assertIn(run.console, (b"std::bad_alloc\n", NOT_FOUND))
                    seen[-1] = f"{run.console} {sorted(run.tree)}"
                self.clearOutput()
            limit += self.STEP
            self.assertLess(limit, 300 << 20)
        self.assertGreater(len(seen), 30)
        self.assertGreater(len(set(seen)), 3, seen)


if __name__ == "__main__":
    unittest.main()
