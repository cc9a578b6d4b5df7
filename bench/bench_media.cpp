// SPDX-License-Identifier: GPL-3.0-or-later

// From the open command to the first sample that the device gets, beside a plain read of the same bytes.

#include "plainpass.h"
#include "platform/audiooutput.h"
#include "platform/mediaengine.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::bench;

namespace
{

constexpr int Rate = 44100;
constexpr int Block = 1024;

/// A device that waits for nothing but its first block.
class FirstBlock : public AudioOutput
{
public:
    QString Open(int, int, AudioSource &source) override
    {
        m_source = &source;
        return {};
    }
    void Close() override {}
    void Start() override
    {
        while (m_source->Pull(m_samples.data(), Block) == 0)
            std::this_thread::yield();
    }
    void Hold() override {}
    qint64 Heard() const override { return 0; }
    void Restart() override {}

private:
    AudioSource *m_source = nullptr;
    std::vector<float> m_samples = std::vector<float>(Block * 2);
};

/// A WAV file of two channels in 16 bit. What lies beyond the first second is a hole.
void WriteWave(const QString &path, quint32 seconds)
{
    const quint32 size = seconds * Rate * 4;
    QByteArray bytes("RIFF....WAVEfmt \x10\0\0\0\x01\0\x02\0....\x10\xb1\x02\0\x04\0\x10\0data....", 44);
    const quint32 riff = size + 36;
    const quint32 rate = Rate;
    std::memcpy(bytes.data() + 4, &riff, 4);
    std::memcpy(bytes.data() + 24, &rate, 4);
    std::memcpy(bytes.data() + 40, &size, 4);
    for (int i = 0; i < Rate * 2; ++i)
        bytes.append(char(i & 0xff)).append(char(i >> 8 & 0x3f));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
        !file.resize(qint64(size) + 44))
        std::abort();
}

double WallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void OpenToFirstSample(benchmark::State &state, quint32 seconds, const QString &play)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.wav"_s);
    WriteWave(path, seconds);
    MediaEngine media(std::make_unique<FirstBlock>());
    std::vector<double> opens, reads;
    std::vector<char> bytes(44 + Block * 4);
    for (auto _ : state) {
        const double start = WallSeconds();
        if (media.Send(u"open "_s + path + u" alias gino"_s).code != 0 || media.Send(play).code != 0)
            std::abort();
        opens.push_back(WallSeconds() - start);
        state.SetIterationTime(opens.back());
        media.Send(u"close gino"_s);

        const double before = WallSeconds();
        const int file = open(QFile::encodeName(path).constData(), O_RDONLY);
        benchmark::DoNotOptimize(read(file, bytes.data(), bytes.size()));
        close(file);
        reads.push_back(WallSeconds() - before);
    }
    state.counters["median_us"] = Median(opens) * 1e6;
    state.counters["read_us"] = Median(reads) * 1e6;
    state.counters["times_read"] = Median(opens) / Median(reads);
}

void TenSeconds(benchmark::State &state)
{
    OpenToFirstSample(state, 10, u"play gino notify"_s);
}
void TwoHours(benchmark::State &state)
{
    OpenToFirstSample(state, 7200, u"play gino notify"_s);
}
void TwoHoursFromItsEnd(benchmark::State &state)
{
    OpenToFirstSample(state, 7200, u"play gino from 7199000 notify"_s);
}

BENCHMARK(TenSeconds)->UseManualTime();
BENCHMARK(TwoHours)->UseManualTime();
BENCHMARK(TwoHoursFromItsEnd)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
