// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <utility>

namespace zelvane
{

/// What a media command came to: error code 0 and the answer, which many commands leave empty; or the code of
/// a failure and no answer.
struct MediaAnswer {
    int code = 0;
    QString text = {};

    bool operator==(const MediaAnswer &) const = default;
};

/// The error codes. DeviceNotKnown and DeviceBusy decide what the player does next; all others it tells to
/// the user by their text.
namespace MediaError
{
inline constexpr int NotOpen = 257; ///< nothing is open under the alias
inline constexpr int UnknownWord = 259;
inline constexpr int UnknownCommand = 261;
inline constexpr int DeviceNotKnown = 263; ///< open: the extension tells no device type, or the type is none
inline constexpr int OutOfMemory = 264;
inline constexpr int BadNumber = 270;
inline constexpr int MissingWord = 273;
inline constexpr int FileNotFound = 275;
inline constexpr int FileNotReadable = 276; ///< no right to read it, or no file with bytes of its own
inline constexpr int OutOfRange = 282;
inline constexpr int AlreadyOpen = 289;
inline constexpr int NoSound = 296; ///< open: the content is no sound that can be read
inline constexpr int NotPlaying = 302;
inline constexpr int DeviceBusy = 320; ///< play: no sound device can be had
} // namespace MediaError

/// How a "play ... notify" ended. The first is the end of the sound; the player ignores the others.
namespace MediaNotice
{
inline constexpr int Successful = 1;
inline constexpr int Superseded = 2; ///< another "notify" took its place
inline constexpr int Aborted = 4;    ///< by stop or close
} // namespace MediaNotice

/// The media control service: takes commands in words, about one sound at a time, open under an alias.
///
///   open PATH alias NAME [type DEVICE]     the path in double quotes or not; without a type the extension
///                                          must tell it; DEVICE is one of those that sysinfo names
///   close NAME, stop NAME, pause NAME, resume NAME
///   play NAME [from MS] [notify]           goes on from the position, or from MS
///   seek NAME to start, seek NAME to MS    stops at the position; "play" goes on from there
///   status NAME mode                       "playing", "paused", or "stopped"
///   status NAME samplespersec | bitspersample | channels | bytespersec
///   status NAME length | position          milliseconds; the position is the one that is heard
///   set NAME time format milliseconds      the only format there is
///   info NAME product | file
///   sysinfo all quantity, sysinfo all name N     device types, N from 1
///
/// Words are told apart by blanks, and their case does not matter. "notify" holds until the sound ends, also
/// across pause, resume, seek and a play without it. All of it, the notices too, is on the thread of the
/// event loop; a notice never comes in the middle of a command.
class MediaControl
{
public:
    virtual ~MediaControl() = default;

    /// Does a command. Never throws, and shows nothing: the caller decides about failures.
    virtual MediaAnswer Send(const QString &command) = 0;
    /// The text for an error code, for the user. A second line says why when the code is that of the last
    /// failure.
    virtual QString ErrorText(int code) const = 0;

    /// Who is told, by a MediaNotice, when a "play ... notify" has ended. May send commands.
    void SetNotified(std::function<void(int)> notified) { m_notified = std::move(notified); }

protected:
    void Notify(int notice) const
    {
        if (m_notified)
            m_notified(notice);
    }

private:
    std::function<void(int)> m_notified;
};

} // namespace zelvane
