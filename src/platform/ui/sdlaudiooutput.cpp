// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/sdlaudiooutput.h"

#include "platform/programinfo.h"

#include <algorithm>
#include <chrono>
#include <SDL.h>
#include <vector>

namespace zelvane
{

namespace
{

constexpr int MostDeviceChannels = 8;

/// About a fiftieth of a second, whatever the rate: the device is given back when two blocks have passed.
int BlockFrames(int rate)
{
    int frames = 1;
    while (frames < 16384 && frames < rate / 50)
        frames *= 2;
    return frames;
}

} // namespace

class SdlAudioOutput::Device
{
public:
    Device(int rate, int channels, AudioSource &source)
        : m_rate(rate),
          m_channels(channels),
          m_source(source),
          m_deviceChannels(channels <= MostDeviceChannels ? channels : 2)
    {
        SDL_AudioSpec wanted = {};
        wanted.freq = rate;
        wanted.format = AUDIO_F32SYS;
        wanted.channels = Uint8(m_deviceChannels);
        wanted.samples = Uint16(BlockFrames(rate));
        wanted.userdata = this;
        wanted.callback = [](void *device, Uint8 *bytes, int size) {
            static_cast<Device *>(device)->Fill(reinterpret_cast<float *>(bytes), size / int(sizeof(float)));
        };
        if (m_channels != m_deviceChannels)
            m_frames.resize(size_t(wanted.samples) * size_t(channels));
        m_id = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    }
    ~Device()
    {
        if (IsOpen())
            SDL_CloseAudioDevice(m_id);
    }
    Q_DISABLE_COPY_MOVE(Device)

    bool IsOpen() const { return m_id != 0; }
    void Pause(bool pause) { SDL_PauseAudioDevice(m_id, pause ? 1 : 0); }

    qint64 Heard() const
    {
        SDL_LockAudioDevice(m_id);
        const qint64 heard = HeardAt(Clock::now());
        SDL_UnlockAudioDevice(m_id);
        return heard;
    }
    void Restart()
    {
        SDL_LockAudioDevice(m_id);
        m_pulled = m_current = m_next = 0;
        SDL_UnlockAudioDevice(m_id);
    }

private:
    using Clock = std::chrono::steady_clock;

    /// Called by the device's thread, which holds the device's lock.
    void Fill(float *samples, int count)
    {
        const int frames = count / m_deviceChannels;
        const int pulled = m_frames.empty() ? m_source.Pull(samples, frames) : Fold(samples, frames);
        std::fill(samples + qsizetype(pulled) * m_deviceChannels, samples + count, 0.0F);
        // The block that was next before is heard from now on, as far as it was not already.
        const Clock::time_point now = Clock::now();
        m_current = std::min<qint64>(m_next, m_pulled - HeardAt(now));
        m_next = pulled;
        m_pulled += pulled;
        m_block = frames;
        m_filled = now;
    }

    /// Channels that no device has are heard on the left and on the right in turn.
    int Fold(float *samples, int frames)
    {
        const int pulled =
            m_source.Pull(m_frames.data(), std::min(frames, int(m_frames.size()) / m_channels));
        const float *from = m_frames.data();
        for (int i = 0; i < pulled; ++i, from += m_channels) {
            float sides[2] = {};
            for (int channel = 0; channel < m_channels; ++channel)
                sides[channel % 2] += from[channel];
            *samples++ = sides[0] / float((m_channels + 1) / 2);
            *samples++ = sides[1] / float(m_channels / 2);
        }
        return pulled;
    }

    qint64 HeardAt(Clock::time_point now) const
    {
        const auto passed = qint64(std::chrono::duration<double>(now - m_filled).count() * m_rate);
        return m_pulled - m_next - m_current + std::clamp<qint64>(passed, 0, m_current) +
               std::clamp<qint64>(passed - m_block, 0, m_next);
    }

    int m_rate;
    int m_channels;
    AudioSource &m_source;
    int m_deviceChannels;
    std::vector<float> m_frames; // of the source, where they are folded
    SDL_AudioDeviceID m_id = 0;
    // Under the device's lock.
    qint64 m_pulled = 0;
    qint64 m_current = 0; // the source's frames in the block that is heard
    qint64 m_next = 0;    // and in the block behind it
    qint64 m_block = 0;   // frames of a block, silent ones too
    Clock::time_point m_filled;
};

SdlAudioOutput::SdlAudioOutput() = default;

SdlAudioOutput::~SdlAudioOutput()
{
    Close();
    if (m_isReady)
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

QString SdlAudioOutput::Open(int rate, int channels, AudioSource &source)
{
    Close();
    if (!m_isReady) {
        SDL_SetMainReady();
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1"); // the program has its own
        SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, ApplicationTitle().toUtf8().constData());
        if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0)
            return QString::fromUtf8(SDL_GetError());
        m_isReady = true;
    }
    auto device = std::make_unique<Device>(rate, channels, source);
    if (!device->IsOpen()) {
        const QString reason = QString::fromUtf8(SDL_GetError());
        // A sound server that is started later is found by the next try.
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        m_isReady = false;
        return reason;
    }
    m_device = std::move(device);
    return {};
}

void SdlAudioOutput::Close()
{
    m_device.reset();
}

void SdlAudioOutput::Start()
{
    if (m_device)
        m_device->Pause(false);
}

void SdlAudioOutput::Hold()
{
    if (m_device)
        m_device->Pause(true);
}

qint64 SdlAudioOutput::Heard() const
{
    return m_device ? m_device->Heard() : 0;
}

void SdlAudioOutput::Restart()
{
    if (m_device)
        m_device->Restart();
}

} // namespace zelvane
