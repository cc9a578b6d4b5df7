// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/playerpanel.h"

#include "shell/command.h"
#include "shell/ui/toolbutton.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QTimer>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr ToolButton Buttons[] = {
    {u"play", u"Play", u"Play/Restart", Cmd::mnuPlay},
    {u"pause", u"Pause", u"Pause/Resume", Cmd::mnuPause},
    {u"stop", u"Stop", u"Stop", Cmd::mnuStop},
    {u"loop", u"Loop", u"Loop mode", Cmd::mnuLoop},
};

} // namespace

PlayerPanel::PlayerPanel(Commands &commands, QWidget *parent)
    : QWidget(parent),
      tbPlayer(new QToolBar(this)),
      SliderTime(new QSlider(Qt::Horizontal, this)),
      lblPos(new QLabel(this)),
      Timer1(new QTimer(this))
{
    setObjectName(u"PicPlayer"_s);
    tbPlayer->setObjectName(u"tbPlayer"_s);
    tbPlayer->setIconSize(QSize(16, 16));
    tbPlayer->setSizePolicy(QSizePolicy::Fixed,
                            QSizePolicy::Preferred); // the slider gives way, not the buttons
    SliderTime->setObjectName(u"SliderTime"_s);
    SliderTime->setAccessibleName(u"Position"_s);
    lblPos->setObjectName(u"lblPos"_s);
    lblPos->setToolTip(u"Elapsed Time"_s);

    AddToolButtons(*tbPlayer, commands, Buttons);

    // The keyboard gets here with F6 and goes on with Tab.
    for (QAction *action : tbPlayer->actions())
        tbPlayer->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);

    Timer1->setObjectName(u"Timer1"_s);
    Timer1->setInterval(50);
    SliderTime->setEnabled(false);
    SliderTime->setMinimumWidth(80);
    lblPos->setEnabled(false);
    lblPos->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblPos->setMinimumWidth(fontMetrics().horizontalAdvance(u"-000:00"_s));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 6, 0);
    layout->setSpacing(4);
    layout->addWidget(tbPlayer, 0);
    layout->addWidget(SliderTime, 1);
    layout->addWidget(lblPos, 0);
}

} // namespace zelvane
