// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/command.h"
#include "shell/ui/menuname.h"

#include <map>
#include <optional>
#include <QKeySequence>
#include <QList>
#include <QString>
#include <span>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace zelvane
{

class Commands;

/// Who runs the command of a key.
enum class KeyTaker {
    Row,    ///< the menu row: the key works wherever the keyboard is
    Text,   ///< the text control, while it has the keyboard
    Window, ///< the window, before the control that has the keyboard
    Shown   ///< the caption only tells what another part does with the key, or the mouse
};

/// The keys of a row, "; " between them; the first one stands behind the caption.
struct RowKey {
    const char16_t *keys = u"";
    KeyTaker taker = KeyTaker::Row;
};

/// A line between rows; one that comes and goes has a name, its objectName.
struct Separator {
    const char16_t *name = u"";
};
namespace Separators
{
inline constexpr Separator mnulinea{u"mnulinea"}; ///< behind the recent files
inline constexpr Separator linea1{u"linea1"};     ///< behind the presets
} // namespace Separators

/// One entry of a menu: a command, a submenu, or a separator.
struct MenuRow {
    constexpr MenuRow(MenuName under_, Command command_, const char16_t *caption_, RowKey key_ = {},
                      bool checkable_ = false)
        : under(under_), command(command_), caption(caption_), key(key_), checkable(checkable_)
    {
    }
    constexpr MenuRow(MenuName under_, MenuName submenu_, const char16_t *caption_)
        : under(under_), submenu(submenu_), caption(caption_)
    {
    }
    constexpr MenuRow(MenuName under_, Separator line) : under(under_), caption(line.name) {}

    MenuName under;
    std::optional<Command> command = std::nullopt;
    std::optional<MenuName> submenu = std::nullopt;
    const char16_t *caption; ///< with its access-key mark; the name of a separator
    RowKey key = {};
    bool checkable = false;
};

/// All menus, in the order on the screen.
std::span<const MenuRow> MenuTable();

/// The action of a separator with a name; null when the menu has none.
QAction *FindSeparator(const QMenu &menu, Separator line);

/// The key as the caption tells it, empty when there is none.
QString ShownKey(const RowKey &key);
/// The same of the command's row.
QString ShownKey(Command command);
/// All keys of a row that somebody takes.
QList<QKeySequence> KeySequences(const RowKey &key);
/// The same of the row of a command; none when no menu has it.
QList<QKeySequence> KeySequences(Command command);

/// The menus that were built.
class Menus
{
public:
    /// Builds all menus of the table into the bar, registers each row with `commands`. The context menus get
    /// `owner`.
    Menus(QMenuBar *bar, QWidget *owner, Commands &commands);

    QMenu *Menu(MenuName name) const;

private:
    std::map<MenuName, QMenu *> m_menus;
};

} // namespace zelvane
