// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/reformatter.h"

#include "platform/runtimeerror.h"
#include "platform/textwriter.h"
#include "shell/separators.h"
#include "shell/tabwidth.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsBlank(QChar c)
{
    return c == u' ';
}

/// Asks whether to go on once for each stretch of text, so that asking costs nothing beside the work.
class Pace
{
public:
    explicit Pace(const GoOn &goOn) : m_goOn(goOn) {}

    /// @param at how far the run has come, in characters. @return false when the run is to end
    bool Stopped(qsizetype at)
    {
        if (at < m_next || !m_goOn)
            return false;
        m_next = at + Stretch;
        return !m_goOn();
    }

    static constexpr qsizetype Stretch = 1 << 16;

private:
    const GoOn &m_goOn;
    qsizetype m_next = 0;
};

/// Where a walk from `from` over characters of a kind ends. The last character of the text is not looked at.
template <typename Kind> qsizetype WalkEnd(QStringView text, qsizetype from, Kind isOfKind)
{
    while (from < text.size() - 1 && isOfKind(text[from]))
        ++from;
    return from;
}

std::optional<QString> ReplaceEach(QStringView text, QChar what, QChar with, Pace &pace)
{
    QString result(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); i += Pace::Stretch) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QStringView piece = text.sliced(i, std::min(text.size() - i, Pace::Stretch));
        std::replace_copy(piece.begin(), piece.end(), result.data() + i, what, with);
    }
    return result;
}

/// Runs of two or more blanks become one `with`; a run that reaches the end of the text leaves its last blank
/// standing. With `single`, lone blanks become one `with` too, and so does the blank left at the end.
std::optional<QString> ReplaceRuns(QStringView text, QChar with, bool single, Pace &pace)
{
    TextWriter result(text.size());
    for (qsizetype i = 0; i < text.size();) {
        if (pace.Stopped(i))
            return std::nullopt;
        if (!IsBlank(text[i])) {
            result.Put(text[i++]);
            continue;
        }
        const bool several = i + 1 < text.size() && IsBlank(text[i + 1]);
        i = several ? WalkEnd(text, i, IsBlank) : i + 1;
        result.Put(several || single ? with : QChar(u' '));
    }
    return result.Take();
}

std::optional<QString> ExpandTabs(QStringView text, int tabSpaces, Pace &pace)
{
    if (tabSpaces < 1)
        throw RunTimeError(ErrorNumber::InvalidCall, u"The 'Tab spaces' setting has to be at least 1."_s,
                           u"Reformatter"_s);
    // Kept: the column counts from 2, so a tab in the first column is one blank short.
    const auto blanksAt = [tabSpaces](qsizetype column) { return tabSpaces - (column + 2) % tabSpaces; };

    qsizetype size = 0;
    qsizetype column = 0;
    for (const QChar c : text) {
        const qsizetype width = c == u'\t' ? blanksAt(column) : 1;
        size += width;
        column = IsLineEnd(c) ? 0 : column + width;
    }
    if (size > std::numeric_limits<qint32>::max())
        throw OutOfMemory(u"Reformatter"_s);

    TextWriter result(size);
    column = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (pace.Stopped(i))
            return std::nullopt;
        if (text[i] == u'\t') {
            const qsizetype width = blanksAt(column);
            result.Put(width, u' ');
            column += width;
            continue;
        }
        result.Put(text[i]);
        column = IsLineEnd(text[i]) ? 0 : column + 1;
    }
    return result.Take();
}

/// Each line feed takes away the nearest blanks before it that have nothing but line ends behind them, and
/// the search for the next one goes on as if nothing had been taken. So a feed that is passed over leaves its
/// blanks to a later one.
std::optional<QString> RemoveTrailing(QStringView text, Pace &pace)
{
    struct Blanks {
        qsizetype start, length;
        bool removed = false;
    };
    // Between two other characters: the blanks that stand before line ends, and which of them still stand.
    std::vector<Blanks> blanks;
    std::vector<size_t> standing;
    TextWriter result(text.size());
    qsizetype copied = 0;
    const auto copyTo = [&](qsizetype end) {
        for (const Blanks &run : blanks) {
            if (run.removed) {
                result.Put(text.sliced(copied, run.start - copied));
                copied = run.start + run.length;
            }
        }
        result.Put(text.sliced(copied, end - copied));
        copied = end;
        blanks.clear();
        standing.clear();
    };

    qsizetype searchFrom = 0;
    qsizetype blankStart = 0; // of the blanks right before i
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QChar c = text[i];
        if (IsBlankOrTab(c))
            continue;
        if (!IsLineEnd(c)) {
            if (!blanks.empty())
                copyTo(i);
        } else {
            if (i > blankStart) {
                standing.push_back(blanks.size());
                blanks.push_back({blankStart, i - blankStart});
            }
            if (c == u'\n' && i >= searchFrom && !standing.empty()) {
                Blanks &last = blanks[standing.back()];
                last.removed = true;
                standing.pop_back();
                searchFrom = i + 1 + last.length;
            }
        }
        blankStart = i + 1;
    }
    copyTo(text.size());
    return result.Take();
}

/// Behind each line feed, removes what stands there of a kind.
template <typename Kind> std::optional<QString> RemoveBehindFeeds(QStringView text, Kind isOfKind, Pace &pace)
{
    TextWriter result(text.size());
    for (qsizetype i = 0; i < text.size();) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QChar c = text[i++];
        result.Put(c);
        if (c == u'\n')
            i = WalkEnd(text, i, isOfKind);
    }
    return result.Take();
}

std::optional<QString> JoinBlankLines(QStringView text, Pace &pace)
{
    const qsizetype last = text.size() - 1;
    TextWriter result(text.size());
    for (qsizetype i = 0; i < text.size();) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QChar c = text[i++];
        result.Put(c);
        if (c != u'\n')
            continue;
        const qsizetype p = WalkEnd(text, i, [](QChar e) { return e == u'\r'; });
        const qsizetype behind = std::min(p + 1, text.size());
        result.Put(text.sliced(i, behind - i));
        const bool blank = p >= last || text[p] == u'\n';
        i = blank ? WalkEnd(text, behind, IsLineEnd) : behind;
    }
    return result.Take();
}

} // namespace

std::span<const FormattingAlgorithmText> FormattingAlgorithmTexts()
{
    static const std::array<FormattingAlgorithmText, 10> texts = {{
        {u"One space to one tab"_s, u"Replace spaces with tab characters."_s},
        {u"Multiple spaces to one tab"_s,
         u"Replace consecutive multiple spaces with a single tab character."_s},
        {u"One or multiple spaces to one tab"_s,
         u"Replace single spaces or consecutive multiple spaces with a single tab character."_s},
        {u"Multiple spaces to one space"_s, u"Replace consecutive multiple spaces with a single space."_s},
        {u"One tab to one space"_s, u"Replace tab characters with spaces."_s},
        {u"One tab to multiple spaces"_s,
         u"Replace tab characters with a variable number of spaces in order to mantain tabulation. "
         "This algorythm uses the 'Tab spaces' setting to determine the number of spaces to be inserted."_s},
        {u"Remove trailing spaces and tabs"_s,
         u"Remove spaces and tab characters at the end of each line."_s},
        {u"Remove line indent"_s, u"Remove spaces and tab characters at the beginning of each line."_s},
        {u"Multiple blank lines to one blank line"_s,
         u"Replace consecutive multiple blank lines with a single blank line. "
         "Note that lines containing only spaces or tabs are not considered blank."_s},
        {u"Remove blank lines"_s,
         u"Remove all blank lines. Note that lines containing only spaces or tabs are not considered blank."_s},
    }};
    return texts;
}

std::optional<QString> Reformat(FormattingAlgorithm algorithm, QStringView text, int tabSpaces,
                                const GoOn &goOn)
{
    Pace pace(goOn);
    switch (algorithm) {
    case FormattingAlgorithm::OneSpaceToOneTab:
        return ReplaceEach(text, u' ', u'\t', pace);
    case FormattingAlgorithm::MultipleSpacesToOneTab:
        return ReplaceRuns(text, u'\t', false, pace);
    case FormattingAlgorithm::OneOrMultipleSpacesToOneTab:
        return ReplaceRuns(text, u'\t', true, pace);
    case FormattingAlgorithm::MultipleSpacesToOneSpace:
        return ReplaceRuns(text, u' ', false, pace);
    case FormattingAlgorithm::OneTabToOneSpace:
        return ReplaceEach(text, u'\t', u' ', pace);
    case FormattingAlgorithm::OneTabToMultipleSpaces:
        return ExpandTabs(text, tabSpaces, pace);
    case FormattingAlgorithm::RemoveTrailing:
        return RemoveTrailing(text, pace);
    case FormattingAlgorithm::RemoveLineIndent:
        return RemoveBehindFeeds(text, IsBlankOrTab, pace);
    case FormattingAlgorithm::MultipleBlankLinesToOne:
        return JoinBlankLines(text, pace);
    case FormattingAlgorithm::RemoveBlankLines:
        return RemoveBehindFeeds(text, IsLineEnd, pace);
    }
    return text.toString();
}

bool ReformatSelection(EditorContext &editor, FormattingAlgorithm algorithm, const GoOn &goOn)
{
    if (editor.text.Selection().IsEmpty())
        editor.text.SetSelection(0, -1);
    const qsizetype start = editor.text.Selection().start;
    // Read for the one algorithm that uses it: only that one has to tell of a value that cannot be read.
    const int tabSpaces =
        algorithm == FormattingAlgorithm::OneTabToMultipleSpaces ? TabWidth(editor.settings) : 0;
    const std::optional<QString> result = Reformat(algorithm, editor.text.SelectedText(), tabSpaces, goOn);
    if (!result)
        return false;
    editor.text.ReplaceSelection(*result);
    editor.text.SetSelection(start, start + result->size());
    return true;
}

} // namespace zelvane
