// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/terminalprocess.h"

#include "platform/nativecalls.h"
#include "platform/nativefile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <poll.h>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QIODevice>
#include <QList>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QtGlobal>
#include <sys/ioctl.h>
#include <sys/types.h>
#include <termios.h>
#include <unistd.h>
#include <utility>
#include <vector>

#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// What is read before events are served again.
constexpr qsizetype MostAtOnce = 256 * 1024;
/// More than a terminal holds of what a program wrote before it ended. Others may go on writing.
constexpr qsizetype MostAtEnd = 1024 * 1024;
/// How long each signal is waited for when this process has to end at once.
constexpr int HasteMs = 4000;
constexpr int LookEveryMs = 50;
constexpr unsigned short Rows = 40;
constexpr char EndOfInput = 4;
constexpr char InterruptKey = 3;

struct SignalName {
    int number;
    const char *name;
};

constexpr std::array signalNames{
    SignalName{SIGHUP, "SIGHUP"},   SignalName{SIGINT, "SIGINT"},   SignalName{SIGQUIT, "SIGQUIT"},
    SignalName{SIGILL, "SIGILL"},   SignalName{SIGTRAP, "SIGTRAP"}, SignalName{SIGABRT, "SIGABRT"},
    SignalName{SIGBUS, "SIGBUS"},   SignalName{SIGFPE, "SIGFPE"},   SignalName{SIGKILL, "SIGKILL"},
    SignalName{SIGSEGV, "SIGSEGV"}, SignalName{SIGPIPE, "SIGPIPE"}, SignalName{SIGALRM, "SIGALRM"},
    SignalName{SIGTERM, "SIGTERM"}, SignalName{SIGXCPU, "SIGXCPU"}, SignalName{SIGXFSZ, "SIGXFSZ"},
    SignalName{SIGSYS, "SIGSYS"},
};

QString NameOfSignal(int number)
{
    for (const SignalName &row : signalNames)
        if (row.number == number)
            return QString::fromLatin1(row.name);
    return {};
}

int NumberOfSignal(StopSignal signal)
{
    switch (signal) {
    case StopSignal::Interrupt:
        return SIGINT;
    case StopSignal::Terminate:
        return SIGTERM;
    case StopSignal::Kill:
        return SIGKILL;
    }
    return SIGKILL;
}

/// A terminal that changes nothing on the way: no echo, no carriage returns. Lines and signals stay as
/// programs expect them of a terminal.
void MakePlain(int terminal)
{
    termios settings{};
    if (::tcgetattr(terminal, &settings) == 0) {
        settings.c_oflag &= ~tcflag_t(OPOST);
        settings.c_lflag &= ~tcflag_t(ECHO | ECHONL);
        settings.c_iflag |= ICRNL;
#ifdef IUTF8
        settings.c_iflag |= IUTF8;
#endif
        ::tcsetattr(terminal, TCSANOW, &settings);
    }
    winsize size{};
    size.ws_row = Rows;
    size.ws_col = TerminalProcess::Columns;
    ::ioctl(terminal, TIOCSWINSZ, &size);
}

/// Opens both ends of a terminal. @return false with errno set
bool OpenTerminal(NativeFile &master, NativeFile &terminal)
{
    master = NativeFile(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!master.IsOpen() || ::grantpt(master.Descriptor()) != 0 || ::unlockpt(master.Descriptor()) != 0)
        return false;
    const char *name = ::ptsname(master.Descriptor());
    if (!name)
        return false;
    terminal = NativeFile(::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!terminal.IsOpen())
        return false;
    MakePlain(terminal.Descriptor());
    const int flags = ::fcntl(master.Descriptor(), F_GETFL);
    return flags >= 0 && ::fcntl(master.Descriptor(), F_SETFL, flags | O_NONBLOCK) == 0;
}

/// In the child, between fork and exec.
void EnterTerminal(int terminal)
{
    ::setsid();
    ::ioctl(terminal, TIOCSCTTY, 0);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(terminal, stream);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGTSTP})
        ::signal(signal, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// In the child: where its owner is killed, it is asked to end. The hang-up of the terminal, which comes too,
/// is one that programs may ignore for a good reason; a kill would cut off who closes files.
void EndWithOwner(pid_t owner)
{
#ifdef Q_OS_LINUX
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != owner)
        ::raise(SIGTERM); // it has ended before
#else
    static_cast<void>(owner);
#endif
}

/// The process groups of a session with a member that a signal reaches: what has ended and is not yet fetched
/// by its parent counts no more, and another user's program cannot be stopped.
/// @param hasOthers whether there is such a one, where it is to be known
std::vector<pid_t> GroupsOf(pid_t session, bool *hasOthers = nullptr)
{
    std::vector<pid_t> groups;
    if (session <= 0)
        return groups;
    const auto isReached = [&](pid_t process) {
        if (::kill(process, 0) == 0)
            return true;
        if (errno == EPERM && hasOthers)
            *hasOthers = true;
        return false;
    };
    QDirIterator processes(u"/proc"_s, {u"[0-9]*"_s}, QDir::Dirs);
    if (!processes.hasNext()) { // a system without a table of them
        if (isReached(-session))
            groups.push_back(session);
        return groups;
    }
    while (processes.hasNext()) {
        QFile file(processes.next() + u"/stat"_s);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            continue;
        // The number, the name in brackets, which may hold any, then state, parent, group and session.
        const QByteArray line = file.read(1024);
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() < 4 || fields[0] == "Z" || fields[0] == "X" || fields[3].toLongLong() != session)
            continue;
        const pid_t group = pid_t(fields[2].toLongLong());
        if (std::find(groups.begin(), groups.end(), group) == groups.end() &&
            isReached(pid_t(line.left(line.indexOf(' ')).toLongLong())))
            groups.push_back(group);
    }
    return groups;
}

/// Those whose programs are to be stopped should this process be ended by an exit, as the toolkit does when
/// the display has gone.
std::vector<TerminalProcess *> &Living()
{
    static std::vector<TerminalProcess *> living;
    return living;
}

} // namespace

struct TerminalProcess::Parts {
    Handlers handlers;
    QProcess process;
    pid_t session = 0; ///< of the program; 0 when nothing of it is left
    NativeFile master;
    /// Kept open: a terminal that nobody has open reads as one at its end, and a program may close it and
    /// open it again.
    NativeFile terminal;
    std::unique_ptr<QSocketNotifier> readable;
    std::unique_ptr<QSocketNotifier> writable;
    QByteArray input;  ///< not taken yet
    QByteArray buffer; ///< for one reading
    QString error;
};

TerminalProcess::TerminalProcess(Handlers handlers) : m_parts(std::make_unique<Parts>())
{
    m_parts->handlers = std::move(handlers);
    m_parts->buffer.resize(MostAtOnce);
    Living().push_back(this);
    [[maybe_unused]] static const int registered = std::atexit([] {
        for (TerminalProcess *process : Living())
            process->EndInHaste();
    });
}

TerminalProcess::~TerminalProcess()
{
    std::erase(Living(), this);
    m_parts->handlers = {};
    m_parts->process.disconnect();
    Stop(StopSignal::Kill);
    if (IsRunning())
        m_parts->process.waitForFinished();
}

bool TerminalProcess::Start(const Request &request)
{
    if (!OpenTerminal(m_parts->master, m_parts->terminal)) {
        m_parts->error = native::DescriptionOf(errno);
        return false;
    }
    QProcess &process = m_parts->process;
    process.setProgram(request.program);
    process.setArguments(request.arguments);
    process.setWorkingDirectory(request.folder);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier([fd = m_parts->terminal.Descriptor(), owner = ::getpid()] {
        EnterTerminal(fd);
        EndWithOwner(owner);
    });
    QObject::connect(&process, &QProcess::finished, &process, [this](int code, QProcess::ExitStatus status) {
        ReadRest();                // the output ends before the program does
        m_parts->writable.reset(); // others that it has started may go on writing
        m_parts->input.clear();
        AnyRuns(); // nobody else may ask before its number is used again
        const bool bySignal = status == QProcess::CrashExit;
        if (m_parts->handlers.ended)
            m_parts->handlers.ended({.bySignal = bySignal,
                                     .number = code,
                                     .signalName = bySignal ? NameOfSignal(code) : QString()});
    });
    process.start();
    if (!process.waitForStarted(-1)) {
        m_parts->error = process.errorString();
        return false;
    }
    m_parts->session = pid_t(process.processId());
    m_parts->readable =
        std::make_unique<QSocketNotifier>(m_parts->master.Descriptor(), QSocketNotifier::Read);
    QObject::connect(m_parts->readable.get(), &QSocketNotifier::activated, &process, [this] { Read(); });
    return true;
}

QString TerminalProcess::Error() const
{
    return m_parts->error;
}

bool TerminalProcess::IsRunning() const
{
    return m_parts->process.state() != QProcess::NotRunning;
}

bool TerminalProcess::AnyRuns() const
{
    if (IsRunning())
        return true;
    // A session keeps its number while it has a member. Once it has none, the number may become another's.
    if (GroupsOf(m_parts->session).empty())
        m_parts->session = 0;
    return m_parts->session > 0;
}

void TerminalProcess::Read()
{
    qsizetype length = 0;
    while (length < MostAtOnce) {
        const ssize_t got = native::Retry([&] {
            return ::read(m_parts->master.Descriptor(), m_parts->buffer.data() + length,
                          size_t(MostAtOnce - length));
        });
        if (got > 0) {
            length += got;
            continue;
        }
        break;
    }
    if (length > 0 && m_parts->handlers.output)
        m_parts->handlers.output(QByteArrayView(m_parts->buffer).first(length));
}

void TerminalProcess::ReadRest()
{
    for (qsizetype read = -1, all = 0; read != 0 && all < MostAtEnd; all += read) {
        const ssize_t got = native::Retry([this] {
            return ::read(m_parts->master.Descriptor(), m_parts->buffer.data(),
                          size_t(m_parts->buffer.size()));
        });
        read = std::max<ssize_t>(0, got);
        if (read > 0 && m_parts->handlers.output)
            m_parts->handlers.output(QByteArrayView(m_parts->buffer).first(read));
    }
}

void TerminalProcess::Write(const QByteArray &bytes)
{
    if (!IsRunning())
        return;
    m_parts->input += bytes;
    WritePending();
}

void TerminalProcess::WriteEnd()
{
    Write(QByteArray(1, EndOfInput));
}

void TerminalProcess::WritePending()
{
    QByteArray &input = m_parts->input;
    while (!input.isEmpty()) {
        const ssize_t written = native::Retry(
            [&] { return ::write(m_parts->master.Descriptor(), input.constData(), size_t(input.size())); });
        if (written <= 0)
            break;
        input.remove(0, written);
    }
    if (input.isEmpty()) {
        if (m_parts->writable)
            m_parts->writable->setEnabled(false);
        return;
    }
    if (!m_parts->writable) {
        m_parts->writable =
            std::make_unique<QSocketNotifier>(m_parts->master.Descriptor(), QSocketNotifier::Write);
        QObject::connect(m_parts->writable.get(), &QSocketNotifier::activated, &m_parts->process,
                         [this] { WritePending(); });
    }
    m_parts->writable->setEnabled(true);
}

bool TerminalProcess::Stop(StopSignal signal)
{
    bool hasOthers = false;
    const std::vector<pid_t> groups = GroupsOf(m_parts->session, &hasOthers);
    for (const pid_t group : groups) {
        ::kill(-group, NumberOfSignal(signal));
        ::kill(-group, SIGCONT); // a halted program takes no other signal
    }
    if (!groups.empty() || !hasOthers)
        return true;
    // A program that was started for the administrator, say, can only be asked by the key.
    if (signal == StopSignal::Interrupt)
        native::Retry([this] { return ::write(m_parts->master.Descriptor(), &InterruptKey, 1); });
    return false;
}

void TerminalProcess::EndInHaste()
{
    // Of the handlers only those that need no window are called from here on.
    m_parts->handlers.output = m_parts->handlers.lastOutput;
    std::optional<StopSignal> last;
    for (const StopSignal signal : {StopSignal::Interrupt, StopSignal::Terminate, StopSignal::Kill}) {
        if (GroupsOf(m_parts->session).empty())
            break;
        last = signal;
        Stop(signal);
        for (const QDeadlineTimer deadline(HasteMs); !deadline.hasExpired();) {
            if (GroupsOf(m_parts->session).empty())
                break;
            // A program that cannot get rid of its last words does not end.
            pollfd output{.fd = m_parts->master.Descriptor(), .events = POLLIN, .revents = 0};
            ::poll(&output, 1, LookEveryMs);
            ReadRest();
        }
    }
    ReadRest();
    if (m_parts->handlers.stopped)
        m_parts->handlers.stopped(last);
}

} // namespace zelvane
