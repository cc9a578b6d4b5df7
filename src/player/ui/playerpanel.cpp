// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/playerpanel.h"

#include "player/ui/timeslider.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "shell/ui/icons.h"
#include "shell/ui/toolbutton.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
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

constexpr int TickMs = 50;

} // namespace

PlayerPanel::PlayerPanel(Commands &commands, QWidget *text, QWidget *parent)
    : QWidget(parent),
      tbPlayer(new QToolBar(this)),
      SliderTime(new TimeSlider(this)),
      lblPos(new QLabel(this)),
      Timer1(new QTimer(this)),
      m_commands(commands),
      TxtEdit(text),
      m_playImage(u"play"_s)
{
    setObjectName(u"PicPlayer"_s);
    setContextMenuPolicy(Qt::CustomContextMenu);
    tbPlayer->setObjectName(u"tbPlayer"_s);
    tbPlayer->setIconSize(QSize(16, 16));
    tbPlayer->setSizePolicy(QSizePolicy::Fixed,
                            QSizePolicy::Preferred); // the slider gives way, not the buttons
    SliderTime->setObjectName(u"SliderTime"_s);
    SliderTime->setAccessibleName(u"Position"_s);
    lblPos->setObjectName(u"lblPos"_s);
    lblPos->installEventFilter(this);

    AddToolButtons(*tbPlayer, commands, Buttons);

    for (QAction *action : tbPlayer->actions()) {
        QWidget *face = tbPlayer->widgetForAction(action);
        face->setFocusPolicy(Qt::TabFocus); // the keyboard gets here with F6 and goes on with Tab
        face->installEventFilter(this);
    }

    Timer1->setObjectName(u"Timer1"_s);
    Timer1->setInterval(TickMs);
    SliderTime->setMinimumWidth(80);
    lblPos->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblPos->setMinimumWidth(fontMetrics().horizontalAdvance(u"-000:00"_s));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 6, 0);
    layout->setSpacing(4);
    layout->addWidget(tbPlayer, 0);
    layout->addWidget(SliderTime, 1);
    layout->addWidget(lblPos, 0);
}

void PlayerPanel::EnableSound(bool enabled)
{
    SliderTime->setEnabled(enabled);
    lblPos->setEnabled(enabled);
    m_commands.SetEnabled(Cmd::mnuStop, enabled);
    m_commands.SetEnabled(Cmd::mnuPause, enabled);
}

bool PlayerPanel::IsSoundEnabled() const
{
    return SliderTime->isEnabled();
}

void PlayerPanel::LeaveSlider()
{
    // Also while another program has the keyboard: it comes back to the text then.
    if (SliderTime->window()->focusWidget() == SliderTime)
        TxtEdit->setFocus();
}

void PlayerPanel::RunTimer(bool run)
{
    if (run)
        Timer1->start();
    else
        Timer1->stop();
}

void PlayerPanel::ShowPosition(int position)
{
    SliderTime->setValue(position);
}

void PlayerPanel::SetLength(int length)
{
    SliderTime->SetLength(length);
}

void PlayerPanel::ShowTime(const QString &time)
{
    if (lblPos->text() != time)
        lblPos->setText(time);
}

void PlayerPanel::ShowTimeMode(bool remaining)
{
    lblPos->setProperty("Tag", remaining ? u"r"_s : QString());
    lblPos->setToolTip(remaining ? u"Remaining Time"_s : u"Elapsed Time"_s);
}

void PlayerPanel::ShowPlayButton(const QString &image, const QString &tooltip)
{
    QAction &button = *FindToolButton(*tbPlayer, Cmd::mnuPlay);
    if (m_playImage != image)
        button.setIcon(Icons::Load(image));
    m_playImage = image;
    SetButtonToolTip(button, tooltip);
}

bool PlayerPanel::IsLooping() const
{
    return FindToolButton(*tbPlayer, Cmd::mnuLoop)->isChecked();
}

bool PlayerPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lblPos)
        return TakeClick(*event) || QWidget::eventFilter(watched, event);
    // A disabled button keeps what it is asked for to itself.
    if (event->type() == QEvent::ContextMenu) {
        Q_EMIT customContextMenuRequested(
            mapFromGlobal(static_cast<QContextMenuEvent *>(event)->globalPos()));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool PlayerPanel::TakeClick(QEvent &event)
{
    if (event.type() != QEvent::MouseButtonPress && event.type() != QEvent::MouseButtonRelease)
        return false;
    const auto &mouse = static_cast<const QMouseEvent &>(event);
    if (!lblPos->isEnabled() || mouse.button() != Qt::LeftButton)
        return false;
    if (event.type() == QEvent::MouseButtonRelease && lblPos->rect().contains(mouse.position().toPoint()))
        Q_EMIT TimeClicked();
    return true; // a press that is taken brings its release
}

} // namespace zelvane
