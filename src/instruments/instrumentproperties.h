// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <QString>
#include <QStringList>

namespace zelvane
{

class Desktop;
struct EditorContext;
struct LoadedStore;

// What the Instrument Properties dialog shows and does.

/// The fields of the page of an instrument, as they stand.
struct InstrumentPage {
    QString name = {};
    QString description = {};
    QString number = {};

    bool operator==(const InstrumentPage &) const = default;
};

/// The fields of the page of a p-field, as they stand.
struct FieldPage {
    QString name = {};
    QString description = {};
    QString group = {};
    QString min = {};
    QString max = {};
    int format = 0; ///< row of the list, -1 for a format that is not in it
    QString unit = {};
    QString variable = {};

    bool operator==(const FieldPage &) const = default;
};

InstrumentPage PageOf(const InstrClass &instrument);
FieldPage PageOf(const pClass &field);

/// Takes a page into its instrument. Its key stays as it is until the next load.
/// @return false when it may not be: the user has been told, and nothing has changed. @throws RunTimeError
/// for a number that an instrument cannot have; nothing has changed then
bool StorePage(InstrClass &instrument, const InstrumentPage &page, const Instruments &all, Desktop &desktop);
/// Takes a page into its p-field. What is no number is 0. @return and @throws as above
bool StorePage(pClass &field, const FieldPage &page, Desktop &desktop);

/// The text of a node of the tree.
QString NodeCaption(const InstrClass &instrument);
QString NodeCaption(const pClass &field);

/// The groups of all p-fields, each once, in the order in which they first come.
QStringList ParameterGroups(const Instruments &instruments);

/// Asks for a number and makes an instrument with the p-fields that every one has. @return null when the user
/// has given none, or one that is taken, of which he has been told @throws RunTimeError for a number beyond
/// 16 bits
InstrClass *NewInstrument(Instruments &instruments, Desktop &desktop);

/// Keeps the instruments with the document. @param loaded the store that they come from @return false when
/// they could not be kept @throws RunTimeError as StoreDataSection
bool StoreInstruments(EditorContext &editor, Instruments &instruments, const LoadedStore &loaded);

} // namespace zelvane
