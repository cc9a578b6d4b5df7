// SPDX-License-Identifier: GPL-3.0-or-later
#include "window/ui/filedrops.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QEvent>
#include <QList>
#include <QMetaObject>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace zelvane
{

namespace
{

QStringList LocalFiles(const QMimeData &data)
{
    QStringList files;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}

/// A source deletes what was moved. One that offers nothing else is told that the drop was taken, and that
/// there is nothing left for it to do.
void AcceptAsCopy(QDropEvent &drop)
{
    if (drop.possibleActions() & Qt::CopyAction)
        drop.setDropAction(Qt::CopyAction);
    else if (drop.possibleActions() & Qt::LinkAction)
        drop.setDropAction(Qt::LinkAction);
    else
        drop.setDropAction(Qt::IgnoreAction);
    drop.accept();
}

} // namespace

FileDrops::FileDrops(QWidget *window, std::function<void(const QStringList &)> open)
    : QObject(window), m_window(window), m_open(std::move(open))
{
    m_window->setAcceptDrops(true);
    QCoreApplication::instance()->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    const auto *control = qobject_cast<QWidget *>(watched);
    auto &drop = *static_cast<QDropEvent *>(event);
    const QStringList files = LocalFiles(*drop.mimeData());
    if (!control || control->window() != m_window || files.isEmpty())
        return QObject::eventFilter(watched, event);
    AcceptAsCopy(drop);
    // The program that the files come from is not to wait for the user's answers.
    if (type == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, files] { m_open(files); }, Qt::QueuedConnection);
    return true;
}

} // namespace zelvane
