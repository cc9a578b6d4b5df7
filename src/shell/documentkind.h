// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QString>
#include <QStringList>

namespace zelvane
{

class Desktop;
class SettingsStore;

/// "Orchestra", "Score", "Unified Format", "MIDI" or "Sound"; empty for the others.
QString KindName(FileKind kind);

/// The name of a kind; for other files the desktop's name for the type of the current document, empty without
/// a document.
QString KindLabel(FileKind kind, const DocumentRecord &document, const Desktop &desktop);

/// "orchestra", "score", "csd", "midi", "sound"; empty for other files.
QString KindWord(FileKind kind);

/// The extensions of a kind as set in the preferences, without dots; none for Other and Cancelled.
QStringList KindExtensions(const SettingsStore &settings, FileKind kind);

/// The first extension of orchestra, score and unified files, without a dot; empty for the other kinds.
QString FirstExtension(FileKind kind, const SettingsStore &settings);

/// Cuts a stored list of extensions, which one blank separates. Empty entries are left out.
QStringList SplitExtensions(const QString &list);

/// A pattern for each extension, `base`.extension, joined by ";". An empty base is "*".
QString ExtensionPatterns(const QStringList &extensions, const QString &base = {});

/// The patterns of a kind for a file dialog, joined by ";": the base (a star when it is empty), a dot and the
/// extension for each. For other files the one extension of the current document; empty without a document.
QString KindPatterns(FileKind kind, const QString &base, const DocumentRecord &document,
                     const SettingsStore &settings);

/// Whether the path's extension is one of the list, without regard to case. The disk is not looked at.
bool HasExtension(const QString &path, const QStringList &extensions);

/// Orchestra, Score or Unified by the path's extension, tested in this order; else Other.
FileKind KindOfPath(const SettingsStore &settings, const QString &path);

/// Orchestra, score, unified or sound by the extension of the file, else other. Without a stored list only
/// "wav" is a sound here, while every other reader takes three extensions: kept, related files depend on it.
FileKind ClassifyFile(const QString &path, const SettingsStore &settings);

/// Sets DocumentKind from CurrentFile. A document without a name keeps its kind.
void ClassifyDocument(DocumentRecord &document, const SettingsStore &settings);

} // namespace zelvane
