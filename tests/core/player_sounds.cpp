// SPDX-License-Identifier: GPL-3.0-or-later

// The player over the real media control service and a device that the test drives.

#include "platform/mediacontrol.h"
#include "platform/mediaengine.h"
#include "player/player.h"
#include "support/recordedcontrols.h"
#include "support/recordingoutput.h"
#include "support/soundfiles.h"
#include "support/testcontext.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QString>
#include <thread>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int Rate = 8000; ///< frames a second, of all sounds here

class PlayedSounds : public ::testing::Test
{
protected:
    PlayedSounds()
    {
        context.document.CurrentFile = context.WriteFile(u"piece.orc"_s);
        controls.calls.clear();
    }

    QString Write(const QString &name, int frames, SoundForm form = {})
    {
        form.rate = Rate;
        const QString path = context.folder.filePath(name);
        WriteSound(path, Tones(frames, form.channels), form);
        return path;
    }
    /// Lets the device take blocks, and the event loop run, until something is so.
    bool PullUntil(const std::function<bool()> &done)
    {
        for (const QDeadlineTimer deadline(60000); !done();) {
            if (deadline.hasExpired())
                return false;
            if (output->Pull(256) == 0)
                std::this_thread::yield();
            QCoreApplication::processEvents();
        }
        return true;
    }
    int Position()
    {
        player.Tick();
        return controls.position;
    }

    TestContext context;
    RecordingOutput *output = new RecordingOutput;
    MediaEngine media{std::unique_ptr<AudioOutput>(output)};
    RecordedControls controls;
    Player player{context.editor, media, controls};
};

TEST_F(PlayedSounds, ThePlayedSoundEndsClosed)
{
    const QString sound = Write(u"piece.wav"_s, 2 * Rate);
    player.mnuPlay();
    EXPECT_EQ(context.status.text,
              sound + u" - 8000Hz 16bit Stereo - duration: 0:02 - size: 62.5Kb - 31.3Kbps"_s);
    EXPECT_TRUE(controls.enabled);
    EXPECT_TRUE(controls.running);
    EXPECT_EQ(controls.length, 2000);
    ASSERT_TRUE(PullUntil([this] { return Position() >= 1000; }));
    player.MenuOpening();
    EXPECT_EQ(player.SoundShellTag(), sound);
    ASSERT_TRUE(PullUntil([this] { return !controls.enabled; }));
    EXPECT_FALSE(controls.running);
    EXPECT_FALSE(output->isOpen);
    EXPECT_EQ(controls.time, QString());
    player.MenuOpening();
    EXPECT_EQ(player.SoundShellTag(), QString());
}

TEST_F(PlayedSounds, APausedSoundIsMovedAndGoesOn)
{
    Write(u"piece.wav"_s, 4 * Rate);
    player.mnuPlay();
    ASSERT_TRUE(PullUntil([this] { return Position() >= 500; }));
    player.MCIpause();
    EXPECT_FALSE(controls.running);
    const int paused = Position();
    EXPECT_EQ(output->Pull(256), 0);
    EXPECT_EQ(Position(), paused);
    player.SliderTaken();
    player.SliderReleased(3000);
    EXPECT_EQ(Position(), 3000);
    EXPECT_EQ(output->Pull(256), 0);
    EXPECT_FALSE(controls.running);
    player.MCIpause();
    EXPECT_TRUE(controls.running);
    ASSERT_TRUE(PullUntil([this] { return Position() >= 3500; }));
    // The end is told after a pause and another place too.
    ASSERT_TRUE(PullUntil([this] { return !controls.enabled; }));
}

TEST_F(PlayedSounds, PlayAndTheSliderGoOnPlaying)
{
    Write(u"piece.wav"_s, 4 * Rate);
    player.mnuPlay();
    ASSERT_TRUE(PullUntil([this] { return Position() >= 500; }));
    player.SliderTaken();
    player.SliderReleased(2000);
    EXPECT_TRUE(controls.running);
    ASSERT_TRUE(PullUntil([this] { return Position() >= 2100; }));
    player.mnuPlay();
    EXPECT_LT(Position(), 500);
    EXPECT_TRUE(controls.running);
    ASSERT_TRUE(PullUntil([this] { return !controls.enabled; }));
}

TEST_F(PlayedSounds, ALoopBeginsAgain)
{
    Write(u"piece.wav"_s, Rate);
    controls.looping = true;
    player.mnuPlay();
    for (int turn = 0; turn < 2; ++turn) {
        ASSERT_TRUE(PullUntil([this] { return Position() >= 800; }));
        ASSERT_TRUE(PullUntil([this] { return Position() < 500; }));
        EXPECT_TRUE(controls.enabled);
        EXPECT_TRUE(controls.running);
    }
    controls.looping = false;
    ASSERT_TRUE(PullUntil([this] { return !controls.enabled; }));
    EXPECT_GE(output->samples.size(), 3u * Rate * 2u);
}

TEST_F(PlayedSounds, WhatWasRenderedMeanwhileIsHeardAfterStop)
{
    const QString sound = Write(u"piece.wav"_s, 2 * Rate);
    player.mnuPlay();
    EXPECT_EQ(controls.length, 2000);
    EXPECT_TRUE(QFile::remove(sound));
    Write(u"piece.wav"_s, 3 * Rate);
    player.mnuPlay();
    EXPECT_EQ(controls.length, 2000);
    player.MCIstop();
    player.mnuPlay();
    EXPECT_EQ(controls.length, 3000);
    EXPECT_EQ(output->opened, 2);
}

TEST_F(PlayedSounds, ANameThatTellsNothingIsTriedAsEachDevice)
{
    const QString sound = Write(u"my take"_s, Rate);
    player.MCIopen(sound);
    EXPECT_EQ(context.status.shown.value(1), context.document.CurrentFile + u" - loading as waveaudio..."_s);
    EXPECT_TRUE(context.status.text.startsWith(sound + u" - 8000Hz 16bit Stereo - "_s));
    EXPECT_TRUE(controls.running);
}

TEST_F(PlayedSounds, ATextIsNoSound)
{
    for (const QString &name : {u"piece.wav"_s, u"piece.txt"_s}) {
        const QString path = context.WriteFile(name, "instr 1\nendin\n");
        MediaEngine another(std::make_unique<RecordingOutput>()); // which tells why
        const int code = another.Send(u"open \""_s + path + u"\" alias gino type waveaudio"_s).code;
        EXPECT_EQ(code, MediaError::NoSound);
        context.desktop.ExpectMessage({.text = another.ErrorText(code), .icon = BoxIcon::Warning});
        player.MCIopen(path);
        EXPECT_EQ(context.status.text, path + u" - cannot load"_s);
        EXPECT_FALSE(controls.enabled);
    }
}

TEST_F(PlayedSounds, WithoutADeviceNothingIsOpen)
{
    const QString sound = Write(u"piece.wav"_s, Rate);
    output->refusal = u"no card"_s;
    context.desktop.ExpectMessage(
        {.text = u"No sound device can be had to play the sound, or another program holds it.\nno card."_s,
         .icon = BoxIcon::Warning});
    player.mnuPlay();
    EXPECT_EQ(context.status.text, sound + u" - cannot load"_s);
    EXPECT_FALSE(controls.enabled);
    // The device has come.
    output->refusal.clear();
    player.mnuPlay();
    EXPECT_TRUE(controls.running);
}

} // namespace

} // namespace zelvane::test
