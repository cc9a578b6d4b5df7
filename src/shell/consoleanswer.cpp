// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/consoleanswer.h"

#include "platform/programinfo.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// The options that the toolkit takes off the command line, with one dash or two.
bool IsToolkitOption(const QString &option)
{
    static const QStringList names = {
        u"display"_s,       u"geometry"_s, u"platform"_s,        u"platformpluginpath"_s,
        u"platformtheme"_s, u"plugin"_s,   u"qwindowicon"_s,     u"qwindowtitle"_s,
        u"reverse"_s,       u"session"_s,  u"qwindowgeometry"_s, u"style"_s,
        u"stylesheet"_s,
    };
    return names.contains(option.sliced(2).section(u'=', 0, 0));
}

QString Usage()
{
    return u"Usage: zelvane [FILE]\n"
           "\n"
           "  zelvane FILE      opens FILE, a path or a file:// address, in the running editor if there is "
           "one\n"
           "  zelvane /i        starts another editor beside the running one\n"
           "  zelvane /p FILE   lets you choose a preset to run on FILE\n"
           "  zelvane /r FILE   shows the Run Csound dialog for FILE\n"
           "\n"
           "  -h, --help        prints this text\n"
           "  -v, --version     prints the version\n"
           "  --                ends the options: what follows is a file\n"_s;
}

} // namespace

std::optional<ConsoleAnswer> AnswerOnConsole(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return {};
    const QString &first = arguments.first();
    if (!first.startsWith(u'-') || QFileInfo::exists(first) || QFileInfo::exists(arguments.join(u' ')))
        return {};
    if (first == u"-h"_s || first == u"--help"_s)
        return ConsoleAnswer{Usage()};
    if (first == u"-v"_s || first == u"--version"_s)
        return ConsoleAnswer{ApplicationTitle() + u' ' + ProgramVersion() + u'\n' + LegalLine() + u'\n'};
    if (!first.startsWith(u"--"_s) || first.size() == 2 || IsToolkitOption(first))
        return {};
    return ConsoleAnswer{u"zelvane: unknown option "_s + first + u"\n\n"_s + Usage(), true};
}

} // namespace zelvane
