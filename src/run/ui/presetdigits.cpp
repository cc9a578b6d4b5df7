// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/presetdigits.h"

#include "platform/ui/digitkey.h"
#include "run/presetbuttons.h"
#include "run/ui/presetbar.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

namespace zelvane
{

PresetDigits::PresetDigits(QWidget *window, PresetBar &bar) : QObject(window), m_window(window), m_bar(bar)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PresetDigits::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->window() == m_window && KeyPressed(*static_cast<QKeyEvent *>(event)))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

bool PresetDigits::KeyPressed(const QKeyEvent &event)
{
    const int digit = DigitKey(event);
    const Qt::KeyboardModifiers held = event.modifiers();
    const int row =
        digit < 0 ? -1 : PresetRowOfDigit(digit, held & Qt::ControlModifier, held & Qt::AltModifier);
    if (row < 0)
        return false;
    // A key that is held down repeats; the preset runs once.
    if (!event.isAutoRepeat())
        m_bar.RunRow(row);
    return true;
}

} // namespace zelvane
