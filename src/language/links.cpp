// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/links.h"

#include "platform/desktop.h"
#include "platform/textbuffer.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ShellFileNotFound = 2;

} // namespace

QString LinkAddress(const QString &text, qsizetype start, qsizetype end)
{
    return text.mid(start, end + 1);
}

void LinkOver(int message, qsizetype start, qsizetype end, const TextBuffer &text, Desktop &desktop)
{
    if (message != LeftButtonReleased)
        return;
    // "open" stands for the default action; with a named verb the shell is silent, and only a missing file is
    // told.
    const ShellRequest request{.verb = u"open"_s, .file = LinkAddress(text.Text(), start, end)};
    if (desktop.ShellRun(request) == ShellFileNotFound)
        desktop.MessageBox({.text = u"Link Failed"_s, .icon = BoxIcon::Warning});
}

} // namespace zelvane
