// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <QString>
#include <span>

class QMenu;
class QMenuBar;
class QWidget;

namespace zelvane
{

class Commands;

/// One entry of a menu. `menu` is the row (name, or name_index in an item array) that it stands under,
/// MenuBarRow for the menus of the bar, PopupRow for the context menus. A row that others stand under is a
/// submenu.
struct MenuRow {
    static constexpr int Single = -1; ///< the index of a row that is no entry of an item array

    const char16_t *menu;
    const char16_t *name; ///< empty for a separator without a name
    int index;
    const char16_t *caption; ///< with its access-key mark; "-" for a separator
    const char16_t *hint =
        u""; ///< shown behind a tab; tells of a key that the window or the text control handles
    const char16_t *shortcut = u""; ///< a key of the row's own
    bool checkable = false;
};

inline constexpr char16_t MenuBarRow[] = u"";
inline constexpr char16_t PopupRow[] = u"popup";

/// All menus, in the order on the screen.
std::span<const MenuRow> MenuTable();

/// The objectName of a row's action or menu: the name, and in item arrays "_" and the entry number behind it.
QString RowName(const QString &name, int index);

/// The menus that were built, by row name.
class Menus
{
public:
    /// Builds all menus of the table into the bar, registers each row with `commands`. The context menus get
    /// `owner`.
    Menus(QMenuBar *bar, QWidget *owner, Commands &commands);

    QMenu *Menu(const QString &rowName) const;

private:
    std::map<QString, QMenu *> m_menus;
};

} // namespace zelvane
