// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/document.h"

#include <QStringList>

namespace zelvane
{

/// What opening, saving and making documents does to the window.
class DocumentView
{
public:
    virtual ~DocumentView() = default;

    virtual void ShowCaption(const QString &caption) = 0;
    /// The wait pointer over the whole window. Calls nest: it stays until each has been undone.
    virtual void SetBusy(bool busy) = 0;
    /// Hides and disables the text control, so that nothing is painted while a text is loaded.
    virtual void HideText() = 0;
    virtual void ShowText() = 0;
    virtual void FocusText() = 0;
    /// The text colour of a fresh text: the system's or the stored one.
    virtual void ApplyTextColours() = 0;
    virtual void EnableSaveButton(bool enabled) = 0;
    /// Enables a menu row and the toolbar button of the same command.
    virtual void EnableCommand(Command command, bool enabled) = 0;
    /// The rows of the recent-file menu, most recent first.
    virtual void ShowRecentFiles(const QStringList &files) = 0;
    /// Shows the new-file chooser; Cancelled when the user cancelled it.
    virtual FileKind ChooseNewKind() = 0;
    /// Runs the selection-change handler once, so that line and column are right.
    virtual void SelectionChanged() = 0;
};

} // namespace zelvane
