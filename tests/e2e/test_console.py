# SPDX-License-Identifier: GPL-3.0-or-later
"""What Csound says: the console of a run, from the error to its line, and how runs are stopped."""

import os
import signal
import wave
from pathlib import Path

from support.stage import Window, check, copy_example, equal, main, rendered

STORE = """[Options]
Used=2
Splash=0
Csound=/usr/bin/csound

[Presets]
Render=
Record=

[Render]
Command=$CSOUND$
Args=-d -o $WAVE$ $DOCUMENT$
Folder=$DIR$
SaveFirst=1

[Record]
Command=$CSOUND$
Args=-d -+rtaudio=dummy -o $WAVE$ $DOCUMENT$
Folder=$DIR$
"""

# Minutes of sound, one sample at a time.
SLOW_PIECE = """<CsoundSynthesizer>
<CsInstruments>
sr = 44100
ksmps = 1
nchnls = 1
0dbfs = 1
instr 1
  a1 oscili 0.1, 220
  a2 oscili 0.1, 331
  out a1 + a2
endin
</CsInstruments>
<CsScore>
i 1 0 {seconds}
</CsScore>
</CsoundSynthesizer>
"""


def processes(stage, name):
    """The process numbers of this stage's programs of a name."""
    found = set()
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                program = os.path.basename(os.readlink(entry / "exe"))
                if program == name and str(stage.home).encode() in (entry / "cmdline").read_bytes():
                    found.add(int(entry.name))
            except OSError:
                continue
    return found


def consoles(stage):
    return processes(stage, "zelvane-console")


def console_of(stage):
    """The number of the console that has come, and its window."""
    stage.until(lambda: consoles(stage), "a console")
    pid = consoles(stage).pop()
    stage.until(lambda: stage.windows_of(pid), "the console's window")
    return pid, Window(stage, stage.windows_of(pid)[0])


def error_leads_to_its_line(stage):
    stage.write_store(STORE)
    piece = copy_example(stage, "oscil.csd", "a piece")
    text = piece.read_text()
    check("endin" in text, "the example has an instrument")
    wave_file = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    # A line of nonsense at the top of the first instrument.
    lines = text.split("\n")
    broken = next(i for i, line in enumerate(lines) if line.startswith("instr")) + 1
    window.keys("ctrl+Home", *["Down"] * broken)
    window.type("a9 nosuch 1")
    window.keys("Return", "ctrl+Home", "ctrl+1")
    pid, console = console_of(stage)
    stage.until(lambda: not processes(stage, "csound"), "the end of the run")
    stage.until(console.is_active, "the console in front")
    console.screenshot("console-error")
    equal(console.title(), "Render", "the console's title")
    console.keys("Return")
    stage.until(window.is_active, "the editor in front")
    editor.at_rest()
    window.keys("Delete", "Delete")  # the selected line, and its end
    window.screenshot("console-mended")
    window.keys("ctrl+1")
    stage.until(lambda: rendered(wave_file), lambda: f"{wave_file}; the program said: {editor.output()}")
    stage.until(lambda: pid not in consoles(stage), "the first console replaced")
    stage.until(lambda: not consoles(stage), "no console left")
    equal(piece.read_bytes().replace(b"\r\n", b"\n"), text.encode(), "the mended piece")
    editor.close(window)


def killed_editor_leaves_the_render_alone(stage):
    stage.write_store(STORE)
    piece = stage.home / "slow.csd"
    piece.write_text(SLOW_PIECE.format(seconds=60))
    wave_file = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+1")
    console_of(stage)
    stage.until(wave_file.exists, "the sound file begun")
    os.kill(editor.pid, signal.SIGKILL)
    stage.until(lambda: rendered(wave_file), f"{wave_file} after the editor's end")
    with wave.open(str(wave_file)) as sound:
        equal(sound.getnframes(), 60 * 44100, "the length of the sound file")
    stage.until(lambda: not consoles(stage), "the console gone by itself")


def stopped_run_leaves_a_readable_file(stage):
    stage.write_store(STORE)
    piece = stage.home / "long.csd"
    piece.write_text(SLOW_PIECE.format(seconds=36000))
    wave_file = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+2")
    pid, console = console_of(stage)
    stage.until(lambda: wave_file.exists() and wave_file.stat().st_size > 200000, "some sound")
    stage.until(console.is_active, "the console in front")
    console.keys("ctrl+c")
    stage.until(lambda: not processes(stage, "csound"), "the end of the run")
    console.screenshot("console-stopped")
    with wave.open(str(wave_file)) as sound:
        check(sound.getnframes() > 44100, f"{sound.getnframes()} frames by the header")
    console.ask_to_close()
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


main(error_leads_to_its_line, killed_editor_leaves_the_render_alone, stopped_run_leaves_a_readable_file)
