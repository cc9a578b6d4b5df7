// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/fileicon.h"

#include "platform/executables.h"
#include "platform/parameters.h"

#include <QFileIconProvider>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QIcon SmallFileIcon(const QString &path)
{
    const QString plain = UnquoteFile(path.trimmed());
    if (plain.isEmpty())
        return {};
    const QString program = FindExecutable(plain);
    const QFileInfo file(program.isEmpty() ? plain : program);
    if (!file.exists())
        return {};
    if (!program.isEmpty()) {
        for (const QString &name :
             {file.completeBaseName(), file.completeBaseName().toLower(), u"application-x-executable"_s}) {
            if (QIcon::hasThemeIcon(name))
                return QIcon::fromTheme(name);
        }
        return {};
    }
    return QFileIconProvider().icon(file);
}

} // namespace zelvane
