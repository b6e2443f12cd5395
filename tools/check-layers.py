#!/usr/bin/env python3
"""Checks who includes whom in src/ketra, and what the programs on top of it include.

The layers, each seeing itself and those before it:

    runtime <- util, io, math <- thermo, gasdynamics <- verification/criteria <- reaction
            <- performance, explosion <- api, verification

thermo/input sees runtime, util and io only; report sees util and thermo/input, and prints for the layers
from thermo upwards. Further rules:

  - detail/ headers serve their own subsystem; those of the support layer serve every source of the library;
  - public headers (all outside detail/ and report/) include public headers and the standard library only;
  - a third-party library stays behind the folder that wraps it;
  - programs (apps, examples, benchmarks) include public headers only;
  - every file stands in a CMakeLists.txt, and every public header in the umbrella header ketra.h.

Prints one line per violation and ends with status 1 if there is any.
"""

import argparse
import pathlib
import re
import sys

SUPPORT = {"runtime", "util", "io", "math"}
# folder: the folders that its files may include, besides itself
MAY_SEE = {
    "runtime": set(),
    "util": {"runtime"},
    "io": {"runtime", "util"},
    "math": {"runtime", "util"},
    "thermo/input": {"runtime", "util", "io"},
    "report": {"runtime", "util", "thermo/input"},
    "thermo": SUPPORT | {"report"},
    "gasdynamics": SUPPORT | {"thermo", "report"},
    "verification/criteria": SUPPORT | {"thermo"},
    "reaction": SUPPORT | {"thermo", "gasdynamics", "verification/criteria", "report"},
    "performance": SUPPORT | {"thermo", "thermo/input", "gasdynamics", "verification/criteria", "reaction", "report"},
    "explosion": SUPPORT | {"thermo", "thermo/input", "gasdynamics", "verification/criteria", "reaction",
                            "performance", "report"},
    "verification": SUPPORT | {"thermo", "verification/criteria", "reaction", "performance"},
}
MAY_SEE["api"] = set(MAY_SEE) | {"api"}

# third-party header (a regular expression): the folder whose sources may include it
WRAPPED = {
    r"libconfig\.h(\+\+)?": "thermo/input",
    r"(Eigen|unsupported)/.*": "math",
    r"boost/.*": "math",
    r"(tbb|oneapi)/.*": "util",
}
PROGRAMS = ("apps", "examples", "benchmarks")
# what a public header may include from outside: the standard library, and threads of the platform
STANDARD = re.compile(r"[a-z_0-9]+|pthread\.h")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
SUFFIXES = (".h", ".cpp")


def folder_of(path):
    """The layer folder of a path below src/ketra, "" for files at its top."""
    parts = path.split("/")
    for layer in (["thermo", "input"], ["verification", "criteria"]):
        if parts[:2] == layer and len(parts) > 2:
            return "/".join(layer)
    return parts[0] if len(parts) > 1 else ""


def is_internal(path):
    return "/detail/" in path or folder_of(path) == "report"


def includes_of(file):
    """Line, bracket and name of each include of a file."""
    text = file.read_text(encoding="utf-8")
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start()) + 1, match.group(1), match.group(2)


def library_violation(path, bracket, name):
    """Why a file of the library may not include this header, or None."""
    folder = folder_of(path)
    public_header = path.endswith(".h") and not is_internal(path)
    if bracket == '"':
        return "includes of our own are written <ketra/...>"
    if not name.startswith("ketra/"):
        if public_header and not STANDARD.fullmatch(name):
            return "a public header includes the standard library only"
        for pattern, wrapper in WRAPPED.items():
            if re.fullmatch(pattern, name) and folder != wrapper:
                return f"only {wrapper} includes it"
        return None
    target = name[len("ketra/"):]
    if target == "export.h":
        return None
    if target == "ketra.h":
        return "the umbrella header is for hosts"
    seen = folder_of(target)
    if public_header and is_internal(target):
        return "a public header includes an internal one"
    if path != "ketra.h" and seen != folder and seen not in MAY_SEE.get(folder, set()):
        return f"{folder} does not see {seen}"
    if "/detail/" in target and seen not in SUPPORT and folder not in (seen, seen.split("/")[0]):
        return f"detail of {seen} is its own"
    return None


def check_includes(root, complain):
    library = root / "src" / "ketra"
    for file in sorted(library.rglob("*")):
        if file.suffix not in SUFFIXES:
            continue
        path = file.relative_to(library).as_posix()
        folder = folder_of(path)
        if path != "ketra.h" and folder not in MAY_SEE:
            complain(file, 1, f"folder {folder or '.'} has no layer")
            continue
        for line, bracket, name in includes_of(file):
            why = library_violation(path, bracket, name)
            if why:
                complain(file, line, f"{name}: {why}")
    for program in PROGRAMS:
        for file in sorted((root / program).rglob("*")):
            if file.suffix not in SUFFIXES:
                continue
            for line, _, name in includes_of(file):
                if name.startswith("ketra/") and is_internal(name[len("ketra/"):]):
                    complain(file, line, f"{name}: programs include public headers only")


def check_lists(root, complain):
    """Every source in a CMakeLists.txt of its folder or one above, every public header in ketra.h."""
    library = root / "src" / "ketra"
    umbrella = library / "ketra.h"
    gathered = {name for _, _, name in includes_of(umbrella)} if umbrella.exists() else set()
    listed = {}
    for cmake in library.rglob("CMakeLists.txt"):
        words = re.findall(r"[\w./+-]+", cmake.read_text(encoding="utf-8"))
        for word in words:
            if word.endswith(SUFFIXES):
                listed[(cmake.parent / word).as_posix()] = cmake
    for file in sorted(library.rglob("*")):
        if file.suffix not in SUFFIXES:
            continue
        path = file.relative_to(library).as_posix()
        internal_header = file.suffix == ".h" and is_internal(path)
        if not internal_header and file.as_posix() not in listed:
            complain(file, 1, "stands in no CMakeLists.txt")
        if file.suffix == ".h" and not internal_header and file != umbrella:
            if "ketra/" + path not in gathered:
                complain(file, 1, "public, but not in ketra.h")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent,
                        help="the source tree to check (default: the one of this script)")
    root = parser.parse_args().root

    violations = 0

    def complain(file, line, why):
        nonlocal violations
        violations += 1
        print(f"{file.relative_to(root).as_posix()}:{line}: {why}")

    check_includes(root, complain)
    check_lists(root, complain)
    if violations:
        print(f"check-layers: {violations} violations")
    return 1 if violations else 0


if __name__ == "__main__":
    sys.exit(main())
