// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/frmcoderes.h"

#include "platform/desktop.h"
#include "platform/programfolder.h"
#include "platform/ui/withinscreen.h"
#include "repository/fragmenttext.h"
#include "repository/repositorykeys.h"
#include "repository/ui/fragmentpage.h"
#include "repository/ui/fragmenttree.h"
#include "repository/ui/labeleditor.h"
#include "repository/ui/panenote.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/insertcoloured.h"
#include "shell/settings.h"
#include "shell/ui/dialogtoolbar.h"
#include "shell/ui/form.h"
#include "shell/ui/toolbutton.h"

#include <functional>
#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QMenu>
#include <QPushButton>
#include <QSize>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int TreeWidth = 38; ///< of what the panes begin with, in characters
constexpr int CodeWidth = 76;

} // namespace

frmCodeRes::frmCodeRes(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_steps(steps),
      m_repository(editor, ProgramFolder()),
      tlbCodeRes(NewDialogToolbar(this, u"tlbCodeRes"_s)),
      lvwCodeRes(Named(new FragmentTree(this), u"lvwCodeRes"_s)),
      lblCutLists(Named(new PaneNote(this), u"lblCutLists"_s)),
      m_page(new FragmentPage(this)),
      bOK(Named(new QPushButton(u"&Insert"_s, this), u"bOK"_s)),
      bCancel(Named(new QPushButton(u"Close"_s, this), u"bCancel"_s)),
      mnuShow(Named(new QMenu(this), u"mnuShow"_s)),
      m_views(new QActionGroup(this)),
      m_labels(new LabelEditor(lvwCodeRes))
{
    setObjectName(u"frmCodeRes"_s);
    setWindowTitle(u"Code Repository"_s);
    MakeToolbar();
    LayOut();
    Connect();
    lvwCodeRes->addTopLevelItem(new QTreeWidgetItem({u"Loading..."_s}));
    EnablePage(false);
}

// Making

QAction *frmCodeRes::AddTool(const QString &key, const QString &text, const QString &tip,
                             const std::function<void()> &work)
{
    QAction *tool = AddDialogTool(*tlbCodeRes, key, text, tip, Qt::TabFocus);
    connect(tool, &QAction::triggered, this, work);
    return tool;
}

void frmCodeRes::MakeToolbar()
{
    AddTool(u"new"_s, u"New"_s, u"New fragment (Ctrl+N)"_s, [this] {
        Run([this] { New({}); });
    })->setShortcut(QKeySequence(u"Ctrl+N"_s));
    m_save = AddTool(u"save"_s, u"Save"_s, u"Save (Ctrl+S). With Ctrl held: save in another file"_s, [this] {
        const bool as = m_editor.desktop.IsKeyDown(KeyCode::Ctrl);
        RunOnShown([this, as] { Save(as); });
    });
    m_rename =
        AddTool(u"rename"_s, u"Rename"_s, u"Rename (F2)"_s, [this] { RunOnShown([this] { Rename(); }); });
    m_rename->setShortcut(QKeySequence(u"F2"_s));
    m_delete =
        AddTool(u"delete"_s, u"Delete"_s, u"Delete (Del)"_s, [this] { RunOnShown([this] { Delete(); }); });
    tlbCodeRes->addSeparator();
    AddTool(u"find"_s, u"Find"_s, u"Find a fragment by its name (Ctrl+F)"_s, [this] {
        Run([this] { Find(); });
    })->setShortcut(QKeySequence(u"Ctrl+F"_s));
    QAction *sort = AddTool(u"sort"_s, u"View"_s, u"Next view (Ctrl+T)"_s, [this] {
        Run([this] { ChangeView(RepositoryView((int(m_view) + 1) % int(RepositoryViewCaptions.size()))); });
    });
    sort->setShortcut(QKeySequence(u"Ctrl+T"_s));
    m_singleSel = AddTool(u"singlesel"_s, u"Single selection"_s,
                          u"Single selection: opening a branch closes the others"_s, [] {});
    m_singleSel->setCheckable(true);

    // The key has Ctrl down without meaning it.
    auto *saveKey = new QAction(this);
    saveKey->setShortcut(QKeySequence(u"Ctrl+S"_s));
    addAction(saveKey);
    connect(saveKey, &QAction::triggered, this, [this] {
        if (m_save->isEnabled())
            RunOnShown([this] { Save(false); });
    });

    for (size_t i = 0; i < RepositoryViewCaptions.size(); ++i) {
        QAction *view = mnuShow->addAction(QString::fromUtf16(RepositoryViewCaptions[i]));
        view->setCheckable(true);
        m_views->addAction(view);
        connect(view, &QAction::triggered, this, [this, i] {
            Run([&] { ChangeView(RepositoryView(i)); });
            m_views->actions()[int(m_view)]->setChecked(true);
        });
    }
    auto *sortButton = static_cast<QToolButton *>(tlbCodeRes->widgetForAction(sort));
    sortButton->setMenu(mnuShow);
    sortButton->setPopupMode(QToolButton::MenuButtonPopup);
    ShowFlatButtons(*tlbCodeRes, m_editor.settings);
    ShowExtensionInTextColour(*tlbCodeRes);
}

void frmCodeRes::LayOut()
{
    lvwCodeRes->setMinimumWidth(CharacterWidth(*this, TreeWidth) / 2);
    auto *left = new QWidget(this);
    auto *leftColumn = new QVBoxLayout(left);
    leftColumn->setContentsMargins({});
    leftColumn->addWidget(LabelFor(lvwCodeRes, u"&Fragments:"_s));
    leftColumn->addWidget(lvwCodeRes, 1);
    leftColumn->addWidget(lblCutLists);

    auto *panes = new QSplitter(this);
    panes->addWidget(left);
    panes->addWidget(m_page);
    panes->setChildrenCollapsible(false);
    panes->setStretchFactor(1, 1);
    panes->setSizes({CharacterWidth(*this, TreeWidth), CharacterWidth(*this, CodeWidth)});

    // Enter is for the tree and for the texts: a button box would give it to its first button.
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(bOK);
    buttons->addWidget(bCancel);
    SetEnterAndEscape(*this, nullptr, bCancel);

    auto *all = new QVBoxLayout(this);
    all->addWidget(tlbCodeRes);
    all->addWidget(panes, 1);
    all->addLayout(buttons);
    SetTabOrder(QList<QWidget *>{lvwCodeRes} + m_page->Fields() + QList<QWidget *>{bOK, bCancel});
    const QSize usual(CharacterWidth(*this, TreeWidth + CodeWidth + 6),
                      fontMetrics().lineSpacing() *
                          (FragmentPage::CodeLines + FragmentPage::CommentLines + 12));
    resize(WithinScreen(*this, usual));
}

void frmCodeRes::Connect()
{
    lvwCodeRes->installEventFilter(this);
    connect(lvwCodeRes, &FragmentTree::Moved, this, &frmCodeRes::CurrentChanged);
    connect(lvwCodeRes, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *item) {
        if (FragmentTree::IsFragment(item))
            Insert();
    });
    connect(m_singleSel, &QAction::toggled, lvwCodeRes, &FragmentTree::SetSingleSelection);
    connect(m_labels, &LabelEditor::Ended, this, [this](const QModelIndex &row, const QString &typed) {
        QTreeWidgetItem *item = lvwCodeRes->itemFromIndex(row);
        Guarded(m_editor.desktop, [&] { LabelEnded(item, typed); });
    });
    connect(m_page, &FragmentPage::Edited, this, [this] { m_save->setEnabled(true); });
    connect(bOK, &QPushButton::clicked, this, &frmCodeRes::Insert);
}

void frmCodeRes::Run(const std::function<void()> &work)
{
    Guarded(m_editor.desktop, [&] {
        if (EndLabel())
            work();
    });
}

void frmCodeRes::RunOnShown(const std::function<void()> &work)
{
    const bool naming = m_labels->IsEditing() && m_oldLabel.isEmpty();
    Run([&] {
        if (!naming)
            work();
    });
}

// The tree

void frmCodeRes::CodeInit()
{
    Guarded(m_editor.desktop, [this] {
        const SettingsStore &settings = m_editor.settings;
        m_singleSel->setChecked(settings.Flag(Keys::CodeRepositorySingleSel));
        const int view = settings.Integer(Keys::CodeRepositorySort);
        const bool known = view >= 0 && view < int(RepositoryViewCaptions.size());
        Build(known ? RepositoryView(view) : RepositoryView::Name);
    });
}

void frmCodeRes::AddCode(const QString &code)
{
    Guarded(m_editor.desktop, [&] { New(code); });
}

void frmCodeRes::ChangeView(RepositoryView view)
{
    if (MayLeave())
        Build(view);
}

void frmCodeRes::Build(RepositoryView view)
{
    m_view = view;
    m_views->actions()[int(view)]->setChecked(true);
    const RepositoryTree tree = BuildRepositoryTree(m_repository.Files(), view);
    lvwCodeRes->Build(tree);
    TellWhatIsMissing(tree);
    ShowCurrent();
}

void frmCodeRes::TellWhatIsMissing(const RepositoryTree &tree)
{
    QStringList notes;
    const auto bareName = [](const QString &file) {
        return QFileInfo(QDir::fromNativeSeparators(file)).fileName();
    };
    for (const QString &file : tree.unread)
        notes += bareName(file) + u" cannot be read."_s;
    for (const CutFile &cut : tree.cut)
        notes += u"%1 is too long: only the first %2 of its %3 fragments are shown."_s.arg(bareName(cut.file))
                     .arg(cut.shown)
                     .arg(cut.all);
    lblCutLists->Tell(notes.join(u'\n'));
}

void frmCodeRes::CurrentChanged()
{
    if (m_leaving)
        return;
    if (!IsUnsaved()) {
        ShowCurrent();
        return;
    }
    // The click goes to its end before anything is asked.
    m_leaving = true;
    QMetaObject::invokeMethod(this, &frmCodeRes::LeaveShown, Qt::QueuedConnection);
}

void frmCodeRes::LeaveShown()
{
    if (!std::exchange(m_leaving, false))
        return;
    bool may = false;
    Guarded(m_editor.desktop, [&] { may = MayLeave(); });
    if (may)
        ShowCurrent();
    else
        lvwCodeRes->SelectQuietly(lvwCodeRes->Shown());
}

void frmCodeRes::Remove(QTreeWidgetItem *item)
{
    lvwCodeRes->Remove(item);
    if (!lvwCodeRes->Shown())
        ShowCurrent();
}

void frmCodeRes::RemoveTwin(const QTreeWidgetItem &item)
{
    if (QTreeWidgetItem *twin = lvwCodeRes->TwinOf(item))
        Remove(twin);
}

// The page

void frmCodeRes::ShowCurrent()
{
    lvwCodeRes->MarkShown();
    if (!lvwCodeRes->IsFragmentShown()) {
        m_page->ShowNothing();
        EnablePage(false);
        setWindowTitle(u"Code Repository"_s);
        return;
    }
    const FragmentPlace place = ShownPlace();
    m_page->ShowStored(m_repository.Read(place), place.file);
    EnablePage(true);
    setWindowTitle(u"Code Repository - "_s + place.name);
}

void frmCodeRes::EnablePage(bool enabled)
{
    // With a text in use no control is a tab stop: the keyboard would find no other.
    if (!enabled && m_page->HasKeyboard())
        lvwCodeRes->setFocus(Qt::OtherFocusReason);
    m_page->EnableFields(enabled);
    m_save->setEnabled(false);
    m_rename->setEnabled(enabled);
    m_delete->setEnabled(enabled);
    bOK->setEnabled(enabled);
}

FragmentPlace frmCodeRes::ShownPlace() const
{
    return FragmentTree::PlaceOf(*lvwCodeRes->Shown());
}

bool frmCodeRes::IsUnsaved() const
{
    return lvwCodeRes->IsFragmentShown() && !ShownPlace().name.isEmpty() && m_page->IsUnsaved();
}

bool frmCodeRes::MayLeave()
{
    if (!IsUnsaved())
        return true;
    const FragmentWrite left = m_repository.SaveBeforeLeaving(ShownPlace(), m_page->Read(), m_page->Page());
    if (left == FragmentWrite::Done)
        m_page->MarkSaved();
    return left != FragmentWrite::Failed;
}

// The commands

void frmCodeRes::New(const QString &code)
{
    if (!MayLeave())
        return;
    QTreeWidgetItem *item = lvwCodeRes->AddNameless(m_repository.PersonalFile());
    m_new = m_repository.NewFragment(code);
    EditLabel(item, {});
}

void frmCodeRes::EditLabel(QTreeWidgetItem *item, const QString &text)
{
    m_oldLabel = item->text(0);
    lvwCodeRes->SelectQuietly(item);
    if (m_oldLabel.isEmpty()) {
        ShowCurrent();
        m_page->ShowNew(m_new);
        m_save->setEnabled(true);
    }
    if (!isVisible()) {
        m_editWhenShown = item;
        return;
    }
    lvwCodeRes->setFocus(Qt::OtherFocusReason);
    lvwCodeRes->editItem(item);
    if (QLineEdit *field = m_labels->Field(); field && !text.isEmpty()) {
        field->setText(text);
        field->selectAll();
    }
}

bool frmCodeRes::EndLabel()
{
    if (m_labels->IsEditing())
        lvwCodeRes->setFocus(Qt::OtherFocusReason);
    m_labels->End();
    return !m_labels->IsEditing();
}

void frmCodeRes::LabelEnded(QTreeWidgetItem *item, const QString &typed)
{
    const QString name = OneLine(typed).trimmed();
    if (m_oldLabel.isEmpty()) {
        if (name.isEmpty())
            Remove(item);
        else
            NameNew(item, name);
        return;
    }
    if (name.isEmpty() || name == m_oldLabel)
        return;
    if (m_repository.Rename({.file = FragmentTree::PlaceOf(*item).file, .name = m_oldLabel}, name) !=
        FragmentWrite::Done)
        return;
    item->setText(0, name);
    RemoveTwin(*item);
    lvwCodeRes->PutInOrder(item);
    if (lvwCodeRes->Shown() == item) {
        // What the page shows is not saved with the name.
        const StoredFragment now = m_repository.Read(ShownPlace());
        ProfileEntries moved = m_page->Read().entries;
        CutSection(moved);
        setWindowTitle(u"Code Repository - "_s + name);
        if (now.entries == moved)
            m_page->TakeMoved(now);
        else if (!IsUnsaved())
            ShowCurrent(); // another editor has changed it
        // Otherwise the next save asks.
    }
}

void frmCodeRes::NameNew(QTreeWidgetItem *item, const QString &name)
{
    const FragmentWrite added =
        m_repository.Add({.file = FragmentTree::PlaceOf(*item).file, .name = name}, m_new);
    if (added == FragmentWrite::Declined) {
        EditLabel(item, name);
        return;
    }
    item->setText(0, name);
    if (added == FragmentWrite::Done)
        RemoveTwin(*item);
    if (lvwCodeRes->Shown() != item) {
        if (added == FragmentWrite::Done)
            return;
        lvwCodeRes->SelectQuietly(item); // a click on another node has ended the label
    }
    ShowCurrent();
    if (added == FragmentWrite::Failed) {
        m_page->ShowUnwritten(m_new);
        m_save->setEnabled(true);
    }
}

void frmCodeRes::Rename()
{
    if (lvwCodeRes->IsFragmentShown())
        EditLabel(lvwCodeRes->Shown(), {});
}

void frmCodeRes::Save(bool as)
{
    if (!lvwCodeRes->IsFragmentShown())
        return;
    const FragmentPlace place = ShownPlace();
    if (m_repository.Save(place, m_page->Read(), m_page->Page(), as) != FragmentWrite::Done)
        return;
    if (as) {
        m_page->MarkSaved();
        return;
    }
    // The caret stays, unless the file gives back another text.
    if (m_page->TakeSaved(m_repository.Read(place)))
        m_save->setEnabled(false);
    else
        ShowCurrent();
}

void frmCodeRes::Delete()
{
    if (lvwCodeRes->IsFragmentShown() &&
        m_repository.Delete(ShownPlace(), m_page->Read()) == FragmentWrite::Done)
        Remove(lvwCodeRes->Shown());
}

void frmCodeRes::Find()
{
    const std::optional<qsizetype> found = m_repository.Find(lvwCodeRes->Names());
    if (!found)
        return;
    QTreeWidgetItem *item = lvwCodeRes->Fragments()[*found];
    if (item != lvwCodeRes->Shown() && !MayLeave())
        return;
    lvwCodeRes->SelectQuietly(item);
    if (lvwCodeRes->currentItem() != lvwCodeRes->Shown())
        ShowCurrent();
}

void frmCodeRes::Insert()
{
    const QTreeWidgetItem *const meant = lvwCodeRes->Shown();
    if (!EndLabel() || lvwCodeRes->Shown() != meant || !lvwCodeRes->IsFragmentShown())
        return;
    Guarded(m_editor.desktop, [&] {
        // The code goes into the text; the rest of the page would go with the dialog.
        if (m_page->IsUnsavedBesideCode() && !MayLeave())
            return;
        InsertColoured(m_editor, m_steps, m_page->Code());
        accept();
    });
}

// Events

bool frmCodeRes::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lvwCodeRes && event->type() == QEvent::KeyPress && !m_labels->IsEditing()) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!lvwCodeRes->IsFragmentShown())
                break;
            Insert();
            return true;
        case Qt::Key_Delete:
            Run([this] { Delete(); });
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmCodeRes::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (QTreeWidgetItem *item = std::exchange(m_editWhenShown, nullptr))
        QMetaObject::invokeMethod(
            this, [this, item] { EditLabel(item, {}); }, Qt::QueuedConnection);
}

void frmCodeRes::reject()
{
    bool may = false;
    Run([&] { may = MayLeave(); });
    if (may)
        QDialog::reject();
}

bool frmCodeRes::MayCancel()
{
    bool may = false;
    Guarded(m_editor.desktop, [&] { may = MayLeave(); });
    return may;
}

void frmCodeRes::done(int result)
{
    // Only the end of the program comes here with a label open: a name that was not confirmed is no work.
    m_labels->GiveUp();
    Guarded(m_editor.desktop, [this] {
        SettingsStore &settings = m_editor.settings;
        settings.InOneStep([&] {
            settings.SaveNumber(Keys::CodeRepositorySort, int(m_view));
            settings.SaveStoredText(Keys::CodeRepositorySingleSel,
                                    m_singleSel->isChecked() ? u"1"_s : u"0"_s);
        });
    });
    QDialog::done(result);
}

} // namespace zelvane
