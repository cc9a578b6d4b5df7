// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/presetimages.h"

#include "platform/ui/fileicon.h"
#include "shell/ui/icons.h"

#include <algorithm>
#include <qdrawutil.h>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr QRgb MaskColour = qRgb(192, 192, 192); ///< light grey: seen through
constexpr int ViewMargin = 3;
constexpr int BorderWidth = 2;
constexpr int LargestSource = 16384; ///< a picture with more pixels on a side is not for a button
constexpr int Scales[] = {1, 2, 3, 4};

/// Of the sizes in an icon file the smallest that needs no magnifying on a screen of scale 2, else the
/// largest.
QImage IconFileFrame(QImageReader &reader)
{
    constexpr int wanted = 2 * PresetImageSide;
    QImage best;
    for (int i = 0; i < std::max(1, reader.imageCount()); ++i) {
        if (!reader.jumpToImage(i) && i > 0)
            break;
        const QImage frame = reader.read();
        const bool better = best.isNull() || (best.width() < wanted && frame.width() > best.width()) ||
                            (frame.width() >= wanted && frame.width() < best.width());
        if (!frame.isNull() && better)
            best = frame;
    }
    return best;
}

QImage WithoutMaskColour(QImage image)
{
    image.convertTo(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if ((line[x] | 0xFF000000U) == MaskColour)
                line[x] = 0;
        }
    }
    return image;
}

/// A small picture of whole pixels is magnified as it is; all else is smoothed.
QImage Scaled(const QImage &image, int side)
{
    const bool whole = image.width() == image.height() && side % image.width() == 0;
    return image.scaled(side, side, Qt::IgnoreAspectRatio,
                        whole ? Qt::FastTransformation : Qt::SmoothTransformation);
}

} // namespace

int PresetImagesEnd()
{
    static const int end = [] {
        int number = FirstPresetImage;
        while (QFile::exists(u":/zelvane/images/%1.svg"_s.arg(number)))
            ++number;
        return number;
    }();
    return end;
}

QString PresetImageName(int number)
{
    static const QHash<int, QString> names = [] {
        QHash<int, QString> rows;
        QFile file(u":/zelvane/images/names.txt"_s);
        if (file.open(QIODevice::ReadOnly)) {
            for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n'))
                rows.insert(line.section(u'\t', 0, 0).toInt(), line.section(u'\t', 1));
        }
        return rows;
    }();
    return names.value(number);
}

QIcon FileImage(const QString &path)
{
    if (!QFileInfo(path).isFile()) // a pipe would be waited for
        return {};
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        return {};
    // Asked first: once the size was read, an icon file does not tell its format any more.
    const bool iconFile = reader.format() == "ico" || reader.format() == "cur";
    if (std::max(reader.size().width(), reader.size().height()) > LargestSource)
        return {};
    const QImage image = iconFile ? IconFileFrame(reader) : WithoutMaskColour(reader.read());
    if (image.isNull())
        return {};
    QIcon icon;
    for (const int scale : Scales) {
        QPixmap pixmap = QPixmap::fromImage(Scaled(image, PresetImageSide * scale));
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon ButtonIcon(const PresetButton &button)
{
    QIcon icon;
    if (button.image.form == PresetImage::Form::BuiltIn)
        icon = Icons::LoadImage(button.image.number);
    else if (button.image.form == PresetImage::Form::File)
        icon = FileImage(button.image.file);
    if (icon.isNull() && button.image.form != PresetImage::Form::BuiltIn)
        icon = SmallFileIcon(button.command);
    return icon.isNull() ? Icons::Load(u"preset"_s) : icon;
}

IconView::IconView(QWidget *parent, int side) : QFrame(parent), m_side(side)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconView::SetIcon(const QIcon &icon)
{
    m_icon = icon;
    update();
}

void IconView::SetHighlighted(bool highlighted)
{
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(BorderWidth);
    m_highlighted = highlighted;
    update();
}

QSize IconView::sizeHint() const
{
    const int side = m_side + 2 * (frameWidth() + ViewMargin);
    return {side, side};
}

void IconView::paintEvent(QPaintEvent *event)
{
    if (frameShape() != QFrame::Box)
        QFrame::paintEvent(event);
    QPainter painter(this);
    if (m_highlighted)
        qDrawPlainRect(&painter, rect(), palette().color(QPalette::Highlight), BorderWidth);
    QRect area(0, 0, m_side, m_side);
    area.moveCenter(rect().center());
    m_icon.paint(&painter, area, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

} // namespace zelvane
