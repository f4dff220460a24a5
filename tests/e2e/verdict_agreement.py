#!/usr/bin/env python3
"""Compares `tbtool check` with the model in verdict_rules.py, line by line, over a site list and requests that
verdict_cases.py makes from a fixed seed. Exit status 1 when a reply differs, or when a rule of the model or a kind of
request was never exercised.

    verdict_agreement.py [--tbtool PATH] [--seed N] [--lines N] [--keep DIR]
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile
from collections import Counter

import verdict_rules as rules
from verdict_cases import WAYS, Cases

SHOWN = 20


def check_worked_examples():
    """The model itself against examples that were worked out by hand; an error here is an error of the model."""
    for text, decoded in [("100%", "100%"), ("a%41b", "aAb"), ("a+b", "a b"), ("%2541", "%41"), ("+%2B", " +"),
                          ("%%41", "%A"), ("%4", "%4"), ("%zz%41", "%zzA"), ("%E9", "\xe9"), ("a%00b", "a\0b")]:
        assert rules.url_decode(text) == decoded, text
    for url, normal in [
            ("http://3232235777/", "http://192.168.1.1"), ("http://0xC0.0xA8.0x01.0x01/a/", "http://192.168.1.1/a"),
            ("http://0300.0250.1.1", "http://192.168.1.1"), ("http://127.1/x", "http://127.0.0.1/x"),
            ("http://10.1.515", "http://10.1.2.3"), ("http://10.66051", "http://10.1.2.3"), ("http://0", "http://0.0.0.0"),
            ("http://010.1.2.3:8080/", "http://8.1.2.3:8080"), ("http://user:pw@2130706433/p", None),
            ("http://user@2130706433:8080/p/", "http://user@127.0.0.1:8080/p"), ("res://a/b/", None),
            ("http://user:pw@2130706433:80/p", "http://user:pw@127.0.0.1:80/p"), ("ftp://x/", "http://ftp://x"),
            ("http://a?u=1@2130706433", "http://a?u=1@127.0.0.1"), ("evil.example", "http://evil.example"),
            ("HTTP://EVIL.Example///", "HTTP://EVIL.Example"), ("", "http:"), ("/", "http:"), ("http://", "http:"),
            ("http.example/", "http.example")]:
        assert rules.normalize_ip(url) == (url if normal is None else normal), url
    for host in ["08.1.2.3", "1.2.3.256", "1.2.3.4.", "1.2.3.4.5", "256.1", "1.16777216", "4294967295", "4294967296",
                 "255.255.255.255", "[::1]:80"]:
        assert rules.normalize_ip("http://" + host) == "http://" + host, host
    assert rules.join_labels(["", "", "a", "b"]) == "a.b" and rules.join_labels(["a", "", "b"]) == "a..b"
    assert rules.join_labels(["a", "b", ""]) == "a.b." and rules.join_labels([]) == ""

    sites = rules.SiteList([("http://www.evil.example", "1", "x"), ("http://evil.example/offer", "2", "d"),
                            ("HTTP://Cap.Example/a%2FB/", "2", "c"), ("http://cap.example/%41", "2", "never"),
                            ("http://odd.example", "9", "o"), ("http://10.1.2.3", "2", "ip")])
    verdict = rules.Verdict(sites)
    hit = lambda validated: [f"Validated: {validated}  (Category: Banking or Credit Card Spoof)"]
    for rest, right in [
            ("Check\thttp://www.evil.example/offer/x", hit("d")), ("Check\thttp://evil.example/offers", hit("d")),
            ("Check\thttps://evil.example/offer", ["OK"]), ("Check\thttp://evil.example?x", ["OK"]),
            ("Check\thttp://evil.example:80/offer", ["OK"]), ("Check\thttp://u@www.evil.example/offer", hit("d")),
            ("Check\thttp://..evil.example/offer", hit("d")), ("Check\thttp://evil.example./offer", ["OK"]),
            ("Check\thttp://evil.example/%6Fffer", hit("d")), ("Check\thttp://CAP.example/A/b", hit("c")),
            ("Check\thttp://cap.example/A", ["OK"]), ("Check\thttp://odd.example/", ["OK"]), ("Check\t", ["OK"]),
            ("Check\thttp:///x", ["OK"]), ("Check\t0xa.66051", hit("ip")), ("Check\ta.test\t 9.9.9.9  10.1.2.3", hit("ip")),
            ("Check\ta.test\t   ", ["OK"]), ("Check\ta.test\t10.66051", ["OK"]), ("Check", [""]), ("Nope\tx", [""]),
            ("Check\thttp://evil.example/offer\t\tfifth", hit("d")), ("Allow\tEVIL.example/", [""]),
            ("Check\thttp://www.evil.example/offer", ["OK"]), ("Allow\thttp://cap.example/%2541", [""]),
            ("Check\thttp://cap.example/a/b", hit("c"))]:
        assert verdict.answer("7\t" + rest) == right, rest
    for line in ["", "TBWAKEUP", "tbwakeup", "TBWAKEUP\tCheck\tx", "2147483648\tCheck\tx", "60Days\tCheck\tx"]:
        assert verdict.answer(line) == [], line
    rules.seen.clear()


def run_tool(tool, cases, lines, folder):
    """Writes list and requests into folder and returns the replies and the notes of the tool, as lines."""
    to_bytes = lambda rows: "".join(row + "\n" for row in rows).encode("latin-1")
    (folder / "list.txt").write_bytes(to_bytes("\t".join(entry) for entry in cases.entries))
    (folder / "requests.txt").write_bytes(to_bytes(line for _, line in lines))
    with open(folder / "requests.txt", "rb") as requests:
        done = subprocess.run([tool, "check", "--list", folder / "list.txt"], stdin=requests, capture_output=True, timeout=300)
    (folder / "replies.txt").write_bytes(done.stdout)
    (folder / "notes.txt").write_bytes(done.stderr)
    if done.returncode:
        sys.exit(f"{tool} check ended with status {done.returncode}: {done.stderr[-500:]!r}")
    return tuple(text.decode("latin-1").split("\n")[:-1] for text in (done.stdout, done.stderr))


def clipped(text):
    return repr(text) if len(text) < 400 else f"{text[:150]!r} ... {text[-150:]!r} ({len(text)} bytes)"


def compare(cases, lines, replies, notes):
    """Prints what differs and what was counted; returns the complaints."""
    verdict = rules.Verdict(rules.SiteList(cases.entries))
    count, outcomes, silent, complaints = Counter(), {}, set(), []
    for number, ((kind, line), reply) in enumerate(zip(lines, replies), 1):
        right = verdict.answer(line)
        if not right:
            silent.add(number)
        count["silent" if not right else "ok" if reply == "OK" else "blocked" if reply else "empty"] += 1
        if reply not in (right or [""]):
            count["different"] += 1
            if count["different"] <= SHOWN:
                print(f"line {number} ({kind}): {clipped(line)}\n  got      {reply!r}\n  expected {right}")
        if len(right) > 1:
            count["open"] += 1
            count["open and not refused"] += reply == right[0]
        outcomes.setdefault(kind, set()).add("pass" if reply in ("OK", "") else "block")
    print(", ".join(f"{value} {key}" for key, value in [("lines", len(lines)), *sorted(count.items())]))

    if len(replies) != len(lines):
        complaints.append(f"{len(lines)} lines got {len(replies)} replies")
    if count["different"]:
        complaints.append(f"{count['different']} replies differ")
    noted = [int(match[1]) for match in (re.match(r"tbtool: line (\d+): ", text) for text in notes) if match]
    if sorted(noted) != sorted(silent):
        complaints.append(f"{len(silent)} lines get no reply, {len(noted)} notes say so; not of both: "
                          f"{sorted(silent.symmetric_difference(noted))[:SHOWN]}")
    # One negative key in 1024 is a multiple of 1024 and serves; a table that refuses hardly any of them is wrong.
    if count["open and not refused"] * 10 > count["open"] or not count["open"]:
        complaints.append(f"{count['open and not refused']} of {count['open']} hosts with a negative key were not refused")
    complaints += [f"never met: {event}" for event in sorted(rules.EVENTS - set(rules.seen))]
    complaints += [f"never {way}: {kind}" for kind, ways in WAYS.items() for way in sorted(ways - outcomes.get(kind, set()))]
    return complaints


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--tbtool", default="build/native/bin/tbtool", type=pathlib.Path)
    parser.add_argument("--seed", default=20051130, type=int)
    parser.add_argument("--lines", default=40000, type=int)
    parser.add_argument("--keep", type=pathlib.Path, help="leave list, requests, replies and notes in this folder")
    options = parser.parse_args()

    check_worked_examples()
    cases = Cases(options.seed, options.lines)
    lines = cases.requests(options.lines)
    with tempfile.TemporaryDirectory() as scratch:
        folder = options.keep or pathlib.Path(scratch)
        folder.mkdir(parents=True, exist_ok=True)
        complaints = compare(cases, lines, *run_tool(options.tbtool, cases, lines, folder))
    for complaint in complaints:
        print(complaint)
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
