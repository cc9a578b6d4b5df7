// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>
#include <QtGlobal>

namespace zelvane
{

/// A button that shows a colour and lets the user pick another one.
class ColourButton : public QPushButton
{
    Q_OBJECT

public:
    /// @param title of the picker
    explicit ColourButton(const QString &title, QWidget *parent = nullptr);

    /// 0xBBGGRR, or a system colour with the top bit set, which stays one until the user picks another.
    quint32 Colour() const { return m_colour; }
    void SetColour(quint32 colour);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QColor Shown() const;
    void Describe();
    void Pick();

    QString m_title;
    quint32 m_colour = 0;
};

} // namespace zelvane
