// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/repositorytree.h"

#include "platform/profilefile.h"
#include "repository/fragmenttext.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileInfoList>
#include <QHash>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The groups of a fragment, from the outer one in.
QStringList GroupsOf(const ProfileFile &file, const QString &name, RepositoryView view)
{
    const auto value = [&](QStringView key, const QString &missing) {
        return file.Value(name, key).value_or(missing).left(ReadLimit);
    };
    const QString general = u"General"_s;
    switch (view) {
    case RepositoryView::Name:
        return {};
    case RepositoryView::Category:
        return {value(u"Category", general)};
    case RepositoryView::CategoryAuthor:
        return {value(u"Category", general), value(u"Author", u"Unknown"_s)};
    case RepositoryView::Author:
        return {value(u"Author", general)}; // kept: here alone a missing author is "General"
    case RepositoryView::AuthorCategory:
        return {value(u"Author", u"Unknown"_s), value(u"Category", general)};
    }
    return {};
}

class TreeBuilder
{
public:
    explicit TreeBuilder(RepositoryTree &tree) : m_tree(tree) {}

    /// @return the group of these texts, which is made where it is missing; -1 without texts
    qsizetype Group(const QStringList &texts)
    {
        qsizetype group = -1;
        QString key;
        for (const QString &text : texts) {
            key += text;
            const auto found = m_groups.constFind(key);
            group = found != m_groups.constEnd() ? *found : Add({.key = key, .text = text, .parent = group});
            m_groups.insert(key, group);
        }
        return group;
    }

    qsizetype Add(RepositoryNode node)
    {
        const qsizetype number = qsizetype(m_tree.nodes.size());
        (node.parent < 0 ? m_tree.roots : m_tree.nodes[size_t(node.parent)].children).push_back(number);
        m_tree.nodes.push_back(std::move(node));
        return number;
    }

    void SortGroups()
    {
        for (RepositoryNode &node : m_tree.nodes)
            std::stable_sort(node.children.begin(), node.children.end(), [this](qsizetype a, qsizetype b) {
                return SortsBefore(m_tree.nodes[size_t(a)].text, m_tree.nodes[size_t(b)].text);
            });
    }

private:
    RepositoryTree &m_tree;
    QHash<QString, qsizetype> m_groups;
};

} // namespace

bool SortsBefore(const QString &text, const QString &other)
{
    return text.compare(other, Qt::CaseInsensitive) < 0;
}

QStringList RepositoryFiles(const QString &folder)
{
    QStringList files;
    // A login may begin with a dot, and the name of its file with it.
    const QFileInfoList found =
        QDir(folder).entryInfoList({u"*.csr"_s}, QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &file : found)
        files += QDir::toNativeSeparators(file.filePath());
    return files;
}

RepositoryTree BuildRepositoryTree(const QStringList &files, RepositoryView view)
{
    RepositoryTree tree;
    TreeBuilder builder(tree);
    for (const QString &path : files) {
        if (!QFile(path).open(QIODevice::ReadOnly))
            tree.unread += path;
        const ProfileFile file(path, ProfileText::Plain);
        QStringList names = file.SectionNames();
        names.removeAll(QString()); // a fragment without a name cannot be asked for
        const qsizetype shown = NamesWithinLimit(names);
        if (shown < names.size())
            tree.cut.push_back({path, shown, names.size()});
        for (const QString &name : names.first(shown))
            builder.Add({.text = name, .file = path, .parent = builder.Group(GroupsOf(file, name, view))});
    }
    builder.SortGroups();
    return tree;
}

std::optional<qsizetype> FindFragment(const QStringList &names, const QString &start)
{
    const auto first = [&](const auto &fits) -> std::optional<qsizetype> {
        const auto found = std::find_if(names.begin(), names.end(), fits);
        return found == names.end() ? std::nullopt : std::optional(found - names.begin());
    };
    const auto equal =
        first([&](const QString &name) { return name.compare(start, Qt::CaseInsensitive) == 0; });
    return equal ? equal
                 : first([&](const QString &name) { return name.startsWith(start, Qt::CaseInsensitive); });
}

} // namespace zelvane
