// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/bandbar.h"

#include <algorithm>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace zelvane
{

namespace
{

constexpr int RowGap = 1;     ///< the line between two rows
constexpr int BandMargin = 2; ///< above and below a control
constexpr int CaptionGap = 5; ///< on both sides of a caption

/// The names of the bands, which are their captions, in the order of WindowBand.
constexpr const char16_t *BandKeys[] = {u"toolbar", u"opcodes", u"player", u"presets"};

} // namespace

BandBar::BandBar(QWidget *parent) : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setMouseTracking(true);
    for (const char16_t *key : BandKeys)
        m_bands.emplace_back().key = QString::fromUtf16(key);
}

void BandBar::AddBand(WindowBand band, QWidget *control)
{
    control->setParent(this);
    control->show();
    m_bands[size_t(band)].control = control;
    Changed();
}

int BandBar::BandWidth(int band) const
{
    const int width = m_bands[size_t(band)].width;
    return width < 0 ? NaturalBandWidth(band) : width;
}

void BandBar::SetBandWidth(int band, int width)
{
    m_bands[size_t(band)].width = width;
    Changed();
}

int BandBar::NaturalBandWidth(int band) const
{
    const Band &one = m_bands[size_t(band)];
    return one.control ? HeaderWidth(one) + one.control->sizeHint().width() + BandMargin : 0;
}

void BandBar::FitBand(WindowBand band)
{
    if (IsBandVisible(band))
        SetBandWidth(int(band), NaturalBandWidth(int(band)));
}

void BandBar::SetStartsRow(int band, bool startsRow)
{
    m_bands[size_t(band)].startsRow = startsRow;
    Changed();
}

void BandBar::SetBandVisible(int band, bool visible)
{
    Band &one = m_bands[size_t(band)];
    one.visible = visible;
    if (one.control)
        one.control->setVisible(visible);
    Changed();
    Q_EMIT BandShown(WindowBand(band), visible);
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

QString BandBar::BandCaption(int band) const
{
    return m_captions ? m_bands[size_t(band)].key : QString();
}

QRect BandBar::GripOf(int band) const
{
    const QRect place = PlaceOf(band);
    if (place.isEmpty())
        return {};
    return QRect(place.topLeft(), QSize(HeaderWidth(m_bands[size_t(band)]), place.height()));
}

int BandBar::GripWidth() const
{
    return style()->pixelMetric(QStyle::PM_ToolBarHandleExtent, nullptr, this) + 2;
}

int BandBar::HeaderWidth(const Band &band) const
{
    if (!m_captions)
        return GripWidth();
    return GripWidth() + fontMetrics().horizontalAdvance(band.key) + 2 * CaptionGap;
}

int BandBar::MinimumBandWidth(const Band &band) const
{
    return HeaderWidth(band) + band.control->minimumSizeHint().width() + BandMargin;
}

std::vector<BandBar::Row> BandBar::Rows(int width) const
{
    std::vector<Row> rows;
    int least = 0;
    for (int i = 0; i < BandCount(); ++i) {
        const Band &band = m_bands[size_t(i)];
        if (!band.IsShown())
            continue;
        const int minimum = MinimumBandWidth(band);
        if (rows.empty() || band.startsRow || least + minimum > width) {
            rows.emplace_back();
            least = 0;
        }
        least += minimum;
        rows.back().bands.push_back(i);
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
        for (const int i : row.bands)
            reserved += MinimumBandWidth(m_bands[size_t(i)]);
        for (const int i : row.bands) {
            Band &band = m_bands[size_t(i)];
            const int minimum = MinimumBandWidth(band);
            reserved -= minimum;
            const int most = std::max(minimum, width() - left - reserved);
            const int extent = i == row.bands.back() ? most : std::clamp(BandWidth(i), minimum, most);
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
    for (int i = 0; i < BandCount(); ++i) {
        const Band &band = m_bands[size_t(i)];
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
        if (const QString caption = BandCaption(i); !caption.isEmpty()) {
            const QRect text = GripOf(i).adjusted(GripWidth(), 0, 0, 0);
            painter.setPen(palette().color(QPalette::WindowText));
            painter.drawText(text, Qt::AlignCenter, caption);
        }
    }
}

int BandBar::GripAt(const QPoint &point) const
{
    for (int i = 0; i < BandCount(); ++i) {
        if (GripOf(i).contains(point))
            return i;
    }
    return -1;
}

void BandBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_dragged = GripAt(event->position().toPoint());
    if (m_dragged >= 0)
        m_dragOffset = event->position().toPoint().x() - PlaceOf(m_dragged).left();
}

void BandBar::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    if (m_dragged < 0 || !(event->buttons() & Qt::LeftButton)) {
        setCursor(GripAt(point) >= 0 ? Qt::SizeAllCursor : Qt::ArrowCursor);
        return;
    }
    const QRect place = PlaceOf(m_dragged);
    int previous = m_dragged - 1;
    while (previous >= 0 && !IsBandVisible(previous))
        --previous;
    if (previous < 0)
        return;
    const bool firstOfRow = place.left() == 0;
    const int wanted = point.x() - m_dragOffset;
    if (firstOfRow && point.y() < place.top()) {
        const int left = PlaceOf(previous).left();
        m_bands[size_t(m_dragged)].startsRow = false;
        m_bands[size_t(previous)].width = std::max(0, wanted - left);
        Changed();
    } else if (!firstOfRow && point.y() > place.bottom()) {
        SetStartsRow(m_dragged, true);
    } else if (!firstOfRow) {
        const int least = MinimumBandWidth(m_bands[size_t(previous)]);
        SetBandWidth(previous, std::max(least, wanted - PlaceOf(previous).left()));
    }
}

void BandBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_dragged = -1;
}

void BandBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    const int band = GripAt(event->position().toPoint());
    if (band >= 0)
        SetBandWidth(band, NaturalBandWidth(band));
}

} // namespace zelvane
