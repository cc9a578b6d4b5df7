// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/flagline.h"

#include "platform/desktop.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

std::vector<FlagChoice> FlagChoices(const std::vector<FlagRow> &table)
{
    std::vector<FlagChoice> choices;
    choices.reserve(table.size());
    for (const FlagRow &row : table)
        choices.push_back({.row = row, .value = row.type});
    return choices;
}

void SetFlagChecked(FlagChoice &choice, bool checked, Desktop &desktop)
{
    choice.checked = checked;
    if (!checked) {
        choice.value = choice.row.type;
        return;
    }
    if (choice.value.isEmpty())
        return;
    const QString prompt =
        u"Flag:\t"_s + choice.row.flag + u"\n\nType:\t"_s + choice.value + u"\n\nType flag value."_s;
    const QString answer = desktop.InputBox(u"Flag value"_s, prompt, {}).value_or(QString());
    if (answer.isEmpty())
        SetFlagChecked(choice, false, desktop);
    else
        choice.value = answer;
}

QString FlagLine(const std::vector<FlagChoice> &choices)
{
    QStringList words;
    for (const FlagChoice &choice : choices) {
        if (!choice.checked)
            continue;
        words.append(choice.row.flag);
        if (!choice.value.isEmpty())
            words.append(choice.value);
    }
    QString line = words.join(u' ');
    while (line.endsWith(u' '))
        line.chop(1);
    return line;
}

QString FlagsBetween(const QString &before, const QString &flags, const QString &after)
{
    const auto touch = [](const QString &left, const QString &right) {
        return !left.isEmpty() && !right.isEmpty() && left.back() != u' ' && right.front() != u' ';
    };
    return (touch(before, flags) ? u" "_s : QString()) + flags + (touch(flags, after) ? u" "_s : QString());
}

bool AcceptFlagLine(const QString &line, Desktop &desktop)
{
    if (!line.isEmpty())
        return true;
    desktop.MessageBox({.text = u"Pick a flag or press Cancel."_s, .icon = BoxIcon::Warning});
    return false;
}

} // namespace zelvane
