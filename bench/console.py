#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The console beside xterm: bench/console.py PROGRAM

The time from a preset's key in the editor to the first line of output on the screen, and the lines a second that a
program gets rid of. Both programs are started by the same editor on the same virtual display, turn by turn."""

import statistics
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "scripts"))

from display import PATIENCE, Stage, check  # noqa: E402

ROUNDS = 9
LINES = 1_000_000

STORE = """[Options]
Used=2
Splash=0
Startup=2

[Presets]
console first=
xterm first=
console lines=
xterm lines=

[console first]
Command={first}

[xterm first]
Command=/usr/bin/xterm
Args=-e {first}

[console lines]
Command={lines}

[xterm lines]
Command=/usr/bin/xterm
Args=-e {lines}
"""

# Red blocks, and lines where the font has no blocks: what is looked for on the screen. The reds of xterm and of the
# console.
FIRST = """#!/bin/sh
printf '\\033[31m\\342\\226\\210\\342\\226\\210\\342\\226\\210\\342\\226\\210\\342\\226\\210________\\033[m\\n'
while [ ! -e {go} ]; do sleep 0.02; done
"""
RED = [bytes((0, 0, red, 0)) * 3 for red in (0xCD, 0xB0)]

LINES_OUT = """#!/usr/bin/env python3
import sys, time
begun = time.monotonic()
line = "new alloc for instr %d:\\n"
for i in range(0, {count}, 1000):
    sys.stdout.write("".join(line % n for n in range(i, i + 1000)))
sys.stdout.flush()
with open("{took}.part", "w") as file:
    file.write(str(time.monotonic() - begun))
import os
os.rename("{took}.part", "{took}")
"""


def shows(screen):
    picture = screen.read_bytes().replace(b"\xff", b"\0")  # the fourth byte of a point means nothing
    return any(red in picture for red in RED)


def main():
    with Stage(sys.argv[1], Path(sys.argv[1]).parent.parent / "screenshots") as stage:
        go, took = stage.home / "go", stage.home / "took"
        first, lines = stage.home / "first", stage.home / "lines"
        first.write_text(FIRST.format(go=go))
        lines.write_text(LINES_OUT.format(count=LINES, took=took))
        for program in (first, lines):
            program.chmod(0o755)
        stage.write_store(STORE.format(first=first, lines=lines))
        editor = stage.start()
        window = editor.window()
        editor.at_rest()
        screen = next(Path(stage.frames).glob("Xvfb_screen*"))
        waits = {"console": [], "xterm": []}
        for _ in range(ROUNDS):
            for key, name in (("ctrl+1", "console"), ("ctrl+2", "xterm")):
                window.activate()
                editor.at_rest()
                stage.until(lambda: not shows(screen), "a screen without red")
                begun = time.monotonic()
                window.keys(key)
                while not shows(screen):
                    check(time.monotonic() - begun < PATIENCE, f"no first line in {name}")
                    time.sleep(0.001)
                waits[name].append(time.monotonic() - begun)
                go.touch()
                stage.until(lambda: not shows(screen), "the window gone")
                go.unlink()
        for name, times in waits.items():
            print(f"{name:8} first line {statistics.median(times) * 1000:6.0f} ms after the key "
                  f"({min(times) * 1000:.0f} to {max(times) * 1000:.0f})")
        for key, name in (("ctrl+3", "console"), ("ctrl+4", "xterm")) * 2:
            took.unlink(missing_ok=True)
            window.keys(key)
            stage.until(took.exists, f"the lines in {name}", 300)
            print(f"{name:8} {LINES / float(took.read_text()):9.0f} lines a second")
            stage.until(lambda: window.is_active() or window.activate() is None, "the editor")
        editor.close(window)


main()
