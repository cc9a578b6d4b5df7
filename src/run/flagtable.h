// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace zelvane
{

/// One command-line flag of Csound: "-o", the type of its value ("fnam", empty for a flag without one), and
/// what it does.
struct FlagRow {
    QString flag = {};
    QString type = {};
    QString description = {};

    bool operator==(const FlagRow &) const = default;
};

/// Reads a flag table: one flag a line, lines ended by CR LF; the name up to a blank or tab, then blanks and
/// the type of the value if there is one, a tab, and the description. The very first character of the text is
/// skipped.
std::vector<FlagRow> LoadFlagTable(const QString &text);

/// The flag table that the program ships with.
const std::vector<FlagRow> &ShippedFlagTable();

} // namespace zelvane
