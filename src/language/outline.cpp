// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"

#include "language/normalizespaces.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

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

QString Outline::Key(qsizetype place) const
{
    const OutlineNode &node = At(place);
    const KindNames &names = NamesOf(node.kind);
    if (node.isRoot)
        return names.rootKey;
    const bool isBelowChild = node.kind == OutlineKind::Label || node.kind == OutlineKind::MacroCall;
    return (isBelowChild ? Key(node.parent) : QString()) + names.key + QString::number(node.number);
}

QString Outline::Caption(qsizetype place) const
{
    const OutlineNode &node = At(place);
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

qsizetype Outline::Find(QStringView key) const
{
    for (qsizetype place = 0; place < Count(); ++place) {
        if (Key(place) == key)
            return place;
    }
    return -1;
}

std::span<const qint32> Outline::Children(qsizetype place) const
{
    if (m_nodes.empty())
        return {};
    const auto parent = std::size_t(place + 1);
    const qint32 start = parent == 0 ? 0 : m_childrenEnd[parent - 1];
    return std::span(m_children).subspan(std::size_t(start), std::size_t(m_childrenEnd[parent] - start));
}

QStringView Outline::Part(const TextSpan &span) const
{
    const qsizetype end = std::min(span.end, m_text.size());
    return QStringView(m_text).sliced(span.start, end - span.start);
}

} // namespace zelvane
