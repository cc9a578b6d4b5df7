// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/stylerun.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The opcode walk, the opcode lookup and the three scans as plain loops over a string that counts from 1,
/// one select and one apply for each token. Slow and obvious; nothing but tests uses them.
namespace zelvane::test::oracle
{

/// The string functions of the loops: positions count from 1, and a part that reaches past the end is what
/// there is.
inline QString Mid(const QString &text, qsizetype position, qsizetype length)
{
    return position > text.size() ? QString() : text.mid(position - 1, length);
}
inline qsizetype InStr(qsizetype from, const QString &text, const QString &part)
{
    return from > text.size() ? 0 : text.indexOf(part, from - 1) + 1;
}

/// A caption's spaces, one replacement after the other.
inline QString NormalizeSpaces(QString text)
{
    const QString blank = QStringLiteral(" ");
    for (const QString &separator : {QStringLiteral("\t"), QStringLiteral("\n"), QStringLiteral("\r")})
        text.replace(separator, blank);
    while (text.startsWith(blank))
        text.remove(0, 1);
    while (text.endsWith(blank))
        text.chop(1);
    while (text.contains(QStringLiteral("  ")))
        text.replace(QStringLiteral("  "), blank);
    return text;
}

struct OpcodeWalkResult {
    QString opcodeWords;
    QStringList words;
};

inline OpcodeWalkResult WalkOpcodes(const QString &file)
{
    const auto isSeparator = [&file](qsizetype i) {
        const QString c = Mid(file, i, 1);
        return c == QStringLiteral(" ") || c == QStringLiteral("\t") || c == QStringLiteral("\r") ||
               c == QStringLiteral("\n");
    };
    OpcodeWalkResult result{QStringLiteral(" "), {}};
    qsizetype length = 0;
    qsizetype i = 1;
    while (i <= file.size()) {
        if (isSeparator(i)) {
            i = i + 1;
            continue;
        }
        const qsizetype s = i;
        qsizetype j = s;
        while (j <= file.size() && !isSeparator(j))
            j = j + 1;
        if (j <= file.size())
            length = j - s;
        i = j;
        const QString word = Mid(file, s, length);
        result.opcodeWords = result.opcodeWords + QStringLiteral(" ") + word;
        result.words.append(word);
    }
    return result;
}

inline bool IsOpcode(const QString &opcodeWords, const QString &word)
{
    return InStr(1, opcodeWords, QStringLiteral(" ") + word + QStringLiteral(" ")) > 0;
}

/// The system's letter test, by the bytes of its code page.
inline bool IsLetter(char16_t c)
{
    static const QString letters =
        QStringLiteral("\u0192\u0160\u0152\u017D\u0161\u0153\u017E\u0178\u00AA\u00B5\u00BA"
                       "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") +
        [] {
            QString high;
            for (char16_t h = 0xC0; h <= 0xFF; ++h)
                if (h != 0xD7 && h != 0xF7)
                    high += QChar(h);
            return high;
        }();
    return letters.contains(QChar(c));
}
inline bool IsLetterOrDigit(char16_t c)
{
    return IsLetter(c) || QStringLiteral("0123456789\u00B9\u00B2\u00B3").contains(QChar(c));
}

/// A style for each character, painted token by token.
struct Painting {
    QByteArray styles;
    bool failed = false;

    /// Selects from `first` to `last`, counted from 1 and both included, and applies a class.
    void Apply(qsizetype first, qsizetype last, StyleClass style)
    {
        for (qsizetype i = first; i <= last && i <= styles.size(); ++i)
            styles[i - 1] = char(style);
    }
};

/// One pass over the range, offsets from 0, end exclusive.
inline void HighlightRange(const QString &text, qsizetype start, qsizetype end, int mode,
                           const QString &opcodeWords, Painting &painting)
{
    if (end == 0)
        end = text.size();
    painting.Apply(start + 1, end, StyleClass::Text);

    const auto code = [&text](qsizetype i) { return Mid(text, i, 1).at(0).unicode(); };
    const QString lineFeed = QStringLiteral("\n");
    qsizetype pos = start + 1;
    if (mode == 1 || mode == 2) {
        while (pos < end) {
            const char16_t c = code(pos);
            if (c == 59) {
                const qsizetype feed = InStr(pos, text, lineFeed);
                if (feed == 0)
                    return;
                painting.Apply(pos, feed, StyleClass::Comment);
                pos = feed;
            } else if (c == 47) {
                if (Mid(text, pos + 1, 1) == QStringLiteral("*")) {
                    const qsizetype mark = InStr(pos, text, QStringLiteral("*/"));
                    if (mark == 0)
                        return;
                    painting.Apply(pos, mark + 1, StyleClass::Comment);
                    pos = mark;
                }
            } else if (mode == 1 && IsLetter(c)) {
                qsizetype j = pos + 1;
                while (j < end && code(j) >= 33)
                    j = j + 1;
                if (IsOpcode(opcodeWords, Mid(text, pos, j - pos)))
                    painting.Apply(pos, j - 1, StyleClass::Opcode);
                pos = j;
            } else if (c == 35) {
                const auto directive = [&](const QString &name) {
                    const QString behind = Mid(text, pos + 1 + name.size(), 1);
                    return Mid(text, pos + 1, name.size()) == name &&
                           (behind == QStringLiteral(" ") || behind == QStringLiteral("\t"));
                };
                if (directive(QStringLiteral("define"))) {
                    painting.Apply(pos, pos + 6, StyleClass::Macro);
                    pos = pos + 7;
                } else if (directive(QStringLiteral("include"))) {
                    painting.Apply(pos, pos + 7, StyleClass::Macro);
                    pos = pos + 8;
                }
            } else if (c == 36) {
                qsizetype j = pos + 1;
                for (;;) {
                    if (j > text.size()) {
                        painting.failed = true;
                        return;
                    }
                    if (!IsLetterOrDigit(code(j)))
                        break;
                    j = j + 1;
                }
                painting.Apply(pos, j - 1, StyleClass::Macro);
                pos = j;
            } else if (c == 34) {
                qsizetype j = pos + 1;
                while (j < end && code(j) != 34)
                    j = j + 1;
                painting.Apply(pos, j, StyleClass::Literal);
                pos = j;
            }
            pos = pos + 1;
        }
    } else if (mode == 3) {
        while (pos < end) {
            if (code(pos) == 60 && Mid(text, pos + 1, 1) != QStringLiteral("/")) {
                qsizetype j = pos + 1;
                while (j < end && code(j) != 62)
                    j = j + 1;
                const QString closing =
                    QStringLiteral("</") + Mid(text, pos + 1, j - pos - 1) + QStringLiteral(">");
                const qsizetype found = InStr(j + 1, text, closing);
                if (found > 0) {
                    painting.Apply(found, found + closing.size() - 1, StyleClass::Tag);
                    painting.Apply(pos, j, StyleClass::Tag);
                    pos = j;
                }
            }
            pos = pos + 1;
        }
    }
}

/// The passes over a unified document, one after the other on the same text.
inline void HighlightUnified(const QString &text, const QString &opcodeWords, Painting &painting)
{
    HighlightRange(text, 0, 0, 3, opcodeWords, painting);
    const auto section = [&](const QString &name, int mode) {
        const QString opening = QStringLiteral("<") + name + QStringLiteral(">");
        const qsizetype a = InStr(1, text, opening);
        if (a == 0)
            return;
        const qsizetype b = InStr(a, text, QStringLiteral("</") + name + QStringLiteral(">"));
        if (b > 0)
            HighlightRange(text, a + opening.size() - 1, b - 1, mode, opcodeWords, painting);
    };
    section(QStringLiteral("CsInstruments"), 1);
    section(QStringLiteral("CsScore"), 2);
}

} // namespace zelvane::test::oracle
