// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/filekinds.h"

#include "platform/desktop.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString KindLabel(FileKind kind, const DocumentRecord &document, const Desktop &desktop)
{
    if (kind != FileKind::Other)
        return KindName(kind);
    return document.CurrentFile.isEmpty() ? QString() : desktop.TypeName(document.CurrentFile);
}

QString KindWord(FileKind kind)
{
    switch (kind) {
    case FileKind::Orchestra:
        return u"orchestra"_s;
    case FileKind::Score:
        return u"score"_s;
    case FileKind::Unified:
        return u"csd"_s;
    case FileKind::Midi:
        return u"midi"_s;
    case FileKind::Sound:
        return u"sound"_s;
    case FileKind::Other:
    case FileKind::Cancelled:
        break;
    }
    return {};
}

QString KindPatterns(FileKind kind, const QString &base, const DocumentRecord &document,
                     const SettingsStore &settings)
{
    if (kind != FileKind::Other)
        return ExtensionPatterns(KindExtensions(settings, kind), base);
    if (document.CurrentFile.isEmpty())
        return {};
    return ExtensionPatterns({SplitPath(PathPart::Extension, document.CurrentFile)}, base);
}

QString FirstExtension(FileKind kind, const SettingsStore &settings)
{
    if (kind != FileKind::Orchestra && kind != FileKind::Score && kind != FileKind::Unified)
        return {};
    return KindExtensions(settings, kind).value(0);
}

FileKind ClassifyFile(const QString &path, const SettingsStore &settings)
{
    const FileKind kind = KindOfPath(settings, path);
    if (kind != FileKind::Other)
        return kind;
    return HasExtension(path, SplitExtensions(settings.StoredText(Keys::SoundExtensions).value_or(u"wav"_s)))
               ? FileKind::Sound
               : FileKind::Other;
}

} // namespace zelvane
