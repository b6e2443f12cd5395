#!/usr/bin/env python3
"""Approve changed reports.

Runs the report tests of a build, shows how each received report differs from the approved one, and
puts the received one in its place if you agree. Look at every difference: a changed digit is a
change of the library's results and belongs into the CHANGELOG under "Numerical".

A new case is a folder under tests/reports with case.cfg and ORIGIN.md; its reports come from here.

Exit code: 0 when every report is as approved in the end, 1 when a difference was left, 2 when the
tests could not be run.
"""

import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CASES = ROOT / "tests" / "reports"
REPORTS = ("report.si.txt", "report.english.txt",
           "report.si.transport.txt", "report.english.transport.txt")


def arguments():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("cases", nargs="*", metavar="CASE",
                        help="folder names under tests/reports; all if none is named")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "dev",
                        help="build folder that holds the test program (default: build/dev)")
    decision = parser.add_mutually_exclusive_group()
    decision.add_argument("--yes", action="store_true", help="approve without asking")
    decision.add_argument("--show", action="store_true", help="show the differences, approve nothing")
    return parser.parse_args()


def run_tests(program):
    """Runs the report tests, which write every report that is not as approved."""
    if not program.exists():
        raise OSError(f"no test program at {program}; build it, or name its build with --build")
    result = subprocess.run([str(program), "--gtest_brief=1"], stdout=subprocess.DEVNULL,
                            check=False)
    if result.returncode not in (0, 1):
        raise OSError(f"{program} ended with code {result.returncode}")


def lines_of(path):
    """The lines of a report with their ends made visible."""
    if not path.exists():
        return []
    text = path.read_bytes().decode("utf-8", "replace")
    return [line.replace("\r", "\\r") + "\n" for line in text.split("\n")]


def show_difference(approved, received):
    name = approved.relative_to(ROOT)
    sys.stdout.writelines(difflib.unified_diff(
        lines_of(approved), lines_of(received), f"{name} (approved)", f"{name} (received)"))
    sys.stdout.flush()


def agreed(options, name):
    if options.yes:
        return True
    if options.show or not sys.stdin.isatty():
        return False
    return input(f"Approve {name}? [y/N] ").strip().lower() in ("y", "yes")


def main():
    options = arguments()
    folder = options.build.resolve() / "tests" / "reports"
    try:
        run_tests(folder / "reports")
    except OSError as error:
        print(f"approve: {error}", file=sys.stderr)
        return 2

    known = sorted(path.parent.name for path in CASES.glob("*/case.cfg"))
    unknown = sorted(set(options.cases) - set(known))
    if unknown:
        print(f"approve: no such case: {', '.join(unknown)}", file=sys.stderr)
        return 2

    left = 0
    for case in options.cases or known:
        for report in REPORTS:
            received = folder / "received" / case / report
            if not received.exists():
                continue
            approved = CASES / case / report
            show_difference(approved, received)
            if agreed(options, f"{case}/{report}"):
                shutil.move(received, approved)
                print(f"approved {case}/{report}")
            else:
                left += 1
    if left:
        print(f"{left} report(s) differ from what is approved")
    return 1 if left else 0


if __name__ == "__main__":
    sys.exit(main())
