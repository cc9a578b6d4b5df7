// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/findpattern.h"

#include "core/oracle/patternoracle.h"
#include "platform/threadtime.h"
#include "shell/findkeys.h"
#include "shell/findnext.h"
#include "shell/findreplace.h"
#include "shell/findtext.h"
#include "support/randomtext.h"
#include "support/testcontext.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <iterator>
#include <QtGlobal>
#include <thread>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <csignal>
#include <ctime>
#include <pthread.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

const FindOptions AllOptions[] = {FindAnywhere, FindWholeWord, FindMatchCase, FindWholeWord | FindMatchCase};

/// Random expressions that look behind, ahead, at line ends, and match nothing.
struct RandomExpressions {
    test::RandomText pieces{{u"a"_s,      u"b"_s,     u"B"_s,        u"."_s,         u"a*"_s,  u"[ab]+"_s,
                             u"(a|b)"_s,  u"(b?)"_s,  u"^"_s,        u"$"_s,         u"\\b"_s, u"\\n"_s,
                             u"(?=b)"_s,  u"(?!a)"_s, u"(?<=a)"_s,   u"(?<!b)"_s,    u"|"_s,   u"\\w+"_s,
                             u"\\s"_s,    u".*"_s,    u"(\\n|b)*"_s, u"[^a]*"_s,     u"\\Z"_s, u"a{2,3}"_s,
                             u"(.)\\1"_s, u"\\z"_s,   u"\u00e9"_s,   u"\U0001f600"_s},
                            4,
                            11};

    QString Next()
    {
        for (;;) {
            const QString expression = pieces.Next();
            if (!expression.isEmpty() && QRegularExpression(expression).isValid())
                return expression;
        }
    }
};

const QStringList Letters{u"a"_s, u"b"_s, u"A"_s, u" "_s, u"\n"_s, u"_"_s, u"\u00e9"_s, u"\U0001f600"_s};

TEST(PatternSearch, FindsWhatTheLoopFindsHoweverShortTheStretches)
{
    test::RandomText texts(Letters);
    RandomExpressions expressions;
    int hits = 0;
    for (int i = 0; i < 30000; ++i) {
        const QString text = texts.Next();
        const QString expression = expressions.Next();
        const FindOptions options = AllOptions[i % 4];
        qsizetype start = texts.Number(0, int(text.size()));
        qsizetype end = texts.Number(int(start), int(text.size()));
        const auto inside = [&](qsizetype at) { return at < text.size() && text[at].isLowSurrogate(); };
        start -= inside(start) ? 1 : 0;
        end -= inside(end) ? 1 : 0;
        PatternSearch search(FindPattern(expression, options), text, end, texts.Number(1, 6));
        const auto expected =
            oracle::FindPattern(text, oracle::Expression(expression, options), start, end, options);
        const auto hit = search.Next(start);
        ASSERT_EQ(hit.has_value(), expected.has_value())
            << testing::PrintToString(text) << " for " << testing::PrintToString(expression) << " in "
            << start << ".." << end << " options " << options;
        ASSERT_FALSE(search.GaveUp());
        if (hit) {
            ++hits;
            ASSERT_EQ(hit->span, *expected)
                << testing::PrintToString(text) << " for " << testing::PrintToString(expression) << " in "
                << start << ".." << end << " options " << options;
        }
    }
    EXPECT_GT(hits, 5000);
}

TEST(PatternReplacements, AreThoseOfTheLoop)
{
    test::RandomText texts(Letters, 16);
    RandomExpressions expressions;
    for (int i = 0; i < 10000; ++i) {
        const QString text = texts.Next();
        const QString expression = expressions.Next();
        const FindOptions options = AllOptions[i % 4];
        const FindPattern pattern(expression, options);
        PatternSearch search(pattern, text, -1, texts.Number(1, 6));
        const QString with = pattern.GroupCount() > 0 ? u"<\\1>"_s : u"<>"_s;
        const auto replacements = PatternReplacements(search, with, 0);
        test::StringBuffer buffer;
        buffer.SetText(text);
        buffer.ReplaceEach(replacements);
        const auto [expected, count] =
            oracle::ReplacePattern(text, oracle::Expression(expression, options), 0, text.size(), options);
        ASSERT_EQ(buffer.text, expected) << testing::PrintToString(text) << " for "
                                         << testing::PrintToString(expression) << " options " << options;
        ASSERT_EQ(qsizetype(replacements.size()), count);
    }
}

TEST(FindPattern, SaysWhatIsWrongAndWhere)
{
    EXPECT_EQ(FindPattern(u"a+"_s, FindAnywhere).Error(), QString());
    EXPECT_EQ(FindPattern(u"ab("_s, FindAnywhere).Error(), u"missing closing parenthesis (at character 4)"_s);
    EXPECT_EQ(FindPattern(u"*a"_s, FindAnywhere).Error(),
              u"quantifier does not follow a repeatable item (at character 1)"_s);
    EXPECT_FALSE(FindPattern(u"(*LIMIT_MATCH=4000000000)a"_s, FindAnywhere).IsValid())
        << "an expression sets no limits";
}

TEST(PatternSearch, GivesUpWhereAnExpressionExplodes)
{
    const QString text = QString(60, u'a') + u"b\n"_s;
    for (const QString &expression : {u"(a+)+$"_s, u"(a|aa)+$"_s, u"^(a?){60}(a+)*c"_s}) {
        PatternSearch search(FindPattern(expression, FindAnywhere), text.repeated(100));
        EXPECT_FALSE(search.Next(0)) << testing::PrintToString(expression);
        EXPECT_TRUE(search.GaveUp()) << testing::PrintToString(expression);
    }
}

TEST(PatternSearch, AsksInTimeWhereEachPlaceLooksAtTheWholeText)
{
    const QString instrument = u"instr 1\n a1 oscil 1, 2\n out a1\nendin\n; text\n"_s;
    const QString text = instrument.repeated(10'000);
    for (const QString &expression :
         {u"(instr)[^@#]*\\1 4"_s, u"(?=instr[^@#]*[@#])"_s, u"instr[^#]*(?=[^@]*@)"_s}) {
        PatternSearch search(FindPattern(expression, FindAnywhere), text);
        auto last = ThreadTime();
        const auto end = last + std::chrono::seconds(1);
        std::chrono::nanoseconds longest{};
        search.SetStop([&] {
            longest = std::max(longest, ThreadTime() - last);
            last = ThreadTime();
            return last > end;
        });
        EXPECT_FALSE(search.Next(0)) << testing::PrintToString(expression);
        longest = std::max(longest, ThreadTime() - last);
        // Some tenths of a second; a search that asked after each stretch only would take minutes.
        EXPECT_LT(longest, std::chrono::seconds(10)) << testing::PrintToString(expression);
    }
}

TEST(PatternSearch, IsQuickWhereTheEngineIs)
{
    const QString text(3'000'000, u'a');
    for (const QString &expression : {u"a*[bc]"_s, u"[^@]*@"_s}) {
        PatternSearch search(FindPattern(expression, FindAnywhere), text);
        const auto end = ThreadTime() + std::chrono::seconds(20);
        search.SetStop([end] { return ThreadTime() > end; });
        EXPECT_FALSE(search.Next(0)) << testing::PrintToString(expression);
        // Milliseconds; place by place it would take hours.
        EXPECT_FALSE(search.GaveUp()) << testing::PrintToString(expression);
    }
}

TEST(PatternSearch, AHardPlaceDoesNotHideTheHitBehindIt)
{
    // More steps than a stretch may take, fewer than a place may.
    const QString text = u"-\n"_s + QString(15, u'a') + u"b\n"_s + QString(16, u'a') + u"c\n"_s;
    for (const qsizetype stretch : {4, 1024}) {
        PatternSearch search(FindPattern(u"(a+)+$|(a|aa)+c"_s, FindAnywhere), text, -1, stretch);
        const auto hit = search.Next(0);
        ASSERT_TRUE(hit) << stretch;
        EXPECT_EQ(hit->span, (TextSpan{19, 36})) << stretch;
    }
}

#ifdef Q_OS_LINUX

/// Takes the processor away from the thread that makes it: after each bit of work it does nothing for a
/// while, as on a machine where many others want to work.
class LostProcessor
{
public:
    LostProcessor() : m_thread(::pthread_self())
    {
        struct sigaction stall = {};
        stall.sa_handler = &Stall;
        stall.sa_flags = SA_RESTART;
        ::sigaction(SIGUSR1, &stall, &m_before);
        s_last = ThreadTime();
        s_stalls = 0;
        m_others = std::thread([this] {
            while (!m_ended) {
                ::pthread_kill(m_thread, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        });
    }
    ~LostProcessor()
    {
        m_ended = true;
        m_others.join();
        ::sigaction(SIGUSR1, &m_before, nullptr);
    }
    LostProcessor(const LostProcessor &) = delete;
    LostProcessor &operator=(const LostProcessor &) = delete;

    int Stalls() const { return s_stalls; }

private:
    static void Stall(int)
    {
        const int error = errno;
        if (ThreadTime() - s_last > std::chrono::microseconds(100)) {
            const timespec length{.tv_sec = 0, .tv_nsec = 30'000'000};
            ::nanosleep(&length, nullptr);
            s_stalls = s_stalls + 1;
            s_last = ThreadTime();
        }
        errno = error;
    }

    static inline std::chrono::nanoseconds s_last{};
    static inline volatile std::sig_atomic_t s_stalls = 0;
    pthread_t m_thread;
    struct sigaction m_before = {};
    std::atomic<bool> m_ended = false;
    std::thread m_others;
};

TEST(PatternSearch, FindsTheSameOnABusyMachine)
{
    const QString text = u"-\n"_s + QString(15, u'a') + u"b\n"_s + QString(16, u'a') + u"c\n"_s;
    PatternSearch search(FindPattern(u"(a+)+$|(a|aa)+c"_s, FindAnywhere), text);
    const LostProcessor lost;
    // Once is enough, unless the others have not come to it.
    do {
        const auto hit = search.Next(0);
        EXPECT_FALSE(search.GaveUp());
        ASSERT_TRUE(hit);
        EXPECT_EQ(hit->span, (TextSpan{19, 36}));
    } while (lost.Stalls() == 0);
}

#endif

TEST(PatternSearch, AsksBetweenStretchesWhetherToGoOn)
{
    int asked = 0;
    PatternSearch search(FindPattern(u"x"_s, FindAnywhere), QString(100'000, u'a'));
    search.SetStop([&asked] { return ++asked == 10; });
    EXPECT_FALSE(search.Next(0));
    EXPECT_TRUE(search.GaveUp());
    EXPECT_EQ(asked, 10);
    EXPECT_FALSE(search.Next(99'999));
    EXPECT_FALSE(search.GaveUp()) << "each search by itself";
}

TEST(PatternSearch, TakesTextsWithHalfCharacters)
{
    const QString text = u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xde00);
    PatternSearch search(FindPattern(u"b."_s, FindAnywhere), text);
    const auto hit = search.Next(0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->span, (TextSpan{2, 4}));
}

TEST(PatternSearch, LeavesAHitThatEndsAtTheScope)
{
    const QString text = u"one two\nthree"_s;
    PatternSearch search(FindPattern(u"\\w+$"_s, FindAnywhere), text, 6);
    const auto hit = search.Next(0);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->span, (TextSpan{4, 6}));
    PatternSearch words(FindPattern(u"\\w+$"_s, FindWholeWord), text, 6);
    EXPECT_FALSE(words.Next(0)) << "what is behind the scope counts for words";
}

TEST(Replacement, TakesGroupsAndEscapes)
{
    const QString text = u"k1 oscil 2"_s;
    PatternSearch search(FindPattern(u"(\\w+) (oscil)(x)? (\\d)"_s, FindAnywhere), text);
    const auto hit = search.Next(0);
    ASSERT_TRUE(hit);
    const struct {
        QString replacement;
        QString put;
    } rows[] = {
        {u"\\2(\\1)"_s, u"oscil(k1)"_s}, {u"[\\0]"_s, u"[k1 oscil 2]"_s}, {u"\\3."_s, u"."_s},
        {u"a\\nb\\tc"_s, u"a\nb\tc"_s},  {u"\\\\1"_s, u"\\1"_s},          {u"\\q\\"_s, u"\\q\\"_s},
        {u"\\12"_s, u"k12"_s},           {u"$1 &"_s, u"$1 &"_s},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ReplacementOf(row.replacement, text, *hit), row.put)
            << testing::PrintToString(row.replacement);
    EXPECT_EQ(ReplacementError(u"\\4 \\\\9"_s, 4), QString());
    EXPECT_EQ(ReplacementError(u"\\4 \\5"_s, 4), u"there is no group 5 in the expression"_s);
}

TEST(PatternReplacements, ManyHitsInOnePass)
{
    const QString line =
        u"kenv linen kamp, 0.01, p3, 0.1 ; an \u00e9nvelope of some kind, and here it ends .....\n"_s;
    PatternSearch search(FindPattern(u"(k\\w+)\\s+linen"_s, FindAnywhere), line.repeated(100'000));
    const auto begin = ThreadTime();
    EXPECT_EQ(PatternReplacements(search, u"\\1 linenr", 0).size(), 100'000U);
    // Some tenths of a second; a search that looked at the whole text for each hit would take minutes.
    EXPECT_LT(ThreadTime() - begin, std::chrono::seconds(20));
}

/// Find and Replace with the box checked.
struct RegularFinding : testing::Test, test::TestContext {
    FindFields fields{.regularExpression = true};

    void SetUp() override
    {
        settings.SaveFlag(Keys::RegularExpressions, true);
        text.SetText(u"a1 oscil 1\na2 oscil 22\n"_s);
        text.EmptyUndoBuffer();
    }
    void ExpectBox(const QString &message, BoxIcon icon = BoxIcon::Warning)
    {
        desktop.ExpectMessage({.text = message, .icon = icon});
    }
};

TEST_F(RegularFinding, TheBoxIsRememberedWhereItIs)
{
    EXPECT_EQ(OpeningFindFields(editor).regularExpression, false);
    fields.find = u"\\d+"_s;
    FindNext(editor, fields);
    EXPECT_EQ(text.selection, (TextSpan{1, 2}));
    EXPECT_EQ(status.text, u"'\\d+' found at character 2"_s);
    EXPECT_EQ(OpeningFindFields(editor).regularExpression, true);
    EXPECT_EQ(OptionsOf(fields), FindRegularExpression);
    FindAgain(editor);
    EXPECT_EQ(text.selection, (TextSpan{9, 10}));
    settings.SaveFlag(Keys::RegularExpressions, false);
    EXPECT_EQ(OpeningFindFields(editor).regularExpression, std::nullopt);
    ExpectBox(u"Cannot find '\\d+'."_s, BoxIcon::Information);
    FindAgain(editor);
}

TEST_F(RegularFinding, WithoutTheBoxNothingIsStoredOfIt)
{
    settings.DeleteSetting(Keys::RegularExpressions);
    FindNext(editor, {.find = u"osc"_s});
    EXPECT_EQ(settings.StoredText(Keys::FindRegularExpression), std::nullopt);
    EXPECT_EQ(text.selection, (TextSpan{3, 6}));
}

TEST_F(RegularFinding, EmptyHitsAreGoneThroughOneByOne)
{
    fields.find = u"$"_s;
    fields.wrap = true;
    for (const qsizetype place : {10, 22, 23, 10}) {
        FindNext(editor, fields);
        EXPECT_EQ(text.selection, (TextSpan{place, place}));
    }
}

TEST_F(RegularFinding, ABadExpressionIsTold)
{
    fields.find = u"osc("_s;
    for (const auto &run : {&FindNext, &ReplaceNext}) {
        ExpectBox(
            u"Cannot understand the regular expression 'osc(': missing closing parenthesis (at character 5)."_s);
        run(editor, fields);
    }
    ExpectBox(
        u"Cannot understand the regular expression 'osc(': missing closing parenthesis (at character 5)."_s);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.selection, (TextSpan{0, 0}));
}

TEST_F(RegularFinding, AHardExpressionIsGivenUpAndNothingReplaced)
{
    const QString hard = QString(60, u'a') + u"b\n"_s;
    text.SetText(u"aa\n"_s + hard);
    fields.find = u"(a+)+$"_s;
    text.SetSelection(3, 3);
    const QString message =
        u"The search for '(a+)+$' was given up: the regular expression takes too long here."_s;
    ExpectBox(message);
    FindNext(editor, fields);
    ExpectBox(message);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u"aa\n"_s + hard);
}

TEST_F(RegularFinding, ReplaceGoesStepByStep)
{
    fields.find = u"(a\\d) oscil (\\d+)"_s;
    fields.replace = u"\\1 poscil \\2"_s;
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.selection, (TextSpan{0, 10})) << "nothing was selected yet";
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"a1 poscil 1\na2 oscil 22\n"_s);
    EXPECT_EQ(text.selection, (TextSpan{12, 23}));
    ExpectBox(u"Cannot find '(a\\d) oscil (\\d+)'."_s, BoxIcon::Information);
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"a1 poscil 1\na2 poscil 22\n"_s);
    EXPECT_EQ(settings.Text(Keys::FindReplace), fields.replace);
}

TEST_F(RegularFinding, AnEmptyHitIsReplacedOnceItWasFound)
{
    fields.find = u"^"_s;
    fields.replace = u"; "_s;
    text.SetText(u"one\ntwo\nthree"_s);
    EXPECT_TRUE(ReplaceNext(editor, fields));
    EXPECT_EQ(text.text, u"one\ntwo\nthree"_s) << "nothing was found yet";
    EXPECT_EQ(text.selection, (TextSpan{4, 4}));
    fields.emptyHit = 4;
    EXPECT_TRUE(ReplaceNext(editor, fields));
    EXPECT_EQ(text.text, u"one\n; two\nthree"_s);
    EXPECT_EQ(text.selection, (TextSpan{10, 10}));
    text.SetSelection(0, 0);
    EXPECT_TRUE(ReplaceNext(editor, fields));
    EXPECT_EQ(text.text, u"one\n; two\nthree"_s) << "the caret has been moved";
}

TEST_F(RegularFinding, APartOfAHitIsNotReplaced)
{
    text.SetText(u"a 22"_s);
    text.SetSelection(2, 3);
    fields.find = u"\\b\\d+"_s;
    fields.replace = u"x"_s;
    ExpectBox(u"Cannot find '\\b\\d+'."_s, BoxIcon::Information);
    ReplaceNext(editor, fields);
    EXPECT_EQ(text.text, u"a 22"_s);
}

TEST_F(RegularFinding, ReplaceAllIsOneStep)
{
    fields.find = u"^(a\\d)(.*)$"_s;
    fields.replace = u"\\2 ; \\1"_s;
    ExpectBox(u"Text has been replaced 2 times."_s, BoxIcon::Information);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u" oscil 1 ; a1\n oscil 22 ; a2\n"_s);
    EXPECT_EQ(text.undoSteps, 1);
}

TEST_F(RegularFinding, ReplaceAllOfLineEndsAndEmptyPlaces)
{
    fields.find = u"\\n"_s;
    fields.replace = u"\\n\\n"_s;
    ExpectBox(u"Text has been replaced 2 times."_s, BoxIcon::Information);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u"a1 oscil 1\n\na2 oscil 22\n\n"_s);
    fields.find = u"^(?=a)"_s;
    fields.replace = u"; "_s;
    ExpectBox(u"Text has been replaced 2 times."_s, BoxIcon::Information);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u"; a1 oscil 1\n\n; a2 oscil 22\n\n"_s);
}

TEST_F(RegularFinding, ReplaceAllStaysInTheSelection)
{
    text.SetSelection(1, 12);
    fields.find = u"[a-z]+"_s;
    fields.replace = u"<\\0>"_s;
    fields.scope = FindScope::SelectedText;
    ExpectBox(u"Text has been replaced 2 times."_s, BoxIcon::Information);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.text, u"a1 <oscil> 1\n<a>2 oscil 22\n"_s);
}

TEST_F(RegularFinding, AGroupThatIsNotThereIsTold)
{
    fields.find = u"(a)1"_s;
    fields.replace = u"\\2"_s;
    const QString message = u"Cannot replace by '\\2': there is no group 2 in the expression."_s;
    ExpectBox(message);
    ReplaceNext(editor, fields);
    ExpectBox(message);
    ReplaceAll(editor, fields);
    EXPECT_EQ(text.undoSteps, 0);
}

} // namespace
} // namespace zelvane
