// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/scanner.h"

#include "language/charblocks.h"
#include "language/opcodeset.h"

#include <unordered_map>

namespace zelvane
{

namespace
{

/// Collects runs; a candidate costs the same whether it is kept or not.
class RunCollector
{
public:
    explicit RunCollector(StyleRuns &runs, qsizetype characters) : m_runs(runs)
    {
        m_runs.reserve(std::size_t(characters) / 24);
    }
    ~RunCollector() { Flush(); }
    RunCollector(const RunCollector &) = delete;
    RunCollector &operator=(const RunCollector &) = delete;

    void PutIf(bool kept, qsizetype start, qsizetype length, StyleClass style)
    {
        m_buffer[m_count] = {qint32(start), qint32(length), style};
        m_count += kept;
        if (m_count == Size) [[unlikely]]
            Flush();
    }
    void Put(qsizetype start, qsizetype length, StyleClass style) { PutIf(true, start, length, style); }

    /// The end of the last run, 0 before the first.
    qsizetype End() const
    {
        const StyleRun *last = m_count > 0      ? &m_buffer[m_count - 1]
                               : m_runs.empty() ? nullptr
                                                : &m_runs.back();
        return last ? qsizetype(last->start) + last->length : 0;
    }

private:
    static constexpr std::size_t Size = 512;

    void Flush()
    {
        m_runs.insert(m_runs.end(), m_buffer, m_buffer + m_count);
        m_count = 0;
    }

    StyleRuns &m_runs;
    std::size_t m_count = 0;
    StyleRun m_buffer[Size];
};

/// Whether `word` and then a blank or a tab stand at `at`.
bool IsDirective(QStringView text, qsizetype at, QStringView word)
{
    const qsizetype behind = at + word.size();
    return behind < text.size() && text.sliced(at, word.size()) == word &&
           (text[behind] == u' ' || text[behind] == u'\t');
}

/// The orchestra scan, and without words the score scan. Only characters that may begin a token are looked
/// at; a token may be missed or cut at the range's end, as a token begins only before the range's last
/// character.
template <bool Words>
void ScanCode(QStringView text, qsizetype start, qsizetype end, const OpcodeSet &opcodes, ScanResult &result)
{
    RunCollector runs(result.runs, end - start);
    const char16_t *const chars = text.utf16();
    const char16_t *const textEnd = chars + text.size();
    const qsizetype stop = end - 1; // no token begins here or behind

    qsizetype base = start; // the block's first character
    quint64 starters = 0;   // what may begin a token from here on, bits of the block
    quint64 separators = 0;

    const auto load = [&](qsizetype at) {
        base = at;
        starters = separators = 0;
        if (base >= stop)
            return;
        const CharBlock block = Classify<Words>(chars + base, textEnd);
        starters = block.starters;
        separators = block.separators;
        if (stop - base < CharBlockSize)
            starters &= (quint64(1) << (stop - base)) - 1;
    };
    const auto goOnAt = [&](qsizetype at) {
        if (at - base >= CharBlockSize)
            load(at);
        else
            starters &= ~quint64(0) << (at - base);
    };

    for (load(start); base < stop;) {
        if (starters == 0) {
            load(base + CharBlockSize);
            continue;
        }
        const int bit = std::countr_zero(starters);
        const qsizetype at = base + bit;
        const char16_t c = chars[at];

        if (Words && IsAnsiLetter(c)) {
            qsizetype wordEnd;
            if (const quint64 behind = separators >> bit) [[likely]] {
                wordEnd = at + std::countr_zero(behind);
            } else {
                do {
                    load(base + CharBlockSize);
                } while (separators == 0 && base < stop);
                wordEnd = separators ? base + std::countr_zero(separators) : stop;
            }
            wordEnd = std::min(wordEnd, stop);
            runs.PutIf(opcodes.ContainsWord(chars + at, wordEnd - at, textEnd), at, wordEnd - at,
                       StyleClass::Opcode);
            goOnAt(wordEnd);
            continue;
        }

        switch (c) {
        case u';': {
            const char16_t *feed = Find(chars + at, textEnd, u'\n');
            if (feed == textEnd)
                return;
            runs.Put(at, feed + 1 - chars - at, StyleClass::Comment);
            goOnAt(feed + 1 - chars);
            break;
        }
        case u'/': {
            if (chars[at + 1] != u'*') {
                goOnAt(at + 1);
                break;
            }
            // The closing mark is looked for from the opening slash on: "/*/" is a whole comment.
            const char16_t *slash = chars + at + 2;
            while ((slash = Find(slash, textEnd, u'/')) != textEnd && slash[-1] != u'*')
                ++slash;
            if (slash == textEnd)
                return;
            // Going on at the closing slash: with a star behind it, it opens the next comment.
            const qsizetype commentEnd = slash + 1 - chars;
            const qsizetype from = std::max(at, runs.End());
            runs.Put(from, commentEnd - from, StyleClass::Comment);
            goOnAt(commentEnd - 1);
            break;
        }
        case u'#':
            if (IsDirective(text, at + 1, u"define")) {
                runs.Put(at, 7, StyleClass::Macro);
                goOnAt(at + 8);
            } else if (IsDirective(text, at + 1, u"include")) {
                runs.Put(at, 8, StyleClass::Macro);
                goOnAt(at + 9);
            } else {
                goOnAt(at + 1);
            }
            break;
        case u'$': {
            qsizetype nameEnd = at + 1;
            while (nameEnd < text.size() && IsAnsiLetterOrDigit(chars[nameEnd]))
                ++nameEnd;
            if (nameEnd == text.size()) {
                result.ranOffText = true;
                return;
            }
            runs.Put(at, nameEnd - at, StyleClass::Macro);
            goOnAt(nameEnd + 1); // the character that ended the name is not looked at
            break;
        }
        case u'"': {
            const qsizetype quote = Find(chars + at + 1, chars + end, u'"') - chars;
            const qsizetype last = std::min(quote, end - 1);
            runs.Put(at, last + 1 - at, StyleClass::Literal);
            goOnAt(last + 1);
            break;
        }
        default: // beyond ASCII, and no letter
            goOnAt(at + 1);
        }
    }
}

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

/// What stands between a tag of this name and its closing tag.
struct Section {
    qsizetype start = 0;
    qsizetype end = 0;
    bool found = false;
};

qsizetype FindMark(QStringView text, QStringView mark, qsizetype from)
{
    TagFinder finder(text, from);
    for (qsizetype sign; (sign = finder.NextSign()) >= 0;) {
        if (text.sliced(sign).startsWith(mark))
            return sign;
    }
    return -1;
}

Section FindSection(QStringView text, QStringView openingMark, QStringView closingMark)
{
    const qsizetype opening = FindMark(text, openingMark, 0);
    const qsizetype closing = opening < 0 ? -1 : FindMark(text, closingMark, opening);
    if (closing < 0)
        return {};
    return {opening + openingMark.size(), closing, true};
}

/// Puts the scan of a section over what was found before: the runs under it, and under a comment that runs on
/// behind it, go.
StyleRuns Overlay(const StyleRuns &below, const Section &section, const StyleRuns &above)
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
        ScanCode<true>(text, start, end, opcodes.Set(), result);
        break;
    case ScanMode::Score:
        ScanCode<false>(text, start, end, opcodes.Set(), result);
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
    const auto scan = [&](QStringView openingMark, QStringView closingMark, ScanMode mode) {
        const Section section = FindSection(text, openingMark, closingMark);
        if (!section.found)
            return;
        // The scan cannot run off the text: the closing mark ends every name.
        runs = Overlay(runs, section, ScanRange(text, section.start, section.end, mode, opcodes).runs);
    };
    scan(u"<CsInstruments>", u"</CsInstruments>", ScanMode::Orchestra);
    scan(u"<CsScore>", u"</CsScore>", ScanMode::Score);
    return runs;
}

} // namespace zelvane
