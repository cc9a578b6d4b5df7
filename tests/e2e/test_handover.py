# SPDX-License-Identifier: GPL-3.0-or-later
"""A second start hands its file over to the running editor, and ends."""

import os
import signal

from support.stage import PATIENCE, Window, check, copy_example, equal, main, options

STORE = options(Startup=2)


def open_editor(stage, *arguments):
    """Starts an editor and waits until it has come to the front and its start is over."""
    editor = stage.start(*arguments)
    window = editor.window(lambda title: title.startswith("Zelvane"))
    stage.until(window.is_active, "the new window in front")
    editor.at_rest()
    return editor, window


def shows(stage, window, path):
    stage.until(lambda: str(path) in window.title(), lambda: f"{path} in the window; it shows {window.title()!r}")


def second_process_hands_over_and_ends(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd", "a second piece")
    editor, window = open_editor(stage, first)
    shows(stage, window, first)
    stage.output("xdotool", "windowminimize", window.number)
    stage.until(lambda: "HIDDEN" in window.state(), "the minimized window")

    equal(stage.start(second).ended(), 0, "exit code of the second process")
    shows(stage, window, second)
    stage.until(window.is_active, "the window in front")
    check("HIDDEN" not in window.state(), "the window is out of the task bar")
    stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")

    # Without a file the window comes to the front, and shows what it showed.
    stage.output("xdotool", "windowminimize", window.number)
    stage.until(lambda: "HIDDEN" in window.state(), "the minimized window")
    equal(stage.start().ended(), 0, "exit code of the third process")
    stage.until(window.is_active, "the window in front")
    shows(stage, window, second)
    equal(len(stage.windows_of(editor.pid)), 1, "windows of the editor")
    window.screenshot("handed-over")
    editor.close(window)


def minimized_window_comes_out_before_it_asks(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd")
    editor, window = open_editor(stage, first)
    window.type("x")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    stage.output("xdotool", "windowminimize", window.number)
    stage.until(lambda: "HIDDEN" in window.state(), "the minimized window")
    equal(stage.start(second).ended(), 0, "exit code of the second process")
    question = editor.dialog(window)
    stage.until(question.is_active, "the question in front")
    check("HIDDEN" not in window.state(), "the window is in the task bar while it asks")
    stage.screenshot("handed-over-question")
    question.keys("n")
    shows(stage, window, second)
    stage.until(window.is_active, "the window in front")
    editor.close(window)


def window_of_another_program_does_not_hold_it_back(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd")
    editor, window = open_editor(stage, first)
    # An editor of another store stands for another program: the user works there.
    other_config = stage.folder / "other"
    (other_config / "zelvane").mkdir(parents=True)
    (other_config / "zelvane" / "settings").write_text(STORE)
    stage.environment["XDG_CONFIG_HOME"] = str(other_config)
    other, cover = open_editor(stage)
    stage.environment["XDG_CONFIG_HOME"] = str(stage.folder / "config")
    cover.activate()
    cover.type("working")
    equal(stage.start(second).ended(), 0, "exit code")
    shows(stage, window, second)
    stage.until(window.is_active, "the window in front")
    check(str(second) not in cover.title(), "the editor of another store has opened the file")


def relative_path_means_the_second_process_folder(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd", "folder with blanks")
    editor, window = open_editor(stage, "/i")
    equal(window.title(), "Zelvane", "the bare caption of a new instance")
    equal(stage.start("folder with blanks/oscil.csd").ended(), 0, "exit code")
    shows(stage, window, piece)
    os.rename(piece, piece.with_name("gone.csd"))
    equal(stage.start(piece).ended(), 0, "the file is not checked by the second process")
    box = editor.dialog(window)
    box.screenshot("handed-over-missing")
    box.keys("Return")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the message")
    check(editor.runs(), "the editor has gone")
    shows(stage, window, piece)


def name_that_is_not_utf8_is_told(stage):
    stage.write_store(STORE)
    lost = stage.home / os.fsdecode(b"caf\xe9.csd")
    lost.write_text("a text")
    first = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage, first)

    def told(window, picture):
        box = editor.dialog(window)
        box.screenshot(picture)
        box.keys("Return")
        stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the message")
        check(editor.runs(), "the editor runs")

    equal(stage.start(lost).ended(), 0, "exit code of the second process")
    told(window, "name-not-utf8-handed-over")
    shows(stage, window, first)
    os.kill(editor.pid, signal.SIGKILL)
    editor.ended()
    editor = stage.start(lost)
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 2, "the message at the start")
    told(editor.window(), "name-not-utf8")


def three_at_once(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    pieces = [copy_example(stage, name, "three") for name in ("oscil.csd", "vco2.csd", "reson.csd")]
    editor, window = open_editor(stage, first)
    for round_number in range(5):
        senders = [stage.start(piece) for piece in pieces]
        for sender in senders:
            equal(sender.ended(), 0, f"exit code in round {round_number}")
        stage.until(
            lambda: any(str(piece) in window.title() for piece in pieces), lambda: f"one of them; {window.title()!r}"
        )
        stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")
        check(editor.runs(), "the editor has gone")
        equal(len(stage.windows_of(editor.pid)), 1, "windows of the editor")
    editor.close(window)


def many_starts_at_once_end_with_one_editor(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    count = int(os.environ.get("ZELVANE_STARTS", "16"))
    starts = [stage.start(piece) for _ in range(count)]
    stage.until(lambda: sum(start.runs() for start in starts) == 1, "one editor", 2 * PATIENCE)
    editor = next(start for start in starts if start.runs())
    window = editor.window(lambda title: str(piece) in title)
    for start in starts:
        if start is not editor:
            equal(start.ended(), 0, "exit code of one that handed over")
    stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")
    equal(len(stage.windows_of(editor.pid)), 1, "windows of the editor")
    editor.close(window)


def killed_editor_is_not_waited_for(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor, _ = open_editor(stage)
    os.kill(editor.pid, signal.SIGKILL)
    editor.ended()
    second, window = open_editor(stage, piece)
    shows(stage, window, piece)
    second.close(window)
    equal(list((stage.folder / "run").rglob("*.recent")), [], "what killed editors left")


def busy_editor_serves_it_later(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage)
    os.kill(editor.pid, signal.SIGSTOP)
    try:
        equal(stage.start(piece).ended(), 0, "the second process does not wait for a busy editor")
    finally:
        os.kill(editor.pid, signal.SIGCONT)
    shows(stage, window, piece)
    editor.close(window)


def changed_text_is_not_lost(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd")
    editor, window = open_editor(stage, first)
    shows(stage, window, first)
    window.type("; mine ")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    equal(stage.start(second).ended(), 0, "exit code")
    box = editor.dialog(window)
    box.screenshot("handed-over-unsaved")
    box.keys("Escape")  # Cancel: the text stays
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the question")
    shows(stage, window, first)
    stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")
    check(editor.runs(), "the editor has gone")


def what_comes_while_the_last_question_stands_opens_in_another_editor(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd", "a second piece")
    editor, window = open_editor(stage, first)
    window.type("; mine ")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    window.keys("alt+F4")
    box = editor.dialog(window)
    equal(stage.start(second).ended(), 0, "exit code of the second process")
    editor.at_rest()
    equal(len(stage.windows_of(editor.pid)), 2, "windows: the editor and its question")
    check(str(first) in window.title(), "the text that is asked about stands")
    box.keys("alt+n")
    equal(editor.ended(), 0, "exit code")
    found = []

    def another():
        found[:] = stage.output("xdotool", "search", "--onlyvisible", "--name", str(second)).split()
        return found

    stage.until(another, "another editor with the second piece")
    stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")
    check("; mine" not in first.read_text(), "the text that was given up")
    Window(stage, int(found[0])).keys("alt+F4")
    stage.until(lambda: not another(), "the end of the other editor")


def mail_waits_for_the_end_of_a_dialog(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd")
    editor, window = open_editor(stage, first)
    window.keys("ctrl+o")
    box = editor.dialog(window)
    equal(stage.start(second).ended(), 0, "exit code")
    editor.at_rest()
    check(str(first) in window.title(), "the document stays while a dialog is open")
    box.keys("Escape")
    shows(stage, window, second)
    stage.until(lambda: stage.setting("Open") is None, "the empty mailbox")
    editor.close(window)


def new_instances_stand_beside_each_other(stage):
    stage.write_store(STORE + "X=600\nY=600\nWidth=9000\nHeight=7500\n")
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd")
    one, window_one = open_editor(stage, first)
    two, window_two = open_editor(stage, "/i")
    equal(window_two.title(), "Zelvane", "the bare caption")
    places = [window.geometry()[:2] for window in (window_one, window_two)]
    equal([new - old for old, new in zip(*places)], [28, 28], "the step aside")
    # The file goes to the one that was active last.
    window_one.activate()
    equal(stage.start(second).ended(), 0, "exit code")
    shows(stage, window_one, second)
    one.at_rest()  # it raises its window after the file is open
    window_two.activate()
    equal(stage.start(first).ended(), 0, "exit code")
    shows(stage, window_two, first)
    shows(stage, window_one, second)
    two.close(window_two)

    stage.store.write_text(stage.store.read_text().replace("[Options]", "[Options]\nMultipleInstances=1"))
    three, window_three = open_editor(stage, first)
    shows(stage, window_three, first)
    check(one.runs() and three.runs(), "both editors run")


def chooser_switch_leaves_the_editor_alone(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor, window = open_editor(stage)
    caption = window.title()
    for switch in ("/p", "/r"):
        other = stage.start(switch, piece)
        box = other.window()
        equal(stage.setting("Open"), None, "the mailbox")
        box.keys("Escape")
        equal(other.ended(), 0, f"exit code of {switch}")
    equal(stage.start("/r ").ended(), 0, "exit code of /r without a file")
    equal(window.title(), caption, "the editor's caption")
    editor.close(window)


main(
    second_process_hands_over_and_ends,
    minimized_window_comes_out_before_it_asks,
    window_of_another_program_does_not_hold_it_back,
    relative_path_means_the_second_process_folder,
    name_that_is_not_utf8_is_told,
    three_at_once,
    many_starts_at_once_end_with_one_editor,
    killed_editor_is_not_waited_for,
    busy_editor_serves_it_later,
    changed_text_is_not_lost,
    what_comes_while_the_last_question_stands_opens_in_another_editor,
    mail_waits_for_the_end_of_a_dialog,
    new_instances_stand_beside_each_other,
    chooser_switch_leaves_the_editor_alone,
)
