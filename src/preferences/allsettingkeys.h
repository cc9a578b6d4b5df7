// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/consolekeys.h"
#include "instruments/instrumentkeys.h"
#include "language/languagekeys.h"
#include "player/playerkeys.h"
#include "repository/repositorykeys.h"
#include "run/runkeys.h"
#include "shell/documentkeys.h"
#include "shell/editorkeys.h"
#include "shell/findkeys.h"
#include "shell/layoutkeys.h"
#include "shell/mailboxkeys.h"
#include "shell/toolkeys.h"
#include "texttools/insertkeys.h"
#include "writing/findinfileskeys.h"
#include "writing/writingkeys.h"

namespace zelvane
{

/// Calls `visit` with each key of section "Options", each of its own type; a row of numbered keys comes once.
template <typename Visit> void ForEachSettingKey(Visit &&visit)
{
#define ZELVANE_VISIT_SETTING(Type, Name, ...) visit(Keys::Name);
    ZELVANE_LAYOUT_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_EDITOR_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_DOCUMENT_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_MAILBOX_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_FIND_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_TOOL_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_LANGUAGE_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_RUN_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_CONSOLE_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_PLAYER_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_INSTRUMENT_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_REPOSITORY_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_INSERT_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_WRITING_KEYS(ZELVANE_VISIT_SETTING)
    ZELVANE_FIND_IN_FILES_KEYS(ZELVANE_VISIT_SETTING)
#undef ZELVANE_VISIT_SETTING
}

} // namespace zelvane
