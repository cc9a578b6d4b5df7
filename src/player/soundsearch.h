// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"

#include <QString>
#include <vector>

namespace zelvane
{

struct EditorContext;

/// The rows of every dialog that asks for a sound.
std::vector<FileFilter> SoundFilters();

/// The sound file of the current document: a file of its bare name and one of three extensions, beside it, in
/// SFDIR or in SSDIR, else what the user picks. A failure on the way is shown.
/// @param silent asks nothing
/// @return empty when there is none, when the user cancelled, and without a document on disk
QString SearchSoundFile(bool silent, EditorContext &editor);

} // namespace zelvane
