# SPDX-License-Identifier: GPL-3.0-or-later
"""Csound itself, which has the last word on what the editor wrote."""

import subprocess

from support.stage import PATIENCE, check, rendered


def sound_of(stage, *files, what="the piece"):
    """What Csound makes of the files of a piece as they are on the disk: a WAV file with sound in it."""
    sound = stage.home / "rendered.wav"
    sound.unlink(missing_ok=True)
    run = subprocess.run(
        ["csound", "-d", "-W", "-o", str(sound), *map(str, files)],
        cwd=stage.home,
        env=stage.environment,
        capture_output=True,
        text=True,
        timeout=PATIENCE,
        check=False,
    )
    check(run.returncode == 0 and rendered(sound), f"Csound renders {what}: {run.stderr[-2000:]}")
    return sound
