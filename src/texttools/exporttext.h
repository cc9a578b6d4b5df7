// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/editorcontext.h"

namespace zelvane
{

/// Asks for a file and writes the text in another line-end form there, in the document's encoding. The
/// document, its name and its Modified flag stay. Rtf and Html are written elsewhere and do nothing here.
/// @throws RunTimeError when the file cannot be written
void ExportText(ExportFormat format, const EditorContext &editor);

} // namespace zelvane
