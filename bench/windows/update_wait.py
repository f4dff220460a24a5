#!/usr/bin/env python3
"""update_wait.py BIN PROGRAM: what staging an update of 50 files of 1 MB costs the browsers and the memory.

Measures the 99th percentile of round trips over the channel while the program of a staged folder, of which a copy is made,
fetches such an update from a server of this script, against quiet blocks in turns, the medians of five each, and the most
memory that the process holds meanwhile. BIN is the folder of the Windows programs. TBTOOL names tbtool if it is not in
build/native/bin. Needs a display and no other instance. Exit status 1 when the busy p99 is above the quiet one and twice
one save, as tbsave measures it on the same system, the memory grew by more than two pieces of a file, or a block was not
within one staging."""
import argparse
import contextlib
import http.server
import os
import pathlib
import re
import shutil
import statistics
import sys
import tempfile
import threading
import time

from served_wait import measure, running, write_defaults
from submission_wait import in_turns

BLOCKS = 5
REQUESTS = 300
FILES = 50
SIZE = 1 << 20
DEADLINE = 120
CAPTION = "Trawlbeam Tray"
# The transport hands a body on in pieces of at most 64 KB; the allocator may round what it asks the system for.
MEMORY_LIMIT = 1 << 20


class Service(http.server.ThreadingHTTPServer):
    """Serves one update for ever, and counts its files."""

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.body = os.urandom(SIZE)
        names = "".join(f"<F FILE='part{n}.dll' SIZE='{SIZE}' VERSION='1.0.0' DOWNLOAD='Y'/>" for n in range(FILES))
        self.manifest = f"<U VERSION='1'>{names}</U>".encode()
        self.files = 0
        threading.Thread(target=self.serve_forever, daemon=True).start()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def answer(self):
        self.rfile.read(int(self.headers.get("Content-Length", 0)))
        if "/part" in self.path:
            self.server.files += 1
        body = self.server.body if "/part" in self.path else self.server.manifest if "updates" in self.path else b""
        self.send_response(200 if body else 404)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        with contextlib.suppress(OSError):
            self.wfile.write(body)

    do_GET = do_POST = do_HEAD = answer

    def log_message(self, *_):
        pass


def prepare(program, port):
    server = [f"http://127.0.0.1:{port}"]
    write_defaults(program, {"UpdatesSVR": server, "GetUpdatesSVR": server},
                   "<ELEMENT NAME='EVILDB_INTERVAL'>1</ELEMENT>")
    # A missing component lets it look for updates in each cycle.
    (program / "MBListEx.ocx").unlink()


def resident(program):
    """Bytes of the process that runs the program."""
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if str(program / "Trawlbeam.exe").encode() in (process / "cmdline").read_bytes():
                if found := re.search(r"RssAnon:\s+(\d+) kB", (process / "status").read_text()):
                    return int(found[1]) * 1024
    sys.exit("update_wait: the program does not run")


class Stagings:
    def __init__(self, service, program):
        self.service, self.updates, self.program = service, program / "Updates", program

    def until(self, done, what):
        deadline = time.monotonic() + DEADLINE
        while not done():
            if time.monotonic() > deadline:
                sys.exit(f"update_wait: {what} did not come")
            time.sleep(0.002)

    def rest(self):
        self.until((self.updates / "updates.xml").exists, "the end of a staging")

    def begin(self):
        """While nothing is pending, the next cycle begins a staging."""
        self.service.files = 0
        (self.updates / "updates.xml").unlink()
        self.until(lambda: self.service.files > 0, "the first file")


class Peak(threading.Thread):
    """The most memory until stop()."""

    def __init__(self, program):
        super().__init__(daemon=True)
        self.program, self.most, self.over = program, 0, threading.Event()
        self.start()

    def run(self):
        while not self.over.wait(0.02):
            self.most = max(self.most, resident(self.program))

    def stop(self):
        self.over.set()
        self.join()
        return self.most


def main():
    parser = argparse.ArgumentParser(usage="update_wait.py BIN PROGRAM")
    parser.add_argument("bin", type=pathlib.Path)
    parser.add_argument("program", type=pathlib.Path)
    options = parser.parse_args()
    probe = options.bin / "tbprobe.exe"
    quiet, busy, saves, grown, staged = [], [], [], [], []
    with contextlib.ExitStack() as stack:
        program = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory())) / "program"
        shutil.copytree(options.program, program)
        service = Service()
        prepare(program, service.server_address[1])
        stack.enter_context(running(probe, CAPTION, program / "Trawlbeam.exe"))
        stagings = Stagings(service, program)
        stagings.rest()

        def busy_block():
            stagings.begin()
            busy.append(measure(probe, CAPTION, REQUESTS))
            staged.append(service.files)
            stagings.rest()

        in_turns(BLOCKS, options.bin, saves, lambda: quiet.append(measure(probe, CAPTION, REQUESTS)), busy_block)
        # The memory apart: looking at it takes time too.
        for _ in range(BLOCKS):
            before = resident(program)
            peak = Peak(program)
            stagings.begin()
            stagings.rest()
            grown.append(peak.stop() - before)
    one_save = statistics.median(saves)
    limit = statistics.median(quiet) + 2 * one_save
    print(f"p99 quiet {statistics.median(quiet):.0f} us, while staging {statistics.median(busy):.0f} us; one save "
          f"{one_save:.0f} us, so the limit is {limit:.0f} us")
    print(f"    quiet {[round(one) for one in quiet]}, while staging {[round(one) for one in busy]}, files asked for when "
          f"a block was over {staged} of {FILES}")
    print(f"memory at most {max(grown) // 1024} KB more while staging {FILES * SIZE >> 20} MB: "
          f"{[one // 1024 for one in grown]}")
    within = max(staged) < FILES
    if not within:
        print("a block outlasted its staging")
    return 0 if within and statistics.median(busy) <= limit and max(grown) <= MEMORY_LIMIT else 1


if __name__ == "__main__":
    sys.exit(main())
