// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/libraryversions.h"

#include <pugixml.hpp>
#include <QString>
#include <sndfile.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QStringList LibraryVersions()
{
    // 1130 is 1.13; before 1.10 the number was a tenth of that.
    constexpr int version = PUGIXML_VERSION < 1000 ? PUGIXML_VERSION * 10 : PUGIXML_VERSION;
    return {QString::fromLatin1(sf_version_string()).replace(u'-', u' '),
            u"pugixml %1.%2"_s.arg(version / 1000).arg(version % 1000 / 10)};
}

} // namespace zelvane
