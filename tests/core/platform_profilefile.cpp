// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/profileoracle.h"
#include "platform/profilefile.h"
#include "platform/runtimeerror.h"
#include "support/childprocess.h"
#include "support/filebytes.h"
#include "support/powercut.h"
#include "support/printers.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

using Pairs = std::vector<std::pair<QString, QString>>;

class Profile : public ::testing::Test
{
protected:
    Profile()
    {
        EXPECT_EQ(chmod(QFile::encodeName(m_temporary.path()).constData(), 0755), 0);
        EXPECT_TRUE(QDir(m_temporary.path()).mkdir(u"work"_s));
        folder = m_temporary.filePath(u"work"_s);
        path = folder + u"/settings"_s;
    }
    ~Profile() override { SetMode(folder, 0755); }

    static void SetMode(const QString &name, mode_t mode)
    {
        EXPECT_EQ(chmod(QFile::encodeName(name).constData(), mode), 0);
    }

    void Put(const QByteArray &bytes) const
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QByteArray Content() const { return BytesOf(path); }

    QString folder;
    QString path;

private:
    QTemporaryDir m_temporary;
};

QString Utf16(const std::u16string &text)
{
    return QString::fromStdU16String(text);
}

/// Texts that mean something to the file, to its escapes, or to Unicode.
const QString Hostile[] = {
    u""_s,
    u" "_s,
    u"  "_s,
    u" x"_s,
    u"x "_s,
    u"\t"_s,
    u"\tx\t"_s,
    u"a b"_s,
    u"a\nb"_s,
    u"\n"_s,
    u"\r"_s,
    u"\r\n"_s,
    u"a\r\nb\rc\n"_s,
    Utf16({0}),
    Utf16({u'a', 0, u'b', 0}),
    u"["_s,
    u"]"_s,
    u"[x]"_s,
    u"x]y"_s,
    u"]]"_s,
    u"="_s,
    u"a=b"_s,
    u"=a"_s,
    u"a="_s,
    u"a = b"_s,
    u";"_s,
    u";a"_s,
    u"a;b"_s,
    u"#a"_s,
    u"\""_s,
    u"\"a\""_s,
    u"'a'"_s,
    u"a/b=[c];\""_s,
    u"a/b\\c"_s,
    u"\\"_s,
    u"\\\\"_s,
    u"\\n"_s,
    u"\\s"_s,
    u"\\u0041"_s,
    u"\\uZZ"_s,
    u"\\x"_s,
    u"C:\\new\\table"_s,
    u"%1"_s,
    u"\u007F\u0001\u001F\u0085\u009F"_s,
    u"\u2028\u2029"_s,
    u"\uFEFFmark"_s,
    u"\u00A0nbsp\u00A0"_s,
    u"\u00E9\u0416\u4E2D"_s,
    QString::fromUcs4(U"\U0001D11E clef"),
    Utf16({0xD800}),
    Utf16({0xDC00, 0xD800}),
    Utf16({u'x', 0xD834, 0xD834, 0xDD1E, 0xDD1E, u'y'}),
    Utf16({0xFFFF, 0xFFFE}),
    u"Options"_s,
    u"123"_s,
    QString(5000, u'='),
};

} // namespace

TEST_F(Profile, AnEmptyStoreHoldsNothingAndReadingMakesNothing)
{
    ProfileFile file(path);
    EXPECT_EQ(file.Value(u"Options", u"X"), std::nullopt);
    EXPECT_EQ(file.Entries(u"Options"), Pairs());
    EXPECT_EQ(file.SectionNames(), QStringList());
    file.RemoveKey(u"Options", u"X");
    file.RemoveSection(u"Options");
    EXPECT_EQ(NamesIn(folder), QStringList());
}

TEST_F(Profile, WritesAFileThatAPersonCanRead)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"Splash", u"1");
    file.SetValue(u"Options", u"BakPath", u"/home/me/old pieces");
    file.SetValue(u"Presets", u"a/b=[c];\"", u"");
    file.SetValue(u"a/b=[c];\"", u"Command", u"$CSOUND$ \"$ORCHESTRA$\"");
    file.SetValue(u"Options", u"Splash", u"0");
    EXPECT_EQ(Content(), "[Options]\nSplash=0\nBakPath=/home/me/old pieces\n"
                         "\n[Presets]\na/b\\u003D[c];\"=\n"
                         "\n[a/b=[c];\"]\nCommand=$CSOUND$ \"$ORCHESTRA$\"\n"_ba);
    EXPECT_EQ(file.SectionNames(), (QStringList{u"Options"_s, u"Presets"_s, u"a/b=[c];\""_s}));
}

TEST_F(Profile, NamesAreEqualWithoutRegardToCaseAndKeepTheFirstSpelling)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"HeaderkR", u"1");
    file.SetValue(u"oPTIONS", u"HeaderKR", u"2");
    file.SetValue(u"Options", u"\u00C9t\u00C9", u"3");
    EXPECT_EQ(file.Value(u"OPTIONS", u"headerkr"), u"2"_s);
    EXPECT_EQ(file.Value(u"options", u"\u00E9t\u00E9"), u"3"_s);
    EXPECT_EQ(file.Entries(u"options"), (Pairs{{u"HeaderkR"_s, u"2"_s}, {u"\u00C9t\u00C9"_s, u"3"_s}}));
    // Kelvin's sign is a k without regard to case, as is any other letter with several forms.
    EXPECT_EQ(file.Value(u"options", u"header\u212Ar"), u"2"_s);
    // Letters that are spelled as two in capitals are letters of their own.
    file.SetValue(u"Options", u"ma\u00DF", u"4");
    EXPECT_EQ(file.Value(u"Options", u"mass"), std::nullopt);
    file.RemoveKey(u"OPTIONS", u"HEADERKR");
    EXPECT_EQ(file.Entries(u"Options").size(), 2u);
    file.RemoveSection(u"OPTIONS");
    EXPECT_EQ(file.SectionNames(), QStringList());
}

TEST_F(Profile, KeysStayInTheOrderOfTheirCreation)
{
    ProfileFile file(path);
    for (const QString &key : {u"c"_s, u"a"_s, u"b"_s})
        file.SetValue(u"Presets", key, {});
    file.SetValue(u"Other", u"x", u"1");
    file.SetValue(u"Presets", u"0", {});
    file.SetValue(u"Presets", u"c", u"again");
    file.RemoveKey(u"Presets", u"a");
    file.SetValue(u"Presets", u"a", {});
    EXPECT_EQ(file.Entries(u"Presets"),
              (Pairs{{u"c"_s, u"again"_s}, {u"b"_s, {}}, {u"0"_s, {}}, {u"a"_s, {}}}));
}

TEST_F(Profile, AnyTextIsASectionAKeyAndAValue)
{
    const IdleDisk idle;
    ProfileFile file(path);
    Pairs all;
    for (const QString &text : Hostile)
        all.emplace_back(text, text);
    for (const QString &section : Hostile) {
        file.ReplaceSection(section, all);
        file.RemoveSection(section);
        file.SetValue(section, section, u"will be replaced");
        file.ReplaceSection(section, all);
    }
    for (const QString &text : Hostile) {
        file.SetValue(u"Options", text, u"x");
        file.SetValue(u"Options", text, text);
    }
    const ProfileFile reader(path);
    EXPECT_EQ(reader.SectionNames().size(), qsizetype(std::size(Hostile)));
    for (const QString &section : Hostile) {
        const Pairs entries = reader.Entries(section);
        ASSERT_EQ(entries.size(), std::size(Hostile)) << section.toStdString();
        for (size_t i = 0; i < std::size(Hostile); ++i) {
            EXPECT_EQ(entries[i].first, Hostile[i]);
            EXPECT_EQ(entries[i].second, Hostile[i]);
            EXPECT_EQ(reader.Value(section, Hostile[i]), Hostile[i]);
        }
    }
    EXPECT_TRUE(Content().isValidUtf8());
    for (const QString &section : Hostile)
        file.RemoveSection(section);
    EXPECT_EQ(file.SectionNames(), QStringList());
    EXPECT_EQ(Content(), ""_ba);
}

TEST_F(Profile, ReadsWhatAPersonTyped)
{
    Put("stray=1\r\n"
        "; my settings\r\n"
        "[ Options ] ; the first\r\n"
        "\r\n"
        "  Splash  =  0  \r\n"
        "no equals sign\r\n"
        "[broken\r\n"
        "#Labels=1\r\n"
        "Text=\"quoted\" ; no comment\r\n"
        "=nameless\r\n"
        "splash=9\r\n"
        "[Other]\r\n"
        "[OPTIONS]\r\n"
        "Last=C:\\Files\\sound");
    ProfileFile file(path);
    EXPECT_EQ(file.SectionNames(), (QStringList{u"Options"_s, u"Other"_s}));
    EXPECT_EQ(file.Entries(u"Options"), (Pairs{{u"Splash"_s, u"0"_s},
                                               {u"Text"_s, u"\"quoted\" ; no comment"_s},
                                               {{}, u"nameless"_s},
                                               {u"Last"_s, u"C:\\Files ound"_s}}));
    EXPECT_EQ(file.Value(u"Options", u"stray"), std::nullopt);
}

TEST_F(Profile, AnEscapeOfAUnitHasFourHexadecimalDigits)
{
    Put("[Options]\na=\\u0041\\u00e9\nb=\\u 041\nc=\\u0x41\nd=\\u+041\ne=\\u041\nf=\\u041 \n");
    EXPECT_EQ(ProfileFile(path).Entries(u"Options"), (Pairs{{u"a"_s, u"A\u00E9"_s},
                                                            {u"b"_s, u"\\u 041"_s},
                                                            {u"c"_s, u"\\u0x41"_s},
                                                            {u"d"_s, u"\\u+041"_s},
                                                            {u"e"_s, u"\\u041"_s},
                                                            {u"f"_s, u"\\u041"_s}}));
}

TEST_F(Profile, WritesKeepAllThatAPersonTyped)
{
    const QByteArray typed = "\xEF\xBB\xBFstray=1\r\n"
                             "; my settings\r\n"
                             "[ Options ] ; the first\r\n"
                             "\r\n"
                             "  Splash  =  0  \r\n"
                             "no equals sign\r\n"
                             "[broken\r\n"
                             "#Labels=1\r\n"
                             "\xE9 caf\xE9 = \xE9\r\n"
                             "splash=9\r\n"
                             "\r\n"
                             "; about the others\r\n"
                             "[Other]\r\n"
                             "x=1"_ba;
    Put(typed);
    ProfileFile file(path);
    EXPECT_EQ(file.Value(u"Options", u"\u00E9 caf\u00E9"), u"\u00E9"_s) << "a line in an older encoding";
    file.SetValue(u"Options", u"SPLASH", u"1");
    QByteArray expected = typed;
    expected.replace("  Splash  =  0  \r\n", "  Splash  =  1\r\n");
    EXPECT_EQ(Content(), expected);
    file.SetValue(u"Options", u"New", u"n");
    expected.replace("splash=9\r\n", "splash=9\r\nNew=n\r\n");
    EXPECT_EQ(Content(), expected);
    file.SetValue(u"Other", u"y", u"2");
    expected += "\r\ny=2\r\n";
    EXPECT_EQ(Content(), expected);
    file.SetValue(u"Third", u"z", {});
    expected += "\r\n[Third]\r\nz=\r\n";
    EXPECT_EQ(Content(), expected);
    file.RemoveKey(u"Options", u"splash");
    expected.replace("  Splash  =  1\r\n", "").replace("splash=9\r\n", "");
    EXPECT_EQ(Content(), expected) << "a removed key must not come back from a second line";
    file.RemoveSection(u"Third");
    expected.replace("\r\n[Third]\r\nz=\r\n", "");
    EXPECT_EQ(Content(), expected);
    file.RemoveSection(u"Options");
    EXPECT_EQ(Content(),
              "\xEF\xBB\xBFstray=1\r\n; my settings\r\n\r\nno equals sign\r\n[broken\r\n#Labels=1\r\n"
              "\r\n; about the others\r\n[Other]\r\nx=1\r\ny=2\r\n"_ba);
}

TEST_F(Profile, ALineThatBecomesTheFirstIsNotTakenForTheFilesMark)
{
    // The second line is no section as long as it stands behind another.
    Put("[a]\n\xEF\xBB\xBF[b]\nx=1\n");
    ProfileFile file(path);
    file.RemoveSection(u"a");
    EXPECT_EQ(Content(), "\xEF\xBB\xBF\xEF\xBB\xBF[b]\n"_ba);
    EXPECT_TRUE(ProfileFile(path).SectionNames().isEmpty());
    // The mark is the file's, not its first line's.
    Put("\xEF\xBB\xBF[a]\nx=1\n[b]\ny=2\n");
    file.RemoveSection(u"a");
    EXPECT_EQ(Content(), "\xEF\xBB\xBF[b]\ny=2\n"_ba);
}

TEST_F(Profile, RewritingASectionAgainAndAgainLeavesNoTrace)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"1");
    file.SetValue(u"Presets", u"one", {});
    const QByteArray first = Content();
    for (int i = 0; i < 5; ++i) {
        file.RemoveSection(u"Presets");
        file.SetValue(u"Presets", u"one", {});
        EXPECT_EQ(Content(), first);
        file.ReplaceSection(u"Presets", {{u"one"_s, {}}});
        EXPECT_EQ(Content(), first);
    }
    file.ReplaceSection(u"Presets", {{u"two"_s, {}}, {u"one"_s, u"1"_s}});
    EXPECT_EQ(file.Entries(u"Presets"), (Pairs{{u"two"_s, {}}, {u"one"_s, u"1"_s}}));
}

TEST_F(Profile, WhatChangesNothingWritesNothing)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"1");
    struct stat before = {}, after = {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &before), 0);
    file.SetValue(u"Options", u"a", u"1");
    file.RemoveKey(u"Options", u"b");
    file.RemoveSection(u"None");
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST_F(Profile, SeesAtOnceWhatAnotherWrote)
{
    const IdleDisk idle;
    ProfileFile one(path), two(path);
    // Values of one length, so that only the file's identity tells the states apart.
    for (int i = 1000; i < 1400; ++i) {
        const QString value = QString::number(i);
        one.SetValue(u"Options", u"a", value);
        ASSERT_EQ(two.Value(u"Options", u"a"), value);
        two.SetValue(u"Options", u"a", u"x"_s + value.mid(1));
        two.SetValue(u"Options", u"a", u"y"_s + value.mid(1));
        ASSERT_EQ(one.Value(u"Options", u"a"), u"y"_s + value.mid(1));
    }
}

TEST_F(Profile, SeesAFileThatTookTheNumberOfTheOneBefore)
{
    // File systems give a freed number to the next new file; in one tick of the clock all else is equal too.
    ProfileFile file(path);
    const QByteArray native = QFile::encodeName(path);
    for (int i = 1000; i < 4000; ++i) {
        unlink(native.constData());
        const int descriptor = open(native.constData(), O_WRONLY | O_CREAT | O_EXCL, 0600);
        const QByteArray text = "[Options]\na=" + QByteArray::number(i);
        ASSERT_EQ(write(descriptor, text.constData(), size_t(text.size())), text.size());
        close(descriptor);
        ASSERT_EQ(file.Value(u"Options", u"a"), QString::number(i));
    }
}

TEST_F(Profile, SeesWhatWasWrittenInPlaceInTheSameTick)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"0000");
    for (int i = 1000; i < 1500; ++i) {
        const int descriptor = open(QFile::encodeName(path).constData(), O_WRONLY);
        const QByteArray line = "[Options]\na=" + QByteArray::number(i);
        ASSERT_EQ(write(descriptor, line.constData(), size_t(line.size())), line.size());
        close(descriptor);
        ASSERT_EQ(file.Value(u"Options", u"a"), QString::number(i));
    }
}

TEST_F(Profile, SeesWhatWasWrittenInPlaceAndGivenItsOldTime)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"0000");
    for (int i = 1000; i < 1500; ++i) {
        const int descriptor = open(QFile::encodeName(path).constData(), O_WRONLY);
        const QByteArray line = "[Options]\na=" + QByteArray::number(i);
        ASSERT_EQ(write(descriptor, line.constData(), size_t(line.size())), line.size());
        const timespec longAgo[2] = {{1000, 0}, {1000, 0}};
        ASSERT_EQ(futimens(descriptor, longAgo), 0);
        close(descriptor);
        ASSERT_EQ(file.Value(u"Options", u"a"), QString::number(i));
    }
}

TEST_F(Profile, SeesThatTheFileWentAndCameBack)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"1");
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(file.Value(u"Options", u"a"), std::nullopt);
    file.SetValue(u"Options", u"b", u"2");
    EXPECT_EQ(Content(), "[Options]\nb=2\n"_ba);
    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_EQ(file.Value(u"Options", u"b"), std::nullopt);
    file.SetValue(u"Options", u"c", u"3");
    EXPECT_EQ(Content(), "[Options]\nc=3\n"_ba);
}

TEST_F(Profile, MakesItsFolders)
{
    path = folder + u"/a/b/settings"_s;
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    EXPECT_EQ(Content(), "[Options]\na=1\n"_ba);
}

TEST_F(Profile, ALinkedStoreStaysALink)
{
    ASSERT_TRUE(QDir(folder).mkdir(u"dotfiles"_s));
    ASSERT_EQ(symlink("dotfiles/zelvane", QFile::encodeName(path).constData()), 0);
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"1"); // dangling until here
    file.SetValue(u"Options", u"b", u"2");
    struct stat info = {};
    ASSERT_EQ(lstat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_TRUE(S_ISLNK(info.st_mode));
    EXPECT_EQ(Content(), "[Options]\na=1\nb=2\n"_ba);
    EXPECT_EQ(NamesIn(folder), (QStringList{u"dotfiles"_s, u"settings"_s}));
    // Both names of the store share one lock.
    EXPECT_EQ(NamesIn(folder + u"/dotfiles"_s), (QStringList{u"zelvane"_s, u"zelvane.lock"_s}));
    ProfileFile target(folder + u"/dotfiles/zelvane"_s);
    target.SetValue(u"Options", u"a", u"3");
    EXPECT_EQ(file.Value(u"Options", u"a"), u"3"_s);
}

TEST_F(Profile, PermissionsAreKeptAndANewStoreIsPrivate)
{
    ProfileFile file(path);
    file.SetValue(u"Options", u"a", u"1");
    struct stat info = {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0600u);
    SetMode(path, 0644);
    file.SetValue(u"Options", u"a", u"2");
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0644u);
}

TEST_F(Profile, AStoreThatCannotBeWrittenSaysSoAndStaysWhole)
{
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    const QByteArray before = Content();
    const auto fails = [&] {
        ProfileFile file(path);
        EXPECT_EQ(file.Value(u"Options", u"a"), u"1"_s);
        EXPECT_THROW(file.SetValue(u"Options", u"a", QString(10000, u'x')), RunTimeError);
        EXPECT_THROW(file.RemoveSection(u"Options"), RunTimeError);
        EXPECT_EQ(file.Value(u"Options", u"a"), u"1"_s);
        EXPECT_EQ(Content(), before);
    };
    SetMode(folder, 0555);
    EXPECT_TRUE(AsOrdinaryUser(folder, fails)) << "a folder that takes no new file";
    SetMode(folder, 0755);
    SetMode(path, 0444);
    EXPECT_TRUE(AsOrdinaryUser(folder, fails)) << "a file without write permission";
    SetMode(path, 0644);
    EXPECT_TRUE(WithFileSizeLimit(64, [&] {
        ProfileFile file(path);
        EXPECT_THROW(file.SetValue(u"Options", u"a", QString(10000, u'x')), RunTimeError);
        EXPECT_EQ(file.Value(u"Options", u"a"), u"1"_s);
        file.SetValue(u"Options", u"a", u"2");
    })) << "no room for a larger file";
    EXPECT_EQ(Content(), "[Options]\na=2\n"_ba);
    EXPECT_EQ(NamesIn(folder), (QStringList{u"settings"_s, u"settings.lock"_s}));
}

TEST_F(Profile, AStoreThatCannotBeReadIsEmptyToReadersAndIsNotWrittenOver)
{
    Put("[Options]\na=1\n");
    SetMode(path, 0200);
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        ProfileFile file(path);
        EXPECT_EQ(file.Value(u"Options", u"a"), std::nullopt);
        EXPECT_THROW(file.SetValue(u"Options", u"b", u"2"), RunTimeError);
    }));
    EXPECT_EQ(Content(), "[Options]\na=1\n"_ba);
}

TEST_F(Profile, NoKeysToWriteTellWhetherTheFileCanBeRead)
{
    ProfileFile file(path);
    file.SetValues(u"Options", {});
    EXPECT_EQ(NamesIn(folder), QStringList()) << "neither the file nor its lock is made";
    ASSERT_TRUE(QDir(folder).mkdir(u"settings"_s));
    EXPECT_THROW(file.SetValues(u"Options", {}), RunTimeError);
    // A step goes by what it has read at its start.
    bool refused = false;
    file.InOneStep([&] {
        EXPECT_TRUE(QDir(folder).rmdir(u"settings"_s));
        Put("[Options]\na=1\n");
        try {
            file.SetValues(u"Options", {});
        } catch (const RunTimeError &) {
            refused = true;
        }
    });
    EXPECT_TRUE(refused);
    file.SetValues(u"Options", {});
    EXPECT_EQ(file.Value(u"Options", u"a"), u"1"_s);
}

TEST_F(Profile, WhatIsNoFileIsNoStore)
{
    const auto check = [&] {
        ProfileFile file(path);
        EXPECT_EQ(file.Value(u"Options", u"a"), std::nullopt);
        EXPECT_EQ(file.SectionNames(), QStringList());
        EXPECT_THROW(file.SetValue(u"Options", u"a", u"1"), RunTimeError);
    };
    ASSERT_TRUE(QDir(folder).mkdir(u"settings"_s));
    check();
    EXPECT_TRUE(QDir(path).exists());
    ASSERT_TRUE(QDir(folder).rmdir(u"settings"_s));
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    check();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_EQ(symlink("settings", QFile::encodeName(path).constData()), 0);
    check();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_EQ(symlink("/dev/full", QFile::encodeName(path).constData()), 0);
    check();
    path = folder + QChar(0) + u"settings"_s;
    check();
    path = u"/dev/null/settings"_s;
    check();
}

TEST_F(Profile, RandomBytesNeverHarmAndAreNeverDropped)
{
    const IdleDisk idle;
    QRandomGenerator random(99);
    const QByteArray alphabet = "[]=;#\\nsu0041 \t\r\n\n\nabOptions\xC3\xA9\x80\xEF\xBB\xBF\""_ba + '\0';
    for (int round = 0; round < 800; ++round) {
        QByteArray bytes;
        for (int i = random.bounded(round % 50 == 0 ? 20000 : 80); i > 0; --i)
            bytes += round % 3 ? alphabet[random.bounded(int(alphabet.size()))] : char(random.bounded(256));
        Put(bytes);
        ProfileFile file(path);
        std::vector<std::pair<QString, Pairs>> before;
        for (const QString &section : file.SectionNames())
            before.emplace_back(section, file.Entries(section));
        std::vector<std::pair<QString, Pairs>> expectedBefore;
        for (const oracle::ProfileSection &section : oracle::ReadProfile(bytes))
            expectedBefore.emplace_back(section.name, section.entries);
        ASSERT_EQ(before, expectedBefore) << bytes.toPercentEncoding().constData();
        file.SetValue(u"new section", u"new key", u"v");
        file.SetValue(u"Options", u"another", u"w");
        // All lines are still there, in their order.
        const QByteArray content = Content();
        QByteArrayView rest = content;
        for (const QByteArray &line : bytes.split('\n')) {
            const qsizetype at = rest.indexOf(line);
            ASSERT_GE(at, 0) << bytes.toPercentEncoding().constData();
            rest = rest.sliced(at + line.size());
        }
        const ProfileFile reader(path);
        EXPECT_EQ(reader.Value(u"new section", u"new key"), u"v"_s);
        for (const auto &[section, entries] : before) {
            Pairs expected = entries;
            if (section.compare(u"Options", Qt::CaseInsensitive) == 0)
                expected.emplace_back(u"another"_s, u"w"_s);
            EXPECT_EQ(reader.Entries(section), expected) << bytes.toPercentEncoding().constData();
        }
    }
}

TEST_F(Profile, BehavesAsAListOfListsUnderRandomOperations)
{
    const IdleDisk idle;
    struct Section {
        QString name;
        Pairs entries;
    };
    std::vector<Section> model;
    const auto equal = [](const QString &a, const QString &b) {
        return a.compare(b, Qt::CaseInsensitive) == 0;
    };
    const QString names[] = {u"a"_s,   u"A"_s,  u"b"_s,      u""_s,       u" "_s,
                             u"[=]"_s, u";c"_s, u"\u00E9"_s, u"\u00C9"_s, u"\n"_s};
    QRandomGenerator random(7);
    ProfileFile writer(path);
    for (int round = 0; round < 2000; ++round) {
        const QString section = names[random.bounded(int(std::size(names)))];
        const QString key = names[random.bounded(int(std::size(names)))];
        const QString value = Hostile[random.bounded(int(std::size(Hostile)) - 1)];
        auto found = std::find_if(model.begin(), model.end(),
                                  [&](const Section &s) { return equal(s.name, section); });
        const auto keyIs = [&](const std::pair<QString, QString> &entry) { return equal(entry.first, key); };
        switch (random.bounded(8)) {
        case 0:
            writer.RemoveSection(section);
            if (found != model.end())
                model.erase(found);
            break;
        case 1:
            writer.RemoveKey(section, key);
            if (found != model.end())
                std::erase_if(found->entries, keyIs);
            break;
        case 2:
            writer.ReplaceSection(section, {{key, value}});
            if (found != model.end())
                model.erase(found);
            model.push_back({section, {{key, value}}});
            break;
        default:
            writer.SetValue(section, key, value);
            if (found == model.end())
                found = model.insert(model.end(), {section, {}});
            if (const auto at = std::find_if(found->entries.begin(), found->entries.end(), keyIs);
                at != found->entries.end())
                at->second = value;
            else
                found->entries.emplace_back(key, value);
        }
        const ProfileFile fresh(path);
        QStringList sections;
        for (const Section &expected : model) {
            sections.append(expected.name);
            ASSERT_EQ(fresh.Entries(expected.name), expected.entries) << round;
        }
        ASSERT_EQ(fresh.SectionNames(), sections) << round;
    }
}

TEST_F(Profile, TwoProcessesWriting5000KeysEachLoseNone)
{
    constexpr int count = 5000;
    const IdleDisk idle;
    QElapsedTimer timer;
    timer.start();
    std::vector<pid_t> children;
    for (const QString &name : {u"first"_s, u"second"_s}) {
        children.push_back(StartChild([&] {
            ProfileFile file(path);
            file.SetPatience(std::chrono::minutes(1));
            for (int i = 0; i < count; ++i)
                file.SetValue(u"Options", name + QString::number(i), QString::number(i * 3));
        }));
    }
    for (const pid_t child : children)
        EXPECT_TRUE(ChildSucceeded(child));
    std::printf("two processes wrote %d keys each in %lld ms\n", count, timer.elapsed());
    RecordProperty("milliseconds", int(timer.elapsed()));
    const ProfileFile file(path);
    EXPECT_EQ(file.Entries(u"Options").size(), 2u * count);
    for (const QString &name : {u"first"_s, u"second"_s}) {
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(file.Value(u"Options", name + QString::number(i)), QString::number(i * 3));
    }
    EXPECT_EQ(NamesIn(folder), (QStringList{u"settings"_s, u"settings.lock"_s}));
}

TEST_F(Profile, AWriterKilled200TimesLosesAtMostItsLastWrite)
{
    Pairs kept;
    for (int i = 0; i < 200; ++i)
        kept.emplace_back(QString::number(i), QString(200, QChar(u'a' + i % 26)));
    ProfileFile(path).ReplaceSection(u"Kept", kept);
    QRandomGenerator random(2024);
    QElapsedTimer timer;
    timer.start();
    int inTheMiddle = 0;
    int nextValue = 0;
    for (int round = 0; round < 200; ++round) {
        int acknowledge[2];
        ASSERT_EQ(pipe(acknowledge), 0);
        const pid_t child = StartChild([&] {
            ProfileFile file(path);
            for (int value = nextValue + 1;; ++value) {
                file.SetValue(u"Counter", u"value", QString::number(value));
                if (write(acknowledge[1], &value, sizeof value) != sizeof value)
                    return;
            }
        });
        close(acknowledge[1]);
        int last = 0;
        ASSERT_EQ(read(acknowledge[0], &last, sizeof last), ssize_t(sizeof last));
        usleep(random.bounded(1, 2000));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        for (int value = 0; read(acknowledge[0], &value, sizeof value) == ssize_t(sizeof value);)
            last = value;
        close(acknowledge[0]);

        const ProfileFile file(path);
        const int stored = file.Value(u"Counter", u"value").value_or(u"-1"_s).toInt();
        ASSERT_TRUE(stored == last || stored == last + 1) << stored << " stored, " << last << " acknowledged";
        ASSERT_EQ(file.SectionNames(), (QStringList{u"Kept"_s, u"Counter"_s}));
        ASSERT_EQ(file.Entries(u"Kept"), kept);
        ASSERT_TRUE(Content().endsWith('\n'));
        nextValue = stored;
        const QStringList names = NamesIn(folder);
        inTheMiddle += stored == last + 1 || names.contains(u"settings.tmp"_s);
        for (const QString &name : names)
            ASSERT_TRUE(name == u"settings" || name == u"settings.lock" || name == u"settings.tmp")
                << name.toStdString();
    }
    std::printf("a writer was killed 200 times, %d times in the middle of a write, in %lld ms\n", inTheMiddle,
                timer.elapsed());
    EXPECT_GT(inTheMiddle, 20);
    // What the last one left is used up by the next write.
    ProfileFile(path).SetValue(u"Counter", u"value", u"done");
    EXPECT_EQ(NamesIn(folder), (QStringList{u"settings"_s, u"settings.lock"_s}));
}

TEST_F(Profile, APowerCutLeavesTheOldFileOrTheNew)
{
    Put("[Options]\na=0\n");
    PowerCut cut(folder);
    ProfileFile file(path);
    std::set<std::optional<QByteArray>> whole{Content()};
    const auto check = [&](const char *what) {
        SCOPED_TRACE(what);
        EXPECT_EQ(cut.Left("settings"), (std::set<std::optional<QByteArray>>{Content()}))
            << "a write that has come back is on the disk";
        whole.insert(Content());
        for (const std::optional<QByteArray> &left : cut.EverLeft("settings"))
            EXPECT_TRUE(whole.contains(left)) << (left ? left->constData() : "(no file)");
    };
    file.SetValue(u"Options", u"a", u"1");
    check("a value");
    file.SetValues(u"Options", {{u"b"_s, u"2"_s}, {u"c"_s, u"3"_s}});
    check("several values");
    file.RemoveKey(u"Options", u"a");
    check("a key that goes");
    file.ReplaceSection(u"Options", {{u"d"_s, u"4"_s}});
    check("a section");
    file.InOneStep([&] {
        file.SetValue(u"Options", u"e", u"5");
        file.RemoveKey(u"Options", u"d");
    });
    check("a step");
    file.RemoveSection(u"Options");
    check("a section that goes");
    EXPECT_EQ(cut.Replaced("settings"), 6);
    EXPECT_EQ(cut.EverLeft("settings").size(), 7u);
}

TEST_F(Profile, APowerCutLeavesTheFirstFileWholeOrNone)
{
    PowerCut cut(folder);
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    EXPECT_EQ(cut.EverLeft("settings"),
              (std::set<std::optional<QByteArray>>{std::nullopt, "[Options]\na=1\n"_ba}));
    EXPECT_EQ(cut.Left("settings"), (std::set<std::optional<QByteArray>>{"[Options]\na=1\n"_ba}));
}

TEST_F(Profile, AStepIsOneWrite)
{
    Put("; mine\n[Options]\na=0\n");
    PowerCut cut(folder);
    ProfileFile file(path);
    ProfileFile other(path);
    file.InOneStep([&] {
        for (int i = 0; i < 60; ++i)
            file.SetValue(u"Options", QString::number(i), u"x");
        file.RemoveKey(u"Options", u"0");
        file.InOneStep([&] { file.ReplaceSection(u"Presets", {{u"p"_s, {}}}); });
        EXPECT_EQ(file.Value(u"Options", u"59"), u"x"_s) << "the step reads what it has written";
        EXPECT_EQ(file.Value(u"Options", u"0"), std::nullopt);
        EXPECT_EQ(file.Entries(u"Presets").size(), 1u);
        EXPECT_EQ(cut.Replaced("settings"), 0);
        EXPECT_EQ(other.Value(u"Options", u"59"), std::nullopt) << "the others see it at the end";
        // What another process writes meanwhile stays, and has the lock to itself.
        other.SetValue(u"Options", u"b", u"theirs");
        EXPECT_EQ(cut.Replaced("settings"), 1);
    });
    EXPECT_EQ(cut.Replaced("settings"), 2);
    EXPECT_EQ(other.Entries(u"Options").size(), 61u);
    EXPECT_EQ(other.Value(u"Options", u"b"), u"theirs"_s);
    EXPECT_EQ(file.Entries(u"Options"), other.Entries(u"Options"));
    EXPECT_TRUE(Content().startsWith("; mine\n[Options]\na=0\nb=theirs\n1=x\n")) << Content().constData();
    file.InOneStep([] {});
    file.InOneStep([&] { file.SetValue(u"Options", u"a", u"0"); });
    EXPECT_EQ(cut.Replaced("settings"), 2) << "nothing has changed";
}

TEST_F(Profile, AStepThatFailsKeepsWhatItHadDone)
{
    ProfileFile file(path);
    EXPECT_THROW(file.InOneStep([&] {
        file.SetValue(u"Options", u"a", u"1");
        throw RunTimeError(ErrorNumber::DeviceError, u"on the way"_s);
    }),
                 RunTimeError);
    EXPECT_EQ(Content(), "[Options]\na=1\n"_ba);
    file.SetValue(u"Options", u"b", u"2");
    EXPECT_EQ(Content(), "[Options]\na=1\nb=2\n"_ba) << "the step has ended";
}

TEST_F(Profile, AStepThatCannotBeWrittenLeavesTheOldValues)
{
    Put("[Options]\na=1\n");
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        ProfileFile file(path);
        file.SetValue(u"Options", u"b", u"1");
        SetMode(folder, 0555);
        EXPECT_THROW(file.InOneStep([&] { file.SetValue(u"Options", u"a", u"2"); }), RunTimeError);
        EXPECT_EQ(file.Value(u"Options", u"a"), u"1"_s);
        SetMode(folder, 0755);
    }));
    EXPECT_EQ(Content(), "[Options]\na=1\nb=1\n"_ba);
}

TEST_F(Profile, ABareReturnAtTheEndStaysInItsValue)
{
    for (const QByteArray &start :
         {"[Options]\na=x\r"_ba, "[Options]\r\na=x\r"_ba, "[Options]\nb=1\na=x\r"_ba}) {
        SCOPED_TRACE(start.toPercentEncoding().constData());
        Put(start);
        ProfileFile file(path);
        ASSERT_EQ(file.Value(u"Options", u"a"), u"x\r"_s);
        file.SetValue(u"Options", u"c", u"1");
        EXPECT_EQ(file.Value(u"Options", u"a"), u"x\r"_s) << "behind a new key";
        Put(start);
        file.SetValue(u"Presets", u"p", {});
        EXPECT_EQ(file.Value(u"Options", u"a"), u"x\r"_s) << "behind a new section";
        file.RemoveSection(u"Presets");
        file.SetValue(u"Options", u"d", u"2");
        EXPECT_EQ(ProfileFile(path).Value(u"Options", u"a"), u"x\r"_s);
    }
}

TEST_F(Profile, AHeldLockIsWaitedForOnceByAllWritesTogether)
{
    // A user notices less than a second only; here it is longer, so that a slow machine makes no difference.
    EXPECT_LE(ProfileFile::Patience, std::chrono::milliseconds(400));
    constexpr std::chrono::milliseconds patience(3000);
    ProfileFile file(path);
    file.SetPatience(patience);
    file.SetValue(u"Options", u"a", u"1");
    const pid_t holder = StartChild([&] {
        const FileLock lock(path);
        QFile(path + u".held"_s).open(QIODevice::WriteOnly);
        ::pause();
    });
    while (!QFile::exists(path + u".held"_s))
        usleep(1000);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 5; ++i) {
        try {
            file.SetValue(u"Options", QString::number(i), u"x");
            ADD_FAILURE() << "written under another's lock";
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.Description(), u"Another process keeps the file locked"_s);
        }
    }
    EXPECT_GE(timer.elapsed(), patience.count());
    EXPECT_LT(timer.elapsed(), 3 * patience.count()) << "of five writes";
    kill(holder, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(holder, &status, 0), holder);
    file.SetValue(u"Options", u"a", u"2");
    EXPECT_EQ(Content(), "[Options]\na=2\n"_ba);
}

TEST_F(Profile, AStoppedWriterDoesNotStopTheOthersForGood)
{
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    const int held = open(QFile::encodeName(path + u".lock"_s).constData(), O_RDWR);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    QElapsedTimer timer;
    timer.start();
    try {
        const FileLock lock(path, std::chrono::milliseconds(100));
        ADD_FAILURE() << "the lock was given twice";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Number(), ErrorNumber::PermissionDenied);
        EXPECT_EQ(error.Description(), u"Another process keeps the file locked"_s);
    }
    EXPECT_GE(timer.elapsed(), 100);
    EXPECT_LT(timer.elapsed(), 60'000);
    EXPECT_EQ(ProfileFile(path).Value(u"Options", u"a"), u"1"_s) << "readers need no lock";
    close(held);
    ProfileFile(path).SetValue(u"Options", u"a", u"2");
    EXPECT_EQ(Content(), "[Options]\na=2\n"_ba);
}

TEST_F(Profile, ALockWhoseFileWasRemovedIsTakenAnew)
{
    const FileLock first(path);
    ASSERT_TRUE(QFile::remove(path + u".lock"_s));
    const FileLock second(path, std::chrono::milliseconds(100));
    EXPECT_THROW(FileLock(path, std::chrono::milliseconds(50)), RunTimeError);
}

TEST_F(Profile, ALockMadeByAnotherUserCanBeTaken)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs two users";
    ASSERT_TRUE(AsOrdinaryUser(folder, [] {}));
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    SetMode(path, 0666);
    EXPECT_TRUE(AsOrdinaryUser(path, [&] { // the lock stays root's
        ProfileFile(path).SetValue(u"Options", u"a", u"2");
    }));
    EXPECT_EQ(Content(), "[Options]\na=2\n"_ba);
}

TEST_F(Profile, AnUnfinishedFileOfAnotherIsPutAside)
{
    QFile left(path + u".tmp"_s);
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    left.write("[Options]\nhalf");
    left.close();
    ASSERT_EQ(chmod(QFile::encodeName(left.fileName()).constData(), 0), 0);
    ProfileFile(path).SetValue(u"Options", u"a", u"1");
    EXPECT_EQ(Content(), "[Options]\na=1\n"_ba);
    // A link in its place must not lead the write elsewhere.
    ASSERT_EQ(symlink("victim", QFile::encodeName(left.fileName()).constData()), 0);
    ProfileFile(path).SetValue(u"Options", u"a", u"2");
    EXPECT_EQ(NamesIn(folder), (QStringList{u"settings"_s, u"settings.lock"_s}));
}

// Plain files

TEST_F(Profile, PlainTextsStandAsTheyAre)
{
    Put("[a]b]\r\nCode= x\\n\\sy\\u0041 \r\nQuoted=\"  q \"\r\nSingle=''\r\nHalf=\"h\r\n[\\s]\r\nk=1\r\n");
    ProfileFile file(path, ProfileText::Plain);
    EXPECT_EQ(file.SectionNames(), (QStringList{u"a]b"_s, u"\\s"_s}));
    EXPECT_EQ(file.Entries(u"A]B"), (Pairs{{u"Code"_s, u"x\\n\\sy\\u0041"_s},
                                           {u"Quoted"_s, u"  q "_s},
                                           {u"Single"_s, u""_s},
                                           {u"Half"_s, u"\"h"_s}}));
    EXPECT_EQ(file.Value(u"\\S", u"K"), u"1"_s);
    file.SetValue(u"\\s", u"k", u"\\\\n");
    file.SetValue(u"\\s", u"edge", u" e\t");
    file.SetValue(u"\\s", u"pair", u"\"p\"");
    file.SetValue(u"\\s", u"lines", u"first\nsecond");
    EXPECT_EQ(Content(), "[a]b]\r\nCode= x\\n\\sy\\u0041 \r\nQuoted=\"  q \"\r\nSingle=''\r\nHalf=\"h\r\n"
                         "[\\s]\r\nk=\\\\n\r\nedge=\" e\t\"\r\npair=\"\"p\"\"\r\nlines=first\r\n"_ba);
    EXPECT_EQ(file.Value(u"\\s", u"edge"), u" e\t"_s);
    EXPECT_EQ(file.Value(u"\\s", u"pair"), u"\"p\""_s);
    EXPECT_EQ(ProfileFile(path).Value(u" ", u"lines"), u"first"_s) << "another spelling of the same bytes";
}

TEST_F(Profile, EveryPlainValueOfOneLineComesBack)
{
    ProfileFile file(path, ProfileText::Plain);
    std::vector<QString> values(std::begin(Hostile), std::end(Hostile));
    values.insert(values.end(), {u"\uFEFFmark"_s, u"x\r"_s, u"\r"_s, u"a\rb"_s});
    for (const QString &value : values) {
        if (value.contains(u'\n') || value != QString::fromUtf8(value.toUtf8()))
            continue;
        file.SetValue(u"s", u"v", value);
        EXPECT_EQ(ProfileFile(path, ProfileText::Plain).Value(u"s", u"v"), value);
    }
}

TEST_F(Profile, APlainFileIsAListOfListsToo)
{
    const IdleDisk idle;
    const QString names[] = {u"a"_s, u"A]"_s, u"b\\n"_s, u"[=]"_s, u";c"_s, u"\u00E9"_s};
    const QString keys[] = {u"Code"_s, u"code"_s, u"Author"_s, u"\\s"_s};
    const QString values[] = {u""_s,    u" "_s,   u"\\"_s,  u"\\n\\t"_s,   u"\"\""_s,
                              u"'x'"_s, u"x='"_s, u"[b]"_s, u"\t;\u00E9"_s};
    std::vector<std::pair<QString, Pairs>> model;
    const auto equal = [](const QString &a, const QString &b) {
        return a.compare(b, Qt::CaseInsensitive) == 0;
    };
    QRandomGenerator random(11);
    ProfileFile writer(path, ProfileText::Plain);
    for (int round = 0; round < 1000; ++round) {
        const QString section = names[random.bounded(int(std::size(names)))];
        const QString other = names[random.bounded(int(std::size(names)))];
        const QString key = keys[random.bounded(int(std::size(keys)))];
        const QString value = values[random.bounded(int(std::size(values)))];
        const auto find = [&](const QString &name) {
            return std::find_if(model.begin(), model.end(),
                                [&](const auto &one) { return equal(one.first, name); });
        };
        auto found = find(section);
        switch (random.bounded(8)) {
        case 0:
            writer.RemoveSection(section);
            if (found != model.end())
                model.erase(found);
            break;
        case 1:
            writer.MoveSection(section, other);
            if (found != model.end() && section != other) {
                const Pairs moved = found->second;
                model.erase(found);
                if (const auto replaced = find(other); replaced != model.end())
                    model.erase(replaced);
                model.emplace_back(other, moved);
            }
            break;
        default:
            writer.SetValue(section, key, value);
            if (found == model.end())
                found = model.insert(model.end(), {section, {}});
            if (const auto at = std::find_if(found->second.begin(), found->second.end(),
                                             [&](const auto &one) { return equal(one.first, key); });
                at != found->second.end())
                at->second = value;
            else
                found->second.emplace_back(key, value);
        }
        const ProfileFile fresh(path, ProfileText::Plain);
        QStringList sections;
        for (const auto &[name, entries] : model) {
            sections.append(name);
            ASSERT_EQ(fresh.Entries(name), entries) << round;
        }
        ASSERT_EQ(fresh.SectionNames(), sections) << round;
    }
}

TEST_F(Profile, AMovedSectionIsTheLastUnderItsNewName)
{
    Put("[a]\nk=1\nK=2\n; mine\n[b]\nx=\\n\n[a]\nl=3\n");
    ProfileFile file(path);
    PowerCut cut(folder);
    file.MoveSection(u"A", u"b");
    EXPECT_EQ(Content(), "; mine\n\n[b]\nk=1\nK=2\nl=3\n"_ba);
    EXPECT_EQ(cut.Replaced("settings"), 1);
    EXPECT_EQ(file.Entries(u"b"), (ProfileEntries{{u"k"_s, u"1"_s}, {u"l"_s, u"3"_s}}));
    EXPECT_EQ(file.AllEntries(u"B"), (ProfileEntries{{u"k"_s, u"1"_s}, {u"K"_s, u"2"_s}, {u"l"_s, u"3"_s}}));
    EXPECT_EQ(file.AllEntries(u"none"), ProfileEntries());
    file.MoveSection(u"none", u"b");
    EXPECT_EQ(Content(), "; mine\n\n[b]\nk=1\nK=2\nl=3\n"_ba);
    Put("[b]\nk=1\nl=3\n; mine\n[c]\nx=1\n");
    file.MoveSection(u"b", u"b");
    EXPECT_EQ(Content(), "[b]\nk=1\nl=3\n; mine\n[c]\nx=1\n"_ba) << "it has the name already";
    Put("; mine\n\n[b]\nk=1\nl=3\n");
    file.MoveSection(u"b", u"B", [](ProfileEntries &entries) { entries.pop_back(); });
    EXPECT_EQ(Content(), "; mine\n\n[B]\nk=1\n"_ba);
}
