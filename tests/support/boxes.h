// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop.h"
#include "platform/programinfo.h"
#include "platform/runtimeerror.h"

#include <QString>

namespace zelvane::test
{

/// The box that reports a failure. @param error its description, and its number in brackets
/// @param context lines that say what met it
inline MessageBoxRequest ErrorBox(const QString &error, const QString &source = QStringLiteral("Zelvane"),
                                  const QString &context = {})
{
    return {.text = QStringLiteral("An error has occurred:\n") + context + u'\n' + error +
                    QStringLiteral("\nError source: ") + source +
                    QStringLiteral("\n\nDo you want to report this bug via email?"),
            .icon = BoxIcon::Critical,
            .buttons = BoxButtons::OkCancel};
}
inline MessageBoxRequest ErrorBox(const RunTimeError &error)
{
    return ErrorBox(error.Description() + QStringLiteral(" (%1)").arg(int(error.Number())), error.Source());
}

/// The box that reports stored values that cannot be read. @param entries lines of `Key=value`
inline MessageBoxRequest MismatchBox(const QString &entries)
{
    return ErrorBox(QStringLiteral("Type mismatch (13)"), QStringLiteral("Zelvane"), entries);
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

/// The dialog in which a half of a piece is picked where none or several go by the document's name.
/// @param similar the pattern of similar names, without the extension
inline FileDialogRequest SelectHalf(const QString &label, const QString &extension, const QString &similar,
                                    const QString &folder, int filter = 0)
{
    return {.title = QStringLiteral("Select %1 file").arg(label),
            .filters = {{label + QStringLiteral(" Files"), QStringLiteral("*.") + extension},
                        {label + QStringLiteral(" Files (similar names)"), similar + u'.' + extension},
                        {QStringLiteral("All Files"), QStringLiteral("*")}},
            .filterIndex = filter,
            .folder = folder};
}

/// The dialog that asks for the file of a half. @param base the document's name without its extension
inline FileDialogRequest SaveHalf(const QString &label, const QString &extension, const QString &base,
                                  const QString &document)
{
    return {.title = QStringLiteral("Save ") + label,
            .filters = {{label + QStringLiteral(" Files"), QStringLiteral("*.") + extension}},
            .folder = document,
            .fileName = base + u'.' + extension,
            .defaultExtension = extension};
}

/// The question after a conversion to a pair.
inline MessageBoxRequest ConvertedToPair(const QString &orchestra)
{
    return {.text = orchestra + QStringLiteral(" successfully converted to Orchestra/Score pair. "
                                               "Would you like to open Orchestra now?"),
            .buttons = BoxButtons::YesNo};
}

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
