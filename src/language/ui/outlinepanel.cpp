// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/outlinepanel.h"

#include "language/languagekeys.h"
#include "language/outline.h"
#include "language/outlinecommands.h"
#include "language/ui/outlinemodel.h"
#include "platform/ui/textcontrol.h"
#include "shell/bands.h"
#include "shell/documentview.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"

#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int DeepestOpened = 100;          ///< levels
constexpr qsizetype MostOpened = 1'000'000; ///< rows

/// The context menu of a row, by the letters that its key begins with.
MenuName MenuOf(const QModelIndex &row)
{
    const QString key = row.data(OutlineModel::KeyRole).toString();
    if (key.startsWith(u"ins"))
        return Menu::mnuBrowseEditable;
    return key.startsWith(u"inc") ? Menu::mnuBrowseInclude : Menu::mnuTreeView;
}

} // namespace

OutlinePanel::OutlinePanel(const WindowContext &context)
    : m_context(context),
      m_model(new OutlineModel(this)),
      m_place(
          context, *this, PanelBand::Browse, Cmd::mnuBrowse, [this] { BuildOutline(); }, [this] { Clear(); })
{
    setObjectName(u"tvwBrowse"_s);
    setAccessibleName(u"Code Outline"_s);
    setUniformRowHeights(true);
    setModel(m_model);
    BindCommands(context);
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex &row) { m_context.commands.Guard([&] { ClickNode(row); }); });
    connect(this, &QWidget::customContextMenuRequested, this, &OutlinePanel::ShowMenu);
    connect(this, &QTreeView::expanded, this, &OutlinePanel::CloseOthers);
    connect(this, &QTreeView::collapsed, this, &OutlinePanel::KeepCurrentInSight);
    connect(&context.text, &TextControl::textChanged, this, [this] { OutlineCurrent = false; });
}

void OutlinePanel::BindCommands(const WindowContext &context)
{
    context.commands.Bind(Cmd::mnuBrowseEdit, [this](InstrumentEntry entry) { EditInstrument(entry); });
    context.commands.Bind(Cmd::mnuBInclude, [this](IncludeEntry entry) { UseInclude(entry); });
    context.commands.Bind(Cmd::mnuTV, [this](TreeEntry entry) { ChangeTree(entry); });
}

void OutlinePanel::ApplySingleSelection()
{
    m_single = m_context.editor.settings.Flag(Keys::SingleSelection);
}

void OutlinePanel::Clear()
{
    m_model->Show({}, false);
    OutlineCurrent = false;
}

void OutlinePanel::BuildOutline()
{
    m_context.view.SetBusy(true);
    const auto ready = qScopeGuard([this] { m_context.view.SetBusy(false); });
    const bool expand = m_context.editor.settings.Flag(Keys::ExpandBrowse);
    ApplySingleSelection();
    const FileKind kind = m_context.editor.document.DocumentKind;
    m_model->Show(ScanOutline(m_context.editor.text.Text(), kind), kind != FileKind::Other);
    if (expand)
        OpenRootsAndTags();
    if (m_model->Shown().Count() > 0)
        setCurrentIndex(m_model->index(0, 0));
    OutlineCurrent = true;
}

// The use of nodes

QModelIndex OutlinePanel::Refreshed(const QModelIndex &row)
{
    if (OutlineCurrent)
        return row;
    const QString key = row.data(OutlineModel::KeyRole).toString();
    BuildOutline();
    const QModelIndex again = m_model->IndexOf(m_model->Shown().Find(key));
    if (again.isValid())
        setCurrentIndex(again);
    return again;
}

qsizetype OutlinePanel::UseNode(const QModelIndex &row)
{
    return m_model->PlaceOf(Refreshed(row));
}

void OutlinePanel::ClickNode(const QModelIndex &row)
{
    const qsizetype place = UseNode(row);
    if (place < 0)
        return;
    m_context.text.setUpdatesEnabled(false);
    const auto shown = qScopeGuard([this] { m_context.text.setUpdatesEnabled(true); });
    ShowOutlineNode(m_context.editor, m_model->Shown(), place);
}

void OutlinePanel::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_context.commands.Guard([this] { ClickNode(currentIndex()); });
        break;
    case Qt::Key_Asterisk:
        if (const qsizetype place = m_model->PlaceOf(currentIndex()); place >= 0)
            OpenBelow({place});
        break;
    default:
        QTreeView::keyPressEvent(event);
        break;
    }
}

// The context menus

void OutlinePanel::ShowMenu(const QPoint &at)
{
    const QModelIndex under = indexAt(at);
    QModelIndex row = under.isValid() ? under : currentIndex();
    // A menu that works on the text has to be that of what is shown.
    if (MenuOf(row) != Menu::mnuTreeView)
        row = Refreshed(row);
    m_menuRow = row;
    m_context.menus.Menu(MenuOf(row))->popup(viewport()->mapToGlobal(at));
}

void OutlinePanel::EditInstrument(InstrumentEntry entry)
{
    const qsizetype place = UseMenuNode();
    const Outline &outline = m_model->Shown();
    const qsizetype number = place < 0 ? 0 : InstrumentOfNode(outline, place);
    if (number == 0)
        return;
    EditorContext &editor = m_context.editor;
    const TextSpan instrument = outline.Instrument(number);
    switch (entry) {
    case InstrumentEntry::Copy:
        CopyInstrument(editor, instrument);
        return;
    case InstrumentEntry::Export:
        ExportInstrument(editor, instrument,
                         outline.Caption(outline.Find(u"ins"_s + QString::number(number))));
        return;
    case InstrumentEntry::Select:
    case InstrumentEntry::Cut:
    case InstrumentEntry::Delete:
        break;
    }
    editor.text.SetSelection(instrument.start, instrument.end);
    if (entry == InstrumentEntry::Cut)
        m_context.commands.Run(Cmd::mnuEditItem[EditItem::Cut]);
    else if (entry == InstrumentEntry::Delete)
        m_context.commands.Run(Cmd::mnuDelete);
}

void OutlinePanel::UseInclude(IncludeEntry entry)
{
    const qsizetype place = UseMenuNode();
    const Outline &outline = m_model->Shown();
    if (place < 0 || outline.At(place).isRoot || outline.At(place).kind != OutlineKind::Include)
        return;
    const QString name = outline.Caption(place);
    if (entry == IncludeEntry::Open)
        OpenInclude(m_context.editor, name);
    else
        InsertInclude(m_context.editor, name, outline.At(place).tag);
}

void OutlinePanel::ChangeTree(TreeEntry entry)
{
    switch (entry) {
    case TreeEntry::Expand:
    case TreeEntry::Collapse:
        return; // offered, and without an action
    case TreeEntry::ExpandAll:
        OpenBelow(Roots());
        break;
    case TreeEntry::CollapseAll:
        collapseAll();
        for (const qsizetype root : Roots())
            KeepCurrentInSight(m_model->IndexOf(root));
        break;
    case TreeEntry::Refresh:
        BuildOutline();
        break;
    }
    setFocus();
}

// Branches

void OutlinePanel::OpenBelow(std::vector<qsizetype> places)
{
    const QScopedValueRollback many(m_opensMany, true);
    const Outline &outline = m_model->Shown();
    // One layout for all of it, when it is drawn.
    scheduleDelayedItemsLayout();
    qsizetype rows = 0;
    for (int level = 0; level < DeepestOpened && !places.empty(); ++level) {
        std::vector<qsizetype> below;
        for (const qsizetype place : places) {
            const qsizetype count = outline.ChildCount(place);
            if (count == 0 || rows + count > MostOpened)
                continue;
            rows += count;
            expand(m_model->IndexOf(place));
            for (qsizetype row = 0; row < count; ++row)
                below.push_back(outline.Child(place, row));
        }
        places = std::move(below);
    }
}

std::vector<qsizetype> OutlinePanel::Roots() const
{
    std::vector<qsizetype> roots;
    for (qsizetype row = 0; row < m_model->Shown().ChildCount(-1); ++row)
        roots.push_back(m_model->Shown().Child(-1, row));
    return roots;
}

void OutlinePanel::OpenRootsAndTags()
{
    const QScopedValueRollback many(m_opensMany, true);
    scheduleDelayedItemsLayout();
    for (const qsizetype root : Roots()) {
        if (m_model->Shown().At(root).kind == OutlineKind::Tag)
            OpenBelow({root});
        else
            expand(m_model->IndexOf(root));
    }
}

void OutlinePanel::CloseOthers(const QModelIndex &opened)
{
    if (!m_single || m_opensMany)
        return;
    const int count = m_model->rowCount(opened.parent());
    for (int row = 0; row < count; ++row) {
        if (row != opened.row())
            collapse(m_model->index(row, 0, opened.parent()));
    }
}

void OutlinePanel::KeepCurrentInSight(const QModelIndex &closed)
{
    for (QModelIndex row = currentIndex().parent(); row.isValid(); row = row.parent()) {
        if (row == closed) {
            setCurrentIndex(closed);
            return;
        }
    }
}

} // namespace zelvane
