// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textcontrol.h"

#include "platform/desktop.h"
#include "platform/keptclasses.h"
#include "platform/runtimeerror.h"
#include "platform/ui/utf8text.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMetaMethod>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

static_assert(sizeof(long) == sizeof(void *), "the text control gives addresses as long");

namespace
{

QString KindText(UndoKind kind)
{
    switch (kind) {
    case UndoKind::None:
        break;
    case UndoKind::Typing:
        return u" Typing"_s;
    case UndoKind::Delete:
        return u" Delete"_s;
    case UndoKind::DragDrop:
        return u" Drag Drop"_s;
    case UndoKind::Cut:
        return u" Cut"_s;
    case UndoKind::Paste:
        return u" Paste"_s;
    }
    return {};
}

// Room in bytes for what is typed into a text: a part of the text, within limits. Less would be asked for
// more often, and each time Scintilla copies the text.
constexpr qsizetype SpareDivisor = 16;
constexpr qsizetype LeastSpare = 64 * 1024;
constexpr qsizetype MostSpare = 4 * 1024 * 1024;

// What a change takes beside the text, in bytes: estimates, for Scintilla's tables and for its steps of undo.
constexpr qsizetype MemoryPerLine = 32;
constexpr qsizetype MemoryPerStep = 128;
constexpr qsizetype MemoryAlways = 1024 * 1024;

// Widths of measured pieces that Scintilla keeps, since a long line is laid out again at each key. There are
// some 9000 pairs of ASCII characters, the pieces of long lines, in two styles of each class.
constexpr int KeptWidths = 32768;

/// The room that a text of so many bytes is given.
qsizetype RoomFor(qsizetype bytes)
{
    return bytes + 1 + std::clamp(bytes / SpareDivisor, LeastSpare, MostSpare);
}

/// Bytes of a text, and a style byte for each.
struct StyledBytes {
    QByteArray bytes;
    QByteArray styles;
};

/// A piece of text with other text in the place of some of its stretches; that takes the style before it.
/// @param style before the piece @param come as ReplaceStretches takes it, and what follows
template <typename SpanAt, typename BytesAt>
StyledBytes Spliced(QByteArrayView bytes, const QByteArray &styles, bool isAscii, char style,
                    std::size_t count, std::size_t come, const SpanAt &spanAt, const BytesAt &bytesAt)
{
    const qsizetype most = bytes.size() + qsizetype(come);
    StyledBytes spliced{QByteArray(most, Qt::Uninitialized), QByteArray(most, Qt::Uninitialized)};
    char *toByte = spliced.bytes.data();
    char *toStyle = spliced.styles.data();

    qsizetype at = 0;
    qsizetype unit = spanAt(0).start;
    const auto walkTo = [&](qsizetype target) {
        if (isAscii) {
            at += target - unit;
            unit = target;
            return;
        }
        for (; at < bytes.size(); ++at) {
            const uchar byte = uchar(bytes[at]);
            if ((byte & 0xC0) == 0x80)
                continue;
            if (unit >= target)
                return;
            unit += byte >= 0xF0 ? 2 : 1;
        }
    };
    for (std::size_t i = 0; i < count; ++i) {
        const TextSpan span = spanAt(i);
        const QByteArray &put = bytesAt(i);
        const qsizetype from = at;
        walkTo(span.start);
        toByte = std::copy(bytes.data() + from, bytes.data() + at, toByte);
        toStyle = std::copy(styles.constData() + from, styles.constData() + at, toStyle);
        if (toStyle != spliced.styles.constData())
            style = toStyle[-1];
        toByte = std::copy(put.begin(), put.end(), toByte);
        toStyle = std::fill_n(toStyle, put.size(), style);
        walkTo(span.end);
    }
    spliced.bytes.truncate(toByte - spliced.bytes.constData());
    spliced.styles.truncate(toStyle - spliced.styles.constData());
    return spliced;
}

/// Memory that is taken, not touched, and given back with the end of its scope.
class Probe
{
public:
    explicit Probe(qsizetype bytes) : m_block(::operator new(size_t(bytes))) {}
    ~Probe() { ::operator delete(m_block); }
    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;

private:
    void *volatile m_block;
};

} // namespace

TextControl::TextControl(Desktop &desktop, QWidget *parent)
    : QsciScintillaBase(parent),
      m_desktop(desktop),
      m_map([this](qsizetype start, qsizetype length) { return Bytes(start, length); })
{
    TextAccessible::Install();
    setObjectName(u"TxtEdit"_s);
    setAccessibleName(u"Text"_s);
    setFrameShape(QFrame::NoFrame);

    Send(SCI_SETCODEPAGE, SC_CP_UTF8);
    Send(SCI_SETLEXER, SCLEX_CONTAINER);
    Send(SCI_SETEOLMODE, SC_EOL_LF);
    Send(SCI_SETMODEVENTMASK, SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE);
    Send(SCI_CLEARALLCMDKEYS);
    Send(SCI_USEPOPUP, 0);
    Send(SCI_SETMULTIPLESELECTION, 0);
    Send(SCI_SETADDITIONALSELECTIONTYPING, 0);
    Send(SCI_SETMOUSESELECTIONRECTANGULARSWITCH, 0);
    Send(SCI_SETVIRTUALSPACEOPTIONS, 0);
    for (int margin = 0; margin < int(Send(SCI_GETMARGINS)); ++margin)
        Send(SCI_SETMARGINWIDTHN, margin, 0);
    Send(SCI_SETMARGINLEFT, 0, 6);
    Send(SCI_SETMARGINRIGHT, 0, 6);
    Send(SCI_SETSCROLLWIDTHTRACKING, 1);
    Send(SCI_SETSCROLLWIDTH, 1);
    Send(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
    Send(SCI_SETPOSITIONCACHE, KeptWidths);
    Send(SCI_SETCARETLINEVISIBLE, 0);

    m_font.family = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    ApplyLook();

    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int type, const char *, int length) { Modifying(position, type, length); });
    // A selection that grows while the mouse is held still outside comes with no event of its own.
    connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, &TextControl::Settle, Qt::QueuedConnection);
}

// Messages

long TextControl::Send(unsigned message, qint64 wParam, qint64 lParam) const
{
    return SendScintilla(message, static_cast<unsigned long>(wParam), static_cast<long>(lParam));
}

long TextControl::SendBytes(unsigned message, qint64 wParam, const char *bytes) const
{
    return SendScintilla(message, static_cast<uintptr_t>(wParam), bytes);
}

QByteArrayView TextControl::Bytes(qsizetype start, qsizetype length) const
{
    if (length <= 0)
        return {};
    return {reinterpret_cast<const char *>(Send(SCI_GETRANGEPOINTER, start, length)), length};
}

// The text

QString TextControl::Text() const
{
    const char *bytes = static_cast<const char *>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    return FromUtf8({bytes, m_map.Bytes()});
}

QByteArray TextControl::Utf8() const
{
    // The two sides of the gap where the user types: to close it would cost as much again, and once more at
    // the next key.
    const qsizetype length = m_map.Bytes();
    const qsizetype gap = std::clamp<qsizetype>(Send(SCI_GETGAPPOSITION), 0, length);
    QByteArray bytes;
    bytes.reserve(length);
    bytes.append(Bytes(0, gap));
    bytes.append(Bytes(gap, length - gap));
    return bytes;
}

QString TextControl::TextRange(qsizetype start, qsizetype end) const
{
    const qsizetype first = m_map.ToByte(start);
    const qsizetype last = m_map.ToByte(end);
    return FromUtf8(Bytes(first, last - first));
}

void TextControl::LoadText(QString text)
{
    LeaveStep();
    QByteArray bytes;
    try {
        bytes = ToUtf8(text);
    } catch (const std::bad_alloc &) {
        throw OutOfMemory();
    }
    text = QString();
    m_room = 0;
    ExpectMemory(0, bytes, bytes.size());
    Q_EMIT textLoading();
    NoteEdit({0, Length(), Utf16Length(bytes)});

    const long mask = Send(SCI_GETMODEVENTMASK);
    Send(SCI_SETMODEVENTMASK, 0);
    Send(SCI_SETUNDOCOLLECTION, 0);
    Send(SCI_CLEARALL);
    Send(SCI_CHOOSECARETX);
    MakeRoom(bytes.size());
    SendBytes(SCI_APPENDTEXT, bytes.size(), bytes.constData());
    Send(SCI_SETUNDOCOLLECTION, 1);
    Send(SCI_SETMODEVENTMASK, mask);
    m_map.Reset(bytes.size(), Utf16Length(bytes));
    bytes.clear();
    m_plain = true;
    BreakUpLongLines(0, m_map.Bytes());

    m_formatsApplied = false;
    ApplyLook();
    Send(SCI_SETENDATLASTLINE, 1);
    Send(SCI_SETSCROLLWIDTH, 1);
    Send(SCI_SETXOFFSET, 0);
    m_mayBeNarrower = false;
    // Without a look at where it stands, which would lay out a text that is coloured next.
    Send(SCI_SETEMPTYSELECTION, 0);
    m_textDirty = true;
    EmptyUndoBuffer();
    Settle();
    Q_EMIT textLoaded();
}

void TextControl::SetText(const QString &text)
{
    const QByteArray bytes = ToUtf8(text);
    ReplaceBytes(0, m_map.Bytes(), bytes, UndoKind::None);
    PaintRun({0, bytes.size(), StyleClass::Text});
    BreakUpLongLines(0, bytes.size());
    SetCaret({});
    Settle();
}

TextSpan TextControl::Selection() const
{
    return {m_map.ToUnits(Send(SCI_GETSELECTIONSTART)), m_map.ToUnits(Send(SCI_GETSELECTIONEND))};
}

void TextControl::SetSelection(qsizetype start, qsizetype end)
{
    SetCaret({m_map.ToByte(start), end < 0 ? m_map.Bytes() : m_map.ToByte(end)});
    Settle();
}

QString TextControl::SelectedText() const
{
    const long start = Send(SCI_GETSELECTIONSTART);
    return FromUtf8(Bytes(start, Send(SCI_GETSELECTIONEND) - start));
}

void TextControl::ReplaceSelection(const QString &text)
{
    ReplaceSelectionAs(text, text.isEmpty() ? UndoKind::Delete : UndoKind::None);
}

void TextControl::ReplaceSelectionAs(const QString &text, UndoKind kind)
{
    const long start = Send(SCI_GETSELECTIONSTART);
    const QByteArray bytes = ToUtf8(text);
    ReplaceBytes(start, Send(SCI_GETSELECTIONEND), bytes, kind);
    SetCaret({start + bytes.size(), start + bytes.size()});
    Settle();
}

void TextControl::ReplaceRange(qsizetype start, qsizetype end, const QString &text)
{
    const qsizetype first = m_map.ToByte(start);
    ReplaceBytes(first, std::max(first, m_map.ToByte(end)), ToUtf8(text), UndoKind::None);
    Settle();
}

void TextControl::TypeOver(const QString &text)
{
    const long start = Send(SCI_GETSELECTIONSTART);
    const long end = Send(SCI_GETSELECTIONEND);
    const QByteArray bytes = ToUtf8(text);
    ReplaceBytes(start, end, bytes, UndoKind::Typing,
                 start == end && m_goesOn == GoingOn{UndoKind::Typing, start});
    SetCaret({start + bytes.size(), start + bytes.size()});
    m_goesOn = {UndoKind::Typing, start + bytes.size()};
    // While something is typed the caret does not blink.
    if (hasFocus())
        Send(SCI_SETFOCUS, 1);
}

void TextControl::ReplaceTyped(qsizetype start, qsizetype end, const QString &text, qsizetype caret,
                               bool goesOn)
{
    EndComposition();
    const qsizetype first = m_map.ToByte(start);
    ReplaceBytes(first, std::max(first, m_map.ToByte(end)), ToUtf8(text), UndoKind::Typing,
                 goesOn && CanUndo());
    const qsizetype at = m_map.ToByte(caret);
    SetCaret({at, at});
    m_goesOn = {UndoKind::Typing, at};
    Settle();
}

void TextControl::ReplaceBytes(qsizetype start, qsizetype end, const QByteArray &utf8, UndoKind kind,
                               bool goesOn)
{
    FinishOwnEdits();
    if (start == end && utf8.isEmpty())
        return;
    const qsizetype length = m_map.Bytes() - (end - start) + utf8.size();
    ExpectMemory(end - start, utf8, length);
    // With its whole text Scintilla gives its room away.
    if (end - start == m_map.Bytes())
        m_room = 0;
    else
        MakeRoom(length);
    const bool newStep = !m_commandGroup;
    if (m_commandDepth > 0 && newStep) {
        m_commandGroup = true;
        Send(SCI_BEGINUNDOACTION);
    }
    if (start < end || utf8.contains('\n'))
        MayNarrow(start, end);
    const bool tell = TextAccessible::IsHeard();
    const QString gone = tell ? FromUtf8(Bytes(start, end - start)) : QString();
    QByteArray classes;
    m_caretBeforeEdit = Caret();
    const qsizetype unit = m_map.ToUnits(start);
    const qsizetype removed = m_map.ToUnits(end) - unit;
    if (start < end)
        classes = Replacing(start, end, kind == UndoKind::None ? QByteArrayView(utf8) : QByteArrayView());
    // Told of it, the widget would make two copies of what goes and two of what comes.
    const long mask = Send(SCI_GETMODEVENTMASK);
    Send(SCI_SETMODEVENTMASK, 0);
    Send(SCI_BEGINUNDOACTION);
    Send(SCI_SETTARGETRANGE, start, end);
    SendBytes(SCI_REPLACETARGET, utf8.size(), utf8.constData());
    Send(SCI_ENDUNDOACTION);
    Send(SCI_SETMODEVENTMASK, mask);
    if (!utf8.isEmpty()) {
        m_map.Inserted(start, utf8.size());
        if (classes.isEmpty())
            TakeClassBefore(start, utf8.size());
        else
            ApplyStyleBytes(start, classes);
    }
    BreakUpLongLines(start, start + utf8.size());
    NoteEdit({unit, removed, m_map.ToUnits(start + utf8.size()) - unit});
    if (tell)
        m_untold.push_back({m_map.ToUnits(start), gone, FromUtf8(utf8)});
    EditedByUser(newStep, kind, goesOn && newStep);
    Send(SCI_CHOOSECARETX);
}

void TextControl::ExpectMemory(qsizetype gone, QByteArrayView come, qsizetype length)
{
    m_largest = std::max({m_largest, length, m_map.Bytes()});
    const qsizetype room = RoomFor(length);
    try {
        const Probe text(length < m_room ? 0 : room);
        const Probe styles(length < m_room ? 0 : room);
        const Probe rest(2 * gone + come.size() +
                         MemoryPerLine * (LineCount() + std::count(come.begin(), come.end(), '\n')) +
                         MemoryPerStep * qsizetype(m_steps.Count()) + MemoryAlways);
    } catch (const std::bad_alloc &) {
        throw OutOfMemory();
    }
}

void TextControl::MakeRoom(qsizetype length)
{
    if (length < m_room)
        return;
    const qsizetype room = RoomFor(length);
    Send(SCI_ALLOCATE, room);
    m_room = room;
}

QByteArray TextControl::Replacing(qsizetype start, qsizetype end, QByteArrayView keeping)
{
    if (m_plain || keeping.isEmpty()) {
        TextGoes(start, end - start, &m_undoStyles);
        return {};
    }
    const char before = ClassBefore(start);
    const QByteArray old = StyleBytes(start, end - start);
    QByteArray classes = KeptClasses(Bytes(start, end - start), old, keeping, before);
    m_undoStyles.PushEach(old);
    m_map.Deleting(start, end - start);
    return classes;
}

void TextControl::ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &text)
{
    const QByteArray put = ToUtf8(text);
    ReplaceStretches(
        starts.size(), starts.size() * std::size_t(put.size()),
        [&](std::size_t i) {
            return TextSpan{starts[i], starts[i] + length};
        },
        [&](std::size_t) -> const QByteArray & { return put; });
}

void TextControl::ReplaceEach(const std::vector<TextReplacement> &replacements)
{
    std::vector<QByteArray> put;
    put.reserve(replacements.size());
    std::size_t come = 0;
    for (const TextReplacement &one : replacements) {
        put.push_back(ToUtf8(one.text));
        come += std::size_t(put.back().size());
    }
    ReplaceStretches(
        replacements.size(), come, [&](std::size_t i) { return replacements[i].span; },
        [&](std::size_t i) -> const QByteArray & { return put[i]; });
}

template <typename SpanAt, typename BytesAt>
void TextControl::ReplaceStretches(std::size_t count, std::size_t come, const SpanAt &spanAt,
                                   const BytesAt &bytesAt)
{
    if (count == 0)
        return;
    // One edit from the first stretch to the last: as many edits as stretches would need as many undo
    // records.
    const qsizetype first = m_map.ToByte(spanAt(0).start);
    const qsizetype last = m_map.ToByte(spanAt(count - 1).end);
    // Both are asked for before the bytes, which are good until the next message.
    const char before = ClassBefore(first);
    const QByteArray styles = StyleBytes(first, last - first);
    const StyledBytes put =
        Spliced(Bytes(first, last - first), styles, m_map.IsAscii(), before, count, come, spanAt, bytesAt);
    const qsizetype end = first + put.bytes.size();
    ReplaceBytes(first, last, put.bytes, UndoKind::None);
    ApplyStyleBytes(first, put.styles);
    BreakUpLongLines(first, end);
    SetCaret({end, end});
    Settle();
}

CaretSpan TextControl::Caret() const
{
    return {Send(SCI_GETANCHOR), Send(SCI_GETCURRENTPOS)};
}

void TextControl::SetCaret(const CaretSpan &span)
{
    const bool moves = span != Caret();
    Send(SCI_SETSEL, span.anchor, span.caret);
    // What Up and Down aim at from here. A selection that is only given back leaves their aim alone.
    if (moves)
        Send(SCI_CHOOSECARETX);
}

// Lines

qsizetype TextControl::LineCount() const
{
    return Send(SCI_GETLINECOUNT);
}

qsizetype TextControl::LineOfOffset(qsizetype offset) const
{
    return Send(SCI_LINEFROMPOSITION, m_map.ToByte(offset));
}

qsizetype TextControl::LineStart(qsizetype line) const
{
    if (line >= LineCount())
        return Length();
    return m_map.ToUnits(Send(SCI_POSITIONFROMLINE, std::max<qsizetype>(line, 0)));
}

qsizetype TextControl::LineEnd(qsizetype line) const
{
    return m_map.ToUnits(Send(SCI_GETLINEENDPOSITION, std::clamp<qsizetype>(line, 0, LineCount() - 1)));
}

qsizetype TextControl::FirstVisibleLine() const
{
    return Send(SCI_DOCLINEFROMVISIBLE, Send(SCI_GETFIRSTVISIBLELINE));
}

void TextControl::ScrollToLine(qsizetype line)
{
    const long row = Send(SCI_VISIBLEFROMDOCLINE, std::clamp<qsizetype>(line, 0, LineCount() - 1));
    // The last lines reach the top only when the view may show room below the text.
    Send(SCI_SETFIRSTVISIBLELINE, row);
    if (Send(SCI_GETFIRSTVISIBLELINE) < row) {
        Send(SCI_SETENDATLASTLINE, 0);
        Send(SCI_SETFIRSTVISIBLELINE, row);
    }
}

// Undo

void TextControl::TextGoes(qsizetype position, qsizetype length, StyleStack *styles)
{
    if (styles)
        KeepStyles(position, length, *styles);
    m_map.Deleting(position, length);
}

void TextControl::TakeClassBefore(qsizetype position, qsizetype length)
{
    const auto before = StyleClass(ClassBefore(position));
    if (before != StyleClass::Text)
        PaintRun({position, position + length, before});
}

void TextControl::NoteEdit(const TextEdit &edit)
{
    static const QMetaMethod signal = QMetaMethod::fromSignal(&TextControl::edited);
    if (isSignalConnected(signal))
        m_edits.push_back(edit);
}

void TextControl::EditedByUser(bool newStep, UndoKind kind, bool goesOn)
{
    m_textDirty = true;
    m_goesOn = {};
    m_redoStyles.Clear();
    if (newStep)
        m_steps.Push({kind, m_commandGroup ? m_caretBeforeCommand : m_caretBeforeEdit, {}, goesOn});
    m_stepOpen = true;
}

void TextControl::Modifying(int position, int type, int length)
{
    FinishInsertion();
    m_textDirty = true;
    MayNarrow(position, type & SC_MOD_BEFOREDELETE ? position + length : position);
    const bool deletes = type & SC_MOD_BEFOREDELETE;
    StyleStack *styles = &m_undoStyles;
    if (type & SC_PERFORMED_USER) {
        BeginOwnEdit(position, deletes);
    } else if (type & SC_PERFORMED_UNDO) {
        styles = m_composing ? nullptr : &m_redoStyles;
        if (std::exchange(m_composed, false))
            m_steps.Undone();
    }
    if (!deletes) {
        m_coming = {position, length, type};
        return;
    }
    if (TextAccessible::IsHeard())
        m_untold.push_back({m_map.ToUnits(position), FromUtf8(Bytes(position, length)), {}});
    if (length == m_map.Bytes())
        m_room = 0;
    const qsizetype unit = m_map.ToUnits(position);
    NoteEdit({unit, m_map.ToUnits(position + length) - unit, 0});
    TextGoes(position, length, styles);
}

void TextControl::BeginOwnEdit(int position, bool deletes)
{
    if (m_ownGroup || m_composed)
        return;
    m_caretBeforeEdit = Caret();
    if (m_composing) {
        // Scintilla keeps two steps: the selection goes, and what is composed comes and goes by itself.
        const GoingOn here{UndoKind::Typing, position};
        const bool goesOn = m_goesOn == here;
        EditedByUser(true, UndoKind::Typing, goesOn);
        if (goesOn || deletes)
            m_goesOn = here;
        m_composed = !deletes;
        return;
    }
    if (!m_commandGroup) {
        m_ownGroup = true;
        Send(SCI_BEGINUNDOACTION);
    }
    EditedByUser(m_ownGroup, m_kind);
}

void TextControl::FinishInsertion()
{
    const Coming come = std::exchange(m_coming, {});
    if (come.length == 0)
        return;
    m_map.Inserted(come.position, come.length);
    if (come.type & SC_PERFORMED_USER) {
        TakeClassBefore(come.position, come.length);
    } else {
        StyleStack &kept = come.type & SC_PERFORMED_UNDO ? m_undoStyles : m_redoStyles;
        if (const QByteArray styles = kept.Pop(come.length); !styles.isEmpty())
            ApplyStyleBytes(come.position, styles);
    }
    BreakUpLongLines(come.position, come.position + come.length);
    const qsizetype unit = m_map.ToUnits(come.position);
    NoteEdit({unit, 0, m_map.ToUnits(come.position + come.length) - unit});
    if (TextAccessible::IsHeard())
        m_untold.push_back({m_map.ToUnits(come.position), {}, FromUtf8(Bytes(come.position, come.length))});
}

void TextControl::FinishOwnEdits()
{
    FinishInsertion();
    if (std::exchange(m_ownGroup, false))
        Send(SCI_ENDUNDOACTION);
}

bool TextControl::CanUndo() const
{
    return Send(SCI_CANUNDO);
}

bool TextControl::CanRedo() const
{
    return Send(SCI_CANREDO);
}

void TextControl::EmptyUndoBuffer()
{
    LeaveStep();
    Send(SCI_EMPTYUNDOBUFFER);
    m_steps.Clear();
    m_undoStyles.Clear();
    m_redoStyles.Clear();
    m_largest = m_map.Bytes();
    m_caretBeforeCommand = Caret();
    Q_EMIT undoBufferEmptied();
}

UndoKind TextControl::NextUndo() const
{
    const UndoStep *step = CanUndo() ? m_steps.NextUndo() : nullptr;
    return step ? step->kind : UndoKind::None;
}

UndoKind TextControl::NextRedo() const
{
    const UndoStep *step = CanRedo() ? m_steps.NextRedo() : nullptr;
    return step ? step->kind : UndoKind::None;
}

QString TextControl::UndoType() const
{
    return KindText(NextUndo());
}

QString TextControl::RedoType() const
{
    return KindText(NextRedo());
}

void TextControl::Undo()
{
    if (!CanUndo())
        return;
    LeaveStep();
    const UndoStep *step = nullptr;
    do {
        step = m_steps.NextUndo();
        UndoOrRedo(SCI_UNDO);
        m_steps.Undone();
    } while (step && step->goesOn && CanUndo());
    if (step)
        SetCaret(step->before);
    m_caretBeforeCommand = Caret();
    Settle();
}

void TextControl::Redo()
{
    if (!CanRedo())
        return;
    LeaveStep();
    const UndoStep *next = nullptr;
    do {
        UndoOrRedo(SCI_REDO);
        m_steps.Redone();
        next = m_steps.NextRedo();
    } while (next && next->goesOn && CanRedo());
    if (const UndoStep *step = m_steps.NextUndo())
        SetCaret(step->after);
    m_caretBeforeCommand = Caret();
    Settle();
}

void TextControl::LeaveStep()
{
    EndComposition();
    CloseCommandGroup();
    FinishOwnEdits();
    m_stepOpen = false;
    m_goesOn = {};
}

void TextControl::UndoOrRedo(unsigned message)
{
    ExpectMemory(0, {}, m_largest);
    Send(message);
    FinishInsertion();
}

void TextControl::CloseUndoGroup()
{
    m_goesOn = {};
}

void TextControl::BeginCommand()
{
    // What an input method gives in the end was typed before the command.
    if (m_commandDepth == 0 && hasFocus())
        QGuiApplication::inputMethod()->commit();
    if (m_commandDepth++ > 0)
        return;
    m_stepOpen = false;
    m_goesOn = {};
    m_caretBeforeCommand = Caret();
}

void TextControl::EndCommand()
{
    if (m_commandDepth == 0 || --m_commandDepth > 0)
        return;
    CloseCommandGroup();
    Settle();
    m_stepOpen = false;
}

void TextControl::CloseCommandGroup()
{
    if (!m_commandGroup)
        return;
    m_commandGroup = false;
    Send(SCI_ENDUNDOACTION);
}

// Clipboard

void TextControl::Copy()
{
    const QString text = SelectedText();
    if (text.isEmpty())
        return;
    m_desktop.SetClipboardText(text);
    Q_EMIT clipboardFilled();
}

void TextControl::Cut()
{
    if (Send(SCI_GETSELECTIONEMPTY))
        return;
    Copy();
    ReplaceSelectionAs({}, UndoKind::Cut);
}

void TextControl::Paste()
{
    // A clipboard without text must not take the selection away.
    const QString text = m_desktop.ClipboardText();
    if (!text.isEmpty())
        ReplaceSelectionAs(text, UndoKind::Paste);
}

void TextControl::DeleteSelection()
{
    ReplaceSelectionAs({}, UndoKind::Delete);
}

// What has changed

void TextControl::Settle()
{
    FinishOwnEdits();
    SnapCaret();
    const CaretSpan caret = Caret();
    if (m_stepOpen)
        m_steps.SetAfter(caret);
    const bool text = std::exchange(m_textDirty, false);
    const bool selection = std::exchange(m_toldCaret, caret) != caret;
    for (const TextChange &change : std::exchange(m_untold, {}))
        TextAccessible::TellChange(*this, change);
    for (const TextEdit &edit : std::exchange(m_edits, {}))
        Q_EMIT edited(edit);
    if (text) {
        FollowEdit();
        Q_EMIT textChanged();
    }
    if (selection) {
        TextAccessible::TellSelection(*this);
        Q_EMIT selectionChanged();
    }
}

void TextControl::SnapCaret()
{
    if (m_map.IsAscii())
        return;
    const auto snapped = [this](qsizetype position, qsizetype before) {
        const int step = position < before ? -1 : 1;
        while (position > 0 && position < m_map.Bytes() && (uchar(Bytes(position, 1)[0]) & 0xC0) == 0x80)
            position += step;
        return position;
    };
    const CaretSpan now = Caret();
    const CaretSpan good{snapped(now.anchor, m_toldCaret.anchor), snapped(now.caret, m_toldCaret.caret)};
    // Up and Down go on to aim at their column.
    if (good != now)
        Send(SCI_SETSEL, good.anchor, good.caret);
}

} // namespace zelvane
