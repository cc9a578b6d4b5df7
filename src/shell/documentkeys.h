// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settingkey.h"

/// Documents and how they come and go. The two folders default to the name of the current file.
#define ZELVANE_DOCUMENT_KEYS(SETTING)                                                                       \
    /* 0 opens the last document, 1 shows the Open dialog, 2 does nothing. */                                \
    SETTING(NumberKey, Startup, 0, KeyWriter::Preferences)                                                   \
    SETTING(FlagKey, MultipleInstances, false, KeyWriter::Preferences)                                       \
    /* The mailbox of the second process: what it was started with, until the running editor has read it. */ \
    SETTING(TextKey, Open, u"")                                                                              \
    SETTING(BareTextKey, OpenFolder)                                                                         \
    SETTING(BareTextKey, SaveFolder)                                                                         \
    SETTING(NumberKey, FilterIndex, 0)                                                                       \
    SETTING(TextKey, BakPath, u"", KeyWriter::Preferences)                                                   \
    SETTING(FlagKey, SafetyCopy, true, KeyWriter::Preferences)                                               \
    SETTING(FlagKey, DeleteTempFiles, false, KeyWriter::Preferences)                                         \
    SETTING(FlagKey, SaveOnSwitch, false, KeyWriter::Preferences)                                            \
    SETTING(FlagKey, RememberCaret, true, KeyWriter::Preferences)                                            \
    SETTING(TextKey, OrchestraExtensions, u"orc", KeyWriter::Preferences)                                    \
    SETTING(TextKey, ScoreExtensions, u"sco", KeyWriter::Preferences)                                        \
    SETTING(TextKey, UFFExtensions, u"csd", KeyWriter::Preferences)                                          \
    SETTING(TextKey, MIDIExtensions, u"mid midi", KeyWriter::Preferences)                                    \
    SETTING(TextKey, SoundExtensions, u"wav aif aiff", KeyWriter::Preferences)

namespace zelvane::Keys
{
ZELVANE_DOCUMENT_KEYS(ZELVANE_DECLARE_SETTING)
} // namespace zelvane::Keys
