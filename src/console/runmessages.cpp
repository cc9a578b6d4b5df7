// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/runmessages.h"

#include <algorithm>
#include <array>
#include <QChar>
#include <QLatin1String>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr size_t MostMessages = 5000;
/// What is kept of the words of one message, and of all of them with the names of their files; UTF-16 units.
constexpr qsizetype LongestWords = 400;
constexpr qsizetype MostCharacters = 4'000'000;
/// How many lines of output may stand between the beginning of a message and its details.
constexpr qint64 LongestMessage = 6;

enum class Where { Start, Anywhere };

struct HeadForm {
    QLatin1String words;
    Where where;
    LineMark mark;
};

// Several pieces of Csound end their messages without a line end: what follows stands in the same line.
const std::array headForms{
    HeadForm{QLatin1String("INIT ERROR in "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("PERF ERROR in "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("error:"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("Error:"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("ERROR:"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("*** ERROR"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("score error:"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("Undefined macro: "), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("Undefining undefined macro"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("Cannot open #include"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("Unmatched #"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("unmatched } in score"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("missing \" to terminate string"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("unterminated string found on line"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("Unexpected character "), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("unknown CSD tag: "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("Missing end tag </"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("Could not find <CsoundSynthesizer>"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("No number following instr"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("insufficient required arguments for opcode "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("unable to find array operator for types "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("unable to find ternary operator for types "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("non-boolean expression found for ternary"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("Use of i() with expression not permitted"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("expression for until/while statement not a"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("memory allocate failure"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("sread: "), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("swrite: "), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("sfinit: cannot open"), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("soundin cannot open"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("cannot open scorefile"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("main: failed to open input file"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("*** Cannot open device"), Where::Start, LineMark::Error},
    HeadForm{QLatin1String("- note deleted. "), Where::Anywhere, LineMark::Error},
    HeadForm{QLatin1String("WARNING:"), Where::Anywhere, LineMark::Warning},
    HeadForm{QLatin1String("Warning:"), Where::Start, LineMark::Warning},
    HeadForm{QLatin1String("warning:"), Where::Start, LineMark::Warning},
    HeadForm{QLatin1String("number of samples out of range:"), Where::Anywhere, LineMark::Warning},
};

// What Csound says after an error, or in its stead where an error has no words of its own.
const std::array consequences{
    QLatin1String("Parsing failed due to "),          QLatin1String("Stopping on parser failure"),
    QLatin1String("cannot compile orchestra"),        QLatin1String("Reading CSD failed "),
    QLatin1String("Failed to initialise real time"),  QLatin1String("header init errors"),
    QLatin1String("Early return from csoundPerform"),
};

// Lines that belong to the message before them.
const std::array details{
    QLatin1String("Unexpected untyped word "),
    QLatin1String("WARNING: Internal error in print_input_backtrace()"),
    QLatin1String("remainder of line flushed"),
    QLatin1String("Found: "),
    QLatin1String("section "),
    QLatin1String("note aborted"),
};

template <typename Words> bool StartsWithOne(QStringView line, const Words &words)
{
    return std::any_of(words.begin(), words.end(), [&](QLatin1String word) { return line.startsWith(word); });
}

/// The number at the start of a text; 0 where there is none, or one that no file has lines for.
int NumberAt(QStringView text)
{
    const auto *end = std::find_if_not(
        text.begin(), text.end(), [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    return text.first(end - text.begin()).toInt();
}

/// The number behind the word "line" in a message.
int LineIn(QStringView text)
{
    constexpr QStringView word = u"line ";
    for (qsizetype at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + 1))
        if (at > 0 && text[at - 1] == u' ')
            if (const int number = NumberAt(text.sliced(at + word.size())))
                return number;
    return 0;
}

qsizetype CharactersOf(const RunMessage &message)
{
    qsizetype count = message.text.size() + message.token.size() + message.context.size();
    for (const QString &file : message.files)
        count += file.size();
    return count;
}

QString Kept(QStringView words)
{
    return words.first(std::min(words.size(), LongestWords)).toString();
}

QString Between(QStringView text, QStringView before, QStringView after)
{
    const qsizetype start = text.indexOf(before);
    if (start < 0)
        return {};
    const qsizetype from = start + before.size();
    const qsizetype end = text.indexOf(after, from);
    return end < 0 ? QString() : Kept(text.sliced(from, end - from).trimmed());
}

QString TokenIn(QStringView text)
{
    using Marks = std::pair<QStringView, QStringView>;
    static constexpr std::array<Marks, 6> marks{Marks{u"(token \"", u"\")"},
                                                Marks{u"Variable '", u"'"},
                                                Marks{u"Variable type for ", u" could not"},
                                                Marks{u"opcode entry for '", u"'"},
                                                Marks{u"Undefined macro: '", u"'"},
                                                Marks{u"error: function ", u" not found"}};
    for (const auto &[before, after] : marks)
        if (QString token = Between(text, before, after); !token.isEmpty())
            return token;
    constexpr QStringView include = u"#include'd file ";
    if (const qsizetype at = text.indexOf(include); at >= 0)
        return Kept(text.sliced(at + include.size()).trimmed());
    return {};
}

/// Whether a message says in other words what the one before it has said.
bool IsSameFault(const RunMessage &before, const RunMessage &message)
{
    if (message.text.contains(u"Variable type for "))
        return before.token == message.token;
    // The characters that the parser stumbles over are told before the place.
    return message.text.contains(u"syntax error") && before.files.isEmpty() &&
           (before.text.contains(u"Error: character ") || before.text.startsWith(u"Undefined macro: "));
}

} // namespace

LineMark RunMessages::Take(qint64 number, const QString &line)
{
    const QString rest = TakeFiles(number, line);
    if (rest.isEmpty() || TakeDetail(number, rest))
        return LineMark::None;
    return TakeHead(number, rest);
}

const RunMessage *RunMessages::At(qint64 number) const
{
    const auto after =
        std::upper_bound(m_messages.begin(), m_messages.end(), number,
                         [](qint64 n, const RunMessage &message) { return n < message.first; });
    if (after == m_messages.begin())
        return nullptr;
    const RunMessage &message = *std::prev(after);
    return number <= message.last ? &message : nullptr;
}

RunMessage *RunMessages::Open(qint64 number)
{
    if (m_messages.empty() || number - m_messages.back().last > LongestMessage)
        return nullptr;
    return &m_messages.back();
}

void RunMessages::Grow(RunMessage &message, qint64 number)
{
    message.last = number;
    if (m_firstIsLast)
        m_firstError = message;
}

QString RunMessages::TakeFiles(qint64 number, const QString &line)
{
    constexpr QLatin1String word(" from file ");
    qsizetype at = 0;
    QStringList files;
    while (QStringView(line).sliced(at).startsWith(word)) {
        const qsizetype name = at + word.size();
        const qsizetype end = line.indexOf(u"),"_s, name);
        const qsizetype bracket = end < 0 ? -1 : line.lastIndexOf(u" ("_s, end);
        if (bracket < name)
            break;
        files.append(line.mid(name, bracket - name));
        at = end + 2;
    }
    if (files.isEmpty())
        return line;
    QString rest = line.mid(at);
    RunMessage *message = Open(number);
    if (!message)
        return rest;
    if (message->files.isEmpty())
        message->files = files;
    constexpr QLatin1String lineWord(" line ");
    if (rest.startsWith(lineWord)) {
        message->line = NumberAt(QStringView(rest).sliced(lineWord.size()));
        rest.clear();
    }
    Grow(*message, number);
    return rest;
}

bool RunMessages::TakeDetail(qint64 number, const QString &line)
{
    const QStringView text = QStringView(line).trimmed();
    if (text.isEmpty())
        return false;
    RunMessage *message = Open(number);
    if (!message)
        return false;
    if (text.startsWith(u">>>")) {
        if (message->context.isEmpty())
            message->context = Between(text, u">>>", u"<<<");
    } else if (text.startsWith(u"Line")) {
        const QStringView value = text.sliced(text.startsWith(u"Line:") ? 5 : 4).trimmed();
        const int found = NumberAt(value);
        if (found == 0 || QString::number(found) != value)
            return false;
        message->line = found;
    } else if (!StartsWithOne(text, details)) {
        return false;
    }
    Grow(*message, number);
    return true;
}

LineMark RunMessages::TakeHead(qint64 number, const QString &line)
{
    const QStringView text = QStringView(line).trimmed();
    const auto form = std::find_if(headForms.begin(), headForms.end(), [&](const HeadForm &head) {
        return head.where == Where::Start ? text.startsWith(head.words) : text.contains(head.words);
    });
    const bool isHead = form != headForms.end();
    if (!isHead && (m_firstError || !StartsWithOne(text, consequences)))
        return LineMark::None;

    RunMessage message{.mark = isHead ? form->mark : LineMark::Error,
                       .first = number,
                       .last = number,
                       .text = Kept(text),
                       .token = TokenIn(text)};
    // The line that the score's writer counts is one of the sorted score.
    if (!text.startsWith(u"swrite:"))
        message.line = LineIn(text);
    message.lineIsBefore = text.contains(u"used before defined");
    if (RunMessage *before = Open(number); before && IsSameFault(*before, message)) {
        if (before->token.isEmpty())
            before->token = message.token;
        Grow(*before, number);
        return LineMark::None;
    }
    if (!m_messages.empty())
        m_characters += CharactersOf(m_messages.back()); // it gets no more details
    m_messages.push_back(std::move(message));
    while (m_messages.size() > 1 && (m_messages.size() > MostMessages || m_characters > MostCharacters)) {
        m_characters -= CharactersOf(m_messages.front());
        m_messages.pop_front();
    }
    m_firstIsLast = m_messages.back().mark == LineMark::Error && !m_firstError;
    if (m_firstIsLast)
        m_firstError = m_messages.back();
    return m_messages.back().mark;
}

} // namespace zelvane
