// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/spinstep.h"

#include <functional>
#include <QString>

class QLineEdit;
class QWidget;

namespace zelvane
{

class Desktop;

/// What a step makes of the text of a field. @param direction 1 for up, -1 for down
using SpinStep = std::function<QString(const QString &text, int direction)>;

/// A spinner for a text field: two arrows that change the field's text, as do its Up and Down keys. The
/// keyboard goes to the field. It is enabled as the field is, and has its height; FormRow puts it at the
/// field's right edge. What a step throws is reported, and the text stays.
QWidget *NewSpinner(Desktop &desktop, QLineEdit *field, const QString &name, const SpinStep &step);
/// The same through a range of numbers.
QWidget *NewSpinner(Desktop &desktop, QLineEdit *field, const QString &name, const SpinRange &range);

} // namespace zelvane
