// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/filetypes.h"

#include <QByteArray>
#include <QString>

namespace zelvane
{

class Desktop;

/// The texts of three fields, each a list of extensions that blanks separate.
struct ExtensionFields {
    QString orchestra;
    QString score;
    QString unified;
};

/// What the desktop is told of the program and of Csound's files. A type without extensions is left out.
/// @param icon the program's, SVG
ProgramFiles CsoundFiles(const ExtensionFields &fields, const QString &executable, const QByteArray &icon);

/// Asks, and makes this program the one that opens files of these extensions; it can then run them and preset
/// commands on them too. Tells the end, good or bad.
void AssociateExtensions(const ExtensionFields &fields, Desktop &desktop, FileTypeRegistry &registry);

/// Where the user has made this program the one that opens such files, and it lies elsewhere since: tells the
/// desktop so. That it cannot be told is no failure: it is asked for again by AssociateExtensions.
void FollowMovedProgram();

} // namespace zelvane
