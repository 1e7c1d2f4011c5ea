#!/usr/bin/env python3
"""Compiles every public header alone: each must include what it uses."""
import concurrent.futures
import json
import os
import pathlib
import shlex
import subprocess
import sys

source, binary, library = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]

# The flags of one of the library's own files serve its headers.
commands = json.loads((binary / "compile_commands.json").read_text())
sample = next(c for c in commands if f"/toolkit/{library}/src/" in c["file"])
words = shlex.split(sample["command"])
compiler = next(word for word in words if "++" in pathlib.Path(word).name and not word.startswith("-"))
flags = []
rest = iter(words[words.index(compiler) + 1:])
for word in rest:
    if word in ("-o", "-c", "-MF", "-MT"):
        next(rest)
    elif word not in ("-MD",):
        flags.append(word)

include = source / "toolkit" / library / "include"
headers = sorted(str(h.relative_to(include)) for h in include.rglob("*.h"))


def check(header):
    run = subprocess.run([compiler, *flags, "-fsyntax-only", "-x", "c++", "-"],
                         input=f"#include <{header}>\n", text=True, capture_output=True, cwd=sample["directory"])
    return header, run.returncode, run.stderr


with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
    results = list(pool.map(check, headers))
for header, code, text in results:
    if code != 0:
        print(f"<{header}> does not compile alone:\n{text}")
print(f"{len(results)} headers compiled alone")
sys.exit(0 if results and all(code == 0 for _, code, _ in results) else 1)
