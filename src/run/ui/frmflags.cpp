// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmflags.h"

#include "shell/editorcontext.h"
#include "shell/ui/form.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

enum Column { FlagColumn, ValueColumn, DescriptionColumn };

constexpr int RowsShown = 18;       ///< as high as the list is at first
constexpr int ValueCharacters = 14; ///< room for a value that is typed
constexpr int ColumnGap = 12;       ///< behind the text of a column, pixels
constexpr int RowGap = 4;           ///< between the texts of two rows, pixels

} // namespace

frmFlags::frmFlags(EditorContext &editor, QWidget *target, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_target(target),
      m_choices(FlagChoices(ShippedFlagTable())),
      lvwFlags(Named(new QTreeWidget(this), u"lvwFlags"_s, u"Csound flags"_s)),
      txtFlags(Named(new QLineEdit(this), u"txtFlags"_s, u"Flags picked"_s)),
      cmdOK(Named(new QPushButton(u"OK"_s, this), u"cmdOK"_s)),
      cmdCancel(Named(new QPushButton(u"Cancel"_s, this), u"cmdCancel"_s))
{
    setObjectName(u"frmFlags"_s);
    setWindowTitle(ProgramCaption(u"Csound Flags"_s));
    if (const QLineEdit *field = FieldOf(m_target))
        m_selection.Hold(*field);
    BuildList();
    LayOut();
    LoadRows();
    SetSize();
}

void frmFlags::BuildList()
{
    lvwFlags->setHeaderLabels({u"Flag"_s, u"Value"_s, u"Description"_s});
    lvwFlags->setRootIsDecorated(false);
    lvwFlags->setUniformRowHeights(true);
    lvwFlags->setAllColumnsShowFocus(true);
    lvwFlags->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwFlags->header()->setSectionsMovable(false);
    lvwFlags->installEventFilter(this);
    connect(lvwFlags, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *item, int column) {
        if (column == FlagColumn && !m_changing)
            RowChanged(item);
    });
}

void frmFlags::LayOut()
{
    auto *line = new QHBoxLayout;
    line->addWidget(Named(LabelFor(txtFlags, u"&Flags:"_s), u"lblFlags"_s));
    line->addWidget(txtFlags, 1);
    auto *all = new QVBoxLayout(this);
    all->addWidget(lvwFlags, 1);
    all->addLayout(line);
    all->addWidget(ButtonBox(*this, cmdOK, cmdCancel, [this] { Confirm(); }));
    SetTabOrder({lvwFlags, txtFlags, cmdOK, cmdCancel});
    lvwFlags->setFocus();
}

void frmFlags::LoadRows()
{
    m_changing = true;
    for (const FlagChoice &choice : m_choices) {
        auto *item = new QTreeWidgetItem(lvwFlags, {choice.row.flag, choice.value, choice.row.description});
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                       Qt::ItemNeverHasChildren);
        item->setCheckState(FlagColumn, Qt::Unchecked);
        item->setSizeHint(ValueColumn, QSize(0, fontMetrics().height() + RowGap));
    }
    m_changing = false;
    lvwFlags->setCurrentItem(lvwFlags->topLevelItem(0));
}

void frmFlags::SetSize()
{
    lvwFlags->resizeColumnToContents(FlagColumn);
    lvwFlags->resizeColumnToContents(DescriptionColumn);
    QHeaderView *header = lvwFlags->header();
    header->resizeSection(FlagColumn, header->sectionSize(FlagColumn) + ColumnGap);
    header->resizeSection(ValueColumn, fontMetrics().averageCharWidth() * ValueCharacters + ColumnGap);
    const int frame = 2 * lvwFlags->frameWidth();
    const QMargins margins = layout()->contentsMargins();
    const int wide = header->length() + lvwFlags->verticalScrollBar()->sizeHint().width() + frame +
                     margins.left() + margins.right();
    const int rowHigh = lvwFlags->visualItemRect(lvwFlags->topLevelItem(0)).height();
    const int high = sizeHint().height() - lvwFlags->sizeHint().height() + header->sizeHint().height() +
                     RowsShown * rowHigh + frame;
    resize(QSize(wide, high).boundedTo(screen()->availableSize() * 0.9));
}

void frmFlags::RowChanged(QTreeWidgetItem *item)
{
    m_changing = true;
    const auto done = qScopeGuard([this] { m_changing = false; });
    FlagChoice &choice = m_choices[size_t(lvwFlags->indexOfTopLevelItem(item))];
    SetFlagChecked(choice, item->checkState(FlagColumn) == Qt::Checked, m_editor.desktop);
    item->setCheckState(FlagColumn, choice.checked ? Qt::Checked : Qt::Unchecked);
    item->setText(ValueColumn, choice.value);
    txtFlags->setText(FlagLine(m_choices));
}

bool frmFlags::eventFilter(QObject *watched, QEvent *event)
{
    // The space bar checks the row in whatever column it was clicked.
    if (watched == lvwFlags && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        QTreeWidgetItem *item = lvwFlags->currentItem();
        if (item && (key->key() == Qt::Key_Space || key->key() == Qt::Key_Select) &&
            key->modifiers() == Qt::NoModifier) {
            if (!key->isAutoRepeat())
                item->setCheckState(FlagColumn, item->checkState(FlagColumn) == Qt::Checked ? Qt::Unchecked
                                                                                            : Qt::Checked);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmFlags::Confirm()
{
    const QString line = txtFlags->text();
    if (!AcceptFlagLine(line, m_editor.desktop))
        return;
    if (QLineEdit *field = FieldOf(m_target)) {
        m_selection.Restore(*field);
        const int start = PutFlags(*field, line);
        if (field == m_target)
            field->setSelection(start, int(line.size()));
    }
    accept();
}

} // namespace zelvane
