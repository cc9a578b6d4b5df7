// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audiooutput.h"

#include <memory>
#include <QString>
#include <QtGlobal>

namespace zelvane
{

/// The desktop's default sound device. What is heard is reckoned from the clock and the two blocks that a
/// device holds: the one that is heard and the one that comes next.
class SdlAudioOutput : public AudioOutput
{
public:
    SdlAudioOutput();
    ~SdlAudioOutput() override;
    Q_DISABLE_COPY_MOVE(SdlAudioOutput)

    QString Open(int rate, int channels, AudioSource &source) override;
    void Close() override;
    void Start() override;
    void Hold() override;
    qint64 Heard() const override;
    void Restart() override;

private:
    class Device;
    std::unique_ptr<Device> m_device; // while one is open
    bool m_isReady = false;           // whether the audio system was started
};

} // namespace zelvane
