#!/usr/bin/env python3
"""submission_wait.py BIN PROGRAM: what sending 500 queued submissions costs the browsers.

Measures the 99th percentile of round trips over the channel while the program of a staged folder, of which a copy is made,
sends 500 queued mails to the real service, against quiet blocks in turns, the medians of five each. BIN is the folder of
the Windows programs. TBSERVICE and TBTOOL name the native programs if they are not in build/native/bin. Needs a display
and no other instance. Exit status 1 when the busy p99 is above the quiet one and twice one save of the list, as tbsave
measures it on the same system, or a block was not within one run."""
import argparse
import contextlib
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from served_wait import measure, native, running, wine, write_defaults, write_settings

BLOCKS = 5
REQUESTS = 500
FILES = 500
DEADLINE = 120
CAPTION = "Trawlbeam Tray"
# Of a kind that is never sent: while it is there, the program looks for others each interval.
STAYS = "stays.x"
# Of the list in the middle of the third block of five.
ENTRIES = 1250


def save_time(bin_folder):
    """Of one save now, in microseconds."""
    done = subprocess.run(wine(bin_folder / "tbsave.exe", ENTRIES), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          text=True, check=True, timeout=DEADLINE)
    return float(re.match(r"save_us=(\d+)", done.stdout)[1])


class Queue:
    """The queue folder of the program, filled at one stroke: the folder is exchanged for a full one."""

    def __init__(self, program):
        self.folder, self.next, self.old = (program / "Data" / name for name in ("InProcess", "next", "old"))
        self.log = program / "Log"
        self.number = 0
        (self.folder / "Error").mkdir(parents=True)
        (self.folder / STAYS).write_bytes(b"")

    def waiting(self):
        return sum(name.endswith(".E") for name in os.listdir(self.folder))

    def fill(self):
        (self.next / "Error").mkdir(parents=True)
        (self.next / STAYS).write_bytes(b"")
        for _ in range(FILES):
            self.number += 1
            body = f"Mail {self.number}: http://www.evil{self.number}.example/login\r\n" + "All that a mail says.\r\n" * 100
            head = f"From: sender{self.number}@evil.example\r\nSubject: Your account {self.number}\r\n\r\n"
            (self.next / f"{self.number}.E").write_bytes(f" 2 , 3 , {sum(body.encode())} \r\n{head}{body}\r\n".encode())
        self.folder.rename(self.old)
        self.next.rename(self.folder)
        shutil.rmtree(self.old)

    def wait(self, most):
        deadline = time.monotonic() + DEADLINE
        while self.waiting() > most:
            if time.monotonic() > deadline:
                sys.exit(f"submission_wait: {self.waiting()} submissions still wait")
            time.sleep(0.005)

    def runs(self):
        """How many files each run of the program sent."""
        text = "".join(file.read_text("latin-1") for file in sorted(self.log.glob("*.log")))
        names = re.findall(r"Processing Submission File (\S+)", text)
        ends = [place for place, name in enumerate(names) if name == STAYS]
        return [size for size in (end - begin - 1 for begin, end in zip([-1, *ends], ends)) if size]

    def wait_for_runs(self):
        """Until the log tells of the end of the last one."""
        deadline = time.monotonic() + DEADLINE
        while sum(self.runs()) < self.number and time.monotonic() < deadline:
            time.sleep(0.1)
        return self.runs()


@contextlib.contextmanager
def service(folder):
    command = [native("TBSERVICE", "tbservice"), "--data", folder]
    subprocess.run([*command, "init"], stdout=subprocess.DEVNULL, check=True)
    process = subprocess.Popen([*command, "serve", "--port", "0"], stdout=subprocess.PIPE, text=True)
    try:
        yield command, re.match(r"listening on port (\d+) ", process.stdout.readline())[1]
    finally:
        process.terminate()
        process.wait()


def prepare(program, port):
    write_defaults(program, {"SUBDBSVR": [f"http://127.0.0.1:{port}"]})
    write_settings(program, [("MAIN", "ConfirmSubmission", "0"), ("TIMERS", "SUBDB_INTERVAL", "1")])


def in_turns(blocks, bin_folder, saves, quiet_block, busy_block):
    """Blocks of both kinds, with the time of a save beside each pair."""
    for block in range(blocks):
        saves.append(save_time(bin_folder))
        # Who goes first alternates: a drift of the machine's speed favours neither.
        for one in (busy_block, quiet_block) if block % 2 else (quiet_block, busy_block):
            one()


def blocks(bin_folder, queue):
    """The p99 of quiet and busy blocks, the time of a save beside each pair, and how long each run of 500 took."""
    quiet, busy, saves, lasted = [], [], [], []
    probe = bin_folder / "tbprobe.exe"

    def busy_block():
        queue.fill()
        queue.wait(FILES - 1)
        begun = time.monotonic()
        busy.append(measure(probe, CAPTION, REQUESTS))
        print(f"    {queue.waiting()} of {FILES} still waited when a block was over", flush=True)
        if queue.waiting() == 0:
            sys.exit("submission_wait: the queue was empty before the block was over")
        queue.wait(0)
        lasted.append(time.monotonic() - begun)

    in_turns(BLOCKS, bin_folder, saves, lambda: quiet.append(measure(probe, CAPTION, REQUESTS)), busy_block)
    return quiet, busy, saves, lasted


def main():
    parser = argparse.ArgumentParser(usage="submission_wait.py BIN PROGRAM")
    parser.add_argument("bin", type=pathlib.Path)
    parser.add_argument("program", type=pathlib.Path)
    options = parser.parse_args()
    probe = options.bin / "tbprobe.exe"
    with contextlib.ExitStack() as stack:
        scratch = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        program = scratch / "program"
        shutil.copytree(options.program, program)
        command, port = stack.enter_context(service(scratch / "service"))
        prepare(program, port)
        queue = Queue(program)
        with running(probe, CAPTION, program / "Trawlbeam.exe"):
            quiet, busy, saves, lasted = blocks(options.bin, queue)
            runs = queue.wait_for_runs()
        held = len(subprocess.run([*command, "submissions", "list"], stdout=subprocess.PIPE, check=True)
                   .stdout.splitlines())
    one_save = statistics.median(saves)
    limit = statistics.median(quiet) + 2 * one_save
    print(f"p99 quiet {statistics.median(quiet):.0f} us, while sending {statistics.median(busy):.0f} us; one save "
          f"{one_save:.0f} us, so the limit is {limit:.0f} us")
    print(f"    quiet {[round(one) for one in quiet]}, while sending {[round(one) for one in busy]}, "
          f"saves {[round(one) for one in saves]}")
    print(f"    runs of {runs} files, {[round(one, 1) for one in lasted]} s; the service holds {held}")
    whole = runs == [FILES] * BLOCKS and held == FILES * BLOCKS
    if not whole:
        print("not all was sent, or not in one run each")
    return 0 if whole and statistics.median(busy) <= limit else 1


if __name__ == "__main__":
    sys.exit(main())
