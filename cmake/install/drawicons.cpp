// SPDX-License-Identifier: GPL-3.0-or-later
// drawicons DRAWING.svg FOLDER SIDE...: draws the icon in each of these sizes, FOLDER/SIDE.png.
#include <cstdio>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

int main(int argc, char **argv)
{
    if (argc < 4)
        return 2;
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    if (!drawing.isValid() || !folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot read %s or make %s\n", argv[1], argv[2]);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const QString side = QString::fromLocal8Bit(argv[i]);
        QImage image(side.toInt(), side.toInt(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter);
        painter.end();
        if (!image.save(folder.filePath(side + QStringLiteral(".png")))) {
            std::fprintf(stderr, "cannot write the icon of %s pixels\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
