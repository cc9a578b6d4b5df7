// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/settings.h"

#include <optional>
#include <QPoint>
#include <QSize>

class QMainWindow;

namespace zelvane
{

class Appearance;
class Commands;
class LayoutParts;
class Workspace;

/// The layout of the main window in the settings store: read once when the window is made, written when it is
/// closed, both in a fixed order. A hidden band's width is kept like any other's.
class WindowLayout
{
public:
    WindowLayout(QMainWindow &window, Workspace &workspace, Commands &commands, SettingsStore &settings,
                 const Appearance &appearance, LayoutParts &parts);

    /// Place, size and state of the window. @param design the size of a window that was never stored, pixels
    void RestoreGeometry(const QSize &design);
    /// All that stands in the window, up to the labels.
    void RestoreBands();

    /// Where the window stands in the way of another one, which was restored to the same place: moves it a
    /// step down and right, as far as the screen has room. Left there, it is stored at the place that it was
    /// restored to.
    void StepAside();

    void SaveGeometry();
    /// The parts that others keep, bands and status bar.
    void SaveBands();
    void SavePanel();

private:
    QMainWindow &m_window;
    Workspace &m_workspace;
    Commands &m_commands;
    SettingsStore &m_settings;
    const Appearance &m_appearance;
    LayoutParts &m_parts;
    std::optional<QPoint> m_aside; ///< where StepAside has put the window
    QPoint m_restored;             ///< where it stood before
};

} // namespace zelvane
