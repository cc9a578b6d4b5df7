// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

/// The parts of an open command.
struct OpenCommand {
    QString path;
    QString alias;
    QString device; ///< empty when no type is named

    bool operator==(const OpenCommand &) const = default;
};

/// The words of a command, blanks between them.
QStringList MediaWords(const QString &command);

/// Cuts "open PATH alias NAME [type DEVICE]". The path may hold any character: the words behind it are looked
/// for from the end, and of its double quotes those at both ends are taken off. Fields that are missing are
/// empty.
OpenCommand CutOpenCommand(const QString &command);

} // namespace zelvane
