"""Which lines of a C++ source hold a condition that somebody wrote.

A compiler branches in more places than the source does: to release what has been made when a library call throws, to ask
whether a local constant has been made yet. Its branches are counted on the line of the statement that they belong to. So
where a statement holds no condition, all of its branches are the compiler's.
"""
import re

CONDITION = re.compile(r"\b(?:if|for|while|do|switch|catch|and|or|goto|assert|TEMP_FAILURE_RETRY)\b"
                       r"|\?|&&|\|\||<=>|\bdelete\b|\bdynamic_cast\b")
NOT_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"' + r"|(?<![0-9A-Za-z])'(?:\\.|[^'\\\n])+'"
                      r"|^[ \t]*#(?:\\\n|[^\n])*", re.DOTALL | re.MULTILINE)
BEFORE_BLOCK = re.compile(r"(?:\)|\]|\b(?:else|do|try|const|noexcept|override|mutable))\s*$")
NAMED_BLOCK = re.compile(r"\s*(?:inline\s+|template\s*<[^{]*>\s*|extern\s*)?(?:namespace|struct|class|enum|union|extern)\b")


def blanked(text):
    """The text without comments, directives and what stands in quotes; every line stays where it is."""
    return NOT_CODE.sub(lambda found: re.sub(r"[^\n]", " ", found[0]), text)


def statements(text):
    """The statements of blanked text, each with the number of its first line. A list in braces belongs to its statement.

    In doubt two statements are taken for one, so that too many lines seem to hold a condition, never too few.
    """
    start, number, open_ = 0, 1, []
    for place, letter in enumerate(text):
        if letter in "([":
            open_.append("list")
        elif letter == "{":
            before = text[start:place]
            block = not before.strip() or BEFORE_BLOCK.search(before) or NAMED_BLOCK.match(before)
            open_.append("block" if block else "list")
        elif letter in ")]}" and open_:
            kind = open_.pop()
            if letter != "}" or kind != "block":
                continue
        elif letter != ";" or "list" in open_[-1:]:
            continue
        if letter in ";}" or open_[-1] == "block":
            yield number, text[start:place + 1]
            number += text.count("\n", start, place + 1)
            start = place + 1
    yield number, text[start:]


def linesWithConditions(text):
    """The numbers of all lines that a statement with a condition stands on."""
    lines = set()
    for first, statement in statements(blanked(text)):
        if CONDITION.search(statement):
            blank = len(statement) - len(statement.lstrip())
            lines.update(range(first + statement.count("\n", 0, blank), first + statement.count("\n") + 1))
    return lines
