// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>
#include <vector>

/// The page of a coloured text, character by character. Slow and obvious; nothing but tests uses it.
namespace zelvane::test::oracle
{

/// What the text control tells of one selected character.
struct ShownCharacter {
    QString text; ///< empty for a line end
    bool bold = false;
    quint32 colour = 0; ///< blue, green, red from the high digits to the low
};

inline QString HtmlBody(const std::vector<ShownCharacter> &characters)
{
    QString body;
    bool bold = false;
    qint64 colour = -1;
    for (const ShownCharacter &character : characters) {
        if (character.bold != bold) {
            bold = character.bold;
            if (bold)
                body += QStringLiteral("<b>");
            else
                body += QStringLiteral("</b>");
        }
        if (character.colour != colour) {
            if (colour != -1)
                body += QStringLiteral("</font>");
            colour = character.colour;
            QString digits = QString::number(colour, 16).toUpper();
            while (digits.size() < 6)
                digits = QLatin1Char('0') + digits;
            digits = digits.right(2) + digits.mid(2, 2) + digits.left(2);
            body += QStringLiteral("<font color=#") + digits + QLatin1Char('>');
        }
        if (character.text.isEmpty())
            body += QStringLiteral("<br>\r\n");
        else if (character.text == QLatin1Char('<'))
            body += QStringLiteral("&lt;");
        else if (character.text == QLatin1Char('>'))
            body += QStringLiteral("&gt;");
        else
            body += character.text;
    }
    return body;
}

/// The bytes of a page in the character set that it names.
inline QByteArray InPageCharset(const QString &page)
{
    QByteArray bytes;
    for (const uint character : page.toUcs4()) {
        if (character < 256)
            bytes += char(character);
        else
            bytes += "&#" + QByteArray::number(character) + ';';
    }
    return bytes;
}

} // namespace zelvane::test::oracle
