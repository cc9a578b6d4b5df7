// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The rules of line ends as plain loops that rebuild the text at each step.
namespace oracle
{

/// Every lone LF becomes CR LF; a first-character LF gets a CR in front.
inline QString ToPc(QString text)
{
    qsizetype i = 0;
    while ((i = text.indexOf(u'\n', i)) >= 0) {
        if (i == 0 || text[i - 1] != u'\r') {
            text = text.left(i) + u'\r' + text.mid(i);
            ++i;
        }
        ++i;
    }
    return text;
}

/// CR LF becomes LF, then every CR that is left becomes LF.
inline QString ToUnix(QString text)
{
    qsizetype i = 0;
    while ((i = text.indexOf(QStringLiteral("\r\n"), i)) >= 0) {
        text = text.left(i) + text.mid(i + 1);
        ++i;
    }
    while ((i = text.indexOf(u'\r')) >= 0)
        text = text.left(i) + u'\n' + text.mid(i + 1);
    return text;
}

/// CR LF becomes CR, then every LF that is left becomes CR. The marks keep the two apart.
inline QString ToMac(QString text)
{
    const QChar mark(0xE000);
    qsizetype i = 0;
    while ((i = text.indexOf(QStringLiteral("\r\n"))) >= 0)
        text = text.left(i) + mark + text.mid(i + 2);
    while ((i = text.indexOf(u'\n')) >= 0)
        text = text.left(i) + u'\r' + text.mid(i + 1);
    return text.replace(mark, u'\r');
}

/// 0 PC, 1 UNIX, 2 MAC. The walk counts from 1 and stops before the last character.
inline int DetectPlatform(const QString &text)
{
    for (qsizetype i = 1; i < text.size(); ++i) {
        if (text.mid(i - 1, 1) == QStringLiteral("\n"))
            return 1;
        if (text.mid(i - 1, 1) == QStringLiteral("\r"))
            return text.mid(i, 1) == QStringLiteral("\n") ? 0 : 2;
    }
    return 0;
}

} // namespace oracle
