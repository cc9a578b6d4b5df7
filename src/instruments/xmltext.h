// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pugixml.hpp>
#include <QByteArray>
#include <QString>

namespace zelvane
{

/// The longest text that is taken for instrument data, in bytes as UTF-8: six times what two thousand
/// instruments of twenty p-fields take.
inline constexpr qsizetype LongestXml = 32 * 1024 * 1024;

/// A text read as XML. White space between elements is no node, and no value is changed beside its entities,
/// of which only those of XML itself are known. What is not one element, with comments and the like around
/// it, does not count as parsed; neither does a text with NUL characters or with references to what is no
/// character, or one far beyond what instruments take: longer than LongestXml, of more than a million tags,
/// nested deeper than 32.
class XmlText
{
public:
    explicit XmlText(const QString &text);

    bool IsParsed() const { return bool(m_root); }
    /// The element that holds all others; null when the text is not parsed.
    pugi::xml_node Root() const { return m_root; }
    /// The first element of that name, from the root on in the order of the text; null when there is none.
    pugi::xml_node Find(const char *name) const;
    /// The whole, without nodes when the text is not parsed.
    pugi::xml_node Document() const { return m_document; }

private:
    QByteArray m_bytes; ///< the nodes refer to them
    pugi::xml_document m_document;
    pugi::xml_node m_root;
};

/// The node behind another in the order of the text, among those below `top`; null behind the last one.
pugi::xml_node NextNode(pugi::xml_node node, const pugi::xml_node &top);

/// A node as XML, line ends as CR LF.
QString NodeXml(const pugi::xml_node &node);

} // namespace zelvane
