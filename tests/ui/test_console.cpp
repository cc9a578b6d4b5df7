// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/consolekeys.h"
#include "console/consoleoptions.h"
#include "console/linestore.h"
#include "console/messageplace.h"
#include "console/stopladder.h"
#include "console/styledline.h"
#include "console/ui/consolelink.h"
#include "console/ui/consoleview.h"
#include "console/ui/frmconsole.h"
#include "platform/terminalprocess.h"
#include "platform/windowstate.h"
#include "shell/editorkeys.h"
#include "shell/settings.h"
#include "support/modaldriver.h"
#include "support/processortime.h"
#include "support/uitest.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QByteArray>
#include <QCheckBox>
#include <QClipboard>
#include <QColor>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QInputDevice>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMetaObject>
#include <QPainter>
#include <QPalette>
#include <QPoint>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <thread>
#include <utility>
#include <vector>

#ifdef Q_OS_LINUX
#include <sys/types.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using zelvane::test::LeastProcessorTime;
using zelvane::test::ModalDriver;
using zelvane::test::Patience;

namespace
{

/// A console over a shell script.
struct Console {
    QTemporaryDir folder;
    SettingsStore settings;
    std::vector<MessagePlace> places;
    std::unique_ptr<frmConsole> form;
    std::unique_ptr<QSignalSpy> closed;

    explicit Console(const QString &script, WindowState showState = WindowState::Normal)
    {
        const ConsoleOptions options{.run = {.title = u"Render"_s,
                                             .program = u"/bin/sh"_s,
                                             .arguments = {u"-c"_s, script},
                                             .folder = QDir(folder.path()).canonicalPath(),
                                             .showState = showState}};
        Make(options);
    }
    explicit Console(const ConsoleOptions &options) { Make(options); }
    void Make(const ConsoleOptions &options)
    {
        form = std::make_unique<frmConsole>(
            options, frmConsole::Services{
                         .settings = settings,
                         .logFolder = folder.path() + u"/runs"_s,
                         .openPlace = [this](const MessagePlace &place) { places.push_back(place); }});
        closed = std::make_unique<QSignalSpy>(form.get(), &frmConsole::Closed);
    }
    ~Console() { settings.DeleteSetting(Keys::ConsoleKeepOpen); }

    template <typename Widget> Widget &Find(const QString &name) const
    {
        auto *widget = form->findChild<Widget *>(name);
        if (!widget)
            qFatal("%s is not there", name.toUtf8().constData());
        return *widget;
    }
    ConsoleView &View() const { return Find<ConsoleView>(u"ConsoleView"_s); }
    QString State() const { return Find<QLabel>(u"lblState"_s).text(); }
    QString Log() const
    {
        const QDir runs(folder.path() + u"/runs"_s);
        QFile file(runs.filePath(runs.entryList(QDir::Files).value(0)));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    /// Whether nothing runs any more and the window says so: what a program has started may outlive it for a
    /// moment.
    bool HasEnded() const { return form->IsFinished() && !Find<QAbstractButton>(u"cmdStop"_s).isEnabled(); }
    bool Shows(const QString &text) const
    {
        View().SelectAll();
        return View().SelectedText().contains(text);
    }
};

/// The most memory that this process has had; 0 where the system does not tell.
qint64 PeakMegabytes()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype peak = text.indexOf("VmHWM:");
    return peak < 0 ? 0
                    : text.mid(peak + 6, text.indexOf("kB", peak) - peak - 6).trimmed().toLongLong() / 1000;
}

} // namespace

class ConsoleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ShowsTheOutputAndClosesAfterSuccess()
    {
        Console console(u"echo first; echo second >&2; sleep 0.1; echo last"_s);
        console.form->Run();
        QVERIFY(console.form->isVisible());
        QCOMPARE(console.form->windowTitle(), u"Render"_s);
        QVERIFY(console.Find<QLineEdit>(u"txtCommand"_s).text().startsWith(u"/bin/sh -c \""_s));
        QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        QVERIFY(console.Shows(u"first\nsecond\nlast"_s));
        QCOMPARE(console.State(), u"Ended well (exit code 0)."_s);
        QVERIFY(console.Log().contains(u"first\nsecond\nlast\n\nEnded well"_s));
        QVERIFY(!console.form->isVisible());
    }

    void StaysAfterAnErrorWithTheFirstOneInView()
    {
        Console console(u"i=0; echo 'error: the first'; while [ $i -lt 300 ]; do echo line $i; i=$((i+1)); "
                        "done; exit 3"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY(!console.form->IsLeaving());
        QVERIFY(console.form->isVisible());
        QCOMPARE(console.State(), u"Ended with exit code 3. error: the first"_s);
        QCOMPARE(console.View().SelectedText(), u"error: the first"_s);
        console.form->GiveWay();
        QCOMPARE(console.closed->count(), 1);
    }

    void TheFirstErrorIsInViewHoweverMuchFollows_data()
    {
        QTest::addColumn<int>("lines");
        QTest::newRow("a few more than are kept") << 100'000;
        QTest::newRow("many more than are kept") << 130'000;
    }
    void TheFirstErrorIsInViewHoweverMuchFollows()
    {
        QFETCH(int, lines);
        Console console(u"printf 'instr 1\\na1 nosuch 1\\nendin\\n' > a.orc; echo before; "
                        "echo 'error: syntax error, unexpected T_IDENT  (token \"nosuch\")'; "
                        "echo ' from file a.orc (1), line 2:'; echo ' >>> a1 nosuch <<<'; "
                        "yes again | head -n %1; echo 'error: the last'; exit 1"_s.arg(lines - 2));
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        ConsoleView &view = console.View();
        const QString error = u"error: syntax error, unexpected T_IDENT  (token \"nosuch\")"_s;
        QCOMPARE(view.SelectedText(), error);
        QCOMPARE(view.verticalScrollBar()->value(), 0);
        QTest::keyClick(&view, Qt::Key_F4);
        const MessagePlace place{QDir(console.folder.path()).canonicalPath() + u"/a.orc"_s, 2};
        QCOMPARE(console.places, std::vector{place});
        QTest::keyClick(&view, Qt::Key_Down); // a detail of the same message
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(console.places, (std::vector{place, place}));
        QTest::keyClick(&view, Qt::Key_F4);
        QCOMPARE(view.SelectedText(), u"error: the last"_s);
        QTest::keyClick(&view, Qt::Key_F4, Qt::ShiftModifier);
        QCOMPARE(view.SelectedText(), error);
        const bool hasGap = lines > 100'000;
        QCOMPARE(console.Shows(
                     u" >>> a1 nosuch <<<\n[%1 lines are left out here]\nagain\n"_s.arg(lines - 100'001)),
                 hasGap);
        QCOMPARE(console.Shows(error + u"\n from file a.orc (1), line 2:\n >>> a1 nosuch <<<\n"_s), true);
    }

    void StaysWhereItWasTouched()
    {
        Console console(u"read answer; echo got $answer"_s);
        console.form->Run();
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        QTest::keyClicks(&input, u"words"_s);
        QTest::keyClick(&input, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY(console.Shows(u"> words\ngot words"_s));
        QVERIFY(!console.form->IsLeaving());
        QVERIFY(console.form->isVisible());
        console.form->close();
        QCOMPARE(console.closed->count(), 1);
    }

    void KeepOpenIsRemembered()
    {
        {
            Console console(u"exit 0"_s);
            console.Find<QCheckBox>(u"chkKeepOpen"_s).setChecked(true);
            console.form->Run();
            QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
            QVERIFY(!console.form->IsLeaving());
            Console next(u"exit 0"_s);
            QVERIFY(next.Find<QCheckBox>(u"chkKeepOpen"_s).isChecked());
            console.Find<QCheckBox>(u"chkKeepOpen"_s).setChecked(false);
            QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        }
    }

    void KeepOpenHoldsWhereItCannotBeStored()
    {
        const QTemporaryDir folder;
        SettingsStore nowhere(u"/dev/null/settings"_s);
        frmConsole form({.run = {.title = u"x"_s, .program = u"/bin/true"_s}},
                        {.settings = nowhere, .logFolder = folder.path(), .openPlace = {}});
        form.Run();
        QTest::mouseClick(form.findChild<QCheckBox *>(u"chkKeepOpen"_s), Qt::LeftButton, {}, QPoint(8, 8));
        QTRY_VERIFY_WITH_TIMEOUT(form.IsFinished(), Patience);
        QVERIFY(form.findChild<QCheckBox *>(u"chkKeepOpen"_s)->isChecked());
        QVERIFY(!form.IsLeaving());
    }

    void StopInterruptsFirst()
    {
        Console console(u"trap 'echo closing; exit 0' INT; echo up; while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        auto &stop = console.Find<QPushButton>(u"cmdStop"_s);
        QVERIFY(stop.isEnabled());
        QTest::mouseClick(&stop, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY(console.Shows(u"closing"_s));
        QVERIFY(console.State().startsWith(u"Stopped. Ended well"_s));
        QVERIFY(!stop.isEnabled());
    }

    void AHeldKeyIsOneStop()
    {
        Console console(u"trap 'echo heard' INT; trap 'echo cut off; exit 1' TERM; echo up; "
                        "while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        const auto repeat = [&] {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier, QString(), true);
            QCoreApplication::sendEvent(&console.View(), &event);
        };
        repeat(); // of a press that another window got
        QCOMPARE(console.State(), u"Running..."_s);
        QTest::keyPress(&console.View(), Qt::Key_C, Qt::ControlModifier);
        QElapsedTimer held;
        for (held.start(); held.elapsed() < StopLadder::LeastMs + 500; QTest::qWait(30)) {
            repeat();
            QCOMPARE(console.State(), u"Stopping..."_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"heard"_s), Patience);
    }

    void ADeafProgramIsKilledInTheEnd()
    {
        Console console(u"trap '' INT TERM; echo up; while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        for (const QString &state : {u"Stopping..."_s, u"Terminating..."_s, u"Killing..."_s}) {
            QTRY_VERIFY_WITH_TIMEOUT((QTest::keyClick(&console.View(), Qt::Key_C, Qt::ControlModifier),
                                      console.State() == state || console.form->IsFinished()),
                                     Patience);
        }
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QCOMPARE(console.State(),
                 u"Stopped by kill: the sound file may be damaged. Ended: killed (SIGKILL)."_s);
    }

    void TheStateFollowsTheSteps()
    {
        // Nobody presses a second time: a program that an interrupt does not end is terminated in the end.
        Console console(u"trap '' INT; trap 'sleep 1; exit 1' TERM; echo up; while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        QStringList states;
        const auto note = [&] {
            if (states.isEmpty() || states.last() != console.State())
                states.append(console.State());
            return console.HasEnded();
        };
        note();
        console.form->StopAndClose();
        QTRY_VERIFY_WITH_TIMEOUT(note(), Patience);
        QCOMPARE(states,
                 (QStringList{u"Running..."_s, u"Stopping..."_s, u"Terminating..."_s,
                              u"Stopped by terminate: the sound file may be damaged. Ended with exit code "
                              "1."_s}));
        QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
    }

    void WhatComesWithTheEndStandsBeforeTheFirstError()
    {
        Console console(u"set -m; trap '' HUP; echo 'error: the first'; (trap '' INT TERM; echo up; "
                        "while :; do sleep 0.05; done) & sleep 0.3; exit 1"_s);
        console.form->Run();
        const QString state = u"Ended with exit code 1. What it has started still runs. error: the first"_s;
        QTRY_COMPARE_WITH_TIMEOUT(console.State(), state, Patience);
        QCOMPARE(console.Find<QLabel>(u"lblState"_s).toolTip(), state);
        QTest::keyClick(&console.View(), Qt::Key_F4); // it names no place
        QVERIFY(console.State() != state);
        for (const QString &next : {u"Stopping..."_s, u"Terminating..."_s, u"Killing..."_s})
            QTRY_VERIFY_WITH_TIMEOUT(
                (console.form->Stop(), console.State() == next || console.form->IsFinished()), Patience);
        const QString left = u"What it had started was ended by kill: its files may be damaged."_s;
        QTRY_COMPARE_WITH_TIMEOUT(console.State(),
                                  u"Ended with exit code 1. "_s + left + u" error: the first"_s, Patience);
        QVERIFY(console.Log().endsWith(u"Ended with exit code 1.\n\n"_s + left + u'\n'));
    }

    void CharactersOfOtherKeyboardsAreNoCommands()
    {
        Console console(u"trap 'exit 5' INT; echo up; cat; exit 6"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        QTest::keyClick(&console.View(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        QTest::keyClick(&console.View(), Qt::Key_D, Qt::ControlModifier | Qt::AltModifier);
        QTest::qWait(100);
        QCOMPARE(console.State(), u"Running..."_s);
        QTest::keyClick(&console.View(), Qt::Key_D, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(console.State(), u"Ended with exit code 6."_s, Patience);
    }

    void ALineThatIsTooLongIsNotSentInPart()
    {
        Console console(u"read a; echo got ${#a}"_s);
        console.form->Run();
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        input.setText(QString(TerminalProcess::LongestLine - 1, u'x') + u'\u00e9'); // two bytes
        QTest::keyClick(&input, Qt::Key_Return);
        QCOMPARE(console.State(),
                 u"The line is too long: a program can take 4095 bytes at a time. Nothing was sent."_s);
        QCOMPARE(input.text().size(), TerminalProcess::LongestLine);
        input.setText(QString(TerminalProcess::LongestLine, u'x'));
        QTest::keyClick(&input, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY(console.Shows(u"got 4095"_s));
    }

    void EachLineOfAPasteIsOneOfItsOwn()
    {
        Console console(u"read a; read b; echo got ${#a} and ${#b}; cat | wc -l"_s);
        console.form->Run();
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        QApplication::clipboard()->setText(QString(3000, u'x') + u'\n' + QString(4000, u'y') +
                                           (u'\n' + QString(3000, u'z')).repeated(20));
        input.setFocus();
        input.paste();
        QTest::keyClick(&input, Qt::Key_Return);
        QVERIFY2(input.text().isEmpty(), qUtf8Printable(console.State()));
        QTest::keyClick(&input, Qt::Key_D, Qt::ControlModifier);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY2(console.Shows(u"got 3000 and 4000\n20"_s), qUtf8Printable(console.State()));
    }

    void WhatWasTypedTooLateStays()
    {
        Console console(u"printf 'instr 1\\n' > a.orc; echo 'error: syntax error, line 1 of it'; "
                        "echo ' from file a.orc (1), line 1:'; read answer; exit 1"_s);
        console.form->Run();
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        input.setFocus();
        QTest::keyClick(&input, Qt::Key_Return);
        QTest::keyClicks(&input, u"late"_s);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QTest::keyClicks(console.form->focusWidget(), u" r"_s);
        QTest::keyClick(console.form->focusWidget(), Qt::Key_Return);
        QVERIFY2(console.places.empty(), "the Enter was none for the error");
        QCOMPARE(input.text(), u"late"_s);
        QTest::keyClick(console.form->focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(console.form->focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"late"_s);
        QTest::keyClick(console.form->focusWidget(), Qt::Key_F4);
        QCOMPARE(console.places.size(), size_t(1));
    }

    void WhatIsWrittenAfterTheEndIsLogged()
    {
        Console console(
            u"setsid sh -c 'trap \"\" HUP; while ! test -e go; do sleep 0.05; done; echo later' & "
            "while ! pgrep -s $! >/dev/null; do sleep 0.05; done; exit 1"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY(console.Log().endsWith(u"\nEnded with exit code 1.\n"_s));
        QFile go(console.folder.filePath(u"go"_s));
        QVERIFY(go.open(QIODevice::WriteOnly));
        QTRY_VERIFY_WITH_TIMEOUT(console.Log().endsWith(u"\nEnded with exit code 1.\nlater\n"_s), Patience);
        QVERIFY(console.Shows(u"later"_s));
    }

#ifdef Q_OS_LINUX
    void AnotherUsersProgramIsToldOf()
    {
        if (::geteuid() != 0)
            QSKIP("only the administrator can have a program of another user's");
        Console console(u"trap 'echo heard' INT; echo up; while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        constexpr uid_t nobody = 65534;
        QCOMPARE(::setresuid(nobody, nobody, 0), 0);
        const auto again = qScopeGuard([] {
            if (::setresuid(0, 0, 0) != 0)
                qFatal("the rights do not come back");
        });
        console.form->StopAndClose();
        const QString state =
            u"It runs with another user's rights: only an interrupt could be sent, as a key."_s;
        QCOMPARE(console.State(), state);
        QCOMPARE(console.Find<QLabel>(u"lblState"_s).toolTip(), state);
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"heard"_s), Patience);
        QVERIFY(console.form->isVisible());
        QVERIFY2(console.Find<QPushButton>(u"cmdStop"_s).isEnabled(), "it may be asked once more");
    }
#endif

    void ClosingAsksAndStops()
    {
        Console console(u"echo up; while :; do sleep 0.05; done"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        {
            ModalDriver driver;
            driver.Expect<QMessageBox>([](QMessageBox &box) {
                QCOMPARE(box.text(), u"Render is still running. Stop it?"_s);
                box.button(QMessageBox::No)->click();
            });
            console.form->close();
            QVERIFY(console.form->isVisible());
        }
        ModalDriver driver;
        driver.Expect<QMessageBox>([](QMessageBox &box) { box.button(QMessageBox::Yes)->click(); });
        console.form->close();
        QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        QVERIFY(console.form->IsFinished());
    }

    void WhatTheProgramLeftRunningKeepsTheWindow()
    {
        const QString left = u"set -m; trap '' HUP; (trap 'echo heard; exit' INT; echo up; "
                             "while :; do sleep 0.05; done) & sleep 0.3; exit 0"_s;
        const QString state = u"Ended well (exit code 0). What it has started still runs."_s;
        {
            Console console(left);
            console.form->Run();
            QTRY_COMPARE_WITH_TIMEOUT(console.State(), state, Patience);
            QVERIFY(!console.form->IsFinished());
            QVERIFY(!console.form->IsLeaving());
            console.form->GiveWay();
            QCOMPARE(console.closed->count(), 0);
            auto &stop = console.Find<QPushButton>(u"cmdStop"_s);
            QVERIFY(stop.isEnabled());
            QTest::mouseClick(&stop, Qt::LeftButton);
            QCOMPARE(console.State(), u"Stopping..."_s);
            QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
            QCOMPARE(console.State(), u"Ended well (exit code 0)."_s);
            QVERIFY(console.Shows(u"heard"_s));
            QVERIFY(console.Log().contains(u"heard"_s));
        }
        Console console(left);
        console.form->Run();
        QTRY_COMPARE_WITH_TIMEOUT(console.State(), state, Patience);
        ModalDriver driver;
        driver.Expect<QMessageBox>([](QMessageBox &box) {
            QCOMPARE(box.text(), u"Render has ended, but what it has started still runs. Stop that?"_s);
            box.button(QMessageBox::Yes)->click();
        });
        console.form->close();
        QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        QVERIFY(console.Shows(u"heard"_s));
    }

    void AQuestionThatIsOutOfDateGoes()
    {
        for (const auto &[code, closes] : {std::pair{0, 1}, std::pair{1, 0}}) {
            Console console(u"echo up; read answer; exit "_s + QString::number(code));
            console.form->Run();
            QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
            ModalDriver driver;
            driver.Expect<QMessageBox>([&](QMessageBox &) {
                auto &input = console.Find<QLineEdit>(u"txtInput"_s);
                QMetaObject::invokeMethod(&input, &QLineEdit::returnPressed, Qt::QueuedConnection);
            });
            console.form->close(); // comes back when the program has ended
            QVERIFY(console.form->IsFinished());
            QCOMPARE(console.closed->count(), closes);
            QCOMPARE(console.form->isVisible(), closes == 0); // an error is not gone unseen
        }
    }

    void OnlyWhatConcernsTheWindowTouchesIt()
    {
        {
            Console console(u"read answer; exit 0"_s);
            console.form->Run();
            auto &keep = console.Find<QCheckBox>(u"chkKeepOpen"_s);
            for (const Qt::Key key : {Qt::Key_Control, Qt::Key_Alt, Qt::Key_Shift, Qt::Key_Super_L})
                QTest::keyPress(&console.View(), key); // the rest of a key of another window
            QTest::mouseClick(&keep, Qt::LeftButton, {}, QPoint(8, keep.height() / 2));
            QVERIFY(keep.isChecked());
            QTest::keyClick(&keep, Qt::Key_Space);
            QVERIFY(!keep.isChecked());
            QMetaObject::invokeMethod(&console.Find<QLineEdit>(u"txtInput"_s), &QLineEdit::returnPressed);
            QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        }
        Console console(u"read answer; exit 0"_s);
        console.form->Run();
        auto &keep = console.Find<QCheckBox>(u"chkKeepOpen"_s);
        QTest::mouseClick(console.View().viewport(), Qt::LeftButton, {}, QPoint(20, 3));
        QTest::mouseClick(&keep, Qt::LeftButton, {}, QPoint(8, keep.height() / 2));
        QTest::mouseClick(&keep, Qt::LeftButton, {}, QPoint(8, keep.height() / 2));
        QVERIFY(!keep.isChecked());
        QMetaObject::invokeMethod(&console.Find<QLineEdit>(u"txtInput"_s), &QLineEdit::returnPressed);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QVERIFY2(!console.form->IsLeaving(), "the click before counts still");
    }

    void ALogThatCannotBeWrittenIsTold()
    {
        SettingsStore settings;
        frmConsole form({.run = {.title = u"x"_s, .program = u"/bin/false"_s}},
                        {.settings = settings, .logFolder = u"/dev/null/runs"_s, .openPlace = {}});
        form.Run();
        QTRY_VERIFY_WITH_TIMEOUT(form.IsFinished(), Patience);
        QCOMPARE(form.findChild<QLabel *>(u"lblState"_s)->text(),
                 u"Ended with exit code 1. The log could not be written."_s);
    }

    void TheFontIsTheEditors()
    {
        Console plain(u"exit 1"_s);
        QVERIFY(!plain.View().font().bold());
        plain.settings.SaveFlag(Keys::FontBold, true);
        plain.settings.SaveFlag(Keys::FontItalic, true);
        Console console(u"exit 1"_s);
        plain.settings.DeleteSetting(Keys::FontBold);
        plain.settings.DeleteSetting(Keys::FontItalic);
        QVERIFY(console.View().font().bold());
        QVERIFY(console.View().font().italic());
    }

    void TheWindowIsNoLargerThanItsScreen()
    {
        SettingsStore settings;
        settings.SaveNumber(Keys::FontSize, 30);
        Console console(u"exit 1"_s);
        settings.DeleteSetting(Keys::FontSize);
        QCOMPARE(console.View().font().pointSizeF(), 30.0);
        const QSize room = console.form->screen()->availableSize();
        QVERIFY(console.form->width() < room.width());
        QVERIFY(console.form->height() < room.height());
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.form->IsFinished(), Patience);
        QVERIFY(console.form->width() < room.width());
    }

    void TheHintOfTheInputCanBeReadInTheDark()
    {
        Console console(u"exit 1"_s);
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        QPalette dark = QApplication::palette();
        dark.setColor(QPalette::Base, QColor(30, 30, 30));
        dark.setColor(QPalette::Text, QColor(240, 240, 240));
        dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        console.form->setPalette(dark); // the desktop changes
        const QPalette before = QApplication::palette();
        QApplication::setPalette(dark);
        const QColor hint = input.palette().color(QPalette::PlaceholderText);
        const Console later(u"exit 1"_s);
        const QColor other = later.Find<QLineEdit>(u"txtInput"_s).palette().color(QPalette::PlaceholderText);
        QApplication::setPalette(before);
        for (const QColor &colour : {hint, other}) {
            QCOMPARE(colour.rgb(), dark.color(QPalette::Text).rgb());
            QVERIFY(colour.alpha() > 128 && colour.alpha() < 255);
        }
    }

    void WhatCannotStartSaysSo()
    {
        Console console(ConsoleOptions{.run = {.title = u"x"_s, .program = u"/no/such/program"_s}});
        console.form->Run();
        QVERIFY(console.form->isVisible());
        QVERIFY(console.State().startsWith(u"Not started. error: Cannot start '/no/such/program': "_s));
        console.form->close();
        QCOMPARE(console.closed->count(), 1);
    }

    void AHiddenRunHasALogAndNoWindow()
    {
        Console console(u"echo seen; exit 1"_s, WindowState::Hidden);
        console.form->Run();
        QTRY_COMPARE_WITH_TIMEOUT(console.closed->count(), 1, Patience);
        QVERIFY(!console.form->isVisible());
        QVERIFY(console.Log().contains(u"seen\n\nEnded with exit code 1."_s));
    }

    void TheErrorLeadsToItsLine()
    {
        Console console(u"printf 'instr 1\\na1 nosuch 1\\nendin\\n' > a.orc; "
                        "echo 'error: syntax error, unexpected T_IDENT  (token \"nosuch\")'; "
                        "echo ' from file a.orc (1), line 2:'; echo ' >>> a1 nosuch <<<'; "
                        "echo 'error: another'; exit 1"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        const MessagePlace place{QDir(console.folder.path()).canonicalPath() + u"/a.orc"_s, 2};
        QTest::keyClick(&console.View(), Qt::Key_F4); // it is in view, and nobody has been led to it
        QCOMPARE(console.places, std::vector{place});
        const QString end = console.State();
        QVERIFY(end.startsWith(u"Ended with exit code 1. error: syntax error"_s));
        QTest::keyClick(&console.View(), Qt::Key_F4); // the next one names no place
        QCOMPARE(console.View().SelectedText(), u"error: another"_s);
        QCOMPARE(console.State(), u"This message names no file that is there, and no line."_s);
        QTest::keyClick(&console.View(), Qt::Key_F4); // there is no other
        QCOMPARE(console.View().SelectedText(), u"error: another"_s);
        QCOMPARE(console.places.size(), size_t(1));
        QTest::keyClick(&console.View(), Qt::Key_F4, Qt::ShiftModifier);
        QCOMPARE(console.places.size(), size_t(2));
        QCOMPARE(console.State(), end);
        QTest::keyClick(&console.View(), Qt::Key_Down); // a detail of the same message
        QTest::keyClick(&console.View(), Qt::Key_Return);
        QCOMPARE(console.places, (std::vector{place, place, place}));
        QTest::keyClick(&console.View(), Qt::Key_Home);
        QTest::mouseDClick(console.View().viewport(), Qt::LeftButton, {}, QPoint(20, 3));
        QCOMPARE(console.places.size(), size_t(4));
    }

    void AFailureToShowALineIsTold()
    {
        Console console(u"exit 1"_s);
        console.form->Run();
        console.form->TellFailure(u"why"_s); // and nothing waits for an answer
        auto &box = console.Find<QMessageBox>(u"MessageBox"_s);
        QVERIFY(box.isVisible());
        QCOMPARE(box.text(), u"why"_s);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        box.button(QMessageBox::Ok)->click();
        console.form->close();
        QCOMPARE(console.closed->count(), 1);
        QTRY_VERIFY(console.form->findChildren<QMessageBox *>().isEmpty());
        // The window has gone: it waits for the answer.
        bool answered = false;
        {
            ModalDriver driver;
            driver.Expect<QMessageBox>([&](QMessageBox &last) {
                QCOMPARE(last.text(), u"too late"_s);
                answered = true;
                last.button(QMessageBox::Ok)->click();
            });
            console.form->TellFailure(u"too late"_s);
        }
        QVERIFY(answered);
        ModalDriver driver;
        driver.Expect<QMessageBox>([&](QMessageBox &) { console.form->StopAndClose(); });
        console.form->TellFailure(u"the session ends"_s); // and the box with it
    }

    void TheMenuOfTheOutput()
    {
        Console console(u"echo one; echo two; exit 1"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        const auto choose = [&](const QString &name, QContextMenuEvent::Reason reason, QPoint at) {
            QTimer::singleShot(0, &console.View(), [&] {
                auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
                QVERIFY(menu);
                menu->findChild<QAction *>(name)->trigger();
                menu->close();
            });
            QContextMenuEvent event(reason, at, console.View().viewport()->mapToGlobal(at));
            QCoreApplication::sendEvent(console.View().viewport(), &event);
        };
        choose(u"mnuCopyLines"_s, QContextMenuEvent::Mouse, QPoint(20, 3));
        QCOMPARE(QApplication::clipboard()->text(), u"one"_s);
        choose(u"mnuSelectAllLines"_s, QContextMenuEvent::Keyboard, QPoint());
        choose(u"mnuCopyLines"_s, QContextMenuEvent::Mouse, QPoint(20, 3)); // inside of the selection
        QCOMPARE(QApplication::clipboard()->text(), u"one\ntwo"_s);
    }

    void EscapeClosesWhatHasEnded()
    {
        Console console(u"echo up; read answer; exit 1"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.Shows(u"up"_s), Patience);
        QTest::keyClick(&console.View(), Qt::Key_Escape);
        QVERIFY(!console.form->IsFinished());
        QTest::keyClick(&console.Find<QLineEdit>(u"txtInput"_s), Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QCOMPARE(console.closed->count(), 0);
        QTest::keyClick(&console.View(), Qt::Key_Escape);
        QCOMPARE(console.closed->count(), 1);
    }

    void CopiesLines()
    {
        Console console(u"echo one; echo two; echo three; exit 1"_s);
        console.form->Run();
        QTRY_VERIFY_WITH_TIMEOUT(console.HasEnded(), Patience);
        QTest::keyClick(&console.View(), Qt::Key_Home);
        QTest::keyClick(&console.View(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(&console.View(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"one\ntwo"_s);
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&console.View());
        QVERIFY(spoken);
        QCOMPARE(spoken->text(QAccessible::Value), u"one\ntwo"_s);
        QCOMPARE(spoken->text(QAccessible::Name), u"Output"_s);
    }

    void MuchOutputLeavesTheWindowAnswering_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("megabytes");
        QTest::newRow("lines of Csound")
            << u"a line of output that is about as long as one of Csound"_s << 30;
        QTest::newRow("errors of 8 KB") << u"error: "_s + QString(8150, u'x') << 25;
        // By hand, as CONTRIBUTING.md tells: too long for every run.
        if (const int flood = qEnvironmentVariableIntValue("CONSOLE_FLOOD_MB"); flood > 0)
            QTest::newRow("flood") << u"a line of output that is about as long as one of Csound"_s << flood;
    }
    void MuchOutputLeavesTheWindowAnswering()
    {
        QFETCH(QString, line);
        QFETCH(int, megabytes);
        Console console(u"yes '"_s + line + u"' | head -c "_s + QString::number(megabytes) +
                        u"000000; exit 1"_s);
        console.form->Run();
        // Somebody types meanwhile, whenever it pleases them.
        auto &input = console.Find<QLineEdit>(u"txtInput"_s);
        std::atomic<bool> ends = false;
        std::atomic<qint64> sent = 0;
        const auto now = [] { return std::chrono::steady_clock::now().time_since_epoch().count(); };
        std::vector<qint64> waits; // nanoseconds
        connect(&input, &QLineEdit::textEdited, this, [&] {
            waits.push_back(now() - sent);
            sent = 0;
        });
        QInputDevice::primaryKeyboard(); // is made by the thread that asks first
        std::thread typist([&] {
            while (!ends) {
                sent = now();
                QCoreApplication::postEvent(&input, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, {}, u"a"_s));
                while (sent != 0 && !ends)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                std::this_thread::sleep_for(std::chrono::milliseconds(15));
            }
        });
        QElapsedTimer clock;
        const qint64 most = Patience * (2 + megabytes / 50);
        for (clock.start(); !console.HasEnded() && clock.elapsed() < most;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ends = true;
        typist.join();
        QVERIFY(console.form->IsFinished());
        QVERIFY(waits.size() > 5);
        std::sort(waits.begin(), waits.end());
        const double median = double(waits[waits.size() / 2]) / 1e6;
        const double longest = double(waits.back()) / 1e6;
        const auto total = double(clock.elapsed());
        qInfo("%d MB in %lld ms; of %zu keys half are answered in %.1f ms, all in %.1f ms; %lld MB of memory "
              "at most",
              megabytes, qint64(total), waits.size(), median, longest, PeakMegabytes());
        // Thousandths of it on a machine of its own; where keys have to wait for the output, the longest is
        // all of it.
        QVERIFY2(median < total / 20, "a key is answered");
        QVERIFY2(longest < total / 2, "whenever it comes");
    }

    void ALineOfAnyLengthCostsWhatIsInView_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("atItsEnd");
        QTest::addColumn<bool>("styled");
        const QString plain = u"error: words "_s;
        const QString accents = u"caf\u00e9 d\u00e9j\u00e0 vu "_s;
        QTest::newRow("from the start") << plain << false << false;
        QTest::newRow("scrolled to the end") << plain << true << false;
        QTest::newRow("of colours") << plain << false << true;
        QTest::newRow("of colours, at the end") << plain << true << true;
        QTest::newRow("accents") << accents << false << false;
        QTest::newRow("accents, at the end") << accents << true << false;
        QTest::newRow("tabs") << u"one\ttwo\t"_s << false << false;
    }
    void ALineOfAnyLengthCostsWhatIsInView()
    {
        QFETCH(QString, words);
        QFETCH(bool, atItsEnd);
        QFETCH(bool, styled);
        const auto paint = [&](qsizetype length) {
            LineStore store;
            StyledLine line{.text = words.repeated(length / words.size() + 1).left(length)};
            for (int start = 0; styled && start + 40 <= length; start += 40)
                line.spans.push_back({.start = start, .length = 20, .style = {.colour = 1, .bold = true}});
            for (int i = 0; i < 60; ++i)
                store.Append(line);
            ConsoleView view(store);
            view.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
            view.resize(800, 600);
            view.UpdateLines({});
            if (atItsEnd)
                view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->maximum() - 400);
            return 1000 * LeastProcessorTime(3, [&view] {
                       for (int i = 0; i < 10; ++i)
                           view.grab();
                   });
        };
        const double shortLines = paint(200);
        const double longLines = paint(8000);
        qInfo("lines of 200 characters %.1f ms, of 8000 %.1f ms", shortLines, longLines);
        QVERIFY(longLines < 10 * shortLines + 20); // 40 times as much text
    }

    void TheEndOfALineOfWideCharactersCanBeReached_data()
    {
        QTest::addColumn<QString>("wide");
        QTest::addColumn<QString>("shown");
        QTest::newRow("wide characters") << QString(300, u'\u3042') << QString(300, u'\u3042');
        QTest::newRow("tabs") << u"a\t"_s.repeated(100) << QString(800, u' ');
    }
    void TheEndOfALineOfWideCharactersCanBeReached()
    {
        QFETCH(QString, wide);
        QFETCH(QString, shown);
        LineStore store;
        store.Append({.text = u"narrow"_s});
        ConsoleView view(store);
        view.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        view.resize(400, 200);
        view.show();
        view.UpdateLines({});
        QCOMPARE(view.horizontalScrollBar()->maximum(), 0);
        const auto room = [&] {
            const int width = QFontMetrics(view.font()).horizontalAdvance(shown);
            return view.horizontalScrollBar()->maximum() + view.viewport()->width() - width;
        };
        const int lines = 100;
        for (int i = 0; i < lines; ++i)
            store.Append({.text = u"more"_s});
        store.Append({.text = wide});
        view.UpdateLines({}); // the last line is in view
        QVERIFY2(room() >= 0, qPrintable(QString::number(room())));
        // Above the view it is found when the user looks there.
        LineStore above;
        above.Append({.text = wide});
        for (int i = 0; i < lines; ++i)
            above.Append({.text = u"more"_s});
        ConsoleView scrolled(above);
        scrolled.setFont(view.font());
        scrolled.resize(400, 200);
        scrolled.show();
        scrolled.UpdateLines({});
        QVERIFY(scrolled.verticalScrollBar()->value() > 0);
        scrolled.verticalScrollBar()->setValue(0);
        QVERIFY(scrolled.horizontalScrollBar()->maximum() + scrolled.viewport()->width() >=
                QFontMetrics(view.font()).horizontalAdvance(shown));
    }

    void ALineFromRightToLeftIsLaidOutAsAWhole()
    {
        QString text = u"abc "_s;
        for (int i = 0; i < 200; ++i)
            text += QChar(char16_t(0x5d0 + i * 7 % 27));
        LineStore store;
        store.Append({.text = text});
        ConsoleView view(store);
        view.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        view.resize(3000, 100);
        view.show();
        view.UpdateLines({});
        const auto drawn = [&](const QStringList &pieces) {
            QImage image(view.viewport()->size(), QImage::Format_RGB32);
            image.fill(view.palette().color(QPalette::Base));
            QPainter painter(&image);
            painter.setFont(view.font());
            painter.setPen(view.palette().color(QPalette::Text));
            int x = 8;
            for (const QString &piece : pieces) {
                painter.drawText(QPoint(x, QFontMetrics(view.font()).ascent()), piece);
                x += QFontMetrics(view.font()).horizontalAdvance(piece);
            }
            return image;
        };
        if (drawn({text}) == drawn({text.first(128), text.sliced(128)}))
            QSKIP("no font has these letters");
        QCOMPARE(view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32), drawn({text}));
    }

    void OnlyFinishedConsolesOfTheSameKeyAreTold()
    {
        int told = 0;
        ConsoleLink first(u"key"_s);
        first.Listen([&] { ++told; });
        ConsoleLink(u"other"_s).TellOthers();
        first.TellOthers();
        ConsoleLink(u"key"_s).TellOthers();
        QTRY_COMPARE_WITH_TIMEOUT(told, 1, Patience);
    }

    void ALongRuntimeFolderPartsNobody()
    {
        const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
        const QByteArray temporary = qgetenv("TMPDIR");
        const QTemporaryDir folder;
        const QString deep = folder.filePath(QString(150, u'd')); // longer than the name of a socket may be
        QVERIFY(QDir().mkdir(deep));
        QFile::setPermissions(deep, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", deep.toLocal8Bit());
        qputenv("TMPDIR", folder.path().toLocal8Bit());
        int told = 0;
        ConsoleLink first(u"key"_s);
        first.Listen([&] { ++told; });
        ConsoleLink(u"key"_s).TellOthers();
        qputenv("XDG_RUNTIME_DIR", before);
        temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary);
        QTRY_COMPARE_WITH_TIMEOUT(told, 1, Patience);
    }
};

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<ConsoleTest>(argc, argv);
}

#include "test_console.moc"
