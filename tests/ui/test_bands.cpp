// SPDX-License-Identifier: GPL-3.0-or-later
// The bands above the text and the side panel, by mouse and by menu.

#include "shell/bands.h"
#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/splitter.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

class BandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void BandsHideAndTheTextGoesUp();
    void OpcodeListLoadsAtTheFirstShowing();
    void SidePanelHidesWithItsBands();
    void SplitterSetsThePanelsWidth();
    void BandCaptionsAreTheKeys();
    void BandGripsShareOutARow();
    void BandsJoinAndPartRows();
    void PanelHeaderSharesOutTheHeight();
    void BandAloneLeavesTheOtherItsShare();
    void TabGoesThroughTheBandsInTheirOrder();
};

void BandsTest::TabGoesThroughTheBandsInTheirOrder()
{
    EditorWindow editor;
    const QWidget *window = &editor.Open();
    editor.Find<QComboBox>(u"cmbOpcodes"_s).setFocus(); // while the text has the focus nothing is a stop
    QStringList stops;
    const QWidget *start = &editor.Text();
    for (const QWidget *one = start->nextInFocusChain(); one != start; one = one->nextInFocusChain()) {
        if (one->window() == window && one->focusPolicy() & Qt::TabFocus && !one->focusProxy())
            stops.append(one->objectName());
    }
    QCOMPARE(stops, (QStringList{u"cmbOpcodes"_s, u"tbPlayer_play"_s, u"tbPlayer_pause"_s, u"tbPlayer_stop"_s,
                                 u"tbPlayer_loop"_s, u"SliderTime"_s, u"tvwBrowse"_s, u"tvwRelated"_s}));
}

void BandsTest::BandsHideAndTheTextGoesUp()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    int row = 0;
    for (const WindowBand band : AllBands<WindowBand>()) {
        QVERIFY(bar.isVisible());
        const int height = bar.height();
        QAction &shown = editor.Row(u"mnuShowToolbar_"_s + QString::number(row++));
        shown.trigger();
        QVERIFY(!shown.isChecked());
        QVERIFY(!bar.IsBandVisible(band));
        QVERIFY(band == WindowBand::Presets || bar.height() < height);
    }
    QCOMPARE(row, 4);
    QVERIFY(!bar.isVisible());
    QCOMPARE(editor.Text().y(), 0);
    editor.Row(u"mnuShowToolbar_2"_s).trigger();
    QVERIFY(bar.isVisible());
    QVERIFY(editor.Find<QWidget>(u"PicPlayer"_s).isVisible());
    QCOMPARE(editor.Text().y(), bar.height() + 3);

    auto &status = editor.Find<QWidget>(u"picStatus"_s);
    QCOMPARE(editor.Text().geometry().bottom() + 1, status.y() - 3);
    editor.Row(u"mnuShowStatusbar"_s).trigger();
    QVERIFY(!status.isVisible());
    QCOMPARE(editor.Text().geometry().bottom() + 1, editor.Text().parentWidget()->height() - 3);
}

void BandsTest::OpcodeListLoadsAtTheFirstShowing()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::Band(WindowBand::Opcodes), false);
    editor.Open();
    auto &combo = editor.Find<QComboBox>(u"cmbOpcodes"_s);
    QCOMPARE(combo.count(), 0);
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    QCOMPARE(combo.count(), 4);
    editor.WriteFile(u"opcodes.txt"_s, "other\n");
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    editor.Row(u"mnuShowToolbar_1"_s).trigger();
    QCOMPARE(combo.count(), 4);

    EditorWindow shown;
    shown.Open();
    QCOMPARE(shown.Find<QComboBox>(u"cmbOpcodes"_s).count(), 4);
}

void BandsTest::SidePanelHidesWithItsBands()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    auto &splitter = editor.Find<Splitter>(u"Splitter"_s);
    QVERIFY(panel.isVisible() && splitter.isVisible());
    QVERIFY(editor.Find<QTreeView>(u"tvwBrowse"_s).isVisible());
    QVERIFY(editor.Find<QTreeView>(u"tvwRelated"_s).isVisible());
    QCOMPARE(editor.Text().x(), panel.width() + splitter.width());
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(panel.isVisible());
    QVERIFY(!editor.Find<QTreeView>(u"tvwBrowse"_s).isVisible());
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(!panel.isVisible() && !splitter.isVisible());
    QCOMPARE(editor.Text().x(), 0);
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(panel.isVisible() && splitter.isVisible());
    QCOMPARE(editor.Text().x(), panel.width() + splitter.width());
}

void BandsTest::SplitterSetsThePanelsWidth()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    auto &splitter = editor.Find<Splitter>(u"Splitter"_s);
    const int before = panel.width();
    const int text = editor.Text().width();
    QTest::mousePress(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QTest::mouseMove(&splitter, QPoint(41, 10));
    QMouseEvent move(QEvent::MouseMove, QPointF(41, 10), splitter.mapToGlobal(QPointF(41, 10)), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(&splitter, &move);
    const int dragged = splitter.x() - before;
    QVERIFY(dragged > 0);
    QCOMPARE(panel.width(), before);
    QTest::mouseRelease(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QCOMPARE(panel.width(), before + dragged);
    QCOMPARE(editor.Text().width(), text - dragged);
    // A click without a move leaves the width.
    QTest::mouseClick(&splitter, Qt::LeftButton, {}, QPoint(1, 10));
    QCOMPARE(panel.width(), before + dragged);
}

void BandsTest::BandCaptionsAreTheKeys()
{
    EditorWindow editor;
    editor.Open();
    auto *bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    const auto captions = [&bar] {
        QStringList all;
        for (const WindowBand band : AllBands<WindowBand>())
            all.append(bar->BandCaption(band));
        return all.join(u',');
    };
    QCOMPARE(captions(), u",,,"_s);
    const int grip = bar->GripOf(WindowBand::Opcodes).width();
    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.Open();
    bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(captions(), u"toolbar,opcodes,player,presets"_s);
    QVERIFY(bar->GripOf(WindowBand::Opcodes).width() > grip);
}

void BandsTest::BandGripsShareOutARow()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::BandRow(WindowBand::Player), false);
    editor.settings.SaveNumber(Keys::BandWidth(WindowBand::Opcodes), 300);
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bar.PlaceOf(WindowBand::Opcodes).top(), bar.PlaceOf(WindowBand::Player).top());
    QVERIFY(bar.PlaceOf(WindowBand::Presets).top() > bar.PlaceOf(WindowBand::Player).top());
    QCOMPARE(bar.PlaceOf(WindowBand::Opcodes).width(), 300);
    QCOMPARE(bar.PlaceOf(WindowBand::Player).right(), bar.rect().right());
    const QPoint grip = bar.GripOf(WindowBand::Player).center();
    Drag(bar, grip, grip + QPoint(50, 0));
    QCOMPARE(bar.PlaceOf(WindowBand::Opcodes).width(), 350);
    QCOMPARE(bar.PlaceOf(WindowBand::Player).left(), 350);
    QCOMPARE(bar.PlaceOf(WindowBand::Player).right(), bar.rect().right());
    // The grip does not push its own band out of the bar.
    Drag(bar, bar.GripOf(WindowBand::Player).center(), QPoint(5000, grip.y()));
    QVERIFY(bar.PlaceOf(WindowBand::Player).width() > bar.GripOf(WindowBand::Player).width());
    QCOMPARE(bar.PlaceOf(WindowBand::Player).right(), bar.rect().right());
}

void BandsTest::BandsJoinAndPartRows()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const int height = bar.height();
    const QPoint above(400, bar.PlaceOf(WindowBand::Opcodes).center().y());
    Drag(bar, bar.GripOf(WindowBand::Player).center(), above);
    QVERIFY(!bar.StartsRow(WindowBand::Player));
    QCOMPARE(bar.PlaceOf(WindowBand::Player).top(), bar.PlaceOf(WindowBand::Opcodes).top());
    QVERIFY(qAbs(bar.GripOf(WindowBand::Player).center().x() - 400) < 3);
    QVERIFY(bar.height() < height);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    Drag(bar, bar.GripOf(WindowBand::Player).center(),
         QPoint(400, bar.PlaceOf(WindowBand::Player).bottom() + 5));
    QVERIFY(bar.StartsRow(WindowBand::Player));
    QCOMPARE(bar.height(), height);
}

void BandsTest::PanelHeaderSharesOutTheHeight()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    const int before = panel.PlaceOf(PanelBand::Browse).height();
    QCOMPARE(before + panel.PlaceOf(PanelBand::Related).height(), panel.height());
    const QPoint header = panel.HeaderOf(PanelBand::Related).center();
    Drag(panel, header, header + QPoint(0, 30));
    QCOMPARE(panel.PlaceOf(PanelBand::Browse).height(), before + 30);
    QCOMPARE(panel.BandHeight(PanelBand::Browse), before + 30);
    QCOMPARE(panel.PlaceOf(PanelBand::Browse).height() + panel.PlaceOf(PanelBand::Related).height(),
             panel.height());
    editor.Row(u"mnuLabels_2"_s).trigger();
    QVERIFY(panel.AreCaptionsShown());
    QCOMPARE(panel.PlaceOf(PanelBand::Browse).height(), before + 30);
}

void BandsTest::BandAloneLeavesTheOtherItsShare()
{
    EditorWindow editor;
    editor.Open();
    editor.Row(u"mnuRelated"_s).trigger();
    QCOMPARE(editor.Find<SidePanel>(u"cc3Panel"_s).PlaceOf(PanelBand::Browse).height(),
             editor.Find<SidePanel>(u"cc3Panel"_s).height());
    QVERIFY(editor.window->close());
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    QVERIFY(!panel.IsBandVisible(PanelBand::Related));
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(panel.PlaceOf(PanelBand::Related).height() >= panel.height() / 2);
    // Without captions nothing stands above the first band.
    QCOMPARE(editor.Find<QTreeView>(u"tvwBrowse"_s).y(), 0);
    editor.Row(u"mnuLabels_2"_s).trigger();
    QCOMPARE(editor.Find<QTreeView>(u"tvwBrowse"_s).y(), panel.HeaderOf(PanelBand::Browse).height());
    QVERIFY(panel.HeaderOf(PanelBand::Browse).height() > 0);
}

int main(int argc, char **argv)
{
    return RunUiTest<BandsTest>(argc, argv);
}

#include "test_bands.moc"
