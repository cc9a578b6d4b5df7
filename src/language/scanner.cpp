// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/scanner.h"

#include "language/charblocks.h"
#include "language/opcodeset.h"

#include <unordered_map>

namespace zelvane
{

namespace
{

/// Collects runs in a buffer of its own, so that one may be put and dropped again without a branch.
class RunCollector
{
public:
    explicit RunCollector(StyleRuns &runs) : m_runs(runs) {}
    RunCollector(const RunCollector &) = delete;
    RunCollector &operator=(const RunCollector &) = delete;

    /// Makes room for the runs of one block.
    void Reserve()
    {
        if (m_next > m_buffer + Size - CharBlockSize) [[unlikely]]
            Flush();
    }
    /// Where the next runs go; what lies before the pointer given to Keep is kept.
    StyleRun *Next() { return m_next; }
    void Keep(StyleRun *next) { m_next = next; }
    void Put(qsizetype start, qsizetype end, StyleClass style)
    {
        *m_next++ = {qint32(start), qint32(end - start), style};
    }

    /// Hands over what the buffer holds: at the end too, since a destructor may not run out of memory.
    void Flush()
    {
        m_runs.insert(m_runs.end(), m_buffer, m_next);
        m_next = m_buffer;
    }

private:
    static constexpr std::size_t Size = 1024;

    StyleRuns &m_runs;
    StyleRun m_buffer[Size];
    StyleRun *m_next = m_buffer;
};

/// The orchestra scan, and without words the score scan. A token begins only before the range's last
/// character; only a string and a word end with the range.
template <bool Words> class CodeScanner
{
public:
    CodeScanner(QStringView text, qsizetype end, const OpcodeSet &opcodes, ScanResult &result)
        : m_text(text),
          m_chars(text.utf16()),
          m_textEnd(m_chars + text.size()),
          m_end(end),
          m_stop(end - 1),
          m_opcodes(opcodes),
          m_result(result),
          m_runs(result.runs)
    {
    }

    void Scan(qsizetype start)
    {
        m_result.runs.reserve(std::size_t(m_end - start) / 24);
        for (qsizetype base = start; base < m_stop;) {
            m_runs.Reserve();
            CharBlock block = Classify<Words>(m_chars + base, m_textEnd);
            if (m_stop - base < CharBlockSize) {
                const quint64 behind = ~quint64(0) << (m_stop - base);
                block.letters &= ~behind;
                block.specials &= ~behind;
                block.separators |= behind; // a word ends there at the latest
            }
            if constexpr (Words)
                base = ScanBlock(block, base);
            else
                base = GoOn(block.specials, base, base + CharBlockSize);
        }
        m_runs.Flush();
    }

private:
    /// Where the scan goes on behind the first special character, which may begin a token; at `next` without
    /// one.
    qsizetype GoOn(quint64 specials, qsizetype base, qsizetype next)
    {
        return specials ? ScanSpecial(base + std::countr_zero(specials)) : next;
    }

    /// Puts the words of the block up to the first special character that is not in one, and the token that
    /// begins there. @return where the scan goes on: behind that token, else at a word that the block has
    /// cut, else behind it
    qsizetype ScanBlock(const CharBlock &block, qsizetype base)
    {
        // In a stretch without separators a word begins at the first letter and ends with the stretch. Adding
        // the letters to the stretches carries from that letter through to the separator behind.
        const quint64 stretches = ~block.separators;
        const quint64 sum = stretches + block.letters;
        const quint64 carried = sum ^ stretches ^ block.letters;
        const quint64 specials = block.specials & ~carried;
        const quint64 before = (specials & (0 - specials)) - 1; // all bits when there is none
        quint64 starts = block.letters & ~sum & before;
        const quint64 ends = block.separators & sum & before;

        const bool textGoesOn = m_textEnd - (m_chars + base) >= CharBlockSize + OpcodeSet::KeySize;
        if (block.isAscii && textGoesOn && m_opcodes.AllKeyed()) [[likely]]
            starts = PutWords(starts, ends, base, [this](qsizetype start, qsizetype end) {
                if (end - start > OpcodeSet::KeyLength) [[unlikely]]
                    return IsOpcode(start, end);
                return m_opcodes.ContainsKey(OpcodeSet::LoadKey(m_chars + start, end - start));
            });
        else
            starts = PutWords(starts, ends, base,
                              [this](qsizetype start, qsizetype end) { return IsOpcode(start, end); });

        const qsizetype cutWord = base + std::countr_zero(starts);
        if (cutWord == base) [[unlikely]]
            return ScanLongWord(base);
        return GoOn(specials, base, cutWord);
    }

    /// Puts those of the words that are kept. A bit of `starts` is a word's first character, one of `ends`
    /// the one behind it. @return what is left of `starts`: a word without an end
    template <typename IsKept> quint64 PutWords(quint64 starts, quint64 ends, qsizetype base, IsKept isKept)
    {
        StyleRun *run = m_runs.Next();
        for (; ends; starts &= starts - 1, ends &= ends - 1) {
            const int start = std::countr_zero(starts);
            const int end = std::countr_zero(ends);
            *run = {qint32(base + start), end - start, StyleClass::Opcode};
            run += isKept(base + start, base + end);
        }
        m_runs.Keep(run);
        return starts;
    }

    /// A word of at least a block.
    qsizetype ScanLongWord(qsizetype start)
    {
        qsizetype end = start + CharBlockSize;
        while (end < m_stop && m_chars[end] >= 33)
            ++end;
        if (IsOpcode(start, end))
            m_runs.Put(start, end, StyleClass::Opcode);
        return end;
    }

    bool IsOpcode(qsizetype start, qsizetype end) const
    {
        return end - start <= m_opcodes.Longest() &&
               m_opcodes.Contains(QStringView(m_chars + start, end - start));
    }

    /// Puts the token that begins with the special character at `at`, if one does. @return where the scan
    /// goes on
    qsizetype ScanSpecial(qsizetype at)
    {
        switch (m_chars[at]) {
        case u';': {
            const char16_t *feed = Find(m_chars + at, m_textEnd, u'\n');
            if (feed == m_textEnd)
                return m_end;
            const qsizetype end = feed + 1 - m_chars;
            m_runs.Put(at, end, StyleClass::Comment);
            return end;
        }
        case u'/':
            return m_chars[at + 1] == u'*' ? ScanBlockComment(at) : at + 1;
        case u'#':
            for (const QStringView word : {QStringView(u"define"), QStringView(u"include")}) {
                const qsizetype end = at + 1 + word.size();
                if (end < m_text.size() && m_text.sliced(at + 1, word.size()) == word &&
                    (m_text[end] == u' ' || m_text[end] == u'\t')) {
                    m_runs.Put(at, end, StyleClass::Macro);
                    return end + 1;
                }
            }
            return at + 1;
        case u'$': {
            qsizetype end = at + 1;
            while (end < m_text.size() && IsAnsiLetterOrDigit(m_chars[end]))
                ++end;
            if (end == m_text.size()) {
                m_result.ranOffText = true;
                return m_end;
            }
            m_runs.Put(at, end, StyleClass::Macro);
            return end + 1; // the character that ended the name is not looked at
        }
        default: { // a double quote
            const qsizetype quote = Find(m_chars + at + 1, m_chars + m_end, u'"') - m_chars;
            const qsizetype end = std::min(quote + 1, m_end);
            m_runs.Put(at, end, StyleClass::Literal);
            return end;
        }
        }
    }

    qsizetype ScanBlockComment(qsizetype at)
    {
        // The closing mark is looked for from the opening slash on: "/*/" is a whole comment.
        const char16_t *slash = m_chars + at + 2;
        while ((slash = Find(slash, m_textEnd, u'/')) != m_textEnd && slash[-1] != u'*')
            ++slash;
        if (slash == m_textEnd)
            return m_end;
        // The scan goes on at the closing slash: with a star behind it, it opens the next comment.
        const qsizetype end = slash + 1 - m_chars;
        m_runs.Put(std::max(at, m_commentEnd), end, StyleClass::Comment);
        m_commentEnd = end;
        return end - 1;
    }

    QStringView m_text;
    const char16_t *m_chars;
    const char16_t *m_textEnd;
    qsizetype m_end;
    qsizetype m_stop; ///< no token begins here or behind
    qsizetype m_commentEnd = 0;
    const OpcodeSet &m_opcodes;
    ScanResult &m_result;
    RunCollector m_runs;
};

/// A tag with the hash of its name. An opening tag ends at `bracket`, its greater-than sign or the range's
/// last character.
struct Tag {
    qint32 start = 0;
    qint32 nameStart = 0;
    qint32 bracket = 0;
    qint32 partner =
        -1; ///< of an opening tag: the nearest closing tag behind it whose name has the same hash
    quint64 hash = 0;
    bool coloured = false;

    qint32 NameLength() const { return bracket - nameStart; }
    QStringView Name(QStringView text) const { return text.sliced(nameStart, NameLength()); }
};

using Tags = std::vector<Tag>;

/// Finds less-than signs and the first greater-than sign behind each, in one pass over the text.
class TagFinder
{
public:
    TagFinder(QStringView text, qsizetype from)
        : m_begin(text.utf16()), m_end(m_begin + text.size()), m_next(m_begin + from), m_bracket(m_next)
    {
    }

    /// The next less-than sign that has a character behind it, -1 when there is none.
    qsizetype NextSign()
    {
        const char16_t *sign = Find(m_next, m_end, u'<');
        m_next = sign + (sign != m_end);
        return m_next == m_end ? -1 : sign - m_begin;
    }
    /// The first greater-than sign from a place on; places must not fall. The text's length when there is
    /// none.
    qsizetype BracketFrom(qsizetype at)
    {
        if (m_bracket != m_end && (m_bracket < m_begin + at || *m_bracket != u'>'))
            m_bracket = Find(m_begin + at, m_end, u'>');
        return m_bracket - m_begin;
    }

private:
    const char16_t *m_begin;
    const char16_t *m_end;
    const char16_t *m_next;
    const char16_t *m_bracket;
};

qint32 LongestName(const Tags &tags)
{
    qint32 longest = -1;
    for (const Tag &tag : tags)
        longest = std::max(longest, tag.NameLength());
    return longest;
}

/// Every closing tag of the text from `start` on.
Tags FindClosingTags(QStringView text, qsizetype start)
{
    Tags tags;
    TagFinder finder(text, start);
    for (qsizetype sign; (sign = finder.NextSign()) >= 0;) {
        if (text[sign + 1] != u'/')
            continue;
        const qsizetype bracket = finder.BracketFrom(sign + 2);
        if (bracket == text.size())
            break;
        tags.push_back({qint32(sign), qint32(sign + 2), qint32(bracket)});
    }
    return tags;
}

/// The opening tags of the range whose names are not longer than `longest`.
Tags FindOpeningTags(QStringView text, qsizetype start, qsizetype end, qint32 longest)
{
    Tags tags;
    TagFinder finder(text.first(end), start);
    for (qsizetype sign; (sign = finder.NextSign()) >= 0;) {
        if (text[sign + 1] == u'/')
            continue;
        const qsizetype bracket = std::min(finder.BracketFrom(sign + 1), end - 1);
        if (bracket - (sign + 1) <= longest)
            tags.push_back({qint32(sign), qint32(sign + 1), qint32(bracket)});
    }
    return tags;
}

/// Hashes the names that are not longer than `longest`. Reads from each bracket back, so that names which end
/// at the same bracket share the work.
void HashNames(QStringView text, Tags &tags, qint32 longest)
{
    qint32 bracket = -1, at = 0;
    quint64 hash = 0;
    for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) {
        if (tag->NameLength() > longest)
            continue;
        if (tag->bracket != bracket) {
            bracket = at = tag->bracket;
            hash = 0x9E3779B97F4A7C15u;
        }
        while (at > tag->nameStart)
            hash = (std::rotl(hash, 5) ^ text[--at].unicode()) * 0xC2B2AE3D27D4EB4Fu;
        tag->hash = hash;
    }
}

/// Gives each opening tag the nearest closing tag behind its bracket with the same hash.
void FindPartners(Tags &opening, const Tags &closing, qint32 longest)
{
    std::unordered_map<quint64, qint32> nearest;
    auto next = qint32(closing.size());
    for (auto tag = opening.rbegin(); tag != opening.rend(); ++tag) {
        for (; next > 0 && closing[next - 1].start > tag->bracket; --next) {
            if (closing[next - 1].NameLength() <= longest)
                nearest[closing[next - 1].hash] = next - 1;
        }
        if (const auto found = nearest.find(tag->hash); found != nearest.end())
            tag->partner = found->second;
    }
}

/// The closing tag of an opening one, null when it has none. Equal hashes of different names are next to
/// impossible; then the tags behind are searched one by one.
Tag *ClosingTag(QStringView text, const Tag &tag, Tags &closing)
{
    if (tag.partner < 0)
        return nullptr;
    const QStringView name = tag.Name(text);
    const auto matches = [&](const Tag &other) { return other.Name(text) == name; };
    const auto found = std::find_if(closing.begin() + tag.partner, closing.end(), matches);
    return found == closing.end() ? nullptr : &*found;
}

/// The tag scan: opening tags and the closing tags that they are paired with.
StyleRuns ScanTags(QStringView text, qsizetype start, qsizetype end)
{
    Tags closing = FindClosingTags(text, start);
    Tags opening = FindOpeningTags(text, start, end, LongestName(closing));
    const qint32 longest = LongestName(opening);
    HashNames(text, opening, longest);
    HashNames(text, closing, longest);
    FindPartners(opening, closing, longest);

    // A paired tag is stepped over, so what looks like a tag inside its name is none.
    qint32 from = 0;
    for (Tag &tag : opening) {
        if (tag.start < from)
            continue;
        if (Tag *partner = ClosingTag(text, tag, closing)) {
            tag.coloured = partner->coloured = true;
            from = tag.bracket + 1;
        }
    }

    StyleRuns runs;
    const auto put = [&runs](const Tag &tag) {
        const qint32 tagEnd = tag.bracket + 1;
        const qint32 before = runs.empty() ? 0 : runs.back().start + runs.back().length;
        if (tag.coloured && tagEnd > before) {
            const qint32 tagStart = std::max(tag.start, before);
            runs.push_back({tagStart, tagEnd - tagStart, StyleClass::Tag});
        }
    };
    auto next = closing.begin();
    for (const Tag &tag : opening) {
        for (; next != closing.end() && next->start < tag.start; ++next)
            put(*next);
        put(tag);
    }
    for (; next != closing.end(); ++next)
        put(*next);
    return runs;
}

qsizetype FindMark(QStringView text, QStringView mark, qsizetype from)
{
    TagFinder finder(text, from);
    for (qsizetype sign; (sign = finder.NextSign()) >= 0;) {
        if (text.sliced(sign).startsWith(mark))
            return sign;
    }
    return -1;
}

/// Puts the scan of a section over what was found before: the runs under it, and under a comment that runs on
/// behind it, go.
StyleRuns Overlay(const StyleRuns &below, const ScannedSection &section, const StyleRuns &above)
{
    const auto runEnd = [](const StyleRun &run) { return run.start + run.length; };
    const auto start = qint32(section.start);
    const qint32 end = std::max(qint32(section.end), above.empty() ? 0 : runEnd(above.back()));
    StyleRuns runs;
    runs.reserve(below.size() + above.size() + 1);
    auto run = below.begin();
    for (; run != below.end() && run->start < start; ++run)
        runs.push_back({run->start, std::min(run->length, start - run->start), run->style});
    runs.insert(runs.end(), above.begin(), above.end());
    if (run != below.begin())
        --run; // it may reach over the section
    for (; run != below.end(); ++run) {
        const qint32 from = std::max(run->start, end);
        if (runEnd(*run) > from)
            runs.push_back({from, runEnd(*run) - from, run->style});
    }
    return runs;
}

} // namespace

ScanResult ScanRange(QStringView text, qsizetype start, qsizetype end, ScanMode mode,
                     const OpcodeList &opcodes)
{
    if (end == 0)
        end = text.size();
    start = std::max<qsizetype>(start, 0);
    end = std::min(end, text.size());
    ScanResult result;
    if (start >= end)
        return result;
    switch (mode) {
    case ScanMode::None:
        break;
    case ScanMode::Orchestra:
        CodeScanner<true>(text, end, opcodes.Set(), result).Scan(start);
        break;
    case ScanMode::Score:
        CodeScanner<false>(text, end, opcodes.Set(), result).Scan(start);
        break;
    case ScanMode::Tags:
        result.runs = ScanTags(text, start, end);
        break;
    }
    return result;
}

StyleRuns ScanUnified(QStringView text, const OpcodeList &opcodes)
{
    StyleRuns runs = ScanRange(text, 0, 0, ScanMode::Tags, opcodes).runs;
    for (const ScannedSection &section : FindScannedSections(text)) {
        // The scan cannot run off the text: the closing mark ends every name.
        runs =
            Overlay(runs, section, ScanRange(text, section.start, section.end, section.mode, opcodes).runs);
    }
    return runs;
}

std::vector<ScannedSection> FindScannedSections(QStringView text)
{
    std::vector<ScannedSection> sections;
    const auto find = [&](QStringView openingMark, QStringView closingMark, ScanMode mode) {
        const qsizetype opening = FindMark(text, openingMark, 0);
        const qsizetype closing = opening < 0 ? -1 : FindMark(text, closingMark, opening);
        if (closing >= 0)
            sections.push_back({opening + openingMark.size(), closing, mode});
    };
    find(u"<CsInstruments>", u"</CsInstruments>", ScanMode::Orchestra);
    find(u"<CsScore>", u"</CsScore>", ScanMode::Score);
    return sections;
}

} // namespace zelvane
