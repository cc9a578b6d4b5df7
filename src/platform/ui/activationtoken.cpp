// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/activationtoken.h"

#include <QtGlobal>

namespace zelvane
{

namespace
{

constexpr char WaylandToken[] = "XDG_ACTIVATION_TOKEN";
constexpr char X11Token[] = "DESKTOP_STARTUP_ID";

} // namespace

QByteArray ActivationToken()
{
    const QByteArray token = qgetenv(WaylandToken);
    return token.isEmpty() ? qgetenv(X11Token) : token;
}

void UseActivationToken(const QByteArray &token)
{
    if (token.isEmpty())
        qunsetenv(WaylandToken);
    else
        qputenv(WaylandToken, token); // where the toolkit looks when a window is activated
}

void ForgetActivationToken()
{
    for (const char *used : {WaylandToken, X11Token})
        qunsetenv(used);
}

} // namespace zelvane
