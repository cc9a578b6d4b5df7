// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/opcodearguments.h"

#include "writing/textnames.h"

#include <algorithm>
#include <QFile>
#include <QIODevice>
#include <QLatin1String>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// How a type of what is taken is shown.
struct ArgumentType {
    char16_t letter;
    QLatin1String shown;
    QLatin1String standsIn = {}; ///< the value of an argument that is left out
    bool optional = false;
    bool repeats = false;
};

const ArgumentType ArgumentTypes[] = {
    {u'x', "a|k|i"_L1},
    {u'T', "S|i"_L1},
    {u'U', "S|i|k"_L1},
    {u'B', "condition"_L1},
    {u'b', "condition"_L1},
    {u'l', "label"_L1},
    {u'.', "any"_L1},
    {u'?', "any"_L1, {}, true},
    {u'o', "i"_L1, "0"_L1, true},
    {u'p', "i"_L1, "1"_L1, true},
    {u'q', "i"_L1, "10"_L1, true},
    {u'v', "i"_L1, ".5"_L1, true},
    {u'j', "i"_L1, "-1"_L1, true},
    {u'h', "i"_L1, "127"_L1, true},
    {u'O', "k"_L1, "0"_L1, true},
    {u'P', "k"_L1, "1"_L1, true},
    {u'V', "k"_L1, ".5"_L1, true},
    {u'J', "k"_L1, "-1"_L1, true},
    {u'm', "i"_L1, {}, true, true},
    {u'I', "S|i"_L1, {}, true, true},
    {u'M', "a|k|i"_L1, {}, true, true},
    {u'N', "a|k|i|S"_L1, {}, true, true},
    {u'n', "i"_L1, {}, true, true},
    {u'W', "S"_L1, {}, true, true},
    {u'y', "a"_L1, {}, true, true},
    {u'z', "k"_L1, {}, true, true},
    {u'Z', "k, a"_L1, {}, true, true},
    {u'*', "any"_L1, {}, true, true},
};

/// The letters mean something else in what is given.
const ArgumentType OutputTypes[] = {
    {u's', "a|k"_L1},
    {u'm', "a"_L1, {}, true, true},
    {u'z', "k"_L1, {}, true, true},
    {u'I', "i"_L1, {}, true, true},
    {u'X', "a|k|i"_L1, {}, true, true},
    {u'N', "a|k|i|S"_L1, {}, true, true},
    {u'F', "f"_L1, {}, true, true},
    {u'*', "any"_L1, {}, true, true},
};

template <std::size_t count> const ArgumentType *Find(const ArgumentType (&types)[count], const QString &type)
{
    const auto found = std::find_if(std::begin(types), std::end(types), [&](const ArgumentType &row) {
        return type.size() >= 1 && row.letter == type[0].unicode();
    });
    return found == std::end(types) ? nullptr : found;
}

/// What can be told apart by eye: an argument of several forms, its rates joined.
struct Argument {
    QStringList rates;
    QString standsIn;
    bool optional = false;
    bool repeats = false;

    bool Joins(const Argument &other) const
    {
        return standsIn == other.standsIn && optional == other.optional && repeats == other.repeats;
    }
    QString Text() const
    {
        const QString shown = rates.join(u'|') + (standsIn.isEmpty() ? QString() : u'=' + standsIn);
        return repeats ? shown + u", ..."_s : shown;
    }
};

Argument ArgumentOf(const QString &type)
{
    const ArgumentType *known = Find(ArgumentTypes, type);
    if (!known)
        return {{type}, {}, false, false};
    QStringList rates = QString(known->shown).split(u'|');
    for (QString &rate : rates)
        rate += type.sliced(1);
    return {rates, known->standsIn, known->optional, known->repeats};
}

/// The text of what is given: a list that may go on has dots.
QString OutputsOf(QStringView types)
{
    QStringList shown;
    for (const QString &type : ReadTypes(types)) {
        const ArgumentType *known = Find(OutputTypes, type);
        const bool repeats = known && known->repeats;
        const QString text = known ? known->shown + type.sliced(1) : type;
        // Of the many that may follow each other one is enough.
        if (!repeats || shown.isEmpty() || shown.back() != u"..."_s)
            shown.append(text);
        if (repeats && (shown.size() < 2 || shown.back() != u"..."_s))
            shown.append(u"..."_s);
    }
    return shown.join(u", "_s);
}

/// Forms that give the same and take as many arguments of one kind.
struct JoinedForm {
    QString outputs;
    std::vector<Argument> arguments;

    bool Joins(const QString &otherOutputs, const std::vector<Argument> &others) const
    {
        return outputs == otherOutputs &&
               std::equal(arguments.begin(), arguments.end(), others.begin(), others.end(),
                          [](const Argument &one, const Argument &other) { return one.Joins(other); });
    }
    void Join(const std::vector<Argument> &others)
    {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            for (const QString &rate : others[i].rates) {
                if (!arguments[i].rates.contains(rate))
                    arguments[i].rates.append(rate);
            }
        }
    }
    QString Arguments() const
    {
        std::vector<ShownArgument> shown;
        for (const Argument &argument : arguments)
            shown.push_back({argument.Text(), argument.optional});
        return JoinArguments(shown);
    }
};

} // namespace

OpcodeArguments::OpcodeArguments(const QString &text) : m_text(text)
{
    for (const QStringView line : QStringView(m_text).split(u'\n')) {
        const QList<QStringView> fields = line.trimmed().split(u'\t');
        if (fields.size() != 3 || fields[0].isEmpty())
            continue;
        const auto types = [](QStringView field) { return field == u"-" ? QStringView() : field; };
        m_forms[fields[0]].push_back({types(fields[1]), types(fields[2])});
    }
}

std::vector<Synopsis> OpcodeArguments::Forms(QStringView opcode) const
{
    const auto found = m_forms.constFind(opcode);
    if (found == m_forms.constEnd())
        return {};
    std::vector<JoinedForm> joined;
    for (const auto &[outputTypes, inputTypes] : *found) {
        const QString outputs = OutputsOf(outputTypes);
        std::vector<Argument> arguments;
        for (const QString &type : ReadTypes(inputTypes))
            arguments.push_back(ArgumentOf(type));
        const auto same = std::find_if(joined.begin(), joined.end(), [&](const JoinedForm &form) {
            return form.Joins(outputs, arguments);
        });
        if (same == joined.end())
            joined.push_back({outputs, std::move(arguments)});
        else
            same->Join(arguments);
    }
    std::vector<Synopsis> forms;
    for (const JoinedForm &form : joined)
        forms.push_back(MakeSynopsis(form.outputs, opcode, form.Arguments()));
    return forms;
}

QString ShippedOpcodeArguments()
{
    QFile file(u":/TEXT/OPCODEARGUMENTS"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace zelvane
