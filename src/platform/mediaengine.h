// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/mediacontrol.h"

#include <memory>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

class AudioOutput;
class SoundFile;
class SoundStream;
struct OpenCommand;

/// The media control service over sound files. Its one device type, "waveaudio", takes any file whose content
/// is a sound, whatever its name. Files are streamed: an open one takes the same memory whatever its length,
/// and it plays on as it was when its name is given to another. The sound device is taken by the first play
/// and given back by close.
class MediaEngine : public MediaControl
{
public:
    explicit MediaEngine(std::unique_ptr<AudioOutput> output);
    ~MediaEngine() override;
    Q_DISABLE_COPY_MOVE(MediaEngine)

    MediaAnswer Send(const QString &command) override;
    QString ErrorText(int code) const override;

private:
    enum class Mode { Stopped, Playing, Paused };
    struct Failure;

    QString Do(const QString &command);
    QString SystemInfo(const QStringList &words) const;
    QString Status(const QString &item);
    QString Info(const QString &item) const;
    void Open(const OpenCommand &command);
    void Close();
    void Play(const QStringList &arguments);
    void Pause();
    void Resume();
    void Stop();
    void Seek(const QString &target);

    void GoOn();
    void Settle();
    void Halt();
    void Begin(qint64 frame);
    void Tell(int notice);
    void TellEnd();
    qint64 Position() const;
    qint64 Milliseconds(qint64 frames) const;
    qint64 FrameAt(const QString &milliseconds) const;

    std::unique_ptr<AudioOutput> m_output;
    QString m_alias; // empty while nothing is open
    QString m_path;
    std::unique_ptr<SoundFile> m_file;
    std::unique_ptr<SoundStream> m_stream;
    bool m_hasDevice = false;
    Mode m_mode = Mode::Stopped;
    qint64 m_frame = 0;     // where it stands or, when it is not stopped, was begun
    bool m_notify = false;  // the end is to be told
    bool m_endDue = false;  // it has come, and waits for the event loop
    int m_failedCode = 0;   // of the last failure
    QString m_failedDetail; // why it failed, for the user
    QObject m_events;       // what the event loop holds for this object goes with it
};

} // namespace zelvane
