// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/helplinks.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

void OpenAppHelp(Desktop &desktop, const QString &programFolder, const QString &executable)
{
    const QString base = programFolder + QDir::separator() + executable;
    ShellRequest request;
    request.verb = u"open"_s;
    request.file = base + u".chm"_s;
    if (!QFileInfo::exists(request.file))
        request.file = base + u".html"_s;
    if (desktop.ShellRun(request) <= ShellFailure)
        desktop.MessageBox(
            {.text = u"Cannot start "_s + ApplicationTitle() + u" Help."_s, .icon = BoxIcon::Warning});
}

void OpenCsoundLink(WebLink link, Desktop &desktop)
{
    ShellRequest request;
    request.verb = u"open"_s;
    request.file = QString::fromUtf16(CsoundLinks.at(size_t(link)));
    desktop.ShellRun(request);
}

} // namespace zelvane
