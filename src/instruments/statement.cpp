// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statement.h"

#include "platform/numbers.h"

#include <algorithm>

namespace zelvane
{

namespace
{

bool IsWhiteSpace(QChar unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

/// Whether a token that begins with it is the next statement.
bool OpensStatement(QChar unit)
{
    return QStringView(u"fiatsbmnrvew").contains(unit);
}

/// What `<` at the start of a token is: the start of a tag, or a value of its own.
enum class AngleMark { Ends, IsToken };

/// Calls `closed(start, end)` for each token that a blank or a semicolon closes.
/// @return whether a semicolon has ended the walk
template <typename Closed>
bool WalkTokens(QStringView text, qsizetype from, AngleMark angle, const Closed &closed)
{
    bool inBlank = true;
    bool inBracket = false;
    bool inQuote = false;
    qsizetype start = 0;
    for (qsizetype at = from; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (IsWhiteSpace(unit) || unit == u';') {
            if (!inBracket && !inQuote && !inBlank) {
                inBlank = true;
                closed(start, at);
            }
            if (unit == u';')
                return true;
            continue;
        }
        if (unit == u'[')
            inBracket = true;
        else if (unit == u']')
            inBracket = false;
        else if (unit == u'"')
            inQuote = !inQuote;
        if (unit == u'/' && at + 1 < text.size() && text[at + 1] == u'*')
            return false;
        if (!inBlank)
            continue;
        if (OpensStatement(unit) || (unit == u'<' && angle == AngleMark::Ends))
            return false;
        start = at;
        inBlank = false;
    }
    return false;
}

} // namespace

std::optional<qsizetype> FindStatement(QStringView text, qsizetype caret)
{
    caret = std::min(caret, text.size());
    for (qsizetype at = caret; at >= 0; --at) {
        // A line end under the caret belongs to its line; one before it ends the line before.
        if (at < caret && text[at] == u'\n')
            break;
        if (at < text.size() && text[at] == u'i' && (at == 0 || IsWhiteSpace(text[at - 1])))
            return at;
    }
    return std::nullopt;
}

qint16 StatementInstrument(QStringView text, qsizetype caret)
{
    const std::optional<qsizetype> letter = FindStatement(text, caret);
    if (!letter)
        return -1;
    // The last character of the text is never looked at.
    qsizetype end = *letter + 1;
    while (end + 1 < text.size() && IsDigit(text[end]))
        ++end;
    return ToInteger<qint16>(Val(text.sliced(*letter + 1, end - *letter - 1)));
}

std::optional<Statement> ParseStatement(QStringView text, qsizetype caret)
{
    const std::optional<qsizetype> letter = FindStatement(text, caret);
    if (!letter)
        return std::nullopt;
    const qsizetype start = *letter + 1;
    Statement statement{.range = {start, start}, .values = {}};
    const bool semicolon =
        WalkTokens(text, start, AngleMark::Ends, [&](qsizetype tokenStart, qsizetype tokenEnd) {
            statement.values.append(text.sliced(tokenStart, tokenEnd - tokenStart).toString());
            statement.range.end = tokenEnd;
        });
    if (statement.values.isEmpty())
        return std::nullopt;
    if (semicolon)
        --statement.range.end;
    return statement;
}

QString WriteStatement(QStringView text, const QStringList &values)
{
    QString written;
    qsizetype copied = 0;
    qsizetype token = 0;
    WalkTokens(text, 0, AngleMark::IsToken, [&](qsizetype start, qsizetype end) {
        if (token < values.size()) {
            written += text.sliced(copied, start - copied);
            written += values[token];
            copied = end;
        }
        ++token;
    });
    return written + text.sliced(copied).toString();
}

} // namespace zelvane
