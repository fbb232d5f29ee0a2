#!/usr/bin/python3
"""Draws an SVG as a toolbar bitmap: 24-bit BMP, magenta (255, 0, 255) where it is transparent.

usage: make_bitmap.py SIZE SOURCE.svg OUTPUT.bmp

A pixel is either drawn or transparent: one that is half covered takes its own colour or magenta, never a blend
of both, which would stand around the icon as a pink fringe.
"""
import io
import subprocess
import sys

from PIL import Image

TRANSPARENT = (255, 0, 255)
THRESHOLD = 128  # of 255: a pixel that is covered at least by half is drawn


def main(size, source, output):
    png = subprocess.run(["rsvg-convert", "-w", size, "-h", size, source], check=True, stdout=subprocess.PIPE).stdout
    drawing = Image.open(io.BytesIO(png)).convert("RGBA")
    if drawing.size != (int(size), int(size)):
        sys.exit(f"{source}: drawn as {drawing.size}, not {size} by {size}")
    bitmap = Image.new("RGB", drawing.size, TRANSPARENT)
    for at in ((x, y) for y in range(drawing.height) for x in range(drawing.width)):
        *colour, alpha = drawing.getpixel(at)
        if alpha < THRESHOLD:
            continue
        if tuple(colour) == TRANSPARENT:
            sys.exit(f"{source}: the transparent colour is drawn at {at}")
        bitmap.putpixel(at, tuple(colour))
    bitmap.save(output, "BMP")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
