// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/oracle/encodingoracle.h"

#include <algorithm>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

/// A settings file read line by line, and what each write makes of what it holds.
namespace zelvane::oracle
{

struct ProfileSection {
    QString name;
    std::vector<std::pair<QString, QString>> entries;

    bool operator==(const ProfileSection &) const = default;
};
using ProfileSections = std::vector<ProfileSection>;

inline bool SameName(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

inline QString UnescapeProfile(const QByteArray &bytes)
{
    const QString text = Decode(bytes).text;
    QString result;
    qsizetype i = 0;
    while (i < text.size()) {
        const QString two = text.mid(i, 2);
        const QString digits = text.mid(i + 2, 4);
        const bool isCode = two == QStringLiteral("\\u") && digits.size() == 4 &&
                            std::all_of(digits.begin(), digits.end(), [](QChar c) {
                                return QStringLiteral("0123456789abcdefABCDEF").contains(c);
                            });
        const qsizetype escape =
            QStringList({QStringLiteral("\\\\"), QStringLiteral("\\n"), QStringLiteral("\\r"),
                         QStringLiteral("\\t"), QStringLiteral("\\s")})
                .indexOf(two);
        if (isCode) {
            result = result + QChar(digits.toUShort(nullptr, 16));
            i = i + 6;
        } else if (escape >= 0) {
            result = result + QStringLiteral("\\\n\r\t ")[escape];
            i = i + 2;
        } else {
            result = result + text[i];
            i = i + 1;
        }
    }
    return result;
}

inline QByteArray TrimProfile(QByteArray bytes)
{
    while (bytes.startsWith(' ') || bytes.startsWith('\t'))
        bytes = bytes.mid(1);
    while (bytes.endsWith(' ') || bytes.endsWith('\t'))
        bytes.chop(1);
    return bytes;
}

/// The lines of a file, blanks and line ends gone. A CR is part of the line end where an LF follows.
inline std::vector<QByteArray> ProfileLines(QByteArray bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.mid(3);
    std::vector<QByteArray> lines;
    while (!bytes.isEmpty()) {
        const qsizetype feed = bytes.indexOf('\n');
        QByteArray line = feed < 0 ? bytes : bytes.left(feed);
        if (feed > 0 && line.endsWith('\r'))
            line.chop(1);
        lines.push_back(TrimProfile(line));
        bytes = feed < 0 ? QByteArray() : bytes.mid(feed + 1);
    }
    return lines;
}

inline bool IsSectionLine(const QByteArray &line)
{
    return line.startsWith('[') && line.lastIndexOf(']') > 0;
}
inline bool IsEntryLine(const QByteArray &line)
{
    return !line.startsWith('[') && !line.startsWith(';') && !line.startsWith('#') && line.contains('=');
}

inline ProfileSections ReadProfile(const QByteArray &bytes)
{
    ProfileSections sections;
    qsizetype current = -1;
    for (const QByteArray &line : ProfileLines(bytes)) {
        if (IsSectionLine(line)) {
            const QString name = UnescapeProfile(TrimProfile(line.mid(1, line.lastIndexOf(']') - 1)));
            current = 0;
            while (current < qsizetype(sections.size()) && !SameName(sections[size_t(current)].name, name))
                ++current;
            if (current == qsizetype(sections.size()))
                sections.push_back({name, {}});
        } else if (IsEntryLine(line) && current >= 0) {
            auto &entries = sections[size_t(current)].entries;
            const QString key = UnescapeProfile(TrimProfile(line.left(line.indexOf('='))));
            const QString value = UnescapeProfile(TrimProfile(line.mid(line.indexOf('=') + 1)));
            const bool there = std::any_of(entries.begin(), entries.end(),
                                           [&](const auto &entry) { return SameName(entry.first, key); });
            if (!there)
                entries.emplace_back(key, value);
        }
    }
    return sections;
}

/// The lines that are neither empty nor understood, which no write touches.
inline std::vector<QByteArray> OtherProfileLines(const QByteArray &bytes)
{
    std::vector<QByteArray> others;
    bool inSection = false;
    for (const QByteArray &line : ProfileLines(bytes)) {
        inSection = inSection || IsSectionLine(line);
        if (!line.isEmpty() && !IsSectionLine(line) && !(inSection && IsEntryLine(line)))
            others.push_back(line);
    }
    return others;
}

inline void SetProfileValue(ProfileSections &sections, const QString &section, const QString &key,
                            const QString &value)
{
    auto found = std::find_if(sections.begin(), sections.end(),
                              [&](const ProfileSection &s) { return SameName(s.name, section); });
    if (found == sections.end())
        found = sections.insert(found, {section, {}});
    for (auto &entry : found->entries) {
        if (SameName(entry.first, key)) {
            entry.second = value;
            return;
        }
    }
    found->entries.emplace_back(key, value);
}

inline void RemoveProfileKey(ProfileSections &sections, const QString &section, const QString &key)
{
    for (ProfileSection &candidate : sections) {
        if (SameName(candidate.name, section))
            std::erase_if(candidate.entries, [&](const auto &entry) { return SameName(entry.first, key); });
    }
}

inline void RemoveProfileSection(ProfileSections &sections, const QString &section)
{
    std::erase_if(sections, [&](const ProfileSection &s) { return SameName(s.name, section); });
}

} // namespace zelvane::oracle
