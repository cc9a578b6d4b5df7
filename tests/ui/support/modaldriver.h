// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/uitest.h"

#include <deque>
#include <functional>
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>
#include <QWidget>

namespace zelvane::test
{

/// Answers modal dialogs. Each expected dialog has a script, given before the dialog opens, which runs once
/// when it is on the screen and has to end it. A dialog that nobody expected, one that outlives its script,
/// and one that never comes fail the test; a stuck dialog is closed, so that the test ends.
class ModalDriver : public QObject
{
public:
    ModalDriver()
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalDriver::Look);
        m_timer.start(10);
        m_clock.start();
    }
    ~ModalDriver() override
    {
        if (!m_scripts.empty())
            QTest::qFail("an expected dialog has not come", __FILE__, __LINE__);
    }

    /// A script for the next dialog of this class.
    template <typename Dialog> void Expect(std::function<void(Dialog &)> script)
    {
        m_scripts.push_back([script = std::move(script)](QWidget &widget) {
            auto *dialog = qobject_cast<Dialog *>(&widget);
            if (dialog)
                script(*dialog);
            return dialog != nullptr;
        });
    }

private:
    void Look()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isVisible())
            return;
        if (dialog->property("driven").toBool()) {
            if (m_clock.elapsed() > Patience)
                Give(dialog, "a dialog is still open after its script");
            return;
        }
        dialog->setProperty("driven", true);
        m_clock.restart();
        if (m_scripts.empty()) {
            Give(dialog, "an unexpected dialog");
            return;
        }
        auto script = std::move(m_scripts.front());
        m_scripts.pop_front();
        // Not inside the timer's own call: a script may open the next dialog, which this timer has to see.
        QTimer::singleShot(0, dialog, [this, dialog, script] {
            if (!script(*dialog))
                Give(dialog, "a dialog of another class than the expected one");
        });
    }

    void Give(QWidget *dialog, const char *why)
    {
        const QByteArray text = QByteArray(why) + ": " + dialog->metaObject()->className() + " \"" +
                                dialog->windowTitle().toUtf8() + '"';
        QTest::qFail(text.constData(), __FILE__, __LINE__);
        m_clock.restart();
        dialog->close();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    std::deque<std::function<bool(QWidget &)>> m_scripts;
};

} // namespace zelvane::test
