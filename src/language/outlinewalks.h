// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "shell/findtext.h"

#include <QChar>
#include <QStringView>
#include <QtGlobal>
#include <string_view>

namespace zelvane
{

// How the scanners of the outline walk over a text. Offsets count from 0.

/// Whether no letter, digit or underscore touches the stretch.
inline bool IsWholeWord(QStringView text, qsizetype start, qsizetype end)
{
    return (start == 0 || !IsWordCharacter(text[start - 1])) &&
           (end == text.size() || !IsWordCharacter(text[end]));
}

/// A word that is searched for without regard to case.
class Keyword
{
public:
    /// @param word in lower case
    explicit constexpr Keyword(std::u16string_view word) : m_word(word) {}

    qsizetype Size() const { return qsizetype(m_word.size()); }

    /// The first hit as a whole word in [from, end), -1 without one.
    qsizetype Find(QStringView text, qsizetype from, qsizetype end) const;

private:
    /// Whether the word may begin at one of the places; the letters looked at have no third form.
    bool MayStandIn(const char16_t *places, qsizetype count) const;
    bool StandsAt(QStringView text, qsizetype at) const;

    std::u16string_view m_word;
};

/// Finds the next character of a kind. Asked about rising offsets it reads no character twice.
template <bool (*IsWanted)(QChar)> class NextCharacter
{
public:
    explicit NextCharacter(QStringView text) : m_text(text) {}

    /// The next such character at or behind the offset, else the end of the text.
    qsizetype From(qsizetype offset)
    {
        if (offset < m_from || offset > m_next)
            m_from = m_next = offset;
        while (m_next < m_text.size() && !IsWanted(m_text[m_next]))
            ++m_next;
        return m_next;
    }

private:
    QStringView m_text;
    qsizetype m_from = 0; ///< up to m_next there is none
    qsizetype m_next = 0;
};

/// Finds out whether a colon ends a label: a lone word at the start of a line, which may be indented. Asked
/// about rising offsets it reads no character twice.
class LabelLines
{
public:
    explicit LabelLines(QStringView text) : m_text(text) {}

    bool IsLabel(qsizetype colon);
    /// Where the line of the colon that was asked about last begins.
    qsizetype LineStart() const { return m_lineStart; }

private:
    enum class Place { Indent, LeadingReturns, Word, BehindReturn };

    void BeginLine(qsizetype start);
    void Read(QChar c);

    QStringView m_text;
    qsizetype m_lineStart = 0;
    qsizetype m_read = 0; ///< how far the line is read
    Place m_place = Place::Indent;
    bool m_isLabel = true;
};

/// Walks the fields of table statements.
class TableWalk
{
public:
    explicit TableWalk(QStringView text) : m_text(text) {}

    /// @param start the offset behind the letter @return whether a table statement of four fields stands
    /// there that is no "f 0"
    bool IsTable(qsizetype start);
    /// A field, from 1, of the last statement. Its length leaves out the slashes in it. Kept: a field that no
    /// separator has ended has the length that the field of its number had before.
    const TextSpan &Field(int number) const { return m_fields[number - 1]; }

private:
    static constexpr int Fields = 4;

    QStringView m_text;
    TextSpan m_fields[Fields];
};

} // namespace zelvane
