// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"
#include "platform/textfile.h"
#include "shell/lineends.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <ostream>
#include <QDir>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// The pieces of Csound's own manual.
QString Pieces()
{
    return u"/usr/share/doc/csound-doc/html/examples"_s;
}

QString TextOf(const QString &name)
{
    return ToLineFeeds(ReadTextFile(Pieces() + u'/' + name));
}

FileKind KindOf(const QString &name)
{
    return name.endsWith(u".csd"_s) ? FileKind::Unified : FileKind::Orchestra;
}

/// One line for each node below one, indented by its depth: key, image, tag, caption.
QString Tree(const Outline &outline, qsizetype below, const QString &indent)
{
    QString tree;
    for (qsizetype row = 0; row < outline.ChildCount(below); ++row) {
        const qsizetype place = outline.Child(below, row);
        const OutlineNode node = outline.At(place);
        tree += indent + outline.Key(place) + u" ["_s + ImageOfKind(node.kind);
        if (!node.isRoot)
            tree += u' ' + QString::number(node.tag);
        tree += (node.isCommented ? u" grey] "_s : u"] "_s) + outline.Caption(place) + u'\n' +
                Tree(outline, place, indent + u"  "_s);
    }
    return tree;
}
QString TreeOf(const QString &name)
{
    return Tree(ScanOutline(TextOf(name), KindOf(name)), -1, {});
}

QStringList Files(const QString &folder, const QString &pattern)
{
    return QDir(folder).entryList({pattern}, QDir::Files, QDir::Name);
}

qsizetype CountOf(const Outline &outline, OutlineKind kind)
{
    qsizetype count = 0;
    for (qsizetype place = 0; place < outline.Count(); ++place)
        count += outline.At(place).kind == kind && !outline.At(place).isRoot;
    return count;
}

qsizetype Matches(const QString &text, const QString &pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption |
                                                     QRegularExpression::CaseInsensitiveOption |
                                                     QRegularExpression::DotMatchesEverythingOption);
    qsizetype count = 0;
    for (auto hits = expression.globalMatch(text); hits.hasNext(); hits.next())
        ++count;
    return count;
}

struct Counts {
    qsizetype instruments = 0;
    qsizetype tables = 0;
    qsizetype tags = 0;

    bool operator==(const Counts &) const = default;
};
void PrintTo(const Counts &counts, std::ostream *out)
{
    *out << counts.instruments << " instruments, " << counts.tables << " tables, " << counts.tags << " tags";
}

/// The elements of a unified document as a reader of Csound would count them, by expressions of their own.
Counts CountByExpressions(const QString &text)
{
    QString code = text;
    code.remove(
        QRegularExpression(u"/\\*.*?\\*/|;[^\\n]*"_s, QRegularExpression::DotMatchesEverythingOption));
    const auto section = [&code](const QString &name) {
        const QRegularExpression between(u"<%1>(.*?)</%1>"_s.arg(name),
                                         QRegularExpression::DotMatchesEverythingOption);
        return between.match(code).captured(1);
    };
    return {.instruments = Matches(section(u"CsInstruments"_s), u"^\\s*instr\\s[^\\n]*\\n.*?^\\s*endin\\b"_s),
            .tables = Matches(section(u"CsScore"_s), u"^[ \\t]*f[ \\t]*(?!0[ \\t])\\S+([ \\t]+\\S+){3,}"_s),
            .tags = Matches(text, u"<([^<>/]+)>(?=.*</\\1>)"_s)};
}

} // namespace

TEST(OutlinePieces, TreesAreAsTheyWereRead)
{
    const QString trees = QStringLiteral(ZELVANE_SOURCE_DIR "/tests/core/outlines");
    const QStringList files = Files(trees, u"*.tree"_s);
    EXPECT_EQ(files.size(), 40);
    for (const QString &file : files)
        EXPECT_EQ(TreeOf(file.chopped(5)), ReadTextFile(trees + u'/' + file)) << qPrintable(file);
}

TEST(OutlinePieces, CountsAgreeWithOtherExpressions)
{
    // Pieces in which the outline counts otherwise, on purpose.
    const std::set<QString> odd = {
        u"inletk.csd"_s,  // its first tag is never closed, which ends the listing of its level
        u"outletk.csd"_s, // likewise
    };
    const QStringList files = Files(Pieces(), u"*.csd"_s);
    ASSERT_GT(files.size(), 1000) << "csound-doc is not installed";
    qsizetype instruments = 0;
    for (const QString &file : files) {
        const QString text = TextOf(file);
        const Outline outline = ScanOutline(text, FileKind::Unified);
        const Counts counts{CountOf(outline, OutlineKind::Instrument),
                            CountOf(outline, OutlineKind::FunctionTable), CountOf(outline, OutlineKind::Tag)};
        instruments += counts.instruments;
        EXPECT_EQ(counts == CountByExpressions(text), !odd.contains(file))
            << qPrintable(file) << ": " << ::testing::PrintToString(counts) << "; otherwise "
            << ::testing::PrintToString(CountByExpressions(text));
    }
    EXPECT_GT(instruments, files.size());
}

} // namespace zelvane::test
