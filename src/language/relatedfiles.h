// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

namespace zelvane
{

class Desktop;
class SettingsStore;

/// A file that belongs to the document, and the files that its text names.
struct FileClass {
    QString filename;    ///< full path; empty for a file that was not found
    QString displayName; ///< the name to show
    bool exists = false;
    const FileClass *parent = nullptr; ///< the file that names this one; null on the top level
    int row = 0;                       ///< its place among its parent's files, from 0
    std::vector<FileClass *> relatedFiles;
};

/// The files that belong to a document, as a tree. Its files stay where they are in memory, also when it is
/// moved.
class RelationsClass
{
public:
    RelationsClass() = default;
    RelationsClass(RelationsClass &&) = default;
    RelationsClass &operator=(RelationsClass &&) = default;

    FileClass &addRelatedFile(const QString &displayName, const QString &filename, bool exists);
    /// Adds a file that `by` names.
    FileClass &addIncludedFile(FileClass &by, const QString &displayName, const QString &filename,
                               bool exists);
    void clearRelatedFiles();

    /// The top level.
    const std::vector<FileClass *> &RelatedFiles() const { return m_roots; }
    /// All files of all levels; one that is named twice counts twice.
    qsizetype Count() const { return qsizetype(m_files.size()); }

private:
    std::deque<FileClass> m_files;
    std::vector<FileClass *> m_roots;
};

/// The files that a text names, in the order of the text, each as often as it is named: what an #include line
/// has between its first and its last character, found or not, and every quoted text that is the name of a
/// file. Comments are text like all other: a name in one counts, and so does what stands behind the name in
/// an #include line. A quote without a partner ends the walk.
/// @param isFile whether a quoted text names a file; asked once for each
QStringList ExtractFileReferences(const QString &text, const std::function<bool(const QString &)> &isFile);

/// A search for the files of one document. What it has found out about a name, and read in a file, it keeps
/// until its end.
class RelatedSearch
{
public:
    /// @param path the document's
    RelatedSearch(const QString &path, const SettingsStore &settings, const Desktop &desktop);

    /// The files whose names hold the document's bare name without its extension, in its folder and those of
    /// SSDIR, SFDIR, SADIR and INCDIR, by folder and name, and what they name in turn. Hidden files are among
    /// them only when the document's name begins with a point. None without a path.
    RelationsClass SearchRelated();

    /// Adds the files that a file names, and theirs. Only orchestras, scores and unified files are read, each
    /// once. A file that stands above itself, that cannot be read or that comes late in a large tree has
    /// none.
    void ScanRelatedFile(RelationsClass &relations, FileClass &file);

    /// The full path of a file: as it is named, else in the document's folder, SSDIR, SFDIR, INCDIR or SADIR,
    /// the first that has it. Empty when none has. Folders, pipes and devices are no files.
    QString ResolveRelatedPath(const QString &name);

private:
    struct Reference {
        QString name;
        QString path; ///< empty if it was not found
    };
    /// One file on the disk, whatever names lead to it.
    struct KnownFile {
        bool isRead = false;
        bool isAbove = false; ///< stands between the top level and the file that is looked at
        std::vector<Reference> references;
    };
    /// A file whose references are being added, and the next one of them.
    struct Level {
        FileClass *file;
        KnownFile *known;
        std::size_t next = 0;
    };

    /// Begins with the references of a file that was just added, if it has any and may show them.
    void Enter(const RelationsClass &relations, FileClass &file, std::vector<Level> &levels);
    KnownFile &ReadOnce(const QString &path);

    QString m_baseName;
    bool m_listsHidden = false;           ///< whether hidden files are found too
    QStringList m_listedFolders;          ///< where files are found by the document's name
    QStringList m_searchedFolders;        ///< where named files are looked for
    QStringList m_extensions;             ///< of the files that are read
    std::map<QString, KnownFile> m_files; ///< by their path without links
    QHash<QString, QString> m_paths;      ///< by name
};

/// The files that belong to the document at `path`.
RelationsClass SearchRelated(const QString &path, const SettingsStore &settings, const Desktop &desktop);

} // namespace zelvane
