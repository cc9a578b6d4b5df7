// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowstate.h"
#include "run/ui/dialogprogram.h"
#include "run/ui/frmpresets.h"
#include "run/ui/frmquickpreset.h"
#include "run/ui/presetimages.h"
#include "shell/ui/icons.h"
#include "support/modaldriver.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <memory>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// The chooser as a program of its own, on a document in a folder of its own.
class Chooser
{
public:
    Chooser() { document = context.WriteFile(u"a piece.csd"_s, "x\n"); }

    void Add(const QString &name, const std::vector<std::pair<QString, QString>> &fields = {})
    {
        context.settings.SaveSetting(u"Presets"_s, name, {});
        for (const auto &[key, value] : fields)
            context.settings.SaveSetting(name, key, value);
    }
    void AddRun(const QString &name)
    {
        Add(name, {{u"Command"_s, u"/bin/"_s + name}, {u"Args"_s, u"$DOCUMENT$"_s}});
    }
    frmQuickPreset &Open()
    {
        program = std::make_unique<DialogProgram>(document, context.settings, context.desktop);
        dialog = std::make_unique<frmQuickPreset>(program->Context());
        program->SetWindow(dialog.get());
        dialog->show();
        dialog->activateWindow();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            qFatal("the dialog does not become active");
        return *dialog;
    }
    void ExpectRun(const QString &name)
    {
        context.desktop.ExpectShellRun(
            {.file = u"/bin/"_s + name, .parameters = u'"' + document + u'"', .folder = u"/bin"_s});
    }
    void CheckClosed(QDialog::DialogCode code = QDialog::Accepted)
    {
        context.desktop.CheckAllCame();
        QVERIFY(!dialog->isVisible());
        QCOMPARE(dialog->result(), int(code));
    }

    template <typename Widget> Widget &Find(const QString &name) const
    {
        auto *found = dialog->findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    QListWidget &List() const { return Find<QListWidget>(u"lstPreset"_s); }
    void Key(Qt::Key key, Qt::KeyboardModifiers held = {}) const { QTest::keyClick(&List(), key, held); }
    void Click(const QString &button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }

    TestContext context;
    QString document;
    std::unique_ptr<DialogProgram> program;
    std::unique_ptr<frmQuickPreset> dialog;
};

} // namespace

class TestFrmQuickPreset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ShowsDocumentAndPresets()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        chooser.AddRun(u"play"_s);
        chooser.Open();
        QCOMPARE(chooser.dialog->windowTitle(), u"Run Zelvane Preset"_s);
        QCOMPARE(chooser.Find<QLabel>(u"lblFileName"_s).text(), u"a piece.csd (Unified Format)"_s);
        QCOMPARE(chooser.List().count(), 2);
        QCOMPARE(chooser.List().item(1)->text(), u"play"_s);
        QCOMPARE(chooser.List().currentRow(), 0);
        QVERIFY(chooser.List().hasFocus());
        QCOMPARE(chooser.Find<QPushButton>(u"cmdEdit"_s).text(), u"&Edit..."_s);
    }

    void LongFileNamesAreCutInTheMiddle()
    {
        Chooser chooser;
        chooser.document = chooser.context.folder.filePath(QString(200, u'x') + u".csd"_s);
        chooser.Open();
        const auto &label = chooser.Find<QLabel>(u"lblFileName"_s);
        QVERIFY(label.text().size() < 200);
        QVERIFY(label.text().endsWith(u".csd (Unified Format)"_s));
        QVERIFY(chooser.dialog->width() < 1000);
    }

    void SelectionShowsTooltipAndBuiltInImage()
    {
        Chooser chooser;
        chooser.Add(u"none"_s, {{u"Tooltip"_s, u"<b>Plain</b> text"_s}});
        chooser.Add(u"number"_s, {{u"Tooltip"_s, u"Second"_s}, {u"Image"_s, u"104"_s}});
        chooser.Add(u"file"_s, {{u"Image"_s, u"/a/picture.bmp"_s}});
        chooser.Open();
        const auto &tooltip = chooser.Find<QLabel>(u"lblTooltip"_s);
        const auto &image = chooser.Find<IconView>(u"imgBitmap"_s);
        QCOMPARE(tooltip.text(), u"<b>Plain</b> text"_s);
        QCOMPARE(tooltip.textFormat(), Qt::PlainText);
        QVERIFY(image.Icon().isNull());
        chooser.Key(Qt::Key_Down);
        QCOMPARE(tooltip.text(), u"Second"_s);
        QCOMPARE(Picture(image.Icon()), Picture(Icons::LoadImage(104)));
        chooser.Key(Qt::Key_Down);
        QCOMPARE(tooltip.text(), QString());
        QVERIFY(image.Icon().isNull());
    }

    void OkRunsAndCloses()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        chooser.AddRun(u"play"_s);
        chooser.Open();
        chooser.Key(Qt::Key_Down);
        chooser.ExpectRun(u"play"_s);
        chooser.Click(u"cmdOK"_s);
        chooser.CheckClosed();
    }

    void HidesWhileATwoStepPresetRuns()
    {
        Chooser chooser;
        chooser.Add(u"two"_s, {{u"Command"_s, u"/bin/one"_s}, {u"2ndCommand"_s, u"/bin/two"_s}});
        chooser.Open();
        QSignalSpy finished(chooser.dialog.get(), &QDialog::finished);
        bool shown = true;
        chooser.context.desktop.ExpectProcess({.command = u"/bin/one"_s, .folder = u"/bin"_s}, true,
                                              [&] { shown = chooser.dialog->isVisible(); });
        chooser.context.desktop.ExpectShellRun({.file = u"/bin/two"_s});
        chooser.Click(u"cmdOK"_s);
        QVERIFY(!shown);
        chooser.CheckClosed();
        QCOMPARE(finished.count(), 1);
    }
    void StaysInSightWhenTheFirstStepDoesNotStart()
    {
        Chooser chooser;
        chooser.Add(u"two"_s, {{u"Command"_s, u"/bin/one"_s}, {u"2ndCommand"_s, u"/bin/two"_s}});
        chooser.Open();
        bool shown = false;
        chooser.context.desktop.ExpectProcess({.command = u"/bin/one"_s, .folder = u"/bin"_s}, false,
                                              [&] { shown = chooser.dialog->isVisible(); });
        chooser.context.desktop.ExpectMessage(
            {.text = u"Cannot execute preset two."_s, .icon = BoxIcon::Warning});
        chooser.Click(u"cmdOK"_s);
        QVERIFY(shown);
        chooser.CheckClosed();
    }
    void EnterAndDoubleClickRun()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        chooser.AddRun(u"play"_s);
        chooser.Open();
        chooser.ExpectRun(u"render"_s);
        chooser.Key(Qt::Key_Return);
        chooser.CheckClosed();
        chooser.Open();
        const QPoint at = chooser.List().visualItemRect(chooser.List().item(1)).center();
        chooser.ExpectRun(u"play"_s);
        QTest::mouseClick(chooser.List().viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(chooser.List().viewport(), Qt::LeftButton, {}, at);
        chooser.CheckClosed();
    }

    void CtrlConfirmsMacros()
    {
        Chooser chooser;
        chooser.Add(u"render"_s, {{u"Command"_s, u"/bin/render"_s}, {u"Args"_s, u"$WAVE$"_s}});
        chooser.Open();
        const auto expect = [&] {
            chooser.context.desktop.ExpectSaveDialog(
                {.title = u"WAVE - Confirm macro expansion"_s,
                 .filters = {{u"All Files"_s, u"*"_s}},
                 .folder = chooser.context.folder.path(),
                 .fileName = chooser.context.folder.filePath(u"a piece.wav"_s),
                 .defaultExtension = {}},
                {u"/c.wav"_s});
            chooser.context.desktop.ExpectShellRun(
                {.file = u"/bin/render"_s, .parameters = u"/c.wav"_s, .folder = u"/bin"_s});
        };
        expect();
        chooser.context.desktop.keysDown = {KeyCode::Ctrl};
        chooser.Click(u"cmdOK"_s);
        chooser.CheckClosed();
        chooser.Open();
        expect();
        chooser.Key(Qt::Key_Return, Qt::ControlModifier);
        chooser.CheckClosed();
    }

    void AltEdits()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        chooser.AddRun(u"play"_s);
        chooser.Open();
        ModalDriver modal;
        const auto expect = [&modal] {
            modal.Expect<frmPresets>([](frmPresets &dialog) {
                QCOMPARE(dialog.findChild<QComboBox *>(u"cmbPreset"_s)->currentText(), u"play"_s);
                dialog.reject();
            });
        };
        chooser.Key(Qt::Key_Down);
        chooser.context.desktop.keysDown = {KeyCode::Alt};
        expect();
        chooser.Click(u"cmdOK"_s);
        chooser.CheckClosed();
        chooser.Open();
        chooser.Key(Qt::Key_Down);
        expect();
        chooser.Key(Qt::Key_Return, Qt::AltModifier);
        chooser.CheckClosed();
    }

    void DigitsRunTheirRow_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("alt");
        QTest::addColumn<QString>("runs");
        QTest::newRow("Ctrl+1") << int(Qt::Key_1) << false << u"p1"_s;
        QTest::newRow("Ctrl+9") << int(Qt::Key_9) << false << u"p9"_s;
        QTest::newRow("Ctrl+0") << int(Qt::Key_0) << false << u"p10"_s;
        QTest::newRow("Alt+1") << int(Qt::Key_1) << true << u"p11"_s;
        QTest::newRow("Alt+0") << int(Qt::Key_0) << true << u"p20"_s;
    }

    void DigitsRunTheirRow()
    {
        QFETCH(int, key);
        QFETCH(bool, alt);
        QFETCH(QString, runs);
        Chooser chooser;
        for (int i = 1; i <= 21; ++i)
            chooser.AddRun(u"p%1"_s.arg(i));
        chooser.Open();
        chooser.ExpectRun(runs);
        // The key that is held means the digit, and neither confirming nor editing.
        chooser.context.desktop.keysDown = {alt ? KeyCode::Alt : KeyCode::Ctrl};
        chooser.Key(Qt::Key(key), alt ? Qt::AltModifier : Qt::ControlModifier);
        chooser.CheckClosed();
    }

    void DigitsWithoutARowAreIgnored()
    {
        Chooser chooser;
        chooser.AddRun(u"one"_s);
        chooser.Open();
        chooser.Key(Qt::Key_2, Qt::ControlModifier);
        chooser.Key(Qt::Key_1, Qt::AltModifier);
        chooser.Key(Qt::Key_1, Qt::ControlModifier | Qt::AltModifier);
        chooser.Key(Qt::Key_1);
        QVERIFY(chooser.dialog->isVisible());
    }

    void EditStartsTheEditor()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        const ShellRequest request{.verb = u"open"_s,
                                   .file = QDir::toNativeSeparators(QCoreApplication::applicationFilePath()),
                                   .parameters = u'"' + chooser.document + u'"'};
        chooser.Open();
        chooser.context.desktop.ExpectShellRun(request);
        chooser.Click(u"cmdEdit"_s);
        chooser.CheckClosed();
        chooser.Open();
        chooser.context.desktop.ExpectShellRun(request, 32);
        chooser.context.desktop.ExpectMessage(
            {.text = u"Cannot start "_s + chooser.document, .icon = BoxIcon::Warning});
        chooser.Click(u"cmdEdit"_s);
        chooser.CheckClosed();
    }

    void CancelAndEscRunNothing()
    {
        Chooser chooser;
        chooser.AddRun(u"render"_s);
        chooser.Open();
        chooser.Click(u"cmdCancel"_s);
        chooser.CheckClosed(QDialog::Rejected);
        chooser.Open();
        chooser.Key(Qt::Key_Escape);
        chooser.CheckClosed(QDialog::Rejected);
    }

    void WithoutPresetsTheListIsEmpty()
    {
        Chooser chooser;
        chooser.Open();
        QCOMPARE(chooser.List().count(), 0);
        QVERIFY(!chooser.Find<QPushButton>(u"cmdOK"_s).isEnabled());
        QVERIFY(chooser.Find<QPushButton>(u"cmdEdit"_s).isEnabled());
        chooser.Key(Qt::Key_Return);
        QVERIFY(chooser.dialog->isVisible());
        QCOMPARE(chooser.Find<QLabel>(u"lblTooltip"_s).text(), QString());
    }

    void SelectionMacroFailsForLackOfAWindow()
    {
        Chooser chooser;
        chooser.Add(u"sel"_s,
                    {{u"Command"_s, u"/bin/x"_s}, {u"Args"_s, u"$SEL$"_s}, {u"SaveFirst"_s, u"1"_s}});
        chooser.Open();
        chooser.context.desktop.ExpectMessage(
            {.text = u"SEL macro returned empty string."_s, .icon = BoxIcon::Warning});
        chooser.Click(u"cmdOK"_s);
        chooser.CheckClosed();
    }

    void AMistypedWindowStateIsTheDefault()
    {
        Chooser chooser;
        chooser.Add(u"broken"_s, {{u"Command"_s, u"/bin/x"_s}, {u"Window"_s, u"wide"_s}});
        chooser.Open();
        chooser.context.desktop.ExpectShellRun(
            {.file = u"/bin/x"_s, .folder = u"/bin"_s, .showState = WindowState::Normal});
        chooser.Click(u"cmdOK"_s);
        chooser.CheckClosed();
        QCOMPARE(chooser.context.settings.TakeUnreadable().size(), 1u);
    }
};

int main(int argc, char **argv)
{
    return RunUiTest<TestFrmQuickPreset>(argc, argv);
}
#include "test_frmquickpreset.moc"
