// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/ui/instrumentsroom.h"
#include "language/ui/languageroom.h"
#include "player/ui/fileroom.h"
#include "player/ui/playerroom.h"
#include "preferences/ui/preferencesroom.h"
#include "repository/ui/repositoryroom.h"
#include "run/ui/runroom.h"
#include "shell/ui/windowcontext.h"
#include "texttools/ui/texttoolsroom.h"
#include "writing/ui/writingroom.h"

namespace zelvane
{

/// The rooms of the window. Each plugs itself in when it is made: a new one is one line here.
struct RoomList {
    const WindowContext &context;
    LanguageRoom language{context};
    RunRoom run{context};
    PlayerRoom player{context};
    FileRoom files{context, player.ThePlayer()};
    TextToolsRoom textTools{context};
    InstrumentsRoom instruments{context};
    RepositoryRoom repository{context};
    WritingRoom writing{context, language.Opcodes()};
    PreferencesRoom preferences{context};
};

} // namespace zelvane
