// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/textnames.h"

#include "language/findmark.h"
#include "language/opcodelist.h"
#include "language/scanner.h"
#include "shell/separators.h"
#include "writing/wordcharacter.h"

#include <algorithm>
#include <deque>
#include <unordered_map>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// What is longer nobody has called so: a file of data, or one without blanks.
constexpr qsizetype LongestName = 200;

inline bool IsWord(QChar c)
{
    return IsInWord(c.unicode());
}

/// The text with semicolons for the slashes of each "//" that begins a comment, as the scan knows no other
/// comment of one line; empty where there is none. What begins nothing for the scan begins nothing here.
QString WithSemicolons(QStringView text)
{
    if (FindMark(text, u'/', u'/', 0) < 0)
        return {};
    QString changed = text.toString();
    const auto orEnd = [&text](qsizetype at) { return at < 0 ? text.size() : at; };
    const auto isAt = [&text](QStringView mark, qsizetype at) { return text.sliced(at).startsWith(mark); };
    qsizetype at = 0;
    while (at < text.size()) {
        switch (text[at].unicode()) {
        case u';':
            at = orEnd(text.indexOf(u'\n', at));
            break;
        case u'"':
            at = orEnd(text.indexOf(u'"', at + 1)) + 1;
            break;
        case u'$':
            do
                ++at;
            while (at < text.size() && text[at].isLetterOrNumber());
            if (at < text.size() && !isAt(u"//", at))
                ++at;
            break;
        case u'/':
            if (isAt(u"//", at)) {
                changed[at] = changed[at + 1] = u';';
                at = orEnd(text.indexOf(u'\n', at));
            } else if (isAt(u"/*", at)) {
                const qsizetype close = FindMark(text, u'*', u'/', at);
                at = close < 0 ? text.size() : close + (isAt(u"*", close + 2) ? 1 : 2);
            } else {
                ++at;
            }
            break;
        default:
            ++at;
            break;
        }
    }
    return changed;
}

class NameFinder
{
public:
    explicit NameFinder(QStringView text) : m_text(text) {}

    TextNames Find(bool isUnified)
    {
        // The scan of a score: that of an orchestra takes what touches a word for a part of it.
        const OpcodeList none;
        const StyleRuns runs = ScanRange(m_text, 0, 0, ScanMode::Score, none).runs;
        qsizetype from = 0;
        qsizetype looked = 0; // up to here the scan has looked for comments
        for (const StyleRun &run : runs) {
            const qsizetype end = run.start + run.length;
            ReadCode(from, run.start);
            if (run.style == StyleClass::Comment)
                ReadComment(run.start, end);
            else if (run.style == StyleClass::Literal)
                ReadWords(run.start, end, m_code);
            else if (m_text[run.start] == u'#')
                ReadDirective(run.start, end);
            from = looked = end;
            // Kept: what ends the name of a macro begins no comment; the slash that ends one may.
            if (m_text[run.start] == u'$')
                ++looked;
            else if (m_text[end - 1] == u'/' && run.style == StyleClass::Comment)
                --looked;
        }
        ReadRest(from, looked);
        if (isUnified)
            FindSections();
        m_names.code = List(m_code);
        m_names.comments = List(m_comments);
        return std::move(m_names);
    }

private:
    struct Found {
        NameKind kind;
        int words; ///< how often it stands in the text
    };
    using Words = std::unordered_map<QStringView, Found>;

    static void Add(Words &words, QStringView name, NameKind kind)
    {
        if (name.size() > LongestName)
            return;
        Found &word = words.try_emplace(name, Found{kind, 0}).first->second;
        word.kind = std::min(word.kind, kind);
        word.words += kind == NameKind::Word;
    }

    WordList List(const Words &words) const
    {
        std::vector<WordList::Name> names;
        names.reserve(words.size());
        for (const auto &[text, found] : words)
            names.push_back({text, found.kind, found.words > 1});
        return WordList(std::move(names));
    }

    /// Calls `found(start, end)` for each word that begins like a name.
    template <typename Found> void ForEachWord(qsizetype from, qsizetype end, Found found) const
    {
        for (qsizetype at = from; at < end; ++at) {
            if (!IsWord(m_text[at]))
                continue;
            const qsizetype start = at;
            while (at < end && IsWord(m_text[at]))
                ++at;
            if (!m_text[start].isDigit())
                found(start, at);
        }
    }

    void ReadWords(qsizetype from, qsizetype end, Words &words) const
    {
        ForEachWord(from, end, [&](qsizetype start, qsizetype wordEnd) {
            Add(words, m_text.sliced(start, wordEnd - start), NameKind::Word);
        });
    }

    void ReadCode(qsizetype from, qsizetype end)
    {
        FindBraces(from, end);
        ForEachWord(from, end, [this](qsizetype start, qsizetype wordEnd) { ReadWord(start, wordEnd); });
    }

    /// The strings in double braces that begin in a piece of code. Without a partner braces are code.
    void FindBraces(qsizetype from, qsizetype end)
    {
        while (!m_noneCloses) {
            from = std::max(from, m_bracesEnd);
            const qsizetype open = from < end ? FindMark(m_text.first(end), u'{', u'{', from) : -1;
            if (open < 0)
                return;
            const qsizetype close = FindMark(m_text, u'}', u'}', open + 2);
            m_noneCloses = close < 0;
            if (!m_noneCloses) {
                m_bracesEnd = close + 2;
                m_names.bracedStrings.push_back({open, m_bracesEnd});
            }
        }
    }

    /// What stands behind all that is coloured. There a comment that nothing ends can begin.
    void ReadRest(qsizetype from, qsizetype looked)
    {
        const auto orEnd = [this](qsizetype at) { return at < 0 ? m_text.size() : at; };
        const qsizetype comment =
            std::min(orEnd(m_text.indexOf(u';', looked)), orEnd(FindMark(m_text, u'/', u'*', looked)));
        ReadCode(from, comment);
        if (comment < m_text.size())
            ReadComment(std::max(comment, from), m_text.size());
    }

    void ReadComment(qsizetype start, qsizetype end)
    {
        ReadWords(start, end, m_comments);
        if (m_text[start] != u';')
            AddBlockComment(start, end);
    }

    void AddBlockComment(qsizetype start, qsizetype end) { m_names.blockComments.push_back({start, end}); }

    void ReadDirective(qsizetype start, qsizetype end)
    {
        if (m_text.sliced(start, end - start) != u"#define")
            return;
        qsizetype at = end;
        while (at < m_text.size() && IsBlankOrTab(m_text[at]))
            ++at;
        const qsizetype name = at;
        while (at < m_text.size() && IsWord(m_text[at]))
            ++at;
        if (at > name) {
            m_macroName = name;
            m_macros.push_back(u'$' + m_text.sliced(name, at - name).toString());
            Add(m_code, m_macros.back(), NameKind::Macro);
        }
    }

    void ReadWord(qsizetype start, qsizetype end)
    {
        if (start == m_macroName || (start > 0 && m_text[start - 1] == u'$'))
            return; // a macro, defined or called
        const QStringView word = m_text.sliced(start, end - start);
        Add(m_code, word, NameKind::Word);
        switch (word.size()) {
        case 3:
            if (word == u"xin" && WaitsFor(&UserOpcode::inputs))
                ReadPorts(LineStart(start), start, &UserOpcode::inputs);
            break;
        case 4:
            if (word == u"xout" && WaitsFor(&UserOpcode::outputs))
                ReadPorts(end, StatementEnd(end), &UserOpcode::outputs);
            break;
        case 5:
            if (word == u"instr" && BeginsLine(start))
                ReadInstruments(end);
            else if (word == u"endop")
                m_opcodeOpen = false;
            else if (word == u"ftgen")
                ReadTable(start);
            break;
        case 6:
            if (word == u"opcode" && BeginsLine(start))
                ReadOpcode(end);
            break;
        case 8:
            if (word == u"ftgentmp")
                ReadTable(start);
            break;
        case 9:
            if (word == u"ftgenonce")
                ReadTable(start);
            break;
        default:
            break;
        }
    }

    qsizetype LineStart(qsizetype at) const
    {
        while (at > 0 && !IsLineEnd(m_text[at - 1]))
            --at;
        return at;
    }
    bool BeginsLine(qsizetype at) const
    {
        while (at > 0 && IsBlankOrTab(m_text[at - 1]))
            --at;
        return at == 0 || IsLineEnd(m_text[at - 1]);
    }
    /// Where the line or its comment begins to be something else.
    qsizetype StatementEnd(qsizetype at) const
    {
        const auto isComment = [this](qsizetype slash) {
            return m_text[slash] == u'/' && slash + 1 < m_text.size() &&
                   (m_text[slash + 1] == u'*' || m_text[slash + 1] == u'/');
        };
        while (at < m_text.size() && !IsLineEnd(m_text[at]) && m_text[at] != u';' && !isComment(at))
            ++at;
        return at;
    }
    /// The fields between commas, trimmed.
    QList<QStringView> Fields(qsizetype from, qsizetype end) const
    {
        QList<QStringView> fields = m_text.sliced(from, end - from).split(u',');
        for (QStringView &field : fields)
            field = field.trimmed();
        return fields;
    }
    static bool IsName(QStringView field)
    {
        return !field.isEmpty() && !field.front().isDigit() &&
               std::all_of(field.begin(), field.end(), IsWord);
    }

    void ReadInstruments(qsizetype from)
    {
        for (QStringView field : Fields(from, StatementEnd(from))) {
            if (field.startsWith(u'+'))
                field = field.sliced(1);
            if (IsName(field))
                Add(m_code, field, NameKind::Instrument);
        }
    }

    void ReadOpcode(qsizetype from)
    {
        m_opcodeOpen = false;
        const QList<QStringView> fields = Fields(from, StatementEnd(from));
        if (!IsName(fields[0]))
            return;
        Add(m_code, fields[0], NameKind::UserOpcode);
        if (fields.size() != 3)
            return; // written in a way that has other fields
        m_names.opcodes.push_back({fields[0].toString(), ReadTypes(fields[1]), ReadTypes(fields[2]), {}, {}});
        m_opcodeOpen = true;
    }

    /// Whether an opcode is open that has not named these yet.
    bool WaitsFor(QStringList UserOpcode::*ports) const
    {
        return m_opcodeOpen && (m_names.opcodes.back().*ports).isEmpty();
    }
    void ReadPorts(qsizetype from, qsizetype end, QStringList UserOpcode::*ports)
    {
        for (const QStringView field : Fields(from, end))
            (m_names.opcodes.back().*ports).append(field.toString());
    }

    /// The variable that takes the table's number stands before the opcode, maybe with a "=" between.
    void ReadTable(qsizetype opcode)
    {
        qsizetype end = opcode;
        while (end > 0 && (IsBlankOrTab(m_text[end - 1]) || m_text[end - 1] == u'='))
            --end;
        qsizetype start = end;
        while (start > 0 && IsWord(m_text[start - 1]))
            --start;
        if (end < opcode && IsName(m_text.sliced(start, end - start)))
            Add(m_code, m_text.sliced(start, end - start), NameKind::Table);
    }

    TextSpan Section(QStringView tag, QStringView closingTag) const
    {
        const qsizetype opening = m_text.indexOf(tag);
        if (opening < 0)
            return {};
        const qsizetype start = opening + tag.size();
        const qsizetype closing = m_text.indexOf(closingTag, start);
        return {start, closing < 0 ? m_text.size() : closing};
    }
    void FindSections()
    {
        m_names.orchestra = Section(u"<CsInstruments>", u"</CsInstruments>");
        m_names.score = Section(u"<CsScore>", u"</CsScore>");
    }

    QStringView m_text;
    TextNames m_names;
    Words m_code, m_comments;
    std::deque<QString> m_macros; ///< what the words of m_code view that stand nowhere in the text
    qsizetype m_macroName = -1;   ///< where that of the last definition begins
    bool m_opcodeOpen = false;
    qsizetype m_bracesEnd = 0; ///< where the last string in braces ends
    bool m_noneCloses = false; ///< there are no closing braces in the rest of the text
};

} // namespace

TextNames FindNames(QStringView text, bool isUnified)
{
    const QString changed = WithSemicolons(text);
    return NameFinder(changed.isEmpty() ? text : changed).Find(isUnified);
}

QStringList ReadTypes(QStringView types)
{
    QStringList list;
    for (const QChar c : types) {
        if (c == u'[' || c == u']') {
            if (!list.isEmpty())
                list.back() += c;
        } else if (!c.isSpace() && c != u'0') {
            list.append(c);
        }
    }
    return list;
}

} // namespace zelvane
