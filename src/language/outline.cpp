// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"

#include "language/normalizespaces.h"
#include "platform/numbers.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype LongestShown = 300; ///< characters

struct KindNames {
    QLatin1String rootKey;
    QLatin1String rootCaption;
    QLatin1String key;
    QLatin1String image;
};

const KindNames &NamesOf(OutlineKind kind)
{
    static const KindNames names[] = {
        {"rootins"_L1, "Instruments"_L1, "ins"_L1, "instr"_L1},
        {"rootmac"_L1, "Macros"_L1, "mac"_L1, "macro"_L1},
        {"rootinc"_L1, "Include"_L1, "inc"_L1, "include"_L1},
        {"rootsec"_L1, "Sections"_L1, "sec"_L1, "section"_L1},
        {"rootnse"_L1, "Named Sections"_L1, "nse"_L1, "namedsection"_L1},
        {"rootftb"_L1, "Function Tables"_L1, "ftb"_L1, "table"_L1},
        {"rootags"_L1, "Tags"_L1, "tag"_L1, "csd"_L1},
        {{}, {}, "lbl"_L1, "label"_L1},
        {{}, {}, "cal"_L1, "macrocall"_L1},
    };
    return names[int(kind)];
}

} // namespace

QLatin1String ImageOfKind(OutlineKind kind)
{
    return NamesOf(kind).image;
}

OutlineNode Outline::At(qsizetype place) const
{
    if (place < NodeCount())
        return m_nodes[std::size_t(place)];
    const std::size_t macro = MacroOfCall(place);
    const qsizetype row = Row(place);
    const Call &call = m_calls[std::size_t(m_macros[macro].firstCall + row)];
    return {.kind = OutlineKind::MacroCall,
            .parent = m_firstMacro + qsizetype(macro),
            .number = qint32(row) + 1,
            .tag = call.tag,
            .caption = call.caption};
}

QString Outline::Key(qsizetype place) const
{
    const OutlineNode node = At(place);
    const KindNames &names = NamesOf(node.kind);
    if (node.isRoot)
        return names.rootKey;
    const bool isBelowChild = node.kind == OutlineKind::Label || node.kind == OutlineKind::MacroCall;
    return (isBelowChild ? Key(node.parent) : QString()) + names.key + QString::number(node.number);
}

QString Outline::Caption(qsizetype place) const
{
    const OutlineNode node = At(place);
    if (node.isRoot)
        return NamesOf(node.kind).rootCaption;
    switch (node.kind) {
    case OutlineKind::Section:
        return u"Section "_s + QString::number(node.number + 1);
    case OutlineKind::FunctionTable: {
        const TableFields &fields = m_tables[std::size_t(node.number - 1)];
        return Part(fields.number).toString() + u" GEN"_s + Part(fields.generator).toString() + u' ' +
               Part(fields.size).toString();
    }
    case OutlineKind::Include: {
        const QString name = NormalizeSpaces(Part(node.caption));
        return name.mid(1, name.size() - 2);
    }
    case OutlineKind::Tag:
    case OutlineKind::MacroCall:
        return Part(node.caption).toString();
    case OutlineKind::Instrument:
    case OutlineKind::Macro:
    case OutlineKind::NamedSection:
    case OutlineKind::Label:
        break;
    }
    return NormalizeSpaces(Part(node.caption));
}

QString Outline::ShownCaption(qsizetype place) const
{
    QString caption = Caption(place);
    if (caption.size() > LongestShown) {
        caption.truncate(LongestShown - 1);
        caption += u'\u2026';
    }
    return caption.replace(u'\n', u' ');
}

qsizetype Outline::Find(QStringView key) const
{
    // What the key would be the key of, if it is one.
    qsizetype digits = key.size();
    while (digits > 0 && IsDigit(key[digits - 1]))
        --digits;
    const QStringView prefix = key.first(digits);
    const qsizetype number = key.sliced(digits).toLongLong();
    qsizetype place = -1;
    if (prefix.size() > 3) {
        const qsizetype parent = Find(prefix.chopped(3));
        place = parent < 0 ? -1 : ChildOrNone(parent, number - 1);
    }
    for (qsizetype row = 0; place < 0 && row < ChildCount(-1); ++row) {
        const qsizetype root = Child(-1, row);
        const OutlineKind kind = At(root).kind;
        if (Key(root) == key)
            return root;
        if (NamesOf(kind).key != prefix)
            continue;
        if (kind == OutlineKind::Tag)
            place = number < NodeCount() ? number : -1; // numbered as they came into the tree
        else
            place = ChildOrNone(root, kind == OutlineKind::Section ? number : number - 1);
    }
    return place >= 0 && Key(place) == key ? place : -1;
}

qsizetype Outline::ChildOrNone(qsizetype place, qsizetype row) const
{
    return row >= 0 && row < ChildCount(place) ? Child(place, row) : -1;
}

std::size_t Outline::MacroOfCall(qsizetype place) const
{
    const auto behind =
        std::upper_bound(m_macros.begin(), m_macros.end(), place - NodeCount(),
                         [](qsizetype call, const Macro &macro) { return call < macro.placesEnd; });
    return std::size_t(behind - m_macros.begin());
}

const Outline::Macro *Outline::MacroAt(qsizetype place) const
{
    if (place < 0 || place >= NodeCount())
        return nullptr;
    const OutlineNode &node = m_nodes[std::size_t(place)];
    return node.kind == OutlineKind::Macro && !node.isRoot ? &m_macros[std::size_t(node.number - 1)]
                                                           : nullptr;
}

qsizetype Outline::ChildCount(qsizetype place) const
{
    if (m_nodes.empty() || place >= NodeCount())
        return 0;
    if (const Macro *macro = MacroAt(place))
        return macro->CallCount();
    const auto parent = std::size_t(place + 1);
    return m_childrenEnd[parent] - (parent == 0 ? 0 : m_childrenEnd[parent - 1]);
}

qsizetype Outline::Child(qsizetype place, qsizetype row) const
{
    if (const Macro *macro = MacroAt(place))
        return NodeCount() + macro->placesEnd - macro->CallCount() + row;
    const auto parent = std::size_t(place + 1);
    return m_children[std::size_t((parent == 0 ? 0 : m_childrenEnd[parent - 1]) + row)];
}

qsizetype Outline::Row(qsizetype place) const
{
    if (place < NodeCount())
        return m_rows[std::size_t(place)];
    const Macro &macro = m_macros[MacroOfCall(place)];
    return place - NodeCount() - (macro.placesEnd - macro.CallCount());
}

QStringView Outline::Part(const TextSpan &span) const
{
    const qsizetype end = std::min(span.end, m_text.size());
    return QStringView(m_text).sliced(span.start, end - span.start);
}

} // namespace zelvane
