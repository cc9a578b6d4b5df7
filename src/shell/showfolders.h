// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/editorcontext.h"

#include <QString>

namespace zelvane
{

/// The folders that the rows of Show folders may ask for beyond what the document and the settings know.
struct ProgramFolders {
    QString program; ///< the program's own folder, without a final separator
    QString csound;  ///< full path of the main compiler, empty when there is none
    QString csound2; ///< of the alternative one
};

/// The folder behind an entry of `mnuDIR`; empty when there is none.
QString FolderTarget(KnownFolder folder, const EditorContext &editor, const ProgramFolders &folders);

/// Opens a folder in the desktop's shell: with Ctrl its search for files, with Shift its explorer. Nothing
/// happens for an empty folder; a failure is told.
void OpenFolder(const QString &folder, Desktop &desktop);

} // namespace zelvane
