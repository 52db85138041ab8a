#!/usr/bin/env python3
"""check-names.py ROOT - holds the interfaces between host and plugins to their names, in order.

A module that was built against another spelling or another order calls the wrong one of them."""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
headers = re.search(r"set\(SOLVANE_PUBLIC_HEADERS(.*?)\)", (root / "sdk/CMakeLists.txt").read_text(),
                    re.S).group(1).split()
declared = []
for header in headers:
    text = re.sub(r"//.*", "", (root / header).read_text())
    for name, body in re.findall(r"^class (\w+)\b[^;{]*\{(.*?)\n\};", text, re.S | re.M):
        declared += [f"{name} {method}" for method in re.findall(r"virtual [^;=(]*?(\w+)\(", body)
                     if method != name]
kept = (root / "tests/rules/public-names.txt").read_text().split("\n")[:-1]
for number, (one, other) in enumerate(zip(kept + [None], declared + [None])):
    if one != other:
        sys.exit(f"public name {number + 1} is {other}, not {one}")
