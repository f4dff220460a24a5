#!/usr/bin/env python3
"""The address table from the list of ranges to the tool's answers, against a plain walk over the list.

    address_table_test.py TBTOOL              with made-up ranges
    address_table_test.py TBTOOL FILE.csv     with the ranges of a file and 10,000 random addresses, which is no unit test
"""

import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

TBTOOL = sys.argv.pop(1)
CSV = pathlib.Path(sys.argv.pop(1)) if sys.argv[1:] else None
DEPLOYMENT = pathlib.Path(__file__).parents[2] / "deployment"
HIGHEST = 0xFEFFFFFF


def dotted(address):
    return ".".join(str(address >> shift & 255) for shift in (24, 16, 8, 0))


# The ways in which the tool is given an address.
NOTATIONS = [dotted, str, hex]


def number(text):
    result = 0
    for part in text.split("."):
        result = result * 256 + int(part)
    return result


def make(base, out, *words):
    done = subprocess.run([sys.executable, DEPLOYMENT / "make_reference.py", base, out, *words], capture_output=True,
                          text=True, timeout=120)
    return done.returncode, done.stderr


def countries_of(reference, addresses):
    lines = "".join(f"http://x.example/\t{address}\n" for address in addresses)
    done = subprocess.run([TBTOOL, "score", "--reference", reference], input=lines.encode(), capture_output=True,
                          timeout=120)
    assert done.returncode == 0 and not done.stderr, done.stderr
    return [line.split("\t")[1] for line in done.stdout.decode("cp1252").splitlines()]


def walk(ranges, addresses):
    """The code of each address, "" outside of all ranges; both sorted."""
    codes, place = [], 0
    for address in addresses:
        while place < len(ranges) and ranges[place][1] < address:
            place += 1
        inside = place < len(ranges) and ranges[place][0] <= address
        codes.append(ranges[place][2] if inside else "")
    return codes


def made_up(source):
    """Ranges with and without gaps, of one address and of many, up to the highest that a table can hold."""
    ranges, address = [], 0
    for _ in range(3000):
        first = address + source.choice([0, 0, 1, source.randrange(1 << 20)])
        last = first + source.choice([0, 1, 255, source.randrange(1 << 20)])
        ranges.append((first, last, source.choice(["XA", "XB", "XL", "CI"])))
        address = last + 1
    assert address < HIGHEST
    return [*ranges, (HIGHEST, HIGHEST, "XA")]


class AddressTableTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)

    def tearDown(self):
        self.folder.cleanup()

    def test_every_address_has_the_country_of_its_range(self):
        source = random.Random(20261121)
        if CSV:
            ranges = sorted((number(first), number(last), code) for first, last, code in
                            (line.split(",") for line in CSV.read_text().split()))
            addresses = [source.randrange(HIGHEST + 1) for _ in range(10000)]
        else:
            ranges = made_up(source)
            addresses = [source.randrange(ranges[-2][1]) for _ in range(2000)]
        addresses += [edge + step for first, last, _ in source.sample(ranges, 2000) + [ranges[0], ranges[-1]]
                      for edge in (first, last) for step in (-1, 0, 1)]
        addresses = sorted(address for address in addresses if 0 <= address <= 0xFFFFFFFE)
        lines = [f"{dotted(first)},{dotted(last)},{code}\n" for first, last, code in ranges]
        source.shuffle(lines)
        (self.path / "list.csv").write_text("".join(lines))
        self.assertEqual(make(DEPLOYMENT / "local/reference.xml", self.path / "new.xml", "--addresses",
                              self.path / "list.csv"), (0, ""))
        names = {line.split("\t")[0]: line.split("\t")[1].strip()
                 for line in (DEPLOYMENT / "countries.txt").read_text("utf-8").splitlines() if line[0] != "#"}
        expected = [names.get(code, "") for code in walk(ranges, addresses)]
        written = [source.choice(NOTATIONS)(address) for address in addresses]
        self.assertEqual(countries_of(self.path / "new.xml", written), expected)
        self.assertGreater(len(set(expected)), 4)
        if CSV:
            print(f"{len(addresses)} addresses, {sum(map(bool, expected))} of them in one of {len(set(expected)) - 1} "
                  f"countries, all as the list of {len(ranges)} ranges has them")

    def test_the_bundled_document_is_made_of_the_bundled_list(self):
        bundled = DEPLOYMENT / "local/reference.xml"
        self.assertEqual(make(bundled, self.path / "new.xml", "--addresses", DEPLOYMENT / "local/addresses.csv"), (0, ""))
        self.assertEqual((self.path / "new.xml").read_bytes(), bundled.read_bytes())
        self.assertEqual(countries_of(bundled, ["127.0.0.5", "192.0.2.128", "8.8.8.8"]),
                         ["This machine", "Southern Samples", ""])

    def test_defects_are_named_and_nothing_is_written(self):
        base = self.path / "base.xml"
        base.write_text("<R>\n</R>\n")
        for content, words in [("1.0.0.0,1.0.0.9,XA\n1.0.0.9,1.0.1.0,XB\n", "1.0.0.9"), ("1.0.0.0,1.0.0,XA\n", "line 1"),
                               ("1.0.0.1,1.0.0.0,XA\n", "line 1"), ("1.0.0.0,1.0.0.0,xa\n", "line 1"),
                               ("255.0.0.0,255.0.0.1,XA\n", "line 1"), ("1.0.0.0,1.0.0.1\n", "line 1")]:
            (self.path / "list.csv").write_text(content)
            status, errors = make(base, self.path / "new.xml", "--addresses", self.path / "list.csv")
            self.assertEqual((status, words in errors, errors.count("\n")), (1, True, 1), errors)
            self.assertFalse((self.path / "new.xml").exists())
        (self.path / "list.csv").write_text("1.0.0.0,1.0.0.1,XA\n1.0.0.2,1.0.0.3,QQ\n")
        (self.path / "names").write_text("# names\nXA\tA & 'B'\t12.5\n")
        self.assertEqual(make(base, base, "--addresses", self.path / "list.csv", "--countries", self.path / "names"),
                         (0, "make_reference: no name for QQ; it is called by its code\n"))
        self.assertEqual(countries_of(base, ["1.0.0.1", "1.0.0.2"]), ["A & 'B'", "QQ"])
        self.assertIn("WEIGHT='12.5'", base.read_text())


if __name__ == "__main__":
    unittest.main()
