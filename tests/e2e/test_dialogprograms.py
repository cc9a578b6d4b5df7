# SPDX-License-Identifier: GPL-3.0-or-later
"""The two smaller programs that a file's context menu starts: the preset chooser and the Run Csound dialog."""

from support.stage import Sound, check, copy_example, equal, main, rendered

STORE = """[Options]
Used=2
Csound=/usr/bin/csound

[Presets]
Nothing=
Render=

[Nothing]

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
Tooltip=Render it
"""


def check_rendered(stage, process, path):
    stage.until(lambda: rendered(path), lambda: f"{path}; the program said: {process.output()}")
    equal(process.ended(), 0, "exit code")
    sound = Sound(path)
    check(sound.seconds > 1 and sound.peak > 300, f"{path}: {sound.seconds} s, peak {sound.peak}")
    equal(stage.setting("Used"), "2", "the count of uses of the editor")


def run_dialog_renders(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd", "a folder")
    process = stage.start("/r", piece)
    dialog = process.window("Zelvane - Run Csound")
    process.at_rest()
    dialog.type("-d -W -o $BASENAME$.wav")
    process.at_rest()
    dialog.screenshot("run-csound-by-itself")
    dialog.keys("Return")
    check_rendered(stage, process, piece.with_suffix(".wav"))


def run_dialog_cancelled_starts_nothing(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd")
    process = stage.start("/r", piece)
    process.window("Zelvane - Run Csound").keys("Escape")
    equal(process.ended(), 0, "exit code")
    check(not list(piece.parent.glob("*.wav")), "a sound file")


def run_dialog_without_a_file_ends_at_once(stage):
    stage.write_store(STORE)
    process = stage.start("/r ")
    equal(process.ended(), 0, "exit code")


def chooser_runs_the_chosen_preset(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd", "a folder")
    process = stage.start("/p", piece)
    chooser = process.window("Run Zelvane Preset")
    process.at_rest()
    chooser.keys("Down")
    chooser.screenshot("chooser")
    chooser.keys("Return")
    check_rendered(stage, process, piece.with_suffix(".wav"))


def chooser_is_out_of_sight_while_it_waits(stage):
    go = stage.home / "go"
    done = stage.home / "done"
    wait = stage.home / "wait.sh"
    wait.write_text(f"#!/bin/sh\nwhile [ ! -e {go} ]; do sleep 0.05; done\n")
    finish = stage.home / "finish.sh"
    finish.write_text(f"#!/bin/sh\ntouch {done}\n")
    for script in (wait, finish):
        script.chmod(0o755)
    stage.write_store(f"[Options]\nUsed=2\n[Presets]\nTwo=\n[Two]\nCommand={wait}\n2ndCommand={finish}\n")
    piece = copy_example(stage, "oscil.csd")
    process = stage.start("/p", piece)
    process.window("Run Zelvane Preset").keys("Return")
    stage.until(lambda: not stage.windows_of(process.pid), "no window of the chooser")
    check(process.runs() and not done.exists(), "the first action runs")
    go.touch()
    equal(process.ended(), 0, "exit code")
    stage.until(done.exists, "the second action")


def chooser_cancelled_ends(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd")
    process = stage.start("/p", piece)
    process.window("Run Zelvane Preset").keys("Escape")
    equal(process.ended(), 0, "exit code")


main(
    run_dialog_renders,
    run_dialog_cancelled_starts_nothing,
    run_dialog_without_a_file_ends_at_once,
    chooser_runs_the_chosen_preset,
    chooser_is_out_of_sight_while_it_waits,
    chooser_cancelled_ends,
)
