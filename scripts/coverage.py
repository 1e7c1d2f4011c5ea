"""Prints the share of executed lines a folder and a file, from the counters that a coverage build left behind.

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
for counter in counters():
    text = subprocess.run(["gcov", "--json-format", "--stdout", counter], cwd=build, capture_output=True, text=True).stdout
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

if not executed:
    sys.exit("no counters of " + ", ".join(folders) + " in " + build)
for folder in folders:
    files = {path: lines for path, lines in sorted(executed.items()) if path.startswith(folder + os.sep)}
    total = sum(len(lines) for lines in files.values())
    hit = sum(sum(lines.values()) for lines in files.values())
    if total:
        print(f"{folder}: {100 * hit / total:.1f} % of {total} lines")
    for path, lines in files.items():
        print(f"  {100 * sum(lines.values()) / max(len(lines), 1):5.1f} %  {len(lines):5d}  {path}")
