// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QObject>
#include <QStringList>

class QWidget;

namespace zelvane
{

/// Takes the files that are dropped anywhere on a window, also on controls that would take their names for
/// text. The source keeps its files, whatever it proposes.
class FileDrops : public QObject
{
    Q_OBJECT

public:
    /// @param window becomes the parent
    /// @param open gets the paths, in their order, when the source has let go of them
    FileDrops(QWidget *window, std::function<void(const QStringList &files)> open);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    std::function<void(const QStringList &)> m_open;
};

} // namespace zelvane
