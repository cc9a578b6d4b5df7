// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/textfile.h"
#include "run/ui/frmpresets.h"
#include "run/ui/presetbar.h"
#include "shell/bands.h"
#include "shell/layoutkeys.h"
#include "shell/toolkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/icons.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"
#include "window/ui/rooms.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QTimer>
#include <QToolButton>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// An editor with presets named by the caller.
class PresetWindow : public EditorWindow
{
public:
    void Add(const QString &name, const std::vector<std::pair<QString, QString>> &fields = {})
    {
        settings.SaveSetting(u"Presets"_s, name, {});
        for (const auto &[key, value] : fields)
            settings.SaveSetting(name, key, value);
    }

    PresetBar &Bar() { return Find<PresetBar>(u"tbPresets"_s); }
    QAction &Button(const QString &name)
    {
        for (QAction *action : Bar().actions()) {
            if (action->data().toString() == name)
                return *action;
        }
        qFatal("no button of preset %s", qPrintable(name));
    }
    /// The bar as text: the labels, "|" for a separator.
    QString Labels()
    {
        QStringList labels;
        for (const QAction *action : Bar().actions())
            labels.append(action->isSeparator() ? u"|"_s : action->iconText());
        return labels.join(u' ');
    }
    /// The rows of the Presets menu before its last one, captions only; separators that show as "-".
    QStringList MenuRows()
    {
        QStringList rows;
        for (const QAction *action : Find<QMenu>(u"mnuPresets"_s).actions()) {
            if (action->isVisible())
                rows.append(action->isSeparator() ? u"-"_s : action->text());
        }
        return rows;
    }
    void ExpectRun(const QString &command)
    {
        desktop.ExpectShellRun({.file = command, .folder = QFileInfo(command).path()});
    }
    /// The output of the preset Render is to be confirmed, and goes to another file.
    void ExpectConfirmation()
    {
        desktop.ExpectSaveDialog({.title = u"WAVE - Confirm macro expansion"_s,
                                  .filters = {{u"All Files"_s, u"*"_s}},
                                  .folder = folder.path(),
                                  .fileName = folder.filePath(u"a.wav"_s)},
                                 {u"/c.wav"_s});
        desktop.ExpectShellRun({.file = u"/bin/render"_s, .parameters = u"/c.wav"_s, .folder = u"/bin"_s});
    }
    /// Asks for the context menu at a point of the bar. @return the menu that came up; `choose` is triggered
    /// in it
    QMenu *PopupAt(const QPoint &at, const std::function<void(QMenu &)> &choose = {})
    {
        QMenu *menu = nullptr;
        QTimer::singleShot(0, &Bar(), [&] {
            menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            if (choose)
                choose(*menu);
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Bar().mapToGlobal(at));
        QWidget *child = Bar().childAt(at);
        QContextMenuEvent inChild(QContextMenuEvent::Mouse, child ? child->mapFrom(&Bar(), at) : at,
                                  Bar().mapToGlobal(at));
        QCoreApplication::sendEvent(child ? child : &Bar(), child ? &inChild : &event);
        return menu;
    }
    QPoint CentreOf(const QString &name) { return Bar().widgetForAction(&Button(name))->geometry().center(); }
};

/// Expects the preset editor, with this preset chosen, and closes it.
void ExpectPresetEditor(ModalDriver &modal, const QString &name)
{
    modal.Expect<frmPresets>([name](frmPresets &dialog) {
        QCOMPARE(dialog.findChild<QComboBox *>(u"cmbPreset"_s)->currentText(), name);
        dialog.reject();
    });
}

} // namespace

class PresetBarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EmptyStoreHasAnEmptyBar();
    void ReadyMadePresetsAreAddedWhenTheUserSaysSo();
    void AFileWithoutReadyMadePresetsIsReported();
    void ButtonsStandInTheStoresOrder();
    void LabelsAreCutAtTen();
    void LabelsShowOnDemandAndAtStart();
    void TooltipsAreShownAsTheyStand();
    void ClickRunsWithTheKeysHeld();
    void MenuRowsHaveShortcuts();
    void MenuRowsFollowTheStore();
    void MenuRowHeedsCtrl();
    void LastPresetLeavesTheRows();
    void ImagesByNumber();
    void ImagesByFile();
    void ImagesByIconFile();
    void ImagesByCommand();
    void PopupOverAButton();
    void PopupOutsideTheButtons();
    void BandFitsTheButtons();
    void FlatButtonsReachNewButtons();
    void OldButtonsGo();
    void OddNamesWork();
    void AFailedSaveKeepsThePresetFromRunning();
    void AMistypedValueOfAPresetIsReported();
};

void PresetBarTest::EmptyStoreHasAnEmptyBar()
{
    PresetWindow editor;
    editor.Open();
    QVERIFY(editor.Bar().actions().isEmpty());
    QCOMPARE(editor.MenuRows(), QStringList({u"Add/Remove &Presets..."_s, u"&Ready-made presets..."_s}));
}

void PresetBarTest::ReadyMadePresetsAreAddedWhenTheUserSaysSo()
{
    PresetWindow editor;
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + u"/presets"_s,
                        editor.folder.filePath(u"presets"_s)));
    editor.Open();
    auto &ready = editor.Find<QAction>(u"mnuReadyPresets"_s);
    const MessageBoxRequest question{
        .text = u"Add these presets? They can be changed and removed at any time.\n\n"
                "Render to a sound file\nPlay now\nCheck the syntax\nRender and listen"_s,
        .icon = BoxIcon::Question,
        .buttons = BoxButtons::YesNo};
    editor.desktop.ExpectMessage(question, BoxAnswer::No);
    ready.trigger();
    QVERIFY(editor.Bar().actions().isEmpty());
    QVERIFY(ready.isVisible());
    editor.desktop.ExpectMessage(question, BoxAnswer::Yes);
    ready.trigger();
    QCOMPARE(editor.Labels(), u"Render Play Check Listen"_s);
    QVERIFY(!ready.isVisible());
    QCOMPARE(editor.MenuRows().size(), 6); // the four, a line, Add/Remove
    editor.desktop.CheckAllCame();
    // They are as any others: with the last of them gone the row is there again.
    editor.settings.DeleteSetting(u"Presets"_s);
    editor.Bar().PresetsButtons();
    QVERIFY(ready.isVisible());
    QVERIFY(editor.Bar().actions().isEmpty());
}

void PresetBarTest::AFileWithoutReadyMadePresetsIsReported()
{
    PresetWindow editor;
    const QString name = editor.folder.filePath(u"presets"_s);
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly)); // an empty one, which stands before the shipped one
    file.close();
    editor.Open();
    editor.desktop.ExpectMessage(ErrorBox(u"File not found (53)"_s, name), BoxAnswer::Cancel);
    editor.Find<QAction>(u"mnuReadyPresets"_s).trigger();
    editor.desktop.CheckAllCame();
    QVERIFY(editor.Bar().actions().isEmpty());
    QVERIFY(editor.Find<QAction>(u"mnuReadyPresets"_s).isVisible());
}

void PresetBarTest::ButtonsStandInTheStoresOrder()
{
    PresetWindow editor;
    editor.Add(u"Zeta"_s);
    editor.Add(u"Alpha"_s, {{u"NewGroup"_s, u"1"_s}});
    editor.Add(u"Hidden"_s, {{u"CreateButton"_s, u"0"_s}, {u"NewGroup"_s, u"1"_s}});
    editor.Add(u"Mid"_s, {{u"Name"_s, u"Middle"_s}, {u"CreateButton"_s, u"1"_s}});
    editor.Open();
    QCOMPARE(editor.Labels(), u"Zeta | Alpha Middle"_s);
    QCOMPARE(editor.MenuRows(), QStringList({u"&Zeta\tCtrl+1"_s, u"&Alpha\tCtrl+2"_s, u"&Hidden\tCtrl+3"_s,
                                             u"&Mid\tCtrl+4"_s, u"-"_s, u"Add/Remove &Presets..."_s}));
}

void PresetBarTest::LabelsAreCutAtTen()
{
    PresetWindow editor;
    editor.Add(u"a"_s, {{u"Name"_s, u"1234567890"_s}});
    editor.Add(u"b"_s, {{u"Name"_s, u"12345678901"_s}});
    editor.Add(u"Longer than ten"_s);
    editor.Open();
    QCOMPARE(editor.Labels(), u"1234567890 1234567... Longer ..."_s);
    editor.Row(u"mnuLabels_1"_s).trigger();
    const auto *face = qobject_cast<QToolButton *>(editor.Bar().widgetForAction(&editor.Button(u"b"_s)));
    QCOMPARE(face->text(), u"1234567..."_s);
}

void PresetBarTest::LabelsShowOnDemandAndAtStart()
{
    PresetWindow editor;
    editor.Add(u"Render"_s);
    editor.Open();
    QCOMPARE(editor.Bar().toolButtonStyle(), Qt::ToolButtonIconOnly);
    editor.Row(u"mnuLabels_1"_s).trigger();
    QVERIFY(editor.Bar().toolButtonStyle() != Qt::ToolButtonIconOnly);
    QVERIFY(editor.Row(u"mnuLabels_1"_s).isChecked());
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"PresetsLabels"_s), u"-1"_s);
    editor.Open();
    QVERIFY(editor.Bar().toolButtonStyle() != Qt::ToolButtonIconOnly);
    QVERIFY(editor.Row(u"mnuLabels_1"_s).isChecked());
}

void PresetBarTest::TooltipsAreShownAsTheyStand()
{
    PresetWindow editor;
    editor.Add(u"plain"_s);
    editor.Add(u"own"_s, {{u"Tooltip"_s, u"Renders to a file"_s}});
    editor.Add(u"marked"_s, {{u"Tooltip"_s, u"-o <b>x</b> & more"_s}});
    editor.Open();
    QCOMPARE(editor.Button(u"plain"_s).toolTip(), u"plain"_s);
    QCOMPARE(editor.Button(u"own"_s).toolTip(), u"Renders to a file"_s);
    QCOMPARE(editor.Button(u"marked"_s).toolTip(),
             u"<p style='white-space:pre'>-o &lt;b&gt;x&lt;/b&gt; &amp; more</p>"_s);
}

void PresetBarTest::ClickRunsWithTheKeysHeld()
{
    PresetWindow editor;
    const QString file = editor.WriteFile(u"a.csd"_s, "x\n");
    editor.Add(u"Render"_s, {{u"Command"_s, u"/bin/render"_s}, {u"Args"_s, u"$WAVE$"_s}});
    editor.Open({file});
    auto *face = editor.Bar().widgetForAction(&editor.Button(u"Render"_s));
    editor.desktop.ExpectShellRun(
        {.file = u"/bin/render"_s, .parameters = editor.folder.filePath(u"a.wav"_s), .folder = u"/bin"_s});
    QTest::mouseClick(face, Qt::LeftButton);
    editor.desktop.CheckAllCame();
    QCOMPARE(editor.Find<QLabel>(u"lblStatus"_s).text(),
             u"Render: /bin/render "_s + editor.folder.filePath(u"a.wav"_s));
    // With Ctrl the names of files are to be confirmed.
    editor.desktop.keysDown = {KeyCode::Ctrl};
    editor.ExpectConfirmation();
    QTest::mouseClick(face, Qt::LeftButton);
    editor.desktop.CheckAllCame();
    // With Alt the editor of presets comes up, and nothing runs.
    editor.desktop.keysDown = {KeyCode::Alt};
    ModalDriver modal;
    ExpectPresetEditor(modal, u"Render"_s);
    QTest::mouseClick(face, Qt::LeftButton);
}

void PresetBarTest::MenuRowsHaveShortcuts()
{
    PresetWindow editor;
    for (int i = 1; i <= 22; ++i)
        editor.Add(u"P%1"_s.arg(i));
    editor.Open();
    const QStringList rows = editor.MenuRows();
    QCOMPARE(rows.size(), 24);
    QCOMPARE(rows[0], u"&P1\tCtrl+1"_s);
    QCOMPARE(rows[8], u"&P9\tCtrl+9"_s);
    QCOMPARE(rows[9], u"&P10\tCtrl+0"_s);
    QCOMPARE(rows[10], u"&P11\tAlt+1"_s);
    QCOMPARE(rows[18], u"&P19\tAlt+9"_s);
    QCOMPARE(rows[19], u"&P20\tAlt+0"_s);
    QCOMPARE(rows[20], u"&P21"_s);
    QCOMPARE(rows[21], u"&P22"_s);
    QCOMPARE(rows[22], u"-"_s);
    editor.settings.SaveSetting(u"P22"_s, u"Command"_s, u"/bin/last"_s);
    editor.ExpectRun(u"/bin/last"_s);
    editor.Row(u"mnuPreset_21"_s).trigger();
    editor.ExpectRun(u"/bin/last"_s);
    editor.Button(u"P22"_s).trigger();
}

void PresetBarTest::MenuRowsFollowTheStore()
{
    PresetWindow editor;
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        editor.Add(name);
    frmEditor &window = editor.Open();
    editor.settings.DeleteSetting(u"Presets"_s, u"a"_s);
    editor.settings.DeleteSetting(u"Presets"_s, u"c"_s);
    editor.Add(u"d"_s, {{u"Command"_s, u"/bin/d"_s}});
    window.Rooms().run.RebuildPresets();
    QCOMPARE(editor.MenuRows(),
             QStringList({u"&b\tCtrl+1"_s, u"&d\tCtrl+2"_s, u"-"_s, u"Add/Remove &Presets..."_s}));
    QCOMPARE(editor.Labels(), u"b d"_s);
    QVERIFY(!window.findChild<QAction *>(u"mnuPreset_2"_s));
    editor.ExpectRun(u"/bin/d"_s);
    QTest::keyClick(&editor.Text(), Qt::Key_2, Qt::ControlModifier);
    editor.Add(u"e"_s, {{u"Command"_s, u"/bin/e"_s}});
    window.Rooms().run.RebuildPresets();
    editor.ExpectRun(u"/bin/e"_s);
    editor.Row(u"mnuPreset_2"_s).trigger();
}

void PresetBarTest::MenuRowHeedsCtrl()
{
    PresetWindow editor;
    const QString file = editor.WriteFile(u"a.csd"_s, "x\n");
    editor.Add(u"Render"_s, {{u"Command"_s, u"/bin/render"_s}, {u"Args"_s, u"$WAVE$"_s}});
    editor.Open({file});
    editor.desktop.keysDown = {KeyCode::Ctrl};
    editor.ExpectConfirmation();
    editor.Row(u"mnuPreset_0"_s).trigger();
}

void PresetBarTest::LastPresetLeavesTheRows()
{
    PresetWindow editor;
    editor.Add(u"only"_s);
    frmEditor &window = editor.Open();
    editor.settings.DeleteSetting(u"Presets"_s);
    window.Rooms().run.RebuildPresets();
    QVERIFY(editor.Bar().actions().isEmpty());
    QCOMPARE(editor.MenuRows()[0], u"&only\tCtrl+1"_s);
}

void PresetBarTest::ImagesByNumber()
{
    PresetWindow editor;
    editor.Add(u"first"_s, {{u"Image"_s, u"101"_s}});
    editor.Add(u"third"_s, {{u"Image"_s, u" 103 "_s}});
    editor.Add(u"none"_s, {{u"Image"_s, u"9999"_s}, {u"Command"_s, u"/bin/sh"_s}});
    editor.Open();
    QVERIFY(!Icons::LoadImage(101).isNull());
    QCOMPARE(Picture(editor.Button(u"first"_s).icon()), Picture(Icons::LoadImage(101)));
    QCOMPARE(Picture(editor.Button(u"third"_s).icon()), Picture(Icons::LoadImage(103)));
    QCOMPARE(Picture(editor.Button(u"none"_s).icon()), Picture(Icons::Load(u"preset"_s)));
}

void PresetBarTest::ImagesByFile()
{
    PresetWindow editor;
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(qRgb(10, 20, 30));
    image.setPixel(3, 5, qRgb(192, 192, 192));
    image.setPixel(4, 5, qRgb(192, 192, 193));
    const QString bitmap = editor.folder.filePath(u"own.bmp"_s);
    QVERIFY(image.save(bitmap));
    QImage large(64, 48, QImage::Format_RGB32);
    large.fill(qRgb(200, 0, 0));
    const QString png = editor.folder.filePath(u"large.png"_s);
    QVERIFY(large.save(png));
    editor.Add(u"bitmap"_s, {{u"Image"_s, bitmap}});
    editor.Add(u"large"_s, {{u"Image"_s, png}});
    editor.Add(u"broken"_s, {{u"Image"_s, editor.WriteFile(u"broken.bmp"_s, "BM no picture")}});
    editor.Add(u"gone"_s, {{u"Image"_s, u"/no/such/file.gif"_s}});
    editor.Open();
    const QImage shown = Picture(editor.Button(u"bitmap"_s).icon());
    QCOMPARE(shown.size(), QSize(16, 16));
    QCOMPARE(shown.pixel(0, 0), qRgb(10, 20, 30));
    QCOMPARE(qAlpha(shown.pixel(3, 5)), 0);
    QCOMPARE(shown.pixel(4, 5), qRgb(192, 192, 193));
    const QImage scaled = Picture(editor.Button(u"large"_s).icon());
    QCOMPARE(scaled.size(), QSize(16, 16));
    QCOMPARE(scaled.pixel(8, 8), qRgb(200, 0, 0));
    QCOMPARE(Picture(editor.Button(u"broken"_s).icon()), Picture(Icons::Load(u"preset"_s)));
    QCOMPARE(Picture(editor.Button(u"gone"_s).icon()), Picture(Icons::Load(u"preset"_s)));
}

void PresetBarTest::ImagesByIconFile()
{
    PresetWindow editor;
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(qRgb(192, 192, 192));
    image.setPixel(0, 0, qRgba(0, 0, 0, 0));
    const QString file = editor.folder.filePath(u"own.ico"_s);
    QVERIFY(image.save(file));
    editor.Add(u"icon"_s, {{u"Image"_s, file}});
    editor.Open();
    // An icon knows its own transparency: light grey is a colour there.
    const QImage shown = Picture(editor.Button(u"icon"_s).icon());
    QCOMPARE(qAlpha(shown.pixel(0, 0)), 0);
    QCOMPARE(shown.pixel(8, 8), qRgb(192, 192, 192));
}

void PresetBarTest::ImagesByCommand()
{
    PresetWindow editor;
    const QString document = editor.WriteFile(u"manual.txt"_s, "text\n");
    editor.settings.SaveText(Keys::Help, document);
    editor.Add(u"document"_s, {{u"Command"_s, u"$HELP$"_s}});
    editor.Add(u"nothing"_s);
    editor.Add(u"gone"_s, {{u"Command"_s, u"/no/such/program"_s}});
    editor.Open();
    const QImage fallback = Picture(Icons::Load(u"preset"_s));
    QVERIFY(Picture(editor.Button(u"document"_s).icon()) != fallback);
    QVERIFY(!editor.Button(u"document"_s).icon().isNull());
    QCOMPARE(Picture(editor.Button(u"nothing"_s).icon()), fallback);
    QCOMPARE(Picture(editor.Button(u"gone"_s).icon()), fallback);
}

void PresetBarTest::PopupOverAButton()
{
    PresetWindow editor;
    editor.Add(u"Render & co"_s, {{u"Command"_s, u"/bin/render"_s}, {u"Args"_s, u"$WAVE$"_s}});
    editor.Add(u"Other"_s);
    editor.Open({editor.WriteFile(u"a.csd"_s, "x\n")});
    QStringList captions;
    QMenu *menu = editor.PopupAt(editor.CentreOf(u"Render & co"_s), [&](QMenu &popup) {
        for (const QAction *action : popup.actions())
            captions.append(action->isSeparator() ? u"-"_s : action->text());
    });
    QVERIFY(menu);
    QCOMPARE(menu->objectName(), u"mnuPresetPopup"_s);
    QCOMPARE(captions, QStringList({u"Render && co\tClick"_s, u"Render && co (Confirm macros)\tCtrl+Click"_s,
                                    u"-"_s, u"&Edit...\tAlt+Click"_s}));
    QCOMPARE(menu->property("tag").toString(), QString());

    editor.desktop.ExpectShellRun(
        {.file = u"/bin/render"_s, .parameters = editor.folder.filePath(u"a.wav"_s), .folder = u"/bin"_s});
    editor.PopupAt(editor.CentreOf(u"Render & co"_s), [](QMenu &popup) { popup.actions()[0]->trigger(); });
    editor.desktop.CheckAllCame();
    editor.ExpectConfirmation();
    editor.PopupAt(editor.CentreOf(u"Render & co"_s), [](QMenu &popup) { popup.actions()[1]->trigger(); });
    editor.desktop.CheckAllCame();
    ModalDriver modal;
    ExpectPresetEditor(modal, u"Render & co"_s);
    editor.PopupAt(editor.CentreOf(u"Render & co"_s), [](QMenu &popup) { popup.actions()[3]->trigger(); });
    // Without a button behind it the menu's rows run nothing.
    editor.Row(u"mnuPresetPopupItem_0"_s).trigger();
}

void PresetBarTest::PopupOutsideTheButtons()
{
    PresetWindow editor;
    editor.Add(u"Render"_s);
    editor.Open();
    QMenu *menu = editor.PopupAt(QPoint(editor.Bar().width() - 3, editor.Bar().height() / 2));
    QVERIFY(menu);
    QCOMPARE(menu->objectName(), u"mnuPresets"_s);

    // The line before a group is no button either.
    PresetWindow grouped;
    grouped.Add(u"Render"_s, {{u"NewGroup"_s, u"1"_s}});
    grouped.Open();
    QAction *line = grouped.Bar().actions().constFirst();
    QVERIFY(line->isSeparator());
    menu = grouped.PopupAt(grouped.Bar().actionGeometry(line).center());
    QVERIFY(menu);
    QCOMPARE(menu->objectName(), u"mnuPresets"_s);

    PresetWindow empty;
    empty.Open();
    menu = empty.PopupAt(QPoint(5, 5));
    QVERIFY(menu);
    QCOMPARE(menu->objectName(), u"mnuPresets"_s);
}

void PresetBarTest::BandFitsTheButtons()
{
    PresetWindow editor;
    for (int i = 0; i < 8; ++i)
        editor.Add(u"P%1"_s.arg(i));
    editor.settings.SaveNumber(Keys::BandWidth(WindowBand::Presets), 40);
    frmEditor &window = editor.Open();
    auto &bands = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bands.BandWidth(WindowBand::Presets), bands.NaturalBandWidth(WindowBand::Presets));
    // A hidden band keeps the width that it was given.
    editor.Row(u"mnuShowToolbar_3"_s).trigger();
    bands.SetBandWidth(WindowBand::Presets, 55);
    window.Rooms().run.RebuildPresets();
    QCOMPARE(bands.BandWidth(WindowBand::Presets), 55);
}

void PresetBarTest::FlatButtonsReachNewButtons()
{
    PresetWindow editor;
    editor.settings.SaveStoredText(Keys::FlatButtons, u"0"_s);
    editor.Add(u"a"_s);
    frmEditor &window = editor.Open();
    const auto flat = [&](const QString &name) {
        return qobject_cast<QToolButton *>(editor.Bar().widgetForAction(&editor.Button(name)))->autoRaise();
    };
    QVERIFY(!flat(u"a"_s));
    QVERIFY(!editor.Find<QToolButton>(u"Toolbar1_new"_s).autoRaise());
    editor.Add(u"b"_s);
    window.Rooms().run.RebuildPresets();
    QVERIFY(!flat(u"b"_s));
}

void PresetBarTest::OldButtonsGo()
{
    PresetWindow editor;
    editor.Add(u"Render"_s, {{u"Command"_s, u"/bin/render"_s}});
    editor.Add(u"Play"_s, {{u"Command"_s, u"/bin/play"_s}, {u"NewGroup"_s, u"1"_s}});
    editor.Open();
    const qsizetype count = editor.Bar().findChildren<QAction *>().size();
    for (int i = 0; i < 3; ++i) {
        editor.Bar().PresetsButtons();
        QCOMPARE(editor.Bar().findChildren<QAction *>().size(), count);
        QCOMPARE(editor.Bar().findChild<QAction *>(u"tbPresets_Play"_s), &editor.Button(u"Play"_s));
    }
    // A button may have the bar built anew while it runs: the preset editor does.
    ModalDriver modal;
    modal.Expect<frmPresets>([](frmPresets &dialog) {
        QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
        dialog.reject();
    });
    editor.desktop.keysDown = {KeyCode::Alt};
    const QPointer<QAction> old = &editor.Button(u"Render"_s);
    QTest::mouseClick(editor.Bar().widgetForAction(old), Qt::LeftButton, Qt::AltModifier);
    QTRY_VERIFY(old.isNull());
    QCOMPARE(editor.Labels(), u"| Play Render"_s);
    QCOMPARE(editor.Bar().findChildren<QAction *>().size(), count);
}

void PresetBarTest::OddNamesWork()
{
    PresetWindow editor;
    const QString odd = u"a/b=[c];\""_s;
    editor.Add(odd, {{u"Command"_s, u"/bin/odd"_s}});
    editor.Add(u"Q&A"_s, {{u"Command"_s, u"/bin/qa"_s}});
    editor.Open();
    QCOMPARE(editor.MenuRows()[0], u"&a/b=[c];\"\tCtrl+1"_s);
    QCOMPARE(editor.MenuRows()[1], u"&Q&&A\tCtrl+2"_s);
    QCOMPARE(editor.Labels(), u"a/b=[c];\" Q&&A"_s);
    editor.ExpectRun(u"/bin/odd"_s);
    editor.Button(odd).trigger();
    editor.ExpectRun(u"/bin/qa"_s);
    editor.Row(u"mnuPreset_1"_s).trigger();
}

void PresetBarTest::AFailedSaveKeepsThePresetFromRunning()
{
    PresetWindow editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}, {u"SaveFirst"_s, u"1"_s}});
    const QDir folder(editor.folder.path());
    QVERIFY(folder.mkdir(u"gone"_s));
    const QString file = editor.WriteFile(u"gone/a.orc"_s, "instr 1\n");
    editor.Open({file});
    QTest::keyClick(&editor.Text(), Qt::Key_Semicolon);
    QVERIFY(QDir(folder.filePath(u"gone"_s)).removeRecursively());
    const auto question = [](const QString &text) {
        return MessageBoxRequest{.text = text,
                                 .icon = BoxIcon::Warning,
                                 .buttons = BoxButtons::YesNo,
                                 .defaultAnswer = BoxAnswer::Yes};
    };
    editor.desktop.ExpectMessage(
        question(u"The folder of "_s + file + u" is not there any more. Save the text under another name?"_s),
        BoxAnswer::No);
    editor.Button(u"one"_s).trigger();
    editor.desktop.CheckAllCame();
    QVERIFY(editor.window->Context().document.Modified);
    // The folder is back, the file is not.
    QVERIFY(folder.mkdir(u"gone"_s));
    editor.desktop.ExpectMessage(question(file + u" is not there any more. Write it again?"_s),
                                 BoxAnswer::Yes);
    editor.ExpectRun(u"/bin/one"_s);
    editor.Button(u"one"_s).trigger();
    editor.desktop.CheckAllCame();
    QVERIFY(!editor.window->Context().document.Modified);
    QCOMPARE(ReadFileBytes(file), ";instr 1\r\n"_ba);
}

void PresetBarTest::AMistypedValueOfAPresetIsReported()
{
    PresetWindow editor;
    editor.Add(u"one"_s);
    editor.Add(u"broken"_s, {{u"NewGroup"_s, u"perhaps"_s}});
    editor.Add(u"two"_s);
    editor.desktop.ExpectMessage(MismatchBox(u"[broken] NewGroup=perhaps"_s), BoxAnswer::Cancel);
    editor.Open();
    editor.desktop.CheckAllCame();
    QCOMPARE(editor.Labels(), u"one broken two"_s);
    QVERIFY(editor.Bar().updatesEnabled());
    QCOMPARE(editor.MenuRows()[1], u"&broken\tCtrl+2"_s);
    // The bar is built again after the preset editor: what was told is not told again.
    editor.settings.SaveSetting(u"two"_s, u"NewGroup"_s, u"maybe"_s);
    editor.desktop.ExpectMessage(MismatchBox(u"[two] NewGroup=maybe"_s), BoxAnswer::Cancel);
    ModalDriver modal;
    modal.Expect<frmPresets>([](frmPresets &dialog) {
        QTest::keyClick(&dialog, Qt::Key_I, Qt::ControlModifier);
        QCOMPARE(dialog.findChild<QComboBox *>(u"cmbPreset"_s)->currentIndex(), 1);
        dialog.reject();
    });
    editor.Row(u"mnuPresetsBox"_s).trigger();
    QCoreApplication::processEvents();
    editor.desktop.CheckAllCame();
    QCOMPARE(editor.Labels(), u"broken one two"_s);
    QCOMPARE(editor.MenuRows()[0], u"&broken\tCtrl+1"_s);
}

int main(int argc, char **argv)
{
    return RunUiTest<PresetBarTest>(argc, argv);
}

#include "test_presetbar.moc"
