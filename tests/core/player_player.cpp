// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player.h"

#include "platform/mediacontrol.h"
#include "player/soundsearch.h"
#include "support/recordedcontrols.h"
#include "support/scriptedmediacontrol.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class PlayerTest : public ::testing::Test
{
protected:
    PlayerTest() { controls.calls.clear(); }

    void AnswerMode(const QString &mode) { media.Answer(u"status gino mode"_s, mode); }
    /// The facts of a sound of CD quality.
    void AnswerFacts(int length)
    {
        media.Answer(u"status gino samplespersec"_s, u"44100"_s);
        media.Answer(u"status gino bitspersample"_s, u"16"_s);
        media.Answer(u"status gino channels"_s, u"2"_s);
        media.Answer(u"status gino length"_s, QString::number(length));
        media.Answer(u"status gino bytespersec"_s, u"176400"_s);
    }
    /// What the status line shows of a sound of so many bytes, behind its path.
    QString Facts(qint64 size = 1536)
    {
        const QString path = context.folder.filePath(u"s.wav"_s);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(size));
        file.close();
        player.MCIopen(path);
        EXPECT_TRUE(context.status.text.startsWith(path));
        return context.status.text.mid(path.size());
    }
    void ExpectWarning(const QString &text)
    {
        context.desktop.ExpectMessage({.text = text, .icon = BoxIcon::Warning});
    }

    TestContext context;
    ScriptedMediaControl media;
    RecordedControls controls;
    Player player{context.editor, media, controls};
};

const QString Mode = u"status gino mode"_s;
const QString Length = u"status gino length"_s;

TEST_F(PlayerTest, StartsClosed)
{
    RecordedControls fresh;
    fresh.enabled = fresh.running = fresh.remaining = true;
    const Player closed(context.editor, media, fresh);
    EXPECT_FALSE(fresh.enabled);
    EXPECT_FALSE(fresh.running);
    EXPECT_FALSE(fresh.remaining);
    EXPECT_EQ(fresh.position, 0);
    EXPECT_EQ(closed.SoundShellTag(), QString());
    EXPECT_TRUE(media.commands.isEmpty());
}

// Opening

TEST_F(PlayerTest, AnOpenedSoundPlaysBeforeItsFactsAreRead)
{
    AnswerFacts(61500);
    const QString path = context.WriteFile(u"s.wav"_s, QByteArray(1536, 'x'));
    player.MCIopen(path);
    EXPECT_EQ(media.commands,
              QStringList({u"close gino"_s, u"open "_s + path + u" alias gino"_s, u"play gino notify"_s,
                           u"status gino samplespersec"_s, u"status gino bitspersample"_s,
                           u"status gino channels"_s, u"set gino time format milliseconds "_s,
                           u"status gino length"_s, u"status gino bytespersec"_s}));
    EXPECT_EQ(controls.TakeCalls(),
              QStringList({u"timer off"_s, u"position 0"_s, u"enable"_s, u"timer on"_s}));
    EXPECT_EQ(controls.length, 61500);
    EXPECT_EQ(context.status.shown,
              QStringList({path + u" - loading..."_s,
                           path + u" - 44100Hz 16bit Stereo - duration: 1:02 - size: 1.5Kb - 172.3Kbps"_s}));
}

TEST_F(PlayerTest, APathWithABlankIsQuoted)
{
    player.MCIopen(u"/sounds/my piece.wav"_s);
    EXPECT_EQ(media.commands.value(1), u"open \"/sounds/my piece.wav\" alias gino"_s);
}

TEST_F(PlayerTest, ChannelsAreNamedUpToTwo)
{
    AnswerFacts(1000);
    for (const auto &[told, shown] : {std::pair{u"1"_s, u"Mono"_s},
                                      {u"2"_s, u"Stereo"_s},
                                      {u"6"_s, u"6"_s},
                                      {u"0"_s, u""_s},
                                      {u""_s, u""_s}}) {
        media.Answer(u"status gino channels"_s, told);
        EXPECT_EQ(Facts(), u" - 44100Hz 16bit "_s + shown + u" - duration: 0:01 - size: 1.5Kb - 172.3Kbps"_s);
    }
}

TEST_F(PlayerTest, ASoundWithoutARateTellsItsProduct)
{
    media.Answer(u"info gino product"_s, u" A sequencer of many names"_s);
    EXPECT_EQ(Facts(), u" - A sequencer of many - duration: 0ms - size: 1.5Kb"_s);
    media.Answer(u"info gino product"_s, u"  Synth  "_s);
    EXPECT_EQ(Facts(), u" - Synth - duration: 0ms - size: 1.5Kb"_s);
    EXPECT_EQ(controls.length, 0);
}

TEST_F(PlayerTest, ShortSoundsTellMilliseconds)
{
    for (const auto &[length, shown] : {std::pair{999, u"999ms"_s},
                                        {1000, u"0:01"_s},
                                        {2500, u"0:02"_s},
                                        {3500, u"0:04"_s},
                                        {59499, u"0:59"_s},
                                        {59500, u"1:00"_s},
                                        {3600000, u"60:00"_s}}) {
        AnswerFacts(length);
        EXPECT_EQ(Facts(),
                  u" - 44100Hz 16bit Stereo - duration: "_s + shown + u" - size: 1.5Kb - 172.3Kbps"_s);
    }
}

TEST_F(PlayerTest, TheLengthIsReadInMillisecondsOnly)
{
    AnswerFacts(5000);
    media.Fail(u"set gino time format milliseconds "_s, 261);
    EXPECT_EQ(Facts(), u" - 44100Hz 16bit Stereo - duration: 0ms - size: 1.5Kb - 172.3Kbps"_s);
    EXPECT_FALSE(media.commands.contains(u"status gino length"_s));
    EXPECT_EQ(controls.length, 0);
}

TEST_F(PlayerTest, SizesAreRoundedToOneDecimal)
{
    AnswerFacts(1000);
    for (const auto &[size, shown] : {std::pair<qint64, QString>{0, u"0 bytes"_s},
                                      {1023, u"1023 bytes"_s},
                                      {1024, u"1Kb"_s},
                                      {1075, u"1Kb"_s},
                                      {1076, u"1.1Kb"_s},
                                      {1048575, u"1024Kb"_s},
                                      {1048576, u"1Mb"_s},
                                      {8000000000, u"7629.4Mb"_s}})
        EXPECT_EQ(Facts(size),
                  u" - 44100Hz 16bit Stereo - duration: 0:01 - size: "_s + shown + u" - 172.3Kbps"_s);
}

TEST_F(PlayerTest, TheRateIsCutAtTwelveCharacters)
{
    AnswerFacts(1000);
    for (const auto &[rate, shown] : {std::pair{u"51"_s, u" - 0.0Kbps"_s},
                                      {u"52"_s, u" - 0.1Kbps"_s},
                                      {u"256"_s, u" - 0.3Kbps"_s}, // .25: halves away from zero
                                      {u"768"_s, u" - 0.8Kbps"_s},
                                      {u"88200"_s, u" - 86.1Kbps"_s},
                                      {u"1411200"_s, u" - 1378.1Kbp"_s},
                                      {u"0"_s, u""_s},
                                      {u""_s, u""_s}}) {
        media.Answer(u"status gino bytespersec"_s, rate);
        EXPECT_EQ(Facts(), u" - 44100Hz 16bit Stereo - duration: 0:01 - size: 1.5Kb"_s + shown);
    }
}

TEST_F(PlayerTest, ASoundThatCannotBeOpenedIsTold)
{
    controls.enabled = true;
    media.Fail(u"open /s.wav alias gino"_s, 275);
    media.errorTexts[275] = QString(400, u'e');
    ExpectWarning(QString(300, u'e'));
    player.MCIopen(u"/s.wav"_s);
    EXPECT_EQ(media.commands, QStringList({u"close gino"_s, u"open /s.wav alias gino"_s}));
    EXPECT_EQ(context.status.shown, QStringList({u"/s.wav - loading..."_s, u"/s.wav - cannot load"_s}));
    EXPECT_EQ(controls.TakeCalls(),
              QStringList({u"timer off"_s, u"timer off"_s, u"leave"_s, u"position 0"_s, u"disable"_s}));
}

TEST_F(PlayerTest, EveryDeviceIsTriedWhereTheNameTellsNone)
{
    context.document.CurrentFile = u"/music/piece.orc"_s;
    media.Fail(u"open /s.raw alias gino"_s, MediaError::DeviceNotKnown);
    media.Answer(u"sysinfo all quantity"_s, u"3"_s);
    for (const auto &[number, device] : {std::pair{1, u"tape"_s}, {2, u"waveaudio"_s}, {3, u"disc"_s}})
        media.Answer(u"sysinfo all name "_s + QString::number(number), device);
    media.Fail(u"open \"/s.raw\" alias gino type tape"_s, 277);
    player.MCIopen(u"/s.raw"_s);
    EXPECT_EQ(media.commands.mid(1, 7),
              QStringList({u"open /s.raw alias gino"_s, u"sysinfo all quantity"_s, u"sysinfo all name 1"_s,
                           u"open \"/s.raw\" alias gino type tape"_s, u"sysinfo all name 2"_s,
                           u"open \"/s.raw\" alias gino type waveaudio"_s, u"play gino notify"_s}));
    EXPECT_EQ(context.status.shown.mid(0, 3),
              QStringList({u"/s.raw - loading..."_s, u"/music/piece.orc - loading as tape..."_s,
                           u"/music/piece.orc - loading as waveaudio..."_s}));
    EXPECT_TRUE(controls.enabled);
}

TEST_F(PlayerTest, TheLastDeviceTellsWhyNoneOpens)
{
    media.Fail(u"open /s.raw alias gino"_s, MediaError::DeviceNotKnown);
    media.Answer(u"sysinfo all quantity"_s, u"2"_s);
    media.Answer(u"sysinfo all name 1"_s, u"tape"_s);
    media.Answer(u"sysinfo all name 2"_s, u"disc"_s);
    media.Fail(u"open \"/s.raw\" alias gino type tape"_s, 276);
    media.Fail(u"open \"/s.raw\" alias gino type disc"_s, 277);
    media.errorTexts[277] = u"no disc"_s;
    ExpectWarning(u"no disc"_s);
    player.MCIopen(u"/s.raw"_s);
    EXPECT_EQ(context.status.text, u"/s.raw - cannot load"_s);
    EXPECT_FALSE(controls.enabled);
}

TEST_F(PlayerTest, WithoutADeviceTheFirstErrorStands)
{
    media.Fail(u"open /s.raw alias gino"_s, MediaError::DeviceNotKnown);
    media.errorTexts[MediaError::DeviceNotKnown] = u"what is it?"_s;
    ExpectWarning(u"what is it?"_s);
    player.MCIopen(u"/s.raw"_s);
    EXPECT_EQ(context.status.text, u"/s.raw - cannot load"_s);
}

// Playing, pausing, stopping

TEST_F(PlayerTest, PlayStartsTheTimer)
{
    player.MCIplay();
    EXPECT_EQ(media.TakeCommands(), QStringList(u"play gino notify"_s));
    EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer on"_s));
}

TEST_F(PlayerTest, ABusyDeviceClosesTheSound)
{
    controls.enabled = true;
    media.Fail(u"play gino notify"_s, MediaError::DeviceBusy);
    media.errorTexts[MediaError::DeviceBusy] = u"busy"_s;
    ExpectWarning(u"busy"_s);
    player.MCIplay();
    EXPECT_EQ(media.TakeCommands(), QStringList({u"play gino notify"_s, u"close gino"_s}));
    EXPECT_FALSE(controls.enabled);
    EXPECT_FALSE(controls.running);
}

TEST_F(PlayerTest, ASoundThatFindsNoDeviceIsNotOpen)
{
    media.Fail(u"play gino notify"_s, MediaError::DeviceBusy);
    media.errorTexts[MediaError::DeviceBusy] = u"busy"_s;
    ExpectWarning(u"busy"_s);
    player.MCIopen(u"/s.wav"_s);
    EXPECT_EQ(media.TakeCommands(), QStringList({u"close gino"_s, u"open /s.wav alias gino"_s,
                                                 u"play gino notify"_s, u"close gino"_s}));
    EXPECT_EQ(context.status.text, u"/s.wav - cannot load"_s);
    EXPECT_FALSE(controls.enabled);
}

TEST_F(PlayerTest, AnotherFailureToPlayIsSilent)
{
    controls.enabled = true;
    media.Fail(u"play gino notify"_s, 333);
    player.MCIplay();
    EXPECT_EQ(media.TakeCommands(), QStringList(u"play gino notify"_s));
    EXPECT_TRUE(controls.TakeCalls().isEmpty());
}

TEST_F(PlayerTest, PauseGoesByTheMode)
{
    AnswerMode(u"playing"_s);
    player.MCIpause();
    EXPECT_EQ(media.TakeCommands(), QStringList({Mode, u"pause gino"_s}));
    EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer off"_s));
    AnswerMode(u"paused"_s);
    player.MCIpause();
    EXPECT_EQ(media.TakeCommands(), QStringList({Mode, u"resume gino"_s}));
    EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer on"_s));
    for (const QString &mode : {u"stopped"_s, u""_s}) {
        AnswerMode(mode);
        player.MCIpause();
        EXPECT_EQ(media.TakeCommands(), QStringList(Mode));
        EXPECT_TRUE(controls.TakeCalls().isEmpty());
    }
}

TEST_F(PlayerTest, AFailedPauseChangesNothing)
{
    media.Fail(u"pause gino"_s, 300);
    media.Fail(u"resume gino"_s, 300);
    for (const QString &mode : {u"playing"_s, u"paused"_s}) {
        AnswerMode(mode);
        player.MCIpause();
        EXPECT_TRUE(controls.TakeCalls().isEmpty());
    }
}

TEST_F(PlayerTest, StopCloses)
{
    controls.enabled = true;
    controls.time = u"0:01"_s;
    player.MCIstop();
    EXPECT_EQ(media.TakeCommands(), QStringList({u"stop gino"_s, u"close gino"_s}));
    EXPECT_EQ(controls.TakeCalls(), QStringList({u"timer off"_s, u"leave"_s, u"position 0"_s, u"disable"_s}));
    EXPECT_EQ(controls.time, QString());
}

TEST_F(PlayerTest, TheEndOfTheProgramCloses)
{
    player.Close();
    EXPECT_EQ(media.TakeCommands(), QStringList(u"close gino"_s));
}

TEST_F(PlayerTest, TheEndOfTheSoundCloses)
{
    media.End();
    EXPECT_EQ(media.TakeCommands(), QStringList({u"stop gino"_s, u"close gino"_s}));
    EXPECT_EQ(controls.TakeCalls(), QStringList({u"timer off"_s, u"leave"_s, u"position 0"_s, u"disable"_s}));
}

TEST_F(PlayerTest, ALoopGoesOnUntilItIsSwitchedOff)
{
    controls.looping = true;
    media.End();
    media.End();
    EXPECT_EQ(media.TakeCommands(),
              QStringList({u"play gino from 0 notify"_s, u"play gino from 0 notify"_s}));
    EXPECT_TRUE(controls.TakeCalls().isEmpty());
    controls.looping = false;
    media.End();
    EXPECT_EQ(media.TakeCommands(), QStringList({u"stop gino"_s, u"close gino"_s}));
}

TEST_F(PlayerTest, ALoopThatCannotBeginAgainCloses)
{
    controls.looping = true;
    media.Fail(u"play gino from 0 notify"_s, MediaError::DeviceBusy);
    media.End();
    EXPECT_EQ(media.TakeCommands(),
              QStringList({u"play gino from 0 notify"_s, u"stop gino"_s, u"close gino"_s}));
}

TEST_F(PlayerTest, OtherNoticesAreIgnored)
{
    media.End(MediaNotice::Superseded);
    media.End(MediaNotice::Aborted);
    EXPECT_TRUE(media.commands.isEmpty());
    EXPECT_TRUE(controls.TakeCalls().isEmpty());
}

// The commands

TEST_F(PlayerTest, PlayOpensTheSoundOfTheDocument)
{
    context.document.CurrentFile = context.WriteFile(u"piece.orc"_s);
    const QString sound = context.WriteFile(u"piece.wav"_s);
    player.SearchSoundFile();
    EXPECT_EQ(controls.image, u"playable"_s);
    EXPECT_EQ(controls.tooltip, u"Play "_s + sound);
    player.mnuPlay();
    EXPECT_EQ(media.commands.mid(0, 3),
              QStringList({Mode, u"close gino"_s, u"open "_s + sound + u" alias gino"_s}));
    EXPECT_EQ(controls.image, u"play"_s);
    EXPECT_EQ(controls.tooltip, u"Play/Restart"_s);
}

TEST_F(PlayerTest, PlayRestartsAnOpenSound)
{
    controls.image = u"playable"_s;
    for (const QString &mode : {u"playing"_s, u"paused"_s}) {
        AnswerMode(mode);
        player.mnuPlay();
        EXPECT_EQ(media.TakeCommands(), QStringList({Mode, u"seek gino to start"_s, u"play gino notify"_s}));
        EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer on"_s));
    }
    EXPECT_EQ(controls.image, u"playable"_s);
}

TEST_F(PlayerTest, PlayDoesNothingWithAnUntitledDocument)
{
    player.mnuPlay();
    EXPECT_EQ(media.TakeCommands(), QStringList(Mode));
    EXPECT_TRUE(context.status.shown.isEmpty());
}

TEST_F(PlayerTest, TheButtonTellsThatADocumentHasNoSound)
{
    context.document.CurrentFile = context.WriteFile(u"piece.orc"_s);
    player.SearchSoundFile();
    EXPECT_EQ(controls.image, u"play"_s);
    EXPECT_EQ(controls.tooltip, u"Play/Restart"_s);
}

TEST_F(PlayerTest, ASoundIsOpenedByHand)
{
    context.document.CurrentFile = u"/music/piece.orc"_s;
    const FileDialogRequest dialog{.filters = SoundFilters(), .folder = u"/music"_s};
    context.desktop.ExpectOpenDialog(dialog, {u"/sounds/other.au"_s});
    player.mnuOpenSoundfile();
    EXPECT_EQ(media.TakeCommands().value(1), u"open /sounds/other.au alias gino"_s);
    context.desktop.ExpectOpenDialog(dialog, {});
    player.mnuOpenSoundfile();
    EXPECT_TRUE(media.commands.isEmpty());
}

TEST_F(PlayerTest, TheMenuKnowsTheOpenSound)
{
    media.Answer(u"info gino file"_s, u"/a/"_s + QString(300, u'n') + u".wav"_s);
    controls.enabled = true;
    player.MenuOpening();
    EXPECT_EQ(player.SoundShellTag(), u"/a/"_s + QString(300, u'n') + u".wav"_s);
    controls.enabled = false;
    player.MenuOpening();
    EXPECT_EQ(player.SoundShellTag(), QString());
    EXPECT_EQ(media.commands, QStringList(u"info gino file"_s));
}

// The time and the slider

TEST_F(PlayerTest, ATickShowsThePosition)
{
    media.Answer(u"status gino position"_s, u"61499"_s);
    player.Tick();
    EXPECT_EQ(media.TakeCommands(), QStringList(u"status gino position"_s));
    EXPECT_EQ(controls.position, 61499);
    EXPECT_EQ(controls.time, u"1:01"_s);
}

TEST_F(PlayerTest, AFailedQueryIsNought)
{
    for (const QString &answer : {u""_s, u"ms 12"_s, u"-5"_s}) {
        media.Answer(u"status gino position"_s, answer);
        player.Tick();
        EXPECT_EQ(controls.position, 0);
        EXPECT_EQ(controls.time, u"0:00"_s);
    }
    media.Answer(u"status gino position"_s, u"12 ms"_s);
    player.Tick();
    EXPECT_EQ(controls.position, 12);
    media.Answer(u"status gino position"_s, u"999999999999"_s);
    player.Tick();
    EXPECT_EQ(controls.position, 2147483647);
}

TEST_F(PlayerTest, TheTimeIsElapsedOrRemaining)
{
    media.Answer(u"status gino position"_s, u"10000"_s);
    media.Answer(u"status gino length"_s, u"75000"_s);
    player.SwapTimeMode();
    EXPECT_TRUE(controls.remaining);
    EXPECT_EQ(controls.time, u"1:05"_s);
    EXPECT_EQ(media.TakeCommands(), QStringList({u"status gino position"_s, u"status gino length"_s}));
    player.SwapTimeMode();
    EXPECT_FALSE(controls.remaining);
    EXPECT_EQ(controls.time, u"0:10"_s);
}

TEST_F(PlayerTest, AReleasedSliderSeeks)
{
    player.SliderTaken();
    EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer off"_s));
    EXPECT_TRUE(media.commands.isEmpty());
    AnswerMode(u"playing"_s);
    player.SliderReleased(1234);
    EXPECT_EQ(media.TakeCommands(), QStringList({Mode, u"seek gino to 1234"_s, u"play gino notify"_s}));
    EXPECT_EQ(controls.TakeCalls(), QStringList(u"timer on"_s));
    AnswerMode(u"paused"_s);
    player.SliderReleased(5);
    EXPECT_EQ(media.TakeCommands(),
              QStringList({Mode, u"seek gino to 5"_s, u"play gino"_s, u"pause gino"_s}));
    EXPECT_TRUE(controls.TakeCalls().isEmpty());
    AnswerMode(u"stopped"_s);
    player.SliderReleased(6);
    EXPECT_EQ(media.TakeCommands(), QStringList({Mode, u"seek gino to 6"_s}));
}

TEST_F(PlayerTest, ASliderThatWasNotMovedFollowsAgain)
{
    for (const auto &[mode, calls] : {std::pair{u"playing"_s, QStringList(u"timer on"_s)},
                                      {u"paused"_s, QStringList()},
                                      {u"stopped"_s, QStringList()}}) {
        AnswerMode(mode);
        player.SliderKept();
        EXPECT_EQ(media.TakeCommands(), QStringList(Mode));
        EXPECT_EQ(controls.TakeCalls(), calls);
    }
}

} // namespace

} // namespace zelvane::test
