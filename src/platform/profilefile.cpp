// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/profilefile.h"

#include "platform/numbers.h"
#include "platform/readfile.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"

#include <algorithm>
#include <chrono>
#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Names that are equal without regard to case are equal when folded.
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

/// The spelling of names and values in a file.
class Spelling
{
public:
    explicit Spelling(ProfileText text) : m_plain(text == ProfileText::Plain) {}

    bool HasEscapes() const { return !m_plain; }

    QString Name(QByteArrayView written) const { return m_plain ? Plain(written) : DecodeEscapes(written); }
    QString Value(QByteArrayView written) const
    {
        if (!m_plain)
            return DecodeEscapes(written);
        const QString value = Plain(written);
        return IsQuoted(value) ? value.sliced(1, value.size() - 2) : value;
    }

    /// A section's name needs no escape for brackets: it ends at the line's last one.
    QByteArray WrittenSection(QStringView name) const
    {
        return m_plain ? Line(name).trimmed().toUtf8() : EncodeEscapes(name);
    }
    QByteArray WrittenKey(QStringView key) const
    {
        return m_plain ? Line(key).trimmed().toUtf8() : EncodeEscapes(key, u"[;#", u'=');
    }
    QByteArray WrittenValue(QStringView value) const
    {
        if (!m_plain)
            return EncodeEscapes(value);
        const QStringView line = Line(value);
        const auto losesEdge = [](QChar c) { return c == u' ' || c == u'\t' || c == u'\r'; };
        const bool quoted =
            !line.isEmpty() && (losesEdge(line.front()) || losesEdge(line.back()) || IsQuoted(line));
        return quoted ? '"' + line.toUtf8() + '"' : line.toUtf8();
    }

private:
    /// What begins like the mark of a file is text within a line.
    static QString Plain(QByteArrayView written) { return DecodeLine('.' + written.toByteArray()).sliced(1); }
    /// What a line can hold of a text.
    static QStringView Line(QStringView text)
    {
        const qsizetype end = text.indexOf(u'\n');
        if (end < 0)
            return text;
        return text.first(end > 0 && text[end - 1] == u'\r' ? end - 1 : end);
    }

    bool m_plain;
};

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

struct Line {
    enum class Kind { Blank, Other, Section, Entry };
    Kind kind = Kind::Other;
    QByteArrayView whole; // with its line end
    QByteArrayView end;   // LF, CR LF, or empty at the end of the file
    QByteArrayView name;  // of a section or a key, as written
    QByteArrayView value; // as written
};

constexpr QByteArrayView Mark = "\xEF\xBB\xBF";

/// Reads the lines behind the mark that a file may begin with.
class LineReader
{
public:
    explicit LineReader(QByteArrayView bytes)
        : m_rest(bytes.startsWith(Mark) ? bytes.sliced(Mark.size()) : bytes)
    {
    }

    bool Next(Line &line)
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

private:
    static void Classify(QByteArrayView text, Line &line)
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

    QByteArrayView m_rest;
};

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

/// All entries, equal keys among them; no value where there is no such section.
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

} // namespace

ProfileFile::ProfileFile(const QString &name, ProfileText text) : m_name(name), m_text(text) {}

/// Reads the file again if it is another than at the last time.
void ProfileFile::Refresh() const
{
    if (m_step)
        return; // m_bytes is what was read at the start of the step, with its changes
    const auto forget = [this] {
        m_file = {};
        m_bytes.clear();
        m_indexed = false;
    };
    const std::optional<FileStamp> stamp = StampOf(m_name);
    if (stamp == m_stamp && (!stamp || (m_settled && m_file.IsOpen())))
        return;
    m_stamp = stamp;
    if (!stamp) {
        forget();
        return;
    }
    try {
        NativeFile file = OpenRegularFile(m_name);
        m_stamp = StampOf(file);
        m_settled = IsSettled(*m_stamp);
        QByteArray bytes = ReadWhole(file, m_name);
        m_file = std::move(file);
        if (bytes != m_bytes) {
            m_bytes = std::move(bytes);
            m_indexed = false;
        }
    } catch (const RunTimeError &) {
        forget();
        m_settled = false;
        throw;
    }
}

const ProfileFile::Section *ProfileFile::FindSection(QStringView section) const
{
    if (!m_step) {
        m_failure.reset();
        try {
            Refresh();
        } catch (const RunTimeError &failure) {
            m_failure = failure; // a store that cannot be read has no keys; the first write tells why
        }
    }
    const Spelling spelling(m_text);
    if (!m_indexed) {
        m_sections.clear();
        m_sectionPlaces.clear();
        qsizetype current = -1;
        LineReader reader(m_bytes);
        for (Line line; reader.Next(line);) {
            if (line.kind == Line::Kind::Section) {
                const QString folded = Fold(spelling.Name(line.name));
                current = m_sectionPlaces.value(folded, -1);
                if (current < 0) {
                    current = qsizetype(m_sections.size());
                    m_sectionPlaces.insert(folded, current);
                    m_sections.push_back({line.name, {}, {}});
                }
            } else if (line.kind == Line::Kind::Entry && current >= 0) {
                Section &target = m_sections[size_t(current)];
                const QString folded = Fold(spelling.Name(line.name));
                if (!target.places.contains(folded)) {
                    target.places.insert(folded, qsizetype(target.entries.size()));
                    target.entries.push_back({line.name, line.value});
                }
            }
        }
        m_indexed = true;
    }
    const qsizetype place = m_sectionPlaces.value(Fold(section), -1);
    return place < 0 ? nullptr : &m_sections[size_t(place)];
}

std::optional<QString> ProfileFile::Value(QStringView section, QStringView key) const
{
    const Section *found = FindSection(section);
    const qsizetype place = found ? found->places.value(Fold(key), -1) : -1;
    return place < 0 ? std::nullopt
                     : std::optional(Spelling(m_text).Value(found->entries[size_t(place)].value));
}

ProfileEntries ProfileFile::Entries(QStringView section) const
{
    const Spelling spelling(m_text);
    ProfileEntries entries;
    if (const Section *found = FindSection(section)) {
        for (const Entry &entry : found->entries)
            entries.emplace_back(spelling.Name(entry.key), spelling.Value(entry.value));
    }
    return entries;
}

ProfileEntries ProfileFile::AllEntries(QStringView section) const
{
    if (!FindSection(section))
        return {};
    return SectionEntries(m_bytes, section, Spelling(m_text)).value_or(ProfileEntries());
}

QStringList ProfileFile::SectionNames() const
{
    QStringList names;
    FindSection({});
    for (const Section &section : m_sections)
        names.append(Spelling(m_text).Name(section.name));
    return names;
}

void ProfileFile::Change(Edit edit)
{
    if (!m_step) {
        Write(edit);
        return;
    }
    QByteArray bytes = edit(m_bytes);
    if (bytes != m_bytes) {
        m_bytes = std::move(bytes);
        m_indexed = false;
    }
    m_step->push_back(std::move(edit));
}

void ProfileFile::Write(const Edit &edit)
{
    constexpr std::chrono::milliseconds patienceAfterwards(50);

    const QString target = FollowLinks(m_name);
    const QString folder = QFileInfo(target).path();
    if (!QFileInfo::exists(folder) && !QDir().mkpath(folder))
        throw RunTimeError(ErrorNumber::PathNotFound, u"The folder cannot be made"_s, folder);
    {
        const std::chrono::milliseconds patience =
            m_lockRefused ? std::min(patienceAfterwards, m_patience) : m_patience;
        m_lockRefused = true;
        const FileLock lock(target, patience);
        m_lockRefused = false;
        Refresh();
        QByteArray bytes = edit(m_bytes);
        if (bytes == m_bytes)
            return;
        m_file = ReplaceLockedFile(target, bytes);
        m_stamp = StampOf(m_file);
        m_settled = false;
        m_bytes = std::move(bytes);
        m_indexed = false;
    }
    // The others need not wait for this.
    FlushName(target);
}

void ProfileFile::SetValue(QStringView section, QStringView key, QStringView value)
{
    Change([section = section.toString(), key = key.toString(), value = value.toString(),
            spelling = Spelling(m_text)](const QByteArray &bytes) {
        return WithValue(bytes, section, key, value, spelling);
    });
}

void ProfileFile::SetValues(QStringView section, const ProfileEntries &entries)
{
    if (entries.empty()) {
        FindSection(section);
        if (m_failure)
            throw *m_failure;
        return;
    }
    Change([section = section.toString(), entries, spelling = Spelling(m_text)](const QByteArray &bytes) {
        QByteArray result = bytes;
        for (const auto &[key, value] : entries)
            result = WithValue(result, section, key, value, spelling);
        return result;
    });
}

void ProfileFile::RemoveKey(QStringView section, QStringView key)
{
    if (m_step || StampOf(m_name))
        Change([section = section.toString(), key = key.toString(), spelling = Spelling(m_text)](
                   const QByteArray &bytes) { return WithoutKey(bytes, section, key, spelling); });
}

void ProfileFile::RemoveSection(QStringView section)
{
    if (m_step || StampOf(m_name))
        Change([section = section.toString(), spelling = Spelling(m_text)](const QByteArray &bytes) {
            return WithoutSection(bytes, section, spelling);
        });
}

void ProfileFile::ReplaceSection(QStringView section, const ProfileEntries &entries)
{
    Change([section = section.toString(), entries, spelling = Spelling(m_text)](const QByteArray &bytes) {
        return WithSection(WithoutSection(bytes, section, spelling), section, entries, spelling);
    });
}

void ProfileFile::MoveSection(QStringView section, QStringView name,
                              const std::function<void(ProfileEntries &)> &change)
{
    Change([section = section.toString(), name = name.toString(), change,
            spelling = Spelling(m_text)](const QByteArray &bytes) {
        std::optional<ProfileEntries> entries = SectionEntries(bytes, section, spelling);
        if (!entries)
            return bytes;
        const ProfileEntries before = *entries;
        if (change)
            change(*entries);
        if (section == name && *entries == before)
            return bytes;
        const QByteArray without = WithoutSection(bytes, section, spelling);
        return WithSection(WithoutSection(without, name, spelling), name, *entries, spelling);
    });
}

void ProfileFile::InOneStep(const std::function<void()> &work)
{
    if (m_step) {
        work();
        return;
    }
    FindSection({}); // reads what stands in the file
    m_step.emplace();
    try {
        work();
    } catch (...) {
        // Its failure is the one to tell, whatever comes of the writing.
        try {
            WriteStep();
        } catch (const RunTimeError &) {
        }
        throw;
    }
    WriteStep();
}

void ProfileFile::WriteStep()
{
    const std::vector<Edit> edits = std::move(*m_step);
    m_step.reset();
    if (edits.empty())
        return;
    // m_bytes is not what the file holds.
    m_stamp = FileStamp();
    m_settled = false;
    Write([&edits](const QByteArray &bytes) {
        QByteArray result = bytes;
        for (const Edit &edit : edits)
            result = edit(result);
        return result;
    });
}

} // namespace zelvane
