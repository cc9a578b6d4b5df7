// SPDX-License-Identifier: GPL-3.0-or-later
// What the pictures of controls show, measured from their pixels.

#include "language/languagekeys.h"
#include "platform/stylerun.h"
#include "platform/ui/systemcolours.h"
#include "platform/ui/textcontrol.h"
#include "run/ui/frmflags.h"
#include "shell/editorkeys.h"
#include "shell/settings.h"
#include "shell/ui/legiblestyle.h"
#include "support/editorwindow.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPalette>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QStyleOptionSlider>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

QPalette Light()
{
    QPalette palette(QColor(239, 239, 239));
    palette.setColor(QPalette::Base, Qt::white);
    return palette;
}

QPalette Dark()
{
    QPalette palette(QColor(49, 54, 59), QColor(42, 46, 50));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, QColor(252, 252, 252));
    return palette;
}

QImage PictureOf(QWidget &widget)
{
    return widget.grab().toImage();
}

/// The strongest contrast to `back` in a row of pixels.
double ContrastAlong(const QImage &picture, const QPoint &from, const QPoint &to, const QColor &back)
{
    double most = 1;
    const int steps = std::max(std::abs(to.x() - from.x()), std::abs(to.y() - from.y()));
    for (int i = 0; i <= steps; ++i) {
        const QPoint at = from + (to - from) * i / std::max(steps, 1);
        if (picture.rect().contains(at))
            most = std::max(most, Contrast(picture.pixelColor(at), back));
    }
    return most;
}

} // namespace

class LegibleStyleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void LinesAreSeen_data();
    void LinesAreSeen();
    void TheBoxesOfTheFlagsAreSeen_data();
    void TheBoxesOfTheFlagsAreSeen();
    void TextColoursAreRead_data();
    void TextColoursAreRead();
    void FreshTextIsReadToo();
    void MenusFitTheScreen();
    void ShortCaptionsStayWhole();
};

void LegibleStyleTest::initTestCase()
{
    QApplication::setStyle(new LegibleStyle(QStyleFactory::create(u"fusion"_s)));
}

void LegibleStyleTest::init()
{
    QApplication::setPalette(Light());
}

void LegibleStyleTest::LinesAreSeen_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << Light();
    QTest::newRow("dark") << Dark();
}

void LegibleStyleTest::LinesAreSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    const QColor window = palette.color(QPalette::Window);
    const QColor base = palette.color(QPalette::Base);

    const auto indicator = [](const QAbstractButton &button, QStyle::SubElement element) {
        QStyleOptionButton option;
        option.initFrom(&button);
        return button.style()->subElementRect(element, &option, &button);
    };
    QCheckBox check(u"Check"_s);
    check.resize(check.sizeHint());
    const QRect box = indicator(check, QStyle::SE_CheckBoxIndicator);
    const QImage checkPicture = PictureOf(check);
    for (const QPoint &side : {QPoint(box.left(), box.center().y()), QPoint(box.right(), box.center().y()),
                               QPoint(box.center().x(), box.top()), QPoint(box.center().x(), box.bottom())}) {
        const QColor frame = checkPicture.pixelColor(side);
        QVERIFY2(Contrast(frame, window) >= 3, qPrintable(frame.name()));
        QVERIFY2(Contrast(frame, checkPicture.pixelColor(box.center())) >= 3, qPrintable(frame.name()));
    }

    QRadioButton radio(u"Option"_s);
    radio.resize(radio.sizeHint());
    const QRect circle = indicator(radio, QStyle::SE_RadioButtonIndicator);
    const QImage radioPicture = PictureOf(radio);
    const QPoint middle = circle.center();
    for (const QPoint &out : {QPoint(-circle.width() / 2 - 1, 0), QPoint(0, -circle.height() / 2 - 1)}) {
        QVERIFY(ContrastAlong(radioPicture, middle, middle + out, window) >= 3);
        QVERIFY(ContrastAlong(radioPicture, middle, middle + out, base) >= 3);
    }

    QLineEdit field;
    QComboBox typing;
    typing.setEditable(true);
    for (QWidget *one : {static_cast<QWidget *>(&field), static_cast<QWidget *>(&typing)}) {
        one->resize(one->sizeHint());
        const QImage picture = PictureOf(*one);
        const QPoint centre = picture.rect().center();
        const QPoint edges[] = {QPoint(0, centre.y()), QPoint(picture.width() - 1, centre.y()),
                                QPoint(centre.x(), 0), QPoint(centre.x(), picture.height() - 1)};
        for (const QPoint &edge : edges) {
            const QColor frame = picture.pixelColor(edge);
            QVERIFY2(Contrast(frame, window) >= 3 && Contrast(frame, base) >= 3, qPrintable(frame.name()));
        }
    }

    QListWidget list;
    auto *item = new QListWidgetItem(u"Flag"_s, &list);
    item->setCheckState(Qt::Unchecked);
    list.resize(200, 100);
    const QRect row = list.visualItemRect(item);
    const QImage listPicture = PictureOf(list);
    const int y = list.viewport()->y() + row.center().y();
    QVERIFY(ContrastAlong(listPicture, QPoint(4, y), QPoint(12, y), base) >= 3);

    QMenu menu;
    menu.addAction(u"One"_s);
    QAction *separator = menu.addSeparator();
    menu.addAction(u"Two"_s);
    menu.resize(menu.sizeHint());
    const QImage menuPicture = PictureOf(menu);
    const QPoint inside = menuPicture.rect().center();
    const QPoint sides[] = {QPoint(0, inside.y()), QPoint(menuPicture.width() - 1, inside.y()),
                            QPoint(inside.x(), 0), QPoint(inside.x(), menuPicture.height() - 1)};
    for (const QPoint &side : sides) {
        const QColor frame = menuPicture.pixelColor(side);
        QVERIFY2(Contrast(frame, window) >= 3 && Contrast(frame, base) >= 3, qPrintable(frame.name()));
    }

    const QRect between = menu.actionGeometry(separator);
    QVERIFY(ContrastAlong(menuPicture, QPoint(inside.x(), between.top()),
                          QPoint(inside.x(), between.bottom()), base) >= 3);

    QSlider slider(Qt::Vertical);
    slider.setTickPosition(QSlider::TicksBothSides);
    slider.resize(slider.sizeHint());
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.orientation = Qt::Vertical;
    option.tickPosition = slider.tickPosition();
    const QRect handle =
        slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider);
    const QImage sliderPicture = PictureOf(slider);
    double ticks = 1; // beside the handle
    for (int x = 0; x < handle.left(); ++x)
        ticks = std::max(ticks,
                         ContrastAlong(sliderPicture, QPoint(x, 0), QPoint(x, slider.height() - 1), window));
    QVERIFY2(ticks >= 3, qPrintable(QString::number(ticks)));

    QTreeWidget tree;
    tree.setHeaderHidden(true);
    auto *root = new QTreeWidgetItem(&tree, {u"root"_s});
    auto *child = new QTreeWidgetItem(root, {u"child"_s});
    new QTreeWidgetItem(root, {u"other"_s});
    root->setExpanded(true);
    tree.resize(200, 120);
    const QImage treePicture = PictureOf(tree);
    const QRect line = tree.visualItemRect(child);
    const int level = tree.viewport()->y() + line.center().y();
    const int left = tree.viewport()->x() + line.left();
    const QColor across = treePicture.pixelColor(left - 2, level);
    QVERIFY2(Contrast(across, base) >= 3, qPrintable(across.name()));
    const int above = tree.viewport()->y() + line.top() + 1;
    QVERIFY(ContrastAlong(treePicture, QPoint(left - tree.indentation(), above), QPoint(left - 1, above),
                          base) >= 3);
}

void LegibleStyleTest::TheBoxesOfTheFlagsAreSeen_data()
{
    LinesAreSeen_data();
}

void LegibleStyleTest::TheBoxesOfTheFlagsAreSeen()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    TestContext context;
    frmFlags dialog(context.editor, nullptr, nullptr);
    auto &list = *dialog.findChild<QTreeWidget *>(u"lvwFlags"_s);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    list.setCurrentItem(nullptr);
    QTreeWidgetItem *item = nullptr; // one that asks for no value, and is not the current row
    for (int i = 1; i < list.topLevelItemCount() && !item; ++i) {
        if (list.topLevelItem(i)->text(1).isEmpty())
            item = list.topLevelItem(i);
    }
    QVERIFY(item);
    const QRect row = list.visualItemRect(item);
    const auto picture = [&] { return list.viewport()->grab().toImage(); };
    const QImage empty = picture();
    const QColor base = palette.color(QPalette::Base);
    // The frame: the first of the row's pixels that is not background.
    const QPoint start(row.left(), row.center().y());
    QVERIFY(ContrastAlong(empty, start, start + QPoint(12, 0), base) >= 3);
    {
        const QSignalBlocker quiet(list);
        item->setCheckState(0, Qt::Checked);
    }
    // The mark: what has changed, against what was there.
    const QImage checked = picture();
    double mark = 1;
    for (int y = row.top(); y <= row.bottom(); ++y) {
        for (int x = row.left(); x < row.left() + 24; ++x)
            mark = std::max(mark, Contrast(checked.pixelColor(x, y), empty.pixelColor(x, y)));
    }
    QVERIFY2(mark >= 3, qPrintable(QString::number(mark)));
}

void LegibleStyleTest::TextColoursAreRead_data()
{
    LinesAreSeen_data();
}

void LegibleStyleTest::TextColoursAreRead()
{
    QFETCH(QPalette, palette);
    QApplication::setPalette(palette);
    EditorWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "; a comment\na1 oscil 1, 2 ; \"x\"\nprints \"text\"\n")});
    auto &text = editor.Text();
    const auto colour = [&text](unsigned message, int style) {
        return ResolveColour(quint32(text.SendScintilla(message, long(style))), {});
    };
    const QColor back = palette.color(QPalette::Base);
    for (int style = 0; style < StyleClassCount; ++style) {
        QCOMPARE(colour(QsciScintillaBase::SCI_STYLEGETBACK, style), back);
        const QColor fore = colour(QsciScintillaBase::SCI_STYLEGETFORE, style);
        QVERIFY2(Contrast(fore, back) >= 4.5, qPrintable(QString::number(style) + u' ' + fore.name()));
    }
}

void LegibleStyleTest::FreshTextIsReadToo()
{
    QApplication::setPalette(Light());
    for (const bool stored : {false, true}) {
        EditorWindow editor;
        editor.settings.SaveFlag(Keys::SystemColors, false);
        editor.settings.SaveColour(Keys::BackColor, 0x202020);
        if (stored)
            editor.settings.SaveColour(Keys::FontColor, 0x303030);
        editor.Open();
        auto &text = editor.Text();
        const auto colour = [&text](unsigned message) {
            return ResolveColour(quint32(text.SendScintilla(message, long(StyleClass::Text))), {});
        };
        const QColor fore = colour(QsciScintillaBase::SCI_STYLEGETFORE);
        const QColor back = colour(QsciScintillaBase::SCI_STYLEGETBACK);
        QCOMPARE(back, QColor(0x20, 0x20, 0x20));
        if (stored)
            QCOMPARE(fore, QColor(0x30, 0x30, 0x30)); // the user's own choice
        else
            QVERIFY2(Contrast(fore, back) >= 4.5, qPrintable(fore.name()));
    }
}

void LegibleStyleTest::MenusFitTheScreen()
{
    QMenu menu;
    QString path = u"&1 /home/somebody"_s;
    while (path.size() < 600)
        path += u"/a folder with a long name"_s;
    path += u"/the-piece.csd"_s;
    QAction *recent = menu.addAction(path);
    menu.addAction(u"&New...\tCtrl+Shift+N"_s);
    const int screen = menu.screen()->availableGeometry().width();
    QVERIFY2(menu.sizeHint().width() <= screen, qPrintable(QString::number(menu.sizeHint().width())));
    QVERIFY(menu.sizeHint().width() > screen / 2);
    QCOMPARE(recent->text(), path);

    // Both ends are drawn: the row differs where either of them does.
    menu.resize(menu.sizeHint());
    const QImage before = PictureOf(menu);
    const QRect row = menu.actionGeometry(recent);
    const auto halves = [&](const QImage &picture) {
        return std::pair(picture.copy(QRect(row.topLeft(), QSize(row.width() / 2, row.height()))),
                         picture.copy(QRect(row.topLeft() + QPoint(row.width() / 2, 0), row.size() / 2)));
    };
    recent->setText(QString(path).replace(u"the-piece.csd"_s, u"the-score.csd"_s));
    menu.resize(menu.sizeHint());
    QVERIFY(halves(PictureOf(menu)).second != halves(before).second);
    QString other = path;
    recent->setText(other.replace(u"somebody"_s, u"nobodyyy"_s));
    menu.resize(menu.sizeHint());
    QVERIFY(halves(PictureOf(menu)).first != halves(before).first);
}

void LegibleStyleTest::ShortCaptionsStayWhole()
{
    // As the style itself draws them.
    QMenu menu;
    for (const QString &caption : {u"&New...\tCtrl+N"_s, u"Save &as..."_s, u"Convert\tCtrl+Shift+X"_s})
        menu.addAction(caption);
    menu.addMenu(u"S&hell operation"_s);
    const auto rows = [&menu] {
        menu.resize(menu.sizeHint());
        const QImage picture = PictureOf(menu);
        QList<QImage> images;
        for (QAction *action : menu.actions())
            images.append(picture.copy(menu.actionGeometry(action).adjusted(1, 1, -1, -1)));
        return images;
    };
    const QList<QImage> legible = rows();
    QProxyStyle plain(QStyleFactory::create(u"fusion"_s));
    menu.setStyle(&plain);
    QCOMPARE(legible, rows());
    menu.setStyle(nullptr);
}

int main(int argc, char **argv)
{
    return RunUiTest<LegibleStyleTest>(argc, argv);
}

#include "test_legiblestyle.moc"
