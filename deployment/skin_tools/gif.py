"""Writes GIF files of one frame. Rows of (red, green, blue), or None where the picture is clear."""
from collections import Counter
import struct

MOST_CODES = 4096


def gif(rows):
    clear = any(pixel is None for row in rows for pixel in row)
    palette, index_of = _palette(Counter(pixel for row in rows for pixel in row if pixel is not None), 255 if clear else 256)
    if clear:
        index_of[None] = len(palette)
        palette.append((255, 0, 255))
    bits = max(2, (len(palette) - 1).bit_length())
    palette += [(0, 0, 0)] * ((1 << bits) - len(palette))
    size = struct.pack("<HH", len(rows[0]), len(rows))
    parts = [b"GIF89a", size, bytes([0x80 | (bits - 1) << 4 | bits - 1, 0, 0]), b"".join(map(bytes, palette))]
    if clear:
        parts.append(b"\x21\xf9\x04\x01\0\0" + bytes([index_of[None]]) + b"\0")
    parts += [b"\x2c\0\0\0\0", size, b"\0", bytes([bits])]
    packed = _compressed([index_of[pixel] for row in rows for pixel in row], bits)
    for start in range(0, len(packed), 255):
        block = packed[start:start + 255]
        parts += [bytes([len(block)]), block]
    return b"".join(parts) + b"\0;"


def _palette(counts, most):
    """Colours, and the index of each colour that is wanted. If they are too many, near ones share their mean."""
    step = 1
    while len({tuple(part // step for part in colour) for colour in counts}) > most:
        step += 1
    groups = {}
    for colour in sorted(counts):
        groups.setdefault(tuple(part // step for part in colour), []).append(colour)
    palette, index_of = [], {}
    for group in groups.values():
        total = sum(counts[colour] for colour in group)
        palette.append(tuple((sum(colour[part] * counts[colour] for colour in group) + total // 2) // total for part in range(3)))
        index_of |= dict.fromkeys(group, len(palette) - 1)
    return palette, index_of


def _compressed(indices, bits):
    """The variable-length codes of the format, lowest bit first."""
    start, end = 1 << bits, (1 << bits) + 1
    packed, room, held = bytearray(), 0, 0

    def put(code):
        nonlocal room, held
        held |= code << room
        room += width
        while room >= 8:
            packed.append(held & 255)
            held >>= 8
            room -= 8

    def fresh():
        return {(index,): index for index in range(start)}, end + 1, bits + 1

    codes, following, width = fresh()
    put(start)
    run = ()
    for index in indices:
        longer = run + (index,)
        if longer in codes:
            run = longer
            continue
        put(codes[run])
        if following < MOST_CODES:
            codes[longer] = following
            # The reader is one code behind.
            if following == 1 << width:
                width += 1
            following += 1
        else:
            put(start)
            codes, following, width = fresh()
        run = (index,)
    put(codes[run])
    put(end)
    if room:
        packed.append(held)
    return bytes(packed)
