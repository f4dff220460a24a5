"""Reads a GIF file of one frame as a program does that shows it; whatever is not as the format wants it raises."""
import struct


def gif_pixels(data):
    """Rows of (red, green, blue), or None where the picture is clear."""
    if data[:6] != b"GIF89a" or data[-1:] != b";":
        raise ValueError("no GIF file")
    width, height, flags = struct.unpack("<HHB", data[6:11])
    count = 2 << (flags & 7)
    palette = [tuple(data[13 + 3 * index:16 + 3 * index]) for index in range(count)]
    place, clear = 13 + 3 * count, None
    if data[place] == 0x21:
        clear, place = data[place + 6] if data[place + 3] & 1 else None, place + 8
    if data[place:place + 10] != b"\x2c\0\0\0\0" + data[6:10] + b"\0":
        raise ValueError("no single frame")
    bits, place, packed = data[place + 10], place + 11, b""
    while data[place]:
        packed += data[place + 1:place + 1 + data[place]]
        place += 1 + data[place]
    indices = _indices(packed, bits)
    if len(indices) != width * height:
        raise ValueError(f"{len(indices)} pixels for {width} x {height}")
    pixels = [None if index == clear else palette[index] for index in indices]
    return [pixels[start:start + width] for start in range(0, len(pixels), width)]


def _indices(packed, bits):
    start, end = 1 << bits, (1 << bits) + 1
    stream, at, found = int.from_bytes(packed, "little"), 0, []
    width, table, last = bits + 1, {}, None
    while True:
        code, at = stream >> at & (1 << width) - 1, at + width
        if code == end:
            return found
        if code == start:
            width, last, table = bits + 1, None, {index: [index] for index in range(start)} | {start: None, end: None}
            continue
        run = table.get(code) or last + last[:1]
        if last is not None and len(table) < 4096:
            table[len(table)] = last + run[:1]
        found += run
        last = run
        if len(table) == 1 << width and width < 12:
            width += 1
