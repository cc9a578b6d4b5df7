# SPDX-License-Identifier: GPL-3.0-or-later
"""A composer runs Csound by its dialog: in the editor, and from the desktop as a program of its own."""

import sys
from pathlib import Path

from support.stage import Sound, check, copy_example, equal, main, options, rendered

DIALOG = "Zelvane - Run Csound"
FLAGS = "Zelvane - Csound Flags"

STORE = options()


# What a program says goes to where this one was started from.
NO_CONSOLE = "Csound=/usr/bin/csound\nConsole=0\n"


def prepare(stage, compiler="Csound=/usr/bin/csound\n"):
    stage.write_store(STORE + compiler)


def check_sound(path):
    sound = Sound(path)
    check(sound.seconds > 1, f"{path} has {sound.seconds} seconds")
    check(sound.peak > 300, f"{path} is silent: its peak is {sound.peak}")


def is_gone(stage, window):
    return window.number not in {number for process in stage.processes if process.runs()
                                 for number in stage.windows_of(process.pid)}


def program_of_its_own_renders(stage):
    prepare(stage, NO_CONSOLE)
    piece = copy_example(stage, "pluck.csd", "a piece")  # a folder with a blank
    wave = piece.with_suffix(".wav")
    program = stage.start("/r", piece)
    dialog = program.window(DIALOG)
    equal(len(stage.windows_of(program.pid)), 1, "the windows: no editor")
    dialog.activate()
    dialog.screenshot("run-csound-alone")
    dialog.type("-d -W -o $WAVE$")
    dialog.keys("Return")
    stage.until(lambda: not program.runs(), "the end of the program")
    equal(program.ended(), 0, "exit code")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {program.output()}")
    check_sound(wave)
    # What Csound said has gone to where the program was started from.
    stage.until(lambda: "overall amps" in program.output(), lambda: program.output())
    equal(stage.setting("1", "Recent Command Lines"), "-d -W -o $WAVE$", "the flags in the history")
    equal(stage.setting("ManualSaveFirst"), None, "a choice that is not shown is not stored")
    equal(stage.setting("Used"), "2", "the count of uses: the editor's only")


def program_of_its_own_renders_a_pair(stage):
    prepare(stage)
    examples = Path(__file__).resolve().parents[2] / "examples"
    folder = stage.home / "pair"
    folder.mkdir()
    for name in ("waltz.orc", "waltz.sco"):
        (folder / name).write_bytes((examples / name).read_bytes())
    program = stage.start("/r", folder / "waltz.sco")
    dialog = program.window(DIALOG)
    dialog.type("-d -W -o out.wav")  # in the document's folder
    dialog.keys("Return")
    equal(program.ended(), 0, "exit code")
    wave = folder / "out.wav"
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {program.output()}")
    check_sound(wave)


def program_of_its_own_ends(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    before = stage.store.read_bytes()
    program = stage.start("/r", piece)
    program.window(DIALOG).keys("Escape")
    equal(program.ended(), 0, "exit code after Cancel")
    program = stage.start("/r", piece)
    program.window(DIALOG).ask_to_close()
    equal(program.ended(), 0, "exit code after the window was closed")
    program = stage.start("/r ")
    equal(program.ended(), 0, "exit code without a file")
    equal(stage.store.read_bytes(), before, "the settings")


def program_of_its_own_has_no_main_window_to_ask(stage):
    """A selection is that of an editor's text: here the macro is empty, and says so in a box."""
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    program = stage.start("/r", piece)
    dialog = program.window(DIALOG)
    dialog.type("-o $SEL$")
    dialog.keys("Return")
    box = program.window(lambda title: title == "Zelvane")
    box.screenshot("run-csound-empty-macro")
    box.keys("Return")
    stage.until(lambda: is_gone(stage, box), "the end of the box")
    check(program.runs(), "the dialog stays")
    dialog.keys("Escape")
    equal(program.ended(), 0, "exit code")


def program_without_a_compiler_asks(stage):
    prepare(stage, "")
    piece = copy_example(stage, "pluck.csd")
    path = stage.environment["PATH"]
    stage.environment["PATH"] = str(stage.home)  # where no csound is
    program = stage.start("/r", piece)
    stage.environment["PATH"] = path
    program.window(DIALOG).keys("Return")
    box = program.window(lambda title: title == "Zelvane")
    box.screenshot("run-csound-no-compiler")
    box.keys("alt+n")
    equal(program.ended(), 0, "exit code")


def program_without_a_compiler_takes_the_one_in_path(stage):
    prepare(stage, "")
    piece = copy_example(stage, "pluck.csd")
    wave = piece.with_suffix(".wav")
    program = stage.start("/r", piece)
    dialog = program.window(DIALOG)
    dialog.type("-d -W -o $WAVE$")
    dialog.keys("Return")
    equal(program.ended(), 0, "exit code")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {program.output()}")
    equal(stage.setting("Csound"), None, "nothing is stored")


def program_whose_compiler_is_missing_says_so(stage):
    prepare(stage, "Csound=/no/such/csound\n")
    piece = copy_example(stage, "pluck.csd")
    program = stage.start("/r", piece)
    program.window(DIALOG).keys("Return")
    program.window("/no/such/csound").keys("Return")
    equal(program.ended(), 0, "exit code")


def running_editor_is_left_alone(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    title = window.title()
    other = stage.home / "other.csd"
    other.write_bytes(piece.read_bytes())
    program = stage.start("/r", other)
    dialog = program.window(DIALOG)
    dialog.type("-d -W -o $WAVE$")
    dialog.keys("Return")
    equal(program.ended(), 0, "exit code")
    wave = other.with_suffix(".wav")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {program.output()}")
    equal(window.title(), title, "the editor's document")
    equal(stage.setting("Open"), None, "the mailbox")
    editor.close(window)


def flags_by_keys_render_in_the_editor(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd", "a piece")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+r")
    dialog = editor.window(DIALOG)
    dialog.keys("alt+p")
    flags = editor.window(FLAGS)
    # From -U down to -o, which takes a value, and on to -W.
    flags.keys("Down", "Down", "Down", "Down", "Down", "space")
    box = editor.window("Flag value")
    box.screenshot("flag-value")
    box.type("x.wav")
    box.keys("Return")
    stage.until(lambda: is_gone(stage, box), "the end of the box")
    flags.keys("Down", "Down", "Down", "Down", "space")
    flags.screenshot("csound-flags")
    flags.keys("Return")
    stage.until(lambda: is_gone(stage, flags), "the end of the flags dialog")
    dialog.activate()
    dialog.screenshot("run-csound")
    dialog.keys("Return")
    stage.until(lambda: is_gone(stage, dialog), "the end of the dialog")
    wave = piece.parent / "x.wav"
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    check_sound(wave)
    equal(stage.setting("1", "Recent Command Lines"), "-o x.wav -W", "the flags")
    check(editor.runs(), "the editor goes on")
    editor.close(window)


def document_is_saved_first(stage):
    prepare(stage)
    piece = copy_example(stage, "pluck.csd")
    before = piece.read_text()
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+Home")
    window.type("; typed")
    window.keys("Return")
    window.keys("ctrl+r")
    dialog = editor.window(DIALOG)
    dialog.type("-d -W -o $WAVE$")
    # From the flags over their button and the second compiler to the box.
    dialog.keys("Tab", "Tab", "Tab", "space")
    dialog.keys("Return")
    wave = piece.with_suffix(".wav")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    equal(piece.read_bytes(), ("; typed\n" + before).replace("\n", "\r\n").encode(), "the saved piece")
    equal(stage.setting("ManualSaveFirst"), "-1", "saving is remembered")
    editor.close(window)


main(
    program_of_its_own_renders,
    program_of_its_own_renders_a_pair,
    program_of_its_own_ends,
    program_of_its_own_has_no_main_window_to_ask,
    program_without_a_compiler_asks,
    program_without_a_compiler_takes_the_one_in_path,
    program_whose_compiler_is_missing_says_so,
    running_editor_is_left_alone,
    flags_by_keys_render_in_the_editor,
    document_is_saved_first,
)
