// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace zelvane::oracle
{

/// What has to be the same in two texts of which one takes the place of the other: its characters without
/// regard to case, blanks and comment marks, each with its class. All characters outside ASCII are one, but
/// for those with an ASCII letter as their other case.
struct ClassedCharacters {
    QString characters;
    QByteArray classes;
};

inline QChar ComparedCharacter(QChar c)
{
    for (const QChar other : {c, c.toLower(), c.toUpper()}) {
        if (other.unicode() < 0x80)
            return other.toLower();
    }
    return u'\u00e9';
}

inline ClassedCharacters ClassedCharactersOf(const QString &text, const QByteArray &classes)
{
    ClassedCharacters core;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (QStringLiteral(" \t\n;/*").contains(text[i]) || text[i].isLowSurrogate())
            continue;
        core.characters += ComparedCharacter(text[i]);
        core.classes += classes[i];
    }
    return core;
}

/// The classes of a text's bytes in UTF-8: each as often as its character has bytes.
inline QByteArray ClassesOfBytes(const QString &text, const QByteArray &classes)
{
    QByteArray wide;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isLowSurrogate())
            wide += QByteArray(text.mid(i, text[i].isHighSurrogate() ? 2 : 1).toUtf8().size(), classes[i]);
    }
    return wide;
}

} // namespace zelvane::oracle
