#!/usr/bin/env python3
"""sites.py FOLDER: writes the lists and requests of the comparison at a million sites into the folder, the same ones
each time, in the form that each program reads.

A million bare hosts and a million sites of host and path are listed, each under http:// and https://; the peers' forms
cover both schemes by one line. Of the requests 25 % are to listed hosts, 25 % to listed paths, 25 % to foreign hosts, 15 % to
other paths of listed hosts and 10 % to look-alikes; 80 % are https.
"""
import pathlib
import random
import sys

SITES = 1_000_000
REQUESTS = 200_000
FIRST = "secure login account verify update billing support signin wallet office mail cloud".split()
SECOND = "bank parcel shop pay media travel games photo market energy".split()
TOP = "example test invalid a.example b.example co.test".split()
PATHS = "wp-content/themes/index account/login signin/confirm images/update id/session portal/auth.html".split()


def host(number):
    mixed = number * 2654435761 % 4294967296
    return f"{FIRST[mixed % 12]}-{SECOND[mixed // 12 % 10]}{number:x}.{TOP[mixed // 120 % 6]}"


def path_site(number):
    mixed = number * 2246822519 % 4294967296
    return f"{host(SITES + number)}/{PATHS[mixed % 6]}/{mixed % 8191:x}"


def write(folder, name, lines):
    with open(folder / name, "w", encoding="ascii", newline="\n") as file:
        file.writelines(lines)


def entries(site, count):
    for number in range(count):
        yield f"http://{site(number)}\t2\t11/21/2026\nhttps://{site(number)}\t2\t11/21/2026\n"


def request(rng):
    """The URL without its scheme, and whether the lists cover it."""
    kind = rng.random()
    number = rng.randrange(SITES)
    tail = f"view/{number % 977:x}.html?id={rng.randrange(1 << 20):x}"
    if kind < 0.25:
        return f"{rng.choice(('', '', 'www.', 'm.shop.'))}{host(number)}/{rng.choice(('', tail))}", True
    if kind < 0.50:
        return path_site(number) + rng.choice(("", "/" + tail)), True
    if kind < 0.75:
        return f"{rng.choice(('', 'www.'))}{SECOND[number % 10]}{number:x}.{FIRST[number % 12]}.test/{tail}", False
    if kind < 0.90:
        return f"{host(SITES + number)}/{tail}", False
    listed = host(number)
    return rng.choice((f"{listed}.{SECOND[number % 10]}.test/{tail}", f"x{listed}/{tail}",
                       listed.replace("-", "--", 1) + "/" + tail)), False


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    write(folder, "list.txt", entries(host, SITES))
    with open(folder / "list.txt", "a", encoding="ascii", newline="\n") as file:
        file.writelines(entries(path_site, SITES))
    write(folder, "domains", (host(number) + "\n" for number in range(SITES)))
    write(folder, "paths", (path_site(number) + "\n" for number in range(SITES)))
    rng = random.Random(7)
    urls, hits = [], 0
    for _ in range(REQUESTS):
        rest, listed = request(rng)
        hits += listed
        urls.append(("https" if rng.random() < 0.8 else "http") + "://" + rest)
    write(folder, "urls.txt", (url + "\n" for url in urls))
    write(folder, "requests.txt", (f"66066\tCheck\t{url}\t\n" for url in urls))
    write(folder, "squid.txt", (f"{url} 10.0.0.1/- - GET\n" for url in urls))
    write(folder, "hits", [f"{hits}\n"])


if __name__ == "__main__":
    main()
