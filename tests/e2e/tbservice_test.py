#!/usr/bin/env python3
"""The web service's program as its operator uses it: commands while it serves, one clear line for broken input, the old
state or the new one after every end.

    tbservice_test.py TBSERVICE TBTOOL
"""

import base64
import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse
import urllib.request

# Seconds. It only matters where something is broken, for no machine is so slow.
DEADLINE = 300
TBTOOL = sys.argv.pop(2)
TBSERVICE = sys.argv.pop(1)


class TbserviceTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)
        self.data = self.path / "data"
        self.services = []

    def tearDown(self):
        for service in self.services:
            if service.poll() is None:
                service.kill()
            service.communicate()
        self.folder.cleanup()

    def stored(self):
        """What the folder holds, as far as sizes and dates tell."""
        return {path.name: (path.stat().st_size, path.stat().st_mtime_ns) for path in self.data.iterdir()}

    def file(self, name, content):
        (self.path / name).write_bytes(content)
        return self.path / name

    def command(self, *words):
        done = subprocess.run([TBSERVICE, "--data", self.data, *words], capture_output=True, timeout=DEADLINE)
        return done.returncode, done.stdout.decode("latin-1"), done.stderr.decode("latin-1")

    def succeed(self, *words):
        status, output, errors = self.command(*words)
        self.assertEqual((status, errors), (0, ""))
        return output

    def serve(self, *words):
        service = subprocess.Popen([TBSERVICE, "--data", self.data, "serve", *words], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.services.append(service)
        line = service.stdout.readline().decode()
        found = re.match(r"listening on port (\d+) of (.*); (\d+ sites as of \d{12}|no list is published yet, .*)$", line)
        self.assertTrue(found, line)
        return service, int(found[1]), found[2].split(", ")

    def ask(self, port, stamp, host="127.0.0.1"):
        """The lines of the update reply, none of an empty one."""
        with urllib.request.urlopen(f"http://{host}:{port}/MalDB.aspx", f"Key=k&TS={stamp}".encode(), DEADLINE) as reply:
            framed = reply.read()
        if not framed:
            return []
        return subprocess.run([TBTOOL, "unframe"], input=framed, capture_output=True, check=True).stdout.split(b"\n")

    def test_changes_reach_a_running_service(self):
        self.succeed("init")
        service, port, hosts = self.serve("--port", "0")
        self.assertEqual(hosts, [f"127.0.0.{number}" for number in range(1, 11)])
        self.assertEqual(self.ask(port, "200001010000"), [])
        sites = self.file("sites", b"evil.example/x\t2\t11/21/2026\r\n\nhttp://b.example\t9\t\xe9\n")
        self.assertIn("3 added, 0 changed, 0 unchanged, 0 repeated; 3 sites", self.succeed("sites", "import", sites))
        stamp, mode, *lines = self.ask(port, "200001010000", "127.0.0.10")
        self.assertEqual((mode, lines), (b"1", [b"+\thttp://evil.example/x\t2\t11/21/2026",
                                                b"+\thttps://evil.example/x\t2\t11/21/2026",
                                                b"+\thttp://b.example\t9\t\xe9", b""]))
        self.assertEqual(self.ask(port, stamp.decode()), [stamp, b""])
        self.succeed("sites", "import", self.file("sites", b"http://b.example\t2\t\xe9\n"))
        self.succeed("sites", "remove", "evil.example/x/")
        self.assertEqual(self.ask(port, stamp.decode())[1:], [
            b"0", b"-\thttp://b.example\t9\t\xe9", b"+\thttp://b.example\t2\t\xe9",
            b"-\thttp://evil.example/x\t2\t11/21/2026", b"-\thttps://evil.example/x\t2\t11/21/2026", b""])
        self.succeed("publish", "defaults", self.file("d.xml", b"<DEFAULTS Version='20261121'/>"))
        for page in ["Reference/defaults.bin", "updates.xml", "show2.aspx"]:
            urllib.request.urlopen(f"http://127.0.0.2:{port}/{page}", timeout=DEADLINE).close()
        form = b"Key=A%2D1&AppVer=1.0.0&OSVer=6.1.7601.2&IEVer=9.11&OEVer=0&OutVer=0"
        urllib.request.urlopen(f"http://127.0.0.1:{port}/Versions.aspx", form, DEADLINE).close()
        service.send_signal(signal.SIGTERM)
        self.assertEqual(service.communicate(timeout=DEADLINE), (b"stopped\n", b""))
        self.assertEqual(service.returncode, 0)
        status = self.succeed("status")
        self.assertIn("version reports: 1\n    1 of 1.0.0", status)

    def post(self, port, page, **fields):
        body = urllib.parse.urlencode({"Key": "AB-1", "Category_ID": 2, "Confidence_ID": 3, **fields}, encoding="latin-1")
        with urllib.request.urlopen(f"http://127.0.0.3:{port}/{page}.aspx", body.encode(), DEADLINE) as reply:
            return reply.read().decode()

    def test_submissions_are_kept_whole_judged_and_published(self):
        self.succeed("init")
        service, port, _ = self.serve("--port", "0")
        headers = "Subject: tab\there\r\nContent-Type: text/html\r\nX: " + "".join(map(chr, range(256)))
        body = bytes(range(256)) + b"<a href='HTTP://evil.example/Offer/?a=1&amp;b=2#top'>http://0x7f.1/x</a>\r\n"
        mail = {"TRN": "EML", "From": "\xe9", "Subject": "tab\there", "Header": headers, "Body64": base64.b64encode(body)}
        self.assertRegex(self.post(port, "SubmitEmail", **mail), "^01-000001 ")
        url = {"TRN": "URL", "Visible_URL": "http://bad.example/a?b=1", "Main_URL": "http://bad.example/a"}
        self.assertRegex(self.post(port, "SubmitURL", **url), "^01-000002 ")
        # What was answered is on the disk.
        service.kill()
        service.wait()
        shown = subprocess.run([TBSERVICE, "--data", self.data, "submissions", "show", "1-1"], capture_output=True)
        self.assertEqual(shown.stdout, headers.encode("latin-1") + b"\r\n\r\n" + body)
        self.assertIn("URL: http://bad.example/a?b=1\n", self.succeed("submissions", "show", "1-2"))
        service, port, _ = self.serve("--port", "0")
        self.succeed("submissions", "judge", "1-1", "2", "2", "--publish")
        self.succeed("submissions", "judge", "01-000002", "4", "0")
        today = time.strftime("%m/%d/%Y", time.gmtime()).encode()
        self.assertEqual(self.ask(port, "200001010000")[2:], [
            b"+\thttp://evil.example/offer/?a=1&b=2\t2\t" + today, b"+\thttp://127.0.0.1/x\t2\t" + today, b""])
        self.assertEqual(self.post(port, "SubmissionStatus", TRN="UPD", SubIds="01-000001,01-000002"),
                         "01-000001=2,2\n01-000002=4,0\n")
        self.assertIn("submissions: 2\n", self.succeed("status"))

    def test_writers_at_the_same_time_and_kills_leave_whole_states(self):
        self.succeed("init")
        service, port, _ = self.serve("--port", "0", "--listen", "127.0.0.1")
        imports = [self.file(f"list{number}", b"".join(b"http://s%d.example/%d\t2\tv\n" % (number, line)
                                                       for line in range(200))) for number in range(6)]
        threads = [threading.Thread(target=self.succeed, args=("sites", "import", path)) for path in imports]
        for thread in threads:
            thread.start()
        while any(thread.is_alive() for thread in threads):
            # Nothing before the first import.
            self.assertEqual(max(0, len(self.ask(port, "unknown")) - 3) % 200, 0)
        self.assertEqual(len(self.ask(port, "unknown")), 2 + 1200 + 1)
        # An import that is killed at some moment, from its start to its first changes on the disk, has happened or not.
        large = self.file("large", b"".join(b"http://large.example/%d\t2\tv\n" % line for line in range(30000)))
        for changes in range(3):
            before = self.stored()
            victim = subprocess.Popen([TBSERVICE, "--data", self.data, "sites", "import", large], stdout=subprocess.DEVNULL)
            for _ in range(changes):
                while victim.poll() is None and self.stored() == before:
                    time.sleep(0.001)
                before = self.stored()
            victim.kill()
            victim.wait()
            self.assertRegex(self.succeed("status"), r"^sites: (1200|31200)\n")

    def test_only_a_store_is_served(self):
        for _ in range(2):
            for words in [["serve", "--port", "0"], ["status"], ["submissions", "list"]]:
                status, output, errors = self.command(*words)
                self.assertEqual((status, output, errors.count("\n")), (1, "", 1), errors)
                self.assertIn(f"{self.data}: th", errors)
                self.assertIn(f'"tbservice --data {self.data} init"', errors)
            self.assertFalse((self.data / "service.db").exists())
            self.data.mkdir(exist_ok=True)
        self.assertIn("made a new store", self.succeed("init"))
        self.assertIn("stays as it is", self.succeed("init"))
        self.assertIn("the store is fresh, no list is published yet", self.succeed("status"))
        _, port, _ = self.serve("--port", "0")
        self.assertEqual([self.ask(port, stamp) for stamp in ["200001010000", "202611210900", ""]], [[], [], []])
        # The first publication makes a store too, and tells that it does.
        self.data = self.path / "other"
        status, output, errors = self.command("sites", "import", self.file("sites", b"a.example\t2\tv\n"))
        self.assertEqual((status, errors), (0, f"tbservice: made a new store, {self.data}/service.db\n"))
        self.assertIn("2 sites as of", output)

    def on_a_terminal(self, *words):
        """What a terminal gets to see, its own line ends taken out."""
        mine, its = os.openpty()
        with subprocess.Popen([TBSERVICE, "--data", self.data, *words], stdout=its, stderr=its) as process:
            os.close(its)
            shown = b""
            with contextlib.suppress(OSError):
                while piece := os.read(mine, 65536):
                    shown += piece
        os.close(mine)
        self.assertEqual(process.returncode, 0)
        return shown.replace(b"\r\n", b"\n")

    def test_what_people_send_cannot_steer_a_terminal(self):
        self.succeed("init")
        _, port, _ = self.serve("--port", "0")
        # A sequence that sets the title of a window, its short form, what clears a line, bytes of no character.
        hostile = "a\x1b]0;x\x07b\x9b2Jc\rd\x7f\xc2\x9d\x00\xff\\e"
        headers, body = f"Subject: {hostile}\r\nX: y", f"\t{hostile}\r\nhttp://evil.example/{hostile}\n".encode("latin-1")
        self.post(port, "SubmitEmail", TRN="EML", From=hostile, Subject=hostile, Header=headers, Body64=base64.b64encode(body))
        form = urllib.parse.urlencode({"Key": hostile, "AppVer": hostile}, encoding="latin-1").encode()
        urllib.request.urlopen(f"http://127.0.0.1:{port}/Versions.aspx", form, 20).close()
        deadline = time.monotonic() + 20
        while "version reports: 1" not in self.succeed("status") and time.monotonic() < deadline:
            time.sleep(0.05)
        shown = {}
        for words in [("submissions", "list"), ("submissions", "show", "1-1"), ("submissions", "show", "--fields", "1-1"),
                      ("status",), ("submissions", "judge", "1-1", "2", "2", "--publish")]:
            shown[words] = self.on_a_terminal(*words)
            self.assertNotRegex(shown[words], rb"[^\t\n\x20-\x7e]", words)
        visible = rb"a\x1B]0;x\x07b\x9B2Jc\x0Dd\x7F\xC2\x9D\x00\xFF"
        for words in list(shown)[:4]:
            self.assertIn(visible, shown[words], words)
        self.assertIn(b"Subject: " + visible + b"\\e\nX: y\n\n\t" + visible, shown["submissions", "show", "1-1"])

    def test_help_and_version(self):
        for words, begin in [("--help", "usage: tbservice --data DIR serve"), ("--version", r"tbservice \d+\.\d+\.\d+\n$")]:
            self.assertRegex(self.succeed("serve", words), "^" + begin)
        for words, message in [(["serve", "--port", "65536"], "from 0 to"), (["submissions", "judge", "1-1", "6", "0"], "0 to 5")]:
            status, output, errors = self.command(*words)
            self.assertEqual((status, output), (2, ""))
            self.assertIn(message, errors.splitlines()[0])
            self.assertIn("usage: tbservice --data DIR " + " ".join(words[:1]), errors)
        self.assertFalse(self.data.exists())

    def test_broken_input_gets_one_line_and_changes_nothing(self):
        self.succeed("init")
        self.succeed("sites", "import", self.file("good", b"http://a.example\t2\tv\n"))
        self.succeed("publish", "defaults", self.file("good.xml", b"<D/>"))
        before = self.succeed("status")
        good = b"http://b.example\t2\tv\n"
        cases = [(["sites", "import", self.file("two", good + b"http://a.example\t2\n")], "line 2: 2 fields"),
                 (["sites", "import", self.file("host", good + b"\nhttp:///x\t2\tv\n")], "line 3: no host"),
                 (["sites", "import", self.path / "absent"], "/absent: File not found; a list of sites is expected"),
                 (["publish", "update", self.path / "absent", "--version", "1"], "/absent: no such folder"),
                 (["publish", "defaults", self.file("broken.xml", b"<D>\n<E></D>")], "XML line 2"),
                 (["publish", "reference", self.path / "good.xml"], "<CATEGORIES>"),
                 (["serve", "--port", "65535", "--listen", "192.0.2.1"], "192.0.2.1 port 65535")]
        for words, message in cases:
            status, output, errors = self.command(*words)
            self.assertEqual((status, output, errors.count("\n")), (1, "", 1), errors)
            self.assertIn(message, errors)
        self.assertEqual(self.succeed("status"), before)


if __name__ == "__main__":
    unittest.main()
