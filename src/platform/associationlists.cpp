// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/associationlists.h"

#include <cstddef>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

namespace
{

/// The lines of a list of associations, and which of them are a group's.
struct Lines {
    QByteArrayList all;
    std::vector<qsizetype> own; ///< the group's lines, heads left out
    qsizetype end = -1;         ///< where another line of the group goes; -1 when there is no group

    Lines(const QByteArray &list, const QByteArray &group) : all(list.split('\n'))
    {
        if (all.constLast().isEmpty())
            all.removeLast();
        int groups = 0;
        bool inside = false;
        for (qsizetype i = 0; i < all.size(); ++i) {
            const QByteArray line = all[i].trimmed();
            if (line.startsWith('[')) {
                inside = line == '[' + group + ']';
                groups += inside ? 1 : 0;
            } else if (inside) {
                own.push_back(i);
            }
            if (inside && groups == 1 && !line.isEmpty())
                end = i + 1;
        }
    }

    /// The lines of a type in the group.
    std::vector<qsizetype> Find(const QByteArray &type) const
    {
        std::vector<qsizetype> found;
        for (const qsizetype line : own) {
            const qsizetype equals = all[line].indexOf('=');
            if (equals >= 0 && all[line].left(equals).trimmed() == type)
                found.push_back(line);
        }
        return found;
    }

    /// What these lines name, each once.
    QByteArrayList Entries(const std::vector<qsizetype> &lines) const
    {
        QByteArrayList entries;
        for (const qsizetype line : lines)
            for (const QByteArray &entry : all[line].mid(all[line].indexOf('=') + 1).trimmed().split(';'))
                if (!entry.isEmpty() && !entries.contains(entry))
                    entries.append(entry);
        return entries;
    }

    /// Puts one line in the place of these; none when it names nothing.
    void Replace(const std::vector<qsizetype> &lines, const QByteArray &type, const QByteArrayList &entries)
    {
        for (size_t i = lines.size(); i-- > 1;)
            all.removeAt(lines[i]);
        if (entries.isEmpty())
            all.removeAt(lines.front());
        else
            all[lines.front()] = Line(type, entries);
    }

    static QByteArray Line(const QByteArray &type, const QByteArrayList &entries)
    {
        return type + '=' + entries.join(';') + ';';
    }

    QByteArray Text() const { return all.isEmpty() ? QByteArray() : all.join('\n') + '\n'; }
};

QByteArrayList Without(QByteArrayList list, const QByteArrayList &entries)
{
    list.removeIf([&](const QByteArray &entry) { return entries.contains(entry); });
    return list;
}

} // namespace

QByteArray WithAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                            const QByteArrayList &entries)
{
    QByteArray text = list;
    for (const QByteArray &type : types) {
        Lines lines(text, group);
        if (const auto found = lines.Find(type); !found.empty()) {
            lines.Replace(found, type, entries + Without(lines.Entries(found), entries));
        } else {
            if (lines.end < 0) {
                if (!lines.all.isEmpty() && !lines.all.constLast().trimmed().isEmpty())
                    lines.all.append(QByteArray());
                lines.all.append('[' + group + ']');
                lines.end = lines.all.size();
            }
            lines.all.insert(lines.end, Lines::Line(type, entries));
        }
        text = lines.Text();
    }
    return text;
}

QByteArray WithoutAssociations(const QByteArray &list, const QByteArray &group, const QByteArrayList &types,
                               const QByteArrayList &entries)
{
    QByteArray text = list;
    for (const QByteArray &type : types) {
        Lines lines(text, group);
        const auto found = lines.Find(type);
        const QByteArrayList before = lines.Entries(found);
        const QByteArrayList after = Without(before, entries);
        if (after == before)
            continue;
        lines.Replace(found, type, after);
        text = lines.Text();
    }
    return text;
}

QByteArrayList TypesIn(const QByteArray &list, const QByteArray &group, const QByteArrayList &types)
{
    const Lines lines(list, group);
    QByteArrayList found = types;
    found.removeIf([&](const QByteArray &type) { return lines.Find(type).empty(); });
    return found;
}

} // namespace zelvane
