// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/documentview.h"

class QAction;
class QWidget;

namespace zelvane
{

class Appearance;
class Commands;
class Desktop;
class Menus;
class StatusBar;
class TextControl;

/// The main window as the document sees it: caption, pointer, text control, rows of the menus, status bar.
class DocumentDisplay : public DocumentView
{
public:
    DocumentDisplay(QWidget &window, TextControl &text, StatusBar &status, Desktop &desktop,
                    const Appearance &appearance, Commands &commands, Menus &menus)
        : m_window(window),
          m_text(text),
          m_status(status),
          m_desktop(desktop),
          m_appearance(appearance),
          m_commands(commands),
          m_menus(menus)
    {
    }
    ~DocumentDisplay() override;

    /// The toolbar button that is enabled while the document is changed.
    void SetSaveButton(QAction *button) { m_saveButton = button; }

    void ShowCaption(const QString &caption) override;
    void SetBusy(bool busy) override;
    void HideText() override;
    void ShowText() override;
    void FocusText() override;
    void ApplyTextColours() override;
    void EnableSaveButton(bool enabled) override;
    void EnableCommand(Command command, bool enabled) override;
    void ShowRecentFiles(const QStringList &files) override;
    FileKind ChooseNewKind() override;
    void SelectionChanged() override;

private:
    QWidget &m_window;
    TextControl &m_text;
    StatusBar &m_status;
    Desktop &m_desktop;
    const Appearance &m_appearance;
    Commands &m_commands;
    Menus &m_menus;
    QAction *m_saveButton = nullptr;
    int m_busy = 0;
};

} // namespace zelvane
