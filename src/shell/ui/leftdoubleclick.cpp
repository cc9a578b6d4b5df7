// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/leftdoubleclick.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QMouseEvent>
#include <QObject>

namespace zelvane
{

namespace
{

class LeftDoubleClick : public QObject
{
public:
    explicit LeftDoubleClick(QAbstractItemView &view) : QObject(&view)
    {
        view.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return (event->type() == QEvent::MouseButtonDblClick &&
                static_cast<QMouseEvent *>(event)->button() != Qt::LeftButton) ||
               QObject::eventFilter(watched, event);
    }
};

} // namespace

void OnlyLeftDoubleClicks(QAbstractItemView &view)
{
    new LeftDoubleClick(view);
}

} // namespace zelvane
