// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"
#include "shell/changedondisk.h"
#include "shell/documentsteps.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/safetycopy.h"

#include <QString>
#include <QStringView>

namespace zelvane
{

/// Creates, loads, stores and replaces the one document, and asks before unsaved work is lost.
/// It takes the parts that an EditorContext is later made of, because the context refers to it.
class DocumentLifecycle : public DocumentOperations
{
public:
    DocumentLifecycle(DocumentRecord &document, TextBuffer &text, SettingsStore &settings, Desktop &desktop,
                      StatusLine &status, DocumentView &view, DocumentSteps &steps)
        : m_document(document),
          m_text(text),
          m_settings(settings),
          m_desktop(desktop),
          m_status(status),
          m_view(view),
          m_steps(steps),
          m_copy(document, text, settings, status)
    {
    }

    /// Loads a file into the window. Failures are shown; a load that fails leaves the old text and name, but
    /// Modified and Loading set, until the user's next edit.
    void OpenFile(const QString &name, OpenOrigin origin = OpenOrigin::Command) override;
    /// Writes the text with CR LF line ends and makes `name` the current file. Failures are shown; they
    /// change nothing. Where the folder of the current file is gone another name is asked for.
    bool SaveFile(const QString &name) override;
    /// Replaces the document by a new one, without asking. Cancelled as kind asks the user for the kind.
    void NewFile(FileKind kind, const QString &name) override;
    /// Puts a file's text in place of the selection and selects it. @throws RunTimeError when it cannot be
    /// read
    void InsertFile(const QString &name) override;
    bool QuerySave() override;
    void KeepUnsaved() override;

    /// Asks before a text comes that the text control is slow with. @param name what it is called then
    bool MayShowText(const QString &name, QStringView text);
    /// Puts a text that another editor has left unsaved into the window: an untitled, changed text that
    /// offers the name that it had. The copy stands until it is saved or discarded.
    void OpenCopy(const CopyInfo &info, const QString &text, const TextEncoding &encoding, UnsavedCopy copy);
    /// Brings the copy of the unsaved text up to date, and waits for the disk. @return whether the process
    /// may end without a loss
    bool SecureText();

    /// After a colouring that the document's own steps do not end: one that failed has left the text out of
    /// sight and Loading set. The text must not stay out of sight, nor edits unseen.
    void BringTextBack();

    /// Puts a text that no file holds yet into the window: a new, changed document of that name, without
    /// asking. @throws what the load throws for want of memory; the document is as it was then
    void NewText(FileKind kind, const QString &name, const QString &text, const TextEncoding &encoding);

    /// The document's file stands under another name now: it is opened from there. Of a changed text the user
    /// is asked whether it is to be saved there; after a Cancel it goes on under the new name.
    void FileMoved(const QString &name);

    // The commands of the File menu.
    void New();
    void Open();
    void Save();
    void SaveAs();
    /// Starts the program's own executable with "/i".
    void NewInstance();
    /// Opens what the store holds at this moment as recent file 1 to 9.
    void OpenRecent(int number);
    void FileMenuOpening();

    /// The Open and Save dialogs; the path, cut at the first NUL and trimmed, empty after Cancel.
    QString OpenBox();
    QString SaveBox();

    /// Puts the current file on top of the recent list.
    void MRUsalva();
    /// Shows the recent list in the menu.
    void MRUAggiornaMenu();

    void StatusFileInfo();
    /// The file line of any file, for the trees.
    void StatusInfo(const QString &name);
    void TypeEnable();

    /// The window has become the active one: a file that another program has written meanwhile may be loaded
    /// again.
    void WindowActivated();

    /// The text control's change event: the first change marks the document as modified.
    void TextChanged();

private:
    /// Whether the text may be discarded for that file; asks where it was changed.
    bool MayReplaceBy(const QString &name);
    /// Asks before a file's text comes that the text control is slow with.
    bool MayShow(const QString &name);
    /// @param line the length of the unwieldy line, 0 when there is none
    bool MayShowLine(const QString &name, qsizetype line);
    /// The steps of opening, when all questions have been answered.
    void OpenNow(const QString &name, OpenOrigin origin);
    void Load(const QString &name);
    /// Puts a text into the window that no file holds.
    void Begin(FileKind kind, const QString &name, const QString &text, const TextEncoding &encoding);
    void BuildOutline();
    void BuildRelatedFiles(OpenOrigin origin);
    bool WriteCurrent();
    /// Offers another name for the text whose file has lost its folder.
    bool SaveElsewhere();
    /// @param mark "*" for a changed text, right behind the name
    void ShowCaption(const QString &mark = {});
    QString CaptionName() const;

    DocumentRecord &m_document;
    TextBuffer &m_text;
    SettingsStore &m_settings;
    Desktop &m_desktop;
    StatusLine &m_status;
    DocumentView &m_view;
    DocumentSteps &m_steps;
    ChangedOnDisk m_disk;
    SafetyCopy m_copy;
    bool m_loadFailed = false; ///< Loading and Modified are what a failed load has left
};

/// The caption of a row of the recent-file menu: "&", the number, a blank, the path, whose own "&" are
/// doubled.
QString RecentFileCaption(int number, const QString &path);

} // namespace zelvane
