// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/keptlines.h"

#include "support/printers.h"
#include "support/randomtext.h"
#include "support/stringbuffer.h"

#include <gtest/gtest.h>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// A text, its marked lines, and edits of it.
struct Marked {
    StringBuffer buffer;
    MarkedLines lines;

    explicit Marked(const QString &text, const std::vector<qsizetype> &marked = {})
    {
        buffer.text = text;
        lines.Reset(buffer, marked);
    }
    bool Edit(qsizetype offset, qsizetype removed, const QString &added)
    {
        buffer.text.replace(offset, removed, added);
        return lines.Follow(buffer, {offset, removed, added.size()});
    }
    /// The marked lines, by what they hold.
    QStringList Texts() const
    {
        QStringList texts;
        for (const KeptLine &kept : lines.Lines())
            texts.append(buffer.text.split(u'\n')[kept.line]);
        return texts;
    }
};

TEST(MarkedLines, AreSetAndTakenAway)
{
    Marked text(u"a\nb\nc"_s);
    text.lines.Set(text.buffer, 2, true);
    text.lines.Set(text.buffer, 0, true);
    text.lines.Set(text.buffer, 2, true);
    EXPECT_EQ(text.Texts(), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_TRUE(text.lines.IsMarked(0));
    EXPECT_FALSE(text.lines.IsMarked(1));
    text.lines.Set(text.buffer, 0, false);
    EXPECT_EQ(text.Texts(), QStringList{u"c"_s});
}

TEST(MarkedLines, AreMovedByLinesBefore)
{
    Marked text(u"a\nb\nc"_s, {1});
    EXPECT_TRUE(text.Edit(0, 0, u"x\ny\n"_s));
    EXPECT_EQ(text.Texts(), QStringList{u"b"_s});
    EXPECT_TRUE(text.Edit(0, 2, {}));
    EXPECT_EQ(text.Texts(), QStringList{u"b"_s});
    EXPECT_FALSE(text.Edit(text.buffer.text.size(), 0, u"\nz"_s));
}

TEST(MarkedLines, EnterLeavesTheMarkWithTheText)
{
    Marked text(u"a\nbcd\ne"_s, {1});
    text.Edit(2, 0, u"\n"_s);
    EXPECT_EQ(text.Texts(), QStringList{u"bcd"_s});
    EXPECT_EQ(text.lines.Lines().front().line, 2);
    text.Edit(6, 0, u"\n"_s);
    EXPECT_EQ(text.lines.Lines().front().line, 2);
    text.Edit(4, 0, u"\n"_s);
    EXPECT_EQ(text.Texts(), QStringList{u"b"_s});
}

TEST(MarkedLines, StayWithALineThatIsEdited)
{
    Marked text(u"a\nbcd\ne"_s, {1});
    text.Edit(3, 1, u"xyz"_s);
    EXPECT_EQ(text.Texts(), QStringList{u"bxyzd"_s});
    text.Edit(2, 5, {});
    EXPECT_EQ(text.Texts(), QStringList{QString()});
    // Lines that come together keep it.
    text.Edit(1, 1, {});
    EXPECT_EQ(text.Texts(), QStringList{u"a"_s});
    // Many lines at once, each a little.
    Marked indented(u"a\nb\nc"_s, {0, 1, 2});
    indented.Edit(0, 5, u" a\n b\n c"_s);
    EXPECT_EQ(indented.Texts(), (QStringList{u" a"_s, u" b"_s, u" c"_s}));
}

TEST(MarkedLines, GoWithTheirLinesAndComeBackWithThem)
{
    Marked text(u"a\nb\nc\nd"_s, {1, 2});
    text.Edit(2, 4, {});
    EXPECT_EQ(text.Texts(), QStringList());
    text.Edit(2, 0, u"b\nc\n"_s);
    EXPECT_EQ(text.Texts(), (QStringList{u"b"_s, u"c"_s}));
    // Also at another place, and a blank one only where it was.
    Marked blank(u"a\n\nb\nc"_s, {1, 2});
    blank.Edit(2, 3, {});
    EXPECT_EQ(blank.Texts(), QStringList());
    blank.Edit(0, 0, u"\nb\n"_s);
    EXPECT_EQ(blank.Texts(), QStringList{u"b"_s});
    // What is typed anew is another line.
    Marked typed(u"a\nend\nb"_s, {1});
    typed.Edit(2, 4, {});
    for (const QChar c : u"end\n"_s)
        typed.Edit(typed.buffer.text.indexOf(u'b'), 0, QString(c));
    EXPECT_EQ(typed.buffer.text, u"a\nend\nb"_s);
    EXPECT_EQ(typed.Texts(), QStringList());
}

TEST(MarkedLines, FollowTheirLinesThroughRandomEdits)
{
    RandomText random({u"x"_s});
    for (int i = 0; i < 3000; ++i) {
        // Lines with names of their own, of which the upper case ones are marked.
        QStringList lines;
        int named = 0;
        const auto name = [&] {
            const QString text = u"line%1"_s.arg(named++);
            return random.Number(0, 3) ? text : text.toUpper();
        };
        for (int n = random.Number(1, 12); n > 0; --n)
            lines.append(name());
        std::vector<qsizetype> first;
        for (qsizetype line = 0; line < lines.size(); ++line) {
            if (lines[line].isUpper())
                first.push_back(line);
        }
        Marked text(lines.join(u'\n') + u'\n', first);
        QStringList gone;
        for (int n = random.Number(1, 10); n > 0; --n) {
            const int at = random.Number(0, int(lines.size()));
            const int count = random.Number(0, std::min(3, int(lines.size()) - at));
            QStringList come;
            if (random.Number(0, 2) == 0 && !gone.isEmpty())
                come.append(gone.takeLast());
            else if (random.Number(0, 1))
                come.append(name().toLower());
            qsizetype offset = 0;
            for (int line = 0; line < at; ++line)
                offset += lines[line].size() + 1;
            qsizetype removed = 0;
            for (int line = 0; line < count; ++line) {
                removed += lines[at].size() + 1;
                gone.append(lines.takeAt(at));
            }
            QString added;
            for (const QString &line : come) {
                lines.insert(at, line);
                added += line + u'\n';
            }
            const bool inPlace = count == come.size() && count > 0;
            if (inPlace) {
                // As many lines as before: those that are there now count as the old ones, edited.
                break;
            }
            text.Edit(offset, removed, added);
            QStringList marked;
            for (const QString &line : lines) {
                if (line.isUpper())
                    marked.append(line);
            }
            ASSERT_EQ(text.Texts(), marked) << lines.join(u'|').toStdString();
        }
    }
}

TEST(KeptLines, AreFoundAgainInATextThatHasChanged)
{
    Marked text(u"a\nb\nc\nb\n\n"_s);
    const std::vector<KeptLine> kept = {KeepLine(text.buffer, 0), KeepLine(text.buffer, 3),
                                        KeepLine(text.buffer, 4)};
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{0, 3, 4}));
    text.buffer.text = u"x\na\nb\nc\nb\nd\n"_s;
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{1, 4}));
    // A blank line is known by its neighbour.
    text.buffer.text = u"b\n"_s;
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{0, 1}));
    text.buffer.text = u"b"_s;
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{0}));
    text.buffer.text = QString();
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{}));
}

TEST(KeptLines, ALongLineIsKnownByItsBeginning)
{
    Marked text(QString(2000, u'a') + u"b\nx"_s, {0});
    const std::vector<KeptLine> kept = text.lines.Lines();
    EXPECT_EQ(kept.front().text.size(), KeptLength);
    text.buffer.text = u"y\n"_s + QString(2000, u'a') + u"c\nx"_s;
    EXPECT_EQ(FindKeptLines(text.buffer, kept), (std::vector<qsizetype>{1}));
}

TEST(KeptLines, BelongToTheirFiles)
{
    LinesOfFiles files;
    files.Keep(u"/a/B.orc"_s, {{3, u"x"_s}});
    files.Keep({}, {{4, u"y"_s}});
    EXPECT_EQ(files.Of(u"/A/b.orc"_s), (std::vector<KeptLine>{{3, u"x"_s}}));
    EXPECT_TRUE(files.Of(u"/a/c.orc"_s).empty());
    EXPECT_TRUE(files.Of({}).empty());
    files.Keep(u"/a/b.ORC"_s, {});
    EXPECT_TRUE(files.Of(u"/a/b.orc"_s).empty());
}

} // namespace

} // namespace zelvane::test
