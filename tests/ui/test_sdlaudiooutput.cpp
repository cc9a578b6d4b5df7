// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audiooutput.h"
#include "platform/mediaengine.h"
#include "platform/ui/sdlaudiooutput.h"
#include "support/soundfiles.h"
#include "support/uitest.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// Gives so many frames of one value.
class Level : public AudioSource
{
public:
    Level(int channels, int frames) : m_channels(channels), m_left(frames) {}

    int Pull(float *samples, int frames) noexcept override
    {
        ++pulls;
        const int pulled = std::min(frames, m_left);
        std::fill_n(samples, qsizetype(pulled) * m_channels, 0.25F);
        m_left -= pulled;
        taken += pulled;
        return pulled;
    }

    std::atomic<int> pulls = 0;
    std::atomic<qint64> taken = 0;

private:
    int m_channels;
    int m_left;
};

/// The frames that a device wrote to its file, silent ones left out.
std::vector<float> Written(const QString &path, size_t channels)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    std::vector<float> all(size_t(bytes.size()) / sizeof(float));
    std::copy_n(bytes.constData(), all.size() * sizeof(float), reinterpret_cast<char *>(all.data()));
    std::vector<float> heard;
    for (auto at = all.begin(); at != all.end(); at += qsizetype(channels)) {
        const auto end = at + qsizetype(channels);
        if (std::any_of(at, end, [](float sample) { return sample != 0; }))
            heard.insert(heard.end(), at, end);
    }
    return heard;
}

} // namespace

class TestSdlAudioOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { qputenv("SDL_AUDIODRIVER", "dummy"); }

    void whatIsHeardFollowsTheClock()
    {
        constexpr int Frames = 22050;
        Level source(2, Frames);
        SdlAudioOutput output;
        QCOMPARE(output.Open(44100, 2, source), QString());
        QCOMPARE(output.Heard(), 0);
        QElapsedTimer clock;
        clock.start();
        output.Start();
        for (qint64 last = 0; last < Frames;) {
            const qint64 heard = output.Heard();
            QVERIFY(heard >= last);
            // The device counts its blocks in whole milliseconds.
            QVERIFY2(double(heard) <= double(clock.nsecsElapsed()) * 1e-9 * 44100 * 1.1, "too early");
            QVERIFY2(clock.elapsed() < 60000, "it never ended");
            last = heard;
            QTest::qWait(1);
        }
        QVERIFY(clock.elapsed() > 400);
        output.Hold();
        output.Restart();
        QCOMPARE(output.Heard(), 0);
    }

    void nothingIsPulledWhileItIsHeld()
    {
        Level source(1, 1 << 30);
        SdlAudioOutput output;
        QCOMPARE(output.Open(44100, 1, source), QString());
        QCOMPARE(int(source.pulls), 0);
        output.Start();
        QTRY_VERIFY(source.pulls > 3);
        output.Hold();
        const int held = source.pulls;
        const qint64 taken = source.taken;
        // What the device has taken is heard out; by then it would have pulled again.
        QTRY_COMPARE(output.Heard(), taken);
        QCOMPARE(int(source.pulls), held);
        output.Start();
        QVERIFY(output.Heard() >= taken);
        QTRY_VERIFY(source.pulls > held + 3);
        QVERIFY(output.Heard() >= taken);
        output.Close();
        QCOMPARE(output.Heard(), 0);
    }

    void withoutADeviceThereIsAReason()
    {
        qputenv("SDL_AUDIODRIVER", "nosuchdriver");
        Level source(1, 100);
        SdlAudioOutput output;
        QVERIFY(output.Open(44100, 1, source).contains(u"nosuchdriver"_s));
        QCOMPARE(output.Heard(), 0);
        output.Start();
        output.Hold();
        output.Close();
        // A device that is plugged in later is found.
        qputenv("SDL_AUDIODRIVER", "dummy");
        QCOMPARE(output.Open(44100, 1, source), QString());
        output.Start();
        QTRY_COMPARE(output.Heard(), 100);
    }

    void everyNumberOfChannelsAndRate()
    {
        for (const int channels : {1, 2, 3, 4, 5, 6, 7, 8, 9, 16}) {
            for (const int rate : {8000, 44100, 192000}) {
                Level source(channels, 100);
                SdlAudioOutput output;
                QCOMPARE(output.Open(rate, channels, source), QString());
                output.Start();
                QTRY_COMPARE(output.Heard(), 100);
            }
        }
    }

    void theSamplesReachTheDevice_data()
    {
        QTest::addColumn<int>("channels");
        for (const int channels : {1, 2, 6, 9})
            QTest::newRow(qPrintable(QString::number(channels))) << channels;
    }
    void theSamplesReachTheDevice()
    {
        QFETCH(int, channels);
        QTemporaryDir folder;
        const QString path = folder.filePath(u"a.wav"_s);
        const QString taken = folder.filePath(u"taken"_s);
        WriteSound(path, Tones(13001, channels), {{}, 0x010002, 44100, channels});
        qputenv("SDL_AUDIODRIVER", "disk");
        qputenv("SDL_DISKAUDIOFILE", QFile::encodeName(taken));

        std::vector<float> expected = ReadSound(path);
        if (channels == 9) { // on the left 1, 3, 5, 7, 9, on the right 2, 4, 6, 8
            std::vector<float> folded;
            for (auto at = expected.begin(); at != expected.end(); at += 9) {
                folded.push_back((at[0] + at[2] + at[4] + at[6] + at[8]) / 5);
                folded.push_back((at[1] + at[3] + at[5] + at[7]) / 4);
            }
            expected = folded;
        }
        const size_t heardChannels = channels == 9 ? 2 : size_t(channels);
        expected.erase(expected.begin(),
                       expected.begin() + qsizetype(heardChannels)); // the tones begin with 0

        MediaEngine media(std::make_unique<SdlAudioOutput>());
        int notice = 0;
        media.SetNotified([&](int told) { notice = told; });
        QCOMPARE(media.Send(u"open \"%1\" alias gino"_s.arg(path)), MediaAnswer());
        QCOMPARE(media.Send(u"play gino notify"_s), MediaAnswer());
        QTRY_COMPARE(notice, MediaNotice::Successful);
        QCOMPARE(media.Send(u"status gino position"_s), (MediaAnswer{0, u"295"_s}));
        QCOMPARE(media.Send(u"close gino"_s), MediaAnswer());
        QVERIFY(Written(taken, heardChannels) == expected);
    }
};

QTEST_MAIN(TestSdlAudioOutput)
#include "test_sdlaudiooutput.moc"
