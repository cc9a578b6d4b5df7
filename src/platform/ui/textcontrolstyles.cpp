// SPDX-License-Identifier: GPL-3.0-or-later

// The text control's style bytes.

#include "platform/longlinestyles.h"
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
        BreakUpLongLines(range.start, range.end);
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

void TextControl::BreakUpLongLines(qsizetype start, qsizetype end)
try {
    qsizetype first = Send(SCI_POSITIONFROMLINE, Send(SCI_LINEFROMPOSITION, start));
    while (first <= end && m_map.Bytes() - first >= LongLineBytes) {
        if (const qsizetype feed = Bytes(first, LongLineBytes).lastIndexOf('\n'); feed >= 0) {
            first += feed + 1;
            continue;
        }
        const qsizetype length = Send(SCI_LINELENGTH, Send(SCI_LINEFROMPOSITION, first));
        if (IsAlternating(first, length))
            AlternateStyles(std::max(first, start), std::min(first + length, end));
        else
            AlternateStyles(first, first + length);
        first += length;
    }
} catch (const std::bad_alloc &) {
    // Such a line is slow then. The edit that made it stands.
}

bool TextControl::IsAlternating(qsizetype start, qsizetype length) const
{
    // A step is a few characters, so a look meets many of them. What lies between the looks is not known:
    // where nothing alternates there, the line is slow, and nothing else.
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

void TextControl::AlternateStyles(qsizetype start, qsizetype end)
{
    QByteArray styles(std::min(end - start, StyleChunk), Qt::Uninitialized);
    StepAlternation alternation(start > 0 ? char(Send(SCI_GETSTYLEAT, start - 1)) : char());
    for (qsizetype done = start; done < end; done += styles.size()) {
        styles.resize(std::min(end - done, StyleChunk));
        char *style = styles.data();
        ReadStyles(done, styles.size(), [style](const char *cells, qsizetype count) {
            for (qsizetype i = 0; i < count; ++i)
                style[i] = cells[2 * i];
        });
        alternation.Apply(Bytes(done, styles.size()), style);
        ApplyStyleBytes(done, styles);
    }
}

} // namespace zelvane
