// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/ui/hinttip.h"

#include <algorithm>
#include <QAccessible>
#include <QAccessibleEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>
#include <QToolTip>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

HintTip::HintTip(QWidget *window) : QLabel(window)
{
    setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    setObjectName(u"lblArgumentHint"_s);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setTextFormat(Qt::RichText);
    setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
    setAutoFillBackground(true);
    setForegroundRole(QPalette::ToolTipText);
    setBackgroundRole(QPalette::ToolTipBase);
}

void HintTip::ShowAt(const QString &rich, const QString &plain, const QRect &place)
{
    setPalette(QToolTip::palette());
    setFont(QToolTip::font());
    setMargin(QFontMetrics(font()).averageCharWidth() / 2);
    setText(rich);
    setAccessibleName(plain);

    const QScreen *screen = QGuiApplication::screenAt(place.topLeft());
    const QRect room = (screen ? screen : parentWidget()->screen())->availableGeometry();
    setWordWrap(false);
    QSize size = QLabel::sizeHint();
    if (const int widest = room.width() * 2 / 3; size.width() > widest) {
        setWordWrap(true);
        size = {widest, heightForWidth(widest)};
    }
    const int left =
        std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - size.width()));
    const int above = place.top() - size.height();
    setGeometry(QRect(QPoint(left, above >= room.top() ? above : place.bottom() + 1), size));
    show();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace zelvane
