// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/samplering.h"

#include <algorithm>

namespace zelvane
{

SampleRing::SampleRing(int channels, int frames)
    : m_channels(channels), m_frames(frames), m_samples(size_t(channels) * size_t(frames))
{
}

SampleRing::Space SampleRing::Free()
{
    const qint64 put = m_put.load(std::memory_order_relaxed);
    const int used = int(put - m_taken.load(std::memory_order_acquire));
    const int at = int(put % m_frames);
    return {m_samples.data() + qsizetype(at) * m_channels, std::min(m_frames - used, m_frames - at)};
}

void SampleRing::Put(int frames)
{
    m_put.store(m_put.load(std::memory_order_relaxed) + frames, std::memory_order_release);
}

int SampleRing::Filled() const noexcept
{
    return int(m_put.load(std::memory_order_acquire) - m_taken.load(std::memory_order_relaxed));
}

int SampleRing::Take(float *samples, int frames) noexcept
{
    const qint64 taken = m_taken.load(std::memory_order_relaxed);
    const int count = std::min(frames, Filled());
    const int at = int(taken % m_frames);
    const int first = std::min(count, m_frames - at);
    std::copy_n(m_samples.data() + qsizetype(at) * m_channels, qsizetype(first) * m_channels, samples);
    std::copy_n(m_samples.data(), qsizetype(count - first) * m_channels,
                samples + qsizetype(first) * m_channels);
    m_taken.store(taken + count, std::memory_order_release);
    return count;
}

void SampleRing::Clear()
{
    m_put = 0;
    m_taken = 0;
}

} // namespace zelvane
