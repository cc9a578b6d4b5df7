// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

class SettingsStore;

/// The shipped file with presets to begin with. It has the form of the settings.
QString ReadyPresetsFile();

/// The names in a file of presets, in its order; empty where it cannot be read.
QStringList ReadyPresets(const QString &file);

/// Adds the presets of a file behind the user's own, in one step. One whose name the user has stays as it is.
/// @return the names that were added
/// @throws RunTimeError when the store cannot be written
QStringList AddReadyPresets(const QString &file, SettingsStore &settings);

/// The question whether they are to be added.
QString ReadyPresetsQuestion(const QStringList &names);

} // namespace zelvane
