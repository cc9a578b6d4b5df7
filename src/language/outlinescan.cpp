// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/blockcomments.h"
#include "language/closingtags.h"
#include "language/commentlookup.h"
#include "language/macronames.h"
#include "language/outline.h"
#include "shell/findtext.h"

#include <algorithm>
#include <numeric>
#include <QString>
#include <QStringView>
#include <string_view>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

/// A macro definition; offsets from 0.
struct FoundMacro {
    qsizetype define;
    TextSpan caption; ///< begins with the bare name
    qsizetype nameEnd;
};

/// Puts nodes into an outline.
class OutlineBuilder
{
public:
    explicit OutlineBuilder(const QString &text) { m_outline.m_text = text; }

    qint32 AddRoot(OutlineKind kind) { return Add({.kind = kind, .isRoot = true}); }
    /// @return the node's place
    qint32 Add(const OutlineNode &node)
    {
        m_outline.m_nodes.push_back(node);
        return qint32(m_outline.m_nodes.size()) - 1;
    }
    qint32 Count() const { return qint32(m_outline.m_nodes.size()); }
    void SetInstruments(std::vector<TextSpan> spans) { m_outline.m_instruments = std::move(spans); }
    void AddTable(qint32 parent, qsizetype tag, const TextSpan &number, const TextSpan &size,
                  const TextSpan &generator)
    {
        m_outline.m_tables.push_back({number, size, generator});
        Add({.kind = OutlineKind::FunctionTable,
             .parent = parent,
             .number = qint32(m_outline.m_tables.size()),
             .tag = qint32(tag)});
    }

    using Call = Outline::Call;
    /// Adds a root and its macros.
    void AddMacros(const std::vector<FoundMacro> &macros, const std::vector<std::vector<Call>> &calls,
                   const MacroNames &names);

    /// Finds out the children of each node. @return the whole outline
    Outline Done();

private:
    Outline m_outline;
};

void OutlineBuilder::AddMacros(const std::vector<FoundMacro> &macros,
                               const std::vector<std::vector<Call>> &calls, const MacroNames &names)
{
    std::vector<qsizetype> starts; // of the calls of each name in the outline's list
    for (const std::vector<Call> &ofName : calls) {
        starts.push_back(qsizetype(m_outline.m_calls.size()));
        m_outline.m_calls.insert(m_outline.m_calls.end(), ofName.begin(), ofName.end());
    }
    const qint32 root = AddRoot(OutlineKind::Macro);
    m_outline.m_firstMacro = Count();
    qsizetype places = 0;
    for (std::size_t i = 0; i < macros.size(); ++i) {
        const FoundMacro &macro = macros[i];
        const std::vector<Call> &ofName = calls[names.GroupOf(i)];
        const auto first =
            std::lower_bound(ofName.begin(), ofName.end(), macro.define,
                             [](const Call &call, qsizetype define) { return call.tag < define; });
        const qsizetype start = starts[names.GroupOf(i)];
        places += ofName.end() - first;
        m_outline.m_macros.push_back(
            {start + (first - ofName.begin()), start + qsizetype(ofName.size()), places});
        Add({.kind = OutlineKind::Macro,
             .parent = root,
             .number = qint32(i) + 1,
             .tag = qint32(macro.define),
             .caption = macro.caption});
    }
}

Outline OutlineBuilder::Done()
{
    const std::vector<OutlineNode> &nodes = m_outline.m_nodes;
    std::vector<qint32> &ends = m_outline.m_childrenEnd;
    ends.assign(nodes.size() + 1, 0);
    for (const OutlineNode &node : nodes)
        ++ends[std::size_t(node.parent + 1)];
    m_outline.m_rows.reserve(nodes.size());
    std::vector<qint32> next(ends.size());
    std::exclusive_scan(ends.begin(), ends.end(), next.begin(), 0);
    const std::vector<qint32> starts = next;
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    m_outline.m_children.resize(nodes.size());
    for (std::size_t place = 0; place < nodes.size(); ++place) {
        const auto parent = std::size_t(nodes[place].parent + 1);
        m_outline.m_rows.push_back(next[parent] - starts[parent]);
        m_outline.m_children[std::size_t(next[parent]++)] = qint32(place);
    }
    return std::move(m_outline);
}

namespace
{

bool IsBlankOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}
bool IsLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}
bool IsSeparator(QChar c)
{
    return IsBlankOrTab(c) || IsLineEnd(c);
}

/// Whether no letter, digit or underscore touches the stretch.
bool IsWholeWord(QStringView text, qsizetype start, qsizetype end)
{
    return (start == 0 || !IsWordCharacter(text[start - 1])) &&
           (end == text.size() || !IsWordCharacter(text[end]));
}

/// A word that is searched for without regard to case.
class Keyword
{
public:
    /// @param word in lower case
    explicit constexpr Keyword(std::u16string_view word) : m_word(word) {}

    qsizetype Size() const { return qsizetype(m_word.size()); }

    /// The first hit as a whole word in [from, end), -1 without one.
    qsizetype Find(QStringView text, qsizetype from, qsizetype end) const
    {
        const qsizetype last = end - Size();
        while (from <= last) {
            // A look at many places at once is made without a branch; nearly always there is nothing.
            const qsizetype count = std::min<qsizetype>(last - from + 1, 64);
            if (MayStandIn(text.utf16() + from, count)) {
                for (qsizetype at = from; at < from + count; ++at) {
                    if (StandsAt(text, at))
                        return at;
                }
            }
            from += count;
        }
        return -1;
    }

private:
    /// Whether the word may begin at one of the places; the letters looked at have no third form.
    bool MayStandIn(const char16_t *places, qsizetype count) const
    {
        const char16_t first = m_word[0], second = m_word[1], last = m_word.back();
        const char16_t *const ends = places + Size() - 1;
        unsigned hits = 0;
        for (qsizetype i = 0; i < count; ++i)
            hits |= unsigned((places[i] | 0x20) == first) & unsigned((places[i + 1] | 0x20) == second) &
                    unsigned((ends[i] | 0x20) == last);
        return hits != 0;
    }
    bool StandsAt(QStringView text, qsizetype at) const
    {
        return (text[at].unicode() | 0x20) == m_word.front() &&
               text.sliced(at, Size()).compare(m_word, Qt::CaseInsensitive) == 0 &&
               IsWholeWord(text, at, at + Size());
    }

    std::u16string_view m_word;
};

constexpr Keyword Instr(u"instr"), Endin(u"endin");
constexpr std::u16string_view Define = u"#define", Include = u"#include";

/// Whether more than `count` characters are left when spaces are normalized.
bool IsLongerNormalized(QStringView text, qsizetype count)
{
    qsizetype length = 0;
    bool blankBefore = false;
    for (const QChar c : text) {
        if (IsSeparator(c)) {
            blankBefore = length > 0;
            continue;
        }
        length += blankBefore ? 2 : 1;
        blankBefore = false;
        if (length > count)
            return true;
    }
    return false;
}

/// Finds the next character of a kind. Asked about rising offsets it reads no character twice.
template <bool (*IsWanted)(QChar)> class NextCharacter
{
public:
    explicit NextCharacter(QStringView text) : m_text(text) {}

    /// The next such character at or behind the offset, else the end of the text.
    qsizetype From(qsizetype offset)
    {
        if (offset < m_from || offset > m_next)
            m_from = m_next = offset;
        while (m_next < m_text.size() && !IsWanted(m_text[m_next]))
            ++m_next;
        return m_next;
    }

private:
    QStringView m_text;
    qsizetype m_from = 0; ///< up to m_next there is none
    qsizetype m_next = 0;
};

bool EndsInclude(QChar c)
{
    return c == u';' || IsLineEnd(c);
}
bool EndsArguments(QChar c)
{
    return c == u')' || IsLineEnd(c);
}

/// Calls `found` for each hit of a letter as a whole word in [start, end), with regard to case.
template <typename Found>
void ForEachLetter(QStringView text, char16_t letter, qsizetype start, qsizetype end, Found found)
{
    const QStringView searched = text.first(end);
    for (qsizetype hit = start - 1; (hit = searched.indexOf(letter, hit + 1)) >= 0;) {
        if (IsWholeWord(text, hit, hit + 1))
            found(hit);
    }
}

/// Finds out whether a colon ends a label: a lone word at the start of a line, which may be indented. Asked
/// about rising offsets it reads no character twice.
class LabelLines
{
public:
    explicit LabelLines(QStringView text) : m_text(text) {}

    bool IsLabel(qsizetype colon)
    {
        qsizetype start = colon;
        while (start > m_read && m_text[start - 1] != u'\n')
            --start;
        if (start > m_read || m_read == 0)
            BeginLine(start);
        for (; m_read < colon; ++m_read)
            Read(m_text[m_read]);
        return m_isLabel && m_place != Place::BehindReturn;
    }
    /// Where the line of the colon that was asked about last begins.
    qsizetype LineStart() const { return m_lineStart; }

private:
    enum class Place { Indent, LeadingReturns, Word, BehindReturn };

    void BeginLine(qsizetype start)
    {
        m_lineStart = m_read = start;
        m_place = Place::Indent;
        m_isLabel = true;
    }
    void Read(QChar c)
    {
        if (IsBlankOrTab(c)) {
            m_isLabel = m_isLabel && m_place == Place::Indent;
        } else if (c == u'\r') {
            // A return within the word becomes a blank of the caption, one in front of it is trimmed.
            m_place = m_place == Place::Word || m_place == Place::BehindReturn ? Place::BehindReturn
                                                                               : Place::LeadingReturns;
        } else {
            m_isLabel = m_isLabel && c != u'(' && m_place != Place::BehindReturn;
            m_place = Place::Word;
        }
    }

    QStringView m_text;
    qsizetype m_lineStart = 0;
    qsizetype m_read = 0; ///< how far the line is read
    Place m_place = Place::Indent;
    bool m_isLabel = true;
};

/// Walks the fields of table statements.
class TableWalk
{
public:
    explicit TableWalk(QStringView text) : m_text(text) {}

    /// @param start the offset behind the letter @return whether a table statement of four fields stands
    /// there that is no "f 0"
    bool IsTable(qsizetype start);
    /// A field, from 1, of the last statement. Its length leaves out the slashes in it. Kept: a field that no
    /// separator has ended has the length that the field of its number had before.
    const TextSpan &Field(int number) const { return m_fields[number - 1]; }

private:
    static constexpr int Fields = 4;

    QStringView m_text;
    TextSpan m_fields[Fields];
};

bool TableWalk::IsTable(qsizetype start)
{
    int count = 0;
    qsizetype length = 0; // of the field that the walk is in, 0 between fields
    for (qsizetype at = start; at < m_text.size(); ++at) {
        const QChar c = m_text[at];
        if (c == u';')
            break;
        if (c == u'/') {
            if (at + 1 < m_text.size() && m_text[at + 1] == u'*')
                break;
            continue;
        }
        if (IsSeparator(c)) {
            if (length == 0)
                continue;
            TextSpan &field = m_fields[count - 1];
            field.end = field.start + length;
            length = 0;
            if (count == Fields)
                break;
            continue;
        }
        if (length++ == 0) {
            TextSpan &field = m_fields[count++];
            field = {at, at + field.Length()};
        }
    }
    const TextSpan &number = m_fields[0];
    return count == Fields && m_text.sliced(number.start, number.Length()) != u"0";
}

/// The scanners, each over the part of the text that it is given: offsets from 0, the end exclusive.
class Scanners
{
public:
    explicit Scanners(const QString &text) : m_text(text), m_builder(text) {}

    /// Has to come before all searches.
    void CollectBlockComments() { m_blockComments = ParseCommentRanges(m_text); }
    void SearchInstr(qsizetype start, qsizetype end);
    /// @param firstTag the tag of the first section
    void SearchEndOFSection(qsizetype start, qsizetype end, qsizetype firstTag);
    void SearchNamedSection(qsizetype start, qsizetype end);
    void SearchFTables(qsizetype start, qsizetype end);
    void SearchTags();
    /// Has to come before the searches for macros and includes.
    void FindDirectives();
    void SearchMacro();
    void SearchInclude();

    Outline Done() { return m_builder.Done(); }

private:
    void SearchLabel(const TextSpan &instrument, qint32 parent, CommentLookup &comments, LabelLines &lines);
    std::vector<FoundMacro> FindMacros() const;
    using Call = OutlineBuilder::Call;
    /// The calls of each name behind the offset: all names are looked for in one walk.
    std::vector<std::vector<Call>> SearchMacroCall(const MacroNames &names, qsizetype from) const;
    CommentLookup Comments() const { return CommentLookup(m_text, m_blockComments); }

    QStringView m_text;
    std::vector<TextSpan> m_blockComments;
    std::vector<qsizetype> m_defines, m_includes; ///< all, commented ones too
    OutlineBuilder m_builder;
};

void Scanners::SearchInstr(qsizetype start, qsizetype end)
{
    CommentLookup comments = Comments();
    std::vector<TextSpan> instruments;
    for (qsizetype from = start; (from = Instr.Find(m_text, from, end)) >= 0;) {
        if (comments.IsCommented(from)) {
            ++from;
            continue;
        }
        // The one that closes may stand in a comment. Kept: without one, no further instrument is listed.
        const qsizetype close = Endin.Find(m_text, from, end);
        if (close < 0)
            break;
        instruments.push_back({from, close + Endin.Size()});
        from = close + 1;
    }
    if (instruments.empty())
        return;

    const qint32 root = m_builder.AddRoot(OutlineKind::Instrument);
    CommentLookup labelComments = Comments();
    LabelLines labelLines(m_text);
    NextCharacter<IsLineEnd> lineEnds(m_text);
    qint32 number = 0;
    for (const TextSpan &instrument : instruments) {
        const qsizetype behindWord = instrument.start + Instr.Size();
        ++number;
        const qint32 node = m_builder.Add({.kind = OutlineKind::Instrument,
                                           .parent = root,
                                           .number = number,
                                           .tag = number,
                                           .caption = {behindWord, lineEnds.From(behindWord)}});
        SearchLabel(instrument, node, labelComments, labelLines);
    }
    m_builder.SetInstruments(std::move(instruments));
}

void Scanners::SearchLabel(const TextSpan &instrument, qint32 parent, CommentLookup &comments,
                           LabelLines &lines)
{
    const QStringView searched = m_text.first(instrument.end);
    qint32 number = 0;
    qsizetype colon = instrument.start - 1;
    while ((colon = searched.indexOf(u':', colon + 1)) >= 0) {
        if (!lines.IsLabel(colon) || comments.IsCommented(colon))
            continue;
        m_builder.Add({.kind = OutlineKind::Label,
                       .parent = parent,
                       .number = ++number,
                       .tag = qint32(colon),
                       .caption = {lines.LineStart(), colon + 1}});
    }
}

void Scanners::SearchEndOFSection(qsizetype start, qsizetype end, qsizetype firstTag)
{
    const qint32 root = m_builder.AddRoot(OutlineKind::Section);
    qint32 number = 0;
    const auto add = [&](qsizetype tag) {
        m_builder.Add({.kind = OutlineKind::Section, .parent = root, .number = number++, .tag = qint32(tag)});
    };
    add(firstTag);
    CommentLookup comments = Comments();
    ForEachLetter(m_text, u's', start, end, [&](qsizetype hit) {
        if (!comments.IsCommented(hit))
            add(hit);
    });
}

void Scanners::SearchNamedSection(qsizetype start, qsizetype end)
{
    CommentLookup comments = Comments();
    NextCharacter<IsLineEnd> lineEnds(m_text);
    qint32 root = -1;
    qint32 number = 0;
    ForEachLetter(m_text, u'm', start, end, [&](qsizetype hit) {
        if (comments.IsCommented(hit))
            return;
        if (root < 0)
            root = m_builder.AddRoot(OutlineKind::NamedSection);
        m_builder.Add({.kind = OutlineKind::NamedSection,
                       .parent = root,
                       .number = ++number,
                       .tag = qint32(hit),
                       .caption = {hit + 1, lineEnds.From(hit + 1)}});
    });
}

void Scanners::SearchFTables(qsizetype start, qsizetype end)
{
    CommentLookup comments = Comments();
    TableWalk walk(m_text);
    qint32 root = -1;
    const QStringView searched = m_text.first(end);
    for (qsizetype hit = start - 1; (hit = searched.indexOf(u'f', hit + 1)) >= 0;) {
        if (hit > 0 && !IsSeparator(m_text[hit - 1]))
            continue;
        if (comments.IsCommented(hit) || !walk.IsTable(hit + 1))
            continue;
        if (root < 0)
            root = m_builder.AddRoot(OutlineKind::FunctionTable);
        m_builder.AddTable(root, hit, walk.Field(1), walk.Field(3), walk.Field(4));
    }
}

void Scanners::SearchTags()
{
    const ClosingTags closingTags(m_text);
    CommentLookup comments = Comments();

    // The levels that are open: what lies between a tag and its closing one, up to where a tag has to begin.
    struct Level {
        qint32 parent;
        qsizetype end;
    };
    const qint32 root = m_builder.AddRoot(OutlineKind::Tag);
    std::vector<Level> levels = {{root, std::max<qsizetype>(m_text.size() - 1, 0)}};
    qsizetype from = 0;
    while (!levels.empty()) {
        const Level level = levels.back();
        const QStringView searched = m_text.first(level.end);
        const qsizetype sign = searched.indexOf(u'<', from);
        const qsizetype bracket = sign < 0 ? -1 : searched.indexOf(u'>', sign);
        const qsizetype closing =
            bracket < 0 ? -1 : closingTags.Find(m_text.sliced(sign + 1, bracket - sign - 1), bracket);
        if (closing < 0 || closing >= level.end) {
            // Kept: a tag without a partner ends the whole level.
            levels.pop_back();
            from = level.end + 1;
            continue;
        }
        const qint32 node = m_builder.Add({.kind = OutlineKind::Tag,
                                           .isCommented = comments.IsCommented(sign),
                                           .parent = level.parent,
                                           .number = m_builder.Count(),
                                           .tag = qint32(sign),
                                           .caption = {sign + 1, bracket}});
        levels.push_back({node, closing});
        from = bracket;
    }
}

void Scanners::FindDirectives()
{
    const auto standsAt = [this](qsizetype hit, QStringView directive) {
        return m_text.sliced(hit).startsWith(directive, Qt::CaseInsensitive) &&
               IsWholeWord(m_text, hit, hit + directive.size());
    };
    for (qsizetype hit = -1; (hit = m_text.indexOf(u'#', hit + 1)) >= 0;) {
        if (standsAt(hit, Define))
            m_defines.push_back(hit);
        else if (standsAt(hit, Include))
            m_includes.push_back(hit);
    }
}

std::vector<FoundMacro> Scanners::FindMacros() const
{
    CommentLookup comments = Comments();
    std::vector<FoundMacro> macros;
    for (const qsizetype hit : m_defines) {
        if (comments.IsCommented(hit))
            continue;
        // Whatever follows the word directly is passed over.
        qsizetype start = std::min(hit + qsizetype(Define.size()) + 1, m_text.size());
        while (start < m_text.size() && IsBlankOrTab(m_text[start]))
            ++start;
        qsizetype nameEnd = -1;
        qsizetype at = start;
        for (; at < m_text.size() && m_text[at] != u'#'; ++at) {
            if (nameEnd < 0 && (m_text[at] == u'(' || IsBlankOrTab(m_text[at])))
                nameEnd = at;
        }
        macros.push_back({hit, {start, at}, nameEnd < 0 ? at : nameEnd});
    }
    return macros;
}

void Scanners::SearchMacro()
{
    const std::vector<FoundMacro> macros = FindMacros();
    if (macros.empty())
        return;
    std::vector<QStringView> bareNames;
    bareNames.reserve(macros.size());
    for (const FoundMacro &macro : macros)
        bareNames.push_back(m_text.sliced(macro.caption.start, macro.nameEnd - macro.caption.start));
    const MacroNames names(bareNames);
    m_builder.AddMacros(macros, SearchMacroCall(names, macros.front().define), names);
}

std::vector<std::vector<Scanners::Call>> Scanners::SearchMacroCall(const MacroNames &names,
                                                                   qsizetype from) const
{
    CommentLookup comments = Comments();
    NextCharacter<EndsArguments> brackets(m_text);
    std::vector<std::vector<Call>> calls(names.GroupCount());
    for (qsizetype hit = from; (hit = m_text.indexOf(u'$', hit)) >= 0; ++hit) {
        if (hit > 0 && IsWordCharacter(m_text[hit - 1]))
            continue;
        names.ForEachAt(m_text, hit + 1, [&](qsizetype length, std::size_t group) {
            if (comments.IsCommented(hit))
                return;
            qsizetype end = hit + 1 + length;
            if (end < m_text.size() && m_text[end] == u'(') {
                const qsizetype bracket = brackets.From(end);
                if (bracket < m_text.size() && m_text[bracket] == u')')
                    end = bracket + 1;
            }
            calls[group].push_back({qint32(hit), {hit + 1, end}});
        });
    }
    return calls;
}

void Scanners::SearchInclude()
{
    CommentLookup comments = Comments();
    NextCharacter<EndsInclude> ends(m_text);
    qint32 root = -1;
    qint32 number = 0;
    for (const qsizetype hit : m_includes) {
        if (comments.IsCommented(hit))
            continue;
        const qsizetype start = hit + qsizetype(Include.size());
        const qsizetype end = ends.From(start);
        // More than the delimiters of the name, which are whatever stands at its ends.
        if (!IsLongerNormalized(m_text.sliced(start, end - start), 2))
            continue;
        if (root < 0)
            root = m_builder.AddRoot(OutlineKind::Include);
        m_builder.Add({.kind = OutlineKind::Include,
                       .parent = root,
                       .number = ++number,
                       .tag = qint32(hit),
                       .caption = {start, end}});
    }
}

/// The offsets of the tags that the sections of a unified document lie between, -1 for one that is missing.
struct SectionTags {
    qsizetype instruments = -1, instrumentsEnd = -1, score = -1, scoreEnd = -1;
};

SectionTags FindSectionTags(QStringView text)
{
    SectionTags tags;
    const std::pair<QStringView, qsizetype &> wanted[] = {{u"<CsInstruments>", tags.instruments},
                                                          {u"</CsInstruments>", tags.instrumentsEnd},
                                                          {u"<CsScore>", tags.score},
                                                          {u"</CsScore>", tags.scoreEnd}};
    for (qsizetype sign = -1; (sign = text.indexOf(u'<', sign + 1)) >= 0;) {
        for (const auto &[tag, found] : wanted) {
            if (found < 0 && text.sliced(sign).startsWith(tag))
                found = sign;
        }
    }
    return tags;
}

} // namespace

Outline ScanOutline(const QString &text, FileKind kind)
{
    Scanners scanners(text);
    scanners.CollectBlockComments();
    const auto scanScore = [&](qsizetype start, qsizetype end, qsizetype firstTag) {
        scanners.SearchEndOFSection(start, end, firstTag);
        scanners.SearchNamedSection(start, end);
        scanners.SearchFTables(start, end);
    };
    switch (kind) {
    case FileKind::Orchestra:
        scanners.SearchInstr(0, text.size());
        break;
    case FileKind::Score:
        scanScore(0, text.size(), 0);
        break;
    case FileKind::Unified: {
        scanners.SearchTags();
        const SectionTags tags = FindSectionTags(text);
        if (tags.instruments >= 0 && tags.instrumentsEnd >= 0)
            scanners.SearchInstr(tags.instruments, tags.instrumentsEnd);
        if (tags.score >= 0 && tags.scoreEnd >= 0)
            scanScore(tags.score, tags.scoreEnd, tags.score + 1); // kept: counted from 1
        break;
    }
    default:
        return {};
    }
    scanners.FindDirectives();
    scanners.SearchMacro();
    scanners.SearchInclude();
    return scanners.Done();
}

} // namespace zelvane
