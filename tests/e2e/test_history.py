# SPDX-License-Identifier: GPL-3.0-or-later
"""Files walked through by the history, and a piece taken from its pair to one file and back."""

from support.stage import NARROW, check, equal, main, options, settled

STORE = options(NARROW, Startup=2)

ORCHESTRA = b"sr = 44100\r\ninstr 1\r\na1 oscil 10000, 440, 1\r\nout a1\r\nendin\r\n"
SCORE = b"f1 0 4096 10 1\r\ni1 0 1\r\ne\r\n"


def pair(stage, name):
    folder = stage.home / "piece"
    folder.mkdir(exist_ok=True)
    (folder / f"{name}.orc").write_bytes(ORCHESTRA)
    (folder / f"{name}.sco").write_bytes(SCORE)
    return folder / f"{name}.orc", folder / f"{name}.sco"


def titled(stage, editor, window, path, mark=""):
    stage.until(lambda: f"{path}{mark} (" in window.title(), lambda: f"{path}{mark} in the title; it is {window.title()}")
    editor.at_rest()


def opened(stage, editor, window, path):
    window.keys("ctrl+o")
    dialog = editor.dialog(window)
    dialog.type(str(path))
    dialog.keys("Return")
    titled(stage, editor, window, path)


def walk_through_the_history(stage):
    stage.write_store(STORE)
    first, score = pair(stage, "first")
    second, _ = pair(stage, "second")
    editor, window = settled(stage, first)
    titled(stage, editor, window, first)
    opened(stage, editor, window, second)
    window.keys("alt+v", "s")
    titled(stage, editor, window, stage.home / "piece" / "second.sco")
    window.screenshot("history-buttons")
    for key, path in (("ctrl+Prior", second), ("ctrl+Prior", first), ("ctrl+Next", second)):
        window.keys(key)
        titled(stage, editor, window, path)
    # Nothing was asked, and nothing written.
    equal(first.read_bytes(), ORCHESTRA, "the first orchestra")
    equal(score.read_bytes(), SCORE, "the first score")
    editor.close(window)


def to_one_file_and_back(stage):
    stage.write_store(STORE)
    orchestra, score = pair(stage, "x")
    unified = orchestra.with_suffix(".csd")
    editor, window = settled(stage, orchestra)
    titled(stage, editor, window, orchestra)
    window.keys("alt+t", "c")
    titled(stage, editor, window, unified, "*")
    window.screenshot("sections-unified")
    check(not unified.exists(), "nothing is written before the save")
    window.keys("ctrl+s")
    titled(stage, editor, window, unified)
    check(unified.exists(), "the unified file")

    window.keys("alt+t", "o")
    for name, picture in (("y.orc", "sections-save-orchestra"), ("y.sco", "sections-save-score")):
        dialog = editor.dialog(window)
        stage.until(dialog.is_active, "the dialog in front")
        editor.at_rest()
        dialog.screenshot(picture)
        dialog.keys("ctrl+a")
        dialog.type(str(orchestra.with_name(name)))
        dialog.keys("Return")
        stage.until(orchestra.with_name(name).exists, name)
        editor.at_rest()
    question = editor.dialog(window)
    question.screenshot("sections-question")
    question.keys("Return")
    titled(stage, editor, window, orchestra.with_name("y.orc"))
    equal((orchestra.with_name("y.orc")).read_bytes(), b"\r\n" + ORCHESTRA + b"\r\n\r\n", "the orchestra")
    equal((orchestra.with_name("y.sco")).read_bytes(), b"\r\n" + SCORE + b"\r\n\r\n", "the score")
    equal(orchestra.read_bytes(), ORCHESTRA, "the first orchestra")
    editor.close(window)


main(walk_through_the_history, to_one_file_and_back)
