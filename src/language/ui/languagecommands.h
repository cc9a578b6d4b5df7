// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/highlighter.h"
#include "language/opcodelist.h"

#include <QObject>
#include <QString>

namespace zelvane
{

class Commands;

/// The language services of the window: the opcode list, the highlighter, and their commands `mnuCsHelp` and
/// `mnuRefreshSyntaxHighlight`.
class LanguageCommands : public QObject
{
    Q_OBJECT

public:
    /// Binds the commands. @param folder the folder of the opcode file
    LanguageCommands(EditorContext &editor, DocumentView &view, Commands &commands, const QString &folder,
                     QObject *parent = nullptr);

    /// Start-up: reads the opcode list. A failure is reported, and start-up goes on.
    void LoadOpcodes();

    const OpcodeList &Opcodes() const { return m_opcodes; }
    Highlighter &Colours() { return m_highlighter; }

private:
    void Refresh();

    EditorContext &m_editor;
    DocumentView &m_view;
    QString m_folder;
    OpcodeList m_opcodes;
    Highlighter m_highlighter;
};

} // namespace zelvane
