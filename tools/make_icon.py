#!/usr/bin/python3
"""Draws the icon of programs and installer from the toolbar's pictures.

usage: make_icon.py SMALL.svg LARGE.svg OUTPUT.ico

Up to 24 pixels the small drawing is taken, from there on the large one.
"""
import io
import struct
import subprocess
import sys

from PIL import Image

SIZES = (16, 24, 32, 48, 64, 256)


def image_of(size, source):
    """One entry of the icon, by way of an icon that holds nothing else: its row of the table, and its content."""
    png = subprocess.run(["rsvg-convert", "-w", str(size), "-h", str(size), source], check=True,
                         stdout=subprocess.PIPE).stdout
    icon = io.BytesIO()
    # Windows reads compressed images only where they are large.
    Image.open(io.BytesIO(png)).convert("RGBA").save(icon, "ICO", sizes=[(size, size)],
                                                     bitmap_format="png" if size == 256 else "bmp")
    content = icon.getvalue()
    return content[6:14], content[22:]


def main(small, large, output):
    images = [image_of(size, small if size <= 24 else large) for size in SIZES]
    place = 6 + 16 * len(images)
    table = struct.pack("<HHH", 0, 1, len(images))
    for row, content in images:
        table += row + struct.pack("<II", len(content), place)
        place += len(content)
    with open(output, "wb") as file:
        file.write(table + b"".join(content for _, content in images))


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
