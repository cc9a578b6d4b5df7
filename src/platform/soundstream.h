// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiooutput.h"
#include "platform/samplering.h"

#include <atomic>
#include <functional>
#include <QtGlobal>
#include <thread>

namespace zelvane
{

class SoundFile;

/// Carries a sound from its file to the output: a thread of its own reads ahead, the output's thread takes.
/// Begin and Stop are called while the output is held.
class SoundStream : public AudioSource
{
public:
    /// @param ended called by the reading thread when the last frame has been heard
    SoundStream(SoundFile &file, const AudioOutput &output, std::function<void()> ended);
    ~SoundStream() override;
    Q_DISABLE_COPY_MOVE(SoundStream)

    /// Begins to read at a frame of the file. @throws std::system_error when there is no thread to be had
    void Begin(qint64 frame);
    void Stop();
    /// Whether all has been heard since Begin, to the end of the file. For any thread.
    bool HasEnded() const { return m_ended; }

    int Pull(float *samples, int frames) noexcept override;

private:
    void Run(qint64 frame);
    void WakeReader() noexcept;

    SoundFile &m_file;
    const AudioOutput &m_output;
    std::function<void()> m_tellEnded;
    SampleRing m_ring;
    std::atomic<int> m_wakes = 0; // counts what the reader may wait for
    std::atomic<bool> m_stopping = false;
    std::atomic<bool> m_allRead = false; // to the end of the file
    std::atomic<bool> m_ended = false;
    std::thread m_reader;
};

} // namespace zelvane
