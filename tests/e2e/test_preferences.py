# SPDX-License-Identifier: GPL-3.0-or-later
"""The Preferences dialog by keys alone, and the ways that lead to it; the pictures are for looking at."""

from support.stage import check, copy_example, dark_desktop, equal, main, ran_to_end, rendered, settled

STORE = """; mine
[Options]
Used=2
Splash=0
CommentsColor=4711
"""
PAGES = ("editor", "colors", "general", "programs", "extensions", "writing")


def preferences(stage, editor, window):
    """Opens the dialog from the menu: its row is the last but one."""
    window.keys("alt+f", "Up", "Up", "Return")
    dialog = editor.window("Zelvane - Preferences")
    stage.until(dialog.is_active, "the dialog in front")
    editor.at_rest()
    return dialog


def closed(stage, editor):
    stage.until(lambda: len(editor.titles()) == 1, lambda: f"the end of the dialog; {editor.titles()}")


def look_at_each_page(stage, name):
    stage.write_store(STORE)
    stage.environment["SFDIR"] = "/home/composer/sounds"
    editor, window = settled(stage)
    dialog = preferences(stage, editor, window)
    for page in PAGES:
        dialog.screenshot(f"preferences-{page}-{name}")
        dialog.keys("ctrl+Tab")
        editor.at_rest()
    dialog.keys("Escape")
    closed(stage, editor)
    editor.close(window)
    check("Startup" not in stage.read_store().get("options", {}), "a setting that was only looked at")


def light(stage):
    look_at_each_page(stage, "light")


def dark(stage):
    dark_desktop(stage)
    look_at_each_page(stage, "dark")


def twice_as_large(stage):
    stage.environment["QT_SCALE_FACTOR"] = "2"
    look_at_each_page(stage, "double")


twice_as_large.size = "1920x1080x24"


def a_small_screen_shows_all(stage):
    """The pages scroll there, and the keyboard brings what it comes to into view."""
    stage.environment["QT_SCALE_FACTOR"] = "2"
    stage.write_store(STORE)
    editor, window = settled(stage)
    dialog = preferences(stage, editor, window)
    left, top, width, height = dialog.geometry()
    check(left >= 0 and top >= 0 and left + width <= 1366 and top + height <= 768, f"{dialog.geometry()} on the screen")
    for page in PAGES:
        dialog.screenshot(f"preferences-{page}-small")
        dialog.keys("ctrl+Tab")
        editor.at_rest()
    dialog.keys("ctrl+Tab", "ctrl+Tab", "alt+p")  # the backup folder, at the end of its page
    dialog.type("/kept")
    editor.at_rest()
    dialog.screenshot("preferences-scrolled-small")
    dialog.keys("Return")
    closed(stage, editor)
    equal(stage.setting("BakPath"), "/kept", "the backup folder")
    editor.close(window)


a_small_screen_shows_all.size = "1366x768x24"


def settings_are_changed_by_keys(stage):
    stage.write_store(STORE)
    editor, window = settled(stage)
    dialog = preferences(stage, editor, window)
    dialog.keys("alt+i")  # insert spaces
    dialog.keys("alt+p", "ctrl+a")
    dialog.type("4")
    dialog.keys("ctrl+Tab", "ctrl+Tab", "alt+b", "alt+u", "Down", "Down", "alt+a")
    editor.at_rest()
    stage.screenshot("preferences-applied")
    equal(stage.setting("BandLabels"), "1", "the band labels, applied")
    equal(stage.setting("TabInsertSpaces"), "True", "spaces for tabs")
    equal(stage.setting("RealTabs"), "False", "its partner")
    equal(stage.setting("TabSpaces"), "4", "spaces of a tab")
    equal(stage.setting("Startup"), "2", "the start")
    equal(stage.setting("CommentsColor"), "4711", "a color that the dialog does not show")
    dialog.keys("ctrl+Tab", "alt+c")
    dialog.type("/usr/bin/csound")
    dialog.keys("Return")
    closed(stage, editor)
    equal(stage.setting("Csound"), "/usr/bin/csound", "the path of Csound")
    # The next Tab in the text does as it was told.
    piece = stage.home / "tab.orc"
    window.keys("Tab", "x", "ctrl+shift+s")
    box = editor.dialog(window)
    box.type(str(piece))
    box.keys("Return")
    stage.until(lambda: piece.exists() and piece.read_bytes() == b"    x", lambda: f"the piece; {editor.titles()}")
    editor.close(window)
    check("; mine" in stage.store.read_text(), "a comment of the user's")


def extensions_are_associated(stage):
    stage.write_store(STORE)
    editor, window = settled(stage)
    dialog = preferences(stage, editor, window)
    dialog.keys("ctrl+shift+Tab", "ctrl+shift+Tab", "alt+x")
    question = editor.window("Associate extensions")
    stage.until(question.is_active, "the question in front")
    question.keys("alt+y")
    told = editor.window("Zelvane")
    stage.until(told.is_active, "what came of it")
    applications = stage.folder / "data" / "applications"
    for entry in ("zelvane", "zelvane-runcsound", "zelvane-preset"):
        check((applications / f"{entry}.desktop").is_file(), entry)
    told.screenshot("preferences-associated")
    told.keys("Return")
    stage.until(dialog.is_active, "the dialog again")
    for kind in ("orc", "sco", "csd"):
        default = stage.output("xdg-mime", "query", "default", f"text/x-csound-{kind}")
        equal(default.strip(), "zelvane.desktop", f"what opens {kind}")
    dialog.keys("Escape")
    closed(stage, editor)
    editor.close(window)


def a_program_that_has_moved_is_found_again(stage):
    entry = stage.folder / "data" / "applications" / "zelvane.desktop"
    entry.parent.mkdir(parents=True)
    gone = stage.folder / "gone" / "zelvane"
    text = "[Desktop Entry]\nType=Application\nName=Zelvane\nExec={program} %f\nTryExec={program}\nX-Mine=1\n"
    entry.write_text(text.format(program=gone))
    stage.write_store(STORE)
    editor, window = settled(stage)
    editor.close(window)
    equal(entry.read_text(), text.format(program=stage.program), "what the desktop is told")


def a_tool_that_hangs_is_stopped(stage):
    tool = stage.folder / "bin" / "update-mime-database"
    tool.parent.mkdir()
    tool.write_text('#!/bin/sh\nexec tail -f "$0"\n')
    tool.chmod(0o700)
    stage.environment["PATH"] = f"{tool.parent}:{stage.environment['PATH']}"
    stage.write_store(STORE)
    editor, window = settled(stage)
    dialog = preferences(stage, editor, window)
    dialog.keys("ctrl+shift+Tab", "ctrl+shift+Tab", "alt+x")
    question = editor.window("Associate extensions")
    stage.until(question.is_active, "the question in front")
    question.keys("alt+y")
    box = editor.window("Zelvane")
    stage.until(box.is_active, "the box over the dialog")
    stage.screenshot("preferences-waiting")
    box.keys("Escape")
    told = editor.window("Zelvane", beside=box)
    stage.until(told.is_active, "what came of it")
    check(ran_to_end(f"tail -f {tool}"), "the tool still runs")
    check(not (stage.folder / "data" / "applications").exists(), "no entry without its types")
    told.keys("Return")
    stage.until(dialog.is_active, "the dialog again")
    # It can be done again.
    tool.unlink()
    dialog.keys("alt+x")
    question = editor.window("Associate extensions")
    stage.until(question.is_active, "the question in front")
    question.keys("alt+y")
    told = editor.window("Zelvane")
    stage.until(told.is_active, "what came of it")
    check((stage.folder / "data" / "applications" / "zelvane.desktop").is_file(), "the entry")
    told.keys("Return")
    stage.until(dialog.is_active, "the dialog again")
    dialog.keys("Escape")
    closed(stage, editor)
    editor.close(window)


def answered_yes(stage, process, keys):
    """The question whether the dialog is to be shown, answered with yes, and the path of the other Csound typed there."""
    question = process.window("Zelvane")
    stage.until(question.is_active, "the question in front")
    question.keys("Return")
    dialog = process.window("Zelvane - Preferences")
    stage.until(dialog.is_active, "the dialog in front")
    process.at_rest()
    dialog.keys(*keys)
    dialog.type("/usr/bin/csound")
    dialog.keys("Return")


def run_dialog_offers_it(stage):
    stage.write_store("[Options]\nUsed=2\nManualCsound2=1\n")
    piece = copy_example(stage, "oscil.csd")
    process = stage.start("/r", piece)
    dialog = process.window("Zelvane - Run Csound")
    stage.until(dialog.is_active, "the dialog in front")
    process.at_rest()
    dialog.keys("Return")
    answered_yes(stage, process, ["ctrl+Tab", "ctrl+Tab", "ctrl+Tab", "alt+2"])
    equal(process.ended(), 0, "exit code")
    equal(stage.setting("Csound2"), "/usr/bin/csound", "the path of the other Csound")


def chooser_offers_it(stage):
    stage.write_store(
        "[Options]\nUsed=2\n[Presets]\nRender=\n[Render]\nCommand=$CSOUND2$\nArgs=-d -W -o $WAVE$ $DOCUMENT$\n"
    )
    piece = copy_example(stage, "oscil.csd")
    process = stage.start("/p", piece)
    chooser = process.window("Run Zelvane Preset")
    stage.until(chooser.is_active, "the chooser in front")
    process.at_rest()
    chooser.keys("Return")
    answered_yes(stage, process, ["ctrl+Tab", "ctrl+Tab", "ctrl+Tab", "alt+2"])
    equal(process.ended(), 0, "exit code")
    check(not piece.with_suffix(".wav").exists(), "the preset does not go on afterwards")
    # The next time nothing is missing.
    process = stage.start("/p", piece)
    chooser = process.window("Run Zelvane Preset")
    process.at_rest()
    chooser.keys("Return")
    wave = piece.with_suffix(".wav")
    stage.until(lambda: rendered(wave), lambda: f"{wave}; the program said: {process.output()}")
    equal(process.ended(), 0, "exit code")


main(
    light,
    dark,
    twice_as_large,
    a_small_screen_shows_all,
    settings_are_changed_by_keys,
    extensions_are_associated,
    a_program_that_has_moved_is_found_again,
    a_tool_that_hangs_is_stopped,
    run_dialog_offers_it,
    chooser_offers_it,
)
