// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audiopanel.h"

#include "platform/desktop.h"

#include <algorithm>
#include <iterator>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// A program with its parameters for both sides, for what is recorded, and for what is heard.
struct Mixer {
    const char16_t *program;
    const char16_t *both;
    const char16_t *recorded;
    const char16_t *heard;
    const char16_t *needs = u""; ///< a program that it starts itself
};

constexpr Mixer Mixers[] = {
    {u"pavucontrol", u"", u"--tab=4", u"--tab=3"},
    {u"pavucontrol-qt", u"", u"--tab=4", u"--tab=3"},
    {u"gnome-control-center", u"sound", u"sound", u"sound"},
    {u"systemsettings", u"kcm_pulseaudio", u"kcm_pulseaudio", u"kcm_pulseaudio"},
    {u"cinnamon-settings", u"sound", u"sound", u"sound"},
    {u"mate-volume-control", u"", u"", u""},
    {u"x-terminal-emulator", u"-e alsamixer", u"-e alsamixer -V capture", u"-e alsamixer -V playback",
     u"alsamixer"},
    {u"xterm", u"-e alsamixer", u"-e alsamixer -V capture", u"-e alsamixer -V playback", u"alsamixer"},
};

bool Start(const Mixer &mixer, const char16_t *parameters, Desktop &desktop)
{
    const QString needs = QString::fromUtf16(mixer.needs);
    if (!needs.isEmpty() && desktop.ExecutableKind(needs).isEmpty())
        return false;
    return desktop.ShellRun({.verb = u"open"_s,
                             .file = QString::fromUtf16(mixer.program),
                             .parameters = QString::fromUtf16(parameters)}) > ShellFailure;
}

} // namespace

bool OpenAudioPanel(Desktop &desktop, AudioSide side)
{
    const auto parameters = side == AudioSide::Both       ? &Mixer::both
                            : side == AudioSide::Recorded ? &Mixer::recorded
                                                          : &Mixer::heard;
    return std::any_of(std::begin(Mixers), std::end(Mixers),
                       [&](const Mixer &mixer) { return Start(mixer, mixer.*parameters, desktop); });
}

} // namespace zelvane
