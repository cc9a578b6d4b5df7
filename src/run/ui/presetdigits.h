// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QKeyEvent;
class QWidget;

namespace zelvane
{

class PresetBar;

/// The digit keys of the main window that run the first twenty presets, taken before the control that has the
/// focus.
class PresetDigits : public QObject
{
    Q_OBJECT

public:
    PresetDigits(QWidget *window, PresetBar &bar);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool KeyPressed(const QKeyEvent &event);

    QWidget *m_window;
    PresetBar &m_bar;
};

} // namespace zelvane
