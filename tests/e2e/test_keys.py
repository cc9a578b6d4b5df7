# SPDX-License-Identifier: GPL-3.0-or-later
"""Where the keyboard is after menus and dialogs; what is typed then must come into the text."""

from support.stage import check, main, options, settled

STORE = options(RelatedFiles=0)


def the_text_gets_the_keyboard_back(stage):
    stage.write_store(STORE)
    piece = stage.home / "piece.txt"
    piece.write_text("first\nsecond\nthird\n")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.activate()
    editor.at_rest()

    def typed(word):
        stage.output("xdotool", "type", "--clearmodifiers", "--", word + " ")
        stage.output("xdotool", "key", "--clearmodifiers", "ctrl+s")
        stage.until(lambda: word in piece.read_text(), lambda: f"{word!r} in the file: {piece.read_text()!r}")

    def keys(*names):
        for name in names:
            stage.output("xdotool", "key", "--clearmodifiers", name)
            editor.at_rest()

    typed("begin")
    keys("alt+f", "Escape")
    typed("menu")
    keys("Alt_L", "Escape")
    typed("bar")
    keys("alt+v", "Right", "Escape")
    typed("next")
    keys("alt+e", "Escape", "alt+s", "Escape")
    typed("twice")
    keys("shift+F10")
    stage.screenshot("keys-context")
    keys("Escape")
    typed("context")
    keys("Menu", "Escape")
    typed("key")
    keys("alt+s", "g", "2", "Return")
    typed("goto")
    lines = piece.read_text().split("\n")
    check(lines[1].startswith("goto second"), f"the second line: {lines}")
    keys("ctrl+g", "Escape")
    typed("escaped")
    keys("F6", "F6", "F6", "F6")  # opcode list, outline, related files, text
    typed("round")
    keys("Home", "F6", "shift+F6")
    typed("back")
    check(piece.read_text().split("\n")[1].startswith("back goto"), f"the second line: {piece.read_text()!r}")
    editor.close(window)


def the_open_find_dialog_starts_again(stage):
    stage.write_store(STORE)
    piece = stage.home / "piece.txt"
    piece.write_text("third\nsecond\nthird\n")
    editor, window = settled(stage, piece)

    def keys(*names):
        for name in names:
            stage.output("xdotool", "key", "--clearmodifiers", name)
            editor.at_rest()

    def searched(word):
        keys("Return")
        stage.until(
            lambda: stage.setting("1", "Recent Find Strings") == word,
            lambda: f"a search for {word!r}; the last was {stage.setting('1', 'Recent Find Strings')!r}",
        )

    keys("ctrl+f")
    find = editor.window("Find")
    stage.until(find.is_active, "the keyboard in the find dialog")
    stage.output("xdotool", "type", "--clearmodifiers", "--", "typed")
    window.activate()
    keys("ctrl+Home", "shift+End", "ctrl+h")
    stage.until(lambda: find.is_active() and find.title() == "Replace", "the dialog in front, in its other mode")
    searched("third")
    window.activate()
    keys("ctrl+Home", "Down", "shift+End", "ctrl+f")
    stage.until(lambda: find.is_active() and find.title() == "Find", "the dialog in front, in its first mode")
    keys("Tab", "ctrl+h")  # in the dialog itself
    stage.until(lambda: find.title() == "Replace", "the dialog in its other mode")
    window.activate()
    keys("ctrl+Home")
    find.activate()
    searched("second")
    stage.output("xdotool", "type", "--clearmodifiers", "--", "thi")
    searched("thi")
    keys("Escape")
    editor.close(window)


def help_opens_the_page_of_the_selected_word(stage):
    """What reaches the desktop's opener is the page: the opener knows no keywords."""
    stage.write_store(STORE)
    opened = stage.folder / "opened"
    opener = stage.folder / "bin" / "xdg-open"
    opener.parent.mkdir()
    opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{opened}"\n')
    opener.chmod(0o755)
    stage.environment["PATH"] = f"{opener.parent}:{stage.environment['PATH']}"
    piece = stage.home / "piece.orc"
    piece.write_text("a1 oscili 1, 440\n")
    editor, window = settled(stage, piece)

    def help_gives(pages, *keys):
        for name in (*keys, "F1"):
            window.keys(name)
        found = [f"/usr/share/doc/csound-doc/html/{page}.html" for page in pages]
        stage.until(
            lambda: opened.exists() and opened.read_text().split("\n")[:-1] == found,
            lambda: f"{found}; opened was {opened.read_text() if opened.exists() else 'nothing'}",
        )
        editor.at_rest()

    help_gives(["oscili"], "ctrl+Home", *["Right"] * 3, *["shift+Right"] * 6)
    help_gives(["oscili", "index"], "Home")  # nothing selected
    help_gives(["oscili", "index", "index"], "shift+Right", "shift+Right")  # no word of the manual
    editor.close(window)


main(
    the_text_gets_the_keyboard_back,
    the_open_find_dialog_starts_again,
    help_opens_the_page_of_the_selected_word,
)
