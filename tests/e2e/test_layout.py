# SPDX-License-Identifier: GPL-3.0-or-later
"""The window comes back as it was left."""

import subprocess

from support.stage import check, copy_example, equal, main, options

STORE = options(Csound="/usr/bin/csound") + """
[Presets]
Render=
Play=

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
[Play]
Command=$PLAYER$
Args=$WAVE$
"""


def differing_pixels(one, other):
    result = subprocess.run(
        ["compare", "-metric", "AE", "-fuzz", "2%", str(one), str(other), "null:"],
        capture_output=True,
        text=True,
        check=False,
    )
    check(result.returncode < 2, f"{one} and {other} differ in size: {result.stderr}")
    return float(result.stderr.split()[0])


def same_picture(stage, window, name, before):
    """Waits for a picture like the earlier one: the caret may blink in one of them, nothing else may differ."""
    seen = []

    def look():
        seen.append(differing_pixels(before, window.screenshot(name)))
        return seen[-1] <= 60

    stage.until(look, lambda: f"the picture {name} as it was; {seen[-1]:g} pixels differ")


def geometry_bands_and_recent_files_come_back(stage):
    stage.write_store(STORE)
    first = copy_example(stage, "pluck.csd")
    second = copy_example(stage, "oscil.csd", "another piece")
    editor = stage.start(first)
    editor.close(editor.window(lambda title: str(first) in title))
    editor = stage.start(second)  # anew, since the way back to the first piece is not restored
    window = editor.window(lambda title: str(second) in title)
    whole = window.geometry()
    window.move(60, 40)
    window.resize(1010, 700)
    stage.until(lambda: window.geometry()[2:] == (1010, 700), "the new size")
    window.keys("alt+v")
    window.keys("k", "o")  # Workspace: the opcodes list away
    window.keys("alt+v")
    window.keys("k", "l")  # Workspace: labels on the toolbar
    window.keys("alt+v")
    window.keys("c")  # the outline away
    geometry = window.geometry()
    check(geometry != whole, "the window has not moved")
    editor.at_rest()
    left = window.screenshot("layout-left")
    editor.close(window)

    store = stage.read_store()
    options = store["options"]
    equal(options["used"], "4", "the count of uses")
    equal(options["window"], "0", "the window state")
    equal([options[f"band{n}"] for n in (1, 2, 3, 4)], ["-1", "0", "-1", "-1"], "the bands shown")
    equal(options["labels"], "-1", "the labels of the toolbar")
    equal(options["codeoutline"], "0", "the outline")
    equal(options["relatedfiles"], "-1", "the related files")
    recent = store["recent file list"]
    equal((recent["1"], recent["2"]), (str(second), str(first)), "the recent files")
    check("open" not in options, "the mailbox is empty")

    editor = stage.start()  # no file: the last document
    window = editor.window(lambda title: str(second) in title)
    stage.until(lambda: window.geometry() == geometry, lambda: f"the place {geometry}; it is {window.geometry()}")
    window.activate()
    same_picture(stage, window, "layout-restored", left)
    editor.close(window)
    for key in ("x", "y", "width", "height", "bandwidth1", "bandwidth2", "bandrow2", "panelwidth"):
        equal(stage.setting(key), options[key], f"{key} after a second run")


def maximized_window_keeps_its_normal_place(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.move(80, 60)
    window.resize(900, 640)
    stage.until(lambda: window.geometry()[2:] == (900, 640), "the new size")
    normal = window.geometry()
    editor.close(window)

    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    stage.until(lambda: window.geometry() == normal, lambda: f"the place {normal}; it is {window.geometry()}")
    window.keys("super+m")  # see the window manager's keys in the stage
    stage.until(lambda: "MAXIMIZED_VERT" in window.state(), "the maximized window")
    maximized = window.geometry()
    editor.close(window)
    equal(stage.setting("Window"), "2", "the stored state")

    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    stage.until(
        lambda: "MAXIMIZED_VERT" in window.state() and window.geometry() == maximized,
        lambda: f"the maximized window; it is {window.geometry()}, {window.state()}",
    )
    window.keys("super+m")
    stage.until(lambda: window.geometry() == normal, lambda: f"the place {normal}; it is {window.geometry()}")
    editor.close(window)
    equal(stage.setting("Window"), "0", "the stored state")


def stored_at_100_fits_at_200(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "pluck.csd")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.move(300, 150)
    window.resize(900, 640)
    stage.until(lambda: window.geometry()[2:] == (900, 640), "the new size")
    editor.close(window)

    stage.environment["QT_SCALE_FACTOR"] = "2"
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    window.activate()
    editor.at_rest()
    x, y, width, height = window.geometry()
    screen = [int(part) for part in stage.size.split("x")[:2]]
    check(x >= 0 and y >= 0, f"the upper left corner is on the screen: {x}, {y}")
    check(x + width <= screen[0] and y + height <= screen[1], f"the screen holds it: {window.geometry()}")
    check(width > 0.9 * screen[0], f"it is not smaller than it has to be: {width}")
    window.screenshot("layout-200")
    editor.close(window)


main(geometry_bands_and_recent_files_come_back, maximized_window_keeps_its_normal_place, stored_at_100_fits_at_200)
