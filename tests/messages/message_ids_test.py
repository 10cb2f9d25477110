"""Compares the message ids in the sources with the catalogue template, and the template with each translation.

Ids are the literal arguments of translateMessage and formatMessage. scripts/update-catalogue-template.sh writes the
templates: one for Vadelclip and one for Vadelwatch, whose sources are in src/watch.
"""
import os
import re
import sys
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
LOCALE = os.path.join(ROOT, "locale")
DOMAINS = ("VD2D", "vadelwatch")

# The definitions of the two functions: the only places where an id is a variable.
DEFINITIONS = ("src/messages/translation.hpp", "src/messages/translation.cpp", "src/watch/show/messages.hpp")

STRING = r'"(?:[^"\\\n]|\\.)*"'
COMMENT_OR_LITERAL = re.compile(r"//[^\n]*|/\*.*?\*/|'(?:[^'\\\n]|\\.)*'|" + STRING, re.DOTALL)
CALL = re.compile(r'\b(translateMessage|formatMessage)\s*\(\s*((?:"\d+"\s*)*)([^\s])')
PLACEHOLDER = re.compile(r"\{(\d+)\}")


def withoutCommentsAndTexts(code):
    """The code with each literal text replaced by its number in quotes, and the list of these texts."""
    texts = []

    def replace(match):
        if match[0].startswith("/"):
            return " "
        texts.append(match[0])
        return f'"{len(texts) - 1}"' if match[0].startswith('"') else "' '"

    return COMMENT_OR_LITERAL.sub(replace, code), texts


def unquoted(literals):
    """One text out of adjacent literals. C++ and gettext escape the same characters."""
    body = "".join(literal[1:-1] for literal in re.findall(STRING, literals))
    return re.sub(r"\\(.)", lambda match: {"n": "\n", "t": "\t", "r": "\r"}.get(match[1], match[1]), body)


def idsOfCode(code, mayHaveVariables=False):
    """From id to the functions that are called with it, and the calls that have no literal id."""
    ids = {}
    variables = []
    code, texts = withoutCommentsAndTexts(code)
    for function, numbers, nextCharacter in CALL.findall(code):
        literals = " ".join(texts[int(number)] for number in re.findall(r"\d+", numbers))
        # Behind the id comes the next argument or the end of the call.
        if literals and nextCharacter in ",)":
            ids.setdefault(unquoted(literals), set()).add(function)
        elif not mayHaveVariables:
            variables.append(f"{function}({literals}{nextCharacter}")
    return ids, variables


def idsOfSources(root):
    """For each domain a dict from id to the functions that are called with it; and the calls without a literal id."""
    idsOfDomain = {domain: {} for domain in DOMAINS}
    variables = []
    for directory, _, names in os.walk(os.path.join(root, "src")):
        for name in names:
            if not name.endswith((".cpp", ".hpp")):
                continue
            path = os.path.relpath(os.path.join(directory, name), root)
            with open(os.path.join(root, path), encoding="utf-8") as file:
                found, withoutLiteral = idsOfCode(file.read(), path in DEFINITIONS)
            ids = idsOfDomain["vadelwatch" if path.startswith("src/watch/") else "VD2D"]
            for messageId, functions in found.items():
                ids.setdefault(messageId, set()).update(functions)
            variables += [f"{path}: {call}" for call in withoutLiteral]
    return idsOfDomain, variables


def readEntries(text):
    """Entries of a .po or .pot file: (id, translation, flags). The header, whose id is empty, is left out.

    Raises ValueError for whatever this project has no use for, such as plural forms.
    """
    entries = []
    flags, fields, current = set(), {}, None

    def finish():
        if fields.get("msgid"):
            entries.append((fields["msgid"], fields["msgstr"], frozenset(flags)))
        flags.clear()
        fields.clear()

    for line in text.splitlines():
        keyword = re.match(r"(\w+) (" + STRING + r")$", line)
        if line.startswith("#") or not line.strip():
            if "msgstr" in fields:
                finish()
            if line.startswith("#,"):
                flags.update(flag.strip() for flag in line[2:].split(","))
        elif keyword and keyword[1] in ("msgid", "msgstr"):
            if keyword[1] == "msgid" and "msgstr" in fields:
                finish()
            current = keyword[1]
            fields[current] = unquoted(keyword[2])
        elif re.fullmatch(STRING, line) and current:
            fields[current] += unquoted(line)
        else:
            raise ValueError(f"unexpected line: {line}")
    finish()
    return entries


def placeholders(text):
    """The numbers of the placeholders, or None where braces do not make a valid format of them."""
    if re.search(r"[{}]", PLACEHOLDER.sub("", text)):
        return None
    return set(PLACEHOLDER.findall(text))


def faultsOfTemplate(codeIds, entries):
    templateIds = [messageId for messageId, _, _ in entries]
    faults = [f"missing in the template: {messageId}" for messageId in codeIds if messageId not in templateIds]
    faults += [f"not in the code: {messageId}" for messageId in templateIds if messageId not in codeIds]
    faults += [f"twice in the template: {messageId}" for messageId in set(templateIds)
               if templateIds.count(messageId) > 1]
    return sorted(faults + [f"translated in the template: {messageId}" for messageId, text, _ in entries if text])


def faultsOfTranslation(templateIds, entries):
    ids = [messageId for messageId, _, _ in entries]
    faults = [f"missing: {messageId}" for messageId in templateIds if messageId not in ids]
    faults += [f"not in the template: {messageId}" for messageId in ids if messageId not in templateIds]
    faults += [f"twice: {messageId}" for messageId in set(ids) if ids.count(messageId) > 1]
    for messageId, translation, flags in entries:
        if "fuzzy" in flags:
            faults.append(f"fuzzy: {messageId}")
        if not translation:
            faults.append(f"untranslated: {messageId}")
        elif placeholders(translation) != placeholders(messageId):
            faults.append(f"other placeholders: {messageId}")
    return sorted(faults)


def readCatalogue(*names):
    with open(os.path.join(LOCALE, *names), encoding="utf-8") as file:
        return readEntries(file.read())


class MessageIds(unittest.TestCase):
    def setUp(self):
        self.codeIds, self.variables = idsOfSources(ROOT)
        self.templates = {domain: readCatalogue(f"{domain}.pot") for domain in DOMAINS}

    def testIdsAreLiteralsAtThePlaceOfUse(self):
        self.assertEqual([], self.variables)
        self.assertIn("There are no input files.", self.codeIds["VD2D"])
        self.assertIn("Files written", self.codeIds["vadelwatch"])

    def testTheTemplateHasTheIdsOfTheCode(self):
        for domain, template in self.templates.items():
            self.assertEqual([], faultsOfTemplate(self.codeIds[domain], template),
                             "run scripts/update-catalogue-template.sh")

    def testIdsWithPlaceholdersAreFormattedAndNoOthers(self):
        for ids in self.codeIds.values():
            for messageId, functions in ids.items():
                self.assertEqual({"formatMessage" if placeholders(messageId) else "translateMessage"}, functions,
                                 messageId)

    def testEveryTranslationIsComplete(self):
        languages = [name for name in os.listdir(LOCALE) if os.path.isdir(os.path.join(LOCALE, name))]
        self.assertIn("de", languages)
        for language in languages:
            for domain, template in self.templates.items():
                with self.subTest(language=language, domain=domain):
                    entries = readCatalogue(language, f"{domain}.po")
                    self.assertEqual([], faultsOfTranslation([messageId for messageId, _, _ in template], entries))


class TheTestItself(unittest.TestCase):
    """What the comparison must find."""

    def testIdsAreFoundInEveryForm(self):
        ids, variables = idsOfCode('''
            translateMessage("one"); // translateMessage("in a comment")
            reportLine(formatMessage( "two {0} "
                                      "and \\\\ \\"three\\"", path));
            /* formatMessage("in a comment", a) */ log("translateMessage(\\"in a text\\")");
            translateMessage("one"); c = '"'; translateMessage ("four");
            translateMessage(messageId); formatMessage("five" + rest, a); formatTranslatedMessage("six", {});''')
        self.assertEqual({"one": {"translateMessage"}, 'two {0} and \\ "three"': {"formatMessage"},
                          "four": {"translateMessage"}}, ids)
        self.assertEqual(['translateMessage(m', 'formatMessage("five"+'], variables)

    def testEntriesAreRead(self):
        self.assertEqual(
            [("one", "eins", frozenset()), ('two "x"\n', "", frozenset({"fuzzy", "c-format"})),
             ("three", "drei", frozenset())],
            readEntries('msgid ""\nmsgstr ""\n"Language: de\\n"\n\n#: a.cpp\nmsgid "one"\nmsgstr ""\n"ei"\n"ns"\n\n'
                        '#. text\n#, fuzzy, c-format\nmsgid "two \\"x\\"\\n"\nmsgstr ""\nmsgid "three"\nmsgstr "drei"\n'
                        '#~ msgid "old"\n#~ msgstr "alt"\n'))
        with self.assertRaises(ValueError):
            readEntries('msgid "one"\nmsgid_plural "ones"\nmsgstr[0] "eins"\n')

    def testFaultsOfATemplate(self):
        entries = [("a", "", frozenset()), ("b", "", frozenset()), ("b", "B", frozenset())]
        self.assertEqual(["missing in the template: c", "not in the code: b", "not in the code: b",
                          "translated in the template: b", "twice in the template: b"],
                         faultsOfTemplate({"a": set(), "c": set()}, entries))

    def testFaultsOfATranslation(self):
        entries = [(messageId, text, frozenset()) for messageId, text in [
            ("a {0}", "A"), ("b {0} {1}", "{1} {0} B"), ("c", "C {0}"), ("d {0}", "D {1}"), ("e {0}", "E {0"),
            ("f {0}", "F {0:d}"), ("g", ""), ("h {0}", "{0} H {0}"), ("i {0}", "I { 0}"), ("x", "X")]]
        entries.append(("j", "J", frozenset({"fuzzy"})))
        ids = [messageId for messageId, _, _ in entries if messageId != "x"] + ["k"]
        self.assertEqual(["fuzzy: j", "missing: k", "not in the template: x", "other placeholders: a {0}",
                          "other placeholders: c", "other placeholders: d {0}", "other placeholders: e {0}",
                          "other placeholders: f {0}", "other placeholders: i {0}", "untranslated: g"],
                         faultsOfTranslation(ids, entries))


if __name__ == "__main__":
    sys.exit(unittest.main())
