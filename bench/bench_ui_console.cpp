// SPDX-License-Identifier: GPL-3.0-or-later

// A program that writes a million lines as fast as it is read: in the console, in a plain text widget that
// keeps as many lines, and read by nobody who shows it. Lines a second, and how long a key waits for its
// answer. bench/console.py compares with a terminal program.

#include "console/consoleoptions.h"
#include "console/messageplace.h"
#include "console/ui/consoleview.h"
#include "console/ui/frmconsole.h"
#include "platform/terminalprocess.h"
#include "shell/settings.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <QApplication>
#include <QByteArray>
#include <QByteArrayView>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QInputDevice>
#include <QKeyEvent>
#include <QObject>
#include <QPlainTextEdit>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QWidget>
#include <thread>
#include <vector>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Lines = 1'000'000;
constexpr int KeptLines = 100'000;

QString WriteLines(const QString &folder)
{
    QFile file(folder + u"/lines"_s);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write the lines");
    for (int i = 0; i < Lines; ++i)
        file.write(i % 10 == 0 ? "\x1b[mB" + QByteArray::number(i).rightJustified(7) +
                                     ".000 ..  3.000 T  3.000 TT  3.000 M:  0.20000\n"
                               : "\x1b[mnew alloc for instr " + QByteArray::number(i) + ":\x1b[m\n");
    return file.fileName();
}

/// Presses a key fifty times a second from a thread of its own, as the window system would, and notes how
/// long each one waits.
class Typist : public QObject
{
public:
    explicit Typist(QWidget &target) : m_target(&target)
    {
        target.installEventFilter(this);
        QInputDevice::primaryKeyboard(); // is made by the thread that asks first
        m_thread = std::thread([this] {
            while (!m_ends) {
                m_sent = Now();
                QCoreApplication::postEvent(
                    m_target, new QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier));
                while (m_sent != 0 && !m_ends)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
    }
    ~Typist() override { Stop(); }
    void Stop()
    {
        m_ends = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    void Report(const char *name, qint64 ms)
    {
        Stop();
        std::sort(m_waits.begin(), m_waits.end());
        std::printf("%-22s %9.0f lines a second", name, Lines * 1000.0 / double(std::max<qint64>(1, ms)));
        if (!m_waits.empty())
            std::printf(", a key waits %5.1f ms, of %zu keys at most %5.1f ms", m_waits[m_waits.size() / 2],
                        m_waits.size(), m_waits.back());
        std::printf("\n");
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && m_sent != 0) {
            m_waits.push_back(double(Now() - m_sent) / 1e6);
            m_sent = 0;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static qint64 Now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

    QWidget *m_target;
    std::thread m_thread;
    std::atomic<bool> m_ends = false;
    std::atomic<qint64> m_sent = 0;
    std::vector<double> m_waits;
};

qint64 Until(const std::function<bool()> &ended)
{
    QElapsedTimer clock;
    clock.start();
    while (!ended())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return clock.elapsed();
}

void InConsole(const QString &lines, const QString &logs)
{
    SettingsStore settings;
    frmConsole console({.run = {.title = u"cat"_s, .program = u"/bin/cat"_s, .arguments = {lines}}},
                       {.settings = settings, .logFolder = logs, .openPlace = [](const MessagePlace &) {}});
    console.Run();
    Typist typist(*console.findChild<ConsoleView *>(u"ConsoleView"_s));
    typist.Report("console", Until([&] { return console.IsFinished(); }));
}

void InPlainText(const QString &lines)
{
    QPlainTextEdit text;
    text.setMaximumBlockCount(KeptLines);
    text.setReadOnly(true);
    text.setUndoRedoEnabled(false);
    text.resize(800, 500);
    text.show();
    bool ended = false;
    TerminalProcess process({.output =
                                 [&](QByteArrayView bytes) {
                                     text.moveCursor(QTextCursor::End);
                                     text.insertPlainText(QString::fromUtf8(bytes));
                                 },
                             .ended = [&](const ProgramEnd &) { ended = true; }});
    process.Start({u"/bin/cat"_s, {lines}, {}});
    Typist typist(text);
    typist.Report("QPlainTextEdit", Until([&] { return ended; }));
}

void Unseen(const QString &lines)
{
    QWidget nothing;
    bool ended = false;
    TerminalProcess process({.output = {}, .ended = [&](const ProgramEnd &) { ended = true; }});
    process.Start({u"/bin/cat"_s, {lines}, {}});
    Typist typist(nothing);
    typist.Report("read, and thrown away", Until([&] { return ended; }));
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "HOME"})
        qputenv(name, home.path().toLocal8Bit());
    QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const QString lines = WriteLines(home.path());
    Unseen(lines);
    InConsole(lines, home.path() + u"/runs"_s);
    InPlainText(lines);
    return 0;
}
