// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/findtext.h"

#include <functional>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

/// What to search for, and where.
struct FileSearch {
    QString text = {};
    FindOptions options = FindAnywhere;
    QString folder = {};       ///< absolute
    QStringList patterns = {}; ///< of "*" and "?", for the names of files, without regard to case
    bool subFolders = true;
    qint64 largestFile = 32 * 1024 * 1024; ///< bytes
    qsizetype mostLines = 100'000;         ///< the search ends there

    bool operator==(const FileSearch &) const = default;
};

/// A line that holds what was searched for.
struct FoundLine {
    QString file = {};  ///< absolute path
    qsizetype line = 0; ///< from 1
    QString text = {};  ///< without its line end; of a long one some hundred characters about the hit
    qsizetype from = 0; ///< where the text begins in the line
    TextSpan hit = {};  ///< in the line, as far as it goes there

    bool operator==(const FoundLine &) const = default;
};

/// What a search has come to.
struct SearchCounts {
    int searched = 0;    ///< files
    int files = 0;       ///< of them with a hit
    qsizetype lines = 0; ///< found
    // Passed over:
    int binary = 0;     ///< NUL bytes
    int large = 0;      ///< larger than the bound
    int unreadable = 0; ///< files and folders
    int special = 0;    ///< pipes, devices, sockets
    int hard = 0;       ///< the regular expression takes too long
    bool cut = false;   ///< there may be more lines than the search was to find

    bool operator==(const SearchCounts &) const = default;
};

/// Who asked for a search.
class FileSearchListener
{
public:
    virtual ~FileSearchListener() = default;
    virtual bool Stopped() = 0;
    virtual void Found(FoundLine line) = 0;
    /// After each file.
    virtual void Counted(const SearchCounts &counts) = 0;
};

/// Searches the files of a folder, in the order of their names, then its sub-folders; each folder once,
/// whatever links lead to it. Hidden files and folders are left out. Texts are read as the editor reads them,
/// so that lines have the same numbers; each line counts once. Ends soon when it is stopped, also while it
/// reads. Throws nothing: without memory it ends as if there were too many lines.
/// @param search with a regular expression that is valid
SearchCounts SearchFiles(const FileSearch &search, FileSearchListener &listener);

} // namespace zelvane
