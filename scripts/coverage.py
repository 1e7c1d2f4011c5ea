"""Prints the shares of executed lines and of taken branches a folder and a file, from the counters that a coverage build left behind.

usage: coverage.py BUILD_FOLDER [FOLDER...]   (default: binding plugin toolkit/vyrLua and the generated bindings)
"""
import collections
import json
import os
import subprocess
import sys

root = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
build = os.path.realpath(sys.argv[1])
generated = os.path.relpath(os.path.join(build, "generated"), root)
folders = sys.argv[2:] or ["binding", "plugin", "toolkit/vyrLua", generated]


def counters():
    for folder, _, names in os.walk(build):
        for name in names:
            if name.endswith(".gcda"):
                yield os.path.join(folder, name)


executed = collections.defaultdict(dict)  # file -> line -> executed at all
taken = collections.defaultdict(dict)  # file -> (line, number) -> taken at all; ways of exceptions are left out
for counter in counters():
    text = subprocess.run(["gcov", "--branch-probabilities", "--json-format", "--stdout", counter], cwd=build, capture_output=True, text=True).stdout
    for line in text.splitlines():
        if not line.startswith("{"):
            continue
        report = json.loads(line)
        for entry in report["files"]:
            path = os.path.relpath(os.path.realpath(os.path.join(report["current_working_directory"], entry["file"])), root)
            if any(path.startswith(folder + os.sep) for folder in folders):
                lines = executed[path]
                for item in entry["lines"]:
                    lines[item["line_number"]] = lines.get(item["line_number"], False) or item["count"] > 0
                    ways = [way for way in item.get("branches", []) if not way["throw"]]
                    for number, way in enumerate(ways):
                        key = (item["line_number"], number)
                        taken[path][key] = taken[path].get(key, False) or way["count"] > 0

if not executed:
    sys.exit("no counters of " + ", ".join(folders) + " in " + build)


def share(parts):
    return f"{100 * sum(parts) / len(parts):5.1f} % of {len(parts):5d}" if parts else "none of     0"


for folder in folders:
    paths = sorted(path for path in executed if path.startswith(folder + os.sep))
    if paths:
        lines = [hit for path in paths for hit in executed[path].values()]
        ways = [hit for path in paths for hit in taken[path].values()]
        print(f"{folder}: {share(lines)} lines, {share(ways)} branches")
    for path in paths:
        print(f"  {share(list(executed[path].values()))} lines  {share(list(taken[path].values()))} branches  {path}")
