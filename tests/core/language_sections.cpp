// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/sections.h"

#include "language/highlighter.h"
#include "language/languagekeys.h"
#include "language/opcodelist.h"
#include "oracle/sectionsoracle.h"
#include "platform/runtimeerror.h"
#include "platform/stylerun.h"
#include "shell/documentkeys.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/lifecyclefixture.h"
#include "support/randomtext.h"
#include "support/statefolder.h"

#include <algorithm>
#include <new>
#include <optional>
#include <QDir>
#include <QFile>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

const QByteArray Orchestra = "sr = 44100\r\ninstr 1\r\nendin";
const QByteArray Score = "i1 0 1\r\ne\r\n";
const QByteArray Unified = "<CsoundSynthesizer>\r\n<CsOptions>\r\n\r\n</CsOptions>\r\n<CsInstruments>\r\n" +
                           Orchestra + "\r\n</CsInstruments>\r\n<CsScore>\r\n" + Score +
                           "\r\n</CsScore>\r\n</CsoundSynthesizer>";

struct SectionsTest : LifecycleFixture {
    OpcodeList opcodes;
    Highlighter highlighter{editor, view, opcodes};
    PieceSections sections{editor, documents, view, view.steps, highlighter};

    QString Path(const QString &name) const { return context.folder.filePath(name); }
    /// Opens a file of these bytes.
    QString Open(const QString &name, const QByteArray &bytes)
    {
        const QString path = context.WriteFile(name, bytes);
        documents.OpenFile(path);
        return path;
    }
    /// The files of the folder, without the settings store's.
    QStringList Files() const
    {
        return QDir(context.folder.path()).entryList({u"*.orc"_s, u"*.sco"_s, u"*.csd"_s, u"*.txt"_s});
    }
    FileDialogRequest SelectDialog(const QString &label, const QString &extension, const QString &similar,
                                   int filter = 0) const
    {
        return SelectHalf(label, extension, similar, context.folder.path(), filter);
    }
    FileDialogRequest SaveDialog(const QString &label, const QString &extension, const QString &base) const
    {
        return SaveHalf(label, extension, base, document.CurrentFile);
    }
    void ExpectSaves(const QString &orchestra, const QString &score, const QString &base)
    {
        desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"orc"_s, base), {.path = orchestra});
        if (!orchestra.isEmpty())
            desktop.ExpectSaveDialog(SaveDialog(u"Score"_s, u"sco"_s, base), {.path = score});
    }
    /// What a conversion that failed must have left of the document.
    struct Kept {
        QString file, text, caption;
        TextSpan selection;
        int undoSteps;
        FileKind kind;
        bool modified, loading, textShown, saveEnabled;
        bool operator==(const Kept &) const = default;
    };
    Kept Now() const
    {
        return {document.CurrentFile,  text.text,         view.caption,     text.selection, text.undoSteps,
                document.DocumentKind, document.Modified, document.Loading, view.textShown, view.saveEnabled};
    }
};

const MessageBoxRequest SaveFirst{.text = u"You should save the current document first."_s,
                                  .icon = BoxIcon::Information};

std::optional<QString> Extracted(const QString &text)
{
    try {
        return ExtractTag(text, u"CsScore"_s);
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Number(), ErrorNumber::InvalidCall);
        return std::nullopt;
    }
}

} // namespace

// Tags and the layout

TEST(ExtractTag, TakesWhatStandsBetweenTheFirstTags)
{
    EXPECT_EQ(Extracted(u"<CsScore>i1</CsScore>"_s), u"i1"_s);
    EXPECT_EQ(Extracted(u"<CsScore></CsScore>"_s), QString());
    EXPECT_EQ(Extracted(u"a<CsScore>b<CsScore>c</CsScore>d</CsScore>"_s), u"b<CsScore>c"_s);
    EXPECT_EQ(Extracted(u"<CsScore>"_s), QString());
    EXPECT_EQ(Extracted(u"</CsScore>"_s), QString());
    EXPECT_EQ(Extracted(u"<csscore>i1</CsScore>"_s), QString());
    EXPECT_EQ(Extracted(u"</CsScore><CsScore>i1</CsScore>"_s), std::nullopt);
}

TEST(ExtractTag, IsThatOfTheLoop)
{
    RandomText random({u"<CsScore>"_s, u"</CsScore>"_s, u"<csscore>"_s, u"<CsScore"_s, u"CsScore>"_s, u"<"_s,
                       u"/"_s, u"i1"_s, u"\n"_s},
                      6);
    for (int i = 0; i < 20000; ++i) {
        const QString text = random.Next();
        ASSERT_EQ(Extracted(text), oracle::ExtractTag(text, u"CsScore"_s)) << ::testing::PrintToString(text);
    }
}

TEST(UnifiedText, IsThatOfItsLines)
{
    RandomText random({u"a"_s, u"\n"_s, u"</CsScore>"_s, u"<CsInstruments>"_s, u" "_s}, 5);
    for (int i = 0; i < 20000; ++i) {
        const QString orchestra = random.Next();
        const QString score = random.Next();
        ASSERT_EQ(UnifiedText(orchestra, score), oracle::UnifiedText(orchestra, score))
            << ::testing::PrintToString(orchestra) << ::testing::PrintToString(score);
    }
}

// Orchestra and Score

TEST_F(SectionsTest, WithoutAFileNameNothingHappens)
{
    documents.NewFile(FileKind::Unified, {});
    sections.mnuOrchestra();
    sections.mnuScore();
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
    EXPECT_EQ(document.CurrentFile, QString());
}

TEST_F(SectionsTest, InAUnifiedFileTheTagComesToTheTop)
{
    Open(u"x.csd"_s, Unified);
    sections.mnuScore();
    EXPECT_EQ(text.selection.start, text.text.indexOf(u"<CsScore>"_s));
    EXPECT_TRUE(text.selection.IsEmpty());
    EXPECT_EQ(text.firstVisibleLine, text.LineOfOffset(text.selection.start));
    sections.mnuOrchestra();
    EXPECT_EQ(text.selection.start, text.text.indexOf(u"<CsInstruments>"_s));
    EXPECT_EQ(text.firstVisibleLine, 4);
    EXPECT_FALSE(document.Modified);
}

TEST_F(SectionsTest, TagsAreFoundInAnyCase)
{
    Open(u"x.csd"_s, "\r\n<CSINSTRUMENTS>\r\n<csscore>");
    sections.mnuOrchestra();
    EXPECT_EQ(text.selection.start, 1);
    sections.mnuScore();
    EXPECT_EQ(text.selection.start, 17);
}

TEST_F(SectionsTest, TagSearchIsThatOfTheLoop)
{
    Open(u"x.csd"_s, {});
    RandomText random({u"<CsScore>"_s, u"<csscore>"_s, u"</CsScore>"_s, u"<CsScor"_s, u"e>"_s, u"\n"_s}, 5);
    for (int i = 0; i < 20000; ++i) {
        text.text = random.Next();
        const int hit = oracle::Search(text.text, u"<CsScore>"_s, true);
        text.SetSelection(0, 0);
        if (hit < 0)
            desktop.ExpectMessage(
                {.text = u"There is no <CsScore> tag in this file."_s, .icon = BoxIcon::Information});
        sections.mnuScore();
        ASSERT_EQ(text.selection.start, std::max(hit, 0)) << ::testing::PrintToString(text.text);
    }
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, AMissingTagIsTold)
{
    Open(u"x.csd"_s, "</CsInstruments> <CsInstruments >\r\n");
    text.SetSelection(3, 5);
    desktop.ExpectMessage(
        {.text = u"There is no <CsInstruments> tag in this file."_s, .icon = BoxIcon::Information});
    sections.mnuOrchestra();
    desktop.ExpectMessage(
        {.text = u"There is no <CsScore> tag in this file."_s, .icon = BoxIcon::Information});
    sections.mnuScore();
    EXPECT_EQ(text.selection, (TextSpan{3, 5}));
}

TEST_F(SectionsTest, GoesToTheOtherFileAndBackToTheSamePlaces)
{
    view.relatedFilesShown = true;
    const QString score = context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    view.calls.clear();
    text.SetSelection(13, 16);
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, score);
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
    text.SetSelection(8, 8);
    sections.mnuOrchestra();
    EXPECT_EQ(document.CurrentFile, orchestra);
    EXPECT_EQ(text.selection, (TextSpan{13, 13}));
    EXPECT_EQ(text.firstVisibleLine, 1);
    text.SetSelection(1, 1);
    sections.mnuScore();
    EXPECT_EQ(text.selection, (TextSpan{8, 8}));
    sections.mnuOrchestra();
    EXPECT_EQ(text.selection, (TextSpan{1, 1}));
    // The list of related files is left as it is.
    EXPECT_FALSE(view.calls.contains(u"related"_s));
}

TEST_F(SectionsTest, ThePlaceIsNotGivenBackWithoutRememberCaret)
{
    settings.SaveFlag(Keys::RememberCaret, false);
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    text.SetSelection(13, 13);
    sections.mnuScore();
    sections.mnuOrchestra();
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
}

TEST_F(SectionsTest, ThePlaceBelongsToOneFile)
{
    context.WriteFile(u"x.sco"_s, Score);
    context.WriteFile(u"y.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    text.SetSelection(13, 13);
    sections.mnuScore();
    Open(u"y.orc"_s, Orchestra);
    sections.mnuScore();
    sections.mnuOrchestra();
    EXPECT_EQ(document.CurrentFile, Path(u"y.orc"_s));
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
}

TEST_F(SectionsTest, ThePlaceIsThatOfAFileInAnyCase)
{
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    text.SetSelection(13, 13);
    sections.mnuScore();
    ASSERT_TRUE(QFile::rename(orchestra, Path(u"X.ORC"_s)));
    desktop.ExpectOpenDialog(SelectDialog(u"Orchestra"_s, u"orc"_s, u"x*"_s), {.path = Path(u"X.ORC"_s)});
    sections.mnuOrchestra();
    EXPECT_EQ(document.CurrentFile, Path(u"X.ORC"_s));
    EXPECT_EQ(text.selection, (TextSpan{13, 13}));
}

TEST_F(SectionsTest, TheRecentListKeepsItsFiles)
{
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    view.recentFiles.clear();
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, Path(u"x.sco"_s));
    sections.mnuOrchestra();
    EXPECT_EQ(view.recentFiles, QStringList());
    EXPECT_EQ(settings.GetSetting(Sections::RecentFiles, u"1"_s), orchestra);
    EXPECT_EQ(settings.GetSetting(Sections::RecentFiles, u"2"_s), QString());
}

TEST_F(SectionsTest, AnOtherFileThatCannotBeOpenedLeavesThePlace)
{
    const QString score = context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    text.SetSelection(13, 13);
    text.beforeLoad = [] { throw RunTimeError(ErrorNumber::OutOfMemory, u"Out of memory"_s); };
    desktop.ExpectMessage(
        {.text = u"Unable to open "_s + score + u".\n\nOut of memory"_s, .icon = BoxIcon::Warning});
    sections.mnuScore();
    text.beforeLoad = {};
    EXPECT_EQ(document.CurrentFile, orchestra);
    EXPECT_EQ(text.text, QString::fromLatin1(Orchestra).remove(u'\r'));
    text.SetSelection(5, 5);
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::No);
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, score);
    sections.mnuOrchestra();
    EXPECT_EQ(text.selection, (TextSpan{5, 5}));
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, TheHalfThatIsOpenStaysAsItIs)
{
    Open(u"x.orc"_s, Orchestra);
    Type(u"x"_s);
    sections.mnuOrchestra();
    EXPECT_TRUE(document.Modified);
    EXPECT_EQ(text.selection, (TextSpan{1, 1}));
}

TEST_F(SectionsTest, ACancelledSearchStaysWhereItIs)
{
    const QString orchestra = Open(u"piece.orc"_s, Orchestra);
    desktop.ExpectOpenDialog(SelectDialog(u"Score"_s, u"sco"_s, u"pi*"_s), {});
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, orchestra);
}

TEST_F(SectionsTest, TheUserMayChooseTheOtherFile)
{
    const QString other = context.WriteFile(u"pieces2.sco"_s, Score);
    Open(u"piece.orc"_s, Orchestra);
    desktop.ExpectOpenDialog(SelectDialog(u"Score"_s, u"sco"_s, u"pi*"_s, 1), {.path = other});
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, other);
}

TEST_F(SectionsTest, AsksAboutUnsavedWork)
{
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    Type(u"new "_s);
    text.SetSelection(2, 2);
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::Cancel);
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, orchestra);
    EXPECT_TRUE(text.text.startsWith(u"new "));
    EXPECT_EQ(text.selection, (TextSpan{2, 2}));
}

TEST_F(SectionsTest, SaveOnSwitchSavesWhatWasModified)
{
    settings.SaveFlag(Keys::SaveOnSwitch, true);
    const QString score = context.WriteFile(u"x.sco"_s, "e\n");
    const QString orchestra = Open(u"x.orc"_s, "old");
    Type(u"new "_s);
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, score);
    EXPECT_EQ(FileBytes(orchestra), "new old");
    sections.mnuOrchestra();
    EXPECT_EQ(document.CurrentFile, orchestra);
    EXPECT_EQ(FileBytes(score), "e\n") << "was not modified";
}

TEST_F(SectionsTest, ASaveOnSwitchThatFailsLeavesTheQuestion)
{
    settings.SaveFlag(Keys::SaveOnSwitch, true);
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, "old");
    Type(u"new "_s);
    // Another program has written the file, and is not to be written over.
    context.WriteFile(u"x.orc"_s, "theirs");
    desktop.ExpectMessage({.text = orchestra + u" was changed by another program. Save over it?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::No);
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::Cancel);
    sections.mnuScore();
    EXPECT_EQ(document.CurrentFile, orchestra);
    EXPECT_EQ(text.text, u"new old"_s);
    EXPECT_EQ(FileBytes(orchestra), "theirs");
}

// To the unified form

TEST_F(SectionsTest, AConversionKeepsTheUnsavedTextForItsWeek)
{
    const OwnStateFolder state;
    context.WriteFile(u"piece.sco"_s, Score);
    Open(u"piece.orc"_s, Orchestra);
    Type(u";mine\n"_s);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_TRUE(documents.SecureText());
    const QStringList kept = OwnStateFolder::Copies(u".kept"_s);
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(kept.first()), ";mine\nsr = 44100\ninstr 1\nendin");
    // The result is not on the disk either.
    const QStringList open = OwnStateFolder::Copies(u".open"_s);
    ASSERT_EQ(open.size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(open.first()), QByteArray(Unified).replace("\r\n", "\n"));
}

TEST_F(SectionsTest, WithoutAFileNameNothingIsConverted)
{
    documents.NewFile(FileKind::Orchestra, {});
    Type(u"instr 1"_s);
    for (const Conversion conversion : {Conversion::ToUnified, Conversion::ToPair}) {
        desktop.ExpectMessage(SaveFirst);
        sections.mnuCSD(conversion);
    }
    EXPECT_EQ(text.text, u"instr 1"_s);
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, APairBecomesANewUnifiedDocument)
{
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    view.outlineShown = true;
    view.calls.clear();
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(document.CurrentFile, Path(u"x.csd"_s));
    EXPECT_EQ(document.DocumentKind, FileKind::Unified);
    EXPECT_TRUE(document.Modified);
    EXPECT_FALSE(document.Loading);
    EXPECT_TRUE(view.saveEnabled);
    EXPECT_TRUE(view.textShown);
    EXPECT_EQ(view.caption, u"Zelvane - "_s + Path(u"x.csd"_s) + u"* (Unified Format)"_s);
    EXPECT_TRUE((view.enabled[Cmd::mnuCSD[Conversion::ToPair]]));
    EXPECT_EQ(view.calls.mid(view.calls.lastIndexOf(u"show"_s)),
              (QStringList{u"show"_s, u"focus"_s, u"outline"_s}));
    EXPECT_EQ(Files(), (QStringList{u"x.orc"_s, u"x.sco"_s}));
    documents.Save();
    EXPECT_EQ(FileBytes(Path(u"x.csd"_s)), Unified);
}

TEST_F(SectionsTest, AScoreIsConvertedLikeItsOrchestra)
{
    context.WriteFile(u"x.orc"_s, Orchestra);
    Open(u"x.sco"_s, Score);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(text.text, QString::fromLatin1(Unified).remove(u'\r'));
}

TEST_F(SectionsTest, UnsavedEditsDoNotEnterTheUnifiedText)
{
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    Type(u"; edited"_s);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(text.text, QString::fromLatin1(Unified).remove(u'\r'));
}

TEST_F(SectionsTest, UnsavedEditsStayAmongTheKeptCopies)
{
    const OwnStateFolder state;
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    Type(u"; edited"_s);
    const QByteArray edited = text.text.toUtf8();
    sections.mnuCSD(Conversion::ToUnified);
    documents.SecureText();
    ASSERT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(OwnStateFolder::Copies(u".kept"_s).first()), edited);
    // The new text, which no file holds, has a copy too until it is saved.
    ASSERT_EQ(OwnStateFolder::Copies(u".open"_s).size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(OwnStateFolder::Copies(u".open"_s).first()), text.text.toUtf8());
    documents.Save();
    documents.SecureText();
    EXPECT_TRUE(OwnStateFolder::Copies(u".open"_s).isEmpty());
    EXPECT_EQ(OwnStateFolder::Copies(u".kept"_s).size(), 1);
    EXPECT_EQ(FileBytes(orchestra), Orchestra);
}

TEST_F(SectionsTest, UnsavedEditsThatHaveNoCopyAreAskedAbout)
{
    settings.SaveFlag(Keys::SafetyCopy, false);
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    Type(u"; edited "_s);
    const Kept before = Now();
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::Cancel);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(Now(), before);
    // Saved, they enter the unified text.
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::Yes);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(FileBytes(orchestra), "; edited " + Orchestra);
    EXPECT_TRUE(text.text.contains(u"<CsInstruments>\n; edited sr"_s));
    document.Modified = false;
    documents.OpenFile(orchestra);
    Type(u"; more "_s);
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::No);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(FileBytes(orchestra), "; edited " + Orchestra);
    EXPECT_TRUE(text.text.contains(u"<CsInstruments>\n; edited sr"_s));
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, WithoutEditsNothingIsAskedWhereNoCopyIsKept)
{
    settings.SaveFlag(Keys::SafetyCopy, false);
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(document.CurrentFile, Path(u"x.csd"_s));
}

TEST_F(SectionsTest, UnsavedEditsWhoseCopyFailsAreAskedAbout)
{
    const OwnStateFolder state;
    // No folder can be made below a file.
    qputenv("XDG_STATE_HOME", QFile::encodeName(context.WriteFile(u"state"_s)));
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    Type(u"; edited "_s);
    const Kept before = Now();
    desktop.ExpectMessage(SaveChanges(orchestra), BoxAnswer::Cancel);
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(Now(), before);
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, TheFirstSaveAsksBeforeAFileThatIsThere)
{
    context.WriteFile(u"x.csd"_s, "mine");
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    sections.mnuCSD(Conversion::ToUnified);
    desktop.ExpectMessage({.text = Path(u"x.csd"_s) + u" exists already. Save over it?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::No);
    documents.Save();
    EXPECT_EQ(FileBytes(Path(u"x.csd"_s)), "mine");
    EXPECT_TRUE(document.Modified);
}

TEST_F(SectionsTest, ACancelledSearchKeepsTheDocument)
{
    Open(u"piece.sco"_s, Score);
    Type(u"edited"_s);
    const Kept before = Now();
    desktop.ExpectOpenDialog(SelectDialog(u"Orchestra"_s, u"orc"_s, u"pi*"_s), {});
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(Now(), before);
    EXPECT_TRUE(text.CanUndo());
    EXPECT_TRUE(view.textShown);
    EXPECT_EQ(Files(), QStringList{u"piece.sco"_s});
}

TEST_F(SectionsTest, AHalfThatCannotBeReadKeepsTheDocument)
{
    const OwnStateFolder state;
    Open(u"piece.orc"_s, Orchestra);
    Type(u"edited"_s);
    text.SetSelection(2, 5);
    const Kept before = Now();
    // The second file: a folder that was picked by its name.
    desktop.ExpectOpenDialog(SelectDialog(u"Score"_s, u"sco"_s, u"pi*"_s), {.path = context.folder.path()});
    EXPECT_THROW(sections.mnuCSD(Conversion::ToUnified), RunTimeError);
    EXPECT_EQ(Now(), before);
    EXPECT_TRUE(before.undoSteps > 0 && before.textShown && before.saveEnabled);
    // It is still the text whose copy stands until it is saved.
    documents.SecureText();
    ASSERT_EQ(OwnStateFolder::Copies().size(), 1);
    ASSERT_EQ(OwnStateFolder::Copies(u".open"_s).size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(OwnStateFolder::Copies().first()), before.text.toUtf8());
}

TEST_F(SectionsTest, ADocumentThatHasVanishedIsTold)
{
    const QString path = Open(u"piece.orc"_s, Orchestra);
    const Kept before = Now();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_THROW(sections.mnuCSD(Conversion::ToUnified), RunTimeError);
    EXPECT_EQ(Now(), before);
}

TEST_F(SectionsTest, AHalfBeyondTheOffsetsIsRefused)
{
    Open(u"x.orc"_s, Orchestra);
    const Kept before = Now();
    const QString score = context.WriteFile(u"x.sco"_s);
    if (!QFile::resize(score, (1LL << 31) + 1))
        GTEST_SKIP() << "the disk holds no file of this size";
    try {
        sections.mnuCSD(Conversion::ToUnified);
        ADD_FAILURE() << "no error";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.Number(), ErrorNumber::OutOfMemory);
        EXPECT_EQ(error.Source(), score);
    }
    EXPECT_EQ(Now(), before);
}

TEST_F(SectionsTest, AHalfMayBePicked)
{
    const QString picked = context.WriteFile(u"other.sco"_s, Score);
    Open(u"piece.orc"_s, Orchestra);
    desktop.ExpectOpenDialog(SelectDialog(u"Score"_s, u"sco"_s, u"pi*"_s), {.path = picked});
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(document.CurrentFile, Path(u"piece.csd"_s));
    EXPECT_EQ(text.text, QString::fromLatin1(Unified).remove(u'\r'));
}

TEST_F(SectionsTest, AScoreThatCanNoLongerBeReadKeepsItself)
{
    context.WriteFile(u"x.orc"_s, Orchestra);
    const QString score = Open(u"x.sco"_s, Score);
    Type(u"edited"_s);
    text.SetSelection(1, 4);
    const Kept before = Now();
    if (!QFile::resize(score, (1LL << 31) + 1))
        GTEST_SKIP() << "the disk holds no file of this size";
    EXPECT_THROW(sections.mnuCSD(Conversion::ToUnified), RunTimeError);
    EXPECT_EQ(Now(), before);
}

TEST_F(SectionsTest, ANameThatIsAllExtensionIsTold)
{
    Open(u".orc"_s, Orchestra);
    ASSERT_EQ(document.DocumentKind, FileKind::Orchestra);
    const Kept before = Now();
    desktop.ExpectMessage(
        {.text = u".orc has no name before its extension, so its other half cannot be found."_s,
         .icon = BoxIcon::Information});
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(Now(), before);
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, WithoutMemoryForTheUnifiedTextTheDocumentStays)
{
    const OwnStateFolder state;
    context.WriteFile(u"x.sco"_s, Score);
    const QString orchestra = Open(u"x.orc"_s, Orchestra);
    Type(u"; edited"_s);
    text.SetSelection(2, 5);
    const Kept before = Now();
    text.beforeLoad = [] { throw std::bad_alloc(); };
    EXPECT_THROW(sections.mnuCSD(Conversion::ToUnified), RunTimeError);
    EXPECT_EQ(Now(), before);
    EXPECT_TRUE(view.textShown);
    EXPECT_TRUE(before.undoSteps > 0 && before.modified && before.saveEnabled);
    // The text is still the one that has a copy until it is saved.
    documents.SecureText();
    ASSERT_EQ(OwnStateFolder::Copies().size(), 1);
    ASSERT_EQ(OwnStateFolder::Copies(u".open"_s).size(), 1);
    EXPECT_EQ(OwnStateFolder::TextIn(OwnStateFolder::Copies().first()), before.text.toUtf8());
    text.beforeLoad = {};
    documents.Save();
    EXPECT_EQ(FileBytes(orchestra), "; edited" + Orchestra);
}

TEST_F(SectionsTest, TheHalvesHaveTheLineEndsThatTheyAreShownWith)
{
    const auto unified = [&](const QByteArray &orchestra, const QByteArray &score) {
        context.WriteFile(u"x.sco"_s, score);
        Open(u"x.orc"_s, orchestra);
        const QString shown = text.text;
        sections.mnuCSD(Conversion::ToUnified);
        EXPECT_TRUE(text.text.contains(u"<CsInstruments>\n"_s + shown + u"\n</CsInstruments>"_s))
            << text.text.toStdString();
        document.Modified = false;
        return text.text;
    };
    EXPECT_EQ(unified("a\rb\r", "c\nd"), oracle::UnifiedText(u"a\nb\n"_s, u"c\nd"_s));
    EXPECT_EQ(unified("a\nb\r\n", "c\rd\r"), oracle::UnifiedText(u"a\nb\n"_s, u"c\nd\n"_s));
    // The first line end makes it a Mac file, where a CR LF is two.
    EXPECT_EQ(unified("a\rb\r\nc", "d"), oracle::UnifiedText(u"a\nb\n\nc"_s, u"d"_s));
}

TEST_F(SectionsTest, ColoursOnlyWhereAskedAndByTheRulesOfOrchestras)
{
    const auto styleOf = [&](const QString &found) {
        return StyleClass(text.styles.at(text.text.lastIndexOf(found)));
    };
    context.WriteFile(u"x.sco"_s, "i1 0 \"s\" ; c");
    Open(u"x.orc"_s, "instr 1 ; c\r\nendin");
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(styleOf(u"; c"_s), StyleClass::Text);
    settings.SaveFlag(Keys::ColorComments, true);
    documents.NewFile(FileKind::Other, {});
    documents.OpenFile(Path(u"x.orc"_s));
    sections.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(styleOf(u"; c"_s), StyleClass::Comment);
    EXPECT_EQ(styleOf(u"\"s\""_s), StyleClass::Literal);
    EXPECT_EQ(styleOf(u"CsScore"_s), StyleClass::Text);
    EXPECT_TRUE(document.Modified);
    EXPECT_FALSE(document.Loading);
}

TEST_F(SectionsTest, ColouringThatFailsLeavesTheTextInSight)
{
    struct : StringBuffer {
        void ApplyStyles(qsizetype, qsizetype, const StyleRuns &) override
        {
            throw RunTimeError(ErrorNumber::OutOfMemory, u"Out of memory"_s);
        }
    } uncoloured;
    EditorContext failing{document, uncoloured, settings, desktop, status, context.windows, documents};
    Highlighter failingHighlighter(failing, view, opcodes);
    PieceSections over(editor, documents, view, view.steps, failingHighlighter);
    settings.SaveFlag(Keys::ColorComments, true);
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::OutOfMemory, u"Out of memory"_s)),
                          BoxAnswer::Cancel);
    over.mnuCSD(Conversion::ToUnified);
    EXPECT_EQ(text.text, QString::fromLatin1(Unified).remove(u'\r'));
    EXPECT_TRUE(view.textShown);
    EXPECT_FALSE(document.Loading);
    EXPECT_TRUE(document.Modified);
}

TEST_F(SectionsTest, TheUnifiedTextKeepsTheEncodingOfItsHalves)
{
    context.WriteFile(u"x.sco"_s, "; caf\xE9");
    Open(u"x.orc"_s, "; caf\xE9");
    sections.mnuCSD(Conversion::ToUnified);
    documents.Save();
    EXPECT_EQ(FileBytes(Path(u"x.csd"_s)).count("caf\xE9"), 2);
    context.WriteFile(u"y.sco"_s, "; caf\xC3\xA9");
    Open(u"y.orc"_s, "; caf\xE9");
    sections.mnuCSD(Conversion::ToUnified);
    documents.Save();
    EXPECT_EQ(FileBytes(Path(u"y.csd"_s)).count("caf\xC3\xA9"), 2);
}

TEST_F(SectionsTest, AnAsciiHalfGoesAlongWithTheOther)
{
    const QByteArray accented = "; caf\xE9";
    const QByteArray marked = "\xEF\xBB\xBF; caf\xC3\xA9";
    const std::pair<QByteArray, QByteArray> pairs[] = {{accented, "i1"}, {"instr 1", accented},
                                                       {accented, {}},   {{}, accented},
                                                       {marked, "i1"},   {{}, marked}};
    for (const auto &[orchestra, score] : pairs) {
        context.WriteFile(u"x.sco"_s, score);
        Open(u"x.orc"_s, orchestra);
        sections.mnuCSD(Conversion::ToUnified);
        QFile::remove(Path(u"x.csd"_s));
        documents.Save();
        QByteArray half = orchestra + score;
        EXPECT_EQ(FileBytes(Path(u"x.csd"_s)).startsWith("\xEF\xBB\xBF"), half.contains("\xEF\xBB\xBF"));
        EXPECT_TRUE(FileBytes(Path(u"x.csd"_s)).contains(half.contains('\xE9') ? "caf\xE9" : "caf\xC3\xA9"));
        if (half.contains('\xE9')) {
            // Back again they are the bytes that they were, but for the line ends around them.
            ExpectSaves(Path(u"y.orc"_s), Path(u"y.sco"_s), u"x"_s);
            desktop.ExpectMessage(ConvertedToPair(u"y.orc"_s), BoxAnswer::No);
            sections.mnuCSD(Conversion::ToPair);
            EXPECT_EQ(FileBytes(Path(u"y.orc"_s)), "\r\n" + orchestra + "\r\n\r\n");
            EXPECT_EQ(FileBytes(Path(u"y.sco"_s)), "\r\n" + score + "\r\n\r\n");
        }
    }
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, AUnifiedTextThatHoldsNulAsksBeforeItsFirstSave)
{
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, QByteArray("a\0b", 3));
    sections.mnuCSD(Conversion::ToUnified);
    const QString unified = Path(u"x.csd"_s);
    desktop.ExpectMessage({.text = unified + u" holds NUL bytes: it may be no text. Saving it rewrites its "
                                             "line ends. Save it?"_s,
                           .icon = BoxIcon::Warning,
                           .buttons = BoxButtons::YesNo,
                           .defaultAnswer = BoxAnswer::No},
                          BoxAnswer::No);
    documents.Save();
    desktop.CheckAllCame();
    EXPECT_FALSE(QFile::exists(unified));
}

// To a pair

TEST_F(SectionsTest, AUnifiedDocumentBecomesAPair)
{
    const QString unified = Open(u"x.csd"_s, Unified);
    Type(u"; not in a section\n"_s);
    const Kept before = Now();
    ExpectSaves(Path(u"x.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::No);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(FileBytes(Path(u"x.orc"_s)), "\r\n" + Orchestra + "\r\n\r\n");
    EXPECT_EQ(FileBytes(Path(u"x.sco"_s)), "\r\n" + Score + "\r\n\r\n");
    EXPECT_EQ(Now(), before);
    EXPECT_EQ(FileBytes(unified), Unified);
}

TEST_F(SectionsTest, TheNewOrchestraMayBeOpened)
{
    Open(u"x.csd"_s, Unified);
    ExpectSaves(Path(u"other.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"other.orc"_s), BoxAnswer::Yes);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(document.CurrentFile, Path(u"other.orc"_s));
    EXPECT_EQ(view.recentFiles.first(), Path(u"other.orc"_s));
}

TEST_F(SectionsTest, OpeningTheNewOrchestraAsksAboutUnsavedWork)
{
    const QString unified = Open(u"x.csd"_s, Unified);
    Type(u"edited"_s);
    ExpectSaves(Path(u"x.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::Yes);
    desktop.ExpectMessage(SaveChanges(unified), BoxAnswer::Cancel);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(document.CurrentFile, unified);
}

TEST_F(SectionsTest, TheUnifiedDocumentIsSavedBeforeTheNewOrchestraWhereWanted)
{
    const QString unified = Open(u"x.csd"_s, Unified);
    Type(u"edited"_s);
    ExpectSaves(Path(u"x.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::Yes);
    desktop.ExpectMessage(SaveChanges(unified), BoxAnswer::Yes);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(document.CurrentFile, Path(u"x.orc"_s));
    EXPECT_EQ(FileBytes(unified), "edited" + Unified);
}

TEST_F(SectionsTest, NeitherTheUnifiedFileNorTheFirstHalfIsWrittenOver)
{
    const QString unified = Open(u"x.csd"_s, Unified);
    const QString alias = Path(u"alias.orc"_s);
    ASSERT_TRUE(QFile::link(unified, alias));
    const auto refused = [&](const QString &label, const QString &extension, const QString &picked,
                             const QString &holder) {
        desktop.ExpectSaveDialog(SaveDialog(label, extension, u"x"_s), {.path = picked});
        desktop.ExpectMessage(
            {.text = holder + u" holds the other half. Choose another file for the "_s + label + u'.',
             .icon = BoxIcon::Warning});
    };
    refused(u"Orchestra"_s, u"orc"_s, unified, u"x.csd"_s);
    refused(u"Orchestra"_s, u"orc"_s, alias, u"x.csd"_s);
    desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"orc"_s, u"x"_s), {.path = Path(u"x.orc"_s)});
    refused(u"Score"_s, u"sco"_s, unified, u"x.csd"_s);
    refused(u"Score"_s, u"sco"_s, Path(u"x.orc"_s), u"x.orc"_s);
    desktop.ExpectSaveDialog(SaveDialog(u"Score"_s, u"sco"_s, u"x"_s), {.path = Path(u"x.sco"_s)});
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::No);
    sections.mnuCSD(Conversion::ToPair);
    desktop.CheckAllCame();
    EXPECT_EQ(FileBytes(unified), Unified);
    EXPECT_EQ(FileBytes(Path(u"x.orc"_s)), "\r\n" + Orchestra + "\r\n\r\n");
    EXPECT_EQ(FileBytes(Path(u"x.sco"_s)), "\r\n" + Score + "\r\n\r\n");
}

TEST_F(SectionsTest, ARefusedFileMayBeFollowedByCancel)
{
    // Not on disk yet: its name is taken all the same.
    context.WriteFile(u"x.sco"_s, Score);
    Open(u"x.orc"_s, Orchestra);
    sections.mnuCSD(Conversion::ToUnified);
    desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"orc"_s, u"x"_s), {.path = Path(u"x.csd"_s)});
    desktop.ExpectMessage({.text = u"x.csd holds the other half. Choose another file for the Orchestra."_s,
                           .icon = BoxIcon::Warning});
    desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"orc"_s, u"x"_s), {});
    sections.mnuCSD(Conversion::ToPair);
    desktop.CheckAllCame();
    EXPECT_EQ(Files(), (QStringList{u"x.orc"_s, u"x.sco"_s}));
}

TEST_F(SectionsTest, AMissingSectionGivesAFileOfOneLineEnd)
{
    Open(u"x.csd"_s, "<CsInstruments>\r\ninstr 1\r\n</CsInstruments>\r\n<csscore>\r\n</csscore>");
    ExpectSaves(Path(u"x.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::No);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(FileBytes(Path(u"x.orc"_s)), "\r\ninstr 1\r\n\r\n");
    EXPECT_EQ(FileBytes(Path(u"x.sco"_s)), "\r\n");
}

TEST_F(SectionsTest, TagsInTheWrongOrderWriteNothing)
{
    Open(u"x.csd"_s, "<CsInstruments></CsInstruments></CsScore><CsScore>");
    EXPECT_THROW(sections.mnuCSD(Conversion::ToPair), RunTimeError);
    EXPECT_EQ(Files(), QStringList{u"x.csd"_s});
}

TEST_F(SectionsTest, ACancelledDialogWritesNothingMore)
{
    Open(u"x.csd"_s, Unified);
    const Kept before = Now();
    ExpectSaves({}, {}, u"x"_s);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(Files(), QStringList{u"x.csd"_s});
    ExpectSaves(Path(u"x.orc"_s), {}, u"x"_s);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(Files(), (QStringList{u"x.csd"_s, u"x.orc"_s}));
    EXPECT_EQ(FileBytes(Path(u"x.orc"_s)), "\r\n" + Orchestra + "\r\n\r\n");
    EXPECT_EQ(Now(), before);
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, AFileThatCannotBeWrittenEndsTheConversion)
{
    Open(u"x.csd"_s, Unified);
    const Kept before = Now();
    desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"orc"_s, u"x"_s),
                             {.path = Path(u"no folder/x.orc"_s)});
    EXPECT_THROW(sections.mnuCSD(Conversion::ToPair), RunTimeError);
    EXPECT_EQ(Files(), QStringList{u"x.csd"_s});
    // The second one.
    ExpectSaves(Path(u"x.orc"_s), Path(u"no folder/x.sco"_s), u"x"_s);
    EXPECT_THROW(sections.mnuCSD(Conversion::ToPair), RunTimeError);
    EXPECT_EQ(Files(), (QStringList{u"x.csd"_s, u"x.orc"_s}));
    EXPECT_EQ(Now(), before);
}

TEST_F(SectionsTest, ThePairKeepsTheEncodingOfTheDocument)
{
    Open(u"x.csd"_s, "<CsInstruments>caf\xE9</CsInstruments>");
    ExpectSaves(Path(u"x.orc"_s), Path(u"x.sco"_s), u"x"_s);
    desktop.ExpectMessage(ConvertedToPair(u"x.orc"_s), BoxAnswer::No);
    sections.mnuCSD(Conversion::ToPair);
    EXPECT_EQ(FileBytes(Path(u"x.orc"_s)), "caf\xE9\r\n");
}

TEST_F(SectionsTest, TheDialogsOfferTheFirstExtensionOfTheType)
{
    settings.SaveText(Keys::OrchestraExtensions, u"inst orc"_s);
    Open(u"a.b.csd"_s, Unified);
    desktop.ExpectSaveDialog(SaveDialog(u"Orchestra"_s, u"inst"_s, u"a.b"_s), {});
    sections.mnuCSD(Conversion::ToPair);
    desktop.CheckAllCame();
}

TEST_F(SectionsTest, APairComesBackWithALineEndBeforeAndTwoBehindEachHalf)
{
    RandomText random({u"a"_s, u"\n"_s, u"é"_s, u"; c"_s, u"<"_s}, 8);
    for (int round = 0; round < 40; ++round) {
        const QByteArray orchestra = random.Next().replace(u"\n"_s, u"\r\n"_s).toUtf8();
        const QByteArray score = random.Next().replace(u"\n"_s, u"\r\n"_s).toUtf8();
        context.WriteFile(u"x.sco"_s, score);
        Open(u"x.orc"_s, orchestra);
        sections.mnuCSD(Conversion::ToUnified);
        ExpectSaves(Path(u"y.orc"_s), Path(u"y.sco"_s), u"x"_s);
        desktop.ExpectMessage(ConvertedToPair(u"y.orc"_s), BoxAnswer::No);
        sections.mnuCSD(Conversion::ToPair);
        ASSERT_EQ(FileBytes(Path(u"y.orc"_s)), "\r\n" + orchestra + "\r\n\r\n");
        ASSERT_EQ(FileBytes(Path(u"y.sco"_s)), "\r\n" + score + "\r\n\r\n");
        document.Modified = false;
    }
}

} // namespace zelvane::test
