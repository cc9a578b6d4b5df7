// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "player/player.h"

#include <QString>
#include <QStringList>
#include <utility>

namespace zelvane::test
{

/// The controls of the player, and what was done to them.
struct RecordedControls : PlayerControls {
    QStringList calls;
    bool enabled = false;
    bool running = false;
    bool looping = false;
    int position = -1;
    int length = 0;
    QString time, image, tooltip;
    bool remaining = false;

    void EnableSound(bool newEnabled) override
    {
        enabled = newEnabled;
        calls.append(newEnabled ? QStringLiteral("enable") : QStringLiteral("disable"));
    }
    bool IsSoundEnabled() const override { return enabled; }
    void LeaveSlider() override { calls.append(QStringLiteral("leave")); }
    void RunTimer(bool run) override
    {
        running = run;
        calls.append(run ? QStringLiteral("timer on") : QStringLiteral("timer off"));
    }
    void ShowPosition(int newPosition) override
    {
        position = newPosition;
        calls.append(QStringLiteral("position ") + QString::number(newPosition));
    }
    void SetLength(int newLength) override { length = newLength; }
    void ShowTime(const QString &newTime) override { time = newTime; }
    void ShowTimeMode(bool newRemaining) override { remaining = newRemaining; }
    void ShowPlayButton(const QString &newImage, const QString &newTooltip) override
    {
        image = newImage;
        tooltip = newTooltip;
    }
    bool IsLooping() const override { return looping; }

    QStringList TakeCalls() { return std::exchange(calls, {}); }
};

} // namespace zelvane::test
