// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/editorcontext.h"

#include <QString>

namespace zelvane
{

// What the list of related files does with one of them. A path is empty for a file that was not found: then
// nothing happens.

/// Plays a sound, and opens any other file in place of the document; the list stays as it is.
void OpenRelatedFile(EditorContext &editor, const DocumentSteps &steps, const QString &path);

/// Whether there is somebody to run the operation on the file.
bool CanRunOnRelatedFile(const DocumentSteps &steps, RelatedOperation operation, const QString &path);

/// @return whether files came, went or have other names now
bool RunOnRelatedFile(EditorContext &editor, const DocumentSteps &steps, RelatedOperation operation,
                      const QString &path);

} // namespace zelvane
