# SPDX-License-Identifier: GPL-3.0-or-later
"""The p-fields of a described instrument mapped into the orchestra, which Csound then renders; the pictures are for
looking at."""

from support.csound import sound_of
from support.stage import WIDE, dark_desktop, equal, main, options, settled

STORE = options(WIDE, Startup=2, CodeOutline=0, RelatedFiles=0)

ORCHESTRA = """sr = 44100
kr = 4410
ksmps = 10
nchnls = 1
instr 1
a1 oscil iamp, ifreq, 1
out a1
endin
"""

SCORE = "f1 0 4096 10 1\ni1 0 .1 10000 440\n"

DATA = """<instruments>
<instr number="1" name="Tone">
<p number="4" name="Amplitude" description="Loudest sample" format="1" min="0" max="32767" variable="iamp"/>
<p number="5" name="Frequency" format="0" min="20" max="2000" unit="Hz" variable="ifreq"/>
</instr>
</instruments>
"""

BLOCK = ";<ZelvaneParameterMapping>\n{};</ZelvaneParameterMapping>\n"


def described(stage):
    """A piece with descriptions beside it, in an editor."""
    stage.write_store(STORE)
    piece = stage.home / "tone.orc"
    piece.write_text(ORCHESTRA)
    (stage.home / "tone.sco").write_text(SCORE)
    (stage.home / "tone.xml").write_text(DATA)
    editor, window = settled(stage, piece)
    return piece, editor, window


def mapping(editor, window):
    """The dialog, by its row: the third one from the end that can be chosen."""
    window.keys("alt+t", "Up", "Up", "Up", "Return")
    dialog = editor.dialog(window)
    equal(dialog.title(), "p-Fields Mapping", "the dialog's title")
    return dialog


def mapped(stage, editor, window, *keys):
    """The dialog, with these keys, to its end."""
    dialog = mapping(editor, window)
    dialog.keys(*keys, "Return")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.at_rest()


def saved(stage, window, piece, expected, what):
    window.keys("ctrl+s")

    def text():
        return piece.read_bytes().decode().replace("\r\n", "\n")

    stage.until(lambda: text() == expected, lambda: f"{what}: {text()!r}")


def p_fields_become_variables(stage):
    piece, editor, window = described(stage)
    plain = "iamp = p4\nifreq = p5\n"
    told = "iamp = p4   ; Amplitude. Loudest sample\nifreq = p5   ; Frequency.\n"
    mapped(stage, editor, window)
    saved(stage, window, piece, ORCHESTRA.replace("instr 1\n", "instr 1\n" + BLOCK.format(plain)), "the first run")
    mapped(stage, editor, window, "Tab", "space", "shift+Tab")
    window.screenshot("mapping-block")
    final = ORCHESTRA.replace("instr 1\n", "instr 1\n" + BLOCK.format(told))
    saved(stage, window, piece, final, "the second run")

    sound_of(stage, piece, stage.home / "tone.sco")

    window.keys("ctrl+z", "ctrl+z")
    saved(stage, window, piece, ORCHESTRA, "two steps back")
    editor.close(window)


def looks(stage, name, scale, dark):
    stage.environment["QT_SCALE_FACTOR"] = str(scale)
    if dark:
        dark_desktop(stage)
    _, editor, window = described(stage)
    dialog = mapping(editor, window)
    editor.at_rest()
    dialog.screenshot(f"mapping-{name}")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.close(window)


def light_at_100(stage):
    looks(stage, "light-100", 1, False)


def dark_at_100(stage):
    looks(stage, "dark-100", 1, True)


def light_at_200(stage):
    looks(stage, "light-200", 2, False)


light_at_200.size = "2200x1600x24"

main(p_fields_become_variables, light_at_100, dark_at_100, light_at_200)
