# SPDX-License-Identifier: GPL-3.0-or-later
"""A piece typed from nothing with completion and argument hints, which Csound then renders; the pictures are for
looking at, on a light and on a dark desktop."""

from support.csound import sound_of
from support.stage import WIDE, dark_desktop, equal, main, options, settled

STORE = options(WIDE, CodeOutline=0, RelatedFiles=0, Completion=1, AutoComplete=1, ArgumentHint=1)

EXPECTED = """<CsoundSynthesizer>
<CsInstruments>
sr = 44100
ksmps = 32
nchnls = 1
0dbfs = 1
giSine ftgen 0, 0, 4096, 10, 1
opcode Louder, a, ak
ain, kgain xin
xout ain * kgain
endop
instr Tone
kenv linen .3, .01, p3, .05
asig poscil kenv, 440, giSine
asig Louder asig, linseg(0, p3, 1)
out asig
endin
</CsInstruments>
<CsScore>
i "Tone" 0 .2
</CsScore>
</CsoundSynthesizer>
"""


def a_piece_is_typed_with_completion(stage):
    stage.write_store(STORE)
    piece = stage.home / "piece.csd"
    piece.write_bytes(b"")
    editor, window = settled(stage, piece)

    def typed(text):
        for line, part in enumerate(text.split("\n")):
            if line:
                stage.output("xdotool", "key", "--clearmodifiers", "Return")
            if part:
                stage.output("xdotool", "type", "--clearmodifiers", "--delay", "4", "--", part)
        editor.at_rest()

    def keys(*names):
        stage.output("xdotool", "key", "--clearmodifiers", *names)
        editor.at_rest()

    def picture(name):
        editor.at_rest()
        stage.screenshot(f"completion-{name}")

    typed("<CsoundSynthesizer>\n<CsInstruments>\nsr = 44100\nksmps = 32\nnchnls = 1\n0dbfs = 1\ngiSine ftg")
    picture("opcodes")
    keys("Tab")
    typed(" 0, 0, 4096, 10, 1\nopcode Louder, a, ak\nain, kgain xin\nxout ain * kgain\nendop\ninstr Tone\nkenv line")
    keys("Down", "Tab")
    typed(" .3, ")
    picture("hint")
    typed(".01, p3, .05\nasig posc")
    keys("Tab")
    typed(" kenv, 440, gi")
    keys("ctrl+space")
    picture("names")
    keys("Return")
    typed("\nasig Lou")
    picture("own-opcode")
    keys("Tab")
    typed(" asig, linseg(0, ")
    picture("function")
    typed("p3, 1)\nout asig\nendi")
    keys("Down", "Return")
    typed('\n</CsInstruments>\n<CsScore>\ni "To')
    keys("ctrl+space", "Tab")
    typed('" 0 .2\n</CsScore>\n</CsoundSynthesizer>\n')
    keys("ctrl+s")
    stage.until(lambda: piece.read_bytes() != b"", "the saved piece")
    equal(piece.read_bytes().decode().replace("\r\n", "\n"), EXPECTED, "the saved piece")
    editor.close(window)
    sound_of(stage, piece)


def they_can_be_read_on_a_dark_desktop(stage):
    dark_desktop(stage)
    stage.environment["QT_SCALE_FACTOR"] = "2"
    stage.write_store(STORE)
    piece = stage.home / "piece.orc"
    piece.write_text("\n")
    editor, window = settled(stage, piece)
    stage.output("xdotool", "type", "--clearmodifiers", "--delay", "4", "--", "aout poscil .5, 440, osc")
    editor.at_rest()
    stage.screenshot("completion-dark-200")
    stage.output("xdotool", "key", "Escape")
    window.keys("ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z", "ctrl+s")
    editor.close(window)


main(a_piece_is_typed_with_completion, they_can_be_read_on_a_dark_desktop)
