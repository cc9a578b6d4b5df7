// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string_view>

namespace zelvane
{

/// The name of a menu, which is its objectName. The constants of Menu are all there are.
class MenuName
{
public:
    constexpr std::u16string_view Name() const { return m_name; }
    QString ToString() const { return QStringView(m_name).toString(); }

    auto operator<=>(const MenuName &) const = default;

private:
    friend struct Menu;
    constexpr explicit MenuName(std::u16string_view name) : m_name(name) {}

    std::u16string_view m_name;
};

struct Menu {
    static constexpr MenuName Bar{u""};     ///< what the menus of the menu bar stand under
    static constexpr MenuName Popups{u" "}; ///< what the context menus stand under

    static constexpr MenuName mnuFile{u"mnuFile"};
    static constexpr MenuName mnuPlatform{u"mnuPlatform"};
    static constexpr MenuName mnuFileShell{u"mnuFileShell"};
    static constexpr MenuName mnuEdit{u"mnuEdit"};
    static constexpr MenuName mnuChangeCase{u"mnuChangeCase"};
    static constexpr MenuName mnuSearch{u"mnuSearch"};
    static constexpr MenuName mnuView{u"mnuView"};
    static constexpr MenuName mnuShowDirs{u"mnuShowDirs"};
    static constexpr MenuName mnuToolbar{u"mnuToolbar"};
    static constexpr MenuName mnuInsert{u"mnuInsert"};
    static constexpr MenuName mnuPresets{u"mnuPresets"};
    static constexpr MenuName mnuTools{u"mnuTools"};
    static constexpr MenuName mnuPlayer{u"mnuPlayer"};
    static constexpr MenuName mnuSoundShell{u"mnuSoundShell"};
    static constexpr MenuName mnuExtras{u"mnuExtras"};
    static constexpr MenuName mnuHelp{u"mnuHelp"};
    static constexpr MenuName mnuWeb{u"mnuWeb"};

    static constexpr MenuName mnuBrowseEditable{u"mnuBrowseEditable"};
    static constexpr MenuName mnuBrowseInclude{u"mnuBrowseInclude"};
    static constexpr MenuName mnuTreeView{u"mnuTreeView"};
    static constexpr MenuName mnuPresetPopup{u"mnuPresetPopup"};
    static constexpr MenuName mnuRelatedPopup{u"mnuRelatedPopup"};
    static constexpr MenuName mnuRelatedShell{u"mnuRelatedItem_2"}; ///< an entry of the item array
};

} // namespace zelvane
