// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/presetbuttons.h"

#include <QFrame>
#include <QIcon>
#include <QString>

namespace zelvane
{

/// The side of a preset's picture, in pixels of an unscaled screen.
inline constexpr int PresetImageSide = 16;

/// The first number of the built-in images, which are numbered without a gap.
inline constexpr int FirstPresetImage = 101;

/// The number behind the last built-in image.
int PresetImagesEnd();

/// What a built-in image shows, in words; empty for a number without an image.
QString PresetImageName(int number);

/// A picture file as a button shows it: an icon file as it is, any other picture without its light grey; all
/// drawn 16 by 16, sharp on every screen. Null for a file that cannot be read as a picture.
QIcon FileImage(const QString &path);

/// A built-in image, a picture file, else the desktop's icon of the command, else the default image.
QIcon ButtonIcon(const PresetButton &button);

/// Shows an icon in the middle, at a fixed size, drawn anew for the scale of the screen that it is on.
class IconView : public QFrame
{
    Q_OBJECT

public:
    explicit IconView(QWidget *parent = nullptr, int side = PresetImageSide);

    /// A null icon leaves the view empty.
    void SetIcon(const QIcon &icon);
    const QIcon &Icon() const { return m_icon; }

    /// Draws a border in the colour of a selection, or leaves its room empty. Once used, the frame is gone.
    void SetHighlighted(bool highlighted);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
    int m_side;
    bool m_highlighted = false;
};

} // namespace zelvane
