#!/usr/bin/env python3
"""Tells whether two PDF files have the same ink: each dark dot of a page has ink of the other file
within a tenth of a millimetre.

    compare_pages.py ONE.pdf OTHER.pdf

Needs pdftoppm and Pillow.
"""
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from PIL import Image, ImageChops, ImageFilter

DOTS_PER_INCH = 254  # a dot is a tenth of a millimetre
DARK = 100           # what has to be there in the other file
INK = 210            # what counts as being there
STEP = 20            # pages that are painted at once


def page_count(path):
    text = subprocess.run(["pdfinfo", path], capture_output=True, text=True, check=True).stdout
    return int(re.search(r"^Pages:\s+(\d+)", text, re.MULTILINE)[1])


def pictures(path, first, last, folder):
    subprocess.run(["pdftoppm", "-r", str(DOTS_PER_INCH), "-gray", "-f", str(first), "-l", str(last), path,
                    folder / "page"], check=True)
    return sorted(folder.glob("page*.pgm"))


def stray_ink(one, other):
    """The box of dark dots of a page that have no ink of the other one beside them."""
    near = other.filter(ImageFilter.MinFilter(3)).point(lambda shade: 255 if shade < INK else 0)
    dark = one.point(lambda shade: 255 if shade < DARK else 0)
    return ImageChops.subtract(dark, near).getbbox()


def differences(one, other, first, last):
    with tempfile.TemporaryDirectory() as left, tempfile.TemporaryDirectory() as right:
        pairs = zip(pictures(one, first, last, Path(left)), pictures(other, first, last, Path(right)))
        for number, (mine, yours) in enumerate(pairs, first):
            with Image.open(mine) as a, Image.open(yours) as b:
                if a.size != b.size:
                    yield f"page {number}: {a.size} dots in one file, {b.size} in the other"
                    continue
                for name, box in (("first", stray_ink(a, b)), ("second", stray_ink(b, a))):
                    if box:
                        where = ", ".join(f"{dots / 10:.1f}" for dots in box)
                        yield f"page {number}: ink of the {name} file alone within {where} mm"


def main():
    one, other = sys.argv[1:3]
    pages = page_count(one)
    if pages != page_count(other):
        raise SystemExit(f"{pages} pages in one file, {page_count(other)} in the other")
    found = [text for first in range(1, pages + 1, STEP)
             for text in differences(one, other, first, min(first + STEP - 1, pages))]
    print("\n".join(found) or f"{pages} pages agree within a tenth of a millimetre")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
