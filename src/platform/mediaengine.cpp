// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/mediaengine.h"

#include "platform/audiooutput.h"
#include "platform/mediacommand.h"
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "platform/soundfile.h"
#include "platform/soundstream.h"

#include <algorithm>
#include <new>
#include <QMetaObject>
#include <system_error>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr QLatin1String DeviceType("waveaudio");

bool IsWord(const QString &word, const char *known)
{
    return word.compare(QLatin1String(known), Qt::CaseInsensitive) == 0;
}

int CodeOf(ErrorNumber number)
{
    switch (number) {
    case ErrorNumber::FileNotFound:
    case ErrorNumber::PathNotFound:
        return MediaError::FileNotFound;
    case ErrorNumber::TypeMismatch:
        return MediaError::NoSound;
    case ErrorNumber::OutOfMemory:
        return MediaError::OutOfMemory;
    default:
        return MediaError::FileNotReadable;
    }
}

} // namespace

struct MediaEngine::Failure {
    int code;
    QString detail = {};
};

MediaEngine::MediaEngine(std::unique_ptr<AudioOutput> output) : m_output(std::move(output)) {}

MediaEngine::~MediaEngine()
{
    Close();
}

MediaAnswer MediaEngine::Send(const QString &command)
{
    Failure failure{0};
    try {
        Settle();
        return {0, Do(command)};
    } catch (const Failure &met) {
        failure = met;
    } catch (const RunTimeError &error) {
        failure = {CodeOf(error.Number()), error.Description()};
    } catch (const std::bad_alloc &) {
        failure = {MediaError::OutOfMemory};
    }
    m_failedCode = failure.code;
    m_failedDetail = failure.detail;
    return {failure.code, {}};
}

QString MediaEngine::Do(const QString &command)
{
    const QStringList words = MediaWords(command);
    const QString verb = words.value(0);
    if (IsWord(verb, "open")) {
        Open(CutOpenCommand(command));
        return {};
    }
    if (IsWord(verb, "sysinfo"))
        return SystemInfo(words);
    const auto is = [&](const char *known, qsizetype fewest, qsizetype most) {
        if (!IsWord(verb, known))
            return false;
        if (words.size() < 2 || m_alias.compare(words.at(1), Qt::CaseInsensitive) != 0)
            throw Failure{MediaError::NotOpen};
        if (words.size() < fewest)
            throw Failure{MediaError::MissingWord};
        if (words.size() > most)
            throw Failure{MediaError::UnknownWord, words.at(most)};
        return true;
    };
    if (is("status", 3, 3))
        return Status(words.at(2));
    if (is("info", 3, 3))
        return Info(words.at(2));
    if (is("play", 2, 5)) {
        Play(words.mid(2));
    } else if (is("pause", 2, 2)) {
        Pause();
    } else if (is("resume", 2, 2)) {
        Resume();
    } else if (is("stop", 2, 2)) {
        Stop();
    } else if (is("close", 2, 2)) {
        Close();
    } else if (is("seek", 4, 4)) {
        if (!IsWord(words.at(2), "to"))
            throw Failure{MediaError::UnknownWord, words.at(2)};
        Seek(words.at(3));
    } else if (is("set", 5, 5)) {
        const QString value = words.mid(2).join(u' ');
        if (!IsWord(value, "time format milliseconds"))
            throw Failure{MediaError::UnknownWord, value};
    } else {
        throw Failure{MediaError::UnknownCommand, verb};
    }
    return {};
}

QString MediaEngine::SystemInfo(const QStringList &words) const
{
    if (words.size() < 3)
        throw Failure{MediaError::MissingWord};
    if (!IsWord(words.at(1), "all"))
        throw Failure{MediaError::UnknownWord, words.at(1)};
    if (words.size() == 3 && IsWord(words.at(2), "quantity"))
        return u"1"_s;
    if (!IsWord(words.at(2), "name") || words.size() > 4)
        throw Failure{MediaError::UnknownWord, words.last()};
    if (words.size() < 4)
        throw Failure{MediaError::MissingWord};
    if (words.at(3) != u"1"_s)
        throw Failure{MediaError::OutOfRange, words.at(3)};
    return DeviceType;
}

QString MediaEngine::Status(const QString &item)
{
    if (IsWord(item, "mode"))
        return m_mode == Mode::Playing ? u"playing"_s : m_mode == Mode::Paused ? u"paused"_s : u"stopped"_s;
    const SoundFormat &format = m_file->Format();
    if (IsWord(item, "position"))
        return QString::number(Milliseconds(Position()));
    if (IsWord(item, "length"))
        return QString::number(Milliseconds(format.frames));
    if (IsWord(item, "samplespersec"))
        return QString::number(format.rate);
    if (IsWord(item, "bitspersample"))
        return QString::number(format.bits);
    if (IsWord(item, "channels"))
        return QString::number(format.channels);
    if (IsWord(item, "bytespersec"))
        return QString::number(format.bytesPerSecond);
    throw Failure{MediaError::UnknownWord, item};
}

QString MediaEngine::Info(const QString &item) const
{
    if (IsWord(item, "file"))
        return m_path;
    if (IsWord(item, "product"))
        return u"Waveform audio"_s;
    throw Failure{MediaError::UnknownWord, item};
}

void MediaEngine::Open(const OpenCommand &command)
{
    if (!m_alias.isEmpty())
        throw Failure{MediaError::AlreadyOpen, m_path};
    if (command.path.isEmpty() || command.alias.isEmpty())
        throw Failure{MediaError::MissingWord};
    if (command.device.isEmpty() ? !IsSoundExtension(command.path)
                                 : command.device.compare(DeviceType, Qt::CaseInsensitive) != 0)
        throw Failure{MediaError::DeviceNotKnown, command.device};
    auto file = std::make_unique<SoundFile>(command.path);
    m_stream = std::make_unique<SoundStream>(*file, *m_output, [this] {
        QMetaObject::invokeMethod(
            &m_events, [this] { TellEnd(); }, Qt::QueuedConnection);
    });
    m_file = std::move(file);
    m_path = command.path;
    m_alias = command.alias;
    m_frame = 0;
}

void MediaEngine::Close()
{
    Stop();
    if (m_hasDevice)
        m_output->Close();
    m_hasDevice = false;
    m_stream.reset();
    m_file.reset();
    m_alias.clear();
    m_path.clear();
}

void MediaEngine::Play(const QStringList &arguments)
{
    qint64 frame = -1;
    bool notify = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (IsWord(arguments.at(i), "notify")) {
            notify = true;
        } else if (!IsWord(arguments.at(i), "from")) {
            throw Failure{MediaError::UnknownWord, arguments.at(i)};
        } else if (++i == arguments.size()) {
            throw Failure{MediaError::MissingWord};
        } else {
            frame = FrameAt(arguments.at(i));
        }
    }
    if (m_mode == Mode::Stopped || frame >= 0) {
        if (frame < 0)
            frame = m_frame;
        Halt();
        m_frame = frame;
        Begin(frame);
    } else if (m_mode == Mode::Paused) {
        GoOn();
    }
    m_mode = Mode::Playing;
    m_endDue = false;
    if (notify && m_notify)
        Tell(MediaNotice::Superseded);
    m_notify = m_notify || notify;
}

void MediaEngine::Pause()
{
    if (m_mode == Mode::Stopped)
        throw Failure{MediaError::NotPlaying};
    m_output->Hold();
    m_mode = Mode::Paused;
}

void MediaEngine::Resume()
{
    if (m_mode == Mode::Stopped)
        throw Failure{MediaError::NotPlaying};
    GoOn();
    m_mode = Mode::Playing;
}

/// Goes on after a pause. What its last block met while it was being held was not told then.
void MediaEngine::GoOn()
{
    m_output->Start();
    if (m_stream->HasEnded())
        QMetaObject::invokeMethod(
            &m_events, [this] { TellEnd(); }, Qt::QueuedConnection);
}

void MediaEngine::Stop()
{
    Halt();
    if (m_notify)
        Tell(MediaNotice::Aborted);
    m_notify = false;
    m_endDue = false;
}

void MediaEngine::Seek(const QString &target)
{
    const qint64 frame = IsWord(target, "start") ? 0 : FrameAt(target);
    Halt();
    m_frame = frame;
}

/// Takes note of an end that the reading thread has met since the last command. A paused sound stays paused
/// at its end: nothing ends or begins again while the user has stopped the time.
void MediaEngine::Settle()
{
    if (m_mode != Mode::Playing || !m_stream->HasEnded())
        return;
    Halt();
    m_endDue = m_notify;
}

/// Stops where the sound is heard.
void MediaEngine::Halt()
{
    if (m_mode == Mode::Stopped)
        return;
    m_output->Hold();
    m_frame = Position();
    m_stream->Stop();
    m_mode = Mode::Stopped;
}

void MediaEngine::Begin(qint64 frame)
{
    if (!m_hasDevice) {
        const SoundFormat &format = m_file->Format();
        const QString reason = m_output->Open(format.rate, format.channels, *m_stream);
        if (!reason.isEmpty())
            throw Failure{MediaError::DeviceBusy, reason};
        m_hasDevice = true;
    }
    m_output->Restart();
    try {
        m_stream->Begin(frame);
    } catch (const std::system_error &) {
        throw Failure{MediaError::DeviceBusy, u"The system has no thread for it"_s};
    }
    m_output->Start();
}

void MediaEngine::Tell(int notice)
{
    QMetaObject::invokeMethod(
        &m_events, [this, notice] { Notify(notice); }, Qt::QueuedConnection);
}

void MediaEngine::TellEnd()
{
    Settle();
    if (!m_endDue)
        return; // told already, or not of this play
    m_endDue = false;
    m_notify = false;
    Notify(MediaNotice::Successful);
}

qint64 MediaEngine::Position() const
{
    return m_mode == Mode::Stopped ? m_frame : m_frame + m_output->Heard();
}

qint64 MediaEngine::Milliseconds(qint64 frames) const
{
    return qint64(RoundHalfEven(double(frames) * 1000 / m_file->Format().rate));
}

qint64 MediaEngine::FrameAt(const QString &milliseconds) const
{
    bool isNumber = false;
    const qint64 number = milliseconds.toLongLong(&isNumber);
    if (!isNumber)
        throw Failure{MediaError::BadNumber, milliseconds};
    const SoundFormat &format = m_file->Format();
    if (number < 0 || number > Milliseconds(format.frames))
        throw Failure{MediaError::OutOfRange, milliseconds};
    return std::min(qint64(RoundHalfEven(double(number) * format.rate / 1000)), format.frames);
}

QString MediaEngine::ErrorText(int code) const
{
    const QString detail = code == m_failedCode ? m_failedDetail : QString();
    const auto text = [&](const QString &sentence) {
        if (detail.isEmpty())
            return sentence + u'.';
        return sentence + u".\n"_s + detail + (detail.endsWith(u'.') ? u""_s : u"."_s);
    };
    switch (code) {
    case 0:
        return u"The command was carried out."_s;
    case MediaError::NotOpen:
        return text(u"No sound is open under this name"_s);
    case MediaError::UnknownWord:
        return text(u"The player does not know a word of the command"_s);
    case MediaError::UnknownCommand:
        return text(u"The player does not know the command"_s);
    case MediaError::DeviceNotKnown:
        return text(u"The player knows no device for this kind of file"_s);
    case MediaError::OutOfMemory:
        return text(u"There is not enough memory to play the sound"_s);
    case MediaError::BadNumber:
        return text(u"A number of the command is none"_s);
    case MediaError::MissingWord:
        return text(u"A word of the command is missing"_s);
    case MediaError::FileNotFound:
        return text(u"The sound file cannot be found"_s);
    case MediaError::FileNotReadable:
        return text(u"The sound file cannot be read"_s);
    case MediaError::OutOfRange:
        return text(u"A number of the command is out of range"_s);
    case MediaError::AlreadyOpen:
        return text(u"A sound is open already"_s);
    case MediaError::NoSound:
        return text(u"The file holds no sound that can be played"_s);
    case MediaError::NotPlaying:
        return text(u"The sound is not being played"_s);
    case MediaError::DeviceBusy:
        return text(u"No sound device can be had to play the sound, or another program holds it"_s);
    default:
        return u"An error of the player that has no text (%1)."_s.arg(code);
    }
}

} // namespace zelvane
