// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

/// Tags and the layout of a unified file as loops over single characters and lines.
namespace zelvane::oracle
{

/// From `start` on, `count` characters as far as the text has them.
inline QString Characters(const QString &text, int start, int count)
{
    QString taken;
    for (int i = start; i < start + count; ++i)
        if (i < text.size())
            taken += text[i];
    return taken;
}

/// The offset of the first hit, -1 when there is none.
inline int Search(const QString &text, const QString &wanted, bool ignoreCase)
{
    for (int i = 0; i + wanted.size() <= text.size(); ++i) {
        const QString here = Characters(text, i, int(wanted.size()));
        if (here == wanted || (ignoreCase && here.toLower() == wanted.toLower()))
            return i;
    }
    return -1;
}

/// No value for the run-time error of a length below 0.
inline std::optional<QString> ExtractTag(const QString &text, const QString &tag)
{
    const int open = Search(text, QStringLiteral("<") + tag + QStringLiteral(">"), false);
    const int close = Search(text, QStringLiteral("</") + tag + QStringLiteral(">"), false);
    if (open < 0 || close < 0)
        return QString();
    const int behind = open + int(tag.size()) + 2;
    if (close - behind < 0)
        return std::nullopt;
    return Characters(text, behind, close - behind);
}

inline QString UnifiedText(const QString &orchestra, const QString &score)
{
    const auto tag = [](const char *name) { return QString(u'<' + QLatin1String(name) + u'>'); };
    const QStringList lines = {tag("CsoundSynthesizer"), tag("CsOptions"),         QString(),
                               tag("/CsOptions"),        tag("CsInstruments"),     orchestra,
                               tag("/CsInstruments"),    tag("CsScore"),           score,
                               tag("/CsScore"),          tag("/CsoundSynthesizer")};
    QString text;
    for (int i = 0; i < lines.size(); ++i) {
        text += lines[i];
        if (i != lines.size() - 1)
            text += QLatin1Char('\n');
    }
    return text;
}

} // namespace zelvane::oracle
