#!/usr/bin/env python3
"""served_wait BIN [--program FOLDER]: what a bad server costs the browsers.

Measures the 99th percentile of round trips over the channel while a server accepts and never answers, and while it drips a
byte each half second, against the quiet one: alternating blocks of 1,000 requests, the medians of five blocks each. BIN is
the folder of the Windows programs. Needs a display and no other instance. Exit status 1 when a ratio is above 3 or a
block ran outside of the wait that it is to measure.

Without a program, two bare echo servers are compared, one of them always in the wait of an exchange. With --program, it is
the program of a staged folder, of which a copy is made: defaults name the bad servers for the list of sites, the update
cycle comes each second, and for the quiet blocks the servers refuse at once. TBTOOL, or build/native/bin/tbtool, makes
the defaults."""
import argparse
import contextlib
import os
import pathlib
import re
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BLOCKS = 5
REQUESTS = 1000
HIGHEST_RATIO = 3
DRIP_SECONDS = 0.5
DEADLINE = 60
# Enough servers that one cycle, which gives up on each after its time, outlasts a block.
HOSTS = [f"127.0.0.{number}" for number in range(1, 11)]


class BadServer:
    """Web servers on one port of several loopback hosts that behave by `mode`: silent, drip or refuse."""

    def __init__(self, hosts):
        self.mode = "refuse"
        self.open = set()
        self.lock = threading.Lock()
        self.listeners = []
        port = 0
        for host in hosts:
            self.listeners.append(socket.create_server((host, port), backlog=64))
            port = self.listeners[0].getsockname()[1]
        self.port = port
        for listener in self.listeners:
            threading.Thread(target=self.accept, args=(listener,), daemon=True).start()

    def accept(self, listener):
        while True:
            try:
                client, _ = listener.accept()
            except OSError:
                return
            threading.Thread(target=self.serve, args=(client, self.mode), daemon=True).start()

    def serve(self, client, mode):
        client.settimeout(DRIP_SECONDS)
        with client, contextlib.suppress(OSError):
            if mode == "refuse":
                client.recv(65536)
                client.sendall(b"HTTP/1.1 503 Service Unavailable\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")
                return
            with self.lock:
                self.open.add(client)
            try:
                if mode == "drip":
                    client.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n")
                while self.mode == mode:
                    with contextlib.suppress(TimeoutError):
                        if not client.recv(65536):
                            return
                    if mode == "drip":
                        client.sendall(b"x")
            finally:
                with self.lock:
                    self.open.discard(client)

    def waiting(self):
        with self.lock:
            return len(self.open)

    def switch(self, mode):
        """Returns when the waits are as the mode has them."""
        self.mode = mode
        deadline = time.monotonic() + DEADLINE
        while (self.waiting() == 0) != (mode == "refuse"):
            if time.monotonic() > deadline:
                sys.exit(f"served_wait: no client reached the state of mode {mode}")
            time.sleep(0.01)

    def close(self):
        self.mode = "refuse"
        for listener in self.listeners:
            listener.close()


class Watch(threading.Thread):
    """How much of the time until stop() a client was in the wait."""

    def __init__(self, server):
        super().__init__(daemon=True)
        self.server, self.seen, self.looks, self.over = server, 0, 0, threading.Event()
        self.start()

    def run(self):
        while not self.over.wait(0.005):
            self.looks += 1
            self.seen += self.server.waiting() > 0

    def stop(self):
        self.over.set()
        self.join()
        return self.seen / max(self.looks, 1)


def native(variable, name):
    return str(pathlib.Path(os.environ.get(variable, ROOT / "build/native/bin" / name)).resolve())


def wine(*arguments):
    return [str(ROOT / "scripts" / "wine"), *map(str, arguments)]


def measure(probe, caption, requests=REQUESTS):
    """The p99 of one block in microseconds."""
    done = subprocess.run(wine(probe, "--caption", caption, "--time", requests), stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, timeout=DEADLINE)
    found = re.search(rf"requests={requests} .*p99_us=([0-9.]+)", done.stdout)
    if not found:
        sys.exit(f"served_wait: tbprobe: {done.stdout}{done.stderr}")
    return float(found.group(1))


def compare(probe, server, mode, quiet_caption, waiting_caption):
    """Prints and judges. The quiet window is either another one, or the same one while the servers refuse."""
    same = quiet_caption == waiting_caption
    quiet, waiting, shares = [], [], []
    if not same:
        server.switch(mode)
    for block in range(BLOCKS):
        # Who goes first alternates: a drift of the machine's speed favours neither.
        for is_quiet in (True, False) if block % 2 == 0 else (False, True):
            if same:
                server.switch("refuse" if is_quiet else mode)
            if is_quiet:
                quiet.append(measure(probe, quiet_caption))
            else:
                watch = Watch(server)
                waiting.append(measure(probe, waiting_caption))
                shares.append(watch.stop())
    ratio = statistics.median(waiting) / statistics.median(quiet)
    print(f"{mode}: p99 quiet {statistics.median(quiet):.0f} us, in the wait {statistics.median(waiting):.0f} us, "
          f"ratio {ratio:.2f}, at least {min(shares):.0%} of each block in the wait", flush=True)
    print(f"    quiet {[round(one) for one in quiet]}, in the wait {[round(one) for one in waiting]}", flush=True)
    # A client is on its way to the next server now and then.
    return ratio <= HIGHEST_RATIO and min(shares) >= 0.9


@contextlib.contextmanager
def running(probe, caption, *command):
    """A Windows program with the channel of that caption; it is stopped at the end, by its process."""
    program = subprocess.Popen(wine(*command), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    try:
        subprocess.run(wine(probe, "--caption", caption, "--wait", 30), stdin=subprocess.DEVNULL, check=True)
        yield
    finally:
        program.terminate()
        program.wait()


def write_defaults(folder, servers, timers=""):
    """Defaults with these services, each a list of its servers, and timers."""
    services = "".join(
        f"<ELEMENT NAME='{service}'>" + "".join(f"<Server WEIGHT='10' ACTIVE='Y'>{url}</Server>" for url in urls) +
        "</ELEMENT>" for service, urls in servers.items())
    text = f"<DEFAULTS Version='29990101'><SERVERS NAME='SERVERS'>{services}</SERVERS>" \
           f"<TIMERS NAME='TIMERS'>{timers}</TIMERS></DEFAULTS>"
    frame = subprocess.run([native("TBTOOL", "tbtool"), "frame"], input=text.encode(), stdout=subprocess.PIPE,
                           check=True).stdout
    (folder / "Data").mkdir(exist_ok=True)
    (folder / "Data" / "defaults.bin").write_bytes(frame)


def write_settings(folder, sections):
    text = "".join(f"<SECTION name='{section}'><ELEMENT NAME='{key}'>{value}</ELEMENT></SECTION>"
                   for section, key, value in sections)
    (folder / "Trawlbeam.ini").write_text(f"<INI DATE='01/01/2026 00:00:00'>{text}</INI>")


def main():
    parser = argparse.ArgumentParser(usage="served_wait BIN [--program FOLDER]")
    parser.add_argument("bin", type=pathlib.Path)
    parser.add_argument("--program", type=pathlib.Path)
    options = parser.parse_args()
    probe = options.bin / "tbprobe.exe"
    passed = True
    with contextlib.ExitStack() as stack:
        if options.program:
            server = BadServer(HOSTS)
            folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory())) / "program"
            shutil.copytree(options.program, folder)
            write_defaults(folder, {"EVILDBSVR": [f"http://{host}:{server.port}" for host in HOSTS]})
            write_settings(folder, [("TIMERS", "EVILDB_INTERVAL", "1")])
            quiet = waiting = "Trawlbeam Tray"
            stack.enter_context(running(probe, waiting, folder / "Trawlbeam.exe"))
        else:
            server = BadServer(HOSTS[:1])
            server.mode = "silent"
            quiet, waiting = "Trawlbeam Echo", "Trawlbeam Waiting"
            echo = options.bin / "tbecho.exe"
            stack.enter_context(running(probe, quiet, echo))
            stack.enter_context(running(probe, waiting, echo, f"http://{HOSTS[0]}:{server.port}/"))
        stack.callback(server.close)
        for mode in ("silent", "drip"):
            passed = compare(probe, server, mode, quiet, waiting) and passed
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
