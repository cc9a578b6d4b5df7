// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/windowlayout.h"

#include "shell/bands.h"
#include "shell/command.h"
#include "shell/layoutkeys.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/sidepanel.h"
#include "window/ui/workspace.h"

#include <algorithm>
#include <QCoreApplication>
#include <QMainWindow>
#include <QPoint>
#include <QRect>
#include <QScreen>
#include <QSize>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Maximized = 2;         ///< of the key `Window`
constexpr QSize LeastSize(360, 260); ///< a smaller window would show bars and no text
constexpr QPoint Step(28, 28);       ///< about the height of a title, pixels

} // namespace

WindowLayout::WindowLayout(QMainWindow &window, Workspace &workspace, Commands &commands,
                           SettingsStore &settings, const Appearance &appearance, LayoutParts &parts)
    : m_window(window),
      m_workspace(workspace),
      m_commands(commands),
      m_settings(settings),
      m_appearance(appearance),
      m_parts(parts)
{
}

void WindowLayout::RestoreGeometry(const QSize &design)
{
    const int dpi = m_window.logicalDpiX();
    const QRect screen = m_window.screen()->availableGeometry();
    const QSize fitting = design.boundedTo(screen.size() - LeastFrame);
    const auto twips = [dpi](int pixels) { return ToTwips(pixels, dpi); };

    const double x =
        m_settings.Number(Keys::X, twips(screen.left() + (screen.width() - fitting.width()) / 2));
    const double y =
        m_settings.Number(Keys::Y, twips(screen.top() + (screen.height() - fitting.height()) / 2));
    const double width = m_settings.Number(Keys::Width, twips(fitting.width()) + 1);
    const double height = m_settings.Number(Keys::Height, twips(fitting.height()) + 1);

    const QSize least = m_window.minimumSizeHint().expandedTo(LeastSize);
    m_window.setMinimumSize(least);
    const QSize size = QSize(FromTwips(width, dpi), FromTwips(height, dpi)).expandedTo(least);
    const QRect place =
        OnScreen(QRect(QPoint(FromTwips(x, dpi), FromTwips(y, dpi)), size + LeastFrame), UsableScreens());
    m_window.move(place.topLeft());
    m_window.resize(place.size() - LeastFrame);

    if (m_settings.Integer(Keys::Window) == Maximized)
        m_window.setWindowState(Qt::WindowMaximized);
}

void WindowLayout::StepAside()
{
    if (m_window.isMaximized())
        return;
    m_restored = m_window.pos();
    const QRect aside(m_restored + Step, m_window.size() + LeastFrame);
    m_aside = OnScreen(aside, UsableScreens()).topLeft();
    m_window.move(*m_aside);
}

void WindowLayout::RestoreBands()
{
    BandBar &bands = m_workspace.Bands();
    SidePanel &panel = m_workspace.Panel();

    m_appearance.ApplyAtStart(LookTime::Toolbars);
    for (const WindowBand band : AllBands<WindowBand>()) {
        const double width = m_settings.Number(Keys::BandWidth(band), bands.BandWidth(band));
        if (width != bands.BandWidth(band))
            bands.SetBandWidth(band, int(std::clamp(width, 0.0, MostTwips)));
    }
    for (const WindowBand band : AllBands<WindowBand>())
        bands.SetStartsRow(band, m_settings.Flag(Keys::BandRow(band)));
    m_workspace.LayOut();
    bands.repaint();
    m_workspace.SetPanelWidth(
        int(std::clamp(m_settings.Number(Keys::PanelWidth, m_workspace.PanelWidth()), 0.0, MostTwips)));
    for (const PanelBand band : AllBands<PanelBand>()) {
        const double height = m_settings.Number(Keys::PanelBandHeight(band), -1);
        panel.SetBandHeight(band, int(std::clamp(height, -1.0, MostTwips)));
    }

    m_appearance.ApplyAtStart(LookTime::Trees);
    for (const LayoutPart part : PartsOfThePanels)
        m_parts.Restore(part);
    m_appearance.ApplyAtStart(LookTime::Captions);
    for (const WindowBand band : AllBands<WindowBand>()) {
        if (!m_settings.Flag(Keys::Band(band)))
            m_commands.Run(Cmd::mnuShowToolbar[band]);
    }
    if (!m_settings.Flag(Keys::StatusBar))
        m_commands.Run(Cmd::mnuShowStatusbar);

    QCoreApplication::processEvents();
    for (const LayoutPart part : PartsOfTheLabels)
        m_parts.Restore(part);
}

void WindowLayout::SaveGeometry()
{
    if (m_window.isMinimized())
        return;
    const bool maximized = m_window.isMaximized() || m_window.isFullScreen();
    m_settings.SaveNumber(Keys::Window, maximized ? Maximized : 0);
    if (maximized)
        return;
    const int dpi = m_window.logicalDpiX();
    const QPoint place = m_window.pos() == m_aside ? m_restored : m_window.pos();
    m_settings.SaveNumber(Keys::X, ToTwips(place.x(), dpi));
    m_settings.SaveNumber(Keys::Y, ToTwips(place.y(), dpi));
    m_settings.SaveNumber(Keys::Width, ToTwips(m_window.width(), dpi));
    m_settings.SaveNumber(Keys::Height, ToTwips(m_window.height(), dpi));
}

void WindowLayout::SaveBands()
{
    const BandBar &bands = m_workspace.Bands();
    m_parts.SaveAll();
    for (const WindowBand band : AllBands<WindowBand>())
        m_settings.SaveFlag(Keys::Band(band), m_commands.IsChecked(Cmd::mnuShowToolbar[band]));
    m_settings.SaveFlag(Keys::StatusBar, m_commands.IsChecked(Cmd::mnuShowStatusbar));
    for (const WindowBand band : AllBands<WindowBand>()) {
        m_settings.SaveNumber(Keys::BandWidth(band), bands.BandWidth(band));
        m_settings.SaveFlag(Keys::BandRow(band), bands.StartsRow(band));
    }
}

void WindowLayout::SavePanel()
{
    const SidePanel &panel = m_workspace.Panel();
    m_settings.SaveNumber(Keys::PanelWidth, m_workspace.PanelWidth());
    for (const PanelBand band : AllBands<PanelBand>()) {
        m_settings.SaveNumber(Keys::PanelBandHeight(band), panel.BandHeight(band));
        m_settings.SaveFlag(Keys::PanelBandRow(band), true);
    }
}

} // namespace zelvane
