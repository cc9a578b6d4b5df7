// SPDX-License-Identifier: GPL-3.0-or-later

// The text control's filter on keys, input methods, mouse, drag and drop.

#include "platform/ui/textcontrol.h"
#include "platform/ui/utf8text.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QList>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QUrl>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr auto NoKeys = Qt::NoModifier;
constexpr auto Shift = Qt::ShiftModifier;
constexpr auto Ctrl = Qt::ControlModifier;
constexpr auto CtrlShift = Qt::ControlModifier | Qt::ShiftModifier;

struct KeyRow {
    int key;
    Qt::KeyboardModifiers modifiers;
    unsigned message;
};

using Sci = QsciScintillaBase;

/// The keys that move the caret or scroll.
const KeyRow MovingKeys[] = {
    {Qt::Key_Left, NoKeys, Sci::SCI_CHARLEFT},      {Qt::Key_Left, Shift, Sci::SCI_CHARLEFTEXTEND},
    {Qt::Key_Left, Ctrl, Sci::SCI_WORDLEFT},        {Qt::Key_Left, CtrlShift, Sci::SCI_WORDLEFTEXTEND},
    {Qt::Key_Right, NoKeys, Sci::SCI_CHARRIGHT},    {Qt::Key_Right, Shift, Sci::SCI_CHARRIGHTEXTEND},
    {Qt::Key_Right, Ctrl, Sci::SCI_WORDRIGHT},      {Qt::Key_Right, CtrlShift, Sci::SCI_WORDRIGHTEXTEND},
    {Qt::Key_Up, NoKeys, Sci::SCI_LINEUP},          {Qt::Key_Up, Shift, Sci::SCI_LINEUPEXTEND},
    {Qt::Key_Up, Ctrl, Sci::SCI_LINESCROLLUP},      {Qt::Key_Down, NoKeys, Sci::SCI_LINEDOWN},
    {Qt::Key_Down, Shift, Sci::SCI_LINEDOWNEXTEND}, {Qt::Key_Down, Ctrl, Sci::SCI_LINESCROLLDOWN},
    {Qt::Key_PageUp, NoKeys, Sci::SCI_PAGEUP},      {Qt::Key_PageUp, Shift, Sci::SCI_PAGEUPEXTEND},
    {Qt::Key_PageDown, NoKeys, Sci::SCI_PAGEDOWN},  {Qt::Key_PageDown, Shift, Sci::SCI_PAGEDOWNEXTEND},
    {Qt::Key_Home, NoKeys, Sci::SCI_HOMEWRAP},      {Qt::Key_Home, Shift, Sci::SCI_HOMEWRAPEXTEND},
    {Qt::Key_Home, Ctrl, Sci::SCI_DOCUMENTSTART},   {Qt::Key_Home, CtrlShift, Sci::SCI_DOCUMENTSTARTEXTEND},
    {Qt::Key_End, NoKeys, Sci::SCI_LINEENDWRAP},    {Qt::Key_End, Shift, Sci::SCI_LINEENDWRAPEXTEND},
    {Qt::Key_End, Ctrl, Sci::SCI_DOCUMENTEND},      {Qt::Key_End, CtrlShift, Sci::SCI_DOCUMENTENDEXTEND},
};

/// Modifiers as far as they choose a command: the numeric keypad is no modifier.
Qt::KeyboardModifiers ModifiersOf(const QKeyEvent &event)
{
    return event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
}

template <typename Row, size_t count> const Row *FindRow(const Row (&rows)[count], const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event);
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const Row &row) {
        return row.key == event.key() && row.modifiers == modifiers;
    });
    return found == std::end(rows) ? nullptr : found;
}

/// Whether the text of a key event is text to insert. Alt belongs to the menus and to the keys of the window,
/// but composes characters on a Mac; Ctrl with Alt is AltGr on some desktops.
bool IsTyped(const QKeyEvent &event)
{
    const QString text = event.text();
    if (text.isEmpty())
        return false;
    const Qt::KeyboardModifiers held =
        event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
#ifdef Q_OS_MACOS
    const bool allowed = !(held & (Qt::ControlModifier | Qt::MetaModifier));
#else
    const bool allowed = !held || held == (Qt::ControlModifier | Qt::AltModifier);
#endif
    const QChar first = text.front();
    return allowed && (first.isPrint() || first.isSurrogate() || first.category() == QChar::Other_Format ||
                       first.category() == QChar::Other_PrivateUse);
}

/// Scintilla takes Ctrl or Alt and the mouse for rectangular selections, which the rules of the commands do
/// not know.
QMouseEvent WithoutRectangles(const QMouseEvent &event)
{
    return QMouseEvent(event.type(), event.position(), event.globalPosition(), event.button(),
                       event.buttons(), event.modifiers() & Qt::ShiftModifier, event.pointingDevice());
}

/// Links as text: Scintilla would announce them as files. No value for files, which are the window's, and
/// where no text goes with the links.
std::optional<QString> TextOfLinks(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    const bool holdsFiles =
        std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
    if (holdsFiles || !data.hasText())
        return {};
    return data.text();
}

} // namespace

bool TextControl::event(QEvent *event)
{
    const bool input = event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod;
    if (input)
        m_stepOpen = false;
    const bool handled = QsciScintillaBase::event(event);
    if (input)
        Settle();
    return handled;
}

bool TextControl::viewportEvent(QEvent *event)
{
    const bool handled = QsciScintillaBase::viewportEvent(event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Drop:
        Settle();
        break;
    default:
        break;
    }
    return handled;
}

void TextControl::keyPressEvent(QKeyEvent *event)
{
    try {
        if ((m_hooks.commandKey && m_hooks.commandKey(*event)) || TabKey(*event) || EditingKey(*event)) {
            event->accept();
            return;
        }
    } catch (const RunTimeError &error) {
        event->accept();
        if (m_hooks.reportError)
            m_hooks.reportError(error);
        return;
    }
    if (!IsTyped(*event)) {
        // Not for the scroll area either: it would take arrow keys whatever is held with them.
        event->ignore();
        return;
    }
    EndComposition();
    TypeText(event->text());
    event->accept();
}

bool TextControl::EditingKey(const QKeyEvent &event)
{
    if (const KeyRow *row = FindRow(MovingKeys, event)) {
        CloseUndoGroup();
        Send(row->message);
        return true;
    }
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (enter && (ModifiersOf(event) == NoKeys || ModifiersOf(event) == Shift)) {
        CloseUndoGroup();
        TypeOver(u"\n"_s);
        return true;
    }
    return DeletingKey(event);
}

bool TextControl::DeletingKey(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event);
    const bool back = event.key() == Qt::Key_Backspace;
    if (!back && event.key() != Qt::Key_Delete)
        return false;
    if (modifiers != NoKeys && modifiers != Ctrl && !(back && modifiers == Shift))
        return false;
    if (!Send(SCI_GETSELECTIONEMPTY)) {
        ReplaceSelectionAs({}, UndoKind::Delete);
    } else if (modifiers == Ctrl) {
        const QScopedValueRollback kind(m_kind, UndoKind::Delete);
        Send(back ? SCI_DELWORDLEFT : SCI_DELWORDRIGHT);
    } else {
        DeleteCharacter(back);
    }
    return true;
}

void TextControl::DeleteCharacter(bool back)
{
    const qsizetype caret = Send(SCI_GETCURRENTPOS);
    const qsizetype unit = m_map.ToUnits(caret);
    if (back) {
        const qsizetype to = m_map.ToByte(unit - 1);
        ReplaceBytes(to, caret, {}, UndoKind::Delete);
        SetCaret({to, to});
        return;
    }
    // One unit further may still be inside the character.
    qsizetype to = m_map.ToByte(unit + 1);
    if (to == caret)
        to = m_map.ToByte(unit + 2);
    if (to == caret)
        return;
    const GoingOn here{UndoKind::Delete, caret};
    ReplaceBytes(caret, to, {}, UndoKind::Delete, m_goesOn == here);
    SetCaret({caret, caret});
    m_goesOn = here;
}

bool TextControl::SelectionSpansLines() const
{
    const QString selected = SelectedText();
    const qsizetype feed = selected.indexOf(u'\n');
    return feed >= 0 && feed != selected.size() - 1;
}

qsizetype TextControl::DisplayLineStart(qsizetype position) const
{
    qsizetype first = Send(SCI_POSITIONFROMLINE, Send(SCI_LINEFROMPOSITION, position));
    if (!WordWrap())
        return first;
    const long row = Send(SCI_POINTYFROMPOSITION, 0, position);
    for (qsizetype last = position; first < last;) {
        const qsizetype middle = first + (last - first) / 2;
        if (Send(SCI_POINTYFROMPOSITION, 0, middle) < row)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

bool TextControl::TabKey(const QKeyEvent &event)
{
    const bool back = event.key() == Qt::Key_Backtab;
    if (!back && event.key() != Qt::Key_Tab)
        return false;
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event);
    if (modifiers != NoKeys && modifiers != Shift)
        return false;
    CloseUndoGroup();
    if (SelectionSpansLines()) {
        BeginCommand();
        const auto end = qScopeGuard([this] { EndCommand(); });
        if (m_hooks.indentSelection)
            m_hooks.indentSelection(back || modifiers == Shift);
        return true;
    }
    QString text = u"\t"_s;
    if (m_hooks.tabInsertsSpaces && m_hooks.tabInsertsSpaces()) {
        const int unit = std::max(m_hooks.tabSpaces ? m_hooks.tabSpaces() : 8, 1);
        const qsizetype caret = Send(SCI_GETSELECTIONSTART);
        const qsizetype column = m_map.ToUnits(caret) - m_map.ToUnits(DisplayLineStart(caret));
        text = QString(unit - column % unit, u' ');
    }
    TypeOver(text); // what is typed behind it goes on with this step
    return true;
}

void TextControl::TypeText(const QString &text)
{
    if (text.startsWith(u' '))
        CloseUndoGroup();
    TypeOver(text);
}

void TextControl::inputMethodEvent(QInputMethodEvent *event)
{
    EndComposition();
    if (!event->commitString().isEmpty())
        TypeText(event->commitString());
    // Scintilla cannot compose inside a group of steps.
    if (!event->preeditString().isEmpty() && m_commandDepth == 0) {
        QInputMethodEvent composed(event->preeditString(), event->attributes());
        Compose(composed);
    }
    event->accept();
}

void TextControl::Compose(QInputMethodEvent &event)
{
    const QScopedValueRollback composing(m_composing, true);
    QsciScintillaBase::inputMethodEvent(&event);
    FinishInsertion();
}

void TextControl::EndComposition()
{
    if (!m_composed)
        return;
    QInputMethodEvent none;
    Compose(none);
}

// Mouse, drag and drop

void TextControl::mousePressEvent(QMouseEvent *event)
{
    m_stepOpen = false;
    CloseUndoGroup();
    QMouseEvent plain = WithoutRectangles(*event);
    if (event->button() == Qt::LeftButton && !m_dragMode && !(event->modifiers() & Qt::ShiftModifier)) {
        // Without a selection under the mouse Scintilla begins a new one instead of a drag.
        const QPoint point = event->position().toPoint();
        const long position = Send(SCI_POSITIONFROMPOINT, point.x(), point.y());
        if (position >= Send(SCI_GETSELECTIONSTART) && position <= Send(SCI_GETSELECTIONEND))
            Send(SCI_SETEMPTYSELECTION, position);
    }
    const QScopedValueRollback kind(m_kind, UndoKind::Paste);
    QsciScintillaBase::mousePressEvent(&plain);
}

void TextControl::mouseMoveEvent(QMouseEvent *event)
{
    const QScopedValueRollback kind(m_kind, UndoKind::DragDrop);
    QMouseEvent plain = WithoutRectangles(*event);
    QsciScintillaBase::mouseMoveEvent(&plain);
}

void TextControl::mouseReleaseEvent(QMouseEvent *event)
{
    QMouseEvent plain = WithoutRectangles(*event);
    QsciScintillaBase::mouseReleaseEvent(&plain);
}

void TextControl::mouseDoubleClickEvent(QMouseEvent *event)
{
    CloseUndoGroup();
    QMouseEvent plain = WithoutRectangles(*event);
    QsciScintillaBase::mouseDoubleClickEvent(&plain);
}

void TextControl::contextMenuEvent(QContextMenuEvent *event)
{
    const bool keyboard = event->reason() == QContextMenuEvent::Keyboard;
    event->accept();
    Q_EMIT contextMenuRequested(keyboard ? CaretPoint() : event->globalPos(),
                                event->modifiers() & Qt::ControlModifier);
}

void TextControl::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QsciScintillaBase::wheelEvent(event);
        return;
    }
    event->accept();
    m_wheel += event->angleDelta().y();
    const int notch = QWheelEvent::DefaultDeltasPerStep;
    for (; std::abs(m_wheel) >= notch; m_wheel -= m_wheel > 0 ? notch : -notch) {
        if (m_hooks.changeFontSize)
            m_hooks.changeFontSize(m_wheel > 0);
    }
}

void TextControl::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void TextControl::dragMoveEvent(QDragMoveEvent *event)
{
    if (!event->mimeData()->hasUrls()) {
        QsciScintillaBase::dragMoveEvent(event);
        return;
    }
    const auto links = TextOfLinks(*event->mimeData());
    if (!links) {
        event->ignore();
        return;
    }
    QMimeData text;
    text.setText(*links);
    QDragMoveEvent plain(event->position().toPoint(), event->possibleActions(), &text, event->buttons(),
                         event->modifiers());
    QsciScintillaBase::dragMoveEvent(&plain);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(plain.isAccepted());
}

void TextControl::dropEvent(QDropEvent *event)
{
    const QScopedValueRollback kind(m_kind, UndoKind::DragDrop);
    m_stepOpen = false;
    CloseUndoGroup();
    if (!event->mimeData()->hasUrls()) {
        QsciScintillaBase::dropEvent(event);
        return;
    }
    const auto links = TextOfLinks(*event->mimeData());
    if (!links) {
        event->ignore();
        return;
    }
    QMimeData text;
    text.setText(*links);
    QDropEvent plain(event->position(), event->possibleActions(), &text, event->buttons(),
                     event->modifiers());
    plain.setDropAction(Qt::CopyAction);
    QsciScintillaBase::dropEvent(&plain);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(plain.isAccepted());
}

QByteArray TextControl::fromMimeData(const QMimeData *source, bool &rectangular) const
{
    rectangular = false;
    return ToUtf8(source->text());
}

QMimeData *TextControl::toMimeData(const QByteArray &text, bool) const
{
    auto *plain = new QMimeData;
    plain->setText(FromUtf8(text));
    return plain;
}

void TextControl::SetDragMode(bool drag)
{
    m_dragMode = drag;
    setAcceptDrops(drag);
}

qsizetype TextControl::OffsetAt(const QPoint &screen) const
{
    const QPoint point = viewport()->mapFromGlobal(screen);
    const long position = Send(SCI_CHARPOSITIONFROMPOINTCLOSE, point.x(), point.y());
    return position < 0 ? -1 : m_map.ToUnits(position);
}

qsizetype TextControl::CaretOffset() const
{
    return m_map.ToUnits(Send(SCI_GETCURRENTPOS));
}

QRect TextControl::RangeOnScreen(qsizetype rangeStart, qsizetype rangeEnd) const
{
    const long start = m_map.ToByte(rangeStart);
    const long line = Send(SCI_LINEFROMPOSITION, start);
    const long end = std::min<long>(m_map.ToByte(rangeEnd), Send(SCI_GETLINEENDPOSITION, line));
    const QPoint topLeft(int(Send(SCI_POINTXFROMPOSITION, 0, start)),
                         int(Send(SCI_POINTYFROMPOSITION, 0, start)));
    // With word wrap the end may stand on a later row, and left of the start.
    const QPoint topRight(int(Send(SCI_POINTXFROMPOSITION, 0, end)),
                          int(Send(SCI_POINTYFROMPOSITION, 0, end)));
    const QRect rows = QRect(topLeft, QSize(1, 1)).united(QRect(topRight, QSize(1, 1)));
    const QRect place(rows.topLeft(), rows.size() + QSize(0, int(Send(SCI_TEXTHEIGHT, line))));
    return {viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QPoint TextControl::CaretPoint() const
{
    const long caret = Send(SCI_GETCURRENTPOS);
    const long line = Send(SCI_LINEFROMPOSITION, caret);
    return viewport()->mapToGlobal(
        QPoint(int(Send(SCI_POINTXFROMPOSITION, 0, caret)),
               int(Send(SCI_POINTYFROMPOSITION, 0, caret) + Send(SCI_TEXTHEIGHT, line))));
}

} // namespace zelvane
