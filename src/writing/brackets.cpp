// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/brackets.h"

#include "language/opcodelist.h"
#include "language/scanner.h"
#include "platform/stylerun.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <QHash>
#include <utility>

namespace zelvane
{

namespace
{

enum class Pair : quint8 { Round, Square, Curly, DoubleCurly };
constexpr std::size_t PairCount = 4;

/// The brackets that are open at a place of the text.
class OpenBrackets
{
public:
    explicit OpenBrackets(std::vector<Bracket> &brackets) : m_brackets(brackets) {}

    void Open(Pair pair, qsizetype start, qint32 length)
    {
        m_open.push_back({pair, qint32(m_brackets.size())});
        ++m_counts[std::size_t(pair)];
        m_brackets.push_back({qint32(start), length, -1});
    }

    void Close(Pair pair, qsizetype start, qint32 length)
    {
        const auto place = qint32(m_brackets.size());
        qint32 partner = -1;
        while (m_counts[std::size_t(pair)] > 0 && partner < 0) {
            const Entry top = m_open.back();
            m_open.pop_back();
            --m_counts[std::size_t(top.pair)];
            if (top.pair == pair)
                partner = top.place;
        }
        if (partner >= 0)
            m_brackets[std::size_t(partner)].partner = place;
        m_brackets.push_back({qint32(start), length, partner});
    }

    void Forget()
    {
        m_open.clear();
        m_counts = {};
    }

private:
    struct Entry {
        Pair pair;
        qint32 place; ///< among the brackets
    };
    std::vector<Bracket> &m_brackets;
    std::vector<Entry> m_open;
    std::array<qint32, PairCount> m_counts{};
};

constexpr qsizetype BlockSize = 16;

/// Whether a bracket is among so many characters. Plain comparisons: the compiler makes them in a few steps.
bool HasBracket(const char16_t *chars)
{
    bool has = false;
    for (qsizetype i = 0; i < BlockSize; ++i) {
        const char16_t c = chars[i];
        has |= (c == u'(') | (c == u')') | (c == u'[') | (c == u']') | (c == u'{') | (c == u'}');
    }
    return has;
}

/// Puts the brackets of pieces of code and of strings.
class BracketReader
{
public:
    BracketReader(QStringView text, const CodeMap &map) : m_text(text), m_map(map), m_open(m_brackets) {}

    /// @param doubled two braces are one bracket
    void Read(qsizetype start, qsizetype end, bool doubled)
    {
        m_open.Forget();
        m_map.ForEach(
            start, end, [&](qsizetype from, qsizetype to) { ReadCode(from, to, doubled); },
            [&](const CodeStretch &stretch) { ReadString(stretch); });
    }

    /// Reads what stands outside of the sections. What stands in a tag belongs to it.
    /// @param next the first tag that does not stand before it; goes on to the one behind it
    void ReadBetween(qsizetype start, qsizetype end, const std::vector<Bracket> &tags, std::size_t &next)
    {
        for (; next < tags.size() && tags[next].start < end; ++next) {
            Read(start, tags[next].start, false);
            m_tagPlaces.push_back(qint32(m_brackets.size()));
            m_brackets.push_back(tags[next]);
            start = tags[next].End();
        }
        Read(start, end, false);
    }

    std::vector<Bracket> Take()
    {
        for (const qint32 place : m_tagPlaces) {
            qint32 &partner = m_brackets[std::size_t(place)].partner;
            if (partner >= 0)
                partner = m_tagPlaces[std::size_t(partner)];
        }
        return std::move(m_brackets);
    }

private:
    void ReadCode(qsizetype from, qsizetype to, bool doubled)
    {
        const char16_t *chars = m_text.utf16();
        qsizetype looked = from;
        for (qsizetype at = from; at < to; ++at) {
            for (; at >= looked && to - at >= BlockSize && !HasBracket(chars + at); at += BlockSize) {
            }
            if (at >= looked)
                looked = at + BlockSize;
            if (at == to)
                break;
            const char16_t c = chars[at];
            switch (c) {
            case u'(':
                m_open.Open(Pair::Round, at, 1);
                break;
            case u')':
                m_open.Close(Pair::Round, at, 1);
                break;
            case u'[':
                m_open.Open(Pair::Square, at, 1);
                break;
            case u']':
                m_open.Close(Pair::Square, at, 1);
                break;
            case u'{':
            case u'}': {
                const bool two = doubled && at + 1 < to && chars[at + 1] == c;
                const Pair pair = two ? Pair::DoubleCurly : Pair::Curly;
                if (c == u'{')
                    m_open.Open(pair, at, two ? 2 : 1);
                else
                    m_open.Close(pair, at, two ? 2 : 1);
                at += two;
                break;
            }
            default:
                break;
            }
        }
    }

    void ReadString(const CodeStretch &stretch)
    {
        const qint32 length = stretch.part == CodePart::Braced ? 2 : 1;
        if (stretch.part != CodePart::Braced && stretch.part != CodePart::Quoted)
            return;
        const auto place = qint32(m_brackets.size());
        const bool isClosed =
            length == 2 || (stretch.end - stretch.start > 1 && m_text[stretch.end - 1] == u'"');
        m_brackets.push_back({stretch.start, length, isClosed ? place + 1 : -1});
        if (isClosed)
            m_brackets.push_back({stretch.end - length, length, place});
    }

    QStringView m_text;
    const CodeMap &m_map;
    std::vector<Bracket> m_brackets;
    std::vector<qint32> m_tagPlaces; ///< where the tags stand among the brackets
    OpenBrackets m_open;
};

bool IsInSection(const CodeMap &map, qsizetype offset)
{
    const auto &sections = map.Sections();
    return std::any_of(sections.begin(), sections.end(), [offset](const ScannedSection &section) {
        return offset >= section.start && offset < section.end;
    });
}

} // namespace

std::vector<Bracket> FindTagPairs(QStringView text, const CodeMap &map, FileKind kind)
{
    std::vector<Bracket> tags;
    if (kind != FileKind::Unified)
        return tags;
    std::vector<std::pair<QStringView, qint32>> open; // by name, with the place among the tags
    QHash<QStringView, int> counts;
    for (const StyleRun &run : ScanRange(text, 0, 0, ScanMode::Tags, OpcodeList()).runs) {
        const QStringView tag = text.sliced(run.start, run.length);
        // One that overlaps another is no whole tag.
        if (!tag.startsWith(u'<') || !tag.endsWith(u'>') || IsInSection(map, run.start))
            continue;
        const bool closes = tag.startsWith(u"</");
        const QStringView name = tag.sliced(closes ? 2 : 1).chopped(1);
        const auto place = qint32(tags.size());
        tags.push_back({run.start, run.length, -1});
        if (!closes) {
            open.emplace_back(name, place);
            ++counts[name];
            continue;
        }
        while (counts.value(name) > 0 && tags.back().partner < 0) {
            const auto [openName, partner] = open.back();
            open.pop_back();
            --counts[openName];
            if (openName != name)
                continue;
            tags.back().partner = partner;
            tags[std::size_t(partner)].partner = place;
        }
    }
    return tags;
}

std::vector<Bracket> FindBrackets(QStringView text, const CodeMap &map, FileKind kind)
{
    const std::vector<Bracket> tags = FindTagPairs(text, map, kind);
    std::size_t nextTag = 0;
    BracketReader reader(text, map);
    qsizetype at = 0;
    for (const ScannedSection &section : map.Sections()) {
        reader.ReadBetween(at, section.start, tags, nextTag);
        reader.Read(section.start, section.end, section.mode == ScanMode::Orchestra);
        at = section.end;
    }
    reader.ReadBetween(at, text.size(), tags, nextTag);
    return reader.Take();
}

std::optional<BracketAtCaret> BracketAt(const std::vector<Bracket> &brackets, qsizetype caret)
{
    // Brackets do not overlap: one of the two that begin last before the caret or at it touches it, or none.
    const auto behind =
        std::upper_bound(brackets.begin(), brackets.end(), caret,
                         [](qsizetype at, const Bracket &bracket) { return at < bracket.start; });
    const Bracket *found = nullptr;
    for (auto one = behind; one != brackets.begin() && behind - one < 2;) {
        --one;
        if (one->End() < caret)
            continue;
        // The one before the caret is better than the one behind it.
        if (!found || one->start < caret)
            found = &*one;
        if (one->start < caret)
            break;
    }
    if (!found)
        return {};
    const auto span = [](const Bracket &bracket) { return TextSpan{bracket.start, bracket.End()}; };
    BracketAtCaret result{span(*found), {}};
    if (found->partner >= 0)
        result.partner = span(brackets[std::size_t(found->partner)]);
    return result;
}

} // namespace zelvane
