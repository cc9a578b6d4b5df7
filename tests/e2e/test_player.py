# SPDX-License-Identifier: GPL-3.0-or-later
"""A composer renders a piece and listens to it: play, pause, another place, loop, stop."""

import os
import subprocess
import time

from support.stage import check, equal, main, options, rendered

STORE = options(Csound="/usr/bin/csound") + """
[Presets]
Render=
[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
"""

# Long enough to be at an end only when it is taken there.
PIECE = """<CsoundSynthesizer>
<CsInstruments>
sr = 22050
ksmps = 441
nchnls = 1
0dbfs = 1
instr 1
  a1 oscili 0.1, 220
  out a1
endin
</CsInstruments>
<CsScore>
i 1 0 300
</CsScore>
</CsoundSynthesizer>
"""

BARS = "x120+0+0"  # the part of the window that holds the player, and no caret that blinks


class Listener:
    """What can be seen of the player from outside."""

    def __init__(self, stage, editor, window, sound):
        self.stage = stage
        self.editor = editor
        self.window = window
        self.sound = sound

    def is_open(self):
        """Whether the editor holds the sound file."""
        folder = f"/proc/{self.editor.pid}/fd"
        for number in os.listdir(folder):
            try:
                if os.readlink(f"{folder}/{number}") == str(self.sound):
                    return True
            except OSError:
                continue
        return False

    def wait_open(self, what):
        self.stage.until(self.is_open, what)

    def wait_closed(self, what):
        self.stage.until(lambda: not self.is_open(), what)

    def bars(self):
        picture = self.window.screenshot("player-bars")
        return subprocess.run(
            ["convert", str(picture), "-crop", BARS, "+repage", "rgb:-"], capture_output=True, check=True
        ).stdout

    def wait_moving(self, what):
        first = self.bars()
        self.stage.until(lambda: self.bars() != first, what)

    def check_still(self, what):
        """The time changes every second while a sound plays, the slider oftener."""
        def rests():
            before = self.bars()
            time.sleep(1.5)
            return self.bars() == before

        self.stage.until(rests, what)
        first = self.bars()
        limit = time.monotonic() + 2.5
        while time.monotonic() < limit:
            check(self.bars() == first, what)

    def go_to_slider(self):
        self.window.keys("shift+F6", "Tab", "Tab", "Tab", "Tab")


def prepared(stage, options=""):
    stage.write_store(STORE.replace("[Presets]", options + "[Presets]"))
    piece = stage.home / "a piece" / "tone.csd"
    piece.parent.mkdir()
    piece.write_text(PIECE)
    sound = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+1")
    stage.until(lambda: rendered(sound), lambda: f"{sound}; the program said: {editor.output()}")
    editor.at_rest()
    return Listener(stage, editor, window, sound)


def sound_is_played_paused_and_stopped(stage):
    on = prepared(stage)
    check(not on.is_open(), "nothing is open before Play")
    on.window.keys("F9")
    on.wait_open("the sound that plays")
    on.wait_moving("the slider's way")
    on.window.screenshot("playing")
    on.window.keys("F11")
    on.editor.at_rest()
    on.check_still("a paused sound stands still")
    check(on.is_open(), "a paused sound is open")
    on.window.keys("F11")
    on.wait_moving("the slider's way after the pause")
    on.window.keys("F12")
    on.wait_closed("the end of the sound by Stop")
    on.editor.at_rest()
    on.check_still("after Stop nothing moves")
    on.editor.close(on.window)
    equal(stage.setting("LoopMode"), "0", "the loop mode that is kept")


def end_closes_the_sound(stage):
    on = prepared(stage)
    on.window.keys("F9")
    on.wait_open("the sound that plays")
    on.go_to_slider()
    on.window.keys("Next")  # back to the start
    check(on.is_open(), "a sound that plays from its start again")
    on.window.keys("End")
    on.wait_closed("the end of the sound")
    # The keyboard has gone from the slider to the text.
    on.window.type("x")
    stage.until(lambda: "*" in on.window.title(), "the text that was typed")
    on.window.keys("ctrl+s")
    stage.until(lambda: "*" not in on.window.title(), "the saved text")
    on.editor.close(on.window)


def loop_goes_on(stage):
    on = prepared(stage, "LoopMode=-1\n")
    on.window.keys("F9")
    on.wait_open("the sound that plays")
    for _ in range(2):
        on.go_to_slider()
        on.window.keys("End")
        on.wait_moving("the way of the sound that began again")
        check(on.is_open(), "a sound in loop mode stays open")
        on.window.keys("F6")
    on.window.keys("F12")
    on.wait_closed("the end of the loop by Stop")
    on.editor.close(on.window)
    equal(stage.setting("LoopMode"), "-1", "the loop mode that is kept")


if __name__ == "__main__":
    main(sound_is_played_paused_and_stopped, end_closes_the_sound, loop_goes_on)
