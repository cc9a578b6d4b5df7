# SPDX-License-Identifier: GPL-3.0-or-later
"""How the program starts: first use, the start-up rule, the forms of the command line, and what it cannot open."""

import os
import re
import signal
import subprocess

from support.pictures import lightness
from support.stage import PATIENCE, check, copy_example, equal, main, settled

STORE = """[Options]
Used=2
Splash=0
{more}
"""


def first_use_welcomes_over_the_open_document(stage):
    piece = copy_example(stage, "pluck.csd")
    editor = stage.start(piece)
    box = editor.window("Welcome!")
    window = editor.window(lambda title: str(piece) in title)
    stage.screenshot("first-use")
    # The mailbox is served while the message stands.
    other = copy_example(stage, "oscil.csd")
    equal(stage.start(other).ended(), 0, "exit code of the second process")
    stage.until(lambda: str(other) in window.title(), lambda: f"{other}; {window.title()}")
    box.keys("Return")
    stage.until(lambda: "Welcome!" not in editor.titles(), "the end of the welcome")
    editor.window("Zelvane - Preferences").keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the preferences")
    editor.close(window)
    equal(stage.setting("Used"), "2", "the count of uses")


def stacked(stage):
    """The windows on the screen, from the bottom up."""
    listed = stage.output("xprop", "-root", "_NET_CLIENT_LIST_STACKING").split("#")[-1]
    return [int(number, 16) for number in listed.split(",") if number.strip()]


def splash_stands_until_the_document_does(stage):
    stage.write_store("[Options]\nUsed=2\n")
    piece = stage.home / "large.orc"
    piece.write_text("instr 1\n a1 oscili 1000, 440 ; a tone\n out a1\nendin\n" * 1_200_000)
    stacks = stage.folder / "stacks"
    spy = subprocess.Popen(
        ["xprop", "-root", "-spy", "_NET_CLIENT_LIST_STACKING"],
        env=stage.environment,
        stdin=subprocess.DEVNULL,
        stdout=stacks.open("wb"),
    )
    stage.servants.append(spy)
    editor = stage.start(piece)
    splash = editor.window("Zelvane")
    equal(splash.geometry()[2:], (480, 300), "the size of the picture")
    # It stays above the main window, which comes to the front meanwhile.
    window = editor.window(lambda title: True, beside=splash)
    for moment in ("shown", "with the document"):
        if moment == "with the document":
            stage.until(lambda: str(piece) in window.title(), "the caption of the document")
        stage.until(lambda: len(stacked(stage)) == 2, "both windows on the screen")
        equal(stacked(stage), [window.number, splash.number], f"the windows from the bottom up, {moment}")
    stage.until(lambda: "ABOVE" not in splash.state(), lambda: f"the splash over nothing else: {splash.state()}")
    stage.screenshot("splash")
    # The window was painted before the document began to come; nothing is painted while it does.
    picture = window.screenshot("before-the-document")
    equal(len(stage.windows_of(editor.pid)), 2, "windows while the document comes")
    for area, what in (("400x20+10+2", "the menu bar"), ("300x60+700+600", "the place of the text")):
        check(lightness(picture, area) > 0.8, f"{what} is painted: {lightness(picture, area)}")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the splash")
    # Nor was it below for a moment, when the window came.
    orders = [[int(number, 16) for number in re.findall("0x[0-9a-f]+", line)] for line in stacks.read_text().splitlines()]
    both = [order for order in orders if {window.number, splash.number} <= set(order)]
    check(both, f"the windows as they came: {orders}")
    for order in both:
        check(order.index(window.number) < order.index(splash.number), f"the splash is below: {orders}")
    editor.close(window)


def start_up_rule_without_a_file(stage):
    piece = copy_example(stage, "pluck.csd")
    recent = f'[Recent File List]\n1={piece}\n'
    stage.write_store(STORE.format(more="Startup=2") + recent)
    editor, window = settled(stage)
    check("Untitled" in window.title(), window.title())
    editor.close(window)

    stage.write_store(STORE.format(more="Startup=0") + recent)
    editor, window = settled(stage)
    check(str(piece) in window.title(), window.title())
    editor.close(window)

    stage.write_store(STORE.format(more="Startup=1") + recent)
    editor = stage.start()
    window = editor.window(lambda title: "Untitled" in title)
    editor.dialog(window).keys("Escape")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the dialog")
    editor.close(window)

    stage.write_store(STORE.format(more="Startup=0") + recent)
    editor, window = settled(stage, "/i")
    equal(window.title(), "Zelvane", "the bare caption of a new instance")
    editor.close(window)


def paths_with_blanks_need_no_quotes(stage):
    stage.write_store(STORE.format(more="Startup=2"))
    piece = copy_example(stage, "pluck.csd", "a [*] piece; 'quoted' & more")
    for arguments in ([piece], [f'"{piece}"'], str(piece.relative_to(stage.home)).split(" ")):
        editor, window = settled(stage, *arguments)
        check(str(piece) in window.title(), f"{arguments}: {window.title()}")
        editor.close(window)


def several_files_and_names_like_options(stage):
    stage.write_store(STORE.format(more=""))
    for name in ("-style", "b.sco", "c d.csd", "my -style fusion.csd"):
        (stage.home / name).write_text("; a piece\n")
    for arguments, name in (
        (["none.orc", "b.sco", "c d.csd"], "b.sco"),
        (["--", "-style"], "-style"),
        ([f"file://{stage.home}/c%20d.csd", "b.sco"], "c d.csd"),
        (["my", "-style", "fusion.csd"], "my -style fusion.csd"),
        (["-style", "fusion", "c d.csd"], "c d.csd"),
    ):
        editor = stage.start(*arguments)
        window = editor.window(lambda title: str(stage.home / name) in title)
        if name == "b.sco":
            # A second start hands over a path that the running editor knows.
            equal(stage.start("--", "-style", "b.sco").ended(), 0, "exit code of the second process")
            stage.until(lambda: str(stage.home / "-style") in window.title(), window.title)
        editor.close(window)


def what_cannot_be_opened_says_so(stage):
    stage.write_store(STORE.format(more="Startup=2"))
    os.mkfifo(stage.home / "fifo.orc")
    (stage.home / "folder.csd").mkdir()
    not_utf8 = os.fsdecode(b"caf\xe9.orc")
    (stage.home / not_utf8).write_text("instr 1\nendin\n")
    for name in ("fifo.orc", "folder.csd", "missing.csd", not_utf8):
        path = stage.home / name
        editor = stage.start(path)
        window = editor.window(lambda title: title.startswith("Zelvane"))
        box = editor.dialog(window)
        box.screenshot("cannot-open-" + name.encode("ascii", "ignore").decode())
        box.keys("Return")
        stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the message")
        check(editor.runs(), "the editor has gone")
        # What could not be loaded counts as changed: it asks at the close.
        window.keys("alt+F4")
        stage.until(
            lambda: not editor.runs() or len(stage.windows_of(editor.pid)) == 2, "the question at the close"
        )
        if editor.runs():
            editor.dialog(window).keys("alt+n")
        equal(editor.ended(), 0, f"exit code after {name}")


def editor_outlives_its_terminal(stage):
    stage.write_store(STORE.format(more="Startup=2"))
    piece = copy_example(stage, "pluck.csd")
    editor, window = settled(stage, piece)
    os.kill(editor.pid, signal.SIGHUP)
    window.type("; mine ")
    stage.until(lambda: "*" in window.title(), lambda: f"the mark of a changed text; {window.title()}")
    check(editor.runs(), "the editor has gone")


def broken_settings_are_told_once_and_keep_nothing_back(stage):
    piece = copy_example(stage, "pluck.csd")
    stage.write_store(
        "[Options]\nUsed=2\nSplash=perhaps\nthis line is no setting\nWidth=wide\nX=abc\nFontSize=q\nWordWrap=q\n"
        "SystemColors=0\nFontColor=zz\nStartup=2\n[Presets]\none=\n[one]\nNewGroup=q\n"
    )
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    report = editor.dialog(window)
    editor.at_rest()
    report.screenshot("broken-settings")
    report.keys("Escape")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the one report")
    editor.at_rest()
    equal(len(stage.windows_of(editor.pid)), 1, "windows behind the report")
    window.screenshot("behind-broken-settings")
    editor.close(window)
    check("this line is no setting" in stage.store.read_text(), "the line that is no setting")


def help_and_version_need_no_display(stage):
    piece = copy_example(stage, "pluck.csd")
    stage.write_store(STORE.format(more="Startup=2"))
    editor, window = settled(stage, piece)
    title = window.title()
    display = stage.environment.pop("DISPLAY")
    for option, code, start in (
        ("--help", 0, "Usage: zelvane [FILE]"),
        ("-h", 0, "Usage: zelvane [FILE]"),
        ("--version", 0, "Zelvane "),
        ("-v", 0, "Zelvane "),
        ("--colour", 2, "zelvane: unknown option --colour"),
    ):
        told = subprocess.run(
            [stage.program, option], env=stage.environment, capture_output=True, text=True, timeout=PATIENCE, check=False
        )
        equal(told.returncode, code, f"exit code of {option}")
        spoken, silent = (told.stderr, told.stdout) if code else (told.stdout, told.stderr)
        check(spoken.startswith(start), f"{option} printed {spoken!r}")
        equal(silent, "", f"the other output of {option}")
    stage.environment["DISPLAY"] = display
    editor.at_rest()
    equal(window.title(), title, "the running editor's document")
    equal(stage.setting("Open"), None, "the mailbox")
    editor.close(window)


main(
    first_use_welcomes_over_the_open_document,
    splash_stands_until_the_document_does,
    start_up_rule_without_a_file,
    paths_with_blanks_need_no_quotes,
    several_files_and_names_like_options,
    what_cannot_be_opened_says_so,
    editor_outlives_its_terminal,
    broken_settings_are_told_once_and_keep_nothing_back,
    help_and_version_need_no_display,
)
