// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/relatedcommands.h"

#include "platform/parameters.h"
#include "shell/documentkind.h"

#include <QFileInfo>

namespace zelvane
{

namespace
{

/// By the shell, which tells of a failure itself.
void OpenInShell(Desktop &desktop, const QString &path)
{
    desktop.ShellRun({.file = QuoteFile(path), .folder = QFileInfo(path).path()});
}

} // namespace

void OpenRelatedFile(EditorContext &editor, const DocumentSteps &steps, const QString &path)
{
    if (path.isEmpty())
        return;
    if (ClassifyFile(path, editor.settings) == FileKind::Sound)
        steps.sound->MCIopen(path);
    else
        editor.operations.OpenFile(path, OpenOrigin::RelatedFiles);
}

bool CanRunOnRelatedFile(const DocumentSteps &steps, RelatedOperation operation, const QString &path)
{
    if (path.isEmpty())
        return false;
    return operation == RelatedOperation::Open || operation == RelatedOperation::OpenContainer ||
           steps.files->ServesFiles();
}

bool RunOnRelatedFile(EditorContext &editor, const DocumentSteps &steps, RelatedOperation operation,
                      const QString &path)
{
    if (!CanRunOnRelatedFile(steps, operation, path))
        return false;
    switch (operation) {
    case RelatedOperation::Open:
        OpenInShell(editor.desktop, path);
        return false;
    case RelatedOperation::OpenContainer:
        OpenInShell(editor.desktop, QFileInfo(path).path());
        return false;
    case RelatedOperation::OpenWith:
        steps.files->OpenWith(path);
        return false;
    case RelatedOperation::Move:
        return steps.files->RunFileOperation(FileOperation::Move, path);
    case RelatedOperation::Copy:
        return steps.files->RunFileOperation(FileOperation::Copy, path);
    case RelatedOperation::Rename:
        return steps.files->RunFileOperation(FileOperation::Rename, path);
    case RelatedOperation::Delete:
        return steps.files->RunFileOperation(FileOperation::Delete, path);
    case RelatedOperation::Properties:
        return steps.files->RunFileOperation(FileOperation::Properties, path);
    }
    return false;
}

} // namespace zelvane
