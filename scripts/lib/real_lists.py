#!/usr/bin/env python3
"""Real hosts for the running program: a published list of phishing hosts, and the hosts of disposable mail services as
harmless traffic. What must be blocked is worked out here from the list alone; the replies do not decide it.

    real_lists.py prepare PHISHING.tgz HARMLESS.tgz DIR   writes DIR/sites.txt and DIR/requests.txt
    real_lists.py report PHISHING.tgz HARMLESS.tgz DIR    compares DIR/replies.txt, a line a request

Exit status 1 when a reply is not what the rules say.
"""

import collections
import json
import pathlib
import re
import sys
import tarfile

EXPECTED_LISTED = 13752
VALIDATED = '11/21/2026'
BLOCK_TEXT = f'Validated: {VALIDATED}  (Category: Banking or Credit Card Spoof)'
SCHEMES = ('http://', 'https://')
# A host of these characters passes decoding and folding as it is, so the rule below is all there is to say about it.
PLAIN_HOST = re.compile(r'[a-z0-9._-]+')
# Written as a number it is another address's other name and is rewritten before it is looked up.
NUMERIC_HOST = re.compile(r'(0x[0-9a-f]*|\d+)(\.(0x[0-9a-f]*|\d+)){0,3}')
FOUR_DECIMALS = re.compile(r'(0|[1-9]\d{0,2})(\.(0|[1-9]\d{0,2})){3}')


def read_json(package, member):
    with tarfile.open(package) as archive:
        return json.load(archive.extractfile('package/' + member))


def is_plain(host):
    return bool(PLAIN_HOST.fullmatch(host)) and (not NUMERIC_HOST.fullmatch(host) or bool(FOUR_DECIMALS.fullmatch(host)))


def on_the_wire(host):
    """The channel carries single bytes; a browser puts other hosts into their ASCII form."""
    try:
        host.encode('cp1252')
        return host
    except UnicodeEncodeError:
        return host.encode('idna').decode('ascii')


class Lists:
    def __init__(self, phishing, harmless):
        self.listed = read_json(phishing, 'src/config.json')['blacklist']
        self.listed_set = set(self.listed)
        hosts = read_json(harmless, 'index.json')
        # As many as there are listed hosts: all that the list covers or that are of an odd form, the others evenly.
        special = [host for host in hosts if self.covering(host) or not is_plain(host)]
        others = [host for host in hosts if not self.covering(host) and is_plain(host)]
        wanted = max(min(len(self.listed) - len(special), len(others)), 0)
        chosen = special + [others[index * len(others) // wanted] for index in range(wanted)]
        self.harmless = [on_the_wire(host) for host in chosen]
        # (host, is from the list, URL) of every request, in order.
        self.requests = [(host, is_listed, scheme + host + '/')
                         for hosts, is_listed in ((self.listed, True), (self.harmless, False))
                         for host in hosts for scheme in SCHEMES]

    def covering(self, host):
        """The listed host that covers this one, itself or what is left behind a dot down to two labels, or None."""
        labels = host.split('.')
        suffixes = ('.'.join(labels[first:]) for first in range(max(len(labels) - 1, 1)))
        return next((suffix for suffix in suffixes if suffix in self.listed_set), None)


def prepare(lists, folder):
    sites = [f'{scheme}{host}\t2\t{VALIDATED}\n' for host in lists.listed for scheme in SCHEMES]
    (folder / 'sites.txt').write_text(''.join(sites), 'cp1252')
    (folder / 'requests.txt').write_text(''.join(f'Check\t{url}\n' for _, _, url in lists.requests), 'cp1252')
    print(f'real lists: {len(lists.listed)} listed hosts, {len(sites)} entries, {len(lists.harmless)} harmless hosts')
    return len(lists.listed) != EXPECTED_LISTED


def report(lists, folder):
    replies = (folder / 'replies.txt').read_text('cp1252').split('\n')[:-1]
    counts, exceptions, wrong = collections.Counter(), [], []
    for (host, is_listed, url), reply in zip(lists.requests, replies):
        verdict = {BLOCK_TEXT: 'blocked', 'OK': 'passed'}.get(reply, 'other')
        counts[is_listed, verdict] += 1
        covering = lists.covering(host)
        line = f'{url}: {verdict} ({reply!r}), {covering or "no listed host"} covers it'
        if is_plain(host) and verdict != ('blocked' if covering else 'passed') or verdict == 'other':
            wrong.append(line)
        elif verdict != ('blocked' if is_listed else 'passed'):
            exceptions.append(line)
    for is_listed, name in ((True, 'listed'), (False, 'harmless')):
        told = ', '.join(f'{counts[is_listed, verdict]} {verdict}' for verdict in ('blocked', 'passed', 'other'))
        print(f'{name} hosts, http and https: {told}')
    print(f'exceptions, by a listed parent or an odd form that decoding may change: {len(exceptions)}')
    print(''.join(f'  {line}\n' for line in exceptions), end='')
    print(f'against the rules: {len(wrong)}; {len(lists.requests)} requests, {len(replies)} replies')
    print(''.join(f'  {line}\n' for line in wrong[:50]), end='')
    return bool(wrong) or len(replies) != len(lists.requests)


if __name__ == '__main__':
    commands = {'prepare': prepare, 'report': report}
    if len(sys.argv) != 5 or sys.argv[1] not in commands:
        sys.exit(__doc__)
    sys.exit(commands[sys.argv[1]](Lists(sys.argv[2], sys.argv[3]), pathlib.Path(sys.argv[4])))
