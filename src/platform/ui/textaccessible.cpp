// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textaccessible.h"

#include "platform/ui/textcontrol.h"

#include <algorithm>
#include <QTextBoundaryFinder>
#include <utility>

namespace zelvane
{

namespace
{

TextAccessible::Listener &TheListener()
{
    static TextAccessible::Listener listener;
    return listener;
}

void Tell(QAccessibleEvent &&event)
{
    if (TheListener())
        TheListener()(event);
    else
        QAccessible::updateAccessibility(&event);
}

QAccessibleInterface *MakeInterface(const QString &, QObject *object)
{
    auto *control = qobject_cast<TextControl *>(object);
    return control ? new TextAccessible(control) : nullptr;
}

} // namespace

TextAccessible::TextAccessible(TextControl *control) : QAccessibleWidget(control, QAccessible::EditableText)
{
}

void TextAccessible::Install()
{
    // The newest one is asked first; to install it once more changes nothing.
    QAccessible::installFactory(MakeInterface);
}

bool TextAccessible::IsHeard()
{
    return TheListener() || QAccessible::isActive();
}

void TextAccessible::SetListener(Listener listener)
{
    TheListener() = std::move(listener);
}

void TextAccessible::TellChange(TextControl &control, const TextChange &change)
{
    if (!IsHeard())
        return;
    const int offset = int(change.offset);
    if (change.gone.isEmpty())
        Tell(QAccessibleTextInsertEvent(&control, offset, change.come));
    else if (change.come.isEmpty())
        Tell(QAccessibleTextRemoveEvent(&control, offset, change.gone));
    else
        Tell(QAccessibleTextUpdateEvent(&control, offset, change.gone, change.come));
}

void TextAccessible::TellSelection(TextControl &control)
{
    if (!IsHeard())
        return;
    const TextSpan selection = control.Selection();
    QAccessibleTextSelectionEvent event(&control, int(selection.start), int(selection.end));
    event.setCursorPosition(int(control.CaretOffset()));
    Tell(std::move(event));
}

TextControl &TextAccessible::Control() const
{
    return *static_cast<TextControl *>(widget());
}

void *TextAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State TextAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selectableText = true;
    state.multiLine = true;
    state.editable = true;
    return state;
}

QString TextAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? Control().Text() : QAccessibleWidget::text(kind);
}

void TextAccessible::selection(int index, int *start, int *end) const
{
    const TextSpan selection = index == 0 ? Control().Selection() : TextSpan{};
    *start = int(selection.start);
    *end = int(selection.end);
}

int TextAccessible::selectionCount() const
{
    return Control().Selection().IsEmpty() ? 0 : 1;
}

void TextAccessible::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void TextAccessible::removeSelection(int index)
{
    if (index == 0)
        setCursorPosition(cursorPosition());
}

void TextAccessible::setSelection(int index, int start, int end)
{
    if (index == 0)
        Control().SetSelection(start, std::max(end, 0));
}

int TextAccessible::cursorPosition() const
{
    return int(Control().CaretOffset());
}

void TextAccessible::setCursorPosition(int position)
{
    Control().SetSelection(position, std::max(position, 0));
}

QString TextAccessible::text(int start, int end) const
{
    return Control().TextRange(start, end);
}

void TextAccessible::PieceAt(qsizetype offset, QAccessible::TextBoundaryType kind, int *start, int *end) const
{
    const TextControl &control = Control();
    const qsizetype line = control.LineOfOffset(offset);
    const qsizetype lineStart = control.LineStart(line);
    const qsizetype lineEnd = control.LineStart(line + 1);
    *start = int(lineStart);
    *end = int(lineEnd);
    if (kind == QAccessible::NoBoundary) {
        *start = 0;
        *end = characterCount();
        return;
    }
    if (kind != QAccessible::CharBoundary && kind != QAccessible::WordBoundary)
        return;
    const QString text = control.TextRange(lineStart, lineEnd);
    QTextBoundaryFinder finder(
        kind == QAccessible::CharBoundary ? QTextBoundaryFinder::Grapheme : QTextBoundaryFinder::Word, text);
    finder.setPosition(offset - lineStart);
    if (!finder.isAtBoundary())
        finder.toPreviousBoundary();
    *start = int(lineStart + std::max<qsizetype>(finder.position(), 0));
    finder.toNextBoundary();
    *end = int(finder.position() < 0 ? lineEnd : lineStart + finder.position());
}

QString TextAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                     int *end) const
{
    *start = *end = -1;
    if (offset < 0 || offset > characterCount())
        return {};
    PieceAt(offset, kind, start, end);
    return text(*start, *end);
}

QString TextAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                         int *end) const
{
    textAtOffset(offset, kind, start, end);
    if (*start <= 0)
        return *start = *end = -1, QString();
    return textAtOffset(*start - 1, kind, start, end);
}

QString TextAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int *start,
                                        int *end) const
{
    textAtOffset(offset, kind, start, end);
    if (*end < 0 || *end >= characterCount())
        return *start = *end = -1, QString();
    return textAtOffset(*end, kind, start, end);
}

int TextAccessible::characterCount() const
{
    return int(Control().Length());
}

QRect TextAccessible::characterRect(int offset) const
{
    return Control().RangeOnScreen(offset, offset + 1);
}

int TextAccessible::offsetAtPoint(const QPoint &point) const
{
    return int(Control().OffsetAt(point));
}

void TextAccessible::scrollToSubstring(int start, int)
{
    Control().ScrollToLine(Control().LineOfOffset(start));
}

QString TextAccessible::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void TextAccessible::deleteText(int start, int end)
{
    replaceText(start, end, {});
}

void TextAccessible::insertText(int offset, const QString &text)
{
    replaceText(offset, offset, text);
}

void TextAccessible::replaceText(int start, int end, const QString &text)
{
    Control().ReplaceRange(start, end, text);
}

} // namespace zelvane
