// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <memory>
#include <pugixml.hpp>
#include <QtGlobal>

namespace zelvane
{

class XmlText;

/// How many p-fields may still be read: an instrument inside another one shares its p-fields, so that few
/// tags could fill the memory.
struct FieldBudget {
    qsizetype left = 250'000;
};

/// The instrument of an element. @throws RunTimeError for an attribute that does not convert, for a p-field
/// that is there twice, and when the budget is used up
std::unique_ptr<InstrClass> ReadInstrument(const pugi::xml_node &element, FieldBudget &budget);

/// The number of an element, as instruments are stored under it. @throws RunTimeError when it does not
/// convert
qint16 NumberOf(const pugi::xml_node &element);

/// Whether it is the element of an instrument.
bool IsInstrument(const pugi::xml_node &node);

/// Whether a store is nothing but instruments as the program reads them all, without an error on the way.
bool HoldsInstrumentsOnly(const XmlText &xml);

} // namespace zelvane
