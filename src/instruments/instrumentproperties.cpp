// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrumentproperties.h"

#include "instruments/instrgui.h"
#include "instruments/zelvanedata.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "shell/editorcontext.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <QSet>
#include <QString>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LastFormat = int(PFormat::String);

void Warn(Desktop &desktop, const QString &text)
{
    desktop.MessageBox({.text = text, .icon = BoxIcon::Warning});
}

/// Whether an instrument has this number, or is still found under it.
bool IsTaken(const Instruments &instruments, qint16 number)
{
    return instruments.Find(InstrumentKey(number)) ||
           std::any_of(instruments.begin(), instruments.end(),
                       [number](const InstrClass &instrument) { return instrument.number == number; });
}

void AddBuiltIn(InstrClass &instrument)
{
    pClass &number = instrument.addP(1);
    number.nome = u"Number"_s;
    number.description = u"Instrument number"_s;
    number.formato = PFormat::Integer;
    number.min = 1;
    number.max = 200;

    pClass &start = instrument.addP(2);
    start.nome = u"Start"_s;
    start.description = u"Starting time in beats"_s;

    pClass &duration = instrument.addP(3);
    duration.nome = u"Duration"_s;
    duration.description = u"Duration time in beats"_s;
    duration.variable = u"idur"_s;

    for (pClass *const time : {&start, &duration}) {
        time->max = 100;
        time->unit = u"Beats"_s;
    }
    for (pClass &field : instrument.pCol)
        field.group = u"Built-in"_s;
}

} // namespace

InstrumentPage PageOf(const InstrClass &instrument)
{
    return {instrument.nome, instrument.description, QString::number(instrument.number)};
}

FieldPage PageOf(const pClass &field)
{
    const int format = int(field.formato);
    return {field.nome,
            field.description,
            field.group,
            NumberText(field.min),
            NumberText(field.max),
            format <= LastFormat ? format : -1,
            field.unit,
            field.variable};
}

bool StorePage(InstrClass &instrument, const InstrumentPage &page, const Instruments &all, Desktop &desktop)
{
    const double typed = Val(page.number);
    const qint16 number = typed < 1 ? qint16(0) : ToInteger<qint16>(typed);
    if (number < 1) {
        Warn(desktop, u"Invalid instrument number."_s);
        return false;
    }
    // Of two instruments with one number only the first would be read again.
    const bool taken = std::any_of(all.begin(), all.end(), [&](const InstrClass &other) {
        return &other != &instrument && other.number == number;
    });
    if (taken && number != instrument.number) {
        Warn(desktop, u"Instrument already exists."_s);
        return false;
    }
    instrument.nome = page.name;
    instrument.description = page.description;
    instrument.number = number;
    return true;
}

bool StorePage(pClass &field, const FieldPage &page, Desktop &desktop)
{
    if (!page.variable.isEmpty() && !page.variable.startsWith(u'i')) {
        Warn(desktop, u"Invalid variable name. Must begin with letter 'i'."_s);
        return false;
    }
    const double min = Val(page.min);
    const double max = Val(page.max);
    field.nome = page.name;
    field.description = page.description;
    field.group = page.group;
    field.min = min;
    field.max = max;
    if (page.format >= 0)
        field.formato = PFormat(page.format);
    field.unit = page.unit;
    field.variable = page.variable;
    return true;
}

QString NodeCaption(const InstrClass &instrument)
{
    const QString caption = u"[instr "_s + QString::number(instrument.number) + u']';
    return instrument.nome.isEmpty() ? caption : caption + u' ' + instrument.nome;
}

QString NodeCaption(const pClass &field)
{
    return u"[p"_s + QString::number(field.number) + u"] "_s + field.nome;
}

QStringList ParameterGroups(const Instruments &instruments)
{
    QStringList groups;
    QSet<QString> seen;
    for (const InstrClass &instrument : instruments) {
        for (const pClass &field : instrument.pCol) {
            if (field.group.isEmpty() || seen.contains(field.group))
                continue;
            seen.insert(field.group);
            groups.append(field.group);
        }
    }
    return groups;
}

InstrClass *NewInstrument(Instruments &instruments, Desktop &desktop)
{
    const QString answer =
        desktop.InputBox(u"New instrument"_s, u"Type instrument number."_s, {}).value_or(QString());
    const std::optional<double> typed = ParseNumber(answer);
    if (typed.value_or(0) <= 0)
        return nullptr;
    const auto number = ToInteger<qint16>(*typed);
    if (IsTaken(instruments, number)) {
        Warn(desktop, u"Instrument already exists."_s);
        return nullptr;
    }
    auto instrument = std::make_unique<InstrClass>();
    instrument->number = number;
    instrument->nome = u"Instrument "_s + QString::number(number);
    AddBuiltIn(*instrument);
    return &instruments.Add(InstrumentKey(number), std::move(instrument));
}

bool StoreInstruments(EditorContext &editor, Instruments &instruments, const LoadedStore &loaded)
{
    return StoreDataSection(editor, InstrumentsToXml(instruments, editor.desktop), false, &loaded);
}

} // namespace zelvane
