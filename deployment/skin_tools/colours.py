"""Reads what a skin chooses, `colours.ini`, and reckons with colours."""
import configparser
import re

from shapes import clamped


def read_choices(file):
    """The colours, (red, green, blue) by name, and the whole numbers by name.

    A colour is `#RRGGBB`, or `NAME at N`: an earlier one's hue at a lightness of N per cent.
    """
    parser = configparser.ConfigParser(interpolation=None)
    try:
        with open(file, encoding="utf-8") as lines:
            parser.read_file(lines)
        return _colours(parser["colours"], file), {name: int(text) for name, text in parser["numbers"].items()}
    except (OSError, ValueError, KeyError, configparser.Error) as error:
        raise SystemExit(f"{file}: {error}")


def _colours(section, file):
    colours = {}
    for name, text in section.items():
        if plain := re.fullmatch(r"#([0-9A-Fa-f]{6})", text):
            colours[name] = tuple(bytes.fromhex(plain[1]))
        elif (tint := re.fullmatch(r"(\w+) at (\d+)", text)) and tint[1] in colours and int(tint[2]) <= 100:
            colours[name] = at_lightness(colours[tint[1]], int(tint[2]))
        else:
            raise SystemExit(f"{file}: the colour '{name}' is '{text}', neither #RRGGBB nor an earlier colour's 'NAME at 0-100'")
    return colours


def at_lightness(colour, per_cent):
    """The same hue and saturation, lighter or darker: 0 is black and 100 white."""
    lowest, highest = min(colour), max(colour)
    spread = highest - lowest
    if spread == 0:
        return (per_cent * 255 // 100,) * 3
    saturation = spread / (255 - abs(lowest + highest - 255))
    wanted = per_cent / 100
    half = saturation * min(wanted, 1 - wanted)
    shares = [(part - lowest) / spread for part in colour]
    return tuple(int(clamped(255 * (wanted - half + 2 * half * share) + 0.5, 0, 255)) for share in shares)


def number(colour):
    """As the skin document writes it: decimal, red lowest."""
    red, green, blue = colour
    return str(red + 256 * green + 65536 * blue)


def lightened(colour, factor):
    """As an inactive caption bar shows it: each part by `factor` per cent, white stays."""
    return colour if colour == (255, 255, 255) else tuple(min(255, round(part * (100 + factor) / 100)) for part in colour)
