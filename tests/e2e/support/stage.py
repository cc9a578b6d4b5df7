# SPDX-License-Identifier: GPL-3.0-or-later
"""The stage of the scenarios: a display and folders of its own for each, and what they have in common."""

import shutil
import sys
import time
import traceback
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "scripts"))

from display import DISPLAY_SIZE, PATIENCE, Failure, Sound, Stage, Window, check, equal, read_line, rendered  # noqa: E402, F401

# The colours of a dark desktop, as its settings program writes them.
DARK_DESKTOP = """[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
"""

# Where the window stands, in twips, fifteen of them a pixel.
WIDE = {"X": 600, "Y": 600, "Width": 15000, "Height": 12000}
NARROW = {"X": 600, "Y": 600, "Width": 14400, "Height": 10200}


def options(place=None, **own):
    """The settings of somebody who has started the program before and wants no splash: a test names the others."""
    settings = {"Used": 2, "Splash": 0} | (place or {}) | own
    return "[Options]\n" + "".join(f"{key}={value}\n" for key, value in settings.items())


def settled(stage, *arguments):
    """An editor that has come to rest, and its window, in front."""
    editor = stage.start(*arguments)
    window = editor.window(lambda title: title.startswith("Zelvane"))
    stage.until(window.is_active, "the window in front")
    editor.at_rest()
    return editor, window


def copy_example(stage, name, folder="piece"):
    """A copy of an example of Csound's own documentation, in a folder of its own."""
    source = Path("/usr/share/doc/csound-doc/html/examples") / name
    check(source.exists(), f"{source} is missing: install csound-doc")
    target = stage.home / folder / name
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(source, target)
    return target


def dark_desktop(stage):
    """What is started on the stage from here on finds itself in a dark desktop."""
    (stage.folder / "config" / "kdeglobals").write_text(DARK_DESKTOP)
    stage.environment |= {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5", "KDE_FULL_SESSION": "true"}


def ran_to_end(pattern):
    """Whether no process whose command line holds the pattern runs any more."""
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                if pattern in (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace"):
                    return False
            except OSError:
                continue
    return True


def main(*scenarios):
    """Runs each scenario on a stage of its own: test_x.py PROGRAM SCREENSHOTS [NAME].
    A scenario's attribute `size` is that of its display."""
    if len(sys.argv) < 3:
        sys.exit(f"usage: {sys.argv[0]} PROGRAM SCREENSHOTS [SCENARIO]")
    failed = 0
    for scenario in scenarios:
        if len(sys.argv) > 3 and scenario.__name__ != sys.argv[3]:
            continue
        print(f"{scenario.__name__} ...", flush=True)
        begun = time.monotonic()
        try:
            with Stage(sys.argv[1], sys.argv[2], getattr(scenario, "size", DISPLAY_SIZE)) as stage:
                scenario(stage)
            print(f"{scenario.__name__} passed, {time.monotonic() - begun:.1f} s", flush=True)
        except Exception as failure:  # whatever it is, the other scenarios run
            failed += 1
            if not isinstance(failure, Failure):
                traceback.print_exc()
            print(f"{scenario.__name__} FAILED after {time.monotonic() - begun:.1f} s: {failure}", flush=True)
    sys.exit(1 if failed else 0)
