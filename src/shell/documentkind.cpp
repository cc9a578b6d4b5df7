// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentkind.h"

#include "shell/documentkeys.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString KindName(FileKind kind)
{
    switch (kind) {
    case FileKind::Orchestra:
        return u"Orchestra"_s;
    case FileKind::Score:
        return u"Score"_s;
    case FileKind::Unified:
        return u"Unified Format"_s;
    case FileKind::Midi:
        return u"MIDI"_s;
    case FileKind::Sound:
        return u"Sound"_s;
    case FileKind::Other:
    case FileKind::Cancelled:
        return {};
    }
    return {};
}

QStringList KindExtensions(const SettingsStore &settings, FileKind kind)
{
    switch (kind) {
    case FileKind::Orchestra:
        return SplitExtensions(settings.Text(Keys::OrchestraExtensions));
    case FileKind::Score:
        return SplitExtensions(settings.Text(Keys::ScoreExtensions));
    case FileKind::Unified:
        return SplitExtensions(settings.Text(Keys::UFFExtensions));
    case FileKind::Midi:
        return SplitExtensions(settings.Text(Keys::MIDIExtensions));
    case FileKind::Sound:
        return SplitExtensions(settings.Text(Keys::SoundExtensions));
    case FileKind::Other:
    case FileKind::Cancelled:
        return {};
    }
    return {};
}

QStringList SplitExtensions(const QString &list)
{
    return list.split(u' ', Qt::SkipEmptyParts);
}

QString ExtensionPatterns(const QStringList &extensions, const QString &base)
{
    QStringList patterns;
    for (const QString &extension : extensions)
        patterns.append((base.isEmpty() ? u"*"_s : base) + u'.' + extension);
    return patterns.join(u';');
}

bool HasExtension(const QString &path, const QStringList &extensions)
{
    return extensions.contains(BareExtension(path), Qt::CaseInsensitive);
}

FileKind KindOfPath(const SettingsStore &settings, const QString &path)
{
    for (const FileKind kind : {FileKind::Orchestra, FileKind::Score, FileKind::Unified})
        if (HasExtension(path, KindExtensions(settings, kind)))
            return kind;
    return FileKind::Other;
}

void ClassifyDocument(DocumentRecord &document, const SettingsStore &settings)
{
    if (!document.CurrentFile.isEmpty())
        document.DocumentKind = KindOfPath(settings, document.CurrentFile);
}

} // namespace zelvane
