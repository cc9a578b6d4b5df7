// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/profilefile.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <vector>

// The rules of the repository files as plain loops, step by step.

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

/// The nodes of a tree, made one after the other: each with its key, its text and the number
/// of the node above it, -1 for none.
struct PlainNode {
    QString key, text;
    bool fragment;
    int above;
};

struct PlainFragment {
    QString name;
    std::optional<QString> author, category;
};

inline std::vector<PlainNode> TreeByLoop(const std::vector<PlainFragment> &fragments, int view)
{
    std::vector<PlainNode> nodes;
    const auto group = [&](const QString &key, const QString &text, int above) {
        for (int i = 0; i < int(nodes.size()); ++i) {
            if (!nodes[i].fragment && nodes[i].key == key)
                return i; // the key is there already
        }
        nodes.push_back({key, text, false, above});
        return int(nodes.size()) - 1;
    };
    for (const PlainFragment &fragment : fragments) {
        const QString category = fragment.category.value_or(QStringLiteral("General"));
        const QString author = fragment.author.value_or(QStringLiteral("Unknown"));
        int above = -1;
        if (view == 1)
            above = group(category, category, -1);
        if (view == 2) {
            const int first = group(category, category, -1);
            above = group(category + author, author, first);
        }
        if (view == 3) {
            const QString general = fragment.author.value_or(QStringLiteral("General"));
            above = group(general, general, -1);
        }
        if (view == 4) {
            const int first = group(author, author, -1);
            above = group(author + category, category, first);
        }
        nodes.push_back({{}, fragment.name, true, above});
    }
    return nodes;
}

} // namespace zelvane::test
