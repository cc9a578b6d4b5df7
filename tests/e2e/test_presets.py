# SPDX-License-Identifier: GPL-3.0-or-later
"""A composer makes presets in the dialog, by keys alone and as the guide tells, and runs them."""

import re
import stat
import subprocess
import sys
from pathlib import Path

from support.stage import Sound, Window, check, copy_example, equal, main, rendered

GUIDE = Path(__file__).resolve().parents[2] / "docs" / "guide" / "presets.md"

DIALOG = "Zelvane - Add/Remove Presets"
PICKER = "Zelvane - Pick an image"
CHOOSER = "Run Zelvane Preset"

STORE = """[Options]
Used=2
Splash=0
Csound=/usr/bin/csound
Player={player}
{more}
"""

# Notes what it was given.
LISTENER = """#!{python}
import os, sys
with open({record!r} + ".part", "w") as record:
    record.write("\\n".join(sys.argv[1:]))
os.rename({record!r} + ".part", {record!r})
"""

# The keys that lead to a field, page by page.
PAGES = {
    "First action": {
        "Command": "alt+c",
        "Parameters": "alt+r",
        "Initial Folder": "alt+i",
        "Save document first": "alt+s",
    },
    "Second action": {"Command": "alt+c", "Parameters": "alt+r", "Initial Folder": "alt+i"},
    "Button": {"Label": "alt+l", "Tooltip": "alt+t", "Bitmap": "alt+b"},
}


def example(name):
    """The rows (page, field, text) of a table in the guide."""
    text = GUIDE.read_text(encoding="utf-8")
    table = text.split(f"<!-- example: {name} -->")[1].lstrip().split("\n\n")[0]
    rows = re.findall(r"^\| *(.*?) *\| *(.*?) *\| *(.*?) *\|$", table, re.M)[2:]
    check(rows, f"rows of the example {name}")
    return [(page, field, text.strip("`")) for page, field, text in rows]


def prepare(stage, more=""):
    record = stage.home / "listened"
    listener = stage.home / "listen"
    listener.write_text(LISTENER.format(python=sys.executable, record=str(record)))
    listener.chmod(listener.stat().st_mode | stat.S_IXUSR)
    stage.write_store(STORE.format(player=listener, more=more))
    return record


def open_editor(stage, piece):
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    return editor, window


def open_dialog(stage, editor, window):
    window.keys("F8")
    dialog = editor.window(DIALOG)
    stage.until(dialog.is_active, "the focus of the dialog")
    return dialog


def close_dialog(stage, editor, dialog, key="Escape"):
    dialog.keys(key)
    stage.until(lambda: dialog.number not in stage.windows_of(editor.pid), "the end of the dialog")


def make_preset(stage, editor, window, rows):
    """Types an example into the dialog, by keys alone, and saves it."""
    dialog = open_dialog(stage, editor, window)
    dialog.keys("ctrl+n")
    here = "First action"
    order = list(PAGES)
    name = None
    for page, field, text in rows:
        if not page:
            dialog.keys("alt+p")
            name = text
        else:
            while here != page:
                dialog.keys("ctrl+Tab")
                here = order[(order.index(here) + 1) % len(order)]
            dialog.keys(PAGES[page][field])
        if text != "on":
            dialog.type(text)
    editor.at_rest()
    dialog.screenshot("preset-" + re.sub(r"\W+", "-", name).lower())
    dialog.keys("ctrl+s")
    stage.until(lambda: name.lower() in stage.read_store().get("presets", {}), f"{name} in the store")
    close_dialog(stage, editor, dialog)


def check_sound(path):
    sound = Sound(path)
    check(sound.seconds > 1 and sound.peak > 300, f"{path}: {sound.seconds} s, peak {sound.peak}")


def first_preset_of_the_guide_renders(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd", "a piece")
    wave = piece.with_suffix(".wav")
    editor, window = open_editor(stage, piece)
    make_preset(stage, editor, window, example("render"))
    window.keys("ctrl+1")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    check_sound(wave)
    equal(stage.setting("SaveFirst", "Render"), "1", "Save document first")
    check("HIDDEN" not in window.state(), "the window stays")
    window.screenshot("preset-first")
    editor.close(window)


def preset_of_two_actions_renders_and_then_plays(stage):
    record = prepare(stage)
    piece = copy_example(stage, "pluck.csd", "a piece")
    wave = piece.with_suffix(".wav")
    editor, window = open_editor(stage, piece)
    make_preset(stage, editor, window, example("listen"))
    equal(stage.setting("2ndCommand", "Render and listen"), "$PLAYER$", "the second command in the store")
    window.keys("ctrl+1")
    stage.until(record.exists, lambda: f"the second action; the program said: {editor.output()}")
    check_sound(wave)
    equal(record.read_text(), str(wave), "what the player was given")
    editor.close(window)


def terminal_shows_the_messages(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd", "a piece")
    wave = piece.with_suffix(".wav")
    editor, window = open_editor(stage, piece)
    make_preset(stage, editor, window, example("terminal"))
    window.keys("ctrl+1")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    check_sound(wave)

    def terminals():
        return stage.output("xdotool", "search", "--onlyvisible", "--class", "^XTerm$").split()

    stage.until(terminals, "the terminal's window")
    terminal = Window(stage, int(terminals()[0]))
    check(stage.output("xdotool", "getwindowpid", terminal.number).strip() != str(editor.pid), "a process of its own")

    # Csound has ended, and its messages stand there: many lines of ink.
    def ink():
        picture = terminal.screenshot("terminal")
        dark = subprocess.run(
            ["convert", str(picture), "-colorspace", "gray", "-threshold", "50%", "-format", "%[fx:w*h*(1-mean)]", "info:"],
            capture_output=True,
            text=True,
            check=True,
        )
        return min(float(dark.stdout), picture_size(picture) - float(dark.stdout))

    def picture_size(picture):
        size = subprocess.run(
            ["identify", "-format", "%[fx:w*h]", str(picture)], capture_output=True, text=True, check=True
        )
        return float(size.stdout)

    stage.until(lambda: ink() > 3000, "messages in the terminal")
    check("HIDDEN" not in window.state(), "the editor does not wait for the terminal")
    terminal.keys("alt+F4")
    stage.until(lambda: not terminals(), "the end of the terminal")
    check(editor.runs(), "the editor goes on")
    editor.close(window)


def missing_program_says_so_and_the_editor_goes_on(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage, piece)
    make_preset(
        stage,
        editor,
        window,
        [("", "Preset", "Nothing there"), ("First action", "Command", "/no/such/program")],
    )
    window.keys("ctrl+1")
    box = editor.window("/no/such/program")
    box.screenshot("preset-no-program")
    box.keys("Return")
    # With a second action written by hand behind it, which the dialog does not save behind what is no program.
    stage.store.write_text(stage.store.read_text().replace("Command=/no/such/program", "Command=/no/such/program\n2ndCommand=x"))
    stage.until(lambda: window.is_active(), "the editor in front")
    window.keys("ctrl+1")
    box = editor.window(lambda title: title == "Zelvane")
    box.screenshot("preset-cannot-execute")
    box.keys("Return")
    stage.until(lambda: window.is_active(), "the editor in front")
    window.keys("ctrl+End")
    window.type("; typed")
    stage.until(lambda: "*" in window.title(), "a modified text")
    window.keys("ctrl+s")
    stage.until(lambda: "*" not in window.title(), "a saved text")
    check(piece.read_text().rstrip().endswith("; typed"), "the typed text in the file")
    editor.close(window)


def order_and_deletion_by_keys(stage):
    prepare(stage, "\n[Presets]\nOne=\nTwo=\nThree=\n[One]\nCommand=$PLAYER$\nArgs=one\n[Two]\nCommand=$PLAYER$\n"
            "Args=two\n[Three]\nCommand=$PLAYER$\nArgs=three\n")
    record = stage.home / "listened"
    piece = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage, piece)
    dialog = open_dialog(stage, editor, window)
    dialog.keys("ctrl+i", "ctrl+i")
    stage.until(lambda: list(stage.read_store()["presets"]) == ["two", "three", "one"], "the new order")
    dialog.keys("ctrl+d")
    question = editor.window("Zelvane")
    question.screenshot("preset-delete")
    question.keys("alt+y")
    stage.until(lambda: list(stage.read_store()["presets"]) == ["two", "three"], "the deletion")
    check("one" not in stage.read_store(), "the record of the deleted preset has gone")
    close_dialog(stage, editor, dialog)
    window.keys("ctrl+1")
    stage.until(record.exists, "the run of the first preset")
    equal(record.read_text(), "two", "the first preset now")
    editor.close(window)


def image_and_macro_by_keys(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage, piece)
    dialog = open_dialog(stage, editor, window)
    dialog.keys("alt+p")
    dialog.type("Pictured")
    dialog.keys("alt+c", "F8")
    editor.at_rest()
    dialog.screenshot("macro-menu-opens")
    # The fifth row: $PLAYER$.
    dialog.keys("Down", "Down", "Down", "Down", "Down", "Return")
    dialog.keys("ctrl+Tab", "ctrl+Tab", "alt+b", "alt+b", "Tab", "Tab", "space")
    picker = editor.window(PICKER)
    stage.until(picker.is_active, "the focus of the picker")
    picker.keys("Down", "Down", "Down")
    editor.at_rest()
    picker.screenshot("image-picker")
    close_dialog(stage, editor, picker, "Return")
    stage.until(dialog.is_active, "the dialog in front")
    dialog.screenshot("preset-with-image")
    dialog.keys("ctrl+s")
    stage.until(lambda: stage.setting("Image", "Pictured"), "the image in the store")
    equal(stage.setting("Image", "Pictured"), "104", "the image")
    equal(stage.setting("Command", "Pictured"), "$PLAYER$", "the command")
    close_dialog(stage, editor, dialog)
    editor.close(window)


def chooser_confirms_edits_and_starts_the_editor(stage):
    record = prepare(stage, "\n[Presets]\nOne=\nTwo=\n[One]\nCommand=$PLAYER$\nArgs=one\n[Two]\nCommand=$PLAYER$\n"
                     "Args=$DOCUMENT$\nImage=104\nTooltip=Play it\n")
    piece = copy_example(stage, "pluck.csd", "a piece")

    chooser = stage.start("/p", piece)
    window = chooser.window(CHOOSER)
    chooser.at_rest()
    window.keys("Down")
    chooser.at_rest()
    window.screenshot("chooser-two")
    window.keys("ctrl+2")
    equal(chooser.ended(), 0, "exit code")
    stage.until(record.exists, "the run of the second preset")
    equal(record.read_text(), str(piece), "the document")

    chooser = stage.start("/p", piece)
    window = chooser.window(CHOOSER)
    chooser.at_rest()
    window.keys("Down", "alt+Return")
    dialog = chooser.window(DIALOG)
    stage.until(dialog.is_active, "the focus of the dialog")
    dialog.keys("alt+r")
    dialog.type("changed")
    dialog.keys("ctrl+s")
    question = chooser.window("Zelvane")
    question.keys("alt+y")
    stage.until(lambda: stage.setting("Args", "Two") == "changed", "the changed preset")
    stage.until(dialog.is_active, "the dialog in front")
    dialog.keys("Escape")
    equal(chooser.ended(), 0, "exit code after editing")

    chooser = stage.start("/p", piece)
    window = chooser.window(CHOOSER)
    chooser.at_rest()
    window.keys("alt+e")
    equal(chooser.ended(), 0, "exit code of the chooser that starts the editor")

    def editors():
        found = stage.output("xdotool", "search", "--onlyvisible", "--name", re.escape(str(piece))).split()
        return [Window(stage, int(number)) for number in found]

    stage.until(editors, "the editor on the document")
    editor = editors()[0]
    check(editor.title().startswith(f"Zelvane - {piece}"), editor.title())
    editor.activate()
    editor.keys("alt+F4")
    stage.until(lambda: not editors(), "the end of the editor")


main(
    first_preset_of_the_guide_renders,
    preset_of_two_actions_renders_and_then_plays,
    terminal_shows_the_messages,
    missing_program_says_so_and_the_editor_goes_on,
    order_and_deletion_by_keys,
    image_and_macro_by_keys,
    chooser_confirms_edits_and_starts_the_editor,
)
