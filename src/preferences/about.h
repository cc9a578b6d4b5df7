// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

class Desktop;
class SettingsStore;

/// "Zelvane version 1.0.0".
QString VersionLine();
/// What the program is, in one line.
QString ProgramComments();
/// How often the program has been used: the finished runs, and this one.
QString UsedLine(const SettingsStore &settings);

/// The name of one of the three logos, by chance.
QString RandomLogo();

/// Opens the system's panel for sound; a message where there is none.
void ShowMultimediaProperties(Desktop &desktop);
/// Shows with which controls the program runs. @param versions one a line
void ShowControlVersions(const QStringList &versions, Desktop &desktop);

} // namespace zelvane
