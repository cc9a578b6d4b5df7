// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/synopsis.h"

#include "writing/textnames.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Longer stretches of a form, in characters, are cut: a tip is to be read at a glance.
constexpr qsizetype LongestShown = 300;

/// The name, where nothing but a blank or a bracket follows it; -1 without it.
qsizetype FindName(QStringView line, QStringView opcode)
{
    for (qsizetype at = 0; (at = line.indexOf(opcode, at)) >= 0; ++at) {
        const qsizetype end = at + opcode.size();
        const bool begins = at == 0 || line[at - 1] == u' ';
        if (begins && (end == line.size() || line[end] == u' ' || line[end] == u'('))
            return at;
    }
    return -1;
}

/// The arguments of a stretch: what stands between commas, without the brackets of optional ones and blanks.
/// The brackets of an array type are a pair with nothing between.
class ArgumentReader
{
public:
    ArgumentReader(QStringView text, Synopsis &synopsis) : m_text(text), m_synopsis(synopsis) {}

    void Read(qsizetype start, qsizetype end)
    {
        int depth = 0;
        bool quoted = false;
        qsizetype from = start;
        for (qsizetype at = start; at < end; ++at) {
            const QChar c = m_text[at];
            if (c == u'"')
                quoted = !quoted;
            if (quoted)
                continue;
            if (c == u'(')
                ++depth;
            else if (c == u')')
                --depth;
            else if (depth == 0 && (c == u',' || IsOptionalMark(at, end))) {
                Add(from, at);
                from = at + 1;
            }
        }
        Add(from, end);
    }

private:
    bool IsOptionalMark(qsizetype at, qsizetype end) const
    {
        const QChar c = m_text[at];
        if (c == u'[')
            return at + 1 == end || m_text[at + 1] != u']';
        return c == u']' && m_text[at - 1] != u'[';
    }

    void Add(qsizetype start, qsizetype end)
    {
        while (start < end && m_text[start] == u' ')
            ++start;
        while (end > start && m_text[end - 1] == u' ')
            --end;
        if (start == end)
            return;
        const QStringView argument = m_text.sliced(start, end - start);
        const bool isDots = argument.size() >= 3 && argument.count(u'.') == argument.size();
        // What is written between dots and a last one, "kx2, ..., kxn", belongs to the repetition.
        if (!m_synopsis.repeats)
            m_synopsis.arguments.push_back({start, end});
        m_synopsis.repeats = m_synopsis.repeats || isDots;
    }

    QStringView m_text;
    Synopsis &m_synopsis;
};

/// What stands for the type of an own opcode's argument, and its value when it is left out.
struct OptionalType {
    char16_t letter;
    QStringView shown;
    QStringView standsIn;
};
const OptionalType OptionalTypes[] = {
    {u'o', u"i", u"=0"}, {u'p', u"i", u"=1"},  {u'j', u"i", u"=-1"}, {u'O', u"k", u"=0"},
    {u'P', u"k", u"=1"}, {u'V', u"k", u"=.5"}, {u'J', u"k", u"=-1"},
};

/// The variable of each type, or the type where the body names none.
std::vector<ShownArgument> Ports(const QStringList &names, const QStringList &types)
{
    const bool named = names.size() == types.size();
    std::vector<ShownArgument> ports;
    for (qsizetype i = 0; i < types.size(); ++i) {
        const auto known =
            std::find_if(std::begin(OptionalTypes), std::end(OptionalTypes), [&](const OptionalType &type) {
                return types[i].size() == 1 && types[i][0] == type.letter;
            });
        if (known == std::end(OptionalTypes))
            ports.push_back({named ? names[i] : types[i], false});
        else
            ports.push_back(
                {(named ? names[i] : known->shown.toString()) + known->standsIn.toString(), true});
    }
    return ports;
}

QChar RateOfOutputs(QStringView outputs)
{
    if (outputs.size() > 1 && outputs[0] == u'g')
        outputs = outputs.sliced(1);
    return outputs.isEmpty() ? QChar() : outputs[0];
}

} // namespace

int Synopsis::Shown(int argument) const
{
    const int count = int(arguments.size());
    if (argument < count)
        return argument;
    return repeats ? count - 1 : -1;
}

QString Synopsis::RichText(int argument) const
{
    const auto shown = [this](qsizetype start, qsizetype end) {
        return Shortened(QStringView(text).sliced(start, end - start)).toHtmlEscaped();
    };
    const auto bold = [&shown](const TextSpan &span) {
        return u"<b>"_s + shown(span.start, span.end) + u"</b>"_s;
    };
    QString rich = shown(0, name.start) + bold(name);
    qsizetype from = name.end;
    if (const int current = argument < 0 ? -1 : Shown(argument); current >= 0) {
        const TextSpan &span = arguments[std::size_t(current)];
        rich += shown(from, span.start) + bold(span);
        from = span.end;
    }
    return rich + shown(from, text.size());
}

QString Shortened(QStringView text)
{
    if (text.size() <= LongestShown)
        return text.toString();
    return text.first(LongestShown / 2).toString() + u" ... "_s + text.last(LongestShown / 2).toString();
}

QString JoinArguments(const std::vector<ShownArgument> &arguments)
{
    QString text;
    for (const ShownArgument &argument : arguments) {
        const QString comma = text.isEmpty() ? QString() : u", "_s;
        if (argument.optional)
            text += (text.isEmpty() ? u"["_s : u" ["_s) + comma + argument.text + u']';
        else
            text += comma + argument.text;
    }
    return text;
}

Synopsis MakeSynopsis(const QString &outputs, QStringView opcode, const QString &arguments)
{
    Synopsis synopsis;
    synopsis.text = outputs.isEmpty() ? QString() : outputs + u' ';
    synopsis.name = {synopsis.text.size(), synopsis.text.size() + opcode.size()};
    synopsis.text += opcode;
    if (!arguments.isEmpty())
        synopsis.text += u' ' + arguments;
    ArgumentReader(synopsis.text, synopsis).Read(synopsis.name.end, synopsis.text.size());
    return synopsis;
}

std::optional<Synopsis> ReadSynopsis(QStringView line, QStringView opcode)
{
    Synopsis synopsis;
    // A line that goes on has a backslash at its end.
    synopsis.text = line.toString().simplified().remove(u"\\ "_s);
    const QStringView text = synopsis.text;
    const qsizetype name = opcode.isEmpty() ? -1 : FindName(text, opcode);
    if (name < 0)
        return {};
    synopsis.name = {name, name + opcode.size()};
    qsizetype start = synopsis.name.end;
    qsizetype end = text.size();
    // The form of a function, to which a remark may be added.
    if (start < end && text[start] == u'(') {
        const qsizetype close = text.lastIndexOf(u')', text.indexOf(u" (", start));
        end = close < start ? end : close;
        ++start;
    }
    ArgumentReader(text, synopsis).Read(start, end);
    return synopsis;
}

Synopsis SynopsisOf(const UserOpcode &opcode)
{
    return MakeSynopsis(JoinArguments(Ports(opcode.outputs, opcode.outputTypes)), opcode.name,
                        JoinArguments(Ports(opcode.inputs, opcode.inputTypes)));
}

std::vector<Synopsis> FormsForCall(const std::vector<Synopsis> &forms, QChar rate, int argument)
{
    std::vector<Synopsis> fitting;
    for (const Synopsis &form : forms) {
        const QChar given = RateOfOutputs(form.Outputs());
        if (rate.isNull() || given == rate || given == u'x')
            fitting.push_back(form);
    }
    if (fitting.empty())
        fitting = forms;
    std::stable_partition(fitting.begin(), fitting.end(), [argument](const Synopsis &form) {
        return argument < 1 || form.Shown(argument) >= 0;
    });
    return fitting;
}

} // namespace zelvane
