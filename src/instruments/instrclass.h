// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/keyedcollection.h"

#include <QString>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

class Desktop;

/// What the value of a p-field is, in the numbers of the store. A store may hold others.
enum class PFormat : quint8 { Real = 0, Integer = 1, Boolean = 2, String = 3 };

/// A p-field of an instrument.
struct pClass {
    /// What it is found by in `pCol`: "i", the instrument's number, "p", the number that it was made with. It
    /// does not follow the number.
    QString key;
    double min = 0;
    double max = 0;
    QString nome;
    QString description;
    QString unit; ///< shown, and nothing else
    PFormat formato = PFormat::Real;
    QString group;
    QString variable;  ///< of the orchestra, that takes the p-field; begins with the letter i
    QString value;     ///< its text in a score statement; not stored
    qint16 number = 0; ///< 1 is p1
};

/// What is known of an instrument.
class InstrClass
{
public:
    KeyedCollection<pClass> pCol; ///< the p-fields by their `key`
    QString nome;
    QString description;
    qint16 number = 0; ///< set before the first addP, whose keys it goes into

    /// Makes the p-field `n`, behind the others. @throws RunTimeError when there was one with its key
    pClass &addP(qint16 n);
    /// The first p-field of that number, null when there is none.
    pClass *getPbyNumber(qint32 n);
    const pClass *getPbyNumber(qint32 n) const;
    /// Brings the p-fields into the order of their numbers, which are to be 1 to Count. @return false when
    /// they are not: the user has been told, and nothing has changed
    bool sortpCol(Desktop &desktop);
    /// Exchanges the numbers of the p-field `n` and of the one behind it. @return false when one is missing
    bool pMoveDown(qint16 n);
    /// Exchanges the numbers of the p-field `n` and of the one before it. @return false when one is missing
    bool pMoveUp(qint16 n);
    /// Takes the p-field `n` away; those of higher numbers move up by one. @return false when there is none
    bool pRemove(qint16 n);

    /// The p-fields of the numbers 1 to Count, each as getPbyNumber finds it; null for one that is missing.
    std::vector<pClass *> ByNumber();

private:
    bool Exchange(qint32 n, qint32 other);
    /// The index in `pCol` of the p-field of each number from 1 to Count; -1 for one that is missing.
    std::vector<qsizetype> Places() const;
};

/// The instruments of a store, each under the key "i" and its number.
using Instruments = KeyedCollection<InstrClass>;

/// The key of an instrument among the others.
QString InstrumentKey(qint16 number);

} // namespace zelvane
