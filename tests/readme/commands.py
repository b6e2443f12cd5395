#!/usr/bin/env python3
"""Runs the command lines of README.md ("## On the command line") with the built host, and looks for the lines shown
there in the output of the first.

usage: commands.py SOURCE_TREE FOLDER_OF_THE_HOST

They run in a folder of their own, where examples and resources are those of the tree; each must succeed.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile


def main():
    source, host = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    readme = (source / "README.md").read_text(encoding="utf-8")
    section = re.search(r"## On the command line\n(.*?)(?:\n## |\Z)", readme, re.DOTALL)
    blocks = re.findall(r"```\n(.*?)```", section.group(1), re.DOTALL) if section else []
    if len(blocks) != 2:
        sys.exit("README.md has no command lines, or none of their output")
    commands, shown = (block.splitlines() for block in blocks)
    environment = dict(os.environ, PATH=f"{host}{os.pathsep}{os.environ['PATH']}")
    with tempfile.TemporaryDirectory() as folder:
        for name in ("examples", "resources"):
            (pathlib.Path(folder) / name).symlink_to(source / name)
        for command in commands:
            print("$", command, flush=True)
            result = subprocess.run(command, shell=True, cwd=folder, env=environment, check=False,
                                    stdout=subprocess.PIPE, encoding="utf-8")
            print(result.stdout)
            if result.returncode != 0:
                sys.exit(f"exit code {result.returncode}")
            if command == commands[0]:
                lost = [line for line in shown if line not in result.stdout.splitlines()]
                if lost or not shown:
                    sys.exit(f"not in the output: {lost}")


if __name__ == "__main__":
    main()
