// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/kindsearch.h"

#include "platform/filenamecase.h"
#include "shell/documentkind.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <map>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString JoinPath(const QString &folder, const QString &name)
{
    return folder + QDir::separator() + name;
}

bool IsFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isDir();
}

/// The file names of folders, read once and in name order: a similar search looks at a folder many times.
class FolderNames
{
public:
    /// The files named `prefix`, any text, a dot and the extension. The name is compared as text, so that a
    /// file name may hold a star or a bracket.
    QStringList Matching(const QString &folder, const QString &prefix, const QString &extension, int most)
    {
        QStringList found;
        const QString end = u'.' + extension;
        for (const QString &name : Names(folder)) {
            if (int(found.size()) == most)
                break;
            if (name.size() >= prefix.size() + end.size() && name.startsWith(prefix, FileNameCase) &&
                name.endsWith(end, FileNameCase))
                found.append(name);
        }
        return found;
    }

private:
    const QStringList &Names(const QString &folder)
    {
        const auto known = m_names.find(folder);
        if (known != m_names.end())
            return known->second;
        QStringList names;
        QDirIterator walk(folder.isEmpty() ? QDir::rootPath() : folder,
                          QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
        while (walk.hasNext()) {
            walk.next();
            names.append(walk.fileName());
        }
        std::sort(names.begin(), names.end());
        return m_names[folder] = names;
    }

    std::map<QString, QStringList> m_names;
};

QStringList SearchFolders(FileKind kind, const EditorContext &context)
{
    switch (kind) {
    case FileKind::Orchestra:
    case FileKind::Score:
    case FileKind::Unified:
        return {SplitPath(PathPart::Folder, context.document.CurrentFile)};
    case FileKind::Midi:
    case FileKind::Sound: {
        QStringList folders{SplitPath(PathPart::Folder, context.document.CurrentFile)};
        for (const QString &variable : {u"SSDIR"_s, u"SFDIR"_s}) {
            const QString folder = context.desktop.EnvironmentVariable(variable);
            if (!folder.isEmpty())
                folders.append(folder);
        }
        return folders;
    }
    default:
        return {QString()};
    }
}

/// A file name as part of a dialog's pattern: what would be a sign of the pattern language stands for any one
/// character.
QString AsPattern(QString name)
{
    for (QChar &c : name) {
        if (u"*?[];"_s.contains(c))
            c = u'?';
    }
    return name;
}

} // namespace

QString SearchKindFile(FileKind kind, bool similar, bool silent, EditorContext &context)
{
    const DocumentRecord &document = context.document;
    const QString base = SplitPath(PathPart::BaseName, document.CurrentFile);
    if (base.isEmpty())
        return {};

    if (kind == FileKind::Orchestra &&
        (document.DocumentKind == FileKind::Orchestra || document.DocumentKind == FileKind::Unified))
        return document.CurrentFile;
    if (kind == FileKind::Score && document.DocumentKind == FileKind::Score)
        return document.CurrentFile;
    if (kind == FileKind::Score && document.DocumentKind == FileKind::Unified)
        return u" "_s;

    const QStringList extensions = KindExtensions(context.settings, kind);
    const QStringList folders = SearchFolders(kind, context);

    for (const QString &extension : extensions) {
        for (const QString &folder : folders) {
            const QString candidate = JoinPath(folder, base + u'.' + extension);
            if (IsFile(candidate))
                return candidate;
        }
    }

    FolderNames names;
    bool startWithSimilar = false;
    const auto searchSimilar = [&]() -> QString {
        for (qsizetype cut = 0; cut <= 3 && cut < base.size(); ++cut) {
            for (const QString &extension : extensions) {
                for (const QString &folder : folders) {
                    const QStringList found = names.Matching(folder, base.chopped(cut), extension, 2);
                    if (found.isEmpty())
                        continue;
                    if (found.size() == 1 || silent)
                        return JoinPath(folder, found.first());
                    startWithSimilar = true;
                    return {};
                }
            }
        }
        return {};
    };
    if (similar) {
        const QString found = searchSimilar();
        if (!found.isEmpty())
            return found;
    }
    if (silent)
        return {};

    const qsizetype cut = base.size() > 3 ? 3 : base.size() - 1;
    const QString prefix = base.chopped(cut);
    if (!similar) {
        startWithSimilar = std::any_of(extensions.begin(), extensions.end(), [&](const QString &extension) {
            return !names.Matching(folders.first(), prefix, extension, 1).isEmpty();
        });
    }
    const QString label = KindLabel(kind, document, context.desktop);
    const FileDialogRequest request{
        .title = u"Select "_s + label + u" file"_s,
        .filters = {{label + u" Files"_s, KindPatterns(kind, {}, document, context.settings)},
                    {label + u" Files (similar names)"_s,
                     KindPatterns(kind, AsPattern(prefix) + u'*', document, context.settings)},
                    {u"All Files"_s, u"*"_s}},
        .filterIndex = startWithSimilar ? 1 : 0,
        .folder = folders.first()};
    return context.desktop.OpenFileDialog(request).path;
}

} // namespace zelvane
