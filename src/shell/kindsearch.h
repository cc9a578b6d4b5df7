// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QString>

namespace zelvane
{

struct EditorContext;

/// The file of a kind that belongs to the current document: the document itself where it is of that kind,
/// else a file of the same bare name in the document's folder (for MIDI and sound also in SSDIR and SFDIR),
/// else what the user picks. A score in a unified document is one blank: the file itself stands for it
/// already.
/// @param similar also take the only file whose name begins with that of the document, up to 3 characters
/// less
/// @param silent take the first similar file and ask nothing
/// @return empty when there is none, when the user cancelled, or without a document on disk
QString SearchKindFile(FileKind kind, bool similar, bool silent, EditorContext &context);

} // namespace zelvane
