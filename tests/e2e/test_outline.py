# SPDX-License-Identifier: GPL-3.0-or-later
"""The code outline by keys alone, on a piece of Csound's own manual; the pictures are for looking at."""

from support.pictures import pixels
from support.stage import WIDE, check, copy_example, dark_desktop, equal, main, options

STORE = options(WIDE, RelatedFiles=0, ExpandBrowse=1)

HIGHLIGHT = (61, 174, 233)
BACKGROUND = (27, 30, 32)


def an_instrument_is_cut(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "wii.csd")
    before = piece.read_text()
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.activate()
    editor.at_rest()

    def keys(*names):
        for name in names:
            stage.output("xdotool", "key", "--clearmodifiers", name)
            editor.at_rest()

    keys("F6", "F6")  # opcode list, outline
    # Tags, CsoundSynthesizer, CsOptions, CsInstruments, CsScore, Instruments, 1, 2
    keys(*["Down"] * 6, "asterisk", "Return")
    window.screenshot("outline")
    keys("Down", "Return")
    window.screenshot("outline-label")
    keys("Down", "Down", "Down", "Menu")
    stage.screenshot("outline-menu")
    keys("t", "ctrl+s")
    instrument = before[before.index("instr 2") : before.rindex("endin") + len("endin")]
    stage.until(lambda: "instr 2" not in piece.read_text(), "the file without the instrument")
    equal(piece.read_text(), before.replace(instrument, ""), "the saved piece")
    window.screenshot("outline-cut")
    editor.close(window)


def a_dark_outline(stage):
    stage.write_store(STORE)
    dark_desktop(stage)
    piece = stage.home / "piece.csd"
    piece.write_text(
        "; <old>\n; </old>\n<CsInstruments>\n#define LOUD #0.8#\ninstr 1 ; a long name for a voice of the piece\n"
        "again:\nout oscil($LOUD, 440)\nendin\n</CsInstruments>\n<CsScore>\n#include \"notes.sco\"\nm verse\n"
        "f1 0 4096 10 1\ns\ne\n</CsScore>\n"
    )
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.activate()
    editor.at_rest()
    # The tree's column: the first row is selected, the second a tag that is commented out, the third one is not.
    rows = pixels(window.screenshot("outline-dark"), "180x600+0+80")
    selected = [y for y, row in enumerate(rows) if row[2] == HIGHLIGHT]
    check(selected, "a selected row")
    first, height = selected[0], len(selected)
    equal(selected[-1] - first + 1, height, "the height of the one selected row")

    def points(row, left):
        return [point for line in rows[first + row * height : first + (row + 1) * height] for point in line[left:]]

    check(points(0, 0).count(BACKGROUND) > 50, "the selected row's icon stands on the colour of the other rows")
    check(points(1, 0).count(BACKGROUND) > 1000, "the other rows are dark")
    grey, plain = (max(sum(point) for point in points(row, 64)) for row in (1, 2))
    check(grey < plain - 150, f"the commented tag is grey: {grey} beside {plain}")
    editor.close(window)


main(an_instrument_is_cut, a_dark_outline)
