// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/bands.h"

#include <optional>
#include <QRect>
#include <QString>
#include <QWidget>
#include <vector>

namespace zelvane
{

/// The panel left of the text: bands one above the other, each a header and a control. The header of a band
/// below another is dragged to share out the height; the last visible band takes what is left.
/// Pixels.
class SidePanel : public QWidget
{
    Q_OBJECT

public:
    explicit SidePanel(QWidget *parent = nullptr);

    /// Puts the control of a band into its place. Bands are hidden until they are shown.
    void AddBand(PanelBand band, QWidget *control);
    /// The control of a band; null before its room has come.
    QWidget *Control(PanelBand band) const { return At(band).control; }

    /// The height that the user or the program gave the band, the one it has before that. The last band is
    /// drawn as high as the panel lets it.
    int BandHeight(PanelBand band) const;
    void SetBandHeight(PanelBand band, int height);
    bool IsBandVisible(PanelBand band) const { return At(band).visible; }
    void SetBandVisible(PanelBand band, bool visible);
    bool IsAnyBandVisible() const;
    bool AreCaptionsShown() const { return m_captions; }
    void ShowCaptions(bool shown);
    /// The band's whole place, empty for a hidden band.
    QRect PlaceOf(PanelBand band) const { return At(band).place; }
    /// The band's header: its caption, or a grip. Empty for a hidden band, and for the first one without
    /// captions.
    QRect HeaderOf(PanelBand band) const;

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

    Band &At(PanelBand band) { return m_bands[BandPlace(band)]; }
    const Band &At(PanelBand band) const { return m_bands[BandPlace(band)]; }
    /// Of a band that begins at `top`.
    int HeaderHeight(int top) const;
    void Arrange();
    /// The band whose header is at the point and can be dragged.
    std::optional<PanelBand> DraggableAt(const QPoint &point) const;

    std::vector<Band> m_bands;
    bool m_captions = false;
    std::optional<PanelBand> m_dragged;
    int m_dragOffset = 0;
};

} // namespace zelvane
