// SPDX-License-Identifier: GPL-3.0-or-later

// The writers of coloured text: HTML and RTF.

#include "core/oracle/htmloracle.h"
#include "platform/styledtext.h"
#include "platform/systemcolour.h"
#include "support/printers.h"
#include "support/randomtext.h"
#include "texttools/htmlwriter.h"
#include "texttools/rtfwriter.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <QByteArray>
#include <QChar>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QTemporaryDir>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{
namespace
{

constexpr quint32 Green = 0x008000;
constexpr quint32 Blue = 0xFF0000;
constexpr quint32 Red = 0x0000FF;

/// A text in the default colours.
StyledText Piece(const QString &text, const StyleRuns &runs = {})
{
    StyledText piece{.text = text, .runs = runs, .formats = {}, .font = {.family = u"Courier New"_s}};
    piece.formats[size_t(StyleClass::Comment)] = {Green, false};
    piece.formats[size_t(StyleClass::Opcode)] = {Blue, true};
    piece.formats[size_t(StyleClass::Literal)] = {Red, false};
    return piece;
}

/// What stands between the first and the last lines of a page.
QByteArray Body(const StyledText &text)
{
    const QByteArray page = HtmlDocument(text, u"x"_s).value();
    const QByteArray before = "<font face=" + text.font.family.toLatin1() + " size=1>\r\n";
    const qsizetype start = page.indexOf(before) + before.size();
    return page.sliced(start, page.lastIndexOf("\r\n</font>\r\n</body>") - start);
}

TEST(HtmlWriter, WritesThePage)
{
    EXPECT_EQ(HtmlDocument(Piece(u";c\nout"_s, {{0, 3, StyleClass::Comment}, {3, 3, StyleClass::Opcode}}),
                           u"x.orc"_s)
                  .value(),
              "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\r\n"
              "<html>\r\n"
              "<head>\r\n"
              "<title>x.orc</title>\r\n"
              "<meta name=\"generator\" content=\"Zelvane\">\r\n"
              "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">\r\n"
              "</head>\r\n"
              "<body>\r\n"
              "<font face=Courier New size=1>\r\n"
              "<font color=#008000>;c<br>\r\n<b></font><font color=#0000FF>out\r\n"
              "</font>\r\n"
              "</body>\r\n"
              "</html>\r\n");
}

TEST(HtmlWriter, TellsFontAndTitle)
{
    StyledText text = Piece({});
    text.font = {.family = u"A<\u03A9"_s, .points = 17.9};
    const QByteArray page = HtmlDocument(text, u"a<b>\u00E9\u20AC"_s).value();
    EXPECT_TRUE(page.contains("<font face=A&lt;&#937; size=2>\r\n\r\n</font>\r\n")) << page.toStdString();
    EXPECT_TRUE(page.contains("<title>a&lt;b&gt;\xE9&#8364;</title>\r\n")) << page.toStdString();
    text.font.points = 5.9;
    EXPECT_TRUE(HtmlDocument(text, {}).value().contains(" size=0>"));
}

TEST(HtmlWriter, OpensOneFontForACommentLine)
{
    EXPECT_EQ(Body(Piece(u";c d\n"_s, {{0, 5, StyleClass::Comment}})), "<font color=#008000>;c d<br>\r\n");
}

TEST(HtmlWriter, EscapesNothingButTags)
{
    EXPECT_EQ(Body(Piece(u"a<b>c & &lt;  \"'\t"_s)), "<font color=#000000>a&lt;b&gt;c & &lt;  \"'\t");
    EXPECT_EQ(Body(Piece({})), "");
    EXPECT_EQ(Body(Piece(u"r"_s, {{0, 1, StyleClass::Literal}})), "<font color=#FF0000>r");
}

TEST(HtmlWriter, WritesWhatTheCharsetLacksAsNumbers)
{
    EXPECT_EQ(Body(Piece(u"\u00A0\u00FF\u0100\u20AC\U0001F600"_s)),
              "<font color=#000000>\xA0\xFF&#256;&#8364;&#128512;");
    EXPECT_EQ(Body(Piece(QString(QChar(0xD83D)) + u'x' + QChar(0xDE00))),
              "<font color=#000000>&#65533;x&#65533;");
}

TEST(HtmlWriter, ClassesOfOneLookNeedNoTags)
{
    StyledText text = Piece(u"abc"_s, {{1, 1, StyleClass::Macro}});
    text.formats[size_t(StyleClass::Text)] = {Green, true};
    text.formats[size_t(StyleClass::Macro)] = {Green, true};
    EXPECT_EQ(Body(text), "<b><font color=#008000>abc");
    text.formats[size_t(StyleClass::Macro)] = {Green, false};
    EXPECT_EQ(Body(text), "<b><font color=#008000>a</b>b<b>c");
}

/// Random texts with random runs, which may overlap and reach beyond the text, but cut no character.
class RandomStyled
{
public:
    StyledText Next()
    {
        StyledText text = Piece(m_texts.Next());
        std::vector<qsizetype> places;
        for (qsizetype at = 0; at < text.text.size(); at += text.text[at].isHighSurrogate() ? 2 : 1)
            places.push_back(at);
        places.push_back(text.text.size());
        const int runs = m_texts.Number(0, 6);
        for (int i = 0; i < runs; ++i) {
            const qsizetype one = places[size_t(m_texts.Number(0, int(places.size()) - 1))];
            const qsizetype other = places[size_t(m_texts.Number(0, int(places.size()) - 1))];
            const qsizetype beyond = std::max(one, other) == text.text.size() ? m_texts.Number(0, 2) : 0;
            text.runs.push_back({qint32(std::min(one, other)), qint32(std::abs(one - other) + beyond),
                                 StyleClass(m_texts.Number(0, StyleClassCount - 1))});
        }
        for (StyleFormat &format : text.formats) {
            const quint32 colours[] = {SystemWindowText, 0, Red, 0xFFFFFF, 0x01020A, Blue};
            format = {colours[m_texts.Number(0, 5)], m_texts.Number(0, 1) == 1};
        }
        return text;
    }

    /// The characters as the control would tell them.
    static std::vector<test::oracle::ShownCharacter> Shown(const StyledText &text)
    {
        std::vector<test::oracle::ShownCharacter> characters;
        for (qsizetype at = 0; at < text.text.size(); ++at) {
            StyleClass style = StyleClass::Text;
            for (const StyleRun &run : text.runs) {
                if (at >= run.start && at < run.start + run.length)
                    style = run.style;
            }
            const StyleFormat &format = text.formats[size_t(style)];
            QString character = text.text[at] == u'\n' ? QString() : QString(text.text[at]);
            if (text.text[at].isHighSurrogate())
                character += text.text[++at];
            characters.push_back(
                {character, format.bold, format.colour & SystemColourBit ? 0 : format.colour});
        }
        return characters;
    }

    int Number(int low, int high) { return m_texts.Number(low, high); }

private:
    test::RandomText m_texts{{u"a"_s, u"b"_s, u"<"_s, u">"_s, u"&"_s, u"\n"_s, u" "_s, u"\t"_s, u"{"_s,
                              u"\\"_s, u"\u00E9"_s, u"\u03A9"_s, u"\uFFFD"_s, u"\U0001F600"_s}};
};

TEST(HtmlWriter, GivesWhatTheLoopGives)
{
    RandomStyled texts;
    for (int i = 0; i < 20000; ++i) {
        const StyledText text = texts.Next();
        ASSERT_EQ(Body(text), test::oracle::InPageCharset(test::oracle::HtmlBody(RandomStyled::Shown(text))))
            << "from " << testing::PrintToString(text.text);
    }
}

TEST(HtmlWriter, LongStretchesAreWrittenInPieces)
{
    // A pair lies across the end of each piece.
    for (qsizetype before = WrittenPiece - 2; before <= WrittenPiece + 2; ++before) {
        const StyledText text =
            Piece(QString(before, u'x') + QString(u"\U0001F600"_s).repeated(2 * WrittenPiece));
        ASSERT_TRUE(Body(text) ==
                    test::oracle::InPageCharset(test::oracle::HtmlBody(RandomStyled::Shown(text))));
    }
}

TEST(HtmlWriter, AStoppedOneGivesNothing)
{
    const StyledText text =
        Piece(QString(u"a <b>\n"_s).repeated(50000), {{1000, 200000, StyleClass::Comment}});
    int asked = 0;
    qint64 last = 0;
    const WriteProgress goOn = [&](qint64 done, qint64 total) {
        EXPECT_GT(done, last);
        EXPECT_EQ(total, text.text.size());
        last = done;
        return ++asked < 3;
    };
    EXPECT_FALSE(HtmlDocument(text, u"x"_s, goOn).has_value());
    EXPECT_EQ(asked, 3);
    asked = 0;
    last = 0;
    EXPECT_FALSE(RtfDocument(text, goOn).has_value());
    EXPECT_EQ(asked, 3);
}

TEST(CoveringRuns, LaterOnesHold)
{
    EXPECT_EQ(CoveringRuns({}, 0), StyleRuns());
    EXPECT_EQ(CoveringRuns({}, 3), (StyleRuns{{0, 3, StyleClass::Text}}));
    EXPECT_EQ(
        CoveringRuns({{1, 5, StyleClass::Tag}, {2, 2, StyleClass::Macro}, {9, 9, StyleClass::Macro}}, 10),
        (StyleRuns{{0, 1, StyleClass::Text},
                   {1, 1, StyleClass::Tag},
                   {2, 2, StyleClass::Macro},
                   {4, 2, StyleClass::Tag},
                   {6, 3, StyleClass::Text},
                   {9, 1, StyleClass::Macro}}));
    EXPECT_EQ(CoveringRuns({{0, 1, StyleClass::Tag}, {1, 1, StyleClass::Tag}}, 2),
              (StyleRuns{{0, 2, StyleClass::Tag}}));
    EXPECT_EQ(CoveringRuns({{-3, 2, StyleClass::Tag}, {7, 2, StyleClass::Tag}}, 1),
              (StyleRuns{{0, 1, StyleClass::Text}}));
}

TEST(RtfWriter, WritesTheDocument)
{
    StyledText text = Piece(u";c\nout \t{\\}\n"_s, {{0, 3, StyleClass::Comment}, {3, 3, StyleClass::Opcode}});
    text.font = {.family = u"Mono; \u00E9"_s, .points = 10.5, .italic = true};
    EXPECT_EQ(RtfDocument(text).value(),
              "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\\deftab1008\r\n"
              "{\\fonttbl{\\f0\\fnil Mono \\u233\\'e9;}}\r\n"
              "{\\colortbl ;\\red0\\green0\\blue0;\\red0\\green128\\blue0;\\red0\\green0\\blue255;"
              "\\red255\\green0\\blue0;}\r\n"
              "\\pard\\plain\\f0\\fs21\\i \\cf2 ;c\\par\r\n"
              "\\b\\cf3 out\\b0\\cf1 {} \\tab \\{\\\\\\}\\par\r\n"
              "\\par\r\n}\r\n");
}

TEST(RtfWriter, EveryCharacterIsAscii)
{
    const QByteArray document =
        RtfDocument(Piece(QString(QChar(0)) + u"\u007F\u0080\u00FF\u7FFF\u8000\U0001F600"_s)).value();
    EXPECT_TRUE(document.contains(
        "\\cf1 \\'00\\'7f\\u128\\'3f\\u255\\'ff\\u32767\\'3f\\u-32768\\'3f\\u-10179\\'3f\\u-8704\\'3f\\par"))
        << document.toStdString();
}

TEST(RtfWriter, NeighbouringBlanksAreKeptApart)
{
    EXPECT_TRUE(RtfDocument(Piece(u"a b  c   d\n  e"_s))
                    .value()
                    .contains("\\cf1 a b {} c {} {} d\\par\r\n {} e\\par\r\n"));
}

// What unrtf reads

/// A character as a reader shows it.
struct ReadCharacter {
    QChar character;
    bool bold = false;
    QByteArray colour;
    QByteArray font;

    bool operator==(const ReadCharacter &) const = default;
};

/// The page that unrtf makes of a document.
QString Unrtf(const QByteArray &document)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"a.rtf"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(document) == document.size());
    file.close();
    QProcess process;
    process.start(u"unrtf"_s, {u"--html"_s, u"--quiet"_s, file.fileName()});
    EXPECT_TRUE(process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        << "unrtf cannot be run";
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The characters of a page of unrtf, with what its tags say of them.
std::vector<ReadCharacter> ReadPage(const QString &page)
{
    static const std::map<QString, char16_t> names = {{u"lt"_s, u'<'},
                                                      {u"gt"_s, u'>'},
                                                      {u"amp"_s, u'&'},
                                                      {u"eacute"_s, u'\u00E9'},
                                                      {u"Omega"_s, u'\u03A9'}};
    const qsizetype start = page.indexOf(u"<body>"_s) + 6;
    const QString body = page.sliced(start, page.indexOf(u"</body>"_s) - start);
    static const QRegularExpression token(u"<br>\\n|<(/?)(\\w+)(?: (\\w+)=\"([^\"]*)\")?>|&(#?)(\\w+);|(.)"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    std::vector<ReadCharacter> read;
    std::vector<ReadCharacter> open = {{}};
    for (auto match = token.globalMatch(body); match.hasNext();) {
        const QRegularExpressionMatch one = match.next();
        ReadCharacter now = open.back();
        if (one.captured().startsWith(u"<br>"_s)) {
            now.character = u'\n';
            read.push_back(now);
        } else if (!one.captured(2).isEmpty()) {
            if (!one.captured(1).isEmpty()) {
                open.pop_back();
                continue;
            }
            if (one.captured(2) == u"b"_s)
                now.bold = true;
            else if (one.captured(3) == u"color"_s)
                now.colour = one.captured(4).toLatin1();
            else if (one.captured(3) == u"face"_s)
                now.font = one.captured(4).toLatin1();
            open.push_back(now);
        } else {
            const QString name = one.captured(6);
            if (!one.captured(5).isEmpty())
                now.character = QChar(name.toUInt());
            else if (!name.isEmpty())
                now.character = QChar(names.at(name));
            else
                now.character = one.captured(7).front();
            read.push_back(now);
        }
    }
    return read;
}

TEST(RtfWriter, AnotherReaderGivesBackTextAndLook)
{
    RandomStyled texts;
    for (int i = 0; i < 100; ++i) {
        StyledText text = texts.Next();
        text.text.replace(u'\t', u'.'); // it shows blanks for them
        std::vector<ReadCharacter> expected;
        for (const test::oracle::ShownCharacter &shown : RandomStyled::Shown(text)) {
            const quint32 c = shown.colour;
            const QByteArray colour =
                '#' +
                QByteArray::number((c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16), 16).rightJustified(6, '0');
            for (const QChar unit : shown.text.isEmpty() ? u"\n"_s : shown.text)
                expected.push_back({unit, shown.bold, colour, "Courier New"});
        }
        std::vector<ReadCharacter> read = ReadPage(Unrtf(RtfDocument(text).value()));
        // The last paragraph ends, too; and the page ends with a line of its own.
        QString end;
        while (read.size() > expected.size()) {
            end.prepend(read.back().character);
            read.pop_back();
        }
        ASSERT_EQ(end.trimmed(), QString());
        const auto plain = [](const std::vector<ReadCharacter> &characters) {
            QString all;
            for (const ReadCharacter &one : characters)
                all += one.character;
            return all;
        };
        ASSERT_EQ(plain(read), plain(expected));
        for (size_t at = 0; at < expected.size(); ++at) {
            // A blank or a line end shows no look.
            if (!expected[at].character.isSpace()) {
                ASSERT_EQ(read[at], expected[at]) << at << " of " << testing::PrintToString(text.text);
            }
        }
    }
}

} // namespace
} // namespace zelvane
