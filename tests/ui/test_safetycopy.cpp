// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/textfile.h"
#include "platform/unsavedcopy.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/statefolder.h"
#include "support/uitest.h"

#include <algorithm>
#include <ctime>
#include <QAction>
#include <QDialog>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// Milliseconds of this thread on the processor: other programs and the writing thread do not count.
template <typename Work> double ThreadMs(Work work)
{
    timespec start = {}, end = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    work();
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    return double(end.tv_sec - start.tv_sec) * 1e3 + double(end.tv_nsec - start.tv_nsec) / 1e6;
}

class SafetyCopyTest : public QObject
{
    Q_OBJECT

    static QStringList Copies(const QString &ending) { return OwnStateFolder::Copies(ending); }

    /// A copy whose editor is no longer there.
    static void Leave(const CopyInfo &info, const QByteArray &bytes)
    {
        UnsavedCopy copy;
        copy.Write(info, bytes);
    }
    static MessageBoxRequest Question(const QString &name)
    {
        const QDateTime written = QFileInfo(Copies(u".open"_s).value(0)).lastModified();
        return {.text = name + u" was not saved when its editor ended. Open the copy of its text of "_s +
                        written.toString(u"yyyy-MM-dd hh:mm"_s) + u'?',
                .icon = BoxIcon::Question,
                .buttons = BoxButtons::YesNo};
    }

private Q_SLOTS:
    void TheControlGivesItsBytesAsTheyAre()
    {
        EditorWindow editor;
        editor.Open();
        TextControl &text = editor.Text();
        QRandomGenerator random(1);
        const QString pieces[] = {u"a"_s, u"instr 1\n"_s, u"\u00E9\u2192"_s, u"\U0001D11E"_s, QString()};
        QCOMPARE(text.Utf8(), QByteArray());
        for (int i = 0; i < 2000; ++i) {
            const qsizetype start = random.bounded(int(text.Length()) + 1);
            text.SetSelection(start, start + random.bounded(3));
            text.ReplaceSelection(pieces[random.bounded(5)]);
            if (i % 10 == 0)
                QCOMPARE(text.Utf8(), text.Text().toUtf8());
        }
        QVERIFY(text.Length() > 100);
    }

    void WhatIsTypedHasItsCopy()
    {
        EditorWindow editor;
        const QString path = editor.WriteFile(u"piece.orc"_s, "instr 1\r\n");
        editor.Open({path});
        QTest::keyClicks(&editor.Text(), u";mine "_s);
        QVERIFY(Eventually([] { return Copies(u".open"_s).size() == 1; }));
        QVERIFY(Eventually(
            [] { return OwnStateFolder::TextIn(Copies(u".open"_s).first()) == ";mine instr 1\n"; }));
        editor.Row(u"mnuSave"_s).trigger();
        QVERIFY(Eventually([] { return Copies({}).isEmpty(); }));
        QTest::keyClicks(&editor.Text(), u";more "_s);
        editor.desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
        QVERIFY(editor.window->close());
        QVERIFY(Eventually([] { return Copies(u".kept"_s).size() == 1; }));
        QCOMPARE(OwnStateFolder::TextIn(Copies({}).first()), ";mine ;more instr 1\n"_ba);
    }

    void ANoAtTheEndOfTheSessionKeepsTheText()
    {
        EditorWindow editor;
        editor.Open();
        QTest::keyClicks(&editor.Text(), u"mine"_s);
        editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::Cancel);
        QVERIFY(!editor.window->MayEndSession());
        QVERIFY(Copies(u".kept"_s).isEmpty());
        editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
        QVERIFY(editor.window->MayEndSession());
        // At once: the process may be ended as soon as the session has its answer.
        QCOMPARE(Copies(u".kept"_s).size(), 1);
        QCOMPARE(OwnStateFolder::TextIn(Copies({}).first()), "mine"_ba);
    }

    void ASessionThatLetsNobodyAskFindsTheCopyUpToDate()
    {
        EditorWindow editor;
        editor.Open();
        QTest::keyClicks(&editor.Text(), u"mine"_s);
        QVERIFY(Copies({}).isEmpty());
        QVERIFY(editor.window->MayEndSession(false));
        QCOMPARE(Copies(u".open"_s).size(), 1);
        QCOMPARE(OwnStateFolder::TextIn(Copies({}).first()), "mine"_ba);
        editor.desktop.CheckAllCame();
    }

    void TheEndOfTheSessionCancelsAnOpenDialogFirst()
    {
        EditorWindow editor;
        editor.Open();
        QTest::keyClicks(&editor.Text(), u"mine"_s);
        editor.desktop.ExpectMessage(SaveChanges(u"Untitled"_s), BoxAnswer::No);
        bool mayEnd = false;
        QDialog dialog(editor.window.get());
        QTimer::singleShot(0, &dialog, [&] { mayEnd = editor.window->MayEndSession(); });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QVERIFY(mayEnd);
    }

    void TheStartOffersWhatWasLeft()
    {
        EditorWindow editor;
        const QString path = editor.WriteFile(u"piece.orc"_s, "instr 1\r\n");
        Leave({.name = path, .kind = 1, .encoding = TextEncoding{}}, "; mine\ninstr 1\n");
        editor.desktop.ExpectMessage(Question(path), BoxAnswer::Yes);
        editor.Open({editor.WriteFile(u"other.sco"_s, "i1 0 1\r\n")});
        QCOMPARE(editor.Text().Text(), u"; mine\ninstr 1\n"_s);
        QCOMPARE(editor.Text().StyleAt(0), StyleClass::Comment);
        QCOMPARE(editor.window->windowTitle(), u"Zelvane - Untitled* (Orchestra)"_s);
        QVERIFY(ToolbarButton(editor, u"save"_s)->isEnabled());
        QVERIFY(editor.Text().isVisible());
        QVERIFY(!editor.Text().CanUndo());

        // Again from the hands of an editor that has gone, which has not answered.
        editor.window.reset();
        QCOMPARE(Copies(u".open"_s).size(), 1);
        editor.desktop.ExpectMessage(Question(path), BoxAnswer::No);
        editor.Open();
        QCOMPARE(Copies(u".kept"_s).size(), 1);
        QCOMPARE(editor.Text().Text(), QString());
        editor.Open();
    }

    void TheFirstEditAfterAFailedLoadIsSeen()
    {
        EditorWindow editor;
        const QString path = editor.WriteFile(u"piece.orc"_s, "instr 1\r\n");
        editor.Open({path});
        const QString missing = editor.folder.filePath(u"missing.orc"_s);
        editor.desktop.ExpectMessage(
            {.text = u"Unable to open "_s + missing + u".\n\nNo such file or directory"_s,
             .icon = BoxIcon::Warning});
        editor.window->Documents().OpenFile(missing);
        QVERIFY(!ToolbarButton(editor, u"save"_s)->isEnabled());
        QCOMPARE(editor.window->windowTitle(), u"Zelvane - %1 (Orchestra)"_s.arg(path));
        QTest::keyClick(&editor.Text(), Qt::Key_X);
        QVERIFY(ToolbarButton(editor, u"save"_s)->isEnabled());
        QCOMPARE(editor.window->windowTitle(), u"Zelvane - %1* (Orchestra)"_s.arg(path));
        // The line and the column are followed again.
        QTest::keyClick(&editor.Text(), Qt::Key_Y);
        editor.Row(u"mnuSave"_s).trigger();
        QCOMPARE(ReadFileBytes(path), "xyinstr 1\r\n"_ba);
    }

    void AKeyInALargeTextIsNotHeldUp()
    {
        EditorWindow editor;
        editor.Open({editor.WriteFile(
            u"large.txt"_s, QByteArray(10'000'000 / 50, '\n')
                                .replace("\n", "a line of fifty characters, line end and all ..\r\n"))});
        TextControl &text = editor.Text();
        QVERIFY(text.Length() > 9'000'000);
        // The copy closes in on a key: where the text is taken, and the key after it.
        double extra = 1e9;
        for (int round = 0; round < 7; ++round) {
            const qsizetype place = text.Length() / 7 * round;
            text.SetSelection(place, place);
            QTest::keyClick(&text, Qt::Key_X);
            const double key = ThreadMs([&] { QTest::keyClick(&text, Qt::Key_X); });
            const double copied = ThreadMs([&] {
                editor.window->Documents().KeepUnsaved();
                QTest::keyClick(&text, Qt::Key_X);
            });
            extra = std::min(extra, copied - key);
        }
        qInfo("a key with a copy before it costs %.1f ms more", extra);
        QVERIFY2(extra < 16, qPrintable(QString::number(extra)));
        editor.window->Documents().SecureText(); // waits for the disk
        QCOMPARE(Copies(u".kept"_s).size(), 7);
    }
};

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<SafetyCopyTest>(argc, argv);
}

#include "test_safetycopy.moc"
