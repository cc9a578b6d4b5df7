// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace zelvane::test
{

/// A form of sound file: container and coding as libsndfile numbers them, and a rate that they can have.
struct SoundForm {
    QString name = QStringLiteral("WAV, 16 bit");
    int format = 0x010002;
    int rate = 44100;
    int channels = 2;
};

/// All forms with a head of their own that the installed library writes, each with as many channels of two as
/// it can have.
std::vector<SoundForm> AllSoundForms();

/// A tone in each channel, another in each: interleaved samples from -0.5 to 0.5.
std::vector<float> Tones(int frames, int channels);

/// Writes a sound file. Fails the test when it cannot.
void WriteSound(const QString &path, const std::vector<float> &samples, const SoundForm &form = {});
/// All samples of a sound file, as the library reads them from its start to its end.
std::vector<float> ReadSound(const QString &path);

} // namespace zelvane::test
