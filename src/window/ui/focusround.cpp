// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/focusround.h"

#include "shell/bands.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/sidepanel.h"

#include <QAction>
#include <QApplication>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QSlider>
#include <QToolBar>
#include <QWidget>

namespace zelvane
{

namespace
{

bool TakesKeys(const QWidget *control)
{
    return control && control->isVisible() && control->isEnabled() && control->width() > 0;
}

/// What gets the keyboard in a region: the region itself, or the first button or slider in it that can be
/// used. While the text has the focus no policy tells which controls take it.
QWidget *StopIn(QWidget *region)
{
    if (!TakesKeys(region))
        return nullptr;
    if (region->focusPolicy() != Qt::NoFocus)
        return region;
    for (const QToolBar *bar : region->findChildren<QToolBar *>()) {
        for (QAction *action : bar->actions()) {
            if (QWidget *face = bar->widgetForAction(action); !action->isSeparator() && TakesKeys(face))
                return face;
        }
    }
    for (QSlider *slider : region->findChildren<QSlider *>()) {
        if (TakesKeys(slider))
            return slider;
    }
    return nullptr;
}

} // namespace

FocusRound::FocusRound(QWidget *window, QWidget &text, const BandBar &bands, const SidePanel &panel)
    : QObject(window), m_window(window), m_text(text), m_bands(bands), m_panel(panel)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool FocusRound::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->window() == m_window && TakeKey(*static_cast<QKeyEvent *>(event)))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

std::array<QWidget *, FocusRound::StopCount> FocusRound::Regions() const
{
    return {&m_text, m_bands.Control(WindowBand::Opcodes), m_panel.Control(PanelBand::Browse),
            m_panel.Control(PanelBand::Related), m_bands.Control(WindowBand::Player)};
}

bool FocusRound::TakeKey(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() != Qt::Key_F6 || (held != Qt::NoModifier && held != Qt::ShiftModifier))
        return false;
    const auto regions = Regions();
    const QWidget *focused = QApplication::focusWidget();
    int at = 0;
    for (int i = 0; i < StopCount; ++i) {
        const QWidget *region = regions[size_t(i)];
        if (region && focused && (region == focused || region->isAncestorOf(focused)))
            at = i;
    }
    const int step = held == Qt::ShiftModifier ? StopCount - 1 : 1;
    for (int i = (at + step) % StopCount; i != at; i = (i + step) % StopCount) {
        if (QWidget *stop = StopIn(regions[size_t(i)])) {
            stop->setFocus(Qt::ShortcutFocusReason);
            break;
        }
    }
    return true;
}

} // namespace zelvane
