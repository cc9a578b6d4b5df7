// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"

#include <QString>

namespace zelvane
{

struct DocumentRecord;
class SettingsStore;

/// The Open and Save dialogs. They begin where the document lies or the last one was picked, and keep the
/// folder of the answer. @return the path, cut at the first NUL and trimmed, empty after Cancel
QString AskOpenPath(const DocumentRecord &document, SettingsStore &settings, Desktop &desktop);
QString AskSavePath(const DocumentRecord &document, SettingsStore &settings, Desktop &desktop);

/// A warning with Yes and No.
bool AskYesNo(Desktop &desktop, const QString &question, BoxAnswer byDefault);

} // namespace zelvane
