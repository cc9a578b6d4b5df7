// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consoleoptions.h"
#include "console/messageplace.h"
#include "console/placeopener.h"
#include "console/runlog.h"
#include "console/ui/consolelink.h"
#include "console/ui/frmconsole.h"
#include "platform/consolestart.h"
#include "platform/survivesignals.h"
#include "platform/ui/applicationsetup.h"
#include "platform/ui/endrequest.h"
#include "platform/ui/instancelink.h"
#include "platform/userfolders.h"
#include "shell/settings.h"
#include "shell/ui/legiblestyle.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <QApplication>
#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QMetaObject>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// The ways from a console to an editor.
class EditorWays
{
public:
    /// @param starter the process of the editor that has started the console, if one has
    explicit EditorWays(qint64 starter) : m_preferred(starter) {}

    bool FindRunning() { return Anew().FindRunning(m_preferred); }
    bool FindListening() { return Anew().FindListening(m_preferred); }
    bool Call() { return m_link->Notify(InstanceLink::Call::HandOver, QByteArray()); }
    bool StartEditor(const QString &path)
    {
        m_link.reset(); // it keeps others from becoming the editor
        return QProcess::startDetached(QCoreApplication::applicationDirPath() + u"/zelvane"_s, {path}, {},
                                       &m_preferred);
    }

private:
    InstanceLink &Anew()
    {
        m_link = std::make_unique<InstanceLink>(InstanceLink::RealmOf(ConfigFolder()));
        return *m_link;
    }

    qint64 m_preferred;
    std::unique_ptr<InstanceLink> m_link;
};

} // namespace

int main(int argc, char **argv)
{
    // The toolkit would take options of its own out of the program's arguments.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    argc = std::min(argc, 1);
    QApplication application(argc, argv);
    NameApplication(u"zelvane-console"_s);
    QApplication::setStyle(new LegibleStyle);
    QApplication::setQuitOnLastWindowClosed(false); // the program is to be stopped first
    const auto options = ReadConsoleOptions(arguments);
    if (!options) {
        std::fputs("usage: zelvane-console [--title TITLE] [--folder FOLDER] [--window 0..3] [--] PROGRAM "
                   "[ARGUMENT...]\n",
                   stderr);
        return 2;
    }
    // Who waits for the program's end may have been killed, and the terminal of its start closed: the program
    // goes on, and its end is shown. So it does where the log is longer than the user's files may be.
    SurviveLostTerminal();
    SurviveFileSizeLimit();
    KeepForSelf(options->notify);

    SettingsStore settings;
    std::unique_ptr<PlaceOpener> opener;
    frmConsole console(*options, {.settings = settings,
                                  .logFolder = RunLog::Folder(),
                                  .openPlace = [&](const MessagePlace &place) { opener->Open(place); }});
    bool closed = false;
    const auto endWhenDone = [&] {
        if (closed && !opener->IsWaiting())
            QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    };
    EditorWays editor(options->run.starter);
    opener = std::make_unique<PlaceOpener>(
        settings, PlaceOpener::Ways{.running = {.find = [&] { return editor.FindRunning(); },
                                                .call = [&](bool) { return editor.Call(); }},
                                    .start = [&](const QString &path) { return editor.StartEditor(path); },
                                    .listens = [&] { return editor.FindListening(); },
                                    .failed = [&](const QString &why) { console.TellFailure(why); },
                                    .done = endWhenDone});
    QObject::connect(&console, &frmConsole::Closed, &application, [&] {
        closed = true; // an editor that is on its way still gets its line
        endWhenDone();
    });
    EndRequest endRequest;
    QObject::connect(&endRequest, &EndRequest::Received, &console, &frmConsole::StopAndClose);
    ConsoleLink link(InstanceLink::RealmOf(ConfigFolder()) + u'\n' + options->run.title);
    link.TellOthers();
    link.Listen([&] { console.GiveWay(); });
    console.Run();
    return QApplication::exec();
}
