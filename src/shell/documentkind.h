// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QString>
#include <QStringList>

namespace zelvane
{

class SettingsStore;

/// "Orchestra", "Score", "Unified Format", "MIDI" or "Sound"; empty for the others.
QString KindName(FileKind kind);

/// The extensions of a kind as set in the preferences, without dots; none for Other and Cancelled.
QStringList KindExtensions(const SettingsStore &settings, FileKind kind);

/// Cuts a stored list of extensions, which one blank separates. Empty entries are left out.
QStringList SplitExtensions(const QString &list);

/// A pattern for each extension, `base`.extension, joined by ";". An empty base is "*".
QString ExtensionPatterns(const QStringList &extensions, const QString &base = {});

/// Whether the path's extension is one of the list, without regard to case. The disk is not looked at.
bool HasExtension(const QString &path, const QStringList &extensions);

/// Orchestra, Score or Unified by the path's extension, tested in this order; else Other.
FileKind KindOfPath(const SettingsStore &settings, const QString &path);

/// Sets DocumentKind from CurrentFile. A document without a name keeps its kind.
void ClassifyDocument(DocumentRecord &document, const SettingsStore &settings);

} // namespace zelvane
