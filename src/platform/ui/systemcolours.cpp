// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/systemcolours.h"

#include "platform/systemcolour.h"

#include <algorithm>
#include <cmath>

namespace zelvane
{

namespace
{

constexpr double ReadableContrast = 4.5;
constexpr double VisibleContrast = 3.4;

double Luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QPalette::ColorRole RoleOf(int index)
{
    switch (index) {
    case 1:  // desktop
    case 4:  // menu bar and menus
    case 10: // frames of windows
    case 11:
    case 12: // behind child windows
    case 15: // faces of buttons
    case 22:
    case 30:
        return QPalette::Window;
    case 2: // active caption
    case 13:
    case 26: // hot tracked item
    case 27:
    case 29:
        return QPalette::Highlight;
    case 3: // inactive caption
    case 28:
        return QPalette::Mid;
    case 5:
        return QPalette::Base;
    case 0: // scroll bars
        return QPalette::Button;
    case 6: // outlines of windows
    case 7: // texts of menus
        return QPalette::WindowText;
    case 9: // text of the active caption
    case 14:
        return QPalette::HighlightedText;
    case 16:
        return QPalette::Dark;
    case 17: // disabled text
    case 19:
        return QPalette::PlaceholderText;
    case 18:
        return QPalette::ButtonText;
    case 20:
        return QPalette::Light;
    case 21:
        return QPalette::Shadow;
    case 23:
        return QPalette::ToolTipText;
    case 24:
        return QPalette::ToolTipBase;
    default:
        return QPalette::Text;
    }
}

} // namespace

QColor SystemColour(int index, const QPalette &palette)
{
    return palette.color(QPalette::Active, RoleOf(index));
}

QColor ResolveColour(quint32 stored, const QPalette &palette)
{
    if (stored & SystemColourBit)
        return SystemColour(int(stored & 0xFF), palette);
    return QColor(int(stored & 0xFF), int((stored >> 8) & 0xFF), int((stored >> 16) & 0xFF));
}

double Contrast(const QColor &one, const QColor &other)
{
    const double first = Luminance(one);
    const double second = Luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor ReadableTwin(const QColor &colour, const QColor &background)
{
    if (Contrast(colour, background) >= ReadableContrast)
        return colour;
    const bool lighter = Contrast(Qt::white, background) >= Contrast(Qt::black, background);
    const QColor hsl = colour.toHsl();
    QColor twin = colour;
    for (int step = 1; step <= 255; ++step) {
        const int lightness = std::clamp(hsl.lightness() + (lighter ? step : -step), 0, 255);
        twin = QColor::fromHsl(hsl.hslHue(), hsl.hslSaturation(), lightness).toRgb();
        if (Contrast(twin, background) >= ReadableContrast)
            break;
    }
    return twin;
}

QColor VisibleLine(const QColor &ink, const QList<QColor> &backgrounds)
{
    const QColor first = backgrounds.front();
    // As faint as it may be: from what is hardly seen anywhere, in steps that nobody sees.
    constexpr int faintest = 30;
    constexpr int step = 2;
    for (int percent = faintest; percent < 100; percent += step) {
        const auto mix = [percent](int of, int with) {
            return (of * percent + with * (100 - percent)) / 100;
        };
        const QColor line(mix(ink.red(), first.red()), mix(ink.green(), first.green()),
                          mix(ink.blue(), first.blue()));
        if (std::all_of(backgrounds.begin(), backgrounds.end(),
                        [&](const QColor &back) { return Contrast(line, back) >= VisibleContrast; }))
            return line;
    }
    return ink;
}

} // namespace zelvane
