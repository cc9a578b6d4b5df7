// SPDX-License-Identifier: GPL-3.0-or-later

// The code outline in the real window: its tree beside a plain one of the toolkit with the same captions, and
// opening a file with it and without it.

#include "language/outline.h"
#include "sampletexts.h"
#include "shell/command.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "uibench.h"
#include "windowbench.h"

#include <cstdio>
#include <QApplication>
#include <QFile>
#include <QString>
#include <QTreeView>
#include <QTreeWidget>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Instruments = 10'000;
constexpr int Labels = 5;
constexpr int Runs = 9;
constexpr qsizetype LargeSize = 10'000'000;

QString InstrumentCaption(int instrument)
{
    return u"%1 ; a voice"_s.arg(instrument);
}
QString LabelCaption(int label)
{
    return u"label%1:"_s.arg(label);
}

/// Writes an orchestra that has these instruments and labels.
QString WritePiece(const Program &program)
{
    const QString name = program.folder.filePath(u"labels.orc"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(name));
    for (int i = 0; i < Instruments; ++i) {
        file.write("instr " + InstrumentCaption(i).toUtf8() + '\n');
        for (int label = 0; label < Labels; ++label)
            file.write(LabelCaption(label).toUtf8() + " a1 = 1\n");
        file.write("endin\n");
    }
    return name;
}

double PlainTreeSeconds()
{
    QTreeWidget tree;
    tree.setHeaderHidden(true);
    tree.resize(200, 400);
    tree.show();
    QApplication::processEvents();
    return Seconds([&] {
        auto *root = new QTreeWidgetItem(&tree, {u"Instruments"_s});
        for (int i = 0; i < Instruments; ++i) {
            auto *instrument = new QTreeWidgetItem(root, {InstrumentCaption(i)});
            for (int label = 0; label < Labels; ++label)
                new QTreeWidgetItem(instrument, {LabelCaption(label)});
        }
        tree.expandAll();
        tree.repaint();
    });
}

QString WriteScore(const Program &program)
{
    const QString name = program.folder.filePath(u"large.sco"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(name));
    file.write(ScoreText(LargeSize).toLatin1());
    return name;
}

/// The outline of a file of 10 MB, scan and tree apart, and opening it with the outline and without.
void MeasureLarge(Program &program, QTreeView &tree, const char *what, const QString &name)
{
    Commands &commands = program.window->CommandTable();
    const auto open = [&] { return Seconds([&] { program.window->Documents().OpenFile(name); }); };
    open();
    const double with = MedianMs(Runs, open);
    const QString text = program.window->Context().text.Text();
    const FileKind kind = program.window->Context().document.DocumentKind;
    qsizetype nodes = 0;
    const double scanned =
        MedianMs(Runs, [&] { return Seconds([&] { nodes = ScanOutline(text, kind).Count(); }); });
    const double built = MedianMs(Runs, [&] {
        return Seconds([&] {
            commands.Run(Cmd::mnuTV[TreeEntry::Refresh]);
            tree.repaint();
        });
    });
    commands.Run(Cmd::mnuBrowse);
    const double without = MedianMs(Runs, open);
    commands.Run(Cmd::mnuBrowse);
    std::printf("10 MB %s: %lld nodes scanned in %.1f ms, scanned and shown in %.1f ms; opened with the "
                "outline in %.1f ms, without in %.1f ms\n",
                what, qlonglong(nodes), scanned, built, with, without);
    Goal("OpenFile with / without the outline", with / without, 2);
}

} // namespace

int main(int argc, char **argv)
{
    UseFreshMemory();
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    Commands &commands = program.window->CommandTable();
    auto *tree = program.window->findChild<QTreeView *>(u"tvwBrowse"_s);

    program.window->Documents().OpenFile(WritePiece(program));
    const double built = MedianMs(Runs, [&] {
        return Seconds([&] {
            commands.Run(Cmd::mnuTV[TreeEntry::Refresh]);
            tree->repaint();
        });
    });
    const double opened = MedianMs(Runs, [&] {
        return Seconds([&] {
            commands.Run(Cmd::mnuTV[TreeEntry::Refresh]);
            commands.Run(Cmd::mnuTV[TreeEntry::ExpandAll]);
            tree->repaint();
        });
    });
    const double plain = MedianMs(Runs, PlainTreeSeconds);
    std::printf(
        "outline of %d instruments with %d labels: scanned and shown %.1f ms, all open %.1f ms, plain "
        "tree %.1f ms\n",
        Instruments, Labels, built, opened, plain);
    Goal("all open / plain tree", opened / plain, 2);

    MeasureLarge(program, *tree, "orchestra", program.File(LargeSize));
    MeasureLarge(program, *tree, "score", WriteScore(program));
    return 0;
}
