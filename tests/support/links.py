"""Links between documents that are handed out together."""
import posixpath
import re

LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"^```[\s\S]*?^```$|^    .*$", re.MULTILINE)
HEADING = re.compile(r"^#+ +(.+?) *$", re.MULTILINE)


def anchors(text):
    """What a link may name behind "#": the headings in small letters, with hyphens for blanks and no other signs."""
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in HEADING.findall(text)}


def deadLinks(files):
    """One text for each link that leads nowhere; from the name of a file or directory, with "/", to its bytes."""
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
