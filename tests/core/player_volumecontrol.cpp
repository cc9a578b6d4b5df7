// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/volumecontrol.h"

#include "platform/desktop.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"

#include <gtest/gtest.h>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int NotThere = 2;

void Expect(ScriptedDesktop &desktop, const QString &program, const QString &parameters, int result)
{
    desktop.ExpectShellRun({.verb = u"open"_s, .file = program, .parameters = parameters}, result);
}

/// The mixers with windows of their own are not there.
void ExpectNoWindow(ScriptedDesktop &desktop, const QString &tab)
{
    Expect(desktop, u"pavucontrol"_s, tab, NotThere);
    Expect(desktop, u"pavucontrol-qt"_s, tab, NotThere);
    Expect(desktop, u"gnome-control-center"_s, u"sound"_s, NotThere);
    Expect(desktop, u"systemsettings"_s, u"kcm_pulseaudio"_s, NotThere);
    Expect(desktop, u"cinnamon-settings"_s, u"sound"_s, NotThere);
    Expect(desktop, u"mate-volume-control"_s, {}, NotThere);
}

TEST(VolumeControl, TheFirstOneIsStarted)
{
    ScriptedDesktop desktop;
    Expect(desktop, u"pavucontrol"_s, {}, 42);
    OpenVolumeControl(desktop);
}

TEST(VolumeControl, KeysChooseTheSide)
{
    ScriptedDesktop desktop;
    desktop.keysDown = {KeyCode::Ctrl};
    Expect(desktop, u"pavucontrol"_s, u"--tab=4"_s, 42);
    OpenVolumeControl(desktop);
    desktop.keysDown = {KeyCode::Shift};
    Expect(desktop, u"pavucontrol"_s, u"--tab=3"_s, 42);
    OpenVolumeControl(desktop);
    desktop.keysDown = {KeyCode::Ctrl, KeyCode::Shift};
    Expect(desktop, u"pavucontrol"_s, u"--tab=3"_s, 42);
    OpenVolumeControl(desktop);
}

TEST(VolumeControl, AMixerInATerminalIsTheLast)
{
    ScriptedDesktop desktop;
    desktop.executableKinds[u"alsamixer"_s] = u"ELF 64-bit"_s;
    desktop.keysDown = {KeyCode::Ctrl};
    ExpectNoWindow(desktop, u"--tab=4"_s);
    Expect(desktop, u"x-terminal-emulator"_s, u"-e alsamixer -V capture"_s, ShellFailure);
    Expect(desktop, u"xterm"_s, u"-e alsamixer -V capture"_s, ShellFailure + 1);
    OpenVolumeControl(desktop);
}

TEST(VolumeControl, NoTerminalComesUpForAMixerThatIsNotThere)
{
    ScriptedDesktop desktop;
    ExpectNoWindow(desktop, {});
    desktop.ExpectMessage(
        {.text = u"Cannot start Volume Control. Maybe it's not installed."_s, .icon = BoxIcon::Warning});
    OpenVolumeControl(desktop);
}

} // namespace

} // namespace zelvane::test
