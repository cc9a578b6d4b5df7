// SPDX-License-Identifier: GPL-3.0-or-later
// The bands above the text and the side panel, by mouse and by menu.

#include "shell/layoutkeys.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/splitter.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QTreeWidget>

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
    QCOMPARE(stops, (QStringList{u"cmbOpcodes"_s, u"SliderTime"_s, u"tvwBrowse"_s, u"tvwRelated"_s}));
}

void BandsTest::BandsHideAndTheTextGoesUp()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bar.BandCount(), 4);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    for (int n = 0; n < 4; ++n) {
        QVERIFY(bar.isVisible());
        const int height = bar.height();
        editor.Row(u"mnuShowToolbar_"_s + QString::number(n)).trigger();
        QVERIFY(!editor.Row(u"mnuShowToolbar_"_s + QString::number(n)).isChecked());
        QVERIFY(!bar.IsBandVisible(n));
        QVERIFY(n == 3 || bar.height() < height);
    }
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
    editor.settings.SaveFlag(Keys::Band(2), false);
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
    QVERIFY(editor.Find<QTreeWidget>(u"tvwBrowse"_s).isVisible());
    QVERIFY(editor.Find<QTreeWidget>(u"tvwRelated"_s).isVisible());
    QCOMPARE(editor.Text().x(), panel.width() + splitter.width());
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(panel.isVisible());
    QVERIFY(!editor.Find<QTreeWidget>(u"tvwBrowse"_s).isVisible());
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
        for (int band = 0; band < bar->BandCount(); ++band)
            all.append(bar->BandCaption(band));
        return all.join(u',');
    };
    QCOMPARE(captions(), u",,,"_s);
    const int grip = bar->GripOf(1).width();
    editor.settings.SaveFlag(Keys::BandLabels, true);
    editor.Open();
    bar = &editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(captions(), u"toolbar,opcodes,player,presets"_s);
    QVERIFY(bar->GripOf(1).width() > grip);
}

void BandsTest::BandGripsShareOutARow()
{
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::BandRow(3), false);
    editor.settings.SaveNumber(Keys::BandWidth(2), 300);
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    QCOMPARE(bar.PlaceOf(1).top(), bar.PlaceOf(2).top());
    QVERIFY(bar.PlaceOf(3).top() > bar.PlaceOf(2).top());
    QCOMPARE(bar.PlaceOf(1).width(), 300);
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
    const QPoint grip = bar.GripOf(2).center();
    Drag(bar, grip, grip + QPoint(50, 0));
    QCOMPARE(bar.PlaceOf(1).width(), 350);
    QCOMPARE(bar.PlaceOf(2).left(), 350);
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
    // The grip does not push its own band out of the bar.
    Drag(bar, bar.GripOf(2).center(), QPoint(5000, grip.y()));
    QVERIFY(bar.PlaceOf(2).width() > bar.GripOf(2).width());
    QCOMPARE(bar.PlaceOf(2).right(), bar.rect().right());
}

void BandsTest::BandsJoinAndPartRows()
{
    EditorWindow editor;
    editor.Open();
    auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const int height = bar.height();
    const QPoint above(400, bar.PlaceOf(1).center().y());
    Drag(bar, bar.GripOf(2).center(), above);
    QVERIFY(!bar.StartsRow(2));
    QCOMPARE(bar.PlaceOf(2).top(), bar.PlaceOf(1).top());
    QVERIFY(qAbs(bar.GripOf(2).center().x() - 400) < 3);
    QVERIFY(bar.height() < height);
    QCOMPARE(editor.Text().y(), bar.height() + 3);
    Drag(bar, bar.GripOf(2).center(), QPoint(400, bar.PlaceOf(2).bottom() + 5));
    QVERIFY(bar.StartsRow(2));
    QCOMPARE(bar.height(), height);
}

void BandsTest::PanelHeaderSharesOutTheHeight()
{
    EditorWindow editor;
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    const int before = panel.PlaceOf(0).height();
    QCOMPARE(before + panel.PlaceOf(1).height(), panel.height());
    const QPoint header = panel.HeaderOf(1).center();
    Drag(panel, header, header + QPoint(0, 30));
    QCOMPARE(panel.PlaceOf(0).height(), before + 30);
    QCOMPARE(panel.BandHeight(0), before + 30);
    QCOMPARE(panel.PlaceOf(0).height() + panel.PlaceOf(1).height(), panel.height());
    editor.Row(u"mnuLabels_2"_s).trigger();
    QVERIFY(panel.AreCaptionsShown());
    QCOMPARE(panel.PlaceOf(0).height(), before + 30);
}

void BandsTest::BandAloneLeavesTheOtherItsShare()
{
    EditorWindow editor;
    editor.Open();
    editor.Row(u"mnuRelated"_s).trigger();
    QCOMPARE(editor.Find<SidePanel>(u"cc3Panel"_s).PlaceOf(0).height(),
             editor.Find<SidePanel>(u"cc3Panel"_s).height());
    QVERIFY(editor.window->close());
    editor.Open();
    auto &panel = editor.Find<SidePanel>(u"cc3Panel"_s);
    QVERIFY(!panel.IsBandVisible(1));
    editor.Row(u"mnuRelated"_s).trigger();
    QVERIFY(panel.PlaceOf(1).height() >= panel.height() / 2);
    // Without captions nothing stands above the first band.
    QCOMPARE(editor.Find<QTreeWidget>(u"tvwBrowse"_s).y(), 0);
    editor.Row(u"mnuLabels_2"_s).trigger();
    QCOMPARE(editor.Find<QTreeWidget>(u"tvwBrowse"_s).y(), panel.HeaderOf(0).height());
    QVERIFY(panel.HeaderOf(0).height() > 0);
}

int main(int argc, char **argv)
{
    return RunUiTest<BandsTest>(argc, argv);
}

#include "test_bands.moc"
