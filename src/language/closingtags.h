// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>
#include <vector>

namespace zelvane
{

/// The closing tags ("</", a name, ">") of a text, found by name. To make it and to ask for the names of tags
/// that do not overlap takes time linear in the text.
class ClosingTags
{
public:
    /// @param text has to outlive this
    explicit ClosingTags(QStringView text);

    /// The offset, from 0, of the first closing tag of a name at or behind `from`; -1 without one.
    qsizetype Find(QStringView name, qsizetype from) const;

private:
    /// A name is known by its hash: many can end at the same bracket, and each be as long as the text.
    struct Tag {
        quint64 hash;
        qint32 start;
        qint32 bracket;

        QStringView Name(QStringView text) const { return text.sliced(start + 2, bracket - start - 2); }
    };

    QStringView m_text;
    std::vector<Tag> m_tags; ///< by hash, then by start
};

} // namespace zelvane
