"""Stands in gcov's place for gcovr: leaves out the branches of blocks that never ran and that only an exception leads to.

On the line of any statement the compiler makes such blocks, which release what has been made when a call throws. gcov marks
them, gcovr does not read the mark. Nothing of ours is lost: a handler has lines of its own, which show that it never ran.

Of the many files that a source includes only those of the project are reported, which is most of the time that gcovr takes.
"""
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OPTIONS = ["--all-blocks", "--relative-only", "--source-prefix", ROOT]
BLOCK = re.compile(r" *(\S+): *\d+-block +\d+$")
EXCEPTIONAL = "$$$$$"
SOURCE = re.compile(r"( *-: *0:Source:)(.*)$")


def withoutCleanup(lines):
    """The lines of a report by blocks, without the marks. The branches of a block stand behind its mark."""
    exceptional = False
    for line in lines:
        mark = BLOCK.match(line)
        if mark:
            exceptional = mark[1] == EXCEPTIONAL
            continue
        ofBlock = line.startswith(("branch ", "call ", "unconditional "))
        exceptional = exceptional and ofBlock
        if not (exceptional and "never executed" in line):
            yield line


def withWholeName(line):
    """gcov takes the prefix off the name of the source, and gcovr would not find it."""
    name = SOURCE.match(line)
    return line if name is None or name[2].startswith(".") else name[1] + os.path.join(ROOT, name[2])


def rewrite(name):
    with open(name, encoding="utf-8", errors="surrogateescape") as file:
        first, *lines = file.read().split("\n")
    with open(name, "w", encoding="utf-8", errors="surrogateescape") as file:
        file.write("\n".join([withWholeName(first), *withoutCleanup(lines)]))


def main():
    words = sys.argv[1:]
    asksAboutGcov = any(word in ("--help", "--help-hidden", "--version") for word in words)
    gcov = subprocess.run(["gcov", *([] if asksAboutGcov else OPTIONS), *words], stdout=subprocess.PIPE,
                          encoding="utf-8", check=False)
    sys.stdout.write(gcov.stdout)
    for name in re.findall(r"^Creating '(.+)'$", gcov.stdout, re.MULTILINE):
        rewrite(name)
    sys.exit(gcov.returncode)


if __name__ == "__main__":
    main()
