"""Boundary files for tests, and the failure that a bad one leads to."""
from acceptance import AcceptanceTest

HEADER = b"x;y;z\n"
RING = '<point x="0" y="0"/><point x="10" y="0"/><point x="10" y="10"/><point x="0" y="10"/>'
NOT_FOUND = "Boundary file area.xml not found"
NOT_THERE = "Boundary file area.xml does not exist"


def document(content):
    return f"<VADELSIM><VadeDGM>{content}</VadeDGM></VADELSIM>".encode()


def boundaries(content):
    return document(f'<group type="boundaries">{content}</group>')


class BoundaryFileTest(AcceptanceTest):
    def expectRefused(self, area, text, **settings):
        """Expects two messages, although the file does exist, and no output, although the directories are valid."""
        self.startOver()
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n"}, area)
        self.expectFailed(self.clip(**settings), text, NOT_THERE)
