// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/bands.h"

#include <optional>
#include <QString>
#include <QWidget>
#include <vector>

namespace zelvane
{

/// A bar of bands, each a grip, an optional caption and a control. Bands stand in rows; the last band of a
/// row takes what is left of its width. Grips are dragged sideways to share out a row, up and down to join
/// bands or part them. The order of the bands is fixed, so that their widths and row breaks say all. A band
/// without a control yet takes no place. Pixels.
class BandBar : public QWidget
{
    Q_OBJECT

public:
    explicit BandBar(QWidget *parent = nullptr);

    /// Puts the control of a band into its place.
    void AddBand(WindowBand band, QWidget *control);
    /// The control of a band; null before its room has come.
    QWidget *Control(WindowBand band) const { return At(band).control; }

    /// The width that the user or the program gave the band, the control's own width before that. A band at
    /// the end of its row is drawn wider.
    int BandWidth(WindowBand band) const;
    void SetBandWidth(WindowBand band, int width);
    /// The width that shows the whole control.
    int NaturalBandWidth(WindowBand band) const;
    /// Gives a visible band that width.
    void FitBand(WindowBand band);
    bool StartsRow(WindowBand band) const { return At(band).startsRow; }
    void SetStartsRow(WindowBand band, bool startsRow);
    bool IsBandVisible(WindowBand band) const { return At(band).IsShown(); }
    void SetBandVisible(WindowBand band, bool visible);
    bool IsAnyBandVisible() const;
    bool AreCaptionsShown() const { return m_captions; }
    void ShowCaptions(bool shown);
    /// What stands beside the band's grip: its name, or nothing while captions are not shown.
    QString BandCaption(WindowBand band) const;

    /// Where the band's grip is, empty for a hidden band.
    QRect GripOf(WindowBand band) const;
    /// The band's whole place, empty for a hidden band.
    QRect PlaceOf(WindowBand band) const { return At(band).place; }

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The bar needs another height for its width.
    void HeightChanged();
    /// A band has been shown or hidden.
    void BandShown(WindowBand band, bool shown);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    struct Band {
        QString caption;
        QWidget *control = nullptr;
        int width = -1; ///< below 0: the control's own
        bool startsRow = true;
        bool visible = true;
        QRect place;

        bool IsShown() const { return visible && control; }
    };
    struct Row {
        std::vector<WindowBand> bands;
        int height = 0;
    };

    Band &At(WindowBand band) { return m_bands[BandPlace(band)]; }
    const Band &At(WindowBand band) const { return m_bands[BandPlace(band)]; }
    /// The next visible band before this one.
    std::optional<WindowBand> VisibleBefore(WindowBand band) const;
    int GripWidth() const;
    int HeaderWidth(const Band &band) const;
    int MinimumBandWidth(const Band &band) const;
    std::vector<Row> Rows(int width) const;
    /// Gives every band its place for the present width.
    void Arrange();
    void Changed();
    std::optional<WindowBand> GripAt(const QPoint &point) const;

    std::vector<Band> m_bands;
    bool m_captions = false;
    int m_height = -1;
    std::optional<WindowBand> m_dragged;
    int m_dragOffset = 0;
};

} // namespace zelvane
