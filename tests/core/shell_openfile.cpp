// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"
#include "platform/textencoding.h"
#include "platform/textfile.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"

#include <new>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <utility>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

using OpenFile = test::LifecycleFixture;
using test::SaveChanges;

MessageBoxRequest UnableToOpen(const QString &name, const QString &description)
{
    return {.text = u"Unable to open "_s + name + u".\n\n"_s + description, .icon = BoxIcon::Warning};
}

MessageBoxRequest LoadLastSaved(const QString &name)
{
    return {.text = u"Load last saved version of "_s + name + u"?"_s,
            .icon = BoxIcon::Warning,
            .buttons = BoxButtons::YesNo};
}

MessageBoxRequest LongLine(const QString &name, qsizetype characters)
{
    return {.text = name + u" holds a line of "_s + QString::number(characters) +
                    u" characters. So long a line is not shown well up to its end, and keys in it take "
                    "seconds. Open it?"_s,
            .icon = BoxIcon::Warning,
            .buttons = BoxButtons::YesNo,
            .defaultAnswer = BoxAnswer::No};
}

/// The description that reading this file fails with.
QString ReadFailure(const QString &name)
{
    try {
        ReadFileBytes(name);
    } catch (const RunTimeError &error) {
        return error.Description();
    }
    ADD_FAILURE() << "reads: " << name.toStdString();
    return {};
}

TEST_F(OpenFile, TakesItsStepsInOrder)
{
    const QString path = context.WriteFile(u"x.orc"_s, "instr 1\nendin\n");
    view.outlineShown = view.relatedFilesShown = true;
    bool seen = false;
    view.duringHighlight = [&] {
        seen = true;
        EXPECT_TRUE(document.Loading);
        EXPECT_TRUE(document.Modified);
        EXPECT_FALSE(view.textShown);
        EXPECT_TRUE(view.busy);
        EXPECT_EQ(document.CurrentFile, path);
        EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
        EXPECT_EQ(document.CurrentPlatform, LineEndForm::Unix);
    };
    documents.OpenFile(path);
    EXPECT_TRUE(seen);
    ASSERT_EQ(view.calls.size(), 21);
    EXPECT_EQ(view.calls.mid(0, 13),
              (QStringList{u"busy"_s, u"status Loading..."_s, u"before"_s, u"hide"_s,
                           u"caption Zelvane - "_s + path + u" (Orchestra)"_s, u"highlight"_s, u"show"_s,
                           u"single"_s, u"status Code outline..."_s, u"outline"_s,
                           u"status Related files..."_s, u"related"_s, u"focus"_s}));
    EXPECT_EQ(view.calls[13], u"selection"_s);
    EXPECT_TRUE(view.calls[14].startsWith(u"status x.orc: last saved "_s));
    EXPECT_TRUE(view.calls[14].endsWith(u" - 3 lines - 28 bytes - UNIX"_s)) << view.calls[14].toStdString();
    EXPECT_EQ(view.calls.mid(15),
              (QStringList{u"save off"_s, u"sound"_s, u"enable"_s, u"recent"_s, u"after"_s, u"ready"_s}));
}

TEST_F(OpenFile, LeavesACleanNamedDocument)
{
    const QString path = context.WriteFile(u"x.csd"_s, "one\r\ntwo\r\n");
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"one\ntwo\n"_s);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(document.DocumentKind, FileKind::Unified);
    EXPECT_EQ(document.CurrentPlatform, LineEndForm::Pc);
    EXPECT_FALSE(document.Modified);
    EXPECT_FALSE(document.Loading);
    EXPECT_FALSE(view.busy);
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(text.CanUndo());
    EXPECT_EQ(view.recentFiles, QStringList{path});
    EXPECT_TRUE((view.enabled[Cmd::mnuCSD[Conversion::ToPair]]));
    EXPECT_FALSE(view.calls.contains(u"outline"_s));
    EXPECT_FALSE(view.calls.contains(u"related"_s));
    Type(u"x"_s);
    EXPECT_TRUE(document.Modified);
}

TEST_F(OpenFile, StripsOnePairOfQuotes)
{
    const QString path = context.WriteFile(u"a b.orc"_s, "x");
    documents.OpenFile(u'"' + path + u'"');
    EXPECT_EQ(document.CurrentFile, path);
}

TEST_F(OpenFile, IgnoresAnEmptyName)
{
    Type(u"typed"_s);
    view.calls.clear();
    documents.OpenFile({});
    documents.OpenFile(u"\"\""_s);
    EXPECT_EQ(view.calls, QStringList());
    EXPECT_TRUE(document.Modified);
}

TEST_F(OpenFile, ReloadsTheCurrentFileWithoutAWord)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    context.WriteFile(u"x.orc"_s, "new");
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"new"_s);
}

TEST_F(OpenFile, AsksBeforeItReloadsAModifiedFile)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    Type(u"typed "_s);
    desktop.ExpectMessage(LoadLastSaved(path), BoxAnswer::No);
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"typed old"_s);
    EXPECT_TRUE(document.Modified);
    desktop.ExpectMessage(LoadLastSaved(path), BoxAnswer::Yes);
    documents.OpenFile(u'"' + path + u'"');
    EXPECT_EQ(text.text, u"old"_s);
    EXPECT_FALSE(document.Modified);
}

TEST_F(OpenFile, AsksAboutUnsavedWorkBeforeAnotherFile)
{
    const QString first = context.WriteFile(u"x.orc"_s, "old");
    const QString other = context.WriteFile(u"y.orc"_s, "other");
    documents.OpenFile(first);
    Type(u"typed "_s);
    desktop.ExpectMessage(SaveChanges(first), BoxAnswer::Cancel);
    documents.OpenFile(other);
    EXPECT_EQ(document.CurrentFile, first);
    EXPECT_EQ(text.text, u"typed old"_s);
    desktop.ExpectMessage(SaveChanges(first), BoxAnswer::Yes);
    documents.OpenFile(other);
    EXPECT_EQ(document.CurrentFile, other);
    EXPECT_EQ(text.text, u"other"_s);
    EXPECT_EQ(FileBytes(first), "typed old");
}

TEST_F(OpenFile, AFileNamedWithAnotherCaseIsAnotherFile)
{
    const QString path = context.WriteFile(u"x.orc"_s, "lower");
    const QString upper = context.WriteFile(u"X.orc"_s, "upper");
    documents.OpenFile(path);
    Type(u"typed "_s);
    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    documents.OpenFile(upper);
    EXPECT_EQ(text.text, u"upper"_s);
    EXPECT_EQ(view.recentFiles, QStringList{upper}) << "the list holds no two that differ only by case";
}

TEST_F(OpenFile, AFailedLoadLeavesTheOldDocument)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    view.enabled.clear();
    const QString missing = context.folder.filePath(u"none.sco"_s);
    desktop.ExpectMessage(UnableToOpen(missing, ReadFailure(missing)));
    documents.OpenFile(missing);
    EXPECT_EQ(text.text, u"old"_s);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(document.DocumentKind, FileKind::Orchestra);
    EXPECT_EQ(view.caption, u"Zelvane - "_s + path + u" (Orchestra)"_s);
    EXPECT_TRUE(document.Modified);
    EXPECT_TRUE(document.Loading);
    EXPECT_FALSE(view.busy);
    EXPECT_TRUE(view.textShown);
    EXPECT_TRUE(view.enabled.empty());
    EXPECT_EQ(view.recentFiles, QStringList{path});
    EXPECT_EQ(status.text, u""_s) << "nothing is loading any more";
    EXPECT_EQ(view.calls.last(), u"ready"_s);
}

TEST_F(OpenFile, ARecentFileThatIsGoneStaysInTheList)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    documents.OpenFile(path);
    documents.NewFile(FileKind::Other, {});
    ASSERT_TRUE(QFile::remove(path));
    desktop.ExpectMessage(UnableToOpen(path, ReadFailure(path)));
    documents.OpenRecent(1);
    EXPECT_EQ(settings.GetSetting(u"Recent File List"_s, u"1"_s), path);
}

TEST_F(OpenFile, AfterAFailedLoadNoEditIsLost)
{
    const QString path = context.WriteFile(u"x.orc"_s, "old");
    const QString missing = context.folder.filePath(u"none.sco"_s);
    documents.OpenFile(path);
    desktop.ExpectMessage(UnableToOpen(missing, ReadFailure(missing)));
    documents.OpenFile(missing);

    documents.Save();
    EXPECT_FALSE(document.Modified);
    Type(u"typed "_s);
    EXPECT_TRUE(document.Modified) << "edits after a save count again";

    desktop.ExpectMessage(SaveChanges(path), BoxAnswer::No);
    desktop.ExpectMessage(UnableToOpen(missing, ReadFailure(missing)));
    documents.OpenFile(missing);
    documents.NewFile(FileKind::Score, {});
    EXPECT_FALSE(document.Modified);
    Type(u"i1 0 1"_s);
    EXPECT_TRUE(document.Modified) << "edits of a new document count again";
}

TEST_F(OpenFile, RefusesWhatIsNoFile)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString before = document.CurrentFile;
    QStringList names = {context.folder.path(), u"/dev/null/x.orc"_s};
#ifdef Q_OS_UNIX
    const QString pipe = context.folder.filePath(u"pipe.orc"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    names.append(pipe);
#endif
    bool modified = false;
    for (const QString &name : names) {
        const QString description = ReadFailure(name);
        EXPECT_NE(description, u""_s);
        if (std::exchange(modified, true))
            desktop.ExpectMessage(SaveChanges(before), BoxAnswer::No);
        desktop.ExpectMessage(UnableToOpen(name, description));
        documents.OpenFile(name);
        EXPECT_EQ(text.text, u"old"_s);
        EXPECT_EQ(document.CurrentFile, before);
    }
}

#ifdef Q_OS_UNIX
TEST_F(OpenFile, ADeviceIsRefusedOrReadWithoutAHang)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString device = u"/dev/null"_s;
    desktop.ExpectMessage(UnableToOpen(device, ReadFailure(device)));
    documents.OpenFile(device);
    EXPECT_EQ(text.text, u"old"_s);
}
#endif

TEST_F(OpenFile, AnUnreadableFileIsRefused)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString locked = context.WriteFile(u"locked.orc"_s, "secret");
    ASSERT_TRUE(QFile::setPermissions(locked, {}));
    // The administrator may read every file: the opening runs as a user who may not.
    const bool root = geteuid() == 0;
    ASSERT_EQ(root ? seteuid(65534) : 0, 0);
    const auto back = qScopeGuard([root] { EXPECT_EQ(root ? seteuid(0) : 0, 0); });
    ASSERT_FALSE(QFile(locked).open(QIODevice::ReadOnly));
    desktop.ExpectMessage(UnableToOpen(locked, ReadFailure(locked)));
    documents.OpenFile(locked);
    EXPECT_EQ(text.text, u"old"_s);
}

TEST_F(OpenFile, AFileThatVanishesBehindTheDialogIsTold)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString gone = context.folder.filePath(u"gone.orc"_s);
    desktop.ExpectOpenDialog({.filters = {{u"All Csound types"_s, u"*.orc;*.sco;*.csd"_s},
                                          {u"Orchestra files"_s, u"*.orc"_s},
                                          {u"Score files"_s, u"*.sco"_s},
                                          {u"Unified Format files"_s, u"*.csd"_s},
                                          {u"Text files"_s, u"*.txt"_s},
                                          {u"C/C++"_s, u"*.cpp;*.c;*.h"_s},
                                          {u"All files"_s, u"*.*"_s}},
                              .folder = document.CurrentFile},
                             {.path = gone, .filterIndex = 1});
    desktop.ExpectMessage(UnableToOpen(gone, ReadFailure(gone)));
    documents.Open();
    EXPECT_EQ(text.text, u"old"_s);
}

TEST_F(OpenFile, AVeryLongLineLoads)
{
    const QByteArray line(5'000'000, 'a');
    documents.OpenFile(context.WriteFile(u"x.orc"_s, line));
    EXPECT_EQ(text.text.size(), line.size());
    EXPECT_EQ(text.LineCount(), 1);
    EXPECT_EQ(document.CurrentPlatform, LineEndForm::Pc);
}

TEST_F(OpenFile, AnUnwieldyLineIsAskedAbout)
{
    const QString old = context.WriteFile(u"old.orc"_s, "instr 1\nendin\n");
    const QString path = context.WriteFile(u"x.orc"_s, "instr 1\n" + QByteArray(8'000'001, 'a') + "\nb\n");
    text.onlyLength = true;
    documents.OpenFile(old);
    Type(u"typed"_s);
    const QString typed = text.text;
    view.calls.clear();
    // Whoever does not want it keeps the text that stands, changed as it is.
    desktop.ExpectMessage(SaveChanges(old), BoxAnswer::No);
    desktop.ExpectMessage(LongLine(path, 8'000'001), BoxAnswer::No);
    documents.OpenFile(path);
    EXPECT_EQ(text.text, typed);
    EXPECT_EQ(document.CurrentFile, old);
    EXPECT_TRUE(document.Modified);
    EXPECT_FALSE(document.Loading);
    EXPECT_TRUE(view.calls.isEmpty()) << view.calls.join(u", "_s).toStdString();

    desktop.ExpectMessage(SaveChanges(old), BoxAnswer::No);
    desktop.ExpectMessage(LongLine(path, 8'000'001), BoxAnswer::Yes);
    text.onlyLength = false;
    documents.OpenFile(path);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(text.text.size(), 8'000'012);
    documents.OpenFile(path); // it is loaded again without a question
    desktop.CheckAllCame();
}

TEST_F(OpenFile, ALineThatHasBecomeUnwieldyIsAskedAbout)
{
    const QString path = context.WriteFile(u"x.orc"_s, "short\n");
    const MessageBoxRequest changed{.text = path + u" was changed by another program. Load it again?"_s,
                                    .icon = BoxIcon::Warning,
                                    .buttons = BoxButtons::YesNo,
                                    .defaultAnswer = BoxAnswer::Yes};
    documents.OpenFile(path);
    context.WriteFile(u"x.orc"_s, QByteArray(8'000'001, 'a'));
    desktop.ExpectMessage(LongLine(path, 8'000'001), BoxAnswer::No);
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"short\n"_s);

    desktop.ExpectMessage(changed, BoxAnswer::Yes);
    desktop.ExpectMessage(LongLine(path, 8'000'001), BoxAnswer::No);
    documents.WindowActivated();
    EXPECT_EQ(text.text, u"short\n"_s);
    // That was no leave to save over it.
    Type(u";"_s);
    desktop.ExpectMessage({.text = path + u" was changed by another program. Save over it?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::No);
    documents.Save();

    desktop.ExpectMessage(LoadLastSaved(path), BoxAnswer::Yes);
    desktop.ExpectMessage(LongLine(path, 8'000'001), BoxAnswer::Yes);
    documents.OpenFile(path);
    EXPECT_EQ(text.text.size(), 8'000'001);
}

TEST_F(OpenFile, ShorterLinesComeWithoutAQuestion)
{
    text.onlyLength = true;
    const QByteArray line(8'000'000, 'a');
    // Characters count, not bytes.
    QByteArray accents;
    for (int i = 0; i < 8'000'000; ++i)
        accents += "\xC3\xA9";
    for (const QByteArray &bytes : {line, line + "\n" + line, line + "\r" + line + "\r\n", accents})
        documents.OpenFile(context.WriteFile(u"x.orc"_s, bytes));
    EXPECT_EQ(text.loadedLength, 8'000'000);
    desktop.ExpectMessage(LongLine(context.folder.filePath(u"y.orc"_s), 8'000'001), BoxAnswer::No);
    documents.OpenFile(context.WriteFile(u"y.orc"_s, accents + "\xC3\xA9\n" + line));
    desktop.CheckAllCame();
}

TEST_F(OpenFile, AFileBeyondTheOffsetsIsRefused)
{
    const QString path = context.WriteFile(u"x.orc"_s);
    if (!QFile::resize(path, (1LL << 31) + 1))
        GTEST_SKIP() << "the disk holds no file of this size";
    desktop.ExpectMessage(UnableToOpen(path, u"Out of memory"_s));
    documents.OpenFile(path);
    EXPECT_EQ(document.CurrentFile, u""_s);
}

TEST_F(OpenFile, AVeryLargeFileOfNulBytesLoads)
{
    const QString path = context.WriteFile(u"x.orc"_s);
    ASSERT_TRUE(QFile::resize(path, 200'000'000));
    text.onlyLength = true;
    desktop.ExpectMessage(LongLine(path, 200'000'000), BoxAnswer::Yes);
    documents.OpenFile(path);
    EXPECT_EQ(text.loadedLength, 200'000'000);
    EXPECT_FALSE(document.Loading);
}

TEST_F(OpenFile, AFailureBehindTheLoadIsReportedByTheCaller)
{
    const QString path = context.WriteFile(u"x.orc"_s, "new");
    view.duringHighlight = [] { throw RunTimeError(ErrorNumber::TypeMismatch, u"Type mismatch"_s); };
    EXPECT_THROW(documents.OpenFile(path), RunTimeError);
    EXPECT_EQ(document.CurrentFile, path);
    EXPECT_EQ(text.text, u"new"_s);
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(view.busy);
    EXPECT_TRUE(document.Loading);
    EXPECT_TRUE(document.Modified);
}

TEST_F(OpenFile, NoFailureLeavesTheTextHidden)
{
    const QString path = context.WriteFile(u"x.orc"_s, "new");
    text.beforeLoad = [] { throw std::bad_alloc(); };
    EXPECT_THROW(documents.OpenFile(path), std::bad_alloc);
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(view.busy);
}

TEST_F(OpenFile, TheOldTextStandsUntilTheNewOneIsDecoded)
{
    documents.OpenFile(context.WriteFile(u"x.orc"_s, "old"));
    const QString path = context.WriteFile(u"y.orc"_s, "new");
    bool seen = false;
    text.beforeLoad = [&] {
        seen = true;
        EXPECT_EQ(text.text, u"old"_s);
        EXPECT_EQ(text.Selection(), (TextSpan{0, 0}));
    };
    text.SetSelection(1, 2);
    documents.OpenFile(path);
    EXPECT_TRUE(seen);
}

TEST_F(OpenFile, RelatedFilesAndHistoryKeepOutOfTheRecentList)
{
    const QString first = context.WriteFile(u"x.orc"_s, "1");
    const QString second = context.WriteFile(u"y.orc"_s, "2");
    const QString third = context.WriteFile(u"z.orc"_s, "3");
    view.relatedFilesShown = true;
    documents.OpenFile(first);
    view.calls.clear();
    documents.OpenFile(second, OpenOrigin::RelatedFiles);
    EXPECT_FALSE(view.calls.contains(u"related"_s)) << "the list that was clicked stays";
    EXPECT_FALSE(view.calls.contains(u"status Related files..."_s));
    documents.OpenFile(third, OpenOrigin::History);
    EXPECT_TRUE(view.calls.contains(u"related"_s));
    EXPECT_EQ(view.recentFiles, QStringList{first});
    EXPECT_EQ(view.calls.count(u"after"_s), 2);
}

struct LineEndCase {
    const char *bytes;
    const char16_t *text;
    LineEndForm form;
};

TEST_F(OpenFile, FindsTheLineEndForm)
{
    const std::vector<LineEndCase> cases = {
        {"a\rb\r", u"a\nb\n", LineEndForm::Mac},
        {"a\nb", u"a\nb", LineEndForm::Unix},
        {"a\r\nb", u"a\nb", LineEndForm::Pc},
        {"a\n", u"a\n", LineEndForm::Pc},
        {"a\r", u"a\n", LineEndForm::Pc},
        {"", u"", LineEndForm::Pc},
        {"a\nb\rc\r\n", u"a\nb\nc\n", LineEndForm::Unix},
        {"a\rb\r\nc", u"a\nb\n\nc", LineEndForm::Mac},
    };
    for (const LineEndCase &one : cases) {
        documents.OpenFile(context.WriteFile(u"x.txt"_s, one.bytes));
        EXPECT_EQ(text.text, QString::fromUtf16(one.text));
        EXPECT_EQ(int(document.CurrentPlatform), int(one.form)) << testing::PrintToString(text.text);
    }
    documents.OpenFile(context.WriteFile(u"x.txt"_s, "a\rb\r"));
    EXPECT_TRUE(status.text.endsWith(u" - MAC"_s));
}

struct EncodingCase {
    QByteArray bytes;
    QString text;
    TextEncoding encoding;
};

TEST_F(OpenFile, EncodingsRoundTrip)
{
    const std::vector<EncodingCase> cases = {
        {"caf\xC3\xA9\r\n", u"caf\u00E9\n"_s, {TextEncoding::Form::Utf8, false}},
        {"\xEF\xBB\xBF"
         "caf\xC3\xA9",
         u"caf\u00E9"_s,
         {TextEncoding::Form::Utf8, true}},
        {"caf\xE9 \x80 \x81", u"caf\u00E9 \u20AC \u0081"_s, {TextEncoding::Form::Windows1252, false}},
        {QByteArray("nul\0nul\r\n", 9), u"nul\0nul\n"_s, {TextEncoding::Form::Utf8, false}},
        {"broken \xC3\x28", u"broken \u00C3("_s, {TextEncoding::Form::Windows1252, false}},
    };
    for (const EncodingCase &one : cases) {
        const QString path = context.WriteFile(u"x.txt"_s, one.bytes);
        documents.OpenFile(path);
        EXPECT_EQ(text.text, one.text);
        EXPECT_EQ(document.Encoding, one.encoding);
        if (one.bytes.contains('\0'))
            desktop.ExpectMessage({.text = path +
                                           u" holds NUL bytes: it may be no text. Saving it rewrites its "
                                           "line ends. Save it?"_s,
                                   .icon = BoxIcon::Warning,
                                   .buttons = BoxButtons::YesNo,
                                   .defaultAnswer = BoxAnswer::No},
                                  BoxAnswer::Yes);
        documents.Save();
        EXPECT_EQ(FileBytes(path), one.bytes);
        EXPECT_EQ(document.Encoding, one.encoding);
    }
}

TEST_F(OpenFile, ATextThatTheEncodingCannotHoldIsSavedAsUtf8)
{
    const QString path = context.WriteFile(u"x.txt"_s, "caf\xE9");
    documents.OpenFile(path);
    Type(u"\u03C0 "_s);
    documents.Save();
    EXPECT_EQ(FileBytes(path), "\xCF\x80 caf\xC3\xA9");
    EXPECT_EQ(document.Encoding.form, TextEncoding::Form::Utf8);
}

TEST_F(OpenFile, TheRecentListKeepsNineWithTheLatestFirst)
{
    QStringList paths;
    for (int i = 0; i < 11; ++i) {
        paths.prepend(context.WriteFile(u"f%1.orc"_s.arg(i), "x"));
        documents.OpenFile(paths.first());
    }
    EXPECT_EQ(view.recentFiles, paths.mid(0, 9));
    documents.OpenRecent(4);
    EXPECT_EQ(document.CurrentFile, paths[3]);
    EXPECT_EQ(view.recentFiles.mid(0, 5), (QStringList{paths[3], paths[0], paths[1], paths[2], paths[4]}));
}

TEST_F(OpenFile, ARecentItemOpensWhatTheStoreHoldsNow)
{
    const QString first = context.WriteFile(u"x.orc"_s, "1");
    const QString second = context.WriteFile(u"y.orc"_s, "2");
    documents.OpenFile(first);
    settings.SaveSetting(u"Recent File List"_s, u"1"_s, second);
    documents.OpenRecent(1);
    EXPECT_EQ(document.CurrentFile, second);
    documents.OpenRecent(7);
    EXPECT_EQ(document.CurrentFile, second) << "an empty entry is ignored";
}

TEST_F(OpenFile, ACaptionOfTheRecentMenuShowsThePathAsItIs)
{
    EXPECT_EQ(RecentFileCaption(1, u"/a/x.orc"_s), u"&1 /a/x.orc"_s);
    EXPECT_EQ(RecentFileCaption(9, u"/rock & roll/x.orc"_s), u"&9 /rock && roll/x.orc"_s);
}

TEST_F(OpenFile, AFileOfNoKindShowsTheDesktopsTypeName)
{
    const QString path = context.WriteFile(u"x.txt"_s, "x");
    desktop.typeNames[path] = u"plain text document"_s;
    documents.OpenFile(path);
    EXPECT_EQ(view.caption, u"Zelvane - "_s + path + u" (plain text document)"_s);
    EXPECT_EQ(document.DocumentKind, FileKind::Other);
}

TEST_F(OpenFile, AReadOnlyFileOpensAndSaysSo)
{
    const QString path = context.WriteFile(u"x.orc"_s, "x");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner));
    documents.OpenFile(path);
    EXPECT_EQ(text.text, u"x"_s);
    EXPECT_TRUE(status.text.contains(u" Read only - 1 lines"_s)) << status.text.toStdString();
}

} // namespace
