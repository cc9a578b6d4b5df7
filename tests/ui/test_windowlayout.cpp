// SPDX-License-Identifier: GPL-3.0-or-later
// What of the window's layout is kept, and how it comes back.

#include "shell/bands.h"
#include "shell/documentkeys.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/splitter.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QPoint>
#include <QScreen>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class WindowLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void LayoutComesBack();
    void LayoutIsWrittenInOrder();
    void MinimizedWindowKeepsTheStoredPlace();
    void OffScreenPlacesComeBack_data();
    void OffScreenPlacesComeBack();
    void StoredPlaceOffTheScreenComesBack();
    void AWindowThatStepsAsideIsStoredWhereItCameFrom();
    void StoredSizeFitsTheScreen();
    void TheWindowHasALeastSize();
    void APanelDraggedToNothingComesBack();
    void TwipsAreOf1440ToTheInch();
    void WordWrapIsKept();
    void WrappedTextFollowsTheWindow();
};

void WindowLayoutTest::LayoutComesBack()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.Open();
    editor.window->setGeometry(37, 41, 723, 611);
    auto *bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    auto *panel = &editor.Find<SidePanel>(u"cc3Panel"_s);
    QVERIFY(bar->AreCaptionsShown());
    bar->SetStartsRow(WindowBand::Player, false);
    bar->SetBandWidth(WindowBand::Opcodes, 287);
    panel->SetBandHeight(PanelBand::Browse, 140);
    const QPoint header = panel->HeaderOf(PanelBand::Related).center();
    Drag(*panel, header, header + QPoint(0, 11));
    const int bandHeight = panel->BandHeight(PanelBand::Browse);
    auto *splitter = &editor.Find<Splitter>(u"Splitter"_s);
    Drag(*splitter, QPoint(1, 5), QPoint(35, 5));
    const int panelWidth = panel->width();
    for (const QString &row : {u"mnuShowToolbar_1"_s, u"mnuShowStatusbar"_s, u"mnuLabels_0"_s,
                               u"mnuLabels_1"_s, u"mnuLabels_2"_s, u"mnuRelated"_s, u"mnuWordWrap"_s})
        editor.Row(row).trigger();
    editor.Find<QAction>(u"mnuLoop"_s).setChecked(true);
    editor.window->CommandTable().Run(Cmd::mnuFontSize[FontSizeChange::Increase]);
    const TextFont font = editor.Text().CurrentFont();
    const QRect place = editor.window->geometry();
    QVERIFY(editor.window->close());

    editor.Open();
    bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    panel = &editor.Find<SidePanel>(u"cc3Panel"_s);
    QCOMPARE(editor.window->geometry(), place);
    QCOMPARE(bar->IsBandVisible(WindowBand::Opcodes), false);
    QCOMPARE(bar->BandWidth(WindowBand::Opcodes), 287);
    QCOMPARE(bar->StartsRow(WindowBand::Opcodes), true);
    QCOMPARE(bar->StartsRow(WindowBand::Player), false);
    QCOMPARE(panel->width(), panelWidth);
    for (const QString &row : {u"mnuLabels_0"_s, u"mnuLabels_1"_s, u"mnuLabels_2"_s, u"mnuWordWrap"_s,
                               u"mnuBrowse"_s, u"mnuLoop"_s, u"mnuShowToolbar_0"_s})
        QVERIFY2(editor.Row(row).isChecked(), qPrintable(row));
    for (const QString &row : {u"mnuShowToolbar_1"_s, u"mnuShowStatusbar"_s, u"mnuRelated"_s})
        QVERIFY2(!editor.Row(row).isChecked(), qPrintable(row));
    QVERIFY(editor.Find<QAction>(u"tbPlayer_loop"_s).isChecked());
    QVERIFY(!editor.Find<QWidget>(u"picStatus"_s).isVisible());
    QCOMPARE(editor.Text().CurrentFont(), font);
    QVERIFY(editor.Text().WordWrap());
    editor.Row(u"mnuRelated"_s).trigger();
    QCOMPARE(panel->BandHeight(PanelBand::Browse), bandHeight);
}

void WindowLayoutTest::LayoutIsWrittenInOrder()
{
    EditorWindow editor;
    editor.settings.DeleteSetting(u"Options"_s);
    editor.settings.SaveNumber(Keys::Startup, 2);
    editor.settings.SaveNumber(Keys::Used, 7);
    editor.Open();
    editor.settings.DeleteSetting(u"Options"_s, u"Used"_s);
    QVERIFY(editor.window->close());
    QStringList keys;
    for (const auto &[key, value] : editor.settings.GetAllSettings(u"Options"_s))
        keys.append(key);
    QCOMPARE(
        keys.join(u' '),
        u"Startup Window X Y Width Height Font FontItalic FontBold FontSize WordWrap Labels PresetsLabels "
        "PanelLabels CodeOutline RelatedFiles LoopMode Band1 Band2 Band3 Band4 StatusBar BandWidth1 BandRow1 "
        "BandWidth2 BandRow2 BandWidth3 BandRow3 BandWidth4 BandRow4 Used PanelWidth PanelBandHeight1 "
        "PanelBandRow1 PanelBandHeight2 PanelBandRow2"_s);
    const auto value = [&](const QString &key) { return editor.settings.GetSetting(u"Options"_s, key); };
    QCOMPARE(value(u"Used"_s), u"2"_s);
    QCOMPARE(value(u"Window"_s), u"0"_s);
    QCOMPARE(value(u"Band1"_s), u"-1"_s);
    QCOMPARE(value(u"LoopMode"_s), u"0"_s);
    QCOMPARE(value(u"Width"_s).toDouble(), editor.window->width() * 1440.0 / editor.window->logicalDpiX());
}

void WindowLayoutTest::MinimizedWindowKeepsTheStoredPlace()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, 600);
    editor.settings.SaveNumber(Keys::Width, 9000);
    editor.Open();
    editor.window->showMinimized();
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.Number(Keys::X, 0), 600.0);
    QCOMPARE(editor.settings.Number(Keys::Width, 0), 9000.0);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Window"_s, u"none"_s), u"none"_s);
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Height"_s, u"none"_s), u"none"_s);

    editor.Open();
    editor.window->showMaximized();
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.GetSetting(u"Options"_s, u"Window"_s), u"2"_s);
    QCOMPARE(editor.settings.Number(Keys::X, 0), 600.0);
    QCOMPARE(editor.settings.Number(Keys::Width, 0), 9000.0);
    editor.Open();
    QVERIFY(editor.window->isMaximized());
}

void WindowLayoutTest::OffScreenPlacesComeBack_data()
{
    QTest::addColumn<QRect>("stored");
    QTest::addColumn<QRect>("shown");
    const QRect screen(0, 0, 800, 600);
    QTest::newRow("inside") << QRect(100, 50, 400, 300) << QRect(100, 50, 400, 300);
    QTest::newRow("partly left") << QRect(-200, 50, 400, 300) << QRect(0, 50, 400, 300);
    QTest::newRow("partly right") << QRect(500, 50, 400, 300) << QRect(400, 50, 400, 300);
    QTest::newRow("partly below") << QRect(100, 500, 400, 300) << QRect(100, 300, 400, 300);
    QTest::newRow("far left") << QRect(-5000, 50, 400, 300) << QRect(0, 50, 400, 300);
    QTest::newRow("above") << QRect(100, -40, 400, 300) << QRect(100, 0, 400, 300);
    QTest::newRow("below") << QRect(100, 9000, 400, 300) << QRect(100, 300, 400, 300);
    QTest::newRow("too large and away") << QRect(3000, 3000, 4000, 4000) << screen;
    QTest::newRow("too large") << QRect(40, 40, 960, 680) << screen;
    QTest::newRow("too wide") << QRect(40, 40, 960, 500) << QRect(0, 40, 800, 500);
    QTest::newRow("on two screens") << QRect(700, 100, 400, 300) << QRect(700, 100, 400, 300);
    QTest::newRow("second screen") << QRect(900, 100, 400, 300) << QRect(900, 100, 400, 300);
}

void WindowLayoutTest::OffScreenPlacesComeBack()
{
    QFETCH(QRect, stored);
    QFETCH(QRect, shown);
    std::vector<QRect> screens = {QRect(0, 0, 800, 600)};
    if (stored.left() == 900 || stored.left() == 700)
        screens.emplace_back(800, 0, 1000, 800);
    QCOMPARE(OnScreen(stored, screens), shown);
}

void WindowLayoutTest::StoredPlaceOffTheScreenComesBack()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, -90000);
    editor.settings.SaveNumber(Keys::Y, 1e30);
    editor.settings.SaveNumber(Keys::Width, 6000);
    editor.settings.SaveNumber(Keys::Height, 0);
    editor.Open();
    const QRect screen = editor.window->screen()->availableGeometry();
    const QRect place = editor.window->frameGeometry();
    const QRect seen = screen & place;
    QVERIFY2(screen.contains(place.topLeft()), qPrintable(QDebug::toString(place)));
    QVERIFY2(seen.width() == place.width() && seen.height() >= 160, qPrintable(QDebug::toString(place)));
    QCOMPARE(editor.window->width(), FromTwips(6000, editor.window->logicalDpiX()));
}

void WindowLayoutTest::AWindowThatStepsAsideIsStoredWhereItCameFrom()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, 600);
    editor.settings.SaveNumber(Keys::Y, 300);
    editor.settings.SaveNumber(Keys::Width, 6000);
    editor.settings.SaveNumber(Keys::Height, 6000);
    editor.Open();
    const QPoint place = editor.window->pos();
    editor.window->StepAside();
    QCOMPARE(editor.window->pos(), place + QPoint(28, 28));
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.Number(Keys::X, 0), 600.0);
    QCOMPARE(editor.settings.Number(Keys::Y, 0), 300.0);

    // Moved by the user, it is stored where it stands.
    editor.Open();
    editor.window->StepAside();
    editor.window->move(place + QPoint(5, 7));
    QVERIFY(editor.window->close());
    QCOMPARE(editor.settings.Number(Keys::X, 0), ToTwips(place.x() + 5, editor.window->logicalDpiX()));
    QCOMPARE(editor.settings.Number(Keys::Y, 0), ToTwips(place.y() + 7, editor.window->logicalDpiX()));

    // There is no room in the last corner.
    const QRect screen = editor.window->screen()->availableGeometry();
    editor.Open();
    editor.window->move(screen.bottomRight() - QPoint(editor.window->width(), editor.window->height()));
    editor.window->StepAside();
    QVERIFY2(screen.contains(editor.window->frameGeometry()),
             qPrintable(QDebug::toString(editor.window->frameGeometry())));
}

void WindowLayoutTest::StoredSizeFitsTheScreen()
{
    EditorWindow editor;
    editor.settings.SaveNumber(Keys::X, 600);
    editor.settings.SaveNumber(Keys::Y, 600);
    editor.settings.SaveNumber(Keys::Width, 90000);
    editor.settings.SaveNumber(Keys::Height, 90000);
    editor.Open();
    const QRect screen = editor.window->screen()->availableGeometry();
    QVERIFY2(screen.contains(editor.window->frameGeometry()),
             qPrintable(QDebug::toString(editor.window->frameGeometry())));
    QVERIFY(editor.window->width() > screen.width() - 10 && editor.window->height() > screen.height() - 40);
}

void WindowLayoutTest::TheWindowHasALeastSize()
{
    EditorWindow editor;
    editor.Open();
    editor.window->resize(10, 10);
    QVERIFY2(editor.window->width() >= 300 && editor.window->height() >= 200,
             qPrintable(QDebug::toString(editor.window->size())));
    QVERIFY2(editor.Text().height() >= 40, qPrintable(QString::number(editor.Text().height())));
}

void WindowLayoutTest::APanelDraggedToNothingComesBack()
{
    EditorWindow editor;
    editor.Open();
    auto *panel = &editor.Find<SidePanel>(u"cc3Panel"_s);
    const int before = panel->width();
    Drag(editor.Find<Splitter>(u"Splitter"_s), QPoint(1, 5), QPoint(-2000, 5));
    QCOMPARE(panel->width(), 0);
    editor.Row(u"mnuBrowse"_s).trigger();
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY2(panel->isVisible() && panel->width() >= 100, qPrintable(QString::number(panel->width())));
    QCOMPARE(panel->width(), before);

    Drag(editor.Find<Splitter>(u"Splitter"_s), QPoint(1, 5), QPoint(-2000, 5));
    QVERIFY(editor.window->close());
    editor.Open();
    QVERIFY(editor.Find<SidePanel>(u"cc3Panel"_s).width() >= 100);
}

void WindowLayoutTest::TwipsAreOf1440ToTheInch()
{
    QCOMPARE(ToTwips(100, 96), 1500.0);
    QCOMPARE(FromTwips(1500, 96), 100);
    QCOMPARE(FromTwips(14401, 96), 960);
    QCOMPARE(FromTwips(1e300, 96), FromTwips(1e7, 96));
    for (int pixels = -100; pixels < 3000; ++pixels)
        QCOMPARE(FromTwips(ToTwips(pixels, 120), 120), pixels);
}

void WindowLayoutTest::WordWrapIsKept()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::WordWrap, true);
    editor.Open({editor.WriteFile(u"a.txt"_s, QByteArray(2000, 'x') + "\n")});
    QVERIFY(editor.Text().WordWrap());
    QVERIFY(editor.Row(u"mnuWordWrap"_s).isChecked());
    QVERIFY(!editor.window->Context().document.Modified);
    editor.Row(u"mnuWordWrap"_s).trigger();
    QVERIFY(!editor.Text().WordWrap());
    QVERIFY(!editor.window->Context().document.Modified);
}

void WindowLayoutTest::WrappedTextFollowsTheWindow()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::WordWrap, true);
    const QString file = editor.WriteFile(u"long.txt"_s, QByteArray("word ").repeated(200) + '\n');
    editor.Open();
    editor.window->resize(800, 600);
    editor.window->Documents().OpenFile(file);
    const auto rows = [&] { return editor.Text().SendScintilla(QsciScintillaBase::SCI_WRAPCOUNT, 0L); };
    QVERIFY(Eventually([&] { return rows() > 1; }));
    const long wide = rows();
    editor.window->resize(500, 600);
    QVERIFY(Eventually([&] { return rows() > wide; }));
    editor.window->resize(800, 600);
    QVERIFY(Eventually([&] { return rows() == wide; }));
}

int main(int argc, char **argv)
{
    return RunUiTest<WindowLayoutTest>(argc, argv);
}

#include "test_windowlayout.moc"
