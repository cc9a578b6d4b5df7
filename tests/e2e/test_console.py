# SPDX-License-Identifier: GPL-3.0-or-later
"""What Csound says: the console of a run, from the error to its line, and how runs are stopped."""

import os
import resource
import signal
import subprocess
import wave

from support.consoles import console_of, consoles, log_of, processes, write_program
from support.stage import PATIENCE, Window, check, copy_example, equal, main, options, rendered, settled

STORE = options(Csound="/usr/bin/csound") + """
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


def error_starts_an_editor_at_its_line(stage):
    """The editor has gone meanwhile: one is started, and gets the line too. A console that closes at once does no harm."""
    stage.write_store(STORE.replace("SaveFirst=1\n", ""))
    piece = stage.home / "piece.csd"
    lines = SLOW_PIECE.format(seconds=1).split("\n")
    lines.insert(lines.index("instr 1") + 1, "a9 nosuch 1")
    piece.write_text("\n".join(lines))
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+1")
    pid, console = console_of(stage)
    stage.until(lambda: "Ended with exit code 1." in log_of(stage, "Render"), "the end of the run")
    editor.close(window)
    console.keys("F4")
    console.keys("Escape")

    def started():
        return [Window(stage, number) for pid in processes(stage, "zelvane") for number in stage.windows_of(pid)]

    stage.until(lambda: any(str(piece) in new.title() for new in started()), "another editor")
    window = next(new for new in started() if str(piece) in new.title())
    stage.until(lambda: not consoles(stage), "the console gone when the editor has the line")
    stage.rest_of(processes(stage, "zelvane").pop())
    window.screenshot("console-started-editor")
    window.keys("Delete", "Delete", "ctrl+s")  # the selected line, and its end
    whole = SLOW_PIECE.format(seconds=1)
    stage.until(lambda: piece.read_bytes().replace(b"\r\n", b"\n") == whole.encode(), lambda: piece.read_bytes())
    window.keys("alt+F4")
    stage.until(lambda: not processes(stage, "zelvane"), "the editor's end")


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


def console_outlives_who_waits_for_it(stage):
    reading, writing = os.pipe()
    go = stage.home / "go"
    script = f"while ! test -e '{go}'; do sleep 0.05; done; echo after"
    program = os.path.join(os.path.dirname(stage.program), "zelvane-console")
    options = ["--title", "Waited", "--window", "0", "--notify", str(writing), "--"]
    console = subprocess.Popen(
        [program, *options, "/bin/sh", "-c", script], pass_fds=[writing], env=stage.environment
    )
    os.close(writing)
    equal(os.read(reading, 1), b"s", "the word of the start")
    os.close(reading)
    go.touch()
    equal(console.wait(PATIENCE), 0, "the console's exit code")
    check("after\n\nEnded well" in log_of(stage, "Waited"), "the log has the program's end")


def stopped_run_leaves_a_readable_file(stage):
    stage.write_store(STORE)
    piece = stage.home / "long.csd"
    # Csound cleans up inside its signal handler, and locks itself up when the signal finds it between two blocks, where
    # it holds a lock: with blocks of one sample once in twenty times.
    piece.write_text(SLOW_PIECE.format(seconds=36000).replace("ksmps = 1\n", "ksmps = 100\n"))
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


# Sound for the sound card and a file beside, until somebody stops it.
LIVE_PIECE = """<CsoundSynthesizer>
<CsInstruments>
sr = 44100
ksmps = 100
nchnls = 1
0dbfs = 1
instr 1
  a1 oscili 0.1, 220
  out a1
  fout "live.wav", 14, a1
endin
</CsInstruments>
<CsScore>
i 1 0 36000
</CsScore>
</CsoundSynthesizer>
"""

LIVE_STORE = options(Csound="/usr/bin/csound") + """
[Presets]
Live=

[Live]
Command=$CSOUND$
Args=-d -odac -+rtaudio=dummy $DOCUMENT$
Folder=$DIR$
"""


def live_piece(stage):
    """An editor in front whose piece plays and records, its window, and the console with its number."""
    stage.write_store(LIVE_STORE)
    piece = stage.home / "live.csd"
    piece.write_text(LIVE_PIECE)
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+1")
    pid, console = console_of(stage)
    wave_file = stage.home / "live.wav"
    stage.until(lambda: wave_file.exists() and wave_file.stat().st_size > 200000, "some sound")
    return editor, window, pid, console, wave_file


def check_sound(wave_file):
    with wave.open(str(wave_file)) as sound:
        check(sound.getnframes() > 44100, f"{sound.getnframes()} frames by the header")


def stop_button_ends_a_live_run(stage):
    editor, window, pid, console, wave_file = live_piece(stage)
    stage.until(console.is_active, "the console in front")
    check(processes(stage, "csound"), "it plays until it is stopped")
    x, y, width, height = console.geometry()
    console.click(width - 30, height - 20)  # Stop, in the corner
    stage.until(lambda: not processes(stage, "csound"), "the end of the run")
    check_sound(wave_file)
    stage.until(lambda: "Stopped. Ended" in log_of(stage, "Live"), lambda: log_of(stage, "Live"))
    console.screenshot("console-live-stopped")
    console.ask_to_close()
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


def ended_console_stops_its_run(stage):
    """What the session does at its end: the console is told to end, and lets Csound close its file first."""
    editor, window, pid, console, wave_file = live_piece(stage)
    os.kill(pid, signal.SIGTERM)
    stage.until(lambda: not consoles(stage), "the console's end")
    equal(processes(stage, "csound"), set(), "what runs still")
    check_sound(wave_file)
    editor.close(window)


CLOSING = """#!/bin/sh
trap 'sleep 0.5; echo closing the file; echo whole > "{mark}"; exit 0' INT
trap 'echo cut off > "{mark}"; exit 1' HUP TERM
echo begun
while :; do sleep 0.05; done
"""


def display_that_goes_ends_the_run_well(stage):
    """All windows end at once: what runs in the console is interrupted all the same, and has the time to close its files."""
    mark = stage.home / "mark"
    program = write_program(stage.home / "closing", CLOSING.format(mark=mark))
    stage.write_store(
        f"[Options]\nUsed=2\nSplash=0\nStartup=2\n\n[Presets]\nClosing=\n\n[Closing]\nCommand={program}\n"
    )
    _, window = settled(stage)
    window.keys("ctrl+1")
    console_of(stage)
    stage.until(lambda: "begun" in log_of(stage, "Closing"), "the program")
    stage.lose_display()
    stage.until(lambda: not consoles(stage), "the console's end")
    equal(mark.read_text(), "whole\n", "what the program has written")
    check(
        log_of(stage, "Closing").endswith("begun\nclosing the file\n\nThe display has gone. Stopped.\n"),
        log_of(stage, "Closing"),
    )


def killed_console_takes_its_program_along(stage):
    """Killed by force it cannot stop anything: the program gets more than the hang-up that it ignores."""
    mark = stage.home / "mark"
    program = write_program(
        stage.home / "deaf",
        f"#!/bin/sh\ntrap '' HUP\ntrap 'echo ended > \"{mark}\"; exit 1' TERM\necho begun\nwhile :; do sleep 0.05; done\n",
    )
    console = subprocess.Popen(
        [os.path.join(os.path.dirname(stage.program), "zelvane-console"), "--title", "Deaf", "--window", "0", "--", program],
        env=stage.environment,
    )
    stage.until(lambda: "begun" in log_of(stage, "Deaf"), "the program")
    console.kill()
    console.wait()
    stage.until(mark.exists, "the program's end")


def full_disk_ends_the_log_alone(stage):
    """A log that may not grow further, by the limit of a file's size: the console goes on, and says so at the end."""
    program = os.path.join(os.path.dirname(stage.program), "zelvane-console")
    script = "i=0; while test $i -lt 3000; do echo a line of output that fills the disk; i=$((i+1)); done; echo last; exit 4"
    console = subprocess.Popen(
        [program, "--title", "Full", "--", "/bin/sh", "-c", script],
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (50_000, 50_000)),
        env=stage.environment,
    )
    stage.until(lambda: stage.windows_of(console.pid), "the console's window")
    window = Window(stage, stage.windows_of(console.pid)[0])
    stage.rest_of(console.pid)
    window.screenshot("console-full-disk")
    log = log_of(stage, "Full")
    check("fills the disk" in log and "\nlast\n" not in log and len(log) <= 50_000, f"{len(log)} characters of the log")
    window.keys("Escape")  # closes what has ended
    equal(console.wait(PATIENCE), 0, "the console's exit code")


def guarded_hand_over(stage):
    """An error in an included file: unsaved work is asked about before another document comes."""
    stage.write_store(STORE.replace("SaveFirst=1\n", ""))
    piece = stage.home / "whole.csd"
    piece.write_text(SLOW_PIECE.format(seconds=1).replace("instr 1", '#include "part.inc"\ninstr 1'))
    part = stage.home / "part.inc"
    part.write_text("gi1 = 1\ngi2 nosuch 1\ngi3 = 3\n")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("ctrl+Home")
    window.type("; typed")
    stage.until(lambda: "*" in window.title(), "a modified text")
    window.keys("ctrl+1")
    pid, console = console_of(stage)
    stage.until(lambda: "Ended with exit code 1." in log_of(stage, "Render"), "the end of the run")
    console.keys("F4")
    question = editor.window(lambda title: title == "Zelvane")
    question.screenshot("console-unsaved")
    question.keys("Escape")
    stage.until(window.is_active, "the editor in front")
    check(str(piece) in window.title() and "*" in window.title(), f"the text with what was typed: {window.title()}")
    console.keys("F4")  # there is one message, and it is still the one
    question = editor.window(lambda title: title == "Zelvane")
    question.keys("alt+n")
    stage.until(lambda: str(part) in window.title(), "the included file")
    editor.at_rest()
    window.keys("Delete")  # the selected line
    window.keys("ctrl+s")
    stage.until(lambda: part.read_bytes() == b"gi1 = 1\r\n\r\ngi3 = 3\r\n", lambda: part.read_bytes())
    console.ask_to_close()
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


WAITING = """#!/bin/sh
echo begun
while [ ! -e '{go}' ]; do sleep 0.05; done
echo done
exit {code}
"""


def hidden_run_has_its_log_alone(stage):
    go = stage.home / "go"
    program = write_program(stage.home / "waits", WAITING.format(go=go, code=1))
    stage.write_store(
        f"[Options]\nUsed=2\nSplash=0\nStartup=2\n\n[Presets]\nHidden=\nPlain=\n\n[Hidden]\nCommand={program}\n"
        f"Window=0\n\n[Plain]\nCommand={program}\nConsole=0\n"
    )
    editor, window = settled(stage)
    window.keys("ctrl+1")
    stage.until(lambda: consoles(stage) and "begun" in log_of(stage, "Hidden"), "the hidden console")
    pid = consoles(stage).pop()
    window.keys("ctrl+2")  # the other preset has said no to consoles
    stage.until(lambda: "begun" in editor.output(), "output where the editor's own goes")
    equal(consoles(stage), {pid}, "consoles")
    equal(stage.windows_of(pid), [], "windows of the hidden console")
    go.touch()
    stage.until(lambda: not consoles(stage), "the end of the hidden console")
    stage.until(lambda: "done" in editor.output(), "the end of the plain run")
    check("begun\ndone\n\nEnded with exit code 1." in log_of(stage, "Hidden"), log_of(stage, "Hidden"))
    equal(log_of(stage, "Plain"), "", "a log of the plain run")
    editor.close(window)


def both_actions_have_consoles(stage):
    """The editor waits for the first program, not for its console; what that has to say stays beside the second's."""
    go = stage.home / "go"
    program = write_program(stage.home / "waits", WAITING.format(go=go, code=1))
    stage.write_store(
        f"[Options]\nUsed=2\nSplash=0\nStartup=2\n\n[Presets]\nBoth=\n\n[Both]\nCommand={program}\n2ndCommand={program}\n"
    )
    editor, window = settled(stage)
    window.keys("ctrl+1")
    console_of(stage)
    stage.until(lambda: "begun" in log_of(stage, "Both"), "the first action")
    stage.until(lambda: "HIDDEN" in window.state(), "the editor minimized")
    equal(log_of(stage, "Both 2nd action"), "", "the log of the second action")
    go.touch()
    stage.until(lambda: "Ended with exit code 1." in log_of(stage, "Both 2nd action"), "the second action")

    def titles():
        return sorted(Window(stage, number).title() for pid in consoles(stage) for number in stage.windows_of(pid))

    stage.until(lambda: titles() == ["Both", "Both 2nd action"], titles)
    for pid in consoles(stage):
        Window(stage, stage.windows_of(pid)[0]).keys("Escape")
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


def ready_made_presets_work(stage):
    """No preset, no path of Csound: the menu offers presets, and each does what its name says."""
    stage.write_store("[Options]\nUsed=2\nSplash=0\n")
    (stage.home / ".csound6rc").write_text("-+rtaudio=dummy\n")  # no sound card is needed
    listened = stage.home / "listened"
    player = write_program(stage.home / "player", f"#!/bin/sh\nprintf %s \"$1\" > '{listened}.part'\n"
                           f"mv '{listened}.part' '{listened}'\n")
    applications = stage.folder / "data" / "applications"
    applications.mkdir(parents=True)
    (applications / "player.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName=Player\nExec={player} %f\nMimeType=audio/x-wav;audio/vnd.wave;audio/wav;\n"
    )
    for folder in ("config", "data/applications"):
        (stage.folder / folder / "mimeapps.list").write_text(
            "[Default Applications]\naudio/x-wav=player.desktop\naudio/vnd.wave=player.desktop\naudio/wav=player.desktop\n"
        )
    piece = stage.home / "a piece" / "short.csd"
    piece.parent.mkdir()
    piece.write_text(SLOW_PIECE.format(seconds=1))
    wave_file = piece.with_suffix(".wav")
    editor = stage.start(piece)
    window = editor.window(lambda title: str(piece) in title)
    editor.at_rest()
    window.keys("alt+p", "Up")
    editor.at_rest()
    stage.screenshot("presets-ready-row")
    window.keys("Return")
    question = editor.window(lambda title: title == "Zelvane")
    question.screenshot("presets-ready-question")
    question.keys("alt+y")
    stage.until(lambda: len(stage.read_store().get("presets", {})) == 4, "the presets in the store")
    editor.at_rest()
    window.screenshot("presets-ready-added")

    def run(key, name):
        window.keys(key)
        stage.until(lambda: "Ended well (exit code 0)." in log_of(stage, name), lambda: f"{name}: {log_of(stage, name)}")
        # A key that reaches a console on its way out keeps it open, and does not start the next run.
        stage.until(lambda: not consoles(stage), f"{name}: the console gone by itself")

    run("ctrl+1", "Render to a sound file")
    check(rendered(wave_file), f"{wave_file}")
    wave_file.unlink()
    run("ctrl+2", "Play now")
    run("ctrl+3", "Check the syntax")
    check("Syntax check completed" in log_of(stage, "Check the syntax"), log_of(stage, "Check the syntax"))
    check(not wave_file.exists(), "playing and checking write no file")
    run("ctrl+4", "Render and listen")
    stage.until(listened.exists, "the second action")
    equal(listened.read_text(), str(wave_file), "what the player was given")
    check(rendered(wave_file), f"{wave_file}")
    stage.until(lambda: not consoles(stage), "no console left")
    editor.close(window)


main(
    error_leads_to_its_line,
    error_starts_an_editor_at_its_line,
    killed_editor_leaves_the_render_alone,
    console_outlives_who_waits_for_it,
    stopped_run_leaves_a_readable_file,
    stop_button_ends_a_live_run,
    ended_console_stops_its_run,
    display_that_goes_ends_the_run_well,
    killed_console_takes_its_program_along,
    full_disk_ends_the_log_alone,
    guarded_hand_over,
    hidden_run_has_its_log_alone,
    both_actions_have_consoles,
    ready_made_presets_work,
)
