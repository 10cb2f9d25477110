"""Reads pictures of the map: the shapes and texts of an SVG picture, the pixels of a PNG picture."""
import re
import struct
import xml.etree.ElementTree
import zlib

NAMESPACE = "{http://www.w3.org/2000/svg}"


class SvgPicture:
    def __init__(self, content):
        root = xml.etree.ElementTree.fromstring(content)
        self.strokes = []  # (colour, points of each line) in the order of drawing, as are all of these
        self.fills = []
        self.texts = []  # (x, y, text)
        self.title = root.find(NAMESPACE + "title").text
        for element in root:
            if element.tag != NAMESPACE + "defs":
                self.read(element)

    def read(self, element):
        if element.tag == NAMESPACE + "path":
            style = dict(part.strip().split(":") for part in element.get("style").split(";") if part.strip())
            stroked = style["stroke"] != "none"
            (self.strokes if stroked else self.fills).append(
                (colourOf(style["stroke" if stroked else "fill"]), linesOf(element.get("d"))))
        if element.tag == NAMESPACE + "text":
            self.texts.append((float(element.get("x")), float(element.get("y")), element.text))
        for child in element:
            self.read(child)

    def strokesOf(self, colour):
        return [lines for stroke, lines in self.strokes if stroke == colour]

    def words(self):
        return [text for _, _, text in self.texts]


def colourOf(text):
    """Returns red, green and blue from 0 to 255."""
    return tuple(round(float(share) * 2.55) for share in re.findall(r"([0-9.]+)%", text))


def linesOf(path):
    """Returns the points of each line of a path. A closed line ends where it began."""
    lines = []
    for command, x, y in re.findall(r"([MLZ])(?: ([-0-9.]+) ([-0-9.]+))?", path):
        if command == "M":
            lines.append([(float(x), float(y))])
        elif command == "L":
            lines[-1].append((float(x), float(y)))
        else:
            lines[-1].append(lines[-1][0])
    return [line for line in lines if len(line) > 1]


class PngPicture:
    """A picture with eight bits for each of red, green and blue."""

    def __init__(self, content):
        self.width, self.height = struct.unpack(">II", content[16:24])
        assert content[24:29] == b"\x08\x02\x00\x00\x00", content[24:29]
        packed = b""
        position = 8
        while position < len(content):
            length, kind = struct.unpack(">I4s", content[position:position + 8])
            if kind == b"IDAT":
                packed += content[position + 8:position + 8 + length]
            position += length + 12
        data = zlib.decompress(packed)
        size = 3 * self.width
        self.rows = []
        above = bytes(size)
        for start in range(0, len(data), size + 1):
            above = unfiltered(data[start], data[start + 1:start + 1 + size], above)
            self.rows.append(above)

    def pixel(self, x, y):
        return tuple(self.rows[int(y)][3 * int(x):3 * int(x) + 3])


def unfiltered(kind, row, above):
    """Returns a row of a PNG picture, computed from its differences to the pixels on the left and above."""
    if kind == 0:
        return row
    if kind == 2:
        return bytes((byte + up) & 255 for byte, up in zip(row, above))
    result = bytearray(3)
    previous = bytes(3) + above
    for i, byte in enumerate(row):
        left, up, corner = result[i], above[i], previous[i]
        if kind == 1:
            guess = left
        elif kind == 3:
            guess = (left + up) // 2
        else:
            guess = min((left, up, corner), key=lambda near, aim=left + up - corner: abs(aim - near))
        result.append((byte + guess) & 255)
    return bytes(result[3:])
