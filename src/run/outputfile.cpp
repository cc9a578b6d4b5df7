// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/outputfile.h"

#include "platform/desktop.h"
#include "run/runkeys.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"
#include "shell/splitpath.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString OutputFileFor(const QString &extension, EditorContext &context)
{
    if (context.document.CurrentFile.isEmpty())
        return {};
    const QString path =
        SplitPath(PathPart::WithoutExtension, context.document.CurrentFile) + u'.' + extension;
    const bool prompt = context.settings.Flag(Keys::OverwritePrompt);
    const QFileInfo info(path);
    if (prompt && info.exists() && !info.isDir()) {
        const BoxAnswer answer =
            context.desktop.MessageBox({.text = path + u" already exists. Do you want to overwrite it?"_s,
                                        .icon = BoxIcon::Warning,
                                        .buttons = BoxButtons::YesNo});
        if (answer == BoxAnswer::No)
            return {};
    }
    return path;
}

} // namespace zelvane
