"""Writes the pictures of Windows' own formats."""
import struct


def bmp(rows):
    """A bitmap file of 24 bits a pixel, from rows of (red, green, blue)."""
    data = b""
    for row in reversed(rows):
        line = b"".join(bytes(reversed(pixel)) for pixel in row)
        data += line + bytes(-len(line) % 4)
    header = struct.pack("<IiiHHIIiiII", 40, len(rows[0]), len(rows), 1, 24, 0, len(data), 0, 0, 0, 0)
    start = 14 + len(header)
    return b"BM" + struct.pack("<IHHI", start + len(data), 0, 0, start) + header + data


def ico(pictures):
    """An icon file of several sizes, from rows of (red, green, blue, opacity) each."""
    images = [_icon_image(rows) for rows in pictures]
    entries, start = b"", 6 + 16 * len(images)
    for rows, image in zip(pictures, images):
        entries += struct.pack("<BBBBHHII", len(rows[0]) % 256, len(rows) % 256, 0, 0, 1, 32, len(image), start)
        start += len(image)
    return struct.pack("<HHH", 0, 1, len(images)) + entries + b"".join(images)


def _icon_image(rows):
    size = len(rows)
    colours = b"".join(bytes((blue, green, red, opacity)) for row in reversed(rows) for red, green, blue, opacity in row)
    # Whoever cannot mix colours goes by the mask, in which a set bit is clear.
    mask = b""
    for row in reversed(rows):
        bits = sum(1 << (size - 1 - i) for i, pixel in enumerate(row) if pixel[3] < 128) << (-size % 32)
        mask += bits.to_bytes((size + 31) // 32 * 4, "big")
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(colours) + len(mask), 0, 0, 0, 0) + colours + mask
