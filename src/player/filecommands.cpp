// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/filecommands.h"

#include "platform/desktop.h"
#include "platform/fileoperations.h"
#include "platform/parameters.h"
#include "player/playerkeys.h"
#include "shell/documentlifecycle.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

#include <optional>
#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype LongestName = 260;

// Not the cutter of told paths: a file here may have a backslash in its name.

QString FolderOf(const QString &path)
{
    return QDir::toNativeSeparators(QFileInfo(path).path());
}

QString BareName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString Joined(const QString &folder, const QString &name)
{
    return QDir::toNativeSeparators(PathInFolder(folder, name));
}

/// Whether two paths are one name of one file, through whatever links their folders are reached. A link and
/// what it leads to are two.
bool IsSameName(const QString &one, const QString &other)
{
    if (one == other)
        return true;
    if (BareName(one) != BareName(other))
        return false;
    const QString folder = QFileInfo(FolderOf(one)).canonicalFilePath();
    return !folder.isEmpty() && folder == QFileInfo(FolderOf(other)).canonicalFilePath();
}

} // namespace

// Documents

void FileCommands::mnuFSO(FileOperation operation)
{
    RunOnDocument(operation);
}

bool FileCommands::RunOnDocument(FileOperation operation)
{
    const QString path = m_editor.document.CurrentFile;
    if (path.isEmpty())
        return false;
    const Family family{Keys::CopyTo};
    switch (operation) {
    case FileOperation::Move:
    case FileOperation::Rename: {
        const QString target =
            operation == FileOperation::Move ? MoveOrCopy(operation, path, family) : Rename(path, family);
        if (!target.isEmpty())
            m_documents.FileMoved(target);
        return !target.isEmpty();
    }
    case FileOperation::Copy: {
        const QString target = MoveOrCopy(operation, path, family);
        if (!target.isEmpty() &&
            m_editor.desktop.MessageBox({.text = u"Do you want to open the new file?"_s,
                                         .icon = BoxIcon::Warning,
                                         .buttons = BoxButtons::YesNo}) == BoxAnswer::Yes)
            m_editor.operations.OpenFile(target);
        return !target.isEmpty();
    }
    case FileOperation::Delete:
        return DeleteDocument();
    case FileOperation::Properties:
        Properties(path);
        return false;
    }
    return false;
}

bool FileCommands::DeleteDocument()
{
    // Unsaved edits are kept as a copy. Where there is none, the user is asked as before any other loss.
    if (!m_documents.SecureText() && !m_editor.operations.QuerySave())
        return false;
    if (!Delete(m_editor.document.CurrentFile, {Keys::CopyTo}))
        return false;
    m_editor.operations.KeepUnsaved();
    m_editor.document.CurrentFile.clear();
    m_editor.operations.NewFile(FileKind::Other, {});
    return true;
}

void FileCommands::mnuOpenWith()
{
    OpenWith(m_editor.document.CurrentFile);
}

void FileCommands::mnuSearchFiles()
{
    const QString &path = m_editor.document.CurrentFile;
    if (!path.isEmpty() &&
        m_editor.desktop.ShellRun({.verb = u"find"_s, .file = QuoteFile(FolderOf(path))}) <= ShellFailure)
        m_editor.desktop.MessageBox(
            {.text = u"Cannot find files in this folder."_s, .icon = BoxIcon::Warning});
}

// Sounds and other files

void FileCommands::mnuSSO(FileOperation operation, const QString &path, const std::function<void()> &stop)
{
    Run(operation, path, {Keys::SFCopyTo, stop});
}

bool FileCommands::RunFileOperation(FileOperation operation, const QString &path)
{
    const QString document = m_editor.document.CurrentFile;
    if (path.isEmpty() || document.isEmpty() || !IsSameName(path, document))
        return Run(operation, path, {Keys::CopyTo});
    return RunOnDocument(operation);
}

void FileCommands::OpenWith(const QString &path)
{
    if (!path.isEmpty() &&
        m_editor.desktop.ShellRun({.verb = u"openas"_s, .file = QuoteFile(path)}) <= ShellFailure)
        m_editor.desktop.MessageBox(
            {.text = u"Cannot run 'Open with...' dialog box."_s, .icon = BoxIcon::Warning});
}

bool FileCommands::Run(FileOperation operation, const QString &path, const Family &family)
{
    if (path.isEmpty())
        return false;
    switch (operation) {
    case FileOperation::Move:
    case FileOperation::Copy:
        return !MoveOrCopy(operation, path, family).isEmpty();
    case FileOperation::Rename:
        return !Rename(path, family).isEmpty();
    case FileOperation::Delete:
        return Delete(path, family);
    case FileOperation::Properties:
        Properties(path);
        return false;
    }
    return false;
}

// The steps

QString FileCommands::AskTarget(FileOperation operation, const QString &path, const TextKey &folderKey)
{
    const QString kept = m_editor.settings.Text(folderKey);
    const QString start = kept.isEmpty() ? FolderOf(path) : kept;
    if (m_editor.desktop.IsKeyDown(KeyCode::Ctrl)) {
        const QString folder = m_editor.desktop.BrowseFolder(u"Pick a target folder."_s, start);
        return folder.isEmpty() ? QString() : Joined(folder, BareName(path));
    }
    FileDialogRequest request;
    request.title = operation == FileOperation::Move ? u"Move to"_s : u"Copy to"_s;
    request.folder = start;
    request.fileName = BareName(path);
    request.overwritePrompt = false; // the operation asks, whichever picker named the target
    return m_editor.desktop.SaveFileDialog(request).path;
}

QString FileCommands::MoveOrCopy(FileOperation operation, const QString &path, const Family &family)
{
    const QString target = AskTarget(operation, path, family.folder);
    if (target.isEmpty())
        return {};
    // A store that cannot be written is told, and keeps nobody from his files.
    Guarded(m_editor.desktop, [&] { m_editor.settings.SaveText(family.folder, FolderOf(target)); });
    if (operation == FileOperation::Copy)
        return m_files.Copy(path, target) ? target : QString();
    family.stop();
    return m_files.Move(path, target) ? target : QString();
}

QString FileCommands::Rename(const QString &path, const Family &family)
{
    const QString name = BareName(path);
    const QString answer =
        m_editor.desktop.InputBox(u"Rename"_s, u"Rename '"_s + name + u"' to:"_s, name).value_or(QString());
    if (answer.isEmpty() || answer.size() > LongestName)
        return {};
    const QString target = Joined(FolderOf(path), answer);
    if (target.compare(path, Qt::CaseInsensitive) == 0)
        return {};
    family.stop();
    return m_files.Rename(path, answer) ? target : QString();
}

bool FileCommands::Delete(const QString &path, const Family &family)
{
    const Deletion way = m_editor.desktop.IsKeyDown(KeyCode::Shift) ? Deletion::ForGood : Deletion::ToTrash;
    family.stop();
    return m_files.Delete(path, way);
}

void FileCommands::Properties(const QString &path)
{
    if (m_editor.desktop.ShellRun({.verb = u"properties"_s, .file = QuoteFile(path)}) <= ShellFailure)
        m_windows.ShowProperties(path);
}

} // namespace zelvane
