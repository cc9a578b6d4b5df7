// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/samefile.h"

#include "platform/nativefile.h"

#include <optional>
#include <QFileInfo>

namespace zelvane
{

bool IsSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    if (one == other)
        return true;
    const QString real = QFileInfo(one).canonicalFilePath();
    if (!real.isEmpty() && real == QFileInfo(other).canonicalFilePath())
        return true;
    // A file may have several names, and a file system may take names in either case.
    const std::optional<FileStamp> first = StampOf(one);
    const std::optional<FileStamp> second = StampOf(other);
    return first && second && first->file != 0 && first->file == second->file &&
           first->device == second->device;
}

} // namespace zelvane
