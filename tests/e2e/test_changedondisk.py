# SPDX-License-Identifier: GPL-3.0-or-later
"""Two programs on one file: none writes over the other's work without a question."""

from support.stage import check, copy_example, equal, main, options

STORE = options(Startup=2, MultipleInstances=1)


def started(stage, piece):
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    stage.until(window.is_active, "the window in front")
    editor.at_rest()
    return editor, window


def bring(stage, window):
    """Gives the window the keyboard; a question may take it at once."""
    stage.output("xdotool", "windowactivate", window.number)


def answered(stage, editor, window, picture, *keys):
    """Answers the box that comes over the window."""
    box = editor.dialog(window)
    box.screenshot(picture)
    box.keys(*keys)
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the question")
    editor.at_rest()


def two_editors_on_one_file(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    text = piece.read_bytes().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")
    first, one = started(stage, piece)
    second, two = started(stage, piece)
    two.type(";two")
    two.keys("ctrl+s")
    stage.until(lambda: piece.read_bytes().startswith(b";two"), "the second editor's text")

    # The first one's text is unchanged: Return loads.
    bring(stage, one)
    answered(stage, first, one, "changed-load", "Return")
    one.type(";one")
    one.keys("ctrl+s")
    stage.until(lambda: piece.read_bytes().startswith(b";one;two"), "both editors' text")

    # The second one's is changed: Return leaves it.
    bring(stage, two)
    answered(stage, second, two, "changed-load-again", "Return")
    two.type(";more")
    one.activate()
    second.at_rest()  # a window that is away for a moment only does not count as left
    with piece.open("ab") as file:
        file.write(b";sed\n")
    bring(stage, two)
    answered(stage, second, two, "changed-keep", "Return")
    check("*" in two.title(), two.title())
    saved = piece.read_bytes()
    with piece.open("ab") as file:
        file.write(b";again\n")
    two.keys("ctrl+s")
    answered(stage, second, two, "changed-save-over", "Return")
    check("*" in two.title(), "the text is still to be saved")
    equal(piece.read_bytes(), saved + b";again\n", "the file")
    two.keys("ctrl+s")
    answered(stage, second, two, "changed-save-over-again", "alt+y")
    check("*" not in two.title(), two.title())
    equal(piece.read_bytes(), b";more;one;two" + text, "the text that stayed")
    second.close(two)


main(two_editors_on_one_file)
