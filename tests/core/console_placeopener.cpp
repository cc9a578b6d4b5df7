// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/placeopener.h"

#include "console/messageplace.h"
#include "shell/mailbox.h"
#include "shell/settings.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// An editor that may run, and what a console does with it, in its order.
struct PlaceOpenerTest : testing::Test {
    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(u"settings"_s)};
    bool runs = false;
    bool starts = true;
    QStringList calls;
    PlaceOpener::Ways Ways(SettingsStore &store)
    {
        return {.running = {.find = [this] { return runs; },
                            .call =
                                [this, &store](bool) {
                                    const Mailbox::Mail mail = Mailbox::Look(store);
                                    Mailbox::Take(mail, store);
                                    calls.append(mail.file + u':' + QString::number(mail.line));
                                    return true;
                                }},
                .start =
                    [this](const QString &path) {
                        calls.append(u"start "_s + path);
                        return starts;
                    },
                .listens = [this] { return runs; },
                .failed = [this](const QString &why) { calls.append(u"failed "_s + why); },
                .done = [this] { calls.append(u"done"_s); }};
    }
    static void Serve(int ms)
    {
        QEventLoop loop;
        QTimer::singleShot(ms, &loop, &QEventLoop::quit);
        loop.exec();
    }
    static void UntilDone(const PlaceOpener &opener)
    {
        for (const QDeadlineTimer deadline(60'000); opener.IsWaiting() && !deadline.hasExpired();)
            Serve(10);
        EXPECT_FALSE(opener.IsWaiting());
    }
};

} // namespace

TEST_F(PlaceOpenerTest, ARunningEditorGetsThePlace)
{
    runs = true;
    PlaceOpener opener(settings, Ways(settings));
    opener.Open({u"/a.orc"_s, 7});
    EXPECT_FALSE(opener.IsWaiting());
    EXPECT_EQ(calls, QStringList{u"/a.orc:7"_s});
}

TEST_F(PlaceOpenerTest, AStartedEditorGetsTheLineWhenItListens)
{
    PlaceOpener opener(settings, Ways(settings));
    opener.Open({u"/a.orc"_s, 7});
    EXPECT_TRUE(opener.IsWaiting());
    Serve(250);
    EXPECT_TRUE(opener.IsWaiting());
    EXPECT_EQ(calls, QStringList{u"start /a.orc"_s});
    EXPECT_EQ(Mailbox::Look(settings), Mailbox::Mail());
    runs = true;
    UntilDone(opener);
    EXPECT_EQ(calls, (QStringList{u"start /a.orc"_s, u"/a.orc:7"_s, u"done"_s}));
}

TEST_F(PlaceOpenerTest, AFileAsAWholeNeedsNoSecondCall)
{
    PlaceOpener opener(settings, Ways(settings));
    opener.Open({u"/a.orc"_s, 0});
    EXPECT_FALSE(opener.IsWaiting());
    EXPECT_EQ(calls, QStringList{u"start /a.orc"_s});
}

TEST_F(PlaceOpenerTest, TheNewerPlaceIsTheOneThatIsWanted)
{
    PlaceOpener opener(settings, Ways(settings));
    opener.Open({u"/a.orc"_s, 7});
    runs = true;
    opener.Open({u"/b.orc"_s, 8});
    EXPECT_FALSE(opener.IsWaiting());
    EXPECT_EQ(calls, (QStringList{u"start /a.orc"_s, u"/b.orc:8"_s}));
}

TEST_F(PlaceOpenerTest, OneEditorIsStartedHoweverOftenItIsWanted)
{
    PlaceOpener::Ways ways = Ways(settings);
    int waits = 0;
    ways.running.find = [&] { // waits for an editor that is about to listen
        ++waits;
        return runs;
    };
    PlaceOpener opener(settings, ways);
    opener.Open({u"/a.orc"_s, 7});
    EXPECT_EQ(waits, 1);
    opener.Open({u"/a.orc"_s, 7});
    opener.Open({u"/b.orc"_s, 0});
    EXPECT_EQ(waits, 1) << "nobody waits with the console's window for it";
    EXPECT_TRUE(opener.IsWaiting());
    runs = true;
    UntilDone(opener);
    EXPECT_EQ(calls, (QStringList{u"start /a.orc"_s, u"/b.orc:0"_s, u"done"_s}));
}

TEST_F(PlaceOpenerTest, WhatDoesNotComeIsTold)
{
    {
        PlaceOpener opener(settings, Ways(settings), 50);
        opener.Open({u"/a.orc"_s, 7});
        UntilDone(opener);
        EXPECT_EQ(calls,
                  (QStringList{u"start /a.orc"_s,
                               u"failed Line 7 of /a.orc cannot be shown in the editor:\nThe editor does "
                               "not answer."_s,
                               u"done"_s}));
    }
    calls.clear();
    starts = false;
    PlaceOpener opener(settings, Ways(settings));
    opener.Open({u"/a.orc"_s, 0});
    EXPECT_FALSE(opener.IsWaiting());
    EXPECT_EQ(calls, (QStringList{u"start /a.orc"_s,
                                  u"failed /a.orc cannot be shown in the editor:\nThe editor cannot be "
                                  "started."_s,
                                  u"done"_s}));
}

TEST_F(PlaceOpenerTest, AStoreThatCannotBeWrittenIsTold)
{
    SettingsStore nowhere(u"/dev/null/settings"_s);
    PlaceOpener opener(nowhere, Ways(nowhere));
    runs = true;
    opener.Open({u"/a.orc"_s, 7});
    EXPECT_FALSE(opener.IsWaiting());
    ASSERT_EQ(calls.size(), 2) << calls.join(u'|').toStdString();
    EXPECT_TRUE(calls[0].startsWith(u"failed Line 7 of /a.orc cannot be shown in the editor:\n"_s));
    EXPECT_GT(calls[0].size(), 60) << "and why";
    EXPECT_EQ(calls[1], u"done"_s);

    // The same where the editor had to be started.
    calls.clear();
    runs = false;
    opener.Open({u"/a.orc"_s, 7});
    EXPECT_TRUE(opener.IsWaiting());
    runs = true;
    UntilDone(opener);
    ASSERT_EQ(calls.size(), 3) << calls.join(u'|').toStdString();
    EXPECT_TRUE(calls[1].startsWith(u"failed Line 7 of /a.orc"_s));
}
