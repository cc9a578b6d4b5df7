// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/scanner.h"
#include "platform/programfolder.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "platform/ui/textcontrol.h"
#include "shell/documentkeys.h"
#include "shell/layoutkeys.h"
#include "shell/lineends.h"
#include "support/scripteddesktop.h"
#include "window/ui/frmeditor.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// A desktop that answers nothing and keeps every box it was asked to show.
class SilentDesktop : public test::ScriptedDesktop
{
public:
    QStringList boxes;
    BoxAnswer MessageBox(const MessageBoxRequest &request) override
    {
        boxes.append(request.text);
        return BoxAnswer::Cancel;
    }
};

/// Fails the test where a character has not the class that the scan of the whole text gives it.
/// @return whether any character has a class of its own
bool HasTheScannersColours(const TextControl &control, FileKind kind, const OpcodeList &opcodes)
{
    const QString text = control.Text();
    const StyleRuns runs = kind == FileKind::Unified
                               ? ScanUnified(text, opcodes)
                               : ScanRange(text, 0, 0, ScanMode::Orchestra, opcodes).runs;
    std::vector<StyleClass> expected(size_t(text.size()), StyleClass::Text);
    for (const StyleRun &run : runs)
        std::fill_n(expected.begin() + run.start, run.length, run.style);
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (control.StyleAt(i) != expected[size_t(i)]) {
            QTest::qFail(qPrintable(u"another colour at offset %1"_s.arg(i)), __FILE__, __LINE__);
            return false;
        }
    }
    return !runs.empty();
}

} // namespace

/// The pieces of Csound's own manual, through the real window: opened, coloured and saved again.
class CorpusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EveryPieceOpensAndSavesEqual();
};

void CorpusTest::EveryPieceOpensAndSavesEqual()
{
    QTemporaryDir folder;
    qputenv("ZELVANE_HOME", QFile::encodeName(QCoreApplication::applicationDirPath()));
    SettingsStore settings(folder.filePath(u"settings"_s));
    settings.SaveNumber(Keys::Used, 2);
    settings.SaveNumber(Keys::Startup, 2);
    SilentDesktop desktop;
    frmEditor window(settings, desktop, CommandLine({}));
    window.show();
    window.Init();
    auto *text = window.findChild<TextControl *>(u"TxtEdit"_s);
    QVERIFY(text);

    OpcodeList opcodes;
    LoadOpcodes(opcodes, ProgramFolder(), desktop);
    int pieces = 0;
    int coloured = 0;
    QDirIterator files(u"/usr/share/doc/csound-doc/html/examples"_s, {u"*.csd"_s, u"*.orc"_s}, QDir::Files);
    while (files.hasNext()) {
        const QString name = files.next();
        const QByteArray bytes = ReadFileBytes(name);
        window.Documents().OpenFile(name);
        QVERIFY2(desktop.boxes.isEmpty(), qPrintable(name + u": "_s + desktop.boxes.join(u' ')));
        QCOMPARE(window.Context().document.CurrentFile, name);
        QVERIFY(!window.Context().document.Modified);
        QVERIFY(!text->CanUndo());
        const QString expected = ToLineFeeds(DecodeText(bytes).text);
        QVERIFY2(text->Text() == expected, qPrintable(name));
        coloured += HasTheScannersColours(*text, window.Context().document.DocumentKind, opcodes);
        if (QTest::currentTestFailed())
            return;

        const QString copy = folder.filePath(u"copy."_s + QFileInfo(name).suffix());
        window.Documents().SaveFile(copy);
        QVERIFY2(desktop.boxes.isEmpty(), qPrintable(name + u": "_s + desktop.boxes.join(u' ')));
        QByteArray saved = ReadFileBytes(copy);
        QByteArray asFeeds = bytes;
        for (QByteArray *text_ : {&saved, &asFeeds})
            text_->replace("\r\n", "\n").replace('\r', '\n');
        QVERIFY2(saved == asFeeds, qPrintable(name));
        ++pieces;
    }
    QVERIFY2(pieces >= 1300, qPrintable(QString::number(pieces)));
    QVERIFY2(coloured > pieces * 9 / 10, qPrintable(QString::number(coloured)));
}

QTEST_MAIN(CorpusTest)
#include "test_corpus.moc"
