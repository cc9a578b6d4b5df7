# SPDX-License-Identifier: GPL-3.0-or-later
"""A fragment goes from one piece through the code repository into another, which Csound then renders."""

import shutil
from pathlib import Path

from support.csound import sound_of
from support.stage import WIDE, check, dark_desktop, equal, main, options, settled

DATA = Path(__file__).resolve().parents[2] / "data"

STORE = options(WIDE, CodeOutline=0, RelatedFiles=0)

INSTRUMENT = "instr 1 ; a tone\n\tkenv\tlinen\t10000, .01, p3, .05\n\taout\toscili\tkenv, 440\n\tout\taout\nendin"
HEADER = "sr = 44100\nkr = 4410\nksmps = 10\nnchnls = 1\n\n"


def program_folder(stage, *files):
    """A folder of its own for the program: the built one is everybody's."""
    folder = stage.folder / "program"
    folder.mkdir()
    for file in ("opcodes.txt", *files):
        shutil.copy(DATA / file, folder)
    stage.environment |= {"ZELVANE_HOME": str(folder), "LOGNAME": "Jo 32"}
    return folder


def a_fragment_goes_into_another_piece(stage):
    stage.write_store(STORE)
    folder = program_folder(stage)
    first = stage.home / "first.orc"
    first.write_text(HEADER + INSTRUMENT + "\n")
    editor, window = settled(stage, first)
    # The five lines of the instrument, without the line end of the last.
    window.keys("ctrl+Home", "Down", "Down", "Down", "Down", "Down")
    window.keys("shift+Down", "shift+Down", "shift+Down", "shift+Down", "shift+End")
    window.keys("ctrl+shift+d")
    dialog = editor.dialog(window)
    editor.at_rest()
    dialog.type("tone of mine")
    dialog.screenshot("repository-name")
    dialog.keys("Return")
    mine = folder / "jo _2.csr"
    stage.until(mine.exists, "the repository file")
    stage.until(lambda: dialog.title() == "Code Repository - tone of mine", "the new fragment")
    dialog.screenshot("repository-added")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    code = INSTRUMENT.replace("\n", "\\n").replace("\t", "\\t")
    lines = mine.read_text().split("\n")
    equal(lines[:2], ["[tone of mine]", "Code=" + code], "the fragment")
    equal(lines[2], "Author=Jo 32", "its author")
    check(lines[3].startswith("Comments=Created on "), "its comments")
    equal(lines[4:], ["Category=General", ""], "the rest of it")
    editor.close(window)

    second = stage.home / "second.orc"
    second.write_text(HEADER)
    editor, window = settled(stage, second)
    window.keys("ctrl+End", "ctrl+d")
    dialog = editor.dialog(window)
    editor.at_rest()
    dialog.keys("ctrl+f")
    question = editor.window("Find code fragment")
    question.type("TONE")
    question.keys("Return")
    stage.until(lambda: dialog.title() == "Code Repository - tone of mine", "the found fragment")
    dialog.keys("Return")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    window.keys("ctrl+s")
    stage.until(lambda: "endin" in second.read_text(), "the saved piece")
    window.screenshot("repository-inserted")
    equal(second.read_text(), HEADER + INSTRUMENT, "the piece")
    editor.close(window)

    score = stage.home / "second.sco"
    score.write_text("i1 0 .2\n")
    sound_of(stage, second, score)


def fragments_are_given_once(stage):
    """An installed program gives a user the shipped fragments, and leaves them to him then."""
    stage.write_store(STORE)
    installed = stage.folder / "installed"
    (installed / "bin").mkdir(parents=True)
    shutil.copy(stage.program, installed / "bin")
    (installed / "share" / "zelvane").mkdir(parents=True)
    for file in ("opcodes.txt", "zelvane.csr"):
        shutil.copy(DATA / file, installed / "share" / "zelvane")
    stage.program = str(installed / "bin" / "zelvane")
    given = stage.folder / "data" / "zelvane" / "zelvane.csr"
    piece = stage.home / "piece.orc"
    piece.write_text(HEADER)

    editor, window = settled(stage, piece)
    equal(given.read_bytes(), (DATA / "zelvane.csr").read_bytes(), "the given fragments")
    window.keys("ctrl+d")
    dialog = editor.dialog(window)
    stage.until(lambda: dialog.title() == "Code Repository - Additive bell", "the first fragment")
    dialog.keys("Delete")
    question = editor.window("Zelvane")
    question.screenshot("repository-delete")
    question.keys("Tab", "space")  # No is the first choice
    stage.until(lambda: b"[Additive bell]" not in given.read_bytes(), "the file without the fragment")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.close(window)

    left = given.read_bytes()
    editor, window = settled(stage, piece)
    window.keys("ctrl+d")
    dialog = editor.dialog(window)
    stage.until(lambda: dialog.title() == "Code Repository - FM voice", "the fragment that is the first now")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.close(window)
    equal(given.read_bytes(), left, "the fragments after a restart")

    given.unlink()
    editor, window = settled(stage, piece)
    editor.close(window)
    check(not given.exists(), "the file does not come back")


def looks(stage, name, view=2):
    """The dialog with the shipped fragments, for looking at."""
    stage.write_store(STORE + f"CodeRepositorySort={view}\n")
    program_folder(stage, "zelvane.csr")
    piece = stage.home / "piece.orc"
    piece.write_text(HEADER)
    editor, window = settled(stage, piece)
    window.keys("ctrl+d")
    dialog = editor.dialog(window)
    editor.at_rest()
    dialog.screenshot(f"repository-{name}-group")
    dialog.keys("Down", "Down")
    editor.at_rest()
    dialog.screenshot(f"repository-{name}")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.close(window)


def it_looks_well_in_a_dark_desktop(stage):
    dark_desktop(stage)
    looks(stage, "dark")


def it_looks_well_at_200_percent(stage):
    stage.environment["QT_SCALE_FACTOR"] = "2"
    looks(stage, "large", 1)


it_looks_well_at_200_percent.size = "2560x1800x24"

main(
    a_fragment_goes_into_another_piece,
    fragments_are_given_once,
    it_looks_well_in_a_dark_desktop,
    it_looks_well_at_200_percent,
)
