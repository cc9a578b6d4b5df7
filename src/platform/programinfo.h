// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace zelvane
{

/// The application title: caption of the main window, default title of every box, name of the settings store.
inline constexpr char16_t AppTitle[] = u"Zelvane";

/// The application title as a string object.
inline QString ApplicationTitle()
{
    return QString::fromUtf16(AppTitle);
}

/// The three version numbers, joined by dots.
QString ProgramVersion();

/// The legal line of the program: who holds the rights, and the licence.
QString LegalLine();

/// The project's page, and the address that bug reports and comments go to.
inline constexpr char16_t WebAddress[] = u"https://zelvane.example.org/";
inline constexpr char16_t AuthorAddress[] = u"zelvane@example.org";

} // namespace zelvane
