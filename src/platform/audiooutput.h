// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

namespace zelvane
{

/// What a sound device plays.
class AudioSource
{
public:
    virtual ~AudioSource() = default;

    /// Writes the next frames, their channels interleaved, each sample from -1 to 1. It is called by the
    /// device's own thread, so it allocates nothing and waits for nothing.
    /// @return frames written; fewer than `frames` when the sound has ended or its file is slow
    virtual int Pull(float *samples, int frames) noexcept = 0;
};

/// A sound device. It is silent where its source gives fewer frames than it takes.
class AudioOutput
{
public:
    virtual ~AudioOutput() = default;

    /// Takes a device for a source of `rate` frames a second; it pulls nothing before Start. The source lives
    /// until Close.
    /// @return empty, or for the user the reason why there is no device
    virtual QString Open(int rate, int channels, AudioSource &source) = 0;
    /// Gives the device back. Nothing is pulled any more when it returns.
    virtual void Close() = 0;

    /// Begins to pull, or goes on with it.
    virtual void Start() = 0;
    /// Nothing is pulled any more when it returns; what was pulled may still be heard.
    virtual void Hold() = 0;

    /// How many of the frames that the source has written since Open or Restart have been heard at this
    /// moment; never less than it said before. For any thread.
    virtual qint64 Heard() const = 0;
    /// Counts from 0 again; while it is held.
    virtual void Restart() = 0;
};

} // namespace zelvane
