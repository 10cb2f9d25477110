"""Calls of the C library that fail in Vadelwatch: it reports or omits what it cannot find out, and the run continues."""
import errno
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from fault_checks import PASS, failing, failingMemory, fails, failsForever
from watching import HEADER, JOB, SANITIZED, WATCH, WatchTest, watchEnvironment

KEPT = b"1;1;5\n" * 2
MISSING = "Vadelwatch: nodes in the output files: 0, in total_node_count.txt: 2, missing: 2."
UNREADABLE = "  a.xyz: cannot be read"


def failingHere(call, path, *outcomes, **settings):
    """Makes calls fail in Vadelwatch and not in the tool."""
    return failing(call, path, *outcomes, program="Vadelwatch", **settings)


class FaultTest(WatchTest):
    def setUp(self):
        super().setUp()
        self.giveJob({"a.xyz": HEADER + KEPT + b"30;3;5\n"})

    def again(self):
        for name in ("total_node_count.txt", "a.xyz"):
            os.remove(self.path(f"base/out/{name}"))
        os.rmdir(self.path("base/out"))

    def summary(self, environment, *options):
        """Returns the JSON of a run. Expects that it finishes without a message."""
        watched = self.run_(*JOB, "--quiet", "--json", *options, environment=environment)
        self.assertEqual((0, []), (watched.status, watched.errorLines()))
        self.assertEqual(b"2\n", self.content("base/out/total_node_count.txt"))
        return json.loads(watched.output)


class Surroundings(FaultTest):
    def test_tool_is_not_found_without_the_own_path(self):
        watched = self.run_(*JOB, environment=failingHere("readlink", "/proc/self/exe", failsForever(errno.ENOENT)))
        self.expect(watched, status=4, errors=[
            "Vadelwatch: cannot find Vadelclip: /proc/self/exe cannot be read"])
        self.assertFalse(os.path.exists(self.path("base/out")))

    def test_tool_without_its_own_path_is_english(self):
        settings = failing("readlink", "/proc/self/exe", failsForever(errno.ENOENT), program="Vadelclip")
        watched = self.run_(*JOB[:3], environment=settings)
        self.assertEqual((0, "Finished clipping elevation data with model boundaries"),
                         (watched.status, watched.outputLines()[0]))

    def test_unknown_free_space_is_not_reported_as_full(self):
        self.giveJob({"total_node_count.txt": HEADER + KEPT})
        watched = self.run_(*JOB, "--quiet", environment=failingHere("statvfs", "out", failsForever()))
        self.expect(watched, status=3, errors=[
            "Vadelwatch: nodes in the output files: 2, in total_node_count.txt: 4, missing: 2.",
            "  total_node_count.txt: also the name of a node file; the count includes its nodes and has replaced its output"])


class NodeFiles(FaultTest):
    def test_interrupted_read_is_repeated(self):
        # The first read, of only the header, is the shortest one.
        for number in range(1, 8):
            with self.subTest(number=number):
                settings = failingHere("read", "data/a.xyz", PASS * number, fails(errno.EINTR))
                self.assertEqual(3, self.summary(settings, "--map", "map.png")["nodes_read"])
                self.again()

    def test_unreadable_lines_are_not_counted(self):
        for number in (1, 2):
            self.assertIsNone(self.summary(failingHere("read", "data/a.xyz", PASS * number, fails()))["nodes_read"])
            self.again()

    def test_open_file_without_a_status_is_not_read(self):
        self.assertIsNone(self.summary(failingHere("fstat", "data/a.xyz", failsForever()))["nodes_read"])

    def test_directory_that_cannot_be_listed_has_no_map(self):
        # Vadelwatch lists it for the names of the map and its world file, and for the count. Each listing is four calls:
        # three entries and the end.
        for listing, sentence in ((2, "The input directory base/data cannot be read."), (3, None)):
            with self.subTest(listing=listing):
                settings = failingHere("readdir", "base/data", PASS * (4 * listing), fails())
                watched = self.run_(*JOB, "--quiet", "--map", "map.png", environment=settings)
                self.expect(watched, status=2 if sentence else 0, errors=["Vadelwatch: " + sentence] if sentence else [])
                self.assertEqual(sentence is None, os.path.exists(self.path("map.png")))
                self.again()


class Outputs(FaultTest):
    def test_unreadable_output_is_named(self):
        for call in ("read", "fstat"):
            with self.subTest(call=call):
                watched = self.run_(*JOB, "--quiet", environment=failingHere(call, "out/a.xyz", failsForever()))
                self.expect(watched, status=3, errors=[MISSING, UNREADABLE])
                self.again()

    def test_unreadable_output_fails_the_check(self):
        self.standIn("""
finish(count=0)
open('base/out/a.xyz', 'w').write('x;y;z\\n1;1;1\\n')
""")
        watched = self.run_(*JOB, "--quiet", environment=failingHere("read", "out/a.xyz", failsForever()))
        self.expect(watched, status=3, errors=[
            "Vadelwatch: nodes in the output files: 0, as many as total_node_count.txt says, but not every file can be "
            "counted.", UNREADABLE])

    def test_unreadable_output_is_named_in_german(self):
        settings = failingHere("read", "out/a.xyz", failsForever())
        watched = self.run_(*JOB[:3], "--quiet", environment=settings)
        self.assertEqual((3, "  a.xyz: nicht lesbar"), (watched.status, watched.errorLines()[1]))


class Pipes(FaultTest):
    def test_interrupted_reads_lose_nothing(self):
        self.assertEqual(1, self.summary(failingHere("read", "]", fails(errno.EINTR) * 20))["files_read"])

    def test_end_of_the_tool_counts_if_its_pipes_are_unreadable(self):
        self.assertEqual(0, self.summary(failingHere("read", "]", failsForever()))["files_read"])

    def test_rest_of_a_long_pipe_is_shown(self):
        # More than one read of the console, from a tool that has already ended.
        self.standIn("""
import fcntl
fcntl.fcntl(1, 1031, 1 << 20) # F_SETPIPE_SZ
finish(count=0)
os.write(1, b''.join(b'line %d\\n' % i for i in range(80000)))
os.kill(os.getpid(), signal.SIGKILL)
""")
        watched = self.run_(*JOB, "--quiet")
        self.assertEqual([f"line {i}" for i in range(80000)], watched.errorLines()[:-1])
        self.assertEqual(4, watched.status)


class OwnOutput(FaultTest):
    def intoAFile(self, *outcomes):
        """Runs with the summary in a file on which writes have these outcomes."""
        with open(self.path("summary"), "wb") as file:
            return subprocess.run([WATCH, *JOB, "--json", "--quiet"], cwd=self.directory, stdout=file,
                                  stderr=subprocess.PIPE, check=False,
                                  env=watchEnvironment(failingHere("write", "/summary", *outcomes)))

    def test_interrupted_write_is_repeated(self):
        self.summary(None, "--log", "log")
        lines = len(self.content("log").splitlines())
        self.again()
        self.summary(failingHere("write", "/log", fails(errno.EINTR) * 3), "--log", "log")
        self.assertEqual(lines, len(self.content("log").splitlines()))
        self.again()
        result = self.intoAFile(fails(errno.EINTR))
        self.assertEqual((0, 2), (result.returncode, json.loads(self.content("summary"))["nodes_kept"]))

    def test_broken_disk_is_reported(self):
        result = self.intoAFile(failsForever())
        self.assertEqual((2, b"Vadelwatch: cannot write the summary: Input/output error\n"),
                         (result.returncode, result.stderr))

    def test_reset_connection_is_no_failure(self):
        result = self.intoAFile(failsForever(errno.ECONNRESET))
        self.assertEqual((0, b""), (result.returncode, result.stderr))

    def test_vanished_reader_of_the_help_is_no_failure(self):
        reading, writing = os.pipe()
        os.close(reading)
        result = subprocess.run([WATCH, "--help"], stdout=writing, stderr=subprocess.PIPE, check=False)
        os.close(writing)
        self.assertEqual((0, b""), (result.returncode, result.stderr))


@unittest.skipIf(SANITIZED, "sanitizers replace the allocator")
class Picture(FaultTest):
    def test_refused_memory_for_the_map_is_reported(self):
        sentences = []
        for position in range(6):
            settings = {**failingMemory(PASS * position, fails(errno.ENOMEM)), "VADELCLIP_FAILING_SIZE": "1000000",
                        "VADELCLIP_FAILING_PROGRAM": "Vadelwatch"}
            watched = self.run_(*JOB, "--quiet", "--map", "map.png", environment=settings)
            self.assertEqual(2 if watched.errors else 0, watched.status)
            sentences.append(watched.errors)
            self.again()
        # The errors for the counts of the nodes and for the picture.
        self.assertEqual({"Vadelwatch: The map map.png cannot be drawn: std::bad_alloc.\n",
                          "Vadelwatch: The map map.png cannot be drawn: out of memory.\n", ""}, set(sentences))


if __name__ == "__main__":
    unittest.main()
