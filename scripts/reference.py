#!/usr/bin/env python3
"""Writes the reference of the scripts' interface: what the manifests list, told by the headers' own comments.

    reference.py SOURCE OUTPUT

OUTPUT/reference.txt is what `vyr help` reads: an entry a name, its calls and what they do.
OUTPUT/types/*.lua are definitions for editors that speak with the Lua language server.
"""
import collections
import pathlib
import re
import sys

# --- The headers' comments -------------------------------------------------------------------------------------------


def read_statements(text):
    """Yields (scope, doc lines, declaration) for each declaration at namespace or class scope of a header."""
    text = re.sub(r"^[ \t]*#(?:.*\\\n)*.*$", "", text, flags=re.M)  # preprocessor
    token = re.compile(r"///?[^\n]*|/\*.*?\*/|\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])*'|[{};]|\n|[^{};/\"'\n]+|/", re.S)
    scope, doc, held, statement, skipped, fresh_lines = [], [], [], "", 0, 0
    for piece in token.findall(text):
        if skipped:
            skipped += {"{": 1, "}": -1}.get(piece, 0)
            continue
        if piece.startswith("///"):
            if piece.startswith("///<"):
                continue
            doc.append(piece[3:].strip())
            fresh_lines = 0
        elif piece.startswith(("//", "/*")):
            continue
        elif piece == "\n":
            fresh_lines += 1
            if fresh_lines > 1 and not statement.strip():
                held, doc = [], []
            statement += " "
        elif piece in "{;":
            declaration = " ".join(re.sub(r"^\s*(?:(?:public|protected|private):\s*)+", "", statement).split())
            # What follows a documented declaration directly is told by the same comment.
            told = doc or held
            opened = re.match(r"(?:inline )?(namespace|class|struct)\b(?! \w+ \w+\()", declaration)
            if piece == "{" and opened and "=" not in declaration:
                name = re.match(r"(?:inline )?\w+(?: VYR\w+_EXPORT)?(?: (?:alignas\([^)]*\)))? ?([\w:]*)", declaration)[1]
                if opened[1] != "namespace":
                    bases = re.findall(r"public ([\w:]+)", declaration)
                    yield scope, doc, declaration, name, bases
                scope = scope + [name]
                held = []
            else:
                if declaration:
                    yield scope, told, declaration, None, None
                held = told
                if piece == "{":
                    skipped = 1
            doc, statement, fresh_lines = [], "", 0
        elif piece == "}":
            scope, statement, doc, held = scope[:-1], "", [], []
        else:
            if piece.strip():
                fresh_lines = 0
            statement += piece


class Comments:
    """The comments of all public headers, by qualified name."""

    def __init__(self, source):
        self.texts = collections.defaultdict(list)
        self.bases = {}
        headers = sorted(source.glob("toolkit/*/include/**/*.h")) + sorted(source.glob("**/support/vyr*/*.h"))
        for header in headers:
            for scope, doc, declaration, opened, bases in read_statements(header.read_text()):
                prefix = "::".join(part for part in scope if part)
                if opened:
                    name = f"{prefix}::{opened}" if prefix else opened
                    self.bases.setdefault(name, []).extend(bases)
                else:
                    plain = re.sub(r"<[^<>]*>", "", re.sub(r"<[^<>]*>", "", declaration))
                    match = re.search(r"(~?\w+)\s*\(", re.sub(r"^(?:VYR\w+_EXPORT |explicit |alignas\([^)]*\) )+", "", plain))
                    if not match:
                        continue
                    name = f"{prefix}::{match[1]}" if prefix else match[1]
                text = "\n".join(doc).strip()
                if text and text not in self.texts[name]:
                    self.texts[name].append(text)

    def find(self, type_name, function):
        """The comments of a class's function, of the nearest base that has some."""
        seen, waiting = set(), [type_name]
        while waiting:
            name = waiting.pop(0)
            if name in seen:
                continue
            seen.add(name)
            if self.texts.get(f"{name}::{function}"):
                return self.texts[f"{name}::{function}"]
            namespace = name.rsplit("::", 1)[0]
            for base in self.bases.get(name, []):
                waiting += [base, f"{namespace}::{base}"]
        return []


# --- The manifests ---------------------------------------------------------------------------------------------------

Parameter = collections.namedtuple("Parameter", "type name default nullable")
Function = collections.namedtuple("Function", "table name self parameters results")


class Interface:
    """What scripts see of all plugins."""

    def __init__(self, source):
        self.tables = {}  # table -> type name, "" for those that are no classes
        self.of_type = {}  # type name -> table
        self.bases = {}
        self.functions = collections.OrderedDict()  # (table, name) -> [Function]
        self.members = collections.OrderedDict()  # table -> [(name, kind, value or type)]
        files = sorted(source.glob("binding/manifests/*/*.txt"))
        lines = [line.rstrip("\n") for file in files for line in file.read_text().splitlines()]
        for line in lines:
            match = re.match(r'class\s+(\S+) type "([^"]*)" base "([^"]*)"', line)
            if match:
                self.tables[match[1]] = match[2]
                self.of_type[match[2]] = match[1]
                self.bases[match[1]] = match[3]
            match = re.match(r"table\s+(\S+)", line)
            if match:
                self.tables.setdefault(match[1], "")
        for line in lines:
            self.read(line)

    def read(self, line):
        match = re.match(r"function\s+(\S*?\w)\.(\.?\w+) \d+ \((.*)\) -> (.*)$", line)
        if match:
            table, name, inside, results = match.groups()
            parts = re.split(r", (?![^(<]*[)>])", inside) if inside else []
            own = parts.pop(0) if parts and parts[0] in ("self", "const self", "class") else None
            kinds = self.functions.setdefault((table, name), [])
            function = Function(table, name, own, [self.parameter(part) for part in parts],
                                [self.result(part) for part in re.split(r", (?![^<]*>)", results)])
            if function not in kinds:
                kinds.append(function)
        match = re.match(r"constant\s+(\S+)\.(\w+) = (\S+)", line)
        if match:
            self.add_member(match[1], match[2], "constant", match[3])
        match = re.match(r"(?:variable|array)\s+(\S+)\.(\w+) (.*?)(?: (read-only|read-write))?$", line)
        if match:
            self.add_member(match[1], match[2], match[4] or "read-write", self.type(match[3]))

    def add_member(self, table, *member):
        members = self.members.setdefault(table, [])
        if member not in members:
            members.append(member)

    def type(self, text):
        """A parameter's or result's type as scripts know it."""
        word = text.split()[0]
        if word in ("number", "boolean", "string"):
            return word
        if word in ("value", "nothing"):
            return {"value": "any", "nothing": "nil"}[word]
        name = re.sub(r"^const |[*&]|\s*\((?:owned|not owned|borrowed|view)\)|\[\d*\]| guarded", "", text).strip()
        return self.of_type.get(name, name.replace("::", "."))

    def parameter(self, text):
        declaration, _, default = text.partition(" = ")
        name = re.search(r"(\w+)$", declaration)[1]
        kind = declaration[: -len(name)].strip()
        return Parameter(self.type(kind or "value"), name, default, kind.endswith("*"))

    def result(self, text):
        return self.type(text)


# --- The texts -------------------------------------------------------------------------------------------------------

OPERATORS = {".add": "add", ".sub": "sub", ".mul": "mul", ".div": "div", ".eq": None, ".lt": None, ".le": None}
SIGNS = {".add": "+", ".sub": "-", ".mul": "*", ".div": "/", ".eq": "==", ".lt": "<", ".le": "<="}
KEYWORDS = {"and", "break", "do", "else", "elseif", "end", "false", "for", "function", "if", "in", "local", "nil",
            "not", "or", "repeat", "return", "then", "true", "until", "while"}


def call_of(function):
    """The call as a script writes it."""
    arguments = ", ".join(f"{p.type} {p.name}" + (f" = {p.default}" if p.default else "") for p in function.parameters)
    sign = SIGNS.get(function.name)
    if function.name == ".call":
        text = f"{function.table}({arguments})"
    elif sign and len(function.parameters) == 1:
        text = f"{function.table} {sign} {function.parameters[0].type}"
    else:
        text = f"{function.table}{':' if function.self else '.'}{function.name}({arguments})"
    results = ", ".join(function.results)
    return text if results in ("nil", "") else f"{text} -> {results}"


def comments_of(comments, interface, table, name):
    type_name = interface.tables.get(table, "") or table.replace(".", "::")
    if name in (".call", "new"):
        return comments.find(type_name, type_name.rsplit("::", 1)[-1])
    return comments.find(type_name, name)


def shown(key):
    """Operators and the second and third form of constructors have no entry of their own."""
    return not key[1].startswith((".", "__")) and key[1] not in ("new", "new_local", "delete")


def entries(interface, comments):
    """(name, lines) of every class and function."""
    for table, type_name in interface.tables.items():
        base = interface.of_type.get(interface.bases.get(table, ""), "")
        lines = [f"{'class' if type_name else 'table'} {table}" + (f", a {base}" if base else "")]
        lines += [call_of(f) for f in interface.functions.get((table, ".call"), [])]
        for (owner, name), overloads in interface.functions.items():
            if owner == table and name in SIGNS:
                lines += [call_of(f) for f in overloads]
        lines += [f"{table}.{n} = {value}" if k == "constant" else f"{table}.{n}: {value} ({k})"
                  for n, k, value in interface.members.get(table, [])]
        texts = (comments.texts.get(type_name, []) if type_name else []) + comments_of(comments, interface, table, ".call")
        functions = sorted(name for (owner, name) in interface.functions if owner == table and shown((owner, name)))
        if functions:
            texts = texts + ["functions: " + ", ".join(functions)]
        yield table, lines, texts
    for (table, name), functions in interface.functions.items():
        if shown((table, name)):
            yield f"{table}.{name}", [call_of(f) for f in functions], comments_of(comments, interface, table, name)


def write_reference(path, interface, comments):
    blocks = []
    for name, calls, texts in sorted(entries(interface, comments)):
        body = [line for text in texts for line in text.split("\n")]
        blocks.append("\n".join([name] + ["  " + c for c in calls] + ["    " + line for line in body if line]))
    path.write_text("\n\n".join(blocks) + "\n")


def lua_name(name):
    return name + "_" if name in KEYWORDS else name


def annotate(functions, texts):
    """The comment lines and the parameter list of a function with its overloads."""
    lines = [f"--- {line}".rstrip() for text in texts for line in text.split("\n")]
    first, *others = functions
    for parameter in first.parameters:
        optional = "?" if parameter.default or parameter.nullable else ""
        lines.append(f"---@param {lua_name(parameter.name)}{optional} {parameter.type}")
    if first.results != ["nil"]:
        lines.append("---@return " + ", ".join(first.results))
    for other in others:
        inside = ["self"] if other.self else []
        inside += [f"{lua_name(p.name)}{'?' if p.default or p.nullable else ''}: {p.type}" for p in other.parameters]
        results = "" if other.results == ["nil"] else ": " + ", ".join(other.results)
        lines.append(f"---@overload fun({', '.join(inside)}){results}")
    return lines, ", ".join(lua_name(p.name) for p in first.parameters)


def table_definition(interface, comments, table, type_name):
    lines = [f"--- {line}".rstrip() for text in comments.texts.get(type_name, []) for line in text.split("\n")] if type_name else []
    base = interface.of_type.get(interface.bases.get(table, ""), "")
    lines.append(f"---@class {table}" + (f" : {base}" if base else ""))
    lines += [f"---@field {n} {'integer' if k == 'constant' else value}" for n, k, value in interface.members.get(table, [])]
    for function in interface.functions.get((table, ".geti"), []):
        lines.append(f"---@field [integer] {function.results[0]}")
    for (owner, name), functions in interface.functions.items():
        if owner == table and OPERATORS.get(name):
            for f in functions:
                if len(f.parameters) == 1:
                    lines.append(f"---@operator {OPERATORS[name]}({f.parameters[0].type}): {f.results[0]}")
    for f in interface.functions.get((table, ".call"), []):
        inside = ", ".join(f"{lua_name(p.name)}{'?' if p.default or p.nullable else ''}: {p.type}" for p in f.parameters)
        lines.append(f"---@overload fun({inside}): {table}")
    lines.append(f"{table} = {{}}")
    for (owner, name), functions in interface.functions.items():
        if owner == table and not name.startswith(".") and name != "new_local":
            texts = comments_of(comments, interface, table, name)
            annotation, arguments = annotate(functions, texts)
            lines += ["", *annotation]
            lines.append(f"function {table}{':' if functions[0].self else '.'}{name}({arguments}) end")
    return lines


def write_types(folder, interface, comments):
    folder.mkdir(parents=True, exist_ok=True)
    files = collections.defaultdict(list)
    for table, type_name in sorted(interface.tables.items()):
        files[table.split(".")[0]] += ["", *table_definition(interface, comments, table, type_name)]
    for name, lines in files.items():
        (folder / f"{name}.lua").write_text("\n".join(["---@meta", *lines]) + "\n")


def main():
    source, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    output.mkdir(parents=True, exist_ok=True)
    interface, comments = Interface(source), Comments(source)
    write_reference(output / "reference.txt", interface, comments)
    write_types(output / "types", interface, comments)
    told = [bool(comments_of(comments, interface, *key)) for key in interface.functions if shown(key)]
    print(f"reference: {len(interface.tables)} tables, {len(told)} functions, {sum(told)} of them with a description")


main()
