// SPDX-License-Identifier: GPL-3.0-or-later

// The search for related files in a folder of ten thousand, beside a plain pass over the folder and a plain
// reading of the files that have to be read; and the tree that shows them.

#include "language/relatedfiles.h"
#include "platform/textfile.h"
#include "shell/command.h"
#include "shell/ui/commands.h"
#include "uibench.h"
#include "windowbench.h"

#include <cstdio>
#include <QApplication>
#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTreeView>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Files = 10'000;
constexpr int Includes = 200;
constexpr int Runs = 9;

/// A piece with many includes, in a folder of many files.
struct Piece {
    QTemporaryDir folder;
    QString name;
    QStringList read; ///< the files that the search has to read

    /// @param others the names of the other files in the folder
    explicit Piece(const QString &others)
    {
        for (int i = 0; i < Files; ++i)
            Write(others.arg(i), {});
        QByteArray text = Orchestra(20'000);
        for (int i = 0; i < Includes; ++i) {
            const QString included = u"part%1.orc"_s.arg(i);
            text += "#include \"" + included.toUtf8() + "\"\n";
            read += Write(included, Orchestra(5'000));
        }
        name = Write(u"song.orc"_s, text);
        read += name;
    }

private:
    QString Write(const QString &file, const QByteArray &bytes)
    {
        QFile written(folder.filePath(file));
        if (!written.open(QIODevice::WriteOnly) || written.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(written.fileName()));
        return written.fileName();
    }
};

double ListSeconds(const QString &folder)
{
    return Seconds([&] {
        qsizetype length = 0;
        QDirIterator walk(folder, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
        while (walk.hasNext()) {
            walk.next();
            length += walk.fileName().size();
        }
        if (length == 0)
            qFatal("nothing listed");
    });
}

double ReadSeconds(const QStringList &files)
{
    return Seconds([&] {
        for (const QString &file : files)
            ReadTextFile(file);
    });
}

void Measure(Program &program, const char *what, const Piece &piece)
{
    qsizetype found = 0;
    const double searched = MedianMs(Runs, [&] {
        return Seconds([&] { found = SearchRelated(piece.name, program.settings, program.desktop).Count(); });
    });
    const double listed = MedianMs(Runs, [&] { return ListSeconds(piece.folder.path()); });
    const double read = MedianMs(Runs, [&] { return ReadSeconds(piece.read); });
    std::printf("%s: %d files found in %.1f ms; folder listed %.1f ms, %d files read %.1f ms\n", what,
                int(found), searched, listed, int(piece.read.size()), read);
    Goal("search / list and read", searched / (listed + read), 3);

    auto *tree = program.window->findChild<QTreeView *>(u"tvwRelated"_s);
    program.window->Documents().OpenFile(piece.name);
    const double with = MedianMs(Runs, [&] {
        return Seconds([&] {
            program.window->Documents().OpenFile(piece.name);
            tree->repaint();
        });
    });
    program.window->CommandTable().Run(Cmd::mnuRelated);
    const double without =
        MedianMs(Runs, [&] { return Seconds([&] { program.window->Documents().OpenFile(piece.name); }); });
    program.window->CommandTable().Run(Cmd::mnuRelated);
    std::printf("%s: OpenFile with the tree %.1f ms, without %.1f ms\n", what, with, without);
    Goal("what the tree adds / search", (with - without) / searched, 2);
}

} // namespace

int main(int argc, char **argv)
{
    UseFreshMemory();
    const OwnHome home;
    QApplication application(argc, argv);
    Program program;
    Measure(program, "other names", Piece(u"take%1.wav"_s));
    Measure(program, "names alike", Piece(u"song%1.wav"_s));
    return 0;
}
