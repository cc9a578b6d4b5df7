// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/fileoperations.h"

#include <memory>
#include <QElapsedTimer>
#include <QString>

class QProgressDialog;
class QWidget;

namespace zelvane
{

/// A box that comes up over the window, or the dialog that stands over all windows, when a piece of work
/// takes long, with a button that stops it. The window is served while it stands, and takes nothing else.
class ProgressBox : public WorkProgress
{
public:
    static constexpr int PatienceMs = 500; ///< shorter work shows nothing

    /// @param patience milliseconds until the box comes up
    explicit ProgressBox(QWidget *window, int patience = PatienceMs);
    ~ProgressBox() override;

    void Begin(const QString &what) override;
    bool GoOn(qint64 done, qint64 total) override;
    void End() override;

private:
    QWidget *m_window;
    int m_patience;
    QString m_what;
    QElapsedTimer m_clock;
    bool m_stopped = false;
    std::unique_ptr<QProgressDialog> m_box;
};

} // namespace zelvane
