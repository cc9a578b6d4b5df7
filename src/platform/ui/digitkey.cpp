// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/digitkey.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

int DigitKey(const QKeyEvent &event, const QString &windowSystem)
{
    if (event.modifiers() & Qt::KeypadModifier)
        return -1;
    if (event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9)
        return event.key() - Qt::Key_0;
    // The key codes of X11, which Wayland has taken over: 10 to 18 are the digits 1 to 9, 19 is 0.
    constexpr quint32 one = 10;
    constexpr quint32 zero = 19;
    const quint32 code = event.nativeScanCode();
    if ((windowSystem == u"xcb"_s || windowSystem.startsWith(u"wayland"_s)) && code >= one && code <= zero)
        return int(code - one + 1) % 10;
    return -1;
}

} // namespace zelvane
