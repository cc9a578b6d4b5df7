// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/document.h"

#include <span>

namespace zelvane
{

class DocumentView;

/// A command that only some kinds of document have. A toolbar button of the same command follows its row.
struct TypeEnableRow {
    Command command;
    bool other, orchestra, score, unified;

    bool EnabledFor(FileKind kind) const;
};

std::span<const TypeEnableRow> TypeEnableTable();

/// Enables and disables the commands by the kind of the document.
void TypeEnable(FileKind kind, DocumentView &view);

/// What the File menu does when it opens: no export to the form the document was found in, and no file
/// operations or backup without a file.
void EnableFileMenu(const DocumentRecord &document, DocumentView &view);

} // namespace zelvane
