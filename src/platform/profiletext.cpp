// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/profiletext.h"

#include "platform/numbers.h"
#include "platform/textencoding.h"

#include <algorithm>
#include <QChar>
#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::profile
{

namespace
{

bool IsHexDigit(QChar c)
{
    return IsDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

QString DecodeLine(QByteArrayView bytes)
{
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) == 0; });
    // A line that is no UTF-8 came from an editor with an older encoding.
    return ascii ? QString::fromLatin1(bytes) : DecodeText(bytes.toByteArray()).text;
}

QString DecodeEscapes(QByteArrayView bytes)
{
    QString text = DecodeLine(bytes);
    qsizetype to = text.indexOf(u'\\');
    if (to < 0)
        return text;
    for (qsizetype from = to; from < text.size(); ++from) {
        QChar unit = text[from];
        if (unit == u'\\' && from + 1 < text.size()) {
            switch (text[from + 1].unicode()) {
            case u'\\':
                ++from;
                break;
            case u'n':
                unit = u'\n';
                ++from;
                break;
            case u'r':
                unit = u'\r';
                ++from;
                break;
            case u't':
                unit = u'\t';
                ++from;
                break;
            case u's':
                unit = u' ';
                ++from;
                break;
            case u'u':
                // A conversion to a number would take blanks, signs and a prefix too.
                if (const QStringView digits = QStringView(text).mid(from + 2, 4);
                    digits.size() == 4 && std::all_of(digits.begin(), digits.end(), IsHexDigit)) {
                    unit = QChar(digits.toUShort(nullptr, 16));
                    from += 5;
                }
                break;
            default:
                break;
            }
        }
        text[to++] = unit;
    }
    text.truncate(to);
    return text;
}

/// `special` holds the characters that need an escape at the start, `everywhere` one that needs it anywhere.
QByteArray EncodeEscapes(QStringView text, QStringView special = {}, QChar everywhere = u'\n')
{
    QString out;
    out.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const char16_t code = unit.unicode();
        const bool paired = (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) ||
                            (unit.isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate());
        if (code == u'\\')
            out += u"\\\\";
        else if (code == u'\n')
            out += u"\\n";
        else if (code == u'\r')
            out += u"\\r";
        else if (code == u'\t')
            out += u"\\t";
        else if (code == u' ' && (i == 0 || i + 1 == text.size()))
            out += u"\\s";
        else if (code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029 ||
                 code == QChar::ByteOrderMark || (unit.isSurrogate() && !paired) || unit == everywhere ||
                 (i == 0 && special.contains(unit)))
            out += u"\\u"_s + QString::number(code, 16).toUpper().rightJustified(4, u'0');
        else
            out += unit;
    }
    return out.toUtf8();
}

bool IsQuoted(QStringView value)
{
    return value.size() > 1 && (value.front() == u'"' || value.front() == u'\'') &&
           value.back() == value.front();
}

bool IsBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

QByteArrayView Trim(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && IsBlank(bytes.front()))
        bytes = bytes.sliced(1);
    while (!bytes.isEmpty() && IsBlank(bytes.back()))
        bytes.chop(1);
    return bytes;
}

constexpr QByteArrayView Mark = "\xEF\xBB\xBF";

/// The lines that are left of a file, with its mark; also where the first one begins like a mark, and would
/// be taken for it.
QByteArray WithMarkOf(const QByteArray &file, QByteArray lines)
{
    return file.startsWith(Mark) || lines.startsWith(Mark) ? lines.prepend(Mark) : lines;
}

/// Compares names as written in a file with one name.
class NameMatcher
{
public:
    NameMatcher(QStringView name, Spelling spelling) : m_folded(Fold(name)), m_spelling(spelling) {}

    bool Matches(QByteArrayView written) const
    {
        // Up to the first escape or foreign letter, bytes and folded characters go in step; most names differ
        // there.
        const char *bytes = written.data();
        const char16_t *folded = reinterpret_cast<const char16_t *>(m_folded.utf16());
        for (qsizetype i = 0; i < written.size(); ++i) {
            const char byte = bytes[i];
            if ((byte == '\\' && m_spelling.HasEscapes()) || (byte & 0x80) != 0)
                return Fold(m_spelling.Name(written)) == m_folded;
            const char lower = byte >= 'A' && byte <= 'Z' ? char(byte + ('a' - 'A')) : byte;
            if (i == m_folded.size() || folded[i] != char16_t(lower))
                return false;
        }
        return written.size() == m_folded.size();
    }

private:
    QString m_folded;
    Spelling m_spelling;
};

/// The line end that a file is written with: that of its first line.
QByteArray LineEndOf(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    return end > 0 && bytes[end - 1] == '\r' ? "\r\n"_ba : "\n"_ba;
}

/// Ends the last line where it has no end. A bare CR there is part of the value: it would become one with a
/// lone LF.
void EndLastLine(QByteArray &bytes, const QByteArray &end)
{
    if (!bytes.isEmpty() && !bytes.endsWith('\n'))
        bytes += bytes.endsWith('\r') ? "\r\n"_ba : end;
}

/// What begins like the mark of a file is text within a line.
QString PlainText(QByteArrayView written)
{
    return DecodeLine('.' + written.toByteArray()).sliced(1);
}

/// What a line can hold of a text.
QStringView OneLine(QStringView text)
{
    const qsizetype end = text.indexOf(u'\n');
    if (end < 0)
        return text;
    return text.first(end > 0 && text[end - 1] == u'\r' ? end - 1 : end);
}

void Classify(QByteArrayView text, Line &line)
{
    if (text.isEmpty()) {
        line.kind = Line::Kind::Blank;
    } else if (text.front() == '[') {
        const qsizetype close = text.lastIndexOf(']');
        if (close > 0) {
            line.kind = Line::Kind::Section;
            line.name = Trim(text.sliced(1, close - 1));
        }
    } else if (text.front() != ';' && text.front() != '#') {
        const qsizetype equals = text.indexOf('=');
        if (equals >= 0) {
            line.kind = Line::Kind::Entry;
            line.name = Trim(text.first(equals));
            line.value = Trim(text.sliced(equals + 1));
        }
    }
}

} // namespace

QString Fold(QStringView text)
{
    QString folded;
    folded.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            folded += QChar::fromUcs4(QChar::toCaseFolded(QChar::surrogateToUcs4(text[i], text[i + 1])));
            ++i;
        } else {
            folded += QChar(text[i].toCaseFolded());
        }
    }
    return folded;
}

QString Spelling::Name(QByteArrayView written) const
{
    return m_plain ? PlainText(written) : DecodeEscapes(written);
}

QString Spelling::Value(QByteArrayView written) const
{
    if (!m_plain)
        return DecodeEscapes(written);
    const QString value = PlainText(written);
    return IsQuoted(value) ? value.sliced(1, value.size() - 2) : value;
}

QByteArray Spelling::WrittenSection(QStringView name) const
{
    // It needs no escape for brackets: it ends at the line's last one.
    return m_plain ? OneLine(name).trimmed().toUtf8() : EncodeEscapes(name);
}

QByteArray Spelling::WrittenKey(QStringView key) const
{
    return m_plain ? OneLine(key).trimmed().toUtf8() : EncodeEscapes(key, u"[;#", u'=');
}

QByteArray Spelling::WrittenValue(QStringView value) const
{
    if (!m_plain)
        return EncodeEscapes(value);
    const QStringView line = OneLine(value);
    const auto losesEdge = [](QChar c) { return c == u' ' || c == u'\t' || c == u'\r'; };
    const bool quoted =
        !line.isEmpty() && (losesEdge(line.front()) || losesEdge(line.back()) || IsQuoted(line));
    return quoted ? '"' + line.toUtf8() + '"' : line.toUtf8();
}

LineReader::LineReader(QByteArrayView bytes)
    : m_rest(bytes.startsWith(Mark) ? bytes.sliced(Mark.size()) : bytes)
{
}

bool LineReader::Next(Line &line)
{
    if (m_rest.isEmpty())
        return false;
    line = {};
    qsizetype length = m_rest.indexOf('\n');
    qsizetype ending = 1;
    if (length < 0) {
        length = m_rest.size();
        ending = 0;
    }
    line.whole = m_rest.first(length + ending);
    if (ending == 1 && length > 0 && m_rest[length - 1] == '\r') {
        --length;
        ++ending;
    }
    line.end = line.whole.last(ending);
    m_rest = m_rest.sliced(line.whole.size());
    Classify(Trim(line.whole.first(length)), line);
    return true;
}

QByteArray WithSection(const QByteArray &bytes, QStringView section, const ProfileEntries &entries,
                       Spelling spelling)
{
    const QByteArray end = LineEndOf(bytes);
    QByteArray result = bytes;
    EndLastLine(result, end);
    if (!result.isEmpty())
        result += end;
    result += '[' + spelling.WrittenSection(section) + ']' + end;
    for (const auto &[key, value] : entries)
        result += spelling.WrittenKey(key) + '=' + spelling.WrittenValue(value) + end;
    return result;
}

QByteArray WithValue(const QByteArray &bytes, QStringView section, QStringView key, QStringView value,
                     Spelling spelling)
{
    const NameMatcher sectionMatcher(section, spelling), keyMatcher(key, spelling);
    const QByteArray written = spelling.WrittenValue(value);
    bool inside = false;
    qsizetype insertAt = -1; // behind the section's last key
    LineReader reader(bytes);
    for (Line line; reader.Next(line);) {
        if (line.kind == Line::Kind::Section)
            inside = sectionMatcher.Matches(line.name);
        if (!inside || (line.kind != Line::Kind::Section && line.kind != Line::Kind::Entry))
            continue;
        insertAt = line.whole.data() + line.whole.size() - bytes.constData();
        if (line.kind != Line::Kind::Entry || !keyMatcher.Matches(line.name))
            continue;
        const qsizetype start = line.value.data() - bytes.constData();
        const qsizetype lineEnd = insertAt - line.end.size();
        return bytes.first(start) + written + bytes.sliced(lineEnd);
    }
    if (insertAt < 0)
        return WithSection(bytes, section, {{key.toString(), value.toString()}}, spelling);
    const QByteArray end = LineEndOf(bytes);
    QByteArray result;
    result.reserve(bytes.size() + written.size() + key.size() + 16);
    result += QByteArrayView(bytes).first(insertAt);
    EndLastLine(result, end);
    result += spelling.WrittenKey(key) + '=' + written + end;
    result += QByteArrayView(bytes).sliced(insertAt);
    return result;
}

std::optional<ProfileEntries> SectionEntries(const QByteArray &bytes, QStringView section, Spelling spelling)
{
    const NameMatcher matcher(section, spelling);
    std::optional<ProfileEntries> entries;
    bool inside = false;
    LineReader reader(bytes);
    for (Line line; reader.Next(line);) {
        if (line.kind == Line::Kind::Section) {
            inside = matcher.Matches(line.name);
            if (inside && !entries)
                entries.emplace();
        } else if (inside && line.kind == Line::Kind::Entry) {
            entries->emplace_back(spelling.Name(line.name), spelling.Value(line.value));
        }
    }
    return entries;
}

QByteArray WithoutKey(const QByteArray &bytes, QStringView section, QStringView key, Spelling spelling)
{
    const NameMatcher sectionMatcher(section, spelling), keyMatcher(key, spelling);
    QByteArray result;
    result.reserve(bytes.size());
    bool inside = false;
    LineReader reader(bytes);
    for (Line line; reader.Next(line);) {
        if (line.kind == Line::Kind::Section)
            inside = sectionMatcher.Matches(line.name);
        if (!inside || line.kind != Line::Kind::Entry || !keyMatcher.Matches(line.name))
            result += line.whole;
    }
    return WithMarkOf(bytes, result);
}

QByteArray WithoutSection(const QByteArray &bytes, QStringView section, Spelling spelling)
{
    const NameMatcher matcher(section, spelling);
    QByteArray result;
    result.reserve(bytes.size());
    bool inside = false;
    qsizetype blankBefore = 0; // size of the empty line that ends `result`, if one does
    LineReader reader(bytes);
    for (Line line; reader.Next(line);) {
        if (line.kind == Line::Kind::Section) {
            inside = matcher.Matches(line.name);
            // The empty line that parted the section from the one before goes with it.
            if (inside)
                result.chop(blankBefore);
        }
        const bool dropped = inside && (line.kind == Line::Kind::Section || line.kind == Line::Kind::Entry);
        if (!dropped)
            result += line.whole;
        blankBefore = !dropped && line.kind == Line::Kind::Blank ? line.whole.size() : 0;
    }
    return WithMarkOf(bytes, result);
}

} // namespace zelvane::profile
