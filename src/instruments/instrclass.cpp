// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrclass.h"

#include "platform/desktop.h"

#include <algorithm>
#include <memory>
#include <QString>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

pClass &InstrClass::addP(qint16 n)
{
    QString key;
    key.reserve(16); // many are made
    key += u'i';
    key += QString::number(number);
    key += u'p';
    key += QString::number(n);
    auto field = std::make_unique<pClass>();
    field->number = n;
    field->key = key;
    return pCol.Add(key, std::move(field));
}

pClass *InstrClass::getPbyNumber(qint32 n)
{
    return const_cast<pClass *>(std::as_const(*this).getPbyNumber(n));
}

const pClass *InstrClass::getPbyNumber(qint32 n) const
{
    for (const pClass &field : pCol) {
        if (field.number == n)
            return &field;
    }
    return nullptr;
}

bool InstrClass::sortpCol(Desktop &desktop)
{
    qsizetype sorted = 0;
    while (sorted < pCol.Count() && pCol.At(sorted).number == sorted + 1)
        ++sorted;
    if (sorted == pCol.Count())
        return true;
    const std::vector<qsizetype> places = Places();
    if (std::find(places.begin(), places.end(), -1) != places.end()) {
        desktop.MessageBox(
            {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
        return false;
    }
    pCol.Reorder(places);
    return true;
}

bool InstrClass::pMoveDown(qint16 n)
{
    return Exchange(n, qint32(n) + 1);
}

bool InstrClass::pMoveUp(qint16 n)
{
    return Exchange(n, qint32(n) - 1);
}

bool InstrClass::Exchange(qint32 n, qint32 other)
{
    pClass *const field = getPbyNumber(n);
    pClass *const neighbour = getPbyNumber(other);
    if (!field || !neighbour)
        return false;
    std::swap(field->number, neighbour->number);
    return true;
}

bool InstrClass::pRemove(qint16 n)
{
    const pClass *const field = getPbyNumber(n);
    if (!field)
        return false;
    pCol.Remove(QString(field->key));
    for (pClass &other : pCol) {
        if (other.number > n)
            --other.number;
    }
    return true;
}

std::vector<pClass *> InstrClass::ByNumber()
{
    std::vector<pClass *> fields;
    for (const qsizetype place : Places())
        fields.push_back(place < 0 ? nullptr : &pCol.At(place));
    return fields;
}

std::vector<qsizetype> InstrClass::Places() const
{
    std::vector<qsizetype> places(std::size_t(pCol.Count()), -1);
    for (qsizetype index = 0; index < pCol.Count(); ++index) {
        const qint16 n = pCol.At(index).number;
        if (n >= 1 && n <= pCol.Count() && places[std::size_t(n) - 1] < 0)
            places[std::size_t(n) - 1] = index;
    }
    return places;
}

QString InstrumentKey(qint16 number)
{
    return u'i' + QString::number(number);
}

} // namespace zelvane
