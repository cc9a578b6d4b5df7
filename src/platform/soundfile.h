// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <functional>
#include <memory>
#include <QString>
#include <QtGlobal>

struct sf_private_tag;

namespace zelvane
{

/// What a sound file says of itself.
struct SoundFormat {
    int rate = 0; ///< frames a second
    int channels = 0;
    int bits = 0;      ///< of a sample as it is stored; 16 where the coding has no such number
    qint64 frames = 0; ///< samples of one channel
    qint64 bytesPerSecond = 0;
};

/// A sound file that is read from any place on, whatever its name. It stays the file that was opened when its
/// name is given to another. For one thread at a time; the format may be asked from any.
class SoundFile
{
public:
    /// Reads the head of the file only. @throws RunTimeError 13 when its content is no sound, or another when
    /// it cannot be read
    explicit SoundFile(const QString &path);
    ~SoundFile();
    Q_DISABLE_COPY_MOVE(SoundFile)

    const SoundFormat &Format() const { return m_format; }

    /// Goes to a frame, from 0. Codings that are only read from their start are read up to there, as long as
    /// `goOn` says so.
    void Seek(qint64 frame, const std::function<bool()> &goOn);

    /// Reads the next frames, from -1 to 1, as far as the file has them. What is no number is silence.
    /// @return frames read, 0 at the end
    int Read(float *samples, int frames);

private:
    struct Closer {
        void operator()(sf_private_tag *sound) const;
    };

    bool OpenFromStart();

    NativeFile m_file;
    std::unique_ptr<sf_private_tag, Closer> m_sound;
    SoundFormat m_format;
};

/// Whether the extension of a file name is one that sound files have, in either case.
bool IsSoundExtension(const QString &path);

} // namespace zelvane
