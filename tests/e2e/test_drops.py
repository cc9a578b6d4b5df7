# SPDX-License-Identifier: GPL-3.0-or-later
"""Files dragged from another program: they are opened wherever they are let go, and stay with the other program."""

from pathlib import Path

from support.stage import check, equal, main, options, settled

STORE = options(BandRow3=0, X=600, Y=2400, Width=14400, Height=10200)


class Source:
    """A window with a file to drag; ended with the stage's other processes."""

    def __init__(self, stage, file, *actions):
        self.stage = stage
        program = stage.program
        stage.program = str(Path(program).with_name("e2e_dragsource"))
        self.process = stage.start(file, *actions)
        stage.program = program
        self.window = self.process.window("Drag source")

    def drag(self, editor, target, x, y):
        """Through the display, to a place in the editor's target window; gives what the source was told."""
        run = self.stage.output
        run("xdotool", "mousemove", "--window", self.window.number, 20, 20, "mousedown", 1)
        run("xdotool", "mousemove_relative", 20, 20)
        for step in range(5):
            run("xdotool", "mousemove", "--window", target.number, x - 4 + step, y, "sleep", "0.05")
        # Let go before the target has answered, the file falls nowhere.
        self.process.at_rest()
        editor.at_rest()
        run("xdotool", "mouseup", 1)
        self.stage.until(lambda: self.process.output().strip(), "the answer to the drop")
        return self.process.output().split()[0]


def drop(stage, editor, window, name, x, y, *actions):
    file = stage.home / f"{name}.orc"
    file.write_text(f"; {name}\n")
    source = Source(stage, file, *actions)
    answer = source.drag(editor, window, x, y)
    stage.until(lambda: str(file) in window.title(), lambda: f"{name} open; the title is {window.title()!r}")
    source.process.process.terminate()
    source.process.ended()
    check(file.exists(), f"{name} is still there")
    return answer


def files_are_opened_and_stay(stage):
    stage.write_store(STORE)
    editor, window = settled(stage)
    width, height = window.geometry()[2:]
    places = {
        "on the text": (width - 200, height - 200),
        "on the menus": (250, 8),
        "on the toolbar": (60, 36),
        "on the opcodes": (60, 72),
        "on the player": (400, 72),
        "on the presets": (300, 102),
        "on the outline": (60, 200),
        "on the related files": (60, height - 100),
        "on the status bar": (300, height - 10),
    }
    for name, (x, y) in places.items():
        equal(drop(stage, editor, window, name, x, y, "copy", "move"), "copy", f"the answer {name}")  # the move is proposed
    equal(drop(stage, editor, window, "only linked", 300, height - 200, "link"), "link", "the answer to a mere link")
    # No action is what the protocol takes for a copy.
    check(drop(stage, editor, window, "only moved", 300, height - 200, "move") != "move", "a mere move is none")
    editor.close(window)


main(files_are_opened_and_stay)
