// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/caretplace.h"

#include "language/findmark.h"
#include "language/opcodelist.h"
#include "language/scanner.h"
#include "shell/findtext.h"
#include "shell/separators.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Some lines without what is no code: comments are blanks, strings are double quotes.
struct CodeOnly {
    QString text;
    TextPart atEnd = TextPart::Code;
};

CodeOnly WithoutComments(QStringView text)
{
    CodeOnly code{.text = text.toString()};
    // A comment and a string that are open at the end are closed by the range and by this line end.
    const QString scanned = code.text + u'\n';
    const OpcodeList none;
    const auto blank = [&](qsizetype start, qsizetype end, QChar with) {
        for (qsizetype i = start; i < std::min(end, code.text.size()); ++i) {
            if (!IsLineEnd(code.text[i]))
                code.text[i] = with;
        }
    };
    for (qsizetype from = 0; from < text.size();) {
        const StyleRuns runs = ScanRange(scanned, from, 0, ScanMode::Score, none).runs;
        qsizetype done = from;
        qsizetype lineComment = -1;
        for (const StyleRun &run : runs) {
            lineComment = FindMark(QStringView(scanned).first(run.start), u'/', u'/', done);
            if (lineComment >= 0)
                break;
            done = run.start + run.length;
            if (run.style == StyleClass::Macro)
                continue;
            blank(run.start, done, run.style == StyleClass::Literal ? u'"' : u' ');
            if (done > text.size())
                code.atEnd = run.style == StyleClass::Literal ? TextPart::String : TextPart::Comment;
        }
        if (lineComment < 0 && done < text.size()) {
            lineComment = FindMark(scanned, u'/', u'/', done);
            const qsizetype open = FindMark(scanned, u'/', u'*', done);
            if (open >= 0 && (lineComment < 0 || open < lineComment)) {
                blank(open, text.size(), u' ');
                code.atEnd = TextPart::Comment;
                break;
            }
        }
        if (lineComment < 0)
            break;
        const qsizetype end = scanned.indexOf(u'\n', lineComment);
        blank(lineComment, end, u' ');
        if (end >= text.size())
            code.atEnd = TextPart::Comment;
        from = end;
    }
    return code;
}

/// The letter that tells the type of a variable; a null character when it is none of one.
QChar RateOf(QStringView variable)
{
    if (variable.size() > 1 && variable.front() == u'g')
        variable = variable.sliced(1);
    const QChar letter = variable.isEmpty() ? QChar() : variable.front();
    return QStringView(u"akiSfwp").contains(letter) ? letter : QChar();
}

/// Reads a statement from its start to a place.
class CallReader
{
public:
    CallReader(const QString &text, qsizetype place, const std::function<bool(QStringView)> &isOpcode)
        : m_text(text), m_place(place), m_isOpcode(isOpcode)
    {
    }

    std::optional<OpcodeCall> Read()
    {
        m_frames.push_back({});
        while (m_at < m_place || (m_at == m_place && m_at < m_text.size() && IsWordAt(m_at))) {
            if (IsWordAt(m_at)) {
                if (std::optional<OpcodeCall> call = ReadWord())
                    return call;
            } else {
                ReadMark();
            }
        }
        for (auto frame = m_frames.rbegin(); frame != m_frames.rend(); ++frame) {
            if (!frame->call.opcode.isEmpty())
                return frame->call;
        }
        return {};
    }

private:
    struct Frame {
        OpcodeCall call;
        QChar closing; ///< null for the statement itself
    };

    bool IsWordAt(qsizetype at) const { return IsWordCharacter(m_text[at]); }
    QChar CharAt(qsizetype at) const { return at < m_text.size() ? m_text[at] : QChar(); }
    qsizetype WordEnd(qsizetype at) const
    {
        while (at < m_text.size() && IsWordAt(at))
            ++at;
        return at;
    }
    bool InStatement() const { return m_frames.size() == 1; }

    /// @return the call when the place is at the name of an opcode
    std::optional<OpcodeCall> ReadWord()
    {
        const qsizetype start = m_at;
        qsizetype end = WordEnd(start);
        const QStringView name = m_text.sliced(start, end - start);
        if (name.front().isDigit()) {
            m_at = end;
            return {};
        }
        // A suffix names one form of an opcode, or the rate of a function.
        QChar rate;
        if (CharAt(end) == u'.')
            end = WordEnd(end + 1);
        else if (const qsizetype behind = WordEnd(end + 1);
                 CharAt(end) == u':' && behind > end + 1 && CharAt(behind) == u'(') {
            rate = m_text[end + 1];
            end = behind;
        }
        m_at = end;
        const bool known = m_isOpcode(name);
        const bool isFunction = CharAt(end) == u'(';
        const bool isStatement = !isFunction && InStatement() && !m_isExpression &&
                                 m_frames[0].call.opcode.isEmpty() && known && IsStatementsOpcode(end);
        if (isFunction && known)
            m_function = {name.toString(), -1, rate, start};
        if (isStatement)
            m_frames[0].call = {name.toString(), -1, m_outputRate, start};
        if (m_place <= end && (isStatement || (isFunction && known)))
            return isStatement ? m_frames[0].call : m_function;
        if (isStatement) {
            m_frames[0].call.argument = 0;
        } else if (InStatement() && m_isFirst) {
            m_outputRate = RateOf(name);
            m_isFirst = false;
        }
        return {};
    }

    /// Whether an opcode can end here: neither a variable of its name nor a label does so.
    bool IsStatementsOpcode(qsizetype end) const
    {
        while (end < m_text.size() && IsSeparator(m_text[end]))
            ++end;
        const QChar c = CharAt(end);
        const bool isAssigned = c == u'=' || (QStringView(u"+-*/").contains(c) && CharAt(end + 1) == u'=');
        return !isAssigned && c != u',' && c != u':';
    }

    void ReadMark()
    {
        const QChar c = m_text[m_at];
        switch (c.unicode()) {
        case u'(':
            m_frames.push_back({m_function, u')'});
            if (!m_function.opcode.isEmpty())
                m_frames.back().call.argument = 0;
            m_function = {};
            break;
        case u'[':
            m_frames.push_back({{}, u']'});
            break;
        case u')':
        case u']':
            if (m_frames.back().closing == c)
                m_frames.pop_back();
            break;
        case u',':
            if (!m_frames.back().call.opcode.isEmpty())
                ++m_frames.back().call.argument;
            break;
        case u'=':
            if (InStatement() && m_frames[0].call.opcode.isEmpty())
                m_isExpression = true;
            break;
        case u':':
            if (InStatement() && !m_isExpression && m_frames[0].call.opcode.isEmpty()) {
                m_isFirst = true; // that was a label
                m_outputRate = {};
            }
            break;
        case u'{':
            if (CharAt(m_at + 1) == u'{') { // a string of several lines
                const qsizetype close = FindMark(m_text, u'}', u'}', m_at + 2);
                m_at = close < 0 ? m_text.size() : close + 1;
            }
            break;
        default:
            break;
        }
        ++m_at;
    }

    QStringView m_text;
    qsizetype m_place;
    const std::function<bool(QStringView)> &m_isOpcode;
    qsizetype m_at = 0;
    std::vector<Frame> m_frames; ///< the statement, and the brackets that are open
    OpcodeCall m_function;       ///< whose bracket comes next
    QChar m_outputRate;
    bool m_isFirst = true;       ///< no word of the statement has been read yet
    bool m_isExpression = false; ///< a "=" has been read: what follows holds functions only
};

} // namespace

TextPart PartAtEnd(QStringView beginning, bool inComment)
{
    if (inComment) {
        const qsizetype close = FindMark(beginning, u'*', u'/', 0);
        if (close < 0)
            return TextPart::Comment;
        beginning = beginning.sliced(close + 2);
    }
    return WithoutComments(beginning).atEnd;
}

QString CodeOf(QStringView text)
{
    return WithoutComments(text).text;
}

bool IsInside(const std::vector<TextSpan> &spans, qsizetype offset, qsizetype textLength)
{
    auto behind = std::lower_bound(spans.begin(), spans.end(), offset,
                                   [](const TextSpan &span, qsizetype at) { return span.start < at; });
    if (behind == spans.begin())
        return false;
    --behind;
    return offset < behind->end || (offset == textLength && behind->end == textLength);
}

std::optional<WordAt> FindWord(QStringView line, qsizetype place)
{
    qsizetype start = place;
    qsizetype end = place;
    while (start > 0 && IsWordCharacter(line[start - 1]))
        --start;
    while (end < line.size() && IsWordCharacter(line[end]))
        ++end;
    // The one name of the language that begins with a digit.
    const QStringView word = line.sliced(start, end - start);
    if (!word.isEmpty() && word.front().isDigit() && !QStringView(u"0dbfs").startsWith(word))
        return {};
    if (start > 0 && line[start - 1] == u'$')
        --start;
    return WordAt{{start, end}, line.sliced(start, place - start)};
}

std::optional<OpcodeCall> FindCall(QStringView statement, qsizetype place,
                                   const std::function<bool(QStringView name)> &isOpcode)
{
    place = std::clamp<qsizetype>(place, 0, statement.size());
    if (WithoutComments(statement.first(place)).atEnd == TextPart::Comment)
        return {};
    const QString code = WithoutComments(statement).text;
    return CallReader(code, place, isOpcode).Read();
}

} // namespace zelvane
