// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/findtext.h"

#include <array>
#include <functional>
#include <optional>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// A regular expression to search texts for. "^" and "$" are the ends of lines, "\w" is any letter, digit or
/// underscore.
class FindPattern
{
public:
    /// @param options a whole word has no letter, digit or underscore next to it
    FindPattern(const QString &expression, FindOptions options);

    bool IsValid() const { return m_expression.isValid(); }
    /// What is wrong with the expression, and where in it, from 1; empty when nothing is.
    QString Error() const;
    int GroupCount() const { return m_expression.captureCount(); }

private:
    friend class PatternSearch;

    QRegularExpression m_expression;
    std::array<QRegularExpression, 3> m_bounded; ///< of fewer steps, the fewest first
    bool m_wholeWords;
};

/// A place where an expression matches. It may be empty.
struct PatternHit {
    TextSpan span;
    std::vector<TextSpan> groups; ///< the hit itself, then the groups from 1; {-1, -1} for one left out
};

/// The search of one text for an expression. No expression can hold it up: it asks whether to go on between
/// stretches of about a thousand characters, and where the expression makes work, between the places where a
/// hit may start. An attempt at one place has a limit of steps, and is given up where they would take
/// seconds of the processor: what other programs take of it does not count.
class PatternSearch
{
public:
    /// @param end what lies behind it is not searched, and "$" matches there; -1 is the text's length. What
    /// is next to a whole word counts also beyond it.
    /// @param stretch characters that are searched between two questions
    PatternSearch(const FindPattern &pattern, const QString &text, qsizetype end = -1,
                  qsizetype stretch = 1024);

    /// Asked between stretches; the search ends where the answer is true.
    void SetStop(std::function<bool()> stop) { m_stop = std::move(stop); }

    /// The first hit that starts at `from` or behind it. No value without one, and where the search was given
    /// up.
    std::optional<PatternHit> Next(qsizetype from);
    /// The first hit behind another one: an empty hit must not touch it.
    std::optional<PatternHit> NextBehind(const TextSpan &hit);

    /// Whether the expression needed more steps for an attempt than it may have, or the search was stopped.
    bool GaveUp() const { return m_gaveUp; }
    const QString &Text() const { return m_text; }

private:
    /// What an attempt at one place comes to.
    enum class Attempt { Hit, Nothing, TooHard };

    /// How far a search has come.
    struct Progress {
        qsizetype from = 0;
        qsizetype end = 0;     ///< of the stretch
        qsizetype byPlace = 0; ///< up to here each place is tried by itself
    };

    std::optional<PatternHit> NextOfAnyWords(qsizetype from);
    /// @return whether the search has ended, with a hit or without
    bool SearchPlace(Progress &at, std::optional<PatternHit> &hit);
    /// All places of the stretch at once. @return the same
    bool SearchStretch(Progress &at, std::optional<PatternHit> &hit) const;
    /// Whether the rest of the text is searched quickly, with a hit or without: the processor time of
    /// growing parts of it tells.
    bool IsWholeQuick(qsizetype from) const;
    Attempt AttemptAt(qsizetype place, PatternHit &hit) const;
    static PatternHit HitOf(const QRegularExpressionMatch &match);
    /// The end of a stretch: behind the first character of a line where one is near.
    qsizetype StretchEnd(qsizetype least) const;
    /// The offset itself, or the next one where it stands in the middle of a character.
    qsizetype WholeCharacter(qsizetype offset) const;
    qsizetype BehindCharacter(qsizetype offset) const;

    std::array<QRegularExpression, 4> m_expressions; ///< the fewest steps first
    bool m_wholeWords;
    QString m_text;
    qsizetype m_end;
    qsizetype m_stretch;
    std::function<bool()> m_stop;
    bool m_gaveUp = false;
};

/// What is said of a regular expression that cannot be used.
QString BadPatternText(const QString &expression, const QString &error);

/// What is wrong with a replacement text; empty when nothing is. In it "\0" is the hit, "\1" to "\9" are the
/// groups, "\n" is a line end, "\t" a tab and "\\" a backslash; any other backslash stands for itself.
QString ReplacementError(QStringView replacement, int groupCount);

/// What a replacement text puts in the place of a hit.
QString ReplacementOf(QStringView replacement, const QString &text, const PatternHit &hit);

/// All that Replace All does from `start` on. A hit is looked for in the text as it was, behind the one
/// before; an empty hit does not touch the one before. Where the search gives up, the list is not whole.
std::vector<TextReplacement> PatternReplacements(PatternSearch &search, QStringView replacement,
                                                 qsizetype start);

} // namespace zelvane
