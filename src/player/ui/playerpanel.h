// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QSlider;
class QTimer;
class QToolBar;

namespace zelvane
{

class Commands;

/// `PicPlayer`: the buttons `tbPlayer`, the position `SliderTime` (milliseconds) and the time `lblPos`.
/// Disabled until there is a sound; the buttons are those of the Player menu's rows.
class PlayerPanel : public QWidget
{
    Q_OBJECT

public:
    PlayerPanel(Commands &commands, QWidget *parent = nullptr);

    QToolBar *tbPlayer;
    QSlider *SliderTime;
    QLabel *lblPos;
    QTimer *Timer1; ///< runs only while a sound plays: the position is shown anew at each tick
};

} // namespace zelvane
