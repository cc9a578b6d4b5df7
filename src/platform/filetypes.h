// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace zelvane
{

/// A way in which the desktop starts the program.
struct FileVerb {
    QString key = {};        ///< one lower-case word; empty for the default verb
    QString caption = {};    ///< "&" marks its key, where menus have such keys
    QString parameters = {}; ///< before the file's name
};

/// Files that are known by their names, and some by how they begin.
struct FileType {
    QString name;                ///< "text/x-csound-orc"
    QStringList extensions;      ///< without dots, in any case
    QStringList beginnings = {}; ///< one of them stands near the beginning of such a file
};

/// What a program tells the desktop of itself and of its files.
struct ProgramFiles {
    QString title;             ///< the program's
    QString kind;              ///< what the program is: "Csound Editor"
    QString summary;           ///< what it is for, in one line
    QStringList keywords = {}; ///< by which it is looked for besides
    QString description;       ///< of the files: "Csound Document"
    QString executable;        ///< absolute path
    QByteArray icon;           ///< SVG; may be empty
    std::vector<FileType> types;
    std::vector<FileVerb> verbs;   ///< on a file; the first one is the default
    std::vector<FileVerb> actions; ///< without a file
};

/// Where the desktop keeps, for the user, which program opens which file.
class FileTypeRegistry
{
public:
    virtual ~FileTypeRegistry() = default;
    /// Makes the program the one that opens the files of a class. After a failure in the middle it can be
    /// called again.
    /// @throws RunTimeError
    virtual void Register(const ProgramFiles &files) = 0;
};

} // namespace zelvane
