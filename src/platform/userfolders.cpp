// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/userfolders.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString ConfigFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/zelvane"_s;
}

QString StateFolder()
{
    // The toolkit knows this folder from version 6.7 on. A relative path does not count.
    const QString set = QFile::decodeName(qgetenv("XDG_STATE_HOME"));
    return (QDir::isAbsolutePath(set) ? QDir::cleanPath(set) : QDir::homePath() + u"/.local/state"_s) +
           u"/zelvane"_s;
}

} // namespace zelvane
