// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/runtimeerror.h"

#include <functional>

namespace zelvane
{

/// The general error report: tells an unexpected failure and offers to report it by mail.
/// @param context an extra line, usually empty
void ReportError(Desktop &desktop, const RunTimeError &error, const QString &context = {});

/// Runs a piece of work and reports what it throws; for the event entry points of dialogs.
/// @return whether the work came to its end
bool Guarded(Desktop &desktop, const std::function<void()> &work);

/// Asks the shell to open a "mailto:" address; when it cannot, the address goes to the clipboard and the user
/// is told.
void SendMail(Desktop &desktop, const QString &address, const QString &subject, const QString &body);

/// Opens a web address in the browser; when the shell cannot, it goes to the clipboard and the user is told.
void OpenWebAddress(Desktop &desktop, const QString &url);

} // namespace zelvane
