# SPDX-License-Identifier: GPL-3.0-or-later
"""A composer describes the instrument of a piece of Csound's documentation, maps its p-fields, and makes a note louder
with its slider; the pictures are for looking at."""

from support.csound import sound_of
from support.stage import WIDE, Sound, check, copy_example, equal, main, options, settled

STORE = options(WIDE, Startup=2, CodeOutline=0, RelatedFiles=0)

# Name, description, most, unit and variable of p4 to p7.
FIELDS = (
    ("Amplitude", "Peak of the note", "1", "", "iamp"),
    ("Frequency", "Pitch of the note", "2000", "Hz", "ifreq"),
    ("Attack", "Rise of the envelope", "2", "sec", "iatt"),
    ("Release", "Fall of the envelope", "2", "sec", "irel"),
)

BLOCK = """;<ZelvaneParameterMapping>
idur = p3   ; Duration. Duration time in beats
iamp = p4   ; Amplitude. Peak of the note
ifreq = p5   ; Frequency. Pitch of the note
iatt = p6   ; Attack. Rise of the envelope
irel = p7   ; Release. Fall of the envelope
;</ZelvaneParameterMapping>
"""

# The loudest note, and the same at the slider's upper end.
NOTE = "i1   6    3   .7   220   0.5    0.5"
LOUDER = "i1   6    3   1   220   0.5    0.5"


def text_of(piece):
    return piece.read_bytes().decode().replace("\r\n", "\n")


def peak(stage, piece, what):
    """What Csound makes of the piece as it is on the disk."""
    return Sound(sound_of(stage, piece, what=what)).peak


def saved(stage, window, piece, old, what):
    """Saves, and waits until the piece is another one than before."""
    window.keys("ctrl+s")
    stage.until(lambda: text_of(piece) != old, f"{what} is saved")
    return text_of(piece)


def alone(stage, editor):
    stage.until(lambda: len(editor.titles()) == 1, lambda: f"the end of the dialogs {editor.titles()}")
    editor.at_rest()


def describe(stage, editor, window):
    """Makes instrument 1 with all its p-fields; the data goes into the piece."""
    window.keys("ctrl+i")
    dialog = editor.window("Instrument Properties")
    dialog.keys("ctrl+n")
    question = editor.window("New instrument")
    question.type("1")
    question.keys("Return")
    stage.until(lambda: len(editor.titles()) == 2, "the end of the question")
    editor.at_rest()
    for name, description, most, unit, variable in FIELDS:
        dialog.keys("ctrl+p")
        editor.at_rest()
        dialog.keys("alt+n", "ctrl+a")
        # Name, description, group, least, most, format, unit, variable.
        for place, text in enumerate((name, description, "Built-in", "0", most, None, unit, variable)):
            if place > 0:
                dialog.keys("Tab")
            if text:
                dialog.keys("ctrl+a")
                dialog.type(text)
    dialog.screenshot("instruments-properties")
    dialog.keys("Return")
    where = editor.window(lambda title: title == "Zelvane", beside=dialog)
    where.keys("alt+y")
    alone(stage, editor)


def p_fields_to_variables(stage, editor, window):
    window.keys("alt+t", "Up", "Up", "Up", "Return")
    dialog = editor.window("p-Fields Mapping")
    dialog.keys("Tab", "space", "Return")  # with comments
    alone(stage, editor)


def louder(stage, editor, window, line):
    """The amplitude of the statement on a line, to the upper end of its slider."""
    window.keys("ctrl+g")
    question = editor.dialog(window)
    question.type(str(line))
    question.keys("Return")
    alone(stage, editor)
    window.keys("ctrl+e")
    dialog = editor.window(lambda title: title.startswith("Instrument 1 - "))
    # From the text of p2 to the slider of p4.
    dialog.keys("Tab", "Tab", "Tab")
    dialog.keys("End")
    editor.at_rest()
    dialog.screenshot("instruments-statement")
    dialog.keys("Tab", "Return")
    alone(stage, editor)


def a_piece_gets_descriptions_and_a_louder_note(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "linen.csd")
    original = text_of(piece)
    check(NOTE in original, "the example has its note")
    soft = peak(stage, piece, "the piece")
    editor, window = settled(stage, piece)

    describe(stage, editor, window)
    described = saved(stage, window, piece, original, "the description")
    check(described.startswith(original), "the description stands behind the piece")
    for name, *_ in FIELDS:
        check(f'name="{name}"' in described, f"the description of {name}")
    equal(peak(stage, piece, "the described piece"), soft, "the peak with descriptions")

    p_fields_to_variables(stage, editor, window)
    mapped = saved(stage, window, piece, described, "the mapping")
    equal(mapped, described.replace("instr 1\n", "instr 1\n" + BLOCK), "the mapped piece")
    equal(peak(stage, piece, "the mapped piece"), soft, "the peak with variables")

    louder(stage, editor, window, mapped[: mapped.index(NOTE)].count("\n") + 1)
    changed = saved(stage, window, piece, mapped, "the note")
    equal(changed, mapped.replace(NOTE, LOUDER), "the piece with the note")
    loud = peak(stage, piece, "the louder piece")
    check(1.3 < loud / soft < 1.5, f"the peak {loud} against {soft}")
    editor.close(window)

    # Another editor finds the same descriptions, and stores them to the character.
    editor, window = settled(stage, piece)
    window.keys("ctrl+i")
    dialog = editor.window("Instrument Properties")
    editor.at_rest()
    dialog.screenshot("instruments-again")
    dialog.keys("Return")
    alone(stage, editor)
    window.keys("ctrl+End", "Return")
    again = saved(stage, window, piece, changed, "the piece")
    equal(again, changed + "\n", "the piece stored again")
    equal(peak(stage, piece, "the piece stored again"), loud, "the peak of the piece stored again")
    editor.close(window)


main(a_piece_gets_descriptions_and_a_louder_note)
