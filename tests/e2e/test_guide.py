# SPDX-License-Identifier: GPL-3.0-or-later
"""What the guide tells to type, typed: its command lines and its presets."""

import os
import re
import shlex
import sys
from pathlib import Path

from support.consoles import log_of, write_program
from support.stage import Sound, Window, check, equal, main, rendered, settled

sys.dont_write_bytecode = True
import guidepages  # noqa: E402  of scripts/, which the stage has on its path

STORE = """[Options]
Used=2
Splash=0
Startup=2
Editor={editor}

[Presets]
{names}
"""

# A second of a tone, also where there is no sound device.
PIECE = """<CsoundSynthesizer>
<CsOptions>
-+rtaudio=dummy
</CsOptions>
<CsInstruments>
sr = 44100
ksmps = 32
nchnls = 1
0dbfs = 1
instr 1
a1 oscili 0.3, 440
out a1
endin
</CsInstruments>
<CsScore>
i1 0 1
</CsScore>
</CsoundSynthesizer>
"""

# Notes what it was given.
LISTENER = """#!/bin/sh
printf '%s' "$1" > "{record}.part"
mv "{record}.part" "{record}"
"""


def command_lines():
    return [line for page in guidepages.pages() for fence in page.fences() if fence.word == "sh"
            for line in fence.text.strip().split("\n")]


def presets():
    """The rows of the table behind the comment that announces it, without what marks them as code."""
    blocks = next(page for page in guidepages.pages() if page.name == "presets").blocks
    place = next(i for i, block in enumerate(blocks) if block.kind == "comment" and block.text == "presets")
    rows = blocks[place + 1].items[1:]
    return [[cell.strip("`") for cell in row] for row in rows]


def keys_without_a_row():
    """What the page of keys says of keys that stand in no menu: the words of a row by each of its keys."""
    blocks = next(page for page in guidepages.pages() if page.name == "keys").blocks
    place = next(i for i, block in enumerate(blocks) if block.kind == "comment" and block.text == "keys")
    return {key: words for keys, words in blocks[place + 1].items[1:] for key in re.findall(r"`([^`]+)`", keys)}


def keys_change_numbers_as_told(stage):
    told = keys_without_a_row()
    by_one, by_ten = "the number at the caret grows, or falls, by 1", "by 10"
    changes = (  # from 440; what is any number comes first, while the file still holds that
        ("Alt+NumPad *", "alt+KP_Multiply", "a random part of the number at the caret", None),
        ("Alt+Up", "alt+Up", by_one, "441"),
        ("Alt+Down", "alt+Down", by_one, "439"),
        ("Alt+Right", "alt+Right", "by a tenth", "440.1"),
        ("Alt+Left", "alt+Left", "by a tenth", "439.9"),
        ("Alt+PgUp", "alt+Prior", by_ten, "450"),
        ("Alt+PgDown", "alt+Next", by_ten, "430"),
    )
    keys = {key for key in told if key.startswith("Alt+") and not key[-1].isdigit()}
    equal(keys, {key for key, *_ in changes}, "the keys of numbers")
    stage.write_store(STORE.format(editor="", names=""))
    piece = stage.home / "number.sco"
    piece.write_text("440")
    editor, window = settled(stage, piece)
    for key, pressed, words, number in changes:
        equal(told[key], words, f"what {key} does")
        window.keys("ctrl+a", "4", "4", "0", "Home", pressed, "ctrl+s")

        def changed():
            text = piece.read_text()
            return text == number if number else text != "440" and 0 <= float(text) < 440

        stage.until(changed, lambda: f"{key}: {piece.read_text()!r}")
    editor.close(window)


def command_lines_start_the_program(stage):
    stage.write_store(STORE.format(editor="", names=""))
    (stage.home / "piece.csd").write_text(PIECE)
    lines = command_lines()
    check(len(lines) >= 6, f"the command lines {lines}")
    for line in lines:
        words = shlex.split(line)
        variables = {}
        while "=" in words[0]:
            name, value = words.pop(0).split("=", 1)
            variables[name] = value
        equal(words.pop(0), "zelvane", f"the program of {line}")
        before = dict(stage.environment)
        stage.environment |= variables
        program = stage.start(*words)
        stage.environment = before
        if words and words[0].startswith("--"):
            equal(program.ended(), 0, f"the exit code of {line}")
            check("Zelvane" in program.output(), f"what {line} prints: {program.output()}")
            continue
        window = program.window(lambda title: title)
        stage.until(window.is_active, f"the window of {line} in front")
        program.at_rest()
        if words[0].endswith(".csd"):
            check("piece.csd" in window.title(), f"{line}: {window.title()}")
        window.keys("alt+F4")
        equal(program.ended(), 0, f"the exit code after {line}")


def presets_run(stage):
    record = stage.home / "edited"
    opened = stage.home / "opened"
    programs = stage.home / "bin"
    programs.mkdir()
    editor = write_program(programs / "soundeditor", LISTENER.format(record=record))
    write_program(programs / "xdg-open", LISTENER.format(record=opened))
    stage.environment["PATH"] = f"{programs}:{os.environ['PATH']}"
    rows = presets()
    equal(len(rows), 6, "presets of the table")
    store = STORE.format(editor=editor, names="\n".join(f"{name}=" for name, *_ in rows))
    for name, command, parameters, folder in rows:
        store += f"\n[{name}]\nCommand={command}\nArgs={parameters}\nFolder={folder}\n"
    stage.write_store(store)
    piece = stage.home / "piece.csd"
    piece.write_text(PIECE)
    sound = piece.with_suffix(".wav")
    stage.output("csound", "-d", "-W", "-o", sound, piece)
    check(rendered(sound), "the sound of the piece")
    editor, window = settled(stage, piece)
    window.keys("ctrl+f")
    find = editor.dialog(window)
    find.type("oscili")
    find.keys("Return", "Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the search")
    editor.at_rest()

    proofs = {
        "Play while rendering": lambda: "end of score" in log_of(stage, "Play while rendering"),
        "Look for mistakes": lambda: "Syntax check completed" in log_of(stage, "Look for mistakes"),
        "Edit the sound": lambda: record.exists() and record.read_text() == str(sound),
        "Analyse the sound": lambda: piece.with_suffix(".pvx").exists(),
        "Manual page": lambda: opened.exists() and opened.read_text().endswith("/html/oscili.html"),
        "Terminal here": lambda: terminals(stage),
    }
    equal(list(proofs), [row[0] for row in rows], "the presets of the table")
    for number, (name, proof) in enumerate(proofs.items(), 1):
        window.keys(f"ctrl+{number}")
        stage.until(proof, lambda: f"the proof of {name}; the log: {log_of(stage, name)} {editor.output()} {editor.titles()}")
        editor.at_rest()
    for terminal in terminals(stage):
        Window(stage, int(terminal)).ask_to_close()
    stage.until(lambda: not terminals(stage), "the end of the terminal")
    editor.close(window)


def the_first_sound_comes_as_told(stage):
    """The steps of the first page, one by one, in an editor that nobody has set up."""
    piece = next(fence.text for page in guidepages.pages() for fence in page.fences() if fence.word == "csound-csd")
    stage.write_store("[Options]\nUsed=2\nSplash=0\nStartup=2\nCodeOutline=0\nRelatedFiles=0\n")
    editor, window = settled(stage)
    window.keys("alt+p", "r")
    question = editor.window("Zelvane")
    question.keys("alt+y")
    stage.until(lambda: len(stage.read_store().get("presets", {})) == 4, "the ready-made presets")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the question")
    window.keys("ctrl+n")
    kinds = editor.window("New Document")
    kinds.type("Unif")  # chooses by the first letters
    kinds.keys("Return")
    stage.until(lambda: "Unified" in window.title(), lambda: f"the new document; {window.title()}")
    editor.at_rest()
    window.keys("ctrl+a", "Delete")
    for line in piece.splitlines():
        if line:
            window.type(line)
        window.keys("Return")
    window.keys("ctrl+s")
    save = editor.dialog(window)
    stage.until(save.is_active, "the dialog in front")
    file = stage.home / "first.csd"
    save.type(str(file))
    save.keys("Return")
    stage.until(lambda: file.exists() and "*" not in window.title(), "the saved piece")
    equal(file.read_bytes().decode().replace("\r\n", "\n"), piece, "what was typed")
    stage.until(window.is_active, "the editor in front")
    editor.at_rest()
    window.keys("ctrl+1")
    sound = file.with_suffix(".wav")
    stage.until(lambda: rendered(sound) and Sound(sound).seconds > 2.9, lambda: f"{sound}; {log_of(stage, 'Render to a sound file')}")
    check(Sound(sound).seconds < 3.1 and Sound(sound).peak > 3000, f"{Sound(sound).seconds} s, peak {Sound(sound).peak}")
    stage.until(window.is_active, "the editor in front")
    window.keys("F9")
    stage.until(lambda: holds(editor, sound), "the player opens the sound")
    window.keys("F12")
    editor.close(window)


def holds(process, file):
    """Whether a process has a file open."""
    for entry in Path(f"/proc/{process.pid}/fd").iterdir():
        try:
            if entry.readlink() == file:
                return True
        except OSError:
            continue
    return False


def terminals(stage):
    return stage.output("xdotool", "search", "--onlyvisible", "--class", "^XTerm$").split()


main(the_first_sound_comes_as_told, keys_change_numbers_as_told, command_lines_start_the_program, presets_run)
