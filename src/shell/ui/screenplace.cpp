// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/screenplace.h"

#include "platform/ui/withinscreen.h"
#include "shell/settings.h"

#include <algorithm>
#include <cmath>
#include <QGuiApplication>
#include <QPoint>
#include <QRegion>
#include <QScreen>
#include <QSize>
#include <QtGlobal>
#include <QWidget>

namespace zelvane
{

namespace
{

constexpr double TwipsPerInch = 1440;

constexpr int Gap = 8; ///< between a dialog and what it gives way to, pixels

} // namespace

double ToTwips(int pixels, int dotsPerInch)
{
    return double(float(pixels * TwipsPerInch / dotsPerInch));
}

int FromTwips(double twips, int dotsPerInch)
{
    return int(std::lround(std::clamp(twips, -MostTwips, MostTwips) * dotsPerInch / TwipsPerInch));
}

std::vector<QRect> UsableScreens()
{
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.push_back(screen->availableGeometry());
    return screens;
}

QRect OnScreen(const QRect &place, const std::vector<QRect> &screens)
{
    QRegion all;
    const QRect *best = nullptr;
    qint64 mostSeen = 0;
    qint64 leastAway = 0;
    for (const QRect &screen : screens) {
        all += screen;
        const QRect seen = screen & place;
        const qint64 area = seen.isEmpty() ? 0 : qint64(seen.width()) * seen.height();
        const QPoint away = screen.center() - place.center();
        const qint64 distance = qint64(away.x()) * away.x() + qint64(away.y()) * away.y();
        if (!best || area > mostSeen || (area == mostSeen && distance < leastAway)) {
            best = &screen;
            mostSeen = area;
            leastAway = distance;
        }
    }
    if (!best || (QRegion(place) - all).isEmpty())
        return place;
    QRect moved(place.topLeft(), place.size().boundedTo(best->size()));
    moved.moveLeft(std::clamp(moved.left(), best->left(), best->right() + 1 - moved.width()));
    moved.moveTop(std::clamp(moved.top(), best->top(), best->bottom() + 1 - moved.height()));
    return moved;
}

void RestorePlace(QWidget &dialog, const SettingsStore &settings, const BareNumberKey &x,
                  const BareNumberKey &y)
{
    if (settings.StoredText(x).value_or(QString()).isEmpty() ||
        settings.StoredText(y).value_or(QString()).isEmpty())
        return;
    const int dpi = dialog.logicalDpiX();
    const QPoint place(FromTwips(settings.Number(x, 0), dpi), FromTwips(settings.Number(y, 0), dpi));
    dialog.move(OnScreen(QRect(place, dialog.sizeHint() + WindowFrame), UsableScreens()).topLeft());
}

void MoveOff(QWidget &dialog, const QRect &covered)
{
    const QRect frame = dialog.frameGeometry();
    if (!frame.intersects(covered))
        return;
    const QRect room = dialog.screen()->availableGeometry();
    const int below = covered.bottom() + 1 + Gap;
    const int above = covered.top() - Gap - frame.height();
    const int right = covered.right() + 1 + Gap;
    const int left = covered.left() - Gap - frame.width();
    if (below + frame.height() <= room.bottom() + 1)
        dialog.move(dialog.x(), below);
    else if (above >= room.top())
        dialog.move(dialog.x(), above);
    else if (right + frame.width() <= room.right() + 1)
        dialog.move(right, dialog.y());
    else if (left >= room.left())
        dialog.move(left, dialog.y());
}

void KeepOnScreen(QWidget &dialog)
{
    const QPoint seen = OnScreen(QRect(dialog.pos(), dialog.size() + WindowFrame), UsableScreens()).topLeft();
    if (dialog.isVisible() && seen != dialog.pos())
        dialog.move(seen);
}

void SavePlace(const QWidget &dialog, SettingsStore &settings, const BareNumberKey &x, const BareNumberKey &y)
{
    settings.InOneStep([&] {
        settings.SaveNumber(x, ToTwips(dialog.x(), dialog.logicalDpiX()));
        settings.SaveNumber(y, ToTwips(dialog.y(), dialog.logicalDpiX()));
    });
}

} // namespace zelvane
