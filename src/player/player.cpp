// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player.h"

#include "platform/desktop.h"
#include "platform/numbers.h"
#include "player/soundsearch.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"
#include "shell/statustexts.h"

#include <algorithm>
#include <limits>
#include <QFileInfo>
#include <QLatin1String>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

// As much of an answer as is shown, characters.
constexpr int RateCharacters = 12;
constexpr int ProductCharacters = 20;
constexpr int ErrorCharacters = 300;

constexpr int Second = 1000; ///< shorter sounds tell their length in milliseconds

constexpr QLatin1String PlayTooltip("Play/Restart");

/// "Mono", "Stereo", nothing for an unknown count, any other count as it was told.
QString ChannelText(int count, const QString &told)
{
    switch (count) {
    case 0:
        return {};
    case 1:
        return u"Mono"_s;
    case 2:
        return u"Stereo"_s;
    default:
        return told;
    }
}

/// " - 172.3Kbps" of bytes a second: kilobytes they are, whatever the unit says. Empty when it is unknown.
QString RateText(int bytesPerSecond)
{
    if (bytesPerSecond == 0)
        return {};
    const qint64 tenths = (qint64(bytesPerSecond) * 20 + 1024) / 2048; // halves away from zero
    return (u" - "_s + QString::number(tenths / 10) + u'.' + QString::number(tenths % 10) + u"Kbps"_s)
        .left(RateCharacters);
}

} // namespace

QString TimeText(qint64 time)
{
    const auto seconds = qint64(RoundHalfEven(double(std::max<qint64>(time, 0)) / Second));
    return QString::number(seconds / 60) + u':' + QString::number(seconds % 60).rightJustified(2, u'0');
}

Player::Player(EditorContext &editor, MediaControl &media, PlayerControls &controls)
    : m_editor(editor), m_media(media), m_controls(controls)
{
    m_media.SetNotified([this](int notice) { Notified(notice); });
    m_controls.ShowTimeMode(m_remaining);
    SetPlayerEnabled(false);
}

// The document's sound

void Player::SearchSoundFile()
{
    const QString sound = zelvane::SearchSoundFile(true, m_editor);
    if (sound.isEmpty())
        m_controls.ShowPlayButton(u"play"_s, PlayTooltip);
    else
        m_controls.ShowPlayButton(u"playable"_s, u"Play "_s + sound);
}

void Player::mnuPlay()
{
    const QString mode = Mode();
    if (mode == u"playing"_s || mode == u"paused"_s) {
        Send(u"seek gino to start"_s);
        MCIplay();
        return;
    }
    m_controls.ShowPlayButton(u"play"_s, PlayTooltip);
    const QString sound = zelvane::SearchSoundFile(false, m_editor);
    if (!sound.isEmpty())
        MCIopen(sound);
}

void Player::mnuOpenSoundfile()
{
    const QString sound =
        m_editor.desktop
            .OpenFileDialog({.filters = SoundFilters(),
                             .folder = SplitPath(PathPart::Folder, m_editor.document.CurrentFile)})
            .path;
    if (!sound.isEmpty())
        MCIopen(sound);
}

// The device

void Player::MCIopen(const QString &path)
{
    m_editor.status.Show(path + u" - loading..."_s);
    m_controls.RunTimer(false);
    Send(u"close gino"_s);
    const QString named = path.contains(u' ') ? u'"' + path + u'"' : path;
    int code = Send(u"open "_s + named + u" alias gino"_s).code;
    if (code == MediaError::DeviceNotKnown)
        code = MCItrytoOpen(path, code);
    if (code != 0) {
        Warn(code);
        m_editor.status.Show(path + u" - cannot load"_s);
        SetPlayerEnabled(false);
        return;
    }
    SetPlayerEnabled(true);
    if (!MCIplay()) { // it is heard before its facts are read
        m_editor.status.Show(path + u" - cannot load"_s);
        return;
    }
    int length = 0;
    const QString facts = Facts(path, length);
    if (length != 0)
        m_controls.SetLength(length);
    m_editor.status.Show(path + facts);
}

int Player::MCItrytoOpen(const QString &path, int code)
{
    const int quantity = Number(u"sysinfo all quantity"_s);
    for (int i = 1; i <= quantity; ++i) {
        const QString device = Send(u"sysinfo all name "_s + QString::number(i)).text;
        // The document's path, not the sound's, which has just stood there.
        m_editor.status.Show(m_editor.document.CurrentFile + u" - loading as "_s + device + u"..."_s);
        code = Send(u"open \""_s + path + u"\" alias gino type "_s + device).code;
        if (code == 0)
            break;
    }
    return code;
}

QString Player::Facts(const QString &path, int &length)
{
    const int rate = Number(u"status gino samplespersec"_s);
    const int bits = Number(u"status gino bitspersample"_s);
    const QString channels = Send(u"status gino channels"_s).text;
    if (Send(u"set gino time format milliseconds "_s).code == 0)
        length = Number(u"status gino length"_s);
    const int bytesPerSecond = Number(u"status gino bytespersec"_s);

    QString facts = u" - "_s;
    if (rate != 0)
        facts += QString::number(rate) + u"Hz "_s + QString::number(bits) + u"bit "_s +
                 ChannelText(int(Val(channels)), channels);
    else
        facts += Send(u"info gino product"_s).text.left(ProductCharacters).trimmed();
    facts += u" - duration: "_s + (length >= Second ? TimeText(length) : QString::number(length) + u"ms"_s);
    return facts + u" - size: "_s + ShortSizeText(QFileInfo(path).size()) + RateText(bytesPerSecond);
}

bool Player::MCIplay()
{
    const int code = Send(u"play gino notify"_s).code;
    if (code == 0)
        m_controls.RunTimer(true);
    if (code != MediaError::DeviceBusy)
        return true;
    Warn(code);
    Send(u"close gino"_s);
    SetPlayerEnabled(false);
    return false;
}

void Player::MCIpause()
{
    const QString mode = Mode();
    if (mode == u"playing"_s) {
        if (Send(u"pause gino"_s).code == 0)
            m_controls.RunTimer(false);
    } else if (mode == u"paused"_s) {
        if (Send(u"resume gino"_s).code == 0)
            m_controls.RunTimer(true);
    }
}

void Player::MCIstop()
{
    Send(u"stop gino"_s);
    Send(u"close gino"_s);
    SetPlayerEnabled(false);
}

void Player::Close()
{
    Send(u"close gino"_s);
}

void Player::Notified(int notice)
{
    if (notice != MediaNotice::Successful)
        return;
    const bool again = m_controls.IsLooping() && Send(u"play gino from 0 notify"_s).code == 0;
    if (!again)
        MCIstop(); // closed, so that the next play hears what was rendered meanwhile
}

void Player::SetPlayerEnabled(bool enabled)
{
    if (!enabled) {
        m_controls.RunTimer(false);
        m_controls.LeaveSlider();
    }
    m_controls.ShowPosition(0);
    m_controls.EnableSound(enabled);
    if (!enabled)
        m_controls.ShowTime({});
}

// The time and the slider

void Player::Tick()
{
    const int position = Number(u"status gino position"_s);
    m_controls.ShowPosition(position);
    const int time = m_remaining ? Number(u"status gino length"_s) - position : position;
    m_controls.ShowTime(TimeText(time));
}

void Player::SwapTimeMode()
{
    m_remaining = !m_remaining;
    m_controls.ShowTimeMode(m_remaining);
    Tick();
}

void Player::SliderTaken()
{
    m_controls.RunTimer(false);
}

void Player::SliderReleased(int value)
{
    const QString mode = Mode();
    Send(u"seek gino to "_s + QString::number(value));
    if (mode == u"playing"_s) {
        MCIplay();
    } else if (mode == u"paused"_s) {
        // So the device stands at the new place.
        Send(u"play gino"_s);
        Send(u"pause gino"_s);
    }
}

void Player::SliderKept()
{
    if (Mode() == u"playing"_s)
        m_controls.RunTimer(true);
}

// The menu

void Player::MenuOpening()
{
    m_soundShellTag = m_controls.IsSoundEnabled() ? Send(u"info gino file"_s).text : QString();
}

QString Player::Mode()
{
    return Send(u"status gino mode"_s).text;
}

int Player::Number(const QString &command)
{
    constexpr double most = std::numeric_limits<int>::max();
    return int(std::clamp(RoundHalfEven(Val(Send(command).text)), 0.0, most));
}

void Player::Warn(int code)
{
    m_editor.desktop.MessageBox(
        {.text = m_media.ErrorText(code).left(ErrorCharacters), .icon = BoxIcon::Warning});
}

} // namespace zelvane
