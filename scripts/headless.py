# SPDX-License-Identifier: GPL-3.0-or-later
"""headless.py PROGRAM FOLDER [PIECE]: shows the program where there is no display.

Starts the editor on a virtual display with a window manager, on a copy of a piece, with settings of its own; renders the
piece with Csound through a preset, and leaves the sound file and a screenshot in FOLDER.
"""

import shutil
import sys
from pathlib import Path

from display import Failure, Sound, Stage, check, rendered

ROOT = Path(__file__).resolve().parent.parent

SETTINGS = """[Options]
Used=2
Splash=0
Csound={csound}
Console=0

[Presets]
Render=

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $ORCHESTRA$ $SCORE$
Folder=$DIR$
Tooltip=Render this piece to a sound file
SaveFirst=1
Image=101
"""


def copy_piece(source, folder):
    """The piece with what has its name: an orchestra is nothing without its score."""
    if folder.exists():
        shutil.rmtree(folder)
    folder.mkdir(parents=True)
    for file in source.parent.glob(glob_escape(source.stem) + ".*"):
        if file.suffix.lower() in (".orc", ".sco", ".csd", source.suffix):
            shutil.copy(file, folder)
    return folder / source.name


def glob_escape(text):
    return "".join(f"[{c}]" if c in "*?[" else c for c in text)


def show(program, folder, source):
    check(source.is_file(), f"there is no file {source}")
    csound = shutil.which("csound")
    check(csound, "csound is not installed")
    piece = copy_piece(source, folder / "piece")
    sound = piece.with_suffix(".wav")
    with Stage(program, folder) as stage:
        for variable in ("INCDIR", "SSDIR", "SADIR"):  # what the piece includes and plays has stayed where it was
            stage.environment[variable] = str(source.parent)
        stage.write_store(SETTINGS.format(csound=csound))
        editor = stage.start(piece)
        window = editor.window(lambda title: piece.name in title)
        editor.at_rest()
        window.keys("ctrl+1")
        stage.until(lambda: rendered(sound), lambda: f"the sound file; Csound said:\n{editor.output()}", 300)
        picture = window.screenshot("window")
        editor.close(window)
    print(f"Piece:      {piece}")
    print(f"Sound file: {sound} ({Sound(sound).seconds:.1f} seconds)")
    print(f"Screenshot: {picture}")


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__.splitlines()[0])
    source = Path(sys.argv[3]) if len(sys.argv) == 4 else ROOT / "examples" / "bells.csd"
    try:
        show(sys.argv[1], Path(sys.argv[2]).resolve(), source.resolve())
    except Failure as failure:
        sys.exit(f"{failure}")


main()
