// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/htmlwriter.h"

#include "platform/programinfo.h"
#include "platform/styledtext.h"

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

/// The tags that turn bold and colour on and off where they change.
QByteArray Tags(const StyleFormat *from, const StyleFormat &to)
{
    QByteArray tags;
    if (to.bold != (from && from->bold))
        tags += to.bold ? "<b>" : "</b>";
    const quint32 colour = ColourOnPaper(to);
    if (from && ColourOnPaper(*from) == colour)
        return tags;
    if (from)
        tags += "</font>";
    // The bytes are blue, green, red.
    const QByteArray hex = QByteArray::number(colour, 16).toUpper().rightJustified(6, '0');
    return tags + "<font color=#" + hex.last(2) + hex.sliced(2, 2) + hex.first(2) + '>';
}

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
    GrowingBytes bytes(page, text.text.size() / 2 * 3);
    if (!WriteStretches<MostBytes>(text, bytes, goOn, Turns(text.formats, Tags), PutText))
        return std::nullopt;
    page = bytes.Take();
    page += "\r\n"
            "</font>\r\n"
            "</body>\r\n"
            "</html>\r\n";
    return page;
}

} // namespace zelvane
