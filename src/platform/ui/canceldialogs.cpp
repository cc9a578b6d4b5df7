// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/canceldialogs.h"

#include <QApplication>
#include <QDialog>
#include <QThread>
#include <QTimer>
#include <utility>

namespace zelvane
{

namespace
{

constexpr int LookAgainMs = 10;
constexpr int MostWindows =
    100; ///< a window that opens itself again at its end must not keep the process alive

} // namespace

void CancelDialogs()
{
    for (int closed = 0; closed < MostWindows; ++closed) {
        if (QWidget *popup = QApplication::activePopupWidget()) {
            popup->close();
            continue;
        }
        QWidget *window = QApplication::activeModalWidget();
        if (!window)
            return;
        if (auto *dialog = qobject_cast<QDialog *>(window))
            dialog->done(QDialog::Rejected);
        else
            window->close();
    }
}

void CancelDialogs(QObject &owner, std::function<void()> then)
{
    CancelDialogs();
    // The loops that showed the dialogs end only when the control has gone back to them.
    if (QThread::currentThread()->loopLevel() > 1) {
        QTimer::singleShot(LookAgainMs, &owner, [&owner, next = std::move(then)]() mutable {
            CancelDialogs(owner, std::move(next));
        });
        return;
    }
    then();
}

} // namespace zelvane
