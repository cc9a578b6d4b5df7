// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/storedinstruments.h"

#include "instruments/xmltext.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <QString>
#include <QtGlobal>
#include <string_view>
#include <system_error>
#include <vector>

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

/// The value of an attribute that is a plain decimal number as a whole. The others go through Val, to the
/// same end for these.
std::optional<double> PlainNumber(const char *value)
{
    const std::size_t length = std::strlen(value);
    if (std::strspn(value, "0123456789.-") != length)
        return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(value, value + length, number);
    return error == std::errc() && end == value + length ? std::optional(number) : std::nullopt;
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
    if (const int small = SmallNumber(attribute.value()); small >= 0)
        return small;
    const std::optional<double> plain = PlainNumber(attribute.value());
    return plain ? *plain : Val(QString::fromUtf8(attribute.value()));
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

/// @param numbers are sorted
bool AreDifferent(std::vector<qint16> &numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return std::adjacent_find(numbers.begin(), numbers.end()) == numbers.end();
}

/// Whether an element has no other attributes than these, each at most once. @throws RunTimeError for one
/// that does not convert
bool HasOnly(const pugi::xml_node &element, std::initializer_list<std::string_view> names)
{
    unsigned int seen = 0;
    const auto *expected = names.begin(); // behind the last one: nearly all come in their order
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
        const std::string_view name = attribute.name();
        const auto *const known = expected != names.end() && *expected == name
                                      ? expected
                                      : std::find(names.begin(), names.end(), name);
        const unsigned int bit = 1U << (known - names.begin());
        if (known == names.end() || (seen & bit) != 0)
            return false;
        seen |= bit;
        expected = known + 1;
        if (name == "format")
            FormatOf(attribute);
        else if (name == "min" || name == "max")
            ValueOf(attribute);
    }
    return true;
}

/// @param fieldsLeft how many p-fields there may be, less those of this one afterwards
bool IsPlainInstrument(const pugi::xml_node &element, qsizetype &fieldsLeft)
{
    if (!IsInstrument(element) || !HasOnly(element, {"number", "name", "description"}))
        return false;
    std::vector<qint16> numbers;
    for (pugi::xml_node field = element.first_child(); field; field = field.next_sibling()) {
        if (--fieldsLeft < 0 || !IsElement(field, "p") || field.first_child() ||
            !HasOnly(field,
                     {"number", "name", "description", "group", "format", "min", "max", "unit", "variable"}))
            return false;
        numbers.push_back(FieldNumber(field));
    }
    return AreDifferent(numbers);
}

bool ArePlainInstruments(const XmlText &xml)
{
    const pugi::xml_node root = xml.Root();
    if (!IsElement(root, "instruments") || root.first_attribute() || root != xml.Document().first_child() ||
        root != xml.Document().last_child())
        return false;
    std::vector<qint16> numbers;
    qsizetype fieldsLeft = InstrumentReader::MostFields;
    for (const pugi::xml_node &instrument : root.children()) {
        if (!IsPlainInstrument(instrument, fieldsLeft))
            return false;
        numbers.push_back(NumberOf(instrument));
    }
    return AreDifferent(numbers);
}

} // namespace

QString InstrumentReader::Shared::TextOf(const pugi::xml_attribute &attribute)
{
    if (std::strcmp(attribute.value(), m_value) != 0) {
        m_value = attribute.value();
        m_text = QString::fromUtf8(m_value);
    }
    return m_text;
}

void InstrumentReader::Take(pClass &field, const pugi::xml_attribute &attribute)
{
    const std::string_view name = attribute.name();
    if (name == "name")
        field.nome = m_name.TextOf(attribute);
    else if (name == "description")
        field.description = m_description.TextOf(attribute);
    else if (name == "group")
        field.group = m_group.TextOf(attribute);
    else if (name == "format")
        field.formato = FormatOf(attribute);
    else if (name == "min")
        field.min = ValueOf(attribute);
    else if (name == "max")
        field.max = ValueOf(attribute);
    else if (name == "unit")
        field.unit = m_unit.TextOf(attribute);
    else if (name == "variable")
        field.variable = m_variable.TextOf(attribute);
}

std::unique_ptr<InstrClass> InstrumentReader::Read(const pugi::xml_node &element)
{
    auto instrument = std::make_unique<InstrClass>();
    if (const pugi::xml_attribute number = element.attribute("number"))
        instrument->number = IntegerOf<qint16>(number);
    instrument->nome = QString::fromUtf8(element.attribute("name").value());
    instrument->description = QString::fromUtf8(element.attribute("description").value());
    for (pugi::xml_node node = NextNode(element, element); node; node = NextNode(node, element)) {
        if (!IsElement(node, "p"))
            continue;
        if (--m_fieldsLeft < 0)
            throw RunTimeError(ErrorNumber::OutOfMemory, u"There are too many p-fields"_s);
        pClass &field = instrument->addP(FieldNumber(node));
        for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
             attribute = attribute.next_attribute())
            Take(field, attribute);
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
