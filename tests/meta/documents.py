#!/usr/bin/env python3
"""Looks for every file that the documents name, and for the targets and programs of their commands."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
tops = {path.name for path in root.iterdir()}
targets = set(re.findall(r"^([a-z-]+):", (root / "Makefile").read_text(), re.M))
failures = []
seen = 0
for document in sorted([*root.glob("*.md"), *root.glob("docs/**/*.md"), *root.glob("*/README.md"),
                        *root.glob("*/*/README.md")]):
    if document.name == "CHANGELOG.md":  # It tells of what was.
        continue
    where = document.relative_to(root)
    text = document.read_text()
    links = [(document.parent, name) for name in re.findall(r"\]\(([^)#:\s]+)(?:#[^)]*)?\)", text)]
    # A path in backticks or a command begins with a folder of the tree.
    for name in re.findall(r"(?<![\w/.-])((?:[\w.-]+/)+[\w.*-]*)", text):
        if name.split("/")[0] in tops - {"build"} and "..." not in name:
            links.append((root, name.rstrip(".")))
    for base, name in links:
        seen += 1
        if not list(base.glob(name.rstrip("/"))) if "*" in name else not (base / name).exists():
            failures.append(f"{where}: '{name}' is not there")
    for target in re.findall(r"\bmake ([a-z][a-z-]*)\b", "\n".join(re.findall(r"`[^`\n]*`|^    .*$", text, re.M))):
        seen += 1
        if target not in targets:
            failures.append(f"{where}: the Makefile has no target '{target}'")
if seen < 50:
    failures.append(f"only {seen} names were found: the search looks in the wrong place")
print(f"{seen} names compared")
print("\n".join(failures))
sys.exit(1 if failures else 0)
