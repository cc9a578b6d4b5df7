// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QObject>

namespace zelvane
{

class Commands;

/// Binds the commands of the Help menu that open pages.
class HelpCommands : public QObject
{
    Q_OBJECT

public:
    HelpCommands(EditorContext &editor, Commands &commands, const QString &programFolder, QObject *parent);
};

} // namespace zelvane
