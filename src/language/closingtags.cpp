// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/closingtags.h"

#include "language/findmark.h"

#include <algorithm>
#include <bit>
#include <tuple>

namespace zelvane
{

namespace
{

/// The hash of a name, taken character by character from the last to the first.
class BackwardHash
{
public:
    void Add(QChar c) { m_hash = (std::rotl(m_hash, 5) ^ c.unicode()) * 0xC2B2AE3D27D4EB4Fu; }
    quint64 Value() const { return m_hash; }

private:
    quint64 m_hash = 0x9E3779B97F4A7C15u;
};

} // namespace

ClosingTags::ClosingTags(QStringView text) : m_text(text)
{
    // From bracket to bracket, so that a text without closing tags is passed over fast.
    qsizetype before = -1;
    for (qsizetype bracket; (bracket = text.indexOf(u'>', before + 1)) >= 0; before = bracket) {
        // Most brackets are those of comparisons.
        const qsizetype first = FindMark(text.first(bracket), u'<', u'/', before + 1);
        if (first < 0)
            continue;
        BackwardHash hash;
        for (qsizetype at = bracket - 1; at > first; --at) {
            if (text[at] == u'/' && text[at - 1] == u'<')
                m_tags.push_back({hash.Value(), qint32(at - 1), qint32(bracket)});
            hash.Add(text[at]);
        }
    }
    std::sort(m_tags.begin(), m_tags.end(), [](const Tag &one, const Tag &other) {
        return std::tie(one.hash, one.start) < std::tie(other.hash, other.start);
    });
}

qsizetype ClosingTags::Find(QStringView name, qsizetype from) const
{
    BackwardHash hash;
    for (auto c = name.crbegin(); c != name.crend(); ++c)
        hash.Add(*c);
    auto tag = std::lower_bound(m_tags.begin(), m_tags.end(), from, [&hash](const Tag &other, qsizetype at) {
        return std::tuple(other.hash, qsizetype(other.start)) < std::tuple(hash.Value(), at);
    });
    for (; tag != m_tags.end() && tag->hash == hash.Value(); ++tag) {
        if (tag->Name(m_text) == name)
            return tag->start;
    }
    return -1;
}

} // namespace zelvane
