// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace zelvane
{

/// The program's own pictures. They are drawn anew for each size and screen scale, so they are sharp at every
/// one; a disabled icon is drawn faint. One set of colours serves light and dark windows; in a selected row
/// it would not be seen, so there an icon keeps the colour of the other rows behind it.
class Icons
{
public:
    /// The icon of a toolbar button, a menu row or a tree node; a null icon for an unknown key.
    static QIcon Load(const QString &key);
    /// The built-in image of this number (101 upward); a null icon where there is none.
    static QIcon LoadImage(int number);
};

} // namespace zelvane
