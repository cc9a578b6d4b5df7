// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/statustexts.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QFile>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QDateTime Saved(QDate(2001, 3, 7), QTime(12, 30, 15));

/// A file that was last saved at a known time.
QString SavedFile(test::TestContext &context, const QString &name, const QByteArray &bytes)
{
    const QString path = context.WriteFile(name, bytes);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    EXPECT_TRUE(file.setFileTime(Saved, QFileDevice::FileModificationTime));
    return path;
}

TEST(SizeText, HasOneDecimalAndNoPointZero)
{
    EXPECT_EQ(SizeText(0), u"0 bytes"_s);
    EXPECT_EQ(SizeText(1), u"1 bytes"_s);
    EXPECT_EQ(SizeText(1023), u"1023 bytes"_s);
    EXPECT_EQ(SizeText(1024), u"1Kb (1024 bytes)"_s);
    EXPECT_EQ(SizeText(1536), u"1.5Kb (1536 bytes)"_s);
    EXPECT_EQ(SizeText(1075), u"1Kb (1075 bytes)"_s);
    EXPECT_EQ(SizeText(1076), u"1.1Kb (1076 bytes)"_s);
    EXPECT_EQ(SizeText(2047), u"2Kb (2047 bytes)"_s);
    EXPECT_EQ(SizeText(1048575), u"1024Kb (1048575 bytes)"_s);
    EXPECT_EQ(SizeText(1048576), u"1Mb (1048576 bytes)"_s);
    EXPECT_EQ(SizeText(10'000'000), u"9.5Mb (10000000 bytes)"_s);
    EXPECT_EQ(SizeText(1LL << 40), u"1048576Mb (1099511627776 bytes)"_s);
}

TEST(SizeText, RoundsTiesToEven)
{
    EXPECT_EQ(SizeText(1280), u"1.2Kb (1280 bytes)"_s); // 1.25
    EXPECT_EQ(SizeText(1792), u"1.8Kb (1792 bytes)"_s); // 1.75
}

TEST(GeneralDate, IsTheShortFormWithSeconds)
{
    EXPECT_EQ(GeneralDate(Saved, QLocale::c()), u"7 Mar 2001 12:30:15"_s);
    EXPECT_EQ(GeneralDate(Saved, QLocale(QLocale::German)), u"07.03.01 12:30:15"_s);
    EXPECT_TRUE(GeneralDate(Saved, QLocale(QLocale::English, QLocale::UnitedStates)).contains(u"12:30:15"_s));
    EXPECT_EQ(GeneralDate(Saved, QLocale(QLocale::Finnish)), u"7.3.2001 12.30.15"_s);
}

TEST(FileFacts, TellWhenTheFileWasSaved)
{
    test::TestContext context;
    const QString path = SavedFile(context, u"x.orc"_s, "abc");
    EXPECT_EQ(FileFacts(path, context.desktop), u"x.orc: last saved 7 Mar 2001 12:30:15"_s);
}

TEST(FileFacts, TellTheAttributesInTheirOrder)
{
    test::TestContext context;
    const QString hidden = SavedFile(context, u".x.orc"_s, "abc");
    EXPECT_EQ(FileFacts(hidden, context.desktop), u".x.orc: last saved 7 Mar 2001 12:30:15 Hidden"_s);
    ASSERT_TRUE(QFile::setPermissions(hidden, QFile::ReadOwner));
    EXPECT_EQ(FileFacts(hidden, context.desktop),
              u".x.orc: last saved 7 Mar 2001 12:30:15 Read only Hidden"_s);
    const QString locked = SavedFile(context, u"y.orc"_s, "abc");
    ASSERT_TRUE(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ReadOther));
    EXPECT_EQ(FileFacts(locked, context.desktop), u"y.orc: last saved 7 Mar 2001 12:30:15 Read only"_s);
}

TEST(DocumentInfoText, JoinsFactsLinesSizeAndPlatform)
{
    test::TestContext context;
    context.text.text = u"one\ntwo\n"_s;
    EXPECT_EQ(DocumentInfoText(context.document, context.text, context.desktop), u""_s);
    context.document.CurrentFile = SavedFile(context, u"x.orc"_s, "one\r\ntwo\r\n");
    context.document.CurrentPlatform = LineEndForm::Unix;
    EXPECT_EQ(DocumentInfoText(context.document, context.text, context.desktop),
              u"x.orc: last saved 7 Mar 2001 12:30:15 - 3 lines - 16 bytes - UNIX"_s);
    context.text.text = QString(768, u'a');
    context.document.CurrentPlatform = LineEndForm::Mac;
    EXPECT_EQ(DocumentInfoText(context.document, context.text, context.desktop),
              u"x.orc: last saved 7 Mar 2001 12:30:15 - 1 lines - 1.5Kb (1536 bytes) - MAC"_s);
}

TEST(FileInfoLine, TellsTheSizeOnDisk)
{
    test::TestContext context;
    const QString path = SavedFile(context, u"x.wav"_s, QByteArray(2048, 'x'));
    EXPECT_EQ(FileInfoLine(path, context.desktop),
              u"x.wav: last saved 7 Mar 2001 12:30:15 - 2Kb (2048 bytes)"_s);
    EXPECT_EQ(FileInfoLine(context.folder.filePath(u"none"_s), context.desktop), u""_s);
}

TEST(SelectionTexts, LineAndColumnCountFromOne)
{
    test::StringBuffer text;
    text.text = u"one\ntwo\n\nfour"_s;
    EXPECT_EQ(LineColumnText(text), u"Line 1 Col 1"_s);
    text.SetSelection(6, 6);
    EXPECT_EQ(LineColumnText(text), u"Line 2 Col 3"_s);
    text.SetSelection(7, 7);
    EXPECT_EQ(LineColumnText(text), u"Line 2 Col 4"_s);
    text.SetSelection(8, 8);
    EXPECT_EQ(LineColumnText(text), u"Line 3 Col 1"_s);
    text.SetSelection(1, 13);
    EXPECT_EQ(LineColumnText(text), u"Line 1 Col 2"_s);
}

TEST(SelectionTexts, TellCharactersOnOneLineAndLinesOnSeveral)
{
    test::StringBuffer text;
    text.text = u"one\ntwo\n\nfour"_s;
    text.SetSelection(2, 2);
    EXPECT_EQ(SelectionText(text), u""_s);
    text.SetSelection(0, 3);
    EXPECT_EQ(SelectionText(text), u"3 characters selected"_s);
    text.SetSelection(0, 1);
    EXPECT_EQ(SelectionText(text), u"1 characters selected"_s);
    text.SetSelection(0, 4);
    EXPECT_EQ(SelectionText(text), u"1 lines selected"_s);
    text.SetSelection(1, 13);
    EXPECT_EQ(SelectionText(text), u"3 lines selected"_s);
}

} // namespace
