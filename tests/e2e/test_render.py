# SPDX-License-Identifier: GPL-3.0-or-later
"""A composer opens a piece of Csound's documentation and renders it with presets."""

import stat
import subprocess
import sys

from support.stage import Sound, check, copy_example, equal, main, rendered

STORE = """; written by hand
[Options]
Used=2
Splash=0
Csound=/usr/bin/csound
Editor={editor}

[Presets]
Render=
Render and listen=

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
Tooltip=Render this piece

[Render and listen]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
2ndCommand=$EDITOR$
2ndArgs=$WAVE$ "and more"
"""

# A minute of sound, one sample at a time: it takes a while to render.
SLOW_PIECE = """<CsoundSynthesizer>
<CsInstruments>
sr = 44100
ksmps = 1
nchnls = 1
0dbfs = 1
instr 1
  aSum init 0
  iVoice = 0
  a1 oscili 0.1, 220
  a2 oscili 0.1, 331
  a3 oscili 0.1, 442
  out a1 + a2 + a3
endin
</CsInstruments>
<CsScore>
i 1 0 60
</CsScore>
</CsoundSynthesizer>
"""

# The second action: notes what it was given, and whether the sound file was whole by then.
LISTENER = """#!{python}
import os, sys, wave
try:
    with wave.open(sys.argv[1]) as file:
        frames = file.getnframes()
except (OSError, EOFError, wave.Error):
    frames = 0
with open({record!r} + ".part", "w") as record:
    record.write("\\n".join([*sys.argv[1:], str(frames), os.getcwd()]))
os.rename({record!r} + ".part", {record!r})
"""


def prepare(stage):
    record = stage.home / "listened"
    listener = stage.home / "listen"
    listener.write_text(LISTENER.format(python=sys.executable, record=str(record)))
    listener.chmod(listener.stat().st_mode | stat.S_IXUSR)
    stage.write_store(STORE.format(editor=listener))
    return record


def pixels_of(picture, colour):
    result = subprocess.run(
        ["convert", str(picture), "-fuzz", "20%", "-fill", "black", "+opaque", colour, "-fill", "white", "-opaque", colour]
        + ["-format", "%[fx:int(mean*w*h+0.5)]", "info:"],
        capture_output=True,
        text=True,
        check=True,
    )
    return int(result.stdout)


def check_sound(path):
    sound = Sound(path)
    check(sound.seconds > 1, f"{path} has {sound.seconds} seconds")
    check(sound.peak > 300, f"{path} is silent: its peak is {sound.peak}")


def one_step_preset_renders(stage):
    prepare(stage)
    piece = copy_example(stage, "oscil.csd", "a piece")  # a folder with a blank
    original = piece.read_bytes()
    wave = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    check("Unified Format" in window.title(), window.title())
    editor.at_rest()
    picture = window.screenshot("opened")
    for colour, what in (("#0000ff", "opcodes"), ("#008000", "comments"), ("#800000", "tags")):
        check(pixels_of(picture, colour) > 10, f"{what} in their colour")
    window.keys("ctrl+1")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    check_sound(wave)
    check("HIDDEN" not in window.state(), "a preset of one step leaves the window as it is")
    window.screenshot("rendered")
    equal(piece.read_bytes(), original, "the piece itself")
    editor.close(window)
    equal(stage.setting("Used"), "3", "the count of uses")
    equal(stage.setting("Args", "Render"), "-d -W -o $WAVE$ $DOCUMENT$", "the preset as it was written by hand")
    check(stage.store.read_text().startswith("; written by hand\n"), "the comment of the store")


def second_action_runs_after_the_first_has_ended(stage):
    record = prepare(stage)
    piece = stage.home / "slow.csd"
    piece.write_text(SLOW_PIECE)
    wave = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+2")
    stage.until(record.exists, lambda: f"the second action; the program said: {editor.output()}")
    check_sound(wave)
    first, second, frames, folder = record.read_text().split("\n")
    equal(first, str(wave), "the sound file that the second action got")
    equal(second, "and more", "the parameter in quotes")
    equal(int(frames), 60 * 44100, "the length of the sound file when the second action began")
    equal(folder, str(stage.home), "the folder of the second action: the editor's own")
    stage.until(lambda: "HIDDEN" in window.state(), "the minimized window")
    window.activate()
    window.screenshot("after-two-steps")
    editor.close(window)


def preset_that_saves_first_renders_what_was_typed(stage):
    prepare(stage)
    stage.store.write_text(stage.store.read_text() + "\n[Presets]\nSave=\n[Save]\nCommand=$CSOUND$\n"
                           "Args=-d -W -o $WAVE$ $DOCUMENT$\nSaveFirst=1\n")
    piece = copy_example(stage, "oscil.csd")
    wave = piece.with_suffix(".wav")
    before = piece.read_text()
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+Home")
    window.type("; typed")
    window.keys("Return")
    window.keys("ctrl+3")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {editor.output()}")
    equal(piece.read_bytes(), ("; typed\n" + before).replace("\n", "\r\n").encode(), "the saved piece")
    editor.close(window)


def preset_that_minimizes_knows_the_selection(stage):
    record = prepare(stage)
    text = stage.store.read_text().replace("[Options]\n", "[Options]\nMinimizeOnPresets=-1\n")
    stage.store.write_text(text + "\n[Presets]\nSay=\n[Say]\nCommand=$EDITOR$\nArgs=$SEL$\n")
    piece = stage.home / "words.txt"
    piece.write_text("chosen\nnot chosen\n")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+Home", "shift+End", "ctrl+3")
    stage.until(record.exists, lambda: f"the preset's program; the editor said: {editor.output()}")
    equal(record.read_text().split("\n")[:-2], ["chosen"], "what the program was given")
    stage.until(lambda: "HIDDEN" in window.state(), "the minimized window")
    window.activate()
    editor.close(window)


def cancelled_search_shows_in_the_status_line(stage):
    prepare(stage)
    stage.store.write_text(stage.store.read_text() + "\n[Presets]\nSay=\n[Say]\nCommand=$EDITOR$\nArgs=$ORCHESTRA$\n")
    piece = stage.home / "words.txt"
    piece.write_text("words\n")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+3")
    editor.dialog(window).keys("Escape")
    stage.until(window.is_active, "the editor in front again")
    editor.at_rest()
    equal(len(editor.titles()), 1, f"the editor's windows: {editor.titles()}")
    window.screenshot("cancelled-search")
    editor.close(window)


def preset_without_a_program_says_so(stage):
    prepare(stage)
    stage.store.write_text(stage.store.read_text().replace("/usr/bin/csound", "/no/such/csound"))
    piece = copy_example(stage, "pluck.csd")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.keys("ctrl+1")
    box = editor.window("/no/such/csound")
    box.screenshot("no-such-program")
    box.keys("Return")
    window.keys("ctrl+2")
    box = editor.dialog(window)
    box.screenshot("cannot-execute")
    box.keys("Return")
    editor.close(window)
    check(not piece.with_suffix(".wav").exists(), "nothing has been rendered")


main(
    one_step_preset_renders,
    second_action_runs_after_the_first_has_ended,
    preset_that_saves_first_renders_what_was_typed,
    preset_that_minimizes_knows_the_selection,
    cancelled_search_shows_in_the_status_line,
    preset_without_a_program_says_so,
)
