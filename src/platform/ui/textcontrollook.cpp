// SPDX-License-Identifier: GPL-3.0-or-later

// The text control's colours, font, word wrap and tab stops.

#include "platform/longlinestyles.h"
#include "platform/ui/scintillacolour.h"
#include "platform/ui/systemcolours.h"
#include "platform/ui/textcontrol.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QApplication>
#include <QEvent>
#include <QFontMetricsF>

namespace zelvane
{

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
    FollowWidth();
}

void TextControl::ChangeFontSize(int pixels)
{
    const double pixel = 1440.0 / logicalDpiY();
    const double twips = std::clamp(m_font.points * 20 + pixels * pixel, pixel, 20.0 * 1638);
    m_font.points = std::round(twips) / 20;
    ApplyLook();
    FollowWidth();
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
    const bool isDefault = TextColourIsDefault();
    Send(SCI_STYLESETFORE, STYLE_DEFAULT, ScintillaColour(isDefault ? ReadableTwin(text, back) : text));
    Send(SCI_STYLESETBACK, STYLE_DEFAULT, ScintillaColour(back));
    Send(SCI_STYLECLEARALL);
    const std::array<StyleFormat, StyleClassCount> formats = CurrentFormats();
    for (int style = 0; style < StyleClassCount; ++style) {
        const StyleFormat &format = formats[size_t(style)];
        const QColor colour = ResolveColour(format.colour, palette());
        for (const int number : {style, style | StepBit}) {
            Send(SCI_STYLESETFORE, number,
                 ScintillaColour(format.isDefault ? ReadableTwin(colour, back) : colour));
            Send(SCI_STYLESETBOLD, number, format.bold);
        }
    }
    Send(SCI_SETCARETFORE, ScintillaColour(ReadableTwin(text, back)));
    Send(SCI_SETSELBACK, 1, ScintillaColour(palette().color(QPalette::Active, QPalette::Highlight)));
    Send(SCI_SETSELFORE, 1, ScintillaColour(palette().color(QPalette::Active, QPalette::HighlightedText)));
    ApplyTabWidth();
    Q_EMIT lookChanged();
}

std::array<StyleFormat, StyleClassCount> TextControl::CurrentFormats() const
{
    std::array<StyleFormat, StyleClassCount> formats = m_formats;
    if (!m_formatsApplied) {
        for (StyleFormat &format : formats)
            format.bold = format.bold || m_font.bold;
        formats[size_t(StyleClass::Text)] = {m_textColour, m_font.bold, TextColourIsDefault()};
    }
    return formats;
}

bool TextControl::TextColourIsDefault() const
{
    // Class Text has the colour of fresh text for its own, so it tells whether that is the default one.
    const StyleFormat &own = m_formats[size_t(StyleClass::Text)];
    return own.isDefault && own.colour == m_textColour;
}

void TextControl::SetWordWrap(bool wrap)
{
    Send(SCI_SETWRAPMODE, wrap ? SC_WRAP_WHITESPACE : SC_WRAP_NONE);
    if (wrap)
        Send(SCI_SETXOFFSET, 0);
    else
        FollowWidth();
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
    constexpr int ownColumns = 8;
    constexpr double mostColumns = 1000; // wider than any window
    int columns = ownColumns;
    if (m_tabUnits > 0) {
        const double pixels = m_tabUnits * QFontMetricsF(QApplication::font()).averageCharWidth() / 4;
        const double blank = double(std::max<long>(SendBytes(SCI_TEXTWIDTH, STYLE_DEFAULT, " "), 1));
        columns = int(std::clamp(std::round(pixels / blank), 1.0, mostColumns));
    }
    Send(SCI_SETTABWIDTH, columns);
}

// The scroll range

void TextControl::MayNarrow(qsizetype start, qsizetype end)
{
    constexpr long lookedAt = 64;
    constexpr long close = 16; // Scintilla makes the range some pixels wider than the line
    const long range = Send(SCI_GETSCROLLWIDTH);
    if (m_mayBeNarrower || WordWrap() || range <= viewport()->width())
        return;
    const long first = Send(SCI_LINEFROMPOSITION, start);
    const long last = Send(SCI_LINEFROMPOSITION, end);
    m_mayBeNarrower = last - first >= lookedAt;
    for (long line = first; line <= last && !m_mayBeNarrower; ++line)
        m_mayBeNarrower = Send(SCI_LINELENGTH, line) >= LongLineBytes || LineWidth(line) + close >= range;
}

void TextControl::FollowEdit()
{
    if (!m_mayBeNarrower)
        return;
    // While the widest line is made shorter key by key, one look at the whole text has to do for many.
    const long here = LineWidth(Send(SCI_LINEFROMPOSITION, Send(SCI_GETCURRENTPOS)));
    if (here < Send(SCI_GETSCROLLWIDTH) / 10 * 9)
        FollowWidth();
}

void TextControl::FollowWidth()
{
    m_mayBeNarrower = false;
    if (WordWrap() || Send(SCI_GETSCROLLWIDTH) <= viewport()->width())
        return;
    const long top = Send(SCI_GETFIRSTVISIBLELINE);
    const long behind = std::min<long>(top + Send(SCI_LINESONSCREEN) + 1, LineCount());
    long widest = LineWidth(LongestLine());
    for (long line = top; line < behind; ++line)
        widest = std::max(widest, LineWidth(line));
    Send(SCI_SETSCROLLWIDTH, std::max<long>(widest, 1));
}

long TextControl::LineWidth(qsizetype line) const
{
    const long end = Send(SCI_GETLINEENDPOSITION, line);
    return Send(SCI_POINTXFROMPOSITION, 0, end) -
           Send(SCI_POINTXFROMPOSITION, 0, Send(SCI_POSITIONFROMLINE, line));
}

qsizetype TextControl::LongestLine() const
{
    // Where no line end stands in one byte more than the longest line has, a longer one begins.
    qsizetype longest = 0;
    qsizetype most = 0;
    for (qsizetype start = 0; m_map.Bytes() - start > most;) {
        if (const qsizetype feed = Bytes(start, most + 1).lastIndexOf('\n'); feed >= 0) {
            start += feed + 1;
            continue;
        }
        longest = Send(SCI_LINEFROMPOSITION, start);
        most = Send(SCI_LINELENGTH, longest);
        start += most;
    }
    return longest;
}

} // namespace zelvane
