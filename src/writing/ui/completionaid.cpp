// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/completionaid.h"

#include "language/opcodelist.h"
#include "platform/textbuffer.h"
#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/findtext.h"
#include "shell/settings.h"
#include "writing/caretplace.h"
#include "writing/ui/completionlist.h"
#include "writing/ui/namekeeper.h"
#include "writing/writingkeys.h"

#include <algorithm>
#include <QAbstractSlider>
#include <QEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// As many rows as anybody scrolls through; typing on tells the rest apart.
constexpr std::size_t MostRows = 500;
/// With so many letters the list comes by itself.
constexpr qsizetype LettersTyped = 3;
/// So much of a line is looked at, and around it in a large text whose names are not known yet.
constexpr qsizetype LineReach = 4096;
constexpr qsizetype NearReach = 8192;

WordList OpcodeNames(const OpcodeList &opcodes)
{
    std::vector<WordList::Name> names;
    for (const QString &opcode : opcodes.Opcodes())
        names.push_back({opcode, NameKind::Opcode});
    return WordList(std::move(names));
}

bool HasPlainModifiers(const QKeyEvent &event)
{
    return !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier));
}

/// Whether a name that follows is one that the line makes, or a label, which may come first where it is
/// jumped to.
bool IsNewName(QStringView line)
{
    line = line.trimmed();
    const bool isLabel = line.endsWith(u"goto") || line.endsWith(u"reinit") ||
                         (line.startsWith(u"timout") && line.endsWith(u',') && line.count(u',') == 2);
    return isLabel || line == u"opcode" || line == u"#define" || line == u"instr" ||
           (line.startsWith(u"instr ") && line.endsWith(u','));
}

NameKinds KindsFor(TextPart part, bool inScore)
{
    // A score calls no opcode, and neither does a string.
    if (part == TextPart::String || (part == TextPart::Code && inScore))
        return {NameKind::Macro, NameKind::Instrument, NameKind::Table, NameKind::Word};
    return {NameKind::Opcode,     NameKind::UserOpcode, NameKind::Macro,
            NameKind::Instrument, NameKind::Table,      NameKind::Word};
}

} // namespace

CompletionAid::CompletionAid(const WritingContext &context)
    : m_context(context.window),
      m_names(SharedNames(context)),
      m_opcodes(OpcodeNames(context.opcodes)),
      m_list(std::make_unique<CompletionList>(context.window.window)),
      m_commands(context.window.commands)
{
    TextControl &text = m_context.text;
    text.installEventFilter(this);
    text.viewport()->installEventFilter(this);
    m_context.window->installEventFilter(this);
    connect(&text, &TextControl::edited, this, &CompletionAid::FollowEdit);
    connect(&text, &TextControl::textChanged, this, &CompletionAid::TextChanged);
    connect(&text, &TextControl::selectionChanged, this, &CompletionAid::SelectionChanged);
    connect(&text, &TextControl::textLoading, this, &CompletionAid::Close);
    for (const QScrollBar *bar : {text.verticalScrollBar(), text.horizontalScrollBar()})
        connect(bar, &QAbstractSlider::actionTriggered, this, &CompletionAid::Close);
    connect(m_names.get(), &NameKeeper::found, this, [this] {
        if (m_shown && !m_shown->moved)
            Open(Why::Following);
    });
    connect(m_list.get(), &CompletionList::taken, this, &CompletionAid::Take);
    m_commands.Bind(Cmd::mnuComplete, [this] { Open(Why::Asked); });
}

CompletionAid::~CompletionAid() = default;

bool CompletionAid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != &m_context.text) {
        switch (event->type()) {
        case QEvent::Wheel:
        case QEvent::MouseButtonPress:
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Hide:
        case QEvent::WindowDeactivate:
            Close();
            break;
        default:
            break;
        }
        return false;
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (m_shown && IsListKey(static_cast<const QKeyEvent &>(*event))) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (m_shown && ListKey(key))
            return true;
        TextKey(key);
        return false;
    }
    case QEvent::InputMethod: {
        const QString committed = static_cast<const QInputMethodEvent &>(*event).commitString();
        m_typing = !committed.isEmpty() && IsWordCharacter(committed.back());
        m_following = m_typing;
        if (!m_typing)
            Close();
        return false;
    }
    case QEvent::FocusOut:
        Close();
        return false;
    default:
        return false;
    }
}

bool CompletionAid::IsListKey(const QKeyEvent &event) const
{
    if (event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Tab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

bool CompletionAid::ListKey(const QKeyEvent &event)
{
    if (!IsListKey(event))
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        m_shown->moved = true;
        m_list->Move(event.key() == Qt::Key_Up ? -1 : 1);
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        m_shown->moved = true;
        m_list->MovePage(event.key() == Qt::Key_PageUp ? -1 : 1);
        return true;
    case Qt::Key_Escape:
        m_dismissed = m_shown->start;
        Close();
        return true;
    default:
        break;
    }
    // What has been typed to its end needs nothing taken: the key is then one of the text's.
    const Completion *current = m_list->Current();
    if (!m_shown->asked && !m_shown->moved && current && current->text == m_shown->typed) {
        Close();
        return false;
    }
    Take();
    return true;
}

void CompletionAid::TextKey(const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Space && event.modifiers() & Qt::ControlModifier)
        return; // the commands of the room
    const QString typed = event.text();
    const bool isText = HasPlainModifiers(event) && !typed.isEmpty() && typed.front().isPrint();
    m_typing = isText && IsWordCharacter(typed.front());
    m_following = m_typing || (isText && typed == u"$"_s) ||
                  (event.key() == Qt::Key_Backspace && HasPlainModifiers(event));
    const bool isModifier = event.key() == Qt::Key_Shift || event.key() == Qt::Key_Control ||
                            event.key() == Qt::Key_Alt || event.key() == Qt::Key_AltGr ||
                            event.key() == Qt::Key_Meta || event.key() == Qt::Key_CapsLock;
    if (m_shown && !m_following && !isModifier)
        Close();
}

void CompletionAid::FollowEdit(const TextEdit &edit)
{
    if (edit.offset > m_dismissed)
        return;
    if (edit.offset + edit.removed > m_dismissed)
        m_dismissed = -1;
    else if (edit.offset < m_dismissed)
        m_dismissed += edit.added - edit.removed;
}

void CompletionAid::TextChanged()
{
    const bool typing = std::exchange(m_typing, false);
    const bool following = std::exchange(m_following, false);
    if (m_shown) {
        if (following)
            Open(Why::Following);
        else
            Close();
        return;
    }
    if (typing && m_context.editor.settings.Flag(Keys::AutoComplete))
        Open(Why::Typing);
}

void CompletionAid::SelectionChanged()
{
    const TextSpan selection = m_context.text.Selection();
    if (m_shown && (!selection.IsEmpty() || selection.end < m_shown->start ||
                    selection.end > m_shown->start + m_shown->typed.size() + 1))
        Close();
}

void CompletionAid::Open(Why why)
{
    const TextControl &text = m_context.text;
    const TextSpan selection = text.Selection();
    if (!selection.IsEmpty()) {
        Close();
        return;
    }
    const qsizetype caret = selection.end;
    const qsizetype line = text.LineOfOffset(caret);
    const qsizetype from = std::max(text.LineStart(line), caret - LineReach);
    const QString around = text.TextRange(from, std::min(text.LineEnd(line), caret + LineReach));
    const std::optional<WordAt> found = FindWord(around, caret - from);
    if (!found) {
        Close();
        return;
    }
    const WordAt &word = *found;
    const qsizetype start = from + word.span.start;
    if (m_dismissed != start)
        m_dismissed = -1;

    const TextNames &names = m_names->Names();
    const bool inBraces = IsInside(names.bracedStrings, caret, text.Length());
    const TextPart part = inBraces ? TextPart::String
                                   : PartAtEnd(QStringView(around).first(word.span.start),
                                               IsInside(names.blockComments, from, text.Length()));
    const FileKind kind = m_context.editor.document.DocumentKind;
    if (why == Why::Typing) {
        const qsizetype letters = word.typed.size() - (word.typed.startsWith(u'$') ? 1 : 0);
        const auto isIn = [caret](const TextSpan &section) {
            return !section.IsEmpty() && caret >= section.start && caret <= section.end;
        };
        // A unified text has options and remarks too, which are no code.
        const bool isCsound = kind == FileKind::Orchestra || kind == FileKind::Score ||
                              (kind == FileKind::Unified && (isIn(names.orchestra) || isIn(names.score)));
        if (m_dismissed == start || letters < LettersTyped || part != TextPart::Code || !isCsound ||
            word.span.end > caret - from || IsNewName(QStringView(around).first(word.span.start)))
            return;
    } else if (why == Why::Following) {
        if (!m_shown || start != m_shown->start || (word.typed.isEmpty() && !m_shown->asked)) {
            Close();
            return;
        }
    }

    std::vector<const WordList *> lists = {&names.code};
    if (part == TextPart::Comment)
        lists.push_back(&names.comments);
    TextNames near;
    if (m_names->IsBehind()) {
        near = FindNames(text.TextRange(std::max<qsizetype>(caret - NearReach, 0), caret + NearReach), false);
        lists.push_back(&near.code);
    }
    const bool inScore = kind == FileKind::Score || (caret >= names.score.start && caret < names.score.end);
    std::vector<Completion> rows = Complete(word.typed, m_opcodes, lists, KindsFor(part, inScore), MostRows);
    // The word itself, when the caret is inside of it, is no news.
    if (word.typed.size() < word.span.Length())
        std::erase(rows, Completion{around.sliced(word.span.start, word.span.Length()), NameKind::Word});
    if (rows.empty() || (rows.size() == 1 && rows.front().text == word.typed)) {
        Close();
        return;
    }
    const bool asked = why == Why::Asked || (m_shown && m_shown->asked);
    m_shown = Shown{start, word.typed.toString(), word.span.end - (caret - from), asked, false};
    m_context.text.installEventFilter(this); // before the filters of others: the list's keys come first
    m_list->ShowRows(std::move(rows), text.RangeOnScreen(start, start));
}

void CompletionAid::Take()
{
    const Completion *current = m_list->Current();
    if (!m_shown || !current)
        return;
    const Shown shown = *m_shown;
    const QString name = current->text;
    Close();
    TextControl &text = m_context.text;
    m_context.commands.Guard([&] {
        const qsizetype end = shown.start + shown.typed.size() + shown.behind;
        text.CloseUndoGroup();
        text.ReplaceRange(shown.start, end, name);
        text.SetSelection(shown.start + name.size(), shown.start + name.size());
        text.CloseUndoGroup();
    });
}

void CompletionAid::Close()
{
    m_shown.reset();
    m_list->hide();
}

} // namespace zelvane
