// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandline.h"
#include "shell/editorcontext.h"

namespace zelvane
{

class DocumentLifecycle;

/// Brings up the first document, by the command line and then by the stored start-up rule.
void RigaDiComando(const CommandLine &command, DocumentLifecycle &documents, const SettingsStore &settings);

/// The welcome at the first use, and the request for comments in the run that is exactly the hundredth.
void ShowFirstUseMessages(EditorContext &editor);

/// Files dropped on the main window: the first one is opened, the rest ignored.
void FilesDropped(const QStringList &files, EditorContext &editor);

} // namespace zelvane
