// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/statementfields.h"

#include "instruments/instrgui.h"
#include "instruments/statement.h"
#include "platform/numbers.h"
#include "shell/editorcontext.h"
#include "shell/insertcoloured.h"

#include <optional>
#include <QSet>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The instrument as it is stored, its p-fields in order; a bare one when it is not stored, none when they
/// cannot be put in order.
std::unique_ptr<InstrClass> InstrumentOf(EditorContext &editor, qint16 number)
{
    std::unique_ptr<InstrClass> instrument = LoadInstrument(editor, number, {}, false);
    if (!instrument) {
        instrument = std::make_unique<InstrClass>();
        instrument->number = number;
    } else if (!instrument->sortpCol(editor.desktop)) {
        return nullptr;
    }
    return instrument;
}

} // namespace

std::optional<StatementFields> ReadStatement(EditorContext &editor)
{
    const QString text = editor.text.Text();
    const qsizetype caret = editor.text.Selection().start;
    const qint16 number = StatementInstrument(text, caret);
    if (number < 1) {
        editor.desktop.MessageBox({.text = u"Score i statement not found.\n\nPosition the cursor on the "
                                           "first line of a score i statement."_s,
                                   .icon = BoxIcon::Warning});
        return std::nullopt;
    }
    std::unique_ptr<InstrClass> instrument = InstrumentOf(editor, number);
    if (!instrument)
        return std::nullopt;
    const std::optional<Statement> statement = ParseStatement(text, caret);
    if (!statement)
        return std::nullopt;
    for (qsizetype index = 0; index < statement->values.size(); ++index) {
        if (index == instrument->pCol.Count())
            instrument->addP(ToInteger<qint16>(double(index + 1)));
        instrument->pCol.At(index).value = statement->values[index];
    }
    return StatementFields{std::move(instrument), statement->range,
                           text.mid(statement->range.start, statement->range.Length())};
}

void RewriteStatement(EditorContext &editor, const DocumentSteps &steps, const StatementFields &fields)
{
    QStringList values;
    for (const pClass &field : fields.instrument->pCol)
        values.append(field.value);
    editor.text.SetSelection(fields.range.start, fields.range.end);
    InsertColoured(editor, steps, WriteStatement(fields.text, values));
}

QStringList GroupsOf(const InstrClass &instrument)
{
    QStringList groups;
    QSet<QString> seen;
    for (const pClass &field : instrument.pCol) {
        const QString group = GroupRow(field);
        if (seen.contains(group))
            continue;
        seen.insert(group);
        groups.append(group);
    }
    return groups;
}

QString NoGroup()
{
    return u"No Group"_s;
}

QString GroupRow(const pClass &field)
{
    return field.group.isEmpty() ? NoGroup() : field.group;
}

QString FieldCaption(const pClass &field, qsizetype position)
{
    return (field.nome.isEmpty() ? FieldName(position) : u'&' + field.nome) + u':';
}

QString FieldHint(const pClass &field, qsizetype position)
{
    const QString name = FieldName(position);
    return field.description.isEmpty() ? name : name + u" - "_s + field.description;
}

QString SliderHint(const pClass &field)
{
    return u"Min "_s + NumberText(field.min) + u" Max "_s + NumberText(field.max);
}

QString FieldName(qsizetype position)
{
    return u'p' + QString::number(position);
}

QString FormatWord(PFormat format)
{
    switch (format) {
    case PFormat::Real:
        return u"Real"_s;
    case PFormat::Integer:
        return u"Integer"_s;
    case PFormat::Boolean:
        return u"Boolean"_s;
    case PFormat::String:
        return u"String"_s;
    }
    return {};
}

} // namespace zelvane
