"""What the tool's picture files hold."""

import struct
import xml.etree.ElementTree as xml
import zlib


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


def svg_size(path):
    root = xml.parse(path).getroot()
    assert root.tag == "{http://www.w3.org/2000/svg}svg"
    assert len(list(root.iter())) > 50
    return tuple(float(root.get(key).removesuffix("pt").removesuffix("px")) for key in ("width", "height"))
