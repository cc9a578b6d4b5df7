# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader is told of the Preferences dialog, asked by a client of the accessibility bus."""

import json
import os
import subprocess
import sys
from pathlib import Path

from support.stage import PATIENCE, check, equal, main, read_line, settled

SERVICE = Path("/usr/share/dbus-1/services/org.a11y.Bus.service")
READER = Path(__file__).resolve().parent / "support" / "screenreader.py"
TITLE = "Zelvane - Preferences"

BOX, OPTION, FIELD, LIST, ROWS, BUTTON = "check box", "radio button", "text", "combo box", "list", "push button"

# The controls of each page, all that the keyboard can come to: role and name.
PAGES = {
    "Editor": [
        (BOX, "Use system colors"),
        (BUTTON, "Back Color"),
        (BUTTON, "Font Color"),
        (BUTTON, "Set Font..."),
        (BOX, "Fixed Pitch Fonts"),
        (OPTION, "Insert spaces"),
        (OPTION, "Keep tabs"),
        (FIELD, "Spaces in a tab"),
        (FIELD, "Tab size"),
        (BOX, "Drag-and-drop text editing"),
        (BOX, "Syntax highlight"),
        (BOX, "Use C style comments"),
        (FIELD, "Line width"),
        (FIELD, "Style 1"),
        (FIELD, "Style 2"),
    ],
    "Syntax colors": [(ROWS, "Syntax elements"), (BUTTON, "Color...")],
    "General": [
        (BOX, "Tree single selection"),
        (BOX, "Expand Code Outline"),
        (BOX, "Hot tracking"),
        (BOX, "Splash screen"),
        (BOX, "Band labels"),
        (BOX, "Flat buttons"),
        (BOX, "Delete temp files at startup"),
        (BOX, "Remember caret position"),
        (BOX, "Save on Orc/Sco switch"),
        (BOX, "Confirm Preset"),
        (BOX, "Warn before overwrite"),
        (BOX, "Minimize before Preset"),
        (BOX, "Allow multiple instances"),
        (BOX, "Negative numbers on Slider"),
        (BOX, "Keep a copy of unsaved text"),
        (LIST, "Open last document"),
        (FIELD, "Backup folder"),
        (BUTTON, "Backup folder: Browse..."),
    ],
    "Programs": [
        (FIELD, "Csound"),
        (BUTTON, "Csound: Browse..."),
        (FIELD, "Csound #2"),
        (BUTTON, "Csound #2: Browse..."),
        (FIELD, "Help"),
        (BUTTON, "Help: Browse..."),
        (FIELD, "Sound editor"),
        (BUTTON, "Sound editor: Browse..."),
        (FIELD, "Sound player"),
        (BUTTON, "Sound player: Browse..."),
    ],
    "Extensions": [
        (FIELD, "Orchestra"),
        (FIELD, "Score"),
        (FIELD, "Unified format"),
        (FIELD, "Sound"),
        (FIELD, "MIDI"),
        (BUTTON, "Associate extensions..."),
    ],
    "Writing": [
        (BOX, "Color the text as it is typed"),
        (BOX, "Complete words"),
        (BOX, "List them after three letters"),
        (BOX, "Hints on arguments"),
        (BOX, "Indent by itself"),
        (BOX, "Duplicate and move lines"),
        (BOX, "Line numbers"),
        (BOX, "Mark the line of the caret"),
        (BOX, "Mark matching brackets"),
        (BOX, "Mark the same word everywhere"),
        (BOX, "Fold parts of the text"),
        (BOX, "Bookmarks"),
        (BOX, "Find in files"),
        (BOX, "Regular expressions"),
        (BUTTON, "Turn all on"),
    ],
}
ENDS = [(BUTTON, "OK"), (BUTTON, "Cancel"), (BUTTON, "Apply")]


def open_bus(stage):
    """A session bus of the stage's own, which starts the accessibility bus when it is asked for and nothing else."""
    check(SERVICE.exists(), f"{SERVICE} is missing: install at-spi2-core")
    services = stage.folder / "services"
    services.mkdir()
    (services / SERVICE.name).write_text(SERVICE.read_text())
    config = stage.folder / "bus.conf"
    config.write_text(
        f"""<busconfig><type>session</type><listen>unix:dir={stage.folder}</listen><servicedir>{services}</servicedir>
        <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
        </busconfig>"""
    )
    read, write = os.pipe()
    try:
        bus = subprocess.Popen(
            ["dbus-daemon", "--nofork", f"--config-file={config}", f"--print-address={write}"],
            env=stage.environment,
            pass_fds=[write],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
    except FileNotFoundError:
        check(False, "dbus-daemon is missing: install dbus-daemon")
    stage.servants.append(bus)
    os.close(write)
    with os.fdopen(read, "rb") as pipe:
        address = read_line(pipe.fileno())
    check(address, "the session bus has not started")
    stage.environment |= {
        "DBUS_SESSION_BUS_ADDRESS": address,
        "QT_ACCESSIBILITY": "1",
        "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
    }


def reading_python():
    """An interpreter that knows the bus's client library: it comes with the system's own."""
    for python in (sys.executable, "/usr/bin/python3"):
        found = subprocess.run(
            [python, "-c", "import gi; gi.require_version('Atspi', '2.0'); from gi.repository import Atspi"],
            check=False,
            timeout=PATIENCE,
            capture_output=True,
        )
        if found.returncode == 0:
            return python
    check(False, "no Python has gi.repository.Atspi: install python3-gi and gir1.2-atspi-2.0")
    return None


def flat(of):
    yield of
    for child in of["children"]:
        yield from flat(child)


class Reader:
    def __init__(self, stage):
        open_bus(stage)
        self.stage = stage
        self.python = reading_python()

    def look(self, editor, title, page):
        """All objects of the window, the window first, when this page is told as the chosen one."""
        seen = []

        def find():
            result = subprocess.run(
                [self.python, str(READER), str(editor.pid), title],
                env=self.stage.environment,
                capture_output=True,
                text=True,
                timeout=2 * PATIENCE,
                check=False,
            )
            seen[:] = [result.stderr]
            check(result.returncode == 0, f"the reader has failed: {result.stderr}")
            window = json.loads(result.stdout)
            if window:
                seen[:] = flat(window)
            return window and [one["name"] for one in seen if one["role"] == "page tab list"] == [page]

        self.stage.until(find, lambda: f"page {page!r} of {title!r} on the accessibility bus; {seen}")
        return seen


def every_control_is_told(stage):
    reader = Reader(stage)
    stage.write_store("[Options]\nUsed=2\nSplash=0\nSystemColors=0\nTabInsertSpaces=True\nHotTracking=1\n")
    editor, window = settled(stage)
    window.keys("alt+f", "Up", "Up", "Return")
    dialog = editor.window(TITLE)
    stage.until(dialog.is_active, "the dialog in front")
    for number, (page, controls) in enumerate(PAGES.items()):
        editor.at_rest()
        told = reader.look(editor, TITLE, page)
        equal((told[0]["role"], told[0]["name"]), ("dialog", TITLE), "the dialog")
        tabs = [one for one in told if one["role"] == "page tab"]
        equal([tab["name"] for tab in tabs], list(PAGES), "the page tabs")
        shown = [one for one in told if "showing" in one["states"] and "focusable" in one["states"]]
        found = [(one["role"], one["name"]) for one in shown]
        for control in controls + ENDS:
            check(found.count(control) == 1, f"{page}: {control} {found.count(control)} times in {found}")
        # Parts of a control, and the frame of the pages, which hands the keyboard on to the tabs.
        parts = ("page tab", "page tab list", "list item", "filler")
        others = [one for one in found if one not in controls + ENDS and one[0] not in parts]
        equal(others, [], f"{page}: what else the keyboard can come to")
        for one in shown:
            if one["role"] == FIELD:
                equal(one["labels"][:1], [one["name"] + ":"], "the label")
            elif one["role"] == LIST:  # its name is the row that it shows
                equal(one["labels"], ["At startup:"], "the label")
        if page == "Editor":
            state = {one["name"]: "checked" in one["states"] for one in shown}
            equal((state["Insert spaces"], state["Keep tabs"], state["Use system colors"]), (True, False, False), "what is ticked")
            hints = {one["name"]: one["description"] for one in shown}
            equal(hints["Syntax highlight"], "Works only at file opening.", "a hint")
        if number + 1 < len(PAGES):
            dialog.keys("ctrl+Tab")
    dialog.keys("Escape")
    stage.until(lambda: len(editor.titles()) == 1, "the end of the dialog")
    editor.close(window)


main(every_control_is_told)
