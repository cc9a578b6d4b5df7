// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"

#include <QString>

namespace zelvane
{

struct DocumentSteps;
struct EditorContext;

// Edits of a command that come with their colours. The rest of the text keeps its own.

/// Puts a text in place of the selection and colours it.
void InsertColoured(EditorContext &editor, const DocumentSteps &steps, const QString &text);
/// Colours the lines of a stretch, whole: what has changed there may be part of a longer word.
void ColourLines(EditorContext &editor, const DocumentSteps &steps, TextSpan changed);

} // namespace zelvane
