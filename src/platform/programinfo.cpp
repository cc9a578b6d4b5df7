// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/programinfo.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString ProgramVersion()
{
    return QStringLiteral(ZELVANE_VERSION);
}

QString LegalLine()
{
    return u"Copyright \u00A9 2026 the Zelvane authors. GNU GPL, version 3 or later."_s;
}

} // namespace zelvane
