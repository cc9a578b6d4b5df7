// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/htmlwriter.h"

#include "platform/programinfo.h"
#include "platform/styledtext.h"

#include <array>
#include <QChar>
#include <QStringView>

namespace zelvane
{

namespace
{

constexpr qsizetype MostBytes = 8; ///< "&#65535;"
constexpr int PointsOfOneSize = 6;

char *PutText(char *to, QStringView text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c.unicode() <= 0xFF && c != u'\n' && c != u'<' && c != u'>') {
            *to++ = char(c.unicode());
        } else if (c == u'\n') {
            to = PutBytes(to, "<br>\r\n");
        } else if (c == u'<') {
            to = PutBytes(to, "&lt;");
        } else if (c == u'>') {
            to = PutBytes(to, "&gt;");
        } else {
            char32_t character = c.unicode();
            if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
                character = QChar::surrogateToUcs4(c, text[++at]);
            else if (c.isSurrogate())
                character = QChar::ReplacementCharacter;
            to = PutBytes(to, "&#");
            to = PutNumber(to, character);
            *to++ = ';';
        }
    }
    return to;
}

QByteArray Encoded(const QString &text)
{
    return Written<MostBytes>(text, PutText);
}

/// Turns bold and colour on and off where they change.
class Attributes
{
public:
    explicit Attributes(const std::array<StyleFormat, StyleClassCount> &formats) : m_formats(formats)
    {
        for (size_t one = 0; one < formats.size(); ++one) {
            // The bytes are blue, green, red.
            const QByteArray hex =
                QByteArray::number(ColourOnPaper(formats[one]), 16).toUpper().rightJustified(6, '0');
            m_tags[one] = "<font color=#" + hex.last(2) + hex.sliced(2, 2) + hex.first(2) + '>';
        }
    }

    char *TurnOn(StyleClass style, char *to)
    {
        const StyleFormat &format = m_formats[size_t(style)];
        if (format.bold != m_bold) {
            m_bold = format.bold;
            to = PutBytes(to, m_bold ? "<b>" : "</b>");
        }
        if (const qint64 colour = ColourOnPaper(format); colour != m_colour) {
            if (m_colour != NoColour)
                to = PutBytes(to, "</font>");
            m_colour = colour;
            to = PutBytes(to, m_tags[size_t(style)]);
        }
        return to;
    }

private:
    static constexpr qint64 NoColour = -1;

    std::array<StyleFormat, StyleClassCount> m_formats;
    std::array<QByteArray, StyleClassCount> m_tags; ///< of the colours
    bool m_bold = false;
    qint64 m_colour = NoColour;
};

} // namespace

std::optional<QByteArray> HtmlDocument(const StyledText &text, const QString &title,
                                       const WriteProgress &goOn)
{
    QByteArray page = "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\r\n"
                      "<html>\r\n"
                      "<head>\r\n"
                      "<title>" +
                      Encoded(title) +
                      "</title>\r\n"
                      "<meta name=\"generator\" content=\"" +
                      Encoded(ApplicationTitle()) +
                      "\">\r\n"
                      "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">\r\n"
                      "</head>\r\n"
                      "<body>\r\n"
                      "<font face=" +
                      Encoded(text.font.family) +
                      " size=" + QByteArray::number(int(text.font.points / PointsOfOneSize)) + ">\r\n";
    Attributes attributes(text.formats);
    GrowingBytes bytes(page, text.text.size() / 2 * 3);
    if (!WriteStretches<MostBytes>(
            text, bytes, goOn,
            [&attributes](StyleClass style, char *to) { return attributes.TurnOn(style, to); }, PutText))
        return std::nullopt;
    page = bytes.Take();
    page += "\r\n"
            "</font>\r\n"
            "</body>\r\n"
            "</html>\r\n";
    return page;
}

} // namespace zelvane
