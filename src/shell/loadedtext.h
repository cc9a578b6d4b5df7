// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"
#include "shell/changedondisk.h"
#include "shell/document.h"

#include <QString>

namespace zelvane
{

/// The text of a file as the text control holds it, with what was found out about it.
struct LoadedText {
    DiskPicture picture = {};
    QString text = {};
    TextEncoding encoding = {};
    LineEndForm form = LineEndForm::Pc;
    bool holdsNul = false;
};

/// @throws RunTimeError when the file cannot be read, or is larger than offsets in a text can tell
LoadedText LoadTextFile(const QString &name);

} // namespace zelvane
