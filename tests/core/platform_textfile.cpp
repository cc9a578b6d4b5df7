// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/encodingoracle.h"
#include "platform/lostnames.h"
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "platform/unsavedcopy.h"
#include "support/childprocess.h"
#include "support/printers.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

constexpr TextEncoding Utf8 = {TextEncoding::Form::Utf8, false};
constexpr TextEncoding Utf8WithMark = {TextEncoding::Form::Utf8, true};
constexpr TextEncoding Western = {TextEncoding::Form::Windows1252, false};

/// A folder below the temporary one, which other users may enter.
class TextFile : public ::testing::Test
{
protected:
    TextFile()
    {
        EXPECT_EQ(chmod(Native(m_temporary.path()), 0755), 0);
        EXPECT_TRUE(QDir(m_temporary.path()).mkdir(u"work"_s));
        folder = m_temporary.filePath(u"work"_s);
        // For whichever user a test runs as.
        state = m_temporary.filePath(u"state"_s);
        EXPECT_TRUE(QDir().mkdir(state));
        EXPECT_EQ(chmod(Native(state), 0777), 0);
        qputenv("XDG_STATE_HOME", QFile::encodeName(state));
    }
    ~TextFile() override
    {
        chmod(Native(folder), 0755);
        qputenv("XDG_STATE_HOME", m_stateBefore);
    }

    struct NativePath {
        QByteArray bytes;
        operator const char *() const { return bytes.constData(); }
    };
    static NativePath Native(const QString &path) { return {QFile::encodeName(path)}; }

    QString Path(const QString &name) const { return folder + u'/' + name; }

    QString Put(const QString &name, const QByteArray &bytes)
    {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return Path(name);
    }

    /// Reads by other means than the code under test.
    static QByteArray Content(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    static struct stat Status(const QString &path)
    {
        struct stat info = {};
        EXPECT_EQ(lstat(Native(path), &info), 0);
        return info;
    }

    template <typename Call> static RunTimeError ErrorOf(Call call)
    {
        try {
            call();
        } catch (const RunTimeError &error) {
            return error;
        }
        ADD_FAILURE() << "no error was raised";
        return {ErrorNumber::InvalidCall, u"none"_s};
    }

    QString folder;
    QString state;

private:
    QTemporaryDir m_temporary;
    QByteArray m_stateBefore = qgetenv("XDG_STATE_HOME");
};

QByteArray AllBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i)
        bytes += char(i);
    return bytes;
}

QString System(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

TEST(TextEncodings, AsciiAndEmptyTextsAreUtf8)
{
    for (const QByteArray &bytes : {""_ba, "instr 1\r\n"_ba, QByteArray("a\0b", 3)}) {
        const DecodedText decoded = DecodeText(bytes);
        EXPECT_EQ(decoded.encoding, Utf8);
        EXPECT_EQ(decoded.text, QString::fromLatin1(bytes));
        TextEncoding encoding = decoded.encoding;
        EXPECT_EQ(EncodeText(decoded.text, encoding), bytes);
    }
}

TEST(TextEncodings, ByteOrderMarkIsRememberedAndNoPartOfTheText)
{
    const QByteArray mark = "\xEF\xBB\xBF";
    for (const auto &[bytes, text] :
         {std::pair(mark, u""_s), std::pair(mark + "x", u"x"_s), std::pair(mark + mark + "x", u"\uFEFFx"_s),
          std::pair(mark + "\u00E9", u"\u00E9"_s)}) {
        const DecodedText decoded = DecodeText(bytes);
        EXPECT_EQ(decoded.encoding, Utf8WithMark);
        EXPECT_EQ(decoded.text, text);
        TextEncoding encoding = decoded.encoding;
        EXPECT_EQ(EncodeText(text, encoding), bytes);
        EXPECT_EQ(encoding, Utf8WithMark);
    }
    // A mark that does not begin the file is a character; half a mark is no UTF-8.
    EXPECT_EQ(DecodeText("x" + mark).text, u"x\uFEFF"_s);
    EXPECT_EQ(DecodeText("\xEF\xBB").encoding, Western);
}

TEST(TextEncodings, ValidUtf8OfEveryLength)
{
    const QByteArray bytes = "a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E\xF4\x8F\xBF\xBF\xEF\xBF\xBF\xEE\x80\x80z";
    const DecodedText decoded = DecodeText(bytes);
    EXPECT_EQ(decoded.encoding, Utf8);
    EXPECT_EQ(decoded.text.size(), 10);
    TextEncoding encoding = decoded.encoding;
    EXPECT_EQ(EncodeText(decoded.text, encoding), bytes);
}

TEST(TextEncodings, BrokenUtf8IsWestern)
{
    const QByteArray broken[] = {
        "\x80",                 // a following byte alone
        "\xC3",                 // cut short
        "abc\xC3",              //
        "\xC3(",                // no following byte
        "\xC0\xAF",             // longer than needed
        "\xE0\x80\xAF",         //
        "\xF0\x80\x80\xAF",     //
        "\xED\xA0\x80",         // a surrogate
        "\xED\xBF\xBF",         //
        "\xF4\x90\x80\x80",     // beyond the last character
        "\xF8\x88\x80\x80\x80", //
        "\xFE",                 //
        "\xFF\xFE"
        "a", // UTF-16
    };
    for (const QByteArray &bytes : broken) {
        const DecodedText decoded = DecodeText(bytes);
        EXPECT_EQ(decoded.encoding, Western) << bytes.toHex().constData();
        EXPECT_EQ(decoded.text.size(), bytes.size());
        TextEncoding encoding = decoded.encoding;
        EXPECT_EQ(EncodeText(decoded.text, encoding), bytes);
        EXPECT_EQ(encoding, Western);
    }
}

TEST(TextEncodings, Utf16BehindItsMark)
{
    constexpr TextEncoding little = {TextEncoding::Form::Utf16Little, false};
    constexpr TextEncoding big = {TextEncoding::Form::Utf16Big, false};
    const struct {
        QByteArray bytes;
        TextEncoding encoding;
        QString text;
    } cases[] = {
        {"\xFF\xFE"_ba, little, u""_s},
        {"\xFE\xFF"_ba, big, u""_s},
        {QByteArray("\xFF\xFEi\0\xE9\0\x16\x04\r\0\n\0", 12), little, u"i\u00E9\u0416\r\n"_s},
        {QByteArray("\xFE\xFF\0i\0\xE9\x04\x16\0\r\0\n", 12), big, u"i\u00E9\u0416\r\n"_s},
        {"\xFF\xFE\x34\xD8\x1E\xDD"_ba, little, u"\U0001D11E"_s},
        {"\xFE\xFF\xD8\x34\xDD\x1E"_ba, big, u"\U0001D11E"_s},
        {"\xFF\xFE\xFF\xFE"_ba, little, u"\uFEFF"_s}, // the mark's own character behind the mark
        {QByteArray("\xFF\xFE\0\0", 4), little, QString(QChar(0))},
    };
    for (const auto &one : cases) {
        const DecodedText decoded = DecodeText(one.bytes);
        EXPECT_EQ(decoded.encoding, one.encoding) << one.bytes.toHex().constData();
        EXPECT_EQ(decoded.text, one.text);
        TextEncoding encoding = decoded.encoding;
        EXPECT_EQ(EncodeText(decoded.text, encoding), one.bytes);
        EXPECT_EQ(encoding, one.encoding);
    }
    // What could not be written back as it was is none.
    for (const QByteArray &bytes :
         {"\xFF\xFE\x34\xD8"_ba, "\xFE\xFF\xDD\x1E"_ba, "\xFF\xFE"_ba + 'a', QByteArray("i\0n\0", 4)})
        EXPECT_NE(DecodeText(bytes).encoding.form, TextEncoding::Form::Utf16Little)
            << bytes.toHex().constData();
    TextEncoding encoding = big;
    const char16_t half[] = {u'a', 0xD834};
    EXPECT_EQ(EncodeText(QString::fromUtf16(half, 2), encoding), QByteArray("\xFE\xFF\0a\0?", 6));
}

TEST(TextEncodings, WesternBytesThatLookLikeUtf16AreNotWritten)
{
    TextEncoding encoding = Western;
    EXPECT_EQ(EncodeText(u"\u00FF\u00FEa"_s, encoding), "\xFF\xFE"_ba + 'a');
    EXPECT_EQ(encoding, Western);
    const QString text = u"\u00FF\u00FEab"_s;
    EXPECT_EQ(DecodeText(EncodeText(text, encoding)).text, text);
    EXPECT_EQ(encoding, Utf8);
}

TEST(TextEncodings, WesternHasAll256Bytes)
{
    const QByteArray bytes = AllBytes();
    const DecodedText decoded = DecodeText(bytes);
    ASSERT_EQ(decoded.encoding, Western);
    ASSERT_EQ(decoded.text.size(), 256);
    const QString upper = QString::fromUtf16(
        u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
        u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178");
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(decoded.text[i], i >= 0x80 && i < 0xA0 ? upper[i - 0x80] : QChar(i)) << i;
    TextEncoding encoding = Western;
    EXPECT_EQ(EncodeText(decoded.text, encoding), bytes);
}

TEST(TextEncodings, TextThatTheEncodingCannotHoldBecomesUtf8)
{
    TextEncoding encoding = Western;
    EXPECT_EQ(EncodeText(u"\u00E9\u0416"_s, encoding), "\xC3\xA9\xD0\x96"_ba);
    EXPECT_EQ(encoding, Utf8);
    encoding = Western;
    EXPECT_EQ(EncodeText(u"\u00E9"_s + QString::fromUcs4(U"\U0001D11E"), encoding),
              "\xC3\xA9\xF0\x9D\x84\x9E"_ba);
    EXPECT_EQ(encoding, Utf8);
    encoding = Western;
    EXPECT_EQ(EncodeText(u"plain"_s, encoding), "plain"_ba);
    EXPECT_EQ(encoding, Western);
}

TEST(TextEncodings, WesternBytesThatLookLikeUtf8AreNotWritten)
{
    // These two characters are the bytes C3 A9, which would be read back as one.
    TextEncoding encoding = Western;
    const QString text = u"\u00C3\u00A9"_s;
    EXPECT_EQ(DecodeText(EncodeText(text, encoding)).text, text);
    EXPECT_EQ(encoding, Utf8);
}

TEST(TextEncodings, LoneSurrogatesAreReplaced)
{
    TextEncoding encoding = Utf8;
    const char16_t units[] = {u'a', 0xD800, u'b', 0xDC00, 0xDFFF, 0xD834};
    const QByteArray bytes = EncodeText(QString::fromUtf16(units, 6), encoding);
    EXPECT_TRUE(bytes.isValidUtf8());
    EXPECT_TRUE(bytes.startsWith('a'));
    EXPECT_TRUE(bytes.contains('b'));
}

TEST(TextEncodings, AnyBytesComeBackAndAnyTextComesBack)
{
    QRandomGenerator random(1);
    const QByteArray alphabet =
        "ab\r\n\xC3\xA9\xE2\x82\xAC\x80\xEF\xBB\xBF\xF0\x9F\x98\x80\xED\xA0"_ba + '\0';
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes;
        for (int i = random.bounded(12); i > 0; --i)
            bytes += round % 2 ? alphabet[random.bounded(int(alphabet.size()))] : char(random.bounded(256));
        if (round % 3 == 0)
            bytes.prepend(round % 2 ? "\xFF\xFE" : "\xFE\xFF");
        DecodedText decoded = DecodeText(bytes);
        const DecodedText expected = oracle::Decode(bytes);
        EXPECT_EQ(decoded.text, expected.text) << bytes.toHex().constData();
        EXPECT_EQ(decoded.encoding, expected.encoding) << bytes.toHex().constData();
        EXPECT_EQ(EncodeText(decoded.text, decoded.encoding), bytes);

        QString text;
        const char16_t units[] = {u'a',   u'\n',  0,    0xE9,   0xC3, 0xA9, 0x20AC,
                                  0x0416, 0xFEFF, 0x9D, 0xFFFF, 0xFF, 0xFE};
        for (int i = random.bounded(8); i > 0; --i)
            text += QChar(units[random.bounded(int(std::size(units)))]);
        for (TextEncoding encoding :
             {Utf8, Utf8WithMark, Western, TextEncoding{TextEncoding::Form::Utf16Little, false},
              TextEncoding{TextEncoding::Form::Utf16Big, false}}) {
            const QByteArray written = EncodeText(text, encoding);
            const DecodedText again = DecodeText(written);
            EXPECT_EQ(again.text, text) << written.toHex().constData();
        }
    }
}

TEST_F(TextFile, ReadsAFileWhole)
{
    EXPECT_EQ(ReadFileBytes(Put(u"empty"_s, "")), ""_ba);
    EXPECT_EQ(ReadFileBytes(Put(u"all \"quoted\" \u00E9\n[x]"_s, AllBytes())), AllBytes());
    const QByteArray large(20'000'000, 'x');
    EXPECT_EQ(ReadFileBytes(Put(u"large"_s, large)), large);
}

TEST_F(TextFile, ReadsFilesThatDoNotTellTheirSize)
{
    EXPECT_TRUE(ReadFileBytes(u"/proc/self/status"_s).contains("VmSize"));
}

TEST_F(TextFile, RefusesWhatIsNoFileAndNeverWaits)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(folder); }).Description(), u"It is a folder, not a file"_s);
    ASSERT_EQ(mkfifo(Native(Path(u"pipe"_s)), 0644), 0);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(u"pipe"_s)); }).Description(),
              u"It is a named pipe, not a file"_s);
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"pipe"_s), "x"); }).Description(),
              u"It is a named pipe, not a file"_s);
    EXPECT_EQ(ErrorOf([] { ReadFileBytes(u"/dev/null"_s); }).Description(), u"It is a device, not a file"_s);
    EXPECT_EQ(ErrorOf([] { ReadFileBytes(u"/dev/zero"_s); }).Description(), u"It is a device, not a file"_s);

    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(Path(u"socket"_s));
    ASSERT_LT(size_t(path.size()), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    ASSERT_EQ(bind(made, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(u"socket"_s)); }).Description(),
              u"It is a socket, not a file"_s);
    close(made);
    EXPECT_LT(timer.elapsed(), 60'000); // a wait has no end
}

TEST_F(TextFile, ReadingTellsTheSystemsReason)
{
    const RunTimeError missing = ErrorOf([&] { ReadFileBytes(Path(u"missing"_s)); });
    EXPECT_EQ(missing.Number(), ErrorNumber::FileNotFound);
    EXPECT_EQ(missing.Description(), System(ENOENT));
    EXPECT_EQ(missing.Source(), Path(u"missing"_s));
    const QString file = Put(u"file"_s, "x");
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(file + u"/below"_s); }).Number(), ErrorNumber::PathNotFound);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(u"a"_s) + QChar(0) + u'b'); }).Number(),
              ErrorNumber::PathFileAccess);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(QString(300, u'n'))); }).Description(), System(ENAMETOOLONG));
    ASSERT_EQ(symlink("loop", Native(Path(u"loop"_s))), 0);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(u"loop"_s)); }).Description(), System(ELOOP));
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"loop"_s), "x"); }).Description(), System(ELOOP));
}

TEST_F(TextFile, ANameThatIsNotUtf8IsToldSo)
{
    const QByteArray bytes = QFile::encodeName(folder) + "/caf\xE9.orc";
    const int made = open(bytes.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(made, 0);
    close(made);
    const QString name = QFile::decodeName(bytes);
    EXPECT_TRUE(IsLostName(name));
    const RunTimeError error = ErrorOf([&] { ReadFileBytes(name); });
    EXPECT_EQ(error.Number(), ErrorNumber::FileNotFound);
    EXPECT_EQ(error.Description(), u"A file whose name is not UTF-8 cannot be opened. Rename it first."_s);
    // A name may hold that character by right.
    EXPECT_EQ(ReadFileBytes(Put(u"caf\uFFFD.orc"_s, "x")), "x"_ba);
    EXPECT_FALSE(IsLostName(u"caf\u00E9.orc"_s));
    EXPECT_EQ(CountLostNames(folder), 1);
    EXPECT_EQ(CountLostNames(folder + u"/none"_s), 0);
}

TEST_F(TextFile, AFileWithoutReadPermissionIsRefused)
{
    const QString file = Put(u"secret"_s, "x");
    ASSERT_EQ(chmod(Native(file), 0), 0);
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        const RunTimeError error = ErrorOf([&] { ReadFileBytes(file); });
        EXPECT_EQ(error.Number(), ErrorNumber::PermissionDenied);
        EXPECT_EQ(error.Description(), System(EACCES));
    }));
}

TEST_F(TextFile, AFileBeyondAllTextsIsRefused)
{
    const QString file = Put(u"sparse"_s, "");
    ASSERT_EQ(truncate(Native(file), 1LL << 40), 0);
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(file); }).Description(), u"The file is too large"_s);
}

TEST_F(TextFile, WritesANewFileAsTheUserWantsNewFiles)
{
    const mode_t old = umask(027);
    WriteFileBytes(Path(u"new"_s), AllBytes());
    umask(old);
    EXPECT_EQ(Content(Path(u"new"_s)), AllBytes());
    EXPECT_EQ(Status(Path(u"new"_s)).st_mode & 07777, 0640u);
    EXPECT_EQ(NamesIn(folder), QStringList{u"new"_s});
}

TEST_F(TextFile, WritesUnderNamesOfAnyCharactersAndFullLength)
{
    for (const QString &name :
         {u"a\nb"_s, u"\"q\" 'x' $HOME `ls` ;&|"_s, u"-rf"_s, u"\u00E9\u0416"_s, QString(255, u'n')}) {
        WriteFileBytes(Path(name), "1");
        WriteFileBytes(Path(name), "22");
        EXPECT_EQ(Content(Path(name)), "22"_ba);
    }
    EXPECT_EQ(NamesIn(folder).size(), 5);
}

TEST_F(TextFile, ReplacingKeepsPermissionsAttributesAndOwner)
{
    const QString file = Put(u"file"_s, "old");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(Native(file), 65534, 65534), 0);
    }
    ASSERT_EQ(chmod(Native(file), 02751), 0);
    const bool attributes = setxattr(Native(file), "user.note", "kept", 4, 0) == 0;
    const struct stat before = Status(file);
    WriteFileBytes(file, "new");
    const struct stat after = Status(file);
    EXPECT_EQ(Content(file), "new"_ba);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_NE(after.st_ino, before.st_ino) << "the file was not replaced in one step";
    if (attributes) {
        char value[8] = {};
        EXPECT_EQ(getxattr(Native(file), "user.note", value, sizeof value), 4);
        EXPECT_STREQ(value, "kept");
    }
    EXPECT_EQ(NamesIn(folder), QStringList{u"file"_s});
}

TEST_F(TextFile, NobodyElseReadsATextOfItsOwnersAtAnyMoment)
{
    const QByteArray bytes(2'000'000, 'x');
    const QString file = Put(u"secret"_s, bytes);
    ASSERT_EQ(chmod(Native(file), 0600), 0);
    const mode_t old = umask(0);
    const pid_t child = StartChild([&] {
        for (;;)
            WriteFileBytes(file, bytes);
    });
    umask(old);
    // All files of the other process, those without a name too.
    const QByteArray open = "/proc/" + QByteArray::number(child) + "/fd/";
    int seen = 0;
    QElapsedTimer timer;
    timer.start();
    constexpr int enough = 100;
    while (seen < 2000 && timer.elapsed() < (seen > enough ? 10'000 : 120'000)) {
        for (int number = 3; number < 10; ++number) {
            struct stat info = {};
            const QByteArray path = open + QByteArray::number(number);
            char target[4096];
            const ssize_t length = readlink(path.constData(), target, sizeof target);
            if (length < 0 || !QByteArray(target, length).startsWith(QFile::encodeName(folder)) ||
                stat(path.constData(), &info) != 0 || !S_ISREG(info.st_mode))
                continue;
            ++seen;
            EXPECT_EQ(info.st_mode & 07777, 0600u) << QByteArray(target, length).constData();
        }
    }
    kill(child, SIGKILL);
    EXPECT_FALSE(ChildSucceeded(child));
    EXPECT_GT(seen, enough);
}

TEST_F(TextFile, TheRightsThatAFolderGivesToNewFilesAreNotAnOldFiles)
{
    const QString file = Put(u"secret"_s, "old");
    ASSERT_EQ(chmod(Native(file), 0640), 0);
    // Version, then tag, rights and id of the owner, user 65534, the group, the mask and all others.
    const auto entry = [](char tag, char rights, quint32 id = 0xFFFFFFFF) {
        QByteArray bytes = "...."_ba;
        bytes[0] = tag;
        bytes[1] = 0;
        bytes[2] = rights;
        bytes[3] = 0;
        for (int shift = 0; shift < 32; shift += 8)
            bytes += char(id >> shift);
        return bytes;
    };
    const QByteArray rules = QByteArray("\2\0\0\0", 4) + entry(1, 7) + entry(2, 7, 65534) + entry(4, 7) +
                             entry(16, 7) + entry(32, 0);
    if (setxattr(Native(folder), "system.posix_acl_default", rules.constData(), size_t(rules.size()), 0) != 0)
        GTEST_SKIP() << "the file system has no access lists";
    WriteFileBytes(Path(u"new"_s), "x");
    EXPECT_GT(getxattr(Native(Path(u"new"_s)), "system.posix_acl_access", nullptr, 0), 0);
    WriteFileBytes(file, "new");
    EXPECT_EQ(Content(file), "new"_ba);
    EXPECT_EQ(getxattr(Native(file), "system.posix_acl_access", nullptr, 0), -1);
    EXPECT_EQ(Status(file).st_mode & 07777, 0640u);
}

TEST_F(TextFile, ANameIsOpenedAsItWasGiven)
{
    // A link of the system's own kind, which does not lead to where it says when its file has lost its name.
    const QString file = Put(u"file"_s, "old");
    const int open = ::open(Native(file), O_RDWR);
    ASSERT_GE(open, 0);
    ASSERT_EQ(unlink(Native(file)), 0);
    const QString other = Put(u"file (deleted)"_s, "another's");
    WriteFileBytes(u"/proc/self/fd/"_s + QString::number(open), "new");
    EXPECT_EQ(Content(other), "another's"_ba);
    char found[8] = {};
    EXPECT_EQ(pread(open, found, sizeof found, 0), 3);
    EXPECT_STREQ(found, "new");
    close(open);
    EXPECT_EQ(NamesIn(folder), QStringList{u"file (deleted)"_s});
}

TEST_F(TextFile, TheSystemsProtectionOfLinksInSharedFoldersHolds)
{
    if (geteuid() != 0 || Content(u"/proc/sys/fs/protected_symlinks"_s).trimmed() != "1")
        GTEST_SKIP() << "needs two users, and a system that protects links";
    const QString file = Put(u"file"_s, "old");
    ASSERT_TRUE(QDir(folder).mkdir(u"shared"_s));
    ASSERT_EQ(chmod(Native(Path(u"shared"_s)), 01777), 0);
    ASSERT_EQ(symlink(Native(file), Native(Path(u"shared/link"_s))), 0);
    ASSERT_EQ(lchown(Native(Path(u"shared/link"_s)), 65534, 65534), 0);
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"shared/link"_s), "x"); }).Description(), System(EACCES));
    EXPECT_EQ(ErrorOf([&] { ReadFileBytes(Path(u"shared/link"_s)); }).Description(), System(EACCES));
    EXPECT_EQ(Content(file), "old"_ba);
}

TEST_F(TextFile, LinksAreFollowed)
{
    const QString file = Put(u"file"_s, "old");
    ASSERT_TRUE(QDir(folder).mkdir(u"sub"_s));
    ASSERT_EQ(symlink("../file", Native(Path(u"sub/relative"_s))), 0);
    ASSERT_EQ(symlink("sub/relative", Native(Path(u"chain"_s))), 0);
    ASSERT_EQ(symlink(Native(file), Native(Path(u"absolute"_s))), 0);
    for (const QString &link : {u"sub/relative"_s, u"chain"_s, u"absolute"_s}) {
        WriteFileBytes(Path(link), link.toUtf8());
        EXPECT_TRUE(S_ISLNK(Status(Path(link)).st_mode));
        EXPECT_EQ(Content(file), link.toUtf8());
    }
}

TEST_F(TextFile, ADanglingLinkMakesItsTarget)
{
    ASSERT_EQ(symlink("target", Native(Path(u"link"_s))), 0);
    WriteFileBytes(Path(u"link"_s), "x");
    EXPECT_TRUE(S_ISLNK(Status(Path(u"link"_s)).st_mode));
    EXPECT_TRUE(S_ISREG(Status(Path(u"target"_s)).st_mode));
    EXPECT_EQ(Content(Path(u"target"_s)), "x"_ba);
    ASSERT_EQ(symlink("no/folder/here", Native(Path(u"nowhere"_s))), 0);
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"nowhere"_s), "x"); }).Number(), ErrorNumber::PathNotFound);
}

TEST_F(TextFile, HardLinksStayOneFile)
{
    const QString file = Put(u"file"_s, "old and longer");
    ASSERT_EQ(link(Native(file), Native(Path(u"other"_s))), 0);
    WriteFileBytes(file, "new");
    EXPECT_EQ(Content(Path(u"other"_s)), "new"_ba);
    EXPECT_EQ(Status(file).st_ino, Status(Path(u"other"_s)).st_ino);
    EXPECT_EQ(NamesIn(folder), (QStringList{u"file"_s, u"other"_s}));
}

TEST_F(TextFile, AFolderIsNotWrittenOver)
{
    const RunTimeError error = ErrorOf([&] { WriteFileBytes(folder, "x"); });
    EXPECT_EQ(error.Description(), u"It is a folder, not a file"_s);
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"missing/"_s), "x"); }).Number(), ErrorNumber::PathNotFound);
    EXPECT_EQ(ErrorOf([] { WriteFileBytes({}, "x"); }).Number(), ErrorNumber::PathFileAccess);
    EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"a"_s) + QChar(0), "x"); }).Number(),
              ErrorNumber::PathFileAccess);
    EXPECT_EQ(NamesIn(folder), QStringList());
}

TEST_F(TextFile, AVanishedFolderIsTold)
{
    const RunTimeError error = ErrorOf([&] { WriteFileBytes(Path(u"gone/file.orc"_s), "x"); });
    EXPECT_EQ(error.Number(), ErrorNumber::PathNotFound);
    EXPECT_EQ(error.Description(), System(ENOENT));
}

TEST_F(TextFile, AFullDiskIsTold)
{
    for (const QString &name : {u"/dev/full"_s, Path(u"link"_s)}) {
        if (name != u"/dev/full") {
            ASSERT_EQ(symlink("/dev/full", Native(name)), 0);
        }
        const RunTimeError error = ErrorOf([&] { WriteFileBytes(name, "x"); });
        EXPECT_EQ(error.Number(), ErrorNumber::DiskFull);
        EXPECT_EQ(error.Description(), System(ENOSPC));
    }
    EXPECT_EQ(NamesIn(folder), QStringList{u"link"_s});
}

TEST_F(TextFile, AFileSizeLimitLeavesTheOldFileWholeAndTheProcessAlive)
{
    const QByteArray old(30000, 'o');
    const QString file = Put(u"file"_s, old);
    EXPECT_TRUE(WithFileSizeLimit(65536, [&] {
        const RunTimeError error = ErrorOf([&] { WriteFileBytes(file, QByteArray(1'000'000, 'n')); });
        EXPECT_EQ(error.Number(), ErrorNumber::DiskFull);
        EXPECT_EQ(error.Description(), System(EFBIG));
        EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"new"_s), QByteArray(65537, 'n')); }).Number(),
                  ErrorNumber::DiskFull);
        WriteFileBytes(Path(u"fits"_s), QByteArray(65536, 'f'));
    }));
    EXPECT_EQ(Content(file), old);
    EXPECT_EQ(NamesIn(folder), (QStringList{u"file"_s, u"fits"_s}));
}

TEST_F(TextFile, AFileSizeLimitInPlacePutsTheOldBytesBack)
{
    const QByteArray old(30000, 'o');
    const QString file = Put(u"file"_s, old);
    // The folder takes no second file, so that the bytes are written in place.
    ASSERT_EQ(chmod(Native(folder), 0555), 0);
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        ASSERT_TRUE(WithFileSizeLimit(65536, [&] {
            EXPECT_EQ(ErrorOf([&] { WriteFileBytes(file, QByteArray(1'000'000, 'n')); }).Description(),
                      System(EFBIG));
        }));
    }));
    EXPECT_EQ(Content(file), old);
}

TEST_F(TextFile, AReadOnlyFileIsNotReplaced)
{
    const QString file = Put(u"file"_s, "old");
    ASSERT_EQ(chmod(Native(file), 0444), 0);
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        const RunTimeError error = ErrorOf([&] { WriteFileBytes(file, "new"); });
        EXPECT_EQ(error.Number(), ErrorNumber::PermissionDenied);
        EXPECT_EQ(error.Description(), System(EACCES));
    }));
    EXPECT_EQ(Content(file), "old"_ba);
    EXPECT_EQ(NamesIn(folder), QStringList{u"file"_s});
}

TEST_F(TextFile, AReadOnlyFolderTakesNoNewFileButKeepsItsFilesWritable)
{
    const QString file = Put(u"file"_s, "old");
    ASSERT_EQ(chmod(Native(folder), 0555), 0);
    const struct stat before = Status(file);
    EXPECT_TRUE(AsOrdinaryUser(folder, [&] {
        EXPECT_EQ(ErrorOf([&] { WriteFileBytes(Path(u"new"_s), "x"); }).Number(),
                  ErrorNumber::PermissionDenied);
        WriteFileBytes(file, "longer than before");
        EXPECT_EQ(Content(file), "longer than before"_ba);
        WriteFileBytes(file, "short");
        EXPECT_EQ(Content(file), "short"_ba);
        WriteFileBytes(file, "");
        EXPECT_EQ(Content(file), ""_ba);
        WriteFileBytes(file, AllBytes());
    }));
    EXPECT_EQ(Content(file), AllBytes());
    EXPECT_EQ(Status(file).st_ino, before.st_ino);
    EXPECT_EQ(NamesIn(folder), QStringList{u"file"_s});
}

TEST_F(TextFile, AnotherUsersFileInASharedFolderIsWrittenInPlace)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "needs two users";
    const QString file = Put(u"file"_s, "old");
    ASSERT_TRUE(AsOrdinaryUser(folder, [] {})); // gives the folder away
    for (const mode_t mode : {0777, 01777}) {
        ASSERT_EQ(chown(Native(file), 0, 0), 0);
        ASSERT_EQ(chown(Native(folder), 0, 0), 0);
        ASSERT_EQ(chmod(Native(file), 0666), 0);
        ASSERT_EQ(chmod(Native(folder), mode), 0);
        EXPECT_TRUE(ChildSucceeded(StartChild([&] {
            ASSERT_EQ(setgid(65534), 0);
            ASSERT_EQ(setuid(65534), 0);
            WriteFileBytes(file, "new " + QByteArray::number(mode));
        })));
        EXPECT_EQ(Content(file), "new " + QByteArray::number(mode));
        EXPECT_EQ(Status(file).st_uid, 0u);
        EXPECT_EQ(Status(file).st_mode & 07777, 0666u);
        EXPECT_EQ(NamesIn(folder), QStringList{u"file"_s});
    }
}

TEST_F(TextFile, AKilledSaveLeavesOneOfTheTwoTexts)
{
    const QByteArray old(3'000'000, 'o'), made(3'000'000, 'n');
    const QString file = Put(u"file"_s, old);
    QRandomGenerator random(5);
    for (int round = 0; round < 40; ++round) {
        const pid_t child = StartChild([&] {
            for (int i = 0;; ++i)
                WriteFileBytes(file, i % 2 ? old : made);
        });
        usleep(random.bounded(200, 20000));
        kill(child, SIGKILL);
        EXPECT_FALSE(ChildSucceeded(child));
        const QByteArray found = Content(file);
        EXPECT_TRUE(found == old || found == made) << found.size();
    }
    // A file beside has a name only from the end of its writing to its renaming, and goes with a later save.
    EXPECT_LT(NamesIn(folder).size(), 10) << NamesIn(folder).join(u' ').toStdString();
    WriteFileBytes(file, old);
    EXPECT_EQ(NamesIn(folder), QStringList{u"file"_s});
}

TEST_F(TextFile, ASaveRemovesWhatKilledSavesHaveLeftAndNothingElse)
{
    const QString left = Put(u".zelvane-0abc9xyz"_s, "left");
    const QString alive = Put(u".zelvane-aaaaaaaa"_s, "being written");
    const int writer = open(Native(alive), O_RDONLY);
    ASSERT_EQ(flock(writer, LOCK_EX), 0);
    const QStringList others = {u".zelvane-1234567"_s, u".zelvane-123456789"_s, u".zelvane-ABCDEFGH"_s,
                                u".zelvane-notes.txt"_s};
    for (const QString &name : others)
        Put(name, "mine");
    ASSERT_EQ(symlink("file", Native(Path(u".zelvane-bbbbbbbb"_s))), 0);
    ASSERT_TRUE(QDir(folder).mkdir(u".zelvane-cccccccc"_s));
    const QStringList before = NamesIn(folder);
    WriteFileBytes(Path(u"file"_s), "x");
    EXPECT_EQ(NamesIn(folder).size(), before.size()); // one came, one went
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(QFile::exists(alive));
    close(writer);
    WriteFileBytes(Path(u"file"_s), "y");
    EXPECT_FALSE(QFile::exists(alive));
}

TEST_F(TextFile, ASaveInPlaceKeepsTheOldTextUntilTheNewOneIsComplete)
{
    constexpr int size = 20'000'000;
    const QByteArray old(size, 'o'), made(size - 5, 'n');
    const QString file = Put(u"file"_s, old);
    ASSERT_EQ(link(Native(file), Native(Path(u"other"_s))), 0);
    int caught = 0;
    // Where others have the processors a write may be over before its killer has its turn.
    for (int round = 0; round < 10 || (caught == 0 && round < 100); ++round) {
        const pid_t child = StartChild([&] {
            for (int i = 0;; ++i)
                WriteFileBytes(file, i % 2 ? old : made);
        });
        // The kill comes when the file has begun to change and has not changed to its end.
        const int seen = ::open(Native(file), O_RDONLY);
        ASSERT_GE(seen, 0);
        char first = 0, last = 0;
        for (QDeadlineTimer end(10000); first == last && !end.hasExpired();) {
            EXPECT_EQ(pread(seen, &last, 1, size - 10), 1);
            EXPECT_EQ(pread(seen, &first, 1, 0), 1);
        }
        close(seen);
        kill(child, SIGKILL);
        EXPECT_FALSE(ChildSucceeded(child));
        const QByteArray found = Content(file);
        std::vector<UnsavedCopy> left = UnsavedCopy::TakeLeft();
        ASSERT_LE(left.size(), 1u);
        if (found != old && found != made) {
            ++caught;
            ASSERT_EQ(left.size(), 1u) << "the old text is nowhere";
        }
        for (UnsavedCopy &copy : left) {
            const auto content = copy.Read();
            ASSERT_TRUE(content);
            EXPECT_EQ(copy.WhichKind(), UnsavedCopy::Kind::Replaced);
            EXPECT_EQ(content->info.name, file);
            EXPECT_TRUE(content->bytes == old || content->bytes == made);
            EXPECT_EQ(content->info.replacedBy, ContentHash(content->bytes == old ? made : old));
            EXPECT_EQ(Status(copy.Path()).st_mode & 07777, 0600u);
            copy.Remove();
        }
        WriteFileBytes(file, old);
    }
    EXPECT_GT(caught, 0) << "no kill met a file that was half written";
    EXPECT_EQ(NamesIn(folder), (QStringList{u"file"_s, u"other"_s}));
    UnsavedCopy::RemoveOld(QDateTime::currentDateTime());
    EXPECT_EQ(NamesIn(UnsavedCopy::Folder()), QStringList());
}

TEST_F(TextFile, NothingIsWrittenInPlaceWhereTheOldTextCannotBeKept)
{
    const QString file = Put(u"file"_s, "old");
    ASSERT_EQ(link(Native(file), Native(Path(u"other"_s))), 0);
    QFile blocked(state + u"/zelvane"_s);
    ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
    const RunTimeError error = ErrorOf([&] { WriteFileBytes(file, "new"); });
    EXPECT_EQ(error.Description(),
              u"The old contents cannot be kept in "_s + state + u"/zelvane/unsaved: "_s + System(ENOTDIR));
    EXPECT_EQ(Content(file), "old"_ba);
    blocked.remove();
    WriteFileBytes(file, "new");
    EXPECT_EQ(Content(file), "new"_ba);
}

TEST_F(TextFile, WholeTextHelpers)
{
    EXPECT_EQ(ReadTextFile({}), QString());
    EXPECT_FALSE(WriteTextFile({}, u"x"_s));
    EXPECT_TRUE(WriteTextFile(Path(u"text"_s), u"no line end \u00E9"_s));
    EXPECT_EQ(Content(Path(u"text"_s)), "no line end \xC3\xA9"_ba);
    EXPECT_EQ(ReadTextFile(Path(u"text"_s)), u"no line end \u00E9"_s);
    EXPECT_EQ(ReadTextFile(Put(u"old"_s, "\xE9")), u"\u00E9"_s);
    EXPECT_THROW(WriteTextFile(Path(u"gone/text"_s), u"x"_s), RunTimeError);
    EXPECT_THROW(ReadTextFile(Path(u"gone/text"_s)), RunTimeError);
}
