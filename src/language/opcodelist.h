// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <memory>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace zelvane
{

class Desktop;
class OpcodeSet;

/// Constant tables that stand beside the opcode list; no scanner asks them.
inline constexpr char16_t KeywordTable[] = u" instr endin if sr kr ksmps nchnls ";
inline constexpr char16_t ScoreStatementLetters[] = u"iftabvwsrmnew";

/// Walks the words of an opcode file: every run of characters other than blank, tab, carriage return and line
/// feed. A word that the text's end cuts off gets the length of the word before it, as far as there is text
/// (none for a first word). Kept: a file that is to lose no word ends in a line end.
class OpcodeWalk
{
public:
    explicit OpcodeWalk(QStringView text) : m_text(text) {}

    /// @return false when no word is left
    bool Next();
    /// The word that Next found; empty for a first word that nothing ends.
    QStringView Word() const { return m_word; }
    /// How far the walk has come, in characters.
    qsizetype Position() const { return m_position; }

private:
    QStringView m_text;
    QStringView m_word;
    qsizetype m_position = 0;
    qsizetype m_length = 0;
};

/// The opcode names that the program knows, from a file of words.
class OpcodeList
{
public:
    OpcodeList();
    ~OpcodeList();
    OpcodeList(const OpcodeList &) = delete;
    OpcodeList &operator=(const OpcodeList &) = delete;

    /// Adds every word of the text.
    void Add(const QString &text);

    /// Whether " word " stands in OpcodeWords, case and all. The last word of all has no blank behind it, so
    /// it is found only if it stands earlier too.
    bool Contains(QStringView word) const;

    /// Every word, each behind a blank, after one blank at the start; none at the end.
    const QString &OpcodeWords() const { return m_words; }
    /// The words from index 1; index 0 is empty.
    const QStringList &Opcodes() const { return m_opcodes; }
    /// The lookup itself, for scanners.
    const OpcodeSet &Set() const { return *m_set; }

private:
    QString m_words;
    QStringList m_opcodes;
    std::unique_ptr<OpcodeSet> m_set;
};

/// Where the opcode file of a folder stands.
QString OpcodeFile(const QString &folder);

/// Loads the opcode file of the program's folder into the list. When it cannot be read the general error
/// report is shown and the list stays as it was.
void LoadOpcodes(OpcodeList &list, const QString &folder, Desktop &desktop);

} // namespace zelvane
