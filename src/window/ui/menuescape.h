// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QMenuBar;

namespace zelvane
{

/// Esc in a menu of the bar leaves the bar, too, so that the keyboard is back where it came from: the toolkit
/// would keep it in the bar until the next Esc.
class MenuEscape : public QObject
{
    Q_OBJECT

public:
    /// @param bar has its menus; becomes the parent
    explicit MenuEscape(QMenuBar *bar);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void LeaveBar();

    QMenuBar *m_bar;
};

} // namespace zelvane
