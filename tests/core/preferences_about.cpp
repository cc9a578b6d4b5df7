// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/about.h"

#include "platform/desktop.h"
#include "platform/libraryversions.h"
#include "platform/programinfo.h"
#include "shell/layoutkeys.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"
#include "support/settingsfixture.h"

#include <gtest/gtest.h>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

class About : public SettingsFixture
{
};

TEST_F(About, TellsVersionAndUses)
{
    EXPECT_EQ(VersionLine(), u"Zelvane version "_s + ProgramVersion());
    EXPECT_TRUE(QRegularExpression(u"^\\d+\\.\\d+\\.\\d+$"_s).match(ProgramVersion()).hasMatch());
    EXPECT_EQ(UsedLine(store), u"You used 1  times"_s);
    store.SaveNumber(Keys::Used, 4711);
    EXPECT_EQ(UsedLine(store), u"You used 4711  times"_s);
}

TEST_F(About, EachLogoComesAndNoOther)
{
    QSet<QString> seen;
    for (int i = 0; i < 300; ++i)
        seen.insert(RandomLogo());
    EXPECT_EQ(seen, QSet<QString>({u"LOGO1"_s, u"LOGO2"_s, u"LOGO3"_s}));
}

TEST_F(About, TheSoundPanelIsOpened)
{
    ScriptedDesktop desktop;
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"pavucontrol"_s}, 2);
    desktop.ExpectShellRun({.verb = u"open"_s, .file = u"pavucontrol-qt"_s}, 42);
    ShowMultimediaProperties(desktop);
}

TEST_F(About, WithoutASoundPanelAMessage)
{
    ScriptedDesktop desktop;
    for (const auto &[program, parameters] :
         {std::pair(u"pavucontrol"_s, u""_s), std::pair(u"pavucontrol-qt"_s, u""_s),
          std::pair(u"gnome-control-center"_s, u"sound"_s),
          std::pair(u"systemsettings"_s, u"kcm_pulseaudio"_s), std::pair(u"cinnamon-settings"_s, u"sound"_s),
          std::pair(u"mate-volume-control"_s, u""_s)})
        desktop.ExpectShellRun({.verb = u"open"_s, .file = program, .parameters = parameters}, ShellFailure);
    desktop.ExpectMessage({.text = u"Cannot start Multimedia Properties."_s, .icon = BoxIcon::Warning});
    ShowMultimediaProperties(desktop);
}

TEST_F(About, TheControlsAreNamed)
{
    ScriptedDesktop desktop;
    desktop.ExpectMessage(
        {.text = u"One 1.2\nTwo 3"_s, .icon = BoxIcon::Information, .title = u"About OLE Controls"_s});
    ShowControlVersions({u"One 1.2"_s, u"Two 3"_s}, desktop);
}

TEST_F(About, LibrariesHaveVersions)
{
    const QStringList versions = LibraryVersions();
    ASSERT_EQ(versions.size(), 2);
    EXPECT_TRUE(QRegularExpression(u"^libsndfile 1\\.[0-9.]+"_s).match(versions[0]).hasMatch())
        << versions[0].toStdString();
    EXPECT_TRUE(QRegularExpression(u"^pugixml 1\\.[0-9]+$"_s).match(versions[1]).hasMatch())
        << versions[1].toStdString();
}

} // namespace

} // namespace zelvane::test
