// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/columnmenu.h"

#include "shell/ui/legiblestyle.h"

#include <algorithm>
#include <QMenu>
#include <QStyleOptionMenuItem>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

class ColumnStyle : public LegibleStyle
{
public:
    explicit ColumnStyle(bool reservedTwice) : m_reservedTwice(reservedTwice) {}

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        return hint == SH_Menu_Scrollable ? 1 : LegibleStyle::styleHint(hint, option, widget, returned);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        QSize whole = LegibleStyle::sizeFromContents(type, option, size, widget);
        if (m_reservedTwice && type == CT_MenuItem) {
            if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option))
                whole.rwidth() -= item->reservedShortcutWidth;
        }
        return whole;
    }

private:
    bool m_reservedTwice;
};

} // namespace

void SetColumns(QMenu &menu)
{
    const QFontMetrics metrics(menu.font());
    int first = 0;
    int second = 0;
    for (const QAction *action : menu.actions()) {
        const QString caption = action->text();
        first = std::max(first, metrics.horizontalAdvance(caption.section(u'\t', 0, 0)));
        second = std::max(second, metrics.horizontalAdvance(caption.section(u'\t', 1)));
    }
    auto *style = new ColumnStyle(menu.sizeHint().width() >= first + 2 * second);
    style->setParent(&menu);
    menu.setStyle(style);
}

} // namespace zelvane
