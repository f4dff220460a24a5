#!/usr/bin/env python3
"""Draws Trawlbeam.ico: a beam of light that falls from the upper left through a dark disc. Run it after a change here."""
import math
import pathlib
import struct

SEA = (112, 66, 16)      # blue, green, red
RIM = (170, 120, 40)
BEAM = (150, 226, 255)
OVERSAMPLING = 4


def colour_at(x, y):
    """Colour and opacity of a point of the unit square."""
    distance = math.hypot(x - 0.5, y - 0.5)
    if distance > 0.48:
        return None
    angle = math.atan2(y - 0.1, x - 0.1)
    if abs(angle - math.pi / 4) < 0.2 and math.hypot(x - 0.1, y - 0.1) > 0.12:
        return BEAM
    return RIM if distance > 0.41 else SEA


def pixel(column, row, size):
    hits = []
    for sub_row in range(OVERSAMPLING):
        for sub_column in range(OVERSAMPLING):
            found = colour_at((column + (sub_column + 0.5) / OVERSAMPLING) / size,
                              (row + (sub_row + 0.5) / OVERSAMPLING) / size)
            if found:
                hits.append(found)
    if not hits:
        return bytes(4)
    mean = [round(sum(hit[channel] for hit in hits) / len(hits)) for channel in range(3)]
    return bytes(mean + [round(255 * len(hits) / OVERSAMPLING ** 2)])


def image(size):
    header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    rows = [b''.join(pixel(column, row, size) for column in range(size)) for row in reversed(range(size))]
    mask = bytes((size + 31) // 32 * 4 * size)
    return header + b''.join(rows) + mask


def icon(sizes):
    images = [image(size) for size in sizes]
    offset = 6 + 16 * len(images)
    entries = b''
    for size, data in zip(sizes, images):
        entries += struct.pack('<BBBBHHII', size, size, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return struct.pack('<HHH', 0, 1, len(images)) + entries + b''.join(images)


if __name__ == '__main__':
    pathlib.Path(__file__).with_name('Trawlbeam.ico').write_bytes(icon([16, 32]))
