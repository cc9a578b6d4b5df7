# SPDX-License-Identifier: GPL-3.0-or-later
"""The shell scripts: what shellcheck finds in them."""

import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SKIPPED = 77
PLACES = ("*", ".ci/*", "scripts/*", "packaging/*", "data/desktop/*.bash")
FIRST_LINES = ("#!/bin/sh", "#!/usr/bin/env bash", "# shellcheck shell=")


def is_shell(file):
    with file.open("rb") as opened:
        head = opened.read(300).decode("utf-8", "replace").splitlines()[:3]
    return any(line.startswith(FIRST_LINES) for line in head)


def main():
    if not shutil.which("shellcheck"):
        print("no shellcheck")
        return SKIPPED
    scripts = [file for place in PLACES for file in sorted(ROOT.glob(place)) if file.is_file() and is_shell(file)]
    if ROOT / "test" not in scripts:
        print(f"{ROOT}: the scripts were not found")
        return 1
    return subprocess.run(["shellcheck", "--external-sources", *scripts], check=False, cwd=ROOT).returncode


if __name__ == "__main__":
    sys.exit(main())
