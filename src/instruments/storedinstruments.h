// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instruments/instrclass.h"

#include <memory>
#include <pugixml.hpp>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

class XmlText;

/// Reads instruments from the elements of one store.
class InstrumentReader
{
public:
    /// The most p-fields that are read from one store: an instrument inside another one shares its p-fields,
    /// so that few tags could fill the memory.
    static constexpr qsizetype MostFields = 250'000;

    /// @throws RunTimeError for an attribute that does not convert, for a p-field that is there twice, and
    /// when there are too many
    std::unique_ptr<InstrClass> Read(const pugi::xml_node &element);

private:
    /// A text that neighbours often have in common: it is held once then.
    class Shared
    {
    public:
        QString TextOf(const pugi::xml_attribute &attribute);

    private:
        const char *m_value = "";
        QString m_text;
    };

    void Take(pClass &field, const pugi::xml_attribute &attribute);

    qsizetype m_fieldsLeft = MostFields;
    Shared m_group;
    Shared m_unit;
    Shared m_variable;
    Shared m_name;
    Shared m_description;
};

/// The number of an element, as instruments are stored under it. @throws RunTimeError when it does not
/// convert
qint16 NumberOf(const pugi::xml_node &element);

/// Whether it is the element of an instrument.
bool IsInstrument(const pugi::xml_node &node);

/// Whether a store is nothing but instruments as the program reads them all, without an error on the way.
bool HoldsInstrumentsOnly(const XmlText &xml);

} // namespace zelvane
