#!/usr/bin/env python3
"""Writes the small .bmp files that the graphics tests load as resources and files.

Quadrants24.bmp  6 x 4, 24 bits: top-left red, top-right green, bottom-left blue,
                 bottom-right white (3 x 2 pixels each; rows need padding)
Stripes1.bmp     8 x 8, 1 bit: even rows (from the top) black, odd rows white
"""
import os
import struct


def bmp(width, height, bits, palette, rows_top_down):
    """A .bmp file of bottom-up rows; rows_top_down are the packed bytes of each row."""
    stride = (len(rows_top_down[0]) + 3) // 4 * 4
    pixels = b"".join(row.ljust(stride, b"\0") for row in reversed(rows_top_down))
    table = b"".join(struct.pack("<BBBB", b, g, r, 0) for r, g, b in palette)
    offset = 14 + 40 + len(table)
    header = struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, len(pixels), 2835, 2835,
                       len(palette), 0)
    return header + info + table + pixels


def quadrants():
    red, green, blue, white = (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255)
    rows = []
    for y in range(4):
        left, right = (red, green) if y < 2 else (blue, white)
        row = [left] * 3 + [right] * 3
        rows.append(b"".join(struct.pack("BBB", b, g, r) for r, g, b in row))
    return bmp(6, 4, 24, [], rows)


def stripes():
    rows = [b"\x00" if y % 2 == 0 else b"\xff" for y in range(8)]
    return bmp(8, 8, 1, [(0, 0, 0), (255, 255, 255)], rows)


if __name__ == "__main__":
    here = os.path.dirname(os.path.abspath(__file__))
    for name, data in (("Quadrants24.bmp", quadrants()), ("Stripes1.bmp", stripes())):
        with open(os.path.join(here, name), "wb") as f:
            f.write(data)
