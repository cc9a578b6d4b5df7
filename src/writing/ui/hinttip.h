// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QRect>
#include <QString>

namespace zelvane
{

/// A small window above a place of the text, or below it where there is no room above.
class HintTip : public QLabel
{
    Q_OBJECT

public:
    explicit HintTip(QWidget *window);

    /// @param rich what is shown @param plain the same for screen readers @param place on the screen
    void ShowAt(const QString &rich, const QString &plain, const QRect &place);
};

} // namespace zelvane
