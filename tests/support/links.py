"""Finds dead links between documents that are shipped together."""
import posixpath
import re

LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"^```[\s\S]*?^```$|^    .*$", re.MULTILINE)
HEADING = re.compile(r"^#+ +(.+?) *$", re.MULTILINE)


def anchors(text):
    """Returns the anchors of a text: its headings in lower case, with hyphens for spaces and without other signs."""
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in HEADING.findall(text)}


def deadLinks(files):
    """Returns one text for each dead link. `files` maps a file or directory name, with "/", to its bytes."""
    texts = {name: CODE.sub("", content.decode("utf-8")) for name, content in files.items() if name.endswith(".md")}
    dead = []
    for name, text in sorted(texts.items()):
        for link in LINK.findall(text):
            place, _, anchor = link.partition("#")
            target = posixpath.normpath(posixpath.join(posixpath.dirname(name), place)) if place else name
            if re.match(r"[a-z]+:", link):
                continue
            if target not in files or (anchor and anchor not in anchors(texts.get(target, ""))):
                dead.append(f"{name}: {link}")
    return dead
