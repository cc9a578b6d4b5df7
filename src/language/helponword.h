// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

struct EditorContext;
class Desktop;

/// What is asked of a help viewer: a page for a keyword, or the contents.
enum class HelpCommand { Keyword, Contents };

/// Opens a help file at a keyword or at its contents. A help file that is a program is started with the
/// command and the word as arguments ("-k" and the word, or "-c"); any other goes to the desktop's default
/// program for it.
void OpenHelp(Desktop &desktop, const QString &file, HelpCommand command, const QString &word = {});

/// The command `mnuCsHelp`: help on the selected word. A help file "*.hlp" is opened at the word if the
/// document has a name and several characters are selected; any other file is opened by the shell. Without a
/// help file in the settings the user is offered the Preferences dialog.
void HelpOnWord(EditorContext &editor);

} // namespace zelvane
