// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/consolestart.h"

#include "platform/executables.h"
#include "platform/nativecalls.h"
#include "platform/nativefile.h"
#include "platform/windowstate.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <QCoreApplication>
#include <QProcess>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LookEveryMs = 100;
constexpr char StartedWord = 's';
constexpr char EndedWord = 'e';
const QString ConsoleName = u"zelvane-console"_s;

bool Start(QProcess &process, const QString &console, const ConsoleRun &run, int notify)
{
    process.setProgram(console);
    process.setArguments(ConsoleArguments(run, notify));
    process.setStandardInputFile(QProcess::nullDevice());
    if (notify >= 0)
        ::fcntl(notify, F_SETFD, 0); // no other program is started meanwhile
    const bool started = process.startDetached();
    KeepForSelf(notify);
    return started;
}

} // namespace

QStringList ConsoleArguments(const ConsoleRun &run, int notify)
{
    QStringList arguments{u"--title"_s, run.title, u"--window"_s, QString::number(int(run.showState))};
    if (!run.folder.isEmpty())
        arguments += {u"--folder"_s, run.folder};
    if (run.starter > 0)
        arguments += {u"--starter"_s, QString::number(run.starter)};
    if (notify >= 0)
        arguments += {u"--notify"_s, QString::number(notify)};
    arguments += {u"--"_s, run.program};
    return arguments + run.arguments;
}

QString ConsoleProgram()
{
    return FindExecutable(QCoreApplication::applicationDirPath() + u'/' + ConsoleName);
}

bool StartConsole(const QString &console, const ConsoleRun &run, QString *error)
{
    QProcess process;
    if (Start(process, console, run, -1))
        return true;
    *error = process.errorString();
    return false;
}

bool StartConsoleAndWait(const QString &console, const ConsoleRun &run, const ConsoleWait &wait)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
    const NativeFile reading(ends[0]);
    NativeFile writing(ends[1]);
    QProcess process;
    if (!Start(process, console, run, writing.Descriptor()))
        return false;
    writing = NativeFile();
    for (bool started = false;;) {
        pollfd waiting{.fd = reading.Descriptor(), .events = POLLIN, .revents = 0};
        const int ready = ::poll(&waiting, 1, LookEveryMs);
        if (ready > 0) {
            char word = EndedWord;
            const ssize_t got = native::Retry([&] { return ::read(reading.Descriptor(), &word, 1); });
            if (got <= 0 || word == EndedWord)
                return started;
            if (word == StartedWord && !started) {
                started = true;
                if (wait.started)
                    wait.started();
            }
        }
        if (started && wait.looks)
            wait.looks();
    }
}

void TellWaiting(int notify, ProgramNews news)
{
    if (notify < 0)
        return;
    const char word = news == ProgramNews::Started ? StartedWord : EndedWord;
    // Nobody may wait any more: the editor has been killed.
    [[maybe_unused]] const ssize_t written = native::Retry([&] { return ::write(notify, &word, 1); });
    if (news == ProgramNews::Ended)
        ::close(notify);
}

void KeepForSelf(int notify)
{
    if (notify >= 0)
        ::fcntl(notify, F_SETFD, FD_CLOEXEC);
}

} // namespace zelvane
