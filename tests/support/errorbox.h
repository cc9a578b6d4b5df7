// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/runtimeerror.h"

namespace zelvane::test
{

/// The box that reports this failure.
inline MessageBoxRequest ErrorBox(const RunTimeError &error)
{
    return {.text = QStringLiteral("An error has occurred:\n\n%1 (%2)\nError source: %3\n\n"
                                   "Do you want to report this bug via email?")
                        .arg(error.Description(), QString::number(int(error.Number())), error.Source()),
            .icon = BoxIcon::Critical,
            .buttons = BoxButtons::OkCancel};
}

} // namespace zelvane::test
