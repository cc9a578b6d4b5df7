// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/windowcontext.h"

#include <QObject>

class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;
class QPoint;

namespace zelvane
{

/// Takes the keys that change the number at the caret, and the right click on a number, which brings up its
/// slider in place of the text's menu.
class NumericInput : public QObject
{
    Q_OBJECT

public:
    explicit NumericInput(const WindowContext &context);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// @return whether the key is one of them
    bool TakeKey(const QKeyEvent &key);
    /// Desktops ask for a menu when the button goes down, or when it comes up. @return whether none is to
    /// come
    bool TakeMenu(const QContextMenuEvent &menu);
    void ButtonUp(const QMouseEvent &mouse);
    /// Whether a click there is on a number, and means its slider.
    bool MeansSlider(const QPoint &screen, Qt::KeyboardModifiers modifiers) const;
    void ShowSlider(const QPoint &screen);

    WindowContext m_context;
    bool m_down = false;    ///< the button is down, and the menu has been held back
    bool m_passing = false; ///< the menu that was held back comes after all
};

} // namespace zelvane
