#!/usr/bin/env python3
"""Makes zelvora.ico from the icon's PNG files of all sizes. Needs nothing but Python.

An .ico file is a header, one directory entry a picture, and the pictures. Every Windows that Qt 5
runs on reads PNG files as pictures, so that they go in as they are.
"""
import pathlib
import struct

SIZES = (16, 24, 32, 48, 64, 128, 256)
PNG_HEADER = struct.Struct(">8s4x4sII")  # signature, chunk length, "IHDR", width, height
ICON_HEADER = struct.Struct("<HHH")  # reserved, 1 for an icon, number of pictures
ICON_ENTRY = struct.Struct("<BBBBHHII")  # width, height, palette, 0, planes, bits, bytes, offset


def read_png(path, size):
    data = path.read_bytes()
    if PNG_HEADER.unpack_from(data) != (b"\x89PNG\r\n\x1a\n", b"IHDR", size, size):
        raise SystemExit(f"{path} is no PNG file of {size} by {size} pixels")
    return data


def make_icon(pictures):
    offset = ICON_HEADER.size + ICON_ENTRY.size * len(pictures)
    entries = b""
    for size, data in pictures:
        side = size % 256  # one byte; 0 stands for 256
        entries += ICON_ENTRY.pack(side, side, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    header = ICON_HEADER.pack(0, 1, len(pictures))
    return header + entries + b"".join(data for _, data in pictures)


def main():
    here = pathlib.Path(__file__).resolve().parent
    sources = here.parent.parent / "resources" / "appicon"
    pictures = [(size, read_png(sources / f"zelvora-{size}.png", size)) for size in SIZES]
    (here / "zelvora.ico").write_bytes(make_icon(pictures))


if __name__ == "__main__":
    main()
