#!/usr/bin/env python3
"""Counts the instructions of the benchmarks' works with callgrind and prints a Markdown table.

Instruction counts do not depend on the load of the machine, so two builds can be compared by them. The count
of a work is the difference between a run with many repetitions and one with none, divided by their number;
loading and checking fall out of it. Needs valgrind, and the program ketra_works of a build.
"""

import argparse
import pathlib
import re
import subprocess
import sys

COLLECTED = re.compile(r"Collected : (\d+)")


def instructions(program, work, repetitions):
    """Instructions of a whole run of the program."""
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
               str(program), work, str(repetitions)]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    found = COLLECTED.search(result.stderr)
    if result.returncode != 0 or not found:
        sys.exit(f"count-instructions: {' '.join(command)} failed:\n{result.stderr}")
    return int(found.group(1))


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=pathlib.Path,
                        default=root / "build" / "release" / "benchmarks" / "ketra_works",
                        help="the ketra_works to count (default: that of the release preset)")
    parser.add_argument("--repetitions", type=int, default=5, help="repetitions counted (default: 5)")
    parser.add_argument("--filter", default="", metavar="REGEX", help="count the works that match only")
    arguments = parser.parse_args()
    if arguments.repetitions < 1:
        parser.error("--repetitions must be at least 1")

    listed = subprocess.run([str(arguments.program), "--list"], capture_output=True, text=True, check=True)
    print("| work | instructions |")
    print("|---|---:|")
    for work in listed.stdout.split():
        if not re.search(arguments.filter, work):
            continue
        many = instructions(arguments.program, work, arguments.repetitions)
        none = instructions(arguments.program, work, 0)
        print(f"| `{work}` | {(many - none) // arguments.repetitions:,} |", flush=True)


if __name__ == "__main__":
    main()
