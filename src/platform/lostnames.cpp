// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/lostnames.h"

#include <dirent.h>
#include <QByteArray>
#include <QChar>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

bool IsLostName(const QString &name)
{
    return name.contains(QChar(QChar::ReplacementCharacter));
}

QString LostNameText()
{
    return u"A file whose name is not UTF-8 cannot be opened. Rename it first."_s;
}

int CountLostNames(const QString &folder)
{
    DIR *listing = ::opendir(QFile::encodeName(folder).constData());
    if (!listing)
        return 0;
    int count = 0;
    while (const dirent *entry = ::readdir(listing)) {
        const QByteArray name = entry->d_name;
        count += !name.startsWith('.') && !name.isValidUtf8();
    }
    ::closedir(listing);
    return count;
}

} // namespace zelvane
