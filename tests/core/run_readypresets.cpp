// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/readypresets.h"

#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "support/printers.h"
#include "support/settingsfixture.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

const QString Shipped = QStringLiteral(ZELVANE_SOURCE_DIR "/data/presets");

class ReadyPresetsTest : public test::SettingsFixture
{
};

} // namespace

TEST_F(ReadyPresetsTest, TheShippedOnesAreWhole)
{
    const QStringList names{u"Render to a sound file"_s, u"Play now"_s, u"Check the syntax"_s,
                            u"Render and listen"_s};
    EXPECT_EQ(ReadyPresets(Shipped), names);
    EXPECT_EQ(AddReadyPresets(Shipped, store), names);
    const PresetStore presets(store);
    EXPECT_EQ(presets.ReadPresetList(), names);
    for (const QString &name : names) {
        const PresetRecord record = presets.ReadRecord(name);
        EXPECT_EQ(record.Command, u"$CSOUND$"_s);
        EXPECT_EQ(record.Folder, u"$DIR$"_s);
        EXPECT_TRUE(record.Args.contains(u"$ORCHESTRA$ $SCORE$"_s));
        EXPECT_TRUE(record.SaveFirst);
        EXPECT_LE(record.Name.size(), 10) << "what fits under a button";
        EXPECT_FALSE(record.Tooltip.isEmpty());
    }
    EXPECT_EQ(presets.ReadRecord(u"Render and listen"_s).SecondCommand, u"$NAME$.wav"_s);
}

TEST_F(ReadyPresetsTest, TheUsersOwnStay)
{
    PresetStore presets(store);
    presets.AddToIndex(u"play NOW"_s);
    presets.SaveText(u"play NOW"_s, PresetKeys::Command, u"mine"_s);
    EXPECT_EQ(AddReadyPresets(Shipped, store).size(), 3);
    EXPECT_EQ(presets.ReadPresetList().first(), u"play NOW"_s);
    EXPECT_EQ(presets.ReadPresetList().size(), 4);
    EXPECT_EQ(presets.Text(u"play NOW"_s, PresetKeys::Command), u"mine"_s);
    EXPECT_EQ(AddReadyPresets(Shipped, store), QStringList());
}

TEST_F(ReadyPresetsTest, AMissingFileHasNone)
{
    EXPECT_EQ(ReadyPresets(u"/no/such/file"_s), QStringList());
    EXPECT_EQ(AddReadyPresets(u"/no/such/file"_s, store), QStringList());
}

TEST_F(ReadyPresetsTest, TheQuestionNamesThem)
{
    EXPECT_EQ(ReadyPresetsQuestion({u"a"_s, u"b"_s}),
              u"Add these presets? They can be changed and removed at any time.\n\na\nb"_s);
}
