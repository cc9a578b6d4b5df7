// SPDX-License-Identifier: GPL-3.0-or-later

// What is asked of the desktop's file manager and portal, on a session bus of the test's own.

#include "platform/ui/filemanager.h"
#include "support/uitest.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <QByteArray>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVariantMap>
#include <sys/types.h>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;
using zelvane::test::RunUiTest;

namespace
{

constexpr int PatienceMs = 20'000;

/// Says on the standard output what it was asked for; in a process of its own.
void Say(const QString &what)
{
    std::puts(qPrintable(what));
    std::fflush(stdout);
}

} // namespace

class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString & /*parent*/, const QDBusUnixFileDescriptor &descriptor,
                             const QVariantMap &options)
    {
        QFile file;
        const bool open = file.open(descriptor.fileDescriptor(), QIODevice::ReadOnly);
        const bool forWriting = (::fcntl(descriptor.fileDescriptor(), F_GETFL) & O_ACCMODE) == O_RDWR;
        Say(u"OpenFile %1 ask=%2 writable=%3 %4"_s.arg(
            open ? QString::fromUtf8(file.readAll()) : u"?"_s, options.value(u"ask"_s).toString(),
            options.value(u"writable"_s).toString(), forWriting ? u"rw"_s : u"r"_s));
        return QDBusObjectPath(u"/request/1"_s);
    }
};

class Files : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public Q_SLOTS:
    void ShowFolders(const QStringList &uris, const QString &) { Say(u"ShowFolders "_s + uris.join(u' ')); }
    void ShowItemProperties(const QStringList &uris, const QString &)
    {
        Say(u"ShowItemProperties "_s + uris.join(u' '));
    }
};

class FileManagerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QProcess m_desktop;

    QString Put(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("text") != 4)
            QTest::qFail("cannot write a test's file", __FILE__, __LINE__);
        return file.fileName();
    }
    QByteArray Said()
    {
        if (!m_desktop.canReadLine())
            m_desktop.waitForReadyRead(PatienceMs);
        return m_desktop.readLine().trimmed();
    }

private Q_SLOTS:
    void WithoutADesktopNothingIsTaken()
    {
        const QString file = Put(u"a.orc"_s);
        QVERIFY(!FileManager::OpenWith(file));
        QVERIFY(!FileManager::ShowProperties(file));
        QVERIFY(!FileManager::ShowFolder(m_folder.path()));
    }

    void TheDesktopIsGivenTheFile()
    {
        m_desktop.start(QCoreApplication::applicationFilePath(), {u"serve"_s});
        QCOMPARE(Said(), "ready");
        const QString file = Put(u"a b%\u00E9.orc"_s);
        QVERIFY(FileManager::OpenWith(file));
        QCOMPARE(Said(), "OpenFile text ask=true writable=true rw");
        QVERIFY(FileManager::ShowProperties(file));
        QCOMPARE(Said(), "ShowItemProperties " + QUrl::fromLocalFile(file).toEncoded());
        QVERIFY(FileManager::ShowFolder(m_folder.path()));
        QCOMPARE(Said(), "ShowFolders " + QUrl::fromLocalFile(m_folder.path()).toEncoded());

        QVERIFY(!FileManager::OpenWith(m_folder.filePath(u"gone"_s)));
        QVERIFY(!FileManager::OpenWith(m_folder.path()));
        m_desktop.kill();
        QVERIFY(m_desktop.waitForFinished(PatienceMs));
    }
};

namespace
{

int Serve(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Portal portal;
    Files files;
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool served =
        bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal, QDBusConnection::ExportAllSlots) &&
        bus.registerObject(u"/org/freedesktop/FileManager1"_s, &files, QDBusConnection::ExportAllSlots) &&
        bus.registerService(u"org.freedesktop.portal.Desktop"_s) &&
        bus.registerService(u"org.freedesktop.FileManager1"_s);
    Say(served ? u"ready"_s : u"no bus"_s);
    return served ? QCoreApplication::exec() : 1;
}

/// A session bus that starts no services of its own, as long as it lives.
class Bus
{
public:
    Bus()
    {
        QFile rules(m_folder.filePath(u"bus.conf"_s));
        if (!rules.open(QIODevice::WriteOnly))
            return;
        rules.write("<busconfig><type>session</type><listen>unix:dir=" + QFile::encodeName(m_folder.path()) +
                    "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                    "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        rules.close();
        const QByteArray command = "dbus-daemon --fork --print-address=1 --print-pid=1 --config-file='" +
                                   QFile::encodeName(rules.fileName()) + "' 2>/dev/null";
        FILE *pipe = popen(command.constData(), "r");
        if (!pipe)
            return;
        QFile output;
        if (output.open(pipe, QIODevice::ReadOnly)) {
            m_address = output.readLine().trimmed();
            m_process = output.readLine().trimmed().toInt();
        }
        pclose(pipe);
    }
    ~Bus()
    {
        if (m_process > 0)
            kill(m_process, SIGTERM);
    }
    Q_DISABLE_COPY_MOVE(Bus)

    /// Empty where there is no bus to start.
    const QByteArray &Address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QByteArray m_address;
    pid_t m_process = 0;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], "serve") == 0)
        return Serve(argc, argv);
    // Before anything connects to the user's own.
    const Bus bus;
    if (bus.Address().isEmpty()) {
        std::puts("skipped: there is no bus to start");
        return 0;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.Address());
    return RunUiTest<FileManagerTest>(argc, argv);
}

#include "test_filemanager.moc"
