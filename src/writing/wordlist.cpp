// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/wordlist.h"

#include <algorithm>
#include <QStringMatcher>
#include <set>

namespace zelvane
{

namespace
{

/// Of more names of one rank the first by the alphabet are looked at.
constexpr std::size_t MostOfARank = 4096;

/// Small letters, one for one, so that places stay the same.
QString Folded(QStringView text)
{
    QString folded = text.toString();
    for (QChar &c : folded)
        c = c.toLower();
    return folded;
}

/// The order of the alphabet: letters' case decides last.
bool ComesBefore(QStringView folded, QStringView text, QStringView otherFolded, QStringView other)
{
    const int order = folded.compare(otherFolded);
    return order < 0 || (order == 0 && text.compare(other) < 0);
}

/// Where the name itself begins in that of a variable: behind "g" and the letter of the rate.
qsizetype RateLetters(QStringView name)
{
    const qsizetype global = name.startsWith(u'g') ? 1 : 0;
    return global < name.size() && QStringView(u"akiSfwx").contains(name[global]) ? global + 1 : 0;
}

bool BeginsPart(QStringView name, qsizetype at)
{
    if (at == 0)
        return false;
    const QChar before = name[at - 1];
    const QChar c = name[at];
    return before == u'_' || before == u'$' || (c.isUpper() && !before.isUpper()) ||
           c.isDigit() != before.isDigit() || at == RateLetters(name);
}

} // namespace

WordList::WordList(std::vector<Name> names)
{
    struct Row {
        QStringView text;
        QStringView folded;
        NameKind kind;
        bool again;
    };
    qsizetype length = 0;
    for (const Name &name : names)
        length += name.text.size();
    QString folded;
    folded.reserve(length);
    for (const Name &name : names)
        folded += name.text;
    for (QChar &c : folded)
        c = c.toLower();

    std::vector<Row> rows;
    rows.reserve(names.size());
    qsizetype at = 0;
    for (const Name &name : names) {
        if (!name.text.isEmpty())
            rows.push_back(
                {name.text, QStringView(folded).sliced(at, name.text.size()), name.kind, name.again});
        at += name.text.size();
    }
    std::sort(rows.begin(), rows.end(), [](const Row &one, const Row &other) {
        if (one.text == other.text)
            return one.kind < other.kind;
        return ComesBefore(one.folded, one.text, other.folded, other.text);
    });
    const auto isSame = [](const Row &one, const Row &other) { return one.text == other.text; };
    rows.erase(std::unique(rows.begin(), rows.end(), isSame), rows.end());

    m_text.reserve(length + qsizetype(rows.size()));
    m_folded.reserve(length + qsizetype(rows.size()));
    m_names.reserve(rows.size());
    for (const Row &row : rows) {
        m_names.push_back({qint32(m_text.size()), qint32(row.text.size()), row.kind, row.again});
        (m_text += row.text) += u'\n';
        (m_folded += row.folded) += u'\n';
    }
}

std::vector<WordList::Hit> WordList::Find(QStringView typed, NameKinds kinds, std::size_t most) const
{
    const QString folded = Folded(typed);
    const QStringView text = m_text, small = m_folded;
    const auto foldedName = [&](const Place &name) { return small.sliced(name.start, name.length); };

    // One list for each rank: the names come by the alphabet.
    const std::size_t enough = typed.isEmpty() ? most : std::max(most, MostOfARank);
    std::vector<Hit> hits[4];
    const auto add = [&](std::size_t name, Rank rank) {
        std::vector<Hit> &row = hits[std::size_t(rank)];
        if (row.size() < enough && kinds.Has(m_names[name].kind))
            row.push_back({name, rank});
    };
    const auto first =
        std::lower_bound(m_names.begin(), m_names.end(), folded,
                         [&](const Place &name, const QString &key) { return foldedName(name) < key; });
    for (auto name = first; name != m_names.end() && foldedName(*name).startsWith(folded); ++name) {
        if (hits[std::size_t(Rank::Beginning)].size() == enough)
            break;
        const bool sameCase = text.sliced(name->start, name->length).startsWith(typed);
        add(std::size_t(name - m_names.begin()), sameCase ? Rank::Beginning : Rank::BeginningAnyCase);
    }

    if (folded.size() >= 2 && hits[0].size() + hits[1].size() < most && !folded.contains(u'\n')) {
        const QStringMatcher matcher(folded);
        std::size_t name = 0;
        qsizetype at = matcher.indexIn(m_folded);
        while (at >= 0 && hits[std::size_t(Rank::Part)].size() < enough) {
            while (m_names[name].start + m_names[name].length <= at)
                ++name;
            const Place &place = m_names[name];
            const bool isBeginning = at == place.start;
            bool isPart = false;
            for (; at >= 0 && at < place.start + place.length; at = matcher.indexIn(m_folded, at + 1))
                isPart = isPart || BeginsPart(text.sliced(place.start, place.length), at - place.start);
            if (!isBeginning)
                add(name, isPart ? Rank::Part : Rank::Inside);
        }
    }

    std::vector<Hit> best;
    for (std::vector<Hit> &row : hits) {
        if (!typed.isEmpty())
            std::stable_sort(row.begin(), row.end(), [this](const Hit &one, const Hit &other) {
                return m_names[one.name].length < m_names[other.name].length;
            });
        best.insert(best.end(), row.begin(),
                    row.begin() + qsizetype(std::min(row.size(), most - best.size())));
    }
    return best;
}

std::size_t WordList::IndexOf(QStringView name) const
{
    const QString folded = Folded(name);
    const auto place =
        std::lower_bound(m_names.begin(), m_names.end(), name, [&](const Place &one, QStringView key) {
            return ComesBefore(QStringView(m_folded).sliced(one.start, one.length),
                               QStringView(m_text).sliced(one.start, one.length), folded, key);
        });
    const auto index = std::size_t(place - m_names.begin());
    return index < Count() && Text(index) == name ? index : Count();
}

std::vector<Completion> Complete(QStringView typed, const WordList &language,
                                 std::span<const WordList *const> texts, NameKinds kinds, std::size_t most)
{
    struct Row {
        QStringView text;
        QString folded;
        WordList::Rank rank;
        NameKind kind;
        bool isTyped = false; ///< to its end
        bool isUsed = false;  ///< the text holds it
    };
    std::vector<Row> rows;
    const auto add = [&](const WordList &list, bool isUsed) {
        for (const WordList::Hit &hit : list.Find(typed, kinds, most + 1)) {
            const QStringView text = list.Text(hit.name);
            if (text != typed || list.Kind(hit.name) != NameKind::Word || list.Again(hit.name))
                rows.push_back({text, Folded(text), hit.rank, list.Kind(hit.name), text == typed, isUsed});
        }
    };
    add(language, false);
    for (const WordList *list : texts)
        add(*list, true);
    std::sort(rows.begin(), rows.end(), [typed](const Row &one, const Row &other) {
        if (one.rank != other.rank)
            return one.rank < other.rank;
        if (one.isTyped != other.isTyped)
            return one.isTyped;
        if (one.isUsed != other.isUsed)
            return one.isUsed;
        if (!typed.isEmpty() && one.text.size() != other.text.size())
            return one.text.size() < other.text.size();
        return ComesBefore(one.folded, one.text, other.folded, other.text);
    });

    std::vector<Completion> completions;
    std::set<QStringView> known;
    for (const Row &row : rows) {
        if (completions.size() == most)
            break;
        if (!known.insert(row.text).second)
            continue;
        NameKind kind = row.kind;
        const auto lookIn = [&](const WordList &list) {
            const std::size_t index = list.IndexOf(row.text);
            if (index < list.Count() && kinds.Has(list.Kind(index)))
                kind = std::min(kind, list.Kind(index));
        };
        lookIn(language);
        for (const WordList *list : texts)
            lookIn(*list);
        completions.push_back({row.text.toString(), kind});
    }
    return completions;
}

} // namespace zelvane
