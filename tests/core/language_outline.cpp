// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/outline.h"
#include "oracle/outlineoracle.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <map>
#include <QElapsedTimer>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

constexpr int RandomTexts = 20000;

QString Line(const QString &parent, const QString &key, const QString &caption, const QString &image,
             const QString &tag, bool grey)
{
    return parent + u" > "_s + key + u" ["_s + image + u' ' + tag + (grey ? u" grey"_s : QString()) +
           u"] "_s + caption;
}

/// The places of the nodes below one in the order of a walk through the tree.
void Walk(const Outline &outline, qsizetype place, std::vector<qsizetype> &places)
{
    for (qsizetype row = 0; row < outline.ChildCount(place); ++row) {
        places.push_back(outline.Child(place, row));
        Walk(outline, places.back(), places);
    }
}
std::vector<qsizetype> Places(const Outline &outline)
{
    std::vector<qsizetype> places;
    Walk(outline, -1, places);
    EXPECT_EQ(qsizetype(places.size()), outline.Count());
    return places;
}

/// One line for each node in the order of a walk.
QStringList Lines(const Outline &outline)
{
    QStringList lines;
    for (const qsizetype place : Places(outline)) {
        const OutlineNode node = outline.At(place);
        EXPECT_EQ(outline.Find(outline.Key(place)), place);
        EXPECT_EQ(outline.Child(node.parent, outline.Row(place)), place);
        lines += Line(node.parent < 0 ? QString() : outline.Key(node.parent), outline.Key(place),
                      outline.Caption(place), ImageOfKind(node.kind),
                      node.isRoot ? QString() : QString::number(node.tag), node.isCommented);
    }
    return lines;
}

QStringList Lines(const oracle::OutlineLoops &loops)
{
    QStringList lines;
    for (const oracle::TreeNode &node : loops.tree)
        lines += Line(node.parent, node.key, node.caption, node.image, node.tag, node.grey);
    return lines;
}

/// Key and caption of all nodes, joined by a colon, without the roots.
QStringList Children(const QString &text, FileKind kind)
{
    const Outline outline = ScanOutline(text, kind);
    QStringList children;
    for (const qsizetype place : Places(outline)) {
        if (!outline.At(place).isRoot)
            children += outline.Key(place) + u'=' + outline.Caption(place);
    }
    return children;
}
QStringList Orchestra(const QString &text)
{
    return Children(text, FileKind::Orchestra);
}
QStringList Score(const QString &text)
{
    return Children(text, FileKind::Score).mid(1); // without the first section
}
QStringList Unified(const QString &text)
{
    return Children(text, FileKind::Unified);
}

const QStringList CommonPieces = {u" "_s,  u"\n"_s, u"\n"_s, u"\t"_s, u"\r"_s,     u";"_s,
                                  u"/*"_s, u"*/"_s, u"/"_s,  u"*"_s,  u"\u00e9"_s, u"_"_s,
                                  u"1"_s,  u"x"_s,  u"("_s,  u")"_s,  u"\u0416"_s, u"\""_s};

/// Compares with the loops on texts of the pieces; the `wanted` images have to come up.
void CompareWithLoops(const QStringList &pieces, FileKind kind, const QStringList &wanted, unsigned seed,
                      int longest = 24)
{
    RandomText random(CommonPieces + pieces, longest, seed);
    std::map<QString, int> hits; // by image
    for (int i = 0; i < RandomTexts; ++i) {
        const QString text = random.Next();
        oracle::OutlineLoops loops;
        loops.BuildOutline(text, int(kind));
        const Outline outline = ScanOutline(text, kind);
        ASSERT_EQ(Lines(outline), Lines(loops)) << ::testing::PrintToString(text);
        for (qsizetype n = 1; n < loops.instrStart.size(); ++n)
            ASSERT_EQ(outline.Instrument(n), (TextSpan{loops.instrStart[n], loops.instrEnd[n]}))
                << ::testing::PrintToString(text);
        for (const oracle::TreeNode &node : loops.tree)
            hits[node.image] += !node.tag.isEmpty();
    }
    for (const QString &image : wanted)
        EXPECT_GT(hits[image], RandomTexts / 10) << "the texts hold too little: " << qPrintable(image);
}

} // namespace

TEST(OutlineOracle, Instruments)
{
    CompareWithLoops({u"instr"_s, u"instr "_s, u"instr 1\n"_s, u"endin"_s, u"\nendin\n"_s, u" endin "_s,
                      u"INSTR"_s, u"Endin"_s, u"in\u017Ftr"_s, u"\u0130nstr"_s, u"endIn"_s},
                     FileKind::Orchestra, {u"instr"_s}, 1);
}

TEST(OutlineOracle, Labels)
{
    CompareWithLoops({u"\ninstr "_s, u"\ninstr 1\n"_s, u"\nendin\n"_s, u":"_s, u":"_s, u":"_s, u"lab:"_s,
                      u"\nlab"_s, u"\n\t lab:"_s, u"\r"_s},
                     FileKind::Orchestra, {u"label"_s}, 2, 40);
}

TEST(OutlineOracle, Macros)
{
    CompareWithLoops({u"#define"_s, u"#define "_s, u"#define A"_s, u"#DEFINE x("_s, u"#"_s, u"#"_s, u"A"_s},
                     FileKind::Orchestra, {u"macro"_s}, 3);
}

TEST(OutlineOracle, MacroCalls)
{
    CompareWithLoops({u"#define A#"_s, u"#define A #1#\n"_s, u"#define AB(x)#"_s, u"#define A.B#"_s,
                      u"#define \n#"_s, u"#define #"_s, u"#define $A#"_s, u"$"_s, u"$A"_s, u"$A("_s, u"$AB"_s,
                      u"$A.B "_s, u"$a"_s, u"$$A"_s, u"A"_s, u"B"_s, u" $AB(1)"_s, u"$x"_s, u"#define x #"_s},
                     FileKind::Orchestra, {u"macrocall"_s}, 4, 30);
}

TEST(OutlineOracle, CallsOfMacrosWhoseNamesHoldTheSign)
{
    CompareWithLoops({u"#define $#"_s, u"#define $$#"_s, u"#define A$A#"_s, u"#define $A$#"_s,
                      u"#define A$#"_s, u"#define A$AB#"_s, u"#define \n$A#"_s, u"$"_s, u"$"_s, u"$A"_s,
                      u"$A$"_s, u"$A$A"_s, u"A"_s, u"B"_s, u"\n"_s, u" "_s},
                     FileKind::Orchestra, {u"macrocall"_s}, 11, 30);
}

TEST(OutlineOracle, Includes)
{
    CompareWithLoops({u"#include"_s, u"#include \"a.orc\""_s, u"#Include <b>"_s, u"#include \"c d\";"_s,
                      u"\""_s, u"#include ab"_s, u"include"_s, u"#"_s},
                     FileKind::Score, {u"include"_s}, 5);
}

TEST(OutlineOracle, Sections)
{
    CompareWithLoops({u"s"_s, u"s "_s, u"\ns\n"_s, u"S"_s, u"s1"_s}, FileKind::Score, {u"section"_s}, 6);
}

TEST(OutlineOracle, NamedSections)
{
    CompareWithLoops({u"m"_s, u"m "_s, u"\nm name\n"_s, u"M"_s, u"m1"_s}, FileKind::Score,
                     {u"namedsection"_s}, 7);
}

TEST(OutlineOracle, FunctionTables)
{
    CompareWithLoops({u"f"_s, u"\nf"_s, u"f1 0 4096 10 "_s, u"\nf 1 0 4096 10"_s, u" f 0 "_s, u"\nf 0 10 "_s,
                      u"0"_s, u" 0"_s, u"0 "_s, u"2 "_s, u" 34"_s, u"F"_s, u"5/6 "_s, u"//"_s},
                     FileKind::Score, {u"table"_s}, 8, 30);
}

TEST(OutlineOracle, Tags)
{
    CompareWithLoops({u"<"_s, u">"_s, u"</"_s, u"<a>"_s, u"<a>"_s, u"</a>"_s, u"</a>"_s, u"<b>"_s, u"</b>"_s,
                      u"<b c>"_s, u"</b c>"_s, u"<>"_s, u"</>"_s, u"a"_s, u"<x></x> "_s},
                     FileKind::Unified, {u"csd"_s}, 9, 30);
}

TEST(OutlineOracle, UnifiedDocuments)
{
    const QString instruments = u"<CsInstruments>\ninstr 1\nlab:"_s;
    const QString instrumentsEnd = u"\nendin\n</CsInstruments>"_s;
    const QString score = u"<CsScore>\nm x\nf 1 0 8 "_s;
    const QString scoreEnd = u"\n2 \ns\n</CsScore>"_s;
    const QString macro = u"#define A #1#\n$A "_s;
    CompareWithLoops({instruments,
                      instruments,
                      instruments,
                      instrumentsEnd,
                      instrumentsEnd,
                      instrumentsEnd,
                      score,
                      score,
                      score,
                      scoreEnd,
                      scoreEnd,
                      scoreEnd,
                      macro,
                      macro,
                      u"<CsInstruments>"_s,
                      u"</CsInstruments>"_s,
                      u"<CsScore>"_s,
                      u"</CsScore>"_s,
                      u"\ninstr 1\n"_s,
                      u"\nendin\n"_s,
                      u"\nlab:"_s,
                      u"$A"_s,
                      u"#include \"a\"\n"_s,
                      u"\ns\n"_s,
                      u"\nm x\n"_s,
                      u"\nf 1 0 8 2 "_s,
                      u"<a>"_s,
                      u"</a>"_s},
                     FileKind::Unified,
                     {u"csd"_s, u"instr"_s, u"label"_s, u"macro"_s, u"macrocall"_s, u"include"_s,
                      u"section"_s, u"namedsection"_s, u"table"_s},
                     10, 40);
}

TEST(Outline, RootsAndChildrenHaveTheirKeysCaptionsAndImages)
{
    const QString text =
        u"<CsInstruments>\n#define A #1#\ninstr 7\nloop: a1 = $A\nendin\n#include \"u.orc\"\n"
        "</CsInstruments>\n<CsScore>\nm verse\nf1 0 8 2 1\ns\n</CsScore>\n"_s;
    EXPECT_EQ(Lines(ScanOutline(text, FileKind::Unified)),
              (QStringList{
                  u" > rootags [csd ] Tags"_s, u"rootags > tag1 [csd 0] CsInstruments"_s,
                  u"rootags > tag2 [csd 92] CsScore"_s, u" > rootins [instr ] Instruments"_s,
                  u"rootins > ins1 [instr 1] 7"_s, u"ins1 > ins1lbl1 [label 42] loop:"_s,
                  u" > rootsec [section ] Sections"_s, u"rootsec > sec0 [section 93] Section 1"_s,
                  u"rootsec > sec1 [section 121] Section 2"_s, u" > rootnse [namedsection ] Named Sections"_s,
                  u"rootnse > nse1 [namedsection 102] verse"_s, u" > rootftb [table ] Function Tables"_s,
                  u"rootftb > ftb1 [table 110] 1 GEN2 8"_s, u" > rootmac [macro ] Macros"_s,
                  u"rootmac > mac1 [macro 16] A"_s, u"mac1 > mac1cal1 [macrocall 49] A"_s,
                  u" > rootinc [include ] Include"_s, u"rootinc > inc1 [include 58] u.orc"_s}));
}

TEST(Outline, ANodeIsFoundByItsKeyAlone)
{
    const Outline outline = ScanOutline(u"instr 1\na:\nb:\nendin\ninstr 2\nendin\n#define M ##\n$M $M\n"
                                        "#define M ##\n$M\n"_s,
                                        FileKind::Orchestra);
    const qsizetype label = outline.Find(u"ins1lbl2"_s);
    ASSERT_GE(label, 0);
    EXPECT_EQ(outline.Caption(label), u"b:");
    EXPECT_EQ(outline.Row(label), 1);
    EXPECT_EQ(outline.Key(outline.At(label).parent), u"ins1");
    const qsizetype call = outline.Find(u"mac2cal1"_s);
    ASSERT_GE(call, 0);
    EXPECT_EQ(outline.At(call).tag, outline.At(outline.Find(u"mac1cal3"_s)).tag);
    EXPECT_EQ(outline.ChildCount(call), 0);
    for (const QString &key :
         {u""_s, u"ins"_s, u"ins0"_s, u"ins3"_s, u"ins01"_s, u"ins1lbl0"_s, u"ins1lbl3"_s, u"ins1cal1"_s,
          u"mac2cal2"_s, u"mac3cal1"_s, u"lbl1"_s, u"root"_s, u"rootinc"_s, u"tag1"_s, u"7"_s})
        EXPECT_EQ(outline.Find(key), -1) << qPrintable(key);
    EXPECT_EQ(Outline().ChildCount(-1), 0);
    EXPECT_EQ(Outline().Find(u"ins1"_s), -1);
}

TEST(Outline, ManyMacrosOfOneNameShareTheirCalls)
{
    constexpr qsizetype Macros = 20000;
    const Outline outline = ScanOutline(u"#define A #1#\n$A\n"_s.repeated(Macros), FileKind::Orchestra);
    EXPECT_EQ(outline.Count(), 1 + Macros + Macros * (Macros + 1) / 2);
    EXPECT_EQ(outline.ChildCount(outline.Find(u"mac1"_s)), Macros);
    const qsizetype last = outline.Find(u"mac20000cal1"_s);
    EXPECT_EQ(last, outline.Count() - 1);
    EXPECT_EQ(outline.At(last).tag, 17 * Macros - 3);
}

TEST(Outline, NoTextMakesItSlow)
{
    constexpr qsizetype size = 200'000; // a scan that were not linear would take minutes
    const auto chain = [](QStringView piece) { return piece.toString().repeated(size / piece.size()); };
    const QStringList texts = {
        u"#define "_s + QString(size / 2, u'$') + u'#' + QString(size / 2, u'$'),
        u"#define "_s + chain(u"$a") + u'#' + chain(u"$a"),
        u"#define "_s + chain(u"$a") + u"b#"_s + chain(u"$a"),
        u"#define "_s + QString(size / 2, u'a') + u'#' + chain(u"$a"),
        chain(u"#define A #1# $A("),
        u"#define A #1#"_s + chain(u"$A("),
        chain(u"#define"),
        chain(u"#define "),
        chain(u"#include "),
        chain(u"#include"),
        u"; "_s + chain(u"$A instr : #include x #define A # m s "),
        chain(u"instr "),
        chain(u"instr ") + u"endin"_s,
        chain(u";instr\n"),
        chain(u"instr endin "),
        u"instr "_s + QString(size, u':') + u" endin"_s,
        u"instr "_s + chain(u"a:") + u" endin"_s,
        u"instr "_s + chain(u" :") + u" endin"_s,
        chain(u"f "),
        u"f "_s + chain(u"/ f"),
        u"f "_s + QString(size, u'/'),
        chain(u"m "),
        chain(u"s "),
        chain(u"/* "),
        chain(u"/*/ s "),
        QString(size, u'<'),
        chain(u"<a>"),
        chain(u"<a>") + chain(u"</a>"),
        chain(u"<a></a>"),
        QString(size, u'$'),
        QString(size, u'\0'),
    };
    for (const QString &text : texts) {
        QElapsedTimer timer;
        timer.start();
        for (const FileKind kind : {FileKind::Orchestra, FileKind::Score, FileKind::Unified})
            ScanOutline(text, kind);
        ScanOutline(u"<CsInstruments>"_s + text + u"</CsInstruments><CsScore>"_s + text + u"</CsScore>"_s,
                    FileKind::Unified);
        EXPECT_LT(timer.elapsed(), 20000)
            << "a text of " << ::testing::PrintToString(text.left(20)) << " and so on";
    }
}

TEST(Outline, AWholeWordMayTouchNothingBeyondItsPartOfTheText)
{
    // The letter behind the last word stands outside of what is searched.
    EXPECT_EQ(Unified(u"<CsScore>\nm</CsScore>"_s).filter(u"nse"_s), QStringList{u"nse1=</CsScore>"_s});
    EXPECT_EQ(Unified(u"x<CsInstruments>\ninstr 1\nendin</CsInstruments>"_s).filter(u"ins"_s),
              QStringList{u"ins1=1"_s});
}

TEST(Outline, AnOtherDocumentHasNone)
{
    EXPECT_EQ(ScanOutline(u"instr 1\nendin\n#define A #1#"_s, FileKind::Other).Count(), 0);
}

TEST(Outline, AnEmptyOrchestraHasNoNodesAndAnEmptyScoreOneSection)
{
    EXPECT_EQ(ScanOutline({}, FileKind::Orchestra).Count(), 0);
    EXPECT_EQ(Lines(ScanOutline({}, FileKind::Score)),
              (QStringList{u" > rootsec [section ] Sections"_s, u"rootsec > sec0 [section 0] Section 1"_s}));
    EXPECT_EQ(Lines(ScanOutline({}, FileKind::Unified)), QStringList{u" > rootags [csd ] Tags"_s});
}

TEST(Outline, AnInstrumentTakesTheWholeRestOfItsLine)
{
    EXPECT_EQ(Orchestra(u"instr 1, 2 ; bass\nendin"_s), QStringList{u"ins1=1, 2 ; bass"_s});
    EXPECT_EQ(Orchestra(u"instr\t 1 ,\t2\r\nendin"_s), QStringList{u"ins1=1 , 2"_s});
    EXPECT_EQ(Orchestra(u"instr\nendin"_s), QStringList{u"ins1="_s});
}

TEST(Outline, WithoutItsEndAnInstrumentAndThoseBehindItAreNotListed)
{
    EXPECT_EQ(Orchestra(u"instr 1\na1 = 0\n"_s), QStringList());
    EXPECT_EQ(Orchestra(u"instr 1\nendin\ninstr 2\n"_s), QStringList{u"ins1=1"_s});
    // The first takes the end of the second.
    EXPECT_EQ(Orchestra(u"instr 1\ninstr 2\nendin\n"_s), QStringList{u"ins1=1"_s});
}

TEST(Outline, ACommentedInstrumentDoesNotCountButACommentedEndDoes)
{
    EXPECT_EQ(Orchestra(u";instr 1\ninstr 2\nendin\n"_s), QStringList{u"ins1=2"_s});
    EXPECT_EQ(Orchestra(u"/* instr 1 */\ninstr 2\nendin\n"_s), QStringList{u"ins1=2"_s});
    EXPECT_EQ(ScanOutline(u"instr 1\n;endin\nendin\n"_s, FileKind::Orchestra).Instrument(1),
              (TextSpan{0, 14}));
}

TEST(Outline, AnInstrumentIsAWholeWordInAnyCase)
{
    EXPECT_EQ(Orchestra(u"Instrument 1\nendin"_s), QStringList());
    EXPECT_EQ(Orchestra(u"instr 1\nendinx"_s), QStringList());
    EXPECT_EQ(Orchestra(u"_instr 1\nendin"_s), QStringList());
    EXPECT_EQ(Orchestra(u"INSTR 1\nEndIn"_s), QStringList{u"ins1=1"_s});
}

TEST(Outline, AHitInAStringCounts)
{
    EXPECT_EQ(Orchestra(u"prints \"instr 1\"\nendin"_s), QStringList{u"ins1=1\""_s});
    EXPECT_EQ(Orchestra(u"prints \"#define A #1#\" \"$A\""_s), (QStringList{u"mac1=A"_s, u"mac1cal1=A"_s}));
    EXPECT_EQ(Orchestra(u"prints \"#include <x>\""_s), QStringList{u"inc1=x>"_s});
    EXPECT_EQ(Score(u"i1 0 1 \"s\" \"m v\" \" f 1 0 8 2 \""_s),
              (QStringList{u"sec1=Section 2"_s, u"nse1=v\" \" f 1 0 8 2 \""_s, u"ftb1=1 GEN2 8"_s}));
}

TEST(Outline, ALabelIsALoneWordAtTheStartOfALine)
{
    const auto labels = [](const QString &line) {
        return Orchestra(u"instr 1\n"_s + line + u"\nendin\n"_s).mid(1);
    };
    EXPECT_EQ(labels(u"loop: a1 = 1"_s), QStringList{u"ins1lbl1=loop:"_s});
    EXPECT_EQ(labels(u"\t  loop:"_s), QStringList{u"ins1lbl1=loop:"_s});
    EXPECT_EQ(labels(u"if (x) goto y:"_s), QStringList());
    EXPECT_EQ(labels(u"x goto y:"_s), QStringList());
    EXPECT_EQ(labels(u"oscil:k(1, 2)"_s), QStringList{u"ins1lbl1=oscil:"_s});
    EXPECT_EQ(labels(u"f(oscil:k)"_s), QStringList()) << "a bracket is no part of a label";
    EXPECT_EQ(labels(u";loop:"_s), QStringList());
    EXPECT_EQ(labels(u"loop :"_s), QStringList());
    EXPECT_EQ(labels(u"a:b: c"_s), (QStringList{u"ins1lbl1=a:"_s, u"ins1lbl2=a:b:"_s}));
    EXPECT_EQ(labels(u":"_s), QStringList{u"ins1lbl1=:"_s});
}

TEST(Outline, ALabelWalkEndsAtTheStartOfTheText)
{
    EXPECT_EQ(Orchestra(u"instr:1\nendin"_s), (QStringList{u"ins1=:1"_s, u"ins1lbl1=instr:"_s}));
}

TEST(Outline, AMacroIsTakenUpToTheHash)
{
    EXPECT_EQ(Orchestra(u"#define FOO(a'b) #x#"_s), QStringList{u"mac1=FOO(a'b)"_s});
    EXPECT_EQ(Orchestra(u"#define  FOO \t #x#"_s), QStringList{u"mac1=FOO"_s});
    EXPECT_EQ(Orchestra(u"#define FOO\n  #x#"_s), QStringList{u"mac1=FOO"_s}) << "it may span lines";
    EXPECT_EQ(Orchestra(u"#define FOO bar"_s), QStringList{u"mac1=FOO bar"_s});
    EXPECT_EQ(Orchestra(u"#defined FOO #x#"_s), QStringList());
    EXPECT_EQ(Orchestra(u"; #define FOO #x#"_s), QStringList());
    EXPECT_EQ(Orchestra(u"#DeFine FOO #x#"_s), QStringList{u"mac1=FOO"_s});
}

TEST(Outline, TheFirstCharacterBehindDefineIsPassedOver)
{
    EXPECT_EQ(Orchestra(u"#define+FOO #x#"_s), QStringList{u"mac1=FOO"_s});
    EXPECT_EQ(Orchestra(u"#define#FOO #x#"_s), QStringList{u"mac1=FOO"_s});
    EXPECT_EQ(Orchestra(u"#define"_s), QStringList{u"mac1="_s});
}

TEST(Outline, CallsOfAMacroHaveTheirArguments)
{
    const QString text = u"$FOO\n#define FOO(a'b) #x#\n$FOO(1'2) + $FOO $FOO(3\n) ;$FOO\n$FOOD $foo a$FOO"_s;
    EXPECT_EQ(Orchestra(text), (QStringList{u"mac1=FOO(a'b)"_s, u"mac1cal1=FOO(1'2)"_s, u"mac1cal2=FOO"_s,
                                            u"mac1cal3=FOO"_s}));
    EXPECT_EQ(Orchestra(u"#define A[x] #1#\n$A[x]"_s), (QStringList{u"mac1=A[x]"_s, u"mac1cal1=A[x]"_s}))
        << "only a round bracket ends the bare name";
}

TEST(Outline, MacrosOfOneNameHaveTheCallsBehindThem)
{
    EXPECT_EQ(Orchestra(u"#define A #1#\n$A\n#define A #2#\n$A"_s),
              (QStringList{u"mac1=A"_s, u"mac1cal1=A"_s, u"mac1cal2=A"_s, u"mac2=A"_s, u"mac2cal1=A"_s}));
}

TEST(Outline, TheFirstSectionAlwaysExists)
{
    EXPECT_EQ(Children(u"i1 0 1\ns\ni1 0 1\ns 4\nS\ns1\n;s\n"_s, FileKind::Score),
              (QStringList{u"sec0=Section 1"_s, u"sec1=Section 2"_s, u"sec2=Section 3"_s}));
}

TEST(Outline, ANamedSectionTakesTheRestOfTheLine)
{
    EXPECT_EQ(Score(u"m  verse \t 1 ; x\nmain\nM x\n"_s), QStringList{u"nse1=verse 1 ; x"_s});
    EXPECT_EQ(Score(u"; m verse\n/* m verse */"_s), QStringList());
}

TEST(Outline, ATableNeedsFourFieldsAndANumber)
{
    EXPECT_EQ(Score(u"f 1 0 4096 10 1\n"_s), QStringList{u"ftb1=1 GEN10 4096"_s});
    EXPECT_EQ(Score(u"f1 0 4096 10 1\n"_s), QStringList{u"ftb1=1 GEN10 4096"_s});
    EXPECT_EQ(Score(u"f 0 10 20 30 \n"_s), QStringList());
    EXPECT_EQ(Score(u"f0 10 20 30 \n"_s), QStringList());
    EXPECT_EQ(Score(u"f 1 0 4096"_s), QStringList());
    EXPECT_EQ(Score(u"F 1 0 4096 10 1\n"_s), QStringList());
    EXPECT_EQ(Score(u"xf 1 0 4096 10 1\n"_s), QStringList());
    EXPECT_EQ(Score(u";f 1 0 4096 10 1\n"_s), QStringList());
}

TEST(Outline, AnyWordThatBeginsWithFStartsATable)
{
    EXPECT_EQ(Score(u"foo 1 2 3 "_s), QStringList{u"ftb1=oo GEN3 2"_s});
}

TEST(Outline, TheFieldsOfATableMaySpanLines)
{
    EXPECT_EQ(Score(u"f 1 0\n4096\r\n10\n"_s), QStringList{u"ftb1=1 GEN10 4096"_s});
}

TEST(Outline, ATableEndsAtAComment)
{
    EXPECT_EQ(Score(u"f 1 0 4096 ;10 1\n"_s), QStringList());
    EXPECT_EQ(Score(u"f 1 0 4096 /*10 1\n"_s), QStringList());
}

TEST(Outline, AFieldLeavesOutItsSlashesFromItsLength)
{
    EXPECT_EQ(Score(u"f 1/2 0 4/0/9/6 10 1\n"_s), QStringList{u"ftb1=1/ GEN10 4/0/"_s});
    EXPECT_EQ(Score(u"f / 1 0 4096 10 1\n"_s), QStringList{u"ftb1=1 GEN10 4096"_s});
}

TEST(Outline, AnUnendedFieldHasTheLengthOfTheOneBefore)
{
    EXPECT_EQ(Score(u"f 1 0 8 10"_s), QStringList{u"ftb1=1 GEN 8"_s});
    EXPECT_EQ(Score(u"f 1 0 8 10;"_s), QStringList{u"ftb1=1 GEN 8"_s});
    EXPECT_EQ(Score(u"f 1 0 8 2 1\nf 2 0 16 10;"_s), (QStringList{u"ftb1=1 GEN2 8"_s, u"ftb2=2 GEN1 16"_s}));
    EXPECT_EQ(Score(u"f 0 1 1 12 1\nf 2 0 16 10;"_s), QStringList{u"ftb1=2 GEN10 16"_s})
        << "also of one that is not listed";
    EXPECT_EQ(Score(u"f 1 0 8 777 1\nf 2 0 16 4"_s), (QStringList{u"ftb1=1 GEN777 8"_s, u"ftb2=2 GEN4 16"_s}))
        << "no further than the text";
}

TEST(Outline, AnIncludeLosesItsDelimiters)
{
    EXPECT_EQ(Orchestra(u"#include \"a.orc\""_s), QStringList{u"inc1=a.orc"_s});
    EXPECT_EQ(Orchestra(u"#include  <a  b.orc> ; old\n"_s), QStringList{u"inc1=a b.orc"_s});
    EXPECT_EQ(Orchestra(u"#include abcd"_s), QStringList{u"inc1=bc"_s});
    EXPECT_EQ(Orchestra(u"#INCLUDE \"a.orc\""_s), QStringList{u"inc1=a.orc"_s});
    EXPECT_EQ(Orchestra(u"; #include \"a.orc\"\n/* #include \"b.orc\" */"_s), QStringList());
    EXPECT_EQ(Orchestra(u"#included \"a.orc\" x#include \"a.orc\""_s), QStringList());
    EXPECT_EQ(Orchestra(u"#include ab"_s), QStringList());
    EXPECT_EQ(Orchestra(u"#include \"\""_s), QStringList());
    EXPECT_EQ(Orchestra(u"#include a b"_s), QStringList{u"inc1= "_s});
}

TEST(Outline, TagsNestAndCountAllNodes)
{
    EXPECT_EQ(Unified(u"<a><b></b><c></c></a><d></d> "_s),
              (QStringList{u"tag1=a"_s, u"tag2=b"_s, u"tag3=c"_s, u"tag4=d"_s}));
}

TEST(Outline, AnUnpairedTagStopsTheListingOfItsLevel)
{
    EXPECT_EQ(Unified(u"<a><x><b></b></a><d></d> "_s), (QStringList{u"tag1=a"_s, u"tag2=d"_s}));
    EXPECT_EQ(Unified(u"<a></a><x><d></d> "_s), QStringList{u"tag1=a"_s});
}

TEST(Outline, TheLastCharacterClosesNoOpeningTag)
{
    EXPECT_EQ(Unified(u"<a></a>"_s), QStringList{u"tag1=a"_s});
    EXPECT_EQ(Unified(u"</a><a>"_s), QStringList());
}

TEST(Outline, ACommentedTagIsKept)
{
    const Outline outline = ScanOutline(u";<a>\n</a>\n<b></b> "_s, FileKind::Unified);
    ASSERT_EQ(outline.Count(), 3);
    EXPECT_TRUE(outline.At(1).isCommented);
    EXPECT_FALSE(outline.At(2).isCommented);
}

TEST(Outline, ASectionTagInTheWrongOrderGivesNoHits)
{
    EXPECT_EQ(Unified(u"</CsScore>\nf 1 0 8 2 1\ns\n<CsScore>\n"_s), QStringList{u"sec0=Section 1"_s});
    EXPECT_EQ(Unified(u"</CsInstruments>\ninstr 1\nendin\n<CsInstruments>\n"_s), QStringList());
    EXPECT_EQ(Unified(u"<csscore>\ns\n</csscore>\n"_s), QStringList{u"tag1=csscore"_s});
}

TEST(Outline, ATableOfAUnifiedDocumentMayEndBehindItsTag)
{
    EXPECT_EQ(Unified(u"<CsScore>\nf 1 0 8 </CsScore> x\n"_s),
              (QStringList{u"tag1=CsScore"_s, u"sec0=Section 1"_s, u"ftb1=1 GEN</CsScore 8"_s}));
    EXPECT_EQ(Unified(u"<CsScore>\n</CsScore>\nf 1 0 8 2 1\n"_s),
              (QStringList{u"tag1=CsScore"_s, u"sec0=Section 1"_s}));
}

TEST(Outline, ATagMayHaveAnyName)
{
    EXPECT_EQ(Unified(u"<a b></a b><></><A\nB></A\nB> "_s),
              (QStringList{u"tag1=a b"_s, u"tag2="_s, u"tag3=A\nB"_s}));
    const Outline outline = ScanOutline(u"<A\nB></A\nB> "_s, FileKind::Unified);
    EXPECT_EQ(outline.ShownCaption(1), u"A B") << "one line";
}

TEST(Outline, AShownCaptionIsCutWhereItIsTooLong)
{
    for (const int length : {299, 300, 301, 5000}) {
        const QString name(length, u'x');
        const Outline outline = ScanOutline(u"instr "_s + name + u"\nendin"_s, FileKind::Orchestra);
        EXPECT_EQ(outline.Caption(1), name);
        EXPECT_EQ(outline.ShownCaption(1), length <= 300 ? name : QString(299, u'x') + u'\u2026');
    }
}

TEST(Outline, InstrumentsOfAUnifiedDocumentLieBetweenTheirTags)
{
    EXPECT_EQ(Unified(u"instr 9\nendin\n<CsInstruments>\ninstr 1\n</CsInstruments>\nendin\n"_s),
              QStringList{u"tag1=CsInstruments"_s});
}

} // namespace zelvane::test
