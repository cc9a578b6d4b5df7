# SPDX-License-Identifier: GPL-3.0-or-later
"""The window in a light and in a dark desktop, at 100% and at 200%; the pictures are for looking at."""

import subprocess

from support.pictures import lightness
from support.stage import NARROW, check, copy_example, dark_desktop, equal, main, options

STORE = options(NARROW, Csound="/usr/bin/csound", BandRow3=0, BandWidth2=330, PanelLabels=-1) + """
[Presets]
Render=
Listen=
Edit sound=
Manual=

[Render]
Command=$CSOUND$
Args=-d -W -o $WAVE$ $DOCUMENT$
Image=101
[Listen]
Command=$PLAYER$
Image=104
[Edit sound]
Command=$EDITOR$
Image=109
NewGroup=1
[Manual]
Command=$HELP$
Image=137
"""


def different_colours(picture, area):
    result = subprocess.run(
        ["convert", str(picture), "-crop", area, "+repage", "-format", "%k", "info:"],
        capture_output=True,
        text=True,
        check=True,
    )
    return int(result.stdout)


def looks(stage, name, scale, dark):
    stage.write_store(STORE)
    stage.environment["QT_SCALE_FACTOR"] = str(scale)
    if dark:
        dark_desktop(stage)
    piece = copy_example(stage, "oscil.csd")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    size = (960 * scale, 680 * scale)
    stage.until(lambda: window.geometry()[2:] == size, lambda: f"the size {size}; it is {window.geometry()}")
    window.activate()
    editor.at_rest()
    picture = window.screenshot(name)

    # The lower right of the text is empty, the left of the menu bar holds words.
    empty = f"{200 * scale}x{60 * scale}+{700 * scale}+{500 * scale}"
    menu = f"{300 * scale}x{20 * scale}+{10 * scale}+{2 * scale}"
    tools = f"{400 * scale}x{28 * scale}+{10 * scale}+{24 * scale}"
    if dark:
        check(lightness(picture, empty) < 0.2, "the text's background is dark")
        check(lightness(picture, menu) < 0.35, "the menu bar is dark")
    else:
        check(lightness(picture, empty) > 0.95, "the text's background is light")
        check(lightness(picture, menu) > 0.8, "the menu bar is light")
    check(different_colours(picture, menu) > 8, "words in the menu bar")
    check(different_colours(picture, tools) > 60, "pictures on the toolbar")
    editor.close(window)
    # The stored place does not know of the scale.
    equal((stage.setting("Width"), stage.setting("Height")), ("14400", "10200"), "the stored size")


def light_at_100(stage):
    looks(stage, "light-100", 1, False)


def dark_at_100(stage):
    looks(stage, "dark-100", 1, True)


def light_at_200(stage):
    looks(stage, "light-200", 2, False)


def dark_at_200(stage):
    looks(stage, "dark-200", 2, True)


light_at_200.size = dark_at_200.size = "2200x1600x24"

main(light_at_100, dark_at_100, light_at_200, dark_at_200)
