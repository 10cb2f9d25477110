"""Small changes to C++ sources, each of which some test ought to notice.

A mutant is one change on one line. The sources are formatted by clang-format, which is relied upon: a comparison has
blanks around it, the brackets of a template have none.
"""

import ast
import re
from collections import Counter
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutant:
    """One change: in `path` (from the root of the tree), line `line` (from 1), `before` becomes `after`."""

    path: str
    line: int
    kind: str
    before: str
    after: str
    occurrence: int = 1  # of the same change to the same text in the source

    @property
    def key(self):
        """Names the mutant by its text, so that it is recognised when the lines above it change."""
        text = f"{self.path}: {self.before.strip()} => {self.after.strip() or '(dropped)'}"
        return text if self.occurrence == 1 else f"{text} ({self.occurrence})"


# What a piece of text is exchanged for; each pair is a mutant of its own.
EXCHANGES = [
    ("comparison", r" < ", (" <= ", " >= ")),
    ("comparison", r" <= ", (" < ", " > ")),
    ("comparison", r" > ", (" >= ", " <= ")),
    ("comparison", r" >= ", (" > ", " < ")),
    ("comparison", r" == ", (" != ",)),
    ("comparison", r" != ", (" == ",)),
    ("logic", r" && ", (" || ",)),
    ("logic", r" \|\| ", (" && ",)),
    ("arithmetic", r" \+ ", (" - ",)),
    ("arithmetic", r" - ", (" + ",)),
    ("arithmetic", r" \* ", (" / ",)),
    ("arithmetic", r" / ", (" * ",)),
    ("arithmetic", r" % ", (" / ",)),
    ("arithmetic", r" \+= ", (" -= ",)),
    ("arithmetic", r" -= ", (" += ",)),
    ("arithmetic", r"\+\+", ("--",)),
    ("arithmetic", r"--", ("++",)),
    ("bits", r" & ", (" | ",)),
    ("bits", r" \|(?= |$)", (" &",)),
    ("bits", r" \^= ", (" |= ",)),
    ("extreme", r"\bstd::min\b", ("std::max",)),
    ("extreme", r"\bstd::max\b", ("std::min",)),
    ("constant", r"\btrue\b", ("false",)),
    ("constant", r"\bfalse\b", ("true",)),
]

# Digits that become the next number; those behind "e-" are among the first.
NUMBERS = [
    (10, re.compile(r"(?<![\w.])(\d+)(?:\.\d+)?(?![\w.])")),
    (10, re.compile(r"(?<![\w.])(\d+)(?=(?:\.\d+)?e[-+]?\d)")),
    (10, re.compile(r"(?<![\w.])\d+(?:\.\d+)?e(\d+)(?!\w)")),
    (16, re.compile(r"(?<!\w)0x([0-9A-Fa-f]+)(?!\w)")),
]
CHARACTER = re.compile(r"'_+'")  # masked
CONDITION = re.compile(r"\b(?:if|while) (?:constexpr )?\(")
# Its negation is one of the exchanges already.
ONE_COMPARISON = re.compile(r"[^&|]* (?:<|<=|>|>=|==|!=) [^&|]*$")
# A statement of its own on one line that is no declaration: a call, an assignment, a step, a jump.
STATEMENT = re.compile(
    r"^\s+(?!return\b|using\b|const\b|constexpr\b|auto\b|static_assert\b|friend\b|explicit\b)"
    r"(?:(?:continue|break)|(?:\+\+|--)?[\w.:\->\[\]*]+(?:\(.*\))?(?:[\w.\->\[\]]*)"
    r"(?:(?: [-+*/^|&]?= .*)|(?:\(.*\))|\+\+|--)?);$")
SKIPPED = re.compile(r"^\s*(?:#|//|using |namespace |template|static_assert|assert\(|friend |struct |class |enum )")


def mutantsOf(path, text):
    """Every mutant of a source's text, in the order of the lines."""
    found = []
    seen = Counter()
    for number, line in enumerate(withoutWindows(text.split("\n")), 1):
        code, comment = splitComment(line)
        if SKIPPED.match(code) or not code.strip():
            continue
        masked = maskLiterals(code)
        for kind, changed in changes(code, masked):
            after = changed + comment if changed else ""
            change = line.strip(), after.strip()
            seen[change] += 1
            found.append(Mutant(path, number, kind, line, after, seen[change]))
    return found


def withoutWindows(lines):
    """The lines with those blanked that only Windows compiles."""
    windows = False
    for line in lines:
        windows = line.startswith("#if defined(_WIN32)") or windows and not line.startswith(("#else", "#endif"))
        yield "" if windows else line


def changes(code, masked):
    """(kind, changed line) for one line of code; `masked` is the same line with its literals blanked."""
    for kind, pattern, replacements in EXCHANGES:
        for match in re.finditer(pattern, masked):
            for replacement in replacements:
                yield kind, code[:match.start()] + replacement + code[match.end():]
    for base, pattern in NUMBERS:
        for match in pattern.finditer(masked):
            following = int(match.group(1), base) + 1
            digits = str(following) if base == 10 else f"{following:X}"
            yield "constant", code[:match.start(1)] + digits + code[match.end(1):]
    for match in CHARACTER.finditer(masked):
        yield "constant", code[:match.start()] + nextCharacter(code[match.start():match.end()]) + code[match.end():]
    for match in CONDITION.finditer(masked):
        end = closingBracket(masked, match.end() - 1)
        condition = code[match.end():end] if end else ""
        if end and not ONE_COMPARISON.match(condition):
            yield "condition", f"{code[:match.end()]}!({condition}){code[end:]}"
    if STATEMENT.match(masked) and not isDeclaration(masked):
        yield "statement", ""


def nextCharacter(literal):
    following = ord(ast.literal_eval(literal)) + 1
    text = chr(following)
    return f"'{text}'" if text.isprintable() and text not in "'\\" else f"'\\x{following:02x}'"


def isDeclaration(masked):
    """A line such as "std::string line;" or "Step step();", which would not compile without."""
    return re.match(r"^\s+[\w:<>]+;$", masked) is not None and masked.strip() not in ("continue;", "break;")


def closingBracket(text, start):
    """The position of the bracket that closes the one at `start`, or None where it is on another line."""
    depth = 0
    for position in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[position], 0)
        if depth == 0:
            return position
    return None


def splitComment(line):
    """A line's code and its comment."""
    position = maskLiterals(line).find("//")
    return (line, "") if position < 0 else (line[:position].rstrip(), " " + line[position:])


def maskLiterals(line):
    """The line with what stands in quotes blanked, so that nothing is changed there."""
    return re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'',
                  lambda match: match.group()[0] + "_" * (len(match.group()) - 2) + match.group()[-1], line)
