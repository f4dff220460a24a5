#!/usr/bin/env python3
"""Compares `tbtool check` with a second telling of the verdict's rules, over a site list and requests made from a seed.

    verdict_agreement.py TBTOOL [SEED]

The model is as plain as possible: dictionaries and lists, no scrambling, no hash table. Text is a str that holds one
windows-1252 byte per character. The scrambling key is unknown here, so two things cannot always be foretold; both leave
`sure` False in SiteList.find:
- A host's scrambled key is a negative number when an odd count of its bytes at every fourth place is 128 or more. The
  table then refuses it, unless the number happens to be a multiple of 1024.
- Scrambled keys are folded to upper case, so hosts that differ only in the bit 0x20 may share one list. That shows only
  when the other host's entry has a category that is no number.
"""

import pathlib
import random
import re
import subprocess
import sys
import tempfile
from collections import Counter, defaultdict

LINES = 30000
CATEGORY_NAMES = {"1": "General", "2": "Banking or Credit Card Spoof"}
LONGEST = 32767  # lengths and positions of scrambled text and of labels are 16-bit signed


def split(text, separator):
    return text.split(separator) if text else []


def lower(text):
    """By the letters of the code page; a code that is none stays."""
    return "".join(byte.lower() if byte < "\x80" else
                   byte.encode("latin-1").decode("cp1252", "replace").lower().encode("cp1252", "replace").decode("latin-1")
                   if byte not in "\x81\x8d\x8f\x90\x9d\x83" else byte for byte in text)


def url_decode(text):
    return re.sub(r"%[0-9A-Fa-f]{2}|\+", lambda found: chr(int(found[0][1:], 16)) if found[0] != "+" else " ", text)


def without_slashes(url):
    return url.rstrip("/") or url[:1]


def inet_addr(text):
    """The address of one to four parts, each decimal, octal (0...) or hexadecimal (0x...), up to the first white space,
    or None."""
    text = re.split("[\t-\r ]", text)[0]
    bases = {"0[xX][0-9A-Fa-f]+": 16, "0[0-7]*": 8, "[1-9][0-9]*": 10}
    values = [int(part, base) for part in text.split(".") for form, base in bases.items() if re.fullmatch(form, part)]
    if len(values) != len(text.split(".")) or len(values) > 4 or max(values[:-1], default=0) > 255:
        return None
    address = sum(value << 8 * (3 - place) for place, value in enumerate(values[:-1])) + values[-1]
    return None if values[-1] >= 1 << 8 * (5 - len(values)) or address == 0xFFFFFFFF else address


def normalize_ip(url):
    if lower(url[:4]) == "res:":
        return url
    url = without_slashes(url if lower(url[:4]) == "http" else "http://" + url)
    parts = url.split("/")
    if len(parts) < 3:
        return url
    start = parts[2].rfind("@") + 1
    end = parts[2].rfind(":") if ":" in parts[2] else len(parts[2])
    address = inet_addr(parts[2][start:end]) if end > start else None
    if address is not None:
        parts[2] = parts[2][:start] + ".".join(str(address >> shift & 255) for shift in (24, 16, 8, 0)) + parts[2][end:]
    return "/".join(parts)


def number_of(category):
    """The number that a category's text stands for, None where the conversion fails."""
    text = category.strip(" ")
    return float(text) if re.fullmatch(r"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)", text) else None


def folded(host):
    return "".join(chr(ord(byte) & ~0x20) for byte in host)


class SiteList:
    def __init__(self, entries):
        self.entries_of = defaultdict(list)  # host -> [(url as stored, category, validated)], in order of arrival
        self.spoilt = defaultdict(set)  # folded host -> hosts with a category that is no number
        for url, category, validated in entries:
            clean = without_slashes(lower(url))
            host = "".join(split(url_decode(clean), "/")[2:3])
            known = [entry[0] for entry in self.entries_of[host]]
            if host and len("\t".join((clean, category, validated))) <= LONGEST and clean not in known:
                self.entries_of[host].append((clean, category, validated))
                if number_of(category) is None:
                    self.spoilt[folded(host)].add(host)

    def find(self, url):
        """(hit, sure): hit is the reply or None; without sure, None is possible as well."""
        parts = split(lower(url), "/")
        labels = split(parts[2], ".") if len(parts) > 2 else []
        sure = True
        for first in range(max(len(labels) - 2, 0) + 1):
            # Empty labels in front vanish together with their dots.
            suffix = ".".join(labels[first:]).lstrip(".")
            if len(labels) - 1 > LONGEST or not 0 < len(suffix) <= LONGEST:
                return None, sure
            is_negative = sum(byte >= "\x80" for byte in suffix[3::4]) % 2 == 1
            sure = sure and not is_negative and not self.spoilt[folded(suffix)] - {suffix}
            candidate = "/".join(parts[:2] + [suffix] + parts[3:])
            for clean, category, validated in self.entries_of.get(suffix, ()):
                number = number_of(category)
                if number is None:
                    return None, sure
                if candidate.startswith(url_decode(clean)) and number != 1:
                    name = CATEGORY_NAMES.get(category)
                    return name and f"Validated: {validated}  (Category: {name})", sure
        return None, sure


def answers(sites, line):
    """The replies that are right for a line, first the one that does not lean on a refused or shared key. None at all
    when the channel gives the line no reply."""
    fields = line.split("\t")
    if not re.fullmatch(" *-?[0-9]+ *", fields[0]) or not -(1 << 31) <= int(fields[0]) < 1 << 31:
        return []
    if fields[1:2] != ["Check"] or len(fields) < 3:
        return [""]
    right = []
    addresses = ["http://" + address for address in split("".join(fields[3:4]), " ") if address]
    for item in [normalize_ip(url_decode(fields[2])), *addresses]:
        hit, sure = sites.find(item)
        right += [hit] if hit else []
        if hit and sure:
            return right
    return right + ["OK"]


WORDS = ["evil", "bank", "pay", "a", "my-bank", "http", "www", "x1", "res"]
TOPS = ["test", "example", "co.test"]
# Pieces of a path as they are typed: some decode alike, some nearly alike, some not at all.
PIECES = ["%", "%zz", "%4", "%%41", "%2541", "%41", "%61", "A", "a", "%2f", "+", "%2b", "%20", " ", "%00", "%e9", "%c9",
          "\xe9", "\xc9", "%8a", "\x9a", "\xdf", "\xd7", "\xff", "\x01", "%0a", "%09", "?", "&", "#", ":", "@", ".", "\\", "%1g"]
CATEGORIES = ["2"] * 16 + ["1"] * 4 + ["1.0", " 1 ", "01", "2.0", " 2", "3", "-1"]
NO_NUMBERS = ["", " ", "abc", "1x", "2 2", "nan", "0x1"]
HANDLES = ["65552"] * 9 + ["0", "-7", " 42 ", "-2147483648"]
NO_HANDLES = ["", "x", "60Days", "2147483648", "99999999999999999999", "0x10", "--1", "tbwakeup", "TBWAKEUP"]
# What chance would not hit upon: the limits, the degenerate URLs, the ends of the address range.
FITS = "http://fits.test/" + "p" * (LONGEST - 17 - len("\t2\tfixed"))
LONG = "b" * (LONGEST - len(".deep.test")) + ".deep.test"
FIXED_ENTRIES = ["http://0.0.9", "http://0.0.0.0", "http://255.255.255.255", "http://deep.test", "http:///x", "evil.test",
                 "http://3232235777/x", "http://ftp://inner.test", "http:%2f%2fhidden.test%2fx/", "/", "http://", "http:// ",
                 "http://.front.test", "http://solo", "http://u:p@127.1", "http://cut.test%2f", "HTTP://Big.Test/A%2FB/",
                 "res://page.test/x", "http://over.test/" + FITS[16:], FITS, "http://" + LONG]
FIXED_URLS = ["http://u@v@2130706441/", "", "/", "http://", "http:///x", "http://.", "http://..", "http://:80/", "http://@:80",
              "http:// /", "4294967295", "http://255.255.255.255/", "0", "0x0:80", "4294967296", "http://u:p@127.1/", "solo",
              "http://evil.test?u=1@1", "[::1]:80", "ftp://inner.test/x", "hidden.test/x", ".front.test", "a.solo", "cut.test/x",
              "res://page.test/x/", "http://x.big.test/A%2fb/c", FITS[:-1], FITS, FITS + "p", LONG, "b" + LONG, "%" * 30000,
              "http://deep.test" + "/x" * 20000, "http://" + "." * LONGEST + "deep.test", "http://over.test/" + "p" * 40000]


def changed(rng, scheme, host, path):
    """One change of a URL, or none."""
    other = f"{rng.choice(WORDS)}.{rng.choice(TOPS)}"
    return rng.choice([
        (scheme, host, path), (scheme, rng.choice(["www.", "a.b.", other + ".", "x", "u@", "u:p@", ".", ".."]) + host, path),
        (scheme, host + rng.choice(["x", "%", " ", "." + other, ":80", ":", ":80:81", ".", "..."]), path),
        (scheme, host.replace(".", "..", 1), path), (scheme, other, "/" + host + path), (scheme, host, path[:-1]),
        (scheme, host, path + rng.choice(["x", "/x", "?q=1", "//", *PIECES])), (scheme, host, path + "/seg" * rng.randint(50, 300)),
        (rng.choice(["https://", "ftp://", "javascript:", "//", "http:/", "res://", "RES:", "", scheme + "/"]), host, path),
        tuple(re.sub("[a-z]+", lambda letters: letters[0].upper(), part) for part in (scheme, host, path)),
        (scheme, host[:3] + chr(rng.choice([*range(1, 32)] * 8 + [0xE9])) + host[3:], path)])


def numeric(rng, address):
    """A numeric spelling of a dotted address, now and then of something that is nearly one."""
    count = rng.randint(1, 4)
    values = [int(part) for part in address.split(".")]
    values[count - 1:] = [int.from_bytes(bytes(values[count - 1:]), "big") + rng.choice([0] * 9 + [1 << 8 * (5 - count)])]
    parts = [rng.choice([f"{value}", f"0{value:o}", f"0x{value:x}", f"0X00{value:X}"]) for value in values]
    parts[rng.randrange(count)] += rng.choice([""] * 30 + ["9", "g", "+"])
    return ".".join(parts) + rng.choice([""] * 30 + [".", ".0.0.0", " ", " x", "\v.1", "\f", "\x08", "\xa0", ". "])


def make_entries(rng, addresses):
    entries = [("http://twice.test/b", "1", "passed over"), ("http://twice.test/%62", "2", "spelled otherwise")]
    entries += [(url, "2", "fixed") for url in FIXED_ENTRIES]
    for number in range(LINES // 10):
        # Some hosts have hundreds of entries, which the list finds otherwise than a few.
        name = f"{rng.choice(['', '', 'pay.'])}{rng.choice(WORDS)}{rng.randrange(60)}.{rng.choice(TOPS)}"
        name = rng.choice([name] * 3 + ["many.test", "www.many.test", "Many.test:80"])
        host = rng.choices([name, rng.choice(addresses), name + ":80", "u@" + name, name + ".", "." + name, "%41" + name],
                           [60, 20, 2, 2, 2, 2, 2])[0]
        path = "".join(rng.choices(PIECES + WORDS * 3, k=rng.choice([0, 0, 1, 2, 3])))
        url = rng.choice(["http://"] * 12 + ["https://", "HTTP://", "res://", ""]) + host + ("/" + path if path else "")
        entries.append((url + rng.choice(["", "", "/", "///"]), rng.choice(CATEGORIES), f"11/{number}"))
    entries += [(rng.choice(entries)[0], "2", f"again {number}") for number in range(LINES // 200)]
    for number, text in enumerate(NO_NUMBERS):  # on hosts of their own, since one makes its whole list fail
        entries += [(f"http://trap{number}.spoilt.test/{path}", category, path)
                    for path, category in (("first", "2"), ("odd", text), ("last", "2"))]
    # Hosts with bytes above 127: one at a fourth place, which the table refuses, and one not.
    return entries + [(f"http://{start}\xe9{number}.test", "2", "high") for number in range(60) for start in ("abc", "a")]


def make_requests(rng, entries, addresses):
    targets = [re.fullmatch(r"((?:\w+://)?)([^/]*)(.*)", url_decode(lower(url)), re.S).groups()
               for url, _, _ in entries if len(url) < 1000]
    for _ in range(LINES):
        parts = rng.choice(targets)
        if re.fullmatch(r"(\d{1,3}\.){3}\d{1,3}", parts[1]) and rng.random() < 0.7:
            parts = (parts[0], rng.choice(["", "", "u@"]) + numeric(rng, parts[1]) + rng.choice(["", "", ":80"]), parts[2])
        parts = changed(rng, *changed(rng, *parts)) if rng.random() < 0.3 else changed(rng, *parts)
        # As typed: with the escapes that it needs (or nearly), and with some that it does not need.
        needed, share = rng.choice(["\t\n\0"] + ["\t\n\0%+"] * 9), rng.choice([0, 0, 0.03, 0.3, 1])
        url = "".join(f"%{ord(byte):{rng.choice(['02x', '02X'])}}" if byte in needed or rng.random() < share else byte
                      for byte in "".join(parts))
        listed = " ".join(rng.choice([rng.choice(addresses), numeric(rng, rng.choice(addresses)), "", "\xe9", "http://1.2.3.4"])
                          for _ in range(rng.choice([0, 0, 0, 1, 2, 3])))
        handle = rng.choice(HANDLES)
        odd = ["", f"{rng.choice(NO_HANDLES)}\tCheck\t{url}", handle, handle + "\tCheck", f"{handle}\tcheck\t{url}"]
        # A line never ends in a carriage return, which would belong to its end.
        yield rng.choice(odd) if rng.random() < 0.05 else f"{handle}\tCheck\t{url}\t{listed}{rng.choice(['', '', chr(9) + 'x'])}"
    yield from (f"1\tCheck\t{url}" for url in FIXED_URLS)


def main():
    rng = random.Random(int("".join(sys.argv[2:3]) or "20051130"))
    addresses = [".".join(str(rng.choice([rng.randrange(256), rng.randrange(12), 0])) for _ in range(4)) for _ in range(120)]
    entries = make_entries(rng, addresses)
    lines = [line + "x" if line.endswith("\r") else line for line in make_requests(rng, entries, addresses)]
    to_bytes = lambda rows: "".join(row + "\n" for row in rows).encode("latin-1")
    with tempfile.TemporaryDirectory() as folder:
        sites = pathlib.Path(folder) / "list"
        sites.write_bytes(to_bytes("\t".join(entry) for entry in entries))
        done = subprocess.run([sys.argv[1], "check", "--list", sites], input=to_bytes(lines), capture_output=True, check=True)
    replies = done.stdout.decode("latin-1").split("\n")[:-1]
    noted = [int(number) for number in re.findall(r"^tbtool: line (\d+): ", done.stderr.decode("latin-1"), re.M)]
    sites = SiteList(entries)
    right = [answers(sites, line) for line in lines]
    wrong = [(line, reply, due) for line, reply, due in zip(lines, replies, right) if reply not in (due or [""])]
    for line, reply, due in wrong[:20]:
        print(f"{line[:300]!r} of {len(line)} bytes\n  got      {reply!r}\n  expected {due}")
    # One negative key in 1024 is a multiple of 1024 and serves; a table that refuses hardly any of them is wrong.
    count = Counter("silent" if not due else "open" if len(due) > 1 else "ok" if due == ["OK"] else "sure" for due in right)
    served = sum(len(due) > 1 and reply == due[0] for reply, due in zip(replies, right))
    print(f"{len(lines)} lines, {len(wrong)} different, {dict(count)}, {served} of the open not refused")
    fine = not wrong and len(replies) == len(lines) and noted == [n for n, due in enumerate(right, 1) if not due]
    sys.exit(not (fine and served * 10 <= count["open"] and min(count.values()) > 50))


if __name__ == "__main__":
    main()
