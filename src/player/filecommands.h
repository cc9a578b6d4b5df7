// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/settingkey.h"

#include <functional>
#include <QString>

namespace zelvane
{

class DocumentLifecycle;
class FileOperations;
struct EditorContext;

/// The windows that file commands show beside those of the desktop.
class FileWindows
{
public:
    virtual ~FileWindows() = default;
    /// Shows what the system knows of a file; modal.
    virtual void ShowProperties(const QString &path) = 0;
};

/// What the shell does with files: those of the document, which the document follows, those of the open
/// sound, and any other. Nothing happens for an empty path.
class FileCommands
{
public:
    /// The arguments outlive it.
    FileCommands(EditorContext &editor, DocumentLifecycle &documents, FileOperations &files,
                 FileWindows &windows)
        : m_editor(editor), m_documents(documents), m_files(files), m_windows(windows)
    {
    }

    // On the document.

    /// A moved or renamed document is opened again from its new place; a changed one is saved there when the
    /// user wants it saved. After a deletion there is a new, empty one, and unsaved edits stay among the kept
    /// copies.
    void mnuFSO(FileOperation operation);
    void mnuOpenWith();
    /// Starts the desktop's search in the document's folder.
    void mnuSearchFiles();

    /// On a sound. @param stop closes it in the player; called before anything happens to its file
    void mnuSSO(FileOperation operation, const QString &path, const std::function<void()> &stop);

    // On any file; the document's own is worked on as such, however its folder is spelled.

    void OpenWith(const QString &path);
    /// @return whether files came, went or have other names now
    bool RunFileOperation(FileOperation operation, const QString &path);

private:
    /// Where a target is asked for, and what happens before the file is touched.
    struct Family {
        const TextKey &folder;
        const std::function<void()> stop = [] {};
    };

    /// The new path; empty after a failure, a stop or a Cancel.
    QString MoveOrCopy(FileOperation operation, const QString &path, const Family &family);
    QString AskTarget(FileOperation operation, const QString &path, const TextKey &folderKey);
    QString Rename(const QString &path, const Family &family);
    bool Delete(const QString &path, const Family &family);
    void Properties(const QString &path);
    /// Both: @return whether files came, went or have other names now
    bool RunOnDocument(FileOperation operation);
    bool Run(FileOperation operation, const QString &path, const Family &family);
    bool DeleteDocument();

    EditorContext &m_editor;
    DocumentLifecycle &m_documents;
    FileOperations &m_files;
    FileWindows &m_windows;
};

} // namespace zelvane
