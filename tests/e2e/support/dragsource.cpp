// SPDX-License-Identifier: GPL-3.0-or-later
// A window to drag a file from, as a file manager's: dragsource FILE copy|move|link... It offers the actions
// named, proposes the last of them, and prints what the target has answered; a moved file it deletes.
#include <cstdio>
#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace
{

Qt::DropAction ActionOf(const QString &name)
{
    if (name == QLatin1String("move"))
        return Qt::MoveAction;
    return name == QLatin1String("link") ? Qt::LinkAction : Qt::CopyAction;
}

const char *NameOf(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction:
        return "copy";
    case Qt::MoveAction:
        return "move";
    case Qt::LinkAction:
        return "link";
    default:
        return "none";
    }
}

class Source : public QLabel
{
public:
    Source(const QString &file, const QStringList &actions) : QLabel(file), m_file(file)
    {
        for (const QString &name : actions) {
            m_proposed = ActionOf(name);
            m_offered |= m_proposed;
        }
        setWindowTitle(QStringLiteral("Drag source"));
        resize(200, 80);
        move(0, 0);
    }

protected:
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        auto *mime = new QMimeData; // taken over by the drag, which deletes itself
        mime->setUrls({QUrl::fromLocalFile(m_file)});
        mime->setText(m_file);
        auto *dragged = new QDrag(this);
        dragged->setMimeData(mime);
        const Qt::DropAction answer = dragged->exec(m_offered, m_proposed);
        if (answer == Qt::MoveAction)
            QFile::remove(m_file);
        std::puts(NameOf(answer));
        std::fflush(stdout);
    }

private:
    QString m_file;
    Qt::DropActions m_offered;
    Qt::DropAction m_proposed = Qt::CopyAction;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    Source source(arguments.value(1), arguments.mid(2));
    source.show();
    return QApplication::exec();
}
