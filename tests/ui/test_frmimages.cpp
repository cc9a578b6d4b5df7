// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmimages.h"
#include "run/ui/presetimages.h"
#include "shell/ui/icons.h"
#include "support/uitest.h"

#include <memory>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class Picker
{
public:
    explicit Picker(int number = 0) : dialog(number)
    {
        dialog.show();
        dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&dialog))
            qFatal("the dialog does not become active");
    }

    IconView &Image(int row) const
    {
        auto *image = dialog.findChild<IconView *>(u"Img_"_s + QString::number(row));
        if (!image)
            qFatal("no image %d", row);
        return *image;
    }
    int Count() const { return int(dialog.findChildren<IconView *>().size()); }
    /// The row whose picture has a border, read off the screen; -1 for none, -2 for several.
    int Highlighted() const
    {
        int found = -1;
        for (int row = 0; row < Count(); ++row) {
            const QImage drawn = Image(row).grab().toImage();
            const QRgb border = dialog.palette().color(QPalette::Highlight).rgb();
            if (drawn.pixel(0, 0) == border && drawn.pixel(drawn.width() - 1, drawn.height() - 1) == border)
                found = found == -1 ? row : -2;
        }
        return found;
    }
    void Key(Qt::Key key) { QTest::keyClick(dialog.focusWidget(), key); }
    void MoveMouseTo(int row)
    {
        const QPoint at = Image(row).rect().center();
        QMouseEvent move(QEvent::MouseMove, QPointF(at), QPointF(Image(row).mapToGlobal(at)), Qt::NoButton,
                         {}, {});
        QCoreApplication::sendEvent(&Image(row), &move);
    }
    QString Name() const { return dialog.findChild<QLabel *>(u"lblName"_s)->text(); }

    frmImages dialog;
};

} // namespace

class TestFrmImages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ShowsAllImages()
    {
        Picker picker;
        QCOMPARE(picker.dialog.windowTitle(), u"Zelvane - Pick an image"_s);
        QVERIFY(picker.Count() >= 40);
        QCOMPARE(picker.Count(), PresetImagesEnd() - FirstPresetImage);
        QVERIFY(Icons::LoadImage(PresetImagesEnd()).isNull());
        for (int row = 0; row < picker.Count(); ++row) {
            QVERIFY(!picker.Image(row).Icon().isNull());
            QVERIFY2(!PresetImageName(row + FirstPresetImage).isEmpty(), "an image without a name");
            QCOMPARE(picker.Image(row).accessibleName(), PresetImageName(row + FirstPresetImage));
        }
        QCOMPARE(PresetImageName(PresetImagesEnd()), QString());
        QCOMPARE(PresetImageName(100), QString());
    }

    void WrapsAtTheWidthOfTheDialog()
    {
        Picker picker;
        int columns = 1;
        while (picker.Image(columns).y() == picker.Image(0).y())
            ++columns;
        QVERIFY(columns > 4);
        for (int row = 0; row < picker.Count(); ++row) {
            QCOMPARE(picker.Image(row).x(), picker.Image(row % columns).x());
            QCOMPARE(picker.Image(row).y(), picker.Image(row - row % columns).y());
        }
        // The dialog fits the grid: less than one image's width is left.
        const int used = picker.Image(columns - 1).geometry().right() - picker.Image(0).x() + 1;
        QVERIFY(picker.dialog.width() - used < picker.Image(0).width());
        QCOMPARE(picker.dialog.minimumSize(), picker.dialog.maximumSize());
    }

    void KeysMoveTheHighlight()
    {
        Picker picker;
        QCOMPARE(picker.Highlighted(), 0);
        QCOMPARE(picker.Name(), PresetImageName(101));
        picker.Key(Qt::Key_Up);
        QCOMPARE(picker.Highlighted(), 0);
        picker.Key(Qt::Key_Down);
        picker.Key(Qt::Key_Down);
        QCOMPARE(picker.Highlighted(), 2);
        picker.Key(Qt::Key_Up);
        QCOMPARE(picker.Highlighted(), 1);
        picker.Key(Qt::Key_Right);
        QCOMPARE(picker.Highlighted(), 2);
        picker.Key(Qt::Key_Left);
        QCOMPARE(picker.Highlighted(), 1);
        QCOMPARE(picker.Name(), PresetImageName(102));
        picker.Key(Qt::Key_End);
        picker.Key(Qt::Key_Down);
        QCOMPARE(picker.Highlighted(), picker.Count() - 1);
        picker.Key(Qt::Key_Home);
        QCOMPARE(picker.Highlighted(), 0);
        picker.Key(Qt::Key_Tab);
        QCOMPARE(picker.Highlighted(), 1);
        QVERIFY(picker.dialog.isVisible());
    }

    void StartsAtTheImageThatIsSet()
    {
        QCOMPARE(Picker(110).Highlighted(), 9);
        QCOMPARE(Picker(9999).Highlighted(), 0);
        QCOMPARE(Picker(-5).Highlighted(), 0);
    }

    void EnterPicks()
    {
        Picker picker(110);
        picker.Key(Qt::Key_Down);
        picker.Key(Qt::Key_Return);
        QVERIFY(!picker.dialog.isVisible());
        QCOMPARE(picker.dialog.result(), int(QDialog::Accepted));
        QCOMPARE(picker.dialog.Picked(), 111);
    }

    void EscCloses()
    {
        Picker picker(110);
        picker.Key(Qt::Key_Escape);
        QVERIFY(!picker.dialog.isVisible());
        QCOMPARE(picker.dialog.result(), int(QDialog::Rejected));
        QCOMPARE(picker.dialog.Picked(), 0);
    }

    void MouseMovesTheHighlightAndPicks()
    {
        Picker picker;
        picker.MoveMouseTo(17);
        QCOMPARE(picker.Highlighted(), 17);
        QCOMPARE(picker.Name(), PresetImageName(118));
        picker.Key(Qt::Key_Up);
        QCOMPARE(picker.Highlighted(), 16);
        QTest::mouseClick(&picker.Image(20), Qt::RightButton);
        QVERIFY(picker.dialog.isVisible());
        QTest::mouseClick(&picker.Image(20), Qt::LeftButton);
        QVERIFY(!picker.dialog.isVisible());
        QCOMPARE(picker.dialog.Picked(), 121);
    }

    void ButtonReleasedElsewherePicksNothing()
    {
        Picker picker;
        QTest::mousePress(&picker.Image(3), Qt::LeftButton);
        QTest::mouseRelease(&picker.Image(3), Qt::LeftButton, {}, QPoint(-30, 5));
        QVERIFY(picker.dialog.isVisible());
    }

    void ImagesAreSharpOnScreensOfAnyScale()
    {
        Picker picker;
        const QIcon icon = picker.Image(0).Icon();
        for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
            const QPixmap drawn = icon.pixmap(QSize(16, 16), scale);
            QCOMPARE(drawn.size(), QSize(qRound(16 * scale), qRound(16 * scale)));
            QCOMPARE(drawn.devicePixelRatio(), scale);
        }
        // Drawn anew, not magnified: some dot differs from its neighbour inside a block of two by two.
        const QImage large = icon.pixmap(QSize(16, 16), 2.0).toImage();
        bool finer = false;
        for (int y = 0; y < large.height(); y += 2) {
            for (int x = 0; x < large.width(); x += 2)
                finer = finer || large.pixel(x, y) != large.pixel(x + 1, y + 1);
        }
        QVERIFY(finer);
    }
};

int main(int argc, char **argv)
{
    return RunUiTest<TestFrmImages>(argc, argv);
}
#include "test_frmimages.moc"
