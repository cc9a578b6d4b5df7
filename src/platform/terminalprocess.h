// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

/// How a program ended.
struct ProgramEnd {
    bool bySignal = false;
    int number = 0;          ///< the exit code, or the number of the signal
    QString signalName = {}; ///< "SIGSEGV"; empty where the system has no name for it

    bool IsSuccess() const { return !bySignal && number == 0; }
    bool operator==(const ProgramEnd &) const = default;
};

/// What a program is asked, the gentlest first.
enum class StopSignal { Interrupt, Terminate, Kill };

/// A program that runs in a terminal of its own, so that it writes each line at once and may ask. It leads a
/// session: a stop reaches all of it. Where this process ends by an exit, as when the display goes, the
/// program is stopped first. Where this process is killed, the terminal hangs up on all of the session, and
/// the program itself is asked to terminate where the system can do that: who ignores both goes on. What
/// leaves the session for one of its own, as a service does that starts in the background, is out of reach.
class TerminalProcess
{
public:
    /// How wide programs are told that their terminal is, in characters.
    static constexpr int Columns = 132;
    /// The longest line of input in bytes, without its end. A terminal drops what goes beyond.
    static constexpr qsizetype LongestLine = 4095;

    struct Request {
        QString program = {}; ///< a path
        QStringList arguments = {};
        QString folder = {}; ///< empty for the current one
    };
    struct Handlers {
        /// Called from the event loop with a few hundred kilobytes at most; a program that writes more waits.
        std::function<void(QByteArrayView)> output;
        /// Called once, when the program has ended and its output has been given. Output of others that it
        /// has started may follow.
        std::function<void(const ProgramEnd &)> ended;
        /// The same as `output` where this process ends by an exit: no window may be touched any more.
        std::function<void(QByteArrayView)> lastOutput = {};
        /// Called once where this process ends by an exit, after all output. @param last what was sent last;
        /// nothing where nothing ran any more
        std::function<void(const std::optional<StopSignal> &last)> stopped = {};
    };

    explicit TerminalProcess(Handlers handlers);
    /// Kills what still runs.
    ~TerminalProcess();
    TerminalProcess(const TerminalProcess &) = delete;
    TerminalProcess &operator=(const TerminalProcess &) = delete;

    /// @return false when it cannot be started; Error tells why
    bool Start(const Request &request);
    QString Error() const;
    bool IsRunning() const;
    /// Whether anything of what was started runs, the program itself or others of its session. After the
    /// program's end it looks through the system's processes.
    bool AnyRuns() const;

    /// Gives at once what has been written and was not given yet, a megabyte at most.
    void ReadRest();
    /// Gives bytes to the program's standard input. What it does not take in time is given later.
    void Write(const QByteArray &bytes);
    void WriteEnd(); ///< the end of the input, as Ctrl+D at a terminal
    /// To the program and all of its session. @return false where a program runs that this user may not stop:
    /// it gets the interrupt as a key of its terminal, and of the other signals none
    bool Stop(StopSignal signal);

private:
    struct Parts;
    void Read();
    void WritePending();
    /// Stops what runs without serving events, gently first.
    void EndInHaste();

    std::unique_ptr<Parts> m_parts;
};

} // namespace zelvane
