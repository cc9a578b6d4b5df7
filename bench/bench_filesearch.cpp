// SPDX-License-Identifier: GPL-3.0-or-later

// A search in 5,000 pieces, the examples of Csound's manual copied, beside `grep -r` on the same folder and a
// plain reading of the files; and regular expressions in one large text.

#include "platform/textfile.h"
#include "shell/findpattern.h"
#include "shell/findtext.h"
#include "uibench.h"
#include "writing/filesearch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <vector>

using namespace zelvane;
using namespace zelvane::bench;
using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Pieces = 5'000;
constexpr int Runs = 5;

/// Of the clock on the wall: the disk, and another program, count.
template <typename Work> double WallMs(Work work)
{
    std::vector<double> runs;
    for (int run = 0; run < Runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const auto end = std::chrono::steady_clock::now();
        runs.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    std::nth_element(runs.begin(), runs.begin() + Runs / 2, runs.end());
    return runs[Runs / 2];
}

struct Silent : FileSearchListener {
    bool Stopped() override { return false; }
    void Found(FoundLine) override {}
    void Counted(const SearchCounts &) override {}
};

/// Examples of the manual where it is installed, else pieces that look like them.
QStringList Fill(const QString &folder)
{
    const QDir examples(u"/usr/share/doc/csound-doc/html/examples"_s);
    const QStringList names = examples.entryList({u"*.csd"_s}, QDir::Files, QDir::Name);
    QStringList made;
    for (int i = 0; i < Pieces; ++i) {
        const QString below = folder + u"/%1"_s.arg(i / 500);
        QDir().mkpath(below);
        const QString name = below + u"/piece%1.csd"_s.arg(i);
        if (names.isEmpty()) {
            QFile file(name);
            if (!file.open(QIODevice::WriteOnly))
                qFatal("cannot write %s", qPrintable(name));
            file.write(Orchestra(2'500));
        } else if (!QFile::copy(examples.filePath(names[i % names.size()]), name)) {
            qFatal("cannot copy to %s", qPrintable(name));
        }
        made.append(name);
    }
    return made;
}

double Grep(const QString &folder, const QStringList &options, const QString &text)
{
    return WallMs([&] {
        QProcess grep;
        grep.setStandardOutputFile(QProcess::nullDevice());
        grep.start(u"grep"_s, QStringList{u"-rn"_s} + options + QStringList{u"-e"_s, text, folder});
        grep.waitForFinished(-1);
    });
}

void InFiles()
{
    const QTemporaryDir folder;
    const QStringList files = Fill(folder.path());
    qint64 bytes = 0;
    for (const QString &file : files)
        bytes += QFileInfo(file).size();
    const double read = WallMs([&] {
        for (const QString &file : files)
            ReadTextFile(file);
    });
    std::printf("%d files, %.1f MB; read and decoded in %.0f ms\n", Pieces, double(bytes) / 1e6, read);
    const struct {
        const char *what;
        QString text;
        FindOptions options;
        QStringList grep;
    } rows[] = {
        {"oscil", u"oscil"_s, FindMatchCase, {u"-F"_s}},
        {"oscil, any case", u"oscil"_s, FindAnywhere, {u"-Fi"_s}},
        {"oscil, a word", u"oscil"_s, FindMatchCase | FindWholeWord, {u"-Fw"_s}},
        {"what is nowhere", u"zyxwvut"_s, FindMatchCase, {u"-F"_s}},
        {"expression",
         u"^\\s*a\\w+\\s+(oscil|vco2?)i?\\s"_s,
         FindMatchCase | FindRegularExpression,
         {u"-P"_s}},
    };
    for (const auto &row : rows) {
        SearchCounts counts;
        const FileSearch search{
            .text = row.text, .options = row.options, .folder = folder.path(), .patterns = {u"*.csd"_s}};
        const double searched = WallMs([&] {
            Silent listener;
            counts = SearchFiles(search, listener);
        });
        const double grep = Grep(folder.path(), row.grep, row.text);
        std::printf("%s: %d lines in %d of %d files in %.0f ms; grep %.0f ms\n", row.what, int(counts.lines),
                    counts.files, counts.searched, searched, grep);
        Goal("search / grep", searched / grep, 4);
        Goal("seconds", searched / 1000, 2);
    }
}

void InOneText()
{
    const QString text = QString::fromUtf8(Orchestra(10'000'000));
    const double plain = WallMs([&] { FindText(text, u"zyxwvut", 0, -1, FindMatchCase); });
    std::printf("10 MB: a text that is nowhere %.1f ms\n", plain);
    for (const QString &expression : {u"zyxwvut"_s, u"^\\s*zyx\\w+"_s, u"(\\w+)\\s+zyx"_s, u"oscil$"_s}) {
        const double searched = WallMs([&] {
            PatternSearch search(FindPattern(expression, FindMatchCase), text);
            search.Next(0);
        });
        std::printf("10 MB: expression %s %.1f ms\n", qPrintable(expression), searched);
    }
    qsizetype hits = 0;
    const double replaced = WallMs([&] {
        PatternSearch search(FindPattern(u"(\\w+) oscil "_s, FindMatchCase), text);
        hits = qsizetype(PatternReplacements(search, u"\\1 poscil ", 0).size());
    });
    std::printf("10 MB: %d replacements worked out in %.1f ms\n", int(hits), replaced);
}

} // namespace

int main()
{
    InFiles();
    InOneText();
    return 0;
}
