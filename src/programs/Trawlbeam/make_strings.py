#!/usr/bin/env python3
"""make_strings.py SKIN OUTPUT: writes the string resources that the program reads at its start.

The skin document is read as UTF-8 and must have no character outside windows-1252, since one character becomes one byte
when the program reads it. It is cut into pieces, because a string resource is short, and each piece becomes one of the
resources that the range resource names; those left over stay empty.
"""
import sys

RANGE_ID = 96
AGENT_ID = 101
AGENT = "1"
FIRST_ID = 256
LAST_ID = 296
PIECE = 60000
ESCAPES = {'"': '""', "\\": "\\\\", "\n": "\\n", "\r": "\\r", "\t": "\\t"}


def literal(text):
    return '"' + "".join(ESCAPES.get(character, character) for character in text) + '"'


def strings(skin):
    pieces = [skin[start:start + PIECE] for start in range(0, len(skin), PIECE)]
    if len(pieces) > LAST_ID - FIRST_ID + 1:
        sys.exit(f"make_strings: the skin has {len(skin)} characters, {PIECE * (LAST_ID - FIRST_ID + 1)} have room")
    return {RANGE_ID: f"{FIRST_ID}-{LAST_ID}", AGENT_ID: AGENT} | dict(enumerate(pieces, FIRST_ID))


def main():
    skin_file, output = sys.argv[1:]
    with open(skin_file, encoding="utf-8", newline="") as file:
        skin = file.read()
    skin.encode("cp1252")
    lines = ["STRINGTABLE", "BEGIN"]
    lines += [f"  {number} {literal(text)}" for number, text in strings(skin).items()]
    lines.append("END")
    with open(output, "w", encoding="utf-8", newline="\n") as file:
        file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
