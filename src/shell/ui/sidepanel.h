// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

namespace zelvane
{

/// The bands of the side panel, from above.
enum class PanelBand { Browse, Related };

/// The panel left of the text: bands one above the other, each a header and a control. The header of a band
/// below another is dragged to share out the height; the last visible band takes what is left. Bands count
/// from 0, in the order of PanelBand; pixels.
class SidePanel : public QWidget
{
    Q_OBJECT

public:
    explicit SidePanel(QWidget *parent = nullptr);

    /// Puts the control of a band into its place. Bands are hidden until they are shown.
    void AddBand(PanelBand band, QWidget *control);
    /// The control of a band; null before its room has come.
    QWidget *Control(int band) const { return m_bands[size_t(band)].control; }
    int BandCount() const { return int(m_bands.size()); }

    /// The height that the user or the program gave the band, the one it has before that. The last band is
    /// drawn as high as the panel lets it.
    int BandHeight(int band) const;
    void SetBandHeight(int band, int height);
    bool IsBandVisible(int band) const { return m_bands[size_t(band)].visible; }
    void SetBandVisible(int band, bool visible);
    void SetBandVisible(PanelBand band, bool visible) { SetBandVisible(int(band), visible); }
    bool IsAnyBandVisible() const;
    bool AreCaptionsShown() const { return m_captions; }
    void ShowCaptions(bool shown);
    /// The band's whole place, empty for a hidden band.
    QRect PlaceOf(int band) const { return m_bands[size_t(band)].place; }
    /// The band's header: its caption, or a grip. Empty for a hidden band, and for the first one without
    /// captions.
    QRect HeaderOf(int band) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    /// A band has been shown or hidden.
    void BandShown(PanelBand band, bool shown);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    struct Band {
        QString caption;
        QWidget *control = nullptr;
        int height = -1; ///< below 0: an equal share
        bool visible = false;
        QRect place;
    };

    /// Of a band that begins at `top`.
    int HeaderHeight(int top) const;
    void Arrange();
    /// The band whose header is at the point and can be dragged, -1 for none.
    int DraggableAt(const QPoint &point) const;

    std::vector<Band> m_bands;
    bool m_captions = false;
    int m_dragged = -1;
    int m_dragOffset = 0;
};

} // namespace zelvane
