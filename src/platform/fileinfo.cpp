// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileinfo.h"

#include "platform/desktop.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString FileInfoText(const QString &path, const Desktop &desktop)
{
    const QString type = desktop.TypeName(path);
    if (type.isEmpty())
        return {};
    const QString kind = desktop.ExecutableKind(path);
    return desktop.DisplayName(path) + u": "_s + type + (kind.isEmpty() ? QString() : u' ' + kind);
}

bool IsExecutableFile(const QString &path, const Desktop &desktop)
{
    return !desktop.ExecutableKind(path).isEmpty();
}

} // namespace zelvane
