// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/numbers.h"
#include "platform/runtimeerror.h"

#include <cstdio>
#include <optional>
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QtGlobal>

// The store's loops as they are told, a character at a time. Positions count from 1.

namespace zelvane::oracle
{

/// The character at a position.
inline QChar CharAt(const QString &text, qsizetype position)
{
    return position >= 1 && position <= text.size() ? text.at(position - 1) : QChar();
}

/// The first place of a text from a position on, 0 for none.
inline qsizetype InText(qsizetype from, const QString &text, const QString &what)
{
    for (qsizetype at = from; at + what.size() - 1 <= text.size(); ++at) {
        if (text.mid(at - 1, what.size()) == what)
            return at;
    }
    return 0;
}

inline qint32 FindInstrStatement(const QString &text, qint32 number)
{
    const auto blank = [&](qsizetype at) {
        return CharAt(text, at) == QChar(u' ') || CharAt(text, at) == QChar(u'\t');
    };
    const auto digit = [&](qsizetype at) {
        return CharAt(text, at) >= QChar(u'0') && CharAt(text, at) <= QChar(u'9');
    };
    qsizetype from = 1;
    for (;;) {
        const qsizetype word = InText(from, text, QStringLiteral("instr"));
        if (word == 0)
            return -1;
        qsizetype cursor = word + 5;
        while (cursor < text.size() && blank(cursor))
            cursor = cursor + 1;
        const qsizetype start = cursor;
        cursor = start + 1;
        while (cursor < text.size() && digit(cursor))
            cursor = cursor + 1;
        const double read = Val(text.mid(start - 1, cursor - start));
        from = cursor;
        if (RoundHalfEven(read) != double(number))
            continue;
        while (cursor < text.size() && CharAt(text, cursor) != QChar(u'\n'))
            cursor = cursor + 1;
        if (cursor >= text.size())
            return -1;
        return qint32(cursor);
    }
}

/// The text behind a SetTagText; no value when a tag is missing.
inline std::optional<QString> SetTagText(const QString &all, const QString &tag, const QString &text,
                                         qsizetype start)
{
    const QString opening = QStringLiteral("<%1>").arg(tag);
    const qsizetype open = InText(start, all, opening);
    if (open == 0)
        return std::nullopt;
    const qsizetype first = open + opening.size();
    const qsizetype close = InText(first, all, QStringLiteral("</%1>").arg(tag));
    if (close == 0)
        return std::nullopt;
    return all.left(first - 1) + text + all.mid(close - 1);
}

/// The number format: 15 significant digits, no zero before the point.
inline QString NumberText(double number)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15G", number == 0 ? 0.0 : number);
    QString text = QString::fromLatin1(buffer);
    if (text.startsWith(QStringLiteral("0.")))
        text = text.mid(1);
    if (text.startsWith(QStringLiteral("-0.")))
        text = QStringLiteral("-") + text.mid(2);
    return text;
}

/// A node as the pretty printer's table speaks of it.
struct Node {
    enum Type { Element, Text, Cdata, Comment, Instruction };
    Type type = Element;
    QString text = {}; ///< the name of an element or instruction, the contents of the others
    QList<QPair<QString, QString>> attributes = {}; ///< with decoded values
    QList<Node> children = {};
};

inline QString Replaced(QString text, const QString &what, const QString &by)
{
    return text.replace(what, by);
}

/// A text with the characters that XML forbids as entities.
inline QString Encoded(const QString &text)
{
    QString encoded = Replaced(text, QStringLiteral("&"), QStringLiteral("&amp;"));
    encoded = Replaced(encoded, QStringLiteral("<"), QStringLiteral("&lt;"));
    return Replaced(encoded, QStringLiteral(">"), QStringLiteral("&gt;"));
}

/// The node's `xml` text; not of elements.
inline QString Xml(const Node &node)
{
    switch (node.type) {
    case Node::Text:
        return Encoded(node.text);
    case Node::Cdata:
        return QStringLiteral("<![CDATA[") + node.text + QStringLiteral("]]>");
    case Node::Comment:
        return QStringLiteral("<!--") + node.text + QStringLiteral("-->");
    default:
        return QStringLiteral("<?") + node.text + QStringLiteral("?>");
    }
}

inline QString Format(const Node &node, const Node *parent, int level)
{
    const QString lineEnd = QStringLiteral("\r\n");
    const QString tabs(level, QChar(u'\t'));
    const QString xml =
        node.type == Node::Element ? QString() : Replaced(Xml(node), QStringLiteral("\n"), lineEnd);
    if (node.type == Node::Text) {
        QString text =
            Replaced(Replaced(xml, lineEnd, QStringLiteral(" ")), QStringLiteral("\t"), QStringLiteral(" "));
        while (text.startsWith(QChar(u' ')))
            text = text.mid(1);
        while (text.endsWith(QChar(u' ')))
            text.chop(1);
        return parent->children.size() >= 2 ? tabs + text + lineEnd : text;
    }
    if (node.type == Node::Cdata || node.type == Node::Comment)
        return xml.contains(QChar(u'\r')) ? xml + lineEnd : tabs + xml + lineEnd;
    if (node.type == Node::Instruction)
        return tabs + xml + lineEnd;

    QString out = QStringLiteral("<") + node.text;
    for (const auto &[name, value] : node.attributes) {
        const QString quote = value.contains(QChar(u'"')) ? QStringLiteral("'") : QStringLiteral("\"");
        out += QStringLiteral(" ") + name + QStringLiteral("=") + quote + value + quote;
    }
    if (node.children.isEmpty())
        return out + QStringLiteral("/>") + lineEnd;
    out += QStringLiteral(">");
    if (node.children.size() == 1 && node.children.front().type == Node::Text) {
        out += Format(node.children.front(), &node, level);
    } else {
        out += lineEnd;
        for (const Node &child : node.children)
            out += Format(child, &node, level + 1);
    }
    return out + QStringLiteral("</") + node.text + QStringLiteral(">") + lineEnd;
}

/// A text that parses to the node.
inline QString Source(const Node &node)
{
    if (node.type != Node::Element)
        return Xml(node);
    QString out = QStringLiteral("<") + node.text;
    for (const auto &[name, value] : node.attributes)
        out += QStringLiteral("\n ") + name + QStringLiteral(" = \"") +
               Replaced(Encoded(value), QStringLiteral("\""), QStringLiteral("&quot;")) + QChar(u'"');
    out += QStringLiteral(">");
    for (const Node &child : node.children)
        out += Source(child);
    return out + QStringLiteral("</") + node.text + QStringLiteral(">");
}

} // namespace zelvane::oracle
