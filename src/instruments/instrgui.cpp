// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrgui.h"

#include "instruments/storedinstruments.h"
#include "instruments/xmltext.h"
#include "instruments/zelvanedata.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "platform/textwriter.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

#include <algorithm>
#include <memory>
#include <pugixml.hpp>
#include <QString>
#include <QStringView>
#include <QtGlobal>
#include <string_view>
#include <utility>

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
QStringView Entity(QChar c)
{
    switch (c.unicode()) { // none is beyond the question mark
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'"':
        return u"&quot;";
    case u'\'':
        return u"&#39;";
    case u'?':
        return u"&#63;";
    default:
        return {};
    }
}

/// The longest that a value becomes, and what stands around the values of an instrument or a p-field at most.
constexpr qsizetype LongestEntity = std::u16string_view(u"&amp;quot;").size();
constexpr qsizetype AroundValues = 256;

qsizetype Room(const pClass &field)
{
    return (field.nome.size() + field.description.size() + field.group.size() + field.unit.size() +
            field.variable.size()) *
               LongestEntity +
           AroundValues;
}

qsizetype Room(const InstrClass &instrument)
{
    qsizetype room = (instrument.nome.size() + instrument.description.size()) * LongestEntity + AroundValues;
    for (const pClass &field : instrument.pCol)
        room += Room(field);
    return room;
}

/// An attribute whose value is escaped for the store, and once more for XML.
void PutEscaped(TextWriter &xml, QStringView name, const QString &value)
{
    if (value.isEmpty())
        return;
    xml.Put(name);
    for (const QChar c : value) {
        if (c > u'?' || c == u' ')
            xml.Put(c);
        else if (const QStringView entity = Entity(c); !entity.isEmpty()) {
            xml.Put(u"&amp;");
            xml.Put(entity.sliced(1));
        } else if (c == u'\t' || c == u'\n' || c == u'\r')
            xml.Put(u"&#%1;"_s.arg(c.unicode()));
        else if (c != u'\0') // no XML holds it
            xml.Put(c);
    }
    xml.Put(u'"');
}

void PutNumber(TextWriter &xml, QStringView name, double number)
{
    xml.Put(name);
    if (number >= 0 && number <= 9 && number == int(number))
        xml.Put(QChar(u'0' + int(number)));
    else
        xml.Put(NumberText(number));
    xml.Put(u'"');
}

void PutField(TextWriter &xml, const pClass &field)
{
    PutNumber(xml, u"<p number=\"", field.number);
    PutEscaped(xml, u" name=\"", field.nome);
    PutEscaped(xml, u" description=\"", field.description);
    PutEscaped(xml, u" group=\"", field.group);
    PutNumber(xml, u" format=\"", int(field.formato));
    PutNumber(xml, u" min=\"", field.min);
    PutNumber(xml, u" max=\"", field.max);
    PutEscaped(xml, u" unit=\"", field.unit);
    PutEscaped(xml, u" variable=\"", field.variable);
    xml.Put(u"/>");
}

void PutInstrument(TextWriter &xml, const InstrClass &instrument)
{
    PutNumber(xml, u"<instr number=\"", instrument.number);
    PutEscaped(xml, u" name=\"", instrument.nome);
    PutEscaped(xml, u" description=\"", instrument.description);
    if (instrument.pCol.IsEmpty()) {
        xml.Put(u"/>");
        return;
    }
    xml.Put(u'>');
    for (const pClass &field : instrument.pCol)
        PutField(xml, field);
    xml.Put(u"</instr>");
}

/// The value of a text of a few digits only; -1 for another one.
qint32 FewDigits(QStringView text)
{
    constexpr qsizetype few = 9;
    if (text.isEmpty() || text.size() > few || !std::all_of(text.begin(), text.end(), IsDigit))
        return -1;
    qint32 number = 0;
    for (const QChar digit : text)
        number = number * 10 + (digit.unicode() - u'0');
    return number;
}

/// Whether a text reads as that whole number. Text may hold digits without end: what is no number of 32 bits
/// is no instrument, and no error.
bool ReadsAs(QStringView text, qint32 number)
{
    if (const qint32 few = FewDigits(text); few >= 0)
        return few == number;
    if (text.front().isLetter())
        return number == 0;
    try {
        return ToInteger<qint32>(Val(text)) == number;
    } catch (const RunTimeError &) {
        return false;
    }
}

bool EndsLine(QChar c)
{
    constexpr char16_t nextLine = 0x85;
    return (c >= u'\n' && c <= u'\r') || c == QChar(nextLine) || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

/// A text with a blank for each line end: what comes behind one would be code.
QString OneLine(const QString &text)
{
    QString line = text;
    line.replace(u"\r\n"_s, u" "_s);
    std::replace_if(line.begin(), line.end(), EndsLine, QChar(u' '));
    return line;
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
        if (const QStringView entity = Entity(c); !entity.isEmpty())
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
        std::unique_ptr<InstrClass> instrument = InstrumentReader().Read(node);
        if (sort)
            instrument->sortpCol(editor.desktop);
        return instrument;
    }
    return nullptr;
}

LoadedStore LoadInstruments(EditorContext &editor, Instruments &instruments)
{
    LoadedStore loaded;
    loaded.whole = Guarded(editor.desktop, [&] {
        loaded.text = GetDataStore(editor);
        const XmlText text(loaded.text);
        const pugi::xml_node section = text.Find("instruments");
        InstrumentReader reader;
        for (pugi::xml_node node = section; node; node = NextNode(node, section)) {
            if (!IsInstrument(node))
                continue;
            const QString key = InstrumentKey(NumberOf(node));
            instruments.Add(key, reader.Read(node));
        }
    });
    return loaded;
}

QString InstrToXml(const InstrClass &instrument)
{
    TextWriter xml(Room(instrument));
    PutInstrument(xml, instrument);
    return xml.Take();
}

QString InstrumentsToXml(Instruments &instruments, Desktop &desktop)
{
    qsizetype room = AroundValues;
    for (InstrClass &instrument : instruments) {
        instrument.sortpCol(desktop);
        room += Room(instrument);
    }
    TextWriter xml(room);
    xml.Put(u"<instruments>");
    for (const InstrClass &instrument : std::as_const(instruments))
        PutInstrument(xml, instrument);
    xml.Put(u"</instruments>");
    return xml.Take();
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
        code += OneLine(variable) + u" = p"_s + QString::number(field.number);
        if (comments)
            code += OneLine(FieldComment(field));
        code += lineEnd;
    }
    return code + u';';
}

} // namespace zelvane
