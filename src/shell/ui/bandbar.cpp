// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/bandbar.h"

#include <algorithm>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QString>
#include <QStringView>
#include <QStyle>

namespace zelvane
{

namespace
{

constexpr int RowGap = 1;     ///< the line between two rows
constexpr int BandMargin = 2; ///< above and below a control
constexpr int CaptionGap = 5; ///< on both sides of a caption

} // namespace

BandBar::BandBar(QWidget *parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setMouseTracking(true);
    for (const BandEntry<WindowBand> &entry : WindowBandTable)
        m_bands.emplace_back().caption = QStringView(entry.caption).toString();
}

void BandBar::AddBand(WindowBand band, QWidget *control)
{
    control->setParent(this);
    control->show();
    At(band).control = control;
    Changed();
}

int BandBar::BandWidth(WindowBand band) const
{
    const int width = At(band).width;
    return width < 0 ? NaturalBandWidth(band) : width;
}

void BandBar::SetBandWidth(WindowBand band, int width)
{
    At(band).width = width;
    Changed();
}

int BandBar::NaturalBandWidth(WindowBand band) const
{
    const Band &one = At(band);
    return one.control ? HeaderWidth(one) + one.control->sizeHint().width() + BandMargin : 0;
}

void BandBar::FitBand(WindowBand band)
{
    if (IsBandVisible(band))
        SetBandWidth(band, NaturalBandWidth(band));
}

void BandBar::SetStartsRow(WindowBand band, bool startsRow)
{
    At(band).startsRow = startsRow;
    Changed();
}

void BandBar::SetBandVisible(WindowBand band, bool visible)
{
    Band &one = At(band);
    one.visible = visible;
    if (one.control)
        one.control->setVisible(visible);
    Changed();
    Q_EMIT BandShown(band, visible);
}

bool BandBar::IsAnyBandVisible() const
{
    return std::any_of(m_bands.begin(), m_bands.end(), [](const Band &band) { return band.IsShown(); });
}

void BandBar::ShowCaptions(bool shown)
{
    m_captions = shown;
    Changed();
}

QString BandBar::BandCaption(WindowBand band) const
{
    return m_captions ? At(band).caption : QString();
}

QRect BandBar::GripOf(WindowBand band) const
{
    const QRect place = PlaceOf(band);
    if (place.isEmpty())
        return {};
    return QRect(place.topLeft(), QSize(HeaderWidth(At(band)), place.height()));
}

int BandBar::GripWidth() const
{
    return style()->pixelMetric(QStyle::PM_ToolBarHandleExtent, nullptr, this) + 2;
}

int BandBar::HeaderWidth(const Band &band) const
{
    if (!m_captions)
        return GripWidth();
    return GripWidth() + fontMetrics().horizontalAdvance(band.caption) + 2 * CaptionGap;
}

int BandBar::MinimumBandWidth(const Band &band) const
{
    return HeaderWidth(band) + band.control->minimumSizeHint().width() + BandMargin;
}

std::vector<BandBar::Row> BandBar::Rows(int width) const
{
    std::vector<Row> rows;
    int least = 0;
    for (const WindowBand one : AllBands<WindowBand>()) {
        const Band &band = At(one);
        if (!band.IsShown())
            continue;
        const int minimum = MinimumBandWidth(band);
        if (rows.empty() || band.startsRow || least + minimum > width) {
            rows.emplace_back();
            least = 0;
        }
        least += minimum;
        rows.back().bands.push_back(one);
        rows.back().height = std::max(rows.back().height, band.control->sizeHint().height() + 2 * BandMargin);
    }
    return rows;
}

void BandBar::Arrange()
{
    for (Band &band : m_bands)
        band.place = {};
    int top = 0;
    for (const Row &row : Rows(width())) {
        int left = 0;
        int reserved = 0;
        for (const WindowBand one : row.bands)
            reserved += MinimumBandWidth(At(one));
        for (const WindowBand one : row.bands) {
            Band &band = At(one);
            const int minimum = MinimumBandWidth(band);
            reserved -= minimum;
            const int most = std::max(minimum, width() - left - reserved);
            const int extent = one == row.bands.back() ? most : std::clamp(BandWidth(one), minimum, most);
            band.place = QRect(left, top, extent, row.height);
            const int header = HeaderWidth(band);
            QRect inner(left + header, top + BandMargin, extent - header - BandMargin,
                        row.height - 2 * BandMargin);
            // A control that doesn't grow stands in the middle of the row and keeps its height.
            const int wanted = band.control->sizeHint().height();
            if (band.control->sizePolicy().verticalPolicy() == QSizePolicy::Fixed && wanted < inner.height())
                inner =
                    QRect(inner.left(), inner.top() + (inner.height() - wanted) / 2, inner.width(), wanted);
            band.control->setGeometry(inner);
            left += extent;
        }
        top += row.height + RowGap;
    }
    update();
}

void BandBar::Changed()
{
    Arrange();
    updateGeometry();
    const int height = heightForWidth(width());
    if (height != m_height) {
        m_height = height;
        Q_EMIT HeightChanged();
    }
}

int BandBar::heightForWidth(int width) const
{
    int height = 0;
    for (const Row &row : Rows(width))
        height += row.height + RowGap;
    return height;
}

QSize BandBar::sizeHint() const
{
    const int wide = std::max(width(), 400);
    return {wide, heightForWidth(wide)};
}

QSize BandBar::minimumSizeHint() const
{
    return {0, heightForWidth(width())};
}

bool BandBar::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::LayoutRequest:
    case QEvent::StyleChange:
    case QEvent::FontChange:
        Changed();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void BandBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Changed();
}

void BandBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.14F);
    QColor dots = line;
    dots.setAlphaF(0.4F);
    for (const WindowBand one : AllBands<WindowBand>()) {
        const Band &band = At(one);
        if (band.place.isEmpty())
            continue;
        painter.fillRect(QRect(0, band.place.bottom() + 1, width(), RowGap), line);
        if (band.place.left() > 0)
            painter.fillRect(QRect(band.place.left(), band.place.top() + 3, 1, band.place.height() - 6),
                             line);
        // Drawn here, since the styles' own grips can hardly be seen in one palette or the other.
        const int middle = band.place.center().y();
        for (int dot = -2; dot <= 2; ++dot)
            painter.fillRect(QRect(band.place.left() + GripWidth() / 2 - 1, middle + dot * 4 - 1, 2, 2),
                             dots);
        if (const QString caption = BandCaption(one); !caption.isEmpty()) {
            const QRect text = GripOf(one).adjusted(GripWidth(), 0, 0, 0);
            painter.setPen(palette().color(QPalette::WindowText));
            painter.drawText(text, Qt::AlignCenter, caption);
        }
    }
}

std::optional<WindowBand> BandBar::GripAt(const QPoint &point) const
{
    for (const WindowBand band : AllBands<WindowBand>()) {
        if (GripOf(band).contains(point))
            return band;
    }
    return {};
}

std::optional<WindowBand> BandBar::VisibleBefore(WindowBand band) const
{
    std::optional<WindowBand> before;
    for (const WindowBand one : AllBands<WindowBand>()) {
        if (one == band)
            break;
        if (IsBandVisible(one))
            before = one;
    }
    return before;
}

void BandBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_dragged = GripAt(event->position().toPoint());
    if (m_dragged)
        m_dragOffset = event->position().toPoint().x() - PlaceOf(*m_dragged).left();
}

void BandBar::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    if (!m_dragged || !(event->buttons() & Qt::LeftButton)) {
        setCursor(GripAt(point) ? Qt::SizeAllCursor : Qt::ArrowCursor);
        return;
    }
    const QRect place = PlaceOf(*m_dragged);
    const std::optional<WindowBand> previous = VisibleBefore(*m_dragged);
    if (!previous)
        return;
    const bool firstOfRow = place.left() == 0;
    const int wanted = point.x() - m_dragOffset;
    if (firstOfRow && point.y() < place.top()) {
        const int left = PlaceOf(*previous).left();
        At(*m_dragged).startsRow = false;
        At(*previous).width = std::max(0, wanted - left);
        Changed();
    } else if (!firstOfRow && point.y() > place.bottom()) {
        SetStartsRow(*m_dragged, true);
    } else if (!firstOfRow) {
        const int least = MinimumBandWidth(At(*previous));
        SetBandWidth(*previous, std::max(least, wanted - PlaceOf(*previous).left()));
    }
}

void BandBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragged.reset();
}

void BandBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (const std::optional<WindowBand> band = GripAt(event->position().toPoint()))
        SetBandWidth(*band, NaturalBandWidth(*band));
}

} // namespace zelvane
