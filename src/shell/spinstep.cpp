// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/spinstep.h"

#include "platform/numbers.h"

#include <algorithm>

namespace zelvane
{

QString SteppedNumber(const QString &text, int direction, const SpinRange &range)
{
    return NumberText(std::clamp(Val(text) + direction * range.step, range.least, range.most));
}

} // namespace zelvane
