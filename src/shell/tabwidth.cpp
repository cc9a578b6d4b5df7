// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/tabwidth.h"

#include "shell/editorkeys.h"
#include "shell/settings.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

int TabWidth(const SettingsStore &settings)
{
    return std::min(settings.Integer(Keys::TabSpaces), WidestTab);
}

QString IndentUnit(const SettingsStore &settings)
{
    return settings.Flag(Keys::TabInsertSpaces) ? QString(std::max(0, TabWidth(settings)), u' ') : u"\t"_s;
}

} // namespace zelvane
