// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ansireader.h"

#include "platform/terminalprocess.h"

#include <algorithm>
#include <utility>

namespace zelvane
{

namespace
{

constexpr char16_t BackspaceCharacter = 8;
constexpr char16_t Tab = 9;
constexpr char16_t LineFeed = 10;
constexpr char16_t VerticalTab = 11;
constexpr char16_t CarriageReturn = 13;
constexpr char16_t EscapeCharacter = 27;
constexpr char16_t Delete = 127;
constexpr char16_t LastControl = 0x9f;

/// A sequence that has not ended by then is none: what follows is shown.
constexpr qsizetype LongestControl = 256;
constexpr qsizetype LongestWord = 4096;
constexpr int MostParameters = 32;
constexpr int LargestParameter = 9999;

bool IsPlain(char16_t character)
{
    return character == Tab || (character >= u' ' && (character < Delete || character > LastControl));
}

/// How many bytes at the end may be the beginning of a character.
qsizetype UnfinishedCharacter(QByteArrayView bytes)
{
    for (qsizetype back = 1; back <= std::min<qsizetype>(3, bytes.size()); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if (byte < 0x80)
            return 0;
        if (byte >= 0xc0)
            return back < (byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : 2) ? back : 0;
    }
    return 0;
}

} // namespace

AnsiReader::AnsiReader(Sink sink) : m_sink(std::move(sink)) {}

void AnsiReader::Read(QByteArrayView bytes)
{
    const QByteArray all = m_cut.isEmpty() ? QByteArray() : m_cut + bytes.toByteArray();
    const QByteArrayView view = m_cut.isEmpty() ? bytes : QByteArrayView(all);
    const qsizetype whole = view.size() - UnfinishedCharacter(view);
    ReadText(QString::fromUtf8(view.first(whole)));
    m_cut = view.sliced(whole).toByteArray();
}

void AnsiReader::Finish()
{
    ReadText(QString::fromUtf8(m_cut));
    m_cut.clear();
    if (!m_text.isEmpty())
        EndLine();
    m_state = State::Text;
    m_style = {};
}

StyledLine AnsiReader::Unfinished() const
{
    StyledLine line{.text = m_text};
    for (qsizetype i = 0; i < qsizetype(m_styles.size()); ++i) {
        const TextStyle style = m_styles[size_t(i)];
        if (style == TextStyle{})
            continue;
        if (!line.spans.empty() && line.spans.back().style == style &&
            line.spans.back().start + line.spans.back().length == i)
            ++line.spans.back().length;
        else
            line.spans.push_back({.start = int(i), .length = 1, .style = style});
    }
    return line;
}

void AnsiReader::ReadText(QStringView text)
{
    for (qsizetype i = 0; i < text.size();) {
        if (m_state == State::Text) {
            i += TakePlain(text.sliced(i));
            if (i == text.size())
                return;
        }
        const char16_t character = text[i++].unicode();
        switch (m_state) {
        case State::Text:
            TakeControl(character);
            break;
        case State::Escape:
            TakeEscape(character);
            break;
        case State::Intermediate:
            if (character < u' ' || character >= u'0')
                m_state = State::Text;
            if (character < u' ')
                TakeControl(character);
            break;
        case State::Control:
            TakeParameter(character);
            break;
        case State::Word:
            // A line end too: a program that was cut off in the middle of a string is still to be heard.
            if (character == EscapeCharacter)
                m_state = State::Escape;
            else if (character < u' ' || ++m_skipped > LongestWord)
                m_state = State::Text;
            if (character == LineFeed)
                TakeControl(character);
            break;
        }
    }
}

qsizetype AnsiReader::TakePlain(QStringView text)
{
    const auto *end = std::find_if_not(text.begin(), text.end(),
                                       [](QChar character) { return IsPlain(character.unicode()); });
    const qsizetype length = end - text.begin();
    if (length > 0)
        Put(text.first(length));
    return length;
}

void AnsiReader::TakeControl(char16_t character)
{
    switch (character) {
    case LineFeed:
    case VerticalTab:
        EndLine();
        break;
    case CarriageReturn:
        m_cursor = 0;
        break;
    case BackspaceCharacter:
        m_cursor = std::max<qsizetype>(0, m_cursor - 1);
        break;
    case EscapeCharacter:
        m_state = State::Escape;
        break;
    default:
        break;
    }
}

void AnsiReader::TakeEscape(char16_t character)
{
    m_state = State::Text;
    m_skipped = 0;
    switch (character) {
    case u'[':
        m_state = State::Control;
        m_parameters.assign(1, 0);
        m_private = false;
        break;
    case u']':
    case u'P':
    case u'X':
    case u'^':
    case u'_':
        m_state = State::Word;
        break;
    default:
        if (character >= u' ' && character < u'0')
            m_state = State::Intermediate;
        else if (character < u' ')
            TakeControl(character);
        break;
    }
}

void AnsiReader::TakeParameter(char16_t character)
{
    if (character >= u'0' && character <= u'9') {
        int &last = m_parameters.back();
        last = std::min(LargestParameter, last * 10 + (character - u'0'));
    } else if (character == u';' || character == u':') {
        if (m_parameters.size() < MostParameters)
            m_parameters.push_back(0);
    } else if (character >= u' ' && character < u'@') {
        m_private = true;
    } else if (character >= u'@' && character < Delete) {
        EndControl(character);
    } else {
        m_state = State::Text;
        if (character < u' ')
            TakeControl(character);
        return;
    }
    if (++m_skipped > LongestControl)
        m_state = State::Text;
}

void AnsiReader::EndControl(char16_t final)
{
    m_state = State::Text;
    if (m_private)
        return;
    if (final == u'm')
        Colour();
    else if (final == u'K')
        Erase();
}

void AnsiReader::Colour()
{
    for (qsizetype i = 0; i < qsizetype(m_parameters.size()); ++i) {
        const int value = m_parameters[size_t(i)];
        if (value == 0)
            m_style = {};
        else if (value == 1)
            m_style.bold = true;
        else if (value == 22)
            m_style.bold = false;
        else if (value >= 30 && value <= 37)
            m_style.colour = qint8(value - 30);
        else if (value >= 90 && value <= 97)
            m_style.colour = qint8(value - 90 + 8);
        else if (value == 39)
            m_style.colour = -1;
        else if (value == 38 || value == 48)
            i = ExtendedColour(i);
    }
}

qsizetype AnsiReader::ExtendedColour(qsizetype position)
{
    const auto at = [this](qsizetype index) {
        return index < qsizetype(m_parameters.size()) ? m_parameters[size_t(index)] : -1;
    };
    const bool isText = at(position) == 38;
    if (at(position + 1) == 2)
        return position + 4;
    if (at(position + 1) != 5)
        return position + 1;
    if (isText)
        m_style.colour = qint8(at(position + 2) >= 0 && at(position + 2) < 16 ? at(position + 2) : -1);
    return position + 2;
}

void AnsiReader::Erase()
{
    const qsizetype styled = qsizetype(m_styles.size());
    if (m_parameters.front() != 1)
        m_blank = std::min(m_blank, m_parameters.front() == 0 ? m_cursor : 0);
    switch (m_parameters.front()) {
    case 0:
        m_text.truncate(std::min(m_cursor, m_text.size()));
        m_styles.resize(size_t(std::min(m_cursor, styled)));
        break;
    case 1: {
        // What was erased before is not erased again: a program may do so at each step of a long line.
        const qsizetype end = std::min(m_cursor + 1, m_text.size()); // with the one under the cursor
        for (qsizetype i = m_blank; i < end; ++i)
            m_text[i] = u' ';
        for (qsizetype i = m_blank; i < std::min(end, styled); ++i)
            m_styles[size_t(i)] = {};
        m_blank = std::max(m_blank, end);
        break;
    }
    case 2:
        m_text.clear();
        m_styles.clear();
        m_cursor %= TerminalProcess::Columns; // where it stands in the last row
        break;
    default:
        break;
    }
}

void AnsiReader::Put(QStringView text)
{
    while (!text.isEmpty()) {
        const qsizetype room = LongestLine - m_cursor;
        qsizetype length = std::min(room, text.size());
        if (length > 0 && length < text.size() && text[length - 1].isHighSurrogate())
            --length; // a character is not cut in two
        if (length <= 0) {
            EndLine();
            continue;
        }
        m_blank = std::min(m_blank, m_cursor);
        if (m_cursor > m_text.size())
            m_text.append(QString(m_cursor - m_text.size(), u' '));
        if (m_cursor == m_text.size())
            m_text.append(text.first(length));
        else
            m_text.replace(m_cursor, std::min(length, m_text.size() - m_cursor),
                           text.first(length).toString());
        Style(m_cursor, length, m_style);
        m_cursor += length;
        text = text.sliced(length);
    }
}

void AnsiReader::Style(qsizetype start, qsizetype length, TextStyle style)
{
    if (style == TextStyle{} && start >= qsizetype(m_styles.size()))
        return;
    if (qsizetype(m_styles.size()) < start + length)
        m_styles.resize(size_t(start + length));
    std::fill_n(m_styles.begin() + start, length, style);
}

void AnsiReader::EndLine()
{
    StyledLine line = Unfinished();
    m_text.clear();
    m_styles.clear();
    m_cursor = 0;
    m_blank = 0;
    m_sink(std::move(line));
}

} // namespace zelvane
