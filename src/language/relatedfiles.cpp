// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/relatedfiles.h"

#include "language/normalizespaces.h"
#include "platform/desktop.h"
#include "platform/filenamecase.h"
#include "platform/runtimeerror.h"
#include "platform/textfile.h"
#include "shell/documentkind.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStringView>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype MostScanned = 5'000;    ///< files of a tree that show what they name
constexpr qsizetype MostFiles = 1'000'000;  ///< files of a tree
constexpr qint64 LargestRead = 100'000'000; ///< bytes; what is larger was not written by a person

bool IsFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

/// Unlike QDir::filePath, also for a name that begins with a separator.
QString JoinPath(const QString &folder, const QString &name)
{
    return folder.endsWith(u'/') || folder.endsWith(QDir::separator()) ? folder + name
                                                                       : folder + QDir::separator() + name;
}

/// The folder of the document; the root's name is the separator alone.
QString FolderOf(const QString &path)
{
    const QString folder = SplitPath(PathPart::Folder, path);
    return folder.isEmpty() && !path.isEmpty() && BareFileName(path) != path ? QDir::rootPath() : folder;
}

/// The same file by its plainest path: "x/../y" is not "y" where x is a link.
QString PlainPath(const QString &path)
{
    const QString plain = QDir::cleanPath(path);
    return plain == path || QFileInfo(plain).canonicalFilePath() == QFileInfo(path).canonicalFilePath()
               ? plain
               : path;
}

/// The files of a folder whose names hold a text, by name.
QStringList FilesNamedLike(const QString &folder, const QString &part, bool withHidden)
{
    QStringList names;
    QDir::Filters filters = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
    filters.setFlag(QDir::Hidden, withHidden);
    QDirIterator walk(folder, filters);
    while (walk.hasNext()) {
        walk.next();
        const QString name = walk.fileName();
        if (name.contains(part, FileNameCase) && walk.fileInfo().isFile())
            names.append(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool IsLineEnd(QChar c)
{
    return c == u'\r' || c == u'\n';
}

} // namespace

// RelationsClass

FileClass &RelationsClass::addRelatedFile(const QString &displayName, const QString &filename, bool exists)
{
    FileClass &file =
        m_files.emplace_back(FileClass{filename, displayName, exists, nullptr, int(m_roots.size()), {}});
    m_roots.push_back(&file);
    return file;
}

FileClass &RelationsClass::addIncludedFile(FileClass &by, const QString &displayName, const QString &filename,
                                           bool exists)
{
    FileClass &file =
        m_files.emplace_back(FileClass{filename, displayName, exists, &by, int(by.relatedFiles.size()), {}});
    by.relatedFiles.push_back(&file);
    return file;
}

void RelationsClass::clearRelatedFiles()
{
    m_roots.clear();
    m_files.clear();
}

// What a text names

QStringList ExtractFileReferences(const QString &text, const std::function<bool(const QString &)> &isFile)
{
    static const QString word = u"#include"_s;
    QStringList names;
    const qsizetype length = text.size();
    qsizetype i = 0;
    while (i < length) {
        if (text[i] == u'"') {
            const qsizetype partner = text.indexOf(u'"', i + 1);
            if (partner < 0)
                break;
            const QString quoted = text.mid(i + 1, partner - i - 1);
            if (isFile(quoted))
                names.append(quoted);
            i = partner + 1;
        } else if (text[i] == u'#' && QStringView(text).sliced(i).startsWith(word)) {
            const qsizetype start = i + word.size();
            i = start;
            while (i < length && !IsLineEnd(text[i]))
                ++i;
            const QString rest = NormalizeSpaces(QStringView(text).sliced(start, i - start));
            if (rest.size() > 2)
                names.append(rest.sliced(1, rest.size() - 2));
        } else {
            ++i;
        }
    }
    return names;
}

// The search

RelatedSearch::RelatedSearch(const QString &path, const SettingsStore &settings, const Desktop &desktop)
{
    if (path.isEmpty())
        return;
    // Cut without a look at the disk, where a document that is shown need not be any more.
    const QString name = BareFileName(path);
    m_baseName = SplitPath(PathPart::WithoutExtension, name);
    // Beside a file in sight the hidden ones are what other programs keep about it.
    m_listsHidden = name.startsWith(u'.');
    const auto folder = [&desktop](const QString &variable) { return desktop.EnvironmentVariable(variable); };
    const QString ssdir = folder(u"SSDIR"_s);
    const QString sfdir = folder(u"SFDIR"_s);
    const QString sadir = folder(u"SADIR"_s);
    const QString incdir = folder(u"INCDIR"_s);
    // The two orders differ, and people rely on both.
    m_listedFolders = QStringList{FolderOf(path), ssdir, sfdir, sadir, incdir};
    m_searchedFolders = QStringList{FolderOf(path), ssdir, sfdir, incdir, sadir};
    m_listedFolders.removeAll(QString());
    m_searchedFolders.removeAll(QString());
    for (const FileKind kind : {FileKind::Orchestra, FileKind::Score, FileKind::Unified})
        m_extensions += KindExtensions(settings, kind);
}

RelationsClass RelatedSearch::SearchRelated()
{
    RelationsClass relations;
    for (const QString &folder : std::as_const(m_listedFolders)) {
        const QStringList names = FilesNamedLike(folder, m_baseName, m_listsHidden);
        for (const QString &name : names)
            ScanRelatedFile(relations, relations.addRelatedFile(name, JoinPath(folder, name), true));
    }
    return relations;
}

void RelatedSearch::ScanRelatedFile(RelationsClass &relations, FileClass &file)
{
    std::vector<Level> levels;
    Enter(relations, file, levels);
    while (!levels.empty()) {
        Level &level = levels.back();
        if (level.next == level.known->references.size() || relations.Count() >= MostFiles) {
            level.known->isAbove = false;
            levels.pop_back();
            continue;
        }
        const Reference &reference = level.known->references[level.next++];
        const bool found = !reference.path.isEmpty();
        Enter(relations,
              relations.addIncludedFile(*level.file, found ? BareFileName(reference.path) : reference.name,
                                        reference.path, found),
              levels);
    }
}

void RelatedSearch::Enter(const RelationsClass &relations, FileClass &file, std::vector<Level> &levels)
{
    if (!file.exists || relations.Count() > MostScanned || !HasExtension(file.filename, m_extensions))
        return;
    KnownFile &known = ReadOnce(file.filename);
    if (known.isAbove)
        return;
    known.isAbove = true;
    levels.push_back({&file, &known});
}

RelatedSearch::KnownFile &RelatedSearch::ReadOnce(const QString &path)
{
    const QFileInfo file(path);
    const QString plain = file.canonicalFilePath();
    KnownFile &known = m_files[plain.isEmpty() ? path : plain];
    if (known.isRead)
        return known;
    known.isRead = true;
    if (file.size() > LargestRead)
        return known;
    QString text;
    try {
        text = ReadTextFile(path);
    } catch (const RunTimeError &) {
        return known; // one file of many: it is shown, and who opens it is told
    }
    const QStringList names = ExtractFileReferences(
        text, [this](const QString &name) { return !ResolveRelatedPath(name).isEmpty(); });
    known.references.reserve(std::size_t(names.size()));
    for (const QString &name : names)
        known.references.push_back({name, ResolveRelatedPath(name)});
    return known;
}

QString RelatedSearch::ResolveRelatedPath(const QString &name)
{
    if (name.isEmpty() || name.contains(QChar(0)))
        return {};
    const auto known = m_paths.constFind(name);
    if (known != m_paths.constEnd())
        return *known;
    QString found;
    // A name that begins with a colon would be one of the program's own resources.
    const bool isFull = QDir::isAbsolutePath(name) && !name.startsWith(u':');
    const QString asNamed = isFull ? name : JoinPath(QDir::currentPath(), name);
    if (IsFile(asNamed))
        found = PlainPath(asNamed);
    for (const QString &folder : std::as_const(m_searchedFolders)) {
        if (!found.isEmpty())
            break;
        const QString path = JoinPath(folder, name);
        if (IsFile(path))
            found = PlainPath(path);
    }
    return *m_paths.insert(name, found);
}

RelationsClass SearchRelated(const QString &path, const SettingsStore &settings, const Desktop &desktop)
{
    return RelatedSearch(path, settings, desktop).SearchRelated();
}

} // namespace zelvane
