"""A disk that is really full: a small file system, mounted where the run writes.

The mount needs root's right to mount, or unprivileged user namespaces. Only this process and its children see it, and
it ends with them. If neither is allowed, the tests are skipped with that reason. disk_test.py simulates a full disk
without a mount.
"""
import ctypes
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import DIRECTORY, TOOL, AcceptanceTest, linkTo, withParents
from expected_messages import jsonFailedRun, jsonFinish, jsonFinishedRun, jsonProgress, jsonState

HEADER = b"x;y;z\n"
NODES = 20_000
CLONE_NEWNS, CLONE_NEWUSER = 0x20000, 0x10000000
MS_REC, MS_PRIVATE = 0x4000, 0x40000

libc = ctypes.CDLL(None, use_errno=True)


def unshareMounts():
    """Moves this process to a new mount namespace.

    @return the error text, or an empty text
    """
    user, group = os.geteuid(), os.getegid()
    if libc.unshare(CLONE_NEWNS if user == 0 else CLONE_NEWNS | CLONE_NEWUSER) != 0:
        return os.strerror(ctypes.get_errno())
    if user != 0:
        Path("/proc/self/setgroups").write_text("deny", encoding="ascii")
        Path("/proc/self/uid_map").write_text(f"0 {user} 1", encoding="ascii")
        Path("/proc/self/gid_map").write_text(f"0 {group} 1", encoding="ascii")
    return "" if libc.mount(None, b"/", None, MS_REC | MS_PRIVATE, None) == 0 else os.strerror(ctypes.get_errno())


REFUSAL = unshareMounts()


@unittest.skipIf(REFUSAL, f"no right to mount a small file system: {REFUSAL}")
class FullDisk(AcceptanceTest):
    """Only `base` is on the small disk. base/data is a link to the inputs on another one."""

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
        """Expects a finished run whose output is cut where the disk was full."""
        written = run.tree["base/out/a.xyz"]
        self.assertTrue((HEADER + lines * NODES).startswith(written))
        # The output uses the disk to the last byte and ends within a line: the system writes the part that fits.
        self.assertEqual((len(written), written.endswith(b"\n")), (64 << 10, False))
        self.assertEqual((run.status, run.console, run.errors), (0, b"", b""))
        self.assertEqual(run.tree["base/out/total_node_count.txt"], b"")
        self.assertEqual((run.messages[0], run.messages[-2:]), (jsonState(), [*jsonProgress(100.0), jsonFinish()]))
        given = withParents(self.given)
        self.assertTrue({path: run.tree.get(path) for path in given} == given, "an input is not what it was")
        self.assertEqual(run.tree.keys() - given.keys(),
                         {"base/out", "base/out/a.xyz", "base/out/total_node_count.txt"})

    def test_run_finishes_although_its_output_fills_the_disk(self):
        for lines in (b"1;1;5\n", b"2.25;3;1\n"):
            with self.subTest(lines=lines):
                self.startOver()
                self.give({"nodes/a.xyz": HEADER + lines * NODES})
                self.giveDisk("size=64k")
                run = self.clipPiped()
                libc.umount2(os.fsencode(self.path("base")), 2)
                self.expectFull(run, lines)

    def test_disk_full_before_the_run_fails_it(self):
        self.give({"nodes/a.xyz": HEADER + b"1;1;5\n"})
        self.giveDisk("nr_inodes=2")  # its root and the link
        run = self.clipPiped()
        text, = run.consoleLines()
        self.assertTrue(text.startswith("boost::filesystem::create_directory: No space left on device"), text)
        self.expect(run, status=1, console=[text], messages=jsonFailedRun(text))

    def test_run_finishes_although_no_file_fits(self):
        self.give({"nodes/a.xyz": HEADER + b"1;1;5\n" * 4})
        self.giveDisk("nr_inodes=3")  # and the output directory
        self.expect(self.clipPiped(), status=0, created={"base/out": DIRECTORY},
                    messages=jsonFinishedRun(0.0, 25.0, 50.0, 75.0, 100.0))


if __name__ == "__main__":
    unittest.main()
