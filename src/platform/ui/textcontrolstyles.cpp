// SPDX-License-Identifier: GPL-3.0-or-later

// The text control's style bytes.

#include "platform/ui/textcontrol.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <QScopeGuard>

namespace zelvane
{

namespace
{

constexpr qsizetype StyleChunk = 65536;

// Scintilla takes about as long to be told of one run as to take the styles of so many bytes one by one.
constexpr qsizetype BytesAsDearAsARun = 10;

// From so many runs on it pays to keep Scintilla from asking where each of them stands on the screen.
constexpr size_t ManyRuns = 256;

// In characters.
constexpr int StepLength = 2;

/// The class in a style byte.
char ClassOf(char style)
{
    return char(style & 7);
}

/// Whether a character looks the same wherever the text before it ends: a letter that joins others, or a mark
/// over one, does not.
bool StandsAlone(QByteArrayView character)
{
    if (character.size() == 1)
        return uchar(character.front()) < 0x80;
    const QString text = QString::fromUtf8(character);
    if (text.size() != 1 || text.front().isMark() || text.front().category() == QChar::Other_Format)
        return false;
    switch (text.front().script()) {
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
        return true;
    default:
        return false;
    }
}

} // namespace

template <typename Cells> void TextControl::ReadStyles(qsizetype start, qsizetype length, Cells cells) const
{
    QByteArray chunk(2 * std::min(length, StyleChunk) + 2, Qt::Uninitialized);
    for (qsizetype done = 0; done < length;) {
        const qsizetype step = std::min(length - done, StyleChunk);
        SendScintilla(SCI_GETSTYLEDTEXT, long(start + done), long(start + done + step), chunk.data());
        cells(chunk.constData() + 1, step);
        done += step;
    }
}

QByteArray TextControl::StyleBytes(qsizetype start, qsizetype length) const
{
    if (m_plain)
        return QByteArray(length, char(StyleClass::Text));
    QByteArray styles(length, Qt::Uninitialized);
    char *to = styles.data();
    ReadStyles(start, length, [&to](const char *cells, qsizetype count) {
        for (qsizetype i = 0; i < count; ++i)
            *to++ = ClassOf(cells[2 * i]);
    });
    return styles;
}

void TextControl::KeepStyles(qsizetype start, qsizetype length, StyleStack &stack) const
{
    stack.Begin();
    if (m_plain) {
        stack.Add(length, char(StyleClass::Text));
        return;
    }
    try {
        ReadStyles(start, length, [&stack](const char *cells, qsizetype count) {
            for (qsizetype i = 0; i < count;) {
                const qsizetype first = i;
                const char style = ClassOf(cells[2 * first]);
                while (++i < count && ClassOf(cells[2 * i]) == style) {
                }
                stack.Add(i - first, style);
            }
        });
    } catch (...) {
        stack.Drop();
        throw;
    }
}

void TextControl::ApplyStyleBytes(qsizetype start, const QByteArray &styles)
{
    Send(SCI_STARTSTYLING, start);
    SendBytes(SCI_SETSTYLINGEX, styles.size(), styles.constData());
}

void TextControl::ApplyStyles(qsizetype start, qsizetype end, const StyleRuns &runs)
{
    start = std::clamp<qsizetype>(start, 0, Length());
    end = std::clamp<qsizetype>(end, start, Length());
    ++m_colourings;
    if (!m_formatsApplied) {
        m_formatsApplied = true;
        ApplyLook();
    }
    // What changes above the view needs no look at the lines. So the view goes to the end meanwhile,
    // unpainted.
    const bool many = runs.size() > ManyRuns;
    const auto viewBack = qScopeGuard([this, many, top = Send(SCI_GETFIRSTVISIBLELINE)] {
        if (!many)
            return;
        Send(SCI_SETFIRSTVISIBLELINE, top);
        viewport()->setUpdatesEnabled(true);
    });
    if (many) {
        viewport()->setUpdatesEnabled(false);
        Send(SCI_SETFIRSTVISIBLELINE, Send(SCI_VISIBLEFROMDOCLINE, LineCount() - 1));
    }
    const ByteRun range{m_map.ToByte(start), m_map.ToByte(end), StyleClass::Text};
    if (!m_plain)
        PaintRun(range);
    if (!m_plain || !runs.empty()) {
        m_plain = m_plain && runs.empty();
        PaintRuns(range, runs);
        CutLongLines(range.start, range.end);
    }
}

void TextControl::PaintRuns(const ByteRun &range, const StyleRuns &runs)
{
    OffsetWalk walk(m_map);
    std::vector<ByteRun> chain;
    for (const StyleRun &run : runs) {
        const qsizetype first = std::max<qsizetype>(run.start, 0);
        const qsizetype last = std::min<qsizetype>(qsizetype(run.start) + run.length, Length());
        if (first >= last)
            continue;
        const qsizetype firstByte = walk.ToByte(first);
        const ByteRun bytes{firstByte, walk.ToByte(last), run.style};
        const bool inside = bytes.start >= range.start && bytes.end <= range.end;
        const bool close = !chain.empty() && bytes.start >= chain.back().end &&
                           bytes.end - chain.front().start < qsizetype(chain.size() + 1) * BytesAsDearAsARun;
        if (!inside || !close)
            PaintChain(chain);
        if (inside)
            chain.push_back(bytes);
        else
            PaintRun(bytes);
    }
    PaintChain(chain);
}

void TextControl::PaintChain(std::vector<ByteRun> &chain)
{
    if (chain.size() == 1) {
        PaintRun(chain.front());
    } else if (!chain.empty()) {
        const qsizetype start = chain.front().start;
        QByteArray styles(chain.back().end - start, char(StyleClass::Text));
        for (const ByteRun &run : chain)
            std::memset(styles.data() + (run.start - start), int(run.style), size_t(run.end - run.start));
        ApplyStyleBytes(start, styles);
    }
    chain.clear();
}

void TextControl::PaintRun(const ByteRun &run)
{
    if (run.start >= run.end)
        return;
    Send(SCI_STARTSTYLING, run.start);
    Send(SCI_SETSTYLING, run.end - run.start, int(run.style));
}

StyleClass TextControl::StyleAt(qsizetype offset) const
{
    const qsizetype position = m_map.ToByte(offset);
    return position < m_map.Bytes() ? StyleClass(ClassOf(char(Send(SCI_GETSTYLEAT, position))))
                                    : StyleClass::Text;
}

StyleRuns TextControl::RunsOf(qsizetype start, qsizetype length) const
{
    StyleRuns runs;
    if (m_plain)
        return runs;
    qint32 unit = 0;
    StyleRun run;
    const auto end = [&] {
        run.length = unit - run.start;
        if (run.length > 0 && run.style != StyleClass::Text)
            runs.push_back(run);
    };
    const bool ascii = m_map.IsAscii();
    ReadStyles(start, length, [&](const char *cells, qsizetype count) {
        for (qsizetype i = 0; i < count;) {
            // The byte of the text stands before its style. Classes change with characters only.
            const char style = ClassOf(cells[2 * i]);
            if (StyleClass(style) != run.style) {
                end();
                run = {unit, 0, StyleClass(style)};
            }
            const qsizetype first = i;
            if (ascii) {
                while (++i < count && ClassOf(cells[2 * i]) == style) {
                }
                unit += qint32(i - first);
                continue;
            }
            for (; i < count && ClassOf(cells[2 * i]) == style; ++i) {
                const auto byte = uchar(cells[2 * i - 1]);
                unit += int((byte & 0xC0) != 0x80) + int(byte >= 0xF0);
            }
        }
    });
    end();
    return runs;
}

StyleRuns TextControl::RunsBetween(qsizetype start, qsizetype end) const
{
    start = std::clamp<qsizetype>(start, 0, Length());
    end = std::clamp<qsizetype>(end, start, Length());
    const qsizetype first = m_map.ToByte(start);
    return RunsOf(first, m_map.ToByte(end) - first);
}

StyledText TextControl::Styled(qsizetype start, qsizetype end) const
{
    start = std::clamp<qsizetype>(start, 0, Length());
    end = std::clamp<qsizetype>(end, start, Length());
    return {.text = TextRange(start, end),
            .runs = RunsBetween(start, end),
            .formats = CurrentFormats(),
            .font = m_font,
            .tabColumns = int(Send(SCI_GETTABWIDTH))};
}

char TextControl::ClassBefore(qsizetype position) const
{
    return position > 0 ? ClassOf(char(Send(SCI_GETSTYLEAT, position - 1))) : char(StyleClass::Text);
}

// Long lines

void TextControl::CutLongLines(qsizetype start, qsizetype end)
try {
    qsizetype first = Send(SCI_POSITIONFROMLINE, Send(SCI_LINEFROMPOSITION, start));
    while (first <= end && m_map.Bytes() - first >= LongLineBytes) {
        if (const qsizetype feed = Bytes(first, LongLineBytes).lastIndexOf('\n'); feed >= 0) {
            first += feed + 1;
            continue;
        }
        const qsizetype length = Send(SCI_LINELENGTH, Send(SCI_LINEFROMPOSITION, first));
        if (IsCut(first, length))
            Cut(std::max(first, start), std::min(first + length, end));
        else
            Cut(first, first + length);
        first += length;
    }
} catch (const std::bad_alloc &) {
    // Such a line is slow then. The edit that made it stands.
}

bool TextControl::IsCut(qsizetype start, qsizetype length) const
{
    constexpr int looks = 16;
    constexpr qsizetype width = 300;
    static_assert(width <= LongLineBytes);
    for (int look = 0; look < looks; ++look) {
        bool uniform = true;
        ReadStyles(start + (length - width) * look / (looks - 1), width,
                   [&uniform](const char *cells, qsizetype count) {
                       for (qsizetype i = 1; i < count && uniform; ++i)
                           uniform = cells[2 * i] == cells[0];
                   });
        if (uniform)
            return false;
    }
    return true;
}

void TextControl::Cut(qsizetype start, qsizetype end)
{
    QByteArray styles(std::min(end - start, StyleChunk), Qt::Uninitialized);
    const bool set = start > 0 && (Send(SCI_GETSTYLEAT, start - 1) & StepBit);
    char bit = set ? 0 : StepBit;
    int taken = 0;
    for (qsizetype done = start; done < end; done += styles.size()) {
        styles.resize(std::min(end - done, StyleChunk));
        char *style = styles.data();
        ReadStyles(done, styles.size(), [style](const char *cells, qsizetype count) {
            for (qsizetype i = 0; i < count; ++i)
                style[i] = ClassOf(cells[2 * i]);
        });
        const QByteArrayView text = Bytes(done, styles.size());
        for (qsizetype at = 0; at < text.size();) {
            qsizetype next = at + 1;
            while (next < text.size() && (uchar(text[next]) & 0xC0) == 0x80)
                ++next;
            if (taken >= StepLength && StandsAlone(text.sliced(at, next - at))) {
                bit ^= StepBit;
                taken = 0;
            }
            ++taken;
            for (; at < next; ++at)
                style[at] = char(style[at] | bit);
        }
        ApplyStyleBytes(done, styles);
    }
}

} // namespace zelvane
