# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screenshot shows."""

import subprocess


def lightness(picture, area):
    """Mean of a part of a picture, 0 black to 1 white; `area` as WIDTHxHEIGHT+X+Y."""
    result = subprocess.run(
        ["convert", str(picture), "-crop", area, "+repage", "-colorspace", "gray", "-format", "%[fx:mean]", "info:"],
        capture_output=True,
        text=True,
        check=True,
    )
    return float(result.stdout)


def pixels(picture, area):
    """The rows of a part of a picture, each a list of (red, green, blue) of 0 to 255; `area` as above."""
    width = int(area.split("x")[0])
    raw = subprocess.run(
        ["convert", str(picture), "-crop", area, "+repage", "-depth", "8", "rgb:-"], capture_output=True, check=True
    ).stdout
    points = [tuple(raw[i : i + 3]) for i in range(0, len(raw), 3)]
    return [points[i : i + width] for i in range(0, len(points), width)]
