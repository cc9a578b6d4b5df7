// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandline.h"
#include "shell/editorcontext.h"

namespace zelvane
{

class DocumentLifecycle;

/// Whether this start may end in a running editor: several are not allowed and no new one is asked for. The
/// caller knows whether one is running.
bool MayHandOver(const CommandLine &command, const SettingsStore &settings);

/// The sender's half: puts a command line that is not empty into the mailbox. The file is not checked here.
/// @return whether the running editor has to be woken, not only raised
/// @throws RunTimeError when the store cannot be written
bool PutHandOver(const CommandLine &command, SettingsStore &settings);

/// The receiver's half: the mailbox is one key, so of several files handed over before it is read the last
/// one opens.
class HandOver
{
public:
    explicit HandOver(EditorContext &editor) : m_editor(editor) {}

    /// An event entry point: reads the key, opens what it names, deletes it, brings the window to the front.
    /// A wake-up that comes while an earlier one still asks the user is served right after it. Failures are
    /// reported.
    void Wake();

private:
    void RemoveMail(const QString &name);

    EditorContext &m_editor;
    bool m_opening = false;
    bool m_wokenAgain = false;
};

/// Brings up the first document, by the command line and then by the stored start-up rule.
void RigaDiComando(const CommandLine &command, DocumentLifecycle &documents, const SettingsStore &settings);

/// The welcome at the first use, and the request for comments in the run that is exactly the hundredth.
void ShowFirstUseMessages(EditorContext &editor);

/// Files dropped on the main window: the first one is opened, the rest ignored.
void FilesDropped(const QStringList &files, EditorContext &editor);

} // namespace zelvane
