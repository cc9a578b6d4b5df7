# SPDX-License-Identifier: GPL-3.0-or-later
"""How the program ends when it is not the user who closes the window."""

import os
import signal

from support.stage import check, copy_example, equal, main, options, settled

STORE = options(Startup=2)


def signal_closes_as_the_user_does(stage):
    for number in (signal.SIGTERM, signal.SIGINT):
        stage.write_store(STORE)
        piece = copy_example(stage, "pluck.csd")
        editor, _ = settled(stage, piece)
        os.kill(editor.pid, number)
        equal(editor.ended(), 0, f"exit code after {number}")
        equal(stage.setting("Used"), "3", "a clean close is counted")
        check(stage.setting("PanelWidth"), "the layout is kept")


def signal_asks_about_a_changed_text(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    before = piece.read_text()
    editor, window = settled(stage, piece)
    window.type(";mine")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    editor.at_rest()  # the mark comes with the first letter
    os.kill(editor.pid, signal.SIGTERM)
    box = editor.window(lambda title: title == "Zelvane")
    box.screenshot("asked-by-a-signal")
    os.kill(editor.pid, signal.SIGTERM)
    editor.at_rest()
    equal(len(stage.windows_of(editor.pid)), 2, "one question")
    box.keys("Escape")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the question")
    check(editor.runs() and "*" in window.title(), "the text stands")

    os.kill(editor.pid, signal.SIGTERM)
    box = editor.window(lambda title: title == "Zelvane")
    box.keys("Return")  # Yes
    equal(editor.ended(), 0, "exit code")
    equal(piece.read_text(), ";mine" + before, "the saved text")
    equal(stage.setting("Used"), "3", "a clean close is counted")


def signal_cancels_an_open_dialog(stage):
    for key in ("F8", "ctrl+o", "ctrl+g"):
        stage.write_store(STORE)
        piece = copy_example(stage, "pluck.csd")
        editor, window = settled(stage, piece)
        window.keys(key)
        editor.dialog(window)
        editor.at_rest()
        os.kill(editor.pid, signal.SIGTERM)
        equal(editor.ended(), 0, f"exit code with the dialog of {key}")
        equal(stage.setting("Used"), "3", "a clean close is counted")


def signal_asks_when_the_dialog_has_gone(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    before = piece.read_text()
    editor, window = settled(stage, piece)
    window.type(";mine")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    window.keys("F8")
    dialog = editor.dialog(window)
    editor.at_rest()
    os.kill(editor.pid, signal.SIGTERM)
    box = editor.window(lambda title: title == "Zelvane")
    check(dialog.number not in stage.windows_of(editor.pid), "the dialog stands")
    box.keys("Return")  # Yes
    equal(editor.ended(), 0, "exit code")
    equal(piece.read_text(), ";mine" + before, "the saved text")


def killed_process_does_not_count(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor, _ = settled(stage, piece)
    os.kill(editor.pid, signal.SIGKILL)
    editor.ended()
    equal(stage.setting("Used"), "2", "the count of uses")
    equal(stage.setting("Window"), None, "the layout")


main(
    signal_closes_as_the_user_does,
    signal_asks_about_a_changed_text,
    signal_cancels_an_open_dialog,
    signal_asks_when_the_dialog_has_gone,
    killed_process_does_not_count,
)
