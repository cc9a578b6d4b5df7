# SPDX-License-Identifier: GPL-3.0-or-later
"""Numbers changed in the real window, by keys and by the slider of a right click; the pictures are for looking at."""

from support.stage import WIDE, check, dark_desktop, equal, main, options, settled

# Digits so large that every click on the left hits one.
STORE = options(WIDE, Startup=2, CodeOutline=0, RelatedFiles=0, FontSize=60)

LINES = 9


def numbers(stage, lines):
    stage.write_store(STORE)
    piece = stage.home / "numbers.txt"
    piece.write_text("\r\n".join(lines))
    editor, window = settled(stage, piece)
    return piece, editor, window


def place(window):
    """In the first digit of a line in the middle."""
    _, _, _, height = window.geometry()
    return 40, height // 2


def right_click(window, x, y):
    window.activate()
    window.stage.output("xdotool", "mousemove", "--window", window.number, x, y, "click", "3")


def slider(stage):
    """The window of the slider; None while there is none."""
    found = stage.output("xdotool", "search", "--onlyvisible", "--name", "^Number$").split()
    return int(found[0]) if found else None


def slide(stage, window):
    """A right click that brings up the slider."""
    right_click(window, *place(window))
    stage.until(lambda: slider(stage), "the slider")


def key(stage, *keys):
    stage.output("xdotool", "key", *keys)


def closed(stage):
    stage.until(lambda: not slider(stage), "the end of the slider")


def saved(stage, window, piece, line, what):
    """Saves; then one line is this one, and all others stand as they did."""

    def lines():
        return piece.read_bytes().decode().split("\r\n")

    window.keys("ctrl+s")
    expected = sorted(["440"] * (LINES - 1) + [line])
    stage.until(lambda: sorted(lines()) == expected, lambda: f"{what}: {lines()}")


def a_number_by_keys_and_by_slider(stage):
    piece, editor, window = numbers(stage, ["440"] * LINES)
    slide(stage, window)
    stage.screenshot("number-slider")
    key(stage, "Up")
    key(stage, "Escape")
    closed(stage)
    editor.at_rest()
    saved(stage, window, piece, "441", "the key of the slider")
    window.keys("alt+Up", "alt+Prior", "alt+Right")
    saved(stage, window, piece, "452.1", "the keys in the text")
    window.keys("alt+Left", "alt+Next", "alt+Down", "alt+Down")
    saved(stage, window, piece, "440", "the keys back")
    window.keys("ctrl+z", "ctrl+z")
    saved(stage, window, piece, "442", "two steps back")
    window.keys("ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z")
    saved(stage, window, piece, "441", "as the slider left it")
    window.keys("ctrl+z")
    saved(stage, window, piece, "440", "the step of the slider")

    # A random part of it, by the star of the keypad.
    window.keys("Home", "alt+KP_Multiply", "ctrl+s")

    def other():
        return [line for line in piece.read_bytes().decode().split("\r\n") if line != "440"]

    stage.until(other, "the random part")
    equal(len(other()), 1, "how many numbers have changed")
    check(0 <= float(other()[0]) < 440, f"a part of 440: {other()[0]}")
    window.keys("ctrl+z")
    saved(stage, window, piece, "440", "the step of the star")

    # By the mouse: below the handle a click goes down by a page. Elsewhere it takes the slider away.
    window.keys("Home")
    slide(stage, window)
    number = slider(stage)
    shape = dict(
        line.split("=") for line in stage.output("xdotool", "getwindowgeometry", "--shell", number).split()
    )
    middle, low = int(shape["WIDTH"]) // 2, int(shape["HEIGHT"]) * 3 // 4
    stage.output("xdotool", "mousemove", "--window", number, middle, low, "click", "1")
    editor.at_rest()
    stage.screenshot("number-slider-moved")
    x, y, width, _ = window.geometry()
    stage.output("xdotool", "mousemove", x + width - 60, y + 300, "click", "1")
    closed(stage)
    saved(stage, window, piece, "430", "the mouse on the slider")
    window.keys("ctrl+z")
    saved(stage, window, piece, "440", "the step of the mouse")

    # With Ctrl the Insert menu comes, and no slider.
    window.keys("Home")
    stage.output("xdotool", "keydown", "Control_L")
    right_click(window, *place(window))
    stage.output("xdotool", "keyup", "Control_L")
    editor.at_rest()
    stage.screenshot("number-insert-menu")
    equal(slider(stage), None, "the slider with Ctrl")
    key(stage, "d")  # date and time
    editor.at_rest()
    window.keys("ctrl+s")
    stage.until(lambda: len(piece.read_bytes().decode()) > LINES * 5, "the inserted date")
    editor.close(window)


def looks(stage, name, scale, dark):
    stage.environment["QT_SCALE_FACTOR"] = str(scale)
    if dark:
        dark_desktop(stage)
    _, editor, window = numbers(stage, ["3.14"] * LINES)
    right_click(window, 30 * scale, place(window)[1])
    stage.until(lambda: slider(stage), "the slider")
    key(stage, "Down")
    editor.at_rest()
    stage.screenshot(f"number-slider-{name}")
    check(slider(stage), "the slider stays")
    key(stage, "Escape")
    closed(stage)
    window.keys("ctrl+s")
    editor.at_rest()
    editor.close(window)


def dark_at_100(stage):
    looks(stage, "dark-100", 1, True)


def light_at_200(stage):
    looks(stage, "light-200", 2, False)


light_at_200.size = "2200x1600x24"

main(a_number_by_keys_and_by_slider, dark_at_100, light_at_200)
