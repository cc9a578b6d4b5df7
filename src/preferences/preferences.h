// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"

#include <QString>
#include <QStringList>

namespace zelvane
{

// What the Preferences dialog says and asks.

/// What the program does when it starts without a document; the row is what the key `Startup` holds.
QStringList StartupTexts();
/// What the colours are for.
QStringList SyntaxElements();
/// How extensions are to be typed.
QString ExtensionsNote();

/// What the dialog shows of an environment variable: "SFDIR: /sounds".
QString VariableLine(const QString &name, const Desktop &desktop);

/// Asks for an outside program. @param path of the program that is set, as it was typed
FileDialogRequest ProgramRequest(const QString &title, const QString &path);
/// Asks for the help file.
FileDialogRequest HelpFileRequest(const QString &title, const QString &path);

} // namespace zelvane
