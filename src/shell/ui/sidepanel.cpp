// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/sidepanel.h"

#include <algorithm>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStringView>
#include <QStyle>
#include <QStyleOption>

namespace zelvane
{

namespace
{

constexpr int LeastControlHeight = 24;

} // namespace

SidePanel::SidePanel(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    for (const BandEntry<PanelBand> &entry : PanelBandTable)
        m_bands.emplace_back().caption = QStringView(entry.caption).toString();
}

void SidePanel::AddBand(PanelBand band, QWidget *control)
{
    control->setParent(this);
    control->hide();
    At(band).control = control;
}

int SidePanel::BandHeight(PanelBand band) const
{
    const Band &one = At(band);
    if (one.height >= 0)
        return one.height;
    // A band that has the panel to itself leaves the others their share when they come back.
    const bool alone = one.place.height() == height();
    return one.place.isEmpty() || alone ? height() / int(m_bands.size()) : one.place.height();
}

void SidePanel::SetBandHeight(PanelBand band, int height)
{
    At(band).height = height;
    Arrange();
}

void SidePanel::SetBandVisible(PanelBand band, bool visible)
{
    At(band).visible = visible;
    At(band).control->setVisible(visible);
    Arrange();
    Q_EMIT BandShown(band, visible);
}

bool SidePanel::IsAnyBandVisible() const
{
    return std::any_of(m_bands.begin(), m_bands.end(), [](const Band &band) { return band.visible; });
}

void SidePanel::ShowCaptions(bool shown)
{
    m_captions = shown;
    Arrange();
}

QRect SidePanel::HeaderOf(PanelBand band) const
{
    const QRect place = At(band).place;
    return place.isEmpty() ? QRect()
                           : QRect(place.topLeft(), QSize(place.width(), HeaderHeight(place.top())));
}

QSize SidePanel::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 32, 300};
}

int SidePanel::HeaderHeight(int top) const
{
    if (m_captions)
        return fontMetrics().height() + 6;
    return top > 0 ? 7 : 0; // a grip for the mouse, which the first band does not need
}

void SidePanel::Arrange()
{
    std::vector<Band *> shown;
    for (Band &band : m_bands) {
        band.place = {};
        if (band.visible)
            shown.push_back(&band);
    }
    int top = 0;
    for (size_t k = 0; k < shown.size(); ++k) {
        Band &band = *shown[k];
        const int behind = int(shown.size() - k) - 1;
        const int header = HeaderHeight(top);
        const int least = header + LeastControlHeight;
        const int leastBehind = behind * (HeaderHeight(top + least) + LeastControlHeight);
        const int most = std::max(least, height() - top - leastBehind);
        const int share = (height() - top) / (behind + 1);
        const int extent =
            behind == 0 ? most : std::clamp(band.height < 0 ? share : band.height, least, most);
        band.place = QRect(0, top, width(), extent);
        band.control->setGeometry(0, top + header, width(), extent - header);
        top += extent;
    }
    update();
}

bool SidePanel::event(QEvent *event)
{
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        Arrange();
    return QWidget::event(event);
}

void SidePanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Arrange();
}

void SidePanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    for (const PanelBand band : AllBands<PanelBand>()) {
        const QRect header = HeaderOf(band);
        if (header.isEmpty())
            continue;
        if (m_captions) {
            painter.setPen(palette().color(QPalette::WindowText));
            QFont bold = font();
            bold.setBold(true);
            painter.setFont(bold);
            painter.drawText(header.adjusted(6, 0, -4, 0), Qt::AlignVCenter | Qt::AlignLeft,
                             At(band).caption);
        } else if (header.top() > 0) {
            QColor dots = palette().color(QPalette::WindowText);
            dots.setAlphaF(0.35F);
            for (int k = -2; k <= 2; ++k)
                painter.fillRect(QRect(header.center().x() + k * 5, header.center().y(), 2, 2), dots);
        }
    }
}

std::optional<PanelBand> SidePanel::DraggableAt(const QPoint &point) const
{
    for (const PanelBand band : AllBands<PanelBand>()) {
        const QRect header = HeaderOf(band);
        if (header.top() > 0 && header.contains(point))
            return band;
    }
    return {};
}

void SidePanel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_dragged = DraggableAt(event->position().toPoint());
    if (m_dragged)
        m_dragOffset = event->position().toPoint().y() - HeaderOf(*m_dragged).top();
}

void SidePanel::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    if (!m_dragged || !(event->buttons() & Qt::LeftButton)) {
        setCursor(DraggableAt(point) ? Qt::SizeVerCursor : Qt::ArrowCursor);
        return;
    }
    std::optional<PanelBand> above;
    for (const PanelBand band : AllBands<PanelBand>()) {
        if (band == *m_dragged)
            break;
        if (IsBandVisible(band))
            above = band;
    }
    if (above)
        SetBandHeight(*above, std::max(0, point.y() - m_dragOffset - PlaceOf(*above).top()));
}

void SidePanel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragged.reset();
}

} // namespace zelvane
