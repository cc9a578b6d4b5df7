// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/toolbutton.h"

#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/commands.h"
#include "shell/ui/icons.h"
#include "shell/ui/menutable.h"
#include "shell/ui/plaintooltip.h"

#include <algorithm>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QIconEngine>
#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

// Of a button's action.
constexpr char CommandProperty[] = "command"; ///< the name of its command's row
constexpr char KeyProperty[] = "shownKey";    ///< what its tooltip tells of its key

/// Enables the button as the row, and presses it as the row is checked, now and from now on.
void Follow(QAction *button, QAction *row)
{
    const auto copy = [button, row] {
        button->setEnabled(row->isEnabled());
        button->setCheckable(row->isCheckable());
        button->setChecked(row->isChecked());
    };
    QObject::connect(row, &QAction::changed, button, copy);
    QObject::connect(row, &QAction::toggled, button, copy);
    copy();
}

/// A press runs the command; what the command does to its row decides whether a checkable button stays
/// pressed.
void RunOnPress(QAction *action, Commands &commands, Command command)
{
    QObject::connect(action, &QAction::triggered, &commands, [action, &commands, command](bool checked) {
        if (action->isCheckable())
            action->setChecked(!checked);
        commands.Run(command);
    });
}

QMenu *NewDropDown(QToolBar &toolbar, Commands &commands, const ToolButton &button, const QString &name)
{
    auto *menu = new QMenu(&toolbar);
    menu->setObjectName(name);
    for (const ToolButton::Choice &choice : button.choices) {
        QAction *entry = menu->addAction(QString::fromUtf16(choice.caption));
        entry->setObjectName(name + u'_' + QString::number(menu->actions().size() - 1));
        RunOnPress(entry, commands, *choice.command);
        if (QAction *row = commands.Action(*choice.command))
            Follow(entry, row);
    }
    return menu;
}

QString WithKey(const QString &tooltip, const QString &key)
{
    return key.isEmpty() ? tooltip : tooltip + u" ("_s + key + u')';
}

void AddToolButton(QToolBar &toolbar, Commands &commands, const ToolButton &button)
{
    if (button.group == ButtonGroup::New)
        toolbar.addSeparator();
    const QString key = QString::fromUtf16(button.key);
    const QString description = QString::fromUtf16(button.description);
    QAction *action = toolbar.addAction(Icons::Load(key), description);
    action->setObjectName(toolbar.objectName() + u'_' + key);
    action->setShortcut(QKeySequence(QString::fromUtf16(button.shortcut), QKeySequence::PortableText));
    const QString ownKey = action->shortcut().toString(QKeySequence::PortableText);
    const QString rowKey = ShownKey(button.command);
    const QString shownKey = rowKey.isEmpty() ? ownKey : rowKey;
    action->setProperty(KeyProperty, shownKey);
    action->setToolTip(WithKey(QString::fromUtf16(button.tooltip), shownKey));
    action->setProperty("key", key);
    action->setProperty(CommandProperty, button.command.RowName());
    if (QAction *row = commands.Action(button.command)) {
        RunOnPress(action, commands, button.command);
        if (button.followsRow)
            Follow(action, row);
    } else {
        commands.AddAction(button.command, action);
    }

    auto *face = qobject_cast<QToolButton *>(toolbar.widgetForAction(action));
    face->setObjectName(action->objectName());
    face->setAccessibleName(description);
    if (button.choices[0].command) {
        action->setMenu(NewDropDown(toolbar, commands, button, action->objectName() + u"_menu"_s));
        face->setPopupMode(QToolButton::MenuButtonPopup);
    } else if (button.dropDown) {
        auto *menu = new QMenu(&toolbar);
        menu->setObjectName(action->objectName() + u"_menu"_s);
        action->setMenu(menu);
        face->setPopupMode(QToolButton::MenuButtonPopup);
    }
}

/// Two arrow heads, in the colour that the window's text has when they are drawn.
class ExtensionEngine : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const double unit = std::min(rect.width(), rect.height()) / 16.0;
        painter->setPen(QPen(QGuiApplication::palette().color(QPalette::WindowText), 1.4 * unit,
                             Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF middle = QRectF(rect).center();
        for (const double left : {-4.5, 0.5}) {
            const QPointF head[] = {middle + QPointF(left, -3.5) * unit,
                                    middle + QPointF(left + 3.5, 0) * unit,
                                    middle + QPointF(left, 3.5) * unit};
            painter->drawPolyline(head, 3);
        }
        painter->restore();
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    QIconEngine *clone() const override { return new ExtensionEngine(*this); }
};

} // namespace

void ShowExtensionInTextColour(QToolBar &toolbar)
{
    if (auto *extension = toolbar.findChild<QToolButton *>(u"qt_toolbar_ext_button"_s))
        extension->setIcon(QIcon(new ExtensionEngine));
}

void AddToolButtons(QToolBar &toolbar, Commands &commands, std::span<const ToolButton> table)
{
    for (const ToolButton &button : table)
        AddToolButton(toolbar, commands, button);
}

void SetButtonToolTip(QAction &button, const QString &tooltip)
{
    button.setToolTip(tooltip.isEmpty()
                          ? QString()
                          : PlainToolTip(WithKey(tooltip, button.property(KeyProperty).toString())));
    if (!tooltip.isEmpty())
        return;
    // An action without a tooltip lends its caption to its buttons.
    for (QObject *object : button.associatedObjects()) {
        if (auto *face = qobject_cast<QToolButton *>(object))
            face->setToolTip({});
    }
}

QAction *FindToolButton(const QToolBar &toolbar, Command command)
{
    const QList<QAction *> buttons = toolbar.actions();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [&](const QAction *button) {
        return button->property(CommandProperty) == command.RowName();
    });
    return found == buttons.end() ? nullptr : *found;
}

void ShowFlatButtons(QToolBar &toolbar, const SettingsStore &settings)
{
    const bool flat = settings.Flag(Keys::FlatButtons);
    for (QToolButton *face : toolbar.findChildren<QToolButton *>()) {
        face->setAutoRaise(flat);
        // In some styles the two kinds are of two sizes, and by itself the button keeps the size that it had.
        QEvent changed(QEvent::StyleChange);
        QCoreApplication::sendEvent(face, &changed);
    }
}

void ShowToolLabels(QToolBar &toolbar, bool shown)
{
    toolbar.setToolButtonStyle(shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
}

} // namespace zelvane
