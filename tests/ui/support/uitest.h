// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

// The five seconds of the toolkit's own macros are a guess at the machine: here nothing but a failure waits
// so long.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT((expression), ::zelvane::test::Patience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expression, message)                                                                    \
    QTRY_VERIFY2_WITH_TIMEOUT((expression), (message), ::zelvane::test::Patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expression, expected)                                                                   \
    QTRY_COMPARE_WITH_TIMEOUT((expression), (expected), ::zelvane::test::Patience)

namespace zelvane::test
{

/// For how long a test waits for what has to come, in milliseconds.
constexpr int Patience = 60'000;

/// Closes a modal dialog that nobody has answered for some seconds, and fails the running test: without it a
/// test that meets an unexpected dialog would hang.
class ModalWatchdog : public QObject
{
public:
    /// @param patience milliseconds that one dialog may stay open
    /// @param stuck told what was closed; fails the running test if absent
    explicit ModalWatchdog(int patience = 2 * Patience,
                           std::function<void(const QByteArray &what)> stuck = {});

private:
    void Look();

    int m_patience;
    std::function<void(const QByteArray &)> m_stuck;
    int m_waited = 0;
    QPointer<QWidget> m_seen;
    QTimer m_timer;
};

/// Settings, home, runtime and program folder of one test program, in a folder that goes with it; C locale.
class OwnFolders
{
public:
    OwnFolders();

private:
    QTemporaryDir m_home;
};

/// Waits, with events handled, until the condition holds. @return false when it has not within Patience
bool Eventually(const std::function<bool()> &condition);

/// What a button of 16 pixels shows.
QImage Picture(const QIcon &icon);

/// Presses the mouse at one place of a widget, moves to another and releases it there.
void Drag(QWidget &widget, const QPoint &from, const QPoint &to);

/// 1 when an expectation of the scripted desktop failed outside QtTest's own count, else `result`.
int WithScriptedFailures(int result);

/// The main function of a window test: folders of its own, an application, the watchdog, and the test object.
template <typename Test> int RunUiTest(int argc, char **argv)
{
    const OwnFolders folders;
    QApplication application(argc, argv);
    ModalWatchdog watchdog;
    Test test;
    return WithScriptedFailures(QTest::qExec(&test, argc, argv));
}

} // namespace zelvane::test
