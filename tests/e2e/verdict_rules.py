"""The rules of the verdict, told a second time and as plainly as possible.

An independent model of what a request line on the channel is answered: dictionaries and lists, no scrambling, no hash
table. Text is a str that holds one windows-1252 byte per character (files are read and written as latin-1).

The scrambling key is unknown here, so two things cannot always be foretold; both leave `sure` False in SiteList.find:
- A host's scrambled key is a negative number when an odd count of its bytes at every fourth place is 128 or more. The
  table then refuses it, unless the number happens to be a multiple of 1024.
- Scrambled keys are folded to upper case, so hosts that differ only in the bit 0x20 may share one list. That shows only
  when the other host's entry has a category that is no number.
"""

import re
from collections import Counter, defaultdict

CATEGORY_NAMES = {"1": "General", "2": "Banking or Credit Card Spoof"}
LONGEST = 32767  # lengths and positions of scrambled text and of labels are 16-bit signed

# What a run can come across. A run that never meets one of these has not tested it.
EVENTS = {
    "line: empty", "line: wake-up", "line: first field",
    "command: Allow", "override: covers", "command: unknown", "command: missing field",
    "decode: escape", "decode: plus", "decode: literal percent", "decode: NUL",
    "normalize: res", "normalize: scheme added", "normalize: no authority", "normalize: negative host",
    "normalize: empty host", "normalize: 1 part", "normalize: 2 parts", "normalize: 3 parts", "normalize: 4 parts",
    "normalize: all ones", "normalize: rewritten",
    "add: no host part", "add: empty host", "add: too long", "add: duplicate",
    "find: no host part", "find: empty suffix", "find: long suffix", "find: many labels", "find: whole host",
    "find: parent", "find: later entry", "find: category 1", "find: category unknown", "find: category no number",
    "find: capital above 127", "find: negative key",
    "address: hit", "address: skipped empty", "address: not read",
}
seen = Counter()


def note(event):
    assert event in EVENTS, event
    seen[event] += 1


def split(text, separator):
    return text.split(separator) if text else []


def _lower_of(code):
    """The lower-case letter of the code page, or the code itself where the page has none."""
    try:
        return ord(bytes([code]).decode("cp1252").lower().encode("cp1252"))
    except UnicodeError:
        return code


LOWER = {code: _lower_of(code) for code in range(256)}


def lower(text):
    return text.translate(LOWER)


def url_decode(text):
    def one(match):
        piece = match.group()
        note("decode: plus" if piece == "+" else "decode: escape" if len(piece) == 3 else "decode: literal percent")
        if len(piece) < 3:
            return {"+": " ", "%": "%"}[piece]
        if piece == "%00":
            note("decode: NUL")
        return chr(int(piece[1:], 16))

    return re.sub(r"%[0-9A-Fa-f]{2}|[%+]", one, text)


def inet_addr(text):
    """The address as a number, None when the text is none (as 255.255.255.255, the value that means failure)."""
    parts = text.split(".")
    values = []
    for part in parts:
        if re.fullmatch("0[xX][0-9A-Fa-f]+", part):
            values.append(int(part[2:], 16))
        elif re.fullmatch("0[0-7]*", part):
            values.append(int(part, 8))
        elif re.fullmatch("[1-9][0-9]*", part):
            values.append(int(part))
        else:
            return None
    if len(values) > 4 or any(value > 255 for value in values[:-1]) or values[-1] >= 1 << 8 * (5 - len(values)):
        return None
    address = sum(value << 8 * (3 - place) for place, value in enumerate(values[:-1])) + values[-1]
    note("normalize: all ones" if address == 0xFFFFFFFF else f"normalize: {len(parts)} part{'s'[:len(parts) > 1]}")
    return None if address == 0xFFFFFFFF else address


def normalize_ip(url):
    if lower(url[:4]) == "res:":
        note("normalize: res")
        return url
    if lower(url[:4]) != "http":
        note("normalize: scheme added")
        url = "http://" + url
    while url.endswith("/") and len(url) > 1:
        url = url[:-1]
    parts = url.split("/")
    if len(parts) < 3:
        note("normalize: no authority")
        return url
    authority = parts[2]
    start = authority.rfind("@") + 1
    end = authority.rfind(":") if ":" in authority else len(authority)
    if end <= start:
        note("normalize: negative host" if end < start else "normalize: empty host")
        return url
    address = inet_addr(authority[start:end])
    if address is None:
        return url
    dotted = ".".join(str(address >> shift & 255) for shift in (24, 16, 8, 0))
    parts[2] = authority[:start] + dotted + authority[end:]
    if "/".join(parts) != url:
        note("normalize: rewritten")
    return "/".join(parts)


def number_of(category):
    """The number that a category's text stands for, None where the conversion fails."""
    text = category.strip(" ")
    return float(text) if re.fullmatch(r"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)", text) else None


def join_labels(labels):
    """Joined with dots; empty labels in front vanish together with their dots."""
    first = next((place for place, label in enumerate(labels) if label), len(labels))
    return ".".join(labels[first:])


def is_negative_key(host):
    return sum(byte >= "\x80" for byte in host[3::4]) % 2 == 1


def folded(host):
    return "".join(chr(ord(byte) & ~0x20) for byte in host)


class SiteList:
    def __init__(self, entries=()):
        self.entries_of = defaultdict(list)  # host -> [(url as stored, category, validated)], in order of arrival
        self.spoilt = defaultdict(set)  # folded host -> hosts with a category that is no number
        for entry in entries:
            self.add(*entry)

    def add(self, url, category, validated):
        clean = lower(url)
        while clean.endswith("/") and len(clean) > 1:
            clean = clean[:-1]
        parts = split(url_decode(clean), "/")
        if len(parts) < 3:
            return note("add: no host part")
        if not parts[2]:
            return note("add: empty host")
        if len("\t".join((clean, category, validated))) > LONGEST:
            return note("add: too long")
        if any(clean == known for known, _, _ in self.entries_of[parts[2]]):
            return note("add: duplicate")
        self.entries_of[parts[2]].append((clean, category, validated))
        if number_of(category) is None:
            self.spoilt[folded(parts[2])].add(parts[2])

    def find(self, url):
        """(hit, sure): hit is (category name, validated) or None; without sure, None is possible as well."""
        parts = split(lower(url), "/")
        if len(parts) < 3:
            note("find: no host part")
            return None, True
        labels = split(parts[2], ".")
        sure = True
        for first in range(max(len(labels) - 2, 0) + 1):
            if len(labels) - 1 > LONGEST:
                note("find: many labels")
                return None, sure
            suffix = join_labels(labels[first:])
            if not 0 < len(suffix) <= LONGEST:
                note("find: long suffix" if suffix else "find: empty suffix")
                return None, sure
            if is_negative_key(suffix):
                note("find: negative key")
                sure = False
            if self.spoilt[folded(suffix)] - {suffix}:
                sure = False
            candidate = "/".join(parts[:2] + [suffix] + parts[3:])
            for place, (clean, category, validated) in enumerate(self.entries_of.get(suffix, ())):
                matches = candidate.startswith(url_decode(clean))
                number = number_of(category)
                if number is None:
                    note("find: category no number")
                    return None, sure
                if not matches or number == 1:
                    if matches:
                        note("find: category 1")
                    continue
                if category not in CATEGORY_NAMES:
                    note("find: category unknown")
                    return None, sure
                note("find: parent" if first else "find: whole host")
                if place:
                    note("find: later entry")
                if any(byte > "\x7f" and byte != lower(byte) for byte in url):
                    note("find: capital above 127")
                return (CATEGORY_NAMES[category], validated), sure
        return None, sure


class Overrides:
    """The user's own: a URL in plain text that covers all that begins with it, its host shortened to a suffix."""

    def __init__(self):
        self.urls_of = defaultdict(list)  # host in lower case -> [url]

    def allow(self, url):
        stored = url_decode(lower(url))
        while stored.endswith("/") and len(stored) > 1:
            stored = stored[:-1]
        if stored[:4] != "http":
            stored = "http://" + stored
        parts = split(stored, "/")
        if len(parts) > 2 and parts[2]:
            self.urls_of[lower(parts[2])].append(stored)

    def covers(self, url):
        """(covered, sure), as SiteList.find."""
        parts = split(lower(url), "/")
        if len(parts) < 3:
            return False, True
        labels = split(parts[2], ".")
        sure = True
        for first in range(max(len(labels) - 2, 0) + 1):
            suffix = join_labels(labels[first:])
            if not suffix or len(labels) - 1 > LONGEST:
                return False, sure
            sure = sure and not is_negative_key(suffix)
            candidate = "/".join(parts[:2] + [suffix] + parts[3:])
            if any(candidate.startswith(url_decode(known)) for known in self.urls_of.get(suffix, ())):
                note("override: covers")
                return True, sure
        return False, sure


def is_reply_window(text):
    return bool(re.fullmatch(" *-?[0-9]+ *", text)) and -(1 << 31) <= int(text) < 1 << 31


class Verdict:
    def __init__(self, sites):
        self.sites = sites
        self.overrides = Overrides()

    def answer(self, line):
        """The replies that are right for a line, first the one that does not lean on a refused or shared key. None at
        all when the channel gives the line no reply."""
        fields = line.split("\t")
        if line == "" or line == "TBWAKEUP" or not is_reply_window(fields[0]):
            note({"": "line: empty", "TBWAKEUP": "line: wake-up"}.get(line, "line: first field"))
            return []
        command = fields[1] if len(fields) > 1 else None
        if command is None or command in ("Check", "Allow") and len(fields) < 3:
            note("command: missing field")
            return [""]
        if command == "Check":
            return self.check(fields[2], fields[3] if len(fields) > 3 else "")
        note("command: Allow" if command == "Allow" else "command: unknown")
        if command == "Allow":
            self.overrides.allow(fields[2])
        return [""]

    def check(self, raw_url, addresses):
        url = normalize_ip(url_decode(raw_url))
        covered, sure = self.overrides.covers(url)
        if covered and sure:
            return ["OK"]
        right = ["OK"] if covered else []
        for place, item in enumerate([url] + split(addresses, " ")):
            if place and not item:
                note("address: skipped empty")
                continue
            hit, sure = self.sites.find("http://" + item if place else item)
            if hit:
                right.append(f"Validated: {hit[1]}  (Category: {hit[0]})")
                if place:
                    note("address: hit")
                elif addresses and sure:
                    note("address: not read")
                if sure:
                    return right
        return right + ["OK"]
