"""Puts all mutants of a source into it at once, each behind a switch that is set when the program runs.

A statement becomes `if (anyMutantOf(4, 5)) { if (isMutant(4)) { one } else { other } } else { original }`, an
expression the same with `?:`. Where a mutant goes is read from clang's syntax tree: around its whole statement if that
can be, else around the largest expression that the compiler takes there. A constant that holds a mutant is no `constexpr`
any more.
"""

import re
from dataclasses import dataclass, field

from clang.cindex import CursorKind, Index

from mutants import splitComment

# Statements that may stand in a branch of their own. Expressions may as well.
JUMPS = (CursorKind.RETURN_STMT, CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT)
BODIES = (CursorKind.COMPOUND_STMT, CursorKind.IF_STMT, CursorKind.FOR_STMT, CursorKind.WHILE_STMT,
          CursorKind.CXX_FOR_RANGE_STMT, CursorKind.DO_STMT)
NO_VALUES = (CursorKind.INIT_LIST_EXPR, CursorKind.LAMBDA_EXPR)


@dataclass(frozen=True)
class Place:
    """A piece of a source that may be exchanged as a whole, and where its declaration says "constexpr"."""

    start: int
    end: int
    isStatement: bool
    constant: int = -1


@dataclass
class Region:
    """A place with the mutants that are switched there, and the regions inside it."""

    place: Place
    texts: list = field(default_factory=list)  # (mutant, the place's text with the mutant)
    inner: list = field(default_factory=list)


class SwitchedSource:
    """One source: where each of its mutants can stand, and its text with all of them."""

    def __init__(self, text):
        self.text = text
        self.lineStarts = [0] + [match.end() for match in re.finditer("\n", text)]
        self.places = {}  # of each mutant, the best first

    def findPlaces(self, path, mutants, arguments):
        # libclang counts bytes, as we do: the sources are ASCII.
        assert self.text.isascii(), path
        self.unit = Index.create().parse(str(path), args=arguments)
        self.places = {mutant: self.placesOf(mutant) for mutant in mutants}
        del self.unit  # much memory

    @property
    def switched(self):
        return [mutant for mutant, places in self.places.items() if places]

    def refuse(self, mutants):
        """The compiler did not take these where they are: to their next places."""
        for mutant in mutants:
            self.places[mutant].pop(0)

    def spanOf(self, mutant):
        """What a mutant changes: from, to, and the new text."""
        start = self.lineStarts[mutant.line - 1]
        before, after = splitComment(mutant.before)[0], splitComment(mutant.after)[0]
        if not after:
            return start + len(before) - len(before.lstrip()), start + len(before), ""
        common = next((i for i, (a, b) in enumerate(zip(before, after)) if a != b), min(len(before), len(after)))
        tail = 0
        while tail < min(len(before), len(after)) - common and before[-1 - tail] == after[-1 - tail]:
            tail += 1
        return start + common, start + len(before) - tail, after[common:len(after) - tail]

    def placesOf(self, mutant):
        start, end, _ = self.spanOf(mutant)
        path = self.nodesAround(start, end if mutant.after else end - len(";"))
        inBody = max((i for i in range(1, len(path)) if path[i - 1].kind in BODIES), default=0)
        found = []
        if path[inBody].kind in JUMPS or path[inBody].kind.is_expression():
            first, last = extentOf(path[inBody])
            semicolon = self.text.find(";", last)
            if path[inBody - 1].kind is CursorKind.COMPOUND_STMT and self.text[last:semicolon].strip() == "":
                found.append(Place(first, semicolon + 1, True))
        if not mutant.after:
            return [place for place in found if (place.start, place.end) == (start, end)]
        constant = self.constantAround(path)
        # A constructor's call in a declaration begins with the variable's name: it is no value.
        names = [node.location.offset for node in path if node.kind.is_declaration()]
        for node in path[inBody:]:
            first, last = extentOf(node)
            place = Place(first, last, False, constant)
            isValue = node.kind.is_expression() and node.kind not in NO_VALUES and first not in names
            if isValue and place not in found:
                found.append(place)
        return found

    def nodesAround(self, start, end):
        """The nodes that hold this piece of text, the outermost first."""
        path = [self.unit.cursor]
        while True:
            inside = None
            for child in path[-1].get_children():
                if child.location.file is None or child.location.file.name != self.unit.spelling:
                    continue
                first, last = extentOf(child)
                if first <= start and end <= last:
                    inside = child
                    break
            if inside is None:
                return path[1:] or [self.unit.cursor]
            path.append(inside)

    def constantAround(self, path):
        for node in path:
            if node.kind in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL):
                start, end = extentOf(node)
                return self.text.find("constexpr", start, end)
        return -1

    # Writing

    def write(self, firstNumber):
        """(text, numbers of the mutants in it, pieces).

        With each mutant's number goes the first one of its region, which is what a test notes that gets there. The pieces
        tell which lines belong to which mutants.
        """
        regions, edits = self.regions()
        writer = Writer(self, edits, firstNumber)
        writer.copy(0, len(self.text), regions)
        return "".join(writer.output), writer.numbers, writer.pieces

    def regions(self):
        found, constants = {}, {}
        for mutant in self.switched:
            place = self.places[mutant][0]
            start, end, changed = self.spanOf(mutant)
            region = found.setdefault(place, Region(place))
            region.texts.append((mutant, self.text[place.start:start] + changed + self.text[end:place.end]))
            if place.constant >= 0:
                inClass = re.search(r"\bstatic $", self.text[:place.constant])
                constants[place.constant] = "inline const" if inClass else "const"
        return nested(sorted(found.values(), key=lambda one: (one.place.start, -one.place.end))), constants


class Writer:
    def __init__(self, source, edits, number):
        self.source = source
        self.edits = edits
        self.number = number
        self.output = []
        self.line = 1
        self.numbers = {}
        self.pieces = []  # (first line, last line, mutants)

    def put(self, text):
        self.output.append(text)
        self.line += text.count("\n")

    def copy(self, start, end, regions):
        """Copies a piece of the source with the regions in it switched."""
        for region in regions:
            self.plain(start, region.place.start)
            self.switch(region)
            start = region.place.end
        self.plain(start, end)

    def plain(self, start, end):
        for position in sorted(self.edits):
            if start <= position < end:
                self.put(self.source.text[start:position] + self.edits[position])
                start = position + len("constexpr")
        self.put(self.source.text[start:end])

    def switch(self, region):
        statement = region.place.isStatement
        begin = self.line + 1
        numbers = list(range(self.number, self.number + len(region.texts)))
        self.number = numbers[-1] + 1
        self.numbers.update({mutant: (number, numbers[0]) for number, (mutant, _) in zip(numbers, region.texts)})
        self.put(("\nif " if statement else "\n(") + f"(anyMutantOf({numbers[0]}, {numbers[-1]}))"
                 + (" {\n" if statement else " ? (\n"))
        for number, (mutant, text) in zip(numbers, region.texts):
            first = self.line
            self.put(f"if (isMutant({number})) {{ {text} }} else\n" if statement
                     else f"isMutant({number}) ? ({text}) :\n")
            self.pieces.append((first, self.line - 1, [mutant]))
        # The last branch is never taken; it is there for the type, and for a function's end.
        self.put("{ __builtin_unreachable(); } } else {\n" if statement
                 else f"({self.source.text[region.place.start:region.place.end]})) :\n(")
        self.copy(region.place.start, region.place.end, region.inner)
        self.put("\n}\n" if statement else "\n))\n")
        self.pieces.append((begin, self.line - 1, [mutant for mutant, _ in region.texts]))


def nested(regions):
    """Regions in the order of the text, put into each other where they lie so."""
    outer = []
    for region in regions:
        around = outer[-1] if outer and region.place.end <= outer[-1].place.end else None
        (around.inner if around else outer).append(region)
    for region in outer:
        region.inner = nested(region.inner)
    return outer


def extentOf(node):
    return node.extent.start.offset, node.extent.end.offset
