#!/usr/bin/env python3
"""make_skin.py SKIN OUTPUT: makes a deployment's pictures and its skin document from its folder SKIN.

The folder holds colours.ini, pictures.py and document.xml, docs/skin.md tells how to write them. OUTPUT gets each picture
as a file, skin.xml, and pictures.rc, which names the pictures that the program file holds outside of the document.
"""
import base64
import importlib
import pathlib
import re
import sys

from colours import number, read_choices

# What the program asks its file for: icons and bitmaps by number, the others as bytes of type CUSTOM.
CUSTOM = [f"Sub{index}" for index in range(8)] + ["Node0", "Node1"] + [f"Lamp{name}" for name in ("Off", 0, 16, 32, 48)] + \
         ["picTrawl", "picDrop"] + [f"Bar{index}" for index in range(1, 6)]


def document(template, colours, numbers, pictures):
    """The skin document: `@colour NAME@`, `@number NAME@` and `@picture NAME@` replaced, as the program reads them."""
    def value(found):
        kind, name = found[1], found[2]
        known = {"colour": colours, "number": numbers, "picture": pictures}[kind]
        if name not in known:
            raise SystemExit(f"make_skin: the document names the {kind} '{name}', which there is not")
        if kind == "colour":
            return number(known[name])
        return str(known[name]) if kind == "number" else base64.b64encode(known[name]).decode()
    return re.sub(r"@(colour|number|picture) ([\w.]+)@", value, template)


def resources(names, folder):
    """Lines of a resource script that takes the pictures from their folder."""
    lines = [f'{number} ICON "{number}.ico"' for number in range(121, 125)]
    lines += [f'{number} BITMAP "{number}.bmp"' for number in range(103, 113)]
    lines += [f'{name.upper()} CUSTOM "{name}.gif"' for name in CUSTOM]
    wanted = [re.search('"(.*)"', line)[1] for line in lines]
    if missing := [name for name in wanted if name not in names]:
        raise SystemExit(f"make_skin: pictures.py does not draw {', '.join(missing)}")
    return [re.sub('"(.*)"', lambda name: f'"{(folder / name[1]).as_posix()}"', line) for line in lines]


def main():
    source, output = map(pathlib.Path, sys.argv[1:])
    colours, numbers = read_choices(source / "colours.ini")
    sys.path.insert(0, str(source))
    pictures = importlib.import_module("pictures").pictures(colours, numbers)
    output.mkdir(parents=True, exist_ok=True)
    for name, data in pictures.items():
        (output / name).write_bytes(data)
    text = document((source / "document.xml").read_text(encoding="utf-8"), colours, numbers, pictures)
    (output / "skin.xml").write_text(text, encoding="utf-8", newline="\n")
    (output / "pictures.rc").write_text("\n".join(resources(pictures, output.resolve())) + "\n", encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
