// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/instrclass.h"

#include "platform/runtimeerror.h"
#include "support/printers.h"
#include "support/scripteddesktop.h"

#include <gtest/gtest.h>
#include <QString>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelvane::test
{

namespace
{

/// An instrument with p-fields of these numbers.
struct Fields : testing::Test {
    InstrClass instrument;
    ScriptedDesktop desktop;

    Fields() { instrument.number = 12; }

    void Add(std::initializer_list<qint16> numbers)
    {
        for (const qint16 number : numbers)
            instrument.addP(number);
    }
    /// Key and number of each, in their order.
    QString Now() const
    {
        QStringList fields;
        for (const pClass &field : instrument.pCol)
            fields.append(field.key + u'=' + QString::number(field.number));
        return fields.join(u' ');
    }
};

} // namespace

TEST_F(Fields, AreKeyedByTheNumbersTheyWereMadeWith)
{
    const pClass &field = instrument.addP(4);
    EXPECT_EQ(field.key, u"i12p4"_s);
    EXPECT_EQ(field.number, 4);
    EXPECT_EQ(field.formato, PFormat::Real);
    EXPECT_EQ(instrument.pCol.Find(u"i12p4"_s), &field);
    EXPECT_EQ(instrument.pCol.Find(u"i12p5"_s), nullptr);
}

TEST_F(Fields, AreThereOnce)
{
    Add({1, 2});
    EXPECT_THROW(instrument.addP(2), RunTimeError);
    EXPECT_EQ(Now(), u"i12p1=1 i12p2=2"_s);
}

TEST_F(Fields, AreFoundByNumber)
{
    Add({3, 1});
    instrument.pCol.At(1).number = 3;
    EXPECT_EQ(instrument.getPbyNumber(3), &instrument.pCol.At(0));
    EXPECT_EQ(instrument.getPbyNumber(1), nullptr);
}

TEST_F(Fields, AreSortedAndStayWhereTheyAre)
{
    Add({3, 1, 2});
    const pClass *const third = instrument.getPbyNumber(3);
    EXPECT_TRUE(instrument.sortpCol(desktop));
    EXPECT_EQ(Now(), u"i12p1=1 i12p2=2 i12p3=3"_s);
    EXPECT_EQ(instrument.pCol.Find(u"i12p3"_s), third);
    InstrClass none;
    EXPECT_TRUE(none.sortpCol(desktop));
}

TEST_F(Fields, WithAGapAreNotSorted)
{
    Add({4, 1, 2});
    desktop.ExpectMessage(
        {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
    EXPECT_FALSE(instrument.sortpCol(desktop));
    EXPECT_EQ(Now(), u"i12p4=4 i12p1=1 i12p2=2"_s);
}

TEST_F(Fields, OfOneNumberAreAGapToo)
{
    Add({1, 2, 3});
    instrument.pCol.At(2).number = 2;
    desktop.ExpectMessage(
        {.text = u"Error while sorting p-fields: non-consecutive items."_s, .icon = BoxIcon::Critical});
    EXPECT_FALSE(instrument.sortpCol(desktop));
}

TEST_F(Fields, Move)
{
    Add({1, 2, 3});
    EXPECT_TRUE(instrument.pMoveDown(1));
    EXPECT_EQ(Now(), u"i12p1=2 i12p2=1 i12p3=3"_s);
    EXPECT_TRUE(instrument.pMoveUp(3));
    EXPECT_EQ(Now(), u"i12p1=3 i12p2=1 i12p3=2"_s);
    EXPECT_FALSE(instrument.pMoveUp(1));
    EXPECT_FALSE(instrument.pMoveDown(3));
    EXPECT_FALSE(instrument.pMoveDown(7));
    EXPECT_FALSE(instrument.pMoveDown(32767));
    EXPECT_FALSE(instrument.pMoveUp(-32768));
    EXPECT_EQ(Now(), u"i12p1=3 i12p2=1 i12p3=2"_s);
}

TEST_F(Fields, CloseUpBehindOneThatIsRemoved)
{
    Add({1, 2, 3, 4});
    EXPECT_FALSE(instrument.pRemove(5));
    EXPECT_TRUE(instrument.pRemove(2));
    EXPECT_EQ(Now(), u"i12p1=1 i12p3=2 i12p4=3"_s);
    // A key does not follow its number, so that it may be taken.
    EXPECT_THROW(instrument.addP(4), RunTimeError);
    EXPECT_EQ(Now(), u"i12p1=1 i12p3=2 i12p4=3"_s);
    EXPECT_NO_THROW(instrument.addP(2));
}

TEST_F(Fields, AreListedByNumberWithTheirGaps)
{
    Add({9, 3, 1});
    const std::vector<pClass *> fields = instrument.ByNumber();
    EXPECT_EQ(fields, (std::vector<pClass *>{&instrument.pCol.At(2), nullptr, &instrument.pCol.At(1)}));
}

} // namespace zelvane::test
