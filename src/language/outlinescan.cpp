// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/blockcomments.h"
#include "language/closingtags.h"
#include "language/commentlookup.h"
#include "language/macronames.h"
#include "language/outline.h"
#include "language/outlinebuilder.h"
#include "language/outlinenode.h"
#include "language/outlinewalks.h"
#include "platform/textbuffer.h"
#include "shell/findtext.h"
#include "shell/separators.h"

#include <algorithm>
#include <cstddef>
#include <QString>
#include <QStringView>
#include <string_view>
#include <utility>
#include <vector>

namespace zelvane
{

namespace
{

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
    // The hits come by their ends; comments are looked for from the beginning on.
    CommentLookup comments = Comments();
    std::vector<bool> mayBegin(std::size_t(m_text.size()));
    NextCharacter<EndsArguments> brackets(m_text);
    std::vector<std::vector<Call>> calls(names.GroupCount());
    const auto sign = [&](qsizetype start) {
        mayBegin[std::size_t(start)] =
            (start == 0 || !IsWordCharacter(m_text[start - 1])) && !comments.IsCommented(start);
    };
    const auto found = [&](qsizetype start, qsizetype end, std::size_t group) {
        if (!mayBegin[std::size_t(start)])
            return;
        if (end < m_text.size() && m_text[end] == u'(') {
            const qsizetype bracket = brackets.From(end);
            if (bracket < m_text.size() && m_text[bracket] == u')')
                end = bracket + 1;
        }
        calls[group].push_back({qint32(start), {start + 1, end}});
    };
    names.ForEachCall(m_text, from, sign, found);
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
