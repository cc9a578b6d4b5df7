// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "repository/coderepository.h"

#include <QList>
#include <QString>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace zelvane
{

class PaneNote;

/// The page of a fragment: its texts, and what was read for them. It reads and writes no file.
class FragmentPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int CodeLines = 18; ///< of what the page begins with
    static constexpr int CommentLines = 4;

    explicit FragmentPage(QWidget *window);

    /// The controls that the user writes in, in the order of the Tab key.
    QList<QWidget *> Fields() const;
    void EnableFields(bool enabled);
    bool HasKeyboard() const;

    void ShowNothing();
    /// @param file the path of the fragment's file
    void ShowStored(StoredFragment read, const QString &file);
    /// Shows a fragment that has no file yet; it counts as saved.
    void ShowNew(const FragmentFields &fields);
    /// Shows a fragment that its file did not take: the page is all there is of it.
    void ShowUnwritten(const FragmentFields &fields);

    /// What was read for the page.
    const StoredFragment &Read() const { return m_read; }
    /// What is on the page, with the texts as they were read where they were not touched.
    FragmentFields Page() const;
    /// The code as it was typed.
    QString Code() const;
    bool IsUnsaved() const;
    /// Whether it is unsaved by more than its code.
    bool IsUnsavedBesideCode() const;

    /// What is on the page stands in a file now.
    void MarkSaved();
    /// Takes what the fragment has in its file after a move: what the page shows was not saved with it.
    void TakeMoved(const StoredFragment &now);
    /// Takes what was read after the page was saved; the caret stays.
    /// @return false where the page would have to show another text: nothing is taken then
    bool TakeSaved(StoredFragment now);

Q_SIGNALS:
    /// The user has changed a text.
    void Edited();

private:
    void LayOut();
    void Connect();
    void Fill(FragmentFields fields);
    FragmentFields Shown() const;

    QPlainTextEdit *txtCodeRes;
    PaneNote *lblCutCode;
    QLineEdit *txtAuthor;
    QComboBox *cmbCategory;
    QPlainTextEdit *txtComments;
    QLabel *lblFile;

    StoredFragment m_read;   ///< what the page was filled with
    FragmentFields m_filled; ///< the same as the controls give it back
    FragmentFields m_clean;  ///< what stands in a file of what the page shows
    bool m_filling = false;
};

} // namespace zelvane
