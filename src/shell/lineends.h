// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"

#include <QString>
#include <QStringView>

namespace zelvane
{

/// The line-end form of a text by its first line end. The last character is not looked at, so a text whose
/// only line end is its very last character is Pc, and so is a text without a line end.
LineEndForm DetectPlatform(QStringView text);

/// "PC", "UNIX" or "MAC".
QString PlatformName(LineEndForm form);

/// The text with every CR replaced by LF. A CR LF becomes two line ends: the form of the first line end
/// decides for the whole text.
QString MacToUnix(QString text);

/// The text with CR LF and lone CR turned into LF, in place where the string is not shared: the form the text
/// control holds.
QString ToLineFeeds(QString text);

/// The line ends of a file as the text control holds them. @param form as detected
QString FromLineEnds(QString text, LineEndForm form);

/// Every LF that no CR stands before becomes CR LF; lone CR stays.
QString ToPcLineEnds(QStringView text);
/// CR LF and lone CR become LF.
QString ToUnixLineEnds(QStringView text);
/// CR LF and lone LF become CR.
QString ToMacLineEnds(QStringView text);

} // namespace zelvane
