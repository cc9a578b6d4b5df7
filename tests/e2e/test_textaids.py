# SPDX-License-Identifier: GPL-3.0-or-later
"""The writing aids in the text itself, by keys alone: a piece is typed, folded, marked and rendered. The pictures are
for looking at."""

from support.csound import sound_of
from support.stage import check, dark_desktop, main, options

STORE = options(RelatedFiles=0, TabInsertSpaces=-1, TabSpaces=2, X=600, Y=600, Width=12000, Height=10200,
                AutoIndent=-1, BracketMatch=-1, SameWord=-1, Folding=-1, Bookmarks=-1, MoveLines=-1, LineNumbers=-1, CurrentLine=-1)

BEFORE = """<CsoundSynthesizer>
<CsInstruments>
sr = 44100
ksmps = 32
nchnls = 1
0dbfs = 1
"""
AFTER = """</CsInstruments>
<CsScore>
i 1 0 1 0.5
</CsScore>
</CsoundSynthesizer>
"""
TYPED = [
    "instr 1",
    "if p4 > 0.2 then",
    "iamp = p4 * (1 - 0.5)",
    "else",
    "iamp = 0.1",
    "endif",
    "a1 oscils iamp, 440, 0",
    "out a1",
    "endin",
]
INDENTED = """instr 1
  if p4 > 0.2 then
    iamp = p4 * (1 - 0.5)
  else
    iamp = 0.1
  endif
  a1 oscils iamp, 440, 0
  out a1
endin
"""


def on_disk(text):
    return text.replace("\n", "\r\n").encode()


def begin(stage):
    stage.write_store(STORE)
    piece = stage.home / "piece.csd"
    piece.write_bytes(on_disk(BEFORE + AFTER))
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.activate()
    editor.at_rest()

    def keys(*names):
        stage.output("xdotool", "key", "--clearmodifiers", "--delay", "20", *names)
        editor.at_rest()

    def saved(text, what):
        keys("ctrl+s")
        stage.until(lambda: piece.read_bytes() == on_disk(text), what)

    return piece, editor, window, keys, saved


def type_lines(stage, editor, keys):
    keys("ctrl+Home", *["Down"] * 6)
    for line in TYPED:
        stage.output("xdotool", "type", "--clearmodifiers", "--delay", "5", "--", line)
        keys("Return")


def a_piece_is_typed(stage):
    piece, editor, window, keys, saved = begin(stage)
    type_lines(stage, editor, keys)
    saved(BEFORE + INDENTED + AFTER, "the typed piece with its indents")
    sound_of(stage, piece)

    # Two bookmarks, and from one to the other.
    keys("Up", "ctrl+F2", *["Up"] * 6, "ctrl+F2", "F2", "F2", "End")
    window.screenshot("textaids-bookmarks")
    stage.output("xdotool", "type", "--clearmodifiers", "--", " ; here")
    here = INDENTED.replace("(1 - 0.5)", "(1 - 0.5) ; here")
    saved(BEFORE + here + AFTER, "a comment at the bookmark")

    # The line moves, and is copied; its bookmark goes along.
    keys("ctrl+shift+Up", "ctrl+shift+Down", "ctrl+l", "ctrl+z", "F2", "F2")
    saved(BEFORE + here + AFTER, "the line back at its place")
    keys("ctrl+shift+Down")
    lines = here.split("\n")
    lines[2], lines[3] = lines[3], lines[2]
    saved(BEFORE + "\n".join(lines) + AFTER, "the moved line")
    keys("ctrl+z")

    # What is folded is no edit, and the keys pass over it.
    keys("ctrl+Home", *["Down"] * 6, "ctrl+t")
    window.screenshot("textaids-folded")
    keys("Down", "Home")
    stage.output("xdotool", "type", "--clearmodifiers", "--", "; below")
    keys("Return")
    saved(BEFORE + here + "; below\n" + AFTER, "a line below the folded instrument")
    keys("ctrl+shift+t", "ctrl+shift+e")
    saved(BEFORE + here + "; below\n" + AFTER, "the same text")
    editor.close(window)


def looks(stage, name, scale, dark):
    stage.environment["QT_SCALE_FACTOR"] = str(scale)
    if dark:
        dark_desktop(stage)
    piece, editor, window, keys, saved = begin(stage)
    type_lines(stage, editor, keys)
    # At a word, at a bracket, and at one without a partner.
    keys("ctrl+F2", *["Up"] * 7, "Home", "ctrl+Right")
    window.screenshot(f"textaids-word-{name}")
    keys("End")
    window.screenshot(f"textaids-bracket-{name}")
    keys("ctrl+Home", "Down", "Down", "Home")
    stage.output("xdotool", "type", "--clearmodifiers", "--", "(")
    editor.at_rest()
    window.screenshot(f"textaids-unmatched-{name}")
    keys("BackSpace", *["Down"] * 5, "ctrl+t")
    window.screenshot(f"textaids-fold-{name}")
    keys("ctrl+shift+F2")
    stage.screenshot(f"textaids-list-{name}")
    keys("Escape", "ctrl+s")
    check(piece.exists(), "the piece")
    editor.close(window)


def looks_light(stage):
    looks(stage, "light", 1, False)


def looks_dark(stage):
    looks(stage, "dark", 1, True)


def looks_large(stage):
    looks(stage, "large", 2, False)


looks_large.size = "2200x1600x24"


main(a_piece_is_typed, looks_light, looks_dark, looks_large)
