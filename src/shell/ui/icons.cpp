// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/icons.h"

#include <algorithm>
#include <memory>
#include <QColor>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRectF>
#include <QSvgRenderer>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr double DisabledOpacity = 0.35;
constexpr double PlateCorner = 0.125; ///< radius, of the side

/// What the rows of a list that are not selected are drawn on.
QColor PlateColour()
{
    return QGuiApplication::palette().color(QPalette::Base);
}

void DrawPlate(QPainter &painter, const QRectF &square)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PlateColour());
    painter.drawRoundedRect(square, square.width() * PlateCorner, square.height() * PlateCorner);
}

/// Draws one SVG at whatever size is asked for.
class SvgEngine : public QIconEngine
{
public:
    explicit SvgEngine(const QString &file) : m_file(file), m_renderer(std::make_shared<QSvgRenderer>(file))
    {
    }

    bool IsValid() const { return m_renderer->isValid(); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * DisabledOpacity);
        const int side = std::min(rect.width(), rect.height());
        const QRectF square(rect.left() + (rect.width() - side) / 2, rect.top() + (rect.height() - side) / 2,
                            side, side);
        if (mode == QIcon::Selected)
            DrawPlate(*painter, square);
        m_renderer->render(painter, square);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key = u"%1 %2x%3 %4 %5"_s.arg(m_file)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(int(mode))
                                .arg(mode == QIcon::Selected ? PlateColour().name() : QString());
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        painter.end();
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal) override
    {
        return pixmap(size, mode, state);
    }

    QIconEngine *clone() const override { return new SvgEngine(*this); }
    bool isNull() override { return !IsValid(); }

private:
    QString m_file;
    std::shared_ptr<QSvgRenderer> m_renderer;
};

QIcon LoadSvg(const QString &file)
{
    if (!QFile::exists(file))
        return {};
    auto engine = std::make_unique<SvgEngine>(file);
    return engine->IsValid() ? QIcon(engine.release()) : QIcon();
}

} // namespace

QIcon Icons::Load(const QString &key)
{
    return LoadSvg(u":/zelvane/icons/%1.svg"_s.arg(key));
}

QIcon Icons::LoadImage(int number)
{
    return LoadSvg(u":/zelvane/images/%1.svg"_s.arg(number));
}

} // namespace zelvane
