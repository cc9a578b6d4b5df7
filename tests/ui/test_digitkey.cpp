// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/digitkey.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

class DigitKeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheCharacterDecidesWhereItIsADigit()
    {
        for (int digit = 0; digit <= 9; ++digit)
            QCOMPARE(DigitKey(Event(Qt::Key_0 + digit, 0)), digit);
        QCOMPARE(DigitKey(Event(Qt::Key_A, 0)), -1);
    }

    void ThePlaceDecidesWhereTheLayoutHasOtherCharacters()
    {
        QCOMPARE(DigitKey(Event(Qt::Key_Ampersand, 10), u"xcb"_s), 1);
        QCOMPARE(DigitKey(Event(Qt::Key_Ccedilla, 18), u"xcb"_s), 9);
        QCOMPARE(DigitKey(Event(Qt::Key_Agrave, 19), u"wayland"_s), 0);
        QCOMPARE(DigitKey(Event(Qt::Key_Escape, 9), u"xcb"_s), -1);
        QCOMPARE(DigitKey(Event(Qt::Key_ParenRight, 20), u"xcb"_s), -1);
        QCOMPARE(DigitKey(Event(Qt::Key_Ampersand, 10), u"offscreen"_s), -1);
    }

    void TheKeypadHasNone() { QCOMPARE(DigitKey(Event(Qt::Key_1, 87, Qt::KeypadModifier), u"xcb"_s), -1); }

private:
    static QKeyEvent Event(int key, quint32 scanCode, Qt::KeyboardModifiers held = {})
    {
        return QKeyEvent(QEvent::KeyPress, key, held | Qt::ControlModifier, scanCode, 0, 0);
    }
};

QTEST_MAIN(DigitKeyTest)
#include "test_digitkey.moc"
