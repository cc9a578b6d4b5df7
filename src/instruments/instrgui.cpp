// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrgui.h"

#include "instruments/storedinstruments.h"
#include "instruments/xmltext.h"
#include "instruments/zelvanedata.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

#include <algorithm>
#include <pugixml.hpp>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Whether the number of an element equals another one; an empty attribute is 0.
bool HasNumber(const pugi::xml_node &element, qint32 number)
{
    const pugi::xml_attribute attribute = element.attribute("number");
    if (!attribute)
        return false;
    const QString text = QString::fromUtf8(attribute.value());
    return text.isEmpty() ? number == 0 : ParseNumber(text) == double(number);
}

/// The entity of a character that the store escapes; empty for the others.
QLatin1String Entity(QChar c)
{
    switch (c.unicode()) {
    case u'&':
        return "&amp;"_L1;
    case u'<':
        return "&lt;"_L1;
    case u'>':
        return "&gt;"_L1;
    case u'"':
        return "&quot;"_L1;
    case u'\'':
        return "&#39;"_L1;
    case u'?':
        return "&#63;"_L1;
    default:
        return {};
    }
}

/// An attribute whose value is escaped for the store, and once more for XML.
void PutEscaped(QString &xml, QLatin1String name, const QString &value)
{
    if (value.isEmpty())
        return;
    xml += name;
    for (const QChar c : value) {
        if (const QLatin1String entity = Entity(c); !entity.isEmpty())
            xml += "&amp;"_L1 + entity.sliced(1);
        else if (c == u'\t' || c == u'\n' || c == u'\r')
            xml += u"&#%1;"_s.arg(c.unicode());
        else if (c != u'\0') // no XML holds it
            xml += c;
    }
    xml += u'"';
}

void PutNumber(QString &xml, QLatin1String name, const QString &number)
{
    xml += name;
    xml += number;
    xml += u'"';
}

void PutField(QString &xml, const pClass &field)
{
    PutNumber(xml, "<p number=\""_L1, QString::number(field.number));
    PutEscaped(xml, " name=\""_L1, field.nome);
    PutEscaped(xml, " description=\""_L1, field.description);
    PutEscaped(xml, " group=\""_L1, field.group);
    PutNumber(xml, " format=\""_L1, QString::number(int(field.formato)));
    PutNumber(xml, " min=\""_L1, NumberText(field.min));
    PutNumber(xml, " max=\""_L1, NumberText(field.max));
    PutEscaped(xml, " unit=\""_L1, field.unit);
    PutEscaped(xml, " variable=\""_L1, field.variable);
    xml += "/>"_L1;
}

void PutInstrument(QString &xml, const InstrClass &instrument)
{
    PutNumber(xml, "<instr number=\""_L1, QString::number(instrument.number));
    PutEscaped(xml, " name=\""_L1, instrument.nome);
    PutEscaped(xml, " description=\""_L1, instrument.description);
    if (instrument.pCol.IsEmpty()) {
        xml += "/>"_L1;
        return;
    }
    xml += u'>';
    for (const pClass &field : instrument.pCol)
        PutField(xml, field);
    xml += "</instr>"_L1;
}

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// Whether a text reads as that whole number. Text may hold digits without end: what is no number of 32 bits
/// is no instrument, and no error.
bool ReadsAs(QStringView text, qint32 number)
{
    try {
        return ToInteger<qint32>(Val(text)) == number;
    } catch (const RunTimeError &) {
        return false;
    }
}

/// The variable of a p-field; the user is asked for one that is missing.
QString VariableOf(const pClass &field, Desktop &desktop, bool ask)
{
    if (!field.variable.isEmpty() || !ask || field.number <= 2)
        return field.variable;
    return desktop
        .InputBox(u"Missing variable name"_s,
                  u"Specify a variable name for p"_s + QString::number(field.number) +
                      u".\n(must begin with letter i)"_s,
                  {})
        .value_or(QString());
}

/// Name and description as a comment; empty when there are none.
QString FieldComment(const pClass &field)
{
    if (field.nome.isEmpty() && field.description.isEmpty())
        return {};
    QString comment = u"   ; "_s;
    if (!field.nome.isEmpty())
        comment += field.nome + u'.';
    if (!field.nome.isEmpty() && !field.description.isEmpty())
        comment += u' ';
    return comment + field.description;
}

} // namespace

QString EscapeXmlValue(const QString &text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar c : text) {
        if (const QLatin1String entity = Entity(c); !entity.isEmpty())
            escaped += entity;
        else
            escaped += c;
    }
    return escaped;
}

std::unique_ptr<InstrClass> LoadInstrument(EditorContext &editor, qint32 number, const QString &xml,
                                           bool sort)
{
    const XmlText text(xml.isEmpty() ? GetDataStore(editor) : xml);
    const pugi::xml_node section = xml.isEmpty() ? text.Find("instruments") : text.Root();
    for (pugi::xml_node node = section; node; node = NextNode(node, section)) {
        if (!IsInstrument(node) || !HasNumber(node, number))
            continue;
        if (*node.attribute("number").value() == '\0')
            return std::make_unique<InstrClass>();
        FieldBudget budget;
        std::unique_ptr<InstrClass> instrument = ReadInstrument(node, budget);
        if (sort)
            instrument->sortpCol(editor.desktop);
        return instrument;
    }
    return nullptr;
}

void LoadInstruments(EditorContext &editor, Instruments &instruments)
{
    Guarded(editor.desktop, [&] {
        const XmlText text(GetDataStore(editor));
        const pugi::xml_node section = text.Find("instruments");
        FieldBudget budget;
        for (pugi::xml_node node = section; node; node = NextNode(node, section)) {
            if (!IsInstrument(node))
                continue;
            const QString key = InstrumentKey(NumberOf(node));
            instruments.Add(key, ReadInstrument(node, budget));
        }
    });
}

QString InstrToXml(const InstrClass &instrument)
{
    QString xml;
    PutInstrument(xml, instrument);
    return xml;
}

QString InstrumentsToXml(Instruments &instruments, Desktop &desktop)
{
    QString xml = u"<instruments>"_s;
    for (InstrClass &instrument : instruments) {
        instrument.sortpCol(desktop);
        PutInstrument(xml, instrument);
    }
    return xml + u"</instruments>"_s;
}

qint32 FindInstrStatement(QStringView text, qint32 number)
{
    const QString word = u"instr"_s;
    const qsizetype last = text.size() - 1;
    // Offsets count from 0 up to the return.
    qsizetype from = 0;
    for (;;) {
        const qsizetype found = text.indexOf(word, from);
        if (found < 0)
            return -1;
        qsizetype cursor = found + word.size();
        while (cursor < last && (text[cursor] == u' ' || text[cursor] == u'\t'))
            ++cursor;
        const qsizetype start = cursor;
        ++cursor;
        while (cursor < last && IsDigit(text[cursor]))
            ++cursor;
        const qsizetype end = std::min(cursor, text.size());
        from = end;
        if (start >= text.size() || !ReadsAs(text.sliced(start, end - start), number))
            continue;
        while (cursor < last && text[cursor] != u'\n')
            ++cursor;
        return cursor >= last ? -1 : qint32(cursor + 1);
    }
}

QString GenerateVariableCode(EditorContext &editor, qint32 number, bool comments, bool ask)
{
    const std::unique_ptr<InstrClass> instrument = LoadInstrument(editor, number, {}, false);
    if (!instrument)
        return {};
    const QString lineEnd = u"\r\n"_s;
    QString code = lineEnd;
    for (const pClass &field : instrument->pCol) {
        const QString variable = VariableOf(field, editor.desktop, ask);
        if (variable.isEmpty())
            continue;
        code += variable + u" = p"_s + QString::number(field.number);
        if (comments)
            code += FieldComment(field);
        code += lineEnd;
    }
    return code + u';';
}

} // namespace zelvane
