#!/usr/bin/env python3
"""The compiled help file leads every topic that the program calls to one of its pages.
  help_topics.py FILE.chm Help.h      the header names the topics"""
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path


def main():
    chm, header = (Path(name).resolve() for name in sys.argv[1:])
    listing = subprocess.run(["chmls", "list", chm], check=True, capture_output=True, text=True).stdout
    pages = {line.split()[-1] for line in listing.splitlines() if line.strip()}
    with tempfile.TemporaryDirectory() as folder:
        # It reads the parts that the viewer reads, /#IVB and /#STRINGS, and writes beside the file.
        copy = shutil.copy(chm, Path(folder, "topics.chm"))
        subprocess.run(["chmls", "extractalias", copy], check=True, capture_output=True)
        aliases = copy.with_suffix(".ali")
        mapped = dict(line.split("=", 1) for line in aliases.read_text().splitlines()) if aliases.exists() else {}
    called = re.findall(r"constexpr std::int32_t \w+ = ([1-9]\d*);", header.read_text())
    if not called:
        sys.exit("the header names no topic")
    for topic in called:
        page = mapped.get("helpid" + topic)
        if page is None or "/" + page not in pages:
            sys.exit(f"topic {topic} leads to {page}, which is no page of the file")
    print(f"{len(called)} topic(s) lead to pages")


main()
