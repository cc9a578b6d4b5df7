// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace zelvane
{

struct RunMessage;

/// A place in a file that a message is about.
struct MessagePlace {
    QString path = {}; ///< absolute
    int line = 0;      ///< from 1; 0 for the file as a whole

    bool operator==(const MessagePlace &) const = default;
};

/// What the names in messages are looked up in.
struct PlaceSources {
    QString folder = {};        ///< the one that the program ran in
    QStringList folders = {};   ///< more folders of included files
    QStringList documents = {}; ///< the files that the program was started on
};

/// Those of a command line's arguments that name what a program was started on: no flags, and no values of
/// Csound's flags, such as the sound file that it writes.
QStringList DocumentsOf(const QStringList &arguments);

/// The place that a message names. Csound miscounts behind macros of several lines, and for variables that
/// are not defined; so the line is the nearest one that holds what the message quotes. None where the message
/// names no file that is there.
std::optional<MessagePlace> FindPlace(const RunMessage &message, const PlaceSources &sources);

/// The line of a text that a message is about.
/// @return from 1 to the number of lines, 0 where the message names none
int SettleLine(const RunMessage &message, const QString &text);

} // namespace zelvane
