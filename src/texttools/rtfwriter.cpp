// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/rtfwriter.h"

#include "platform/styledtext.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QChar>
#include <QString>
#include <QStringView>
#include <vector>

namespace zelvane
{

namespace
{

constexpr qsizetype MostBytes = 12; ///< "\u-32768\'3f"
constexpr double TwipsOfAPoint = 20;
constexpr double EmsOfABlank = 0.6; ///< in the fonts that programs are written in

/// A byte by its number.
char *PutByte(char *to, uchar byte)
{
    constexpr char hex[] = "0123456789abcdef";
    to = PutBytes(to, "\\'");
    *to++ = hex[byte >> 4];
    *to++ = hex[byte & 15];
    return to;
}

char *PutText(char *to, QStringView text)
{
    bool afterBlank = true; // nobody knows what stands before
    for (const QChar character : text) {
        const char16_t c = character.unicode();
        if (c == u' ') {
            // Of neighbouring blanks some readers make one, and some make wider ones.
            to = PutBytes(to, afterBlank ? "{} " : " ");
            afterBlank = true;
            continue;
        }
        afterBlank = false;
        if (c == u'\n') {
            to = PutBytes(to, "\\par\r\n");
        } else if (c == u'\t') {
            to = PutBytes(to, "\\tab ");
        } else if (c == u'\\' || c == u'{' || c == u'}') {
            *to++ = '\\';
            *to++ = char(c);
        } else if (c < 0x20 || c == 0x7F) {
            to = PutByte(to, uchar(c));
        } else if (c < 0x80) {
            *to++ = char(c);
        } else {
            // The number is one of 16 bits with a sign; readers that do not know it show the byte behind it.
            to = PutBytes(to, "\\u");
            if (c >= 0x8000)
                *to++ = '-';
            to = PutNumber(to, c >= 0x8000 ? 0x10000u - c : c);
            to = PutByte(to, c >= 0xA0 && c <= 0xFF ? uchar(c) : uchar('?'));
        }
    }
    return to;
}

/// A name in the table of fonts, where a semicolon ends it.
QByteArray Encoded(QString name)
{
    name.remove(u';');
    return Written<MostBytes>(name, PutText);
}

/// The colours of a text in the order of its table, where the first one is number 1; 0 is the reader's own.
class Colours
{
public:
    explicit Colours(const std::array<StyleFormat, StyleClassCount> &formats)
    {
        for (const StyleFormat &format : formats) {
            if (const quint32 colour = ColourOnPaper(format); Number(format) > m_colours.size())
                m_colours.push_back(colour);
        }
    }

    size_t Number(const StyleFormat &format) const
    {
        return size_t(std::find(m_colours.begin(), m_colours.end(), ColourOnPaper(format)) -
                      m_colours.begin()) +
               1;
    }

    QByteArray Table() const
    {
        QByteArray table = "{\\colortbl ;";
        for (const quint32 colour : m_colours)
            table += "\\red" + QByteArray::number(colour & 0xFF) + "\\green" +
                     QByteArray::number((colour >> 8) & 0xFF) + "\\blue" +
                     QByteArray::number((colour >> 16) & 0xFF) + ';';
        return table + "}\r\n";
    }

private:
    std::vector<quint32> m_colours;
};

} // namespace

std::optional<QByteArray> RtfDocument(const StyledText &text, const WriteProgress &goOn)
{
    const Colours colours(text.formats);
    // The words that turn bold and colour on and off where they change.
    const auto words = [&colours](const StyleFormat *from, const StyleFormat &to) {
        QByteArray all;
        if (to.bold != (from && from->bold))
            all += to.bold ? "\\b" : "\\b0";
        if (!from || colours.Number(*from) != colours.Number(to))
            all += "\\cf" + QByteArray::number(qulonglong(colours.Number(to)));
        return all.isEmpty() ? all : all + ' ';
    };
    const double points = text.font.points;
    QByteArray document =
        "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\\deftab" +
        QByteArray::number(qlonglong(std::lround(text.tabColumns * points * EmsOfABlank * TwipsOfAPoint))) +
        "\r\n{\\fonttbl{\\f0\\fnil " + Encoded(text.font.family) + ";}}\r\n" + colours.Table() +
        "\\pard\\plain\\f0\\fs" + QByteArray::number(qlonglong(std::lround(points * 2))) +
        (text.font.italic ? "\\i" : "") + ' ';
    GrowingBytes bytes(document, text.text.size() / 2 * 3);
    if (!WriteStretches<MostBytes>(text, bytes, goOn, Turns(text.formats, words), PutText))
        return std::nullopt;
    document = bytes.Take();
    document += "\\par\r\n}\r\n";
    return document;
}

} // namespace zelvane
