// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/applicationsetup.h"

#include "platform/programinfo.h"

#include <clocale>
#include <QGuiApplication>
#include <QIcon>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void NameApplication(const QString &name)
{
    std::setlocale(LC_NUMERIC, "C");
    QGuiApplication::setApplicationName(name);
    QGuiApplication::setApplicationVersion(ProgramVersion());
    QGuiApplication::setDesktopFileName(u"zelvane"_s); // the console is a window of the editor's entry
    QGuiApplication::setWindowIcon(QIcon(u":/zelvane/icons/zelvane.svg"_s));
}

} // namespace zelvane
