// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/flagtable.h"

namespace zelvane
{

class Desktop;

/// A flag in the picker's list: the value column shows the type word until the user has given a value.
struct FlagChoice {
    FlagRow row = {};
    QString value = {}; ///< text of the value column
    bool checked = false;

    bool operator==(const FlagChoice &) const = default;
};

/// The rows of the picker, none of them checked.
std::vector<FlagChoice> FlagChoices(const std::vector<FlagRow> &table);

/// Checks or unchecks a row. Checking one that takes a value asks for it; without an answer the row is
/// unchecked again. Unchecking gives the value column its type word back.
void SetFlagChecked(FlagChoice &choice, bool checked, Desktop &desktop);

/// The checked flags with their values, from the top, separated by blanks.
QString FlagLine(const std::vector<FlagChoice> &choices);

/// Flags as they are put between two parts of a line: with a blank towards a part that they would touch. Only
/// a blank separates arguments, so a tab there needs one too.
QString FlagsBetween(const QString &before, const QString &flags, const QString &after);

/// Whether the picker may close with this line; warns when it is empty.
bool AcceptFlagLine(const QString &line, Desktop &desktop);

} // namespace zelvane
