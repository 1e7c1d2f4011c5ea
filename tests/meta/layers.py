#!/usr/bin/env python3
"""Compares every #include of the project's own headers with the layer table of docs/architecture.md."""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])

# The table: "| part | may include |".
allowed = {}
for line in (root / "docs/architecture.md").read_text().splitlines():
    match = re.fullmatch(r"\| (vyr\w+|binding|plugin|scriptplugins|host) \|([ \w]*)\|", line)
    if match:
        allowed[match[1]] = set(match[2].split()) | {match[1]}
if len(allowed) != 9:
    sys.exit(f"the layer table has {len(allowed)} rows, expected 9")

# Which part a header belongs to.
owner = {}
for library in ("vyrCore", "vyrPhysics", "vyrModel", "vyrOSG", "vyrLua"):
    include = root / "toolkit" / library / "include"
    for header in include.rglob("*.h"):
        owner[str(header.relative_to(include))] = library
    owner[f"{library}/export.h"] = library
for header in (root / "binding").rglob("*.h"):
    owner[str(header.relative_to(root / "binding"))] = "binding"

foreign = {
    "Bullet": (re.compile(r"^(bt\w*|LinearMath/.*|BulletCollision/.*|BulletDynamics/.*)\.h$"),
               ("toolkit/vyrPhysics/src/", "toolkit/vyrModel/src/", "bench/")),
    "OpenSceneGraph": (re.compile(r"^osg\w*/"), ("toolkit/vyrOSG/", "toolkit/scriptplugins/", "binding/", "host/")),
    "Lua": (re.compile(r"^(lua|lauxlib|lualib|tolua\+\+)\.(h|hpp)$"),
            ("toolkit/vyrLua/", "toolkit/scriptplugins/", "binding/", "plugin/", "host/")),
    "APR": (re.compile(r"^apr"), ("toolkit/vyrCore/include/vyr/Atomic.h",)),
}


def part_of(path):
    parts = path.parts
    if parts[0] == "toolkit":
        return parts[1]
    return parts[0]


failures = []
seen = 0
for top in ("toolkit", "binding", "plugin", "host"):
    for path in sorted((root / top).rglob("*")):
        if path.suffix not in (".h", ".cpp", ".pkg"):
            continue
        relative = path.relative_to(root)
        part = part_of(relative)
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = re.match(r'\s*\$?#\s*include\s*[<"]([^>"]+)[>"]', line)
            if not match:
                continue
            seen += 1
            name = match[1]
            if name in owner and part in allowed and owner[name] not in allowed[part]:
                failures.append(f"{relative}:{number}: {part} must not include <{name}> of {owner[name]}")
            for library, (pattern, places) in foreign.items():
                if pattern.match(name) and not str(relative).startswith(places):
                    failures.append(f"{relative}:{number}: {library} must not be named here (<{name}>)")
if seen < 100:
    failures.append(f"only {seen} includes were found: the search looks in the wrong place")
print(f"{seen} includes compared")
print("\n".join(failures))
sys.exit(1 if failures else 0)
