// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace zelvane
{

class BandBar;
class SidePanel;
class Splitter;
class StatusBar;

/// The regions below the menu bar, and their layout: the band bar, then side panel, splitter and text beside
/// each other, then the status bar. Pixels.
class Workspace : public QWidget
{
    Q_OBJECT

public:
    /// @param text the text control; becomes a child
    Workspace(QWidget *text, StatusBar *status, QWidget *parent = nullptr);

    BandBar &Bands() { return *CoolBar1; }
    SidePanel &Panel() { return *cc3Panel; }

    int PanelWidth() const { return m_panelWidth; }
    void SetPanelWidth(int width);
    void ShowStatusBar(bool shown);

    /// Lets the Tab key go through the bands and then the panel in the order on the screen, in whatever order
    /// the rooms have come.
    void OrderTabs();

    /// Gives each region its place; nothing happens while the window is minimized.
    void LayOut();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Hides the band bar when no band is visible, the panel and its splitter when no band of the panel is.
    void ShowBars();
    BandBar *CoolBar1;
    SidePanel *cc3Panel;
    Splitter *m_splitter;
    QWidget *m_text;
    StatusBar *picStatus;
    int m_panelWidth;
    bool m_statusShown = true;
    bool m_layingOut = false;
};

} // namespace zelvane
