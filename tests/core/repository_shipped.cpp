// SPDX-License-Identifier: GPL-3.0-or-later
// The fragments that the program ships with, each tried with Csound.

#include "platform/profilefile.h"
#include "repository/coderepository.h"
#include "repository/fragmenttext.h"
#include "support/printers.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const QString Shipped = QStringLiteral(ZELVANE_SOURCE_DIR "/data/zelvane.csr");

/// One note of half a second on channel 1.
const QByteArray MidiNote = QByteArray::fromHex("4d546864000000060000000100604d54726b0000000d"
                                                "00903c64"
                                                "60803c00"
                                                "00ff2f00")
                                .replace(21, 1, "\x0c");

QString Csd(const QString &orchestra, const QString &score, const QString &options = {})
{
    const QString header =
        orchestra.contains(u"sr = "_s) ? QString() : u"sr = 44100\nksmps = 32\nnchnls = 2\n0dbfs = 1\n"_s;
    return u"<CsoundSynthesizer>\n<CsOptions>\n"_s + options + u"\n</CsOptions>\n<CsInstruments>\n"_s +
           header + orchestra + u"\n</CsInstruments>\n<CsScore>\n"_s + score +
           u"\n</CsScore>\n</CsoundSynthesizer>\n"_s;
}

/// A piece around a fragment, by its category.
QString PieceAround(const QString &name, const FragmentFields &fragment)
{
    const QString tone = u"instr 1\n\taout oscili p4, cpspch(p5)\n\touts aout, aout\nendin"_s;
    const QString body = u"instr 1\n%1\nendin\n"_s;
    const QString one = u"i 1 0 .3 .3 8.09"_s;
    if (fragment.category == u"Templates")
        return fragment.code;
    if (fragment.category == u"Score")
        return Csd(tone, fragment.code);
    if (fragment.category == u"Orchestra")
        return Csd(fragment.code + u'\n' + tone, one);
    if (fragment.category == u"Function Tables") {
        const bool windows = fragment.code.contains(u"f 11 "_s);
        return Csd(u"instr 1\n\taout oscili p4, 440, p5\n\touts aout, aout\nendin"_s,
                   fragment.code + (windows ? u"\ni 1 0 .1 .3 11\ni 1 + . . 12\ni 1 + . . 13\ni 1 + . . 14"_s
                                            : u"\ni 1 0 .1 .3 1\ni 1 + . . 2\ni 1 + . . 3\ni 1 + . . 4"_s));
    }
    if (fragment.category == u"Macros")
        return Csd(fragment.code + u'\n' + body.arg(u"\taout = $CHORUS(.3'440)\n\touts aout, aout"_s), one);
    if (fragment.category == u"MIDI")
        return Csd(fragment.code, u"f 0 1"_s);
    if (fragment.category == u"Instruments") {
        const QString score =
            QRegularExpression(u"Score: (.*)"_s).match(fragment.comments).captured(1).trimmed();
        EXPECT_FALSE(score.isEmpty()) << name.toStdString();
        QString feeder;
        for (const QString &bus : {u"gaL"_s, u"gaR"_s, u"gaDelay"_s}) {
            if (fragment.code.contains(bus + u" init"_s) || fragment.code.contains(bus + u"\tinit"_s))
                feeder += u"\t%1 += oscili(.3, 440)\n"_s.arg(bus);
        }
        return Csd(fragment.code + (feeder.isEmpty() ? QString() : u"\ninstr 2\n"_s + feeder + u"endin"_s),
                   score + (feeder.isEmpty() ? QString() : u"\ni 2 0 .5"_s));
    }
    if (fragment.code.startsWith(u"opcode"_s))
        return Csd(fragment.code + u'\n' +
                       body.arg(u"\ta1, a2 EqualPower oscili(.3, 440), line:k(0, p3, 1)\n\touts a1, a2"_s),
                   one);
    // The body of an instrument, whose result is one of these.
    QString use = u"\touts aout, aout"_s;
    if (fragment.code.contains(u"kenv"_s))
        use = u"\taout oscili kenv, 440\n"_s + use;
    else if (fragment.code.contains(u"kcps"_s))
        use = u"\taout oscili .3, kcps\n"_s + use;
    else if (fragment.code.contains(u"iamp"_s))
        use = u"\taout oscili iamp, ithird + ibent - icps\n"_s + use;
    return Csd(body.arg(fragment.code + u'\n' + use), one);
}

} // namespace

TEST(ShippedFragments, AreTwentyOfOurOwn)
{
    const ProfileFile file(Shipped, ProfileText::Plain);
    const QStringList names = file.SectionNames();
    EXPECT_EQ(names.size(), 20);
    const QStringList categories{u"Function Tables"_s, u"General"_s,  u"Instruments"_s, u"Opcodes"_s,
                                 u"Macros"_s,          u"Math"_s,     u"MIDI"_s,        u"Orchestra"_s,
                                 u"Score"_s,           u"Templates"_s};
    for (const QString &name : names) {
        EXPECT_EQ(file.Value(name, u"Author"), u"the Zelvane authors"_s);
        EXPECT_TRUE(categories.contains(file.Value(name, u"Category").value_or(QString())))
            << name.toStdString();
        EXPECT_FALSE(file.Value(name, u"Comments").value_or(QString()).isEmpty());
        EXPECT_EQ(file.Entries(name).size(), 4u);
    }
}

TEST(ShippedFragments, AreAsTheProgramWouldWriteThem)
{
    TestContext context;
    CodeRepository repository(context.editor, context.folder.path());
    const ProfileFile file(Shipped, ProfileText::Plain);
    const QString copy = context.folder.filePath(u"copy.csr"_s);
    for (const QString &name : file.SectionNames()) {
        const StoredFragment read = repository.Read({.file = Shipped, .name = name});
        EXPECT_EQ(repository.Add({.file = copy, .name = name}, read.fields), FragmentWrite::Done);
        EXPECT_EQ(repository.Read({.file = copy, .name = name}).entries, read.entries) << name.toStdString();
    }
}

TEST(ShippedFragments, SoundWithCsound)
{
    const QString csound = QStandardPaths::findExecutable(u"csound"_s);
    if (csound.isEmpty())
        GTEST_SKIP() << "csound is not installed";
    TestContext context;
    CodeRepository repository(context.editor, context.folder.path());
    const QString midi = context.WriteFile(u"note.mid"_s, MidiNote);
    const ProfileFile file(Shipped, ProfileText::Plain);
    for (const QString &name : file.SectionNames()) {
        SCOPED_TRACE(name.toStdString());
        FragmentFields fragment = repository.Read({.file = Shipped, .name = name}).fields;
        const QString piece = context.WriteFile(u"piece.csd"_s, PieceAround(name, fragment).toUtf8());
        QStringList arguments{u"-d"_s, u"-W"_s, u"-o"_s, context.folder.filePath(u"out.wav"_s), piece};
        if (fragment.category == u"MIDI")
            arguments = QStringList{u"-F"_s, midi} + arguments;
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(csound, arguments);
        ASSERT_TRUE(process.waitForFinished(120'000));
        const QString output = QString::fromUtf8(process.readAll());
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_FALSE(output.contains(u"error"_s, Qt::CaseInsensitive) &&
                     !output.contains(u"0 errors in performance"_s));
        const QRegularExpressionMatch loudest =
            QRegularExpression(u"overall amps:[^0-9]*([0-9.]+)"_s).match(output);
        EXPECT_GT(loudest.captured(1).toDouble(), .01);
        EXPECT_LE(loudest.captured(1).toDouble(), 1.0);
        if (HasFailure())
            FAIL() << output.toStdString();
    }
}

} // namespace zelvane::test
