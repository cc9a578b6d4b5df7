// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/profilefile.h"

#include <QString>
#include <QStringList>

// The loops of the repository files, as they are told.

namespace zelvane::test
{

/// Looks at each character but the last, and rebuilds the text at each line end and tab.
inline QString EscapedByLoop(QString text)
{
    const QString newLine = QStringLiteral("\\n");
    const QString tab = QStringLiteral("\\t");
    for (int i = 1; i < text.size(); ++i) { // the character at i is text[i - 1]
        const QChar c = text[i - 1];
        if (c == QLatin1Char('\n')) {
            const bool pair = i > 1 && text[i - 2] == QLatin1Char('\r');
            const int first = pair ? i - 2 : i - 1;
            text = text.left(first) + newLine + text.mid(i);
            i = first + 2;
        } else if (c == QLatin1Char('\t')) {
            text = text.left(i - 1) + tab + text.mid(i);
            ++i;
        }
    }
    return text;
}

/// At each backslash looks at what follows it.
inline QString UnescapedByLoop(const QString &line)
{
    QString text;
    QString rest = line;
    for (;;) {
        const auto at = rest.indexOf(QLatin1Char('\\'));
        if (at < 0)
            return text + rest;
        text += rest.left(at);
        rest = rest.mid(at);
        if (rest.mid(1, 1) == QStringLiteral("n")) {
            text += QStringLiteral("\r\n");
            rest = rest.mid(2);
        } else if (rest.mid(1, 1) == QStringLiteral("t")) {
            text += QStringLiteral("\t");
            rest = rest.mid(2);
        } else {
            text += QStringLiteral("\\");
            rest = rest.mid(1);
        }
    }
}

/// Puts a whole section into a buffer, cuts the buffer, and reads it again.
inline ProfileEntries SectionThroughBuffer(const ProfileEntries &entries, int size)
{
    QString buffer;
    for (const auto &[key, value] : entries)
        buffer += key + QLatin1Char('=') + value + QChar(u'\0');
    const bool fits = buffer.size() <= size;
    buffer = buffer.left(size);
    ProfileEntries read;
    QStringList lines = buffer.split(QChar(u'\0'));
    if (fits || lines.last().isEmpty())
        lines.removeLast();
    for (const QString &line : lines) {
        const auto equals = line.indexOf(QLatin1Char('='));
        if (equals >= 0)
            read.emplace_back(line.left(equals), line.mid(equals + 1));
    }
    return read;
}

} // namespace zelvane::test
