// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

class SettingsStore;
struct EditorContext;

/// The help file of the settings, else the shipped one, `csound.hlp` in the program's folder, where the
/// manual that it names is there; empty where there is none.
QString HelpFile(const SettingsStore &settings, const QString &programFolder);

/// The command `mnuCsHelp`: help on the selected word. A help file "*.hlp" is opened at the word if the
/// document has a name and several characters are selected; any other file is opened by the shell. Without a
/// help file the user is offered the Preferences dialog.
void HelpOnWord(EditorContext &editor, const QString &programFolder);

} // namespace zelvane
