// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/ui/frmcoderes.h"

#include "platform/desktop.h"
#include "platform/programfolder.h"
#include "platform/ui/systemcolours.h"
#include "repository/fragmenttext.h"
#include "repository/repositorykeys.h"
#include "repository/ui/labeleditor.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/insertcoloured.h"
#include "shell/settings.h"
#include "shell/ui/form.h"
#include "shell/ui/icons.h"
#include "shell/ui/tabstops.h"
#include "shell/ui/toolbutton.h"

#include <functional>
#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPalette>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSize>
#include <QSplitter>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int TagRole = Qt::UserRole; ///< the path of a fragment's file; a group has none
constexpr int KeyRole = Qt::UserRole + 1;

constexpr int TreeWidth = 38; ///< of what the panes begin with, in characters and lines
constexpr int CodeWidth = 76;
constexpr int CodeLines = 18;
constexpr int CommentLines = 4;
constexpr int TabColumns = 8;
constexpr QSize IconSize(16, 16);

const char16_t *const Categories[] = {u"Function Tables", u"General",  u"Instruments", u"Opcodes",
                                      u"Macros",          u"Math",     u"MIDI",        u"Orchestra",
                                      u"Score",           u"Templates"};

QString TagOf(const QTreeWidgetItem &item)
{
    return item.data(0, TagRole).toString();
}

bool IsFragment(const QTreeWidgetItem *item)
{
    return item && !TagOf(*item).isEmpty();
}

/// A text as it was typed: the document's own plain text has blanks for no-break spaces.
QString TextOf(const QPlainTextEdit &field)
{
    return field.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void SetLines(QPlainTextEdit &field, int lines)
{
    field.setMinimumHeight(field.fontMetrics().lineSpacing() * lines);
}

QLabel *NewNote(QWidget *parent, const QString &name)
{
    auto *note = Named(new QLabel(parent), name);
    note->setWordWrap(true);
    note->hide();
    return note;
}

void ShowNote(QLabel &note, const QString &text)
{
    note.setText(text);
    note.setVisible(!text.isEmpty());
}

} // namespace

frmCodeRes::frmCodeRes(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_steps(steps),
      m_repository(editor, ProgramFolder()),
      tlbCodeRes(Named(new QToolBar(this), u"tlbCodeRes"_s)),
      lvwCodeRes(Named(new QTreeWidget(this), u"lvwCodeRes"_s)),
      lblCutLists(NewNote(this, u"lblCutLists"_s)),
      txtCodeRes(Named(new QPlainTextEdit(this), u"txtCodeRes"_s)),
      lblCutCode(NewNote(this, u"lblCutCode"_s)),
      txtAuthor(Named(new QLineEdit(this), u"txtAuthor"_s)),
      cmbCategory(NewTypingList(this, u"cmbCategory"_s)),
      txtComments(Named(new QPlainTextEdit(this), u"txtComments"_s)),
      lblFile(Named(new QLabel(this), u"lblFile"_s)),
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
    QAction *tool = tlbCodeRes->addAction(Icons::Load(key), text);
    tool->setObjectName(u"tlbCodeRes_"_s + key);
    tool->setToolTip(tip);
    connect(tool, &QAction::triggered, this, work);
    QWidget *face = Named(tlbCodeRes->widgetForAction(tool), tool->objectName());
    face->setFocusPolicy(Qt::TabFocus);
    return tool;
}

void frmCodeRes::MakeToolbar()
{
    tlbCodeRes->setIconSize(IconSize);
    tlbCodeRes->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
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
    lvwCodeRes->setHeaderHidden(true);
    lvwCodeRes->setUniformRowHeights(true);
    lvwCodeRes->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwCodeRes->setMinimumWidth(CharacterWidth(*this, TreeWidth) / 2);
    txtCodeRes->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtCodeRes->setTabStopDistance(QFontMetricsF(txtCodeRes->font()).horizontalAdvance(u' ') * TabColumns);
    txtCodeRes->setLineWrapMode(QPlainTextEdit::NoWrap);
    SetLines(*txtCodeRes, CodeLines / 2);
    SetLines(*txtComments, CommentLines / 2);
    for (const char16_t *category : Categories)
        cmbCategory->addItem(QString::fromUtf16(category));

    auto *left = new QWidget(this);
    auto *leftColumn = new QVBoxLayout(left);
    leftColumn->setContentsMargins({});
    leftColumn->addWidget(LabelFor(lvwCodeRes, u"&Fragments:"_s));
    leftColumn->addWidget(lvwCodeRes, 1);
    leftColumn->addWidget(lblCutLists);

    auto *right = new QWidget(this);
    auto *page = new QGridLayout(right);
    page->setContentsMargins({});
    page->setColumnStretch(1, 1);
    page->addWidget(LabelFor(txtCodeRes, u"C&ode:"_s), 0, 0, 1, 2);
    page->addWidget(txtCodeRes, 1, 0, 1, 2);
    page->setRowStretch(1, CodeLines);
    page->addWidget(lblCutCode, 2, 0, 1, 2);
    page->addWidget(LabelFor(txtAuthor, u"&Author:"_s), 3, 0);
    page->addWidget(txtAuthor, 3, 1);
    page->addWidget(LabelFor(cmbCategory, u"&Category:"_s), 4, 0);
    page->addWidget(cmbCategory, 4, 1);
    page->addWidget(LabelFor(txtComments, u"Co&mments:"_s), 5, 0, Qt::AlignTop);
    page->addWidget(txtComments, 5, 1);
    page->setRowStretch(5, CommentLines);
    page->addWidget(new QLabel(u"File:"_s, right), 6, 0);
    page->addWidget(lblFile, 6, 1);

    auto *panes = new QSplitter(this);
    panes->addWidget(left);
    panes->addWidget(right);
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
    SetTabOrder({lvwCodeRes, txtCodeRes, txtAuthor, cmbCategory, txtComments, bOK, bCancel});
    resize(CharacterWidth(*this, TreeWidth + CodeWidth + 6),
           fontMetrics().lineSpacing() * (CodeLines + CommentLines + 12));
}

void frmCodeRes::Connect()
{
    new TabStops(this, txtCodeRes);
    new TabStops(this, txtComments);
    lvwCodeRes->installEventFilter(this);
    lvwCodeRes->viewport()->installEventFilter(this);
    connect(lvwCodeRes, &QTreeWidget::currentItemChanged, this, &frmCodeRes::CurrentChanged);
    connect(lvwCodeRes, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *item) {
        if (IsFragment(item))
            Insert();
    });
    connect(lvwCodeRes, &QTreeWidget::itemExpanded, this, &frmCodeRes::CloseOthers);
    connect(lvwCodeRes, &QTreeWidget::itemCollapsed, this, &frmCodeRes::KeepCurrentInSight);
    connect(m_labels, &LabelEditor::Ended, this, [this](const QModelIndex &row, const QString &typed) {
        QTreeWidgetItem *item = lvwCodeRes->itemFromIndex(row);
        Guarded(m_editor.desktop, [&] { LabelEnded(item, typed); });
    });
    const auto changed = [this] {
        if (!m_quiet)
            m_save->setEnabled(true);
    };
    connect(txtCodeRes, &QPlainTextEdit::textChanged, this, changed);
    connect(txtAuthor, &QLineEdit::textChanged, this, changed);
    connect(txtComments, &QPlainTextEdit::textChanged, this, changed);
    connect(cmbCategory, &QComboBox::editTextChanged, this, changed);
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
    {
        const QScopedValueRollback quiet(m_quiet, true);
        lvwCodeRes->hide();
        lvwCodeRes->clear();
        m_fragments.clear();
        m_shown = nullptr;
        const RepositoryTree tree = BuildRepositoryTree(m_repository.Files(), view);
        const QColor grey = ReadableTwin(palette().color(QPalette::Disabled, QPalette::Text),
                                         palette().color(QPalette::Base));
        std::vector<QTreeWidgetItem *> items;
        items.reserve(tree.nodes.size());
        for (const RepositoryNode &node : tree.nodes) {
            auto *item = new QTreeWidgetItem({node.text});
            if (node.IsFragment()) {
                item->setData(0, TagRole, node.file);
                item->setFlags(item->flags() | Qt::ItemIsEditable);
                m_fragments.append(item);
            } else {
                item->setData(0, KeyRole, node.key);
                item->setForeground(0, grey);
            }
            items.push_back(item);
        }
        const auto all = [&](const std::vector<qsizetype> &numbers) {
            QList<QTreeWidgetItem *> row;
            for (const qsizetype number : numbers)
                row.append(items[size_t(number)]);
            return row;
        };
        for (size_t i = 0; i < items.size(); ++i)
            items[i]->addChildren(all(tree.nodes[i].children));
        lvwCodeRes->addTopLevelItems(all(tree.roots));
        if (!m_singleSel->isChecked())
            lvwCodeRes->expandAll();
        TellCutLists(tree);
        lvwCodeRes->show();
        lvwCodeRes->setFocus(Qt::OtherFocusReason);
        if (QTreeWidgetItem *first = lvwCodeRes->topLevelItem(0))
            SelectQuietly(first);
    }
    ShowCurrent();
}

void frmCodeRes::TellCutLists(const RepositoryTree &tree)
{
    QStringList notes;
    for (const CutFile &cut : tree.cut)
        notes += u"%1 is too long: only the first %2 of its %3 fragments are shown."_s
                     .arg(QFileInfo(QDir::fromNativeSeparators(cut.file)).fileName())
                     .arg(cut.shown)
                     .arg(cut.all);
    ShowNote(*lblCutLists, notes.join(u'\n'));
}

void frmCodeRes::CurrentChanged()
{
    if (m_quiet || m_leaving)
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
        SelectQuietly(m_shown);
}

void frmCodeRes::CloseOthers(QTreeWidgetItem *opened)
{
    if (!m_singleSel->isChecked())
        return;
    QTreeWidgetItem *parent = opened->parent() ? opened->parent() : lvwCodeRes->invisibleRootItem();
    for (int i = 0; i < parent->childCount(); ++i) {
        if (parent->child(i) != opened)
            parent->child(i)->setExpanded(false);
    }
}

void frmCodeRes::KeepCurrentInSight(QTreeWidgetItem *closed)
{
    for (QTreeWidgetItem *item = lvwCodeRes->currentItem(); item; item = item->parent()) {
        if (item->parent() == closed) {
            lvwCodeRes->setCurrentItem(closed);
            return;
        }
    }
}

void frmCodeRes::SelectQuietly(QTreeWidgetItem *item)
{
    const QScopedValueRollback quiet(m_quiet, true);
    lvwCodeRes->setCurrentItem(item);
    if (item)
        lvwCodeRes->scrollToItem(item);
}

void frmCodeRes::Remove(QTreeWidgetItem *item)
{
    {
        const QScopedValueRollback quiet(m_quiet, true);
        while (item && item->childCount() == 0) {
            QTreeWidgetItem *parent = item->parent();
            m_fragments.removeOne(item);
            if (m_shown == item)
                m_shown = nullptr;
            delete item;
            item = parent;
        }
    }
    if (!m_shown)
        ShowCurrent();
}

void frmCodeRes::RemoveTwin(QTreeWidgetItem *item)
{
    for (QTreeWidgetItem *other : std::as_const(m_fragments)) {
        if (other != item && TagOf(*other) == TagOf(*item) &&
            other->text(0).compare(item->text(0), Qt::CaseInsensitive) == 0) {
            Remove(other);
            return;
        }
    }
}

void frmCodeRes::PutInOrder(QTreeWidgetItem *item)
{
    QTreeWidgetItem *parent = item->parent();
    if (!parent)
        return;
    const QScopedValueRollback quiet(m_quiet, true);
    const bool current = lvwCodeRes->currentItem() == item;
    parent->takeChild(parent->indexOfChild(item));
    int place = 0;
    while (place < parent->childCount() && !SortsBefore(item->text(0), parent->child(place)->text(0)))
        ++place;
    parent->insertChild(place, item);
    if (current)
        SelectQuietly(item);
}

// The page

void frmCodeRes::ShowCurrent()
{
    m_shown = lvwCodeRes->currentItem();
    if (!IsFragmentShown()) {
        m_read = {};
        ShowPage({});
        lblFile->clear();
        ShowNote(*lblCutCode, {});
        EnablePage(false);
        setWindowTitle(u"Code Repository"_s);
        return;
    }
    const FragmentPlace place = ShownPlace();
    m_read = m_repository.Read(place);
    ShowPage(m_read.fields);
    lblFile->setText(QFileInfo(QDir::fromNativeSeparators(place.file)).fileName());
    ShowNote(*lblCutCode,
             m_read.cut
                 ? u"The fragment is longer than %1 characters: not all of it is shown."_s.arg(ReadLimit)
                 : QString());
    EnablePage(true);
    setWindowTitle(u"Code Repository - "_s + place.name);
}

void frmCodeRes::ShowPage(FragmentFields fields)
{
    const QScopedValueRollback quiet(m_quiet, true);
    txtCodeRes->setPlainText(fields.code);
    ShowFromStart(*txtAuthor, fields.author);
    txtComments->setPlainText(fields.comments);
    cmbCategory->setEditText(fields.category);
    m_filled = Shown();
    m_clean = m_read.fields = std::move(fields);
}

void frmCodeRes::EnablePage(bool enabled)
{
    for (QWidget *field : std::initializer_list<QWidget *>{txtCodeRes, txtAuthor, cmbCategory, txtComments}) {
        // With a text in use no control is a tab stop: the keyboard would find no other.
        if (!enabled && field->hasFocus())
            lvwCodeRes->setFocus(Qt::OtherFocusReason);
        field->setEnabled(enabled);
    }
    m_save->setEnabled(false);
    m_rename->setEnabled(enabled);
    m_delete->setEnabled(enabled);
    bOK->setEnabled(enabled);
}

FragmentFields frmCodeRes::Shown() const
{
    return {.code = TextOf(*txtCodeRes),
            .author = txtAuthor->text(),
            .comments = TextOf(*txtComments),
            .category = cmbCategory->currentText()};
}

FragmentFields frmCodeRes::Page() const
{
    // What was not touched stays as it was read: a field may not hold every character.
    const auto field = [](const QString &now, const QString &filled, const QString &read) {
        return now == filled ? read : now;
    };
    const FragmentFields shown = Shown();
    return {.code = field(shown.code, m_filled.code, m_read.fields.code),
            .author = field(shown.author, m_filled.author, m_read.fields.author),
            .comments = field(shown.comments, m_filled.comments, m_read.fields.comments),
            .category = field(shown.category, m_filled.category, m_read.fields.category)};
}

bool frmCodeRes::IsFragmentShown() const
{
    return IsFragment(m_shown);
}

FragmentPlace frmCodeRes::ShownPlace() const
{
    return {.file = TagOf(*m_shown), .name = m_shown->text(0)};
}

bool frmCodeRes::IsUnsaved() const
{
    return IsFragmentShown() && !m_shown->text(0).isEmpty() && Page() != m_clean;
}

bool frmCodeRes::MayLeave()
{
    if (!IsUnsaved())
        return true;
    const FragmentWrite left = m_repository.SaveBeforeLeaving(ShownPlace(), m_read, Page());
    if (left == FragmentWrite::Done)
        m_clean = Page();
    return left != FragmentWrite::Failed;
}

// The commands

void frmCodeRes::New(const QString &code)
{
    if (!MayLeave())
        return;
    auto *item = new QTreeWidgetItem;
    item->setData(0, TagRole, m_repository.PersonalFile());
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    {
        const QScopedValueRollback quiet(m_quiet, true);
        lvwCodeRes->addTopLevelItem(item);
    }
    m_fragments.append(item);
    m_new = m_repository.NewFragment(code);
    EditLabel(item, {});
}

void frmCodeRes::EditLabel(QTreeWidgetItem *item, const QString &text)
{
    m_oldLabel = item->text(0);
    SelectQuietly(item);
    if (m_oldLabel.isEmpty()) {
        ShowCurrent();
        m_read = {};
        ShowPage(m_new);
        m_save->setEnabled(true);
        lblFile->clear();
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
    if (m_repository.Rename({.file = TagOf(*item), .name = m_oldLabel}, name) != FragmentWrite::Done)
        return;
    item->setText(0, name);
    RemoveTwin(item);
    PutInOrder(item);
    if (m_shown == item) {
        // What the page shows is not saved with the name.
        const StoredFragment now = m_repository.Read(ShownPlace());
        ProfileEntries moved = m_read.entries;
        CutSection(moved);
        setWindowTitle(u"Code Repository - "_s + name);
        if (now.entries == moved) {
            m_read.entries = now.entries;
            m_read.cut = now.cut;
        } else if (!IsUnsaved()) {
            ShowCurrent(); // another editor has changed it
        }
        // Otherwise the next save asks.
    }
}

void frmCodeRes::NameNew(QTreeWidgetItem *item, const QString &name)
{
    const FragmentWrite added = m_repository.Add({.file = TagOf(*item), .name = name}, m_new);
    if (added == FragmentWrite::Declined) {
        EditLabel(item, name);
        return;
    }
    item->setText(0, name);
    if (added == FragmentWrite::Done)
        RemoveTwin(item);
    if (m_shown != item) {
        if (added == FragmentWrite::Done)
            return;
        SelectQuietly(item); // a click on another node has ended the label
    }
    ShowCurrent();
    if (added == FragmentWrite::Failed) {
        // The page is all there is of it.
        ShowPage(m_new);
        m_clean = {};
        m_save->setEnabled(true);
    }
}

void frmCodeRes::Rename()
{
    if (IsFragmentShown())
        EditLabel(m_shown, {});
}

void frmCodeRes::Save(bool as)
{
    if (!IsFragmentShown())
        return;
    const FragmentPlace place = ShownPlace();
    if (m_repository.Save(place, m_read, Page(), as) != FragmentWrite::Done)
        return;
    if (as) {
        m_clean = Page();
        return;
    }
    // The caret stays, unless the file gives back another text.
    StoredFragment now = m_repository.Read(place);
    FragmentFields read = now.fields;
    for (QString *text : {&read.code, &read.comments})
        text->replace(u"\r\n"_s, u"\n"_s);
    if (read != Shown()) {
        ShowCurrent();
        return;
    }
    m_read = std::move(now);
    m_filled = Shown();
    m_clean = m_read.fields;
    m_save->setEnabled(false);
}

void frmCodeRes::Delete()
{
    if (IsFragmentShown() && m_repository.Delete(ShownPlace(), m_read) == FragmentWrite::Done)
        Remove(m_shown);
}

void frmCodeRes::Find()
{
    QStringList names;
    for (const QTreeWidgetItem *item : std::as_const(m_fragments))
        names += item->text(0);
    const std::optional<qsizetype> found = m_repository.Find(names);
    if (!found || (m_fragments[*found] != m_shown && !MayLeave()))
        return;
    SelectQuietly(m_fragments[*found]);
    if (lvwCodeRes->currentItem() != m_shown)
        ShowCurrent();
}

void frmCodeRes::Insert()
{
    const QTreeWidgetItem *const meant = m_shown;
    if (!EndLabel() || m_shown != meant || !IsFragmentShown())
        return;
    // The code goes into the text; the rest of the page would go with the dialog.
    FragmentFields inserted = m_clean;
    inserted.code = Page().code;
    Guarded(m_editor.desktop, [&] {
        if (Page() != inserted && !MayLeave())
            return;
        InsertColoured(m_editor, m_steps, TextOf(*txtCodeRes));
        accept();
    });
}

// Events

bool frmCodeRes::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lvwCodeRes->viewport() && event->type() == QEvent::MouseButtonDblClick)
        return static_cast<QMouseEvent *>(event)->button() != Qt::LeftButton;
    if (watched == lvwCodeRes && event->type() == QEvent::KeyPress && !m_labels->IsEditing()) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!IsFragmentShown())
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

void frmCodeRes::done(int result)
{
    // Only the end of the program comes here with a label open: no question may hold it up.
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
