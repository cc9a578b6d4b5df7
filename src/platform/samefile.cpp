// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/samefile.h"

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
    return !real.isEmpty() && real == QFileInfo(other).canonicalFilePath();
}

} // namespace zelvane
