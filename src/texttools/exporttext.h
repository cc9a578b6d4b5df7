// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/editorcontext.h"

namespace zelvane
{

class DocumentView;
class StyledSource;
class WorkProgress;

/// What the export needs beside the editor.
struct ExportParts {
    const StyledSource &coloured; ///< of the document
    DocumentView &view;
    WorkProgress &progress;
};

/// Asks for a file and writes the text there: in another line-end form in the document's encoding, or
/// coloured. The document, its name and its Modified flag stay. What the user stops, or what fails, leaves
/// what stood under the name. Colours over the document's own file are asked about.
/// @throws RunTimeError when the file cannot be written
void ExportText(ExportFormat format, const EditorContext &editor, const ExportParts &parts);

} // namespace zelvane
