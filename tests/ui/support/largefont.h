// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QFont>

namespace zelvane::test
{

/// Makes all texts larger while it lives: the screen of the tests is a small one then.
class LargeFont
{
public:
    explicit LargeFont(double times)
    {
        QFont large = m_before;
        large.setPointSizeF(m_before.pointSizeF() * times);
        QApplication::setFont(large);
    }
    ~LargeFont() { QApplication::setFont(m_before); }
    LargeFont(const LargeFont &) = delete;
    LargeFont &operator=(const LargeFont &) = delete;

private:
    QFont m_before = QApplication::font();
};

} // namespace zelvane::test
