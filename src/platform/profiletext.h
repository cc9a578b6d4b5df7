// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <utility>
#include <vector>

namespace zelvane
{

/// Keys and their values, in the order of a section.
using ProfileEntries = std::vector<std::pair<QString, QString>>;

/// How a profile file spells its names and values. Escaped ones hold any text. Plain ones stand as they are,
/// for files that other programs read too: what a line cannot hold is lost at the first LF, and names lose
/// the blanks around them. A plain value is read without one pair of quotes around it (`"` or `'`), and is
/// written in a pair where it would lose blanks or quotes of its own.
enum class ProfileText { Escaped, Plain };

// The text of a profile file. What is said of its lines and escapes stands with ProfileFile.
namespace profile
{

/// Names that are equal without regard to case are equal when folded.
QString Fold(QStringView text);

/// The spelling of names and values in a file.
class Spelling
{
public:
    explicit Spelling(ProfileText text) : m_plain(text == ProfileText::Plain) {}

    bool HasEscapes() const { return !m_plain; }

    QString Name(QByteArrayView written) const;
    QString Value(QByteArrayView written) const;

    QByteArray WrittenSection(QStringView name) const;
    QByteArray WrittenKey(QStringView key) const;
    QByteArray WrittenValue(QStringView value) const;

private:
    bool m_plain;
};

/// A line of a file, which its parts point into.
struct Line {
    enum class Kind { Blank, Other, Section, Entry };
    Kind kind = Kind::Other;
    QByteArrayView whole; // with its line end
    QByteArrayView end;   // LF, CR LF, or empty at the end of the file
    QByteArrayView name;  // of a section or a key, as written
    QByteArrayView value; // as written
};

/// Reads the lines behind the mark that a file may begin with.
class LineReader
{
public:
    explicit LineReader(QByteArrayView bytes);

    /// @return false behind the last line
    bool Next(Line &line);

private:
    QByteArrayView m_rest;
};

// Each gives a whole file for a whole file.

/// Adds a section at the end.
QByteArray WithSection(const QByteArray &bytes, QStringView section, const ProfileEntries &entries,
                       Spelling spelling);
/// Puts a value in the place of the first one that the key has, or behind the section's last key.
QByteArray WithValue(const QByteArray &bytes, QStringView section, QStringView key, QStringView value,
                     Spelling spelling);
QByteArray WithoutKey(const QByteArray &bytes, QStringView section, QStringView key, Spelling spelling);
/// Comments and lines that are not understood stay.
QByteArray WithoutSection(const QByteArray &bytes, QStringView section, Spelling spelling);

/// All entries, equal keys among them; no value where there is no such section.
std::optional<ProfileEntries> SectionEntries(const QByteArray &bytes, QStringView section, Spelling spelling);

} // namespace profile

} // namespace zelvane
