// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/soundfiles.h"

#include <cmath>
#include <gtest/gtest.h>
#include <QFile>
#include <sndfile.h>

namespace zelvane::test
{

namespace
{

/// Adds the form with the first rate and number of channels that it can have.
void AddForm(std::vector<SoundForm> &forms, const SF_FORMAT_INFO &container, const SF_FORMAT_INFO &coding)
{
    for (const int channels : {2, 1}) {
        for (const int rate : {44100, 48000, 16000, 8000}) {
            SF_INFO info = {};
            info.samplerate = rate;
            info.channels = channels;
            info.format = (container.format & SF_FORMAT_TYPEMASK) | (coding.format & SF_FORMAT_SUBMASK);
            const bool isFixed = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WVE; // its head has no rate
            if (!sf_format_check(&info) || (isFixed && rate != 8000))
                continue;
            // Of some forms the writer knows less than the check does.
            SF_VIRTUAL_IO nowhere = {};
            nowhere.get_filelen = [](void *) { return sf_count_t(0); };
            nowhere.seek = [](sf_count_t, int, void *) { return sf_count_t(0); };
            nowhere.read = [](void *, sf_count_t, void *) { return sf_count_t(0); };
            nowhere.write = [](const void *, sf_count_t count, void *) { return count; };
            nowhere.tell = [](void *) { return sf_count_t(0); };
            SNDFILE *file = sf_open_virtual(&nowhere, SFM_WRITE, &info, nullptr);
            if (!file)
                continue;
            sf_close(file);
            forms.push_back(
                {QString::fromUtf8(container.name) + QStringLiteral(", ") + QString::fromUtf8(coding.name),
                 info.format, rate, channels});
            return;
        }
    }
}

} // namespace

std::vector<SoundForm> AllSoundForms()
{
    int containers = 0;
    int codings = 0;
    sf_command(nullptr, SFC_GET_FORMAT_MAJOR_COUNT, &containers, sizeof containers);
    sf_command(nullptr, SFC_GET_FORMAT_SUBTYPE_COUNT, &codings, sizeof codings);
    std::vector<SoundForm> forms;
    for (int i = 0; i < containers; ++i) {
        SF_FORMAT_INFO container = {};
        container.format = i;
        sf_command(nullptr, SFC_GET_FORMAT_MAJOR, &container, sizeof container);
        const int type = container.format & SF_FORMAT_TYPEMASK;
        if (type == SF_FORMAT_RAW || type == SF_FORMAT_SD2) // their heads are elsewhere, if anywhere
            continue;
        for (int j = 0; j < codings; ++j) {
            SF_FORMAT_INFO coding = {};
            coding.format = j;
            sf_command(nullptr, SFC_GET_FORMAT_SUBTYPE, &coding, sizeof coding);
            if (coding.format != SF_FORMAT_DWVW_12) // the library writes nothing in it
                AddForm(forms, container, coding);
        }
    }
    return forms;
}

std::vector<float> Tones(int frames, int channels)
{
    std::vector<float> samples;
    samples.reserve(size_t(frames) * size_t(channels));
    for (int frame = 0; frame < frames; ++frame) {
        for (int channel = 0; channel < channels; ++channel)
            samples.push_back(0.5F * float(std::sin(frame * 0.01 * (channel + 1))));
    }
    return samples;
}

void WriteSound(const QString &path, const std::vector<float> &samples, const SoundForm &form)
{
    SF_INFO info = {};
    info.samplerate = form.rate;
    info.channels = form.channels;
    info.format = form.format;
    SNDFILE *file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    const auto frames = sf_count_t(samples.size()) / form.channels;
    EXPECT_EQ(sf_writef_float(file, samples.data(), frames), frames);
    EXPECT_EQ(sf_close(file), 0);
}

std::vector<float> ReadSound(const QString &path)
{
    SF_INFO info = {};
    SNDFILE *file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file) {
        ADD_FAILURE() << sf_strerror(nullptr);
        return {};
    }
    std::vector<float> samples(size_t(info.frames * info.channels));
    samples.resize(size_t(sf_readf_float(file, samples.data(), info.frames) * info.channels));
    sf_close(file);
    return samples;
}

} // namespace zelvane::test
