// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/uitest.h"

#include <clocale>
#include <cstdio>
#include <gtest/gtest.h>
#include <QDialog>
#include <QMouseEvent>

namespace zelvane::test
{

namespace
{

constexpr int LookEvery = 250;

} // namespace

ModalWatchdog::ModalWatchdog(int patience, std::function<void(const QByteArray &)> stuck)
    : m_patience(patience), m_stuck(std::move(stuck))
{
    if (!m_stuck)
        m_stuck = [](const QByteArray &what) { QTest::qFail(what.constData(), __FILE__, __LINE__); };
    connect(&m_timer, &QTimer::timeout, this, &ModalWatchdog::Look);
    m_timer.start(LookEvery);
}

void ModalWatchdog::Look()
{
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog || dialog != m_seen) {
        m_seen = dialog;
        m_waited = 0;
        return;
    }
    m_waited += LookEvery;
    if (m_waited < m_patience)
        return;
    m_waited = 0;
    const QByteArray what = QByteArrayLiteral("stuck modal dialog: ") + dialog->metaObject()->className() +
                            " \"" + dialog->windowTitle().toUtf8() + '"';
    m_stuck(what);
    if (auto *box = qobject_cast<QDialog *>(dialog))
        box->reject();
    else
        dialog->close();
}

OwnFolders::OwnFolders()
{
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "ZELVANE_HOME"})
        qputenv(name, m_home.path().toUtf8());
    for (const char *name : {"SFDIR", "SSDIR", "SADIR", "INCDIR"})
        qunsetenv(name);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::setlocale(LC_NUMERIC, "C");
}

bool Eventually(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, Patience);
}

QImage Picture(const QIcon &icon)
{
    return icon.pixmap(QSize(16, 16)).toImage().convertToFormat(QImage::Format_ARGB32);
}

void Drag(QWidget &widget, const QPoint &from, const QPoint &to)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), widget.mapToGlobal(QPointF(to)), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(&widget, &move);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}

int WithScriptedFailures(int result)
{
    if (!::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed())
        return result;
    std::puts("FAIL!  : the scripted desktop met an unexpected or missing question");
    return result == 0 ? 1 : result;
}

} // namespace zelvane::test
