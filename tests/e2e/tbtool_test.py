#!/usr/bin/env python3
"""The operator's tool as its callers use it: replies, notes, exit statuses, one clear line for broken input.

    tbtool_test.py TBTOOL
"""

import base64
import pathlib
import subprocess
import sys
import tempfile
import unittest

TBTOOL = sys.argv.pop(1)
DEPLOYMENT = pathlib.Path(__file__).parents[2] / "deployment"
GOLDEN = pathlib.Path(__file__).parents[2] / "fuzz/corpus/snapshot/TBDB202611010000.BIN"


def run(*words, stdin=b""):
    done = subprocess.run([TBTOOL, *map(str, words)], input=stdin, capture_output=True, timeout=300)
    return done.returncode, done.stdout, done.stderr.decode("latin-1")


class TbtoolTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)

    def tearDown(self):
        self.folder.cleanup()

    def file(self, name, content):
        (self.path / name).write_bytes(content)
        return self.path / name

    def assert_one_line(self, outcome, *words):
        status, output, errors = outcome
        self.assertEqual((status, output), (1, b""), errors)
        self.assertEqual(errors.count("\n"), 1, errors)
        for word in words:
            self.assertIn(word, errors)

    def test_check_answers_line_by_line(self):
        sites = self.file("list", b"http://evil.example\t2\t11/01/2026\r\n\nhttp://b.example/x\t2\t\xe9\n")
        requests = b"1\tCheck\thttp://www.evil.example/\n\nTBWAKEUP\nx\tCheck\n1\tCheck\thttp://b.example/x\n1\tCheck\thttp://ok.example"
        status, output, errors = run("check", "--list", sites, "--stats", stdin=requests)
        self.assertEqual(status, 0)
        self.assertEqual(output.split(b"\n"), [
            b"Validated: 11/01/2026  (Category: Banking or Credit Card Spoof)", b"", b"", b"",
            b"Validated: \xe9  (Category: Banking or Credit Card Spoof)", b"OK", b""])
        notes = errors.splitlines()
        self.assertEqual([note.split(":")[1] for note in notes[:3]], [" line 2", " line 3", " line 4"])
        self.assertRegex(notes[3], r"^entries=2 load_ms=\d+ requests=6 check_ms=\d+$")
        self.assertEqual(len(notes), 4)

    def test_check_with_overrides_and_reference_changes_no_file(self):
        sites = self.file("list", b"http://evil.example\t7\tv\nhttp://two.example\t7\tv\nhttp://odd.example\t8\tv\n")
        text = b"<SiteOverrides>\r\n  <Site>http://evil.example/a?b&c</Site>\r\n</SiteOverrides>\r\n"
        overrides = self.file("SiteOverrides.xml", text)
        plain = b"<R><CATEGORIES><CATEGORY ID='7' NAME='Of this file'/></CATEGORIES></R>"
        urls = [b"evil.example/a?b&c=1", b"evil.example/", b"two.example/", b"odd.example/"]
        requests = b"".join(b"1\tCheck\thttp://%s\n" % url for url in urls)
        blocked = b"Validated: v  (Category: Of this file)"
        for reference in [self.file("plain", plain), self.file("framed", run("frame", stdin=plain)[1])]:
            status, output, errors = run("check", "--list", sites, "--overrides", overrides, "--reference", reference,
                                         stdin=requests + b"1\tAllow\ttwo.example\n" + requests)
            # A category that the document lacks fails the check, and the URL passes.
            before = [b"OK", blocked, blocked, b"OK"]
            self.assertEqual((status, output.split(b"\n"), errors),
                             (0, [*before, b"", b"OK", blocked, b"OK", b"OK", b""], ""))
        self.assertEqual(overrides.read_bytes(), text)

    def test_score(self):
        table = bytes([1, 0, 0, 0, 1, 0, 0, 255]) + b"AA" + bytes([2, 0, 0, 0, 2, 0, 0, 255]) + b"XX" + \
            bytes([255, 255, 255, 254] * 2) + b"ZZ"
        document = (b"<R><COUNTRIES><C ALPHA2='AA' NAME='Aland' WEIGHT='75'/></COUNTRIES><EVILWORDS>-,paypal</EVILWORDS>"
                    b"<GEOIP>\n %s \n</GEOIP></R>" % base64.b64encode(table))
        lines = b"http://www.good.example\t1.0.0.1\nhttp://pay-pal.example/\n\nhttp://x.example\t2.0.0.1\nhttp://1.2.3.4/\t9.9.9.9"
        for reference in [self.file("plain", document), self.file("framed", run("frame", stdin=document)[1])]:
            status, output, errors = run("score", "--reference", reference, stdin=lines)
            self.assertEqual((status, output), (0, b"4.1667\tAland\n3.6667\t\n2.0000\t\n\n6.3333\t\n"))
            self.assertRegex(errors, r"^tbtool: line 4: no score: .+\n$")
            home = run("score", "--reference", reference, "--home", "Aland", stdin=lines)[1]
            self.assertEqual(home.split(b"\n")[0], b"2.6667\tAland")

    def make_reference(self, base, table, *words):
        done = subprocess.run([sys.executable, DEPLOYMENT / "make_reference.py", base, self.path / "new", "--addresses",
                               table, *words], capture_output=True, text=True, timeout=300)
        return done.returncode, done.stderr

    def test_a_reference_document_is_made_of_a_list_of_addresses(self):
        bundled = DEPLOYMENT / "local/reference.xml"
        self.assertEqual(self.make_reference(bundled, DEPLOYMENT / "local/addresses.csv"), (0, ""))
        self.assertEqual((self.path / "new").read_bytes(), bundled.read_bytes())
        base = self.file("base", b"<R>\n</R>\n")
        table = self.file("table", b"1.0.0.2,1.0.0.3,QQ\n1.0.0.0,1.0.0.1,XA\n254.255.255.255,254.255.255.255,XA\n")
        names = self.file("names", b"# names\nXA\tA & 'B'\t12.5\n")
        self.assertEqual(self.make_reference(base, table, "--countries", names),
                         (0, "make_reference: no name for QQ; it is called by its code\n"))
        addresses = {"0.255.255.255": b"", "1.0.0.0": b"A & 'B'", "0x1000001": b"A & 'B'", "16777218": b"QQ", "1.0.0.3": b"QQ",
                     "1.0.0.4": b"", "254.255.255.254": b"", "254.255.255.255": b"A & 'B'"}
        lines = "".join(f"http://x.example/\t{address}\n" for address in addresses).encode()
        scored = run("score", "--reference", self.path / "new", stdin=lines)[1].splitlines()
        self.assertEqual([line.split(b"\t")[1] for line in scored], list(addresses.values()))
        (self.path / "new").unlink()
        for content in [b"1.0.0.0,1.0.0.9,XA\n1.0.0.9,1.0.1.0,XB\n", b"1.0.0.0,1.0.0,XA\n", b"1.0.0.1,1.0.0.0,XA\n",
                        b"1.0.0.0,1.0.0.0,xa\n", b"255.0.0.0,255.0.0.1,XA\n", b"1.0.0.0,1.0.0.1\n"]:
            status, errors = self.make_reference(base, self.file("bad", content))
            self.assertEqual((status, errors.count("\n"), (self.path / "new").exists()), (1, 1, False), errors)

    def test_a_snapshot_judges_like_its_list(self):
        sites = self.file("list", b"".join(b"http://s%d.example/%d\t2\tv%d\n" % (n, n % 5, n) for n in range(3000)))
        self.assertEqual(run("snapshot", "save", "--list", sites, "--stamp", "202611210930", "--out", self.path / "new")[0], 0)
        snapshot = self.path / "new/TBDB202611210930.BIN"
        requests = b"".join(b"1\tCheck\thttp://a.s%d.example/%d/x\n" % (n, n % 7) for n in range(4000))
        by_list = run("check", "--list", sites, stdin=requests)
        self.assertEqual(run("check", "--snapshot", snapshot, stdin=requests), by_list)
        self.assertGreater(by_list[1].count(b"Validated"), 400)
        head, *entries = run("snapshot", "show", snapshot)[1].splitlines()
        self.assertRegex(head, rb"^202611210930\t3000\t[0-9A-F]{8}$")
        self.assertEqual(sorted(entries), sorted(sites.read_bytes().splitlines()))

    def test_the_golden_snapshot_reads_as_ever(self):
        self.assertEqual(run("snapshot", "show", GOLDEN)[1], (
            b"202611010000\t5\tA11815E4\nhttp://www.evil.example\t9\tx\nhttps://evil.example\t2\t\n"
            b"http://evil.example\tnone\tx\nhttp://a.example\t2\t11/01/2026\nhttp://b.example/x%2fy\t1\t11/02/2026\n"))

    def test_help_and_version(self):
        commands = ["check", "score", "frame", "unframe", "snapshot save", "snapshot show", "keygen", "manifest", "sign"]
        for command in ["", *commands]:
            status, output, errors = run(*command.split(), "--help")
            self.assertEqual((status, output.startswith(b"usage: tbtool " + command.encode()), errors), (0, True, ""))
        self.assertRegex(run("check", "--version")[1], rb"^tbtool \d+\.\d+\.\d+\n$")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([TBTOOL, "--version"], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (1, b"tbtool: cannot write to standard output\n"))
        for words, message in [(["snapshot", "shoe"], "command snapshot shoe"), (["manifest", "x", "--version"], "needs a value")]:
            status, output, errors = run(*words)
            self.assertEqual((status, output), (2, b""))
            self.assertRegex(errors, "^.*" + message + "[^$]*usage: tbtool")

    def test_broken_lists_and_snapshots_get_one_line(self):
        good = GOLDEN.read_bytes()
        requests = b"1\tCheck\thttp://a.example\n"
        self.assert_one_line(run("check", "--list", self.file("list", b"http://a.example\t2\tv\n\nx\ty\n"), stdin=requests), "line 3")
        self.assert_one_line(run("check", "--list", self.path / "absent", stdin=requests), "/absent: File not found; a list of sites")
        self.assert_one_line(run("check", "--list", self.path, stdin=requests), str(self.path))
        for name, content in {"short": good[:-1], "empty": b"", "damaged": good[:-1] + b"\xff"}.items():
            path = self.file(name, content)
            self.assert_one_line(run("check", "--snapshot", path, stdin=requests), str(path))
        renamed = self.file("TBDB202611020000.BIN", good)
        self.assert_one_line(run("check", "--snapshot", renamed, stdin=requests), "stamp")


if __name__ == "__main__":
    unittest.main()
