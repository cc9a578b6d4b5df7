// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QSlider>

namespace zelvane
{

/// `SliderTime`: a place in the sound, milliseconds. The mouse takes it to where it is pressed and drags it,
/// with the time in a tip; the keys and the wheel move it by parts of its length.
class TimeSlider : public QSlider
{
    Q_OBJECT

public:
    explicit TimeSlider(QWidget *parent = nullptr);

    /// The end of the slider, and so its steps. @param length milliseconds
    void SetLength(int length);

Q_SIGNALS:
    /// The user has it: nothing else may move it.
    void Taken();
    /// The user lets it go where the sound is to go on.
    void Released(int value);
    /// The user lets it go where it was.
    void Kept();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void TakeByKey();
    /// The key that moved it is up.
    void LetKeyGo();
    /// Puts the handle under the pointer.
    void MoveTo(const QPoint &place);
    void ShowTip();

    bool m_dragged = false;
    std::optional<int> m_noted; ///< the value when a key went down
};

} // namespace zelvane
