// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QString>

namespace zelvane
{

class Desktop;
class SettingsStore;

/// "Orchestra", "Score", "Unified Format", "MIDI", "Sound"; for other files the desktop's name for the type
/// of the current document, empty without a document.
QString KindLabel(FileKind kind, const DocumentRecord &document, const Desktop &desktop);

/// "orchestra", "score", "csd", "midi", "sound"; empty for other files.
QString KindWord(FileKind kind);

/// The patterns of a kind for a file dialog, joined by ";": the base (a star when it is empty), a dot and the
/// extension for each. For other files the one extension of the current document; empty without a document.
QString KindPatterns(FileKind kind, const QString &base, const DocumentRecord &document,
                     const SettingsStore &settings);

/// The first extension of orchestra, score and unified files, without a dot; empty for the other kinds.
QString FirstExtension(FileKind kind, const SettingsStore &settings);

/// Orchestra, score, unified or sound by the extension of the file, else other. Without a stored list only
/// "wav" is a sound here, while every other reader takes three extensions: kept, related files depend on it.
FileKind ClassifyFile(const QString &path, const SettingsStore &settings);

} // namespace zelvane
