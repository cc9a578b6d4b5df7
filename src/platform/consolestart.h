// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowstate.h"

#include <functional>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

/// A program that runs in a console window, which is a program of its own and outlives this process.
struct ConsoleRun {
    QString title = {}; ///< of the window; runs of the same title replace each other's finished consoles
    QString program = {};
    QStringList arguments = {};
    QString folder = {}; ///< empty for the current one
    WindowState showState = WindowState::Normal;
    qint64 starter = 0; ///< the process that the lines of errors go to if it is an editor; 0 for any editor

    bool operator==(const ConsoleRun &) const = default;
};

/// The console program's command line. @param notify a descriptor, or -1
QStringList ConsoleArguments(const ConsoleRun &run, int notify = -1);

/// The console program beside this one; empty where it is missing.
QString ConsoleProgram();

/// Starts a console. @return false with `error` set when it cannot be started
bool StartConsole(const QString &console, const ConsoleRun &run, QString *error);

/// What happens while a program in a console is waited for.
struct ConsoleWait {
    std::function<void()> started; ///< called once, when the program runs
    std::function<void()> looks;   ///< called several times a second
};
/// Starts a console and waits until its program, not the console, has ended. Serves no event. The end of a
/// console that is killed ends the wait too, though a program that ignores both its hang-up and a terminate
/// may go on.
/// @return false when the console or its program cannot be started
bool StartConsoleAndWait(const QString &console, const ConsoleRun &run, const ConsoleWait &wait);

/// The console's half: tells the one that waits at a descriptor. Does nothing for -1.
enum class ProgramNews { Started, Ended };
void TellWaiting(int notify, ProgramNews news);
/// To be called at once by the console: the descriptor is not for the programs that it starts.
void KeepForSelf(int notify);

} // namespace zelvane
