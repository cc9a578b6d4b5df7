// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/numbers.h"
#include "platform/runtimeerror.h"
#include "support/printers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;

namespace
{

template <typename Call> ErrorNumber ErrorOf(Call call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.Number();
    }
    ADD_FAILURE() << "no error was raised";
    return ErrorNumber::InvalidCall;
}

} // namespace

TEST(Numbers, ValTakesTheLongestNumericBeginning)
{
    EXPECT_EQ(Val(u"12"), 12);
    EXPECT_EQ(Val(u"12abc"), 12);
    EXPECT_EQ(Val(u"1, 2"), 1);
    EXPECT_EQ(Val(u"  -3.5dB"), -3.5);
    EXPECT_EQ(Val(u"\t\r\n+4"), 4);
    EXPECT_EQ(Val(u".5"), 0.5);
    EXPECT_EQ(Val(u"-.5"), -0.5);
    EXPECT_EQ(Val(u"5."), 5);
    EXPECT_EQ(Val(u"1.2.3"), 1.2);
    EXPECT_EQ(Val(u"1e3"), 1000);
    EXPECT_EQ(Val(u"1E+20"), 1e20);
    EXPECT_EQ(Val(u"2e"), 2);
    EXPECT_EQ(Val(u"2e+"), 2);
    EXPECT_EQ(Val(u"2e-x"), 2);
    EXPECT_EQ(Val(u"1,5"), 1);
    EXPECT_EQ(Val(u"1e-400"), 0);
}

TEST(Numbers, ValIsZeroWithoutANumber)
{
    for (const QString &text : {u""_s, u"   "_s, u"abc"_s, u"+"_s, u"-"_s, u"."_s, u"-."_s, u"e5"_s, u"nan"_s,
                                u"inf"_s, u"infinity"_s, u"+-1"_s, u"\u0661"_s})
        EXPECT_EQ(Val(text), 0) << text.toStdString();
}

TEST(Numbers, ValBeyondAFloatIsAnOverflow)
{
    EXPECT_EQ(ErrorOf([] { Val(u"1e400"); }), ErrorNumber::Overflow);
    EXPECT_EQ(ErrorOf([] { Val(u"-1e400 and more"); }), ErrorNumber::Overflow);
}

TEST(Numbers, NumericIsAWholeNumber)
{
    for (const QString &text :
         {u"123"_s, u"1e3"_s, u" 7 "_s, u"-.5"_s, u"+5."_s, u"0"_s, u"1E-3"_s, u"1e-400"_s})
        EXPECT_TRUE(IsNumeric(text)) << text.toStdString();
    for (const QString &text : {u""_s, u" "_s, u"12a"_s, u"a12"_s, u"1 2"_s, u"1,5"_s, u"."_s, u"e3"_s,
                                u"1e"_s, u"1e400"_s, u"nan"_s, u"--1"_s, u"0x10"_s, u"1_0"_s, u"\u0663"_s})
        EXPECT_FALSE(IsNumeric(text)) << text.toStdString();
}

TEST(Numbers, ToNumberTellsWhatIsWrong)
{
    EXPECT_EQ(ToNumber(u" -12.5 "), -12.5);
    EXPECT_EQ(ErrorOf([] { ToNumber(u""); }), ErrorNumber::TypeMismatch);
    EXPECT_EQ(ErrorOf([] { ToNumber(u"True"); }), ErrorNumber::TypeMismatch);
    EXPECT_EQ(ErrorOf([] { ToNumber(u"1e999"); }), ErrorNumber::Overflow);
}

TEST(Numbers, DigitsAreThoseFromZeroToNine)
{
    for (const QChar digit : u"0123456789"_s)
        EXPECT_TRUE(IsDigit(digit)) << int(digit.unicode());
    for (const QChar other : u"/:a.-\u0663\u00B2"_s)
        EXPECT_FALSE(IsDigit(other)) << int(other.unicode());
}

TEST(Numbers, TextHasFifteenDigitsAndNoZeroBeforeThePoint)
{
    EXPECT_EQ(NumberText(0), u"0"_s);
    EXPECT_EQ(NumberText(-0.0), u"0"_s);
    EXPECT_EQ(NumberText(.5), u".5"_s);
    EXPECT_EQ(NumberText(-.5), u"-.5"_s);
    EXPECT_EQ(NumberText(200), u"200"_s);
    EXPECT_EQ(NumberText(-32768), u"-32768"_s);
    EXPECT_EQ(NumberText(1e20), u"1E+20"_s);
    EXPECT_EQ(NumberText(-1.5e-20), u"-1.5E-20"_s);
    EXPECT_EQ(NumberText(0.1 + 0.2), u".3"_s);
    EXPECT_EQ(NumberText(1.0 / 3), u".333333333333333"_s);
    EXPECT_EQ(NumberText(123456789012345), u"123456789012345"_s);
    EXPECT_EQ(NumberText(1e14), u"100000000000000"_s);
    EXPECT_EQ(NumberText(10.25), u"10.25"_s);
    EXPECT_EQ(NumberText(.0001), u".0001"_s);
    EXPECT_EQ(ErrorOf([] { NumberText(HUGE_VAL); }), ErrorNumber::Overflow);
    EXPECT_EQ(ErrorOf([] { NumberText(std::nan("")); }), ErrorNumber::Overflow);
}

TEST(Numbers, TextReadsBackToFifteenDigits)
{
    QRandomGenerator random(4711);
    for (int i = 0; i < 20000; ++i) {
        const double number = (random.generateDouble() - 0.5) * std::pow(10, random.bounded(-30, 30));
        const QString text = NumberText(number);
        EXPECT_NEAR(Val(text), number, std::abs(number) * 1e-14) << text.toStdString();
        EXPECT_TRUE(IsNumeric(text));
        EXPECT_FALSE(text.startsWith(u"0.") || text.startsWith(u"-0.")) << text.toStdString();
    }
}

TEST(Numbers, HalvesGoToTheEvenNeighbour)
{
    const std::pair<double, double> cases[] = {{0.5, 0},       {1.5, 2},
                                               {2.5, 2},       {-0.5, 0},
                                               {-1.5, -2},     {-2.5, -2},
                                               {0.49, 0},      {0.51, 1},
                                               {-0.51, -1},    {2.4999999, 2},
                                               {7, 7},         {1e15, 1e15},
                                               {1e300, 1e300}, {0.49999999999999994, 0}};
    for (const auto &[number, rounded] : cases)
        EXPECT_EQ(RoundHalfEven(number), rounded) << number;
}

TEST(Numbers, IntegersAreCheckedAfterRounding)
{
    EXPECT_EQ(ToInteger<qint16>(32767.5 - 0.001), 32767);
    EXPECT_EQ(ErrorOf([] { ToInteger<qint16>(32767.5); }), ErrorNumber::Overflow);
    EXPECT_EQ(ToInteger<qint16>(-32768.5), -32768);
    EXPECT_EQ(ErrorOf([] { ToInteger<qint16>(-32769); }), ErrorNumber::Overflow);
    EXPECT_EQ(ToInteger<quint8>(254.5), 254);
    EXPECT_EQ(ErrorOf([] { ToInteger<quint8>(-1); }), ErrorNumber::Overflow);
    EXPECT_EQ(ToInteger<int>(-2147483648.0), std::numeric_limits<int>::min());
    EXPECT_EQ(ErrorOf([] { ToInteger<int>(2147483648.0); }), ErrorNumber::Overflow);
    EXPECT_EQ(ErrorOf([] { ToInteger<int>(HUGE_VAL); }), ErrorNumber::Overflow);
    EXPECT_EQ(ErrorOf([] { ToInteger<int>(std::nan("")); }), ErrorNumber::Overflow);
}
