// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/numericinput.h"

#include "instruments/numericediting.h"
#include "instruments/ui/frmnumctrl.h"
#include "platform/ui/textcontrol.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"

#include <optional>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QRandomGenerator>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <QWidget>

namespace zelvane
{

namespace
{

/// What a key with Alt, and without Ctrl, does to the number.
std::optional<NumericMode> ModeOf(const QKeyEvent &key)
{
    const Qt::KeyboardModifiers held = key.modifiers();
    if (!held.testFlag(Qt::AltModifier) || held.testFlag(Qt::ControlModifier))
        return std::nullopt;
    switch (key.key()) {
    case Qt::Key_Up:
        return NumericMode::AddOne;
    case Qt::Key_Down:
        return NumericMode::SubtractOne;
    case Qt::Key_Right:
        return NumericMode::AddTenth;
    case Qt::Key_Left:
        return NumericMode::SubtractTenth;
    case Qt::Key_PageUp:
        return NumericMode::AddTen;
    case Qt::Key_PageDown:
        return NumericMode::SubtractTen;
    case Qt::Key_Asterisk:
        return held.testFlag(Qt::KeypadModifier) ? std::optional(NumericMode::Random) : std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace

NumericInput::NumericInput(const WindowContext &context) : QObject(context.window), m_context(context)
{
    context.text.installEventFilter(this);
    context.text.viewport()->installEventFilter(this);
}

bool NumericInput::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // No shortcut of the window takes them while the keyboard is in the text.
        if (watched != &m_context.text || !ModeOf(*static_cast<QKeyEvent *>(event)))
            break;
        event->accept();
        return true;
    case QEvent::KeyPress:
        if (watched == &m_context.text && TakeKey(*static_cast<QKeyEvent *>(event)))
            return true;
        break;
    case QEvent::ContextMenu:
        if (watched != &m_context.text && TakeMenu(*static_cast<QContextMenuEvent *>(event)))
            return true;
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // Where menus come with the release, the one of the last click was held back behind it.
        m_down = false;
        break;
    case QEvent::MouseButtonRelease:
        if (watched != &m_context.text)
            ButtonUp(*static_cast<QMouseEvent *>(event));
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool NumericInput::TakeKey(const QKeyEvent &key)
{
    const std::optional<NumericMode> mode = ModeOf(key);
    if (!mode)
        return false;
    m_context.commands.Guard([this, mode] {
        m_context.text.BeginCommand();
        const auto end = qScopeGuard([this] { m_context.text.EndCommand(); });
        NumericEditing(m_context.editor, *mode, QRandomGenerator::global()->generateDouble());
    });
    return true;
}

bool NumericInput::TakeMenu(const QContextMenuEvent &menu)
{
    if (m_passing || menu.reason() != QContextMenuEvent::Mouse)
        return false;
    m_down = MeansSlider(menu.globalPos(), menu.modifiers());
    return m_down;
}

void NumericInput::ButtonUp(const QMouseEvent &mouse)
{
    if (mouse.button() != Qt::RightButton)
        return;
    const bool heldBack = m_down;
    m_down = false;
    const QPoint screen = mouse.globalPosition().toPoint();
    if (MeansSlider(screen, mouse.modifiers())) {
        // Not inside the event: the slider's window stays until the user closes it.
        QMetaObject::invokeMethod(
            this, [this, screen] { ShowSlider(screen); }, Qt::QueuedConnection);
    } else if (heldBack) {
        const QScopedValueRollback passing(m_passing, true);
        QWidget *viewport = m_context.text.viewport();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, viewport->mapFromGlobal(screen), screen,
                               mouse.modifiers());
        QCoreApplication::sendEvent(viewport, &menu);
    }
}

bool NumericInput::MeansSlider(const QPoint &screen, Qt::KeyboardModifiers modifiers) const
{
    if (modifiers.testFlag(Qt::ControlModifier) || !m_context.text.Selection().IsEmpty())
        return false;
    const qsizetype offset = m_context.text.OffsetAt(screen);
    return offset >= 0 && IsNumberAt(m_context.text, offset);
}

void NumericInput::ShowSlider(const QPoint &screen)
{
    // The text may have changed since the click.
    if (!MeansSlider(screen, Qt::NoModifier))
        return;
    m_context.commands.Guard([this, screen] {
        TextControl &text = m_context.text;
        const qsizetype offset = text.OffsetAt(screen);
        text.SetSelection(offset, offset);
        SelectNumber(text);
        frmNumCtrl(m_context.editor, m_context.steps, text, screen, m_context.window).exec();
    });
}

} // namespace zelvane
