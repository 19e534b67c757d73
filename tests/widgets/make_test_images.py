#!/usr/bin/env python3
"""Writes the monochrome test cursor and icon that TestResources.rc includes.

Each is a 32x32 image: a filled square in the middle, transparent around it.
Run again only if the images are to change; the outputs are committed.
"""
import struct

SIZE = 32


def image(kind, hotspot):
    header = struct.pack('<IiiHHIIiiII', 40, SIZE, SIZE * 2, 1, 1, 0, 0, 0, 0, 2, 0)
    palette = struct.pack('<II', 0x000000, 0xFFFFFF)
    rows_xor, rows_and = [], []
    for y in range(SIZE):
        inside = 8 <= y < 24
        row_bits = 0x00FFFF00 if inside else 0
        rows_xor.append(struct.pack('>I', 0))
        rows_and.append(struct.pack('>I', 0xFFFFFFFF & ~row_bits))
    data = header + palette + b''.join(rows_xor) + b''.join(rows_and)
    planes_or_x, bits_or_y = (hotspot if kind == 2 else (1, 1))
    entry = struct.pack('<BBBBHHII', SIZE, SIZE, 2, 0, planes_or_x, bits_or_y, len(data), 6 + 16)
    return struct.pack('<HHH', 0, kind, 1) + entry + data


with open('TestCursor.cur', 'wb') as out:
    out.write(image(2, (16, 16)))
with open('TestIcon.ico', 'wb') as out:
    out.write(image(1, None))
