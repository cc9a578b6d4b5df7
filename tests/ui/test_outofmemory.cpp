// SPDX-License-Identifier: GPL-3.0-or-later

// A large file in a process that may not take much memory: each failure is told, and the text that stood
// before lives on.

#include "platform/runtimeerror.h"
#include "platform/ui/qtdesktop.h"
#include "platform/ui/textcontrol.h"
#include "shell/errorreport.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <QProcess>
#include <QTextStream>
#include <sys/resource.h>

using namespace zelvane;
using zelvane::test::Patience;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QString OldText = u"a1 oscil 10000, 440, 1 ; the old text\n"_s;

struct TellingDesktop : QtDesktop {
    QStringList told;

    BoxAnswer MessageBox(const MessageBoxRequest &request) override
    {
        told.append(request.text);
        return BoxAnswer::No;
    }
};

/// As the program's own event loop does it.
void LikeTheProgram(Desktop &desktop, const std::function<void()> &work)
{
    try {
        work();
    } catch (const RunTimeError &error) {
        ReportError(desktop, error);
    } catch (const std::bad_alloc &) {
        ReportError(desktop, OutOfMemory());
    }
}

/// The child: opens the large file under the limit, edits what then stands there, and says what was told.
int OpenUnderLimit(const QString &folder, rlim_t megabytes)
{
    SettingsStore settings(folder + u"/settings"_s);
    settings.SaveNumber(Keys::Used, 2); // the first start shows the Preferences
    TellingDesktop desktop;
    frmEditor window(settings, desktop, CommandLine({folder + u"/old.orc"_s}));
    window.show();
    window.Init();
    QApplication::processEvents();
    auto &text = *window.findChild<TextControl *>(u"TxtEdit"_s);
    if (text.Text() != OldText)
        return 3;

    const rlimit limit{megabytes * 1024 * 1024, RLIM_INFINITY};
    if (::setrlimit(RLIMIT_AS, &limit) != 0)
        return 4;
    desktop.told.clear();
    const QString large = folder + u"/large.orc"_s;
    LikeTheProgram(desktop, [&] { window.Documents().OpenFile(large); });
    QApplication::processEvents();
    const bool opened = window.Context().document.CurrentFile == large;
    const QString begins = OldText.first(30);
    const bool whole = opened ? text.Length() == QFileInfo(large).size() : text.Length() == OldText.size();
    if (!whole || text.TextRange(0, begins.size()) != begins || !text.isVisible())
        return 5;
    const qsizetype tellings = desktop.told.size();
    LikeTheProgram(desktop, [&] { QTest::keyClick(&text, 'x'); });
    QApplication::processEvents();
    const bool typed = text.TextRange(0, begins.size() + 1) == u'x' + begins;
    const qsizetype toldOfKey = desktop.told.size();
    LikeTheProgram(desktop, [&] { text.Undo(); });
    // The copy of the unsaved text may hold what the step back would take.
    if (text.TextRange(0, begins.size()) != begins && desktop.told.size() == toldOfKey)
        return 6;
    if (!opened && tellings == 0)
        return 7;
    // The old text is small: there is memory for a key.
    if (!typed && (!opened || toldOfKey == tellings))
        return 8;
    std::printf("%s, %s; told: %s\n", opened ? "opened" : "kept", typed ? "typed" : "not typed",
                qPrintable(desktop.told.join(u" | "_s).replace(u'\n', u' ')));
    std::fflush(stdout);
    std::_Exit(0);
}

} // namespace

class OutOfMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void TellsAndKeepsTheOldText_data();
    void TellsAndKeepsTheOldText();

private:
    QTemporaryDir m_folder;
};

void OutOfMemoryTest::initTestCase()
{
    QFile old(m_folder.filePath(u"old.orc"_s));
    QFile large(m_folder.filePath(u"large.orc"_s));
    QFile opcodes(m_folder.filePath(u"opcodes.txt"_s));
    QVERIFY(old.open(QIODevice::WriteOnly) && large.open(QIODevice::WriteOnly) &&
            opcodes.open(QIODevice::WriteOnly));
    old.write(OldText.toUtf8());
    opcodes.write("oscil outs\n");
    const QByteArray piece = OldText.toUtf8().repeated(20'000);
    for (qsizetype written = 0; written < 200'000'000; written += piece.size())
        large.write(piece);
}

void OutOfMemoryTest::TellsAndKeepsTheOldText_data()
{
    QTest::addColumn<int>("megabytes");
    const QByteArray sweep = qgetenv("ZELVANE_MEMORY_SWEEP");
    const int step = sweep.isEmpty() ? 230 : sweep.toInt();
    for (int megabytes = 450; megabytes <= 1600; megabytes += step)
        QTest::addRow("%d MB", megabytes) << megabytes;
}

void OutOfMemoryTest::TellsAndKeepsTheOldText()
{
    QFETCH(int, megabytes);
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(),
                {u"--open-under-limit"_s, m_folder.path(), QString::number(megabytes)});
    QVERIFY(child.waitForFinished(10 * Patience));
    const QString said = QString::fromUtf8(child.readAllStandardOutput()).trimmed();
    qInfo("%d MB: %s", megabytes, qPrintable(said));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
}

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--open-under-limit") == 0) {
        qputenv("ZELVANE_HOME", argv[2]);
        QApplication application(argc, argv);
        return OpenUnderLimit(QString::fromLocal8Bit(argv[2]), rlim_t(std::atoi(argv[3])));
    }
    return zelvane::test::RunUiTest<OutOfMemoryTest>(argc, argv);
}

#include "test_outofmemory.moc"
