// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/runtimeerror.h"

namespace zelvane
{

/// The general error report: tells an unexpected failure and offers to report it by mail.
/// @param context an extra line, usually empty
void ReportError(Desktop &desktop, const RunTimeError &error, const QString &context = {});

/// Asks the shell to open a "mailto:" address; when it cannot, the address goes to the clipboard and the user
/// is told.
void SendMail(Desktop &desktop, const QString &address, const QString &subject, const QString &body);

/// Opens a web address in the browser; when the shell cannot, it goes to the clipboard and the user is told.
void OpenWebAddress(Desktop &desktop, const QString &url);

} // namespace zelvane
