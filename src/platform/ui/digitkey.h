// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGuiApplication>
#include <QKeyEvent>

namespace zelvane
{

/// The digit of a key in the row of digits, -1 for any other key. The place of the key decides where it is
/// known, since many layouts give digits only with Shift; the keypad's digits are other keys.
int DigitKey(const QKeyEvent &event, const QString &windowSystem = QGuiApplication::platformName());

} // namespace zelvane
