// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/opcodecombo.h"

#include "language/opcodelist.h"
#include "platform/textfile.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

#include <algorithm>
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The events are handled each time the walk has come so many characters further.
constexpr qsizetype CharactersPerYield = 256;

/// The order of the list: without regard to case, and among equals by their codes.
bool Before(const QString &left, const QString &right)
{
    const int order = left.compare(right, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : left < right;
}

QString LoadingText()
{
    return u"loading opcodes list..."_s;
}

QString FailureText()
{
    return u"Error loading opcodes list."_s;
}

QString InitialText()
{
    return u"Opcodes (press Enter to insert)"_s;
}

} // namespace

OpcodeCombo::OpcodeCombo(EditorContext &editor, const QString &folder, std::function<void()> focusText,
                         QWidget *parent)
    : QComboBox(parent), m_editor(editor), m_folder(folder), m_focusText(std::move(focusText))
{
    setObjectName(u"cmbOpcodes"_s);
    setAccessibleName(u"Opcodes"_s);
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr); // what stands in the field is what was typed
    setMaxVisibleItems(24);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(16);
    setEditText(InitialText());
    lineEdit()->setCursorPosition(0);
    lineEdit()->installEventFilter(this);
    view()->installEventFilter(this);
    view()->viewport()->installEventFilter(this);
}

void OpcodeCombo::LoadOpcodeCombo()
{
    if (m_loading)
        return;
    QString before = m_editor.status.Text();
    if (before == FailureText())
        before.clear();
    const QPointer<OpcodeCombo> alive(this);
    m_loading = true;
    m_editor.status.Show(LoadingText());
    try {
        const QString text = ReadTextFile(OpcodeFile(m_folder));
        qsizetype yieldedAt = 0;
        for (OpcodeWalk walk(text); walk.Next();) {
            AddSorted(walk.Word().toString());
            if (walk.Position() - yieldedAt < CharactersPerYield)
                continue;
            yieldedAt = walk.Position();
            QCoreApplication::processEvents();
            if (!alive)
                return;
        }
        if (m_editor.status.Text() == LoadingText())
            m_editor.status.Show(before); // at the start: what was told about the file
    } catch (const RunTimeError &) {
        // Told in the status line only: the editor is as usable without the list.
        m_editor.status.Show(FailureText());
    }
    m_loading = false;
}

void OpcodeCombo::AddSorted(const QString &word)
{
    int first = 0;
    for (int last = count(); first < last;) {
        const int middle = (first + last) / 2;
        if (Before(word, itemText(middle)))
            last = middle;
        else
            first = middle + 1;
    }
    if (count() > 0) {
        insertItem(first, word);
        return;
    }
    // The first item would make itself the current one and take the field.
    const QString shown = currentText();
    const int caret = lineEdit()->cursorPosition();
    insertItem(first, word);
    setCurrentIndex(-1);
    setEditText(shown);
    lineEdit()->setCursorPosition(caret);
}

void OpcodeCombo::InsertOpcode()
{
    try {
        const QString opcode = currentText();
        const qsizetype start = m_editor.text.Selection().start;
        m_editor.text.ReplaceSelection(opcode);
        m_editor.text.SetSelection(start, start + opcode.size());
        m_focusText();
    } catch (const RunTimeError &error) {
        ReportError(m_editor.desktop, error);
    }
}

void OpcodeCombo::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        InsertOpcode();
    else
        QComboBox::keyPressEvent(event);
}

void OpcodeCombo::showPopup()
{
    QComboBox::showPopup();
    MarkField();
    if (currentText() == InitialText())
        lineEdit()->selectAll(); // what is typed takes its place
}

bool OpcodeCombo::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonRelease) {
        // A drag selects text in the field, a click drops the list. The field is let finish first.
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton && !lineEdit()->hasSelectedText())
            QMetaObject::invokeMethod(this, &OpcodeCombo::TakeClick, Qt::QueuedConnection);
    } else if (watched == view()->viewport() && event->type() == QEvent::MouseMove) {
        // The list would mark what the pointer passes over, which Enter does not insert.
        if (static_cast<QMouseEvent *>(event)->buttons() == Qt::NoButton)
            return true;
    } else if (watched == view() && event->type() == QEvent::ShortcutOverride) {
        // The list's own filter would take the marked name for Enter here already.
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    } else if (watched == view() && event->type() == QEvent::KeyPress) {
        if (PopupKey(static_cast<QKeyEvent *>(event)))
            return true;
    }
    return QComboBox::eventFilter(watched, event);
}

void OpcodeCombo::TakeClick()
{
    showPopup();
    lineEdit()->selectAll();
}

bool OpcodeCombo::PopupKey(QKeyEvent *event)
{
    const int page = std::max(1, maxVisibleItems() - 1);
    const int marked = view()->currentIndex().row();
    const int row = marked < 0 ? m_place : marked;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        hidePopup();
        InsertOpcode();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (event->modifiers() & Qt::AltModifier)
            return false;
        if (event->key() == Qt::Key_Up)
            MarkInPopup(row - 1);
        else
            MarkInPopup(marked < 0 ? row : row + 1);
        return true;
    case Qt::Key_PageUp:
        MarkInPopup(row - page);
        return true;
    case Qt::Key_PageDown:
        MarkInPopup(row + page);
        return true;
    case Qt::Key_Escape:
    case Qt::Key_F4:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return false;
    default:
        break;
    }
    const QString before = currentText();
    QKeyEvent copy(event->type(), event->key(), event->modifiers(), event->text(), event->isAutoRepeat());
    QCoreApplication::sendEvent(lineEdit(), &copy);
    if (currentText() != before)
        MarkField();
    return true;
}

void OpcodeCombo::MarkInPopup(int row)
{
    row = std::clamp(row, 0, count() - 1);
    view()->setCurrentIndex(model()->index(row, modelColumn()));
    setEditText(itemText(row));
    lineEdit()->selectAll();
}

void OpcodeCombo::MarkField()
{
    const QString text = currentText();
    const int same = findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    const int place = same >= 0 ? same : findText(text, Qt::MatchStartsWith);
    view()->setCurrentIndex(same >= 0 ? model()->index(same, modelColumn()) : QModelIndex());
    m_place = std::max(0, place);
    if (place >= 0 && !text.isEmpty())
        view()->scrollTo(model()->index(place, modelColumn()), QAbstractItemView::PositionAtTop);
}

} // namespace zelvane
