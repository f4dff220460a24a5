#!/usr/bin/env python3
"""Sends mails through drop, queue, post and service, and accounts for each.

    mail_road.py TBSERVICE MAIL_ROAD MAILS [--batch N] [--names] [--expect NAME=COUNT ...]

MAILS is a folder, searched for *.txt, or a package of them (.tgz). Line ends are brought to CR LF. What the service holds
is compared with what was dropped, byte for byte: headers with the empty line behind them, the body and the CR LF that
the queue puts behind it, and the fields From and Subject. A refused mail must be the repeat of an earlier one, which is
named: by the client, one with the same fingerprint (the sum of its body's bytes); by the service, one with the same
body. Prints the counts, with --names each mail that was refused and the earlier one. Exit status 1 when a mail is lost or
differs, or a count is not as expected. Loopback only; the service that it starts ends with it."""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tarfile
import tempfile

LARGEST = 0x500000
END = b"\r\n\r\n"
COUNTS = ("dropped", "accepted", "repeats by the client", "repeats by the service", "too large", "unparsable", "lost",
          "differing")


def quoted(text):
    """As the programs print bytes: visible ASCII and blanks as they are."""
    return "".join(chr(byte) if 0x20 <= byte < 0x7F and byte != 0x5C else f"\\x{byte:02X}" for byte in text)


class Mail:
    """What must become of a mail, worked out from its bytes alone."""

    def __init__(self, raw):
        self.bytes = re.sub(rb"\r?\n", b"\r\n", raw)
        # A mail ends at its first NUL.
        head, _, body = self.bytes.partition(b"\0")[0].partition(END)
        while body.startswith(END):
            body = body[len(END):]
        self.is_large = len(head) + len(body) > LARGEST
        while head.endswith(b"\r\n"):
            head = head[:-2]
        self.body = body
        self.fingerprint = sum(body)
        self.held = head + END + body + b"\r\n"
        self.fields = {b"from": b"", b"subject": b""}
        for line in head.split(b"\r\n"):
            name, colon, value = line.partition(b":")
            if colon and name.lower() in self.fields:
                self.fields[name.lower()] = value.strip(b" ")


def read_mails(source):
    """By name, in the order of the names."""
    if source.is_dir():
        return {path.name: Mail(path.read_bytes()) for path in sorted(source.glob("*.txt"))}
    mails = {}
    with tarfile.open(source) as package:
        for member in package:
            if member.isfile() and member.name.endswith(".txt"):
                mails[member.name.removeprefix("package/data/")] = Mail(package.extractfile(member).read())
    return dict(sorted(mails.items()))


class Service:
    def __init__(self, program, folder):
        self.command = [program, "--data", folder]
        subprocess.run([*self.command, "init"], stdout=subprocess.DEVNULL, check=True)
        self.process = subprocess.Popen([*self.command, "serve", "--port", "0"], stdout=subprocess.PIPE, text=True)
        line = self.process.stdout.readline()
        found = re.match(r"listening on port (\d+) ", line)
        if not found:
            sys.exit(f"mail_road: the service did not start: {line}")
        self.port = found[1]

    def ask(self, *words):
        return subprocess.run([*self.command, "submissions", *words], stdout=subprocess.PIPE, check=True).stdout

    def stop(self):
        self.process.terminate()
        self.process.wait()


class Account:
    def __init__(self, mails):
        self.mails = mails
        self.counts = collections.Counter({"dropped": len(mails)})
        self.queued, self.ended, self.ids, self.store = {}, {}, {}, {}

    def blame(self, count, name, why):
        self.counts[count] += 1
        print(f"{count}: {name}: {why}")

    def read(self, journal):
        """The lines of mail_road: what the client did with each mail."""
        by_fingerprint = {}
        for line in journal:
            kind, name, *rest = line.rstrip("\n").split("\t")
            if kind == "mail":
                mail = self.mails[name]
                self.ended[name] = rest[0]
                if rest[0] == "queued":
                    self.queued[rest[1]] = name
                elif rest[0] == "large" and mail.is_large:
                    self.counts["too large"] += 1
                elif rest[0] == "repeat" and mail.fingerprint in by_fingerprint:
                    self.counts["repeats by the client"] += 1
                    self.ended[name] += " of " + by_fingerprint[mail.fingerprint]
                else:
                    self.blame("lost", name, " ".join(rest))
            elif kind == "sent":
                mail_name = self.queued[name]
                # A file that failed is sent again.
                self.ended[mail_name] = rest[0]
                if rest[0] == "accepted":
                    self.ids[rest[1].split()[0]] = mail_name
                    by_fingerprint.setdefault(self.mails[mail_name].fingerprint, mail_name)
                elif rest[0] == "refused":
                    identifier = re.search(r"number ([0-9-]+)\.", rest[1])[1]
                    # What is accepted later is no reason.
                    self.ended[mail_name] += f" by {identifier}, {self.ids.get(identifier, '?')}"
            elif kind == "store":
                self.store[name] = rest
            else:
                self.blame("lost", self.queued.get(name, name), "still in the queue")
        for name, end in self.ended.items():
            earlier = self.mails.get(end.rsplit(", ", 1)[-1])
            if end == "unparsable":
                self.counts["unparsable"] += 1
            elif end.startswith("refused by ") and earlier and earlier.body == self.mails[name].body:
                self.counts["repeats by the service"] += 1
            elif end.startswith("refused by ") or end in ("queued", "failed"):
                self.blame("lost", name, end)

    def compare(self, service):
        listed = {line.split("\t")[0]: line for line in service.ask("list").decode().splitlines()}
        for identifier in (listed.keys() ^ self.ids.keys()) | (self.store.keys() ^ self.ids.keys()):
            self.blame("differing", self.ids.get(identifier, "?"), f"{identifier} is not on all sides")
        common = sorted(listed.keys() & self.ids.keys())
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for identifier, problem in zip(common, pool.map(lambda one: self.differs(service, one), common)):
                if problem:
                    self.blame("differing", self.ids[identifier], problem)
                else:
                    self.counts["accepted"] += 1

    def differs(self, service, identifier):
        mail = self.mails[self.ids[identifier]]
        held = service.ask("show", identifier)
        if held != mail.held:
            place = len(os.path.commonprefix([held, mail.held]))
            return f"held from byte {place}: {held[place:place + 40]!r}, due: {mail.held[place:place + 40]!r}"
        fields = dict(line.split(": ", 1) for line in service.ask("show", "--fields", identifier).decode().splitlines())
        for name, value in mail.fields.items():
            if fields[name.decode()] != quoted(value):
                return f"{name.decode()} is {fields[name.decode()]}, {quoted(value)} is due"
        if identifier in self.store and self.store[identifier] != [str(mail.fingerprint), quoted(mail.fields[b"subject"])]:
            return f"the client's list has {self.store[identifier]}"
        return ""


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n\n")[1].strip())
    parser.add_argument("tbservice", type=pathlib.Path)
    parser.add_argument("mail_road", type=pathlib.Path)
    parser.add_argument("mails", type=pathlib.Path)
    parser.add_argument("--batch", type=int, default=16)
    parser.add_argument("--names", action="store_true")
    parser.add_argument("--expect", nargs="*", default=[])
    options = parser.parse_args()
    account = Account(read_mails(options.mails))
    with tempfile.TemporaryDirectory() as name:
        scratch = pathlib.Path(name)
        for mail_name, mail in account.mails.items():
            file = scratch / "mails" / mail_name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(mail.bytes)
        service = Service(options.tbservice.resolve(), scratch / "service")
        try:
            done = subprocess.run([options.mail_road.resolve(), service.port, str(options.batch)],
                                  cwd=scratch / "mails", input="\n".join(account.mails) + "\n", text=True,
                                  stdout=subprocess.PIPE, check=True)
            account.read(done.stdout.splitlines())
            account.compare(service)
        finally:
            service.stop()
    counts = {name: account.counts[name] for name in COUNTS}
    for mail_name, end in account.ended.items():
        if options.names and end != "accepted":
            print(f"{mail_name}: {end}")
    for count, number in counts.items():
        print(f"{count}: {number}")
    expected = dict(one.rsplit("=", 1) for one in options.expect)
    wrong = [name for name, number in expected.items() if counts.get(name) != int(number)]
    if wrong:
        print(f"not as expected: {', '.join(wrong)}")
    missing = counts["dropped"] - sum(counts[name] for name in COUNTS[1:])
    if missing:
        print(f"{missing} mails are not accounted for")
    return 1 if wrong or missing or not counts["dropped"] or counts["lost"] or counts["differing"] else 0


if __name__ == "__main__":
    sys.exit(main())
