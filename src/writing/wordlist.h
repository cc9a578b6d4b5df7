// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <span>
#include <vector>

namespace zelvane
{

/// What a name stands for. Of a name that stands for several things the first counts.
enum class NameKind : quint8 { Opcode, UserOpcode, Macro, Instrument, Table, Word };

/// Some of the kinds of name, a bit for each.
class NameKinds
{
public:
    constexpr NameKinds(std::initializer_list<NameKind> kinds)
    {
        for (const NameKind kind : kinds)
            m_bits |= 1u << unsigned(kind);
    }
    constexpr bool Has(NameKind kind) const { return m_bits >> unsigned(kind) & 1; }

private:
    unsigned m_bits = 0;
};

/// A name that may go on what has been typed, as it is shown and put in.
struct Completion {
    QString text;
    NameKind kind = NameKind::Word;

    bool operator==(const Completion &) const = default;
};

/// A list of names, made once and asked often. A name holds no line feed; an empty one is left out.
class WordList
{
public:
    struct Name {
        QStringView text;
        NameKind kind = NameKind::Word;
        bool again = false; ///< it stands in the text more than once
    };

    WordList() = default;
    /// Names may repeat: of equal ones the first of their kinds counts. They are copied.
    explicit WordList(std::vector<Name> names);

    std::size_t Count() const { return m_names.size(); }
    QStringView Text(std::size_t name) const
    {
        return QStringView(m_text).sliced(m_names[name].start, m_names[name].length);
    }
    NameKind Kind(std::size_t name) const { return m_names[name].kind; }
    bool Again(std::size_t name) const { return m_names[name].again; }

    /// How well a name answers to what was typed, the best first: it begins with it; begins with it in other
    /// letters' case; a part of it (behind an underscore, at a capital letter, where letters and digits
    /// meet, behind the letters that tell the rate of a variable) does; it holds it.
    enum class Rank : quint8 { Beginning, BeginningAnyCase, Part, Inside };
    /// A name that answers.
    struct Hit {
        std::size_t name;
        Rank rank;
    };

    /// The names of some kinds that answer, the best `most` of them: by rank, then the shorter ones, then by
    /// the alphabet. Of thousands of one rank the first by the alphabet count. Parts are looked for from two
    /// letters on. With nothing typed every name answers, by the alphabet.
    std::vector<Hit> Find(QStringView typed, NameKinds kinds, std::size_t most) const;
    /// The place of a name in the list, to the letter; Count() where it is not there.
    std::size_t IndexOf(QStringView name) const;

private:
    struct Place {
        qint32 start;
        qint32 length;
        NameKind kind;
        bool again;
    };

    QString m_text;             ///< all names, each with a line feed behind it, by the alphabet
    QString m_folded;           ///< the same in small letters
    std::vector<Place> m_names; ///< where they stand in both
};

/// The best `most` answers: by rank, then what is typed to its end already, then what the text uses, then as
/// in each list. A name that stands in several lists is there once, with the first of its kinds.
/// @param language the names that are there in each text @param texts those that this text holds
/// @param typed is left out of the answers where it is a mere word that stands in the text once: there it is
/// what is typed
std::vector<Completion> Complete(QStringView typed, const WordList &language,
                                 std::span<const WordList *const> texts, NameKinds kinds, std::size_t most);

} // namespace zelvane
