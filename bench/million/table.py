#!/usr/bin/env python3
"""table.py BIN [--no-wine]: prints the table of docs/performance.md, measured now: the programs of the folder BIN beside
squidGuard and @ghostery/adblocker, on the same sites and requests. All figures are medians of five. What it makes is
kept in build/bench, so that a second run only measures.
"""
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = ROOT / "bench" / "million"
WORK = ROOT / "build" / "bench"
RUNS = 5
REQUESTS = 200_000
SNAPSHOT = "TBDB202611210900.BIN"
BLOCKER = "@ghostery/adblocker"
BLOCKER_VERSION = "2.18.2"
SQUID_CONFIG = """dbhome {0}
logdir {0}
dest listed {{
    domainlist domains
    urllist paths
}}
acl {{
    default {{
        pass !listed all
        redirect http://blocked.invalid/
    }}
}}
"""


def say(text):
    print(f"bench: {text}", file=sys.stderr, flush=True)


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], check=False, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, **options)
    if done.returncode != 0:
        sys.exit(f"bench: {command[0]} ended with status {done.returncode}\n{done.stdout}{done.stderr}")
    return done


def install():
    missing = [name for name, program in (("squidguard", "squidGuard"), ("npm", "npm")) if not shutil.which(program)]
    if missing:
        say("installing " + " ".join(missing))
        run("apt-get", "-q", "update")
        run("apt-get", "-q", "-y", "--no-install-recommends", "install", *missing,
            env={**os.environ, "DEBIAN_FRONTEND": "noninteractive"})
    if not (WORK / "node_modules" / BLOCKER).is_dir():
        say("installing " + BLOCKER)
        run("npm", "install", "--prefix", WORK, "--ignore-scripts", "--no-audit", "--no-fund",
            f"{BLOCKER}@{BLOCKER_VERSION}")


def make(name, how):
    """Runs how(PATH) unless the file of that name is there; a broken-off one is not."""
    path = WORK / name
    if not path.exists():
        say("making " + name)
        how(path)
    return path


def prepare(tool):
    """The same sites for each program, in its own form, ready to load."""
    stamp = (HERE / "sites.py").stat().st_mtime_ns
    if not (WORK / "made").exists() or (WORK / "made").read_text() != str(stamp):
        for name in ("hits", SNAPSHOT, "paths.db", "engine"):
            (WORK / name).unlink(missing_ok=True)
    make("hits", lambda path: run(sys.executable, HERE / "sites.py", WORK))
    make(SNAPSHOT, lambda path: run(tool, "snapshot", "save", "--list", WORK / "list.txt", "--stamp", SNAPSHOT[4:16],
                                    "--out", WORK))
    (WORK / "squid.conf").write_text(SQUID_CONFIG.format(WORK))
    make("paths.db", lambda path: run("squidGuard", "-C", "all", "-c", WORK / "squid.conf"))
    make("engine", lambda path: run("node", "--max-old-space-size=8000", HERE / "blocker.mjs", "prepare",
                                    WORK / "domains", WORK / "paths", path, cwd=WORK))
    (WORK / "made").write_text(str(stamp))


def filter_run(command, requests, replies):
    """Wall seconds and standard error of a program that answers lines with lines."""
    with open(requests, "rb") as questions, open(replies, "wb") as answers:
        start = time.monotonic()
        done = subprocess.run([str(word) for word in command], check=True, stdin=questions, stdout=answers,
                              stderr=subprocess.PIPE)
        return time.monotonic() - start, done.stderr.decode()


def count(file, mark):
    return sum(mark in line for line in open(file, "rb"))


def ours(tool):
    _, stats = filter_run([tool, "check", "--snapshot", WORK / SNAPSHOT, "--stats"], WORK / "requests.txt",
                          WORK / "replies")
    values = dict(word.split("=") for word in stats.split())
    return REQUESTS / int(values["check_ms"]) * 1000, count(WORK / "replies", b"Validated")


def squid():
    command = ["squidGuard", "-c", WORK / "squid.conf"]
    empty, _ = filter_run(command, os.devnull, WORK / "replies")
    seconds, _ = filter_run(command, WORK / "squid.txt", WORK / "replies")
    return REQUESTS / (seconds - empty), count(WORK / "replies", b"blocked")


def blocker():
    hits, speed = run("node", "--max-old-space-size=8000", HERE / "blocker.mjs", "run", WORK / "engine",
                      WORK / "urls.txt", cwd=WORK).stdout.split()
    return float(speed), int(hits)


def peers(tool):
    """URLs a second and hits of each program; they take turns, so that all meet the same disturbances."""
    measured = {"tbtool check": [], "squidGuard": [], BLOCKER: []}
    for _ in range(RUNS):
        measured["tbtool check"].append(ours(tool))
        measured["squidGuard"].append(squid())
        measured[BLOCKER].append(blocker())
    print(f"{'200,000 requests on 4,000,000 entries':42} {'URLs/s':>12} {'hits':>9}")
    for name, runs in measured.items():
        print(f"  {name:40} {statistics.median(speed for speed, _ in runs):12,.0f} {runs[0][1]:9,}")
    return {name: statistics.median(speed for speed, _ in runs) for name, runs in measured.items()}


def figures(program, *arguments):
    return {name: float(value) for name, value in
            (line.split("\t") for line in run(program, *arguments).stdout.splitlines())}


def start_ratio(load_seconds):
    """How the start with a million entries compares with the native load and an empty start."""
    say("building and starting the Windows program")
    scripts = ROOT / "scripts"
    run(scripts / "stage", WORK / "program")
    run("cmake", "--build", ROOT / "build" / "windows", "--target", "tbprobe")
    output = run(scripts / "with-display", scripts / "start-time", WORK / "program",
                 ROOT / "build" / "windows" / "bin" / "tbprobe.exe", WORK / "one" / SNAPSHOT).stdout
    values = {name: float(value) for name, value in (line.split("\t") for line in output.splitlines() if "\t" in line)}
    return values["full s"] / (values["empty s"] + load_seconds)


def row(what, value, goal, least=False):
    met = value >= goal if least else value <= goal
    print(f"  {what:58} {value:12,.2f}   {'at least' if least else 'at most':8} {goal:>9,g}   {'met' if met else 'MISSED'}")
    return met


def main():
    binaries = pathlib.Path(sys.argv[1]).resolve()
    WORK.mkdir(parents=True, exist_ok=True)
    tool = binaries / "tbtool"
    install()
    prepare(tool)
    print(f"load average at the start: {os.getloadavg()[0]:.2f} of {os.cpu_count()} processors")
    speeds = peers(tool)
    got = figures(binaries / "million", WORK)
    memory = [figures(binaries / "million", "--memory", path)["bytes an entry"]
              for path in (WORK / SNAPSHOT, WORK / "one" / SNAPSHOT)]
    print(f"{'row':60} {'measured':>12}   {'goal':>18}")
    rows = [
        row("tbtool check : squidGuard", speeds["tbtool check"] / speeds["squidGuard"], 10, True),
        row("tbtool check : " + BLOCKER, speeds["tbtool check"] / speeds[BLOCKER], 20, True),
        row("CheckEvil in process, URLs a second", got["verdicts a second"], 1e6, True),
        row(f"p99 : p50 ({got['p50 ns']:.0f} ns)", got["p99 to p50"], 8),
        row("verdict at 1,000,000 domains : at 10,000", got["growth"], 2.5),
        row("verdict at a host of 100,000 paths : ordinary", got["one host: verdict"], 20),
        row("load of that host, an entry : ordinary", got["one host: load"], 2),
        row(f"load of 1,000,000 ({got['load s'] * 1000:.0f} ms) : read and crc32", got["load to read and crc32"], 8),
        row("load of 2,000,000 : of 1,000,000", got["load of two millions"], 2.2),
        row("resident bytes an entry, two entries a host", memory[0], 40),
        row("resident bytes an entry, one entry a host", memory[1], 40),
    ]
    if "--no-wine" not in sys.argv:
        rows.append(row("start under Wine : native load and an empty start", start_ratio(got["load s"]), 1.5))
    print(f"load average at the end: {os.getloadavg()[0]:.2f}; {sum(rows)} of {len(rows)} rows meet their goal")


if __name__ == "__main__":
    main()
