// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/workspace.h"

#include "shell/bands.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/splitter.h"
#include "shell/ui/statusbar.h"

#include <algorithm>
#include <QList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Gap = 3;          ///< above and below the text
constexpr int LeastPanel = 32;  ///< a narrower panel shows nothing
constexpr int LeastText = 60;   ///< width that a wide panel leaves to the text
constexpr int LeastHeight = 10; ///< of the text in a very low window

} // namespace

Workspace::Workspace(QWidget *text, StatusBar *status, QWidget *parent)
    : QWidget(parent),
      CoolBar1(new BandBar(this)),
      cc3Panel(new SidePanel(this)),
      m_splitter(new Splitter(this)),
      m_text(text),
      picStatus(status),
      m_panelWidth(cc3Panel->sizeHint().width())
{
    CoolBar1->setObjectName(u"CoolBar1"_s);
    cc3Panel->setObjectName(u"cc3Panel"_s);
    m_splitter->setObjectName(u"Splitter"_s);
    m_text->setParent(this);
    picStatus->setParent(this);
    cc3Panel->hide();
    m_splitter->hide();

    connect(CoolBar1, &BandBar::HeightChanged, this, &Workspace::LayOut);
    connect(CoolBar1, &BandBar::BandShown, this, &Workspace::ShowBars);
    connect(cc3Panel, &SidePanel::BandShown, this, [this](PanelBand, bool shown) {
        if (shown && m_panelWidth < LeastPanel)
            m_panelWidth = cc3Panel->sizeHint().width();
        ShowBars();
    });
    connect(m_splitter, &Splitter::Dropped, this,
            [this](int right) { SetPanelWidth(right - Splitter::Thickness); });
}

void Workspace::SetPanelWidth(int width)
{
    m_panelWidth = std::max(0, width);
    LayOut();
}

void Workspace::ShowBars()
{
    CoolBar1->setVisible(CoolBar1->IsAnyBandVisible());
    cc3Panel->setVisible(cc3Panel->IsAnyBandVisible());
    m_splitter->setVisible(cc3Panel->IsAnyBandVisible());
    LayOut();
}

void Workspace::ShowStatusBar(bool shown)
{
    m_statusShown = shown;
    picStatus->setVisible(shown);
    LayOut();
}

void Workspace::OrderTabs()
{
    QWidget *before = m_text;
    const auto append = [&before](QWidget *control) {
        if (!control)
            return;
        for (QWidget *stop : QList<QWidget *>{control} + control->findChildren<QWidget *>()) {
            // A list that drops down is a window of its own.
            if (!(stop->focusPolicy() & Qt::TabFocus) || stop->focusProxy() ||
                stop->window() != before->window())
                continue;
            setTabOrder(before, stop);
            before = stop;
        }
    };
    for (const WindowBand band : AllBands<WindowBand>())
        append(CoolBar1->Control(band));
    for (const PanelBand band : AllBands<PanelBand>())
        append(cc3Panel->Control(band));
}

void Workspace::LayOut()
{
    if (m_layingOut || window()->isMinimized())
        return;
    m_layingOut = true;
    int top = 0;
    if (CoolBar1->IsAnyBandVisible()) {
        CoolBar1->setGeometry(0, 0, width(), CoolBar1->heightForWidth(width()));
        top = CoolBar1->height() + Gap;
    }
    int bottom = height() - Gap;
    if (m_statusShown) {
        const int high = picStatus->sizeHint().height();
        picStatus->setGeometry(0, height() - high, width(), high);
        bottom = picStatus->y() - Gap;
    }
    const int free = std::max(LeastHeight, bottom - top);
    int left = 0;
    if (cc3Panel->IsAnyBandVisible()) {
        const int panel = std::clamp(m_panelWidth, 0, std::max(0, width() - LeastText));
        cc3Panel->setGeometry(0, top, panel, free);
        m_splitter->setGeometry(panel, top, Splitter::Thickness, free);
        left = panel + Splitter::Thickness;
    }
    m_text->setGeometry(left, top, std::max(0, width() - left), free);
    m_layingOut = false;
}

void Workspace::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    LayOut();
}

} // namespace zelvane
