// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/xmltext.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <pugixml.hpp>
#include <QByteArray>
#include <QChar>
#include <QString>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int MostTags = 1'000'000;
constexpr int DeepestElement = 32;
/// At the ends of an attribute, and inside it, white space stays what it is.
constexpr unsigned int ParseOptions = pugi::parse_cdata | pugi::parse_comments | pugi::parse_pi |
                                      pugi::parse_declaration | pugi::parse_doctype | pugi::parse_escapes |
                                      pugi::parse_fragment;

int DigitOf(char byte)
{
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    if (byte >= 'a' && byte <= 'f')
        return byte - 'a' + 10;
    return byte >= 'A' && byte <= 'F' ? byte - 'A' + 10 : -1;
}

bool HasTooManyTags(const QByteArray &bytes)
{
    qsizetype at = -1;
    for (int tags = 0; tags <= MostTags; ++tags) {
        at = bytes.indexOf('<', at + 1);
        if (at < 0)
            return false;
    }
    return true;
}

/// Whether references (`&#0;`, `&#xD800;`) name what is no character: a value would end there, or become
/// another one.
bool NamesNoCharacters(const QByteArray &bytes)
{
    constexpr quint32 beyond = QChar::LastValidCodePoint + 1;
    for (qsizetype at = bytes.indexOf("&#"); at >= 0; at = bytes.indexOf("&#", at)) {
        at += 2;
        const bool isHex = at < bytes.size() && bytes[at] == 'x';
        at += isHex;
        const int base = isHex ? 16 : 10;
        quint32 code = 0;
        const qsizetype first = at;
        for (; at < bytes.size(); ++at) {
            const int digit = DigitOf(bytes[at]);
            if (digit < 0 || digit >= base)
                break;
            code = std::min(beyond, code * quint32(base) + quint32(digit));
        }
        // Without digits, or without its end, it is text.
        const bool isReference = at > first && at < bytes.size() && bytes[at] == ';';
        if (isReference && (code == 0 || code == beyond || QChar::isSurrogate(code)))
            return true;
    }
    return false;
}

bool IsTooDeep(const pugi::xml_document &document)
{
    int depth = 0;
    pugi::xml_node node = document;
    for (;;) {
        if (const pugi::xml_node child = node.first_child()) {
            if (++depth > DeepestElement)
                return true;
            node = child;
            continue;
        }
        while (depth > 0 && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (depth == 0)
            return false;
        node = node.next_sibling();
    }
}

/// The one element of a document, null when text stands beside it, or another element.
pugi::xml_node OnlyElement(const pugi::xml_document &document)
{
    pugi::xml_node root;
    for (const pugi::xml_node &node : document.children()) {
        const pugi::xml_node_type type = node.type();
        if (type == pugi::node_pcdata || type == pugi::node_cdata || (type == pugi::node_element && root))
            return {};
        if (type == pugi::node_element)
            root = node;
    }
    return root;
}

class BytesWriter : public pugi::xml_writer
{
public:
    void write(const void *data, size_t size) override
    {
        bytes.append(static_cast<const char *>(data), qsizetype(size));
    }

    QByteArray bytes;
};

} // namespace

XmlText::XmlText(const QString &text)
{
    // Three bytes at most for each unit, so that what is far too long is not even copied.
    if (text.isEmpty() || text.size() > LongestXml)
        return;
    m_bytes = text.toUtf8();
    if (m_bytes.size() > LongestXml || m_bytes.contains('\0') || HasTooManyTags(m_bytes) ||
        NamesNoCharacters(m_bytes))
        return;
    if (m_document.load_buffer_inplace(m_bytes.data(), std::size_t(m_bytes.size()), ParseOptions,
                                       pugi::encoding_utf8) &&
        !IsTooDeep(m_document))
        m_root = OnlyElement(m_document);
    if (!m_root)
        m_document.reset();
}

pugi::xml_node XmlText::Find(const char *name) const
{
    for (pugi::xml_node node = m_root; node; node = NextNode(node, m_document)) {
        if (node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0)
            return node;
    }
    return {};
}

pugi::xml_node NextNode(pugi::xml_node node, const pugi::xml_node &top)
{
    if (const pugi::xml_node child = node.first_child())
        return child;
    while (node != top && !node.next_sibling())
        node = node.parent();
    return node == top ? pugi::xml_node() : node.next_sibling();
}

QString NodeXml(const pugi::xml_node &node)
{
    BytesWriter writer;
    node.print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    QString xml = QString::fromUtf8(writer.bytes);
    if (xml.contains(u'\r') || xml.contains(u'\n'))
        xml.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(u'\n', u"\r\n"_s);
    return xml;
}

} // namespace zelvane
