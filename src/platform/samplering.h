// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <QtGlobal>
#include <vector>

namespace zelvane
{

/// Frames of samples on their way from one thread that puts them in to one that takes them out. Neither ever
/// waits for the other.
class SampleRing
{
public:
    struct Space {
        float *samples = nullptr;
        int frames = 0;
    };

    SampleRing(int channels, int frames);

    /// Where the next frames go; less than all that is free where the ring's end lies between. For the thread
    /// that puts in.
    Space Free();
    /// So many frames were written there.
    void Put(int frames);

    int Capacity() const { return m_frames; }
    /// Frames that can be taken. For the thread that takes out.
    int Filled() const noexcept;
    /// Takes up to `frames` frames, those that came first. For the thread that takes out.
    /// @return frames taken
    int Take(float *samples, int frames) noexcept;

    /// Forgets all. For neither thread to be at work.
    void Clear();

private:
    int m_channels;
    int m_frames;
    std::vector<float> m_samples;
    std::atomic<qint64> m_put = 0; // since the start
    std::atomic<qint64> m_taken = 0;
};

} // namespace zelvane
