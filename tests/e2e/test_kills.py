# SPDX-License-Identifier: GPL-3.0-or-later
"""An editor that is killed loses some seconds of work at most: the next start finds the rest.

ZELVANE_KILLS is the number of kills while text is typed, ZELVANE_SEED chooses the moments of the kills."""

import os
import random
import signal
import subprocess
import threading
import time

from support.stage import PATIENCE, Window, check, copy_example, equal, main, settled

STORE = """[Options]
Used=2
Splash=0
Startup=2
{more}
"""

KILLS = int(os.environ.get("ZELVANE_KILLS", "4"))
SEED = int(os.environ.get("ZELVANE_SEED", time.time_ns() % 1_000_000))
# Seconds: while somebody types a copy comes each six; the rest is for a busy machine.
MOST_MISSING = 30.0


def copies(stage, ending=""):
    folder = stage.folder / "state" / "zelvane" / "unsaved"
    return sorted(path for path in folder.iterdir() if path.name.endswith(ending)) if folder.exists() else []


def text_of(path):
    """The text in a copy, which has to be whole."""
    head, found, text = path.read_bytes().partition(b"\n\n")
    check(head.startswith(b"Zelvane copy\n") and found, f"{path} is no copy")
    fields = dict(line.split(b": ", 1) for line in head.splitlines()[1:])
    equal(int(fields[b"Bytes"]), len(text), f"bytes in {path}")
    return text


def only_copy(stage, ending=""):
    found = copies(stage, ending)
    equal(len(found), 1, f"copies in {[path.name for path in found]}")
    return found[0]


def wait_for_copy(stage, text):
    """Until a copy holds this text."""

    def holds(path):
        try:
            return text in path.read_bytes()
        except FileNotFoundError:
            return False  # another has come in its place

    stage.until(lambda: any(holds(path) for path in copies(stage, ".open")), f"a copy with {text}")


def question(editor):
    """The box over the window, which itself is called so for a moment before it has a document."""
    editor.stage.until(lambda: sorted(title == "Zelvane" for title in editor.titles()) == [False, True], "a question")
    return editor.window(lambda title: title == "Zelvane")


def kill(editor):
    os.kill(editor.pid, signal.SIGKILL)
    editor.ended()


class Typist(threading.Thread):
    """Types word after word as fast as the display takes them, and notes when each was through."""

    def __init__(self, stage):
        super().__init__()
        self.stage = stage
        self.words = []  # (text, time)
        self.stopped = threading.Event()

    def run(self):
        while not self.stopped.is_set():
            word = f"w{len(self.words)} "
            subprocess.run(
                ["xdotool", "type", "--delay", "10", "--", word],
                env=self.stage.environment,
                check=False,
                timeout=PATIENCE,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
            )
            self.words.append((word, time.monotonic()))
            time.sleep(random.choice((0, 0, 0, 0.2, 1)))


def kill_while_typing(stage, piece, before):
    """@return the seconds of work that are missing"""
    editor, window = settled(stage, piece)
    typist = Typist(stage)
    typist.start()
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    begun = time.monotonic()
    try:
        stage.until(lambda: copies(stage, ".open"), "a first copy")
        check(time.monotonic() - begun < MOST_MISSING, f"the first copy came after {time.monotonic() - begun:.1f} s")
        time.sleep(random.uniform(0, 8))
        killed = time.monotonic()
        os.kill(editor.pid, signal.SIGKILL)
    finally:
        typist.stopped.set()
        typist.join()
    editor.ended()
    words = [word for word in typist.words if word[1] < killed]
    found = text_of(only_copy(stage)).decode()
    typed = found.removesuffix(before)
    check(typed != found, "the text of the file is not whole")
    check("".join(word for word, _ in typist.words).startswith(typed), f"typed was something else: {typed[-200:]!r}")
    missing = [when for number, (_, when) in enumerate(words) if f"w{number} " not in typed]
    equal(piece.read_text(), before, "the document")

    # The next start asks, and opens it.
    editor = stage.start()
    box = question(editor)
    box.keys("Return")
    stage.until(lambda: any("Untitled*" in title for title in editor.titles()), "the text that was left")
    equal(text_of(only_copy(stage)).decode(), found, "the copy that stands for it")
    kill(editor)
    for path in copies(stage):
        path.unlink()
    return killed - missing[0] if missing else 0.0


def kills_while_text_is_typed(stage):
    stage.write_store(STORE.format(more=""))
    piece = copy_example(stage, "pluck.csd")
    before = piece.read_text().replace("\r\n", "\n")
    piece.write_text(before)
    missing = []
    random.seed(SEED)
    print(f"  the moments are those of ZELVANE_SEED={SEED}", flush=True)
    for number in range(KILLS):
        missing.append(kill_while_typing(stage, piece, before))
        print(f"  kill {number + 1}: {missing[-1]:.1f} s missing", flush=True)
        check(missing[-1] <= MOST_MISSING, f"{missing[-1]:.1f} s of work are missing")
    print(f"  {KILLS} kills: {max(missing):.1f} s missing at most, {sum(missing) / KILLS:.1f} s on average", flush=True)


def text_that_was_left_is_saved_where_it_was(stage):
    stage.write_store(STORE.format(more=""))
    piece = copy_example(stage, "pluck.csd")
    before = piece.read_bytes().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")
    editor, window = settled(stage, piece)
    window.type(";mine")
    wait_for_copy(stage, b";mine")
    kill(editor)

    # A chooser and a dialog of their own ask nothing.
    chooser = stage.start("/p", piece)
    chooser.window(lambda title: title.startswith("Run Zelvane Preset"))
    chooser.at_rest()
    equal(len(stage.windows_of(chooser.pid)), 1, "windows of the chooser")
    kill(chooser)
    equal(len(copies(stage, ".open")), 1, "copies")

    editor = stage.start()
    box = question(editor)
    box.screenshot("left-work")
    box.keys("Return")
    window = editor.window(lambda title: title.startswith("Zelvane - Untitled*"))
    editor.at_rest()
    window.screenshot("left-work-opened")
    window.keys("ctrl+s")
    dialog = editor.dialog(window)
    dialog.screenshot("left-work-saved")
    dialog.keys("Return")
    # It exists: that is asked.
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 3, "the question about the file that is there")
    (number,) = set(stage.windows_of(editor.pid)) - {window.number, dialog.number}
    box = Window(stage, number)
    box.keys("alt+y")
    stage.until(lambda: piece.read_bytes() == b";mine" + before, "the saved text")
    stage.until(lambda: not copies(stage), "the end of the copy")
    editor.close(window)
    equal(copies(stage), [], "copies")


def no_keeps_the_text(stage):
    stage.write_store(STORE.format(more=""))
    piece = copy_example(stage, "pluck.csd")
    editor, window = settled(stage, piece)
    window.type(";mine")
    wait_for_copy(stage, b";mine")
    kill(editor)
    editor = stage.start(piece)
    question(editor).keys("alt+n")
    stage.until(lambda: len(stage.windows_of(editor.pid)) == 1, "the end of the question")
    check(text_of(only_copy(stage, ".kept")).startswith(b";mine"), "the kept text")
    window = editor.window(lambda title: str(piece) in title)

    # So does a No at the close, at once.
    window.type(";more")
    window.keys("alt+F4")
    question(editor).keys("alt+n")
    equal(editor.ended(), 0, "exit code")
    equal(len(copies(stage, ".kept")), 2, "kept texts")
    equal(len(copies(stage)), 2, "copies")
    editor, window = settled(stage, piece)
    equal(len(stage.windows_of(editor.pid)), 1, "nothing is asked")
    editor.close(window)


def display_that_goes_leaves_the_text(stage):
    stage.write_store(STORE.format(more=""))
    _, window = settled(stage, copy_example(stage, "pluck.csd"))
    window.type(";mine")
    wait_for_copy(stage, b";mine")
    stage.lose_display()
    check(text_of(only_copy(stage, ".open")).startswith(b";mine"), "the copy")
    editor = stage.start()
    question(editor).keys("Return")
    editor.window(lambda title: title.startswith("Zelvane - Untitled*"))
    kill(editor)


def each_window_asks_about_one_text(stage):
    stage.write_store(STORE.format(more="MultipleInstances=1"))
    for name in ("pluck.csd", "oscil.csd"):
        piece = copy_example(stage, name)
        editor, window = settled(stage, piece)
        window.type(";" + name)
        wait_for_copy(stage, b";" + name.encode())
    for editor in stage.processes:
        kill(editor)
    editor = stage.start()
    box = question(editor)
    box.keys("Return")
    editor.window(lambda title: title.startswith("Zelvane - Untitled*"))

    # The other is started by the first one. It has no document yet, and is called as its question is.
    def windows(title):
        return stage.output("xdotool", "search", "--onlyvisible", "--name", title).split()

    stage.until(lambda: len(windows("^Zelvane$")) == 2, "the question of another window")
    stage.until(lambda: str(stage.active_window()) in windows("^Zelvane$"), "the keyboard in that window")
    stage.output("xdotool", "key", "Return")
    untitled = r"^Zelvane - Untitled\*"
    stage.until(lambda: len(windows(untitled)) == 2, "both texts")
    for number in windows(untitled):
        os.kill(int(stage.output("xdotool", "getwindowpid", number)), signal.SIGKILL)
    editor.ended()
    stage.until(lambda: not windows("^Zelvane"), "the end of the other editor")
    equal(len(copies(stage, ".open")), 2, "copies")


def kill_in_a_save(stage, piece):
    """Kills an editor as soon as what stands for the old contents is there. @return whether that was in time"""
    editor, window = settled(stage, piece)
    before = piece.stat().st_size
    window.type("new")
    window.keys("ctrl+s")
    limit = time.monotonic() + PATIENCE
    # Without a pause: on a fast disk it stands for a moment only. A save that is over has been missed.
    while not copies(stage, ".old"):
        check(time.monotonic() < limit, f"has not come in {PATIENCE:g} s: the save")
        if piece.stat().st_size != before:
            break
    kill(editor)
    return bool(copies(stage, ".old"))


def save_in_place_is_cut_off(stage):
    stage.write_store(STORE.format(more="SafetyCopy=0"))
    piece = stage.home / "large.txt"
    line = b"an old line of some length\r\n"
    old = line * (60_000_000 // len(line))
    piece.write_bytes(old)
    os.link(piece, stage.home / "other name")
    for _ in range(10):
        if kill_in_a_save(stage, piece):
            break
        piece.write_bytes(old)  # in place
        for path in copies(stage):
            path.unlink()
    kept = only_copy(stage, ".old")
    check(text_of(kept) == old, "the old contents are not whole")
    # Whatever was written of the new text by then.
    piece.write_bytes(piece.read_bytes()[: len(old) // 2] + b"broken")
    editor = stage.start()
    box = question(editor)
    box.screenshot("left-file")
    box.keys("Return")
    editor.window(lambda title: title.startswith("Zelvane - Untitled*"))
    editor.at_rest()
    equal(len(copies(stage)), 1, "what stands for it until it is saved")
    kill(editor)
    check(text_of(only_copy(stage)) == old, "the old contents")


def wait_for_program(stage, more=""):
    """An editor with a changed text that waits for a program: it runs until there is a file "go"."""
    program = stage.home / "program"
    program.write_text(f"#!/bin/sh\ncd '{stage.home}'\ntouch runs\nwhile [ ! -e go ]; do sleep 0.1; done\ntouch done\n")
    program.chmod(0o755)
    stage.write_store(
        STORE.format(more=f"{more}[Presets]\nWait=\n[Wait]\nCommand={program}\n2ndCommand=/bin/true\n")
    )
    piece = copy_example(stage, "pluck.csd")
    editor, window = settled(stage, piece)
    window.type(";mine")
    stage.until(lambda: "*" in window.title(), "the mark of a changed text")
    window.keys("ctrl+1")
    stage.until(lambda: (stage.home / "runs").exists(), "the program")
    return editor, window


def signal_in_the_wait_for_a_program(stage):
    editor, _ = wait_for_program(stage)
    # Nothing else gets a turn meanwhile, so the copy is there from its beginning on.
    wait_for_copy(stage, b";mine")
    os.kill(editor.pid, signal.SIGTERM)
    equal(editor.ended(), 0, "exit code")
    check(text_of(only_copy(stage, ".open")).startswith(b";mine"), "the copy")
    (stage.home / "go").touch()
    stage.until(lambda: (stage.home / "done").exists(), "the end of the program, which goes on")
    editor = stage.start()
    question(editor).keys("Return")
    editor.window(lambda title: title.startswith("Zelvane - Untitled*"))
    kill(editor)


def signal_in_the_wait_asks_after_it_where_there_is_no_copy(stage):
    editor, _ = wait_for_program(stage, "SafetyCopy=0\n")
    os.kill(editor.pid, signal.SIGTERM)
    (stage.home / "go").touch()
    question(editor).keys("alt+n")
    equal(editor.ended(), 0, "exit code")
    equal(copies(stage), [], "copies")


main(
    text_that_was_left_is_saved_where_it_was,
    no_keeps_the_text,
    display_that_goes_leaves_the_text,
    each_window_asks_about_one_text,
    save_in_place_is_cut_off,
    signal_in_the_wait_for_a_program,
    signal_in_the_wait_asks_after_it_where_there_is_no_copy,
    kills_while_text_is_typed,
)
