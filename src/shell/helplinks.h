// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "shell/command.h"

#include <array>
#include <QString>

namespace zelvane
{

/// The addresses behind `mnuLinks`: the front page of the Csound book, a Csound variant, the download of
/// Csound, its manual.
inline constexpr std::array<const char16_t *, 4> CsoundLinks = {
    u"https://mitpress.mit.edu/9780262522618/the-csound-book/",
    u"https://www.csounds.com/maldonado/",
    u"https://csound.com/download.html",
    u"https://csound.com/docs/manual/index.html",
};

/// The program's own help: the file named after the executable in the program's folder, ".chm" if there is
/// one, else ".html". A failure is told.
void OpenAppHelp(Desktop &desktop, const QString &programFolder, const QString &executable);

/// Opens the address behind an entry of `mnuLinks`.
void OpenCsoundLink(WebLink link, Desktop &desktop);

} // namespace zelvane
