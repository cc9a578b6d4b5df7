// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/readypresets.h"

#include "platform/profilefile.h"
#include "platform/programfolder.h"
#include "run/presetstore.h"
#include "shell/settings.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString ReadyPresetsFile()
{
    const QString own = ProgramFolder() + u"/presets"_s;
    return QFileInfo::exists(own) ? own : ShippedFolder() + u"/presets"_s;
}

QStringList ReadyPresets(const QString &file)
{
    QStringList names;
    for (const auto &[name, value] : ProfileFile(file).Entries(Sections::Presets))
        names.append(name);
    return names;
}

QStringList AddReadyPresets(const QString &file, SettingsStore &settings)
{
    const ProfileFile ready(file);
    PresetStore store(settings);
    const QStringList known = store.ReadPresetList();
    QStringList added;
    settings.InOneStep([&] {
        for (const QString &name : ReadyPresets(file)) {
            if (known.contains(name, Qt::CaseInsensitive))
                continue;
            for (const auto &[key, value] : ready.Entries(name))
                settings.SaveSetting(PresetStore::RecordSection(name), key, value);
            store.AddToIndex(name);
            added.append(name);
        }
    });
    return added;
}

QString ReadyPresetsQuestion(const QStringList &names)
{
    return u"Add these presets? They can be changed and removed at any time.\n\n"_s + names.join(u'\n');
}

} // namespace zelvane
