# SPDX-License-Identifier: GPL-3.0-or-later
"""A piece written with the Insert menu by keys alone, which Csound then renders; the pictures are for looking at."""

from support.csound import sound_of
from support.stage import WIDE, equal, main, options, settled

STORE = options(WIDE, CodeOutline=0, RelatedFiles=0, LineWidth=24)

VOICE = b"a1 oscil 10000, 440\r\nout a1\r\n"
EXPECTED = (
    "sr = 48000\r\nkr = 24000\r\nksmps = 2\r\nnchnls = 1\r\n"
    ";-------- voices --------\r\n"
    "#define LOUD(a'b) #$a + $b#\r\n"
    "instr 7 ; tone\r\n\r\n;instrument body\r\n\r\nendin"
)


def a_piece_is_written_by_inserting(stage):
    stage.write_store(STORE)
    piece = stage.home / "piece.orc"
    piece.write_bytes(b"")
    (stage.home / "voice.inc").write_bytes(VOICE)
    editor, window = settled(stage, piece)

    def insert(row, *fields):
        """Fills the fields of a dialog one after the other and ends it."""
        window.keys("alt+i", row)
        dialog = editor.dialog(window)
        for place, text in enumerate(fields):
            if place > 0:
                dialog.keys("Tab")
            if text:
                dialog.keys("ctrl+a")
                dialog.type(text)
        dialog.screenshot(f"insert-{row}")
        dialog.keys("Return")
        stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
        editor.at_rest()

    insert("h", "48000", "24000")
    insert("m", "LOUD", "a' 'b'", "$a + $b")
    window.keys("Return")
    insert("i", "7", "tone")
    # With Ctrl a separator asks for its text; it goes under the line of the caret.
    window.keys("ctrl+Home", "Down", "Down", "Down", "alt+i")
    editor.at_rest()
    stage.screenshot("insert-menu")
    for _ in range(6):
        stage.output("xdotool", "key", "Down")
    stage.output("xdotool", "keydown", "Control_L")
    stage.output("xdotool", "key", "Return")
    editor.dialog(window)
    stage.output("xdotool", "keyup", "Control_L")
    prompt = editor.dialog(window)
    prompt.type("voices")
    prompt.keys("Return")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the question")
    window.keys("ctrl+s")
    stage.until(lambda: piece.read_bytes() != b"", "the saved piece")
    window.screenshot("insert-piece")
    equal(piece.read_bytes().decode(), EXPECTED, "the saved piece")

    # The body of the instrument is an included file.
    window.keys("ctrl+End", "Up", "Up", "Home", "shift+End")
    insert("u", str(stage.home / "voice.inc"))
    window.keys("ctrl+s")
    stage.until(lambda: b"#include" in piece.read_bytes(), "the saved include")
    equal(piece.read_bytes().decode(), EXPECTED.replace(";instrument body", '#include "voice.inc"'), "the piece")
    editor.close(window)

    (stage.home / "piece.sco").write_text("f1 0 4096 10 1\ni7 0 .1\n")
    sound_of(stage, piece, stage.home / "piece.sco")


main(a_piece_is_written_by_inserting)
