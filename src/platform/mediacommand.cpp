// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/mediacommand.h"

#include "platform/withoutblanks.h"

#include <QLatin1String>
#include <QStringView>

namespace zelvane
{

namespace
{

/// Cuts a keyword and the word behind it off the end of a text. @return the word, empty when they are not
/// there
QString TakeLast(QStringView &text, QLatin1String keyword)
{
    const QStringView all = WithoutBlanks(text);
    const qsizetype blank = all.lastIndexOf(u' ');
    if (blank < 0)
        return {};
    QStringView before = WithoutBlanks(all.left(blank));
    if (!before.endsWith(keyword, Qt::CaseInsensitive))
        return {};
    before.chop(keyword.size());
    if (!before.isEmpty() && !before.endsWith(u' '))
        return {};
    text = before;
    return all.mid(blank + 1).toString();
}

} // namespace

QStringList MediaWords(const QString &command)
{
    return command.split(u' ', Qt::SkipEmptyParts);
}

OpenCommand CutOpenCommand(const QString &command)
{
    QStringView rest = WithoutBlanks(command);
    rest = rest.mid(QLatin1String("open").size());
    OpenCommand open;
    open.device = TakeLast(rest, QLatin1String("type"));
    open.alias = TakeLast(rest, QLatin1String("alias"));
    QStringView path = WithoutBlanks(rest);
    if (path.size() >= 2 && path.startsWith(u'"') && path.endsWith(u'"'))
        path = path.mid(1, path.size() - 2);
    open.path = path.toString();
    return open;
}

} // namespace zelvane
