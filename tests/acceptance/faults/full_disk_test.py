"""A disk that is really full: a small file system of the test's own, mounted where the run writes.

The mount needs the right to mount, as root has it, or unprivileged user namespaces. It is seen by this process and the
tools it starts alone, and is gone with it. Where neither is allowed the tests are skipped and say so; the failing calls
of faults_disk_test.py do without.
"""
import ctypes
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, TOOL, AcceptanceTest, linkTo, withParents
from expected_messages import jsonError, jsonFailed, jsonFinish, jsonProgress, jsonState

HEADER = b"x;y;z\n"
NODES = 20_000
CLONE_NEWNS, CLONE_NEWUSER = 0x20000, 0x10000000
MS_REC, MS_PRIVATE = 0x4000, 0x40000


libc = ctypes.CDLL(None, use_errno=True)


def mayMount():
    """Takes this process into mounts of its own.

    @return the reason why not, or an empty text
    """
    user, group = os.geteuid(), os.getegid()
    if libc.unshare(CLONE_NEWNS if user == 0 else CLONE_NEWNS | CLONE_NEWUSER) != 0:
        return os.strerror(ctypes.get_errno())
    if user != 0:
        Path("/proc/self/setgroups").write_text("deny", encoding="ascii")
        Path("/proc/self/uid_map").write_text(f"0 {user} 1", encoding="ascii")
        Path("/proc/self/gid_map").write_text(f"0 {group} 1", encoding="ascii")
    return "" if libc.mount(None, b"/", None, MS_REC | MS_PRIVATE, None) == 0 else os.strerror(ctypes.get_errno())


REFUSAL = mayMount()


@unittest.skipIf(REFUSAL, f"no right to mount a small file system: {REFUSAL}")
class FullDisk(AcceptanceTest):
    """Only base is on the small disk. The inputs lie elsewhere: base/data is a link."""

    def giveDisk(self, options):
        self.giveJob({})
        os.rmdir(self.path("base/data"))
        self.assertEqual(libc.mount(b"tmpfs", os.fsencode(self.path("base")), b"tmpfs", 0, options.encode()), 0,
                         os.strerror(ctypes.get_errno()))
        self.addCleanup(lambda: libc.umount2(os.fsencode(self.path("base")), 2))
        del self.given["base/data"]
        self.give({"base/data": linkTo("../nodes")})

    def clipPiped(self):
        return self.clip("-pipe", "-lang=en", tool=TOOL)

    def expectFull(self, run, lines):
        """The output is a beginning of the right one, cut where the disk was full, and the run finished."""
        written = run.tree["base/out/a.xyz"]
        self.assertTrue((HEADER + lines * NODES).startswith(written))
        # To the last byte, in the middle of a line: the system takes of a line what finds room.
        self.assertEqual((len(written), written.endswith(b"\n")), (64 << 10, False))
        self.assertEqual((run.status, run.console, run.errors), (0, b"", b""))
        self.assertEqual(run.tree["base/out/total_node_count.txt"], b"")
        self.assertEqual((run.messages[0], run.messages[-2:]), (jsonState(), [*jsonProgress(100.0), jsonFinish()]))
        given = withParents(self.given)
        self.assertTrue({path: run.tree.get(path) for path in given} == given, "an input is not what it was")
        self.assertEqual(run.tree.keys() - given.keys(),
                         {"base/out", "base/out/a.xyz", "base/out/total_node_count.txt"})

    def test_the_output_fills_the_disk_and_the_run_goes_its_way(self):
        for lines in (b"1;1;5\n", b"2.25;3;1\n"):
            with self.subTest(lines=lines):
                self.startOver()
                self.give({"nodes/a.xyz": HEADER + lines * NODES})
                self.giveDisk("size=64k")
                run = self.clipPiped()
                libc.umount2(os.fsencode(self.path("base")), 2)
                self.expectFull(run, lines)

    def test_a_full_disk_in_front_of_the_run_has_no_room_for_the_directory(self):
        self.give({"nodes/a.xyz": HEADER + b"1;1;5\n"})
        self.giveDisk("nr_inodes=2")  # its root and the link
        run = self.clipPiped()
        text, = run.consoleLines()
        self.assertTrue(text.startswith("boost::filesystem::create_directory: No space left on device"), text)
        self.expect(run, status=1, console=[text], messages=[jsonError(text), jsonFailed()])

    def test_where_no_file_finds_room_the_run_goes_its_way_without_any(self):
        self.give({"nodes/a.xyz": HEADER + b"1;1;5\n" * 4})
        self.giveDisk("nr_inodes=3")  # and the output directory
        messages = [jsonState(), *jsonProgress(0.0, 25.0, 50.0, 75.0, 100.0), jsonFinish()]
        self.expect(self.clipPiped(), status=0, created={"base/out": DIRECTORY}, messages=messages)


if __name__ == "__main__":
    unittest.main()
