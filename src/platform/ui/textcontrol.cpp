// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/textcontrol.h"

#include "platform/desktop.h"
#include "platform/ui/systemcolours.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QUrl>
#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

static_assert(sizeof(long) == sizeof(void *), "the text control gives addresses as long");

namespace
{

constexpr qsizetype StyleChunk = 65536;

/// UTF-8 to text; a byte order mark is a character like any other.
QString FromUtf8(QByteArrayView bytes)
{
    if (!bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes);
    return QChar(QChar::ByteOrderMark) + FromUtf8(bytes.sliced(3));
}

/// Text to UTF-8, with every line end one LF. Half a pair becomes a question mark.
QByteArray ToUtf8(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    qsizetype to = bytes.indexOf('\r');
    if (to < 0)
        return bytes;
    char *const data = bytes.data();
    for (qsizetype from = to; from < bytes.size(); ++from) {
        if (data[from] != '\r')
            data[to++] = data[from];
        else if (from + 1 == bytes.size() || data[from + 1] != '\n')
            data[to++] = '\n';
    }
    bytes.truncate(to);
    return bytes;
}

int ScintillaColour(const QColor &colour)
{
    return colour.red() | (colour.green() << 8) | (colour.blue() << 16);
}

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
    {Qt::Key_A, Ctrl, Sci::SCI_SELECTALL},
};

/// The keys that delete; with a selection all of them delete the selection.
const KeyRow DeletingKeys[] = {
    {Qt::Key_Backspace, NoKeys, Sci::SCI_DELETEBACK}, {Qt::Key_Backspace, Shift, Sci::SCI_DELETEBACK},
    {Qt::Key_Backspace, Ctrl, Sci::SCI_DELWORDLEFT},  {Qt::Key_Delete, NoKeys, Sci::SCI_CLEAR},
    {Qt::Key_Delete, Ctrl, Sci::SCI_DELWORDRIGHT},
};

struct CommandRow {
    int key;
    Qt::KeyboardModifiers modifiers;
    const char16_t *name;
    int index;
};

/// The keys that run a command of the Edit menu.
const CommandRow CommandKeys[] = {
    {Qt::Key_Z, Ctrl, u"mnuUndo", 0},          {Qt::Key_Y, Ctrl, u"mnuRedo", 0},
    {Qt::Key_X, Ctrl, u"mnuEditItem", 0},      {Qt::Key_C, Ctrl, u"mnuEditItem", 1},
    {Qt::Key_V, Ctrl, u"mnuEditItem", 2},      {Qt::Key_Delete, Shift, u"mnuEditItem", 0},
    {Qt::Key_Insert, Ctrl, u"mnuEditItem", 1}, {Qt::Key_Insert, Shift, u"mnuEditItem", 2},
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

bool HoldsFiles(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return std::any_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
}

} // namespace

TextControl::TextControl(Desktop &desktop, QWidget *parent)
    : QsciScintillaBase(parent),
      m_desktop(desktop),
      m_map([this](qsizetype start, qsizetype length) { return Bytes(start, length); })
{
    setObjectName(u"TxtEdit"_s);
    setAccessibleName(u"Text"_s);
    setFrameShape(QFrame::NoFrame);

    Send(SCI_SETCODEPAGE, SC_CP_UTF8);
    Send(SCI_SETLEXER, SCLEX_CONTAINER);
    Send(SCI_SETEOLMODE, SC_EOL_LF);
    Send(SCI_SETMODEVENTMASK,
         SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT | SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE);
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
    Send(SCI_SETCARETLINEVISIBLE, 0);

    m_font.family = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    ApplyLook();

    connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int type, const char *, int length) { Modified(position, type, length); });
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

QByteArray TextControl::StyleBytes(qsizetype start, qsizetype length) const
{
    QByteArray styles(length, Qt::Uninitialized);
    QByteArray cells(2 * std::min(length, StyleChunk) + 2, Qt::Uninitialized);
    for (qsizetype done = 0; done < length;) {
        const qsizetype step = std::min(length - done, StyleChunk);
        SendScintilla(SCI_GETSTYLEDTEXT, long(start + done), long(start + done + step), cells.data());
        for (qsizetype i = 0; i < step; ++i)
            styles[done + i] = cells[2 * i + 1];
        done += step;
    }
    return styles;
}

void TextControl::ApplyStyleBytes(qsizetype start, const QByteArray &styles)
{
    Send(SCI_STARTSTYLING, start);
    SendBytes(SCI_SETSTYLINGEX, styles.size(), styles.constData());
}

// The text

QString TextControl::Text() const
{
    const char *bytes = static_cast<const char *>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    return FromUtf8({bytes, m_map.Bytes()});
}

QString TextControl::TextRange(qsizetype start, qsizetype end) const
{
    const qsizetype first = m_map.ToByte(start);
    const qsizetype last = m_map.ToByte(end);
    return FromUtf8(Bytes(first, last - first));
}

void TextControl::LoadText(QString text)
{
    CloseCommandGroup();
    QByteArray bytes = ToUtf8(text);
    text = QString();

    const long mask = Send(SCI_GETMODEVENTMASK);
    Send(SCI_SETMODEVENTMASK, 0);
    Send(SCI_SETUNDOCOLLECTION, 0);
    Send(SCI_CLEARALL);
    Send(SCI_ALLOCATE, bytes.size() + 1);
    SendBytes(SCI_APPENDTEXT, bytes.size(), bytes.constData());
    Send(SCI_SETUNDOCOLLECTION, 1);
    Send(SCI_SETMODEVENTMASK, mask);
    m_map.Reset(bytes.size(), Utf16Length(bytes));
    bytes.clear();

    m_formatsApplied = false;
    ApplyLook();
    Send(SCI_SETENDATLASTLINE, 1);
    Send(SCI_SETSCROLLWIDTH, 1);
    Send(SCI_SETXOFFSET, 0);
    SetCaret({});
    m_textDirty = true;
    EmptyUndoBuffer();
    Settle();
}

void TextControl::SetText(const QString &text)
{
    ReplaceBytes(0, m_map.Bytes(), ToUtf8(text), UndoKind::None);
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

void TextControl::ReplaceBytes(qsizetype start, qsizetype end, const QByteArray &utf8, UndoKind kind)
{
    if (start == end && utf8.isEmpty())
        return;
    if (m_commandDepth > 0 && !m_commandGroup) {
        m_commandGroup = true;
        Send(SCI_BEGINUNDOACTION);
    }
    const QScopedValueRollback kindOfStep(m_kind, kind);
    Send(SCI_BEGINUNDOACTION);
    Send(SCI_SETTARGETRANGE, start, end);
    SendBytes(SCI_REPLACETARGET, utf8.size(), utf8.constData());
    Send(SCI_ENDUNDOACTION);
    Send(SCI_CHOOSECARETX);
}

void TextControl::ReplaceEach(const std::vector<qint32> &starts, qsizetype length, const QString &text)
{
    if (starts.empty())
        return;
    // One edit from the first stretch to the last: as many edits as stretches would need as many undo
    // records.
    const QByteArray put = ToUtf8(text);
    const qsizetype first = m_map.ToByte(starts.front());
    const qsizetype last = m_map.ToByte(starts.back() + length);
    char style = first > 0 ? char(Send(SCI_GETSTYLEAT, first - 1)) : char(StyleClass::Text);
    const QByteArray styles = StyleBytes(first, last - first);
    const QByteArrayView bytes = Bytes(first, last - first);
    const qsizetype most = bytes.size() + qsizetype(starts.size()) * put.size();
    QByteArray newBytes(most, Qt::Uninitialized);
    QByteArray newStyles(most, Qt::Uninitialized);
    char *toByte = newBytes.data();
    char *toStyle = newStyles.data();

    qsizetype at = 0;
    qsizetype unit = starts.front();
    const auto walkTo = [&](qsizetype target) {
        if (m_map.IsAscii()) {
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
    for (const qint32 start : starts) {
        const qsizetype from = at;
        walkTo(start);
        toByte = std::copy(bytes.data() + from, bytes.data() + at, toByte);
        toStyle = std::copy(styles.constData() + from, styles.constData() + at, toStyle);
        if (toStyle != newStyles.constData())
            style = toStyle[-1];
        toByte = std::copy(put.begin(), put.end(), toByte);
        toStyle = std::fill_n(toStyle, put.size(), style);
        walkTo(start + length);
    }
    newBytes.truncate(toByte - newBytes.constData());
    newStyles.truncate(toStyle - newStyles.constData());
    ReplaceBytes(first, last, newBytes, UndoKind::None);
    ApplyStyleBytes(first, newStyles);
    SetCaret({first + newBytes.size(), first + newBytes.size()});
    Settle();
}

CaretSpan TextControl::Caret() const
{
    return {Send(SCI_GETANCHOR), Send(SCI_GETCURRENTPOS)};
}

void TextControl::SetCaret(const CaretSpan &span)
{
    Send(SCI_SETSEL, span.anchor, span.caret);
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

// Style classes

void TextControl::ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs)
{
    start = std::clamp<qsizetype>(start, 0, Length());
    end = std::clamp<qsizetype>(end, start, Length());
    if (!m_formatsApplied) {
        m_formatsApplied = true;
        ApplyLook();
    }
    QByteArray units(end - start, char(StyleClass::Text));
    StyleRuns outside;
    for (const StyleRun &run : runs) {
        const qsizetype runEnd = qsizetype(run.start) + run.length;
        const qsizetype first = std::max<qsizetype>(run.start, start);
        const qsizetype last = std::min(runEnd, end);
        if (first < last)
            std::memset(units.data() + (first - start), int(run.style), size_t(last - first));
        if (run.start < start || runEnd > end)
            outside.push_back(run);
    }
    ApplyStylesInside(start, end, units);
    for (const StyleRun &run : outside) {
        const qsizetype runEnd = qsizetype(run.start) + run.length;
        SetStyle(run.start, std::min(runEnd, start), run.style);
        SetStyle(std::max<qsizetype>(run.start, end), runEnd, run.style);
    }
}

void TextControl::SetStyle(qsizetype start, qsizetype end, StyleClass style)
{
    const qsizetype firstByte = m_map.ToByte(start);
    const qsizetype lastByte = m_map.ToByte(end);
    if (start >= end || firstByte >= lastByte)
        return;
    Send(SCI_STARTSTYLING, firstByte);
    Send(SCI_SETSTYLING, lastByte - firstByte, int(style));
}

void TextControl::ApplyStylesInside(qsizetype start, qsizetype end, const QByteArray &units)
{
    if (start == end)
        return;
    const qsizetype firstByte = m_map.ToByte(start);
    const qsizetype lastByte = m_map.ToByte(end);
    if (lastByte - firstByte == units.size()) {
        ApplyStyleBytes(firstByte, units);
        return;
    }
    // A style for each unit becomes one for each byte: a character's bytes take the style of its first unit.
    Send(SCI_STARTSTYLING, firstByte);
    QByteArray styles(StyleChunk, Qt::Uninitialized);
    qsizetype unit = 0;
    char style = char(StyleClass::Text);
    for (qsizetype position = firstByte; position < lastByte;) {
        const QByteArrayView bytes = Bytes(position, std::min(lastByte - position, StyleChunk));
        char *out = styles.data();
        qsizetype i = 0;
        while (i < bytes.size()) {
            quint64 eight = ~quint64(0);
            if (i + 8 <= bytes.size() && unit + 8 <= units.size())
                std::memcpy(&eight, bytes.data() + i, 8);
            if ((eight & 0x8080808080808080U) == 0) {
                std::memcpy(out + i, units.constData() + unit, 8);
                i += 8;
                unit += 8;
                style = out[i - 1];
                continue;
            }
            const uchar byte = uchar(bytes[i]);
            if ((byte & 0xC0) != 0x80 && unit < units.size()) {
                style = units[unit];
                unit += byte >= 0xF0 ? 2 : 1;
            }
            out[i++] = style;
        }
        SendBytes(SCI_SETSTYLINGEX, bytes.size(), styles.constData());
        position += bytes.size();
    }
}

StyleClass TextControl::StyleAt(qsizetype offset) const
{
    const qsizetype position = m_map.ToByte(offset);
    return position < m_map.Bytes() ? StyleClass(Send(SCI_GETSTYLEAT, position)) : StyleClass::Text;
}

// Undo

void TextControl::Modified(int position, int type, int length)
{
    const bool user = type & SC_PERFORMED_USER;
    if (type & SC_MOD_BEFOREINSERT) {
        if (user)
            m_caretBeforeEdit = Caret();
        return;
    }
    if (type & SC_MOD_BEFOREDELETE) {
        if (user)
            m_caretBeforeEdit = Caret();
        m_map.Deleting(position, length);
        StyleStack &styles = type & SC_PERFORMED_UNDO ? m_redoStyles : m_undoStyles;
        styles.Push(StyleBytes(position, length));
        return;
    }
    if (type & SC_MOD_INSERTTEXT) {
        m_map.Inserted(position, length);
        QByteArray styles;
        if (user) {
            const long before = position > 0 ? Send(SCI_GETSTYLEAT, position - 1) : long(StyleClass::Text);
            if (before != long(StyleClass::Text))
                styles = QByteArray(length, char(before));
        } else {
            styles = (type & SC_PERFORMED_UNDO ? m_undoStyles : m_redoStyles).Pop(length);
        }
        if (!styles.isEmpty())
            ApplyStyleBytes(position, styles);
    }
    m_textDirty = true;
    if (user) {
        m_redoStyles.Clear();
        if (type & SC_STARTACTION) {
            m_steps.Push({m_kind, m_commandGroup ? m_caretBeforeCommand : m_caretBeforeEdit, {}});
        }
        m_stepOpen = true;
    } else if (type & SC_LASTSTEPINUNDOREDO) {
        if (type & SC_PERFORMED_UNDO)
            m_steps.Undone();
        else
            m_steps.Redone();
    }
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
    CloseCommandGroup();
    Send(SCI_EMPTYUNDOBUFFER);
    m_steps.Clear();
    m_undoStyles.Clear();
    m_redoStyles.Clear();
    m_stepOpen = false;
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
    UndoOrRedo(SCI_UNDO);
    if (const UndoStep *step = m_steps.NextRedo())
        SetCaret(step->before);
    Settle();
}

void TextControl::Redo()
{
    if (!CanRedo())
        return;
    UndoOrRedo(SCI_REDO);
    if (const UndoStep *step = m_steps.NextUndo())
        SetCaret(step->after);
    Settle();
}

void TextControl::UndoOrRedo(unsigned message)
{
    CloseCommandGroup();
    m_stepOpen = false;
    m_breakTyping = true;
    Send(message);
    m_caretBeforeCommand = Caret();
}

void TextControl::CloseUndoGroup()
{
    Send(SCI_BEGINUNDOACTION);
    Send(SCI_ENDUNDOACTION);
    m_breakTyping = false;
}

void TextControl::BeginCommand()
{
    if (m_commandDepth++ > 0)
        return;
    if (hasFocus())
        QGuiApplication::inputMethod()->commit();
    m_stepOpen = false;
    m_breakTyping = true;
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
    if (m_desktop.ClipboardHasText())
        ReplaceSelectionAs(m_desktop.ClipboardText(), UndoKind::Paste);
}

void TextControl::DeleteSelection()
{
    ReplaceSelectionAs({}, UndoKind::Delete);
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

// What has changed

void TextControl::Settle()
{
    SnapCaret();
    const CaretSpan caret = Caret();
    if (m_stepOpen)
        m_steps.SetAfter(caret);
    const bool text = std::exchange(m_textDirty, false);
    const bool selection = std::exchange(m_toldCaret, caret) != caret;
    if (text)
        Q_EMIT textChanged();
    if (selection)
        Q_EMIT selectionChanged();
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
    if (good != now)
        SetCaret(good);
}

// Events

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

void TextControl::changeEvent(QEvent *event)
{
    QsciScintillaBase::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::StyleChange:
        ApplyLook();
        break;
    default:
        break;
    }
}

void TextControl::keyPressEvent(QKeyEvent *event)
{
    try {
        if (CommandKey(*event) || TabKey(*event) || EditingKey(*event)) {
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
    TypeText(event->text());
    event->accept();
}

bool TextControl::CommandKey(const QKeyEvent &event)
{
    const CommandRow *row = FindRow(CommandKeys, event);
    if (row)
        RunCommand(QString::fromUtf16(row->name), row->index);
    return row;
}

void TextControl::RunCommand(const QString &name, int index)
{
    if (m_hooks.runCommand)
        m_hooks.runCommand(name, index);
}

bool TextControl::EditingKey(const QKeyEvent &event)
{
    if (const KeyRow *row = FindRow(MovingKeys, event)) {
        m_breakTyping = true;
        Send(row->message);
        return true;
    }
    if (const KeyRow *row = FindRow(DeletingKeys, event)) {
        const bool back = row->key == Qt::Key_Backspace;
        const long caret = Send(SCI_GETCURRENTPOS);
        const bool selected = !Send(SCI_GETSELECTIONEMPTY);
        if (!selected && caret == (back ? 0 : m_map.Bytes()))
            return true;
        if (back || m_breakTyping)
            CloseUndoGroup();
        const QScopedValueRollback kind(m_kind, UndoKind::Delete);
        if (!selected && !m_map.IsAscii() && ModifiersOf(event) != Qt::ControlModifier) {
            // A character that Scintilla takes for stray bytes goes whole, too.
            const qsizetype unit = m_map.ToUnits(caret);
            const qsizetype other = m_map.ToByte(back ? unit - 1 : unit + 1);
            if (other != Send(back ? SCI_POSITIONBEFORE : SCI_POSITIONAFTER, caret) && other != caret)
                SetCaret({caret, other});
        }
        Send(selected ? unsigned(SCI_CLEAR) : row->message);
        return true;
    }
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (enter && (ModifiersOf(event) == NoKeys || ModifiersOf(event) == Shift)) {
        CloseUndoGroup();
        const QScopedValueRollback kind(m_kind, UndoKind::Typing);
        Send(SCI_NEWLINE);
        return true;
    }
    return false;
}

bool TextControl::SelectionSpansLines() const
{
    const QString selected = SelectedText();
    const qsizetype feed = selected.indexOf(u'\n');
    return feed >= 0 && feed != selected.size() - 1;
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
        const qsizetype caret = Selection().start;
        const qsizetype column = caret - LineStart(LineOfOffset(caret));
        text = QString(unit - column % unit, u' ');
    }
    ReplaceSelectionAs(text, UndoKind::Typing);
    return true;
}

void TextControl::TypeText(const QString &text)
{
    QInputMethodEvent commit;
    commit.setCommitString(text);
    inputMethodEvent(&commit);
}

void TextControl::inputMethodEvent(QInputMethodEvent *event)
{
    const QScopedValueRollback kind(m_kind, UndoKind::Typing);
    const QString commit = event->commitString();
    if (m_breakTyping ? !commit.isEmpty() : commit.startsWith(u' '))
        CloseUndoGroup();
    QsciScintillaBase::inputMethodEvent(event);
}

// Mouse, drag and drop

void TextControl::mousePressEvent(QMouseEvent *event)
{
    m_stepOpen = false;
    m_breakTyping = true;
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
    m_breakTyping = true;
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
    for (; m_wheel >= notch; m_wheel -= notch)
        RunCommand(u"mnuFontSize"_s, 0);
    for (; m_wheel <= -notch; m_wheel += notch)
        RunCommand(u"mnuFontSize"_s, 1);
}

void TextControl::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void TextControl::dragMoveEvent(QDragMoveEvent *event)
{
    // Files go to the window. A link of another kind is text here; Scintilla would announce it as a file.
    if (!event->mimeData()->hasUrls()) {
        QsciScintillaBase::dragMoveEvent(event);
        return;
    }
    if (HoldsFiles(*event->mimeData()) || !event->mimeData()->hasText()) {
        event->ignore();
        return;
    }
    QMimeData text;
    text.setText(event->mimeData()->text());
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
    m_breakTyping = true;
    if (!event->mimeData()->hasUrls()) {
        QsciScintillaBase::dropEvent(event);
        return;
    }
    if (HoldsFiles(*event->mimeData()) || !event->mimeData()->hasText()) {
        event->ignore();
        return;
    }
    QMimeData text;
    text.setText(event->mimeData()->text());
    QDropEvent plain(event->position(), event->possibleActions(), &text, event->buttons(),
                     event->modifiers());
    plain.setDropAction(Qt::CopyAction);
    QsciScintillaBase::dropEvent(&plain);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(plain.isAccepted());
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

QRect TextControl::SelectionOnScreen() const
{
    const long start = Send(SCI_GETSELECTIONSTART);
    const long line = Send(SCI_LINEFROMPOSITION, start);
    const long end = std::min(Send(SCI_GETSELECTIONEND), Send(SCI_GETLINEENDPOSITION, line));
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

// Look

void TextControl::SetTextColours(quint32 text, quint32 background)
{
    m_textColour = text;
    m_backColour = background;
    ApplyLook();
}

void TextControl::SetStyleFormats(const std::array<StyleFormat, StyleClassCount> &formats)
{
    m_formats = formats;
    ApplyLook();
}

void TextControl::ApplyFont(const TextFont &font)
{
    m_font = font;
    m_formatsApplied = m_formatsApplied && !font.bold;
    ApplyLook();
}

void TextControl::ChangeFontSize(int pixels)
{
    const double pixel = 1440.0 / logicalDpiY();
    const double twips = std::clamp(m_font.points * 20 + pixels * pixel, pixel, 20.0 * 1638);
    m_font.points = std::round(twips) / 20;
    ApplyLook();
}

void TextControl::ApplyLook()
{
    const QColor text = ResolveColour(m_textColour, palette());
    const QColor back = ResolveColour(m_backColour, palette());
    const QByteArray family = m_font.family.toUtf8();
    SendBytes(SCI_STYLESETFONT, STYLE_DEFAULT, family.constData());
    Send(SCI_STYLESETSIZEFRACTIONAL, STYLE_DEFAULT,
         std::lround(m_font.points * int(SC_FONT_SIZE_MULTIPLIER)));
    Send(SCI_STYLESETBOLD, STYLE_DEFAULT, m_font.bold);
    Send(SCI_STYLESETITALIC, STYLE_DEFAULT, m_font.italic);
    Send(SCI_STYLESETFORE, STYLE_DEFAULT, ScintillaColour(text));
    Send(SCI_STYLESETBACK, STYLE_DEFAULT, ScintillaColour(back));
    Send(SCI_STYLECLEARALL);
    for (int style = 0; style < StyleClassCount; ++style) {
        if (style == int(StyleClass::Text) && !m_formatsApplied)
            continue;
        const StyleFormat &format = m_formats[size_t(style)];
        const QColor colour = ResolveColour(format.colour, palette());
        Send(SCI_STYLESETFORE, style,
             ScintillaColour(format.isDefault ? ReadableTwin(colour, back) : colour));
        Send(SCI_STYLESETBOLD, style, format.bold || (m_font.bold && !m_formatsApplied));
    }
    Send(SCI_SETCARETFORE, ScintillaColour(ReadableTwin(text, back)));
    Send(SCI_SETSELBACK, 1, ScintillaColour(palette().color(QPalette::Active, QPalette::Highlight)));
    Send(SCI_SETSELFORE, 1, ScintillaColour(palette().color(QPalette::Active, QPalette::HighlightedText)));
    ApplyTabWidth();
}

void TextControl::SetWordWrap(bool wrap)
{
    Send(SCI_SETWRAPMODE, wrap ? SC_WRAP_WORD : SC_WRAP_NONE);
    if (wrap)
        Send(SCI_SETXOFFSET, 0);
}

bool TextControl::WordWrap() const
{
    return Send(SCI_GETWRAPMODE) != SC_WRAP_NONE;
}

void TextControl::SetTabWidth(int dialogUnits)
{
    m_tabUnits = dialogUnits;
    ApplyTabWidth();
}

void TextControl::ApplyTabWidth()
{
    int columns = 8;
    if (m_tabUnits > 0) {
        const double pixels = m_tabUnits * QFontMetricsF(QApplication::font()).averageCharWidth() / 4;
        const double blank = double(std::max<long>(SendBytes(SCI_TEXTWIDTH, STYLE_DEFAULT, " "), 1));
        columns = int(std::clamp(std::round(pixels / blank), 1.0, 1000.0));
    }
    Send(SCI_SETTABWIDTH, columns);
}

void TextControl::HideSelection(bool hidden)
{
    Send(SCI_HIDESELECTION, hidden);
}

} // namespace zelvane
