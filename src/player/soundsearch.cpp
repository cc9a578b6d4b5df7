// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/soundsearch.h"

#include "platform/runtimeerror.h"
#include "shell/editorcontext.h"
#include "shell/splitpath.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// Where a sound of that name may be, each place without the extension. The sounds that Csound renders come
/// before the samples, and the extensions are no setting: what was rendered is looked for.
QStringList Places(const QString &base, const EditorContext &editor)
{
    QStringList places{SplitPath(PathPart::WithoutExtension, editor.document.CurrentFile)};
    for (const QString &variable : {u"SFDIR"_s, u"SSDIR"_s}) {
        const QString folder = editor.desktop.EnvironmentVariable(variable);
        if (!folder.isEmpty())
            places.append(folder + QDir::separator() + base);
    }
    return places;
}

QString Search(bool silent, EditorContext &editor)
{
    const QString base = SplitPath(PathPart::BaseName, editor.document.CurrentFile);
    if (base.isEmpty())
        return {};
    const QStringList places = Places(base, editor);
    for (const QString &extension : {u"wav"_s, u"aif"_s, u"aiff"_s}) {
        for (const QString &place : places) {
            const QString candidate = place + u'.' + extension;
            if (QFileInfo(candidate).isFile())
                return candidate;
        }
    }
    if (silent)
        return {};
    return editor.desktop
        .OpenFileDialog({.title = u"Select a soundfile"_s,
                         .filters = SoundFilters(),
                         .folder = SplitPath(PathPart::Folder, editor.document.CurrentFile)})
        .path;
}

} // namespace

std::vector<FileFilter> SoundFilters()
{
    return {
        {u"All supported types"_s,
         u"*.wav;*.aif;*.aiff;*.aifc;*.au;*.snd;*.mp*;*.m3u;*.m1v;*.enc;*.avi;*.mov;*.qt;*.mid;*.rmi"_s},
        {u"Audio files"_s, u"*.wav;*.snd;*.au;*.aif;*.aifc;*.aiff"_s},
        {u"Wave files"_s, u"*.wav"_s},
        {u"AIFF files"_s, u"*.aif;*.aiff;*aifc"_s},
        {u"QuickTime files"_s, u"*.mov;*.qt"_s},
        {u"Next/Sun files"_s, u"*.au;*.snd"_s},
        {u"MIDI files"_s, u"*.mid;*.rmi"_s},
        {u"MPEG files"_s, u"*.mp*;*.m3u;*.m1v"_s},
        {u"Video for Windows files"_s, u"*.avi"_s},
        {u"All Files"_s, u"*"_s},
    };
}

QString SearchSoundFile(bool silent, EditorContext &editor)
{
    try {
        return Search(silent, editor);
    } catch (const RunTimeError &) {
        editor.desktop.MessageBox(
            {.text = u"An error has occurred while searching for a sound file."_s, .icon = BoxIcon::Warning});
        return {};
    }
}

} // namespace zelvane
