// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <QObject>

class QKeyEvent;
class QWidget;

namespace zelvane
{

class BandBar;
class SidePanel;

/// The round of the keyboard through the window, with F6 and back with Shift+F6: text, opcode list, outline,
/// related files, player. The Tab key belongs to the text and cannot lead out of it.
class FocusRound : public QObject
{
    Q_OBJECT

public:
    /// @param window becomes the parent
    FocusRound(QWidget *window, QWidget &text, const BandBar &bands, const SidePanel &panel);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static constexpr int StopCount = 5;

    std::array<QWidget *, StopCount> Regions() const;
    /// Moves the focus if this is the key, past what is hidden or disabled. @return whether it is
    bool TakeKey(const QKeyEvent &event);

    QWidget *m_window;
    QWidget &m_text;
    const BandBar &m_bands;
    const SidePanel &m_panel;
};

} // namespace zelvane
