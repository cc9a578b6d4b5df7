// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace zelvane
{

/// The text with every tab, line feed and carriage return as a blank, no blank at either end, and one blank
/// where several stood. Other white space stays as it is.
QString NormalizeSpaces(QStringView text);

} // namespace zelvane
