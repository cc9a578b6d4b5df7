// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

namespace zelvane
{

/// While the text has the focus no control of its window is a tab stop, so that the text control gets the Tab
/// key.
class TabStops : public QObject
{
    Q_OBJECT

public:
    TabStops(QWidget *window, QWidget *text);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void TakeAway();
    void GiveBack();

    QWidget *m_window;
    std::vector<std::pair<QPointer<QWidget>, Qt::FocusPolicy>>
        m_taken; ///< what the controls had before the text took the focus
};

} // namespace zelvane
