#!/usr/bin/env python3
"""Runs the command lines of README.md ("## On the command line") with the built host.

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
    block = re.search(r"## On the command line\n+```\n(.*?)```", readme, re.DOTALL)
    commands = block.group(1).splitlines() if block else []
    if not commands:
        sys.exit("README.md has no command lines")
    environment = dict(os.environ, PATH=f"{host}{os.pathsep}{os.environ['PATH']}")
    with tempfile.TemporaryDirectory() as folder:
        for name in ("examples", "resources"):
            (pathlib.Path(folder) / name).symlink_to(source / name)
        for command in commands:
            print("$", command, flush=True)
            result = subprocess.run(command, shell=True, cwd=folder, env=environment, check=False)
            if result.returncode != 0:
                sys.exit(f"exit code {result.returncode}")


if __name__ == "__main__":
    main()
