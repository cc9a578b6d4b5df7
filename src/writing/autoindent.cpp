// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/autoindent.h"

#include "language/findmark.h"
#include "writing/codemap.h"

#include <algorithm>
#include <iterator>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

using Role = BlockWord::Role;

constexpr qsizetype MostBlanks = 8; ///< of one step; more of them put something below something else

bool IsBlankChar(QChar c)
{
    return c == u' ' || c == u'\t';
}

/// The blanks and tabs that a text begins with.
QStringView LeadingBlanks(QStringView text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), IsBlankChar);
    return text.first(end - text.begin());
}

/// The blanks and tabs of the first line that holds more than these.
QStringView FirstBlanks(QStringView text)
{
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype end = text.indexOf(u'\n', start);
        const QStringView line = text.sliced(start, (end < 0 ? text.size() : end) - start);
        if (const QStringView blanks = LeadingBlanks(line); blanks.size() < line.size())
            return blanks;
        start += line.size() + 1;
    }
    return {};
}

/// What one line is indented by more than another, if that is one tab or a few blanks.
QStringView StepBetween(QStringView outer, QStringView inner)
{
    if (inner.size() <= outer.size() || !inner.startsWith(outer))
        return {};
    const QStringView step = inner.sliced(outer.size());
    const bool plain = step == u"\t" || (step.size() <= MostBlanks && step.count(u' ') == step.size());
    return plain ? step : QStringView();
}

bool IsShort(const BlockWord &word)
{
    return word.role == Role::Closes && word.end - word.start == 2 && word.kind != BlockKind::Braces;
}

/// Where the first block comment that nothing closes begins, the text's length without one.
qsizetype FindOpenComment(QStringView text, const CodeMap &map)
{
    qsizetype found = text.size();
    map.ForEach(
        0, text.size(),
        [&](qsizetype from, qsizetype to) {
            const qsizetype mark = found < text.size() ? -1 : FindMark(text.first(to), u'/', u'*', from);
            if (mark >= 0)
                found = mark;
        },
        [](const CodeStretch &) {});
    return found;
}

} // namespace

AutoIndenter::AutoIndenter(QStringView before, bool isWhole, FileKind kind, QStringView unit)
    : m_before(before),
      m_unit(unit),
      m_lineStart(before.lastIndexOf(u'\n') + 1),
      m_blanks(LeadingBlanks(before.sliced(m_lineStart)))
{
    FindSection(isWhole, kind);
}

void AutoIndenter::FindSection(bool isWhole, FileKind kind)
{
    m_mode = kind == FileKind::Score                                                  ? ScanMode::Score
             : kind == FileKind::Orchestra || (kind == FileKind::Unified && !isWhole) ? ScanMode::Orchestra
                                                                                      : ScanMode::None;
    if (kind == FileKind::Unified) {
        qsizetype last = -1;
        const auto find = [&](QStringView tag, ScanMode mode) {
            const qsizetype at = m_before.lastIndexOf(tag);
            if (at > last) {
                last = at;
                m_mode = mode;
                m_start = at + tag.size();
            }
        };
        find(u"<CsInstruments>", ScanMode::Orchestra);
        find(u"</CsInstruments>", ScanMode::None);
        find(u"<CsScore>", ScanMode::Score);
        find(u"</CsScore>", ScanMode::None);
    }
    if (isWhole || m_start > 0)
        return;
    // A comment or a string that began earlier ends at a mark that nothing opens.
    const auto skip = [&](QStringView opening, QStringView closing) {
        const qsizetype end = m_before.indexOf(closing);
        const qsizetype begin = m_before.indexOf(opening);
        if (end >= 0 && (begin < 0 || end < begin))
            m_start = std::max(m_start, end + closing.size());
    };
    skip(u"/*", u"*/");
    if (m_mode == ScanMode::Orchestra)
        skip(u"{{", u"}}");
}

QStringView AutoIndenter::BlanksAt(qsizetype offset) const
{
    return LeadingBlanks(m_before.sliced(m_before.first(offset).lastIndexOf(u'\n') + 1));
}

QStringView AutoIndenter::StepBelow(const BlockWord &word) const
{
    const QStringView above = m_before.first(m_start + word.start);
    const auto blanks = std::find_if_not(above.rbegin(), above.rend(), IsBlankChar) - above.rbegin();
    const bool first = blanks == above.size() || above[above.size() - blanks - 1] == u'\n';
    const qsizetype below = first ? m_before.indexOf(u'\n', m_start + word.end) + 1 : 0;
    if (below <= 0 || below >= m_lineStart)
        return {};
    return StepBetween(above.last(blanks), FirstBlanks(m_before.sliced(below, m_lineStart - below)));
}

AutoIndenter::Line AutoIndenter::Read() const
{
    Line line;
    if (m_mode == ScanMode::None)
        return line;
    const QStringView text = m_before.sliced(m_start);
    const CodeMap map(text, m_mode);
    const qsizetype known = FindOpenComment(text, map);
    const qsizetype lineStart = m_lineStart - m_start;
    const qsizetype firstAt = lineStart + m_blanks.size();
    for (const BlockWord &word : FindBlockWords(text, map, {0, text.size(), m_mode})) {
        if (word.start >= known)
            break;
        if (word.kind == BlockKind::Directive)
            continue;
        if (word.role == Role::Opens) {
            if (const QStringView step = StepBelow(word); !step.isEmpty())
                line.step = step;
        }
        const Block block = line.pairs.Take(word);
        if (word.start == firstAt) {
            line.first = word;
            line.firstOpened = block.end > 0 ? m_start + block.start : -1;
        } else if (word.role == Role::Closes && word.start > firstAt && block.end > 0) {
            line.lastOpened = block.start < lineStart ? m_start + block.start : -1;
        }
        // What follows two braces without a partner stands in their string.
        if (word.kind == BlockKind::Braces && word.role == Role::Opens &&
            map.At(word.start) == CodePart::Code)
            break;
    }
    const std::vector<BlockWord> &open = line.pairs.Open();
    line.opens = !open.empty() && open.back().end > lineStart;
    return line;
}

std::optional<QString> AutoIndenter::LessBlanks(qsizetype opened) const
{
    if (opened < 0 || opened >= m_lineStart)
        return {};
    const QStringView blanks = BlanksAt(opened);
    if (blanks.size() >= m_blanks.size() || !m_blanks.startsWith(blanks))
        return {};
    return blanks.toString();
}

EnterIndent AutoIndenter::Enter(QStringView behind, QStringView below) const
{
    EnterIndent result;
    const Line line = Read();
    if (IsBlank() && !m_blanks.isEmpty())
        result.line = QString();
    else if (line.first && IsShort(*line.first))
        result.line = LessBlanks(line.firstOpened);
    const QString own = !IsBlank() && result.line ? *result.line : m_blanks.toString();

    result.next = own;
    const bool parts = line.first && line.first->role == Role::Parts && line.firstOpened >= 0;
    const QStringView step = StepBetween(own, FirstBlanks(below));
    if (line.opens || parts)
        result.next += !step.isEmpty() ? step : !line.step.isEmpty() ? line.step : m_unit;
    else if (line.lastOpened >= 0)
        result.next = BlanksAt(line.lastOpened).toString();

    const QStringView rest = behind.sliced(LeadingBlanks(behind).size());
    const CodeMap map(rest, m_mode);
    const std::vector<BlockWord> words = FindBlockWords(rest, map, {0, rest.size(), m_mode});
    if (m_mode == ScanMode::None || words.empty() || words.front().start != 0 ||
        words.front().role == Role::Opens || words.front().kind == BlockKind::Directive)
        return result;
    BlockPairs pairs = line.pairs;
    if (const Block block = pairs.Take(words.front()); block.end > 0) {
        const qsizetype opened = m_start + block.start;
        result.next = opened >= m_lineStart ? own : BlanksAt(opened).toString();
    }
    return result;
}

bool AutoIndenter::MayClose(QStringView line, Typed typed)
{
    static const QStringView letters[] = {u"endin",  u"endop", u"endif", u"else",
                                          u"elseif", u"}}",    u"}",     u"#"};
    static const QStringView blanks[] = {u"fi", u"od"};
    if (typed == Typed::Letter)
        return std::find(std::begin(letters), std::end(letters), line) != std::end(letters);
    return !line.isEmpty() && IsBlankChar(line.back()) &&
           std::find(std::begin(blanks), std::end(blanks), line.chopped(1)) != std::end(blanks);
}

std::optional<QString> AutoIndenter::Closing(Typed typed) const
{
    if (!MayClose(m_before.sliced(m_lineStart + m_blanks.size()), typed))
        return {};
    const Line line = Read();
    if (!line.first || line.first->role == Role::Opens || IsShort(*line.first) != (typed == Typed::Blank))
        return {};
    return LessBlanks(line.firstOpened);
}

bool AutoIndenter::BeginsWithClosing() const
{
    const Line line = Read();
    return line.first && line.first->role != Role::Opens && line.firstOpened >= 0;
}

} // namespace zelvane
