// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/mediacontrol.h"
#include "shell/documentsteps.h"

#include <QString>
#include <QtGlobal>

namespace zelvane
{

struct EditorContext;

/// The controls of the player, as far as its logic works on them. Times in milliseconds.
class PlayerControls
{
public:
    virtual ~PlayerControls() = default;

    /// The slider, the time, and the commands stop and pause: those that need a sound.
    virtual void EnableSound(bool enabled) = 0;
    /// Whether the slider is enabled.
    virtual bool IsSoundEnabled() const = 0;
    /// Gives the keyboard to the text if the slider has it.
    virtual void LeaveSlider() = 0;

    /// Switches `Timer1`, whose ticks call Player::Tick.
    virtual void RunTimer(bool run) = 0;
    virtual void ShowPosition(int position) = 0;
    virtual void SetLength(int length) = 0;
    /// The text of `lblPos`, written only when it differs.
    virtual void ShowTime(const QString &time) = 0;
    /// Whether `lblPos` tells what is left of the sound: its tag and tooltip.
    virtual void ShowTimeMode(bool remaining) = 0;

    /// The picture of the play button, and its tooltip.
    virtual void ShowPlayButton(const QString &image, const QString &tooltip) = 0;
    /// Whether the button `loop` is pressed.
    virtual bool IsLooping() const = 0;
};

/// Minutes and seconds of a time in milliseconds, rounded to a second with halves to even: "1:02". Never less
/// than "0:00".
QString TimeText(qint64 time);

/// Plays one sound at a time, by commands to the media control service. What is to be done next is decided by
/// the service's own mode: the player keeps no state, so that it can not differ from what is heard. A sound
/// is closed, playing or paused; the controls are enabled while it is not closed, the timer runs while it
/// plays.
class Player : public SoundStep
{
public:
    /// Takes the notices of `media`. All parts outlive the player.
    Player(EditorContext &editor, MediaControl &media, PlayerControls &controls);

    /// Shows on the play button whether the document has a sound.
    void SearchSoundFile() override;

    /// Opens and plays a sound, and tells its facts in the status line. A failure is shown.
    void MCIopen(const QString &path) override;
    /// Plays on from where the sound is. A device that is busy is told to the user, and the sound closed;
    /// any other failure leaves all as it is.
    /// @return whether it is still open
    bool MCIplay();
    /// Pauses a sound that plays, resumes one that is paused.
    void MCIpause();
    /// Closes the sound.
    void MCIstop();

    // The commands of the Player menu that are more than one of these.

    /// Plays the open sound from its start, or else the sound of the document.
    void mnuPlay();
    void mnuOpenSoundfile();
    /// The menu comes up: its commands are about the sound that is open now.
    void MenuOpening();
    /// The path of the sound that was open when the menu came up, empty without one: the tag of
    /// `mnuSoundShell`.
    const QString &SoundShellTag() const { return m_soundShellTag; }

    /// Shows the position; for each tick of `Timer1`.
    void Tick();
    /// Swaps elapsed and remaining time.
    void SwapTimeMode();
    /// The slider is moved: the timer leaves it alone.
    void SliderTaken();
    /// Goes on from the slider's value, playing or paused as before.
    void SliderReleased(int value);
    /// The slider was let go where it was.
    void SliderKept();

    /// The program ends.
    void Close();

private:
    void SetPlayerEnabled(bool enabled);
    /// Opens the file as each type of device in turn. @return the last error code
    int MCItrytoOpen(const QString &path, int code);
    /// The end of the sound that plays, among other notices.
    void Notified(int notice);

    MediaAnswer Send(const QString &command) { return m_media.Send(command); }
    QString Mode();
    /// The number that an answer begins with, within 0 and the highest that the slider holds; 0 for a failed
    /// command.
    int Number(const QString &command);
    void Warn(int code);

    /// What the status line tells of the open sound.
    QString Facts(const QString &path, int &length);

    EditorContext &m_editor;
    MediaControl &m_media;
    PlayerControls &m_controls;
    bool m_remaining = false;
    QString m_soundShellTag;
};

} // namespace zelvane
