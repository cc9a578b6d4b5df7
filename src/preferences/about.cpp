// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/about.h"

#include "platform/audiopanel.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/programinfo.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"

#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString VersionLine()
{
    return ApplicationTitle() + u" version "_s + ProgramVersion();
}

QString ProgramComments()
{
    return u"An editor and front-end for the Csound sound-synthesis language"_s;
}

QString UsedLine(const SettingsStore &settings)
{
    return u"You used "_s + NumberText(settings.Number(Keys::Used)) + u' ' + u" times"_s;
}

QString RandomLogo()
{
    static const QStringList logos = {u"LOGO1"_s, u"LOGO2"_s, u"LOGO3"_s};
    return logos[QRandomGenerator::global()->bounded(logos.size())];
}

void ShowMultimediaProperties(Desktop &desktop)
{
    if (!OpenAudioPanel(desktop, AudioSide::Both))
        desktop.MessageBox({.text = u"Cannot start Multimedia Properties."_s, .icon = BoxIcon::Warning});
}

void ShowControlVersions(const QStringList &versions, Desktop &desktop)
{
    desktop.MessageBox(
        {.text = versions.join(u'\n'), .icon = BoxIcon::Information, .title = u"About OLE Controls"_s});
}

} // namespace zelvane
