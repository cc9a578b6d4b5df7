// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/programinfo.h"
#include "shell/ui/formsplash.h"
#include "support/uitest.h"

#include <QLabel>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

class TestFormSplash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TakesTheSizeOfThePicture()
    {
        FormSplash splash;
        QCOMPARE(splash.size(), QSize(480, 300));
        splash.ShowNow();
        QVERIFY(splash.isVisible());
        QVERIFY2(splash.grab().toImage().pixelColor(5, 5).blue() > 100, "the picture is not painted");
    }

    void WritesThreeLinesAtTheLowerRight_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("fromBottom");
        QTest::newRow("version") << u"lblVersion"_s << u"Version "_s + ProgramVersion() << 64;
        QTest::newRow("legal line") << u"lblCopyRight"_s << LegalLine() << 40;
        QTest::newRow("web") << u"lblWeb"_s << QString::fromUtf16(WebAddress) << 16;
    }

    void WritesThreeLinesAtTheLowerRight()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(int, fromBottom);
        FormSplash splash;
        splash.ShowNow();
        const auto *line = splash.findChild<QLabel *>(name);
        QVERIFY(line);
        QCOMPARE(line->text(), text);
        QCOMPARE(line->geometry().right() + 1, splash.width() - 16);
        QCOMPARE(line->geometry().bottom() + 1, splash.height() - fromBottom);
        QVERIFY(line->alignment() & Qt::AlignRight);
        QVERIFY2(line->sizeHint().width() <= line->width(), "the line is cut");
    }

    void StaysAboveItsOwner()
    {
        QWidget owner;
        FormSplash splash;
        splash.ShowNow();
        splash.SetOwner(owner);
        QCOMPARE(splash.windowHandle()->transientParent(), owner.windowHandle());
    }
};

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<TestFormSplash>(argc, argv);
}
#include "test_formsplash.moc"
