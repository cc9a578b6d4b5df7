// SPDX-License-Identifier: GPL-3.0-or-later
// The halves of a piece in the real window: going from one to the other, and the two conversions.

#include "platform/ui/textcontrol.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/filebytes.h"
#include "support/uitest.h"

#include <memory>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class SectionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void ATagComesToTheTopOfTheView();
    void ATagInALongWrappedLineComesIntoSight();
    void APairKeepsThePlaces();
    void APairGoesToUnifiedAndBack_data();
    void APairGoesToUnifiedAndBack();
    void EmptyHalvesAreAModifiedDocument();
    void AMissingSectionIsAFileOfOneLineEnd();
    void AFailureIsReportedAndKeepsTheDocument();

private:
    QString Path(const QString &name) const { return editor->folder.filePath(name); }
    QByteArray Bytes(const QString &name) const { return BytesOf(Path(name)); }
    void Open(const QString &name) { editor->window->Documents().OpenFile(Path(name)); }
    const DocumentRecord &Document() const { return editor->window->Context().document; }
    void ExpectSave(const QString &label, const QString &extension, const QString &base, const QString &to)
    {
        editor->desktop.ExpectSaveDialog(SaveHalf(label, extension, base, Document().CurrentFile),
                                         {.path = to});
    }
    void ExpectConverted(const QString &name)
    {
        editor->desktop.ExpectMessage(ConvertedToPair(name), BoxAnswer::No);
    }

    std::unique_ptr<EditorWindow> editor;
};

void SectionsTest::init()
{
    editor = std::make_unique<EditorWindow>();
    editor->Open();
}

void SectionsTest::cleanup()
{
    editor.reset();
}

void SectionsTest::ATagComesToTheTopOfTheView()
{
    QByteArray text = "<CsoundSynthesizer>\n<CsInstruments>\n";
    text += QByteArray("instr 1\nendin\n").repeated(200);
    text += "</CsInstruments>\n<CsScore>\ne\n</CsScore>\n</CsoundSynthesizer>\n";
    editor->WriteFile(u"x.csd"_s, text);
    Open(u"x.csd"_s);
    TextControl &control = editor->Text();
    ToolbarButton(*editor, u"score"_s)->trigger();
    QCOMPARE(control.FirstVisibleLine(), qsizetype(403));
    QCOMPARE(control.Selection().start, qsizetype(text.indexOf("<CsScore>")));
    ToolbarButton(*editor, u"orchestra"_s)->trigger();
    QCOMPARE(control.FirstVisibleLine(), qsizetype(1));
    QCOMPARE(control.Selection(), (TextSpan{20, 20}));
    QVERIFY(!Document().Modified);
}

void SectionsTest::ATagInALongWrappedLineComesIntoSight()
{
    const QByteArray text = "<CsInstruments>" + QByteArray("abc ").repeated(20000) + "<CsScore>\n";
    editor->WriteFile(u"x.csd"_s, text);
    editor->Row(u"mnuWordWrap"_s).trigger();
    Open(u"x.csd"_s);
    editor->Row(u"mnuScore"_s).trigger();
    QCoreApplication::processEvents();
    TextControl &control = editor->Text();
    const QRect caret = control.RangeOnScreen(control.Selection().start, control.Selection().start);
    const QRect view(control.viewport()->mapToGlobal(QPoint(0, 0)), control.viewport()->size());
    QVERIFY(view.intersects(caret));
}

void SectionsTest::APairKeepsThePlaces()
{
    editor->WriteFile(u"x.orc"_s, QByteArray("instr 1\nendin\n").repeated(300));
    editor->WriteFile(u"x.sco"_s, QByteArray("i1 0 1\n").repeated(300));
    Open(u"x.orc"_s);
    TextControl &control = editor->Text();
    // The caret is far out of sight, as after a pull at the scroll bar.
    control.SetSelection(2003, 2010);
    control.ScrollToLine(0);
    QCOMPARE(control.FirstVisibleLine(), qsizetype(0));
    editor->Row(u"mnuScore"_s).trigger();
    QCOMPARE(Document().CurrentFile, Path(u"x.sco"_s));
    QVERIFY(!editor->Row(u"mnuScore"_s).isEnabled());
    control.SetSelection(700, 700);
    control.ScrollToLine(200);
    QCOMPARE(control.FirstVisibleLine(), qsizetype(200));
    editor->Row(u"mnuOrchestra"_s).trigger();
    QCOMPARE(Document().CurrentFile, Path(u"x.orc"_s));
    QCOMPARE(control.Selection(), (TextSpan{2003, 2003}));
    QCOMPARE(control.FirstVisibleLine(), control.LineOfOffset(2003));
    editor->Row(u"mnuScore"_s).trigger();
    QCOMPARE(control.Selection(), (TextSpan{700, 700}));
    QCOMPARE(control.FirstVisibleLine(), qsizetype(100));
    // The way is in the history too.
    QCOMPARE(ToolbarButton(*editor, u"back"_s)->toolTip(), u"Back to x.orc (Ctrl+PgUp)"_s);
}

void SectionsTest::APairGoesToUnifiedAndBack_data()
{
    QTest::addColumn<QByteArray>("orchestra");
    QTest::addColumn<QByteArray>("score");
    QTest::newRow("plain") << QByteArray("sr = 44100\r\ninstr 1\r\nendin\r\n")
                           << QByteArray("i1 0 1\r\ne\r\n");
    QTest::newRow("no line end") << QByteArray("instr 1 ; caf\xC3\xA9") << QByteArray("e");
    QTest::newRow("Windows-1252") << QByteArray("; caf\xE9\r\n") << QByteArray("; \x80\r\n");
}

void SectionsTest::APairGoesToUnifiedAndBack()
{
    QFETCH(QByteArray, orchestra);
    QFETCH(QByteArray, score);
    editor->WriteFile(u"x.orc"_s, orchestra);
    editor->WriteFile(u"x.sco"_s, score);
    Open(u"x.sco"_s);
    editor->Row(u"mnuCSD_0"_s).trigger();
    QCOMPARE(Document().CurrentFile, Path(u"x.csd"_s));
    QVERIFY(Document().Modified);
    QCOMPARE(editor->window->windowTitle(), u"Zelvane - "_s + Path(u"x.csd"_s) + u"* (Unified Format)"_s);
    QVERIFY(editor->Text().isVisible());
    QVERIFY(editor->Text().isEnabled());
    QVERIFY(ToolbarButton(*editor, u"save"_s)->isEnabled());
    QVERIFY(!editor->Row(u"mnuCSD_0"_s).isEnabled());
    QVERIFY(!QFile::exists(Path(u"x.csd"_s)));
    editor->Row(u"mnuSave"_s).trigger();
    QCOMPARE(Bytes(u"x.csd"_s),
             "<CsoundSynthesizer>\r\n<CsOptions>\r\n\r\n</CsOptions>\r\n<CsInstruments>\r\n" + orchestra +
                 "\r\n</CsInstruments>\r\n<CsScore>\r\n" + score + "\r\n</CsScore>\r\n</CsoundSynthesizer>");

    ExpectSave(u"Orchestra"_s, u"orc"_s, u"x"_s, Path(u"y.orc"_s));
    ExpectSave(u"Score"_s, u"sco"_s, u"x"_s, Path(u"y.sco"_s));
    ExpectConverted(u"y.orc"_s);
    editor->Row(u"mnuCSD_1"_s).trigger();
    editor->desktop.CheckAllCame();
    QCOMPARE(Bytes(u"y.orc"_s), "\r\n" + orchestra + "\r\n\r\n");
    QCOMPARE(Bytes(u"y.sco"_s), "\r\n" + score + "\r\n\r\n");
    QCOMPARE(Bytes(u"x.orc"_s), orchestra);
    QCOMPARE(Bytes(u"x.sco"_s), score);
}

void SectionsTest::EmptyHalvesAreAModifiedDocument()
{
    editor->WriteFile(u"x.orc"_s, {});
    editor->WriteFile(u"x.sco"_s, {});
    Open(u"x.orc"_s);
    editor->Row(u"mnuCSD_0"_s).trigger();
    QVERIFY(Document().Modified);
    QVERIFY(ToolbarButton(*editor, u"save"_s)->isEnabled());
}

void SectionsTest::AMissingSectionIsAFileOfOneLineEnd()
{
    editor->WriteFile(u"x.csd"_s, "<CsScore>e</CsScore>");
    Open(u"x.csd"_s);
    ExpectSave(u"Orchestra"_s, u"orc"_s, u"x"_s, Path(u"x.orc"_s));
    ExpectSave(u"Score"_s, u"sco"_s, u"x"_s, Path(u"x.sco"_s));
    ExpectConverted(u"x.orc"_s);
    editor->Row(u"mnuCSD_1"_s).trigger();
    QCOMPARE(Bytes(u"x.orc"_s), QByteArray("\r\n"));
    QCOMPARE(Bytes(u"x.sco"_s), QByteArray("e\r\n"));
}

void SectionsTest::AFailureIsReportedAndKeepsTheDocument()
{
    editor->WriteFile(u"x.csd"_s, "</CsScore><CsScore>");
    Open(u"x.csd"_s);
    editor->Text().ReplaceSelection(u"typed"_s);
    editor->desktop.ExpectMessage(
        ErrorBox(RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s)),
        BoxAnswer::Cancel);
    editor->Row(u"mnuCSD_1"_s).trigger();
    editor->desktop.CheckAllCame();
    QCOMPARE(editor->Text().Text(), u"typed</CsScore><CsScore>"_s);
    QVERIFY(editor->Text().CanUndo());
    QVERIFY(Document().Modified);
    QCOMPARE(QDir(editor->folder.path()).entryList({u"x.*"_s}), QStringList{u"x.csd"_s});
}

int main(int argc, char **argv)
{
    return RunUiTest<SectionsTest>(argc, argv);
}

#include "test_sections.moc"
