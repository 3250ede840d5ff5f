"""What the tool's picture files hold."""

import itertools
import struct
import subprocess
import xml.etree.ElementTree as xml
import zlib
from typing import NamedTuple

SVG = "{http://www.w3.org/2000/svg}"


def png_size(path):
    """Width and height of a PNG that is whole: every chunk's checksum is right and all rows are there."""
    data = path.read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    place, kinds, pixels = 8, [], b""
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        body = data[place + 8:place + 8 + length]
        assert struct.unpack(">I", data[place + 8 + length:place + 12 + length])[0] == zlib.crc32(kind + body)
        kinds.append(kind)
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", body[:10])
        if kind == b"IDAT":
            pixels += body
        place += 12 + length
    assert kinds[0] == b"IHDR" and kinds[-1] == b"IEND"
    assert (depth, colour) == (8, 2)
    assert len(zlib.decompress(pixels)) == height * (1 + 3 * width)
    return width, height


class Text(NamedTuple):
    """A text in an SVG and, estimated, the place that it takes."""
    text: str
    left: float
    top: float
    right: float
    bottom: float

    def meets(self, other):
        return (self.left < other.right and other.left < self.right
                and self.top < other.bottom and other.top < self.bottom)


def text_of(node):
    size, x, y = (float(node.get(key)) for key in ("font-size", "x", "y"))
    width = 0.55 * size * len(node.text)
    before = {None: 0, "middle": width / 2, "end": width}[node.get("text-anchor")]
    if node.get("transform"):
        assert node.get("transform") == f"rotate(-90 {node.get('x')} {node.get('y')})"
        return Text(node.text, x - 0.7 * size, y + before - width, x, y + before)
    return Text(node.text, x - before, y - 0.7 * size, x - before + width, y)


class Svg:
    """A drawing of ours: well-formed, told in words, no text cut or over another one."""

    def __init__(self, path):
        root = xml.parse(path).getroot()
        assert root.tag == SVG + "svg" and root.get("font-family") == "sans-serif"
        self.size = tuple(float(root.get(key)) for key in ("width", "height"))
        assert root.get("viewBox") == f"0 0 {root.get('width')} {root.get('height')}"
        assert [node.tag for node in root[:2]] == [SVG + "title", SVG + "desc"]
        self.title, self.description = root[0].text, root[1].text
        self.places = [text_of(node) for node in root.iter(SVG + "text")]
        self.texts = [place.text for place in self.places]
        for place in self.places:
            assert 0 <= place.left and place.right <= self.size[0], place
            assert 0 <= place.top and place.bottom <= self.size[1], place
        for one, other in itertools.combinations(self.places, 2):
            assert not one.meets(other), (one, other)
        self.bars = [node for node in root.iter(SVG + "rect")]


def pdf_texts(path):
    """The lines of text in a PDF."""
    return subprocess.run(["pdftotext", "-layout", path, "-"], stdout=subprocess.PIPE, text=True, check=True).stdout


def pdf_properties(path):
    lines = subprocess.run(["pdfinfo", path], stdout=subprocess.PIPE, text=True, check=True).stdout.splitlines()
    return {key: value.strip() for key, value in (line.split(":", 1) for line in lines)}
