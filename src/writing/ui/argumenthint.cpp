// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/argumenthint.h"

#include "language/helponword.h"
#include "language/opcodelist.h"
#include "platform/programfolder.h"
#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "writing/caretplace.h"
#include "writing/ui/hinttip.h"
#include "writing/ui/namekeeper.h"

#include <algorithm>
#include <iterator>
#include <QAbstractSlider>
#include <QEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A statement that is longer, or goes on over more lines, is looked at from there only.
constexpr qsizetype StatementReach = 8192;
constexpr int StatementLines = 32;
/// So many forms are shown.
constexpr std::size_t MostForms = 6;

/// Words that take a condition or nothing, though the manual has a page of each.
bool IsControlWord(QStringView name)
{
    static constexpr QStringView words[] = {u"if",    u"elseif", u"else",  u"then",  u"ithen",
                                            u"kthen", u"endif",  u"fi",    u"while", u"until",
                                            u"do",    u"od",     u"endin", u"endop"};
    return std::find(std::begin(words), std::end(words), name) != std::end(words);
}

bool GoesOn(QStringView line)
{
    while (!line.isEmpty() && (line.back() == u' ' || line.back() == u'\t'))
        line.chop(1);
    return line.endsWith(u'\\');
}

} // namespace

struct ArgumentHintAid::Place {
    OpcodeCall call;
    qsizetype opcode = 0; ///< in the text
};

ArgumentHintAid::ArgumentHintAid(const WritingContext &context)
    : m_context(context.window),
      m_names(SharedNames(context)),
      m_opcodes(context.opcodes),
      m_arguments(ShippedOpcodeArguments()),
      m_tip(std::make_unique<HintTip>(context.window.window)),
      m_commands(context.window.commands)
{
    TextControl &text = m_context.text;
    text.installEventFilter(this);
    text.viewport()->installEventFilter(this);
    m_context.window->installEventFilter(this);
    connect(&text, &TextControl::textChanged, this, &ArgumentHintAid::FollowCaret);
    connect(&text, &TextControl::selectionChanged, this, &ArgumentHintAid::FollowCaret);
    connect(&text, &TextControl::textLoading, this, &ArgumentHintAid::Hide);
    for (const QScrollBar *bar : {text.verticalScrollBar(), text.horizontalScrollBar()})
        connect(bar, &QAbstractSlider::actionTriggered, this, &ArgumentHintAid::Hide);
    m_commands.Bind(Cmd::mnuArgumentHint, [this] { Show(); });
    SettingsApplied();
}

ArgumentHintAid::~ArgumentHintAid() = default;

void ArgumentHintAid::SettingsApplied()
{
    m_manual.SetHelpFile(HelpFile(m_context.editor.settings, ProgramFolder()));
}

bool ArgumentHintAid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != &m_context.text) {
        switch (event->type()) {
        case QEvent::Wheel:
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Hide:
        case QEvent::WindowDeactivate:
            Hide();
            break;
        default:
            break;
        }
        return false;
    }
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        const QString typed = key.text();
        const bool plain =
            !(key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier));
        m_typed = plain && (typed == u" "_s || typed == u"("_s || typed == u","_s);
        // The list of completions, if it stands, takes the key itself.
        if (key.key() == Qt::Key_Escape)
            Hide();
        return false;
    }
    case QEvent::FocusOut:
        Hide();
        return false;
    default:
        return false;
    }
}

void ArgumentHintAid::FollowCaret()
{
    if (std::exchange(m_typed, false) || m_tip->isVisible())
        Show();
}

bool ArgumentHintAid::IsOpcode(QStringView name)
{
    if (IsControlWord(name))
        return false;
    const std::vector<UserOpcode> &own = m_names->Names().opcodes;
    return m_arguments.Contains(name) ||
           std::any_of(own.begin(), own.end(),
                       [&](const UserOpcode &opcode) { return opcode.name == name; }) ||
           (m_opcodes.Contains(name) && !m_manual.Forms(name.toString()).empty());
}

std::optional<ArgumentHintAid::Place> ArgumentHintAid::FindPlace()
{
    const FileKind kind = m_context.editor.document.DocumentKind;
    const TextControl &text = m_context.text;
    const qsizetype caret = text.CaretOffset();
    const TextNames &names = m_names->Names();
    if (kind == FileKind::Score || (caret >= names.score.start && caret < names.score.end) ||
        IsInside(names.blockComments, caret, text.Length()) ||
        IsInside(names.bracedStrings, caret, text.Length()))
        return {};
    const qsizetype line = text.LineOfOffset(caret);
    qsizetype first = line;
    while (first > 0 && line - first < StatementLines) {
        const qsizetype start = std::max(text.LineStart(first - 1), caret - StatementReach);
        const qsizetype end = text.LineEnd(first - 1);
        // A comment may stand behind the backslash.
        if (start >= end || !GoesOn(CodeOf(text.TextRange(start, end))))
            break;
        --first;
    }
    qsizetype start = std::max(text.LineStart(first), caret - StatementReach);
    // A comment that ends in the line is passed over.
    const auto comment = std::upper_bound(names.blockComments.begin(), names.blockComments.end(), start,
                                          [](qsizetype at, const TextSpan &span) { return at < span.end; });
    if (comment != names.blockComments.end() && comment->start < start && comment->end <= caret)
        start = comment->end;
    const qsizetype end = std::min(text.LineEnd(line), caret + StatementReach);
    const auto call = FindCall(text.TextRange(start, end), caret - start,
                               [this](QStringView name) { return IsOpcode(name); });
    if (!call)
        return {};
    return Place{*call, start + call->start};
}

std::vector<Synopsis> ArgumentHintAid::Forms(const OpcodeCall &call)
{
    for (const UserOpcode &opcode : m_names->Names().opcodes) {
        if (opcode.name == call.opcode)
            return {SynopsisOf(opcode)};
    }
    const std::vector<Synopsis> &described = m_manual.Forms(call.opcode);
    return FormsForCall(described.empty() ? m_arguments.Forms(call.opcode) : described, call.rate,
                        call.argument);
}

void ArgumentHintAid::Show()
{
    const std::optional<Place> place = FindPlace();
    const std::vector<Synopsis> forms = place ? Forms(place->call) : std::vector<Synopsis>();
    if (forms.empty()) {
        Hide();
        return;
    }
    QStringList rich;
    QStringList plain;
    for (const Synopsis &form : forms) {
        if (std::size_t(rich.size()) == MostForms) {
            rich.append(u"<i>%1 more</i>"_s.arg(forms.size() - MostForms));
            break;
        }
        rich.append(form.RichText(place->call.argument));
        plain.append(Shortened(form.text));
    }
    // Above the caret's line, where a statement of several lines begins on another one.
    const TextControl &text = m_context.text;
    const qsizetype caret = text.CaretOffset();
    const qsizetype anchor = std::max(place->opcode, text.LineStart(text.LineOfOffset(caret)));
    m_tip->ShowAt(u"<p style='white-space:pre-wrap'>"_s + rich.join(u"<br>"_s) + u"</p>"_s, plain.join(u'\n'),
                  text.RangeOnScreen(anchor, anchor));
}

void ArgumentHintAid::Hide()
{
    m_tip->hide();
}

} // namespace zelvane
