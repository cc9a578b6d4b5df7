// SPDX-License-Identifier: GPL-3.0-or-later

// The text control's style bytes.

#include "platform/ui/textcontrol.h"

#include <algorithm>
#include <cstring>

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
            *to++ = cells[2 * i];
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
                while (++i < count && cells[2 * i] == cells[2 * first]) {
                }
                stack.Add(i - first, cells[2 * first]);
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
    if (!m_formatsApplied) {
        m_formatsApplied = true;
        ApplyLook();
    }
    // What changes above the view needs no look at the lines. So the view goes to the end meanwhile,
    // unpainted.
    const bool many = runs.size() > ManyRuns;
    const long top = Send(SCI_GETFIRSTVISIBLELINE);
    if (many) {
        viewport()->setUpdatesEnabled(false);
        Send(SCI_SETFIRSTVISIBLELINE, Send(SCI_VISIBLEFROMDOCLINE, LineCount() - 1));
    }
    const ByteRun range{m_map.ToByte(start), m_map.ToByte(end), StyleClass::Text};
    if (!m_plain)
        PaintRun(range);
    m_plain = m_plain && runs.empty();
    PaintRuns(range, runs);
    if (many) {
        Send(SCI_SETFIRSTVISIBLELINE, top);
        viewport()->setUpdatesEnabled(true);
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
    return position < m_map.Bytes() ? StyleClass(Send(SCI_GETSTYLEAT, position)) : StyleClass::Text;
}

} // namespace zelvane
