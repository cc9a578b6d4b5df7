// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/keptclasses.h"

#include "core/oracle/keptclassesoracle.h"
#include "shell/textops.h"
#include "support/printers.h"
#include "support/randomtext.h"

#include <gtest/gtest.h>
#include <QString>

using namespace zelvane;
using namespace zelvane::test;
using namespace Qt::Literals::StringLiterals;

namespace
{

/// Classes as digits, in and out.
std::string Kept(const QString &oldText, const QByteArray &oldClasses, const QString &newText,
                 char before = '9')
{
    return KeptClasses(oldText, oldClasses, newText, before).toStdString();
}

} // namespace

TEST(KeptClasses, CommentsComeAndGo)
{
    EXPECT_EQ(Kept(u"a1 oscil 1\n b\n"_s, "00022222000000", u";a1 oscil 1\n; b\n"_s), "9000222220000000");
    EXPECT_EQ(Kept(u";a1 oscil\n;b"_s, "100022222001", u"a1 oscil\nb"_s), "0002222201");
    EXPECT_EQ(Kept(u"; note\na"_s, "11111110", u"/*; note\na*/"_s), "991111111000");
    EXPECT_EQ(Kept(u"/*a\nb*/"_s, "1122333", u"a\nb"_s), "223");
    EXPECT_EQ(Kept(u"/*a\nb*/"_s, "1122333", u"/*a\nb*/"_s), "1122333");
}

TEST(KeptClasses, CaseAndIndent)
{
    EXPECT_EQ(Kept(u"a1 oscil"_s, "00022222", u"A1 OSCIL"_s), "00022222");
    EXPECT_EQ(Kept(u"\u00e9t\u0131"_s, "123", u"\u00c9TI"_s), "123");
    EXPECT_EQ(Kept(u"\u00e9t\u00e9"_s, "123", u"\u00c9T\u00c9"_s), "123");
    EXPECT_EQ(Kept(u"\u0130"_s, "1", u"\u1e9e"_s), "1"); // no change of case leads from it into ASCII
    EXPECT_EQ(Kept(u"\u0130"_s, "1", u"i"_s), "");
    EXPECT_EQ(Kept(u"a\nb"_s, "123", u"\ta\n\tb"_s), "91223");
    EXPECT_EQ(Kept(u"  a\n  b"_s, "0012003", u"a\nb"_s), "123");
    EXPECT_EQ(Kept(u"a  b"_s, "1002", u"a\tb"_s), "112");
}

TEST(KeptClasses, EveryLetterKeepsItsClassInTheOtherCase)
{
    for (char16_t unit = u'!'; unit < 0xFFFE; ++unit) {
        const QChar c(unit);
        if (c.isSurrogate() || unit == u';' || unit == u'/' || unit == u'*')
            continue;
        for (const CaseChange change : {CaseChange::Upper, CaseChange::Lower, CaseChange::Capitalize}) {
            const QString other = ChangeCaseOfText(QString(c), change);
            ASSERT_EQ(Kept(c, "3", other), "3") << std::hex << int(unit);
            const QByteArray bytes = KeptClasses(
                QString(c).toUtf8(), QByteArray(QString(c).toUtf8().size(), '3'), other.toUtf8(), '9');
            ASSERT_EQ(bytes, QByteArray(other.toUtf8().size(), '3')) << std::hex << int(unit);
        }
    }
}

TEST(KeptClasses, OtherTextKeepsNothing)
{
    EXPECT_EQ(Kept(u"\u0131"_s, "1", u"s"_s), "");
    EXPECT_EQ(Kept(u"\u00e9"_s, "1", u"e"_s), "");
    EXPECT_EQ(Kept(u"oscil"_s, "22222", u"line"_s), "");
    EXPECT_EQ(Kept(u"oscil"_s, "22222", u"oscili"_s), "");
    EXPECT_EQ(Kept(u"oscili"_s, "222222", u"oscil"_s), "");
    EXPECT_EQ(Kept(QString(), "", u"a"_s), "");
    EXPECT_EQ(Kept(u"a"_s, "1", QString()), "");
    EXPECT_EQ(Kept(u" "_s, "1", u";;"_s), "99");
}

TEST(KeptClasses, ClassesFollowTheCharactersInRandomTexts)
{
    const QString clef = QString::fromUcs4(U"\U0001D11E");
    RandomText texts({u"a"_s, u"A"_s, u"b"_s, u" "_s, u"\n"_s, u";"_s, u"/"_s, u"*"_s, u"\u00e9"_s, clef,
                      u"i"_s, u"\u0131"_s},
                     10);
    RandomText marks({u" "_s, u"\t"_s, u"\n"_s, u";"_s, u"/"_s, u"*"_s, QString()}, 2);
    int keptOnes = 0;
    for (int round = 0; round < 20000; ++round) {
        const QString oldText = texts.Next();
        QByteArray classes;
        for (qsizetype i = 0; i < oldText.size(); ++i)
            classes += oldText[i].isLowSurrogate() ? classes.back() : char('0' + texts.Number(0, 6));
        QString newText;
        const bool derived = texts.Number(0, 3) > 0;
        if (!derived) {
            newText = texts.Next();
        } else {
            for (const QChar c : oldText) {
                if (!c.isLowSurrogate())
                    newText += marks.Next();
                if (!u" \t\n;/*"_s.contains(c) || texts.Number(0, 1) == 0)
                    newText += c;
            }
        }
        const QByteArray kept = KeptClasses(oldText, classes, newText, '9');
        const auto before = oracle::ClassedCharactersOf(oldText, classes);
        const bool same = before.characters ==
                          oracle::ClassedCharactersOf(newText, QByteArray(newText.size(), '0')).characters;
        ASSERT_EQ(kept.isEmpty(), !same || newText.isEmpty()) << oldText.toStdString();
        if (!kept.isEmpty()) {
            ++keptOnes;
            ASSERT_EQ(kept.size(), newText.size());
            ASSERT_EQ(oracle::ClassedCharactersOf(newText, kept).classes.toStdString(),
                      before.classes.toStdString());
        }
        if (!derived)
            continue;
        // In bytes it is the same, each class as often as its character has bytes.
        const QByteArray bytes =
            KeptClasses(oldText.toUtf8(), oracle::ClassesOfBytes(oldText, classes), newText.toUtf8(), '9');
        ASSERT_EQ(bytes.toStdString(),
                  kept.isEmpty() ? "" : oracle::ClassesOfBytes(newText, kept).toStdString());
    }
    EXPECT_GT(keptOnes, 5000);
}
