// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consoleoptions.h"

#include "platform/windowstate.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

std::optional<ConsoleOptions> ReadConsoleOptions(const QStringList &arguments)
{
    ConsoleOptions options;
    qsizetype i = 0;
    for (; i < arguments.size() && arguments[i].startsWith(u"--"_s) && arguments[i] != u"--"_s; i += 2) {
        if (i + 1 == arguments.size())
            return {};
        const QString &value = arguments[i + 1];
        bool isGood = true;
        if (arguments[i] == u"--title"_s)
            options.run.title = value;
        else if (arguments[i] == u"--folder"_s)
            options.run.folder = value;
        else if (arguments[i] == u"--window"_s)
            options.run.showState = WindowStateOf(value.toInt(&isGood));
        else if (arguments[i] == u"--starter"_s)
            options.run.starter = value.toLongLong(&isGood);
        else if (arguments[i] == u"--notify"_s)
            options.notify = value.toInt(&isGood);
        else
            return {};
        if (!isGood)
            return {};
    }
    if (i < arguments.size() && arguments[i] == u"--"_s)
        ++i;
    if (i >= arguments.size() || arguments[i].isEmpty())
        return {};
    options.run.program = arguments[i];
    options.run.arguments = arguments.mid(i + 1);
    if (options.run.title.isEmpty())
        options.run.title = QFileInfo(options.run.program).fileName();
    return options;
}

} // namespace zelvane
