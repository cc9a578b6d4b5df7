// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ui/canceldialogs.h"
#include "repository/coderepository.h"
#include "repository/repositorytree.h"

#include <functional>
#include <QDialog>
#include <QString>

class QAction;
class QActionGroup;
class QMenu;
class QPushButton;
class QToolBar;
class QTreeWidgetItem;

namespace zelvane
{

class FragmentPage;
class FragmentTree;
class LabelEditor;
class PaneNote;
struct DocumentSteps;
struct EditorContext;

/// The dialog of the code repository: a tree of all fragments, and the page of the chosen one. It runs the
/// commands and asks what leaving a page asks; what is read and written is the work of CodeRepository.
class frmCodeRes : public QDialog, public KeepsWork
{
    Q_OBJECT

public:
    frmCodeRes(EditorContext &editor, const DocumentSteps &steps, QWidget *parent);

    /// Gathers the files and shows the fragments in the view that was the last one.
    void CodeInit();
    /// Begins a new fragment with this code. Called after CodeInit.
    void AddCode(const QString &code);

    void done(int result) override;
    void reject() override;
    bool MayCancel() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    // Making
    QAction *AddTool(const QString &key, const QString &text, const QString &tip,
                     const std::function<void()> &work);
    void MakeToolbar();
    void LayOut();
    void Connect();
    /// What the user asks for, with the report of a failure; an edit of a label ends first, and nothing is
    /// done when it goes on.
    void Run(const std::function<void()> &work);
    /// The same for what is done to the fragment shown: one that gets its name just now gets no more.
    void RunOnShown(const std::function<void()> &work);

    // The tree
    void Build(RepositoryView view);
    /// Shows another view, if the page may be left.
    void ChangeView(RepositoryView view);
    /// Tells of what the tree does not show.
    void TellWhatIsMissing(const RepositoryTree &tree);
    void CurrentChanged();
    void LeaveShown();
    void Remove(QTreeWidgetItem *item);
    /// Takes the fragment away whose place `item` has now.
    void RemoveTwin(const QTreeWidgetItem &item);

    // The page
    void ShowCurrent();
    void EnablePage(bool enabled);
    FragmentPlace ShownPlace() const;
    bool IsUnsaved() const;
    /// @return whether what is on the page may go
    bool MayLeave();

    // The commands
    void New(const QString &code);
    void EditLabel(QTreeWidgetItem *item, const QString &text);
    /// @return whether it has ended; the user may have declined what it would do
    bool EndLabel();
    void LabelEnded(QTreeWidgetItem *item, const QString &typed);
    void NameNew(QTreeWidgetItem *item, const QString &name);
    void Rename();
    void Save(bool as);
    void Delete();
    void Find();
    void Insert();

    EditorContext &m_editor;
    const DocumentSteps &m_steps;
    CodeRepository m_repository;

    QToolBar *tlbCodeRes;
    FragmentTree *lvwCodeRes;
    PaneNote *lblCutLists;
    FragmentPage *m_page;
    QPushButton *bOK;
    QPushButton *bCancel;
    QMenu *mnuShow;
    QActionGroup *m_views;
    QAction *m_save = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_delete = nullptr;
    QAction *m_singleSel = nullptr;
    LabelEditor *m_labels;

    RepositoryView m_view = RepositoryView::Name;
    FragmentFields m_new; ///< the page of a fragment that has no name yet
    QString m_oldLabel;
    bool m_leaving = false;
    QTreeWidgetItem *m_editWhenShown = nullptr;
};

} // namespace zelvane
