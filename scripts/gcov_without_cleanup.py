"""Stands in gcov's place for gcovr: leaves out the branches of blocks that never ran and that only an exception leads to.

On the line of any statement the compiler makes such blocks, which release what has been made when a call throws. gcov marks
them, gcovr does not read the mark. Nothing of ours is lost: a handler has lines of its own, which show that it never ran.

Which branch belongs to which block gcovr does not keep either. So whether a call returns or throws is put in order here: the
return first, the throw right behind it, and no throw without a return of the same block.

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
BRANCH = re.compile(r"(branch +\d+)(.*)$")
KIND = re.compile(r"\(fallthrough\)|\(throw\)|$")
SOURCE = re.compile(r"( *-: *0:Source:)(.*)$")


def withPairs(block):
    """The lines of one block, with returns and throws in order. Each place keeps its number, by which gcovr sorts."""
    lines = list(block)
    places = [place for place, line in enumerate(lines) if line.startswith("branch ")]
    alone = set()
    while places:
        place = places.pop(0)
        kinds = [KIND.search(lines[each])[0] for each in (place, *places[:1])]
        if kinds == ["(throw)", "(fallthrough)"]:
            first, second = (BRANCH.match(lines[each]) for each in (place, places[0]))
            lines[place], lines[places[0]] = first[1] + second[2], second[1] + first[2]
        if sorted(kinds) == ["(fallthrough)", "(throw)"]:
            places.pop(0)
        elif kinds[0] == "(throw)":
            alone.add(place)
    return [line for place, line in enumerate(lines) if place not in alone]


def withoutCleanup(lines):
    """The lines of a report by blocks, without the marks. The branches of a block stand behind its mark."""
    exceptional, block = False, []
    for line in lines:
        if line.startswith(("branch ", "call ", "unconditional ")):
            if not (exceptional and "never executed" in line):
                block.append(line)
            continue
        yield from withPairs(block)
        block = []
        mark = BLOCK.match(line)
        exceptional = mark is not None and mark[1] == EXCEPTIONAL
        if not mark:
            yield line
    yield from withPairs(block)


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
