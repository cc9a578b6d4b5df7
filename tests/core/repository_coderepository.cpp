// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/coderepository.h"

#include "core/oracle/repositoryoracle.h"
#include "repository/fragmenttext.h"
#include "repository/repositorytree.h"
#include "support/childprocess.h"
#include "support/filebytes.h"
#include "support/printers.h"
#include "support/processortime.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomRuns = 20000;

QString WithLineFeeds(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s);
}

struct Repository : testing::Test, TestContext {
    Repository() { desktop.environment[u"LOGNAME"_s] = u"Jo 32"_s; }

    QString Path(const QString &name) const { return folder.filePath(name); }
    FragmentPlace Place(const QString &name, const QString &file = u"mine.csr"_s) const
    {
        return {.file = Path(file), .name = name};
    }
    /// The fragments of a view as one text: groups as "text(...)", at each level one behind the other.
    QString Tree(RepositoryView view)
    {
        const RepositoryTree tree = BuildRepositoryTree(repository.Files(), view);
        const std::function<QString(const std::vector<qsizetype> &)> told = [&](const auto &numbers) {
            QStringList row;
            for (const qsizetype number : numbers) {
                const RepositoryNode &node = tree.nodes[size_t(number)];
                row += node.text + (node.IsFragment() ? QString() : u'(' + told(node.children) + u')');
            }
            return row.join(u' ');
        };
        return told(tree.roots);
    }

    void ExpectQuestion(const QString &question, BoxAnswer answer, std::function<void()> during = {})
    {
        desktop.ExpectMessage({.text = question,
                               .icon = BoxIcon::Warning,
                               .buttons = BoxButtons::YesNo,
                               .defaultAnswer = BoxAnswer::No},
                              answer, std::move(during));
    }
    void ExpectReplace(const QString &name, BoxAnswer answer, std::function<void()> during = {})
    {
        desktop.ExpectMessage(
            {.text = u"Replace saved parameters for '%1' with current settings?"_s.arg(name),
             .icon = BoxIcon::Question,
             .buttons = BoxButtons::YesNo},
            answer, std::move(during));
    }
    void ExpectDelete(const QString &name, BoxAnswer answer, std::function<void()> during = {})
    {
        desktop.ExpectMessage({.text = u"Delete '%1' item?"_s.arg(name),
                               .icon = BoxIcon::Question,
                               .buttons = BoxButtons::YesNo,
                               .defaultAnswer = BoxAnswer::No},
                              answer, std::move(during));
    }
    void ExpectError(const QString &error)
    {
        desktop.ExpectMessage({.text = error, .icon = BoxIcon::Critical});
    }
    /// A folder stands where the file would be: nobody writes it.
    void BlockFile(const QString &name) { ASSERT_TRUE(QDir(folder.path()).mkdir(name)); }

    CodeRepository repository{editor, folder.path()};
};

const FragmentFields Tone{.code = u"instr 1\n\tout oscil(.1, 440)\nendin"_s,
                          .author = u"jo"_s,
                          .comments = u"a\nb"_s,
                          .category = u"Instruments"_s};
const QByteArray ToneLines =
    "Code=instr 1\\n\\tout oscil(.1, 440)\\nendin\nAuthor=jo\nComments=a\\nb\nCategory=Instruments\n";

} // namespace

// The texts

TEST(RepositoryTexts, EscapesAsTheLoopDoes)
{
    RandomText texts(
        {u"\n"_s, u"\r"_s, u"\r\n"_s, u"\t"_s, u"\\"_s, u"n"_s, u"t"_s, u"a"_s, u" "_s, u"\u00E9"_s}, 12);
    for (int run = 0; run < RandomRuns; ++run) {
        const QString text = texts.Next();
        ASSERT_EQ(EscapeFragment(text), EscapedByLoop(text)) << run;
        ASSERT_EQ(UnescapeFragment(text), UnescapedByLoop(text)) << run;
    }
}

TEST(RepositoryTexts, TheLastCharacterIsNotEscaped)
{
    EXPECT_EQ(EscapeFragment(u"a\nb\tc"), u"a\\nb\\tc"_s);
    EXPECT_EQ(EscapeFragment(u"a\r\nb"), u"a\\nb"_s);
    EXPECT_EQ(EscapeFragment(u"a\n"), u"a\n"_s);
    EXPECT_EQ(EscapeFragment(u"a\r\n"), u"a\r\n"_s);
    EXPECT_EQ(EscapeFragment(u"a\n\n"), u"a\\n\n"_s);
    EXPECT_EQ(EscapeFragment(u"a\t"), u"a\t"_s);
    EXPECT_EQ(EscapeFragment(u"\n"), u"\n"_s);
    EXPECT_EQ(EscapeFragment(u""), u""_s);
}

TEST(RepositoryTexts, ABackslashHasNoEscape)
{
    EXPECT_EQ(EscapeFragment(u"a\\nb"), u"a\\nb"_s);
    EXPECT_EQ(UnescapeFragment(u"a\\nb"), u"a\r\nb"_s);
    EXPECT_EQ(UnescapeFragment(u"a\\\\nb"), u"a\\\r\nb"_s);
    EXPECT_EQ(UnescapeFragment(u"\\x\\"), u"\\x\\"_s);
}

TEST(RepositoryTexts, EscapingIsLinear)
{
    const QString text = u"\r\n\ta\\"_s.repeated(2'000'000);
    EXPECT_EQ(UnescapeFragment(EscapeFragment(text)), text);
}

TEST(RepositoryTexts, ThePersonalFileHasTheLoginsName)
{
    EXPECT_EQ(PersonalFileName(u"Jo 32"_s), u"jo _2.csr"_s);
    EXPECT_EQ(PersonalFileName(u"ANNA"_s), u"anna.csr"_s);
    EXPECT_EQ(PersonalFileName(u"3232"_s), u"_2_2.csr"_s);
    EXPECT_EQ(PersonalFileName(u"332"_s), u"3_2.csr"_s);
    EXPECT_EQ(PersonalFileName(u"a b"_s), u"a b.csr"_s);
    EXPECT_EQ(PersonalFileName(u"../x"_s), u".._x.csr"_s);
}

TEST(RepositoryTexts, ASectionIsCutAsByABuffer)
{
    RandomText texts({u"a"_s}, 40000);
    for (int run = 0; run < 500; ++run) {
        ProfileEntries entries;
        for (int count = texts.Number(0, 4); count > 0; --count)
            entries.emplace_back(QString(texts.Number(1, 4), u'k'), QString(texts.Number(0, 16400), u'v'));
        if (texts.Number(0, 3) == 0 && !entries.empty()) // the edge itself
            entries.back().second = QString(std::max(0, 32767 - texts.Number(0, 20)), u'v');
        ProfileEntries cut = entries;
        const qsizetype lost = CutSection(cut);
        ASSERT_EQ(cut, SectionThroughBuffer(entries, 32767)) << run;
        qsizetype length = 0;
        for (const auto &[key, value] : entries)
            length += key.size() + value.size() + 2;
        ASSERT_EQ(lost, std::max<qsizetype>(0, length - 32767)) << run;
    }
}

TEST(RepositoryTexts, ACutDoesNotPartACharacter)
{
    const QString clef = u"\U0001D11E"_s;
    EXPECT_EQ(StartOf(u"ab"_s + clef, 3), u"ab"_s);
    EXPECT_EQ(StartOf(u"ab"_s + clef, 2), u"ab"_s);
    EXPECT_EQ(StartOf(u"ab"_s + clef, 4), u"ab"_s + clef);
    EXPECT_EQ(StartOf(u"ab"_s + clef, 9), u"ab"_s + clef);
    EXPECT_EQ(StartOf(clef, 0), QString());
    ProfileEntries entries{{u"Code"_s, QString(32767 - 6, u'x') + clef}};
    EXPECT_EQ(CutSection(entries), 2);
    EXPECT_EQ(entries[0].second, QString(32767 - 6, u'x'));
}

TEST(RepositoryTexts, TheListOfNamesIsCut)
{
    EXPECT_EQ(NamesWithinLimit(QStringList(5000, u"abcde"_s)), 5000);
    EXPECT_EQ(NamesWithinLimit(QStringList(5000, u"abcdef"_s)), 4681);
    EXPECT_EQ(NamesWithinLimit({QString(32766, u'a'), u""_s}), 1);
    EXPECT_EQ(NamesWithinLimit({QString(32767, u'a')}), 0);
}

TEST(RepositoryTexts, AWholeNameIsFoundBeforeTheStartOfAnother)
{
    const QStringList names{u"Table 1"_s, u"tab"_s, u"table 2"_s};
    EXPECT_EQ(FindFragment(names, u"TAB"_s), 1);
    EXPECT_EQ(FindFragment(names, u"TABL"_s), 0);
    EXPECT_EQ(FindFragment(names, u"table 2"_s), 2);
    EXPECT_EQ(FindFragment({u"x"_s, u"Table 1"_s}, u"TAB"_s), 1);
    EXPECT_EQ(FindFragment(names, u"able"_s), std::nullopt);
    EXPECT_EQ(FindFragment({}, u"a"_s), std::nullopt);
}

// The tree

TEST_F(Repository, TheViewsGroupTheFragments)
{
    WriteFile(u"b.csr"_s, "[late]\nCode=x\nAuthor=Zoe\n[early]\nCategory=MIDI\n");
    WriteFile(u"A.csr"_s, "[mid]\nAuthor=Zoe\nCategory=MIDI\n[Alpha]\nAuthor=Zoe\nCategory=MIDI\n");
    WriteFile(u"empty.csr"_s);
    WriteFile(u"other.txt"_s, "[no]\n");
    EXPECT_EQ(Tree(RepositoryView::Name), u"mid Alpha late early"_s);
    EXPECT_EQ(Tree(RepositoryView::Category), u"MIDI(Alpha early mid) General(late)"_s);
    EXPECT_EQ(Tree(RepositoryView::CategoryAuthor),
              u"MIDI(Unknown(early) Zoe(Alpha mid)) General(Zoe(late))"_s);
    EXPECT_EQ(Tree(RepositoryView::Author), u"Zoe(Alpha late mid) General(early)"_s)
        << "here a missing author is General";
    EXPECT_EQ(Tree(RepositoryView::AuthorCategory),
              u"Zoe(General(late) MIDI(Alpha mid)) Unknown(MIDI(early))"_s);
}

TEST_F(Repository, GroupsWhoseTextsRunIntoOneAreOne)
{
    WriteFile(u"a.csr"_s,
              "[1]\nCategory=a\nAuthor=bc\n[2]\nCategory=ab\nAuthor=c\n[3]\nCategory=abc\nAuthor=\n");
    EXPECT_EQ(Tree(RepositoryView::CategoryAuthor), u"a(bc(1 2 3)) ab()"_s);
    EXPECT_EQ(Tree(RepositoryView::AuthorCategory), u"bc(a(1)) c(ab(2)) (abc(3))"_s);
}

TEST_F(Repository, TheTreeIsThatOfTheLoop)
{
    RandomText texts({u"a"_s, u"b"_s, u"General"_s, u"A"_s}, 2);
    for (int run = 0; run < 400; ++run) {
        QByteArray bytes;
        std::vector<PlainFragment> told;
        for (int count = texts.Number(0, 8); count > 0; --count) {
            PlainFragment fragment{
                .name = u"f%1"_s.arg(texts.Number(1000, 9999)), .author = {}, .category = {}};
            bytes += '[' + fragment.name.toUtf8() + "]\n";
            if (texts.Number(0, 3) > 0)
                bytes += "Author=" + fragment.author.emplace(texts.Next()).toUtf8() + '\n';
            if (texts.Number(0, 3) > 0)
                bytes += "category=" + fragment.category.emplace(texts.Next()).toUtf8() + '\n';
            const auto same = [&](const PlainFragment &one) { return one.name == fragment.name; };
            if (std::none_of(told.begin(), told.end(), same))
                told.push_back(fragment);
            else
                bytes.clear(), told.clear();
        }
        const QString file = WriteFile(u"a.csr"_s, bytes);
        for (int view = 0; view < 5; ++view) {
            const RepositoryTree tree = BuildRepositoryTree({file}, RepositoryView(view));
            const std::vector<PlainNode> expected = TreeByLoop(told, view);
            ASSERT_EQ(tree.nodes.size(), expected.size()) << run << bytes.constData();
            for (size_t i = 0; i < expected.size(); ++i) {
                const RepositoryNode &node = tree.nodes[i];
                ASSERT_EQ(node.text, expected[i].text) << run;
                ASSERT_EQ(node.key, expected[i].key) << run;
                ASSERT_EQ(node.IsFragment(), expected[i].fragment) << run;
                ASSERT_EQ(node.parent, expected[i].above) << run;
                ASSERT_TRUE(std::is_sorted(node.children.begin(), node.children.end(), [&](auto a, auto b) {
                    return SortsBefore(tree.nodes[size_t(a)].text, tree.nodes[size_t(b)].text);
                }));
            }
        }
    }
}

TEST_F(Repository, NoFileIsAnEmptyTree)
{
    EXPECT_EQ(repository.Files(), QStringList());
    EXPECT_EQ(Tree(RepositoryView::Category), QString());
    BlockFile(u"folder.csr"_s);
    EXPECT_EQ(repository.Files(), QStringList());
}

TEST_F(Repository, AListThatIsTooLongIsToldOf)
{
    QByteArray bytes;
    for (int i = 0; i < 6000; ++i)
        bytes += "[fragm" + QByteArray::number(1000 + i) + "]\nCode=" + QByteArray::number(i) + '\n';
    WriteFile(u"long.csr"_s, bytes);
    const RepositoryTree tree = BuildRepositoryTree(repository.Files(), RepositoryView::Name);
    ASSERT_EQ(tree.cut.size(), 1u);
    EXPECT_EQ(tree.cut[0].file, Path(u"long.csr"_s));
    EXPECT_EQ(tree.cut[0].shown, 32767 / 10);
    EXPECT_EQ(tree.cut[0].all, 6000);
    EXPECT_EQ(qsizetype(tree.roots.size()), tree.cut[0].shown);
}

TEST_F(Repository, FiveThousandFragmentsAreReadAndOneChangedAlone)
{
    QByteArray bytes;
    for (int i = 0; i < 5000; ++i)
        bytes += '[' + QByteArray::number(10000 + i) + "]\r\nCode=a\\nb" + QByteArray::number(i) +
                 "\r\nAuthor=x\r\nbroken line\r\nCategory=c" + QByteArray::number(i % 50) + "\r\n";
    bytes += "[a]b]\r\nCode=\\s\\u0041\r\n";
    WriteFile(u"mine.csr"_s, bytes);
    RepositoryTree tree;
    StoredFragment odd;
    const double time = LeastProcessorTime(1, [&] {
        tree = BuildRepositoryTree(repository.Files(), RepositoryView::CategoryAuthor);
        odd = repository.Read(Place(u"a]b"_s));
    });
    EXPECT_LT(time, 10); // half a second on a quick machine
    EXPECT_EQ(tree.nodes.size(), 5001u + 50 * 2 + 2);
    EXPECT_TRUE(tree.cut.empty());
    EXPECT_EQ(odd.fields.code, u"\\s\\u0041"_s) << "no other escapes";
    FragmentFields fields = repository.Read(Place(u"12500"_s)).fields;
    EXPECT_EQ(fields.code, u"a\r\nb2500"_s);
    fields.author = u"y"_s;
    ExpectReplace(u"12500"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"12500"_s), repository.Read(Place(u"12500"_s)), fields, false),
              FragmentWrite::Done);
    QByteArray expected = bytes;
    expected.replace("b2500\r\nAuthor=x\r\nbroken line\r\n", "b2500\r\nAuthor=y\r\nbroken line\r\n");
    expected.replace("Author=y\r\nbroken line\r\nCategory=c0\r\n",
                     "Author=y\r\nbroken line\r\nCategory=c0\r\nComments=\r\n");
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), expected);
}

// Reading and writing

TEST_F(Repository, APageHasItsDefaults)
{
    WriteFile(u"mine.csr"_s, "[a]\n[b]\nCode=x\\n\\ty\nAuthor=\"me \"\nComments=1\\n2\nCategory=\n");
    const StoredFragment bare = repository.Read(Place(u"a"_s));
    EXPECT_TRUE(bare.found);
    EXPECT_EQ(bare.fields, (FragmentFields{.category = u"General"_s}));
    const StoredFragment full = repository.Read(Place(u"B"_s));
    EXPECT_EQ(
        full.fields,
        (FragmentFields{.code = u"x\r\n\ty"_s, .author = u"me "_s, .comments = u"1\r\n2"_s, .category = {}}));
    EXPECT_FALSE(repository.Read(Place(u"c"_s)).found);
}

TEST_F(Repository, ANewFragmentIsTheUsers)
{
    EXPECT_EQ(repository.PersonalFile(), Path(u"jo _2.csr"_s));
    EXPECT_EQ(repository.NewFragment(u"code"_s),
              (FragmentFields{.code = u"code"_s,
                              .author = u"Jo 32"_s,
                              .comments = u"Created on "_s + QLocale::system().toString(desktop.now.date(),
                                                                                        QLocale::ShortFormat),
                              .category = u"General"_s}));
    desktop.environment = {{u"USER"_s, u"eva"_s}};
    EXPECT_EQ(repository.PersonalFile(), Path(u"eva.csr"_s));
    desktop.environment.clear();
    EXPECT_EQ(repository.PersonalFile(), Path(PersonalFileName(QFileInfo(QDir::homePath()).owner())));
}

TEST_F(Repository, TheFirstFragmentMakesTheFile)
{
    const FragmentPlace place{.file = repository.PersonalFile(), .name = u"tone"_s};
    EXPECT_EQ(repository.Add(place, Tone), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"jo _2.csr"_s)), "[tone]\n" + ToneLines);
    const StoredFragment read = repository.Read(place);
    EXPECT_EQ(WithLineFeeds(read.fields.code), Tone.code);
    EXPECT_EQ(WithLineFeeds(read.fields.comments), Tone.comments);
}

TEST_F(Repository, ALoginWithADotHasAFileLikeTheOthers)
{
    desktop.environment[u"LOGNAME"_s] = u".jo"_s;
    const FragmentPlace place{.file = repository.PersonalFile(), .name = u"tone"_s};
    EXPECT_EQ(place.file, Path(u".jo.csr"_s));
    EXPECT_EQ(repository.Add(place, Tone), FragmentWrite::Done);
    EXPECT_EQ(repository.Files(), QStringList{Path(u".jo.csr"_s)}) << "and nothing else that is hidden";
    EXPECT_EQ(Tree(RepositoryView::Name), u"tone"_s);
}

TEST_F(Repository, AValueOfOneLineIsKeptToTheCharacter)
{
    for (const QString &code :
         {u"  a  "_s, u"\"a\""_s, u"'a'"_s, u"\"a"_s, u"a=b;c"_s, u"[x]"_s, u"; c"_s, u"\ta"_s, u"a\t"_s,
          u"\u00E9\u2028\U0001D11E"_s, u"a\u00A0"_s, u"#x"_s, u"a\nb c"_s}) {
        FragmentFields fields = Tone;
        fields.code = code;
        fields.author = code.contains(u'\n') ? u"x"_s : code;
        QFile::remove(Path(u"mine.csr"_s));
        EXPECT_EQ(repository.Add(Place(u"a]b [c]"_s), fields), FragmentWrite::Done);
        const FragmentFields read = repository.Read(Place(u"a]b [c]"_s)).fields;
        EXPECT_EQ(WithLineFeeds(read.code), code);
        EXPECT_EQ(read.author, fields.author);
        EXPECT_EQ(Tree(RepositoryView::Name), u"a]b [c]"_s);
    }
    // The one line end at the very end is not escaped, so the line holds none.
    FragmentFields fields = Tone;
    fields.code = u"a\n\n"_s;
    fields.author = u"two\nlines"_s;
    QFile::remove(Path(u"mine.csr"_s));
    EXPECT_EQ(repository.Add(Place(u"x"_s), fields), FragmentWrite::Done);
    EXPECT_EQ(repository.Read(Place(u"x"_s)).fields.code, u"a\r\n"_s);
    EXPECT_EQ(repository.Read(Place(u"x"_s)).fields.author, u"two lines"_s);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)),
              "[x]\nCode=a\\n\nAuthor=two lines\nComments=a\\nb\nCategory=Instruments\n"_ba);
}

TEST_F(Repository, AnotherFragmentOfTheNameIsAskedAbout)
{
    WriteFile(u"mine.csr"_s, "[Tone]\nCode=old\n");
    ExpectQuestion(u"'tone' is in mine.csr already.\n\nReplace it?"_s, BoxAnswer::No);
    EXPECT_EQ(repository.Add(Place(u"tone"_s), Tone), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[Tone]\nCode=old\n"_ba);
    ExpectQuestion(u"'tone' is in mine.csr already.\n\nReplace it?"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Add(Place(u"tone"_s), Tone), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[Tone]\n" + ToneLines);
}

TEST_F(Repository, AFailedAdditionIsTold)
{
    BlockFile(u"mine.csr"_s);
    ExpectError(u"Error adding code fragment."_s);
    EXPECT_EQ(repository.Add(Place(u"tone"_s), Tone), FragmentWrite::Failed);
}

TEST_F(Repository, ARenamedFragmentIsTheLastOne)
{
    WriteFile(u"mine.csr"_s, "; mine\r\n[a]\r\nCode=\"  1\"\r\nOwn=\\n\r\nbroken\r\n[b]\r\nCode=2\r\n");
    EXPECT_EQ(repository.Rename(Place(u"A"_s), u"c]d"_s), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)),
              "; mine\r\nbroken\r\n[b]\r\nCode=2\r\n\r\n[c]d]\r\nCode=\"  1\"\r\nOwn=\\n\r\n"_ba);
    EXPECT_EQ(repository.Rename(Place(u"b"_s), u"B"_s), FragmentWrite::Done) << "in another case";
    EXPECT_EQ(Tree(RepositoryView::Name), u"c]d B"_s);
}

TEST_F(Repository, ARenameKeepsEqualKeys)
{
    WriteFile(u"mine.csr"_s, "[a]\nCode=1\nAuthor=jo\ncode=2\n");
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"b"_s), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[b]\nCode=1\nAuthor=jo\ncode=2\n"_ba);
    EXPECT_EQ(repository.Read(Place(u"b"_s)).fields.code, u"1"_s);
    // What is cut of them is asked about too.
    const QByteArray before = "[a]\nCode=1\nCode=" + QByteArray(32767 - 5 - 1, 'x') + "\n";
    WriteFile(u"mine.csr"_s, before);
    ExpectQuestion(u"'a' is longer than 32767 characters. Under another name its last 7 characters would be "
                   "lost.\n\nRename it all the same?"_s,
                   BoxAnswer::No);
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"c"_s), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
}

TEST_F(Repository, ARenameOntoAnotherFragmentIsAskedAbout)
{
    const QByteArray before = "[a]\nCode=1\n[b]\nCode=2\n";
    WriteFile(u"mine.csr"_s, before);
    ExpectQuestion(u"'B' is in mine.csr already.\n\nReplace it?"_s, BoxAnswer::No);
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"B"_s), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
    ExpectQuestion(u"'B' is in mine.csr already.\n\nReplace it?"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"B"_s), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[B]\nCode=1\n"_ba);
}

TEST_F(Repository, WhatARenameWouldCutIsAskedBeforeAnythingIsDeleted)
{
    const QByteArray code(32767 - 2, 'x'); // with "Code=" and its end 4 more than there is room for
    const QByteArray before = "[a]\nCode=" + code + "\nAuthor=jo\n[b]\nCode=2\n";
    WriteFile(u"mine.csr"_s, before);
    const QString question =
        u"'a' is longer than 32767 characters. Under another name its last 14 characters would be lost.\n\n"
        "Rename it all the same?"_s;
    ExpectQuestion(question, BoxAnswer::No);
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"c"_s), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
    ExpectQuestion(question, BoxAnswer::Yes);
    EXPECT_EQ(repository.Rename(Place(u"a"_s), u"c"_s), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[b]\nCode=2\n\n[c]\nCode=" + code.first(32767 - 5) + "\n");
}

TEST_F(Repository, AFailedRenameLeavesTheFragment)
{
    WriteFile(u"mine.csr"_s, "[a]\nCode=1\n");
    ExpectError(u"Error adding code fragment."_s);
    EXPECT_EQ(repository.Rename(Place(u"gone"_s), u"c"_s), FragmentWrite::Failed)
        << "another editor has deleted it";
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[a]\nCode=1\n"_ba);
}

TEST_F(Repository, AFileOfAnOlderEncodingKeepsItWhereItIsNotTouched)
{
    WriteFile(u"mine.csr"_s, "[caf\xe9]\nCode=; \x80 1\nAuthor=Andr\xe9\n[other]\nCode=\xfc\n");
    const FragmentPlace place = Place(u"caf\u00e9"_s);
    const StoredFragment shown = repository.Read(place);
    EXPECT_TRUE(shown.found);
    EXPECT_EQ(shown.fields.code, u"; \u20ac 1"_s);
    EXPECT_EQ(shown.fields.author, u"Andr\u00e9"_s);
    FragmentFields page = shown.fields;
    page.code = u"; \u2126"_s;
    ExpectReplace(place.name, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(place, shown, page, false), FragmentWrite::Done);
    EXPECT_EQ(repository.Read(place).fields.code, page.code);
    EXPECT_EQ(repository.Read(place).fields.author, u"Andr\u00e9"_s);
    EXPECT_TRUE(BytesOf(Path(u"mine.csr"_s)).endsWith("[other]\nCode=\xfc\n"));
}

TEST_F(Repository, EachValueOfAPageHasItsLimit)
{
    const QByteArray tooLong(32767 + 3, 'x');
    for (const QByteArray &key : {"Author"_ba, "Comments"_ba, "Category"_ba}) {
        WriteFile(u"mine.csr"_s, "[a]\nCode=1\n" + key + '=' + tooLong + "\n");
        const StoredFragment read = repository.Read(Place(u"a"_s));
        EXPECT_TRUE(read.cut) << key.constData();
        const FragmentFields &fields = read.fields;
        EXPECT_EQ(std::max({fields.author.size(), fields.comments.size(), fields.category.size()}), 32767);
        EXPECT_EQ(fields.code, u"1"_s);
    }
}

TEST_F(Repository, SavingAsksFirst)
{
    const QByteArray before = "[tone]\nCode=old\n";
    WriteFile(u"mine.csr"_s, before);
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    ExpectReplace(u"tone"_s, BoxAnswer::No);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\n" + ToneLines);
}

TEST_F(Repository, AFragmentIsSavedInAnotherFile)
{
    WriteFile(u"mine.csr"_s, "[tone]\nCode=old\n");
    WriteFile(u"theirs.csr"_s, "[other]\nCode=1\n");
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    const FileDialogRequest request{.title = u"Select file to save the code fragment in"_s,
                                    .filters = {{u"Code Repository Files"_s, u"*.csr"_s}},
                                    .folder = folder.path(),
                                    .defaultExtension = u"csr"_s,
                                    .overwritePrompt = false};
    desktop.ExpectSaveDialog(request, {});
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, true), FragmentWrite::Declined);
    desktop.ExpectSaveDialog(request, {.path = Path(u"theirs.csr"_s)});
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, true), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"theirs.csr"_s)), "[other]\nCode=1\n\n[tone]\n" + ToneLines);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\nCode=old\n"_ba);
}

TEST_F(Repository, AFailedSaveIsTold)
{
    WriteFile(u"mine.csr"_s, "[tone]\nCode=old\n");
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    QFile::remove(Path(u"mine.csr"_s));
    BlockFile(u"mine.csr"_s);
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    ExpectError(
        u"Error while saving 'tone'. Check if mine.csr is around 64K. In that case you'll have to rename "
        "it to something different. Zelvane will create another file."_s);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Failed);
}

TEST_F(Repository, AFragmentThatIsShownCutIsNotSavedSilently)
{
    const QByteArray before = "[tone]\nCode=" + QByteArray(32768, 'x') + "\n";
    WriteFile(u"mine.csr"_s, before);
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    EXPECT_TRUE(shown.cut);
    EXPECT_EQ(shown.fields.code.size(), 32767);
    const QString question =
        u"'tone' is longer than 32767 characters, and not all of it is shown. The rest would "
        "be lost.\n\nSave it all the same?"_s;
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    ExpectQuestion(question, BoxAnswer::No);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    ExpectQuestion(question, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\n" + ToneLines);
}

TEST_F(Repository, AFragmentThatIsShownCutIsCutInAnotherFileOnly)
{
    const QByteArray before = "[tone]\nCode=" + QByteArray(32768, 'x') + "\n";
    WriteFile(u"mine.csr"_s, before);
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    desktop.ExpectSaveDialog({.title = u"Select file to save the code fragment in"_s,
                              .filters = {{u"Code Repository Files"_s, u"*.csr"_s}},
                              .folder = folder.path(),
                              .defaultExtension = u"csr"_s,
                              .overwritePrompt = false},
                             {.path = Path(u"theirs.csr"_s)});
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    ExpectQuestion(u"'tone' is longer than 32767 characters, and not all of it is shown. Only that would be "
                   "saved in theirs.csr.\n\nSave it all the same?"_s,
                   BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, true), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), before);
    EXPECT_EQ(BytesOf(Path(u"theirs.csr"_s)), "[tone]\n" + ToneLines);
}

TEST_F(Repository, AFileThatCannotBeReadIsTold)
{
    WriteFile(u"mine.csr"_s, "[a]\nCode=1\n");
    const QStringList files = repository.Files();
    EXPECT_EQ(BuildRepositoryTree(files, RepositoryView::Name).unread, QStringList());
    ASSERT_TRUE(QFile::setPermissions(Path(u"mine.csr"_s), {}));
    // The administrator may read every file: the reading runs as a user who may not.
    const bool root = geteuid() == 0;
    ASSERT_EQ(root ? seteuid(65534) : 0, 0);
    const auto back = qScopeGuard([root] { EXPECT_EQ(root ? seteuid(0) : 0, 0); });
    const RepositoryTree tree = BuildRepositoryTree(files, RepositoryView::Name);
    EXPECT_EQ(tree.unread, files);
    EXPECT_TRUE(tree.roots.empty());
}

TEST_F(Repository, LeavingAPageAsksToSaveIt)
{
    const auto expect = [&](BoxAnswer answer) {
        desktop.ExpectMessage({.text = u"Save changes to 'tone'?"_s,
                               .icon = BoxIcon::Warning,
                               .buttons = BoxButtons::YesNoCancel},
                              answer);
    };
    WriteFile(u"mine.csr"_s, "[tone]\nCode=old\n");
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    expect(BoxAnswer::Cancel);
    EXPECT_EQ(repository.SaveBeforeLeaving(Place(u"tone"_s), shown, Tone), FragmentWrite::Failed);
    expect(BoxAnswer::No);
    EXPECT_EQ(repository.SaveBeforeLeaving(Place(u"tone"_s), shown, Tone), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\nCode=old\n"_ba);
    expect(BoxAnswer::Yes);
    EXPECT_EQ(repository.SaveBeforeLeaving(Place(u"tone"_s), shown, Tone), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\n" + ToneLines);
    // What may not be saved may not go either.
    expect(BoxAnswer::Yes);
    ExpectQuestion(u"'tone' has been changed elsewhere since it was read.\n\nSave all the same?"_s,
                   BoxAnswer::No);
    EXPECT_EQ(repository.SaveBeforeLeaving(Place(u"tone"_s), shown, Tone), FragmentWrite::Failed);
}

TEST_F(Repository, DeletingAsksFirst)
{
    WriteFile(u"mine.csr"_s, "[a]\nCode=1\n\n[tone]\nCode=old\nbroken\n\n[b]\nCode=2\n");
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    ExpectDelete(u"tone"_s, BoxAnswer::No);
    EXPECT_EQ(repository.Delete(Place(u"tone"_s), shown), FragmentWrite::Declined);
    ExpectDelete(u"tone"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Delete(Place(u"tone"_s), shown), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[a]\nCode=1\nbroken\n\n[b]\nCode=2\n"_ba);
}

TEST_F(Repository, AFailedDeletionIsTold)
{
    WriteFile(u"mine.csr"_s, "[tone]\nCode=old\n");
    EXPECT_TRUE(QFile::setPermissions(folder.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                                         QFileDevice::ReadOther | QFileDevice::ExeOther |
                                                         QFileDevice::ReadGroup | QFileDevice::ExeGroup));
    EXPECT_TRUE(AsOrdinaryUser(folder.path(), [&] {
        QFile::setPermissions(Path(u"mine.csr"_s), QFileDevice::ReadOwner | QFileDevice::ReadOther);
        const StoredFragment shown = repository.Read(Place(u"tone"_s));
        QFile::setPermissions(folder.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        ExpectDelete(u"tone"_s, BoxAnswer::Yes);
        ExpectError(u"Cannot delete 'tone' item."_s);
        EXPECT_EQ(repository.Delete(Place(u"tone"_s), shown), FragmentWrite::Failed);
        QFile::setPermissions(folder.path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }));
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\nCode=old\n"_ba);
}

TEST_F(Repository, WhatAnotherEditorHasChangedIsAskedAbout)
{
    WriteFile(u"mine.csr"_s, "[tone]\nCode=old\n");
    const StoredFragment shown = repository.Read(Place(u"tone"_s));
    WriteFile(u"mine.csr"_s, "[tone]\nCode=theirs\n");
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    ExpectQuestion(u"'tone' has been changed elsewhere since it was read.\n\nSave all the same?"_s,
                   BoxAnswer::No);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Declined);
    ExpectDelete(u"tone"_s, BoxAnswer::Yes);
    // While the question stands they write again.
    ExpectQuestion(u"'tone' has been changed elsewhere since it was read.\n\nDelete it all the same?"_s,
                   BoxAnswer::Yes, [&] { WriteFile(u"mine.csr"_s, "[tone]\nCode=theirs again\n"); });
    ExpectQuestion(u"'tone' has been changed elsewhere since it was read.\n\nDelete it all the same?"_s,
                   BoxAnswer::No);
    EXPECT_EQ(repository.Delete(Place(u"tone"_s), shown), FragmentWrite::Declined);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[tone]\nCode=theirs again\n"_ba);
    // A fragment that they have deleted comes back.
    WriteFile(u"mine.csr"_s, "[other]\nCode=1\n");
    ExpectReplace(u"tone"_s, BoxAnswer::Yes);
    EXPECT_EQ(repository.Save(Place(u"tone"_s), shown, Tone, false), FragmentWrite::Done);
    EXPECT_EQ(BytesOf(Path(u"mine.csr"_s)), "[other]\nCode=1\n\n[tone]\n" + ToneLines);
}

TEST_F(Repository, TwoEditorsOnOneFileLoseNothing)
{
    constexpr int count = 150;
    std::vector<pid_t> children;
    for (const QString &name : {u"first"_s, u"second"_s}) {
        children.push_back(StartChild([&] {
            for (int i = 0; i < count; ++i) {
                const QString own = name + QString::number(i);
                if (repository.Add(Place(own), Tone) != FragmentWrite::Done)
                    ADD_FAILURE() << "not added";
                if (i % 3 == 0 && repository.Rename(Place(own), own + u" renamed"_s) != FragmentWrite::Done)
                    ADD_FAILURE() << "not renamed";
            }
        }));
    }
    for (const pid_t child : children)
        EXPECT_TRUE(ChildSucceeded(child));
    for (const QString &name : {u"first"_s, u"second"_s}) {
        for (int i = 0; i < count; ++i) {
            const QString own = name + QString::number(i) + (i % 3 == 0 ? u" renamed"_s : QString());
            const StoredFragment read = repository.Read(Place(own));
            ASSERT_TRUE(read.found) << own.toStdString();
            ASSERT_EQ(WithLineFeeds(read.fields.code), Tone.code);
            ASSERT_EQ(read.entries.size(), 4u);
        }
    }
}

TEST_F(Repository, TwoEditorsOnOneFragmentWriteNothingOver)
{
    // Saves, unless another editor was first.
    struct HastyUser : ScriptedDesktop {
        BoxAnswer MessageBox(const MessageBoxRequest &request) override
        {
            return request.text.startsWith(u"Save changes") ? BoxAnswer::Yes : BoxAnswer::No;
        }
    };
    WriteFile(u"mine.csr"_s, "[count]\nCode=0\n[other]\nCode=1\n");
    std::vector<pid_t> children;
    const QStringList users{u"first"_s, u"second"_s};
    for (const QString &name : users) {
        children.push_back(StartChild([&] {
            HastyUser user;
            EditorContext own{document, text, settings, user, status, windows, operations};
            CodeRepository fragments(own, folder.path());
            int saved = 0;
            for (int i = 0; i < 150; ++i) {
                const StoredFragment shown = fragments.Read(Place(u"count"_s));
                FragmentFields fields = shown.fields;
                fields.code = QString::number(fields.code.toInt() + 1);
                if (fragments.SaveBeforeLeaving(Place(u"count"_s), shown, fields) == FragmentWrite::Done)
                    ++saved;
            }
            EXPECT_EQ(fragments.Add(Place(u"told"_s, name + u".csr"_s), {.code = QString::number(saved)}),
                      FragmentWrite::Done);
        }));
    }
    for (const pid_t child : children)
        EXPECT_TRUE(ChildSucceeded(child));
    int saved = 0;
    for (const QString &name : users)
        saved += repository.Read(Place(u"told"_s, name + u".csr"_s)).fields.code.toInt();
    EXPECT_GT(saved, 0);
    EXPECT_EQ(repository.Read(Place(u"count"_s)).fields.code.toInt(), saved);
    EXPECT_TRUE(BytesOf(Path(u"mine.csr"_s)).startsWith("[count]\n")) << "it stays where it was";
}

TEST_F(Repository, AFragmentIsFoundByItsName)
{
    const QString prompt =
        u"Type the name of the code fragment to search for.\n\n(You don't need to specify the "
        "full name. You may type the first letters only. Search is case insensitive.)"_s;
    const QStringList names{u"Table 1"_s, u"tab"_s};
    desktop.ExpectInput(u"Find code fragment"_s, prompt, u"TAB"_s);
    EXPECT_EQ(repository.Find(names), 1);
    desktop.ExpectInput(u"Find code fragment"_s, prompt, std::nullopt);
    EXPECT_EQ(repository.Find(names), std::nullopt);
    desktop.ExpectInput(u"Find code fragment"_s, prompt, u""_s);
    EXPECT_EQ(repository.Find(names), std::nullopt);
    desktop.ExpectInput(u"Find code fragment"_s, prompt, u"none"_s);
    desktop.ExpectMessage({.text = u"Cannot find 'none'."_s, .icon = BoxIcon::Information});
    EXPECT_EQ(repository.Find(names), std::nullopt);
}

// The text

TEST_F(Repository, TheSelectionGoesInOrTheWholeText)
{
    text.SetText(u"one\ntwo"_s);
    EXPECT_EQ(TextForRepository(text), u"one\ntwo"_s);
    text.SetSelection(4, 7);
    EXPECT_EQ(TextForRepository(text), u"two"_s);
}

} // namespace zelvane::test
