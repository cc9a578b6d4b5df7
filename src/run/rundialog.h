// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "run/runcontext.h"
#include "shell/document.h"

#include <QStringList>

namespace zelvane
{

/// The fields of the Run Csound dialog.
struct RunDialogFields {
    QString orchestra = {};
    QString score = {};
    QString flags = {};
    QStringList history = {}; ///< rows of the flags' list
    bool csound2 = false;
    bool saveFirst = false;
    bool asksSaveFirst = true;  ///< whether the choice is shown; it is not stored else
    bool documentFolder = true; ///< start in the document's folder; else in the compiler's

    bool operator==(const RunDialogFields &) const = default;
};

/// The fields as the dialog shows them first. The history is read from key "0" on, which nothing ever writes,
/// so that it is not offered although it is kept up to date (kept: the store of earlier versions has it so).
RunDialogFields LoadRunDialog(RunContext &context);

/// The picker behind the Browse button of the orchestra or the score. It begins at the file in the field, and
/// without one in the folder of the document.
FileDialogRequest BrowseRequest(FileKind kind, const QString &field, const QString &title,
                                const EditorContext &editor);

/// Starts the compiler as the fields tell, and remembers them. File names with a blank get double quotes in
/// the fields themselves. @return whether the dialog closes; it stays when a macro or the save failed.
/// @throws RunTimeError
bool RunCsound(RunDialogFields &fields, RunContext &context);

} // namespace zelvane
