# SPDX-License-Identifier: GPL-3.0-or-later
"""The related files of pieces of Csound's own manual, by keys and by the mouse; the pictures are for looking at."""

import os

from support.stage import WIDE, check, copy_example, dark_desktop, equal, main, options, settled

STORE = options(WIDE, CodeOutline=0)


def piece_with_files(stage):
    """A piece with what it includes, a sound, a file that is missing, and things with its name that are no files."""
    piece = copy_example(stage, "include.csd")
    copy_example(stage, "table1.inc")
    text = piece.read_text()
    piece.write_text(text.replace('#include "table1.inc"', '#include "table1.inc"\n; #include "table2.inc"\n; "include.csd"'))
    (piece.parent / "include.sco").write_text('#include "table1.inc"\ni 1 0 1\n')
    with open(piece.parent / "include.wav", "wb") as sound:
        sound.truncate(2 << 30)
    os.mkfifo(piece.parent / "include pipe.csd")
    os.symlink("/dev/zero", piece.parent / "include zero.csd")
    return piece


def titled(stage, editor, window, path):
    stage.until(lambda: f"{path} (" in window.title(), lambda: f"{path} in the title; it is {window.title()}")
    editor.at_rest()


def files_are_opened_from_the_tree(stage):
    stage.write_store(STORE)
    piece = piece_with_files(stage)
    include = piece.parent / "table1.inc"
    editor, window = settled(stage, piece)
    titled(stage, editor, window, piece)
    window.screenshot("related")
    # include.csd, table1.inc, table2.inc, include.csd, include.sco, table1.inc, include.wav

    def keys(*names):
        for name in names:
            stage.output("xdotool", "key", "--clearmodifiers", name)
            editor.at_rest()

    keys("F6", "F6", "Down")
    window.screenshot("related-info")
    keys("Return")
    titled(stage, editor, window, include)
    window.screenshot("related-opened")
    # The tree has stayed as it was, and so has the place in it.
    keys("F6", "F6", "Up", "Return")
    titled(stage, editor, window, piece)
    keys("F6", "F6", "Down", "Down", "Menu")
    stage.screenshot("related-menu-missing")
    keys("Escape", "Down", "Down", "Menu")
    stage.screenshot("related-menu")
    keys("o")
    titled(stage, editor, window, piece.parent / "include.sco")
    # Only the start counts as an opening of the user's.
    equal(stage.setting("1", "Recent File List"), str(piece), "the most recent file")
    equal(stage.setting("2", "Recent File List"), None, "the file before it")
    editor.close(window)


def a_dark_tree(stage):
    stage.write_store(STORE.replace("CodeOutline=0", "CodeOutline=1"))
    dark_desktop(stage)
    piece = piece_with_files(stage)
    editor, window = settled(stage, piece)
    titled(stage, editor, window, piece)
    picture = window.screenshot("related-dark")
    check(picture.exists(), "a picture")
    editor.close(window)


main(files_are_opened_from_the_tree, a_dark_tree)
