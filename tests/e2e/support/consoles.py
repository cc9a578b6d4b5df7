# SPDX-License-Identifier: GPL-3.0-or-later
"""The consoles of a stage: their processes, windows and logs."""

import os
from pathlib import Path

from support.stage import Window


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


def log_of(stage, name):
    """What the logs of a preset's runs hold."""
    runs = stage.folder / "state" / "zelvane" / "runs"
    return "".join(log.read_text(errors="replace") for log in sorted(runs.glob(f"*{name.replace(' ', '?')}*")) if log.is_file())


def consoles(stage):
    return processes(stage, "zelvane-console")


def console_of(stage):
    """The number of the console that has come, and its window."""
    stage.until(lambda: consoles(stage), "a console")
    pid = consoles(stage).pop()
    stage.until(lambda: stage.windows_of(pid), "the console's window")
    return pid, Window(stage, stage.windows_of(pid)[0])


def write_program(path, text):
    path.write_text(text)
    path.chmod(0o755)
    return path
