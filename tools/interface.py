#!/usr/bin/env python3
"""Keeps docs/interface.md, the index of what a host can use.

The page is made of the public headers: every class, and every function outside a class, with its header and
the first sentence of its comment. Without an option the page is compared with the headers. Each line says
what is missing from the page, what the page names that no header has, or what is without a comment, and the
status is 1 if there is any. With --write the page is written anew; with --addresses a C++ program is printed
that takes the address of every function.
"""

import argparse
import pathlib
import re
import sys
from typing import NamedTuple

PAGE = "docs/interface.md"
# the folders in the order of docs/architecture.md, and what a section of the page begins with
FOLDERS = {
    "runtime": "The root of the exceptions.",
    "util": "Log and sinks, strings, threads, owning pointers.",
    "util/concurrent": "Locks, parallel loops and tasks.",
    "io": "Files.",
    "math/matrix": "Small matrices and linear systems.",
    "math/equation": "Root finders.",
    "math/interpolation": "Interpolation in tables.",
    "thermo": "Elements, formulas, species, the database, mixtures and propellants.",
    "thermo/nasa9": "The species file.",
    "thermo/properties": "Tables of liquids, viscosity and conductivity of gases.",
    "thermo/input": "The configuration document: its sections, and what they are made of.",
    "gasdynamics": "Isentropic relations and the standard atmosphere.",
    "verification/criteria": "What makes a state an equilibrium, and its grade.",
    "reaction": "Products, the equilibrium solver and what follows from its result.",
    "performance": "What runs a document.",
    "performance/equilibrium": "Chamber and nozzle in shifting equilibrium.",
    "performance/frozen": "The same behind a section from which the composition stays.",
    "performance/efficiency": "From the ideal engine to a real one.",
    "explosion": "Heat of explosion.",
    "verification": "Whether an engine obeys the laws of its flow.",
    "api": "The flat functions, for a host that wants no classes.",
}
BEGINNING = """# The interface

Every class and function that a host can use, with its header. `#include <ketra/ketra.h>` includes all of
them, and each header stands alone. This page is made of the headers by `tools/interface.py --write`; a test
compares the two.
"""

BLOCK_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
OPENING = re.compile(r"namespace\s+([\w:]+)\s*$")
CLASS = re.compile(
    r"(?:template\s*<.*?>\s*)?(class|struct)\s+(?:\[\[.*?\]\]\s*)?(KETRA_API\s+)?(\w+)(?:\s+final)?"
    r"\s*(?::[^:].*)?$", re.DOTALL)
FUNCTION = re.compile(r"KETRA_API\b(.*?)(\w+)\s*\((.*)\)(?:\s*noexcept)?$", re.DOTALL)
ROW = re.compile(r"\| `(.+?)` \| \[`(.+?)`\]\(.+?\) \| (.*) \|")


class Entry(NamedTuple):
    name: str     # qualified; of a function with its parameters
    header: str   # as a host includes it
    purpose: str
    pointer: str  # a function as a host takes its address; empty for a class


def is_public(path):
    """Whether a header below src/ketra is a host's; path is relative to it."""
    return "detail" not in path.parts and path.parts[0] != "report" and path.as_posix() != "ketra.h"


def statements(text):
    """What stands at namespace scope of a header, each with its namespace, the comment before it, and whether
    it has a body."""
    namespaces = [""]  # one for each open brace, None for one that is no namespace
    statement, comment = [], []
    for line in BLOCK_COMMENT.sub("", text).splitlines():
        stripped = line.strip()
        if stripped.startswith("///"):
            if not "".join(statement).strip():
                comment.append(stripped[3:].strip())
            continue
        if stripped.startswith("#"):
            continue
        if not stripped:
            if not "".join(statement).strip():
                comment = []
            continue
        for character in re.sub(r"//.*", "", line) + "\n":
            at_namespace_scope = namespaces[-1] is not None
            if character == "{":
                head = "".join(statement).strip()
                opening = OPENING.match(head)
                if at_namespace_scope and not opening:
                    yield namespaces[-1], head, comment, True
                namespace = at_namespace_scope and opening
                namespaces.append(namespaces[-1] + opening[1] + "::" if namespace else None)
                statement, comment = [], []
            elif character == "}":
                namespaces.pop()
                statement, comment = [], []
            elif character == ";":
                if at_namespace_scope:
                    yield namespaces[-1], "".join(statement).strip(), comment, False
                statement, comment = [], []
            else:
                statement.append(character)


def first_sentence(comment):
    """The first sentence of a comment's first paragraph, with the marks of Doxygen as marks of the page."""
    lines = []
    for line in comment:
        if not line or line.startswith("\\"):
            break
        lines.append(line)
    text = re.sub(r"\\[pac] (\w+)", r"`\1`", " ".join(lines))
    match = re.match(r"(.*?\.)(?:\s|$)", text)
    return (match[1] if match else text).replace("|", "\\|")


def entries_of(file, include):
    for namespace, text, comment, has_body in statements(file.read_text(encoding="utf-8")):
        text = " ".join(text.split())
        match = CLASS.match(text)
        if match:
            if has_body and (match[1] == "class" or match[2]):
                yield Entry(namespace + match[3], include, first_sentence(comment), "")
            continue
        match = FUNCTION.match(text)
        if match:
            result, name, parameters = match[1].strip(), namespace + match[2], match[3]
            yield Entry(f"{name}({parameters})", include, first_sentence(comment),
                        f"static_cast<{result} (*)({parameters})>(&{name})")
        elif "KETRA_API" in text and not text.startswith("extern template"):
            raise ValueError(f"{file}: cannot tell what this is: {text}")


def entries_of_headers(root):
    """All entries by folder, in the order of the page."""
    library = root / "src" / "ketra"
    found = {folder: [] for folder in FOLDERS}
    for file in sorted(library.rglob("*.h")):
        path = file.relative_to(library)
        if is_public(path):
            include = "ketra/" + path.as_posix()
            found.setdefault(path.parent.as_posix(), []).extend(entries_of(file, include))
    return {folder: entries for folder, entries in found.items() if entries}


def page_of(entries):
    lines = [BEGINNING]
    for folder, members in entries.items():
        lines += [f"## `{folder}/`\n"]
        if folder in FOLDERS:
            lines += [FOLDERS[folder] + "\n"]
        lines += ["| name | header | what it is for |", "|---|---|---|"]
        lines += [f"| `{e.name}` | [`{e.header}`](../src/{e.header}) | {e.purpose} |" for e in members]
        lines += [""]
    return "\n".join(lines).rstrip("\n") + "\n"


def entries_of_page(text):
    return [Entry(*match.groups(), "") for match in map(ROW.fullmatch, text.splitlines()) if match]


def program_of(entries):
    pointers = [e.pointer for members in entries.values() for e in members if e.pointer]
    # A table that other sources could see: no address of it can be left out.
    table = ",\n".join(f"    reinterpret_cast<Address>({pointer})" for pointer in pointers)
    return f"""#include <ketra/ketra.h>

#include <cstdio>

using namespace verification; // the functions name the types of their namespace alone
using Address = void (*)();
extern Address addresses[{len(pointers)}];
Address addresses[{len(pointers)}] = {{
{table}}};

int main()
{{
    int count = 0;
    for (const Address address : addresses) count += address != nullptr ? 1 : 0;
    std::printf("%d of {len(pointers)} functions\\n", count);
    return count == {len(pointers)} ? 0 : 1;
}}
"""


def check(root, entries, complain):
    page = root / PAGE
    text = page.read_text(encoding="utf-8") if page.exists() else ""
    in_headers = [entry for members in entries.values() for entry in members]
    in_page = entries_of_page(text)
    named = {(e.name, e.header) for e in in_page}
    there = {(e.name, e.header) for e in in_headers}
    for entry in in_headers:
        if not entry.purpose:
            complain(f"src/{entry.header}: {entry.name} has no comment")
        if (entry.name, entry.header) not in named:
            complain(f"{PAGE}: lacks {entry.name} of {entry.header}")
    for entry in in_page:
        if (entry.name, entry.header) not in there:
            complain(f"{PAGE}: names {entry.name}, which {entry.header} does not have")
    if named == there and text != page_of(entries):
        complain(f"{PAGE}: differs from the headers; write it anew with tools/interface.py --write")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--write", action="store_true", help="write the page anew")
    parser.add_argument("--addresses", action="store_true",
                        help="print a program that takes the address of every function")
    parser.add_argument("--root", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent,
                        help="the source tree to check (default: the one of this script)")
    arguments = parser.parse_args()

    entries = entries_of_headers(arguments.root)
    if arguments.addresses:
        print(program_of(entries), end="")
        return 0
    if arguments.write:
        (arguments.root / PAGE).write_text(page_of(entries), encoding="utf-8", newline="\n")
    faults = []
    check(arguments.root, entries, faults.append)
    for fault in faults:
        print(fault)
    if faults:
        print(f"interface: {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
