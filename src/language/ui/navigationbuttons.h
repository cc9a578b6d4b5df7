// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/navigation.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/ui/windowcontext.h"

#include <QObject>

namespace zelvane
{

/// The history and its two buttons, `back` and `next`, each with the list of the files that way.
class NavigationButtons : public QObject, public HistoryStep
{
    Q_OBJECT

public:
    /// Takes the place of the history and binds both commands; the buttons themselves may come later, before
    /// the start.
    explicit NavigationButtons(const WindowContext &context);

    void navBeforeOpen() override { m_navigation.navBeforeOpen(); }
    void navAfterOpen() override;

private:
    /// Brings both buttons in line with the history.
    void ShowButtons();
    /// @param direction of the button, -1 or 1
    void ShowButton(Command command, const NavigationButton &button, int direction);

    Navigation m_navigation;
    Commands &m_commands;
};

} // namespace zelvane
