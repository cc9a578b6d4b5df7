// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/soundfile.h"

#include "platform/runtimeerror.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QFileInfo>
#include <QLatin1String>
#include <sndfile.h>
#include <unistd.h>
#include <vector>

namespace zelvane
{

namespace
{

constexpr int SkippedSamples = 1 << 15;

/// Bits of a stored sample, 0 for codings that have no such number.
int BitsOf(int coding)
{
    switch (coding) {
    case SF_FORMAT_G723_24:
    case SF_FORMAT_NMS_ADPCM_24:
        return 3;
    case SF_FORMAT_NMS_ADPCM_16:
        return 2;
    case SF_FORMAT_IMA_ADPCM:
    case SF_FORMAT_MS_ADPCM:
    case SF_FORMAT_VOX_ADPCM:
    case SF_FORMAT_G721_32:
    case SF_FORMAT_NMS_ADPCM_32:
        return 4;
    case SF_FORMAT_G723_40:
        return 5;
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
    case SF_FORMAT_DPCM_8:
        return 8;
    case SF_FORMAT_DWVW_12:
        return 12;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_DWVW_16:
    case SF_FORMAT_DPCM_16:
    case SF_FORMAT_ALAC_16:
        return 16;
    case SF_FORMAT_ALAC_20:
        return 20;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_DWVW_24:
    case SF_FORMAT_ALAC_24:
        return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_ALAC_32:
        return 32;
    case SF_FORMAT_DOUBLE:
        return 64;
    default:
        return 0;
    }
}

/// Whether each frame takes the same number of whole bytes.
bool IsPlain(int format)
{
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
        return (format & SF_FORMAT_TYPEMASK) != SF_FORMAT_FLAC;
    default:
        return false;
    }
}

} // namespace

void SoundFile::Closer::operator()(sf_private_tag *sound) const
{
    sf_close(sound);
}

SoundFile::SoundFile(const QString &path) : m_file(OpenRegularFile(path))
{
    if (!OpenFromStart())
        throw RunTimeError(ErrorNumber::TypeMismatch, QString::fromUtf8(sf_strerror(nullptr)), path);
}

SoundFile::~SoundFile() = default;

bool SoundFile::OpenFromStart()
{
    m_sound.reset();
    // A sound is looked for from the descriptor's place on.
    if (lseek(m_file.Descriptor(), 0, SEEK_SET) != 0)
        return false;
    SF_INFO info = {};
    m_sound.reset(sf_open_fd(m_file.Descriptor(), SFM_READ, &info, SF_FALSE));
    if (m_format.channels > 0 && m_format.channels != info.channels)
        m_sound.reset(); // another was written over it
    if (!m_sound || m_format.channels > 0)
        return m_sound != nullptr;
    const int bits = BitsOf(info.format & SF_FORMAT_SUBMASK);
    m_format = {.rate = info.samplerate,
                .channels = info.channels,
                .bits = bits > 0 ? bits : 16,
                .frames = std::max<qint64>(info.frames, 0)};
    if (IsPlain(info.format))
        m_format.bytesPerSecond = qint64(info.samplerate) * info.channels * (bits / 8);
    else if (m_format.frames > 0)
        m_format.bytesPerSecond =
            std::llround(double(StampOf(m_file).size) * info.samplerate / double(m_format.frames));
    return true;
}

void SoundFile::Seek(qint64 frame, const std::function<bool()> &goOn)
{
    if ((m_sound && sf_seek(m_sound.get(), frame, SEEK_SET) == frame) || !OpenFromStart())
        return;
    const int most = SkippedSamples / m_format.channels + 1;
    std::vector<float> skipped(size_t(most) * size_t(m_format.channels));
    while (frame > 0 && goOn()) {
        const int read = Read(skipped.data(), int(std::min<qint64>(frame, most)));
        if (read == 0)
            return;
        frame -= read;
    }
}

int SoundFile::Read(float *samples, int frames)
{
    if (!m_sound)
        return 0;
    const int read = int(std::max<sf_count_t>(sf_readf_float(m_sound.get(), samples, frames), 0));
    for (float *at = samples, *end = samples + qsizetype(read) * m_format.channels; at != end; ++at)
        *at = std::isnan(*at) ? 0 : std::clamp(*at, -1.0F, 1.0F);
    return read;
}

bool IsSoundExtension(const QString &path)
{
    static constexpr std::array Extensions = {
        QLatin1String("wav"),  QLatin1String("aif"),  QLatin1String("aiff"), QLatin1String("aifc"),
        QLatin1String("au"),   QLatin1String("snd"),  QLatin1String("avr"),  QLatin1String("caf"),
        QLatin1String("flac"), QLatin1String("htk"),  QLatin1String("iff"),  QLatin1String("svx"),
        QLatin1String("mat"),  QLatin1String("mp1"),  QLatin1String("mp2"),  QLatin1String("mp3"),
        QLatin1String("mpa"),  QLatin1String("mpga"), QLatin1String("m1a"),  QLatin1String("m2a"),
        QLatin1String("mpc"),  QLatin1String("nist"), QLatin1String("sph"),  QLatin1String("oga"),
        QLatin1String("ogg"),  QLatin1String("opus"), QLatin1String("paf"),  QLatin1String("pvf"),
        QLatin1String("rf64"), QLatin1String("sds"),  QLatin1String("sf"),   QLatin1String("voc"),
        QLatin1String("w64"),  QLatin1String("wve"),  QLatin1String("xi"),
    };
    const QString extension = QFileInfo(path).suffix();
    return std::any_of(Extensions.begin(), Extensions.end(), [&](QLatin1String known) {
        return extension.compare(known, Qt::CaseInsensitive) == 0;
    });
}

} // namespace zelvane
