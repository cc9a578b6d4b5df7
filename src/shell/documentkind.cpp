// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentkind.h"

#include "platform/desktop.h"
#include "shell/documentkeys.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

#include <algorithm>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

struct KindRow {
    FileKind kind;
    const char16_t *name;
    const char16_t *word;
    TextKey extensions;
};
constexpr KindRow Kinds[] = {
    {FileKind::Orchestra, u"Orchestra", u"orchestra", Keys::OrchestraExtensions},
    {FileKind::Score, u"Score", u"score", Keys::ScoreExtensions},
    {FileKind::Unified, u"Unified Format", u"csd", Keys::UFFExtensions},
    {FileKind::Midi, u"MIDI", u"midi", Keys::MIDIExtensions},
    {FileKind::Sound, u"Sound", u"sound", Keys::SoundExtensions},
};

/// Null for kinds without a name of their own.
const KindRow *RowOf(FileKind kind)
{
    const auto row = std::find_if(std::begin(Kinds), std::end(Kinds),
                                  [kind](const KindRow &one) { return one.kind == kind; });
    return row == std::end(Kinds) ? nullptr : row;
}

} // namespace

QString KindName(FileKind kind)
{
    const KindRow *row = RowOf(kind);
    return row ? QString::fromUtf16(row->name) : QString();
}

QString KindLabel(FileKind kind, const DocumentRecord &document, const Desktop &desktop)
{
    if (kind == FileKind::Other && !document.CurrentFile.isEmpty())
        return desktop.TypeName(document.CurrentFile);
    return KindName(kind);
}

QString KindWord(FileKind kind)
{
    const KindRow *row = RowOf(kind);
    return row ? QString::fromUtf16(row->word) : QString();
}

QStringList KindExtensions(const SettingsStore &settings, FileKind kind)
{
    const KindRow *row = RowOf(kind);
    return row ? SplitExtensions(settings.Text(row->extensions)) : QStringList();
}

QString FirstExtension(FileKind kind, const SettingsStore &settings)
{
    if (kind != FileKind::Orchestra && kind != FileKind::Score && kind != FileKind::Unified)
        return {};
    return KindExtensions(settings, kind).value(0);
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

QString KindPatterns(FileKind kind, const QString &base, const DocumentRecord &document,
                     const SettingsStore &settings)
{
    if (kind != FileKind::Other)
        return ExtensionPatterns(KindExtensions(settings, kind), base);
    if (document.CurrentFile.isEmpty())
        return {};
    return ExtensionPatterns({SplitPath(PathPart::Extension, document.CurrentFile)}, base);
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

FileKind ClassifyFile(const QString &path, const SettingsStore &settings)
{
    const FileKind kind = KindOfPath(settings, path);
    if (kind != FileKind::Other)
        return kind;
    return HasExtension(path, SplitExtensions(settings.StoredText(Keys::SoundExtensions).value_or(u"wav"_s)))
               ? FileKind::Sound
               : FileKind::Other;
}

void ClassifyDocument(DocumentRecord &document, const SettingsStore &settings)
{
    if (!document.CurrentFile.isEmpty())
        document.DocumentKind = KindOfPath(settings, document.CurrentFile);
}

} // namespace zelvane
