#!/usr/bin/env python3
"""Makes the topics of a compiled help file lead to its pages: chmcmd writes each page's path with the folder that it was
compiled in, and no page of the file has such a name.
  mend_help.py FILE.chm      beside the pages that it was compiled from; the file is changed in place
The paths stand in the part /#STRINGS, which is compressed. A mended copy goes behind the end of the file as it is, and the
directory's entry of that part is turned to it. Strings keep their places, because others point to them by offset."""
import subprocess
import sys
import tempfile
from pathlib import Path

STRINGS = b"/#STRINGS"
# In the header: where the file's size stands, where the content starts from which offsets count.
SIZE_SECTION, CONTENT_START = 0x38, 0x58


def number(data, place):
    """A number of seven bits a byte, high ones first, and the place behind it."""
    value = 0
    while True:
        byte = data[place]
        value, place = value << 7 | byte & 0x7F, place + 1
        if byte < 0x80:
            return value, place


def as_long(value, size):
    """The same number in `size` bytes; leading ones may be empty."""
    if value >> (7 * size):
        raise ValueError("the copy lies too far behind for the directory's entry")
    return bytes(value >> (7 * left) & 0x7F | (0x80 if left else 0) for left in reversed(range(size)))


def strings_of(path):
    with tempfile.TemporaryDirectory() as folder:
        part = Path(folder, "strings")
        subprocess.run(["chmls", "extract", path, STRINGS.decode(), part], check=True, capture_output=True)
        return part.read_bytes()


def without_folder(strings, folder):
    prefix = b"\0" + folder.encode() + b"/"
    while (place := strings.find(prefix)) >= 0:
        end = strings.index(b"\0", place + 1)
        page = strings[place + len(prefix):end]
        strings = strings[:place + 1] + page.ljust(end - place - 1, b"\0") + strings[end:]
    return strings


def main():
    path = Path(sys.argv[1]).resolve()
    data = bytearray(path.read_bytes())
    before = strings_of(path)
    mended = without_folder(before, str(path.parent))
    if mended == before:
        return
    content = int.from_bytes(data[CONTENT_START:CONTENT_START + 8], "little")
    entry = data.index(bytes([len(STRINGS)]) + STRINGS, 0, content) + 1 + len(STRINGS)
    if data[entry] != 1:
        raise ValueError("the part is not compressed")
    _, behind = number(data, entry + 1)
    # Part 0 is what is not compressed.
    data[entry:behind] = b"\0" + as_long(len(data) - content, behind - entry - 1)
    data += mended
    size = int.from_bytes(data[SIZE_SECTION:SIZE_SECTION + 8], "little") + 8
    data[size:size + 8] = len(data).to_bytes(8, "little")
    path.write_bytes(data)


main()
