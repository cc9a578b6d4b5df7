// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"

#include <functional>
#include <QObject>

namespace zelvane
{

class Commands;
class DocumentLifecycle;

/// Binds the commands of the File menu that make, open, store and export the document.
class DocumentCommands : public QObject
{
    Q_OBJECT

public:
    /// @param closeWindow what Exit does
    DocumentCommands(EditorContext &editor, DocumentLifecycle &documents, Commands &commands,
                     std::function<void()> closeWindow, QObject *parent);
};

} // namespace zelvane
