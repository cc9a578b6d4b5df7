// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/instancelink.h"
#include "support/uitest.h"

#include <algorithm>
#include <csignal>
#include <memory>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <sys/stat.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using zelvane::test::Patience;
using Call = InstanceLink::Call;

class TestInstanceLink : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_runtime;

    /// Handles all that has been sent: what one process sends to itself is there at once, so that no time has
    /// to pass.
    static void Serve()
    {
        for (int i = 0; i < 100; ++i)
            QCoreApplication::processEvents();
    }
    QFileInfoList Files() const
    {
        QFileInfoList all;
        const auto realms = QDir(m_runtime->path()).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QFileInfo &realm : realms)
            all += QDir(realm.filePath()).entryInfoList(QDir::Files | QDir::System | QDir::Hidden);
        all.removeIf([](const QFileInfo &file) { return file.fileName() == u"start.lock"_s; });
        return all;
    }
    QFileInfo OnlySocket() const
    {
        QFileInfo socket;
        for (const QFileInfo &file : Files())
            if (!file.isFile())
                socket = file;
        return socket;
    }
    /// The clock of files may stand still for longer than a test takes, or be set: the times of the marks
    /// turned round say that whoever is most recent is the oldest.
    void TurnFileTimesRound() const
    {
        constexpr qint64 turn = 4'000'000'000'000; // twice a moment of these years, in ms
        for (const QFileInfo &info : Files()) {
            if (!info.fileName().endsWith(u".recent"_s))
                continue;
            QFile mark(info.filePath());
            QVERIFY(mark.open(QIODevice::ReadWrite));
            const qint64 turned = turn - info.lastModified().toMSecsSinceEpoch();
            QVERIFY(
                mark.setFileTime(QDateTime::fromMSecsSinceEpoch(turned), QFileDevice::FileModificationTime));
        }
    }

private Q_SLOTS:
    void init()
    {
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", m_runtime->path().toLocal8Bit());
        QFile::setPermissions(m_runtime->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }

    void FindsNobodyWhereNobodyRuns()
    {
        InstanceLink link(u"store"_s);
        QVERIFY(!link.FindRunning());
        QVERIFY(!link.Notify(Call::HandOver, {}));
    }

    void WakesTheRunningEditorWithItsToken()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        QByteArray token;
        editor.SetHandler([&](Call) {
            ++woken;
            token = qgetenv("XDG_ACTIVATION_TOKEN");
        });
        QVERIFY(editor.Listen());
        {
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(Call::HandOver, "a token\nof two lines"));
        }
        QTRY_COMPARE(woken, 1);
        QCOMPARE(token, QByteArray("a token of two lines"));
        Serve();
        QCOMPARE(woken, 1);
    }

    void RaisingIsNoHandOver()
    {
        InstanceLink editor(u"store"_s);
        QVERIFY(editor.Listen());
        const auto send = [](Call call) {
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(call, "token"));
        };
        QList<Call> calls;
        send(Call::Raise);
        Serve();
        editor.SetHandler([&](Call call) { calls.append(call); });
        QCOMPARE(calls, QList<Call>{Call::Raise});
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("token"));
        // Of those that wait together one hand-over makes the whole a hand-over.
        editor.SetHandler({});
        send(Call::HandOver);
        send(Call::Raise);
        Serve();
        editor.SetHandler([&](Call call) { calls.append(call); });
        QCOMPARE(calls, (QList<Call>{Call::Raise, Call::HandOver}));
    }

    void OneEditorOfSeveralMayBePreferred()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        QLocalServer other; // of process 42
        QVERIFY(other.listen(OnlySocket().path() + u"/42-x"_s));
        InstanceLink console(u"store"_s);
        QVERIFY(console.FindRunning(42));
        QVERIFY(console.Notify(Call::HandOver, {}));
        QVERIFY(other.waitForNewConnection(Patience));
        QCOMPARE(woken, 0);
        QVERIFY(console.FindRunning(QCoreApplication::applicationPid()));
        QVERIFY(console.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 1);
        QVERIFY2(console.FindRunning(4), "it does not run: any other");
    }

    void EditorDoesNotFindItself()
    {
        InstanceLink editor(u"store"_s);
        QVERIFY(editor.Listen());
        QVERIFY(!editor.FindRunning());
    }

    void AnotherStoreIsAnotherRealm()
    {
        InstanceLink editor(u"one store"_s);
        QVERIFY(editor.Listen());
        InstanceLink second(u"another store"_s);
        QVERIFY(!second.FindRunning());
    }

    void RealmNamesStoreAndDisplayWithoutItsScreen()
    {
        qputenv("DISPLAY", ":7.0");
        const QString realm = InstanceLink::RealmOf(u"/home/a/settings"_s);
        qputenv("DISPLAY", ":7");
        QCOMPARE(InstanceLink::RealmOf(u"/home/a/settings"_s), realm);
        QVERIFY(InstanceLink::RealmOf(u"/home/b/settings"_s) != realm);
        qputenv("DISPLAY", "host.example.org:7");
        QVERIFY(InstanceLink::RealmOf(u"/home/a/settings"_s).contains(u"host.example.org:7"_s));
        qunsetenv("DISPLAY");
    }

    void WakeUpBeforeTheHandlerStandsIsKept()
    {
        InstanceLink editor(u"store"_s);
        QVERIFY(editor.Listen());
        for (int i = 0; i < 3; ++i) {
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(Call::HandOver, {}));
        }
        Serve();
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QCOMPARE(woken, 1);
    }

    void BusyEditorDoesNotHoldTheSenderUp()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        for (int i = 0; i < 3; ++i) { // no event is served in between
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(Call::HandOver, {}));
        }
        QCOMPARE(woken, 0);
        QTRY_COMPARE(woken, 3);
    }

    void WakeUpDuringAWakeUpWaitsForItsEnd()
    {
        InstanceLink editor(u"store"_s);
        int running = 0, woken = 0, nested = 0;
        editor.SetHandler([&](Call) {
            nested = std::max(nested, ++running);
            ++woken;
            if (woken == 1) {
                InstanceLink second(u"store"_s);
                QVERIFY(second.FindRunning());
                QVERIFY(second.Notify(Call::HandOver, {}));
                Serve(); // a question to the user serves events
            }
            --running;
        });
        QVERIFY(editor.Listen());
        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 2);
        QCOMPARE(nested, 1);
    }

    void OfSeveralTheLastActiveIsFound()
    {
        InstanceLink one(u"store"_s), two(u"store"_s);
        QString woken;
        one.SetHandler([&](Call) { woken += u'1'; });
        two.SetHandler([&](Call) { woken += u'2'; });
        const auto wake = [&] {
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(Call::HandOver, {}));
        };
        QVERIFY(one.Listen());
        // Of two in one process the names differ by the time.
        const qint64 first = QDateTime::currentMSecsSinceEpoch();
        QTRY_VERIFY(QDateTime::currentMSecsSinceEpoch() > first);
        QVERIFY(two.Listen());
        TurnFileTimesRound();
        wake();
        QTRY_COMPARE(woken, u"2"_s);
        one.MarkRecent();
        TurnFileTimesRound();
        wake();
        QTRY_COMPARE(woken, u"21"_s);
        two.MarkRecent();
        wake();
        QTRY_COMPARE(woken, u"212"_s);
    }

    void KilledEditorIsSkippedAndItsSocketRemoved()
    {
        InstanceLink alive(u"store"_s);
        int woken = 0;
        alive.SetHandler([&](Call) { ++woken; });
        QVERIFY(alive.Listen());
        const QString folder = OnlySocket().absolutePath();
        // A socket that nobody listens at any more, more recent than the living one.
        QProcess killed;
        killed.start(
            u"python3"_s,
            {u"-c"_s,
             u"import socket, sys, time\ns = socket.socket(socket.AF_UNIX)\ns.bind(sys.argv[1])\ns.listen()\n"
             u"open(sys.argv[1] + '.recent', 'w').write('9' * 20)\nprint('up', flush=True)\ntime.sleep(60)\n"_s,
             folder + u"/99999-killed"_s});
        QVERIFY(killed.waitForReadyRead());
        killed.kill();
        QVERIFY(killed.waitForFinished());
        QCOMPARE(Files().size(), 4);

        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 1);
        QCOMPARE(Files().size(), 2);
    }

    void ClosingFindsWhatWasNotDelivered()
    {
        const auto send = [](Call call) {
            InstanceLink second(u"store"_s);
            QVERIFY(second.FindRunning());
            QVERIFY(second.Notify(call, {}));
        };
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        QVERIFY(!editor.Close());
        QVERIFY(!InstanceLink(u"store"_s).FindRunning());

        QVERIFY(editor.Listen());
        send(Call::Raise);
        QVERIFY(!editor.Close());

        QVERIFY(editor.Listen());
        send(Call::Raise);
        send(Call::HandOver);
        send(Call::Raise);
        QVERIFY(editor.Close()); // no event was served
        QVERIFY(!editor.Close());
        Serve();
        QCOMPARE(woken, 0);
        QCOMPARE(Files().size(), 0);
    }

    void NothingIsLeftAfterTheEnd()
    {
        {
            InstanceLink editor(u"store"_s);
            QVERIFY(editor.Listen());
            QCOMPARE(Files().size(), 2);
        }
        QCOMPARE(Files().size(), 0);
    }

    void OnlyTheUserCanReachTheSocket()
    {
        InstanceLink editor(u"store"_s);
        QVERIFY(editor.Listen());
        struct stat info {
        };
        QCOMPARE(::stat(QFile::encodeName(OnlySocket().filePath()).constData(), &info), 0);
        QCOMPARE(int(info.st_mode & 077), 0);
        QCOMPARE(::stat(QFile::encodeName(OnlySocket().absolutePath()).constData(), &info), 0);
        QCOMPARE(int(info.st_mode & 077), 0);
    }

    void StrangeMessagesWakeNobody()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        const QString name = OnlySocket().filePath();
        {
            QLocalSocket silent;
            silent.connectToServer(name);
            QVERIFY(silent.waitForConnected());
        }
        QLocalSocket other;
        other.connectToServer(name);
        QVERIFY(other.waitForConnected());
        other.write("opening\nGET / HTTP/1.1\n");
        QTRY_COMPARE(other.state(), QLocalSocket::UnconnectedState);
        QLocalSocket flood;
        flood.connectToServer(name);
        QVERIFY(flood.waitForConnected());
        flood.write(QByteArray(100000, 'x'));
        QTRY_COMPARE(flood.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(woken, 0);
        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 1);
    }

    void SilentCallersAreHungUpOn()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        const QString name = OnlySocket().filePath();
        std::vector<std::unique_ptr<QLocalSocket>> silent;
        for (int i = 0; i < 200; ++i) {
            silent.push_back(std::make_unique<QLocalSocket>());
            silent.back()->connectToServer(name);
            QVERIFY(silent.back()->waitForConnected());
            QCoreApplication::processEvents();
        }
        const auto open = [&] {
            return std::count_if(silent.begin(), silent.end(), [](const auto &socket) {
                return socket->state() == QLocalSocket::ConnectedState;
            });
        };
        QTRY_VERIFY(open() <= 32);
        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 1);
        // Those that are left go when they have been silent for some seconds.
        QTRY_COMPARE(open(), 0);
    }

    void MessageOfOneAmongTooManyIsRead()
    {
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        std::vector<std::unique_ptr<QLocalSocket>> silent;
        for (int i = 0; i < 40; ++i) { // no event is served in between
            silent.push_back(std::make_unique<QLocalSocket>());
            silent.back()->connectToServer(OnlySocket().filePath());
            QVERIFY(silent.back()->waitForConnected());
        }
        QTRY_COMPARE(woken, 1);
    }

    void OneOfTwoThatStartAtTheSameTimeWaits()
    {
        InstanceLink first(u"store"_s);
        QVERIFY(!first.FindRunning());
        bool found = false;
        const std::unique_ptr<QThread> other(QThread::create([&] {
            InstanceLink second(u"store"_s);
            found = second.FindRunning();
        }));
        other->start();
        QVERIFY(!other->wait(300));
        QVERIFY(first.Listen());
        QVERIFY(other->wait(Patience));
        QVERIFY(found);
    }

    void OneThatEndsInsteadOfListeningLetsTheNextStart()
    {
        auto first = std::make_unique<InstanceLink>(u"store"_s);
        QVERIFY(!first->FindRunning());
        first.reset();
        QElapsedTimer clock;
        clock.start();
        InstanceLink second(u"store"_s);
        QVERIFY(!second.FindRunning());
        QVERIFY2(clock.elapsed() < 9000, "it waited for a lock to the end of its patience");
    }

    void LongRuntimeFolderHandsOverToo()
    {
        const QString deep =
            m_runtime->filePath(QString(150, u'd')); // longer than the name of a socket may be
        QVERIFY(QDir().mkdir(deep));
        QFile::setPermissions(deep, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", deep.toLocal8Bit());
        InstanceLink editor(u"store"_s);
        int woken = 0;
        editor.SetHandler([&](Call) { ++woken; });
        QVERIFY(editor.Listen());
        InstanceLink second(u"store"_s);
        QVERIFY(second.FindRunning());
        QVERIFY(second.Notify(Call::HandOver, {}));
        QTRY_COMPARE(woken, 1);
    }

    void WhereNoSocketCanBeMadeTheEditorStandsAlone()
    {
        const QString deep = m_runtime->filePath(QString(150, u'd'));
        QVERIFY(QDir().mkdir(deep));
        QFile::setPermissions(deep, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", deep.toLocal8Bit());
        qputenv("TMPDIR", deep.toLocal8Bit());
        InstanceLink link(u"store"_s);
        QVERIFY(!link.Listen());
        QVERIFY(!link.FindRunning());
        link.MarkRecent();
        qunsetenv("TMPDIR");
    }
};

QTEST_GUILESS_MAIN(TestInstanceLink)
#include "test_instancelink.moc"
