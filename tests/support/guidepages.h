// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace zelvane::test
{

/// A page of the guide, such as "presets"; empty when there is none.
inline QString GuidePage(const QString &name)
{
    QFile file(QStringLiteral(ZELVANE_SOURCE_DIR "/docs/guide/") + name + QStringLiteral(".md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The fenced blocks of one language in a text, in order.
inline QStringList FencedBlocks(const QString &text, const QString &language)
{
    static const QRegularExpression fence(QStringLiteral("^```([a-z-]+)\\n(.*?)^```$"),
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::DotMatchesEverythingOption);
    QStringList blocks;
    for (auto found = fence.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch block = found.next();
        if (block.captured(1) == language)
            blocks.append(block.captured(2));
    }
    return blocks;
}

/// The fenced blocks of one language in all pages of the guide.
inline QStringList GuideBlocks(const QString &language)
{
    QStringList blocks;
    const QDir folder(QStringLiteral(ZELVANE_SOURCE_DIR "/docs/guide"));
    for (const QString &page : folder.entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name))
        blocks += FencedBlocks(GuidePage(page.chopped(3)), language);
    return blocks;
}

} // namespace zelvane::test
