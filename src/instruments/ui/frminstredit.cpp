// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/frminstredit.h"

#include "instruments/instrclass.h"
#include "instruments/instrgui.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/ui/onelinefield.h"
#include "platform/ui/withinscreen.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/dialogtoolbar.h"
#include "shell/ui/form.h"
#include "shell/ui/toolbutton.h"

#include <functional>
#include <limits>
#include <QAbstractItemModel>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLineEdit>
#include <QList>
#include <QModelIndex>
#include <QPushButton>
#include <QSize>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The order of the pages in their frame.
enum Page { InstrumentPageRow, FieldPageRow };

constexpr int TreeWidth = 56;  ///< characters
constexpr int PageWidth = 52;  ///< characters
constexpr int TreeHeight = 24; ///< lines

/// The node that is chosen is the current one, and it is left only when it may be.
class NodeSelection : public QItemSelectionModel
{
public:
    NodeSelection(QAbstractItemModel *model, QObject *parent, std::function<bool()> mayLeave)
        : QItemSelectionModel(model, parent), m_mayLeave(std::move(mayLeave))
    {
    }

    void setCurrentIndex(const QModelIndex &index, QItemSelectionModel::SelectionFlags) override
    {
        if (index == currentIndex() || !index.isValid() || (currentIndex().isValid() && !m_mayLeave()))
            return;
        QItemSelectionModel::setCurrentIndex(index, ClearAndSelect);
    }
    void select(const QModelIndex &index, QItemSelectionModel::SelectionFlags command) override
    {
        select(QItemSelection(index, index), command);
    }
    void select(const QItemSelection &, QItemSelectionModel::SelectionFlags) override
    {
        const QModelIndex chosen = currentIndex();
        if (chosen.isValid())
            QItemSelectionModel::select(QItemSelection(chosen, chosen), ClearAndSelect);
    }

private:
    std::function<bool()> m_mayLeave;
};

QLineEdit *NewField(QWidget *parent, const QString &name)
{
    auto *field = Named(new QLineEdit(parent), name);
    field->setMaxLength(std::numeric_limits<int>::max()); // what was stored is never cut
    SelectOnFocus(field);
    return field;
}

QComboBox *NewList(QWidget *parent, const QString &name)
{
    QComboBox *list = NewTypingList(parent, name);
    list->lineEdit()->setMaxLength(std::numeric_limits<int>::max());
    return list;
}

/// What the store holds stays as it is; what is pasted is one line.
void ShowStored(QLineEdit &field, const QString &text)
{
    PutKeptText(field, text);
    field.setCursorPosition(0);
}

void ShowStored(QComboBox &list, const QString &text)
{
    // By its row too, from which the arrow keys go on.
    list.setCurrentIndex(list.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    ShowFromStart(*list.lineEdit(), text);
}

QStringList Units()
{
    return {u"sec"_s, u"ms"_s, u"Hz"_s, u"pch"_s, u"oct"_s, u"Db"_s, u"%"_s, u"‰"_s, u"°"_s};
}

QStringList Formats()
{
    return {u"Real"_s, u"Integer"_s, u"Boolean"_s, u"String"_s};
}

} // namespace

frmInstrEdit::frmInstrEdit(EditorContext &editor, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      tlbInstrEdit(NewDialogToolbar(this, u"tlbInstrEdit"_s)),
      m_model(new InstrumentModel(m_instruments, this)),
      tvwInstrEdit(Named(new QTreeView(this), u"tvwInstrEdit"_s, u"Instruments"_s)),
      fraP(Named(new QStackedWidget(this), u"fraP"_s)),
      TxtInsName(NewField(this, u"TxtInsName"_s)),
      TxtInsDesc(NewField(this, u"TxtInsDesc"_s)),
      TxtInsNumber(NewField(this, u"TxtInsNumber"_s)),
      txtName(NewField(this, u"txtName"_s)),
      txtDescription(NewField(this, u"txtDescription"_s)),
      cmbGroup(NewList(this, u"cmbGroup"_s)),
      txtMin(NewField(this, u"txtMin"_s)),
      txtMax(NewField(this, u"txtMax"_s)),
      cmbFormat(Named(new QComboBox(this), u"cmbFormat"_s)),
      cmbUnit(NewList(this, u"cmbUnit"_s)),
      txtVar(NewField(this, u"txtVar"_s)),
      bOK(Named(new QPushButton(u"OK"_s, this), u"bOK"_s)),
      bCancel(Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s))
{
    setObjectName(u"frmInstrEdit"_s);
    setWindowTitle(u"Instrument Properties"_s);
    cmbFormat->addItems(Formats());
    cmbUnit->addItems(Units());
    BuildToolbar();
    LayOut();
    m_loaded = LoadInstruments(m_editor, m_instruments);
    BuildTree();
    tvwInstrEdit->setFocus();
}

void frmInstrEdit::BuildToolbar()
{
    const auto add = [this](const QString &key, const QString &caption, const QString &tooltip,
                            const QKeySequence &shortcut, std::function<void()> work) {
        // Every button has a key: none takes the keyboard.
        QAction *action =
            AddDialogTool(*tlbInstrEdit, key, caption,
                          tooltip + u" ("_s + shortcut.toString(QKeySequence::NativeText) + u')');
        action->setShortcut(shortcut);
        connect(action, &QAction::triggered, this, std::move(work));
        return action;
    };
    m_newInstrument = add(u"instr"_s, u"New instrument"_s, u"Describe another instrument"_s,
                          Qt::CTRL | Qt::Key_N, Guard(&frmInstrEdit::AddInstrument));
    m_newField = add(u"label"_s, u"New p-field"_s, u"Add a p-field to the instrument"_s, Qt::CTRL | Qt::Key_P,
                     Guard(&frmInstrEdit::AddField));
    m_delete = add(u"delete"_s, u"Delete"_s, u"Delete the selected p-field or instrument"_s, Qt::Key_Delete,
                   Guard(&frmInstrEdit::Remove));
    tlbInstrEdit->addSeparator();
    m_up = add(u"up"_s, u"Up"_s, u"Move the p-field towards p1"_s, Qt::CTRL | Qt::Key_Up,
               [this] { Guarded(m_editor.desktop, [this] { Move(true); }); });
    m_down = add(u"down"_s, u"Down"_s, u"Move the p-field away from p1"_s, Qt::CTRL | Qt::Key_Down,
                 [this] { Guarded(m_editor.desktop, [this] { Move(false); }); });
    // In a field the key deletes characters.
    m_delete->setShortcutContext(Qt::WidgetShortcut);
    tvwInstrEdit->addAction(m_delete);
    ShowFlatButtons(*tlbInstrEdit, m_editor.settings);
    tlbInstrEdit->setMinimumWidth(tlbInstrEdit->sizeHint().width()); // no button behind an arrow
}

QWidget *frmInstrEdit::NewInstrumentPage()
{
    auto *page = new QWidget;
    FormGrid form(page);
    form.Add({.caption = u"&Name:"_s, .field = TxtInsName, .hint = u"Instrument name."_s});
    form.Add({.caption = u"&Description:"_s, .field = TxtInsDesc, .hint = u"Instrument description."_s});
    form.Add({.caption = u"&Number:"_s, .field = TxtInsNumber, .hint = u"Instrument number."_s});
    form.AddStretch();
    return page;
}

QWidget *frmInstrEdit::NewFieldPage()
{
    auto *page = new QWidget;
    FormGrid form(page);
    form.Add({.caption = u"&Name:"_s, .field = txtName, .hint = u"Parameter name."_s});
    form.Add({.caption = u"&Description:"_s, .field = txtDescription, .hint = u"Parameter description."_s});
    form.Add({.caption = u"Group:"_s,
              .field = cmbGroup,
              .hint = u"Use this property to organize parameters in different groups. Case insensitive."_s});
    form.Add({.caption = u"&Min:"_s, .field = txtMin, .hint = u"Minimum value for the parameter."_s});
    form.Add({.caption = u"Ma&x:"_s, .field = txtMax, .hint = u"Maximum value for the parameter."_s});
    form.Add(
        {.caption = u"&Format:"_s,
         .field = cmbFormat,
         .hint = u"Specify if the parameter is a real number, an integer, a boolean value or a string."_s});
    form.Add(
        {.caption = u"Measure &unit:"_s,
         .field = cmbUnit,
         .hint = u"Specify the measure unit for the parameter. This is only a \"cosmetic\" property."_s});
    form.Add({.caption = u"&Variable name:"_s,
              .field = txtVar,
              .hint = u"This field is required for automatic p-fields mapping."_s});
    form.AddStretch();
    return page;
}

void frmInstrEdit::LayOut()
{
    tvwInstrEdit->setHeaderHidden(true);
    tvwInstrEdit->setUniformRowHeights(true);
    tvwInstrEdit->setModel(m_model);
    QItemSelectionModel *const modelsOwn = tvwInstrEdit->selectionModel();
    auto *selection = new NodeSelection(m_model, this, [this] { return SavePage(); });
    tvwInstrEdit->setSelectionModel(selection);
    delete modelsOwn;
    connect(selection, &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &index) { ShowNode(m_model->At(index)); });

    fraP->insertWidget(InstrumentPageRow, NewInstrumentPage());
    fraP->insertWidget(FieldPageRow, NewFieldPage());
    tvwInstrEdit->setMinimumWidth(CharacterWidth(*this, TreeWidth) / 2);
    fraP->setMinimumWidth(CharacterWidth(*this, PageWidth));

    auto *both = new QHBoxLayout;
    both->addWidget(tvwInstrEdit, 1);
    both->addWidget(fraP, 1);
    auto *all = new QVBoxLayout(this);
    all->addWidget(tlbInstrEdit);
    all->addLayout(both, 1);
    all->addWidget(ButtonBox(*this, bOK, bCancel, Guard(&frmInstrEdit::Confirm)));
    SetTabOrder(QList<QWidget *>{tvwInstrEdit, TxtInsName, TxtInsDesc, TxtInsNumber, txtName, txtDescription,
                                 cmbGroup, txtMin, txtMax, cmbFormat, cmbUnit, txtVar, bOK, bCancel});
    const QSize usual(CharacterWidth(*this, TreeWidth + PageWidth), fontMetrics().lineSpacing() * TreeHeight);
    resize(WithinScreen(*this, usual));
}

// The tree

void frmInstrEdit::BuildTree(const Node &chosen)
{
    m_shown = {};
    m_model->Build();
    tvwInstrEdit->expandAll();
    cmbGroup->clear();
    cmbGroup->addItems(ParameterGroups(m_instruments));
    QModelIndex index = m_model->IndexOf(chosen.instrument, chosen.field);
    if (!index.isValid())
        index = m_model->index(0, 0);
    if (!index.isValid()) {
        // The pages are disabled, which would leave the keyboard nowhere.
        if (fraP->isAncestorOf(focusWidget()))
            tvwInstrEdit->setFocus();
        ShowNode({});
        return;
    }
    tvwInstrEdit->setCurrentIndex(index);
    tvwInstrEdit->scrollTo(index);
}

frmInstrEdit::Node frmInstrEdit::Current() const
{
    return m_model->At(tvwInstrEdit->currentIndex());
}

void frmInstrEdit::ShowNode(const Node &node)
{
    m_shown = node;
    const pClass *const field = node.field;
    if (field)
        ShowPage(PageOf(*field));
    else
        ShowPage(node.instrument ? PageOf(*node.instrument) : InstrumentPage());
    fraP->setCurrentIndex(field ? FieldPageRow : InstrumentPageRow);
    fraP->setEnabled(node.instrument != nullptr);
    m_newField->setEnabled(node.instrument != nullptr);
    m_delete->setEnabled(node.instrument != nullptr);
    m_up->setEnabled(field && field->number > 1);
    m_down->setEnabled(field && field->number < node.instrument->pCol.Count());
}

void frmInstrEdit::ShowPage(const InstrumentPage &page)
{
    ShowStored(*TxtInsName, page.name);
    ShowStored(*TxtInsDesc, page.description);
    ShowStored(*TxtInsNumber, page.number);
}

void frmInstrEdit::ShowPage(const FieldPage &page)
{
    ShowStored(*txtName, page.name);
    ShowStored(*txtDescription, page.description);
    ShowStored(*cmbGroup, page.group);
    ShowStored(*txtMin, page.min);
    ShowStored(*txtMax, page.max);
    cmbFormat->setCurrentIndex(page.format);
    ShowStored(*cmbUnit, page.unit);
    ShowStored(*txtVar, page.variable);
}

InstrumentPage frmInstrEdit::TheInstrumentPage() const
{
    return {TxtInsName->text(), TxtInsDesc->text(), TxtInsNumber->text()};
}

FieldPage frmInstrEdit::TheFieldPage() const
{
    return {txtName->text(), txtDescription->text(),    cmbGroup->currentText(), txtMin->text(),
            txtMax->text(),  cmbFormat->currentIndex(), cmbUnit->currentText(),  txtVar->text()};
}

bool frmInstrEdit::HasChanges() const
{
    if (m_changed || !m_shown.instrument)
        return m_changed;
    return m_shown.field ? TheFieldPage() != PageOf(*m_shown.field)
                         : TheInstrumentPage() != PageOf(*m_shown.instrument);
}

bool frmInstrEdit::MayCancel()
{
    return !HasChanges() || m_editor.desktop.MessageBox(
                                {.text = u"The changes to the instruments are not saved. Discard them?"_s,
                                 .icon = BoxIcon::Warning,
                                 .buttons = BoxButtons::YesNo,
                                 .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

bool frmInstrEdit::SavePage()
{
    const Node node = m_shown;
    if (!node.instrument)
        return true;
    m_changed = HasChanges();
    bool saved = false;
    Guarded(m_editor.desktop, [&] {
        saved = node.field
                    ? StorePage(*node.field, TheFieldPage(), m_editor.desktop)
                    : StorePage(*node.instrument, TheInstrumentPage(), m_instruments, m_editor.desktop);
    });
    m_model->Touch(m_model->IndexOf(node.instrument, node.field));
    return saved;
}

// The commands

void frmInstrEdit::AddInstrument()
{
    if (!SavePage())
        return;
    if (InstrClass *const instrument = NewInstrument(m_instruments, m_editor.desktop)) {
        m_changed = true;
        BuildTree({instrument});
    }
}

void frmInstrEdit::AddField()
{
    const Node node = Current();
    if (!node.instrument || !SavePage())
        return;
    const int shown = m_model->rowCount(m_model->IndexOf(node.instrument));
    pClass &added = node.instrument->addP(ToInteger<qint16>(shown + 1));
    m_changed = true;
    BuildTree({node.instrument, &added});
}

void frmInstrEdit::Move(bool up)
{
    const Node node = Current();
    if (!node.field) {
        Warn(u"Select a p-field."_s);
        return;
    }
    if (!SavePage())
        return;
    const qint16 number = node.field->number;
    m_changed = true;
    if (!(up ? node.instrument->pMoveUp(number) : node.instrument->pMoveDown(number)))
        TellError(u"Error moving p-field."_s);
    BuildTree(node);
}

void frmInstrEdit::Remove()
{
    const Node node = Current();
    if (!node.instrument) {
        Warn(u"No selected item."_s);
        return;
    }
    if (!(node.field ? RemoveField(node) : RemoveInstrument(node)))
        return;
    m_changed = true;
    BuildTree();
}

bool frmInstrEdit::RemoveField(const Node &node)
{
    m_shown = {};
    if (!node.instrument->pRemove(node.field->number))
        TellError(u"Error removing p-field."_s);
    return true;
}

bool frmInstrEdit::RemoveInstrument(const Node &node)
{
    if (m_editor.desktop.MessageBox({.text = u"Delete instrument?"_s,
                                     .icon = BoxIcon::Question,
                                     .buttons = BoxButtons::YesNo,
                                     .defaultAnswer = BoxAnswer::No}) != BoxAnswer::Yes)
        return false;
    m_shown = {};
    return m_instruments.Remove(m_instruments.KeyOf(*node.instrument));
}

void frmInstrEdit::Confirm()
{
    if (!SavePage())
        return;
    if (!StoreInstruments(m_editor, m_instruments, m_loaded))
        TellError(u"Cannot save Instrument Properties."_s);
    accept();
}

void frmInstrEdit::Warn(const QString &text)
{
    m_editor.desktop.MessageBox({.text = text, .icon = BoxIcon::Warning});
}

void frmInstrEdit::TellError(const QString &text)
{
    m_editor.desktop.MessageBox({.text = text, .icon = BoxIcon::Critical});
}

std::function<void()> frmInstrEdit::Guard(void (frmInstrEdit::*work)())
{
    return [this, work] { Guarded(m_editor.desktop, [this, work] { (this->*work)(); }); };
}

} // namespace zelvane
