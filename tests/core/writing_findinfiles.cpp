// SPDX-License-Identifier: GPL-3.0-or-later
#include "writing/findinfiles.h"

#include "shell/documentkeys.h"
#include "shell/findtext.h"
#include "support/testcontext.h"
#include "writing/findinfileskeys.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

struct FileSearchDialog : testing::Test, test::TestContext {
    FileSearchFields fields;

    void SetUp() override { fields = {.text = u"oscil"_s, .folder = folder.path(), .patterns = u"*.csd"_s}; }
};

TEST_F(FileSearchDialog, OpensOnTheDocumentsFolderAndTheCsoundFiles)
{
    EXPECT_EQ(OpeningFileSearch(editor).folder, QDir::homePath());
    document.CurrentFile = WriteFile(u"song.csd"_s);
    settings.SaveText(Keys::OrchestraExtensions, u"orc udo"_s);
    const FileSearchFields opened = OpeningFileSearch(editor);
    EXPECT_EQ(opened.text, QString());
    EXPECT_EQ(opened.folder, folder.path());
    EXPECT_EQ(opened.patterns, u"*.orc;*.udo;*.sco;*.csd"_s);
    EXPECT_TRUE(opened.subFolders);
    EXPECT_FALSE(opened.wholeWords || opened.matchCase || opened.regularExpression);
}

TEST_F(FileSearchDialog, RemembersItsFields)
{
    StoreFileSearch(settings, {.text = u"older"_s, .folder = folder.path(), .patterns = u"*.txt"_s});
    StoreFileSearch(settings, {.text = u"newer"_s,
                               .folder = folder.path(),
                               .patterns = u"*.txt; *.csd"_s,
                               .subFolders = false,
                               .wholeWords = true,
                               .matchCase = true,
                               .regularExpression = true});
    FileSearchFields opened = OpeningFileSearch(editor);
    EXPECT_EQ(opened.text, u"newer"_s);
    EXPECT_EQ(opened.folder, folder.path());
    EXPECT_EQ(opened.patterns, u"*.txt; *.csd"_s);
    EXPECT_FALSE(opened.subFolders);
    EXPECT_TRUE(opened.wholeWords && opened.matchCase && opened.regularExpression);
    EXPECT_EQ(FileSearchTexts(settings), QStringList({u"newer"_s, u"older"_s}));
    EXPECT_TRUE(settings.GetAllSettings(Sections::RecentFindStrings).empty())
        << "those are the other dialog's";
    text.SetText(u"one two"_s);
    text.SetSelection(4, 7);
    EXPECT_EQ(OpeningFileSearch(editor).text, u"two"_s);
    settings.SaveText(Keys::FindInFilesFolder, folder.filePath(u"gone"_s));
    EXPECT_EQ(OpeningFileSearch(editor).folder, QDir::homePath());
}

TEST_F(FileSearchDialog, PatternsOfTheCsoundFilesFollowTheirExtensions)
{
    fields.patterns = CsoundPatterns(settings);
    StoreFileSearch(settings, fields);
    settings.SaveText(Keys::UFFExtensions, u"csd csound"_s);
    EXPECT_EQ(OpeningFileSearch(editor).patterns, u"*.orc;*.sco;*.csd;*.csound"_s);
}

TEST_F(FileSearchDialog, SaysWhatIsMissing)
{
    EXPECT_EQ(FileSearchError(fields), QString());
    fields.regularExpression = true;
    fields.text = u"a("_s;
    EXPECT_EQ(
        FileSearchError(fields),
        u"Cannot understand the regular expression 'a(': missing closing parenthesis (at character 3)."_s);
    fields.regularExpression = false;
    EXPECT_EQ(FileSearchError(fields), QString());
    fields.folder = WriteFile(u"file"_s);
    EXPECT_EQ(FileSearchError(fields), u"There is no folder '"_s + fields.folder + u"'."_s);
    fields.text.clear();
    EXPECT_EQ(FileSearchError(fields), u"There is no text to find."_s);
}

TEST_F(FileSearchDialog, MakesASearchOfItsFields)
{
    fields.patterns = u" *.csd ;;*.my,*.orc  *.sco; "_s;
    fields.folder += u"/./x/../"_s;
    fields.matchCase = fields.regularExpression = true;
    fields.subFolders = false;
    const FileSearch search = FileSearchOf(fields);
    EXPECT_EQ(search, (FileSearch{.text = u"oscil"_s,
                                  .options = FindMatchCase | FindRegularExpression,
                                  .folder = folder.path(),
                                  .patterns = {u"*.csd"_s, u"*.my"_s, u"*.orc"_s, u"*.sco"_s},
                                  .subFolders = false}));
    fields.patterns = u" ;"_s;
    EXPECT_EQ(FileSearchOf(fields).patterns, QStringList(u"*"_s));
}

TEST_F(FileSearchDialog, ATildeIsTheUsersFolder)
{
    fields.folder = u"~"_s;
    EXPECT_EQ(FileSearchError(fields), QString());
    EXPECT_EQ(FileSearchOf(fields).folder, QDir::homePath());
    ASSERT_TRUE(QDir::home().mkpath(u"tilde/pieces"_s));
    fields.folder = u"~/tilde/pieces/"_s;
    EXPECT_EQ(FileSearchError(fields), QString());
    EXPECT_EQ(FileSearchOf(fields).folder, QDir::homePath() + u"/tilde/pieces"_s);
    StoreFileSearch(settings, fields);
    EXPECT_EQ(OpeningFileSearch(editor).folder, QDir::homePath() + u"/tilde/pieces"_s);
    ASSERT_TRUE(QDir(QDir::homePath() + u"/tilde"_s).removeRecursively());
    EXPECT_EQ(FileSearchError(fields), u"There is no folder '~/tilde/pieces/'."_s);
    fields.folder = u"~other"_s;
    EXPECT_EQ(FileSearchError(fields), u"There is no folder '~other'."_s);
}

TEST(FileSearchText, TellsWhatWasFoundAndPassedOver)
{
    EXPECT_EQ(FileSearchText({}), u"0 lines in 0 of 0 files."_s);
    EXPECT_EQ(FileSearchText({.searched = 1, .files = 1, .lines = 1}), u"1 line in 1 of 1 file."_s);
    EXPECT_EQ(FileSearchText({.special = 1}), u"0 lines in 0 of 0 files. Passed over: 1 pipe or device."_s);
    EXPECT_EQ(FileSearchText({.searched = 40,
                              .files = 3,
                              .lines = 12,
                              .binary = 2,
                              .large = 1,
                              .unreadable = 4,
                              .special = 5,
                              .hard = 6,
                              .cut = true}),
              u"12 lines in 3 of 40 files. There may be more. Passed over: 2 binary, 1 too large, 4 "
              u"unreadable, 5 pipes or "
              "devices, 6 too hard for the expression."_s);
}

/// Opening what was found, with an editor that opens files by name alone.
struct FoundLines : FileSearchDialog {
    struct Opening : DocumentOperations {
        explicit Opening(TestContext &test) : context(test) {}
        TestContext &context;
        bool refused = false;
        QStringList opened;
        void OpenFile(const QString &name, OpenOrigin) override
        {
            opened.append(name);
            if (refused)
                return;
            context.document.CurrentFile = name;
            QFile file(name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            context.text.SetText(QString::fromUtf8(file.readAll()));
        }
        bool SaveFile(const QString &) override { return true; }
        void NewFile(FileKind, const QString &) override {}
        void InsertFile(const QString &) override {}
        bool QuerySave() override { return true; }
        void KeepUnsaved() override {}
    };
    Opening opening{*this};
    EditorContext opener{document, text, settings, desktop, status, windows, opening};
};

TEST_F(FoundLines, AreOpenedAndSelected)
{
    const QString path = WriteFile(u"song.csd"_s, "one\ntwo\nthree");
    EXPECT_TRUE(OpenFoundLine(opener, {path, 2, u"two"_s, 0, {1, 3}}));
    EXPECT_EQ(opening.opened, QStringList(path));
    EXPECT_EQ(text.selection, (TextSpan{5, 7})) << "the hit";
    EXPECT_EQ(OpeningFileSearch(editor).text, u"wo"_s) << "the next search begins with it";
    EXPECT_TRUE(OpenFoundLine(opener, {path, 3, u"three"_s, 0, {0, 5}}));
    EXPECT_EQ(opening.opened, QStringList(path)) << "it is the document already";
    EXPECT_EQ(text.selection, (TextSpan{8, 13}));
    const QString link = folder.filePath(u"link.csd"_s);
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_TRUE(OpenFoundLine(opener, {link, 1, u"one"_s, 0, {0, 3}}));
    EXPECT_EQ(opening.opened, QStringList(path)) << "the same file by another name";
    EXPECT_EQ(text.selection, (TextSpan{0, 3}));
}

TEST_F(FoundLines, StayUnopenedWhereTheUserRefuses)
{
    document.CurrentFile = WriteFile(u"other.csd"_s, "x");
    text.SetText(u"changed"_s);
    text.SetSelection(2, 3);
    opening.refused = true;
    EXPECT_FALSE(OpenFoundLine(opener, {WriteFile(u"song.csd"_s, "one\n"), 1, u"one"_s}));
    EXPECT_EQ(text.selection, (TextSpan{2, 3}));
    document.CurrentFile.clear();
    EXPECT_FALSE(OpenFoundLine(opener, {folder.filePath(u"gone.csd"_s), 1, u"one"_s}));
}

TEST_F(FoundLines, AreFoundAgainInAnEditedText)
{
    EXPECT_EQ(NearestLineWith(u"a\nb\nc\nb\nd", 2, u"b"), 2);
    EXPECT_EQ(NearestLineWith(u"a\nx\nc\nb\nd", 2, u"b"), 4);
    EXPECT_EQ(NearestLineWith(u"b\nx\nc\nb\nd", 3, u"b"), 4);
    EXPECT_EQ(NearestLineWith(u"b\nx\nc\nd\nb", 3, u"b"), 1) << "the first of two as near";
    EXPECT_EQ(NearestLineWith(u"a\nx", 2, u"b"), 2);
    EXPECT_EQ(NearestLineWith(u"", 7, u"b"), 7);
    EXPECT_EQ(NearestLineWith(u"a\n\nb", 2, u""), 2);
    text.SetText(u"one"_s);
    document.CurrentFile = WriteFile(u"song.csd"_s);
    EXPECT_TRUE(OpenFoundLine(opener, {document.CurrentFile, 9, u"gone"_s}));
    EXPECT_EQ(text.selection, (TextSpan{0, 0})) << "the last line there is";
    text.SetText(u"x\nab ab ab\n"_s);
    EXPECT_TRUE(OpenFoundLine(opener, {document.CurrentFile, 2, u"ab"_s, 3, {3, 5}}));
    EXPECT_EQ(text.selection, (TextSpan{5, 7})) << "that one of several";
    EXPECT_TRUE(OpenFoundLine(opener, {document.CurrentFile, 2, u"b ab"_s, 0, {2, 4}}));
    EXPECT_EQ(text.selection, (TextSpan{5, 7})) << "moved on in its line";
    EXPECT_TRUE(OpenFoundLine(opener, {document.CurrentFile, 2, u"ab"_s, 6, {7, 700}}));
    EXPECT_EQ(text.selection, (TextSpan{9, 10})) << "not beyond the line";
}

} // namespace
} // namespace zelvane
