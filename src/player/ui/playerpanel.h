// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "player/player.h"

#include <QString>
#include <QWidget>

class QLabel;
class QTimer;
class QToolBar;

namespace zelvane
{

class Commands;
class TimeSlider;

/// `PicPlayer`: the buttons `tbPlayer`, the position `SliderTime` (milliseconds) and the time `lblPos`.
/// Disabled until there is a sound; the buttons are those of the Player menu's rows.
class PlayerPanel : public QWidget, public PlayerControls
{
    Q_OBJECT

public:
    /// @param text gets the keyboard when the slider has to give it away
    PlayerPanel(Commands &commands, QWidget *text, QWidget *parent = nullptr);

    void EnableSound(bool enabled) override;
    bool IsSoundEnabled() const override;
    void LeaveSlider() override;
    void RunTimer(bool run) override;
    void ShowPosition(int position) override;
    void SetLength(int length) override;
    void ShowTime(const QString &time) override;
    void ShowTimeMode(bool remaining) override;
    void ShowPlayButton(const QString &image, const QString &tooltip) override;
    bool IsLooping() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

    QToolBar *tbPlayer;
    TimeSlider *SliderTime;
    QLabel *lblPos;
    QTimer *Timer1; ///< runs only while a sound plays: the position is shown anew at each tick

Q_SIGNALS:
    /// The time has been clicked.
    void TimeClicked();

private:
    /// Takes the presses and releases of a click on the time.
    bool TakeClick(QEvent &event);

    Commands &m_commands;
    QWidget *TxtEdit;
    QString m_playImage;
};

} // namespace zelvane
