// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace zelvane
{

/// Lets Shift+F10 do what the menu key does, in all windows: the toolkit knows only that key on this desktop,
/// and many keyboards have none.
class ContextMenuKey : public QObject
{
    Q_OBJECT

public:
    explicit ContextMenuKey(QObject *application);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace zelvane
