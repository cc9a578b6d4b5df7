// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"

#include <QObject>

namespace zelvane
{

class Commands;

/// Binds `mnuRunCsound`, the menu row and the toolbar button of the Run Csound dialog, and `mnuPresetsBox`,
/// the preset editor.
class RunCommands : public QObject
{
    Q_OBJECT

public:
    /// @param window the parent of the dialog
    RunCommands(const RunContext &context, Commands &commands, QWidget *window);
};

} // namespace zelvane
