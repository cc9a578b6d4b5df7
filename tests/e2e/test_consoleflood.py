# SPDX-License-Identifier: GPL-3.0-or-later
"""A program that writes without end: its console answers, and needs little memory."""

import statistics
import time
from pathlib import Path

from support.consoles import console_of, consoles, processes, write_program
from support.stage import PATIENCE, check, main, settled

FLOOD = """#!/bin/sh
while read -r word; do
  echo "$word" > '{heard}.part'
  mv '{heard}.part' '{heard}'
  case "$word" in
  flood) cat '{lines}' & ;;
  end) break ;;
  esac
done
wait
echo "got $word"
exit 3
"""


def answer_times(stage, console, heard, words):
    """Seconds from Return to the program's having what was typed, for each word."""
    times = []
    for word in words:
        console.type(word)
        begun = time.monotonic()
        console.keys("Return")
        while not heard.exists() or heard.read_text() != word + "\n":
            check(time.monotonic() - begun < PATIENCE, f"{word} has been taken")
            time.sleep(0.002)
        times.append(time.monotonic() - begun)
    return times


def hundred_megabytes(stage):
    lines = stage.home / "lines"
    lines.write_text("a line of output that is about as long as one of Csound\n" * 1_785_715)
    heard = stage.home / "heard"
    program = write_program(stage.home / "flood", FLOOD.format(lines=lines, heard=heard))
    stage.write_store(
        f"[Options]\nUsed=2\nSplash=0\nStartup=2\n\n[Presets]\nFlood=\n\n[Flood]\nCommand={program}\n"
    )
    editor, window = settled(stage)
    window.keys("ctrl+1")
    pid, console = console_of(stage)
    stage.until(console.is_active, "the console in front")
    console.keys("Tab")
    at_rest = statistics.median(answer_times(stage, console, heard, [f"rest{i}" for i in range(7)]))
    answer_times(stage, console, heard, ["flood"])
    stage.until(lambda: processes(stage, "cat"), "the flood")
    flooded = []
    while processes(stage, "cat"):
        flooded += answer_times(stage, console, heard, [f"word{len(flooded)}"])
    flooded = flooded[:-1] or flooded  # the last one may have come after the flood
    median = statistics.median(flooded)
    print(f"  a word took {1000 * at_rest:.0f} ms at rest, {1000 * median:.0f} ms beside the flood ({len(flooded)} words)",
          flush=True)
    check(median < 2 * at_rest + 0.1, "a key is answered in a tenth of a second")
    answer_times(stage, console, heard, ["end"])
    log = next((stage.folder / "state" / "zelvane" / "runs").glob("*Flood*.log"))

    def end():
        with log.open("rb") as file:
            file.seek(max(0, log.stat().st_size - 200))
            return file.read().decode(errors="replace")

    stage.until(lambda: "Ended with exit code 3." in end(), "the end of the run", 5 * PATIENCE)
    check("got end" in end(), end())
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
