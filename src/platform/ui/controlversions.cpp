// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/controlversions.h"

#include "platform/libraryversions.h"

#include <Qsci/qsciglobal.h>
#include <QString>
#include <QtGlobal>
#include <SDL.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QStringList ControlVersions()
{
    SDL_version sound;
    SDL_GetVersion(&sound);
    return QStringList{u"Qt "_s + QString::fromLatin1(qVersion()),
                       u"QScintilla "_s + QStringLiteral(QSCINTILLA_VERSION_STR),
                       u"SDL %1.%2.%3"_s.arg(sound.major).arg(sound.minor).arg(sound.patch)} +
           LibraryVersions();
}

} // namespace zelvane
