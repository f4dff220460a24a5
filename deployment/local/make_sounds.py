#!/usr/bin/env python3
"""make_sounds.py FOLDER: writes the sounds of this deployment, click.wav and alert.wav, 8-bit mono at 11,025 Hz.

All by whole numbers, so that every machine makes the same bytes.
"""
import pathlib
import struct
import sys

RATE = 11025
MIDDLE = 128


def triangle(position, period, height):
    """A triangle wave between -height and height."""
    phase = position % period
    rising = min(phase, period - phase)
    return height * (4 * rising - period) // period


def tone(frequency, milliseconds, height):
    """Fades to nothing by its end, so that tones can follow each other without a crack."""
    length = RATE * milliseconds // 1000
    period = RATE // frequency
    return [triangle(index, period, height) * (length - index) // length for index in range(length)]


def wave(samples):
    data = bytes(MIDDLE + sample for sample in samples)
    padding = b"\0" * (len(data) % 2)
    layout = struct.pack("<HHIIHH", 1, 1, RATE, RATE, 1, 8)
    body = (b"WAVE" + b"fmt " + struct.pack("<I", len(layout)) + layout +
            b"data" + struct.pack("<I", len(data)) + data + padding)
    return b"RIFF" + struct.pack("<I", len(body)) + body


SOUNDS = {
    "click.wav": tone(1800, 12, 60),
    "alert.wav": (tone(880, 140, 90) + tone(660, 140, 90)) * 2 + tone(880, 280, 90),
}


def main():
    folder = pathlib.Path(sys.argv[1])
    for name, samples in SOUNDS.items():
        (folder / name).write_bytes(wave(samples))


if __name__ == "__main__":
    main()
