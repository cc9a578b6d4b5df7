// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class QSvgRenderer;

namespace zelvane
{

/// A picture in its own size, sharp on any screen.
class SvgPicture : public QWidget
{
    Q_OBJECT

public:
    /// @param file SVG
    explicit SvgPicture(const QString &file, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSvgRenderer *m_picture;
};

} // namespace zelvane
