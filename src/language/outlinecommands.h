// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/outline.h"
#include "shell/editorcontext.h"

#include <QString>

namespace zelvane
{

// What the code outline does with the document. A node is given by its place in the outline.

/// A click on a node: brings its element to the caret and to the top of the view and tells about it in the
/// status line. Nothing moves when the caret is there already, with or without a selection behind it, or for
/// a root.
void ShowOutlineNode(EditorContext &editor, const Outline &outline, qsizetype place);

/// The number of the instrument that a node is, or hangs below; 0 for all other nodes.
qsizetype InstrumentOfNode(const Outline &outline, qsizetype place);

/// Puts an instrument's text on the clipboard with the character behind it: its line end.
void CopyInstrument(EditorContext &editor, const TextSpan &instrument);
/// Asks for a file and writes to it what CopyInstrument copies, and a line end.
/// @param caption the instrument's, which begins with its number
/// @throws RunTimeError when the file cannot be written
void ExportInstrument(EditorContext &editor, const TextSpan &instrument, const QString &caption);

/// Opens an include file in place of the document; tells when there is none.
void OpenInclude(EditorContext &editor, const QString &name);
/// Puts an include file's text in place of the line that includes it; tells when there is none.
/// @param offset in that line, from 0
void InsertInclude(EditorContext &editor, const QString &name, qsizetype offset);

} // namespace zelvane
