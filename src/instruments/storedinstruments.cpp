// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/storedinstruments.h"

#include "instruments/xmltext.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <QString>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

bool IsElement(const pugi::xml_node &node, const char *name)
{
    return node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0;
}

/// The value of an attribute that is a small number without a sign, as the program writes nearly all; -1 for
/// another one.
int SmallNumber(const char *value)
{
    int number = 0;
    int digits = 0;
    for (; value[digits] >= '0' && value[digits] <= '9' && digits < 4; ++digits)
        number = number * 10 + (value[digits] - '0');
    return digits > 0 && value[digits] == 0 ? number : -1;
}

template <typename Integer> Integer IntegerOf(const pugi::xml_attribute &attribute)
{
    const int small = SmallNumber(attribute.value());
    if (small >= 0 && small <= std::numeric_limits<Integer>::max())
        return Integer(small);
    return ToInteger<Integer>(ToNumber(QString::fromUtf8(attribute.value())));
}

double ValueOf(const pugi::xml_attribute &attribute)
{
    const int small = SmallNumber(attribute.value());
    return small >= 0 ? small : Val(QString::fromUtf8(attribute.value()));
}

/// Takes the text of an attribute that is there.
void Take(QString &to, const pugi::xml_node &element, const char *name)
{
    if (const pugi::xml_attribute attribute = element.attribute(name))
        to = QString::fromUtf8(attribute.value());
}

/// The number of a p-field; one without a number is p0.
qint16 FieldNumber(const pugi::xml_node &element)
{
    const pugi::xml_attribute attribute = element.attribute("number");
    return attribute ? IntegerOf<qint16>(attribute) : qint16(0);
}

PFormat FormatOf(const pugi::xml_attribute &attribute)
{
    return PFormat(IntegerOf<quint8>(attribute));
}

void ReadField(pClass &field, const pugi::xml_node &element)
{
    Take(field.nome, element, "name");
    Take(field.description, element, "description");
    Take(field.group, element, "group");
    if (const pugi::xml_attribute format = element.attribute("format"))
        field.formato = FormatOf(format);
    if (const pugi::xml_attribute min = element.attribute("min"))
        field.min = ValueOf(min);
    if (const pugi::xml_attribute max = element.attribute("max"))
        field.max = ValueOf(max);
    Take(field.unit, element, "unit");
    Take(field.variable, element, "variable");
}

bool HasOnly(const pugi::xml_node &element, std::initializer_list<const char *> names)
{
    for (const pugi::xml_attribute &attribute : element.attributes()) {
        if (std::none_of(names.begin(), names.end(),
                         [&](const char *name) { return std::strcmp(name, attribute.name()) == 0; }))
            return false;
    }
    return true;
}

/// Adds a number. @return false when it was there
template <typename Numbers> bool IsNew(Numbers &numbers, qint16 number)
{
    return numbers.insert(number).second;
}

bool IsPlainField(const pugi::xml_node &element)
{
    if (!IsElement(element, "p") || element.first_child() ||
        !HasOnly(element,
                 {"number", "name", "description", "group", "format", "min", "max", "unit", "variable"}))
        return false;
    if (const pugi::xml_attribute format = element.attribute("format"))
        FormatOf(format);
    ValueOf(element.attribute("min"));
    ValueOf(element.attribute("max"));
    return true;
}

bool IsPlainInstrument(const pugi::xml_node &element)
{
    if (!IsInstrument(element) || !HasOnly(element, {"number", "name", "description"}))
        return false;
    std::set<qint16> numbers;
    return std::all_of(element.begin(), element.end(), [&](const pugi::xml_node &field) {
        return IsPlainField(field) && IsNew(numbers, FieldNumber(field));
    });
}

bool ArePlainInstruments(const XmlText &xml)
{
    const pugi::xml_node root = xml.Root();
    if (!IsElement(root, "instruments") || root.first_attribute() || root != xml.Document().first_child() ||
        root != xml.Document().last_child())
        return false;
    std::set<qint16> numbers;
    return std::all_of(root.begin(), root.end(), [&](const pugi::xml_node &instrument) {
        return IsPlainInstrument(instrument) && IsNew(numbers, NumberOf(instrument));
    });
}

} // namespace

std::unique_ptr<InstrClass> ReadInstrument(const pugi::xml_node &element, FieldBudget &budget)
{
    auto instrument = std::make_unique<InstrClass>();
    if (const pugi::xml_attribute number = element.attribute("number"))
        instrument->number = IntegerOf<qint16>(number);
    Take(instrument->nome, element, "name");
    Take(instrument->description, element, "description");
    for (pugi::xml_node node = NextNode(element, element); node; node = NextNode(node, element)) {
        if (!IsElement(node, "p"))
            continue;
        if (--budget.left < 0)
            throw RunTimeError(ErrorNumber::OutOfMemory, u"There are too many p-fields"_s);
        ReadField(instrument->addP(FieldNumber(node)), node);
    }
    return instrument;
}

qint16 NumberOf(const pugi::xml_node &element)
{
    return IntegerOf<qint16>(element.attribute("number"));
}

bool IsInstrument(const pugi::xml_node &node)
{
    return IsElement(node, "instr");
}

bool HoldsInstrumentsOnly(const XmlText &xml)
{
    try {
        return ArePlainInstruments(xml);
    } catch (const RunTimeError &) {
        return false; // an attribute that does not convert
    }
}

} // namespace zelvane
