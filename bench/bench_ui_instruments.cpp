// SPDX-License-Identifier: GPL-3.0-or-later

// The Instrument Properties dialog over two thousand instruments of twenty p-fields: until it is on the
// screen, and what a click, a new p-field and OK take.

#include "instruments/ui/frminstredit.h"
#include "windowbench.h"

#include <algorithm>
#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QByteArray>
#include <QFile>
#include <QPushButton>
#include <QString>
#include <QTreeView>
#include <QWidget>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Count = 2000;
constexpr int FieldCount = 20;
constexpr int Runs = 5;
constexpr int Clicks = 50;

QByteArray Store()
{
    QByteArray store = "<instruments>\n";
    for (int number = 1; number <= Count; ++number) {
        store += "<instr number=\"" + QByteArray::number(number) + "\" name=\"Instrument\">\n";
        for (int p = 1; p <= FieldCount; ++p)
            store += "<p number=\"" + QByteArray::number(p) + "\" name=\"Parameter " + QByteArray::number(p) +
                     "\" group=\"Tone\" format=\"0\" min=\"0\" max=\"1\" variable=\"ifreq\"/>\n";
        store += "</instr>\n";
    }
    return store + "</instruments>\n";
}

/// What has been asked for is done and painted.
void Paint(QWidget &widget)
{
    QApplication::processEvents();
    widget.repaint();
}

} // namespace

int main(int argc, char **argv)
{
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    const QString name = program.folder.filePath(u"song.csd"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(name));
    file.write("<CsoundSynthesizer>\n</CsoundSynthesizer>\n<Zelvane>\n" + Store() + "</Zelvane>\n");
    file.close();
    program.window->Documents().OpenFile(name);

    const auto show = [&](frmInstrEdit &dialog) {
        dialog.show();
        Paint(dialog);
    };
    const double opened = MedianMs(Runs, [&] {
        return Seconds([&] {
            frmInstrEdit dialog(program.window->Context(), program.window.get());
            show(dialog);
        });
    });
    frmInstrEdit dialog(program.window->Context(), program.window.get());
    show(dialog);
    auto &tree = *dialog.findChild<QTreeView *>(u"tvwInstrEdit"_s);
    if (tree.model()->rowCount() != Count)
        qFatal("the dialog has not read the store");
    double longest = 0;
    for (int click = 0; click < Clicks; ++click)
        longest = std::max(longest, Seconds([&] {
                               const int row = click * 7919 % Count;
                               tree.setCurrentIndex(
                                   tree.model()->index(click % FieldCount, 0, tree.model()->index(row, 0)));
                               Paint(dialog);
                           }));
    auto &newField = *dialog.findChild<QAction *>(u"tlbInstrEdit_label"_s);
    const double added = MedianMs(Runs, [&] {
        return Seconds([&] {
            newField.trigger();
            Paint(dialog);
        });
    });
    const double stored = Seconds([&] { dialog.findChild<QPushButton *>(u"bOK"_s)->click(); }) * 1000;
    Goal("2,000 instruments of 20 p-fields: shown, s", opened / 1000, 1);
    Goal("2,000 instruments of 20 p-fields: the longest click, s", longest, .1);
    Goal("2,000 instruments of 20 p-fields: a new p-field, s", added / 1000, .1);
    Goal("2,000 instruments of 20 p-fields: OK, s", stored / 1000, 1);
    return 0;
}
