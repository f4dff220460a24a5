"""Site list entries and request lines for the verdict comparison, made from a seed.

Random URLs start from an entry of the list and are changed a little, so that about half of them are near the border
between a hit and a miss. Text is a str that holds one windows-1252 byte per character.
"""

import random
import re

import verdict_rules as rules

WORDS = ["evil", "bank", "pay", "login", "secure", "a", "my-bank", "http", "https-x", "www", "x1", "res"]
TOPS = ["test", "example", "co.test", "invalid"]
# Pieces of a path as they are typed: some decode alike, some nearly alike, some not at all.
PIECES = ["%", "%zz", "%ZZ", "%4", "%%41", "%2541", "%41", "%61", "A", "a", "%2f", "%2F", "+", "%2b", "%20", " ", "%00",
          "%e9", "%E9", "%c9", "\xe9", "\xc9", "%8a", "\x9a", "\xdf", "\xd7", "\xf7", "%9F", "\xff", "\x01", "\rx", "%0a",
          "%09", "?", "&", "=1", "#", ":", "@", ".", "\\", "%-1", "% 1", "%+1", "%1g", "%&h"]
CATEGORIES = ["2"] * 16 + ["1"] * 4 + ["1.0", " 1 ", "01", "2.0", "02", " 2", "3", "77", "-1"]
NO_NUMBERS = ["", " ", "abc", "1x", "2 2", "nan", "inf", "0x1", "2;", "--1"]
HANDLES = ["65552"] * 9 + ["1", "0", "-7", " 42 ", "007", "2147483647", "-2147483648"]
NO_HANDLES = ["", " ", "x", "60Days", "34-56", "12 34", "2147483648", "-2147483649", "99999999999999999999", "0x10",
              "--1", "tbwakeup", "TBWAKEUP ", "\xe9", "4.x"]
NO_COMMANDS = ["check", "CHECK", " Check", "Check ", "Nope", "", "allow"]

# What chance would not hit upon: the limits, the degenerate URLs, the ends of the address range.
LONG_LABEL = "b" * (rules.LONGEST - len(".deep.test"))
FIXED_PASSED_OVER = ["http://twice.test/b"]  # of category 1; the same site follows in category 2, spelled otherwise
FIXED_ENTRIES = [
    "http://twice.test/%62", "http://0.0.9", "http://0.0.9:80", "http://0.0.9:80:81",
    "http://0.0.0.0", "http://0.0.0.0:80", "http://255.255.255.255", "http://0.0.0.1", "http://deep.test", "http:///x",
    "http://3232235777/x", "http://2.3/x", "http://ftp://inner.test", "http:%2f%2fhidden.test%2fx/", "evil.test", "/",
    "http://", "http://.front.test", "http://solo", "http:// ", "http://u:p@127.1", "http://cut.test%2f",
    "http://fits.test/" + "p" * (rules.LONGEST - 17 - len("\t2\tfixed")), "HTTP://Big.Test/A%2FB/", "res://page.test/x",
    "http://over.test/" + "p" * (rules.LONGEST - 16 - len("\t2\tfixed")), "http://" + LONG_LABEL + ".deep.test/x",
]
FIXED_URLS = [
    "twice.test/b", "http://u@v@2130706441/", "http://u:p@2130706441:80", "http://u@2130706441:80:81",
    "", "/", "http://", "http:///x", "http://.", "http://..", "http://:80/", "http://@:80", "http:// /", "http://+/",
    "4294967295", "http://255.255.255.255/", "037777777777", "0xffffffff", "256.0xffffff", "0", "00", "0.0", "0x0:80",
    "4294967296", "4294967297", "1", "http://u:p@127.1/", "http://u:p@1:80/", "http://u@1/", "http://evil.test?u=1@1",
    "[::1]:80", "ftp://inner.test/x", "hidden.test/x", "front.test", ".front.test", "solo", "a.solo", "cut.test/",
    "cut.test/x", "res://page.test/x/", "RES://page.test/x", "big.test/a/b", "http://x.big.test/A%2fb/c",
    *("http://fits.test/" + "p" * (rules.LONGEST - 17 - len("\t2\tfixed") + more) for more in (-1, 0, 1)),
    "http://over.test/" + "p" * 40000, f"http://{LONG_LABEL}.deep.test/y", f"http://b{LONG_LABEL}.deep.test/y",
    *("http://" + "." * count + "deep.test" for count in (rules.LONGEST - 1, rules.LONGEST)),
    "http://deep.test" + "/x" * 20000, "http://deep.test" + "/" * 40000, "%" * 30000, "http://deep.test/%" + "%4" * 9000,
]


def upper(text):
    return re.sub("[a-z]+", lambda letters: letters.group().upper(), text)


def change_url(kind, rng, scheme, host, path):
    """One change of a URL by its name; an unknown name changes nothing."""
    other = f"{rng.choice(WORDS)}.{rng.choice(TOPS)}"
    return {
        "label in front": (scheme, rng.choice(["www.", "a.b.", other + "."]) + host, path),
        "letters in front": (scheme, rng.choice(["x", "-", "http"]) + host, path),
        "letters behind": (scheme, host + rng.choice(["x", "-", "%", " "]), path),
        "look-alike": (scheme, host + "." + other, path),
        "host in path": (scheme, other, "/" + host + path),
        "user": (scheme, rng.choice(["u@", "@", "u@v@", "u@www."]) + host, path),
        "user and password": (scheme, "u:p@" + host, path),
        "port": (scheme, host + rng.choice([":80", ":", ":8080", ":80:81"]), path),
        "trailing dot": (scheme, host + "." * rng.randint(1, 3), path),
        "leading dots": (scheme, "." * rng.randint(1, 3) + host, path),
        "inner dots": (scheme, host.replace(".", "..", 1), path),
        "longer path": (scheme, host, path + rng.choice(["x", "/x", "?q=1", "/index.html", "%", "///x"])),
        "shorter path": (scheme, host, path[:-1]),
        "long path": (scheme, host, path + "/seg" * rng.randint(50, 300)),
        "slashes behind": (scheme, host, path + "/" * rng.randint(1, 3)),
        "slash before host": (scheme + "/", host, path),
        "https": ("https://", host, path),
        "other scheme": (rng.choice(["ftp://", "javascript:", "file:///", "//", "http:/", "httpx://"]), host, path),
        "res": (rng.choice(["res://", "RES://", "res:"]), host, path),
        "no scheme": ("", host, path),
        "upper case": (upper(scheme), upper(host), upper(path)),
        "odd byte": (scheme, host, path + chr(rng.choice([*range(1, 32), *range(127, 256)]))),
        "odd byte in host": (scheme, host[:3] + chr(rng.choice([*range(1, 32)] * 8 + [0xE9])) + host[3:], path),
        "odd piece": (scheme, host, path + rng.choice(PIECES)),
    }.get(kind, (scheme, host, path))


PLAIN = ["none"] * 4 + ["typed as stored"] * 2
NUMERIC = ["numeric"] * 4 + ["numeric broken"] * 2
CHANGES = ["label in front", "letters in front", "letters behind", "look-alike", "host in path", "user",
           "user and password", "port", "trailing dot", "leading dots", "inner dots", "longer path", "shorter path",
           "long path", "slashes behind", "slash before host", "https", "other scheme", "res", "no scheme",
           "upper case", "odd byte", "odd byte in host", "odd piece"]
# What each kind of request must have led to at least once; of some, a hit is rare or impossible.
MISSES = {"letters behind", "look-alike", "trailing dot", "host in path", "other scheme", "port", "slash before host",
          "odd byte in host", "res", "wake-up", "empty", "bad first field", "missing field", "unknown command", "Allow"}
WAYS = {kind: {"pass"} if kind in MISSES else {"pass", "block"}
        for kind in [*PLAIN, *NUMERIC, *CHANGES, *MISSES, "fixed", "address list", "five fields", "empty list"]}


class Cases:
    def __init__(self, seed, lines):
        self.rng = random.Random(seed)
        self.addresses = [".".join(str(self.rng.choice([self.rng.randrange(256), self.rng.randrange(12), 0]))
                                   for _ in range(4)) for _ in range(lines // 400 + 20)]
        self.entries = [(url, "1", "fixed") for url in FIXED_PASSED_OVER] + [(url, "2", "fixed") for url in FIXED_ENTRIES]
        self.entries += [self.entry(n) for n in range(lines // 10)]
        self.entries += [(self.rng.choice(self.entries)[0], "2", f"again {n}") for n in range(lines // 200)]
        for n, text in enumerate(NO_NUMBERS):  # on hosts of their own, since one such entry makes its whole list fail
            self.entries += [(f"http://trap{n}.spoilt.test/{path}", category, f"trap {n} {path}")
                             for path, category in (("first", "2"), ("odd", text), ("last", "2"))]
        for n in range(60):  # hosts with bytes above 127: one at a fourth place, which the table refuses, and one not
            self.entries += [(f"http://abc\xe9{n}.test", "2", f"high {n}"), (f"http://a\xe9{n}.test", "2", f"low {n}")]
        decoded = [rules.url_decode(rules.lower(url)) for url, _, _ in self.entries if len(url) < 1000]
        self.targets = [re.fullmatch(r"((?:\w+://)?)([^/]*)(.*)", url, re.S).groups() for url in decoded]
        self.numbers = [target for target in self.targets if re.fullmatch(r"(\d{1,3}\.){3}\d{1,3}(:\d+)?", target[1])]

    def name(self):
        first = f"{self.rng.choice(WORDS)}{self.rng.randrange(60)}"
        return ".".join(self.rng.choices(WORDS, k=self.rng.choice([0, 0, 1])) + [first, self.rng.choice(TOPS)])

    def path(self):
        pieces = self.rng.choices(PIECES + WORDS * 3, k=self.rng.choice([0, 0, 0, 1, 1, 2, 3]))
        return ("/" + "".join(pieces)) if pieces else ""

    def entry(self, number):
        rng, name, address = self.rng, self.name(), self.rng.choice(self.addresses)
        hosts = [(60, name), (20, address), (2, str(rng.getrandbits(32))), (2, address + ":8080"), (2, name + ":80"),
                 (2, "u@" + name), (2, rng.choice(WORDS)), (2, name + "."), (1, "." + name),
                 (1, "%4" + rng.choice("1bC") + name), (2, name.replace("a", "%61").replace("e", "%65"))]
        scheme = rng.choices(["http://", "https://", "HTTP://", "res://", ""], [80, 8, 4, 4, 1])[0]
        url = scheme + rng.choices([host for _, host in hosts], [weight for weight, _ in hosts])[0] + self.path()
        url = upper(url) if rng.random() < 0.05 else url + "/" * rng.choice([0, 0, 0, 1, 3])
        return url, rng.choice(CATEGORIES), f"{rng.choice(['', ' ', 'on '])}11/{number}{rng.choice(['', ' ', ' 2005'])}"

    def numeric(self, address, broken):
        """A numeric spelling of a dotted address, or of something that is nearly one."""
        rng, count = self.rng, self.rng.randint(1, 4)
        values = [int(part) for part in address.split(".")]
        values[count - 1:] = [int.from_bytes(bytes(values[count - 1:]), "big")]
        slip = rng.choice(["over", "digit", "tail", "front", "twice", "five"]) if broken else ""
        if slip == "over":
            place = rng.randrange(count)
            values[place] += 1 << 8 * (5 - count if place == count - 1 else 1)
        parts = []
        for value in values:
            zeros = "0" * rng.choice([0, 0, 1, 2, 12])
            parts.append(rng.choice([f"{value}", f"{value}", f"0{zeros}{value:o}", f"0x{zeros}{value:x}",
                                     f"0X{zeros}{value:X}"]))
        if slip == "digit":
            parts[rng.randrange(count)] = rng.choice(["08", "019", "0x1g", "1a", "+1", "-1", ""])
        if slip == "five":
            parts += ["0"] * (5 - count)
        text = (rng.choice([".", " "]) if slip == "front" else "") + ".".join(parts)
        text = text.replace(".", "..", 1) if slip == "twice" else text
        return text + rng.choice([".", " ", "\0", " x", "x", "\xa0", "\r"] if slip == "tail" else [""])

    def url(self):
        rng = self.rng
        kind = rng.choice(PLAIN + NUMERIC + CHANGES)
        if kind == "typed as stored":
            return kind, rng.choice(self.entries[len(FIXED_PASSED_OVER + FIXED_ENTRIES):])[0]
        scheme, host, path = rng.choice(self.targets) if rng.random() < 0.95 else ("http://", self.name(), self.path())
        if kind in NUMERIC:
            scheme, host, path = rng.choice(self.numbers)
            address, colon, port = host.partition(":")
            host = rng.choice(["", "", "", "u@"]) + self.numeric(address, kind == "numeric broken") + colon + port
        parts = change_url(kind, rng, scheme, host, path)
        if rng.random() < 0.2:
            parts = change_url(rng.choice(CHANGES), rng, *parts)
        return kind, self.escaped("".join(parts))

    def escaped(self, url):
        """A decoded URL as typed: with the escapes that it needs (or nearly), and with some that it does not need."""
        rng, share = self.rng, self.rng.choice([0, 0, 0.03, 0.3, 1])
        needed = "\t\n\0" if rng.random() < 0.1 else "\t\n\0%+"
        return "".join(f"%{ord(byte):{rng.choice(['02x', '02X'])}}" if byte in needed or rng.random() < share else byte
                       for byte in url)

    def address_list(self):
        rng = self.rng
        listed = lambda: re.sub("[\t\n\0 ]", "", "".join(rng.choice(self.targets)[1:]))
        makers = [lambda: rng.choice(self.addresses)] * 4 + [
            listed, lambda: upper(listed()), lambda: "", lambda: "10.0.0." + str(rng.randrange(256)),
            lambda: self.numeric(rng.choice(self.addresses), False), lambda: rng.choice(["http://1.2.3.4", "%41", "\xe9", ".", "/"])]
        return " ".join(rng.choice(makers)() for _ in range(rng.choice([0, 1, 1, 2, 3, 4])))

    def line(self):
        """A kind and a request line of that kind."""
        rng, handle = self.rng, self.rng.choice(HANDLES)
        kind, url = self.url()
        odd = [("empty", ""), ("wake-up", "TBWAKEUP"), ("bad first field", f"{rng.choice(NO_HANDLES)}\tCheck\t{url}"),
               ("bad first field", "TBWAKEUP\t"), ("missing field", handle + rng.choice(["", "\tCheck", "\tAllow"])),
               ("unknown command", "\t".join([handle, rng.choice(NO_COMMANDS), url])),
               ("Allow", f"{handle}\tAllow\t{url}")]
        listed = self.address_list()
        fields = [(8, (kind, "")), (1, ("empty list", "\t")), (1, ("empty list", "\t   ")),
                  (4, ("address list", "\t" + listed)), (1, ("five fields", f"\t{listed}\t10.0.0.1")), (1, ("odd", ""))]
        kind, tail = rng.choices([field for _, field in fields], [weight for weight, _ in fields])[0]
        kind, line = rng.choice(odd) if kind == "odd" else (kind, f"{handle}\tCheck\t{url}{tail}")
        return kind, line + "x" if line.endswith("\r") else line  # a carriage return at the end belongs to the line's end

    def requests(self, lines):
        fixed = [("fixed", f"1\tCheck\t{url}") for url in FIXED_URLS]
        made = [self.line() for _ in range(max(lines - len(fixed), 0))]
        for case in fixed:
            made.insert(self.rng.randrange(len(made) + 1), case)
        return made
