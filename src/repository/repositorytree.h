// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// How the fragments are grouped; the numbers are those of the setting.
enum class RepositoryView { Name, Category, CategoryAuthor, Author, AuthorCategory };

/// The captions of the views, in their order.
inline constexpr std::array RepositoryViewCaptions{
    u"&Name", u"&Category", u"Ca&tegory && Author", u"&Author", u"A&uthor && Category",
};

/// A group, or a fragment of a file.
struct RepositoryNode {
    QString key = {};  ///< of a group
    QString text = {}; ///< the caption of a group, the name of a fragment
    QString file = {}; ///< path of a fragment's file; a group has none
    qsizetype parent = -1;
    std::vector<qsizetype> children = {}; ///< in the order of the texts

    bool IsFragment() const { return !file.isEmpty(); }
};

/// A file with more fragments than are read of it.
struct CutFile {
    QString file;
    qsizetype shown;
    qsizetype all;
};

struct RepositoryTree {
    std::vector<RepositoryNode> nodes; ///< in the order of their making
    std::vector<qsizetype> roots;
    std::vector<CutFile> cut;
    QStringList unread; ///< files that cannot be read
};

/// Whether a text stands before another among the children of a group.
bool SortsBefore(const QString &text, const QString &other);

/// The repository files of a folder, by name.
QStringList RepositoryFiles(const QString &folder);

/// Reads the fragments of all the files. Groups are found by one kind of key at both levels, as it always
/// was: where the texts of two groups run into one, they are one.
RepositoryTree BuildRepositoryTree(const QStringList &files, RepositoryView view);

/// The first name that equals `start` without regard to case, else the first that begins with it.
std::optional<qsizetype> FindFragment(const QStringList &names, const QString &start);

} // namespace zelvane
