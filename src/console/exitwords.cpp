// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/exitwords.h"

#include <array>
#include <QLatin1String>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

struct SignalRow {
    QLatin1String name;
    QLatin1String words;
};

const std::array signalRows{
    SignalRow{QLatin1String("SIGHUP"), QLatin1String("Ended: hung up")},
    SignalRow{QLatin1String("SIGINT"), QLatin1String("Ended: interrupted")},
    SignalRow{QLatin1String("SIGQUIT"), QLatin1String("Ended: quit")},
    SignalRow{QLatin1String("SIGTERM"), QLatin1String("Ended: terminated")},
    SignalRow{QLatin1String("SIGKILL"), QLatin1String("Ended: killed")},
    SignalRow{QLatin1String("SIGPIPE"), QLatin1String("Ended: nobody read its output")},
    SignalRow{QLatin1String("SIGALRM"), QLatin1String("Ended: alarm")},
    SignalRow{QLatin1String("SIGSEGV"), QLatin1String("Crashed: segmentation fault")},
    SignalRow{QLatin1String("SIGABRT"), QLatin1String("Crashed: aborted")},
    SignalRow{QLatin1String("SIGBUS"), QLatin1String("Crashed: bus error")},
    SignalRow{QLatin1String("SIGFPE"), QLatin1String("Crashed: arithmetic error")},
    SignalRow{QLatin1String("SIGILL"), QLatin1String("Crashed: illegal instruction")},
    SignalRow{QLatin1String("SIGSYS"), QLatin1String("Crashed: bad system call")},
    SignalRow{QLatin1String("SIGTRAP"), QLatin1String("Crashed: trap")},
    SignalRow{QLatin1String("SIGXCPU"), QLatin1String("Ended: processor time used up")},
    SignalRow{QLatin1String("SIGXFSZ"), QLatin1String("Ended: file size limit reached")},
};

QString SignalWords(const ProgramEnd &end)
{
    for (const SignalRow &row : signalRows)
        if (row.name == end.signalName)
            return row.words + u" ("_s + end.signalName + u')';
    const QString number = u"signal "_s + QString::number(end.number);
    return u"Ended by "_s + (end.signalName.isEmpty() ? number : end.signalName);
}

/// What a stop by a signal means for the files.
QString StoppedWords(const std::optional<StopSignal> &stopped)
{
    if (stopped == StopSignal::Interrupt)
        return u"Stopped."_s;
    if (stopped == StopSignal::Terminate)
        return u"Stopped by terminate: the sound file may be damaged."_s;
    if (stopped == StopSignal::Kill)
        return u"Stopped by kill: the sound file may be damaged."_s;
    return {};
}

} // namespace

QString StopWords(StopSignal signal)
{
    switch (signal) {
    case StopSignal::Interrupt:
        return u"Stopping..."_s;
    case StopSignal::Terminate:
        return u"Terminating..."_s;
    case StopSignal::Kill:
        break;
    }
    return u"Killing..."_s;
}

QString ExitWords(const ProgramEnd &end, const std::optional<StopSignal> &stopped)
{
    const QString head = stopped ? StoppedWords(stopped) + u' ' : QString();
    if (end.bySignal)
        return head + SignalWords(end) + u'.';
    if (end.number == 0)
        return head + u"Ended well (exit code 0)."_s;
    return head + u"Ended with exit code "_s + QString::number(end.number) + u'.';
}

QString LeftoverWords(const std::optional<StopSignal> &stopped)
{
    if (!stopped || stopped == StopSignal::Interrupt)
        return {};
    return u"What it had started was ended by "_s +
           (stopped == StopSignal::Terminate ? u"terminate"_s : u"kill"_s) + u": its files may be damaged."_s;
}

QString LostWindowWords(StopSignal stopped)
{
    return u"The display has gone. "_s + StoppedWords(stopped);
}

QString DurationText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / 1000;
    const auto twoDigits = [](qint64 number) { return QString::number(number).rightJustified(2, u'0'); };
    const QString tail = u':' + twoDigits(seconds % 60);
    if (seconds < 3600)
        return QString::number(seconds / 60) + tail;
    return QString::number(seconds / 3600) + u':' + twoDigits(seconds / 60 % 60) + tail;
}

} // namespace zelvane
