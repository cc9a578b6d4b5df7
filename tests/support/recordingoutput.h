// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiooutput.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <QString>
#include <vector>

namespace zelvane::test
{

/// A sound device that takes what the test lets it take, and keeps it.
class RecordingOutput : public AudioOutput
{
public:
    QString refusal; ///< why there is no device
    bool isOpen = false;
    bool isRunning = false;
    int opened = 0; ///< how often
    int rate = 0;
    int channels = 0;
    std::function<void()> holding; ///< runs before it is held
    std::vector<float> samples;    ///< all that was pulled, since the beginning

    /// The device takes one block. @return frames that the source had, 0 when it pulls nothing
    int Pull(int frames)
    {
        if (!isOpen || !isRunning)
            return 0;
        std::vector<float> block(size_t(frames) * size_t(channels));
        const int pulled = m_source->Pull(block.data(), frames);
        samples.insert(samples.end(), block.begin(), block.begin() + qsizetype(pulled) * channels);
        m_pulled += pulled;
        return pulled;
    }
    /// So many of the pulled frames are still on their way to the ear.
    void SetUnheard(qint64 frames) { m_unheard = frames; }

    QString Open(int newRate, int newChannels, AudioSource &source) override
    {
        if (!refusal.isEmpty())
            return refusal;
        isOpen = true;
        isRunning = false;
        ++opened;
        rate = newRate;
        channels = newChannels;
        m_source = &source;
        m_pulled = 0;
        return {};
    }
    void Close() override { isOpen = isRunning = false; }
    void Start() override { isRunning = true; }
    void Hold() override
    {
        if (holding)
            holding();
        isRunning = false;
    }
    qint64 Heard() const override { return std::max<qint64>(m_pulled - m_unheard, 0); }
    void Restart() override { m_pulled = 0; }

private:
    AudioSource *m_source = nullptr;
    std::atomic<qint64> m_pulled = 0;
    std::atomic<qint64> m_unheard = 0;
};

} // namespace zelvane::test
