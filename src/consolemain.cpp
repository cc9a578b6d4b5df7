// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consoleoptions.h"
#include "console/messageplace.h"
#include "console/runlog.h"
#include "console/ui/consolelink.h"
#include "console/ui/frmconsole.h"
#include "platform/consolestart.h"
#include "platform/programinfo.h"
#include "platform/runtimeerror.h"
#include "platform/ui/endrequest.h"
#include "platform/ui/instancelink.h"
#include "platform/userfolders.h"
#include "shell/mailbox.h"
#include "shell/settings.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <QApplication>
#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QIcon>
#include <QObject>
#include <QProcess>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// Hands a place over to the running editor, or starts one on the file.
void OpenPlace(const MessagePlace &place, qint64 starter, SettingsStore &settings)
{
    try {
        InstanceLink link(InstanceLink::RealmOf(ConfigFolder()));
        const bool handedOver = Mailbox::SendPlace(
            place.path, place.line, settings,
            {.find = [&] { return link.FindRunning(starter); },
             .call = [&](bool) { return link.Notify(InstanceLink::Call::HandOver, QByteArray()); }});
        if (!handedOver)
            QProcess::startDetached(QCoreApplication::applicationDirPath() + u"/zelvane"_s, {place.path});
    } catch (const RunTimeError &error) {
        qWarning("%s", error.what()); // the store cannot be written: the editor could not read it either
    }
}

} // namespace

int main(int argc, char **argv)
{
    // The toolkit would take options of its own out of the program's arguments.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    argc = std::min(argc, 1);
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(u"zelvane-console"_s);
    QApplication::setApplicationVersion(ProgramVersion());
    QApplication::setDesktopFileName(u"zelvane"_s);
    QApplication::setWindowIcon(QIcon(u":/zelvane/icons/zelvane.svg"_s));
    QApplication::setQuitOnLastWindowClosed(false); // the program is to be stopped first
    const auto options = ReadConsoleOptions(arguments);
    if (!options) {
        std::fputs("usage: zelvane-console [--title TITLE] [--folder FOLDER] [--window 0..3] [--] PROGRAM "
                   "[ARGUMENT...]\n",
                   stderr);
        return 2;
    }
    // Who waits for the program's end may have been killed, and the terminal of its start closed: the program
    // goes on, and its end is shown. Empty handlers, which no program that is started inherits.
#ifdef SIGHUP
    std::signal(SIGHUP, [](int) {});
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, [](int) {});
#endif
    KeepForSelf(options->notify);

    SettingsStore settings;
    frmConsole console(
        *options,
        {.settings = settings, .logFolder = RunLog::Folder(), .openPlace = [&](const MessagePlace &place) {
             OpenPlace(place, options->run.starter, settings);
         }});
    QObject::connect(&console, &frmConsole::Closed, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    EndRequest endRequest;
    QObject::connect(&endRequest, &EndRequest::Received, &console, &frmConsole::StopAndClose);
    ConsoleLink link(InstanceLink::RealmOf(ConfigFolder()) + u'\n' + options->run.title);
    link.TellOthers();
    link.Listen([&] { console.GiveWay(); });
    console.Run();
    return QApplication::exec();
}
