// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/canceldialogs.h"

#include <QApplication>
#include <QDialog>
#include <QScopedValueRollback>
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

bool g_asking = false;

bool MayCancel(QWidget &window)
{
    auto *const kept = dynamic_cast<KeepsWork *>(&window);
    if (!kept)
        return true;
    const QScopedValueRollback asking(g_asking, true);
    return kept->MayCancel();
}

} // namespace

bool CancelDialogs()
{
    // The question is the user's to answer, however often the end is asked for.
    if (g_asking)
        return false;
    for (int closed = 0; closed < MostWindows; ++closed) {
        if (QWidget *popup = QApplication::activePopupWidget()) {
            popup->close();
            continue;
        }
        QWidget *window = QApplication::activeModalWidget();
        if (!window)
            return true;
        if (!MayCancel(*window))
            return false;
        if (auto *dialog = qobject_cast<QDialog *>(window))
            dialog->done(QDialog::Rejected);
        else
            window->close();
    }
    return true;
}

void CancelDialogs(QObject &owner, std::function<void()> then)
{
    if (!CancelDialogs())
        return;
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
