// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/soundstream.h"

#include "platform/soundfile.h"

#include <algorithm>
#include <utility>

namespace zelvane
{

namespace
{

constexpr int ChunkFrames = 2048;
constexpr int MostSamples = 1 << 20;

/// Half a second, so that a slow disk is not heard, but no more memory than a sound of two channels needs
/// where there are very many.
int RingFrames(const SoundFormat &format)
{
    return std::max(std::min(format.rate / 2, MostSamples / format.channels), ChunkFrames);
}

} // namespace

SoundStream::SoundStream(SoundFile &file, const AudioOutput &output, std::function<void()> ended)
    : m_file(file),
      m_output(output),
      m_tellEnded(std::move(ended)),
      m_ring(file.Format().channels, RingFrames(file.Format()))
{
}

SoundStream::~SoundStream()
{
    Stop();
}

void SoundStream::Begin(qint64 frame)
{
    Stop();
    m_ring.Clear();
    m_allRead = m_ended = false;
    m_stopping = false;
    m_reader = std::thread([this, frame] { Run(frame); });
}

void SoundStream::Stop()
{
    if (!m_reader.joinable())
        return;
    m_stopping = true;
    WakeReader();
    m_reader.join();
}

int SoundStream::Pull(float *samples, int frames) noexcept
{
    // A block that is not there as a whole comes later, so that the beginning is not torn.
    const bool isEnough = m_allRead || m_ring.Filled() >= std::min(frames, m_ring.Capacity() / 2);
    const int taken = isEnough ? m_ring.Take(samples, frames) : 0;
    WakeReader();
    return taken;
}

void SoundStream::WakeReader() noexcept
{
    m_wakes.fetch_add(1);
    m_wakes.notify_one();
}

void SoundStream::Run(qint64 frame)
{
    m_file.Seek(frame, [this] { return !m_stopping; });
    qint64 written = 0;
    int last = 0; // the wake that came last when all had been read
    for (;;) {
        // Before the look at m_stopping: the wake of a stop that comes between would be taken for an old one.
        const int seen = m_wakes;
        if (m_stopping)
            return;
        if (!m_allRead) {
            const SampleRing::Space space = m_ring.Free();
            if (space.frames > 0) {
                const int read = m_file.Read(space.samples, std::min(space.frames, ChunkFrames));
                m_ring.Put(read);
                written += read;
                if (read == 0) {
                    last = m_wakes;
                    m_allRead = true;
                }
                continue;
            }
        } else if (seen != last && m_output.Heard() >= written) {
            m_ended = true;
            m_tellEnded();
            return;
        }
        // The output pulls on after the end, so that this looks again until all has been heard. A sound
        // without frames lasts for one pull, or playing it in a loop would take all of the processor.
        m_wakes.wait(seen);
    }
}

} // namespace zelvane
