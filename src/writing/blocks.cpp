// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/blocks.h"

#include "language/scanner.h"
#include "writing/brackets.h"
#include "writing/wordcharacter.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace zelvane
{

namespace
{

using Role = BlockWord::Role;

/// What a word does, alone or as the first half of what opens.
enum class WordUse : quint8 { Opens, Closes, Parts, Begins, Ends };

struct WordRow {
    QStringView word;
    WordUse use;
    BlockKind kind;
};

const WordRow Words[] = {
    {u"instr", WordUse::Opens, BlockKind::Instrument},
    {u"endin", WordUse::Closes, BlockKind::Instrument},
    {u"opcode", WordUse::Opens, BlockKind::Opcode},
    {u"endop", WordUse::Closes, BlockKind::Opcode},
    {u"if", WordUse::Begins, BlockKind::Condition},
    {u"then", WordUse::Ends, BlockKind::Condition},
    {u"ithen", WordUse::Ends, BlockKind::Condition},
    {u"kthen", WordUse::Ends, BlockKind::Condition},
    {u"elseif", WordUse::Parts, BlockKind::Condition},
    {u"else", WordUse::Parts, BlockKind::Condition},
    {u"endif", WordUse::Closes, BlockKind::Condition},
    {u"fi", WordUse::Closes, BlockKind::Condition},
    {u"while", WordUse::Begins, BlockKind::Loop},
    {u"until", WordUse::Begins, BlockKind::Loop},
    {u"do", WordUse::Ends, BlockKind::Loop},
    {u"od", WordUse::Closes, BlockKind::Loop},
    {u"#ifdef", WordUse::Opens, BlockKind::Directive},
    {u"#ifndef", WordUse::Opens, BlockKind::Directive},
    {u"#else", WordUse::Parts, BlockKind::Directive},
    {u"#end", WordUse::Closes, BlockKind::Directive},
    {u"#endif", WordUse::Closes, BlockKind::Directive},
};
constexpr qsizetype LongestWord = 7;

const WordRow *FindWord(QStringView word)
{
    const auto found = std::find_if(std::begin(Words), std::end(Words),
                                    [word](const WordRow &row) { return row.word == word; });
    return found == std::end(Words) ? nullptr : found;
}

/// The letters that words of the table begin with.
constexpr bool MayBegin(char16_t c)
{
    switch (c) {
    case u'd':
    case u'e':
    case u'f':
    case u'i':
    case u'k':
    case u'o':
    case u't':
    case u'u':
    case u'w':
        return true;
    default:
        return false;
    }
}

class WordReader
{
public:
    WordReader(QStringView text, ScanMode mode, std::vector<BlockWord> &words)
        : m_chars(text.utf16()), m_isScore(mode == ScanMode::Score), m_words(words)
    {
    }

    void ReadCode(qsizetype from, qsizetype to)
    {
        for (qsizetype at = from; at < to;) {
            const char16_t c = m_chars[at];
            if (c == u'\n') {
                EndLine();
                ++at;
            } else if (c <= u' ') {
                ++at;
            } else {
                at = IsInWord(c) ? ReadWord(at, to) : ReadMark(at, to);
            }
        }
    }

    void ReadOther(const CodeStretch &stretch)
    {
        switch (stretch.part) {
        case CodePart::LineComment:
            EndLine();
            break;
        case CodePart::Braced:
            Put(stretch.start, stretch.start + 2, BlockKind::Braces, Role::Opens);
            Put(stretch.end - 2, stretch.end, BlockKind::Braces, Role::Closes);
            m_last = u'}';
            break;
        case CodePart::Quoted:
            m_last = u'"';
            break;
        default:
            break;
        }
    }

private:
    enum class Definition : quint8 { None, Named, LineBehind, Body };

    void EndLine()
    {
        if (m_last != u'\\')
            m_if = m_loop = -1;
        m_last = u'\n';
        if (m_definition == Definition::Named)
            m_definition = Definition::LineBehind;
    }

    qsizetype WordEnd(qsizetype at, qsizetype to) const
    {
        while (at < to && IsInWord(m_chars[at]))
            ++at;
        return at;
    }

    qsizetype ReadWord(qsizetype at, qsizetype to)
    {
        const qsizetype end = WordEnd(at + 1, to);
        const bool isNamed = m_last == u'$' && at > 0 && m_chars[at - 1] == u'$'; // a macro's name
        const bool isWanted = end - at <= LongestWord && MayBegin(m_chars[at]) && !isNamed && !m_isScore;
        BeginThing(m_chars[end - 1]);
        if (!isWanted)
            return end;
        if (const WordRow *row = FindWord({m_chars + at, end - at}))
            Use(*row, at, end);
        return end;
    }

    qsizetype ReadMark(qsizetype at, qsizetype to)
    {
        const char16_t c = m_chars[at];
        if (c == u'#')
            return ReadHash(at, to);
        BeginThing(c);
        if (c != u'{' && c != u'}')
            return at + 1;
        const Role role = c == u'{' ? Role::Opens : Role::Closes;
        if (m_isScore) {
            Put(at, at + 1, BlockKind::Loop, role);
            return at + 1;
        }
        if (at + 1 == to || m_chars[at + 1] != c)
            return at + 1;
        Put(at, at + 2, BlockKind::Braces, role);
        return at + 2;
    }

    qsizetype ReadHash(qsizetype at, qsizetype to)
    {
        if (m_definition == Definition::Body) {
            if (m_last == u'\\' && m_chars[at - 1] == u'\\') {
                m_last = u'#';
                return at + 1;
            }
            Put(at, at + 1, BlockKind::Macro, Role::Closes);
            m_definition = Definition::None;
            m_last = u'#';
            return at + 1;
        }
        const qsizetype end = WordEnd(at + 1, to);
        const QStringView word(m_chars + at, end - at);
        if (m_definition == Definition::Named || (m_definition == Definition::LineBehind && end == at + 1)) {
            Put(m_define, at + 1, BlockKind::Macro, Role::Opens);
            m_definition = Definition::Body;
            m_last = u'#';
            return at + 1;
        }
        BeginThing(u'#');
        if (word == u"#define") {
            m_definition = Definition::Named;
            m_define = at;
        } else if (const WordRow *row = FindWord(word)) {
            Use(*row, at, end);
        }
        return end;
    }

    /// Something stands here that is neither blank nor a hash.
    void BeginThing(char16_t last)
    {
        m_last = last;
        if (m_definition == Definition::LineBehind)
            m_definition = Definition::None;
    }

    void Use(const WordRow &row, qsizetype at, qsizetype end)
    {
        qsizetype &begun = row.kind == BlockKind::Condition ? m_if : m_loop;
        switch (row.use) {
        case WordUse::Opens:
            Put(at, end, row.kind, Role::Opens);
            break;
        case WordUse::Closes:
            Put(at, end, row.kind, Role::Closes);
            break;
        case WordUse::Parts:
            Put(at, end, row.kind, Role::Parts);
            break;
        case WordUse::Begins:
            begun = at;
            break;
        case WordUse::Ends:
            if (begun >= 0)
                Put(begun, end, row.kind, Role::Opens);
            begun = -1;
            break;
        }
    }

    void Put(qsizetype start, qsizetype end, BlockKind kind, Role role)
    {
        m_words.push_back({qint32(start), qint32(end), kind, role});
    }

    const char16_t *m_chars;
    bool m_isScore;
    std::vector<BlockWord> &m_words;
    qsizetype m_if = -1;     ///< an "if" that waits for its "then"
    qsizetype m_loop = -1;   ///< the same of a loop
    qsizetype m_define = -1; ///< the definition that is being read
    Definition m_definition = Definition::None;
    char16_t m_last = u'\n'; ///< the last character that is no blank
};

/// Whether the word of a new instrument ends such a block.
bool EndsWithInstrument(BlockKind kind)
{
    return kind == BlockKind::Condition || kind == BlockKind::Loop || kind == BlockKind::Instrument ||
           kind == BlockKind::Opcode;
}

} // namespace

std::vector<BlockWord> FindBlockWords(QStringView text, const CodeMap &map, const ScannedSection &section)
{
    std::vector<BlockWord> words;
    WordReader reader(text, section.mode, words);
    map.ForEach(
        section.start, section.end, [&](qsizetype from, qsizetype to) { reader.ReadCode(from, to); },
        [&](const CodeStretch &stretch) { reader.ReadOther(stretch); });
    return words;
}

void BlockPairs::BeginAnew()
{
    while (!m_open.empty() && EndsWithInstrument(m_open.back().kind)) {
        --m_counts[std::size_t(m_open.back().kind)];
        m_open.pop_back();
    }
}

Block BlockPairs::Take(const BlockWord &word)
{
    const auto kind = std::size_t(word.kind);
    const bool isDirective = word.kind == BlockKind::Directive;
    std::vector<BlockWord> &open = isDirective ? m_directives : m_open;
    switch (word.role) {
    case Role::Opens:
        if (word.kind == BlockKind::Instrument || word.kind == BlockKind::Opcode)
            BeginAnew();
        open.push_back(word);
        ++m_counts[kind];
        return {};
    case Role::Closes:
        while (m_counts[kind] > 0) {
            const BlockWord top = open.back();
            open.pop_back();
            --m_counts[std::size_t(top.kind)];
            if (top.kind == word.kind)
                return {top.start, word.end, word.kind};
        }
        return {};
    case Role::Parts:
        for (auto one = open.rbegin(); m_counts[kind] > 0 && one != open.rend(); ++one) {
            if (one->kind == word.kind)
                return {one->start, word.end, word.kind};
        }
        return {};
    }
    return {};
}

std::vector<Block> FindBlocks(QStringView text, const CodeMap &map, FileKind kind)
{
    std::vector<Block> blocks;
    for (const ScannedSection &section : map.Sections()) {
        BlockPairs pairs;
        for (const BlockWord &word : FindBlockWords(text, map, section)) {
            if (word.role == Role::Parts)
                continue;
            if (const Block block = pairs.Take(word); block.end > 0)
                blocks.push_back(block);
        }
    }
    for (const CodeStretch &stretch : map.Stretches()) {
        if (stretch.part == CodePart::BlockComment)
            blocks.push_back({stretch.start, stretch.end, BlockKind::Comment});
    }
    const std::vector<Bracket> tags = FindTagPairs(text, map, kind);
    for (std::size_t place = 0; place < tags.size(); ++place) {
        const qint32 partner = tags[place].partner;
        if (partner > qint32(place))
            blocks.push_back({tags[place].start, tags[std::size_t(partner)].End(), BlockKind::Tag});
    }
    return blocks;
}

} // namespace zelvane
