# SPDX-License-Identifier: GPL-3.0-or-later
"""Finding in the files of a folder, from the key to the line; the pictures are for looking at."""

import os

from support.stage import DISPLAY_SIZE, WIDE, check, copy_example, dark_desktop, equal, main, options, settled

STORE = options(WIDE, FindInFiles=1, RegularExpressions=1)


def pieces(stage):
    """Some pieces of the manual, and things that are no pieces."""
    piece = copy_example(stage, "oscil.csd")
    for name in ("oscili.csd", "vco2.csd", "adsr.csd"):
        copy_example(stage, name)
    folder = piece.parent
    (folder / "deep").mkdir()
    (folder / "deep" / "old.csd").write_bytes(b"one\r\n  t\xf6n oscil 1\r\n")
    (folder / "nul.csd").write_bytes(b"oscil\0\0")
    os.mkfifo(folder / "pipe.csd")
    os.symlink("..", folder / "deep" / "up")
    return piece


def keys(stage, editor, *names):
    for name in names:
        stage.output("xdotool", "key", "--clearmodifiers", name)
        editor.at_rest()


def typed(stage, editor, text):
    stage.output("xdotool", "type", "--clearmodifiers", text)
    editor.at_rest()


def dialog_of(stage, editor):
    dialog = editor.window(lambda title: title.startswith("Find in Files"))
    stage.until(dialog.is_active, "the dialog in front")
    editor.at_rest()
    return dialog


def lines_are_found_and_opened(stage):
    stage.write_store(STORE)
    piece = pieces(stage)
    editor, window = settled(stage, piece)
    keys(stage, editor, "ctrl+shift+f")
    dialog = dialog_of(stage, editor)
    typed(stage, editor, "t[^ ]n +oscil [0-9]")
    keys(stage, editor, "alt+x", "Return")
    stage.until(lambda: stage.setting("1", "Recent File Searches") == "t[^ ]n +oscil [0-9]", "the text in the store")
    editor.at_rest()
    dialog.screenshot("findinfiles")
    # To the list, where the one line is chosen.
    keys(stage, editor, "alt+r", "Return")
    stage.until(lambda: "old.csd (" in window.title(), lambda: f"the found file; the title is {window.title()}")
    stage.until(window.is_active, "the editor in front")
    editor.at_rest()
    window.screenshot("findinfiles-opened")
    # What was found is selected: typing takes its place.
    typed(stage, editor, "new")
    keys(stage, editor, "ctrl+s")
    old = piece.parent / "deep" / "old.csd"
    stage.until(lambda: old.read_bytes() == b"one\r\n  new\r\n", lambda: f"the saved line; the file is {old.read_bytes()}")
    equal(stage.setting("FindInFilesRegularExpression"), "-1", "the box in the store")
    editor.close(window)


def oscil_found_in_the_dark(stage):
    """The editor, its window and the dialog with what it has found."""
    stage.write_store(STORE)
    dark_desktop(stage)
    editor, window = settled(stage, pieces(stage))
    keys(stage, editor, "ctrl+shift+f")
    dialog = dialog_of(stage, editor)
    typed(stage, editor, "oscil")
    keys(stage, editor, "Return")
    stage.until(lambda: stage.setting("1", "Recent File Searches") == "oscil", "the text in the store")
    editor.at_rest()
    return editor, window, dialog


def a_dark_dialog(stage):
    editor, window, dialog = oscil_found_in_the_dark(stage)
    check(dialog.screenshot("findinfiles-dark").exists(), "a picture")
    keys(stage, editor, "Escape")
    keys(stage, editor, "ctrl+f")
    find = editor.window(lambda title: title.startswith("Find"))
    stage.until(find.is_active, "the find dialog in front")
    find.screenshot("find-regular-expression-dark")
    keys(stage, editor, "Escape")
    editor.close(window)


def a_dark_dialog_at_twice_the_size(stage):
    stage.environment["QT_SCALE_FACTOR"] = "2"
    editor, window, dialog = oscil_found_in_the_dark(stage)
    stage.screenshot("findinfiles-dark-200")
    left, top, width, height = dialog.geometry()
    across, down = (int(length) for length in DISPLAY_SIZE.split("x")[:2])
    check(left >= 0 and top >= 0 and left + width <= across and top + height <= down, "the dialog is on the screen")
    keys(stage, editor, "alt+r", "Return")
    stage.until(window.is_active, "the editor in front")
    editor.at_rest()
    stage.screenshot("findinfiles-opened-dark-200")
    editor.close(window)


main(lines_are_found_and_opened, a_dark_dialog, a_dark_dialog_at_twice_the_size)
