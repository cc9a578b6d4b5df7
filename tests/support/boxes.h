// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/programinfo.h"
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

/// The question before unsaved work is lost.
inline MessageBoxRequest SaveChanges(const QString &name)
{
    return {.text = QStringLiteral("Save changes to %1?").arg(name),
            .icon = BoxIcon::Warning,
            .buttons = BoxButtons::YesNoCancel};
}

/// The Open dialog of a store without settings.
inline const FileDialogRequest OpenRequest{
    .filters = {{QStringLiteral("All Csound types"), QStringLiteral("*.orc;*.sco;*.csd")},
                {QStringLiteral("Orchestra files"), QStringLiteral("*.orc")},
                {QStringLiteral("Score files"), QStringLiteral("*.sco")},
                {QStringLiteral("Unified Format files"), QStringLiteral("*.csd")},
                {QStringLiteral("Text files"), QStringLiteral("*.txt")},
                {QStringLiteral("C/C++"), QStringLiteral("*.cpp;*.c;*.h")},
                {QStringLiteral("All files"), QStringLiteral("*.*")}}};

/// The message of the first use.
inline MessageBoxRequest Welcome()
{
    return {
        .text =
            QStringLiteral("Welcome to Zelvane! This program is FREE, you may download new versions at ") +
            QString::fromUtf16(WebAddress) +
            QStringLiteral("\n\nIf you have questions, suggestions or you find a bug, please feel free to "
                           "contact me at ") +
            QString::fromUtf16(AuthorAddress) + QStringLiteral("\n\nHappy Csounding!"),
        .icon = BoxIcon::Information,
        .title = QStringLiteral("Welcome!")};
}

} // namespace zelvane::test
