// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/uitest.h"

#include <QDialog>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

/// The guard of the other window tests.
class TestWatchdog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ClosesAStuckDialog();
    void LeavesAnAnsweredDialogAlone();
};

void TestWatchdog::ClosesAStuckDialog()
{
    QList<QByteArray> told;
    const ModalWatchdog watchdog(500, [&](const QByteArray &what) { told.append(what); });
    QDialog dialog;
    dialog.setWindowTitle(u"Nobody answers"_s);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(told, QList<QByteArray>{"stuck modal dialog: QDialog \"Nobody answers\""});
}

void TestWatchdog::LeavesAnAnsweredDialogAlone()
{
    QList<QByteArray> told;
    const ModalWatchdog watchdog(1000, [&](const QByteArray &what) { told.append(what); });
    for (int i = 0; i < 3; ++i) {
        QDialog dialog;
        QTimer::singleShot(400, &dialog, &QDialog::accept);
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    }
    QVERIFY(told.isEmpty());
}

} // namespace zelvane::test

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<zelvane::test::TestWatchdog>(argc, argv);
}

#include "test_watchdog.moc"
