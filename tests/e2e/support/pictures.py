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
