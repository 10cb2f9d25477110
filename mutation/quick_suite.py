"""The tests that a mutant has to get past, fastest first, on a copy of the tree."""

import os
import resource
import shutil
import subprocess

# Units in processes of their own, then the executable from outside. What takes long, needs a special build or tests
# other parts of the project is left out.
UNIT_PROGRAMS = ("unit_tests", "memory_tests")
EXECUTABLES = ("Vadelclip", "Vadelclip_recording")
LEFT_OUT = ("acceptance.(watch|large_input|external_processmessage|killed_runs|hostile|standard_descriptors|"
            "faults_memory|installation|manual_pages)")
MEMORY_LIMIT = 6 << 30  # bytes of address space: a mutant may well ask for all there is


class QuickSuite:
    """A copy of the tree in `directory`, built once; then one mutant after the other is put into it and taken out."""

    def __init__(self, root, directory):
        self.tree = directory / "tree"
        self.build = directory / "build"
        directory.mkdir(parents=True, exist_ok=True)
        copySources(root, self.tree)
        subprocess.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O0"], check=True, stdout=subprocess.DEVNULL)
        if not self.builds():
            raise SystemExit(f"the sources in {self.tree} do not build")
        if killer := self.killer():
            raise SystemExit(f"the suite does not pass on the unchanged sources: {killer}")

    def outcomeOf(self, mutant):
        """("killed" | "survived" | "invalid", the test that noticed)."""
        source = self.tree / mutant.path
        original = source.read_text()
        lines = original.split("\n")
        lines[mutant.line - 1] = mutant.after
        source.write_text("\n".join(lines))
        try:
            if not self.builds(UNIT_PROGRAMS):
                return "invalid", ""
            killer = self.killer()
            return ("killed", killer) if killer else ("survived", "")
        finally:
            source.write_text(original)

    def builds(self, targets=UNIT_PROGRAMS + EXECUTABLES + ("catalogue_de", "failing_calls",
                                                           "failing_memory")):
        return subprocess.run(["cmake", "--build", self.build, "-j1", "--target", *targets],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def killer(self):
        """The name of the first test that fails, "" where all pass."""
        for program in UNIT_PROGRAMS:
            if not self.passes([self.build / "tests" / program, "--gtest_fail_fast", "--gtest_brief=1"], 120):
                return program
        self.builds(EXECUTABLES)
        # A second try, so that a busy machine kills no mutant.
        if not self.passes(["ctest", "--test-dir", self.build, "--stop-on-failure", "--repeat", "until-pass:2",
                            "-R", "^acceptance|message_ids", "-E", LEFT_OUT, "--timeout", "60"], 600):
            return "acceptance"
        return ""

    def passes(self, command, seconds):
        # In a directory of its own: units write files where they are.
        scratch = self.build / "scratch"
        shutil.rmtree(scratch, ignore_errors=True)
        scratch.mkdir()
        try:
            return subprocess.run(command, cwd=scratch, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  preexec_fn=limitMemory, timeout=seconds).returncode == 0
        except subprocess.TimeoutExpired:
            return False


def copySources(root, tree):
    """Makes `tree` the same as the working tree at `root`; what is the same already keeps its time stamp."""
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root, check=True,
                           capture_output=True, text=True).stdout.split("\0")
    wanted = {name for name in names if name and (root / name).is_file()}
    for path in [path for path in tree.rglob("*") if path.is_file() and str(path.relative_to(tree)) not in wanted]:
        path.unlink()
    for name in wanted:
        source, copy = root / name, tree / name
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


def limitMemory():
    os.setpgid(0, 0)
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))
