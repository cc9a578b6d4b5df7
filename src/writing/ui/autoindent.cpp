// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/autoindent.h"

#include "platform/runtimeerror.h"
#include "platform/ui/textcontrol.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/findtext.h"
#include "shell/tabwidth.h"
#include "shell/ui/commands.h"

#include <algorithm>
#include <QEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype LongestWordLine = 400; ///< a word that closes a block stands at the start of its line

bool IsEnter(const QKeyEvent &key)
{
    const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
           (held == Qt::NoModifier || held == Qt::ShiftModifier);
}

qsizetype CountBlanks(QStringView text)
{
    const auto end =
        std::find_if_not(text.begin(), text.end(), [](QChar c) { return c == u' ' || c == u'\t'; });
    return end - text.begin();
}

} // namespace

AutoIndent::AutoIndent(const WritingContext &context)
    : m_editor(context.window.editor), m_text(context.window.text)
{
    m_text.installEventFilter(this);
    connect(&m_text, &TextControl::textChanged, this, &AutoIndent::TextChanged);
}

bool AutoIndent::eventFilter(QObject *watched, QEvent *event)
{
    // Other events may come in the middle of these: an input method asks for the caret while text goes in.
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        m_typed = false;
        if (IsEnter(key)) {
            try {
                Enter();
            } catch (const RunTimeError &error) {
                ReportError(m_editor.desktop, error);
            }
            event->accept();
            return true;
        }
        m_typed = !key.text().isEmpty() && key.text().front().isPrint();
        break;
    }
    case QEvent::InputMethod:
        m_typed = !static_cast<const QInputMethodEvent &>(*event).commitString().isEmpty();
        break;
    case QEvent::ShortcutOverride:
    case QEvent::FocusOut:
        m_typed = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

AutoIndent::Before AutoIndent::ReadBefore(qsizetype offset) const
{
    const qsizetype first = std::max<qsizetype>(offset - IndentReach, 0);
    // A line that is longer than that is cut.
    const qsizetype line = m_text.LineStart(m_text.LineOfOffset(first));
    const qsizetype start = first - line < IndentReach ? line : first;
    return {m_text.TextRange(start, offset), start == 0};
}

void AutoIndent::SetBlanks(qsizetype lineStart, qsizetype count, const QString &blanks, bool goesOn)
{
    const qsizetype caret = m_text.Selection().start;
    m_text.ReplaceTyped(lineStart, lineStart + count, blanks, caret - count + blanks.size(), goesOn);
}

void AutoIndent::Enter()
{
    const QScopedValueRollback inside(m_inside, true);
    m_takenBack.reset();
    const TextSpan selection = m_text.Selection();
    const Before before = ReadBefore(selection.start);
    const qsizetype lineStart = m_text.LineStart(m_text.LineOfOffset(selection.start));
    const qsizetype lineEnd = m_text.LineEnd(m_text.LineOfOffset(selection.end));
    const QString behind =
        m_text.TextRange(selection.end, std::min(lineEnd, selection.end + LongestWordLine));
    const QString below = m_text.TextRange(lineEnd, std::min(lineEnd + LongestWordLine, m_text.Length()));
    const QString unit = IndentUnit(m_editor.settings);
    const EnterIndent indent =
        AutoIndenter(before.text, before.isWhole, m_editor.document.DocumentKind, unit).Enter(behind, below);

    const QString head = before.text.sliced(before.text.lastIndexOf(u'\n') + 1);
    const qsizetype blanks = CountBlanks(head);
    // What stands before the caret of a line of blanks is part of what goes on to the next line.
    const qsizetype swallowed = blanks < head.size() ? CountBlanks(behind) : 0;
    qsizetype from = selection.start, to = selection.end + swallowed;
    if (indent.line && blanks == head.size()) {
        from = lineStart;
    } else if (indent.line) {
        m_text.ReplaceTyped(lineStart, lineStart + blanks, *indent.line, from, false);
        from += indent.line->size() - blanks;
        to += indent.line->size() - blanks;
    }
    const QString text = u'\n' + indent.next;
    m_text.ReplaceTyped(from, to, text, from + text.size(), indent.line && from != lineStart);
}

void AutoIndent::TextChanged()
{
    if (m_inside)
        return;
    if (!std::exchange(m_typed, false)) {
        m_takenBack.reset();
        return;
    }
    const QScopedValueRollback inside(m_inside, true);
    try {
        FollowWord();
    } catch (const RunTimeError &error) {
        ReportError(m_editor.desktop, error);
    }
}

void AutoIndent::FollowWord()
{
    const std::optional<TakenBack> takenBack = std::exchange(m_takenBack, std::nullopt);
    const TextSpan caret = m_text.Selection();
    const qsizetype lineStart = m_text.LineStart(m_text.LineOfOffset(caret.start));
    if (!caret.IsEmpty() || caret.start - lineStart > LongestWordLine || caret.start == lineStart)
        return;
    const QString line = m_text.TextRange(lineStart, caret.start);
    const qsizetype blanks = CountBlanks(line);
    const QStringView word = QStringView(line).sliced(blanks);
    const auto typed = line.back() == u' ' || line.back() == u'\t' ? AutoIndenter::Typed::Blank
                                                                   : AutoIndenter::Typed::Letter;
    const bool goesOn = takenBack && takenBack->lineStart == lineStart && line.startsWith(takenBack->now) &&
                        blanks == takenBack->now.size() &&
                        std::all_of(word.begin(), word.end(), IsWordCharacter);
    const bool mayClose = AutoIndenter::MayClose(word, typed);
    if (!goesOn && !mayClose)
        return;

    const Before before = ReadBefore(caret.start);
    const QString unit = IndentUnit(m_editor.settings);
    const AutoIndenter indenter(before.text, before.isWhole, m_editor.document.DocumentKind, unit);
    if (mayClose) {
        if (const std::optional<QString> closing = indenter.Closing(typed)) {
            SetBlanks(lineStart, blanks, *closing, true);
            m_takenBack = {lineStart, line.first(blanks), *closing};
            return;
        }
    }
    if (!goesOn)
        return;
    if (indenter.BeginsWithClosing())
        m_takenBack = takenBack;
    else
        SetBlanks(lineStart, blanks, takenBack->before, true);
}

} // namespace zelvane
