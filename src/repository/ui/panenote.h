// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QString>

class QWidget;

namespace zelvane
{

/// A line under a pane that is seen only while it has something to tell.
class PaneNote : public QLabel
{
    Q_OBJECT

public:
    explicit PaneNote(QWidget *parent);

    void Tell(const QString &text);
};

} // namespace zelvane
