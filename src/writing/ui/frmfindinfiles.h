// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"
#include "writing/backgroundsearch.h"
#include "writing/findinfiles.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QEvent;
class QLabel;
class QLineEdit;
class QObject;
class QPushButton;
class QShowEvent;
class QTreeView;

namespace zelvane
{

class FoundModel;

/// The modeless dialog that finds in the files of a folder, and lists the lines that it finds. It is made
/// when it opens and goes when it is closed.
class frmFindInFiles : public QDialog
{
    Q_OBJECT

public:
    explicit frmFindInFiles(const WindowContext &context);

    /// The command was given while the dialog is open: what is selected in the text now is what to find.
    void StartAgain();
    bool IsSearching() const { return m_searching; }

    void done(int result) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void LayOut();
    void Connect();
    /// Place, size and fields, as the store and the selection have them.
    void Load();
    void OfferToFind(const QString &text);
    void ShowRecentTexts();
    FileSearchFields Fields() const;
    void Search();
    void StopSearch();
    /// Shows what the search has found since the last time.
    void TakeNews();
    /// Opens the line that is chosen in the list.
    void OpenChosen();
    void EnableButtons();

    WindowContext m_context;
    FoundModel *m_model;
    bool m_searching = false;
    bool m_stopped = false; ///< by the user

    QComboBox *cmbFileText;
    QLineEdit *txtSearchFolder;
    QPushButton *bSearchFolder;
    QLineEdit *txtSearchPatterns;
    QCheckBox *chkSearchSubFolders;
    QCheckBox *chkSearchWords;
    QCheckBox *chkSearchCase;
    QCheckBox *chkSearchExpression;
    QTreeView *lvwFound;
    QLabel *lblFound;
    QPushButton *bSearch;
    QPushButton *bStopSearch;
    QPushButton *bOpenFound;
    QPushButton *bCloseSearch;

    BackgroundSearch m_search; // ends first
};

} // namespace zelvane
