#!/usr/bin/env python3
"""check-names.py ROOT - holds the interfaces between host and plugins to their names, in order.

A module that was built against another spelling or another order calls the wrong one of them."""

import pathlib
import re
import sys

INTERFACES = {"mndCore": "plugin_host/mndCore.h", "mndPlugin": "plugin_host/mndPlugin.h",
              "mndPluginDelegate": "plugin_host/mndPlugin.h", "mndHelpers": "helpers/mndHelpers.h"}

root = pathlib.Path(sys.argv[1])
declared = []
for name, header in INTERFACES.items():
    text = re.sub(r"//.*", "", (root / header).read_text())
    body = re.search(r"class " + name + r"\b[^;{]*\{(.*?)\n\};", text, re.S).group(1)
    declared += [f"{name} {method}" for method in re.findall(r"virtual [^;=(]*?(\w+)\(", body)
                 if method != name]
kept = (root / "tests/rules/public-names.txt").read_text().split("\n")[:-1]
for number, (one, other) in enumerate(zip(kept + [None], declared + [None])):
    if one != other:
        sys.exit(f"public name {number + 1} is {other}, not {one}")
