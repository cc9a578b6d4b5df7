// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/reformatter.h"

#include "platform/runtimeerror.h"

#include <algorithm>
#include <array>
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
bool IsBlankOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}
bool IsLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
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

private:
    static constexpr qsizetype Stretch = 1 << 16;
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
    QString result = text.toString();
    for (qsizetype i = 0; i < result.size(); ++i) {
        if (pace.Stopped(i))
            return std::nullopt;
        if (result[i] == what)
            result[i] = with;
    }
    return result;
}

/// Runs of two or more blanks become one `with`; a run that reaches the end of the text leaves its last blank
/// standing. With `single`, lone blanks become one `with` too, and so does the blank left at the end.
std::optional<QString> ReplaceRuns(QStringView text, QChar with, bool single, Pace &pace)
{
    QString result;
    result.reserve(text.size());
    qsizetype i = 0;
    while (i < text.size()) {
        if (pace.Stopped(i))
            return std::nullopt;
        const qsizetype blank = text.indexOf(u' ', i);
        if (blank < 0)
            break;
        result.append(text.sliced(i, blank - i));
        const bool several = blank + 1 < text.size() && IsBlank(text[blank + 1]);
        i = several ? WalkEnd(text, blank, IsBlank) : blank + 1;
        result.append(several || single ? with : QChar(u' '));
    }
    return result.append(text.sliced(i));
}

std::optional<QString> ExpandTabs(QStringView text, int tabSpaces, Pace &pace)
{
    if (tabSpaces < 1)
        throw RunTimeError(ErrorNumber::InvalidCall, u"The 'Tab spaces' setting has to be at least 1."_s,
                           u"Reformatter"_s);
    QString result;
    result.reserve(text.size());
    qsizetype lineStart = 0; // in the result
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QChar c = text[i];
        if (c == u'\t') {
            // Kept: the column counts from 2, so a tab in the first column is one blank short.
            const qsizetype column = result.size() - lineStart + 2;
            result.append(QString(tabSpaces - column % tabSpaces, u' '));
            continue;
        }
        result.append(c);
        if (IsLineEnd(c))
            lineStart = result.size();
    }
    return result;
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
    std::vector<Blanks> blanks;  // those that stand before line ends, in order
    std::vector<size_t> nearest; // which of them no other character separates from the present place
    qsizetype searchFrom = 0;
    qsizetype blankStart = 0; // of the blanks right before i
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (pace.Stopped(i))
            return std::nullopt;
        const QChar c = text[i];
        if (IsBlankOrTab(c))
            continue;
        if (!IsLineEnd(c)) {
            nearest.clear();
        } else {
            if (i > blankStart) {
                nearest.push_back(blanks.size());
                blanks.push_back({blankStart, i - blankStart});
            }
            if (c == u'\n' && i >= searchFrom && !nearest.empty()) {
                Blanks &last = blanks[nearest.back()];
                last.removed = true;
                nearest.pop_back();
                searchFrom = i + 1 + last.length;
            }
        }
        blankStart = i + 1;
    }

    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    for (const Blanks &run : blanks) {
        if (run.removed) {
            result.append(text.sliced(copied, run.start - copied));
            copied = run.start + run.length;
        }
    }
    return result.append(text.sliced(copied));
}

/// Behind each line feed, removes what stands there of a kind.
template <typename Kind> std::optional<QString> RemoveBehindFeeds(QStringView text, Kind isOfKind, Pace &pace)
{
    QString result;
    result.reserve(text.size());
    qsizetype i = 0;
    while (i < text.size()) {
        if (pace.Stopped(i))
            return std::nullopt;
        const qsizetype feed = text.indexOf(u'\n', i);
        if (feed < 0)
            break;
        result.append(text.sliced(i, feed + 1 - i));
        i = WalkEnd(text, feed + 1, isOfKind);
    }
    return result.append(text.sliced(i));
}

std::optional<QString> JoinBlankLines(QStringView text, Pace &pace)
{
    const qsizetype last = text.size() - 1;
    QString result;
    result.reserve(text.size());
    qsizetype i = 0;
    while (i < text.size()) {
        if (pace.Stopped(i))
            return std::nullopt;
        const qsizetype feed = text.indexOf(u'\n', i);
        if (feed < 0)
            break;
        const qsizetype p = WalkEnd(text, feed + 1, [](QChar c) { return c == u'\r'; });
        const qsizetype behind = std::min(p + 1, text.size());
        result.append(text.sliced(i, behind - i));
        const bool blank = p >= last || text[p] == u'\n';
        i = blank ? WalkEnd(text, behind, IsLineEnd) : behind;
    }
    return result.append(text.sliced(std::min(i, text.size())));
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
    const std::optional<QString> result =
        Reformat(algorithm, editor.text.SelectedText(), editor.settings.Integer(Keys::TabSpaces), goOn);
    if (!result)
        return false;
    editor.text.ReplaceSelection(*result);
    editor.text.SetSelection(start, start + result->size());
    return true;
}

} // namespace zelvane
