// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/screenplace.h"

#include "shell/settings.h"

#include <algorithm>
#include <cmath>
#include <QGuiApplication>
#include <QPoint>
#include <QScreen>
#include <QSize>
#include <QtGlobal>
#include <QWidget>

namespace zelvane
{

namespace
{

constexpr double TwipsPerInch = 1440;
constexpr int GrabWidth = 64; ///< as much of a window's upper edge has to be on a screen, pixels

constexpr QSize Frame(16, 48); ///< about what the window manager puts around a dialog, pixels

} // namespace

double ToTwips(int pixels, int dotsPerInch)
{
    return double(float(pixels * TwipsPerInch / dotsPerInch));
}

int FromTwips(double twips, int dotsPerInch)
{
    return int(std::lround(std::clamp(twips, -MostTwips, MostTwips) * dotsPerInch / TwipsPerInch));
}

QRect OnScreen(const QRect &place, const std::vector<QRect> &screens)
{
    if (screens.empty())
        return place;
    const QRect handle(place.topLeft(), QSize(place.width(), GrabHeight));
    const QRect *nearest = nullptr;
    qint64 least = 0;
    for (const QRect &screen : screens) {
        const QRect seen = screen & handle;
        if (seen.width() >= std::min(GrabWidth, place.width()) && seen.height() >= GrabHeight)
            return place;
        const QPoint away = screen.center() - place.center();
        const qint64 distance = qint64(away.x()) * away.x() + qint64(away.y()) * away.y();
        if (!nearest || distance < least) {
            nearest = &screen;
            least = distance;
        }
    }
    QRect moved(place.topLeft(), place.size().boundedTo(nearest->size()));
    moved.moveLeft(std::clamp(moved.left(), nearest->left(), nearest->right() + 1 - moved.width()));
    moved.moveTop(std::clamp(moved.top(), nearest->top(), nearest->bottom() + 1 - moved.height()));
    return moved;
}

void RestorePlace(QWidget &dialog, const SettingsStore &settings, const BareNumberKey &x,
                  const BareNumberKey &y)
{
    if (settings.StoredText(x).isEmpty() || settings.StoredText(y).isEmpty())
        return;
    std::vector<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.push_back(screen->availableGeometry());
    const int dpi = dialog.logicalDpiX();
    const QPoint place(FromTwips(settings.Number(x, 0), dpi), FromTwips(settings.Number(y, 0), dpi));
    dialog.move(OnScreen(QRect(place, dialog.sizeHint() + Frame), screens).topLeft());
}

void SavePlace(const QWidget &dialog, SettingsStore &settings, const BareNumberKey &x, const BareNumberKey &y)
{
    settings.InOneStep([&] {
        settings.SaveNumber(x, ToTwips(dialog.x(), dialog.logicalDpiX()));
        settings.SaveNumber(y, ToTwips(dialog.y(), dialog.logicalDpiX()));
    });
}

} // namespace zelvane
