// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <functional>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QTimer>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class ChangedOnDiskTest : public QObject
{
    Q_OBJECT

    struct Piece {
        EditorWindow editor;
        QString path = editor.WriteFile(u"piece.orc"_s, "one\r\n");
        frmEditor &window = editor.Open({path});

        Piece() { BringForward(); }

        void BringForward()
        {
            window.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&window));
        }
        /// Another window comes to the front, and this one after it.
        void LookAway()
        {
            {
                QWidget other;
                other.show();
                other.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&other));
            }
            BringForward();
            QCoreApplication::processEvents();
        }
        void ExpectLoad(BoxAnswer answer, std::function<void()> during = {})
        {
            editor.desktop.ExpectMessage(
                {.text = path + u" was changed by another program. Load it again?"_s,
                 .icon = BoxIcon::Warning,
                 .buttons = BoxButtons::YesNo,
                 .defaultAnswer = editor.Text().Text() == u"one\n" ? BoxAnswer::Yes : BoxAnswer::No},
                answer, std::move(during));
        }
    };

private Q_SLOTS:
    void AskedWhenTheWindowBecomesActive()
    {
        Piece piece;
        piece.LookAway();
        piece.editor.WriteFile(u"piece.orc"_s, "two\r\n");
        QCoreApplication::processEvents(); // it is in front
        QCOMPARE(piece.editor.Text().Text(), u"one\n"_s);
        piece.ExpectLoad(BoxAnswer::Yes);
        piece.LookAway();
        QTRY_COMPARE(piece.editor.Text().Text(), u"two\n"_s);
        QVERIFY(!piece.window.Context().document.Modified);
    }

    void AskedOnceWhereTheTextIsToStay()
    {
        Piece piece;
        QTest::keyClicks(&piece.editor.Text(), u"x"_s);
        piece.editor.WriteFile(u"piece.orc"_s, "two\r\n");
        piece.ExpectLoad(BoxAnswer::No);
        piece.LookAway();
        piece.LookAway();
        QCoreApplication::processEvents();
        QCOMPARE(piece.editor.Text().Text(), u"xone\n"_s);
        piece.editor.desktop.CheckAllCame();
        piece.editor.Row(Cmd::mnuSave.RowName()).trigger();
        QFile file(piece.path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "xone\r\n"_ba);
    }

    void AFileThatIsWrittenWithoutAPauseLetsTheUserGetOn()
    {
        Piece piece;
        piece.LookAway();
        int asked = 0;
        const auto writtenMeanwhile = [&] {
            ++asked;
            QDialog box(&piece.window);
            box.setModal(true);
            box.show();
            box.activateWindow();
            QTRY_COMPARE(QApplication::activeWindow(), &box);
            piece.editor.WriteFile(u"piece.orc"_s, QByteArray::number(asked));
            box.close();
            piece.window.activateWindow();
        };
        piece.editor.WriteFile(u"piece.orc"_s, "two\r\n");
        piece.ExpectLoad(BoxAnswer::No, writtenMeanwhile);
        piece.ExpectLoad(BoxAnswer::No, writtenMeanwhile);
        piece.LookAway();
        QTRY_COMPARE(asked, 2);
        // A third question would be an unexpected one.
        QVERIFY(QTest::qWaitForWindowActive(&piece.window));
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
        QCOMPARE(piece.editor.Text().Text(), u"one\n"_s);
        // Whoever has really been away is asked.
        piece.ExpectLoad(BoxAnswer::Yes);
        piece.LookAway();
        QTRY_COMPARE(piece.editor.Text().Text(), u"2"_s);
    }

    void AnOpenDialogComesFirst()
    {
        Piece piece;
        QDialog dialog(&piece.window);
        QTimer::singleShot(0, &dialog, [&] {
            piece.editor.WriteFile(u"piece.orc"_s, "two\r\n");
            // The window behind may be given the focus for a moment.
            QEvent activation(QEvent::ActivationChange);
            QCoreApplication::sendEvent(&piece.window, &activation);
            QTimer::singleShot(50, &dialog, &QDialog::reject);
        });
        // An unexpected question fails here.
        dialog.exec();
        piece.ExpectLoad(BoxAnswer::Yes);
        piece.BringForward();
        QTRY_COMPARE(piece.editor.Text().Text(), u"two\n"_s);
    }
};

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<ChangedOnDiskTest>(argc, argv);
}

#include "test_changedondisk.moc"
