// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// The lines of the Insert menu, and the dialogs that insert random numbers and a header.
#define ZELVANE_INSERT_KEYS(SETTING)                                                                         \
    SETTING(TextKey, LineStyle1, u"-", KeyWriter::Preferences)                                               \
    SETTING(TextKey, LineStyle2, u"*", KeyWriter::Preferences)                                               \
    SETTING(NumberKey, LineWidth, 64, KeyWriter::Preferences)                                                \
    SETTING(NumberKey, RandomMin, 0)                                                                         \
    SETTING(NumberKey, RandomMax, 1)                                                                         \
    SETTING(NumberKey, RandomDigits, 3)                                                                      \
    SETTING(NumberKey, HeaderSR, 44100)                                                                      \
    /* So spelled as earlier versions wrote it; the store reads it in any case. */                           \
    SETTING(NumberKey, HeaderkR, 4410)                                                                       \
    SETTING(NumberKey, HeaderChannels, 1)

namespace zelvane::Keys
{
ZELVANE_INSERT_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
