// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"
#include "shell/findtext.h"

#include <functional>
#include <QString>

namespace zelvane
{

/// Searches from the end of the selection, with `wrap` also from the start of the text; selects the hit and
/// tells it in the status line, or tells that there is none, or what is wrong with a regular expression. An
/// empty hit where the caret stands is passed over. @return whether there was a hit
bool FindNextText(EditorContext &editor, const QString &needle, bool wrap, FindOptions options);

/// Tells what is wrong with a regular expression. @return whether all is well with it
bool TellBadPattern(EditorContext &editor, const QString &expression, const QString &error);
/// Tells that a search for a regular expression was given up.
void TellHardPattern(EditorContext &editor, const QString &expression);
/// How long a search that the user waits for may take before it is given up: asked by PatternSearch. It is
/// the time on the wall, however busy the machine is: the window does not answer meanwhile.
std::function<bool()> StopWhenLong();

/// Find Again: the newest recent string with the stored options, never wrapping.
void FindAgain(EditorContext &editor);

} // namespace zelvane
