// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <QObject>

namespace zelvane
{

class Commands;

/// Binds date and time of the Insert menu, and gives the rows of the line separators their captions.
class InsertCommands : public QObject
{
    Q_OBJECT

public:
    InsertCommands(EditorContext &editor, Commands &commands, QObject *parent);
};

} // namespace zelvane
