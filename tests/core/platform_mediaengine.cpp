// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/mediacommand.h"
#include "platform/mediaengine.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "support/recordingoutput.h"
#include "support/soundfiles.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QStringList>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class Media : public ::testing::Test
{
protected:
    Media()
    {
        auto owned = std::make_unique<RecordingOutput>();
        output = owned.get();
        media = std::make_unique<MediaEngine>(std::move(owned));
        media->SetNotified([this](int notice) { notices.push_back(notice); });
    }

    QString Path(const QString &name) const { return m_folder.filePath(name); }

    /// The code of a command that gives no answer.
    int Code(const QString &command)
    {
        const MediaAnswer answer = media->Send(command);
        EXPECT_EQ(answer.text, QString()) << command.toStdString();
        return answer.code;
    }
    QString Ask(const QString &what)
    {
        const MediaAnswer answer = media->Send(what);
        EXPECT_EQ(answer.code, 0) << what.toStdString();
        return answer.text;
    }
    QString Mode() { return Ask(u"status gino mode"_s); }
    int Position() { return Ask(u"status gino position"_s).toInt(); }
    int Open(const QString &path, const QString &tail = {})
    {
        return Code(u"open \""_s + path + u"\" alias gino"_s + tail);
    }
    /// A tone of so many frames, open.
    void OpenTone(int frames, const SoundForm &form = {})
    {
        tone = Tones(frames, form.channels);
        WriteSound(Path(u"tone.wav"_s), tone, form);
        tone = ReadSound(Path(u"tone.wav"_s));
        ASSERT_EQ(Open(Path(u"tone.wav"_s)), 0);
    }

    /// Lets the device take blocks, and the event loop run, until something is so.
    bool PullUntil(const std::function<bool()> &done)
    {
        for (const QDeadlineTimer deadline(60000); !done();) {
            if (deadline.hasExpired())
                return false;
            if (output->Pull(512) == 0)
                std::this_thread::yield();
            QCoreApplication::processEvents();
        }
        return true;
    }
    /// The device takes exactly so many frames.
    void Pull(int frames)
    {
        for (const QDeadlineTimer deadline(60000); frames > 0;) {
            ASSERT_FALSE(deadline.hasExpired());
            const int pulled = output->Pull(std::min(frames, 500));
            if (pulled == 0)
                std::this_thread::yield();
            frames -= pulled;
        }
    }
    bool PullToTheEnd()
    {
        return PullUntil([this] { return !notices.empty(); });
    }

    RecordingOutput *output = nullptr;
    std::unique_ptr<MediaEngine> media;
    std::vector<int> notices;
    std::vector<float> tone;

private:
    QTemporaryDir m_folder;
};

/// The largest difference of two runs of samples.
double Difference(const float *one, const float *other, size_t count)
{
    double most = 0;
    for (size_t i = 0; i < count; ++i)
        most = std::max(most, std::abs(double(one[i]) - double(other[i])));
    return most;
}

} // namespace

TEST(MediaCommand, APathMayHoldAnything)
{
    using Cut = OpenCommand;
    EXPECT_EQ(CutOpenCommand(u"open /a/b.wav alias gino"_s), (Cut{u"/a/b.wav"_s, u"gino"_s, {}}));
    EXPECT_EQ(CutOpenCommand(u"open \"/a b.wav\" alias gino"_s), (Cut{u"/a b.wav"_s, u"gino"_s, {}}));
    EXPECT_EQ(CutOpenCommand(u"OPEN \"/a b\" ALIAS gino TYPE waveaudio "_s),
              (Cut{u"/a b"_s, u"gino"_s, u"waveaudio"_s}));
    EXPECT_EQ(CutOpenCommand(u"open \"/a\"b \" alias gino"_s), (Cut{u"/a\"b "_s, u"gino"_s, {}}));
    EXPECT_EQ(CutOpenCommand(u"open \"/x alias gino type y\" alias gino"_s),
              (Cut{u"/x alias gino type y"_s, u"gino"_s, {}}));
    EXPECT_EQ(CutOpenCommand(u"open \" alias gino\" alias gino type waveaudio"_s),
              (Cut{u" alias gino"_s, u"gino"_s, u"waveaudio"_s}));
    EXPECT_EQ(CutOpenCommand(u"open /a\tb\n.wav alias gino"_s), (Cut{u"/a\tb\n.wav"_s, u"gino"_s, {}}));
    EXPECT_EQ(CutOpenCommand(u"open"_s), Cut{});
    EXPECT_EQ(CutOpenCommand(u"open /a.wav"_s), (Cut{u"/a.wav"_s, {}, {}}));
    EXPECT_EQ(CutOpenCommand(u"open alias gino"_s), (Cut{{}, u"gino"_s, {}}));
}

TEST(MediaCommand, AnyPathComesBack)
{
    RandomText random({u"a"_s, u"\""_s, u"/"_s, u" "_s, u"\n"_s, u"alias"_s, u"type"_s, u"open"_s, u"gino"_s},
                      12);
    for (int i = 0; i < 20000; ++i) {
        const QString path = u'/' + random.Next();
        const QString quoted = u'"' + path + u'"';
        for (const QString &named : path.contains(u' ') ? QStringList{quoted} : QStringList{path, quoted}) {
            ASSERT_EQ(CutOpenCommand(u"open "_s + named + u" alias gino"_s),
                      (OpenCommand{path, u"gino"_s, {}}));
            ASSERT_EQ(CutOpenCommand(u"open "_s + named + u" alias gino type waveaudio"_s),
                      (OpenCommand{path, u"gino"_s, u"waveaudio"_s}));
        }
    }
}

TEST_F(Media, PlaysEveryFormToItsLastSample)
{
    constexpr int Frames = 30011;
    const std::vector<SoundForm> forms = AllSoundForms();
    EXPECT_GT(forms.size(), 60u);
    for (const SoundForm &form : forms) {
        SCOPED_TRACE(form.name.toStdString());
        const QString path = Path(u"sound of no name"_s);
        WriteSound(path, Tones(Frames, form.channels), form);
        const std::vector<float> expected = ReadSound(path);
        const auto frames = qint64(expected.size()) / form.channels;
        ASSERT_GE(frames, Frames);
        ASSERT_EQ(Open(path), MediaError::DeviceNotKnown);
        ASSERT_EQ(Open(path, u" type waveaudio"_s), 0);

        const int rate = Ask(u"status gino samplespersec"_s).toInt();
        EXPECT_LE(std::abs(rate - form.rate), form.rate / 200); // some heads hold the length of a sample
        EXPECT_EQ(Ask(u"status gino channels"_s).toInt(), form.channels);
        EXPECT_GT(Ask(u"status gino bitspersample"_s).toInt(), 0);
        EXPECT_GT(Ask(u"status gino bytespersec"_s).toInt(), 0);
        const int length = Ask(u"status gino length"_s).toInt();
        EXPECT_LE(std::abs(length - double(frames) * 1000 / rate), 0.5);

        ASSERT_EQ(Code(u"play gino notify"_s), 0);
        ASSERT_TRUE(PullToTheEnd());
        EXPECT_EQ(std::exchange(notices, {}), std::vector{MediaNotice::Successful});
        EXPECT_EQ(output->rate, rate);
        EXPECT_EQ(output->channels, form.channels);
        EXPECT_EQ(std::exchange(output->samples, {}), expected);
        EXPECT_EQ(Mode(), u"stopped");
        EXPECT_EQ(Position(), length);

        // From the middle on, also where the coding can only be read from its start.
        const int middle = length / 2;
        const auto first = qint64(std::nearbyint(double(middle) * rate / 1000));
        ASSERT_EQ(Code(u"seek gino to "_s + QString::number(middle)), 0);
        EXPECT_EQ(Position(), middle);
        ASSERT_EQ(Code(u"play gino notify"_s), 0);
        ASSERT_TRUE(PullToTheEnd());
        notices.clear();
        const std::vector<float> rest = std::exchange(output->samples, {});
        ASSERT_EQ(rest.size(), size_t((frames - first) * form.channels));
        // An MPEG decoder needs some frames to find its way.
        const size_t skipped = form.name.contains(u"MPEG"_s) ? size_t(2304 * form.channels) : 0;
        EXPECT_EQ(Difference(rest.data() + skipped, expected.data() + first * form.channels + skipped,
                             rest.size() - skipped),
                  0);
        EXPECT_EQ(Position(), length);
        ASSERT_EQ(Code(u"close gino"_s), 0);
    }
}

TEST_F(Media, TellsWhatAFileSaysOfItself)
{
    struct Row {
        int format;
        int rate;
        int channels;
        int bits;
        int bytesPerSecond;
    };
    // WAV in 16, 24 and 32 bit and float, AIFF in 8 and 16 bit, AIFC in float, AU in mu-law and 64 bit float
    for (const Row &row : {Row{0x010002, 44100, 2, 16, 176400}, Row{0x010003, 48000, 1, 24, 144000},
                           Row{0x010004, 96000, 4, 32, 1536000}, Row{0x010006, 44100, 6, 32, 1058400},
                           Row{0x020001, 22050, 1, 8, 22050}, Row{0x020002, 44100, 16, 16, 1411200},
                           Row{0x020006, 44100, 1, 32, 176400}, Row{0x030010, 8000, 1, 8, 8000},
                           Row{0x030007, 192000, 2, 64, 3072000}}) {
        const QString path = Path(u"a.wav"_s); // the content decides, whatever the name says
        WriteSound(path, Tones(row.rate * 3 / 2, row.channels), {{}, row.format, row.rate, row.channels});
        ASSERT_EQ(Open(path), 0);
        EXPECT_EQ(Ask(u"status gino samplespersec"_s), QString::number(row.rate));
        EXPECT_EQ(Ask(u"status gino bitspersample"_s), QString::number(row.bits));
        EXPECT_EQ(Ask(u"status gino channels"_s), QString::number(row.channels));
        EXPECT_EQ(Ask(u"status gino bytespersec"_s), QString::number(row.bytesPerSecond));
        EXPECT_EQ(Code(u"set gino time format milliseconds "_s), 0);
        EXPECT_EQ(Ask(u"status gino length"_s), u"1500");
        EXPECT_EQ(Ask(u"info gino file"_s), path);
        EXPECT_EQ(Ask(u"info gino product"_s), u"Waveform audio");
        EXPECT_EQ(Code(u"close gino"_s), 0);
    }
}

TEST_F(Media, BytesASecondOfPackedSoundsAreThoseOfTheFile)
{
    WriteSound(Path(u"a.wav"_s), Tones(44100 * 4, 2), {{}, 0x010012}); // IMA ADPCM
    ASSERT_EQ(Open(Path(u"a.wav"_s)), 0);
    EXPECT_EQ(Ask(u"status gino bitspersample"_s), u"4");
    const double bytes = double(QFile(Path(u"a.wav"_s)).size());
    EXPECT_NEAR(Ask(u"status gino bytespersec"_s).toDouble(), bytes / 4, bytes / 400);
}

TEST_F(Media, DeviceTypes)
{
    EXPECT_EQ(Ask(u"sysinfo all quantity"_s), u"1");
    EXPECT_EQ(Ask(u"sysinfo all name 1"_s), u"waveaudio");
    EXPECT_EQ(Code(u"sysinfo all name 0"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"sysinfo all name 2"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"sysinfo all name"_s), MediaError::MissingWord);
    EXPECT_EQ(Code(u"sysinfo"_s), MediaError::MissingWord);
    EXPECT_EQ(Code(u"sysinfo none quantity"_s), MediaError::UnknownWord);
    for (const QString &name : {u"x"_s, u"x.mid"_s, u"x.avi"_s, u"wav"_s, u"x.wav.bak"_s}) {
        WriteSound(Path(name), Tones(100, 2));
        EXPECT_EQ(Open(Path(name)), MediaError::DeviceNotKnown) << name.toStdString();
        EXPECT_EQ(Open(Path(name), u" type sequencer"_s), MediaError::DeviceNotKnown);
        EXPECT_EQ(Open(Path(name), u" type waveaudio"_s), 0);
        EXPECT_EQ(Code(u"close gino"_s), 0);
    }
    for (const QString &name : {u"x.wav"_s, u"x.AIF"_s, u"x.aiff"_s, u"x.aifc"_s, u"x.au"_s, u"x.snd"_s}) {
        WriteSound(Path(name), Tones(100, 2));
        EXPECT_EQ(Open(Path(name)), 0) << name.toStdString();
        EXPECT_EQ(Code(u"close gino"_s), 0);
    }
}

TEST_F(Media, OpensPathsOfAnyCharacters)
{
    for (const QString &name : {u"a.wav"_s, u"a b.wav"_s, u"\"a\".wav"_s, u"a alias gino type b.wav"_s,
                                u"a\nb\t.wav"_s, u" .wav"_s, u"ähm ♫.wav"_s}) {
        WriteSound(Path(name), Tones(100, 2));
        const bool quoted = name.contains(u' ');
        const QString path = quoted ? u'"' + Path(name) + u'"' : Path(name);
        EXPECT_EQ(Code(u"open "_s + path + u" alias gino"_s), 0) << name.toStdString();
        EXPECT_EQ(Ask(u"info gino file"_s), Path(name));
        EXPECT_EQ(Code(u"close gino"_s), 0);
    }
}

TEST_F(Media, Modes)
{
    OpenTone(100000);
    EXPECT_EQ(Mode(), u"stopped");
    EXPECT_EQ(Code(u"pause gino"_s), MediaError::NotPlaying);
    EXPECT_EQ(Code(u"resume gino"_s), MediaError::NotPlaying);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    EXPECT_EQ(Mode(), u"playing");
    EXPECT_TRUE(output->isRunning);
    EXPECT_EQ(Code(u"pause gino"_s), 0);
    EXPECT_EQ(Code(u"pause gino"_s), 0);
    EXPECT_EQ(Mode(), u"paused");
    EXPECT_FALSE(output->isRunning);
    EXPECT_EQ(Code(u"resume gino"_s), 0);
    EXPECT_EQ(Code(u"resume gino"_s), 0);
    EXPECT_EQ(Mode(), u"playing");
    EXPECT_EQ(Code(u"stop gino"_s), 0);
    EXPECT_EQ(Mode(), u"stopped");
    EXPECT_TRUE(output->isOpen);
    EXPECT_EQ(Code(u"stop gino"_s), 0);
    EXPECT_EQ(Code(u"close gino"_s), 0);
    EXPECT_FALSE(output->isOpen);
    EXPECT_EQ(output->opened, 1);
    for (const QString &command :
         {u"status gino mode"_s, u"play gino notify"_s, u"seek gino to start"_s, u"pause gino"_s,
          u"resume gino"_s, u"stop gino"_s, u"close gino"_s, u"info gino file"_s,
          u"set gino time format milliseconds "_s, u"status gino"_s})
        EXPECT_EQ(Code(command), MediaError::NotOpen) << command.toStdString();
}

TEST_F(Media, PauseLosesNothing)
{
    OpenTone(50000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    for (int i = 1; i <= 20; ++i) {
        Pull(777);
        EXPECT_EQ(Code(u"pause gino"_s), 0);
        EXPECT_EQ(output->Pull(512), 0);
        EXPECT_EQ(Position(), int(std::nearbyint(i * 777 / 44.1)));
        EXPECT_EQ(Code(i % 2 ? u"resume gino"_s : u"play gino"_s), 0);
    }
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
    EXPECT_EQ(output->samples, tone);
}

TEST_F(Media, PositionIsTheOneHeard)
{
    OpenTone(44100);
    EXPECT_EQ(Code(u"seek gino to 100"_s), 0);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    EXPECT_EQ(Position(), 100);
    output->SetUnheard(2205);
    Pull(2205);
    EXPECT_EQ(Position(), 100);
    Pull(4410);
    EXPECT_EQ(Position(), 200);
    // The end has come when the last frame was heard, not when it was pulled.
    Pull(44100 - 4410 - 2205 - 4410);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(output->Pull(512), 0);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(Mode(), u"playing");
    EXPECT_EQ(Position(), 950);
    output->SetUnheard(0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(Position(), 1000);
}

TEST_F(Media, Seek)
{
    OpenTone(44100);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(1000);
    EXPECT_EQ(Code(u"seek gino to 500"_s), 0);
    EXPECT_EQ(Mode(), u"stopped");
    EXPECT_EQ(Position(), 500);
    EXPECT_EQ(output->Pull(512), 0);
    output->samples.clear();
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(4410);
    EXPECT_EQ(Position(), 600);
    EXPECT_EQ(output->samples, std::vector(tone.begin() + 22050 * 2, tone.begin() + 26460 * 2));

    EXPECT_EQ(Code(u"seek gino to start"_s), 0);
    EXPECT_EQ(Position(), 0);
    EXPECT_EQ(Code(u"seek gino to 1000"_s), 0);
    EXPECT_EQ(Position(), 1000);
    EXPECT_EQ(Code(u"seek gino to 1001"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"seek gino to -1"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"seek gino to 99999999999999999999"_s), MediaError::BadNumber);
    EXPECT_EQ(Code(u"seek gino to x"_s), MediaError::BadNumber);
    EXPECT_EQ(Code(u"seek gino to"_s), MediaError::MissingWord);
    EXPECT_EQ(Code(u"seek gino at 5"_s), MediaError::UnknownWord);
    EXPECT_EQ(Position(), 1000);
    EXPECT_EQ(Code(u"play gino from 1001"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"play gino from"_s), MediaError::MissingWord);
    EXPECT_EQ(Mode(), u"stopped");

    // Every millisecond comes back as it was sent.
    for (int i = 0; i <= 1000; ++i) {
        EXPECT_EQ(Code(u"seek gino to "_s + QString::number(i)), 0);
        ASSERT_EQ(Position(), i);
    }
}

TEST_F(Media, ASeekWhilePausedStaysPausedAndStillTellsTheEnd)
{
    OpenTone(44100);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(1000);
    EXPECT_EQ(Code(u"pause gino"_s), 0);
    EXPECT_EQ(Code(u"seek gino to 900"_s), 0);
    EXPECT_EQ(Code(u"play gino"_s), 0);
    EXPECT_EQ(Code(u"pause gino"_s), 0);
    EXPECT_EQ(Mode(), u"paused");
    EXPECT_EQ(Position(), 900);
    output->samples.clear();
    EXPECT_EQ(Code(u"resume gino"_s), 0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
    EXPECT_EQ(output->samples, std::vector(tone.begin() + 39690 * 2, tone.end()));
}

TEST_F(Media, AnEndThatMeetsAPauseWaits)
{
    const auto threads = [] { return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs).size(); };
    OpenTone(44100);
    const auto before = threads();
    for (const QString &on : {u"resume gino"_s, u"play gino"_s}) {
        EXPECT_EQ(Code(u"seek gino to 1000"_s), 0);
        EXPECT_EQ(Code(u"play gino notify"_s), 0);
        output->holding = [&] {
            for (const QDeadlineTimer deadline(60000); threads() > before && !deadline.hasExpired();)
                output->Pull(512);
        };
        EXPECT_EQ(Code(u"pause gino"_s), 0);
        output->holding = {};
        QCoreApplication::processEvents();
        EXPECT_EQ(Mode(), u"paused");
        EXPECT_EQ(Position(), 1000);
        EXPECT_EQ(notices, std::vector<int>());
        EXPECT_EQ(Code(on), 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(std::exchange(notices, {}), std::vector{MediaNotice::Successful});
        EXPECT_EQ(Mode(), u"stopped");
    }
}

TEST_F(Media, Notices)
{
    OpenTone(3000);
    EXPECT_EQ(Code(u"play gino"_s), 0);
    ASSERT_TRUE(PullUntil([this] { return Mode() == u"stopped"; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(notices, std::vector<int>());

    // No notice comes in the middle of a command.
    EXPECT_EQ(Code(u"play gino from 0 notify"_s), 0);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    EXPECT_EQ(Code(u"stop gino"_s), 0);
    EXPECT_EQ(notices, std::vector<int>());
    QCoreApplication::processEvents();
    EXPECT_EQ(std::exchange(notices, {}), (std::vector{MediaNotice::Superseded, MediaNotice::Aborted}));

    EXPECT_EQ(Code(u"play gino from 0 notify"_s), 0);
    EXPECT_EQ(Code(u"close gino"_s), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(notices, std::vector{MediaNotice::Aborted});
}

TEST_F(Media, AnEndThatWasOvertakenByAPlayIsNotTold)
{
    OpenTone(3000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    for (const QDeadlineTimer deadline(60000); Mode() == u"playing";) {
        ASSERT_FALSE(deadline.hasExpired());
        output->Pull(512);
    }
    // The end waits in the event loop.
    EXPECT_EQ(Code(u"seek gino to start"_s), 0);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(std::exchange(notices, {}), std::vector{MediaNotice::Superseded});
    EXPECT_EQ(Mode(), u"playing");
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
}

TEST_F(Media, AnEndIsToldAlsoWhenASeekCameFirst)
{
    OpenTone(3000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    for (const QDeadlineTimer deadline(60000); Mode() == u"playing";) {
        ASSERT_FALSE(deadline.hasExpired());
        output->Pull(512);
    }
    EXPECT_EQ(Code(u"seek gino to 10"_s), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
}

TEST_F(Media, LoopsFromTheNotice)
{
    OpenTone(3000);
    int rounds = 0;
    media->SetNotified([&](int notice) {
        EXPECT_EQ(notice, MediaNotice::Successful);
        if (++rounds < 5) {
            EXPECT_EQ(Code(u"play gino from 0 notify"_s), 0);
        } else {
            EXPECT_EQ(Code(u"stop gino"_s), 0);
            EXPECT_EQ(Code(u"close gino"_s), 0);
        }
    });
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    ASSERT_TRUE(PullUntil([&] { return rounds == 5; }));
    ASSERT_EQ(output->samples.size(), tone.size() * 5);
    for (size_t i = 0; i < 5; ++i)
        EXPECT_EQ(Difference(output->samples.data() + i * tone.size(), tone.data(), tone.size()), 0);
    EXPECT_EQ(output->opened, 1);
    EXPECT_FALSE(output->isOpen);
}

TEST_F(Media, ClosesWhilePlaying)
{
    OpenTone(200000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(5000);
    EXPECT_EQ(Code(u"close gino"_s), 0);
    EXPECT_FALSE(output->isOpen);
    EXPECT_EQ(Code(u"status gino mode"_s), MediaError::NotOpen);
    ASSERT_EQ(Open(Path(u"tone.wav"_s)), 0);
    EXPECT_EQ(Open(Path(u"tone.wav"_s)), MediaError::AlreadyOpen);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(5000);
    media.reset(); // and the program ends
}

TEST_F(Media, WithoutADevice)
{
    OpenTone(3000);
    output->refusal = u"The card is gone."_s;
    EXPECT_EQ(Code(u"play gino notify"_s), MediaError::DeviceBusy);
    EXPECT_EQ(
        media->ErrorText(MediaError::DeviceBusy),
        u"No sound device can be had to play the sound, or another program holds it.\nThe card is gone.");
    EXPECT_EQ(Mode(), u"stopped");
    EXPECT_EQ(Position(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(notices, std::vector<int>());
    output->refusal.clear();
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(output->samples, tone);
}

TEST_F(Media, UnknownCommands)
{
    EXPECT_EQ(Code(u""_s), MediaError::UnknownCommand);
    EXPECT_EQ(Code(u"dance gino"_s), MediaError::UnknownCommand);
    EXPECT_EQ(media->ErrorText(MediaError::UnknownCommand), u"The player does not know the command.\ndance.");
    OpenTone(3000);
    EXPECT_EQ(Code(u"status gino colour"_s), MediaError::UnknownWord);
    EXPECT_EQ(Code(u"status gino"_s), MediaError::MissingWord);
    EXPECT_EQ(Code(u"status other mode"_s), MediaError::NotOpen);
    EXPECT_EQ(Code(u"status"_s), MediaError::NotOpen);
    EXPECT_EQ(Code(u"info gino colour"_s), MediaError::UnknownWord);
    EXPECT_EQ(Code(u"play gino loudly"_s), MediaError::UnknownWord);
    EXPECT_EQ(Code(u"set gino time format bars"_s), MediaError::UnknownWord);
    EXPECT_EQ(Code(u"pause gino now"_s), MediaError::UnknownWord);
    EXPECT_EQ(Code(u"open \"\" alias gino"_s), MediaError::AlreadyOpen);
    EXPECT_EQ(media->Send(u"STATUS Gino MODE"_s), (MediaAnswer{0, u"stopped"_s}));
    EXPECT_EQ(Code(u"close gino"_s), 0);
    EXPECT_EQ(Code(u"open \"\" alias gino"_s), MediaError::MissingWord);
    EXPECT_EQ(Code(u"open /x.wav"_s), MediaError::MissingWord);
}

TEST_F(Media, EveryCodeHasAText)
{
    QStringList texts;
    for (const int code :
         {0, MediaError::NotOpen, MediaError::UnknownWord, MediaError::UnknownCommand,
          MediaError::DeviceNotKnown, MediaError::OutOfMemory, MediaError::BadNumber, MediaError::MissingWord,
          MediaError::FileNotFound, MediaError::FileNotReadable, MediaError::OutOfRange,
          MediaError::AlreadyOpen, MediaError::NoSound, MediaError::NotPlaying, MediaError::DeviceBusy, 1}) {
        EXPECT_TRUE(media->ErrorText(code).endsWith(u'.')) << code;
        texts.append(media->ErrorText(code));
    }
    EXPECT_EQ(texts.removeDuplicates(), 0);
    EXPECT_EQ(MediaError::DeviceNotKnown, 263);
    EXPECT_EQ(MediaError::DeviceBusy, 320);
}

TEST_F(Media, WhatIsNoSoundFile)
{
    EXPECT_EQ(Open(Path(u"missing.wav"_s)), MediaError::FileNotFound);
    EXPECT_EQ(Open(Path(u"no folder/missing.wav"_s)), MediaError::FileNotFound);
    const auto put = [&](const QString &name, const QByteArray &bytes) {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    put(u"empty.wav"_s, {});
    put(u"text.wav"_s, "instr 1\naout oscil 10000, 440, 1\nout aout\nendin\n");
    put(u"zeros.wav"_s, QByteArray(100000, '\0'));
    put(u"head.wav"_s, QByteArray("RIFF\x24\0\0\0WAVEfmt ", 16));
    for (const QString &name : {u"empty.wav"_s, u"text.wav"_s, u"zeros.wav"_s, u"head.wav"_s}) {
        EXPECT_EQ(Open(Path(name)), MediaError::NoSound) << name.toStdString();
        const QString text = media->ErrorText(MediaError::NoSound);
        EXPECT_TRUE(text.startsWith(u"The file holds no sound that can be played.\n"_s))
            << text.toStdString();
    }

    ASSERT_EQ(mkdir(QFile::encodeName(Path(u"folder.wav"_s)).constData(), 0755), 0);
    EXPECT_EQ(Open(Path(u"folder.wav"_s)), MediaError::FileNotReadable);
    ASSERT_EQ(mkfifo(QFile::encodeName(Path(u"fifo.wav"_s)).constData(), 0644), 0);
    EXPECT_EQ(Open(Path(u"fifo.wav"_s)), MediaError::FileNotReadable);
    EXPECT_EQ(Open(u"/dev/zero"_s, u" type waveaudio"_s), MediaError::FileNotReadable);
    EXPECT_GT(media->ErrorText(MediaError::FileNotReadable).size(), 32);
    EXPECT_EQ(Code(u"status gino mode"_s), MediaError::NotOpen);
}

TEST_F(Media, WithoutTheRightToRead)
{
    WriteSound(Path(u"a.wav"_s), Tones(100, 2));
    ASSERT_TRUE(QFile::setPermissions(Path(u"a.wav"_s), {}));
    const bool root = geteuid() == 0;
    ASSERT_EQ(root ? seteuid(65534) : 0, 0);
    const auto back = qScopeGuard([root] { EXPECT_EQ(root ? seteuid(0) : 0, 0); });
    EXPECT_EQ(Open(Path(u"a.wav"_s)), MediaError::FileNotReadable);
}

TEST_F(Media, ASoundWithoutFrames)
{
    OpenTone(0);
    EXPECT_EQ(Ask(u"status gino length"_s), u"0");
    EXPECT_EQ(Code(u"seek gino to start"_s), 0);
    EXPECT_EQ(Code(u"seek gino to 0"_s), 0);
    EXPECT_EQ(Code(u"seek gino to 1"_s), MediaError::OutOfRange);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    // It lasts until the device has asked for it, so that a loop of it does not run at full speed.
    for (int i = 0; i < 100; ++i) {
        std::this_thread::yield();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(Mode(), u"playing");
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
    EXPECT_EQ(Position(), 0);
}

TEST_F(Media, ATruncatedFilePlaysWhatItHas)
{
    WriteSound(Path(u"a.wav"_s), Tones(10000, 2));
    const std::vector<float> whole = ReadSound(Path(u"a.wav"_s));
    ASSERT_TRUE(QFile::resize(Path(u"a.wav"_s), 44 + 4 * 4000 + 1));
    ASSERT_EQ(Open(Path(u"a.wav"_s)), 0);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(output->samples, std::vector(whole.begin(), whole.begin() + 8000));
}

TEST_F(Media, PlaysOnWhenItsNameIsGivenToAnother)
{
    OpenTone(200000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(1000);
    WriteSound(Path(u"new.wav"_s), Tones(10, 1), {{}, 0x010002, 8000, 1});
    ASSERT_EQ(rename(QFile::encodeName(Path(u"new.wav"_s)).constData(),
                     QFile::encodeName(Path(u"tone.wav"_s)).constData()),
              0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(output->samples, tone);
    EXPECT_EQ(Ask(u"status gino channels"_s), u"2");
    EXPECT_EQ(Code(u"close gino"_s), 0);
    ASSERT_EQ(Open(Path(u"tone.wav"_s)), 0);
    EXPECT_EQ(Ask(u"status gino channels"_s), u"1");
}

TEST_F(Media, EndsWhereItsFileWasCut)
{
    OpenTone(400000);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    Pull(1000);
    ASSERT_TRUE(QFile::resize(Path(u"tone.wav"_s), 0));
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(notices, std::vector{MediaNotice::Successful});
    EXPECT_LT(output->samples.size(), tone.size());
    EXPECT_EQ(Mode(), u"stopped");
    EXPECT_EQ(Code(u"play gino from 0 notify"_s), 0);
    notices.clear();
    ASSERT_TRUE(PullToTheEnd());
}

TEST_F(Media, EndsWhereAnotherSoundWasWrittenOverItsFile)
{
    for (const int format :
         {0x010002, 0x010020}) { // 16 bit, and GSM, which is read from its start for a seek
        WriteSound(Path(u"a.wav"_s), Tones(100000, 1), {{}, format, 44100, 1});
        ASSERT_EQ(Open(Path(u"a.wav"_s)), 0);
        EXPECT_EQ(Code(u"play gino notify"_s), 0);
        Pull(1000);
        WriteSound(Path(u"a.wav"_s), Tones(100000, 16), {{}, 0x010002, 44100, 16});
        EXPECT_EQ(Code(u"play gino from 1000 notify"_s), 0);
        QCoreApplication::processEvents();
        notices.clear();
        ASSERT_TRUE(PullToTheEnd());
        EXPECT_EQ(std::exchange(notices, {}), std::vector{MediaNotice::Successful});
        EXPECT_EQ(Code(u"close gino"_s), 0);
        QCoreApplication::processEvents();
    }
}

TEST_F(Media, SamplesThatADeviceCannotTake)
{
    const float none = std::numeric_limits<float>::quiet_NaN();
    const float endless = std::numeric_limits<float>::infinity();
    WriteSound(Path(u"a.wav"_s), {0.5F, none, endless, -endless, 32768, -3, 1, -1}, {{}, 0x010006, 44100, 1});
    ASSERT_EQ(Open(Path(u"a.wav"_s)), 0);
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    ASSERT_TRUE(PullToTheEnd());
    EXPECT_EQ(output->samples, (std::vector<float>{0.5F, 0, 1, -1, 1, -1, 1, -1}));
}

TEST_F(Media, AFileOfTwoHoursTakesNoMemory)
{
    constexpr qint64 Frames = 7200LL * 44100;
    WriteSound(Path(u"long.w64"_s), Tones(1000, 2), {{}, 0x0b0002});
    const qint64 head = QFile(Path(u"long.w64"_s)).size() - 4000;
    // A hole of the file system; its head tells the length.
    {
        QFile file(Path(u"long.w64"_s));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const qint64 whole = head + Frames * 4;
        const qint64 data = Frames * 4 + 24;
        file.seek(16);
        file.write(reinterpret_cast<const char *>(&whole), 8);
        file.seek(head - 8);
        file.write(reinterpret_cast<const char *>(&data), 8);
        ASSERT_TRUE(file.resize(whole));
    }
    const auto resident = [] {
        QFile file(u"/proc/self/statm"_s);
        return file.open(QIODevice::ReadOnly)
                   ? file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE)
                   : 0;
    };
    const qint64 before = resident();
    ASSERT_EQ(Open(Path(u"long.w64"_s)), 0);
    EXPECT_EQ(Ask(u"status gino length"_s), u"7200000");
    EXPECT_EQ(Code(u"play gino notify"_s), 0);
    for (const int at : {0, 3600000, 7190000}) {
        EXPECT_EQ(Code(u"play gino from "_s + QString::number(at)), 0);
        Pull(44100);
        EXPECT_EQ(Position(), at + 1000);
        output->samples.clear();
    }
    EXPECT_LT(resident() - before, 16 << 20);
}
