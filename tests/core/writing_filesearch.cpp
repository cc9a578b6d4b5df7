// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/filesearch.h"

#include "core/oracle/patternoracle.h"
#include "shell/findtext.h"
#include "support/randomtext.h"
#include "support/testcontext.h"
#include "writing/backgroundsearch.h"

#include <chrono>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <new>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

struct Collected : FileSearchListener {
    std::vector<FoundLine> lines;
    std::vector<SearchCounts> counts;
    qsizetype stopAfter = -1; ///< lines
    int stopAt = -1;          ///< so many questions
    int asked = 0;

    bool Stopped() override
    {
        ++asked;
        return (stopAfter >= 0 && qsizetype(lines.size()) >= stopAfter) || (stopAt >= 0 && asked >= stopAt);
    }
    void Found(FoundLine line) override { lines.push_back(std::move(line)); }
    void Counted(const SearchCounts &now) override { counts.push_back(now); }
};

struct SearchInFiles : testing::Test, test::TestContext {
    QDir place;
    FileSearch search;
    Collected found;

    void SetUp() override
    {
        place = QDir(folder.path());
        ASSERT_TRUE(place.mkpath(u"pieces"_s) && place.cd(u"pieces"_s));
        search = {.text = u"oscil"_s, .folder = place.path(), .patterns = {u"*.csd"_s, u"*.orc"_s}};
    }
    QString Write(const QString &name, const QByteArray &bytes)
    {
        return WriteFile(u"pieces/"_s + name, bytes);
    }
    SearchCounts Run()
    {
        found.lines.clear();
        found.counts.clear();
        return SearchFiles(search, found);
    }
    /// "name:line:text" of all that was found.
    QStringList Rows() const
    {
        QStringList rows;
        for (const FoundLine &line : found.lines)
            rows.append(place.relativeFilePath(line.file) + u':' + QString::number(line.line) + u':' +
                        line.text);
        return rows;
    }
};

TEST_F(SearchInFiles, TellsFileLineAndText)
{
    Write(u"b.csd"_s, "instr 1\n a1 oscil 1, 2\nendin\n");
    Write(u"a.orc"_s, "oscil OSCIL\n\n  poscil");
    Write(u"c.sco"_s, "oscil");
    Write(u"D.CSD"_s, "none");
    const SearchCounts counts = Run();
    EXPECT_EQ(Rows(),
              QStringList({u"a.orc:1:oscil OSCIL"_s, u"a.orc:3:  poscil"_s, u"b.csd:2: a1 oscil 1, 2"_s}));
    EXPECT_EQ(counts, (SearchCounts{.searched = 3, .files = 2, .lines = 3}));
    ASSERT_EQ(found.counts.size(), 3U);
    EXPECT_EQ(found.counts.back(), counts);
    EXPECT_EQ(found.lines[1].hit, (TextSpan{3, 8}));
}

TEST_F(SearchInFiles, TellsWhereTheHitStands)
{
    Write(u"a.orc"_s, "x\n" + QByteArray(300, ' ') + "oscil" + QByteArray(300, 'y') + "\nend");
    search.options = FindRegularExpression;
    search.text = u"oscil[^d]*"_s;
    Run();
    ASSERT_EQ(found.lines.size(), 1U);
    EXPECT_EQ(found.lines[0].line, 2);
    EXPECT_EQ(found.lines[0].from, 200);
    EXPECT_EQ(found.lines[0].hit, (TextSpan{300, 605})) << "as far as it goes in its line";
}

TEST_F(SearchInFiles, HeedsCaseAndWords)
{
    Write(u"a.orc"_s, "oscil\nOscil\nposcil\noscil_\n");
    search.options = FindMatchCase;
    Run();
    EXPECT_EQ(Rows(), QStringList({u"a.orc:1:oscil"_s, u"a.orc:3:poscil"_s, u"a.orc:4:oscil_"_s}));
    search.options = FindWholeWord;
    Run();
    EXPECT_EQ(Rows(), QStringList({u"a.orc:1:oscil"_s, u"a.orc:2:Oscil"_s}));
}

TEST_F(SearchInFiles, NamesFitPatternsOfStarsAndQuestionMarks)
{
    for (const QString &name : {u"a[1].csd"_s, u"a1.csd"_s, u"ab.CSD"_s, u"a.b.csd"_s, u"abc"_s, u"a(.csd"_s})
        Write(name, "oscil");
    const auto names = [&](const QStringList &patterns) {
        search.patterns = patterns;
        Run();
        QStringList all;
        for (const FoundLine &line : found.lines)
            all.append(QFileInfo(line.file).fileName());
        return all;
    };
    EXPECT_EQ(names({u"a[1].csd"_s}), QStringList(u"a[1].csd"_s));
    EXPECT_EQ(names({u"a?.csd"_s}), QStringList({u"a(.csd"_s, u"a1.csd"_s, u"ab.CSD"_s}));
    EXPECT_EQ(names({u"a*b*"_s}), QStringList({u"a.b.csd"_s, u"ab.CSD"_s, u"abc"_s}));
    EXPECT_EQ(names({u"a("_s, u"[a"_s, u"abc"_s}), QStringList(u"abc"_s));
    EXPECT_EQ(names({u"*"_s}).size(), 6);
}

TEST_F(SearchInFiles, GoesIntoSubFoldersWhereAsked)
{
    ASSERT_TRUE(place.mkpath(u"x/y"_s) && place.mkpath(u"w"_s) && place.mkpath(u".hidden"_s));
    for (const QString &name :
         {u"z.csd"_s, u"x/a.csd"_s, u"x/y/b.csd"_s, u"w/c.csd"_s, u".hidden/d.csd"_s, u".e.csd"_s})
        Write(name, "oscil");
    Run();
    EXPECT_EQ(Rows(), QStringList({u"z.csd:1:oscil"_s, u"w/c.csd:1:oscil"_s, u"x/a.csd:1:oscil"_s,
                                   u"x/y/b.csd:1:oscil"_s}));
    search.subFolders = false;
    Run();
    EXPECT_EQ(Rows(), QStringList(u"z.csd:1:oscil"_s));
}

TEST_F(SearchInFiles, CirclesOfLinksEnd)
{
    ASSERT_TRUE(place.mkpath(u"x/y"_s));
    Write(u"x/y/a.csd"_s, "oscil");
    ASSERT_TRUE(QFile::link(place.path(), place.filePath(u"x/y/up"_s)));
    ASSERT_TRUE(QFile::link(place.filePath(u"x"_s), place.filePath(u"x/self"_s)));
    ASSERT_TRUE(QFile::link(u"loop.csd"_s, place.filePath(u"loop.csd"_s)));
    const SearchCounts counts = Run();
    EXPECT_EQ(counts.lines, 1);
    EXPECT_EQ(counts.unreadable, 1) << "a link to itself";
}

TEST_F(SearchInFiles, CountsWhatItPassesOver)
{
    Write(u"nul.csd"_s, QByteArray("osc\0il oscil", 12));
    Write(u"large.csd"_s, QByteArray(1001, 'x') + "oscil");
    Write(u"fits.csd"_s, QByteArray(900, 'x') + "\noscil");
    search.largestFile = 1000;
    ASSERT_EQ(::mkfifo(QFile::encodeName(place.filePath(u"pipe.csd"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, place.filePath(u"device.csd"_s)));
    ASSERT_TRUE(QFile::link(u"nowhere"_s, place.filePath(u"broken.csd"_s)));
    SearchCounts expected{
        .searched = 1, .files = 1, .lines = 1, .binary = 1, .large = 1, .unreadable = 1, .special = 2};
    if (::geteuid() != 0) { // who may read all files reads these too
        Write(u"shut.csd"_s, "oscil");
        ASSERT_TRUE(QFile::setPermissions(place.filePath(u"shut.csd"_s), {}));
        ++expected.unreadable;
    }
    EXPECT_EQ(Run(), expected);
    EXPECT_EQ(Rows(), QStringList(u"fits.csd:2:oscil"_s));
}

TEST_F(SearchInFiles, AFolderThatIsGoneIsUnreadable)
{
    search.folder = place.filePath(u"nowhere"_s);
    EXPECT_EQ(Run(), (SearchCounts{.unreadable = 1}));
}

TEST_F(SearchInFiles, ReadsTextsAsTheEditorDoes)
{
    search.text = u"t\u00f6n"_s;
    Write(u"a.csd"_s, "x\r\n\r\nT\xc3\xb6n\r\n"); // UTF-8, PC
    Write(u"b.csd"_s, "x\n\nT\xf6n\n");           // Windows-1252
    Write(u"c.csd"_s, "x\r\rt\xf6n\r");           // Mac
    Write(u"d.csd"_s, "\xef\xbb\xbft\xc3\xb6n");  // with a byte order mark
    QStringEncoder wide(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
    Write(u"e.csd"_s, wide(u"x\nT\u00f6n"_s));
    EXPECT_EQ(Run().binary, 0);
    EXPECT_EQ(Rows(), QStringList({u"a.csd:3:T\u00f6n"_s, u"b.csd:3:T\u00f6n"_s, u"c.csd:3:t\u00f6n"_s,
                                   u"d.csd:1:t\u00f6n"_s, u"e.csd:2:T\u00f6n"_s}));
}

TEST_F(SearchInFiles, TellsOfALongLineWhatIsAboutTheHit)
{
    const QByteArray before(2000, 'b'), after(2000, 'a');
    Write(u"a.csd"_s, before + "oscil" + after);
    Run();
    ASSERT_EQ(found.lines.size(), 1U);
    EXPECT_EQ(found.lines[0].text, QString(100, u'b') + u"oscil"_s + QString(395, u'a'));
}

TEST_F(SearchInFiles, EndsAtTheMostLines)
{
    Write(u"a.csd"_s, "oscil\noscil\n");
    Write(u"b.csd"_s, "oscil\noscil\n");
    search.mostLines = 3;
    const SearchCounts counts = Run();
    EXPECT_TRUE(counts.cut);
    EXPECT_EQ(Rows(), QStringList({u"a.csd:1:oscil"_s, u"a.csd:2:oscil"_s, u"b.csd:1:oscil"_s}));
}

TEST_F(SearchInFiles, TheBoundHoldsForFilesThatSayNoSize)
{
    // The system makes such a file up as it is read.
    const QString endless = u"/proc/self/maps"_s;
    if (!QFileInfo::exists(endless))
        GTEST_SKIP() << "no such file here";
    ASSERT_EQ(QFileInfo(endless).size(), 0);
    search = {.text = u"-"_s, .folder = u"/proc/self"_s, .patterns = {u"maps"_s}, .subFolders = false};
    EXPECT_EQ(Run().files, 1);
    search.largestFile = 100;
    EXPECT_EQ(Run(), (SearchCounts{.large = 1}));
}

TEST_F(SearchInFiles, StopsWhileItListsAndReads)
{
    for (int i = 0; i < 50; ++i)
        Write(u"%1.csd"_s.arg(i), "oscil");
    found.stopAt = 20;
    EXPECT_EQ(Run(), SearchCounts()) << "in the list of names";
    EXPECT_EQ(found.asked, 21);
    place.removeRecursively();
    ASSERT_TRUE(place.mkpath(u"."_s));
    Write(u"a.csd"_s, QByteArray(20'000'000, 'x'));
    Run();
    const int whole = found.asked;
    EXPECT_GT(whole, 20);
    found.asked = 0;
    found.stopAt = whole - 10;
    EXPECT_EQ(Run(), SearchCounts()) << "in the file: neither searched nor passed over";
}

TEST_F(SearchInFiles, EndsWithoutMemory)
{
    struct Poor : Collected {
        void Counted(const SearchCounts &now) override
        {
            Collected::Counted(now);
            throw std::bad_alloc();
        }
    } poor;
    Write(u"a.csd"_s, "oscil");
    Write(u"b.csd"_s, "oscil");
    EXPECT_EQ(SearchFiles(search, poor), (SearchCounts{.searched = 1, .files = 1, .lines = 1, .cut = true}));
}

TEST_F(SearchInFiles, StopsWhereAsked)
{
    for (int i = 0; i < 5; ++i)
        Write(u"%1.csd"_s.arg(i), "oscil");
    found.stopAfter = 2;
    EXPECT_EQ(Run().searched, 2);
}

TEST_F(SearchInFiles, AnExpressionStopsWithinAFile)
{
    Write(u"a.csd"_s, QByteArray(1'000'000, 'a'));
    search.options = FindRegularExpression;
    search.text = u"b"_s;
    EXPECT_EQ(Run().searched, 1);
    EXPECT_GT(found.asked, 100);
    found.asked = 0;
    found.stopAt = 10;
    EXPECT_EQ(Run(), SearchCounts()) << "neither searched nor passed over";
    EXPECT_LT(found.asked, 20);
}

TEST_F(SearchInFiles, FindsRegularExpressions)
{
    Write(u"a.csd"_s, "instr 1\n  a1 oscil 1\nendin\ninstr 22\nendin\n");
    search.options = FindRegularExpression;
    search.text = u"^\\s*(instr|endin)\\b"_s;
    Run();
    EXPECT_EQ(Rows(), QStringList({u"a.csd:1:instr 1"_s, u"a.csd:3:endin"_s, u"a.csd:4:instr 22"_s,
                                   u"a.csd:5:endin"_s}));
    search.text = u"endin\\ninstr"_s; // over a line end: it counts where it begins
    Run();
    EXPECT_EQ(Rows(), QStringList(u"a.csd:3:endin"_s));
    search.text = u"^"_s;
    EXPECT_EQ(Run().lines, 5);
}

TEST_F(SearchInFiles, AnExpressionThatExplodesIsPassedOver)
{
    Write(u"a.csd"_s, QByteArray(60, 'a') + "b\n");
    Write(u"b.csd"_s, "aaa\n");
    search.options = FindRegularExpression;
    search.text = u"(a+)+$"_s;
    EXPECT_EQ(Run(), (SearchCounts{.searched = 1, .files = 1, .lines = 1, .hard = 1}));
}

TEST_F(SearchInFiles, FindsTheLinesThatTheLoopFinds)
{
    test::RandomText texts({u"a"_s, u"b"_s, u"A"_s, u" "_s, u"\n"_s, u"\n"_s, u"_"_s});
    const struct {
        QString literal;
        QString expression;
    } rows[] = {{u"a"_s, u"a"_s}, {u"ab"_s, u"ab"_s}, {u"b a"_s, u"b a"_s}, {u"_"_s, u"_"_s}};
    for (int i = 0; i < 400; ++i) {
        const QString piece = texts.Next();
        Write(u"a.csd"_s, piece.toUtf8());
        const FindOptions options =
            (i & 1 ? FindWholeWord : FindAnywhere) | (i & 2 ? FindMatchCase : FindAnywhere);
        for (const auto &row : rows) {
            QStringList expected;
            const QStringList lines = piece.split(u'\n');
            for (qsizetype line = 0; line < lines.size(); ++line) {
                if (oracle::FindPattern(lines[line], oracle::Expression(row.expression, options), 0,
                                        lines[line].size(), options))
                    expected.append(u"a.csd:%1:%2"_s.arg(line + 1).arg(lines[line]));
            }
            search.text = row.literal;
            search.options = options;
            Run();
            ASSERT_EQ(Rows(), expected) << testing::PrintToString(piece) << options;
            search.text = row.expression;
            search.options |= FindRegularExpression;
            Run();
            ASSERT_EQ(Rows(), expected) << testing::PrintToString(piece) << options;
        }
    }
}

/// A search on its own thread, and what comes of it.
struct SearchInTheBackground : SearchInFiles {
    std::mutex mutex;
    std::condition_variable changed;
    int woken = 0;
    std::vector<FoundLine> lines;
    SearchCounts counts;
    BackgroundSearch background{[this] {
        const std::lock_guard lock(mutex);
        ++woken;
        changed.notify_all();
    }};

    /// @return whether the search has ended
    bool WaitAndTake()
    {
        {
            std::unique_lock lock(mutex);
            changed.wait_for(lock, std::chrono::seconds(60), [this] { return woken > 0; });
            EXPECT_EQ(woken, 1) << "once, until it is taken";
            woken = 0;
        }
        const BackgroundSearch::News news = background.Take();
        lines.insert(lines.end(), news.lines.begin(), news.lines.end());
        counts = news.counts;
        return news.ended;
    }
    void WaitForTheEnd()
    {
        while (!WaitAndTake() && !HasFailure()) {
        }
    }
};

TEST_F(SearchInTheBackground, GivesAllThatItFinds)
{
    EXPECT_TRUE(background.Take().ended) << "nothing was started";
    for (int i = 0; i < 300; ++i)
        Write(u"%1.csd"_s.arg(i), "oscil\nx\noscil\n");
    background.Start(search);
    WaitForTheEnd();
    EXPECT_EQ(lines.size(), 600U);
    EXPECT_EQ(counts, (SearchCounts{.searched = 300, .files = 300, .lines = 600}));
    EXPECT_TRUE(background.Take().lines.empty());
    Run();
    EXPECT_EQ(lines, found.lines);
}

TEST_F(SearchInTheBackground, StopEndsIt)
{
    // Each file would take seconds.
    search.options = FindRegularExpression;
    search.text = u"(a?){24}(a?){24}a{24}$"_s;
    QByteArray hard;
    for (int i = 0; i < 20'000; ++i)
        hard += QByteArray(40, 'a') + "b\n";
    for (int i = 0; i < 100; ++i)
        Write(u"%1.csd"_s.arg(i), hard);
    background.Start(search);
    background.Stop();
    WaitForTheEnd();
    EXPECT_LT(counts.searched + counts.hard, 100);
}

TEST_F(SearchInTheBackground, ANewSearchTakesThePlaceOfTheOld)
{
    for (int i = 0; i < 300; ++i)
        Write(u"%1.csd"_s.arg(i), "oscil\nfoscil1\n");
    background.Start(search);
    search.text = u"foscil1"_s;
    background.Start(search);
    do {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::seconds(60), [this] { return woken > 0; });
        woken = 0;
        lock.unlock();
        const BackgroundSearch::News news = background.Take();
        lines.insert(lines.end(), news.lines.begin(), news.lines.end());
        counts = news.counts;
        if (news.ended)
            break;
    } while (!HasFailure());
    EXPECT_EQ(counts.lines, 300);
    ASSERT_EQ(lines.size(), 300U);
    for (const FoundLine &line : lines)
        EXPECT_EQ(line.text, u"foscil1"_s);
}

} // namespace
} // namespace zelvane
