// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/documentdialogs.h"

#include "platform/withoutblanks.h"
#include "shell/document.h"
#include "shell/documentkeys.h"
#include "shell/documentkind.h"
#include "shell/errorreport.h"
#include "shell/settings.h"
#include "shell/splitpath.h"
#include "shell/statustexts.h"

#include <QFileInfo>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// What a file dialog answered, cut at the first NUL.
QString UpToNul(const QString &answer)
{
    const qsizetype nul = answer.indexOf(u'\0');
    return nul < 0 ? answer : answer.first(nul);
}

} // namespace

QString AskOpenPath(const DocumentRecord &document, SettingsStore &settings, Desktop &desktop)
{
    const QStringList orchestra = KindExtensions(settings, FileKind::Orchestra);
    const QStringList score = KindExtensions(settings, FileKind::Score);
    const QStringList unified = KindExtensions(settings, FileKind::Unified);
    FileDialogRequest request;
    request.filters = {{u"All Csound types"_s, ExtensionPatterns(orchestra + score + unified)},
                       {u"Orchestra files"_s, ExtensionPatterns(orchestra)},
                       {u"Score files"_s, ExtensionPatterns(score)},
                       {u"Unified Format files"_s, ExtensionPatterns(unified)},
                       {u"Text files"_s, u"*.txt"_s},
                       {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                       {u"All files"_s, u"*.*"_s}};
    const int filter = settings.Integer(Keys::FilterIndex);
    request.filterIndex = filter >= 0 && filter < int(request.filters.size()) ? filter : 0;
    request.folder =
        document.CurrentFile.isEmpty() ? settings.Text(Keys::OpenFolder, QString()) : document.CurrentFile;
    const FileDialogAnswer answer = desktop.OpenFileDialog(request);
    const QString picked = UpToNul(answer.path);
    // The blanks may belong to the name of a file.
    const QString path = QFileInfo::exists(picked) ? picked : WithoutBlanks(picked).toString();
    if (path.isEmpty())
        return {};
    // A store that cannot be written is told, and keeps nobody from his files; so below.
    Guarded(desktop, [&] {
        settings.InOneStep([&] {
            settings.SaveNumber(Keys::FilterIndex, answer.filterIndex);
            settings.SaveText(Keys::OpenFolder, SplitPath(PathPart::Folder, path));
        });
    });
    return path;
}

QString AskSavePath(const DocumentRecord &document, SettingsStore &settings, Desktop &desktop)
{
    const QString &current = document.CurrentFile.isEmpty() ? document.OfferedName : document.CurrentFile;
    QStringList extensions = KindExtensions(settings, document.DocumentKind);
    if (extensions.isEmpty())
        extensions = SplitExtensions(BareExtension(current));
    FileDialogRequest request;
    if (!extensions.isEmpty())
        request.filters.push_back(
            {KindLabel(document.DocumentKind, document, desktop), ExtensionPatterns(extensions)});
    request.filters.push_back({u"All files"_s, u"*.*"_s});
    request.fileName = BareFileName(current);
    request.defaultExtension = current.isEmpty() ? extensions.value(0) : BareExtension(current);
    // A text that was left by another editor goes back where it came from.
    request.folder = document.CurrentFile.isEmpty() && !current.isEmpty()
                         ? current
                         : settings.Text(Keys::SaveFolder, current);
    const QString picked = UpToNul(desktop.SaveFileDialog(request).path);
    // The dialog has asked about overwriting the name as it was picked: another file must not be meant by
    // trimming.
    const QString trimmed = WithoutBlanks(picked).toString();
    const QString path = QFileInfo::exists(picked) || QFileInfo::exists(trimmed) ? picked : trimmed;
    if (!path.isEmpty())
        Guarded(desktop, [&] { settings.SaveText(Keys::SaveFolder, SplitPath(PathPart::Folder, path)); });
    return path;
}

bool AskYesNo(Desktop &desktop, const QString &question, BoxAnswer byDefault)
{
    return desktop.MessageBox({.text = question,
                               .icon = BoxIcon::Warning,
                               .buttons = BoxButtons::YesNo,
                               .defaultAnswer = byDefault}) == BoxAnswer::Yes;
}

} // namespace zelvane
