// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/mediacontrol.h"

#include <memory>
#include <QString>

namespace zelvane
{

class AudioOutput;

/// The media control service over sound files. The one device type, "waveaudio", is any file whose content is
/// a sound that libsndfile reads, whatever its name. Files are streamed: an open one takes the same memory
/// whatever its length, and it plays on as it was when it is replaced. The device is taken by the first play
/// and given back by close.
class MediaEngine : public MediaControl
{
public:
    explicit MediaEngine(std::unique_ptr<AudioOutput> output);
    ~MediaEngine() override;

    MediaAnswer Send(const QString &command) override;
    QString ErrorText(int code) const override;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zelvane
