// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/runmessages.h"

#include "console/ansireader.h"
#include "console/linestore.h"
#include "console/messageplace.h"
#include "console/styledline.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <string>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

/// A file of a broken piece. The line that the first error is to lead to begins with "@", which is not
/// written.
struct PieceFile {
    const char *name;
    const char *text;
};

/// A piece that Csound has something against. Its output as recorded stands in messages/<name>.
struct BrokenPiece {
    const char *name;
    std::vector<PieceFile> files;
    const char *says; ///< a part of the first message
    std::vector<const char *> arguments = {"piece.csd"};
    bool isWarning = false;

    friend void PrintTo(const BrokenPiece &piece, std::ostream *out) { *out << piece.name; }
};

#define HEAD                                                                                                 \
    "<CsoundSynthesizer>\n<CsOptions>\n-d -n\n</CsOptions>\n<CsInstruments>\nsr = 44100\nksmps = 32\n"       \
    "nchnls = 1\n0dbfs = 1\n"
#define MIDDLE "</CsInstruments>\n<CsScore>\n"
#define TAIL "e\n</CsScore>\n</CsoundSynthesizer>\n"
#define PIECE(orchestra) HEAD orchestra MIDDLE "i 1 0 1\n" TAIL
#define ORCHESTRA "sr = 44100\nksmps = 32\nnchnls = 1\n"

const std::vector<BrokenPiece> pieces{
    {"comma", {{"piece.csd", PIECE("instr 1\na1 oscil 0.2, 440,\n@out a1\nendin\n")}}, "syntax error"},
    {"operator", {{"piece.csd", PIECE("instr 1\n@a1 = = 3\nout a1\nendin\n")}}, "syntax error"},
    {"bracket", {{"piece.csd", PIECE("instr 1\n@a1 = (3 + 4\nout a1\nendin\n")}}, "unexpected NEWLINE"},
    {"tabs", {{"piece.csd", PIECE("instr 1\n\ta1\toscil\t0.2,\t440,\n@\tout\ta1\nendin\n")}}, "syntax error"},
    {"pcends",
     {{"piece.csd", PIECE("instr 1\r\n@a1 nosuch 1\r\nout a1\r\nendin\r\n")}},
     "(token \"nosuch\")"},
    {"opcode",
     {{"piece.csd", PIECE("instr 1\n@a1 oscilxx 0.2, 440\nout a1\nendin\n")}},
     "(token \"oscilxx\")"},
    {"function", {{"piece.csd", PIECE("instr 1\n@a1 = nofunc(3)\nout a1\nendin\n")}}, "INTEGER_TOKEN"},
    {"character", {{"piece.csd", PIECE("instr 1\n@a1 = 3 ` 4\nout a1\nendin\n")}}, "character `"},
    {"undefined",
     {{"piece.csd", PIECE("instr 1\n@a1 oscil kamp, 440\nout a1\nendin\n")}},
     "'kamp' used before"},
    {"undefinedtwice",
     {{"piece.csd", PIECE("instr 1\nkb = 1\nkc = 2\n@k1 oscil a1, 440\na1 = k1\nout a1\nendin\n")}},
     "'a1' used before"},
    {"label",
     {{"piece.csd", PIECE("instr 1\n@goto nowhere\na1 = 1\nout a1\nendin\n")}},
     "'nowhere' used before"},
    {"array", {{"piece.csd", PIECE("instr 1\n@k1 = kArr[2]\nout a(k1)\nendin\n")}}, "'kArr' used before"},
    {"types", {{"piece.csd", PIECE("instr 1\n@a1 pvsanal 1,2,3,4,5\nendin\n")}}, "entry for 'pvsanal'"},
    {"typesofnothing", {{"piece.csd", PIECE("instr 1\n@out 1, 2, 3\nendin\n")}}, "entry for 'out'"},
    {"noarguments", {{"piece.csd", PIECE("instr 1\n@a1 oscil\nout a1\nendin\n")}}, "entry for 'oscil'"},
    {"rates", {{"piece.csd", PIECE("instr 1\nk1 = 1\n@i2 = k1\nout a(k1)\nendin\n")}}, "entry for '='"},
    {"udo",
     {{"piece.csd",
       PIECE("opcode foo, a, k\nk1 xin\na1 = k1 +\n@xout a1\nendop\ninstr 1\na1 foo 1\nout a1\nendin\n")}},
     "(token \"xout\")"},
    {"udovariable",
     {{"piece.csd",
       PIECE("opcode foo, a, k\nk1 xin\n@a1 = k1 + anone\nxout a1\nendop\ninstr 1\na1 foo 1\nendin\n")}},
     "'anone' used before"},
    {"noendin",
     {{"piece.csd", HEAD "instr 1\na1 oscil 0.2, 440\nout a1\n@" MIDDLE "i 1 0 1\n" TAIL}},
     "unexpected end of file"},
    {"noendinbetween",
     {{"piece.csd", PIECE("instr 1\na1 oscil 0.2, 440\nout a1\n\n@instr 2\nout a(1)\nendin\n")}},
     "(token \"instr\")"},
    {"noendif", {{"piece.csd", PIECE("instr 1\nif p4 == 1 then\na1 = 3\nout a1\n@endin\n")}}, "ENDIN_TOKEN"},
    {"endintwice", {{"piece.csd", PIECE("instr 1\nout a(1)\nendin\n@endin\n")}}, "expecting end of file"},
    {"instrnumber", {{"piece.csd", PIECE("instr\n@a1 oscil 1\nout a1\nendin\n")}}, "(token \"a1\")"},
    {"sampleblock", {{"piece.csd", PIECE("instr 1\n@ksmps = 4\nendin\n")}}, "(token \"ksmps\")"},
    {"macro", {{"piece.csd", PIECE("instr 1\n@a1 = $NOMAC\nout a1\nendin\n")}}, "Undefined macro: '$NOMAC'"},
    {"macrolines",
     {{"piece.csd", PIECE("#define FOO #\na1 = 1\na2 = 2\n#\ninstr 1\n$FOO\n@a1 nosuch 1\nout a1\nendin\n")}},
     "(token \"nosuch\")"},
    {"continued",
     {{"piece.csd", PIECE("instr 1\na1 oscil 3, \\\n  440, \\\n 7\n@a1 nosuch 1\nout a1\nendin\n")}},
     "(token \"nosuch\")"},
    {"textbefore",
     {{"piece.csd", "; a line\n\n; another\n" PIECE("instr 1\n@a1 nosuch 1\nout a1\nendin\n")}},
     "(token \"nosuch\")"},
    {"ftable",
     {{"piece.csd", PIECE("instr 1\n@a1 oscil 0.2, 440, 99\nout a1\nendin\n")}},
     "Invalid ftable no. 99"},
    {"soundfile",
     {{"piece.csd", PIECE("instr 1\n@a1 diskin2 \"none.wav\", 1\nout a1\nendin\n")}},
     "none.wav"},
    {"headertable",
     {{"piece.csd", PIECE("\n@gi1 ftgen 1,0,1024,-23,\"none.txt\"\ninstr 1\nendin\n")}},
     "ftgen error"},
    {"performance",
     {{"piece.csd", PIECE("instr 1\nk2[] init 3\nk1 init 5\n@k3 = k2[k1]\nout a(k3)\nendin\n")}},
     "PERF ERROR in instr 1"},
    {"performanceudo",
     {{"piece.csd", PIECE("opcode foo,k,k\nk1 xin\nk2[] init 3\n@k3 = k2[k1+5]\nxout k3\nendop\ninstr 1\nk3 "
                          "foo 1\nendin\n")}},
     "PERF ERROR in instr 1"},
    {"included",
     {{"piece.csd", PIECE("#include \"part.orc\"\ninstr 1\nendin\n")},
      {"part.orc", "\ninstr 2\na1 oscil .2, 440\n@a2 nosuch 3\nendin\n"}},
     "(token \"nosuch\")"},
    {"includedinit",
     {{"piece.csd", HEAD "#include \"part.orc\"\ninstr 1\nendin\n" MIDDLE "i 2 0 1\n" TAIL},
      {"part.orc", "\ninstr 2\n@a1 oscil .2, 440, 88\nout a1\nendin\n"}},
     "Invalid ftable no. 88"},
    {"includedvariable",
     {{"piece.csd", PIECE("#include \"part.orc\"\ninstr 1\nendin\n")},
      {"part.orc", "\ninstr 2\n@a1 oscil knone, 440\nout a1\nendin\n"}},
     "'knone' used before"},
    {"includedtypes",
     {{"piece.csd", PIECE("#include \"part.orc\"\ninstr 1\nendin\n")},
      {"part.orc", "\ninstr 2\n@a1 oscil \"x\", \"y\", \"z\"\nout a1\nendin\n"}},
     "entry for 'oscil'"},
    {"includedtwice",
     {{"piece.csd", PIECE("#include \"one.orc\"\ninstr 1\nendin\n")},
      {"one.orc", "; one\n#include \"two.orc\"\n"},
      {"two.orc", "; two\n\ninstr 4\n@a1 nosuch 3\nendin\n"}},
     "(token \"nosuch\")"},
    {"afterincluded",
     {{"piece.csd", PIECE("#include \"part.orc\"\ninstr 1\n@a1 nosuch 3\nendin\n")},
      {"part.orc", "instr 2\n\n\nendin\n"}},
     "(token \"nosuch\")"},
    {"noinclude",
     {{"piece.csd", PIECE("\n@#include \"none.orc\"\ninstr 1\nendin\n")}},
     "#include'd file none.orc"},
    {"noscoreinclude",
     {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "i 1 0 1\n@#include \"none.sco\"\n" TAIL}},
     "#include'd file none.sco"},
    {"orchestra",
     {{"a.orc", ORCHESTRA "instr 1\n@a1 nosuch 440\nout a1\nendin\n"}, {"a.sco", "i 1 0 1\ne\n"}},
     "(token \"nosuch\")",
     {"-d", "-n", "a.orc", "a.sco"}},
    {"orchestraend",
     {{"a.orc", ORCHESTRA "instr 1\na1 oscil 1, 440\nout a1\n@"}, {"a.sco", "i 1 0 1\ne\n"}},
     "unexpected end of file",
     {"-d", "-n", "a.orc", "a.sco"}},
    {"orchestravariable",
     {{"a.orc", ORCHESTRA "instr 1\n@a1 oscil kx, 440\nout a1\nendin\n"}, {"a.sco", "i 1 0 1\ne\n"}},
     "'kx' used before",
     {"-d", "-n", "a.orc", "a.sco"}},
    // From here on the messages name no line.
    {"score",
     {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "i 1 0 1\nq q q\n" TAIL}},
     "sread: unexpected char q"},
    {"scoreopcode", {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "X\n" TAIL}}, "sread: "},
    {"scorebracket", {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "i 1 [3+ 2\n" TAIL}}, "score error:"},
    {"scorebrace",
     {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "i 1 0 1\n}\n" TAIL}},
     "unmatched } in score"},
    {"noinstrument",
     {{"piece.csd", HEAD "instr 1\nendin\n" MIDDLE "i 7 0 1\n" TAIL}},
     "instr 7(200) undefined"},
    {"string", {{"piece.csd", PIECE("instr 1\na1 diskin2 \"abc\nout a1\nendin\n")}}, "to terminate string"},
    {"comment", {{"piece.csd", PIECE("instr 1\n/* open\nendin\n")}}, "Missing end tag </CsInstruments>"},
    {"ifdef", {{"piece.csd", PIECE("#ifdef X\ninstr 1\nendin\n")}}, "Unmatched #ifdef"},
    {"redefined", {{"piece.csd", PIECE("instr 1\nendin\ninstr 1\nendin\n")}}, "instr 1 redefined"},
    {"nocsd", {{"piece.csd", "hello\n"}}, "Could not find <CsoundSynthesizer>"},
    {"nofile", {}, "Reading CSD failed"},
    {"noscore",
     {{"a.orc", ORCHESTRA "instr 1\nendin\n"}},
     "cannot open scorefile",
     {"-d", "-n", "a.orc", "a.sco"}},
    // Of a score Csound tells no line, only a place within the section; what it quotes leads to the line.
    {"pairscore",
     {{"a.orc", ORCHESTRA "instr 1\nendin\n"}, {"a.sco", "i 1 0 1\ni 1 0 foo\ne\n"}},
     "sread: unexpected char f",
     {"-d", "-n", "a.orc", "a.sco"}},
    {"pairscoremacro",
     {{"a.orc", ORCHESTRA "instr 1\nendin\n"}, {"a.sco", "i 1 0 1\n@i 1 0 $NOMAC\ne\n"}},
     "Undefined macro: '$NOMAC'",
     {"-d", "-n", "a.orc", "a.sco"}},
    {"pairscoreinclude",
     {{"a.orc", ORCHESTRA "instr 1\nendin\n"}, {"a.sco", "i 1 0 1\n@#include \"none.inc\"\ne\n"}},
     "none.inc",
     {"-d", "-n", "a.orc", "a.sco"}},
    {"noorchestra", {{"a.sco", "i 1 0 1\n"}}, "failed to open input file", {"-d", "-n", "a.orc", "a.sco"}},
    {"output",
     {{"piece.csd", "<CsoundSynthesizer>\n<CsInstruments>\ninstr 1\nendin\n" MIDDLE "i 1 0 .1\n" TAIL}},
     "sfinit: cannot open",
     {"-d", "-o", "none/x.wav", "piece.csd"}},
    {"warning",
     {{"piece.csd", PIECE("a1 oscil 1, 440\ninstr 1\nendin\n")}},
     "perf-time code in global space",
     {"piece.csd"},
     true},
    {"clipping",
     {{"piece.csd", PIECE("instr 1\nout a(3)\nendin\n")}},
     "samples out of range",
     {"piece.csd"},
     true},
};

struct FoundMessage {
    std::optional<RunMessage> message = {};
    qint64 lines = 0;
    qint64 marks = 0;
    qint64 firstMarked = -1;
};

/// Reads an output. @return the first error, or where there is none the first warning
FoundMessage FirstMessage(const QByteArray &output)
{
    FoundMessage found;
    RunMessages messages;
    std::optional<RunMessage> warning;
    AnsiReader reader([&](const StyledLine &line) {
        const LineMark mark = messages.Take(found.lines, line.text);
        if (mark != LineMark::None) {
            ++found.marks;
            if (found.firstMarked < 0)
                found.firstMarked = found.lines;
            if (!warning)
                warning = *messages.At(found.lines);
        }
        ++found.lines;
    });
    reader.Read(output);
    reader.Finish();
    found.message = messages.FirstError() ? messages.FirstError() : warning;
    return found;
}

struct BrokenPieceTest : testing::TestWithParam<BrokenPiece> {
    QTemporaryDir folder;
    std::optional<MessagePlace> expected;
    QStringList arguments;

    void SetUp() override
    {
        for (const PieceFile &file : GetParam().files) {
            QByteArray text(file.text);
            const QString path = QDir(folder.path()).canonicalPath() + u'/' + QString::fromLatin1(file.name);
            qsizetype mark = text.startsWith('@') ? 0 : text.indexOf("\n@");
            if (mark >= 0) {
                if (text[mark] == '\n')
                    ++mark;
                text.remove(mark, 1);
                expected = MessagePlace{path, int(text.first(mark).count('\n')) + 1};
            }
            QFile out(path);
            ASSERT_TRUE(out.open(QIODevice::WriteOnly));
            out.write(text);
        }
        for (const char *argument : GetParam().arguments)
            arguments.append(QString::fromLatin1(argument));
    }

    static QString Recorded()
    {
        return QStringLiteral(ZELVANE_SOURCE_DIR "/tests/core/messages/") +
               QString::fromLatin1(GetParam().name);
    }

    void Check(const QByteArray &output) const
    {
        const FoundMessage found = FirstMessage(output);
        ASSERT_TRUE(found.message) << output.constData();
        EXPECT_TRUE(found.message->text.contains(QLatin1String(GetParam().says)))
            << found.message->text.toStdString();
        EXPECT_EQ(found.message->mark, GetParam().isWarning ? LineMark::Warning : LineMark::Error);
        const PlaceSources sources{.folder = QDir(folder.path()).canonicalPath(),
                                   .documents = DocumentsOf(arguments)};
        const std::optional<MessagePlace> place = FindPlace(*found.message, sources);
        ASSERT_EQ(place.has_value(), expected.has_value()) << output.constData();
        if (place) {
            EXPECT_EQ(place->path, expected->path);
            EXPECT_EQ(place->line, expected->line) << output.constData();
        }
    }
};

/// The program to try the pieces on; empty where it is not there, or speaks otherwise.
QString InstalledCsound()
{
    static const QString found = [] {
        const QString csound = QStandardPaths::findExecutable(u"csound"_s);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(csound, {u"--version"_s});
        return process.waitForFinished(120'000) && process.readAll().contains("version 6.18") ? csound
                                                                                              : QString();
    }();
    return found;
}

std::string NameOf(const testing::TestParamInfo<BrokenPiece> &info)
{
    return info.param.name;
}

} // namespace

TEST_P(BrokenPieceTest, LeadsToItsLineAsRecorded)
{
    QFile file(Recorded());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    Check(file.readAll());
}

TEST_P(BrokenPieceTest, LeadsToItsLineWithTheInstalledCsound)
{
    const QString csound = InstalledCsound();
    if (csound.isEmpty())
        GTEST_SKIP() << "csound 6.18 is not installed";
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(csound, arguments);
    ASSERT_TRUE(process.waitForFinished(120'000));
    const QByteArray output = process.readAll();
    if (qEnvironmentVariableIsSet("ZELVANE_RECORD_MESSAGES")) {
        QFile file(Recorded());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(output);
    }
    Check(output);
}

INSTANTIATE_TEST_SUITE_P(RunMessages, BrokenPieceTest, testing::ValuesIn(pieces), NameOf);

TEST(RunMessages, AllLinesOfAMessageBelongToIt)
{
    RunMessages messages;
    EXPECT_EQ(messages.Take(0, u"orch now loaded"_s), LineMark::None);
    EXPECT_EQ(messages.Take(1, u"error: syntax error, unexpected T_IDENT  (token \"nosuch\")"_s),
              LineMark::Error);
    EXPECT_EQ(messages.Take(2, u" from file a.csd (1), line 12:"_s), LineMark::None);
    EXPECT_EQ(messages.Take(3, u" >>> a1 nosuch <<<"_s), LineMark::None);
    EXPECT_EQ(messages.Take(4, u"something else"_s), LineMark::None);
    EXPECT_EQ(messages.At(0), nullptr);
    EXPECT_EQ(messages.At(4), nullptr);
    for (const qint64 line : {1, 2, 3}) {
        ASSERT_NE(messages.At(line), nullptr);
        EXPECT_EQ(messages.At(line)->line, 12);
        EXPECT_EQ(messages.At(line)->files, QStringList{u"a.csd"_s});
        EXPECT_EQ(messages.At(line)->context, u"a1 nosuch"_s);
    }
    ASSERT_TRUE(messages.FirstError());
    EXPECT_EQ(messages.FirstError()->context, u"a1 nosuch"_s);
}

TEST(RunMessages, FilesMayHaveAnyName)
{
    RunMessages messages;
    messages.Take(0, u"error: syntax error (token \"x\")"_s);
    messages.Take(1, u" from file /a b/c (2).orc (3), from file \u00e9, line.csd (1), line 7:"_s);
    ASSERT_NE(messages.At(0), nullptr);
    EXPECT_EQ(messages.At(0)->files, (QStringList{u"/a b/c (2).orc"_s, u"\u00e9, line.csd"_s}));
    EXPECT_EQ(messages.At(0)->line, 7);
}

TEST(RunMessages, TheFirstErrorStaysHoweverManyFollow)
{
    RunMessages messages;
    messages.Take(0, u"error: the first"_s);
    for (int i = 1; i < 20000; ++i)
        messages.Take(i, u"error: another"_s);
    ASSERT_TRUE(messages.FirstError());
    EXPECT_EQ(messages.FirstError()->text, u"error: the first"_s);
    EXPECT_EQ(messages.FirstError()->first, 0);
    EXPECT_NE(messages.At(19999), nullptr);
}

TEST(RunMessages, KeepLittleOfVeryLongOnes)
{
    RunMessages messages;
    const QString words = u"error: syntax error, unexpected T_IDENT  (token \"nosuch\")"_s;
    const QString longText(8000, u'x');
    qint64 number = 0;
    for (int i = 0; i < 4000; ++i) {
        EXPECT_EQ(messages.Take(number++, words + longText), LineMark::Error);
        messages.Take(number++, u" from file "_s + longText + u" (1), line 2:"_s);
        messages.Take(number++, u" >>> "_s + longText + u" <<<"_s);
        EXPECT_LE(messages.Characters(), 4'000'000);
    }
    const RunMessage *last = messages.At(number - 1);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->text, (words + longText).left(400));
    EXPECT_EQ(last->token, u"nosuch"_s);
    EXPECT_EQ(last->context, longText.left(400)) << "the start of the line finds it as well";
    EXPECT_EQ(last->files, QStringList{longText}) << "half a name is none";
    EXPECT_EQ(messages.At(0), nullptr) << "the oldest ones have gone";
    EXPECT_EQ(messages.FirstError()->first, 0);
}

TEST(RunMessages, DetailsWithoutAMessageAreNone)
{
    RunMessages messages;
    EXPECT_EQ(messages.Take(0, u" from file a.csd (1), line 12:"_s), LineMark::None);
    EXPECT_EQ(messages.Take(1, u" >>> a <<<"_s), LineMark::None);
    EXPECT_EQ(messages.Take(2, u"Line 5"_s), LineMark::None);
    EXPECT_EQ(messages.At(0), nullptr);
    EXPECT_FALSE(messages.FirstError());
}

TEST(RunMessages, ACleanRunHasNone)
{
    RunMessages messages;
    for (const QString &line :
         {u"0 errors in performance"_s, u"end of score.\t\t   overall amps:  0.20000"_s,
          u"\t   overall samples out of range:        0"_s, u"Score finished in csoundPerform()."_s})
        EXPECT_EQ(messages.Take(0, line), LineMark::None) << line.toStdString();
}

TEST(SettleLine, TakesTheNearestLineThatHoldsWhatIsQuoted)
{
    const QString text = u"a nosuch\nb\nc\na  nosuch 1\nb\n"_s;
    EXPECT_EQ(SettleLine({.line = 3, .context = u"a nosuch"_s}, text), 4);
    EXPECT_EQ(SettleLine({.line = 2, .context = u"a nosuch"_s}, text), 1);
    EXPECT_EQ(SettleLine({.line = 2, .token = u"c"_s}, text), 3);
    EXPECT_EQ(SettleLine({.line = 2, .token = u"nosuc"_s}, text), 2) << "no whole word";
    EXPECT_EQ(SettleLine({.line = 99, .token = u"zz"_s}, text), 6);
    EXPECT_EQ(SettleLine({.line = 0, .token = u"b"_s}, text), 0);
    EXPECT_EQ(SettleLine({.line = 1, .lineIsBefore = true, .token = u"b"_s}, text), 2);
    EXPECT_EQ(SettleLine({.line = 1}, QString()), 1);
}

TEST(MessagePlace, WhatAFlagTakesIsNoDocument)
{
    const QStringList piece{u"a.orc"_s, u"a.sco"_s};
    EXPECT_EQ(DocumentsOf({u"-d"_s, u"-o"_s, u"x.wav"_s, u"a.orc"_s, u"a.sco"_s}), piece);
    EXPECT_EQ(DocumentsOf({u"-do"_s, u"x.wav"_s, u"a.orc"_s, u"-odac"_s, u"a.sco"_s}), piece);
    EXPECT_EQ(DocumentsOf({u"-Wdi"_s, u"in.wav"_s, u"-b"_s, u"128"_s, u"-b128"_s, u"a.orc"_s, u"a.sco"_s}),
              piece);
    EXPECT_EQ(DocumentsOf({u"-O"_s, u"messages.txt"_s, u"-Onull"_s, u"a.orc"_s, u"a.sco"_s}), piece);
    EXPECT_EQ(DocumentsOf({u"--output=o"_s, u"a.orc"_s, u"-+rtaudio=alsa"_s, u"a.sco"_s, u"-o"_s}), piece);
}

TEST(MessagePlace, TheSoundFileIsNoPlace)
{
    const QTemporaryDir folder;
    const auto write = [&](const QString &name, const QByteArray &bytes) {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    ASSERT_TRUE(write(u"x.wav"_s, "RIFF none.orc\n\n\n"));
    ASSERT_TRUE(write(u"a.csd"_s, "\n#include \"none.orc\"\n"));
    const PlaceSources sources{.folder = folder.path(),
                               .documents = DocumentsOf({u"-d"_s, u"-o"_s, u"x.wav"_s, u"a.csd"_s})};
    RunMessage message;
    message.token = u"none.orc"_s;
    EXPECT_EQ(FindPlace(message, sources), (MessagePlace{folder.filePath(u"a.csd"_s), 2}));
    message.token.clear();
    message.line = 2;
    EXPECT_EQ(FindPlace(message, sources), (MessagePlace{folder.filePath(u"a.csd"_s), 2}));
}
