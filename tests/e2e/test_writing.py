# SPDX-License-Identifier: GPL-3.0-or-later
"""Writing aids: turned on and off in Preferences by keys, and a piece that is typed; the pictures are for looking at."""

from support.pictures import pixels
from support.stage import check, dark_desktop, equal, main, options, settled

STORE = options(CodeOutline=0, RelatedFiles=0, X=600, Y=600, Width=15000, Height=9000)
SHOWN = """LiveColours=1
LineNumbers=1
CurrentLine=1
"""
PIECE = """<CsoundSynthesizer>
<CsInstruments>
instr 1 ; a tone
a1 oscil 10000, 440
outs a1, a1
endin
</CsInstruments>
</CsoundSynthesizer>"""


def aids(stage):
    """The aids that are on, by their keys in the store."""
    options = {key.lower(): value for key, value in stage.read_store()["options"].items()}
    names = (
        "LiveColours Completion AutoComplete ArgumentHint LineNumbers CurrentLine BracketMatch SameWord "
        "AutoIndent MoveLines Folding Bookmarks FindInFiles RegularExpressions"
    ).split()
    return [name for name in names if options.get(name.lower(), "0") not in ("0", "False")]


def preferences(stage, editor, window):
    """Opens the page of the aids: the last one."""
    window.keys("alt+f", "Up", "Up", "Return")
    dialog = editor.window("Zelvane - Preferences")
    stage.until(dialog.is_active, "the dialog in front")
    editor.at_rest()
    dialog.keys("ctrl+shift+Tab")
    editor.at_rest()
    return dialog


def all_on_and_off(stage):
    stage.write_store(STORE)
    editor, window = settled(stage)
    equal(aids(stage), [], "the aids that are on at first")
    before = window.screenshot("writing-off")
    dialog = preferences(stage, editor, window)
    dialog.keys("alt+n")  # Turn all on
    editor.at_rest()
    dialog.screenshot("writing-preferences")
    dialog.keys("Return")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    equal(len(aids(stage)), 14, f"the aids that are on: {aids(stage)}")
    window.keys("alt+x")
    editor.at_rest()
    stage.screenshot("writing-menu")
    window.keys("Escape", "Escape")
    editor.at_rest()

    dialog = preferences(stage, editor, window)
    for mnemonic in "ytwhidlcbefksr":  # the list of words before the completion, without which it cannot be changed
        dialog.keys(f"alt+{mnemonic}")
    editor.at_rest()
    dialog.keys("Return")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    equal(aids(stage), [], "the aids that are on in the end")
    editor.at_rest()
    # The caret blinks, so its column is left out.
    area = "600x300+40+0"
    equal(pixels(window.screenshot("writing-off-again"), area), pixels(before, area), "the window without aids")
    editor.close(window)


def type_a_piece(stage, name, scale=1):
    stage.write_store(STORE + SHOWN)
    piece = stage.home / "new.csd"
    piece.write_text("")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    stage.until(window.is_active, "the window in front")
    editor.at_rest()

    def coloured(most, others):
        """Whether something in the text has plainly more of one colour than of two others."""
        area = f"{400 * scale}x{200 * scale}+{33 * scale}+{144 * scale}"  # below the bars, beside the numbers
        rows = pixels(window.screenshot(f"writing-{name}"), area)
        return any(all(point[most] > point[other] + 60 for other in others) for row in rows for point in row)

    check(not coloured(1, (0, 2)), "green in an empty text")
    for line in PIECE.split("\n"):
        window.type(line)
        window.keys("Return")
    # Without a refresh: tags are reddish, the comment green, opcodes blue.
    for most, what in ((0, "a tag"), (1, "a comment"), (2, "an opcode")):
        others = tuple(other for other in (0, 1, 2) if other != most)
        stage.until(lambda: coloured(most, others), f"the colour of {what}")
    window.keys("ctrl+Home")
    editor.at_rest()
    window.screenshot(f"writing-{name}")
    window.keys("ctrl+s")
    stage.until(lambda: piece.read_text().split() == PIECE.split(), "the saved piece")
    editor.close(window)


def light(stage):
    type_a_piece(stage, "light")


def dark(stage):
    dark_desktop(stage)
    type_a_piece(stage, "dark")


def twice_as_large(stage):
    stage.environment["QT_SCALE_FACTOR"] = "2"
    type_a_piece(stage, "double", 2)


twice_as_large.size = "1920x1080x24"


main(all_on_and_off, light, dark, twice_as_large)
