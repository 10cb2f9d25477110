"""A copy of the tree in which all mutants are compiled in, each behind a switch.

Mutants that cannot stand behind a switch (in a template argument, in a constant that the compiler needs) and those that
are no C++ at all are left out; they are put into the copy one at a time.
"""

import hashlib
import json
import os
import re
import shutil
import subprocess
from dataclasses import astuple
from pathlib import Path

import switches
from switches import Place, SwitchedSource

HERE = os.path.dirname(os.path.abspath(__file__))
DEFINITIONS = ["-DBOOST_FILESYSTEM_VERSION=3", "-DBOOST_LOCALE_HIDE_AUTO_PTR"]
# Small differential tests: what a mutant changes shows early or never.
FLAGS = f"-w -Wno-narrowing -DVADELCLIP_SMALL_WORKLOAD -include {HERE}/selected_mutant.hpp"
TARGETS = ("Vadelclip", "unit_tests", "memory_tests", "Vadelclip_recording", "catalogue_de", "failing_calls",
           "failing_memory")
ERROR = re.compile(r"^([^\s:][^:]*):(\d+):\d+: (?:fatal )?(?:error|note):", re.MULTILINE)


class SwitchedBuild:
    """`numbers` has each mutant's number and that of its place (the first one there), `alone` the mutants without."""

    def __init__(self, root, directory, mutants):
        self.tree = directory / "tree"
        self.build = directory / "build"
        directory.mkdir(parents=True, exist_ok=True)
        paths = list(dict.fromkeys(mutant.path for mutant in mutants))
        copySources(root, self.tree, left=set(paths))
        self.originals = {path: (root / path).read_text() for path in paths}
        self.sources = {path: SwitchedSource(text) for path, text in self.originals.items()}
        self.first, self.numbers, self.pieces = {}, {}, {}
        self.places(root, mutants, directory / "places.json")
        self.alone = [mutant for mutant in mutants if mutant not in self.numbers]
        self.configure()
        if not self.builds():
            raise SystemExit(f"the sources in {self.tree} do not build")

    def places(self, root, mutants, cache):
        """Finds a place for every mutant, or takes those of an earlier build of the same sources."""
        own = {path: [mutant for mutant in mutants if mutant.path == path] for path in self.sources}
        number = 0
        for path in self.sources:
            self.first[path] = number
            number += len(own[path])
        texts = [*self.originals.values(), Path(switches.__file__).read_text()]
        state = hashlib.sha256("".join(texts).encode()).hexdigest()
        known = json.loads(cache.read_text()) if cache.exists() else {}
        if known.get("state") == state:
            for path, source in self.sources.items():
                source.places = {mutant: [Place(*place) for place in known["places"][mutant.key]]
                                 for mutant in own[path]}
                self.write(path)
            return
        arguments = ["-x", "c++", "-std=c++20", f"-I{root}/src", f"-I{root}/src/processmessage", *DEFINITIONS]
        for path, source in self.sources.items():
            source.findPlaces(root / path, own[path], arguments)
            self.write(path)
        for path in sorted(self.sources, key=lambda path: (not path.endswith(".hpp"), path)):
            self.letCompile(path)
        places = {mutant.key: [astuple(place) for place in found[:1]]
                  for source in self.sources.values() for mutant, found in source.places.items()}
        cache.write_text(json.dumps({"state": state, "places": places}))

    def write(self, path):
        for mutant in self.sources[path].places:
            self.numbers.pop(mutant, None)
        text, numbers, self.pieces[path] = self.sources[path].write(self.first[path])
        self.numbers.update(numbers)
        writeIfDifferent(self.tree / path, text)

    def letCompile(self, path):
        """Moves the mutants that the compiler does not take to their next places until it takes the source."""
        while errors := self.errorsIn(path):
            refused = self.refusedBy(errors)
            if not refused:
                raise SystemExit(f"no mutant explains this:\n{errors[:2000]}")
            for source, mutants in refused.items():
                self.sources[source].refuse(mutants)
                self.write(source)

    def errorsIn(self, path):
        command = ["c++", "-std=c++20", "-fsyntax-only", "-fmax-errors=0", "-x", "c++", *FLAGS.split(), *DEFINITIONS,
                   f"-I{self.tree}/src", f"-I{self.tree}/src/processmessage", str(self.tree / path)]
        return subprocess.run(command, capture_output=True, text=True, check=False).stderr

    def refusedBy(self, errors):
        refused = {}
        for file, line in ERROR.findall(errors):
            path = os.path.relpath(file, self.tree)
            around = [piece for piece in self.pieces.get(path, ()) if piece[0] <= int(line) <= piece[1]]
            if around:
                smallest = min(around, key=lambda piece: piece[1] - piece[0])
                refused.setdefault(path, set()).update(smallest[2])
        return refused

    def configure(self):
        switch = self.build / "selected_mutant.o"
        self.build.mkdir(exist_ok=True)
        subprocess.run(["c++", "-std=c++20", "-O1", "-c", f"{HERE}/selected_mutant.cpp", "-o", switch], check=True)
        subprocess.run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS_DEBUG=-O1", f"-DCMAKE_CXX_FLAGS={FLAGS}",
                        f"-DCMAKE_EXE_LINKER_FLAGS={switch}"], check=True, stdout=subprocess.DEVNULL)

    def numbersIn(self, path):
        """Of all mutants of a source."""
        return range(self.first[path], self.first[path] + len(self.sources[path].places))

    def builds(self, targets=TARGETS):
        return subprocess.run(["cmake", "--build", self.build, "-j2", "--target", *targets],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def putIn(self, mutant):
        """One mutant alone: its source has no switches meanwhile. False if it does not compile."""
        lines = self.originals[mutant.path].split("\n")
        lines[mutant.line - 1] = mutant.after
        (self.tree / mutant.path).write_text("\n".join(lines))
        return not self.errorsIn(mutant.path) and self.builds(TARGETS[:1])

    def testsCompile(self, mutant):
        """With the mutant that is in. Its own tests come first: they may hold the compiler to types and constants."""
        subject = mutant.path.removeprefix("src/").rpartition(".")[0]
        own = [f"tests/CMakeFiles/unit_tests.dir/{path.relative_to(self.tree / 'tests')}.o"
               for path in (self.tree / "tests").glob(f"{subject}*_test.cpp") if "memory" not in path.name]
        return (not own or self.builds(own)) and self.builds()

    def takeOut(self, mutant):
        self.write(mutant.path)


def copySources(root, tree, left):
    """Makes `tree` the same as the working tree at `root`, but for the files in `left`; what is the same already keeps
    its time stamp."""
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root,
                           check=True, capture_output=True, text=True).stdout.split("\0")
    wanted = {name for name in names if name and (root / name).is_file()}
    for path in [path for path in tree.rglob("*") if path.is_file() and str(path.relative_to(tree)) not in wanted]:
        path.unlink()
    for name in wanted - left:
        source, copy = root / name, tree / name
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)


def writeIfDifferent(path, text):
    if not path.exists() or path.read_text() != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
