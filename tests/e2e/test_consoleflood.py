# SPDX-License-Identifier: GPL-3.0-or-later
"""A program that writes without end: its console answers, and needs little memory."""

from pathlib import Path

from support.consoles import console_of, consoles, write_program
from support.stage import PATIENCE, check, main, settled

FLOOD = """#!/bin/sh
cat '{lines}'
read answer
echo "got $answer"
exit 3
"""


def hundred_megabytes(stage):
    lines = stage.home / "lines"
    lines.write_text("a line of output that is about as long as one of Csound\n" * 1_785_715)
    program = write_program(stage.home / "flood", FLOOD.format(lines=lines))
    stage.write_store(
        f"[Options]\nUsed=2\nSplash=0\nStartup=2\n\n[Presets]\nFlood=\n\n[Flood]\nCommand={program}\n"
    )
    editor, window = settled(stage)
    window.keys("ctrl+1")
    pid, console = console_of(stage)
    stage.until(console.is_active, "the console in front")
    console.keys("Tab")
    console.type("while it comes")
    console.keys("Return")
    log = next((stage.folder / "state" / "zelvane" / "runs").glob("*Flood*.log"))

    def end():
        with log.open("rb") as file:
            file.seek(max(0, log.stat().st_size - 200))
            return file.read().decode(errors="replace")

    stage.until(lambda: "Ended with exit code 3." in end(), "the end of the run", 5 * PATIENCE)
    check("got while it comes" in end(), end())
    console.screenshot("console-flood")
    status = Path(f"/proc/{pid}/status").read_text()
    peak = int(status.split("VmHWM:")[1].split()[0]) / 1000
    print(f"  the console had {peak:.0f} MB at most", flush=True)
    check(peak < 100, f"{peak:.0f} MB")
    check(log.stat().st_size < 101_000_000, "the log's length")
    console.ask_to_close()
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


main(hundred_megabytes)
