// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findreplace.h"

#include "platform/runtimeerror.h"
#include "shell/findkeys.h"
#include "shell/findtext.h"
#include "support/testcontext.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

const QString Recent = u"Recent Find Strings"_s;

struct FindDialogFields : testing::Test, test::TestContext {
    QString Stored(const QString &key) const { return settings.GetSetting(u"Options"_s, key, u"absent"_s); }
    QString RecentString(int key) const { return settings.GetSetting(Recent, QString::number(key)); }
    void ExpectReplaced(int times)
    {
        desktop.ExpectMessage(
            {.text = u"Text has been replaced %1 times."_s.arg(times), .icon = BoxIcon::Information});
    }
};

TEST_F(FindDialogFields, OfAnEmptyStore)
{
    const FindFields fields = OpeningFindFields(editor);
    EXPECT_EQ(fields.find, QString());
    EXPECT_EQ(fields.replace, QString());
    EXPECT_FALSE(fields.wholeWords);
    EXPECT_FALSE(fields.matchCase);
    EXPECT_FALSE(fields.wrap);
    EXPECT_EQ(fields.scope, FindScope::EntireDocument);
    EXPECT_TRUE(FindStringsOffered(settings).isEmpty());
}

TEST_F(FindDialogFields, OfTheStore)
{
    settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    settings.SaveSetting(Recent, u"2"_s, u"older"_s);
    settings.SaveText(Keys::FindReplace, u"with"_s);
    settings.SaveFlag(Keys::FindWholeWords, true);
    settings.SaveFlag(Keys::FindMatchCase, true);
    settings.SaveFlag(Keys::FindWrapSearches, true);
    settings.SaveNumber(Keys::FindScope, 0);
    const FindFields fields = OpeningFindFields(editor);
    EXPECT_EQ(fields.find, u"newest"_s);
    EXPECT_EQ(fields.replace, u"with"_s);
    EXPECT_TRUE(fields.wholeWords);
    EXPECT_TRUE(fields.matchCase);
    EXPECT_TRUE(fields.wrap);
    EXPECT_EQ(fields.scope, FindScope::SelectedText);
    EXPECT_EQ(FindStringsOffered(settings), QStringList({u"newest"_s, u"older"_s}));
}

TEST_F(FindDialogFields, TakeASelectionOnOneLineAsTheText)
{
    settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    text.SetText(u"one two\nthree"_s);
    text.SetSelection(4, 7);
    EXPECT_EQ(OpeningFindFields(editor).find, u"two"_s);
    EXPECT_EQ(OpeningFindFields(editor).scope, FindScope::EntireDocument);
}

TEST_F(FindDialogFields, TakeASelectionOfSeveralLinesAsTheScope)
{
    settings.SaveSetting(Recent, u"1"_s, u"newest"_s);
    text.SetText(u"one two\nthree"_s);
    for (const TextSpan span : {TextSpan{4, 10}, TextSpan{4, 8}}) {
        text.SetSelection(span.start, span.end);
        EXPECT_EQ(OpeningFindFields(editor).find, u"newest"_s);
        EXPECT_EQ(OpeningFindFields(editor).scope, FindScope::SelectedText);
    }
}

TEST_F(FindDialogFields, OfferSevenOfTheEightStrings)
{
    text.SetText(u"a b c d e f g h i"_s);
    for (const QString &what : text.text.split(u' ')) {
        text.SetSelection(0, 0);
        FindNext(editor, {.find = what});
    }
    EXPECT_EQ(RecentString(1), u"i"_s);
    EXPECT_EQ(RecentString(8), u"b"_s) << "the ninth string has pushed out the oldest";
    EXPECT_EQ(RecentString(9), QString());
    EXPECT_EQ(FindStringsOffered(settings), u"i h g f e d c"_s.split(u' '));
}

TEST_F(FindDialogFields, OptionsAreASum)
{
    EXPECT_EQ(OptionsOf({}), FindAnywhere);
    EXPECT_EQ(OptionsOf({.wholeWords = true}), FindWholeWord);
    EXPECT_EQ(OptionsOf({.matchCase = true}), FindMatchCase);
    EXPECT_EQ(OptionsOf({.wholeWords = true, .matchCase = true}), FindWholeWord | FindMatchCase);
}

TEST_F(FindDialogFields, FindStoresWhatItSearchedWith)
{
    text.SetText(u"one One"_s);
    FindNext(editor, {.find = u"One"_s, .matchCase = true});
    EXPECT_EQ(text.selection, (TextSpan{4, 7}));
    EXPECT_EQ(status.text, u"'One' found at character 5"_s);
    EXPECT_EQ(RecentString(1), u"One"_s);
    EXPECT_EQ(Stored(u"FindWholeWords"_s), u"0"_s);
    EXPECT_EQ(Stored(u"FindMatchCase"_s), u"-1"_s);
    EXPECT_EQ(Stored(u"FindWrapSearches"_s), u"0"_s);
    EXPECT_EQ(Stored(u"FindScope"_s), u"1"_s);
    EXPECT_EQ(Stored(u"FindReplace"_s), u"absent"_s);
    FindNext(editor, {.find = u"one"_s, .wholeWords = true, .wrap = true});
    EXPECT_EQ(text.selection, (TextSpan{0, 3}));
    EXPECT_EQ(Stored(u"FindWholeWords"_s), u"-1"_s);
    EXPECT_EQ(Stored(u"FindWrapSearches"_s), u"-1"_s);
}

TEST_F(FindDialogFields, FindStoresAlsoWhatIsNotThere)
{
    desktop.ExpectMessage({.text = u"Cannot find 'x'."_s, .icon = BoxIcon::Information});
    FindNext(editor, {.find = u"x"_s, .wrap = true});
    EXPECT_EQ(RecentString(1), u"x"_s);
}

TEST_F(FindDialogFields, WithoutATextToFindNothingHappens)
{
    text.SetText(u"one"_s);
    text.SetSelection(1, 1);
    const FindFields fields{.replace = u"two"_s, .wrap = true};
    FindNext(editor, fields);
    ReplaceNext(editor, fields);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u"one"_s);
    EXPECT_EQ(text.selection, (TextSpan{1, 1}));
    EXPECT_TRUE(settings.GetAllSettings(Recent).empty());
    EXPECT_TRUE(settings.GetAllSettings(u"Options"_s).empty());
}

TEST_F(FindDialogFields, ReplaceGoesStepByStep)
{
    text.SetText(u"one One one"_s);
    const FindFields fields{.find = u"one"_s, .replace = u"three"_s};
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"one One one"_s) << "nothing was selected yet";
    EXPECT_EQ(text.selection, (TextSpan{0, 3}));
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"three One one"_s);
    EXPECT_EQ(text.selection, (TextSpan{6, 9}));
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"three One one"_s) << "a hit by another case is not exactly the text to find";
    EXPECT_EQ(text.selection, (TextSpan{10, 13}));
    desktop.ExpectMessage({.text = u"Cannot find 'one'."_s, .icon = BoxIcon::Information});
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"three One three"_s);
    EXPECT_EQ(Stored(u"FindReplace"_s), u"three"_s);
    EXPECT_EQ(RecentString(1), u"one"_s);
    EXPECT_EQ(Stored(u"FindWholeWords"_s), u"0"_s);
    EXPECT_EQ(Stored(u"FindMatchCase"_s), u"0"_s);
    EXPECT_EQ(Stored(u"FindWrapSearches"_s), u"absent"_s);
    EXPECT_EQ(Stored(u"FindScope"_s), u"absent"_s);
}

TEST_F(FindDialogFields, ReplaceNeverWraps)
{
    text.SetText(u"one two"_s);
    text.SetSelection(3, 3);
    desktop.ExpectMessage({.text = u"Cannot find 'one'."_s, .icon = BoxIcon::Information});
    ReplaceNext(editor, {.find = u"one"_s, .replace = u"x"_s, .wrap = true});
    EXPECT_EQ(text.text, u"one two"_s);
}

TEST_F(FindDialogFields, ReplaceAllTakesTheWholeDocumentInOneStep)
{
    text.SetText(u"a b a B a"_s);
    text.SetSelection(4, 5);
    text.EmptyUndoBuffer();
    QList<bool> shown;
    ExpectReplaced(3);
    ReplaceAll(editor, {.find = u"a"_s, .replace = u"aa"_s, .wholeWords = true},
               [&](bool show) { shown.append(show); });
    EXPECT_EQ(text.text, u"aa b aa B aa"_s);
    EXPECT_EQ(text.selection, (TextSpan{12, 12})) << "behind the last replacement";
    EXPECT_EQ(text.undoSteps, 1);
    EXPECT_EQ(shown, QList<bool>({false, true}));
    EXPECT_EQ(Stored(u"FindReplace"_s), u"aa"_s);
    EXPECT_EQ(RecentString(1), u"a"_s);
    EXPECT_EQ(Stored(u"FindWholeWords"_s), u"-1"_s);
    EXPECT_EQ(Stored(u"FindMatchCase"_s), u"0"_s);
}

TEST_F(FindDialogFields, ReplaceAllStaysInTheSelection)
{
    text.SetText(u"a a\na a\na"_s);
    text.SetSelection(2, 7);
    ExpectReplaced(3);
    ReplaceAll(editor, {.find = u"a"_s, .replace = u"long"_s, .scope = FindScope::SelectedText});
    EXPECT_EQ(text.text, u"a long\nlong long\na"_s);
    text.SetSelection(5, 5);
    ExpectReplaced(0);
    ReplaceAll(editor, {.find = u"a"_s, .replace = u"b"_s, .scope = FindScope::SelectedText});
    EXPECT_EQ(text.selection, (TextSpan{5, 5}));
}

TEST_F(FindDialogFields, ReplaceAllWithoutAHitIsNoEdit)
{
    text.SetText(u"abc"_s);
    text.EmptyUndoBuffer();
    text.SetSelection(1, 2);
    ExpectReplaced(0);
    ReplaceAll(editor, {.find = u"x"_s, .replace = u"y"_s});
    EXPECT_EQ(text.undoSteps, 0);
    EXPECT_EQ(text.selection, (TextSpan{1, 2}));
}

TEST_F(FindDialogFields, ReplaceAllKeepsTheClassesBetweenTheHits)
{
    text.SetText(u"xaybz"_s);
    text.ApplyStyles(0, 5,
                     {{0, 1, StyleClass::Opcode}, {2, 1, StyleClass::Comment}, {4, 1, StyleClass::Macro}});
    ExpectReplaced(1);
    ReplaceAll(editor, {.find = u"b"_s, .replace = u"12"_s});
    EXPECT_EQ(text.styles, QByteArray("\x02\x00\x01\x01\x01\x04", 6));
}

TEST_F(FindDialogFields, ReplaceAllShowsTheTextAgainAfterAFailure)
{
    text.SetText(u"abc"_s);
    bool isShown = true;
    // The store's folder cannot be made: its place is taken by a file.
    SettingsStore broken(WriteFile(u"taken"_s) + u"/settings"_s);
    EditorContext other{document, text, broken, desktop, status, windows, operations};
    EXPECT_THROW(ReplaceAll(other, {.find = u"a"_s, .replace = u"b"_s}, [&](bool show) { isShown = show; }),
                 RunTimeError);
    EXPECT_TRUE(isShown);
    EXPECT_EQ(text.text, u"bbc"_s);
}

} // namespace
} // namespace zelvane
